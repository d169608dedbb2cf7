// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldLaunch.h"

#include "kel/controls/KELControl.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/KELFormContext.h"
#include "kel/frame/KELLaunch.h"
#include "kel/frame/KELTrace.h"

#include <QPushButton>

IFieldLaunch::IFieldLaunch(IElementInfo& info, IContainer* container, std::string application)
    : KELFieldWithoutValue(info, container), m_application(std::move(application))
{
}

IFieldLaunch::~IFieldLaunch() = default;

void IFieldLaunch::Create(unsigned int& id, IElementInfo& info)
{
    auto* button = new KELControl<QPushButton>(this, GetContainer());
    AdoptControl(button, id, info);
    button->setText(QString::fromStdString(m_application));
    QObject::connect(button, &QPushButton::clicked, button, [this] { Launch(); });
    SetWindow(button);
    Resize(button->sizeHint());
}

bool IFieldLaunch::Launch()
{
    KELFormContext* form = GetContainer() ? GetContainer()->GetFormContext() : nullptr;
    if (!form) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELField", this) << "KEL : IFieldLaunch::Launch, no form";
        return false;
    }
    std::string error;
    if (KELLaunch::Start(form->GetCurrentEntity(), form->GetCurrentDirective(), GetID(), 0, &error))
        return true;
    KEL_TRACE(KEL_TRACE_PBLM, "KELField", this)
        << "KEL : IFieldLaunch::Launch, " << m_application << " not started : " << error;
    return false;
}
