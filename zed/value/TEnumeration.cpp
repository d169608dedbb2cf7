// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TEnumeration.h"

TEnumeration::TEnumeration(Definition definition, unsigned int id)
    : TValue(id, false), m_definition(std::move(definition))
{
}

TEnumeration::TEnumeration(Definition definition, int code, unsigned int id)
    : TValue(id), m_definition(std::move(definition)), m_code(code)
{
}

TEnumeration::~TEnumeration() = default;

void TEnumeration::SetCode(int code)
{
    m_code = code;
    MarkPresent();
}

std::unique_ptr<TValue> TEnumeration::CloneValue() const { return std::make_unique<TEnumeration>(*this); }

std::string TEnumeration::ContentText() const
{
    if (m_definition)
        if (const auto* item = m_definition->FindCode(m_code))
            return item->text;
    return std::to_string(m_code);
}

bool TEnumeration::SameContent(const TValue& other) const
{
    return m_code == static_cast<const TEnumeration&>(other).m_code;
}
