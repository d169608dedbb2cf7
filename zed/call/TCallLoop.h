// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Calls that never block their caller. A call is handed to the module of its
// entity with a completion, and can be cancelled or time out; a module never
// waits on the network in the caller's thread: it says what it waits on
// (descriptors to read, its next deadline) and is given a turn when one is
// ready. The caller's event loop waits on the loop's wait set and calls
// ProcessReady when something is ready or the deadline has come:
//
//     ZedWaitSet set = ZEDGetCallLoop().GetWaitSet();
//     poll(set.descriptors..., until set.deadline);
//     ZEDGetCallLoop().ProcessReady();
//
// Completions run only from ProcessReady (never inside Submit), on the
// caller's thread. The loop is not thread-safe: one thread drives it.

#include "zed/call/TCall.h"
#include "zed/call/ZedWaitSet.h"

#include <functional>
#include <memory>

/// Runs calls without blocking: submission, cancellation, timeouts, and the
/// wait set the caller's event loop polls.
class ZED_EXPORT TCallLoop {
public:
    using Completion = std::function<void(std::vector<TCallResult>)>;
    static constexpr std::chrono::milliseconds kDefaultTimeout{30000};

    TCallLoop();
    TCallLoop(const TCallLoop&) = delete;
    TCallLoop& operator=(const TCallLoop&) = delete;
    ~TCallLoop();

    /// Checks the request against the dictionary (a request that does not fit
    /// is answered at once, as ZEDCheckRequest says) and hands the call to the
    /// module of its entity. done gets the results from ProcessReady: the
    /// module's, or, when the timeout passes first, the common exception "no
    /// answer" (the module is told to give the call up). 0, and done never
    /// runs, when no module takes the entity.
    TCallTicket Submit(const TEntitySpec& entity, unsigned int directive, const TRequest& request, Completion done,
                       std::chrono::milliseconds timeout = kDefaultTimeout);
    /// done will not run; the module gives up what it can.
    void Cancel(TCallTicket ticket);
    bool IsPending(TCallTicket ticket) const;
    std::size_t GetPendingCount() const;

    ZedWaitSet GetWaitSet() const;
    /// Gives the modules their turn and runs the completions that are due. Never blocks.
    void ProcessReady();
    /// For a caller that has nothing else to do meanwhile (a tool, a test):
    /// waits on the wait set and processes until the call is done.
    void RunUntilDone(TCallTicket ticket);
    /// The same until no call is pending, or the time is up; false then.
    bool RunUntilIdle(std::chrono::milliseconds most);

    /// Readable while completions wait for ProcessReady or a module's wait set
    /// changed: an event loop watching it never misses its turn.
    int GetWakeDescriptor() const;
    /// Makes the wake descriptor readable (a module whose wait set changed).
    void Wake();

private:
    void WaitOnce(std::optional<ZedWaitSet::Clock::time_point> until);

    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

/// The process's call loop.
ZED_EXPORT TCallLoop& ZEDGetCallLoop();

/// A call handed to its module without waiting: done runs once the results
/// are in (from the loop's ProcessReady). Destroying or re-starting the call
/// cancels what is pending.
class ZED_EXPORT TAsyncCall : public TCall {
public:
    using TCall::TCall;
    TAsyncCall(const TAsyncCall&) = delete;
    TAsyncCall& operator=(const TAsyncCall&) = delete;
    ~TAsyncCall() override;

    /// False (done never runs) when no module takes the entity.
    bool Start(std::function<void(TAsyncCall&)> done, std::chrono::milliseconds timeout = TCallLoop::kDefaultTimeout);
    void Cancel();
    bool IsPending() const;

private:
    TCallTicket m_ticket = 0;
};
