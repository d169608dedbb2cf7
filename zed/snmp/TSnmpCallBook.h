// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The SNMP module's calls in flight: each made of parts, one per agent asked
// (or per fault found at once), and completed once every part is in.

#include "zed/call/TManagementModule.h"
#include "zed/snmp/TSnmpWalk.h"

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

class TSnmpSession;

struct TSnmpCall {
    TEntitySpec entity;
    TManagementModule::Completion done;
    std::vector<std::vector<TCallResult>> parts;
    std::size_t open = 0;  // parts not in yet
    std::vector<std::pair<TSnmpSession*, std::uint64_t>> requests;
    std::vector<std::unique_ptr<TSnmpWalk>> walks;
    std::shared_ptr<TSnmpWalk::Budget> budget;  // what its walks read together

    // A part known at once.
    void Now(TCallResult result);
    // A part to come, handed in by TSnmpCallBook::Finish.
    std::size_t Reserve();
};

class TSnmpCallBook {
public:
    // Every call's walks together read at most this much.
    TSnmpCallBook(std::size_t callRows, std::size_t callBytes) : m_callRows(callRows), m_callBytes(callBytes) {}

    TSnmpCall& Open(TCallTicket ticket, TEntitySpec entity, TManagementModule::Completion done);
    void Finish(TCallTicket ticket, std::size_t part, std::vector<TCallResult> results);
    // Completes the call now if no part is still to come.
    void CompleteIfDone(TCallTicket ticket);
    // Forgets the call and what it asked; its walks forget theirs.
    void Cancel(TCallTicket ticket);
    bool HasFinished() const { return !m_finished.empty(); }
    // Completes the calls whose last part came in.
    void CompleteFinished();

private:
    void Complete(TCallTicket ticket);

    std::size_t m_callRows, m_callBytes;
    std::map<TCallTicket, std::unique_ptr<TSnmpCall>> m_calls;
    std::vector<TCallTicket> m_finished;
};
