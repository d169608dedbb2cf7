// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Values both ways between the management model and SNMP: what a varbind
// carries (TSnmpDatum), made from and into values of the dictionary's types
// by the attribute's SMI syntax.
//
// Texts: an OCTET STRING is its text when every octet is printable ASCII,
// else its octets in hexadecimal ("00:1a:2b"), and such a text of two octets
// or more is read back as octets; a PhysAddress or MacAddress is always
// hexadecimal; a DisplayString is its text; an OBJECT IDENTIFIER
// and an IpAddress are dotted; BITS are the numbers of the bits set ("0 3");
// Counter64 is decimal. Enumerations travel by number; TimeTicks are
// hundredths of a second; a TruthValue is a boolean, a DateAndTime a point
// in time. A DISPLAY-HINT writes integers and octets as the MIB says.

#include "zed/dict/TDictSnmp.h"
#include "zed/dict/TDictType.h"
#include "zed/value/TValue.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// What one varbind carries.
struct ZED_EXPORT TSnmpDatum {
    enum class Kind {
        Integer,
        Unsigned,  // Gauge32, Unsigned32
        Counter32,
        Counter64,
        TimeTicks,
        Octets,
        ObjectId,
        IpAddress,
        Null,
        NoSuchObject,    // the agent does not implement the object
        NoSuchInstance,  // it has no such instance
        EndOfMibView,    // nothing follows
    };
    Kind kind = Kind::Null;
    std::int64_t integer = 0;  // Integer
    std::uint64_t number = 0;  // Unsigned, Counter32, Counter64, TimeTicks
    std::string octets;        // Octets; IpAddress (4 octets)
    ZedOid oid;                // ObjectId

    bool IsException() const { return kind >= Kind::NoSuchObject; }
};

/// The datum's name for people: "noSuchInstance", "Counter32"...
ZED_EXPORT const char* ZedSnmpDatumKindName(TSnmpDatum::Kind kind);

/// The attribute's value of a datum: a value of type with that identifier;
/// null, with the reason, when the datum does not fit.
/// An OBJECT IDENTIFIER is written in numbers, with its name after it in
/// parentheses where nameOf knows one: "1.3.6.1.6.3.1.1.5.3 (linkDown)".
/// A hint (DISPLAY-HINT) writes an integer or octets as it says.
ZED_EXPORT TValuePtr ZedSnmpToValue(const TSnmpDatum& datum, const TDictType& type, ZedSnmpSyntax syntax,
                                    unsigned int id, std::string* error = nullptr,
                                    const std::function<std::string(const ZedOid&)>& nameOf = {},
                                    std::string_view hint = {});
/// The datum that sets an object of that syntax to the value; none, with the
/// reason, when the value does not fit the syntax.
ZED_EXPORT std::optional<TSnmpDatum> ZedSnmpFromValue(const TValue& value, ZedSnmpSyntax syntax,
                                                      std::string* error = nullptr, std::string_view hint = {});

/// The datum's value as text, whatever it is bound to: "42", "lo",
/// "00:1a:2b", "1.3.6.1.2.1.1", "127.0.0.1", "noSuchInstance".
ZED_EXPORT std::string ZedSnmpDatumText(const TSnmpDatum& datum);
/// Octets as text, as the syntax shows them.
ZED_EXPORT std::string ZedSnmpOctetsText(const std::string& octets, ZedSnmpSyntax syntax);
/// The octets a text stands for under the syntax; none when it cannot.
ZED_EXPORT std::optional<std::string> ZedSnmpTextOctets(std::string_view text, ZedSnmpSyntax syntax);
