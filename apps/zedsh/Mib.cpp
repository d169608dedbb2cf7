// SPDX-License-Identifier: BSD-3-Clause
#include "Mib.h"

#include "ToolOptions.h"
#include "zed/TException.h"
#include "zed/dict/TDictionary.h"
#include "zed/mib/TMibCompiler.h"

#include <algorithm>
#include <iostream>

namespace {

constexpr int kExitFailed = 1;
constexpr const char* kWithRetired = "--with-retired";

}  // namespace

int ZedshMib(std::vector<std::string> words, std::string dirs, const char* usage)
{
    if (!TakeValueOptions(words, {{"--mib-dirs", &dirs}}, false))
        return UsageError(usage);
    TMibCompileOptions options;
    if (const auto retired = std::find(words.begin(), words.end(), kWithRetired); retired != words.end()) {
        options.withRetired = true;
        words.erase(retired);
    }
    if (words.empty()
        || std::any_of(words.begin(), words.end(), [](const std::string& w) { return w.rfind("--", 0) == 0; }))
        return UsageError(usage);
    TMibSearchPath path = TMibSearchPath::FromEnvironment();
    if (!dirs.empty())
        path.Apply(dirs);
    std::string list;
    for (const std::string& word : words)
        list += (list.empty() ? "" : ",") + word;
    const TMibModules modules = TMibReader::Read(path, ZedMibModuleList(list, {}, path));
    TMibCompilation compiled;
    try {
        compiled = TMibCompiler::Compile(modules, {}, options);
        TDictionary::Parse(compiled.json, "the compiled dictionary");
    } catch (const TException& e) {
        std::cerr << "zedsh: " << e.what() << "\n";
        return kExitFailed;
    }
    std::vector<TMibFault> faults = modules.faults;
    faults.insert(faults.end(), compiled.warnings.begin(), compiled.warnings.end());
    for (const TMibFault& fault : faults)
        std::cerr << (fault.fatal ? "error: " : "warning: ") << fault.Said() << "\n";
    std::cout << compiled.json << "\n";
    return modules.failed.empty() ? 0 : kExitFailed;
}
