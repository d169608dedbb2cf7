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
const std::regex kUnresolved(R"(^Cannot resolve OID in ([^:]+): (.*) at line (\d+) in (.*)$)");
// The parser names the search path once before its first "not found", and
// says of each SMI macro it passes over that it did: neither is a fault.
constexpr const char* kSearchPathLine = "MIB search path:";
const std::regex kMacroPassed(R"(^\S+ MACRO \(lines \d+\.\.\d+ parsed and ignored\)\.?$)");

std::string Normal(const std::string& file) { return std::filesystem::path(file).lexically_normal().string(); }

int LineOf(const std::string& digits) { return digits.size() > 9 ? 0 : std::stoi(digits); }

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
    std::map<std::string, std::string> owners;  // file, the module read from it
    for (const auto& [module, file] : files)
        owners[Normal(file)] = module;
    std::smatch parts;
    for (const Heard& heard : m_heard) {
        // A file of a module read for the one named: the fault is the named one's.
        const auto owner = [&owners, &heard](const std::string& file) {
            const auto found = owners.find(Normal(file));
            return found == owners.end() ? heard.reading : found->second;
        };
        if (std::regex_match(heard.text, parts, kUnresolved)) {
            Add({parts[1], parts[4], LineOf(parts[3]), "cannot place " + parts[2].str(), false});
        } else if (std::regex_match(heard.text, parts, kAtLine)) {
            const std::string reason = parts[1], file = parts[3], module = owner(file);
            std::smatch missing;
            if (std::regex_match(reason, missing, kNotFound)) {
                if (file != "(none)")
                    Add({module, file, LineOf(parts[2]),
                         "imports from " + missing[1].str()
                             + ", which no file of the MIB search path defines: what needs it is left out",
                         false});
                continue;
            }
            const bool fatal = heard.priority <= LOG_ERR && owners.count(Normal(file));
            Add({module, file, LineOf(parts[2]), reason, fatal});
            if (fatal)
                m_failed.insert(module);
        } else if (std::regex_match(heard.text, parts, kMissingImport)) {
            Add({owner(parts[2]), parts[2], 0, parts[1].str() + " is imported, but no module read defines it", false});
        } else {
            Add({"", "", 0, heard.text, false});
        }
    }
    m_heard.clear();
}

void TMibFaultLog::Add(TMibFault fault)
{
    if (!fault.file.empty())
        fault.file = Normal(fault.file);
    const auto same = [&fault](const TMibFault& known) {
        return known.file == fault.file && known.line == fault.line && known.text == fault.text;
    };
    if (std::none_of(m_faults.begin(), m_faults.end(), same))
        m_faults.push_back(std::move(fault));
}
