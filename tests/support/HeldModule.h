// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A management module that answers only when the test releases it, and then
// from its own turn, as a module on a real network answers when its socket
// is readable: it waits on a descriptor of its own, which Release makes
// readable.

#include "zed/call/TCallAnswers.h"
#include "zed/call/TManagementModule.h"

#include <functional>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

class HeldModule : public TManagementModule {
public:
    HeldModule() : descriptor(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
    ~HeldModule() override { ::close(descriptor); }

    std::vector<TCallResult> Execute(const TEntitySpec& entity, unsigned int, const TRequest&) override
    {
        return {ZedAnswer::Result(entity, TReply(ZED_REPLY_RESPONSE, 1), ZED_STATUS_RESPONSE)};
    }
    void Start(TCallTicket ticket, const TEntitySpec& entity, unsigned int, const TRequest&, Completion done) override
    {
        started.push_back(ticket);
        held.emplace_back(ticket, [this, entity, done] { done(Execute(entity, 0, {})); });
    }
    void Cancel(TCallTicket ticket) override { cancelled.push_back(ticket); }
    void AddWaitSet(ZedWaitSet& set) const override { set.descriptors.push_back(descriptor); }
    void ProcessReady() override
    {
        std::uint64_t count = 0;
        while (::read(descriptor, &count, sizeof count) > 0) {
        }
        if (!release)
            return;
        for (auto& [ticket, answer] : std::exchange(held, {}))
            answer();
    }
    // The answers come at the module's next turn, as if they had arrived.
    void Release()
    {
        release = true;
        const std::uint64_t one = 1;
        (void)!::write(descriptor, &one, sizeof one);
    }

    int descriptor;
    bool release = false;
    std::vector<TCallTicket> started, cancelled;
    std::vector<std::pair<TCallTicket, std::function<void()>>> held;
};
