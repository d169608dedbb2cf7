// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TCallLoop.h"

#include "zed/TApplication.h"
#include "zed/call/TCallAnswers.h"
#include "zed/call/TManagementModule.h"
#include "zed/call/TRequestCheck.h"
#include "zed/dict/TDictionary.h"

#include <algorithm>
#include <cerrno>
#include <map>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

using Clock = ZedWaitSet::Clock;

std::string Seconds(std::chrono::milliseconds timeout)
{
    const auto count = timeout.count();
    return count % 1000 == 0 ? std::to_string(count / 1000) + " s" : std::to_string(count) + " ms";
}

}  // namespace

struct TCallLoop::Impl {
    struct Pending {
        TEntitySpec entity;
        std::shared_ptr<TManagementModule> module;  // null: answered by the loop itself
        Completion done;
        Clock::time_point deadline;
        std::chrono::milliseconds timeout;
    };

    int wake = -1;
    TCallTicket last = 0;
    std::map<TCallTicket, Pending> pending;
    std::vector<std::pair<TCallTicket, std::vector<TCallResult>>> ready;

    void Answer(TCallTicket ticket, std::vector<TCallResult> results)
    {
        // Ignored once the call was cancelled or has timed out.
        if (pending.count(ticket)) {
            ready.emplace_back(ticket, std::move(results));
            Signal();
        }
    }

    void Signal() const
    {
        const std::uint64_t one = 1;
        (void)!::write(wake, &one, sizeof one);
    }

    void Drain() const
    {
        std::uint64_t count = 0;
        while (::read(wake, &count, sizeof count) > 0) {
        }
    }
};

TCallLoop::TCallLoop() : m_pImpl(std::make_unique<Impl>()) { m_pImpl->wake = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC); }

TCallLoop::~TCallLoop()
{
    if (m_pImpl->wake >= 0)
        ::close(m_pImpl->wake);
}

TCallTicket TCallLoop::Submit(const TEntitySpec& entity, unsigned int directive, const TRequest& request,
                              Completion done, std::chrono::milliseconds timeout)
{
    TApplication* app = ZEDGetApplication();
    std::shared_ptr<TManagementModule> module = app->FindModule(entity);
    if (!module)
        return 0;
    const TCallTicket ticket = ++m_pImpl->last;
    m_pImpl->pending.emplace(ticket, Impl::Pending{entity, module, std::move(done), Clock::now() + timeout, timeout});
    // A request that does not fit is answered here, for every module alike.
    const TDictionary* dictionary = app->GetDictionary().get();
    const TDictClass* cls = dictionary ? dictionary->FindClass(entity.GetEntityClass()) : nullptr;
    const TDictDirective* known = cls ? cls->FindDirective(directive) : nullptr;
    if (known && directive != ZED_COMMON_EXCEPTION_DIRECTIVE)
        if (std::optional<TCallResult> refused = ZEDCheckRequest(entity, *cls, *known, request)) {
            m_pImpl->Answer(ticket, {std::move(*refused)});
            return ticket;
        }
    Impl* impl = m_pImpl.get();
    module->Start(ticket, entity, directive, request,
                  [impl, ticket](std::vector<TCallResult> results) { impl->Answer(ticket, std::move(results)); });
    m_pImpl->Signal();  // the module's wait set may have changed
    return ticket;
}

void TCallLoop::Cancel(TCallTicket ticket)
{
    const auto found = m_pImpl->pending.find(ticket);
    if (found == m_pImpl->pending.end())
        return;
    const std::shared_ptr<TManagementModule> module = found->second.module;
    m_pImpl->pending.erase(found);
    std::erase_if(m_pImpl->ready, [ticket](const auto& entry) { return entry.first == ticket; });
    if (module)
        module->Cancel(ticket);
}

bool TCallLoop::IsPending(TCallTicket ticket) const { return m_pImpl->pending.count(ticket) != 0; }

std::size_t TCallLoop::GetPendingCount() const { return m_pImpl->pending.size(); }

