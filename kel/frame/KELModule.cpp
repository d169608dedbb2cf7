// SPDX-License-Identifier: BSD-3-Clause
#include "kel/frame/KELModule.h"

#include <dlfcn.h>

void* KELOpenModule(const std::string& name, std::string* error)
{
    void* handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle)
        return handle;
    const char* reason = dlerror();
    const std::string searchError = reason ? reason : name + ": cannot be opened";
    if (name.find('/') == std::string::npos) {
        // The search path misses libkel's own directory when a tool (a
        // sanitizer's interceptor) stands between this library and dlopen.
        Dl_info self{};
        if (dladdr(reinterpret_cast<const void*>(&KELOpenModule), &self) && self.dli_fname) {
            const std::string here = self.dli_fname;
            handle = dlopen((here.substr(0, here.rfind('/') + 1) + name).c_str(), RTLD_NOW | RTLD_LOCAL);
            if (handle)
                return handle;
        }
    }
    if (error)
        *error = searchError;
    return nullptr;
}
