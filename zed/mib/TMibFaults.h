// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Internal to the MIB reader: what net-snmp's parser says while it reads,
// turned into faults of the modules it concerns.

#include "zed/mib/TMibNode.h"

#include <map>
#include <set>
#include <string>
#include <vector>

/// What the parser said during one read, judged into the faults of the modules read.
class TMibFaultLog {
public:
    /// The module named whose reading the messages heard from now on come from.
    void Reading(const std::string& module) { m_reading = module; }
    /// One message of the parser, as it logged it.
    void Hear(int priority, const std::string& text);
    /// A module asked for that no folder of the search path holds.
    void NotFound(const std::string& asked, bool isFile, const std::string& folders);
    /// Turns what was heard into faults of the modules read (by name, with
    /// their files); a module whose own file has an error fails.
    void Judge(const std::map<std::string, std::string>& files);

    bool Failed(const std::string& module) const { return m_failed.count(module) != 0; }
    const std::set<std::string>& FailedModules() const { return m_failed; }
    const std::vector<TMibFault>& Faults() const { return m_faults; }

private:
    struct Heard {
        int priority;
        std::string text;
        std::string reading;
    };
    void Judge(const Heard& heard);
    void JudgeAtLine(const Heard& heard, const std::string& reason, int line, const std::string& file);
    std::string OwnerOf(const std::string& file, const Heard& heard) const;
    void Add(TMibFault fault);

    std::vector<Heard> m_heard;
    std::vector<TMibFault> m_faults;
    std::set<std::string> m_failed;
    std::string m_reading;
    std::map<std::string, std::string> m_owners;              // file, the module named read from it
    std::map<std::string, std::set<std::string>> m_unplaced;  // module, its definitions without a parent
};
