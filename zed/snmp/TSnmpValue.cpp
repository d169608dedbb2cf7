// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpValue.h"

#include "zed/value/TEnumeration.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TTimeValues.h"
#include "zed/value/TUserDefined.h"
#include "zed/value/TValueParser.h"
#include "zed/value/ZedDisplayHint.h"

#include <charconv>
#include <cstdio>
#include <limits>

namespace {

// A TruthValue's two numbers.
constexpr std::int64_t kTrue = 1;
constexpr std::int64_t kFalse = 2;

bool Fail(std::string* error, std::string reason)
{
    if (error)
        *error = std::move(reason);
    return false;
}

// Printable ASCII: octets past it are no character one could tell apart.
bool Printable(const std::string& octets)
{
    for (unsigned char c : octets)
        if ((c < 0x20 && c != '\t' && c != '\n' && c != '\r') || c >= 0x7f)
            return false;
    return true;
}

std::string Hex(const std::string& octets)
{
    std::string text;
    char pair[4];
    for (unsigned char c : octets) {
        std::snprintf(pair, sizeof pair, "%02x", c);
        text += (text.empty() ? "" : ":") + std::string(pair);
    }
    return text;
}

std::optional<std::string> FromHex(std::string_view text, std::size_t fewest)
{
    if (text.empty() && fewest == 0)
        return std::string();
    if (text.size() % 3 != 2 || (text.size() + 1) / 3 < fewest)
        return std::nullopt;
    std::string octets;
    for (std::size_t i = 0; i < text.size(); i += 3) {
        if (i + 2 < text.size() && text[i + 2] != ':')
            return std::nullopt;
        unsigned int value = 0;
        const auto [end, error] = std::from_chars(text.data() + i, text.data() + i + 2, value, 16);
        if (error != std::errc() || end != text.data() + i + 2)
            return std::nullopt;
        octets += static_cast<char>(value);
    }
    return octets;
}

std::string BitsText(const std::string& octets)
{
    std::string text;
    for (std::size_t i = 0; i < octets.size() * 8; ++i)
        if (static_cast<unsigned char>(octets[i / 8]) & (0x80u >> (i % 8)))
            text += (text.empty() ? "" : " ") + std::to_string(i);
    return text;
}

std::optional<std::string> TextBits(std::string_view text)
{
    std::string octets;
    std::size_t at = 0;
    while (at < text.size()) {
        if (text[at] == ' ' || text[at] == ',') {
            ++at;
            continue;
        }
        unsigned int bit = 0;
        const auto [end, error] = std::from_chars(text.data() + at, text.data() + text.size(), bit);
        // BITS name at most a few thousand bits; a larger number is a typing slip.
        if (error != std::errc() || bit >= 8 * 1024)
            return std::nullopt;
        if (octets.size() <= bit / 8)
            octets.resize(bit / 8 + 1, '\0');
        octets[bit / 8] = static_cast<char>(static_cast<unsigned char>(octets[bit / 8]) | (0x80u >> (bit % 8)));
        at = static_cast<std::size_t>(end - text.data());
    }
    return octets;
}

std::optional<ZedOid> DottedAddress(std::string_view text)
{
    const auto oid = ZedParseOid(std::string(text));
    if (!oid || oid->size() != 4)
        return std::nullopt;
    for (std::uint32_t part : *oid)
        if (part > 255)
            return std::nullopt;
    return oid;
}

const TDictType& BaseOf(const TDictType& type)
{
    if (type.GetDictObjectType() == ZED_DICT_TYPE_USERDEFINED)
        if (const TDictType* base = static_cast<const TDictTypeUserDefined&>(type).GetBase().get())
            return *base;
    return type;
}

const TValue& Unwrapped(const TValue& value)
{
    if (value.GetDatatype() == ZED_DT_USERDEFINED)
        return static_cast<const TUserDefined&>(value).GetValue();
    return value;
}

template <typename Number>
std::optional<Number> ParseNumber(const std::string& text)
{
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

}  // namespace

const char* ZedSnmpDatumKindName(TSnmpDatum::Kind kind)
{
    switch (kind) {
    case TSnmpDatum::Kind::Integer: return "INTEGER";
    case TSnmpDatum::Kind::Unsigned: return "Gauge32";
    case TSnmpDatum::Kind::Counter32: return "Counter32";
    case TSnmpDatum::Kind::Counter64: return "Counter64";
    case TSnmpDatum::Kind::TimeTicks: return "TimeTicks";
    case TSnmpDatum::Kind::Octets: return "OCTET STRING";
    case TSnmpDatum::Kind::ObjectId: return "OBJECT IDENTIFIER";
    case TSnmpDatum::Kind::IpAddress: return "IpAddress";
    case TSnmpDatum::Kind::Null: return "NULL";
    case TSnmpDatum::Kind::NoSuchObject: return "noSuchObject";
    case TSnmpDatum::Kind::NoSuchInstance: return "noSuchInstance";
    case TSnmpDatum::Kind::EndOfMibView: return "endOfMibView";
    }
    return "?";
}

std::string ZedSnmpDatumText(const TSnmpDatum& datum)
{
    using Kind = TSnmpDatum::Kind;
    switch (datum.kind) {
    case Kind::Integer: return std::to_string(datum.integer);
    case Kind::Unsigned:
    case Kind::Counter32:
    case Kind::Counter64:
    case Kind::TimeTicks: return std::to_string(datum.number);
    case Kind::Octets: return ZedSnmpOctetsText(datum.octets, ZedSnmpSyntax::OctetString);
    case Kind::ObjectId: return ZedOidText(datum.oid);
    case Kind::IpAddress: {
        if (datum.octets.size() != 4)
            return Hex(datum.octets);
        std::string text;
        for (unsigned char c : datum.octets)
            text += (text.empty() ? "" : ".") + std::to_string(c);
        return text;
    }
    default: return ZedSnmpDatumKindName(datum.kind);
    }
}

std::string ZedSnmpOctetsText(const std::string& octets, ZedSnmpSyntax syntax)
{
    switch (syntax) {
    case ZedSnmpSyntax::DisplayString: return octets;
    case ZedSnmpSyntax::Bits: return BitsText(octets);
    case ZedSnmpSyntax::HexOctets: return Hex(octets);
    default: return Printable(octets) ? octets : Hex(octets);
    }
}

std::optional<std::string> ZedSnmpTextOctets(std::string_view text, ZedSnmpSyntax syntax)
{
    switch (syntax) {
    case ZedSnmpSyntax::DisplayString: return std::string(text);
    case ZedSnmpSyntax::Bits: return TextBits(text);
    case ZedSnmpSyntax::HexOctets: return FromHex(text, 0);
    default:
        // Two octets at least ("ab:cd"): a lone pair stays text.
        if (auto octets = FromHex(text, 2))
            return octets;
        return std::string(text);
    }
}

namespace {

// Octets as their syntax or hint shows them; a DateAndTime as the time it is.
std::optional<std::string> OctetsShown(const std::string& octets, ZedSnmpSyntax syntax, std::string_view hint,
                                       std::string* error)
{
    if (syntax == ZedSnmpSyntax::DateAndTime) {
        const auto when = ZedDateAndTime(octets);
        if (!when) {
            Fail(error, "the " + std::to_string(octets.size()) + " octets " + Hex(octets) + " are no DateAndTime");
            return std::nullopt;
        }
        return TAbsTime::Format(*when);
    }
    const auto hinted = hint.empty() ? std::nullopt : ZedHintOctets(octets, hint);
    return hinted ? *hinted : ZedSnmpOctetsText(octets, syntax);
}

}  // namespace

TValuePtr ZedSnmpToValue(const TSnmpDatum& datum, const TDictType& type, ZedSnmpSyntax syntax, unsigned int id,
                         std::string* error, const std::function<std::string(const ZedOid&)>& nameOf,
                         std::string_view hint)
{
    using Kind = TSnmpDatum::Kind;
    std::string text;
    switch (datum.kind) {
    case Kind::Integer:
        // An agent's code the dictionary does not name still shows, as its number.
        if (type.GetDictObjectType() == ZED_DICT_TYPE_ENUMERATION)
            return std::make_unique<TEnumeration>(type.ShareAs<TDictTypeEnumeration>(), static_cast<int>(datum.integer),
                                                  id);
        if (syntax == ZedSnmpSyntax::TruthValue && datum.integer != kTrue && datum.integer != kFalse) {
            Fail(error, "TruthValue " + std::to_string(datum.integer) + " is neither true(1) nor false(2)");
            return nullptr;
        }
        text = syntax == ZedSnmpSyntax::TruthValue ? (datum.integer == kTrue ? "true" : "false")
                                                   : ZedHintInteger(datum.integer, hint);
        break;
    case Kind::TimeTicks:
        text = BaseOf(type).GetDatatype() == ZED_DT_RELTIME
                   ? TRelTime::Format(static_cast<std::int64_t>(datum.number) * 10)
                   : std::to_string(datum.number);
        break;
    case Kind::Unsigned: text = ZedHintInteger(static_cast<std::int64_t>(datum.number), hint); break;
    case Kind::Counter32:
    case Kind::Counter64: text = std::to_string(datum.number); break;
    case Kind::Octets: {
        std::optional<std::string> shown = OctetsShown(datum.octets, syntax, hint, error);
        if (!shown)
            return nullptr;
        text = std::move(*shown);
        break;
    }
    case Kind::ObjectId: {
        text = ZedOidText(datum.oid);
        if (const std::string name = nameOf ? nameOf(datum.oid) : std::string(); !name.empty())
            text += " (" + name + ")";
        break;
    }
    case Kind::IpAddress: {
        if (datum.octets.size() != 4) {
            Fail(error, "an IpAddress of " + std::to_string(datum.octets.size()) + " octets");
            return nullptr;
        }
        text = ZedSnmpDatumText(datum);
        break;
    }
    default: Fail(error, ZedSnmpDatumKindName(datum.kind)); return nullptr;
    }
    std::string why;
    TValuePtr value = ZEDParseValue(type, text, id, {}, &why);
    if (!value)
        Fail(error, std::string(ZedSnmpDatumKindName(datum.kind)) + " " + text + " does not fit " + type.GetName()
                        + ": " + why);
    return value;
}

namespace {

using DatumKind = TSnmpDatum::Kind;

// A datum of a syntax from the text a value writes; what it is not, when none.
struct DatumReading {
    std::optional<TSnmpDatum> datum;
    const char* expected = nullptr;
};

DatumReading Reading(TSnmpDatum datum) { return {std::move(datum), nullptr}; }
DatumReading Misfit(const char* expected) { return {std::nullopt, expected}; }

template <class Number>
DatumReading NumberDatum(const std::string& text, DatumKind kind, const char* expected)
{
    const auto number = ParseNumber<Number>(text);
    if (!number)
        return Misfit(expected);
    TSnmpDatum datum;
    datum.kind = kind;
    if constexpr (std::is_signed_v<Number>)
        datum.integer = *number;
    else
        datum.number = *number;
    return Reading(std::move(datum));
}

// The name a reply gave it, "1.3.6.1 (name)", goes back as its numbers.
DatumReading OidDatum(const std::string& text)
{
    const std::size_t named = text.find(" (");
    const auto oid =
        ZedParseOid(named != std::string::npos && !text.empty() && text.back() == ')' ? text.substr(0, named) : text);
    if (!oid)
        return Misfit("an OBJECT IDENTIFIER such as 1.3.6.1");
    TSnmpDatum datum;
    datum.kind = DatumKind::ObjectId;
    datum.oid = *oid;
    return Reading(std::move(datum));
}

DatumReading AddressDatum(const std::string& text)
{
    const auto address = DottedAddress(text);
    if (!address)
        return Misfit("an IpAddress such as 10.0.0.1");
    TSnmpDatum datum;
    datum.kind = DatumKind::IpAddress;
    for (std::uint32_t part : *address)
        datum.octets += static_cast<char>(part);
    return Reading(std::move(datum));
}

DatumReading OctetsDatum(const std::string& text, ZedSnmpSyntax syntax)
{
    auto octets = ZedSnmpTextOctets(text, syntax);
    if (!octets)
        return Misfit(syntax == ZedSnmpSyntax::Bits ? "BITS: bit numbers such as \"0 3\""
                                                    : "octets in hexadecimal such as \"00:1a:2b\"");
    TSnmpDatum datum;
    datum.kind = DatumKind::Octets;
    datum.octets = std::move(*octets);
    return Reading(std::move(datum));
}

DatumReading HintedDatum(const std::string& text, ZedSnmpSyntax syntax, std::string_view hint)
{
    TSnmpDatum datum;
    if (syntax == ZedSnmpSyntax::OctetString) {
        auto octets = ZedHintText(text, hint);
        if (!octets)
            return Misfit("written as its display hint says");
        datum.kind = DatumKind::Octets;
        datum.octets = std::move(*octets);
        return Reading(std::move(datum));
    }
    const auto number = ZedHintNumber(text, hint);
    const bool unsigned32 = syntax == ZedSnmpSyntax::Unsigned;
    if (!number || (unsigned32 ? (*number < 0 || *number > UINT32_MAX) : (*number < INT32_MIN || *number > INT32_MAX)))
        return Misfit(unsigned32 ? "a 32-bit unsigned number written as its display hint says"
                                 : "an Integer32 written as its display hint says");
    datum.kind = unsigned32 ? DatumKind::Unsigned : DatumKind::Integer;
    if (unsigned32)
        datum.number = static_cast<std::uint64_t>(*number);
    else
        datum.integer = *number;
    return Reading(std::move(datum));
}

DatumReading DatumOf(const std::string& text, ZedSnmpSyntax syntax)
{
    switch (syntax) {
    case ZedSnmpSyntax::TruthValue: {
        TSnmpDatum datum;
        datum.kind = DatumKind::Integer;
        datum.integer = text == "true" ? kTrue : kFalse;
        return text == "true" || text == "false" ? Reading(std::move(datum)) : Misfit("true or false");
    }
    case ZedSnmpSyntax::DateAndTime: {
        const auto when = TAbsTime::Parse(text);
        if (!when)
            return Misfit("a date and time");
        TSnmpDatum datum;
        datum.kind = DatumKind::Octets;
        datum.octets = ZedDateAndTimeOctets(*when);
        return Reading(std::move(datum));
    }
    case ZedSnmpSyntax::Integer:
    case ZedSnmpSyntax::RowStatus: return NumberDatum<std::int32_t>(text, DatumKind::Integer, "an INTEGER (Integer32)");
    case ZedSnmpSyntax::Unsigned:
        return NumberDatum<std::uint32_t>(text, DatumKind::Unsigned, "a 32-bit unsigned number");
    case ZedSnmpSyntax::Counter32:
        return NumberDatum<std::uint32_t>(text, DatumKind::Counter32, "a 32-bit unsigned number");
    case ZedSnmpSyntax::TimeTicks:
        return NumberDatum<std::uint32_t>(text, DatumKind::TimeTicks, "a 32-bit unsigned number");
    case ZedSnmpSyntax::Counter64: return NumberDatum<std::uint64_t>(text, DatumKind::Counter64, "a Counter64");
    case ZedSnmpSyntax::ObjectId: return OidDatum(text);
    case ZedSnmpSyntax::IpAddress: return AddressDatum(text);
    case ZedSnmpSyntax::OctetString:
    case ZedSnmpSyntax::HexOctets:
    case ZedSnmpSyntax::DisplayString:
    case ZedSnmpSyntax::Bits: return OctetsDatum(text, syntax);
    }
    return Misfit("of a known syntax");
}

}  // namespace

std::optional<TSnmpDatum> ZedSnmpFromValue(const TValue& given, ZedSnmpSyntax syntax, std::string* error,
                                           std::string_view hint)
{
    const TValue& value = Unwrapped(given);
    if (!value.IsPresent() || value.HasReason()) {
        Fail(error, "no value to send");
        return std::nullopt;
    }
    // An enumeration goes as its number, a duration as hundredths of a second.
    const std::string text =
        value.GetDatatype() == ZED_DT_BOOLEAN ? (static_cast<const TBoolean&>(value).GetValue() ? "true" : "false")
        : value.GetDatatype() == ZED_DT_ENUMERATION ? std::to_string(static_cast<const TEnumeration&>(value).GetCode())
        : value.GetDatatype() == ZED_DT_RELTIME
            ? std::to_string(static_cast<const TRelTime&>(value).GetMilliseconds() / 10)
            : value.ToString();
    DatumReading reading = hint.empty() || syntax == ZedSnmpSyntax::DisplayString ? DatumOf(text, syntax)
                                                                                  : HintedDatum(text, syntax, hint);
    if (!reading.datum)
        Fail(error, "\"" + text + "\" is not " + reading.expected);
    return std::move(reading.datum);
}
