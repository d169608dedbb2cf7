// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The rows of a table, read column by column with GetBulk (GetNext for
// SNMPv1) as far as each column goes: every column in one request, as many
// rows per request as fit, so a table of a thousand rows takes a few round
// trips rather than a thousand. A walk is bounded by rows, by octets of
// data and by time: an agent that answers without end, with huge values or
// one row at a time cannot take all the memory or keep the call for ever.

#include "zed/snmp/TSnmpSession.h"

#include <chrono>
#include <functional>
#include <string>
#include <map>
#include <memory>
#include <optional>
#include <vector>

/// A table read column by column with GetBulk until each column ends.
class ZED_EXPORT TSnmpWalk {
public:
    /// A row's index (the OID suffix after the column) and its columns' data,
    /// in the order the columns were given; none where a column has no cell.
    using Rows = std::map<ZedOid, std::vector<std::optional<TSnmpDatum>>>;
    /// How a walk ended before the table did, when it did.
    struct Ending {
        /// The answer that ended it: a timeout, a refusal, an error status.
        std::optional<TSnmpAnswer> failure;
        /// The bound it reached: "10000 rows (WalkRows)"; empty when none.
        std::string bound;
    };
    using Done = std::function<void(Ending ending, Rows rows)>;

    /// What the walks of one call read together, over every agent, and the
    /// most they may (the agents file's Calls section).
    struct Budget {
        std::size_t rows = 0;
        std::size_t bytes = 0;
        std::size_t mostRows = TSnmpAgents::kDefaultCallRows;
        std::size_t mostBytes = TSnmpAgents::kDefaultCallBytes;
    };

    /// Where a walk stops: the agent's WalkRows, WalkBytes and WalkTime, and
    /// its call's budget, shared with the walks of the call's other agents.
    struct Bounds {
        std::size_t rows = TSnmpAgent::kDefaultWalkRows;
        std::size_t bytes = TSnmpAgent::kDefaultWalkBytes;
        double seconds = TSnmpAgent::kDefaultWalkTime;
        std::shared_ptr<Budget> call = std::make_shared<Budget>();
    };

    TSnmpWalk(TSnmpSession& session, std::vector<ZedOid> columns, Bounds bounds, Done done);
    TSnmpWalk(const TSnmpWalk&) = delete;
    TSnmpWalk& operator=(const TSnmpWalk&) = delete;
    /// Forgets what is in flight.
    ~TSnmpWalk();

    /// done runs from the session's ProcessReady, at most once.
    void Start();

private:
    void Next();
    void Absorb(TSnmpAnswer answer);
    /// The bound the walk has reached; empty while it has reached none.
    std::string Reached() const;
    bool Full() const;
    void End(Ending ending);

    TSnmpSession& m_session;
    std::vector<ZedOid> m_columns;
    std::vector<ZedOid> m_cursors;
    std::vector<bool> m_active;
    Bounds m_bounds;
    std::chrono::steady_clock::time_point m_deadline;
    Done m_done;
    Rows m_rows;
    std::size_t m_bytes = 0;
    std::uint64_t m_request = 0;
};
