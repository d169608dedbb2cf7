// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Text helpers shared inside the access library.

#include "zed/ZedExport.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

/// Names of classes, attributes, directives, types and enumeration items
/// compare without regard to letter case.
inline bool ZedSameIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    });
}

/// The order of names that compare so, for the maps that hold them.
struct ZedLessIgnoringCase {
    bool operator()(std::string_view a, std::string_view b) const
    {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
            return std::tolower(static_cast<unsigned char>(x)) < std::tolower(static_cast<unsigned char>(y));
        });
    }
};

/// Text that came from outside, fit for one line of a terminal, a trace or a
/// field: control characters (ESC, CR, LF, NUL, DEL...) are written as
/// escapes ("\e", "\r", "\n", "\t", "\x00"), so that nobody can forge a line
/// or move the cursor with what they send. Octets past ASCII stay (UTF-8).
ZED_EXPORT std::string ZedEscapeControls(std::string_view text);
