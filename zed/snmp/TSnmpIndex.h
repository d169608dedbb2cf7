// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A table row's instance name and the index its OIDs end with, both ways.
// Each index part is written as people read it: a number in decimal, an
// IpAddress dotted, an OBJECT IDENTIFIER dotted, a string as its text.
// Several parts are joined with "/" ("10.0.0.0/255.0.0.0/0/10.0.0.1"); a "/"
// or "\" inside a string part is written with a "\" before it.

#include "zed/dict/TDictSnmp.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class TDictClass;

/// A table class's index: the syntaxes of its index columns, and the
/// conversions between instance names and OID index parts.
class ZED_EXPORT TSnmpIndex {
public:
    /// One index column.
    struct Part {
        ZedSnmpSyntax syntax = ZedSnmpSyntax::Integer;
        /// The last part of an IMPLIED index: a string or OID without its length.
        bool implied = false;
    };

    explicit TSnmpIndex(std::vector<Part> parts);
    /// The index of a table class (its index columns' syntaxes); empty for others.
    static TSnmpIndex Of(const TDictClass& cls);

    const std::vector<Part>& GetParts() const { return m_parts; }

    /// The OID suffix that names the row; none, with the reason, when the
    /// name is not one of this index.
    std::optional<ZedOid> Encode(std::string_view name, std::string* error = nullptr) const;
    /// Each part's text from an OID suffix that holds exactly one index; none
    /// when it does not.
    std::optional<std::vector<std::string>> Decode(const std::uint32_t* suffix, std::size_t length) const;
    std::optional<std::vector<std::string>> Decode(const ZedOid& suffix) const
    {
        return Decode(suffix.data(), suffix.size());
    }

    /// The instance name of the parts' texts.
    static std::string Join(const std::vector<std::string>& parts);

private:
    std::vector<Part> m_parts;
};
