// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpIndex.h"

#include "zed/dict/TDictObjects.h"

#include <charconv>

namespace {

enum class Shape { Number, Address, Octets, Oid, Unusable };

Shape ShapeOf(ZedSnmpSyntax syntax)
{
    switch (syntax) {
    case ZedSnmpSyntax::Integer:
    case ZedSnmpSyntax::Unsigned:
    case ZedSnmpSyntax::Counter32:
    case ZedSnmpSyntax::TimeTicks:
    case ZedSnmpSyntax::RowStatus:
    case ZedSnmpSyntax::TruthValue: return Shape::Number;
    case ZedSnmpSyntax::IpAddress: return Shape::Address;
    case ZedSnmpSyntax::OctetString:
    case ZedSnmpSyntax::HexOctets:
    case ZedSnmpSyntax::DisplayString:
    case ZedSnmpSyntax::Bits:
    case ZedSnmpSyntax::DateAndTime: return Shape::Octets;
    case ZedSnmpSyntax::ObjectId: return Shape::Oid;
    case ZedSnmpSyntax::Counter64: return Shape::Unusable;  // never an index (SMI)
    }
    return Shape::Unusable;
}

// An OID holds at most 128 sub-identifiers; an index is a part of one.
constexpr std::size_t kLongestIndex = 128;

// Splits an instance name at its unescaped "/"s, unescaping each part.
std::optional<std::vector<std::string>> Split(std::string_view name)
{
    std::vector<std::string> parts(1);
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '\\') {
            if (++i == name.size())
                return std::nullopt;
            parts.back() += name[i];
        } else if (name[i] == '/') {
            parts.emplace_back();
        } else {
            parts.back() += name[i];
        }
    }
    return parts;
}

std::optional<std::uint32_t> Number(std::string_view text, std::uint32_t most)
{
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value > most)
        return std::nullopt;
    return value;
}

std::optional<ZedOid> DottedNumbers(std::string_view text, std::size_t count, std::uint32_t most)
{
    ZedOid parts;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t dot = text.find('.', start);
        if (dot == std::string_view::npos)
            dot = text.size();
        const auto part = Number(text.substr(start, dot - start), most);
        if (!part)
            return std::nullopt;
        parts.push_back(*part);
        start = dot + 1;
    }
    if (count && parts.size() != count)
        return std::nullopt;
    return parts;
}

std::string Dotted(const std::uint32_t* at, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += (i ? "." : "") + std::to_string(at[i]);
    return text;
}

}  // namespace

TSnmpIndex::TSnmpIndex(std::vector<Part> parts) : m_parts(std::move(parts)) {}

TSnmpIndex TSnmpIndex::Of(const TDictClass& cls)
{
    std::vector<Part> parts;
    const auto& binding = cls.GetSnmp();
    if (!binding || binding->kind != TDictSnmpClass::Kind::Table)
        return TSnmpIndex({});
    for (unsigned int id : binding->index)
        parts.push_back(Part{cls.FindAttribute(id)->GetSnmp()->syntax, false});
    if (!parts.empty())
        parts.back().implied = binding->implied;
    return TSnmpIndex(std::move(parts));
}

std::optional<ZedOid> TSnmpIndex::Encode(std::string_view name, std::string* error) const
{
    const auto fail = [error](std::string reason) -> std::optional<ZedOid> {
        if (error)
            *error = std::move(reason);
        return std::nullopt;
    };
    const auto parts = Split(name);
    if (!parts)
        return fail("\"" + std::string(name) + "\" ends with a lone \\");
    if (parts->size() != m_parts.size())
        return fail("\"" + std::string(name) + "\" has " + std::to_string(parts->size()) + " index part"
                    + (parts->size() == 1 ? "" : "s") + ", the table " + std::to_string(m_parts.size()));
    ZedOid oid;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        const std::string& text = (*parts)[i];
        const Part& part = m_parts[i];
        switch (ShapeOf(part.syntax)) {
        case Shape::Number: {
            const auto number = Number(text, UINT32_MAX);
            if (!number)
                return fail("\"" + text + "\" is not a whole number from 0 to 4294967295");
            oid.push_back(*number);
            break;
        }
        case Shape::Address: {
            const auto address = DottedNumbers(text, 4, 255);
            if (!address)
                return fail("\"" + text + "\" is not an IP address such as 10.0.0.1");
            oid.insert(oid.end(), address->begin(), address->end());
            break;
        }
        case Shape::Octets:
            if (!part.implied)
                oid.push_back(static_cast<std::uint32_t>(text.size()));
            for (unsigned char c : text)
                oid.push_back(c);
            break;
        case Shape::Oid: {
            const auto value = DottedNumbers(text, 0, UINT32_MAX);
            if (!value)
                return fail("\"" + text + "\" is not an object identifier such as 1.3.6.1");
            if (!part.implied)
                oid.push_back(static_cast<std::uint32_t>(value->size()));
            oid.insert(oid.end(), value->begin(), value->end());
            break;
        }
        case Shape::Unusable: return fail(std::string(ZedSnmpSyntaxName(part.syntax)) + " cannot index a table");
        }
        if (oid.size() > kLongestIndex)
            return fail("the index of \"" + std::string(name) + "\" is longer than an OID may be");
    }
    return oid;
}

std::optional<std::vector<std::string>> TSnmpIndex::Decode(const std::uint32_t* at, std::size_t length) const
{
    if (length > kLongestIndex)
        return std::nullopt;
    std::vector<std::string> texts;
    const std::uint32_t* end = at + length;
    for (const Part& part : m_parts) {
        const auto left = static_cast<std::size_t>(end - at);
        switch (ShapeOf(part.syntax)) {
        case Shape::Number:
            if (left < 1)
                return std::nullopt;
            texts.push_back(std::to_string(*at++));
            break;
        case Shape::Address:
            if (left < 4 || at[0] > 255 || at[1] > 255 || at[2] > 255 || at[3] > 255)
                return std::nullopt;
            texts.push_back(Dotted(at, 4));
            at += 4;
            break;
        case Shape::Octets:
        case Shape::Oid: {
            std::size_t count = left;
            if (!part.implied) {
                if (left < 1 || at[0] > left - 1)
                    return std::nullopt;
                count = *at++;
            }
            if (ShapeOf(part.syntax) == Shape::Oid) {
                if (count == 0)
                    return std::nullopt;  // no object identifier is empty
                texts.push_back(Dotted(at, count));
            } else {
                std::string octets;
                for (std::size_t i = 0; i < count; ++i) {
                    if (at[i] > 255)
                        return std::nullopt;
                    octets += static_cast<char>(at[i]);
                }
                texts.push_back(std::move(octets));
            }
            at += count;
            break;
        }
        case Shape::Unusable: return std::nullopt;
        }
    }
    if (at != end)
        return std::nullopt;
    return texts;
}

std::string TSnmpIndex::Join(const std::vector<std::string>& parts)
{
    std::string name;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i)
            name += '/';
        for (char c : parts[i]) {
            if (c == '/' || c == '\\')
                name += '\\';
            name += c;
        }
    }
    return name;
}
