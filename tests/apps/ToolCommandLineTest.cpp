// SPDX-License-Identifier: BSD-3-Clause
// What every tool answers alike: --help and --version on standard output
// with status 0; a command line it cannot use on standard error with 2.

#include "support/RunProgram.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

struct Tool {
    const char* name;
    const char* path;
};
const Tool kTools[] = {{"kelconf", KELCONF_PATH}, {"zedsh", ZEDSH_PATH}, {"kelbrowser", KELBROWSER_PATH}};

TEST(ToolCommandLine, HelpAndVersionGoToStandardOutputAndUsageErrorsToStandardError)
{
    for (const Tool& tool : kTools) {
        const ProgramRun help = RunProgram(tool.path, "--help");
        EXPECT_EQ(help.exitCode, 0) << tool.name;
        EXPECT_THAT(help.out, StartsWith("usage: ")) << tool.name;
        EXPECT_EQ(help.err, "") << tool.name;
        const ProgramRun version = RunProgram(tool.path, "--version");
        EXPECT_EQ(version.exitCode, 0) << tool.name;
        EXPECT_EQ(version.out, std::string(tool.name) + " " KEL_VERSION_STRING "\n");
        const ProgramRun wrong = RunProgram(tool.path, "--no-such-option");
        EXPECT_EQ(wrong.exitCode, 2) << tool.name;
        EXPECT_EQ(wrong.out, "") << tool.name;
        EXPECT_THAT(wrong.err, HasSubstr("usage: ")) << tool.name;
    }
    EXPECT_EQ(RunProgram(ZEDSH_PATH, "").exitCode, 2) << "no command is a usage error";
}

TEST(ToolCommandLine, TheBrowserWithoutADisplaySaysSoAndToursOnlyWhenAsked)
{
    TempDir user;
    const ProgramRun run = RunProgram(
        "env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM ORVEX_USER_PATH=" + user.Path() + " " KELBROWSER_PATH,
        "");
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.err, HasSubstr("kelbrowser: no display"));
    EXPECT_THAT(run.err, HasSubstr("--tour DIR"));
    EXPECT_TRUE(std::filesystem::is_empty(user.Path())) << "nothing written";
}

TEST(ToolCommandLine, KelconfSaysEachMessageOnALineOfItsOwn)
{
    TempDir system, user;
    const ProgramRun run =
        RunProgram("ORVEX_SYSTEM_PATH=" + system.Path() + " ORVEX_USER_PATH=" + user.Path() + " " KELCONF_PATH,
                   "get console Console Font");
    EXPECT_EQ(run.exitCode, 2) << "neither file could be read";
    EXPECT_EQ(run.out, "status 9\nvalue \n");
    std::istringstream lines(run.err);
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        EXPECT_THAT(line, StartsWith("kelconf: ")) << run.err;
    EXPECT_EQ(count, 4) << "two files not read, then where each was looked for:\n" << run.err;
    EXPECT_EQ(run.err.back(), '\n');
}

}  // namespace
