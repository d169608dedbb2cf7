// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TCall.h"

#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/call/TCallLoop.h"
#include "zed/call/TManagementModule.h"

TManagementModule::~TManagementModule() = default;

std::vector<TCallResult> TManagementModule::TakeEvents() { return {}; }

void TManagementModule::Start(TCallTicket, const TEntitySpec& entity, unsigned int directive, const TRequest& request,
                              Completion done)
{
    done(Execute(entity, directive, request));
}

void TManagementModule::Cancel(TCallTicket) {}

void TManagementModule::AddWaitSet(ZedWaitSet&) const {}

void TManagementModule::ProcessReady() {}

void TManagementModule::SetEventListener(EventListener) {}

TCall::TCall(TEntitySpec entity, unsigned int directive, TRequest request)
    : m_entity(std::move(entity)), m_directive(directive), m_request(std::move(request))
{
}

TCall::TCall(const TCall&) = default;
TCall& TCall::operator=(const TCall&) = default;
TCall::~TCall() = default;

bool TCall::SelectReply(std::size_t index)
{
    if (index >= m_results.size())
        return false;
    m_selected = index;
    return true;
}

const TCallResult* TCall::Current() const { return m_results.empty() ? nullptr : &m_results[m_selected]; }

const TEntitySpec& TCall::GetOutEntity() const { return Current() ? Current()->outEntity : m_entity; }

const TAbsTime& TCall::GetTimeStamp() const
{
    static const TAbsTime never(0);
    return Current() ? Current()->timeStamp : never;
}

const TReply& TCall::GetReply() const
{
    static const TReply none;
    return Current() ? Current()->reply : none;
}

unsigned int TCall::GetStatus() const { return Current() ? Current()->status : ZED_STATUS_RESPONSE; }

void TCall::SetResults(std::vector<TCallResult> results)
{
    m_results = std::move(results);
    m_selected = 0;
}

TSyncCall::~TSyncCall() = default;

unsigned int TSyncCall::Execute()
{
    TCallLoop& loop = ZEDGetCallLoop();
    std::vector<TCallResult> results;
    const TCallTicket ticket =
        loop.Submit(GetEntity(), GetDirective(), GetRequest(),
                    [&results](std::vector<TCallResult> answered) { results = std::move(answered); });
    if (!ticket)
        throw TException("no management module answers for " + GetEntity().ToString());
    loop.RunUntilDone(ticket);
    SetResults(std::move(results));
    return GetStatus();
}
