// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/ZedWaitSet.h"

#include <poll.h>

#include <algorithm>

std::set<int> ZedWait(const ZedWaitSet& set, std::optional<std::chrono::milliseconds> most)
{
    std::vector<pollfd> polled;
    polled.reserve(set.descriptors.size());
    for (int descriptor : set.descriptors)
        polled.push_back(pollfd{descriptor, POLLIN, 0});
    std::optional<std::chrono::milliseconds> wait = most;
    if (set.deadline) {
        const auto left =
            std::max(std::chrono::milliseconds(0),
                     std::chrono::ceil<std::chrono::milliseconds>(*set.deadline - ZedWaitSet::Clock::now()));
        wait = wait ? std::min(*wait, left) : left;
    }
    std::set<int> readable;
    if (poll(polled.data(), polled.size(), wait ? static_cast<int>(wait->count()) : -1) > 0)
        for (const pollfd& p : polled)
            if (p.revents & (POLLIN | POLLERR | POLLHUP))
                readable.insert(p.fd);
    return readable;
}
