// SPDX-License-Identifier: BSD-3-Clause
// Any text read as launch registrations gives registrations that each have a
// name and a command, or is left out with a reason; queries never fail.

#include "launch/GaLaunchRegistry.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::vector<std::string> problems;
    const GaLaunchRegistry registry =
        GaLaunchRegistry::FromText(std::string_view(reinterpret_cast<const char*>(data), size), &problems);
    for (const GaLaunchRegistration& registration : registry.All())
        if (registration.name.empty() || registration.command.empty())
            std::abort();
    const unsigned int path[] = {1, 2, 3};
    const GaLaunchQuery query{path, 3, 10, 2};
    (void)registry.Find(query);
    return 0;
}
