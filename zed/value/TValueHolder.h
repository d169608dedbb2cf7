// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/value/TValue.h"

/// Owns one value (or none) and copies it deeply: lets classes that own
/// values keep the compiler's copy operations.
class TValueHolder {
public:
    TValueHolder() = default;
    TValueHolder(TValuePtr value) : m_value(std::move(value)) {}
    TValueHolder(const TValueHolder& other) : m_value(other.m_value ? other.m_value->Clone() : nullptr) {}
    TValueHolder& operator=(const TValueHolder& other)
    {
        if (this != &other)
            m_value = other.m_value ? other.m_value->Clone() : nullptr;
        return *this;
    }
    TValueHolder(TValueHolder&&) noexcept = default;
    TValueHolder& operator=(TValueHolder&&) noexcept = default;

    explicit operator bool() const { return m_value != nullptr; }
    const TValue* get() const { return m_value.get(); }
    TValue* get() { return m_value.get(); }
    const TValue& operator*() const { return *m_value; }
    const TValue* operator->() const { return m_value.get(); }
    /// The value, or the shared absent value.
    const TValue& OrAbsent() const { return m_value ? *m_value : TValue::Absent(); }

private:
    TValuePtr m_value;
};
