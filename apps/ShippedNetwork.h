// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Where a tool finds the network shipped with KEL: installed, the data folder
// beside its own (KEL_BIN_TO_DATA, relative to the program's folder); in the
// build tree, the source tree's data/network (KEL_SOURCE_DATA).

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

inline std::string ShippedNetworkFile(const char* file)
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) {
        const std::filesystem::path installed = program.parent_path() / KEL_BIN_TO_DATA / file;
        if (std::filesystem::exists(installed, error))
            return installed.lexically_normal().string();
    }
    return std::string(KEL_SOURCE_DATA) + "/" + file;
}

// A network file as a tool's option names it, else as the environment
// variable does, else the shipped one.
inline std::string NetworkFileOption(const std::string& option, const char* variable, const char* shipped)
{
    if (!option.empty())
        return option;
    if (const char* value = std::getenv(variable); value && *value)
        return value;
    return ShippedNetworkFile(shipped);
}
