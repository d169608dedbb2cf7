// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A dictionary with MIB modules compiled into it, as the tools and hosts
// load one: the modules chosen as net-snmp's tools choose them (its default
// list, MIBS, --mibs), found on the search path (MIBDIRS, --mib-dirs).

#include "zed/ZedExport.h"
#include "zed/dict/TDictionary.h"
#include "zed/mib/TMibCompiler.h"

#include <memory>
#include <string>
#include <vector>

class TSnmpModule;

/// Which MIB modules to load, and where they are found.
struct ZED_EXPORT TMibChoice {
    TMibSearchPath path;
    std::vector<std::string> modules;
    /// Modules that came from net-snmp's default list: one not found, or that
    /// fails, is said in the trace only.
    std::vector<std::string> quiet;
    TMibCompileOptions options;

    /// The choice of a tool's command line: --mib-dirs (else MIBDIRS) changes
    /// the default search path, --mibs (else MIBS) the default list; empty
    /// texts stand for options not given.
    static TMibChoice FromCommandLine(const std::string& mibDirs, const std::string& mibs);
    /// Adds modules named by an agent or a setting ("IF-MIB, HOST-RESOURCES-MIB").
    void Add(const std::string& list);
};

/// A dictionary and what became of the modules compiled into it.
struct ZED_EXPORT TMibLoaded {
    TDictionaryPtr dictionary;
    std::vector<std::string> loaded;
    std::vector<std::string> failed;
    /// Faults of the modules named (quiet ones are traced only), each said once.
    std::vector<TMibFault> faults;
    std::size_t classes = 0;
    std::size_t events = 0;
    /// Every node read (of the modules and what they import), by its descriptor.
    std::vector<std::pair<ZedOid, std::string>> names;
};

/// The dictionary file with the chosen modules compiled in below its agent
/// class. Throws TException when the file itself cannot be loaded; faults of
/// modules never do: they are in the answer, and the rest loads.
ZED_EXPORT TMibLoaded ZedLoadWithMibs(const std::string& dictionaryPath, const TMibChoice& choice);

/// What an SNMP console installs, and what became of it.
struct ZED_EXPORT TSnmpInstall {
    std::shared_ptr<TSnmpModule> module;
    TMibLoaded mibs;
    /// Why notifications are not received when they were asked for and are not.
    std::string notReceiving;
};

/// Reads the agents file, loads the dictionary with the chosen modules and
/// those the agents name ("Mibs"), and makes both the application's: its
/// dictionary, and the module its default. Agents are reached even when the
/// notifications' address is taken. Throws TException when the agents file
/// or the dictionary file cannot be loaded.
ZED_EXPORT TSnmpInstall ZedInstallSnmp(const std::string& dictionaryPath, const std::string& agentsPath,
                                       TMibChoice choice, bool receive);
