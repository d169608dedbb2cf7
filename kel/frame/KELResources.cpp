// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELResources.h"

#include "resources/KELResApi.h"
#include "kel/frame/KELModule.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <mutex>

namespace {

struct Module {
    void* handle = nullptr;
    decltype(&KELResString) string = nullptr;
    decltype(&KELResMenu) menu = nullptr;
    decltype(&KELResImage) image = nullptr;
    decltype(&KELResDescription) description = nullptr;
    bool triedOnDemand = false;
};

Module& TheModule()
{
    static Module module;
    return module;
}

std::mutex& Lock()
{
    static std::mutex mutex;
    return mutex;
}

bool LoadLocked(std::string* error, std::string* file)
{
    Module& m = TheModule();
    if (m.handle)
        return true;
    const char* override = std::getenv("KEL_RESOURCES");
    const std::string name = override && *override ? override : KELResources::kModuleFileName;
    if (file)
        *file = name;
    void* handle = KELOpenModule(name, error);
    if (!handle)
        return false;
    Module loaded;
    loaded.handle = handle;
    loaded.string = reinterpret_cast<decltype(loaded.string)>(dlsym(handle, "KELResString"));
    loaded.menu = reinterpret_cast<decltype(loaded.menu)>(dlsym(handle, "KELResMenu"));
    loaded.image = reinterpret_cast<decltype(loaded.image)>(dlsym(handle, "KELResImage"));
    loaded.description = reinterpret_cast<decltype(loaded.description)>(dlsym(handle, "KELResDescription"));
    if (!loaded.string || !loaded.menu || !loaded.image || !loaded.description) {
        if (error)
            *error = name + " is not a KEL resource module";
        dlclose(handle);
        return false;
    }
    m = loaded;
    return true;
}

// Loads on first use for callers that come before InitializeKEL.
const Module& Ready()
{
    std::lock_guard lock(Lock());
    Module& m = TheModule();
    if (!m.handle && !m.triedOnDemand) {
        m.triedOnDemand = true;
        LoadLocked(nullptr, nullptr);
    }
    return m;
}

}  // namespace

bool KELResources::Load(std::string* error, std::string* file)
{
    std::lock_guard lock(Lock());
    return LoadLocked(error, file);
}

void KELResources::Unload()
{
    std::lock_guard lock(Lock());
    Module& m = TheModule();
    if (m.handle)
        dlclose(m.handle);
    m = Module();
}

bool KELResources::IsLoaded()
{
    std::lock_guard lock(Lock());
    return TheModule().handle != nullptr;
}

std::string KELResources::String(unsigned int id)
{
    const Module& m = Ready();
    const char* text = m.string ? m.string(id) : nullptr;
    return text ? text : "";
}

std::string KELResources::Format(unsigned int id, std::initializer_list<std::string_view> arguments)
{
    const std::string format = String(id);
    auto argument = arguments.begin();
    std::string text;
    for (std::size_t i = 0; i < format.size(); ++i) {
        // Only "%s" is substituted: the module's texts are data, not code.
        if (format[i] == '%' && i + 1 < format.size() && format[i + 1] == 's') {
            if (argument != arguments.end())
                text += *argument++;
            ++i;
        } else if (format[i] == '%' && i + 1 < format.size() && format[i + 1] == '%') {
            text += '%';
            ++i;
        } else {
            text += format[i];
        }
    }
    return text;
}

const KELResSubMenu* KELResources::Menu(unsigned int id, unsigned int& count)
{
    count = 0;
    const Module& m = Ready();
    return m.menu ? m.menu(id, &count) : nullptr;
}

const char* KELResources::Image(unsigned int id)
{
    const Module& m = Ready();
    return m.image ? m.image(id) : nullptr;
}

std::string KELResources::Description()
{
    const Module& m = Ready();
    return m.description ? m.description() : "";
}
