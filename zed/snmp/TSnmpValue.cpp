// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpValue.h"

#include "zed/value/TEnumeration.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TTimeValues.h"
#include "zed/value/TUserDefined.h"
#include "zed/value/TValueParser.h"

#include <charconv>
#include <cstdio>
#include <limits>

namespace {

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

TValuePtr ZedSnmpToValue(const TSnmpDatum& datum, const TDictType& type, ZedSnmpSyntax syntax, unsigned int id,
                         std::string* error, const std::function<std::string(const ZedOid&)>& nameOf)
{
    using Kind = TSnmpDatum::Kind;
    std::string text;
    switch (datum.kind) {
    case Kind::Integer:
        // An agent's code the dictionary does not name still shows, as its number.
        if (type.GetDictObjectType() == ZED_DICT_TYPE_ENUMERATION)
            return std::make_unique<TEnumeration>(type.ShareAs<TDictTypeEnumeration>(), static_cast<int>(datum.integer),
                                                  id);
        text = std::to_string(datum.integer);
        break;
    case Kind::TimeTicks:
        text = BaseOf(type).GetDatatype() == ZED_DT_RELTIME
                   ? TRelTime::Format(static_cast<std::int64_t>(datum.number) * 10)
                   : std::to_string(datum.number);
        break;
    case Kind::Unsigned:
    case Kind::Counter32:
    case Kind::Counter64: text = std::to_string(datum.number); break;
    case Kind::Octets: text = ZedSnmpOctetsText(datum.octets, syntax); break;
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

std::optional<TSnmpDatum> ZedSnmpFromValue(const TValue& given, ZedSnmpSyntax syntax, std::string* error)
{
    using Kind = TSnmpDatum::Kind;
    const TValue& value = Unwrapped(given);
    if (!value.IsPresent() || value.HasReason()) {
        Fail(error, "no value to send");
        return std::nullopt;
    }
    TSnmpDatum datum;
    const std::string text = value.GetDatatype() == ZED_DT_ENUMERATION
                                 ? std::to_string(static_cast<const TEnumeration&>(value).GetCode())
                             : value.GetDatatype() == ZED_DT_RELTIME
                                 ? std::to_string(static_cast<const TRelTime&>(value).GetMilliseconds() / 10)
                                 : value.ToString();
    const auto misfit = [&](const char* what) -> std::optional<TSnmpDatum> {
        Fail(error, "\"" + text + "\" is not " + what);
        return std::nullopt;
    };
    switch (syntax) {
    case ZedSnmpSyntax::Integer:
    case ZedSnmpSyntax::RowStatus: {
        const auto number = ParseNumber<std::int32_t>(text);
        if (!number)
            return misfit("an INTEGER (Integer32)");
        datum.kind = Kind::Integer;
        datum.integer = *number;
        return datum;
    }
    case ZedSnmpSyntax::Unsigned:
    case ZedSnmpSyntax::Counter32:
    case ZedSnmpSyntax::TimeTicks: {
        const auto number = ParseNumber<std::uint32_t>(text);
        if (!number)
            return misfit("a 32-bit unsigned number");
        datum.kind = syntax == ZedSnmpSyntax::Unsigned    ? Kind::Unsigned
                     : syntax == ZedSnmpSyntax::Counter32 ? Kind::Counter32
                                                          : Kind::TimeTicks;
        datum.number = *number;
        return datum;
    }
    case ZedSnmpSyntax::Counter64: {
        const auto number = ParseNumber<std::uint64_t>(text);
        if (!number)
            return misfit("a Counter64");
        datum.kind = Kind::Counter64;
        datum.number = *number;
        return datum;
    }
    case ZedSnmpSyntax::ObjectId: {
        // The name a reply gave it, "1.3.6.1 (name)", goes back as its numbers.
        const std::size_t named = text.find(" (");
        const auto oid = ZedParseOid(named != std::string::npos && !text.empty() && text.back() == ')'
                                         ? std::string(text.substr(0, named))
                                         : std::string(text));
        if (!oid)
            return misfit("an OBJECT IDENTIFIER such as 1.3.6.1");
        datum.kind = Kind::ObjectId;
        datum.oid = *oid;
        return datum;
    }
    case ZedSnmpSyntax::IpAddress: {
        const auto address = DottedAddress(text);
        if (!address)
            return misfit("an IpAddress such as 10.0.0.1");
        datum.kind = Kind::IpAddress;
        for (std::uint32_t part : *address)
            datum.octets += static_cast<char>(part);
        return datum;
    }
    case ZedSnmpSyntax::OctetString:
    case ZedSnmpSyntax::HexOctets:
    case ZedSnmpSyntax::DisplayString:
    case ZedSnmpSyntax::Bits: {
        auto octets = ZedSnmpTextOctets(text, syntax);
        if (!octets)
            return misfit(syntax == ZedSnmpSyntax::Bits ? "BITS: bit numbers such as \"0 3\""
                                                        : "octets in hexadecimal such as \"00:1a:2b\"");
        datum.kind = Kind::Octets;
        datum.octets = std::move(*octets);
        return datum;
    }
    }
    return misfit("of a known syntax");
}
