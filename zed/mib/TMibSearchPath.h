// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Where MIB modules are found, and which are loaded, as net-snmp's own tools
// decide it: folders searched in order, a module found by its name whatever
// its file's extension (".txt", ".mib", none) or, failing that, by the name
// its text defines; lists written as MIBDIRS and MIBS write them.

#include "zed/ZedExport.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The folders MIB modules are looked for in, in order, and the modules they hold.
class ZED_EXPORT TMibSearchPath {
public:
    /// The folders net-snmp's tools search by default ($HOME/.snmp/mibs and
    /// /usr/share/snmp/mibs with its iana and ietf folders), then where
    /// Debian's MIB downloader puts modules (/usr/share/mibs/{ietf,iana,netsnmp}).
    static TMibSearchPath Default(std::string_view home);
    /// The default, changed by the MIBDIRS environment variable when it is set.
    static TMibSearchPath FromEnvironment();

    /// A list of folders as MIBDIRS or --mib-dirs write it, separated by
    /// ":": a leading "+" adds them after the folders searched so far,
    /// otherwise they replace them. Empty entries are passed over.
    void Apply(std::string_view list);

    const std::vector<std::string>& Folders() const { return m_folders; }
    /// The folders joined by ":", as net-snmp takes them.
    std::string Joined() const;

    /// The file of the module: in the first folder that has one, a file named
    /// as the module (with any extension or none) that defines it ("NAME
    /// DEFINITIONS ::= BEGIN"), else any file that does. None when no folder
    /// has it.
    std::optional<std::string> FindModule(std::string_view module) const;
    /// Every module the folders hold and the file that defines it, as FindModule finds it.
    std::map<std::string, std::string> ModuleFiles() const;
    /// Every module the folders hold, by the name its text defines, each once
    /// (the first folder's wins), in name order.
    std::vector<std::string> AllModules() const;

    /// The module a file's text defines, or empty when it defines none.
    static std::string ModuleDefinedIn(const std::string& file);

private:
    std::vector<std::string> m_folders;
};

/// The modules to load as MIBS or --mibs write them, separated by ":" or
/// ",": a leading "+" adds them to the defaults, otherwise they replace
/// them; "ALL" stands for every module on the search path. Each name once,
/// in order.
ZED_EXPORT std::vector<std::string> ZedMibModuleList(std::string_view list, const std::vector<std::string>& defaults,
                                                     const TMibSearchPath& path);

/// The modules net-snmp's tools load by default (SNMPv2-MIB, IF-MIB, ...).
ZED_EXPORT std::vector<std::string> ZedMibDefaultModules();
