// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/IFieldEdit.h"
#include "kel/frame/KELString.h"

#include "kel/controls/KELControl.h"
#include "kel/controls/KELTypingLimit.h"
#include "kel/fields/IContainer.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"
#include "kel/model/IElementInfo.h"
#include "zed/TApplication.h"
#include "zed/ZedText.h"
#include "zed/value/TEntitySpec.h"
#include "zed/value/TScalarValues.h"

#include <QLineEdit>

#include <optional>

namespace {

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// Octets that are not text come as hexadecimal, "00:1a:2b"; shown read-only
// they get their ASCII beside them, as a dump has it: "00:1a:2b  |..+|".
std::optional<std::string> WithAscii(const std::string& text)
{
    if (text.size() < 5 || text.size() % 3 != 2)
        return std::nullopt;
    std::string ascii;
    for (std::size_t at = 0; at < text.size(); at += 3) {
        const int high = HexDigit(text[at]), low = HexDigit(text[at + 1]);
        if (high < 0 || low < 0 || (at + 2 < text.size() && text[at + 2] != ':'))
            return std::nullopt;
        const int octet = high * 16 + low;
        ascii.push_back(octet >= 0x20 && octet < 0x7f ? static_cast<char>(octet) : '.');
    }
    return text + "  |" + ascii + "|";
}

}  // namespace

IFieldEdit::IFieldEdit(IElementInfo& info, IContainer* container) : KELTextField(info, container) {}

IFieldEdit::~IFieldEdit() = default;

void IFieldEdit::Create(unsigned int& id, IElementInfo& info)
{
    auto* edit = new KELControl<QLineEdit>(this, GetContainer());
    m_pLimit = SetUpLine(edit, id, info);
    m_pEdit = edit;
}

void IFieldEdit::GetValue(std::string& text) const
{
    if (m_dump)
        text = m_dumped;  // the octets, not their dump
    else
        text = m_pEdit ? m_pEdit->text().toStdString() : std::string();
}

void IFieldEdit::SetToNotReturned() { SetValue(KELResources::String(KELString::kNotReturned)); }

void IFieldEdit::SetValue(const std::string& text)
{
    if (!m_pEdit)
        return;
    const std::optional<std::string> dump =
        IsReadOnly() && GetDT() == ZED_DT_OCTETSTRING ? WithAscii(text) : std::nullopt;
    m_dump = dump.has_value();
    m_dumped = m_dump ? text : std::string();
    m_pLimit->SetText(QString::fromStdString(dump ? *dump : text));
    m_pEdit->setCursorPosition(0);  // the start of a long text, not its end
}

// A value with a reason shows the reason's text: ToString gives it.
// One line: a value's control characters (a device's ESC, CR, LF) show escaped.
void IFieldEdit::SetValue(const TValue& value) { SetValue(ZedEscapeControls(value.ToString())); }

void IFieldEdit::GetPartialRequest(std::string& request) { GetValue(request); }

std::unique_ptr<TValue> IFieldEdit::ValueOfText(unsigned int dt, const std::string& text)
{
    const TDictionary* dictionary = ZEDGetApplication()->GetDictionary().get();
    switch (dt) {
    case ZED_DT_SIMPLENAME: return text.empty() ? std::make_unique<TSimpleName>() : std::make_unique<TSimpleName>(text);
    case ZED_DT_FULLNAME: return text.empty() ? std::make_unique<TFullName>() : std::make_unique<TFullName>(text);
    case ZED_DT_ENTITYSPEC: {
        if (text.empty())
            return std::make_unique<TEntitySpec>();
        std::optional<TEntitySpec> entity = TEntitySpec::Parse(text, dictionary);
        return entity ? std::make_unique<TEntitySpec>(*entity) : nullptr;
    }
    case ZED_DT_ENTITYCLASS: {
        if (text.empty())
            return std::make_unique<TEntityClass>();
        std::optional<TEntitySpec> entity = TEntitySpec::Parse(text, dictionary);
        return entity ? std::make_unique<TEntityClass>(entity->GetEntityClass()) : nullptr;
    }
    // An identifier is chosen by name in the attribute field; as text it stays unread.
    case ZED_DT_ATTRIBUTEID: return std::make_unique<TAttributeID>();
    default: return nullptr;  // octets, times, lists and reports are shown, not returned
    }
}

std::unique_ptr<TValue> IFieldEdit::GetTValue(bool always)
{
    const std::string text = CurrentText();
    if (text.empty() && !always)
        return nullptr;
    // The kinds a text field returns are ValueOfText's; others give none.
    std::unique_ptr<TValue> value = ValueOfText(GetDT(), text);
    if (!value)
        return nullptr;
    value->SetID(GetID());
    if (DefaultAllowed() == ZED_DEFAULT_SERVER && text == GetDefault())
        value->SetDefault();
    return value;
}
