// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Real MIB text for the tests: erlang-snmp's modules (SNMPv2-SMI, -TC,
// SNMPv2-MIB, the SNMP engine's tables; installed by the test set-up),
// net-snmp's own (libsnmp-base) and the suite's module of every construct.

#include "zed/mib/TMibSearchPath.h"

#include <glob.h>

#include <string>

// erlang-snmp's folder of MIB text, whatever its version; empty when absent.
inline std::string ErlangMibFolder()
{
    glob_t found{};
    std::string folder;
    if (glob("/usr/lib/erlang/lib/snmp-*/mibs", GLOB_ONLYDIR, nullptr, &found) == 0 && found.gl_pathc > 0)
        folder = found.gl_pathv[found.gl_pathc - 1];
    globfree(&found);
    return folder;
}

inline std::string TestMibFolder() { return std::string(KEL_SOURCE_DIR) + "/tests/data/mib"; }

// net-snmp's folder, erlang's, and the suite's.
inline TMibSearchPath TestMibPath()
{
    TMibSearchPath path;
    path.Apply("/usr/share/snmp/mibs:" + ErlangMibFolder() + ":" + TestMibFolder());
    return path;
}

#define KEL_NEEDS_ERLANG_MIBS()                                                                                        \
    if (ErlangMibFolder().empty())                                                                                     \
    GTEST_SKIP() << "erlang-snmp's MIB text is not installed (bash scripts/test.sh installs it)"
