// SPDX-License-Identifier: BSD-3-Clause
#include "zed/trace/TTraceRate.h"

bool TTraceRate::Allow(const std::string& kind, std::uint64_t* held, Clock::time_point now)
{
    Window& window = m_windows[kind];
    if (now - window.start >= std::chrono::seconds(1)) {
        if (held)
            *held = window.held;
        window = Window{now, 0, 0};
    } else if (held) {
        *held = 0;
    }
    if (window.written < m_perSecond) {
        ++window.written;
        return true;
    }
    ++window.held;
    return false;
}
