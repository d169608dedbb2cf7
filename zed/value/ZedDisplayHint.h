// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// DISPLAY-HINTs (RFC 2579): how a MIB says octets and integers are written
// for people ("1d.1d.1d.1d", "1x:", "255a", "d-2"), both ways, and the
// DateAndTime convention as a point in time.

#include "zed/ZedExport.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// True when the hint is one of octets ("1x:") that ZedHintOctets reads.
ZED_EXPORT bool ZedIsOctetHint(std::string_view hint);
/// True when the hint is one of an integer: "d", "d-N", "x", "o", "b".
ZED_EXPORT bool ZedIsIntegerHint(std::string_view hint);

/// The octets as the hint writes them; none when the hint is not one of octets.
ZED_EXPORT std::optional<std::string> ZedHintOctets(std::string_view octets, std::string_view hint);
/// The octets a text written by the hint stands for; none, with the reason,
/// when the text does not follow it.
ZED_EXPORT std::optional<std::string> ZedHintText(std::string_view text, std::string_view hint,
                                                  std::string* why = nullptr);

/// The integer as the hint writes it ("d-2": 1234 is "12.34").
ZED_EXPORT std::string ZedHintInteger(std::int64_t value, std::string_view hint);
/// The integer a text written by the hint stands for; none when it does not follow it.
ZED_EXPORT std::optional<std::int64_t> ZedHintNumber(std::string_view text, std::string_view hint);

/// A DateAndTime's 8 or 11 octets as milliseconds since 1970 UTC (without a
/// zone the time is taken as UTC); none when the octets are no date and time.
ZED_EXPORT std::optional<std::int64_t> ZedDateAndTime(std::string_view octets);
/// The 11 octets of a DateAndTime in UTC.
ZED_EXPORT std::string ZedDateAndTimeOctets(std::int64_t milliseconds);
