// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TUserDefined.h"

TUserDefined::TUserDefined(TDictTypePtr definition, TValuePtr value, unsigned int id)
    : TValue(id, value != nullptr), m_definition(std::move(definition)), m_value(std::move(value))
{
}

TUserDefined::~TUserDefined() = default;

std::unique_ptr<TValue> TUserDefined::CloneValue() const { return std::make_unique<TUserDefined>(*this); }

bool TUserDefined::SameContent(const TValue& other) const
{
    return GetValue() == static_cast<const TUserDefined&>(other).GetValue();
}
