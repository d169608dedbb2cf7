// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// kelbrowser's MIB modules as its settings keep them: the section "Mibs",
// key "Folders" (as --mib-dirs writes them) and "Modules" (added to
// net-snmp's default list, as "--mibs +..." adds them), which Load MIB
// Module extends.

#include "zed/mib/TMibLoad.h"

#include <string>

class KELConfigContext;

// The settings' folders and modules, then the command line's.
TMibChoice MibChoiceOf(KELConfigContext* context, const std::string& mibDirs, const std::string& mibs);

// Keeps a module in the user's settings, loaded at each start from now on.
void KeepMibModule(KELConfigContext* context, const std::string& module);
