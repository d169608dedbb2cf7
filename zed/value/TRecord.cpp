// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TRecord.h"

TRecord::TRecord(Definition definition, unsigned int id) : TValue(id), m_definition(std::move(definition)) {}

TRecord::~TRecord() = default;

std::unique_ptr<TValue> TRecord::CloneValue() const { return std::make_unique<TRecord>(*this); }

std::string TRecord::ContentText() const
{
    std::string text = "{";
    for (std::size_t i = 0; i < m_members.Size(); ++i) {
        const TValue& member = m_members.At(i);
        const auto* definition = m_definition ? m_definition->FindMember(member.GetID()) : nullptr;
        text += i ? ", " : " ";
        text += definition ? definition->name : "#" + std::to_string(member.GetID());
        text += " = " + member.ToString();
    }
    return text + (m_members.Size() ? " }" : "}");
}

bool TRecord::SameContent(const TValue& other) const
{
    return m_members == static_cast<const TRecord&>(other).m_members;
}
