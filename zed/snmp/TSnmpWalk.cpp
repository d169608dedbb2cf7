// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpWalk.h"

#include <algorithm>

namespace {

// Varbinds asked for per request: enough rows per round trip that a long
// table costs few of them; an agent answers fewer when its message would be
// too large.
constexpr int kVarbindsPerRequest = 120;

bool Within(const ZedOid& oid, const ZedOid& prefix)
{
    return oid.size() > prefix.size() && std::equal(prefix.begin(), prefix.end(), oid.begin());
}

// What a cell holds in octets, near enough to bound a walk's memory.
std::size_t CellBytes(const TSnmpVarbind& varbind)
{
    constexpr std::size_t kFixed = sizeof(TSnmpDatum);
    return kFixed + varbind.datum.octets.size()
           + (varbind.oid.size() + varbind.datum.oid.size()) * sizeof(std::uint32_t);
}

}  // namespace

TSnmpWalk::TSnmpWalk(TSnmpSession& session, std::vector<ZedOid> columns, Bounds bounds, Done done)
    : m_session(session), m_columns(std::move(columns)), m_cursors(m_columns), m_active(m_columns.size(), true),
      m_bounds(bounds), m_done(std::move(done))
{
}

TSnmpWalk::~TSnmpWalk()
{
    if (m_request)
        m_session.Forget(m_request);
}

void TSnmpWalk::Start()
{
    m_deadline = std::chrono::steady_clock::now()
                 + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                     std::chrono::duration<double>(m_bounds.seconds));
    Next();
}

std::string TSnmpWalk::Reached() const
{
    if (m_rows.size() >= m_bounds.rows)
        return std::to_string(m_rows.size()) + " rows were read, the most an agent may give (WalkRows)";
    if (m_bytes >= m_bounds.bytes)
        return std::to_string(m_bytes) + " octets were read, the most an agent may give (WalkBytes)";
    if (const Budget& call = *m_bounds.call; call.rows >= call.mostRows)
        return "the call's walks read " + std::to_string(call.rows) + " rows, the most a call may (Calls, MostRows)";
    if (const Budget& call = *m_bounds.call; call.bytes >= call.mostBytes)
        return "the call's walks read " + std::to_string(call.bytes)
               + " octets, the most a call may (Calls, MostBytes)";
    if (std::chrono::steady_clock::now() >= m_deadline)
        return "the walk took longer than the " + ZedSnmpSecondsText(m_bounds.seconds)
               + " s an agent may take (WalkTime)";
    return {};
}

bool TSnmpWalk::Full() const
{
    const Budget& call = *m_bounds.call;
    return m_rows.size() >= m_bounds.rows || m_bytes >= m_bounds.bytes || call.rows >= call.mostRows
           || call.bytes >= call.mostBytes;
}

void TSnmpWalk::End(Ending ending)
{
    m_request = 0;
    Done done = std::move(m_done);
    done(std::move(ending), std::move(m_rows));
}

void TSnmpWalk::Next()
{
    std::vector<TSnmpVarbind> asked;
    for (std::size_t c = 0; c < m_columns.size(); ++c)
        if (m_active[c])
            asked.push_back(TSnmpVarbind{m_cursors[c], {}});
    if (asked.empty()) {
        End({});
        return;
    }
    if (std::string bound = Reached(); !bound.empty()) {
        End({std::nullopt, std::move(bound)});
        return;
    }
    const int repetitions = std::max(1, kVarbindsPerRequest / static_cast<int>(asked.size()));
    m_request = m_session.Send(
        TSnmpSession::Operation::GetBulk, std::move(asked), [this](TSnmpAnswer answer) { Absorb(std::move(answer)); },
        repetitions);
}

void TSnmpWalk::Absorb(TSnmpAnswer answer)
{
    m_request = 0;
    if (answer.outcome != TSnmpAnswer::Outcome::Response || answer.errorStatus != 0) {
        End({std::move(answer), {}});
        return;
    }
    std::vector<std::size_t> asked;
    for (std::size_t c = 0; c < m_columns.size(); ++c)
        if (m_active[c])
            asked.push_back(c);
    bool progressed = false;
    for (std::size_t k = 0; k < answer.varbinds.size(); ++k) {
        const std::size_t c = asked[k % asked.size()];
        if (!m_active[c])
            continue;
        TSnmpVarbind& varbind = answer.varbinds[k];
        // Past the column, at the end of the view, or not moving on (an agent
        // that repeats itself would keep the walk going forever): the column ends.
        if (varbind.datum.IsException() || !Within(varbind.oid, m_columns[c]) || !(m_cursors[c] < varbind.oid)) {
            m_active[c] = false;
            continue;
        }
        if (Full())
            break;  // the rest of this answer is past the bound
        ZedOid index(varbind.oid.begin() + static_cast<std::ptrdiff_t>(m_columns[c].size()), varbind.oid.end());
        const std::size_t cell = CellBytes(varbind);
        m_bytes += cell;
        m_bounds.call->bytes += cell;
        const std::size_t rowsBefore = m_rows.size();
        auto& row = m_rows[std::move(index)];
        m_bounds.call->rows += m_rows.size() - rowsBefore;
        row.resize(m_columns.size());
        row[c] = std::move(varbind.datum);
        m_cursors[c] = std::move(varbind.oid);
        progressed = true;
    }
    // An answer that moved no column on ends the walk, unless a bound stopped
    // it: then Next says which.
    if (!progressed && !Full())
        std::fill(m_active.begin(), m_active.end(), false);
    Next();
}
