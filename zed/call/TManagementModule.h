// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "zed/call/TCall.h"
#include "zed/call/ZedWaitSet.h"

#include <functional>
#include <vector>

/// Whatever carries directives out for a part of the class tree: the embedded
/// simulated network, or a real protocol. Modules are registered on the
/// application object by the code of a class at the top of the tree; nothing
/// above this interface changes when another module plugs in.
class ZED_EXPORT TManagementModule {
public:
    virtual ~TManagementModule();

    /// Answers the directive on the entity: one result, or one per instance of
    /// a wildcard. Faults of the request are answered as exception replies,
    /// never thrown.
    virtual std::vector<TCallResult> Execute(const TEntitySpec& entity, unsigned int directive,
                                             const TRequest& request) = 0;

    using Completion = std::function<void(std::vector<TCallResult>)>;
    /// Starts a call without waiting on the network: done gets its results,
    /// within Start or later from ProcessReady (the call loop hands them on
    /// at its next turn either way). This base answers with Execute at once.
    virtual void Start(TCallTicket ticket, const TEntitySpec& entity, unsigned int directive, const TRequest& request,
                       Completion done);
    /// The call is given up: what done would still bring is not wanted.
    virtual void Cancel(TCallTicket ticket);
    /// What the module waits on now: descriptors to read, its next deadline.
    virtual void AddWaitSet(ZedWaitSet& set) const;
    /// Its turn: reads what is ready and handles what is due; never blocks.
    virtual void ProcessReady();

    /// Event reports come as results whose reply is a response (its code the
    /// event's identifier) holding one TEventReport value.
    using EventListener = std::function<void(const TCallResult&)>;

    /// The reports that arrived since the last call, oldest first. A module
    /// without events has none.
    virtual std::vector<TCallResult> TakeEvents();
    /// With a listener, each report is handed to it as soon as the call that
    /// caused it has returned (never while the module is busy, so the listener
    /// may call the module again), and TakeEvents has none; an empty listener
    /// goes back to keeping them.
    virtual void SetEventListener(EventListener listener);
};
