// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/IFormLine.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELFilterBox.h"

#include "kel/controls/IControlContainer.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldBuilder.h"
#include "kel/fields/KELCheckedField.h"
#include "kel/fields/IFieldUnit.h"
#include "kel/fields/KELFormContext.h"
#include "kel/controls/ILabel.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELPrompt.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/call/TRequest.h"
#include "zed/value/TUserDefined.h"

IFormLine::IFormLine(IElementInfo& info, IContainer* container, unsigned int& counter)
    : IPresentationElement(static_cast<unsigned int>(info.GetID())), m_counterAtConstruction(counter),
      m_pContainer(container)
{
    if (!info.IsDisplayed())
        return;
    try {
        const unsigned int dt = info.GetDT();
        if (dt != ZED_DT_ATTRIBUTELIST && dt != ZED_DT_EVENTREPORT) {
            KELFormContext* form = container ? container->GetFormContext() : nullptr;
            m_pLabel = std::make_unique<ILabel>(form ? form->GetFormConfigContext() : nullptr, info, container);
            m_pLabel->Create(counter);
        }
        m_counterAtConstruction = counter;
        m_pField = IFieldBuilder::CreateField(container, counter, info);
        if (!info.GetUnits().empty()) {
            m_pUnit = std::make_unique<IFieldUnit>(info, container);
            m_pUnit->Create(counter, info);
        }
    } catch (const ICreationFailedException& failure) {
        m_pField.reset();
        m_pLabel.reset();
        m_pUnit.reset();
        throw ICreationFailedException(failure.ToString());
    }
}

IFormLine::~IFormLine()
{
    m_pField.reset();
    m_pLabel.reset();
    m_pUnit.reset();
}

QWidget* IFormLine::GetLabelWindow() const { return m_pLabel ? m_pLabel->GetControl() : nullptr; }

IField* IFormLine::GetUnitField() const { return m_pUnit.get(); }

void IFormLine::SetPosition(unsigned int position)
{
    m_position = position;
    SetKey(static_cast<int>(position));
}

void IFormLine::ShowLine()
{
    m_hidden = 0;
    if (m_filteredOut)
        return;  // shown again when the filter lets it
    if (m_pField)
        m_pField->ShowWindow();
    if (m_pLabel)
        m_pLabel->ShowWindow();
    if (m_pUnit)
        m_pUnit->ShowWindow();
}

void IFormLine::HideLine()
{
    m_hidden = 1;
    if (m_pField)
        m_pField->HideWindow();
    if (m_pLabel)
        m_pLabel->HideWindow();
    if (m_pUnit)
        m_pUnit->HideWindow();
}

bool IFormLine::MatchesFilter(const QString& filter) const
{
    if (filter.isEmpty())
        return true;
    std::string value;
    if (m_pField)
        m_pField->GetValue(value);
    return (m_pLabel && KELFilterBox::Matches(filter, QString::fromStdString(m_pLabel->GetPresentationName())))
           || (m_pField && KELFilterBox::Matches(filter, QString::fromStdString(m_pField->GetHelp())))
           || KELFilterBox::Matches(filter, QString::fromStdString(value));
}

void IFormLine::SetFilteredOut(bool out)
{
    if (m_filteredOut == out)
        return;
    m_filteredOut = out;
    const bool shown = !out && m_visibility != 0;
    for (IField* part : {m_pField.get(), static_cast<IField*>(m_pUnit.get())})
        if (part)
            shown ? part->ShowWindow() : part->HideWindow();
    if (m_pLabel)
        shown ? m_pLabel->ShowWindow() : m_pLabel->HideWindow();
}

void IFormLine::SetToNotReturned()
{
    if (!m_pField)
        return;
    if (m_pField->IsReadOnly()) {
        m_pField->SetToNotReturned();
        m_hidden = 1;
    }
    // Asked again on purpose: a read-only field is left out of the idle pass, an editable one not.
    if (!m_pField->IsReadOnly()) {
        m_pField->SetToNotReturned();
        m_hidden = 0;
    }
}

void IFormLine::GetPartialRequest(std::string& out)
{
    const std::string name = m_pLabel ? m_pLabel->GetPresentationName() : std::string();
    std::string value;
    if (m_pField)
        m_pField->GetPartialRequest(value);
    if (!value.empty() && value != KELResources::String(KELString::kNotReturned))
        out = name + " = " + value;
}

