// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IContainer.h"

#include "kel/fields/KELFormContext.h"
#include "kel/frame/IApplication.h"

KELFormContext::~KELFormContext() = default;

void KELFormContext::OnNewSize() {}

std::string KELFormContext::GetSettingSection() const { return {}; }

IContainerWnd::IContainerWnd(QWidget* parent) : QWidget(parent) {}

IContainerWnd::~IContainerWnd() = default;

IContainer::IContainer(QWidget* parent) : IContainerWnd(parent) {}

IContainer::~IContainer() = default;

KELFormContext* IContainer::GetFormContext() const
{
    for (QWidget* window = parentWidget(); window; window = window->parentWidget())
        if (auto* form = dynamic_cast<KELFormContext*>(window))
            return form;
    return nullptr;
}

IPresentationForm* IContainer::GetParentForm() const
{
    KELFormContext* form = GetFormContext();
    return form ? form->GetPresentationForm() : nullptr;
}

KELConfigContext* IContainer::GetConfigContext() const
{
    KELFormContext* form = GetFormContext();
    return form ? form->GetFormConfigContext() : nullptr;
}

void IContainer::AddToolTip(QWidget* control, const QString& text) const
{
    if (!control)
        return;
    const IApplication* app = GetKELapp();
    control->setToolTip(!app || app->IsTooltipEnabled() ? text : QString());
}

void IContainer::PlaceElements() {}

void IContainer::SizeHasChanged() {}

void IContainer::MoveAndResize(const QPoint&, const QSize&) {}
