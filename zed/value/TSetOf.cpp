// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TSetOf.h"

TConstructedOf::TConstructedOf(Definition definition, unsigned int id) : TValue(id), m_definition(std::move(definition))
{
}

TConstructedOf::~TConstructedOf() = default;

void TConstructedOf::Add(TValuePtr element)
{
    if (element)
        m_elements.emplace_back(std::move(element));
}

std::string TConstructedOf::ContentText() const
{
    std::string text = "{";
    for (std::size_t i = 0; i < m_elements.size(); ++i)
        text += (i ? ", " : " ") + m_elements[i]->ToString();
    return text + (m_elements.empty() ? "}" : " }");
}

bool TConstructedOf::SameContent(const TValue& other) const
{
    const auto& that = static_cast<const TConstructedOf&>(other);
    if (m_elements.size() != that.m_elements.size())
        return false;
    for (std::size_t i = 0; i < m_elements.size(); ++i)
        if (!(*m_elements[i] == *that.m_elements[i]))
            return false;
    return true;
}

TSetOf::~TSetOf() = default;
std::unique_ptr<TValue> TSetOf::CloneValue() const { return std::make_unique<TSetOf>(*this); }

TSequenceOf::~TSequenceOf() = default;
std::unique_ptr<TValue> TSequenceOf::CloneValue() const { return std::make_unique<TSequenceOf>(*this); }
