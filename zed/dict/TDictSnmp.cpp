// SPDX-License-Identifier: BSD-3-Clause
#include "zed/dict/TDictSnmp.h"

#include <array>
#include <charconv>
#include <utility>

namespace {

constexpr std::array<std::pair<const char*, ZedSnmpSyntax>, 18> kSyntaxes = {{
    {"INTEGER", ZedSnmpSyntax::Integer},
    {"Integer32", ZedSnmpSyntax::Integer},
    {"Unsigned32", ZedSnmpSyntax::Unsigned},
    {"Gauge32", ZedSnmpSyntax::Unsigned},
    {"Counter32", ZedSnmpSyntax::Counter32},
    {"Counter64", ZedSnmpSyntax::Counter64},
    {"TimeTicks", ZedSnmpSyntax::TimeTicks},
    {"OCTET STRING", ZedSnmpSyntax::OctetString},
    {"DisplayString", ZedSnmpSyntax::DisplayString},
    {"OBJECT IDENTIFIER", ZedSnmpSyntax::ObjectId},
    {"IpAddress", ZedSnmpSyntax::IpAddress},
    {"BITS", ZedSnmpSyntax::Bits},
    {"RowStatus", ZedSnmpSyntax::RowStatus},
    {"InetAddress", ZedSnmpSyntax::OctetString},
    {"PhysAddress", ZedSnmpSyntax::HexOctets},
    {"MacAddress", ZedSnmpSyntax::HexOctets},
    {"TruthValue", ZedSnmpSyntax::TruthValue},
    {"DateAndTime", ZedSnmpSyntax::DateAndTime},
}};

}  // namespace

std::string ZedOidText(const ZedOid& oid)
{
    std::string text;
    for (std::uint32_t part : oid)
        text += (text.empty() ? "" : ".") + std::to_string(part);
    return text;
}

std::optional<ZedOid> ZedParseOid(const std::string& text)
{
    ZedOid oid;
    const char* at = text.data();
    const char* end = at + text.size();
    while (at < end) {
        std::uint32_t part = 0;
        const auto [next, error] = std::from_chars(at, end, part);
        if (error != std::errc() || next == at)
            return std::nullopt;
        oid.push_back(part);
        at = next;
        if (at < end && *at++ != '.')
            return std::nullopt;
        if (at == end && text.back() == '.')
            return std::nullopt;
    }
    if (oid.size() < 2 || oid.size() > 128)
        return std::nullopt;
    return oid;
}

std::optional<ZedSnmpSyntax> ZedSnmpSyntaxNamed(const std::string& name)
{
    for (const auto& [text, syntax] : kSyntaxes)
        if (name == text)
            return syntax;
    return std::nullopt;
}

const char* ZedSnmpSyntaxName(ZedSnmpSyntax syntax)
{
    for (const auto& [text, named] : kSyntaxes)
        if (named == syntax)
            return text;
    return "?";
}
