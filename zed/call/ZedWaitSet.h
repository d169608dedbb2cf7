#pragma once

#include "zed/ZedExport.h"

#include <chrono>
#include <cstdint>
#include <optional>
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

/// A call in flight; 0 is none.
using TCallTicket = std::uint64_t;
