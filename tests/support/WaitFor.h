// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Tests wait for what they expect, not for a time: a condition is asked
// again every few milliseconds until it holds or the time is up.

#include <chrono>
#include <functional>
#include <thread>

/// True once holds() is; false when it was not within the time.
inline bool WaitFor(const std::function<bool()>& holds, std::chrono::milliseconds within = std::chrono::seconds(5))
{
    const auto until = std::chrono::steady_clock::now() + within;
    while (!holds()) {
        if (std::chrono::steady_clock::now() >= until)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}
