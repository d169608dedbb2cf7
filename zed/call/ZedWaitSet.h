// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/ZedExport.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

/// What an event loop waits on for the access library.
struct ZED_EXPORT ZedWaitSet {
    using Clock = std::chrono::steady_clock;
    /// Readable descriptors are someone's turn (the call loop's own wake descriptor among them).
    std::vector<int> descriptors;
    /// When the next timeout falls, if any.
    std::optional<Clock::time_point> deadline;

    /// Takes the earlier of the two deadlines.
    void WaitUntil(Clock::time_point when)
    {
        if (!deadline || when < *deadline)
            deadline = when;
    }
};

/// Waits until a descriptor of the set is readable (or in error), its
/// deadline has come, or at most `most` has passed (none: no limit but the
/// set's); the descriptors that are readable. For callers without an event
/// loop of their own: a host's loop watches the set itself.
ZED_EXPORT std::set<int> ZedWait(const ZedWaitSet& set, std::optional<std::chrono::milliseconds> most = std::nullopt);

/// A call in flight; 0 is none.
using TCallTicket = std::uint64_t;
