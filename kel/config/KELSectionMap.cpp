#include "kel/config/KELSectionMap.h"

#include "kel/config/ISection.h"

#include <unordered_map>

// Keys are views of the sections' own names, which live as long as the
// sections and are never renamed while stored.
struct KELSectionMap::Index {
    std::unordered_map<std::string_view, std::size_t> positions;
};

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
    const auto found = m_pIndex->positions.find(name);
    return found == m_pIndex->positions.end() ? nullptr : m_sections[found->second].get();
}

ISection& KELSectionMap::Put(std::unique_ptr<ISection> section)
{
    if (!m_pIndex)  // moved from
        Reindex();
    ISection& stored = *section;
    const auto found = m_pIndex->positions.find(section->GetSectionName());
    if (found != m_pIndex->positions.end()) {
        const std::size_t at = found->second;
        m_pIndex->positions.erase(found);  // its key views the name of the section going away
        m_sections[at] = std::move(section);
        m_pIndex->positions.emplace(stored.GetSectionName(), at);
        return stored;
    }
    m_sections.push_back(std::move(section));
    m_pIndex->positions.emplace(stored.GetSectionName(), m_sections.size() - 1);
    return stored;
}

bool KELSectionMap::Remove(std::string_view name)
{
    if (!m_pIndex)  // moved from
        return false;
    const auto found = m_pIndex->positions.find(name);
    if (found == m_pIndex->positions.end())
        return false;
    const std::size_t at = found->second;
    m_sections.erase(m_sections.begin() + static_cast<std::ptrdiff_t>(at));
    Reindex();
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
    m_pIndex->positions.clear();
    m_pIndex->positions.reserve(m_sections.size());
    for (std::size_t i = 0; i < m_sections.size(); ++i)
        m_pIndex->positions.emplace(m_sections[i]->GetSectionName(), i);
}
