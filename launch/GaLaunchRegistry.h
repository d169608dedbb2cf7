// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The launch plugin's registrations, read from a configuration file of KEL's
// format, one section per application:
//
//     [ Launch : Ping console ]
//         Class = 1.2.3
//         Directive = 10
//         Element = *
//         Command = xterm -e ping "$ORVEX_LAUNCH_INSTANCE"
//     [ End Launch : Ping console ]
//
// Class is the entity's class path (codes joined by "."), Directive and
// Element numbers; "*" (or leaving the field out) matches any. Sections of
// other names are not registrations and are ignored.

#include "launch/GaLaunchApi.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct GaLaunchRegistration {
    std::string name;
    std::optional<std::vector<unsigned int>> classPath;  // none: any class
    std::optional<unsigned int> directive;               // none: any directive
    std::optional<unsigned int> element;                 // none: any element
    std::string command;

    bool Matches(const GaLaunchQuery& query) const;
};

class GaLaunchRegistry {
public:
    // A registration that cannot be used (no command, a field that is not a
    // number) is left out, and problems, when given, gets one line saying why.
    static GaLaunchRegistry FromText(std::string_view text, std::vector<std::string>* problems = nullptr);
    // Empty, with the reason in problems, when the file cannot be read.
    static GaLaunchRegistry FromFile(const std::string& path, std::vector<std::string>* problems = nullptr);

    const std::vector<GaLaunchRegistration>& All() const { return m_registrations; }
    // Those matching the query, in the file's order.
    std::vector<const GaLaunchRegistration*> Find(const GaLaunchQuery& query) const;

private:
    std::vector<GaLaunchRegistration> m_registrations;
};

// Runs the command through /bin/sh, detached from the caller (its own session,
// no child left to reap), with the variables added to its environment
// ("NAME=value"). 0 when the shell started; otherwise the errno saying why.
int GaLaunchStartDetached(const std::string& command, const std::vector<std::string>& variables);
