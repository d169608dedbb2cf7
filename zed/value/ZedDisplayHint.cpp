// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/ZedDisplayHint.h"
#include "zed/value/ZedCivilDate.h"

#include <cctype>
#include <charconv>
#include <vector>

namespace {

// One part of an octet hint: [*]LENGTH FORMAT [SEPARATOR [TERMINATOR]].
struct Spec {
    bool repeat = false;  // the first octet says how many times the part applies
    std::size_t length = 0;
    char format = 'd';
    char separator = 0;
    char terminator = 0;
};

// A number of more octets than this does not fit 64 bits.
constexpr std::size_t kMostNumberOctets = 8;
// A hint is a few parts; a longer one is no hint a MIB writes.
constexpr std::size_t kMostHintLength = 256;

bool IsNumberFormat(char format) { return format == 'd' || format == 'x' || format == 'o'; }
bool IsFormat(char format) { return IsNumberFormat(format) || format == 'a' || format == 't'; }
bool IsDelimiter(char c) { return c != '*' && !std::isdigit(static_cast<unsigned char>(c)); }
int BaseOf(char format) { return format == 'x' ? 16 : format == 'o' ? 8 : format == 'b' ? 2 : 10; }

std::optional<std::vector<Spec>> ParseSpecs(std::string_view hint)
{
    if (hint.empty() || hint.size() > kMostHintLength)
        return std::nullopt;
    std::vector<Spec> specs;
    std::size_t at = 0;
    while (at < hint.size()) {
        Spec spec;
        spec.repeat = hint[at] == '*';
        at += spec.repeat ? 1 : 0;
        const auto [end, error] = std::from_chars(hint.data() + at, hint.data() + hint.size(), spec.length);
        if (error != std::errc() || end == hint.data() + at || end == hint.data() + hint.size() || !IsFormat(*end))
            return std::nullopt;
        at = static_cast<std::size_t>(end - hint.data());
        spec.format = hint[at++];
        if (spec.length == 0 || (IsNumberFormat(spec.format) && spec.length > kMostNumberOctets))
            return std::nullopt;
        if (at < hint.size() && IsDelimiter(hint[at]))
            spec.separator = hint[at++];
        if (spec.repeat && at < hint.size() && IsDelimiter(hint[at]))
            spec.terminator = hint[at++];
        specs.push_back(spec);
    }
    return specs;
}

std::string NumberText(std::uint64_t value, char format, std::size_t octets)
{
    char digits[64];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value, BaseOf(format));
    std::string text(digits, end);
    if (format == 'x' && text.size() < 2 * octets)
        text.insert(0, 2 * octets - text.size(), '0');
    return text;
}

void Write(std::string& out, std::string_view piece, const Spec& spec)
{
    if (!IsNumberFormat(spec.format)) {
        out.append(piece);
        return;
    }
    std::uint64_t value = 0;
    for (char octet : piece)
        value = (value << 8) | static_cast<unsigned char>(octet);
    out += NumberText(value, spec.format, piece.size());
}

// Reads one piece of a spec from the text into octets: a number, or
// characters up to the separator.
bool Read(std::string_view& text, const Spec& spec, std::string& octets)
{
    if (!IsNumberFormat(spec.format)) {
        std::size_t end = spec.separator ? std::min(text.find(spec.separator), text.size()) : text.size();
        end = std::min(end, spec.length);
        octets.append(text.substr(0, end));
        text.remove_prefix(end);
        return end > 0;
    }
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, BaseOf(spec.format));
    if (error != std::errc() || end == text.data() || (spec.length < 8 && value >> (8 * spec.length)))
        return false;
    for (std::size_t i = spec.length; i-- > 0;)
        octets += static_cast<char>((value >> (8 * i)) & 0xff);
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool Fail(std::string* why, std::string reason)
{
    if (why)
        *why = std::move(reason);
    return false;
}

}  // namespace

bool ZedIsOctetHint(std::string_view hint) { return ParseSpecs(hint).has_value(); }

bool ZedIsIntegerHint(std::string_view hint)
{
    if (hint == "x" || hint == "o" || hint == "b" || hint == "d")
        return true;
    unsigned places = 0;
    const auto [end, error] = hint.size() > 2 && hint.substr(0, 2) == "d-"
                                  ? std::from_chars(hint.data() + 2, hint.data() + hint.size(), places)
                                  : std::from_chars_result{hint.data(), std::errc::invalid_argument};
    return error == std::errc() && end == hint.data() + hint.size() && places <= 18;
}

std::optional<std::string> ZedHintOctets(std::string_view octets, std::string_view hint)
{
    const auto specs = ParseSpecs(hint);
    if (!specs)
        return std::nullopt;
    std::string out;
    for (std::size_t part = 0; !octets.empty(); ++part) {
        const Spec& spec = (*specs)[std::min(part, specs->size() - 1)];
        std::size_t times = 1;
        if (spec.repeat) {
            times = static_cast<unsigned char>(octets.front());
            octets.remove_prefix(1);
        }
        for (std::size_t i = 0; i < times && !octets.empty(); ++i) {
            const std::size_t take = std::min(spec.length, octets.size());
            Write(out, octets.substr(0, take), spec);
            octets.remove_prefix(take);
            const bool last = i + 1 == times;
            if (!octets.empty() && (!last || !spec.terminator) && spec.separator)
                out += spec.separator;
            else if (!octets.empty() && last && spec.terminator)
                out += spec.terminator;
        }
    }
    return out;
}

