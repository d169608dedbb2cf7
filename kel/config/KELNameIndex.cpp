// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/KELNameIndex.h"

namespace {

// Sequences this short (most sections are) are scanned, which beats hashing.
constexpr std::size_t kScanLimit = 32;
// Room for a typical section's names at once, instead of regrowing.
constexpr std::size_t kInitialRoom = 16;

}  // namespace

void KELNameIndex::Place(std::size_t position)
{
    const std::size_t mask = m_slots.size() - 1;
    std::size_t s = m_hashes[position] & mask;
    while (m_slots[s] != 0)
        s = (s + 1) & mask;
    m_slots[s] = static_cast<std::uint32_t>(position + 1);
}

void KELNameIndex::Rebuild(std::size_t room)
{
    m_slots.clear();
    if (room <= kScanLimit)
        return;
    // Half full at most: short probes, and little fresh memory to fault in.
    std::size_t size = 16;
    while (size < room * 2)
        size *= 2;
    m_slots.assign(size, 0);
    for (std::size_t i = 0; i < m_hashes.size(); ++i)
        Place(i);
}

void KELNameIndex::Append(std::uint32_t hash)
{
    if (m_hashes.capacity() == 0)
        m_hashes.reserve(kInitialRoom);
    m_hashes.push_back(hash);
    if (m_slots.empty() && m_hashes.size() <= kScanLimit)
        return;
    if (m_hashes.size() * 2 > m_slots.size())
        Rebuild(m_hashes.size() * 2);
    else
        Place(m_hashes.size() - 1);
}

void KELNameIndex::Erase(std::size_t at)
{
    m_hashes.erase(m_hashes.begin() + static_cast<std::ptrdiff_t>(at));
    Rebuild(m_hashes.size());
}

void KELNameIndex::Reserve(std::size_t total)
{
    m_hashes.reserve(total);
    if (total > kScanLimit && m_slots.size() < total * 2)
        Rebuild(total);
}

void KELNameIndex::Clear()
{
    m_hashes.clear();
    m_slots.clear();
}
