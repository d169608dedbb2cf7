// SPDX-License-Identifier: BSD-3-Clause
#include "MibSettings.h"

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"

namespace {

constexpr const char* kSection = "Mibs";
constexpr const char* kFolders = "Folders";
constexpr const char* kModules = "Modules";

}  // namespace

TMibChoice MibChoiceOf(KELConfigContext* context, const std::string& mibDirs, const std::string& mibs)
{
    std::string folders, modules;
    if (context) {
        context->GetConfigString(kSection, kFolders, folders, "", 1);
        context->GetConfigString(kSection, kModules, modules, "", 1);
    }
    // The settings' folders are where this host finds modules; the command line changes them again.
    TMibChoice choice = TMibChoice::FromCommandLine(folders, mibs);
    if (!mibDirs.empty())
        choice.path.Apply(mibDirs);
    if (!modules.empty())
        choice.Add(modules);
    return choice;
}

void KeepMibModule(KELConfigContext* context, const std::string& module)
{
    IConfiguration* user = context ? context->GetUserConfigFile() : nullptr;
    if (!user)
        return;
    std::string modules;
    context->GetConfigString(kSection, kModules, modules, "", 1);
    user->SetString(kSection, kModules, modules.empty() ? module : modules + "," + module, 1);
    user->Save();
}
