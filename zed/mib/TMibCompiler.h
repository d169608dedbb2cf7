// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// MIB modules made a dictionary: each scalar group and table of the modules
// read becomes a class below the agent's class, each object an attribute,
// each notification an event, all bound to SNMP as a hand-written
// dictionary binds them. The result is dictionary text, which the loader
// checks as it checks any.

#include "zed/ZedExport.h"
#include "zed/mib/TMibReader.h"

#include <string>
#include <string_view>
#include <vector>

/// What the compiler leaves out unless asked, and how it writes.
struct TMibCompileOptions {
    /// Objects whose status is deprecated or obsolete.
    bool withRetired = false;
    /// Spaces of indentation in the dictionary's text; -1: none, and no line breaks.
    int indent = -1;
};

/// A dictionary compiled from MIB modules.
struct ZED_EXPORT TMibCompilation {
    std::string json;                 // the dictionary's text
    std::vector<TMibFault> warnings;  // what was left out, and why
    std::size_t classes = 0;          // added below the agent
    std::size_t events = 0;
};

/// Compiles MIB modules into a dictionary.
class ZED_EXPORT TMibCompiler {
public:
    /// The modules loaded, added to a base dictionary's text below its agent
    /// class ("snmp": {"agent": true}), or to a dictionary of an agent alone
    /// when the base is empty. What the base binds already (a table, a
    /// notification) is left as the base has it. Throws TException when the
    /// base is no dictionary with an agent class.
    static TMibCompilation Compile(const TMibModules& modules, std::string_view base = {},
                                   TMibCompileOptions options = {});
};
