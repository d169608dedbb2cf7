#pragma once

// Trimming as the configuration readers do it: the blanks are the C locale's
// white space, so tabs and stray carriage returns go too.

#include <string_view>

inline constexpr std::string_view kKelBlanks = " \t\r\n\v\f";

inline std::string_view KELTrimLeft(std::string_view s)
{
    const auto first = s.find_first_not_of(kKelBlanks);
    return first == std::string_view::npos ? std::string_view() : s.substr(first);
}

inline std::string_view KELTrimRight(std::string_view s)
{
    const auto last = s.find_last_not_of(kKelBlanks);
    return last == std::string_view::npos ? std::string_view() : s.substr(0, last + 1);
}

inline std::string_view KELTrim(std::string_view s) { return KELTrimRight(KELTrimLeft(s)); }

// Lines the readers pass over wherever they look for a begin, field or end line.
inline bool KELIsSkippedLine(std::string_view leftTrimmed)
{
    return leftTrimmed.empty() || leftTrimmed.front() == '#';
}
