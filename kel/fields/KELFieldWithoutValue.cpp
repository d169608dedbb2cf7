// SPDX-License-Identifier: BSD-3-Clause
#include "kel/fields/KELFieldWithoutValue.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "kel/frame/KELTrace.h"

KELFieldWithoutValue::KELFieldWithoutValue(IElementInfo& info, IContainer* container) : IField(info, container) {}

KELFieldWithoutValue::~KELFieldWithoutValue() = default;

void KELFieldWithoutValue::GetValue(std::string& text) const { text = m_shown; }

void KELFieldWithoutValue::SetToNotReturned()
{
    m_shown = KELResources::String(KELString::kNotReturned);
    Show(QString::fromStdString(m_shown));
}

void KELFieldWithoutValue::SetValue(const std::string& text)
{
    m_shown = text;
    Show(QString::fromStdString(text));
}

void KELFieldWithoutValue::SetValue(const TValue& value) { SetValue(value.ToString()); }

void KELFieldWithoutValue::GetPartialRequest(std::string&) {}

void KELFieldWithoutValue::FillWithConfig(const std::string&) {}

void KELFieldWithoutValue::SaveContents(const std::string&) const {}

void KELFieldWithoutValue::Dump() { KEL_TRACE(KEL_TRACE_INFO, "KELField", this) << DumpPrefix() << m_shown; }

bool KELFieldWithoutValue::SetToNullValue()
{
    SetValue(std::string());
    return true;
}

bool KELFieldWithoutValue::SetToServerDefault() { return false; }

std::unique_ptr<TValue> KELFieldWithoutValue::GetTValue(bool) { return nullptr; }

void KELFieldWithoutValue::Show(const QString&) {}
