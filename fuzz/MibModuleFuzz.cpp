// SPDX-License-Identifier: BSD-3-Clause
// MIB text as a person or a vendor writes it: read by net-snmp's parser
// (beside erlang's standard modules when they are installed), compiled, and
// the dictionary made of it always one the loader takes.

#include "zed/TException.h"
#include "zed/dict/TDictionary.h"
#include "zed/mib/TMibCompiler.h"

#include <glob.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

namespace {

std::string Folder()
{
    static const std::string folder = [] {
        std::string pattern = "/tmp/kel-mib-fuzz-XXXXXX";
        return std::string(mkdtemp(pattern.data()) ? pattern : "/tmp");
    }();
    return folder;
}

TMibSearchPath SearchPath()
{
    TMibSearchPath path;
    glob_t found{};
    std::string folders = Folder();
    if (glob("/usr/lib/erlang/lib/snmp-*/mibs", GLOB_ONLYDIR, nullptr, &found) == 0 && found.gl_pathc > 0)
        folders += std::string(":") + found.gl_pathv[0];
    globfree(&found);
    path.Apply(folders);
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TMibSearchPath path = SearchPath();
    const std::string file = Folder() + "/FUZZ-MIB.txt";
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    const TMibModules modules = TMibReader::Read(path, {file});
    const TMibCompilation compiled = TMibCompiler::Compile(modules);
    try {
        TDictionary::Parse(compiled.json, "fuzz");
    } catch (const TException& e) {
        std::fprintf(stderr, "the compiled dictionary was refused: %s\n", e.what());
        std::abort();
    }
    return 0;
}
