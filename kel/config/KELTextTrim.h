// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Trimming as the configuration readers do it: the blanks are the C locale's
// white space, so tabs and stray carriage returns go too. Written as plain
// loops: these run several times on every line of a file.

#include <string_view>

inline constexpr bool KELIsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// A name or value that holds a line end cannot be stored: written out, it
// would end its line and could make the rest read as section lines.
inline bool KELHoldsLineEnd(std::string_view s) { return s.find_first_of("\r\n") != std::string_view::npos; }

inline std::string_view KELTrimLeft(std::string_view s)
{
    std::size_t i = 0;
    while (i < s.size() && KELIsBlank(s[i]))
        ++i;
    return s.substr(i);
}

inline std::string_view KELTrimRight(std::string_view s)
{
    std::size_t n = s.size();
    while (n > 0 && KELIsBlank(s[n - 1]))
        --n;
    return s.substr(0, n);
}

inline std::string_view KELTrim(std::string_view s) { return KELTrimRight(KELTrimLeft(s)); }

// Lines the readers pass over wherever they look for a begin, field or end line.
inline bool KELIsSkippedLine(std::string_view leftTrimmed) { return leftTrimmed.empty() || leftTrimmed.front() == '#'; }
