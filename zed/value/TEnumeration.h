// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/dict/TDictType.h"
#include "zed/value/TValue.h"

/// One item of an enumeration: a code whose text comes from its definition.
class ZED_EXPORT TEnumeration final : public TValue {
public:
    using Definition = std::shared_ptr<const TDictTypeEnumeration>;

    /// An absent value of the enumeration.
    explicit TEnumeration(Definition definition = nullptr, unsigned int id = 0);
    TEnumeration(Definition definition, int code, unsigned int id = 0);
    ~TEnumeration() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_ENUMERATION; }
    const Definition& GetDefinition() const { return m_definition; }
    const TDictType* GetDictType() const override { return m_definition.get(); }
    int GetCode() const { return m_code; }
    void SetCode(int code);

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    /// The item's text; the bare code when the definition does not know it.
    std::string ContentText() const override;
    bool SameContent(const TValue& other) const override;

private:
    Definition m_definition;
    int m_code = 0;
};
