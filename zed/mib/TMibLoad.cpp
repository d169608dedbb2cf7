// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibLoad.h"

#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/snmp/TSnmpModule.h"
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
    for (const TMibNode& node : modules.nodes)
        out.names.emplace_back(node.oid, node.name);
    TMibCompilation compiled = TMibCompiler::Compile(modules, base, choice.options);
    std::vector<TMibFault> faults = modules.faults;
    faults.insert(faults.end(), compiled.warnings.begin(), compiled.warnings.end());
    // A fault of a module named is said; one of a module only imported, or
    // of none known, is said when a module was named, not only defaulted.
    std::vector<std::string> loud;
    for (const std::string& module : choice.modules)
        if (!Among(choice.quiet, module))
            loud.push_back(module);
    for (TMibFault& fault : faults) {
        const bool said = Among(loud, fault.module) || (!loud.empty() && !Among(choice.quiet, fault.module));
        if (!said) {
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

TSnmpInstall ZedInstallSnmp(const std::string& dictionaryPath, const std::string& agentsPath, TMibChoice choice,
                            bool receive)
{
    TSnmpAgents agents = ZedReadAgentsFile(agentsPath);
    for (const TSnmpAgent& agent : agents.agents)
        if (!agent.mibs.empty())
            choice.Add(agent.mibs);
    TSnmpInstall install;
    install.mibs = ZedLoadWithMibs(dictionaryPath, choice);
    try {
        install.module = std::make_shared<TSnmpModule>(install.mibs.dictionary, agents, receive);
    } catch (const TException& e) {
        if (!receive)
            throw;
        install.module = std::make_shared<TSnmpModule>(install.mibs.dictionary, std::move(agents), false);
        install.notReceiving = e.what();
    }
    install.module->NameOids(install.mibs.names);
    ZEDGetApplication()->SetDictionary(install.mibs.dictionary);
    ZEDGetApplication()->SetDefaultModule(install.module);
    return install;
}
