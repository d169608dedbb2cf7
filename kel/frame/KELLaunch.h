// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <string>
#include <vector>

class TEntitySpec;

/// The launch facility: the applications registered for an entity class, a
/// directive and an element, and starting one of them. They come from the
/// launch plugin ("libOrvexLaunch.so", or the file in KEL_LAUNCH), loaded on
/// first use like the resource module; without it there are simply none.
class KEL_EXPORT KELLaunch {
public:
    static constexpr const char* kModuleFileName = "libOrvexLaunch.so";
    /// At most this many class levels are passed on.
    static constexpr std::size_t kMaxClassLevels = 10;

    /// Names of the applications registered for the entity's class, in the plugin's order.
    static std::vector<std::string> GetApplications(const TEntitySpec& entity, unsigned int directive,
                                                    unsigned int element);
    /// Starts the index-th of them for the entity; false, with the reason, when it cannot.
    static bool Start(const TEntitySpec& entity, unsigned int directive, unsigned int element, unsigned int index,
                      std::string* error = nullptr);

    static bool IsAvailable();
    /// Forgets the plugin so that the next use looks for it again (tests, a new KEL_LAUNCH).
    static void Unload();
};
