// SPDX-License-Identifier: BSD-3-Clause
// Any content of a workspace file is read without a fault: either refused
// with a reason, or read into documents that each have a kind and a file.

#include "kel/console/KELWorkspaceStore.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

const std::string& Path()
{
    static const std::string path = [] {
        const char* shm = "/dev/shm";
        return std::string(::access(shm, W_OK) == 0 ? shm : "/tmp") + "/kel-fuzz-" + std::to_string(::getpid())
               + ".kws";
    }();
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::ofstream(Path(), std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    KELWorkspaceStore::Snapshot snapshot;
    std::string error;
    if (KELWorkspaceStore::Read(Path(), snapshot, error)) {
        for (const KELWorkspaceStore::DocumentEntry& document : snapshot.documents)
            if (document.kind.empty() || document.path.empty())
                std::abort();
    } else if (error.empty()) {
        std::abort();  // a refusal always says why
    }
    ::unlink(Path().c_str());
    return 0;
}
