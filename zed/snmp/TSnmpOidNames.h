// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What the dictionary calls an OID: the tables and scalar groups of its
// classes, their columns and its notifications. Answers and notifications
// carry OIDs; people read names.

#include "zed/dict/TDictionary.h"

#include <map>
#include <string>

/// The dictionary's names of OIDs, looked up by the longest part known.
class TSnmpOidNames {
public:
    explicit TSnmpOidNames(const TDictionary& dictionary);

    /// The name of the longest part of the OID the dictionary knows, and the
    /// rest in numbers: "Interface Description.2"; empty when it knows none.
    std::string NameOf(const ZedOid& oid) const;

    /// Names an OID the dictionary does not (a MIB module's node); the
    /// dictionary's own names stay.
    void Name(const ZedOid& oid, const std::string& name) { m_names.emplace(oid, name); }

private:
    void Add(const TDictClass& cls);

    std::map<ZedOid, std::string> m_names;
};
