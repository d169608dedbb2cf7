// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibSyntax.h"

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

TMibPresentation OctetsOf(const TMibNode& node)
{
    TMibPresentation shown{"OctetString", "OCTET STRING", false, MostOctets(node), {}};
    if (IsText(node))
        shown = {"Latin1String", "DisplayString", false, shown.length, {}};
    else if (node.convention == "PhysAddress" || node.convention == "MacAddress")
        shown.syntax = node.convention;
    else if (node.convention == "InetAddress")
        shown = {"Latin1String", "InetAddress", false, 0, {}};
    return shown;
}

TMibPresentation NumberOf(const TMibNode& node)
{
    if (node.convention == "RowStatus")
        return {"", "RowStatus", true, 0, {}};
    if (!node.numbers.empty())
        return {"", "INTEGER", true, 0, {}};
    return {"Integer32", "Integer32", false, 0, {}};
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
        return {"Unsigned32", syntax == "Gauge32" ? "Gauge32" : "Unsigned32", false, 0, {}};
    if (syntax == "Counter32")
        return {"Counter32", "Counter32", false, 0, {}};
    if (syntax == "Counter64")
        return {"Latin1String", "Counter64", false, 0, {}};
    if (syntax == "TimeTicks")
        return {"RelTime", "TimeTicks", false, 0, {}};
    if (syntax == "OBJECT IDENTIFIER")
        return {"Latin1String", "OBJECT IDENTIFIER", false, 0, {}};
    if (syntax == "IpAddress" || syntax == "NetworkAddress")
        return {"Latin1String", "IpAddress", false, 0, {}};
    if (syntax == "BITS")
        return {"Latin1String", "BITS", false, 0, {}};
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
    if (presentation.type == "Integer32" || presentation.type == "Unsigned32" || presentation.type == "Counter32") {
        const bool number = std::all_of(written.begin() + (written[0] == '-' ? 1 : 0), written.end(),
                                        [](char c) { return c >= '0' && c <= '9'; });
        return number && written != "-" ? written : std::string();
    }
    // The parser keeps a quoted text's quotes, escaped.
    for (std::string_view quote : {"\\\"", "\""})
        if (presentation.syntax == "DisplayString" && written.size() >= 2 * quote.size() && written.starts_with(quote)
            && written.ends_with(quote))
            return written.substr(quote.size(), written.size() - 2 * quote.size());
    return {};
}
