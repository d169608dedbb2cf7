// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibFaults.h"

#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/trace/TTraceStream.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <syslog.h>

namespace {

const std::regex kAtLine(R"(^(.*): At line (\d+) in (.*)$)");
const std::regex kNotFound(R"(^Cannot find module \((.*)\)$)");
const std::regex kMissingImport(R"(^Did not find '(.*)' in module .* \((.*)\)$)");
// Definitions whose parent no module read defines, said one by one.
const std::regex kUnplaced(R"(^(?:Cannot resolve OID|Cannot adopt OID|Unlinked OID) in ([^:]+): (\S+) ::= .*$)");
const std::regex kUndefined(R"(^Undefined identifier: (\S+) near line (\d+) of (.*)$)");
constexpr const char* kNoFile = "(none)";
constexpr std::size_t kNamesListed = 5;
// The parser names the search path once before its first "not found", and
// says of each SMI macro it passes over that it did: neither is a fault.
constexpr const char* kSearchPathLine = "MIB search path:";
const std::regex kMacroPassed(R"(^\S+ MACRO \(lines \d+\.\.\d+ parsed and ignored\)\.?$)");

std::string Normal(const std::string& file) { return std::filesystem::path(file).lexically_normal().string(); }

int LineOf(const std::string& digits) { return digits.size() > 9 ? 0 : std::stoi(digits); }

std::string Listed(const std::set<std::string>& names)
{
    std::string listed;
    std::size_t shown = 0;
    for (const std::string& name : names) {
        if (shown++ == kNamesListed)
            return listed + " and " + std::to_string(names.size() - kNamesListed) + " more";
        listed += (listed.empty() ? "" : ", ") + name;
    }
    return listed;
}

}  // namespace

std::string TMibFault::Said() const
{
    if (!file.empty())
        return file + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + text;
    return (module.empty() ? "" : module + ": ") + text;
}

void TMibFaultLog::Hear(int priority, const std::string& text)
{
    if (priority <= LOG_WARNING && text.rfind(kSearchPathLine, 0) != 0 && !std::regex_match(text, kMacroPassed))
        m_heard.push_back({priority, text, m_reading});
    else
        TTraceStream(ZED_TRACE_SNMP | 4) << "net-snmp: " << text << endl;
}

void TMibFaultLog::NotFound(const std::string& asked, bool isFile, const std::string& folders)
{
    const std::string why = isFile ? "the file defines no MIB module (NAME DEFINITIONS ::= BEGIN)"
                                   : "no file of the MIB search path defines it (" + folders + ")";
    Add({asked, "", 0, why, true});
    m_failed.insert(asked);
}

void TMibFaultLog::Judge(const std::map<std::string, std::string>& files)
{
    for (const auto& [module, file] : files)
        m_owners[Normal(file)] = module;
    for (const Heard& heard : m_heard)
        Judge(heard);
    m_heard.clear();
    for (const auto& [module, nodes] : m_unplaced)
        Add({module, "", 0,
             std::to_string(nodes.size())
                 + " definitions cannot be placed in the OID tree, as their parents are not "
                   "defined (a module it imports from not found?): "
                 + Listed(nodes),
             false});
    m_unplaced.clear();
}

// A file of a module read for the one named: the fault is the named one's.
std::string TMibFaultLog::OwnerOf(const std::string& file, const Heard& heard) const
{
    const auto found = m_owners.find(Normal(file));
    return found == m_owners.end() ? heard.reading : found->second;
}

void TMibFaultLog::Judge(const Heard& heard)
{
    std::smatch parts;
    if (std::regex_match(heard.text, parts, kUnplaced)) {
        m_unplaced[parts[1]].insert(parts[2]);
    } else if (std::regex_match(heard.text, parts, kUndefined)) {
        Add({OwnerOf(parts[3], heard), parts[3], LineOf(parts[2]), "undefined identifier " + parts[1].str(), false});
    } else if (std::regex_match(heard.text, parts, kAtLine)) {
        JudgeAtLine(heard, parts[1], LineOf(parts[2]), parts[3]);
    } else if (std::regex_match(heard.text, parts, kMissingImport)) {
        Add({OwnerOf(parts[2], heard), parts[2], 0, parts[1].str() + " is imported, but no module read defines it",
             false});
    } else {
        Add({heard.reading, "", 0, heard.text, false});
    }
}

void TMibFaultLog::JudgeAtLine(const Heard& heard, const std::string& reason, int line, const std::string& file)
{
    const std::string module = OwnerOf(file, heard);
    std::smatch missing;
    if (std::regex_match(reason, missing, kNotFound)) {
        if (file != kNoFile)
            Add({module, file, line,
                 "imports from " + missing[1].str()
                     + ", which no file of the MIB search path defines: what needs it is left out",
                 false});
        return;
    }
    // An error in a module's own file fails it; one in a file it imports from
    // only costs it what needs that file.
    const bool fatal = heard.priority <= LOG_ERR && m_owners.count(Normal(file));
    Add({module, file, line, reason, fatal});
    if (fatal)
        m_failed.insert(module);
}

void TMibFaultLog::Add(TMibFault fault)
{
    if (!fault.file.empty())
        fault.file = Normal(fault.file);
    const auto same = [&fault](const TMibFault& known) {
        return known.module == fault.module && known.file == fault.file && known.line == fault.line
               && known.text == fault.text;
    };
    if (std::none_of(m_faults.begin(), m_faults.end(), same))
        m_faults.push_back(std::move(fault));
}
