// SPDX-License-Identifier: BSD-3-Clause
// Runs the host application's tour as the main job does and checks what it leaves.

#include "support/RunProgram.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

using ::testing::HasSubstr;

namespace {

TEST(Kelbrowser, TourLeavesAPictureOfEveryStepAndATranscript)
{
    TempDir out, user;
    const ProgramRun run = RunProgram("ORVEX_USER_PATH=" + user.Path() + " ORVEX_SYSTEM_PATH=" + user.Path()
                                          + " QT_QPA_PLATFORM=offscreen " + KELBROWSER_PATH,
                                      "--tour " + out.Path() + "tour");
    EXPECT_EQ(run.exitCode, 0) << run.out << run.err;
    EXPECT_THAT(run.out, HasSubstr("all as expected"));
    for (const char* picture :
         {"01-test.png", "02-echo-every-kind.png", "02-echo-every-kind-end.png", "03-echo-required-missing.png",
          "04-show-router.png", "05-show-every-router.png", "06-test-exception.png", "07-attributes.png",
          "08-attributes-applied-events.png", "09-console-full.png", "10-workspace-reopened.png", "11-help.png"}) {
        struct stat info {};
        EXPECT_EQ(::stat((out.Path() + "tour/" + picture).c_str(), &info), 0) << picture;
        EXPECT_GT(info.st_size, 5000) << picture;
    }
    const std::string transcript = TempDir::Read(out.Path() + "tour/transcript.txt");
    EXPECT_THAT(transcript, HasSubstr("response Mirrored (1): The arguments came back"));
    EXPECT_THAT(transcript, HasSubstr("message box \"Problem\": The required field *Confirm has no value."));
    EXPECT_THAT(transcript,
                HasSubstr("Peers = { { Host = r2, Port = 179, Transport = TCP }, { Host = r3, Port = 646 } }"));
    EXPECT_THAT(transcript, HasSubstr("      MTU = 9000 octets\n      Duplex = Full\n"))
        << "an attribute list went and came back";
    EXPECT_THAT(transcript, HasSubstr("exception CountTooLarge (2): The packet count is too large"));
    EXPECT_THAT(transcript, HasSubstr("Priority 10 -> 7, applied: yes, read again: 7"));
    EXPECT_THAT(transcript, HasSubstr("event lists: 1"));
    EXPECT_THAT(transcript, HasSubstr("closed: yes, reopened: yes, same windows in the same places: yes"));
    EXPECT_THAT(transcript, HasSubstr("every step went as expected"));
    EXPECT_TRUE(std::filesystem::is_empty(user.Path())) << "the tour keeps its settings in its own folder";

    // Then the same forms on a private snmpd, where one is installed.
    if (!std::filesystem::exists("/usr/sbin/snmpd")) {
        EXPECT_THAT(transcript, HasSubstr("snmpd is not installed: the SNMP steps were skipped"));
        return;
    }
    for (const char* picture :
         {"20-snmp-system.png", "21-snmp-set-location.png", "22-snmp-interfaces.png", "23-snmp-trap-events.png"})
        EXPECT_TRUE(std::filesystem::exists(out.Path() + "tour/" + picture)) << picture;
    EXPECT_THAT(transcript, HasSubstr("Location -> Hall C, applied: yes, read again: Hall C"));
    EXPECT_THAT(transcript, HasSubstr("Agent core-r-1 Interface 1  at "));
    EXPECT_THAT(transcript, HasSubstr("    Agent : Cold Start (1)\n    Interface : Link Down (1)\n"));
    EXPECT_THAT(transcript, HasSubstr("every SNMP step went as expected"));
}

TEST(Kelbrowser, ABadCommandLineOrNetworkSaysSo)
{
    EXPECT_EQ(RunProgram(KELBROWSER_PATH, "--colour").exitCode, 2);
    TempDir out;
    const ProgramRun missing =
        RunProgram(KELBROWSER_PATH, "--dictionary /nonexistent.json --tour " + out.Path() + "tour");
    EXPECT_EQ(missing.exitCode, 3);
    EXPECT_THAT(missing.err, HasSubstr("/nonexistent.json"));
}

}  // namespace
