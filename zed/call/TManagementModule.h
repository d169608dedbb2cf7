#pragma once

#include "zed/call/TCall.h"

#include <vector>

// Whatever carries directives out for a part of the class tree: the embedded
// simulated network, or a real protocol. Modules are registered on the
// application object by the code of a class at the top of the tree; nothing
// above this interface changes when another module plugs in.
class ZED_EXPORT TManagementModule {
public:
    virtual ~TManagementModule();

    // Answers the directive on the entity: one result, or one per instance of
    // a wildcard. Faults of the request are answered as exception replies,
    // never thrown.
    virtual std::vector<TCallResult> Execute(const TEntitySpec& entity, unsigned int directive,
                                             const TRequest& request) = 0;
};
