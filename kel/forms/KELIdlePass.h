// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <functional>

// The idle pass of the forms: after the operator's input has been handled
// (a key, a click, a change of focus), every registered form runs its idle
// update once, when the event queue is next empty. Nothing runs while nobody
// types, so an open form costs nothing at rest.
class KEL_EXPORT KELIdlePass {
public:
    using Update = std::function<void()>;

    // Registers an update under a key (the form) until Unregister.
    static void Register(const void* key, Update update);
    static void Unregister(const void* key);
    // Runs every registered update now.
    static void RunNow();
};
