// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// An attribute as a value (data type 82): an attribute identifier with a
// value of any type; and a list of them (data type 66), found by attribute
// code. The two belong together: a list is made of attributes.

#include "zed/value/TScalarValues.h"
#include "zed/value/TValueHolder.h"
#include "zed/value/TValueList.h"

/// The wrapped value's identifier is always the attribute's code: it is set
/// on construction, by SetValue and by SetAttributeID, so a value taken out of
/// an attribute is known by its attribute wherever it goes.
class ZED_EXPORT TAttribute final : public TValue {
public:
    /// Present, with an identifier and no value yet.
    explicit TAttribute(TAttributeID attributeId = TAttributeID(0u), unsigned int id = 0);
    TAttribute(TAttributeID attributeId, TValuePtr value, unsigned int id = 0);
    ~TAttribute() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_ATTRIBUTE; }

    const TAttributeID& GetAttributeID() const { return m_attributeId; }
    void SetAttributeID(TAttributeID attributeId);
    bool HasValue() const { return static_cast<bool>(m_value); }
    /// The attribute's value, or an absent value.
    const TValue& GetValue() const { return m_value.OrAbsent(); }
    void SetValue(TValuePtr value);
    void SetValue(const TValue& value) { SetValue(value.Clone()); }

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    /// "Name = value"
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    TAttributeID m_attributeId;
    TValueHolder m_value;
};

/// Attribute list (data type 66): attributes in order, each with its value.
class ZED_EXPORT TAttributeList final : public TValue {
public:
    explicit TAttributeList(unsigned int id = 0);
    ~TAttributeList() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_ATTRIBUTELIST; }

    /// An attribute of a code already held replaces the earlier one.
    void Add(const TAttribute& attribute) { m_attributes.Put(attribute); }
    void Add(std::unique_ptr<TAttribute> attribute) { m_attributes.Put(std::move(attribute)); }
    std::size_t Size() const { return m_attributes.Size(); }
    const TAttribute& At(std::size_t index) const;
    /// The attribute of that code, or null.
    const TAttribute* FindAttribute(unsigned int attributeCode) const;
    /// The value of the attribute of that code; absent when there is none.
    const TValue& operator[](unsigned int attributeCode) const;
    bool Remove(unsigned int attributeCode) { return m_attributes.Remove(attributeCode); }

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    /// "{ Name = x, Speed = 10 }"
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    TValueList m_attributes;
};
