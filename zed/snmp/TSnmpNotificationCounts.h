// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What became of the notifications that reached the receiver: how many were
// taken, refused (and why), lost before they could be read, or dropped
// because nobody took them in time. Nothing is turned away unsaid: these
// counts are what an operator is shown.

#include "zed/ZedExport.h"

#include <cstdint>
#include <map>
#include <string>

/// A receiver's and its module's notification counts, from their start.
struct ZED_EXPORT TSnmpNotificationCounts {
    /// Notifications of the agents file's agents that became events.
    std::uint64_t accepted = 0;
    /// Notifications refused, by reason ("the community is not the agent's").
    std::map<std::string, std::uint64_t> refused;
    /// SNMPv1 traps whose agent-address named a host other than their
    /// sender; they were taken as their sender's.
    std::uint64_t agentAddressesIgnored = 0;
    /// Datagrams the system dropped unread because the receive buffer was full.
    std::uint64_t lost = 0;
    /// Events dropped, oldest first, because more waited than the bound allows.
    std::uint64_t dropped = 0;

    std::uint64_t Refused() const;
    /// Adds a refusal of that reason.
    void Refuse(const std::string& reason);
    /// One line for people, empty when nothing was refused, lost or dropped:
    /// "3 notifications refused (the community is not the agent's: 2; the
    /// sender is no agent of the agents file: 1); 40 lost unread".
    std::string Summary() const;
};
