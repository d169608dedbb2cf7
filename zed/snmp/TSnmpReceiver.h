#pragma once

// Where agents' notifications arrive: SNMPv1 and SNMPv2c traps and informs,
// and SNMPv3 informs from the users of the agents file. Informs are
// acknowledged as they are read.

#include "zed/call/ZedWaitSet.h"
#include "zed/snmp/TSnmpSession.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

/// One notification as it came.
struct ZED_EXPORT TSnmpNotification {
    /// The sender's address ("127.0.0.1") and the community or user it spoke as.
    std::string source;
    std::string community;
    bool inform = false;
    /// snmpTrapOID (an SNMPv1 trap's translated as RFC 3584 says).
    ZedOid trap;
    /// Its variables, sysUpTime and snmpTrapOID left out.
    std::vector<TSnmpVarbind> varbinds;
};

/// A UDP endpoint that reads notifications and acknowledges informs.
class ZED_EXPORT TSnmpReceiver {
public:
    /// Listens on the address ("udp:127.0.0.1:1162"); the SNMPv3 agents'
    /// users may send informs. Throws TException when it cannot listen.
    TSnmpReceiver(const std::string& address, const std::vector<TSnmpAgent>& agents);
    TSnmpReceiver(const TSnmpReceiver&) = delete;
    TSnmpReceiver& operator=(const TSnmpReceiver&) = delete;
    ~TSnmpReceiver();

    const std::string& GetAddress() const;

    void AddWaitSet(ZedWaitSet& set) const;
    /// Reads what arrived; the notifications read, oldest first.
    std::vector<TSnmpNotification> ProcessReady(const std::set<int>& readable);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
