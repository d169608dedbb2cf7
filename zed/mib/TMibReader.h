// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// MIB modules read by net-snmp's own parser and handed over as plain nodes.
// The parser's state is the process's: one read at a time holds it, starts
// it afresh and frees it after, so that nothing of one read leaks into the
// next, and what the parser says is heard as the read's faults rather than
// printed.

#include "zed/ZedExport.h"
#include "zed/mib/TMibNode.h"
#include "zed/mib/TMibSearchPath.h"

#include <string>
#include <string_view>
#include <vector>

/// What a read of MIB modules gave: the nodes of the modules read whole and
/// every fault met.
struct ZED_EXPORT TMibModules {
    std::vector<std::string> loaded;  // as asked, in order
    std::vector<std::string> failed;  // not found, or a syntax error: none of their nodes is kept
    std::vector<TMibNode> nodes;      // of the modules loaded, in OID order
    std::vector<TMibFault> faults;

    const TMibNode* Find(std::string_view name) const;
    const TMibNode* Find(const ZedOid& oid) const;
    /// The nodes right below one, in OID order.
    std::vector<const TMibNode*> ChildrenOf(const TMibNode& node) const;
};

/// Reads MIB modules with net-snmp's parser.
class ZED_EXPORT TMibReader {
public:
    /// Reads the modules (by name, or a file of a module by its path: a name
    /// with a "/") and the modules they import, found on the search path.
    /// Nodes are kept of the modules named only; their imports give syntaxes.
    static TMibModules Read(const TMibSearchPath& path, const std::vector<std::string>& modules);
};
