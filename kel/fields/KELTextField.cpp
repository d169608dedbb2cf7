// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELTextField.h"

#include "kel/frame/KELTrace.h"

KELTextField::KELTextField(IElementInfo& info, IContainer* container) : IField(info, container) {}

KELTextField::~KELTextField() = default;

std::string KELTextField::CurrentText() const
{
    std::string text;
    GetValue(text);
    return text;
}

void KELTextField::FillWithConfig(const std::string& key)
{
    std::string text;
    if (ReadConfigText(key, text))
        SetValue(FromSetting(text));
}

void KELTextField::SaveContents(const std::string& key) const
{
    SaveConfigText(key, ToSetting(CurrentText()), KindName());
}

void KELTextField::Dump()
{
    KEL_TRACE(KEL_TRACE_INFO, "KELField", this) << "KEL : " << DumpName() << " Value : " << CurrentText();
}

bool KELTextField::TextChangedSincePutIn() const { return !IsReadOnly() && CurrentText() != m_putIn; }

void KELTextField::SetInitialValue(std::unique_ptr<TValue> value)
{
    m_putIn = CurrentText();
    IField::SetInitialValue(std::move(value));
}

bool KELTextField::SetToNullValue()
{
    SetValue(std::string());
    return true;
}

bool KELTextField::SetToServerDefault()
{
    SetValue(GetDefault());
    return true;
}
