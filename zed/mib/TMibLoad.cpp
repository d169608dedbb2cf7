// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibLoad.h"

#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/trace/TTraceStream.h"

#include <algorithm>
#include <cstdlib>

namespace {

bool Among(const std::vector<std::string>& list, const std::string& item)
{
    return std::find(list.begin(), list.end(), item) != list.end();
}

}  // namespace

TMibChoice TMibChoice::FromCommandLine(const std::string& mibDirs, const std::string& mibs)
{
    TMibChoice choice;
    choice.path = TMibSearchPath::FromEnvironment();
    if (!mibDirs.empty())
        choice.path.Apply(mibDirs);
    const char* environment = std::getenv("MIBS");
    const std::string list = !mibs.empty() ? mibs : environment ? environment : "+";
    const std::vector<std::string> defaults = ZedMibDefaultModules();
    choice.modules = ZedMibModuleList(list, defaults, choice.path);
    for (const std::string& module : choice.modules)
        if (Among(defaults, module) && !list.empty() && list.front() == '+')
            choice.quiet.push_back(module);
    return choice;
}

void TMibChoice::Add(const std::string& list)
{
    for (std::string& module : ZedMibModuleList(list, {}, path))
        if (!Among(modules, module)) {
            std::erase(quiet, module);
            modules.push_back(std::move(module));
        }
}

TMibLoaded ZedLoadWithMibs(const std::string& dictionaryPath, const TMibChoice& choice)
{
    const std::string base = ZedReadFile(dictionaryPath, "dictionary");
    TMibLoaded out;
    out.dictionary = TDictionary::Parse(base, dictionaryPath);
    if (choice.modules.empty())
        return out;
    const TMibModules modules = TMibReader::Read(choice.path, choice.modules);
    out.loaded = modules.loaded;
    out.failed = modules.failed;
    TMibCompilation compiled = TMibCompiler::Compile(modules, base, choice.options);
    std::vector<TMibFault> faults = modules.faults;
    faults.insert(faults.end(), compiled.warnings.begin(), compiled.warnings.end());
    for (TMibFault& fault : faults) {
        if (!fault.module.empty() && Among(choice.quiet, fault.module)) {
            TTraceStream(ZED_TRACE_SNMP | 4) << "MIB module of the default list: " << fault.Said() << endl;
            continue;
        }
        out.faults.push_back(std::move(fault));
    }
    try {
        out.dictionary = TDictionary::Parse(compiled.json, dictionaryPath + " with MIB modules");
        out.classes = compiled.classes;
        out.events = compiled.events;
    } catch (const TException& e) {
        // The compiler's own fault: the dictionary stays as its file has it.
        out.faults.push_back({"", "", 0, std::string("the modules' classes were refused: ") + e.what(), true});
        out.failed = out.loaded;
        out.loaded.clear();
    }
    return out;
}