std::optional<std::string> ZedHintText(std::string_view text, std::string_view hint, std::string* why)
{
    const auto specs = ParseSpecs(hint);
    if (!specs) {
        Fail(why, "the display hint \"" + std::string(hint) + "\" is not one of octets");
        return std::nullopt;
    }
    std::string octets;
    for (std::size_t part = 0; !text.empty(); ++part) {
        const Spec& spec = (*specs)[std::min(part, specs->size() - 1)];
        if (spec.repeat) {
            Fail(why, "a value of the display hint \"" + std::string(hint) + "\" cannot be typed");
            return std::nullopt;
        }
        if (!Read(text, spec, octets)) {
            Fail(why, "expected it written as \"" + std::string(hint) + "\" says");
            return std::nullopt;
        }
        if (!text.empty() && spec.separator && text.front() == spec.separator)
            text.remove_prefix(1);
    }
    return octets;
}

std::string ZedHintInteger(std::int64_t value, std::string_view hint)
{
    if (!ZedIsIntegerHint(hint) || hint == "d")
        return std::to_string(value);
    const bool negative = value < 0;
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    if (hint.size() == 1)
        return (negative ? "-" : "") + NumberText(magnitude, hint[0], 0);
    const std::size_t places = static_cast<std::size_t>(std::stoi(std::string(hint.substr(2))));
    std::string digits = std::to_string(magnitude);
    if (digits.size() <= places)
        digits.insert(0, places + 1 - digits.size(), '0');
    if (places)
        digits.insert(digits.size() - places, 1, '.');
    return (negative ? "-" : "") + digits;
}

std::optional<std::int64_t> ZedHintNumber(std::string_view text, std::string_view hint)
{
    if (!ZedIsIntegerHint(hint) || text.empty())
        return std::nullopt;
    const bool negative = !text.empty() && text.front() == '-';
    text.remove_prefix(negative ? 1 : 0);
    std::string digits(text);
    if (hint.size() > 2) {
        const std::size_t places = static_cast<std::size_t>(std::stoi(std::string(hint.substr(2))));
        const std::size_t point = digits.find('.');
        std::string fraction = point == std::string::npos ? "" : digits.substr(point + 1);
        digits = digits.substr(0, point);
        if (fraction.size() > places)
            return std::nullopt;
        digits += fraction + std::string(places - fraction.size(), '0');
    }
    std::uint64_t magnitude = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude,
                                              BaseOf(hint.size() == 1 ? hint[0] : 'd'));
    if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()
        || magnitude > static_cast<std::uint64_t>(INT64_MAX))
        return std::nullopt;
    const auto value = static_cast<std::int64_t>(magnitude);
    return negative ? -value : value;
}

std::optional<std::int64_t> ZedDateAndTime(std::string_view octets)
{
    if (octets.size() != 8 && octets.size() != 11)
        return std::nullopt;
    const auto at = [&octets](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(octets[i])); };
    const unsigned year = at(0) << 8 | at(1), month = at(2), day = at(3), hour = at(4), minute = at(5), second = at(6),
                   tenth = at(7);
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 60 || tenth > 9)
        return std::nullopt;
    std::int64_t ms = ((ZedDaysFromCivil(year, month, day) * 24 + hour) * 60 + minute) * 60000
                      + static_cast<std::int64_t>(second) * 1000 + tenth * 100;
    if (octets.size() == 11) {
        const char direction = octets[8];
        if ((direction != '+' && direction != '-') || at(9) > 13 || at(10) > 59)
            return std::nullopt;
        const std::int64_t offset = (static_cast<std::int64_t>(at(9)) * 60 + at(10)) * 60000;
        ms += direction == '+' ? -offset : offset;  // local time is UTC plus the offset
    }
    return ms;
}

std::string ZedDateAndTimeOctets(std::int64_t milliseconds)
{
    constexpr std::int64_t kMsPerDay = 86400000;
    std::int64_t days = milliseconds / kMsPerDay;
    std::int64_t rest = milliseconds % kMsPerDay;
    if (rest < 0) {
        rest += kMsPerDay;
        --days;
    }
    std::int64_t year = 0;
    unsigned month = 0, day = 0;
    ZedCivilFromDays(days, year, month, day);
    const auto octet = [](std::int64_t v) { return static_cast<char>(v & 0xff); };
    return {octet(year >> 8),
            octet(year),
            octet(month),
            octet(day),
            octet(rest / 3600000),
            octet(rest / 60000 % 60),
            octet(rest / 1000 % 60),
            octet(rest / 100 % 10),
            '+',
            0,
            0};
}
