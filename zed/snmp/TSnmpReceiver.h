// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Where agents' notifications arrive: SNMPv1 and SNMPv2c traps and informs,
// and SNMPv3 informs from the users of the agents file. A notification is
// believed only once it is checked: it comes from the host of an agent of the
// agents file, with that agent's community, or as its user at its security
// level or stronger. An inform is acknowledged only then. What is refused is
// counted by reason and traced, never dropped unsaid; an SNMPv1 trap's
// agent-address is never taken over the address it came from.

#include "zed/call/ZedWaitSet.h"
#include "zed/snmp/TSnmpNotificationCounts.h"
#include "zed/snmp/TSnmpSession.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

/// One notification that passed its checks.
struct ZED_EXPORT TSnmpNotification {
    /// The agent of the agents file it is from.
    std::string agent;
    /// The address it came from ("127.0.0.1") and the community or user it spoke as.
    std::string source;
    std::string community;
    bool inform = false;
    /// snmpTrapOID (an SNMPv1 trap's translated as RFC 3584 says).
    ZedOid trap;
    /// Its variables, sysUpTime and snmpTrapOID left out.
    std::vector<TSnmpVarbind> varbinds;
};

/// A UDP endpoint that reads, checks and acknowledges notifications.
class ZED_EXPORT TSnmpReceiver {
public:
    /// Datagrams read in one turn at most: a flood leaves the rest to the
    /// next turn instead of holding the event loop.
    static constexpr std::size_t kMostPerTurn = 1000;

    /// Listens on the address ("udp:127.0.0.1:1162") for the agents'
    /// notifications. Throws TException when it cannot listen.
    TSnmpReceiver(const std::string& address, const std::vector<TSnmpAgent>& agents);
    TSnmpReceiver(const TSnmpReceiver&) = delete;
    TSnmpReceiver& operator=(const TSnmpReceiver&) = delete;
    ~TSnmpReceiver();

    const std::string& GetAddress() const;
    /// What was taken, refused and lost since the receiver started.
    TSnmpNotificationCounts GetCounts() const;

    void AddWaitSet(ZedWaitSet& set) const;
    /// Reads what waits (up to kMostPerTurn datagrams); the notifications
    /// that passed, oldest first.
    std::vector<TSnmpNotification> ProcessReady(const std::set<int>& readable);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
