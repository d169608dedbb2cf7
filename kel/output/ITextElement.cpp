// SPDX-License-Identifier: BSD-3-Clause
#include "kel/output/ITextElement.h"
#include "kel/frame/KELString.h"

#include "kel/frame/KELResources.h"
#include "zed/value/TValue.h"

ITextElement::ITextElement(unsigned int id, std::string name)
    : IPresentationElement(id), m_name(std::move(name)), m_text(KELResources::String(KELString::kNotReturned))
{
}

ITextElement::~ITextElement() = default;

void ITextElement::SetValue(const TValue& value) { m_text = value.ToString(); }

void ITextElement::SetToNotReturned() { m_text = KELResources::String(KELString::kNotReturned); }
