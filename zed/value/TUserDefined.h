// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/dict/TDictType.h"
#include "zed/value/TValueHolder.h"

/// A value of a user-defined type (data type 79): a value of the base type,
/// wrapped with the definition that names it.
class ZED_EXPORT TUserDefined final : public TValue {
public:
    /// definition: the user type's base under the user type's name.
    TUserDefined(TDictTypePtr definition, TValuePtr value, unsigned int id = 0);
    ~TUserDefined() override;

    ZED_T_DATATYPE GetDatatype() const override { return ZED_DT_USERDEFINED; }
    const TDictTypePtr& GetDefinition() const { return m_definition; }
    const TDictType* GetDictType() const override { return m_definition.get(); }
    /// The wrapped value; absent when there is none.
    const TValue& GetValue() const { return m_value.OrAbsent(); }

protected:
    std::unique_ptr<TValue> CloneValue() const override;
    std::string ContentText() const override { return GetValue().ToString(); }
    bool SameContent(const TValue& other) const override;

private:
    TDictTypePtr m_definition;
    TValueHolder m_value;
};
