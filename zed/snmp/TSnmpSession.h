// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// One agent's conversation over net-snmp, never waiting: a request goes out
// at once (an SNMPv3 agent's engine is found first, by the same path) and
// its answer, a timeout or a refusal comes back from ProcessReady, which the
// module calls when a descriptor of the wait set is readable or its deadline
// has come. Only datagrams from the agent's own address and port are read
// as its answers; others are refused, counted and traced.

#include "zed/call/ZedWaitSet.h"
#include "zed/snmp/TSnmpAgentsFile.h"
#include "zed/snmp/TSnmpValue.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// An object and its value, as a request carries or an answer brings it.
struct ZED_EXPORT TSnmpVarbind {
    ZedOid oid;
    TSnmpDatum datum;
};

/// How a request ended.
struct ZED_EXPORT TSnmpAnswer {
    enum class Outcome {
        Response,      // the agent answered (its error status may still refuse)
        Timeout,       // no answer after every try
        Unauthorized,  // the agent refused who was asking (an SNMPv3 report)
        Failed,        // it could not be sent (address, keys...)
    };
    Outcome outcome = Outcome::Response;
    long errorStatus = 0;  // SNMP error-status, 0 noError
    long errorIndex = 0;   // the varbind it names, from 1
    std::vector<TSnmpVarbind> varbinds;
    /// What went wrong, for people: "no answer within 2 s (2 tries)".
    std::string reason;
};

/// Seconds as people read them: "2", "0.3".
ZED_EXPORT std::string ZedSnmpSecondsText(double seconds);

/// The name of an SNMP error status: "notWritable", "genErr"...
ZED_EXPORT std::string ZedSnmpErrorStatusName(long status);

/// One agent's requests, sent at once and answered from ProcessReady.
class ZED_EXPORT TSnmpSession {
public:
    enum class Operation { Get, GetNext, GetBulk, Set };
    using Done = std::function<void(TSnmpAnswer)>;

    explicit TSnmpSession(TSnmpAgent agent);
    TSnmpSession(const TSnmpSession&) = delete;
    TSnmpSession& operator=(const TSnmpSession&) = delete;
    ~TSnmpSession();

    const TSnmpAgent& GetAgent() const;

    /// Sends a request (a Get's and GetBulk's varbinds need only their OIDs;
    /// a Set goes with the write community). done runs from ProcessReady,
    /// never within Send. The key forgets the request.
    std::uint64_t Send(Operation operation, std::vector<TSnmpVarbind> varbinds, Done done, int maxRepetitions = 0);
    /// done will not run.
    void Forget(std::uint64_t key);
    bool IsBusy() const;
    /// Datagrams refused because they came from another address or port
    /// than the agent's.
    std::uint64_t GetForeignAnswers() const;

    /// Its sockets, and its next deadline (now when answers wait to be handed on).
    void AddWaitSet(ZedWaitSet& set) const;
    /// Reads what the readable descriptors hold, handles what timed out, and
    /// runs the done of every request that ended.
    void ProcessReady(const std::set<int>& readable);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
