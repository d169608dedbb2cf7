// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// How a dictionary binds its classes and attributes to SNMP objects (the
// optional "snmp" objects of a dictionary file). A class is the agent itself
// (its instances are the agents, named as an agents file names them), a group
// of scalars (one instance, ".0"), or a table whose rows are its instances,
// named by their index. An attribute is a column (or a scalar's
// sub-identifier) with its SMI syntax.

#include "zed/ZedExport.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

using ZedOid = std::vector<std::uint32_t>;

/// "1.3.6.1.2.1.1": an OID's text.
ZED_EXPORT std::string ZedOidText(const ZedOid& oid);
/// The OID of a text, or none when it is not one (digits and dots, two parts at least).
ZED_EXPORT std::optional<ZedOid> ZedParseOid(const std::string& text);

/// The SMI syntaxes a binding knows, as they travel.
enum class ZedSnmpSyntax {
    Integer,   // INTEGER, Integer32 (enumerations by number)
    Unsigned,  // Unsigned32, Gauge32
    Counter32,
    Counter64,
    TimeTicks,
    OctetString,    // text when printable, hexadecimal otherwise
    HexOctets,      // OCTET STRING always shown in hexadecimal: PhysAddress, MacAddress
    DisplayString,  // text
    ObjectId,
    IpAddress,
    Bits,
    RowStatus,    // INTEGER: active(1) ... destroy(6)
    TruthValue,   // INTEGER: true(1), false(2), as a boolean
    DateAndTime,  // OCTET STRING of 8 or 11 octets, as a point in time
};

/// The syntax of its name ("Counter32", "OCTET STRING", ...), or none.
ZED_EXPORT std::optional<ZedSnmpSyntax> ZedSnmpSyntaxNamed(const std::string& name);
ZED_EXPORT const char* ZedSnmpSyntaxName(ZedSnmpSyntax syntax);

/// An attribute bound to a column of its class's table (or a scalar of its group).
struct ZED_EXPORT TDictSnmpColumn {
    std::uint32_t column = 0;
    ZedSnmpSyntax syntax = ZedSnmpSyntax::Integer;
    /// The entry of a table that augments the class's (same index), when the column is its.
    ZedOid entry;
    /// The DISPLAY-HINT its values are written by ("1x:", "d-2"); empty: the syntax's own way.
    std::string hint;
};

/// An event argument bound to a notification's variable: the variable's OID
/// without its instance, and its syntax.
struct ZED_EXPORT TDictSnmpVariable {
    ZedOid oid;
    ZedSnmpSyntax syntax = ZedSnmpSyntax::Integer;
    std::string hint;
};

/// A class bound to SNMP.
struct ZED_EXPORT TDictSnmpClass {
    enum class Kind { Agent, Scalars, Table };
    Kind kind = Kind::Agent;
    /// The scalar group's OID (the agent's own scalars too), or the table entry's.
    ZedOid oid;
    /// A table's index: the attributes (by identifier) whose columns index a row, in order.
    std::vector<unsigned int> index;
    /// The last index part is IMPLIED (a string without its length).
    bool implied = false;
    /// The attribute (identifier) of the RowStatus column that creates and destroys rows; 0: none.
    unsigned int rowStatus = 0;
};
