// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

// Opens a shared library that KEL loads at run time by name (the resource
// module, the launch plugin): a name without "/" goes through the library
// search path and then beside libkel itself, where the build and the
// installation put KEL's modules. Null, with the loader's reason, when
// neither has it. Internal to the library.
void* KELOpenModule(const std::string& name, std::string* error);
