// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TTimeValues.h"
#include "zed/value/ZedCivilDate.h"

#include <chrono>
#include <cstdio>

namespace {

constexpr std::int64_t kMsPerSecond = 1000;
constexpr std::int64_t kMsPerDay = 86400 * kMsPerSecond;
// 0000-01-01 and 10000-01-01 in days from the epoch.
constexpr std::int64_t kFirstDay = -719528;
constexpr std::int64_t kEndDay = 2932897;

// A small cursor over the text being parsed.
struct Scanner {
    std::string_view text;
    std::size_t pos = 0;

    bool Done() const { return pos == text.size(); }
    bool Take(char c)
    {
        if (pos < text.size() && text[pos] == c) {
            ++pos;
            return true;
        }
        return false;
    }
    // Exactly n decimal digits.
    bool Digits(int n, std::int64_t& out)
    {
        out = 0;
        for (int i = 0; i < n; ++i, ++pos) {
            if (pos >= text.size() || text[pos] < '0' || text[pos] > '9')
                return false;
            out = out * 10 + (text[pos] - '0');
        }
        return true;
    }
    // One or more digits, at most max of them.
    bool SomeDigits(int max, std::int64_t& out, int& count)
    {
        out = 0;
        count = 0;
        while (pos < text.size() && text[pos] >= '0' && text[pos] <= '9' && count < max) {
            out = out * 10 + (text[pos++] - '0');
            ++count;
        }
        return count > 0 && !(pos < text.size() && text[pos] >= '0' && text[pos] <= '9');
    }
    // ".f", ".ff" or ".fff" as milliseconds; nothing is 0.
    bool Fraction(std::int64_t& ms)
    {
        ms = 0;
        if (!Take('.'))
            return true;
        int count;
        if (!SomeDigits(3, ms, count))
            return false;
        for (; count < 3; ++count)
            ms *= 10;
        return true;
    }
    bool ClockTime(std::int64_t& ms)
    {
        std::int64_t h, m, s, f;
        if (!Digits(2, h) || !Take(':') || !Digits(2, m) || !Take(':') || !Digits(2, s) || !Fraction(f))
            return false;
        if (h > 23 || m > 59 || s > 59)
            return false;
        ms = ((h * 60 + m) * 60 + s) * kMsPerSecond + f;
        return true;
    }
};

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0))); }

// Zero-padded decimal digits, written by hand: times are formatted for every
// console message, where printf's parsing of its format would dominate.
void AppendDigits(std::string& text, std::int64_t value, int width)
{
    char digits[20];
    int n = 0;
    do {
        digits[n++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value > 0 && n < 20);
    for (int pad = n; pad < width; ++pad)
        text.push_back('0');
    while (n > 0)
        text.push_back(digits[--n]);
}

void AppendClock(std::string& text, std::int64_t msOfDay)
{
    const auto ms = msOfDay % kMsPerSecond, s = msOfDay / kMsPerSecond;
    AppendDigits(text, s / 3600, 2);
    text.push_back(':');
    AppendDigits(text, s / 60 % 60, 2);
    text.push_back(':');
    AppendDigits(text, s % 60, 2);
    if (ms != 0) {
        text.push_back('.');
        AppendDigits(text, ms, 3);
    }
}

}  // namespace

TAbsTime::~TAbsTime() = default;

TAbsTime TAbsTime::Now(unsigned int id)
{
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return TAbsTime(std::chrono::duration_cast<std::chrono::milliseconds>(now).count(), id);
}

std::optional<std::int64_t> TAbsTime::Parse(std::string_view text)
{
    Scanner in{text};
    std::int64_t y, mo, d;
    if (!in.Digits(4, y) || !in.Take('-') || !in.Digits(2, mo) || !in.Take('-') || !in.Digits(2, d))
        return std::nullopt;
    if (mo < 1 || mo > 12 || d < 1 || d > 31)
        return std::nullopt;
    const std::int64_t days = ZedDaysFromCivil(y, static_cast<unsigned>(mo), static_cast<unsigned>(d));
    // Refuse dates that do not exist (31 April): they would come back as another day.
    std::int64_t yy;
    unsigned mm, dd;
    ZedCivilFromDays(days, yy, mm, dd);
    if (yy != y || mm != mo || dd != d)
        return std::nullopt;
    std::int64_t clock = 0;
    if (!in.Done()) {
        if (!in.Take(' ') && !in.Take('T'))
            return std::nullopt;
        if (!in.ClockTime(clock))
            return std::nullopt;
        in.Take('Z');
    }
    if (!in.Done())
        return std::nullopt;
    return days * kMsPerDay + clock;
}

std::string TAbsTime::Format(std::int64_t milliseconds)
{
    std::int64_t days = FloorDiv(milliseconds, kMsPerDay);
    if (days < kFirstDay || days >= kEndDay)
        return "(time out of range)";
    std::int64_t y;
    unsigned m, d;
    ZedCivilFromDays(days, y, m, d);
    std::string text;
    text.reserve(23);
    AppendDigits(text, y, 4);
    text.push_back('-');
    AppendDigits(text, m, 2);
    text.push_back('-');
    AppendDigits(text, d, 2);
    text.push_back(' ');
    AppendClock(text, milliseconds - days * kMsPerDay);
    return text;
}

TRelTime::~TRelTime() = default;

std::optional<std::int64_t> TRelTime::Parse(std::string_view text)
{
    Scanner in{text};
    const bool negative = in.Take('-');
    std::int64_t days = 0;
    // A day count is there when digits are followed by "-".
    const auto dash = text.find('-', in.pos);
    if (dash != std::string_view::npos) {
        int count;
        if (!in.SomeDigits(9, days, count) || !in.Take('-'))
            return std::nullopt;
    }
    std::int64_t clock;
    if (!in.ClockTime(clock) || !in.Done())
        return std::nullopt;
    const std::int64_t total = days * kMsPerDay + clock;
    return negative ? -total : total;
}

std::string TRelTime::Format(std::int64_t milliseconds)
{
    // The most negative count has no positive counterpart; it shows one short.
    const std::int64_t ms = milliseconds >= 0 ? milliseconds : milliseconds == INT64_MIN ? INT64_MAX : -milliseconds;
    char days[32] = "";
    if (ms >= kMsPerDay)
        std::snprintf(days, sizeof days, "%lld-", static_cast<long long>(ms / kMsPerDay));
    std::string text = std::string(milliseconds < 0 ? "-" : "") + days;
    AppendClock(text, ms % kMsPerDay);
    return text;
}
