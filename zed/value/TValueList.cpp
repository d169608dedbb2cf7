// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TValueList.h"

#include <unordered_map>

namespace {
// Lists this short are searched by scanning their keys, which beats hashing
// and spares most lists (records, attribute lists) building an index at all.
constexpr std::size_t kScanLimit = 64;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);
}  // namespace

struct TValueList::Index {
    std::unordered_map<unsigned int, std::size_t> positions;
};

TValueList::TValueList(KeyFunction key) : m_key(key) {}

TValueList::TValueList(const TValueList& other) : m_key(other.m_key), m_keys(other.m_keys)
{
    m_values.reserve(other.m_values.size());
    for (const TValuePtr& value : other.m_values)
        m_values.push_back(value->Clone());
    Reindex();
}

TValueList& TValueList::operator=(const TValueList& other)
{
    if (this != &other) {
        TValueList copy(other);
        *this = std::move(copy);
    }
    return *this;
}

TValueList::TValueList(TValueList&&) noexcept = default;
TValueList& TValueList::operator=(TValueList&&) noexcept = default;
TValueList::~TValueList() = default;

void TValueList::Put(TValuePtr value)
{
    if (!value)
        return;
    const unsigned int id = m_key(*value);
    if (const std::size_t at = Position(id); at != kNone) {
        m_values[at] = std::move(value);
        return;
    }
    m_values.push_back(std::move(value));
    m_keys.push_back(id);
    if (m_pIndex)
        m_pIndex->positions.emplace(id, m_values.size() - 1);
    else if (m_values.size() > kScanLimit)
        Reindex();
}

std::size_t TValueList::Position(unsigned int id) const
{
    if (m_pIndex) {
        const auto found = m_pIndex->positions.find(id);
        return found == m_pIndex->positions.end() ? kNone : found->second;
    }
    for (std::size_t i = 0; i < m_keys.size(); ++i)
        if (m_keys[i] == id)
            return i;
    return kNone;
}

const TValue* TValueList::Find(unsigned int id) const
{
    const std::size_t at = Position(id);
    return at == kNone ? nullptr : m_values[at].get();
}

const TValue& TValueList::operator[](unsigned int id) const
{
    const TValue* value = Find(id);
    return value ? *value : TValue::Absent();
}

bool TValueList::Remove(unsigned int id)
{
    const std::size_t at = Position(id);
    if (at == kNone)
        return false;
    m_values.erase(m_values.begin() + static_cast<std::ptrdiff_t>(at));
    m_keys.erase(m_keys.begin() + static_cast<std::ptrdiff_t>(at));
    Reindex();
    return true;
}

void TValueList::Clear()
{
    m_values.clear();
    m_keys.clear();
    m_pIndex.reset();
}

bool TValueList::operator==(const TValueList& other) const
{
    if (m_values.size() != other.m_values.size())
        return false;
    for (std::size_t i = 0; i < m_values.size(); ++i)
        if (!(*m_values[i] == *other.m_values[i]))
            return false;
    return true;
}

void TValueList::Reindex()
{
    if (m_values.size() <= kScanLimit) {
        m_pIndex.reset();
        return;
    }
    m_pIndex = std::make_unique<Index>();
    m_pIndex->positions.reserve(m_values.size() * 2);
    for (std::size_t i = 0; i < m_keys.size(); ++i)
        m_pIndex->positions.emplace(m_keys[i], i);
}
