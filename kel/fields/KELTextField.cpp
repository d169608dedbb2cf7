// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELTextField.h"

#include "kel/controls/KELTypingLimit.h"
#include "kel/model/IElementInfo.h"

#include <QLineEdit>

#include <algorithm>

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

KELTypingLimit* KELTextField::SetUpLineWindow(QLineEdit* editor, const IElementInfo& info)
{
    // The most a line takes, whatever the dictionary allows.
    constexpr unsigned int kMostTyped = 32768;
    KELTypingLimit* limit = KELTypingLimit::Apply(editor, static_cast<int>(std::min(info.GetMaxSize(), kMostTyped)));
    SetWindow(editor);
    Resize(QSize(kLineWidth, TextLineHeight(editor->font())));
    return limit;
}
