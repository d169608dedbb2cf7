// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"
#include "zed/value/TValue.h"

#include <cstddef>
#include <memory>
#include <vector>

/// An owning list of values in order, found by identifier in constant time:
/// what records, requests, replies and event reports keep their values in.
/// A value put under an identifier already held replaces the earlier one in
/// its place. Copies are deep.
class ZED_EXPORT TValueList {
public:
    /// What a value is found by: its identifier, unless the list says otherwise.
    using KeyFunction = unsigned int (*)(const TValue&);
    static unsigned int IdentifierKey(const TValue& value) { return value.GetID(); }

    explicit TValueList(KeyFunction key = &IdentifierKey);
    TValueList(const TValueList& other);
    TValueList& operator=(const TValueList& other);
    TValueList(TValueList&&) noexcept;
    TValueList& operator=(TValueList&&) noexcept;
    ~TValueList();

    void Put(TValuePtr value);
    void Put(const TValue& value) { Put(value.Clone()); }
    /// The value of that identifier, or null.
    const TValue* Find(unsigned int key) const;
    /// The value of that identifier, or TValue::Absent().
    const TValue& operator[](unsigned int key) const;
    bool Remove(unsigned int key);
    void Clear();

    std::size_t Size() const { return m_values.size(); }
    const TValue& At(std::size_t index) const { return *m_values.at(index); }

    bool operator==(const TValueList& other) const;

private:
    struct Index;
    std::size_t Position(unsigned int id) const;
    void Reindex();

    KeyFunction m_key;
    std::vector<TValuePtr> m_values;
    std::vector<unsigned int> m_keys;  // m_values' keys side by side: a scan touches one array
    std::unique_ptr<Index> m_pIndex;   // only once the list is long enough to need it
};
