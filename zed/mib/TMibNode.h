// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What MIB modules define, as plain values: the objects, tables and
// notifications of the modules read, and what went wrong reading them. The
// reader fills them from net-snmp's parser; nothing of net-snmp shows here.

#include "zed/ZedExport.h"
#include "zed/dict/TDictSnmp.h"

#include <cstdint>
#include <string>
#include <vector>

/// What a node of the MIB tree is to a management console.
enum class ZedMibKind {
    Node,          // an OID that names a branch only (a group, an identity)
    Scalar,        // an object of one instance (.0)
    Table,         // SEQUENCE OF its entries
    Entry,         // a table's row: its INDEX or AUGMENTS
    Column,        // an object of an entry
    Notification,  // NOTIFICATION-TYPE or TRAP-TYPE
};

enum class ZedMibAccess { NotAccessible, ForNotify, ReadOnly, ReadWrite, ReadCreate, WriteOnly };
enum class ZedMibStatus { Current, Deprecated, Obsolete };

/// A named number of an enumeration or a BITS syntax.
struct TMibNamedNumber {
    std::int64_t value = 0;
    std::string name;
};

/// A range of values, or of sizes for a string.
struct TMibRange {
    std::int64_t low = 0;
    std::int64_t high = 0;
};

/// One node of a module, with what its definition says.
struct ZED_EXPORT TMibNode {
    std::string name;    // the descriptor: "ifDescr"
    std::string module;  // the module that defines it
    ZedOid oid;
    ZedMibKind kind = ZedMibKind::Node;
    /// The SMI base syntax as it travels: "INTEGER", "OCTET STRING",
    /// "Counter32", "BITS", ...; empty for what has no value.
    std::string syntax;
    /// The textual convention the syntax is written with ("DisplayString"), if any.
    std::string convention;
    std::string hint;  // DISPLAY-HINT, the object's or its convention's
    std::string units;
    std::string description;
    std::string defval;  // DEFVAL as written
    ZedMibAccess access = ZedMibAccess::NotAccessible;
    ZedMibStatus status = ZedMibStatus::Current;
    std::vector<TMibNamedNumber> numbers;  // named numbers or named bits
    std::vector<TMibRange> ranges;         // value ranges, or SIZE for strings
    std::vector<std::string> index;        // an entry's INDEX objects, in order
    bool implied = false;                  // the last index object is IMPLIED
    std::string augments;                  // the entry an entry AUGMENTS
    std::vector<std::string> objects;      // a notification's OBJECTS (VARIABLES)

    bool Writable() const { return access == ZedMibAccess::ReadWrite || access == ZedMibAccess::ReadCreate; }
};

/// A fault met reading modules: fatal ones failed their module.
struct TMibFault {
    std::string module;  // the module it concerns, when known
    std::string file;
    int line = 0;
    std::string text;
    bool fatal = false;

    /// "FILE:LINE: text" (or "MODULE: text" when no file is known).
    ZED_EXPORT std::string Said() const;
};
