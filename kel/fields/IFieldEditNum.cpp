// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldEditNum.h"
#include "kel/frame/KELString.h"

#include "kel/controls/IControlEditNum.h"
#include "kel/controls/KELTypingLimit.h"
#include "kel/fields/IContainer.h"
#include "kel/fields/IFieldEdit.h"
#include "kel/frame/ICreationFailedException.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"

#include <cstdlib>
#include "kel/model/KELElementHelp.h"

IFieldEditNum::IFieldEditNum(IElementInfo& info, IContainer* container)
    : KELTextField(info, container), m_range(info.GetRange())
{
}

std::string IFieldEditNum::OutOfRange(const std::string& text) const
{
    if (!m_range)
        return {};
    char* end = nullptr;
    const long long value = std::strtoll(text.c_str(), &end, 10);
    if (end != text.c_str() && value >= m_range->low && value <= m_range->high)
        return {};
    return "a whole number from " + std::to_string(m_range->low) + " to " + std::to_string(m_range->high);
}

IFieldEditNum::~IFieldEditNum() = default;

void IFieldEditNum::Create(unsigned int& id, IElementInfo& info)
{
    auto* edit = new IControlEditNum(this, GetContainer());
    // Made as the text field is.
    m_pLimit = SetUpLine(edit, id, info);
    m_pEdit = edit;
    // A number's tip is its type's presentation name, where a text's is the type's name.
    try {
        if (GetContainer() && info.HasDictType() && info.GetDictType())
            GetContainer()->AddToolTip(edit, QString::fromStdString(info.GetDictType()->GetPresentationName()));
    } catch (const ICreationFailedException&) {
        throw;
    } catch (const std::exception& e) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELField", this)
            << "KEL Exception catched : IFieldEditNum::Create Get Type Presentation Name : " << e.what();
    } catch (...) {
        KEL_TRACE(KEL_TRACE_EXCP, "KELField", this)
            << "KEL Exception catched : IFieldEditNum::Create Get Type Presentation Name : Unknown exception ";
    }
}

void IFieldEditNum::GetValue(std::string& text) const
{
    text = m_pEdit ? m_pEdit->text().toStdString() : std::string();
}

void IFieldEditNum::SetToNotReturned() { SetValue(std::string()); }

void IFieldEditNum::SetValue(const std::string& text)
{
    if (!m_pEdit)
        return;
    m_pLimit->SetText(QString::fromStdString(text));
    m_pEdit->MarkInvalid(QString());
}

void IFieldEditNum::SetValue(const TValue& value)
{
    RememberPutIn(value.ToString());
    SetValue(value.ToString());
    SetInitialValue(value.Clone());
}

void IFieldEditNum::GetPartialRequest(std::string& request)
{
    GetValue(request);
    if (request.empty())
        request = KELResources::String(KELString::kNotReturned);
}

bool IFieldEditNum::ValueChanged() const { return TextChangedSincePutIn(); }

bool IFieldEditNum::CheckText(std::string* reason)
{
    const std::string text = CurrentText();
    // Empty, or the server default's text: the request then carries a default value.
    if (text.empty() || (DefaultAllowed() == ZED_DEFAULT_SERVER && text == GetDefault()))
        return true;
    std::string normalised = text;
    const bool valid = Valid(normalised);
    const std::string outside = valid ? OutOfRange(normalised) : std::string();
    if (valid && outside.empty())
        return true;
    if (reason)
        *reason = KELResources::Format(KELString::kNotANumberOfKind,
                                       {text, valid ? outside : KELElementHelp::Accepted(GetDT())});
    return false;
}

void IFieldEditNum::ControlCallback(int code, void*)
{
    if (!CheckOnCallback(m_pEdit, code, IsReadOnly() != 0))
        return;
    if (code == KEL_CONTROL_KILLFOCUS) {
        // Leaving the field puts a valid text in the kind's own form.
        std::string text = CurrentText();
        if (!text.empty() && Valid(text))
            m_pLimit->SetText(QString::fromStdString(text));
    }
}

std::unique_ptr<TValue> IFieldEditNum::GetTValue(bool always)
{
    return ScalarTValue(
        always, [this] { return MakeEmpty(); }, [this](const std::string& text) { return MakeValue(text); });
}
