// Runs the built zedsh program as a user would.

#include "support/RunProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

ProgramRun Zedsh(const std::string& arguments) { return RunProgram(ZEDSH_PATH, arguments); }

TEST(Zedsh, ListsTheShippedNetwork)
{
    const ProgramRun classes = Zedsh("classes");
    EXPECT_EQ(classes.exitCode, 0);
    EXPECT_EQ(classes.out, "Network (1)\n  Router (2)\n    Interface (3)\n");
    EXPECT_THAT(Zedsh("attributes 'Network Router'").out,
                HasSubstr("ClockOffset (13) : Integer32, Characteristics, read-write, in microseconds, default from the server"));
    EXPECT_THAT(Zedsh("directives 'Network Router Interface'").out, HasSubstr("Count (1) : Unsigned16, required, in packets, default \"4\""));
    EXPECT_THAT(Zedsh("types").out, HasSubstr("PeerSet (105): SET OF PeerAddress"));
}

TEST(Zedsh, CallsPrintRepliesAndEvents)
{
    const ProgramRun test = Zedsh("call 'Network core Router r1 Interface eth0' Test Count=2 Size=@default");
    EXPECT_EQ(test.exitCode, 0) << test.err;
    EXPECT_THAT(test.out, HasSubstr("response Success (1): Test completed\n    Sent = 2 packets\n"));

    const ProgramRun set = Zedsh("call 'Network core Router r2' Set 'Attributes={\"Priority\": 3}'");
    EXPECT_EQ(set.exitCode, 0) << set.err;
    EXPECT_THAT(set.out, HasSubstr("event ConfigurationChanged from Network core Router r2\n"));

    const ProgramRun missing = Zedsh("call 'Network core Router r9' Show");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.out, HasSubstr("common exception NoSuchEntity (1): The entity does not exist"));
}

TEST(Zedsh, BadInputExplainsItself)
{
    EXPECT_THAT(Zedsh("call 'Planet x' Show").err, HasSubstr("bad entity"));
    EXPECT_EQ(Zedsh("call 'Network core' Fly").exitCode, 2);
    EXPECT_THAT(Zedsh("call 'Network core Router r1 Interface eth0' Test Count=lots").err,
                HasSubstr("Count: \"lots\": not a whole number"));
    EXPECT_THAT(Zedsh("call 'Network core' Show Colour=red").err, HasSubstr("is not ARGUMENT=VALUE"));
    const ProgramRun load = Zedsh("--dictionary /nonexistent.json classes");
    EXPECT_EQ(load.exitCode, 3);
    EXPECT_THAT(load.err, HasSubstr("/nonexistent.json: cannot open the dictionary file"));
    EXPECT_EQ(Zedsh("").exitCode, 2);
    EXPECT_EQ(Zedsh("help").exitCode, 0);
}

} // namespace
