// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Trace lines that something from outside causes (a refused notification, a
// foreign answer) come at the rate the outside chooses: a flood must not fill
// the trace or slow the reader. A rate lets a few lines of each kind through
// every second and says how many it held back.

#include "zed/ZedExport.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>

/// At most a number of trace lines of each kind a second.
class ZED_EXPORT TTraceRate {
public:
    using Clock = std::chrono::steady_clock;

    explicit TTraceRate(std::uint32_t perSecond = kDefaultPerSecond) : m_perSecond(perSecond) {}

    static constexpr std::uint32_t kDefaultPerSecond = 10;

    /// Whether a line of this kind may be written now. held, when given,
    /// gets how many lines of the kind were held back in the second before
    /// this one, once, so that the caller can say so.
    bool Allow(const std::string& kind, std::uint64_t* held = nullptr, Clock::time_point now = Clock::now());

private:
    struct Window {
        Clock::time_point start;
        std::uint32_t written = 0;
        std::uint64_t held = 0;
    };
    std::uint32_t m_perSecond;
    std::map<std::string, Window> m_windows;
};
