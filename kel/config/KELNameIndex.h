// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Where each name of a sequence kept elsewhere stands, by position: a section's
// fields, a configuration's sections. Each name's hash is kept beside its
// position, so that a search compares integers and only confirms a match with
// the text. A short sequence is scanned; past a few dozen names an
// open-addressing table of positions takes over, kept at most half full.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

class KELNameIndex {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    // FNV-1a: names are short, so a simple hash is both quick and well spread.
    static std::uint32_t Hash(std::string_view name)
    {
        std::uint32_t hash = 2166136261u;
        for (const char c : name)
            hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
        return hash;
    }

    // The position whose name is `name`, or npos; nameAt(i) gives position i's name.
    template <typename NameAt>
    std::size_t Find(std::string_view name, std::uint32_t hash, const NameAt& nameAt) const
    {
        if (m_slots.empty()) {
            const auto end = m_hashes.end();
            for (auto it = std::find(m_hashes.begin(), end, hash); it != end; it = std::find(it + 1, end, hash))
                if (nameAt(static_cast<std::size_t>(it - m_hashes.begin())) == name)
                    return static_cast<std::size_t>(it - m_hashes.begin());
            return npos;
        }
        const std::size_t mask = m_slots.size() - 1;
        for (std::size_t s = hash & mask;; s = (s + 1) & mask) {
            const std::uint32_t slot = m_slots[s];
            if (slot == 0)
                return npos;
            if (m_hashes[slot - 1] == hash && nameAt(slot - 1) == name)
                return slot - 1;
        }
    }

    // The name of the next position (the sequence's new last) has this hash.
    void Append(std::uint32_t hash);
    // Position `at` is gone; the later ones move down by one.
    void Erase(std::size_t at);
    // Room for `total` names, table included, so that appending them regrows nothing.
    void Reserve(std::size_t total);
    void Clear();
    std::size_t Size() const { return m_hashes.size(); }

private:
    void Place(std::size_t position);
    void Rebuild(std::size_t room);

    std::vector<std::uint32_t> m_hashes;  // one per position
    std::vector<std::uint32_t> m_slots;   // position + 1; 0 is a free slot
};
