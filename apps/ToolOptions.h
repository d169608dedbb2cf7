// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// What every tool of KEL answers alike: --help prints its usage and
// --version its name and version on standard output, with status 0; a
// command line it cannot use prints the usage on standard error, with status
// 2. Options that take a value (--dictionary FILE) are read the same way.

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

inline constexpr int kToolExitUsage = 2;

// The status to exit with when the only word asks for help or the version.
inline std::optional<int> AnswerHelpOrVersion(const std::vector<std::string>& words, const char* tool,
                                              const char* usage)
{
    if (words.size() != 1)
        return std::nullopt;
    if (words[0] == "--help" || words[0] == "-h") {
        std::fputs(usage, stdout);
        return 0;
    }
    if (words[0] == "--version") {
        std::printf("%s %s\n", tool, KEL_TOOL_VERSION);
        return 0;
    }
    return std::nullopt;
}

// A command line the tool cannot use: its usage on standard error.
inline int UsageError(const char* usage)
{
    std::fputs(usage, stderr);
    return kToolExitUsage;
}

// Takes each "--name VALUE" of the options out of the words into its value:
// from the front only when leading (a command's own words follow), else from
// anywhere. False when an option has no value after it.
inline bool TakeValueOptions(std::vector<std::string>& words, const std::map<std::string, std::string*>& options,
                             bool leading)
{
    for (std::size_t i = 0; i < words.size();) {
        const auto option = options.find(words[i]);
        if (option == options.end()) {
            if (leading)
                return true;
            ++i;
            continue;
        }
        if (i + 1 >= words.size())
            return false;
        *option->second = words[i + 1];
        words.erase(words.begin() + static_cast<std::ptrdiff_t>(i), words.begin() + static_cast<std::ptrdiff_t>(i) + 2);
    }
    return true;
}