ZedWaitSet TCallLoop::GetWaitSet() const
{
    ZedWaitSet set;
    set.descriptors.push_back(m_pImpl->wake);
    for (TManagementModule* module : ZEDGetApplication()->GetModules())
        module->AddWaitSet(set);
    for (const auto& [ticket, call] : m_pImpl->pending)
        set.WaitUntil(call.deadline);
    if (!m_pImpl->ready.empty())
        set.WaitUntil(Clock::now());
    return set;
}

void TCallLoop::ProcessReady()
{
    m_pImpl->Drain();
    for (TManagementModule* module : ZEDGetApplication()->GetModules())
        module->ProcessReady();
    // What did not come back in time is given up and answered "no answer".
    const Clock::time_point now = Clock::now();
    std::vector<TCallTicket> late;
    for (const auto& [ticket, call] : m_pImpl->pending)
        if (call.deadline <= now)
            late.push_back(ticket);
    for (TCallTicket ticket : late) {
        Impl::Pending& call = m_pImpl->pending.at(ticket);
        if (std::any_of(m_pImpl->ready.begin(), m_pImpl->ready.end(),
                        [ticket](const auto& e) { return e.first == ticket; }))
            continue;  // answered just in time
        if (call.module)
            call.module->Cancel(ticket);
        m_pImpl->ready.emplace_back(
            ticket, std::vector<TCallResult>{ZedAnswer::Common(call.entity, ZED_COMMON_NO_ANSWER,
                                                               "no answer from " + call.entity.ToString() + " within "
                                                                   + Seconds(call.timeout))});
    }
    // Completions may start calls of their own: they wait for the next turn.
    auto due = std::exchange(m_pImpl->ready, {});
    for (auto& [ticket, results] : due) {
        const auto found = m_pImpl->pending.find(ticket);
        if (found == m_pImpl->pending.end())
            continue;
        Completion done = std::move(found->second.done);
        m_pImpl->pending.erase(found);
        if (done)
            done(std::move(results));
    }
}

void TCallLoop::WaitOnce(std::optional<Clock::time_point> until)
{
    const ZedWaitSet set = GetWaitSet();
    std::optional<Clock::time_point> deadline = set.deadline;
    if (until && (!deadline || *until < *deadline))
        deadline = until;
    std::vector<pollfd> fds;
    for (int fd : set.descriptors)
        fds.push_back(pollfd{fd, POLLIN, 0});
    int wait = -1;
    if (deadline) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
        wait = static_cast<int>(std::clamp<long long>(left, 0, 60000));
    }
    while (::poll(fds.data(), fds.size(), wait) < 0 && errno == EINTR) {
    }
}

void TCallLoop::RunUntilDone(TCallTicket ticket)
{
    ProcessReady();
    while (IsPending(ticket)) {
        WaitOnce(std::nullopt);
        ProcessReady();
    }
}

bool TCallLoop::RunUntilIdle(std::chrono::milliseconds most)
{
    const Clock::time_point end = Clock::now() + most;
    ProcessReady();
    while (!m_pImpl->pending.empty() && Clock::now() < end) {
        WaitOnce(end);
        ProcessReady();
    }
    return m_pImpl->pending.empty();
}

int TCallLoop::GetWakeDescriptor() const { return m_pImpl->wake; }

void TCallLoop::Wake() { m_pImpl->Signal(); }

TCallLoop& ZEDGetCallLoop() { return ZEDGetApplication()->GetCallLoop(); }

// ---- a call that does not wait ----------------------------------------------

TAsyncCall::~TAsyncCall() { Cancel(); }

bool TAsyncCall::Start(std::function<void(TAsyncCall&)> done, std::chrono::milliseconds timeout)
{
    Cancel();
    m_ticket = ZEDGetCallLoop().Submit(
        GetEntity(), GetDirective(), GetRequest(),
        [this, done = std::move(done)](std::vector<TCallResult> results) {
            m_ticket = 0;
            SetResults(std::move(results));
            if (done)
                done(*this);
        },
        timeout);
    return m_ticket != 0;
}

void TAsyncCall::Cancel()
{
    if (m_ticket)
        ZEDGetCallLoop().Cancel(std::exchange(m_ticket, 0));
}

bool TAsyncCall::IsPending() const { return m_ticket != 0 && ZEDGetCallLoop().IsPending(m_ticket); }
