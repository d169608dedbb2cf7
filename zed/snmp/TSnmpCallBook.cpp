// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpCallBook.h"

#include "zed/call/TCallAnswers.h"
#include "zed/snmp/TSnmpSession.h"

void TSnmpCall::Now(TCallResult result)
{
    parts.emplace_back();
    parts.back().push_back(std::move(result));
}

std::size_t TSnmpCall::Reserve()
{
    parts.emplace_back();
    ++open;
    return parts.size() - 1;
}

TSnmpCall& TSnmpCallBook::Open(TCallTicket ticket, TEntitySpec entity, TManagementModule::Completion done)
{
    auto call = std::make_unique<TSnmpCall>();
    call->entity = std::move(entity);
    call->done = std::move(done);
    call->budget = std::make_shared<TSnmpWalk::Budget>();
    call->budget->mostRows = m_callRows;
    call->budget->mostBytes = m_callBytes;
    TSnmpCall& opened = *call;
    m_calls[ticket] = std::move(call);
    return opened;
}

void TSnmpCallBook::Finish(TCallTicket ticket, std::size_t part, std::vector<TCallResult> results)
{
    const auto it = m_calls.find(ticket);
    if (it == m_calls.end())
        return;
    it->second->parts[part] = std::move(results);
    if (--it->second->open == 0)
        m_finished.push_back(ticket);
}

void TSnmpCallBook::CompleteIfDone(TCallTicket ticket)
{
    const auto it = m_calls.find(ticket);
    if (it != m_calls.end() && it->second->open == 0)
        Complete(ticket);
}

void TSnmpCallBook::Cancel(TCallTicket ticket)
{
    const auto it = m_calls.find(ticket);
    if (it == m_calls.end())
        return;
    for (const auto& [session, key] : it->second->requests)
        session->Forget(key);
    m_calls.erase(it);
}

void TSnmpCallBook::CompleteFinished()
{
    for (TCallTicket ticket : std::exchange(m_finished, {}))
        Complete(ticket);
}

void TSnmpCallBook::Complete(TCallTicket ticket)
{
    const auto it = m_calls.find(ticket);
    if (it == m_calls.end())
        return;
    std::unique_ptr<TSnmpCall> call = std::move(it->second);
    m_calls.erase(it);
    std::vector<TCallResult> results;
    for (auto& part : call->parts)
        for (auto& result : part)
            results.push_back(std::move(result));
    if (results.empty())
        results.push_back(ZedAnswer::Common(call->entity, ZED_COMMON_NO_SUCH_ENTITY, "no instance answered"));
    call->done(std::move(results));
}
