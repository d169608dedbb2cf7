// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELLaunch.h"

#include "kel/frame/KELModule.h"
#include "kel/frame/KELTrace.h"
#include "launch/GaLaunchApi.h"
#include "zed/value/TEntitySpec.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <mutex>

namespace {

struct Plugin {
    bool tried = false;
    void* handle = nullptr;
    const GaLAUNCHAPI* api = nullptr;
};

std::mutex g_mutex;
Plugin g_plugin;

// The plugin's interface, looked for once; null when there is none.
const GaLAUNCHAPI* Api()
{
    std::lock_guard lock(g_mutex);
    if (g_plugin.tried)
        return g_plugin.api;
    g_plugin.tried = true;
    const char* override = std::getenv("KEL_LAUNCH");
    const std::string name = override && *override ? override : KELLaunch::kModuleFileName;
    std::string error;
    void* handle = KELOpenModule(name, &error);
    if (!handle) {
        KEL_TRACE(KEL_TRACE_INFO, "KELLaunch", nullptr) << "KEL : no launch plugin : " << error;
        return nullptr;
    }
    const auto entry = reinterpret_cast<GaLAUNCHGetAPIInterfaceFunction>(dlsym(handle, "GaLAUNCHGetAPIInterface"));
    const GaLAUNCHAPI* api = entry ? entry() : nullptr;
    if (!api || api->version != GALAUNCH_API_VERSION || !api->Count || !api->Name || !api->Start) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELLaunch", nullptr)
            << "KEL : " << name << " is not a launch plugin of version " << GALAUNCH_API_VERSION;
        dlclose(handle);
        return nullptr;
    }
    g_plugin.handle = handle;
    g_plugin.api = api;
    return api;
}

std::vector<unsigned int> ClassPath(const TEntitySpec& entity)
{
    std::vector<unsigned int> path;
    for (std::size_t level = 0; level < entity.GetDepth() && level < KELLaunch::kMaxClassLevels; ++level)
        path.push_back(entity.GetCode(level));
    return path;
}

GaLaunchQuery Query(const std::vector<unsigned int>& classPath, unsigned int directive, unsigned int element)
{
    return {classPath.data(), static_cast<unsigned int>(classPath.size()), directive, element};
}

}  // namespace

std::vector<std::string> KELLaunch::GetApplications(const TEntitySpec& entity, unsigned int directive,
                                                    unsigned int element)
{
    std::vector<std::string> names;
    const GaLAUNCHAPI* api = Api();
    if (!api)
        return names;
    const std::vector<unsigned int> classPath = ClassPath(entity);
    const GaLaunchQuery query = Query(classPath, directive, element);
    const unsigned int count = api->Count(&query);
    for (unsigned int i = 0; i < count; ++i)
        if (const char* name = api->Name(&query, i))
            names.emplace_back(name);
    return names;
}

bool KELLaunch::Start(const TEntitySpec& entity, unsigned int directive, unsigned int element, unsigned int index,
                      std::string* error)
{
    const GaLAUNCHAPI* api = Api();
    if (!api) {
        if (error)
            *error = "no launch plugin";
        return false;
    }
    const std::vector<unsigned int> classPath = ClassPath(entity);
    const GaLaunchQuery query = Query(classPath, directive, element);
    const int result = api->Start(&query, index, entity.ToString().c_str());
    if (result != 0 && error)
        *error = std::strerror(result);
    return result == 0;
}

bool KELLaunch::IsAvailable() { return Api() != nullptr; }

void KELLaunch::Unload()
{
    std::lock_guard lock(g_mutex);
    if (g_plugin.handle)
        dlclose(g_plugin.handle);
    g_plugin = Plugin();
}
