#pragma once

// Text helpers shared inside the access library.

#include <algorithm>
#include <cctype>
#include <string_view>

/// Names of classes, attributes, directives and enumeration items compare
/// without regard to letter case.
inline bool ZedSameIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
    });
}
