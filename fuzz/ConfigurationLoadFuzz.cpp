// SPDX-License-Identifier: BSD-3-Clause
// Any content of a configuration file loads without a fault, and what loaded
// saves to a file that loads back to the same sections.

#include "kel/config/ICustomField.h"
#include "kel/config/IConfiguration.h"
#include "kel/config/ISection.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

const std::string& Path(const char* suffix)
{
    static const std::string directory = [] {
        const char* shm = "/dev/shm";
        return std::string(::access(shm, W_OK) == 0 ? shm : "/tmp");
    }();
    static std::string paths[2];
    std::string& path = paths[suffix[0] == 'b'];
    if (path.empty())
        path = directory + "/kel-fuzz-" + std::to_string(::getpid()) + "-" + suffix + ".cfg";
    return path;
}

bool Same(const IConfiguration& a, const IConfiguration& b)
{
    const KELSectionMap& x = a.GetGlobalSections();
    const KELSectionMap& y = b.GetGlobalSections();
    if (x.Size() != y.Size())
        return false;
    for (std::size_t i = 0; i < x.Size(); ++i) {
        const ISection& s = x.At(i);
        const ISection* t = y.Find(s.GetSectionName());
        if (!t || t->GetFieldCount() != s.GetFieldCount())
            return false;
        for (std::size_t f = 0; f < s.GetFieldCount(); ++f) {
            const std::string* value = t->FindValue(s.GetField(f).GetFieldName());
            if (!value || *value != s.GetField(f).GetValue())
                return false;
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::FILE* file = std::fopen(Path("a").c_str(), "wb");
    if (!file)
        return 0;
    std::fwrite(data, 1, size, file);
    std::fclose(file);

    IConfiguration loaded(Path("a"));
    if (loaded.Load() != 1)
        std::abort();
    loaded.SetFilename(Path("b"));
    if (loaded.Save() != 1)
        std::abort();
    IConfiguration again(Path("b"));
    if (again.Load() != 1 || again.DroppedSectionsOnLoad() || !Same(loaded, again))
        std::abort();
    return 0;
}
