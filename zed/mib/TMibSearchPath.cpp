// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibSearchPath.h"

#include <net-snmp/net-snmp-config.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

// Where Debian's MIB downloader (snmp-mibs-downloader) puts the modules.
constexpr const char* kDownloaded[] = {"/usr/share/mibs/ietf", "/usr/share/mibs/iana", "/usr/share/mibs/netsnmp"};
// A module's definition opens its text; a file larger than this is no module.
constexpr std::streamsize kHeadBytes = 64 * 1024;
constexpr std::uintmax_t kMostModuleBytes = std::uintmax_t(16) << 20;

std::vector<std::string> Split(std::string_view list, std::string_view separators)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= list.size()) {
        const std::size_t end = std::min(list.find_first_of(separators, start), list.size());
        std::string_view part = list.substr(start, end - start);
        while (!part.empty() && part.front() == ' ')
            part.remove_prefix(1);
        while (!part.empty() && part.back() == ' ')
            part.remove_suffix(1);
        if (!part.empty())
            parts.emplace_back(part);
        start = end + 1;
    }
    return parts;
}

void AddOnce(std::vector<std::string>& list, std::string item)
{
    if (std::find(list.begin(), list.end(), item) == list.end())
        list.push_back(std::move(item));
}

std::vector<fs::path> FilesOf(const std::string& folder)
{
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        if (it->is_regular_file(error) && it->file_size(error) <= kMostModuleBytes)
            files.push_back(it->path());
    std::sort(files.begin(), files.end());
    return files;
}

// The module a file's text defines: the name before the first "DEFINITIONS"
// outside comments; empty when there is none near its start.
std::string DefinedModule(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::string head(static_cast<std::size_t>(kHeadBytes), '\0');
    in.read(head.data(), kHeadBytes);
    head.resize(static_cast<std::size_t>(in.gcount()));
    std::string previous;
    std::size_t at = 0;
    while (at < head.size()) {
        if (head.compare(at, 2, "--") == 0) {
            at = head.find('\n', at);
            continue;
        }
        if (std::isspace(static_cast<unsigned char>(head[at]))) {
            ++at;
            continue;
        }
        const std::size_t end = head.find_first_of(" \t\r\n", at);
        std::string word = head.substr(at, end == std::string::npos ? std::string::npos : end - at);
        if (word == "DEFINITIONS")
            return previous;
        previous = std::move(word);
        at = end;
    }
    return {};
}

std::string StemOf(const fs::path& file)
{
    const std::string name = file.filename().string();
    return name.substr(0, name.find('.'));
}

}  // namespace

TMibSearchPath TMibSearchPath::Default(std::string_view home)
{
    TMibSearchPath path;
    for (std::string folder : Split(NETSNMP_DEFAULT_MIBDIRS, ":")) {
        if (const std::size_t at = folder.find("$HOME"); at != std::string::npos) {
            if (home.empty())
                continue;
            folder.replace(at, 5, home);
        }
        AddOnce(path.m_folders, std::move(folder));
    }
    for (const char* folder : kDownloaded)
        AddOnce(path.m_folders, folder);
    return path;
}

TMibSearchPath TMibSearchPath::FromEnvironment()
{
    const char* home = std::getenv("HOME");
    TMibSearchPath path = Default(home ? home : "");
    if (const char* dirs = std::getenv("MIBDIRS"))
        path.Apply(dirs);
    return path;
}

void TMibSearchPath::Apply(std::string_view list)
{
    const bool adding = !list.empty() && list.front() == '+';
    if (adding)
        list.remove_prefix(1);
    if (!adding)
        m_folders.clear();
    for (std::string folder : Split(list, ":"))
        AddOnce(m_folders, std::move(folder));
}

std::string TMibSearchPath::Joined() const
{
    std::string joined;
    for (const std::string& folder : m_folders)
        joined += (joined.empty() ? "" : ":") + folder;
    return joined;
}

std::map<std::string, std::string> TMibSearchPath::ModuleFiles() const
{
    std::map<std::string, std::string> found;
    for (const std::string& folder : m_folders) {
        std::map<std::string, std::string> here;
        for (const fs::path& file : FilesOf(folder)) {
            std::string module = DefinedModule(file);
            if (module.empty())
                continue;
            // Named so and defining it wins: a folder may hold other files of
            // the same name (erlang's SNMPv2-MIB.funcs beside SNMPv2-MIB.mib).
            const auto known = here.find(module);
            if (known == here.end())
                here.emplace(module, file.string());
            else if (StemOf(file) == module && StemOf(known->second) != module)
                known->second = file.string();
        }
        found.merge(here);  // what an earlier folder holds stays
    }
    return found;
}

std::optional<std::string> TMibSearchPath::FindModule(std::string_view module) const
{
    const auto files = ModuleFiles();
    const auto found = files.find(std::string(module));
    return found == files.end() ? std::nullopt : std::optional<std::string>(found->second);
}

std::vector<std::string> TMibSearchPath::AllModules() const
{
    std::vector<std::string> names;
    for (const auto& [module, file] : ModuleFiles())
        names.push_back(module);
    return names;
}

std::string TMibSearchPath::ModuleDefinedIn(const std::string& file)
{
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) > kMostModuleBytes)
        return {};
    return DefinedModule(file);
}

std::vector<std::string> ZedMibModuleList(std::string_view list, const std::vector<std::string>& defaults,
                                          const TMibSearchPath& path)
{
    const bool adding = !list.empty() && list.front() == '+';
    if (adding)
        list.remove_prefix(1);
    std::vector<std::string> modules;
    if (adding)
        for (const std::string& module : defaults)
            AddOnce(modules, module);
    for (const std::string& name : Split(list, ":,")) {
        if (name != "ALL") {
            AddOnce(modules, name);
            continue;
        }
        for (std::string module : path.AllModules())
            AddOnce(modules, std::move(module));
    }
    return modules;
}

std::vector<std::string> ZedMibDefaultModules() { return Split(NETSNMP_DEFAULT_MIBS, ":"); }
