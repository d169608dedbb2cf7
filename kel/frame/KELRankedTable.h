// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A table of kinds a host can add to: each entry a key it applies to, a rank
// and a factory, kept while the registration handle given for it lives.
// Entries keep the order they were added in: of equal rank the later one
// wins. KEL's field kinds and output kinds are such tables.

#include "kel/frame/KELRegistration.h"

#include <algorithm>
#include <cstdint>
#include <vector>

template <class Key, class Factory>
class KELRankedTable {
public:
    struct Entry {
        std::uint64_t id;
        Key key;
        int rank;
        Factory make;
    };

    // For KEL's own kinds, which stay.
    void Add(Key key, int rank, Factory make) { AddEntry(std::move(key), rank, std::move(make)); }
    // The table must outlive the handle: KEL's tables live as long as the program.
    KELRegistration Register(Key key, int rank, Factory make)
    {
        const std::uint64_t id = AddEntry(std::move(key), rank, std::move(make));
        return KELRegistration(
            [this, id] { std::erase_if(m_entries, [id](const Entry& entry) { return entry.id == id; }); });
    }
    const std::vector<Entry>& Entries() const { return m_entries; }

    // The factories of the entries that apply, highest rank first, of equal
    // rank the later; copies, so that a factory may register others.
    template <class Applies>
    std::vector<Factory> Ranked(Applies applies) const
    {
        std::vector<const Entry*> matching;
        for (const Entry& entry : m_entries)
            if (applies(entry.key))
                matching.push_back(&entry);
        std::stable_sort(matching.begin(), matching.end(), [](const Entry* a, const Entry* b) {
            return a->rank != b->rank ? a->rank > b->rank : a->id > b->id;
        });
        std::vector<Factory> factories;
        for (const Entry* entry : matching)
            factories.push_back(entry->make);
        return factories;
    }

private:
    std::uint64_t AddEntry(Key key, int rank, Factory make)
    {
        m_entries.push_back(Entry{++m_lastId, std::move(key), rank, std::move(make)});
        return m_lastId;
    }

    std::vector<Entry> m_entries;
    std::uint64_t m_lastId = 0;
};
