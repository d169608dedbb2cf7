// SPDX-License-Identifier: BSD-3-Clause
// The launch plugin shipped with KEL: registrations from a configuration file
// (ORVEX_LAUNCH_FILE, else OrvexLaunch.cfg in $ORVEX_SYSTEM_PATH), read again
// whenever the file changes, and programs started detached through /bin/sh
// with the entity in their environment:
//   ORVEX_LAUNCH_ENTITY     the entity as text
//   ORVEX_LAUNCH_CLASS      its class path, "1.2.3"
//   ORVEX_LAUNCH_DIRECTIVE  the directive
//   ORVEX_LAUNCH_ELEMENT    the element

#include "launch/GaLaunchRegistry.h"

#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <sys/stat.h>

#define GALAUNCH_EXPORT __attribute__((visibility("default")))

namespace {

struct Plugin {
    std::mutex mutex;
    std::string path;
    struct timespec modified {};
    off_t size = -1;
    GaLaunchRegistry registry;
    std::vector<const GaLaunchRegistration*> last;  // the answer to the last query, for Name and Start
};

Plugin& ThePlugin()
{
    static Plugin plugin;
    return plugin;
}

std::string RegistrationFile()
{
    if (const char* file = std::getenv("ORVEX_LAUNCH_FILE"); file && *file)
        return file;
    if (const char* system = std::getenv("ORVEX_SYSTEM_PATH"); system && *system) {
        std::string path = system;
        if (path.back() != '/')
            path += '/';
        return path + "OrvexLaunch.cfg";
    }
    return {};
}

// Reads the file again when its name, time or size changed. Called locked.
void Refresh(Plugin& plugin)
{
    const std::string path = RegistrationFile();
    struct stat info {};
    const bool exists = !path.empty() && ::stat(path.c_str(), &info) == 0;
    const off_t size = exists ? info.st_size : -1;
    if (path == plugin.path && size == plugin.size && info.st_mtim.tv_sec == plugin.modified.tv_sec
        && info.st_mtim.tv_nsec == plugin.modified.tv_nsec)
        return;
    plugin.path = path;
    plugin.size = size;
    plugin.modified = info.st_mtim;
    plugin.last.clear();
    plugin.registry = exists ? GaLaunchRegistry::FromFile(path) : GaLaunchRegistry();
}

const std::vector<const GaLaunchRegistration*>& Lookup(Plugin& plugin, const GaLaunchQuery* query)
{
    Refresh(plugin);
    plugin.last = query ? plugin.registry.Find(*query) : std::vector<const GaLaunchRegistration*>();
    return plugin.last;
}

unsigned int Count(const GaLaunchQuery* query)
{
    Plugin& plugin = ThePlugin();
    std::lock_guard lock(plugin.mutex);
    return static_cast<unsigned int>(Lookup(plugin, query).size());
}

const char* Name(const GaLaunchQuery* query, unsigned int index)
{
    Plugin& plugin = ThePlugin();
    std::lock_guard lock(plugin.mutex);
    const auto& found = Lookup(plugin, query);
    return index < found.size() ? found[index]->name.c_str() : nullptr;
}

std::string Joined(const GaLaunchQuery& query)
{
    std::string path;
    for (unsigned int i = 0; i < query.depth; ++i)
        path += (i ? "." : "") + std::to_string(query.classPath[i]);
    return path;
}

int Start(const GaLaunchQuery* query, unsigned int index, const char* entityText)
{
    Plugin& plugin = ThePlugin();
    std::string command;
    {
        std::lock_guard lock(plugin.mutex);
        const auto& found = Lookup(plugin, query);
        if (index >= found.size())
            return ENOENT;
        command = found[index]->command;
    }
    return GaLaunchStartDetached(command, {"ORVEX_LAUNCH_ENTITY=" + std::string(entityText ? entityText : ""),
                                           "ORVEX_LAUNCH_CLASS=" + Joined(*query),
                                           "ORVEX_LAUNCH_DIRECTIVE=" + std::to_string(query->directive),
                                           "ORVEX_LAUNCH_ELEMENT=" + std::to_string(query->element)});
}

constexpr GaLAUNCHAPI kInterface = {GALAUNCH_API_VERSION, &Count, &Name, &Start};

}  // namespace

extern "C" GALAUNCH_EXPORT const GaLAUNCHAPI* GaLAUNCHGetAPIInterface(void) { return &kInterface; }
