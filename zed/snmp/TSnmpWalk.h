#pragma once

// The rows of a table, read column by column with GetBulk (GetNext for
// SNMPv1) as far as each column goes: every column in one request, as many
// rows per request as fit, so a table of a thousand rows takes a few round
// trips rather than a thousand.

#include "zed/snmp/TSnmpSession.h"

#include <functional>
#include <map>
#include <optional>
#include <vector>

/// A table read column by column with GetBulk until each column ends.
class ZED_EXPORT TSnmpWalk {
public:
    /// A row's index (the OID suffix after the column) and its columns' data,
    /// in the order the columns were given; none where a column has no cell.
    using Rows = std::map<ZedOid, std::vector<std::optional<TSnmpDatum>>>;
    /// failure: how the walk ended early, when it did; rows: what was read.
    using Done = std::function<void(std::optional<TSnmpAnswer> failure, Rows rows)>;

    /// Rows past this many are not read: the walk ends as if the table did.
    static constexpr std::size_t kMostRows = 100000;

    TSnmpWalk(TSnmpSession& session, std::vector<ZedOid> columns, Done done);
    TSnmpWalk(const TSnmpWalk&) = delete;
    TSnmpWalk& operator=(const TSnmpWalk&) = delete;
    /// Forgets what is in flight.
    ~TSnmpWalk();

    /// done runs from the session's ProcessReady, at most once.
    void Start();

private:
    void Next();
    void Absorb(TSnmpAnswer answer);

    TSnmpSession& m_session;
    std::vector<ZedOid> m_columns;
    std::vector<ZedOid> m_cursors;
    std::vector<bool> m_active;
    Done m_done;
    Rows m_rows;
    std::uint64_t m_request = 0;
};