void IFormLine::FillWithConfig(const std::string& section)
{
    if (m_pField)
        m_pField->FillWithConfig(section);
}

void IFormLine::SaveContents(const std::string& section) const
{
    if (m_pField)
        m_pField->SaveContents(section);
}

void IFormLine::SetValue(const TValue& value)
{
    if (!m_pField)
        return;
    if (value.GetDatatype() != ZED_DT_USERDEFINED) {
        m_pField->SetValue(value);
        return;
    }
    // A user-defined value gets a field of its own definition's kind, read-only.
    const auto& user = static_cast<const TUserDefined&>(value);
    IElementInfo info;
    const TDictTypePtr& definition = user.GetDefinition();
    if (definition) {
        info.SetID(static_cast<int>(definition->GetID()));
        info.SetDT(definition->GetDatatype());
        info.SetHasDictType(1);
        info.SetDictType(*definition);
    }
    info.SetIsDisplayed(1);
    info.SetRequired(0);
    info.SetAccess(ZED_ACCESS_READ_ONLY);
    const QPoint place = m_pField->GetCoordinates();
    m_pField.reset();
    unsigned int counter = m_counterAtConstruction;
    m_pField = IFieldBuilder::CreateField(m_pContainer, counter, info);
    m_pField->Move(place);
    if (!m_pField->IsInitialValueSet())
        m_pField->SetValue(user.GetValue());
    if (m_pContainer)
        m_pContainer->SizeHasChanged();
}

bool IFormLine::ValueChanged()
{
    if (!m_pField || m_pField->IsReadOnly())
        return false;
    std::string text;
    m_pField->GetValue(text);
    if (!m_snapshotTaken) {
        m_initialText = text;
        m_snapshotTaken = true;
    }
    return text != m_initialText;
}

void IFormLine::RememberValue()
{
    m_snapshotTaken = false;
    ValueChanged();
}

int IFormLine::OnIdleUpdateCmdUI(unsigned long, long)
{
    const bool changed = ValueChanged();
    if (changed == m_changedState)
        return 0;
    m_changedState = changed;
    if (m_pLabel) {
        m_pLabel->SetLabelRaised(changed);
        // Every label of the form takes the same width, the widest plus 5, whenever one flips.
        if (auto* lines = dynamic_cast<IControlContainer*>(m_pContainer)) {
            const int width = static_cast<int>(lines->GetLabelMaxWidth()) + 5;
            lines->ForEachElement([width](IPresentationElement& element) {
                if (auto* line = dynamic_cast<IFormLine*>(&element); line && line->GetLabel())
                    line->GetLabel()->ResetSize(width);
            });
        }
    }
    return 0;
}

void IFormLine::Dump()
{
    KEL_TRACE(KEL_TRACE_INFO, "KELFormLine", this)
        << "FormLine (" << GetID() << "): " << (m_pLabel ? m_pLabel->GetPresentationName() : std::string());
    if (m_pField)
        m_pField->Dump();
}

bool IFormLine::Refuse(std::string message)
{
    m_refusal = std::move(message);
    KELPrompt::Message(KELPrompt::Icon::Stop, KELResources::String(KELString::kProblem), m_refusal);
    return false;
}

bool IFormLine::FillRequest(TRequest& request)
{
    m_refusal.clear();
    if (!m_pField)
        return true;
    // A number or a time the field cannot read is not sent as some other
    // value: the operator hears which line holds it.
    if (auto* checked = dynamic_cast<KELCheckedField*>(m_pField.get())) {
        std::string reason;
        if (!checked->CheckText(&reason))
            return Refuse(
                KELResources::Format(KELString::kFieldNotValid, {m_pLabel ? m_pLabel->LabelText() : "", reason}));
    }
    if (std::unique_ptr<TValue> value = m_pField->GetTValue(false)) {
        request.Add(std::move(value));
        return true;
    }
    const bool required = m_pLabel && m_pLabel->IsRequired();
    if (required) {
        m_pField->SetToDefault();
        if (std::unique_ptr<TValue> value = m_pField->GetTValue(false)) {
            request.Add(std::move(value));
            return true;
        }
        return Refuse(KELResources::Format(KELString::kRequiredFieldEmpty, {m_pLabel->LabelText()}));
    }
    if (!ValueChanged())
        return true;
    if (std::unique_ptr<TValue> value = m_pField->GetTValue(true))
        request.Add(std::move(value));
    return true;
}
