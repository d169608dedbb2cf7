// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Points in time and durations, both kept in milliseconds.
//
// Text forms (UTC, what ToString writes and Parse reads back):
//   TAbsTime  "2026-11-22 09:10:09" or "2026-11-22 09:10:09.125"; Parse also
//             takes a "T" between date and time, a trailing "Z", and a date
//             alone (midnight). Years 0000 to 9999.
//   TRelTime  "[-][D-]HH:MM:SS[.mmm]", for example "3-04:05:06.789" or
//             "00:00:05"; hours below 24, minutes and seconds below 60.

#include "zed/value/TScalarValues.h"

#include <cstdint>
#include <optional>
#include <string_view>

/// Absolute time (data type 47): milliseconds from 1970-01-01 00:00:00, without a time zone.
class ZED_EXPORT TAbsTime final : public TScalarValue<TAbsTime, ZED_DT_ABSTIME, std::int64_t> {
public:
    using TScalarValue::TScalarValue;
    ~TAbsTime() override;

    std::int64_t GetMilliseconds() const { return GetValue(); }
    static TAbsTime Now(unsigned int id = 0);

    static std::optional<std::int64_t> Parse(std::string_view text);
    static std::string Format(std::int64_t milliseconds);

protected:
    std::string ContentText() const override { return Format(GetValue()); }
};

/// Relative time (data type 48): a duration in milliseconds.
class ZED_EXPORT TRelTime final : public TScalarValue<TRelTime, ZED_DT_RELTIME, std::int64_t> {
public:
    using TScalarValue::TScalarValue;
    ~TRelTime() override;

    std::int64_t GetMilliseconds() const { return GetValue(); }

    static std::optional<std::int64_t> Parse(std::string_view text);
    static std::string Format(std::int64_t milliseconds);

protected:
    std::string ContentText() const override { return Format(GetValue()); }
};
