#pragma once

#include "zed/call/TCall.h"

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
