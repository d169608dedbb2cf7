// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibSyntax.h"

#include "zed/value/ZedDisplayHint.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>

namespace {

// Text whatever its octets: a DISPLAY-HINT of "a" (ASCII) or "t" (UTF-8) octets.
bool IsText(const TMibNode& node)
{
    for (const char* convention : {"DisplayString", "SnmpAdminString"})
        if (node.convention == convention)
            return true;
    const std::string& hint = node.hint;
    return hint.size() > 1 && (hint.back() == 'a' || hint.back() == 't')
           && std::all_of(hint.begin(), hint.end() - 1, [](char c) { return c >= '0' && c <= '9'; });
}

unsigned int MostOctets(const TMibNode& node)
{
    std::int64_t most = 0;
    for (const TMibRange& range : node.ranges)
        most = std::max(most, range.high);
    return most > 0 && most <= 65535 ? static_cast<unsigned int>(most) : 0;
}

TMibPresentation Shown(const char* type, const char* syntax, unsigned int length = 0)
{
    TMibPresentation shown;
    shown.type = type;
    shown.syntax = syntax;
    shown.length = length;
    return shown;
}

// Hinted octets are text written as the hint says ("1d.1d.1d.1d").
TMibPresentation OctetsOf(const TMibNode& node)
{
    if (IsText(node))
        return Shown("Latin1String", "DisplayString", MostOctets(node));
    if (node.convention == "PhysAddress" || node.convention == "MacAddress")
        return Shown("OctetString", node.convention == "PhysAddress" ? "PhysAddress" : "MacAddress", MostOctets(node));
    if (node.convention == "InetAddress")
        return Shown("Latin1String", "InetAddress");
    if (node.convention == "DateAndTime")
        return Shown("AbsTime", "DateAndTime");
    if (!ZedIsOctetHint(node.hint))
        return Shown("OctetString", "OCTET STRING", MostOctets(node));
    TMibPresentation shown = Shown("Latin1String", "OCTET STRING");
    shown.hint = node.hint;
    return shown;
}

// A number a hint writes otherwise than in decimal ("d-2") is text.
TMibPresentation Hinted(TMibPresentation shown, const TMibNode& node)
{
    if (node.hint.empty() || node.hint == "d" || !ZedIsIntegerHint(node.hint))
        return shown;
    shown.type = "Latin1String";
    shown.hint = node.hint;
    return shown;
}

TMibPresentation NumberOf(const TMibNode& node)
{
    if (node.convention == "TruthValue")
        return Shown("Boolean", "TruthValue");
    TMibPresentation shown = Shown("", node.convention == "RowStatus" ? "RowStatus" : "INTEGER");
    shown.enumeration = true;
    if (node.convention == "RowStatus" || !node.numbers.empty())
        return shown;
    return Hinted(Shown("Integer32", "Integer32"), node);
}

}  // namespace

TMibPresentation ZedMibPresentationOf(const TMibNode& node)
{
    const std::string& syntax = node.syntax;
    if (syntax == "INTEGER" || syntax == "Integer32")
        return NumberOf(node);
    if (syntax == "OCTET STRING")
        return OctetsOf(node);
    if (syntax == "Unsigned32" || syntax == "Gauge32" || syntax == "UInteger32")
        return Hinted(Shown("Unsigned32", syntax == "Gauge32" ? "Gauge32" : "Unsigned32"), node);
    if (syntax == "Counter32")
        return Shown("Counter32", "Counter32");
    if (syntax == "Counter64")
        return Shown("Latin1String", "Counter64");
    if (syntax == "TimeTicks")
        return Shown("RelTime", "TimeTicks");
    if (syntax == "OBJECT IDENTIFIER")
        return Shown("Latin1String", "OBJECT IDENTIFIER");
    if (syntax == "IpAddress" || syntax == "NetworkAddress")
        return Shown("Latin1String", "IpAddress");
    if (syntax == "BITS")
        return Shown("Latin1String", "BITS");
    TMibPresentation none;
    none.why = syntax.empty() ? "its syntax is not known (a module it imports from was not found?)"
                              : "its syntax " + syntax + " cannot be presented";
    return none;
}

std::string ZedMibDefaultOf(const TMibNode& node, const TMibPresentation& presentation)
{
    const std::string& written = node.defval;
    if (written.empty())
        return {};
    if (presentation.enumeration) {
        const auto named = [&written](const TMibNamedNumber& number) { return number.name == written; };
        return std::any_of(node.numbers.begin(), node.numbers.end(), named) ? written : std::string();
    }
    if (presentation.type == "Boolean")
        return written == "true" || written == "false" ? written : std::string();
    const bool number = written != "-"
                        && std::all_of(written.begin() + (written[0] == '-' ? 1 : 0), written.end(),
                                       [](char c) { return c >= '0' && c <= '9'; });
    if (number && presentation.syntax != "OCTET STRING" && presentation.syntax != "DisplayString")
        return presentation.hint.empty() ? written : ZedHintInteger(std::stoll(written), presentation.hint);
    // The parser keeps a quoted text's quotes, escaped.
    for (std::string_view quote : {"\\\"", "\""})
        if (presentation.syntax == "DisplayString" && written.size() >= 2 * quote.size() && written.starts_with(quote)
            && written.ends_with(quote))
            return written.substr(quote.size(), written.size() - 2 * quote.size());
    return {};
}
