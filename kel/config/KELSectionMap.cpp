// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELSectionMap.h"

#include "kel/config/ISection.h"

#include "kel/config/KELNameIndex.h"

struct KELSectionMap::Index {
    KELNameIndex names;
};

namespace {

// The name at a position, for the index to confirm a match with.
auto NamesOf(const std::vector<std::unique_ptr<ISection>>& sections)
{
    return [&sections](std::size_t i) -> std::string_view { return sections[i]->GetSectionName(); };
}

}  // namespace

KELSectionMap::KELSectionMap() : m_pIndex(std::make_unique<Index>()) {}

KELSectionMap::KELSectionMap(const KELSectionMap& other) : KELSectionMap()
{
    m_sections.reserve(other.m_sections.size());
    for (const auto& section : other.m_sections)
        m_sections.push_back(section->Clone());
    Reindex();
}

KELSectionMap& KELSectionMap::operator=(const KELSectionMap& other)
{
    if (this != &other) {
        KELSectionMap copy(other);
        *this = std::move(copy);
    }
    return *this;
}

KELSectionMap::KELSectionMap(KELSectionMap&&) noexcept = default;
KELSectionMap& KELSectionMap::operator=(KELSectionMap&&) noexcept = default;
KELSectionMap::~KELSectionMap() = default;

ISection* KELSectionMap::Find(std::string_view name) const
{
    if (!m_pIndex)  // moved from
        return nullptr;
    const std::size_t at = m_pIndex->names.Find(name, KELNameIndex::Hash(name), NamesOf(m_sections));
    return at == KELNameIndex::npos ? nullptr : m_sections[at].get();
}

ISection& KELSectionMap::Put(std::unique_ptr<ISection> section)
{
    if (!m_pIndex)  // moved from
        Reindex();
    ISection& stored = *section;
    const std::uint32_t hash = KELNameIndex::Hash(section->GetSectionName());
    const std::size_t at = m_pIndex->names.Find(section->GetSectionName(), hash, NamesOf(m_sections));
    if (at != KELNameIndex::npos) {
        m_sections[at] = std::move(section);  // the same name: its place and hash stay
        return stored;
    }
    m_sections.push_back(std::move(section));
    m_pIndex->names.Append(hash);
    return stored;
}

bool KELSectionMap::Remove(std::string_view name)
{
    if (!m_pIndex)  // moved from
        return false;
    const std::size_t at = m_pIndex->names.Find(name, KELNameIndex::Hash(name), NamesOf(m_sections));
    if (at == KELNameIndex::npos)
        return false;
    m_sections.erase(m_sections.begin() + static_cast<std::ptrdiff_t>(at));
    m_pIndex->names.Erase(at);
    return true;
}

void KELSectionMap::Clear()
{
    m_sections.clear();
    Reindex();
}

void KELSectionMap::Reindex()
{
    if (!m_pIndex)
        m_pIndex = std::make_unique<Index>();
    m_pIndex->names.Clear();
    m_pIndex->names.Reserve(m_sections.size());
    for (const auto& section : m_sections)
        m_pIndex->names.Append(KELNameIndex::Hash(section->GetSectionName()));
}
