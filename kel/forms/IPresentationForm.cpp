// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/IPresentationForm.h"
#include "kel/frame/KELString.h"

#include "kel/controls/IControlContainer.h"
#include "kel/controls/KELFilterBox.h"
#include "kel/frame/IApplication.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/KELIdlePass.h"
#include "kel/forms/KELUndoRecorder.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELResources.h"
#include "zed/TApplication.h"

#include <QPalette>
#include <QUndoStack>
#include <QResizeEvent>

IPresentationForm::IPresentationForm(KELConfigContext* context, QWidget* parent)
    : QScrollArea(parent), IPresentation(context)
{
    setWidgetResizable(false);
    setFrameShape(QFrame::NoFrame);
    // The window's own background, as dialogs have it, behind the lines.
    setBackgroundRole(QPalette::Window);
    viewport()->setBackgroundRole(QPalette::Window);
    m_pFilter = new KELFilterBox(this, [this](const QString& text) { ApplyFilter(text); });
    setViewportMargins(0, m_pFilter->Room(), 0, 0);
    m_pUndo = new KELUndoRecorder(*this);
    KELIdlePass::Register(this, [this] { OnIdleUpdateCmdUI(0, 0); });
}

void IPresentationForm::ApplyFilter(const QString& text)
{
    m_filter = text;
    if (!m_pControlContainer)
        return;
    bool changed = false;
    m_pControlContainer->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element)) {
            const bool out = !line->MatchesFilter(text);
            changed = changed || out != line->IsFilteredOut();
            line->SetFilteredOut(out);
        }
    });
    if (!changed)
        return;
    m_pControlContainer->PlaceElements();
    QSize needed;
    m_pControlContainer->ComputeSize(needed);
    // As small as the lines left need: a short list does not scroll.
    m_pControlContainer->resize(needed.expandedTo(viewport()->size()));
}

IPresentationForm::~IPresentationForm() { KELIdlePass::Unregister(this); }

IControlContainer* IPresentationForm::CreateControlContainer(QWidget* parent)
{
    auto* container = new IControlContainer(this, parent);
    ZEDAssertCreationFailed(container != nullptr, KELResources::String(KELString::kFormWindowFailed));
    container->setObjectName(QStringLiteral("Control Container"));
    container->setAutoFillBackground(false);
    // Every field takes the regular font: given once here, the controls
    // inherit it instead of each resolving and propagating its own.
    if (const IApplication* app = GetKELapp())
        container->setFont(*app->GetRegularFont());
    if (!parent && !m_pControlContainer)
        setWidget(container);  // the scroll area owns and scrolls it
    else if (!parent)
        container->setParent(this);
    if (!m_pControlContainer)
        m_pControlContainer = container;
    container->show();
    return container;
}

IPresentationContainer* IPresentationForm::CreateContainer() { return CreateControlContainer(nullptr); }

std::unique_ptr<IPresentationElement> IPresentationForm::CreateElement(IElementInfo& info)
{
    return CreateFormLine(info);
}

std::unique_ptr<IFormLine> IPresentationForm::CreateFormLine(IElementInfo& info)
{
    return std::make_unique<IFormLine>(info, m_pControlContainer, m_controlId);
}

void IPresentationForm::PreCreate() {}

void IPresentationForm::PostCreate()
{
    // New lines (a form made again, a refresh) meet the filter as it stands.
    if (!m_filter.isEmpty())
        ApplyFilter(m_filter);
    OnNewSize();
}

void IPresentationForm::PostProcessReply() { UndoBoundary(); }

QUndoStack* IPresentationForm::GetUndoStack() const { return m_pUndo->Stack(); }

bool IPresentationForm::CanUndo() const
{
    KELIdlePass::RunNow();
    return GetUndoStack()->canUndo();
}

bool IPresentationForm::CanRedo() const
{
    KELIdlePass::RunNow();
    return GetUndoStack()->canRedo();
}

void IPresentationForm::UndoBoundary() { m_pUndo->Boundary(); }

void IPresentationForm::OnNewSize()
{
    if (!m_pControlContainer)
        return;
    m_pControlContainer->PlaceElements();
    QSize needed;
    m_pControlContainer->ComputeSize(needed);
    // Never smaller than it is: the view scrolls what does not fit.
    m_pControlContainer->resize(m_pControlContainer->size().expandedTo(needed));
    m_pControlContainer->update();
}

void IPresentationForm::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    m_pFilter->Place(0);
    if (m_pControlContainer)
        m_pControlContainer->resize(m_pControlContainer->size().expandedTo(viewport()->size()));
}

int IPresentationForm::OnIdleUpdateCmdUI(unsigned long wParam, long lParam)
{
    if (!m_pControlContainer)
        return 0;
    m_pControlContainer->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element); line && !line->IsHidden())
            line->OnIdleUpdateCmdUI(wParam, lParam);
    });
    m_pUndo->Record();
    return 0;
}

void IPresentationForm::SetCurrentState(const char* entity, unsigned int directive)
{
    m_currentEntity = entity ? entity : "";
    m_currentDirective = directive;
    std::optional<TEntitySpec> parsed = TEntitySpec::Parse(m_currentEntity, ZEDGetApplication()->GetDictionary().get());
    m_entity = parsed ? *parsed : TEntitySpec();
}

std::string IPresentationForm::GetSettingSection() const
{
    std::string section;
    GetSettingSectionName(section, 0);
    return section;
}

void IPresentationForm::GetSettingSectionName(std::string& out, long n) const
{
    std::string id;
    GetEntityID(id, m_currentEntity.c_str());
    GetSettingSectionName(out, id.c_str(), static_cast<long>(m_currentDirective), n);
}

void IPresentationForm::GetSettingSectionName(std::string& out, const char* entityId, long directive, long n)
{
    out = std::string(entityId ? entityId : "") + " - " + std::to_string(directive) + " - " + std::to_string(n);
}

void IPresentationForm::GetEntityID(std::string& out, const TEntityClass& entityClass)
{
    out.clear();
    if (entityClass.GetDepth() == 0) {
        out = "()";
        return;
    }
    out = "(" + std::to_string(entityClass.GetCode(0));
    for (std::size_t depth = 1; depth < entityClass.GetDepth(); ++depth) {
        if (entityClass.GetCode(depth) == 0)
            break;
        out += "," + std::to_string(entityClass.GetCode(depth));
    }
    out += ")";
}

void IPresentationForm::GetEntityID(std::string& out, const char* entitySpec)
{
    std::optional<TEntitySpec> entity =
        TEntitySpec::Parse(entitySpec ? entitySpec : "", ZEDGetApplication()->GetDictionary().get());
    GetEntityID(out, entity ? entity->GetEntityClass() : TEntityClass());
}
