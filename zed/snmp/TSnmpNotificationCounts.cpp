// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpNotificationCounts.h"

namespace {

std::string Counted(std::uint64_t count, const char* one, const char* many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

}  // namespace

std::uint64_t TSnmpNotificationCounts::Refused() const
{
    std::uint64_t sum = 0;
    for (const auto& [reason, count] : refused)
        sum += count;
    return sum;
}

void TSnmpNotificationCounts::Refuse(const std::string& reason) { ++refused[reason]; }

std::string TSnmpNotificationCounts::Summary() const
{
    std::string text;
    const auto part = [&](const std::string& said) { text += (text.empty() ? "" : "; ") + said; };
    if (const std::uint64_t count = Refused()) {
        std::string reasons;
        for (const auto& [reason, n] : refused)
            reasons += (reasons.empty() ? "" : "; ") + reason + ": " + std::to_string(n);
        part(Counted(count, "notification refused", "notifications refused") + " (" + reasons + ")");
    }
    if (lost)
        part(Counted(lost, "datagram lost unread (the receive buffer was full)",
                     "datagrams lost unread (the receive buffer was full)"));
    if (dropped)
        part(Counted(dropped, "event dropped unshown (too many waited)", "events dropped unshown (too many waited)"));
    if (agentAddressesIgnored)
        part(Counted(agentAddressesIgnored, "SNMPv1 trap named another agent address than its sender's",
                     "SNMPv1 traps named another agent address than their sender's"));
    return text;
}
