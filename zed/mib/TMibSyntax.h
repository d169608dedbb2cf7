// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Internal to the MIB compiler: how an object's syntax is presented (the
// dictionary type of its values) and carried (the binding's SMI syntax).

#include "zed/mib/TMibNode.h"

#include <string>

/// How an object's values are presented and carried.
struct TMibPresentation {
    std::string type;    // a built-in type's name; empty with an enumeration
    std::string syntax;  // the binding's syntax ("DisplayString", "RowStatus", ...)
    bool enumeration = false;
    unsigned int length = 0;  // the most octets a string holds (SIZE), 0: no bound
    std::string hint;         // the DISPLAY-HINT values are written by, when it is not the syntax's own way
    std::string why;          // why it cannot be presented; empty when it can
};

/// How the values of a scalar or column are presented and carried.
TMibPresentation ZedMibPresentationOf(const TMibNode& node);

/// The default a DEFVAL gives a field of the presentation, or empty when it gives none.
std::string ZedMibDefaultOf(const TMibNode& node, const TMibPresentation& presentation);
