// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TAttribute.h"

namespace {
unsigned int AttributeCode(const TValue& value)
{
    return static_cast<const TAttribute&>(value).GetAttributeID().GetValue();
}
}  // namespace

TAttribute::TAttribute(TAttributeID attributeId, unsigned int id) : TValue(id), m_attributeId(std::move(attributeId)) {}

TAttribute::TAttribute(TAttributeID attributeId, TValuePtr value, unsigned int id)
    : TValue(id), m_attributeId(std::move(attributeId))
{
    SetValue(std::move(value));
}

void TAttribute::SetValue(TValuePtr value)
{
    if (value)
        value->SetID(m_attributeId.GetValue());
    m_value = std::move(value);
}

void TAttribute::SetAttributeID(TAttributeID attributeId)
{
    m_attributeId = std::move(attributeId);
    if (TValue* value = m_value.get())
        value->SetID(m_attributeId.GetValue());
}

TAttribute::~TAttribute() = default;

std::unique_ptr<TValue> TAttribute::CloneValue() const { return std::make_unique<TAttribute>(*this); }

std::string TAttribute::ContentText() const
{
    return m_attributeId.ToString() + " = " + (m_value ? m_value->ToString() : std::string());
}

bool TAttribute::SameContent(const TValue& other) const
{
    const auto& that = static_cast<const TAttribute&>(other);
    if (m_attributeId.GetValue() != that.m_attributeId.GetValue() || HasValue() != that.HasValue())
        return false;
    return !m_value || *m_value == *that.m_value;
}

TAttributeList::TAttributeList(unsigned int id) : TValue(id), m_attributes(&AttributeCode) {}

TAttributeList::~TAttributeList() = default;

const TAttribute& TAttributeList::At(std::size_t index) const
{
    return static_cast<const TAttribute&>(m_attributes.At(index));
}

const TAttribute* TAttributeList::FindAttribute(unsigned int attributeCode) const
{
    return static_cast<const TAttribute*>(m_attributes.Find(attributeCode));
}

const TValue& TAttributeList::operator[](unsigned int attributeCode) const
{
    const TAttribute* attribute = FindAttribute(attributeCode);
    return attribute ? attribute->GetValue() : TValue::Absent();
}

std::unique_ptr<TValue> TAttributeList::CloneValue() const { return std::make_unique<TAttributeList>(*this); }

std::string TAttributeList::ContentText() const
{
    std::string text = "{";
    for (std::size_t i = 0; i < Size(); ++i)
        text += (i ? ", " : " ") + At(i).ToString();
    return text + (Size() ? " }" : "}");
}

bool TAttributeList::SameContent(const TValue& other) const
{
    return m_attributes == static_cast<const TAttributeList&>(other).m_attributes;
}
