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

} // namespace

TSnmpWalk::TSnmpWalk(TSnmpSession& session, std::vector<ZedOid> columns, Done done)
    : m_session(session), m_columns(std::move(columns)), m_cursors(m_columns), m_active(m_columns.size(), true),
      m_done(std::move(done))
{
}

TSnmpWalk::~TSnmpWalk()
{
    if (m_request)
        m_session.Forget(m_request);
}

void TSnmpWalk::Start() { Next(); }

void TSnmpWalk::Next()
{
    std::vector<TSnmpVarbind> asked;
    for (std::size_t c = 0; c < m_columns.size(); ++c)
        if (m_active[c])
            asked.push_back(TSnmpVarbind{m_cursors[c], {}});
    if (asked.empty() || m_rows.size() >= kMostRows) {
        m_request = 0;
        Done done = std::move(m_done);
        done(std::nullopt, std::move(m_rows));
        return;
    }
    const int repetitions = std::max(1, kVarbindsPerRequest / static_cast<int>(asked.size()));
    m_request = m_session.Send(TSnmpSession::Operation::GetBulk, std::move(asked),
                               [this](TSnmpAnswer answer) { Absorb(std::move(answer)); }, repetitions);
}

void TSnmpWalk::Absorb(TSnmpAnswer answer)
{
    m_request = 0;
    if (answer.outcome != TSnmpAnswer::Outcome::Response || answer.errorStatus != 0) {
        Done done = std::move(m_done);
        done(std::move(answer), std::move(m_rows));
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
        ZedOid index(varbind.oid.begin() + static_cast<std::ptrdiff_t>(m_columns[c].size()), varbind.oid.end());
        auto& row = m_rows[std::move(index)];
        row.resize(m_columns.size());
        row[c] = std::move(varbind.datum);
        m_cursors[c] = std::move(varbind.oid);
        progressed = true;
    }
    if (!progressed)
        std::fill(m_active.begin(), m_active.end(), false);
    Next();
}
