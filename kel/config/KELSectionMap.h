// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

class ISection;

/// The sections of one collection of a configuration file, owned, found by
/// name (case-sensitively) in constant time, and kept in the order they were
/// first added, so that a saved file keeps its layout from save to save.
class KEL_EXPORT KELSectionMap {
public:
    KELSectionMap();
    KELSectionMap(const KELSectionMap& other);  // deep: every section cloned
    KELSectionMap& operator=(const KELSectionMap& other);
    KELSectionMap(KELSectionMap&&) noexcept;
    KELSectionMap& operator=(KELSectionMap&&) noexcept;
    ~KELSectionMap();

    ISection* Find(std::string_view name) const;
    /// Stores the section under its name; one already there is replaced in its
    /// place and destroyed.
    ISection& Put(std::unique_ptr<ISection> section);
    /// False when no section has the name.
    bool Remove(std::string_view name);
    void Clear();

    std::size_t Size() const { return m_sections.size(); }
    bool Empty() const { return m_sections.empty(); }
    ISection& At(std::size_t index) const { return *m_sections.at(index); }

private:
    struct Index;
    void Reindex();

    std::vector<std::unique_ptr<ISection>> m_sections;
    std::unique_ptr<Index> m_pIndex;
};
