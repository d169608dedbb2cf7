// SPDX-License-Identifier: BSD-3-Clause
// Runs the built kelconf program as a user would and checks its streams and
// exit status.

#include "support/RunProgram.h"

#include <gtest/gtest.h>

namespace {

ProgramRun Kelconf(const std::string& arguments) { return RunProgram(KELCONF_PATH, arguments); }

std::string WriteTemp(const std::string& name, const std::string& text)
{
    const std::string path = TestTempPath(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

TEST(KelconfCheck, WritesBackEverySectionOfACleanFile)
{
    const std::string path =
        WriteTemp("clean.conf", "# head\r\n[A]\r\n  x =  1 \r\n[end A]\r\n\r\n[ B ]\n[ End B ]\n\n# tail\n");
    const ProgramRun run = Kelconf("check " + path);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out.substr(0, 70), " ################################################################### \n");
    EXPECT_NE(run.out.find(" ## Configuration filename : " + path + "\n"), std::string::npos);
    EXPECT_EQ(run.out.substr(run.out.find("\n\n") + 2), "[ A ]\n    x = 1\n[ End A ]\n\n[ B ]\n[ End B ]\n\n");
    EXPECT_EQ(run.err, "");
}

TEST(KelconfCheck, ReportsEachFailedSectionLoadAndKeepsGoing)
{
    const std::string path =
        WriteTemp("bad.conf", "stray line\n[ A ]\n[ End a ]\n[ C ]\nk = v\n[ End C ]\n[ Cut ]\nk = v\n");
    const ProgramRun run = Kelconf("check " + path);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.out.substr(run.out.find("\n\n") + 2), "[ C ]\n    k = v\n[ End C ]\n\n");
    EXPECT_EQ(run.err, "status 5\nstatus 4\nstatus 8\n");
}

TEST(KelconfCheck, ShippedSampleLoads)
{
    const ProgramRun run = Kelconf(std::string("check ") + KEL_SOURCE_DIR + "/data/config/sample.conf");
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.out.find("[ Router - 12 - 0 ]\n    .Hidden = Arg:3,Arg:7\n"), std::string::npos);
    EXPECT_NE(run.out.find("    Width = 800\n"), std::string::npos);
    EXPECT_EQ(run.err, "status 4\n");
}

TEST(KelconfCheck, UnreadableFileOrBadUsageExitsTwo)
{
    const ProgramRun missing = Kelconf("check /nonexistent/file.conf");
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_EQ(missing.out, "");
    EXPECT_EQ(missing.err, "kelconf: cannot read /nonexistent/file.conf: No such file or directory\n");
    EXPECT_EQ(Kelconf("").exitCode, 2);
    EXPECT_EQ(Kelconf("frobnicate x").exitCode, 2);
    EXPECT_EQ(Kelconf("check").err.substr(0, 25), "usage: kelconf check FILE");
}

}  // namespace

namespace {

TEST(KelconfGet, RunsTheLayeredLookupOfAContext)
{
    const std::string user = TestTempPath("user");
    std::system(("mkdir -p " + user + " && cp " KEL_SOURCE_DIR "/data/config/user/console.ucfg " + user
                 + "/$(id -un)console.ucfg")
                    .c_str());
    const std::string env = "ORVEX_SYSTEM_PATH=" KEL_SOURCE_DIR "/data/config/system ORVEX_USER_PATH=" + user + " ";
    const auto get = [&](const std::string& arguments) { return RunProgram(env + KELCONF_PATH, "get " + arguments); };

    EXPECT_EQ(get("console Console Font").out, "status 1\nvalue Monospace\n");
    EXPECT_EQ(get("console Console MaxLines").out, "status 1\nvalue 2000\n");
    EXPECT_EQ(get("console Display Width").out, "status 1\nvalue 640\n");
    EXPECT_EQ(get("--workspace " KEL_SOURCE_DIR "/data/config/workspaces/network.kws console Display Width").out,
              "status 1\nvalue 1280\n");
    EXPECT_EQ(get("console Console Colour").out, "status 9\nvalue \n");
    const ProgramRun none = get("nosuch Console Font");
    EXPECT_EQ(none.out, "status 9\nvalue \n");
    EXPECT_NE(none.err.find("could not be read"), std::string::npos);
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(get("console Console").exitCode, 2);
}

}  // namespace
