// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
/// The resource module's menu type (resources/KELResApi.h), used by pointer.
struct KELResSubMenu;

#include <initializer_list>
#include <string>
#include <string_view>

/// The resource module: numbered strings, the popup menu and the icons of the
/// library, in a shared library of their own found by name through the
/// library search path ("libKELRes.so"), or at the path in the environment
/// variable KEL_RESOURCES (another build, such as a translation).
///
/// InitializeKEL loads it and refuses to start without it. Anything that asks
/// for a resource before then loads it on first use, so tools that use parts
/// of the library without the application object get the same texts.
class KEL_EXPORT KELResources {
public:
    static constexpr const char* kModuleFileName = "libKELRes.so";

    /// True when loaded (now or before). On failure, error says why and
    /// file names the module that was looked for.
    static bool Load(std::string* error = nullptr, std::string* file = nullptr);
    static void Unload();
    static bool IsLoaded();

    /// The text of a numbered string; empty when the module has none or is missing.
    static std::string String(unsigned int id);
    /// The string with its "%s" replaced by the arguments in turn (missing
    /// ones by nothing) and "%%" by "%".
    static std::string Format(unsigned int id, std::initializer_list<std::string_view> arguments);
    /// The sub-menus of a menu, or null.
    static const KELResSubMenu* Menu(unsigned int id, unsigned int& count);
    /// XPM text of an icon or bitmap, or null.
    static const char* Image(unsigned int id);
    /// Which build of the module is loaded; empty when none.
    static std::string Description();
};
