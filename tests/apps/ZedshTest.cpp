// SPDX-License-Identifier: BSD-3-Clause
// Runs the built zedsh program as a user would.

#include "support/MibTestSupport.h"
#include "support/RunProgram.h"
#include "support/SnmpTestSupport.h"
#include "support/TempDir.h"
#include "zed/dict/TDictionary.h"
#include "zed/snmp/TSnmpLocalAgent.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

using ::testing::HasSubstr;

namespace {

ProgramRun Zedsh(const std::string& arguments) { return RunProgram(ZEDSH_PATH, arguments); }

TEST(Zedsh, ListsTheShippedNetwork)
{
    const ProgramRun classes = Zedsh("classes");
    EXPECT_EQ(classes.exitCode, 0);
    EXPECT_EQ(classes.out, "Network (1)\n  Router (2)\n    Interface (3)\n");
    EXPECT_THAT(
        Zedsh("attributes 'Network Router'").out,
        HasSubstr(
            "ClockOffset (13) : Integer32, Characteristics, read-write, in microseconds, default from the server"));
    EXPECT_THAT(Zedsh("directives 'Network Router Interface'").out,
                HasSubstr("Count (1) : Unsigned16, required, in packets, default \"4\""));
    EXPECT_THAT(Zedsh("types").out, HasSubstr("PeerSet (105): SET OF PeerAddress"));
}

TEST(Zedsh, CallsPrintRepliesAndEvents)
{
    const ProgramRun test = Zedsh("call 'Network core Router r1 Interface eth0' Test Count=2 Size=@default");
    EXPECT_EQ(test.exitCode, 0) << test.err;
    EXPECT_THAT(test.out, HasSubstr("response Success (1): Test completed\n    Sent = 2 packets\n"));

    const ProgramRun set = Zedsh("call 'Network core Router r2' Set Priority=3 'Location={\"Site\": \"Hall C\"}'");
    EXPECT_EQ(set.exitCode, 0) << set.err;
    EXPECT_THAT(set.out, HasSubstr("event ConfigurationChanged from Network core Router r2\n"));
    EXPECT_THAT(set.out, HasSubstr("      Priority = 3\n      Location = { Site = Hall C }\n"));
    EXPECT_THAT(Zedsh("directives 'Network Router'").out, HasSubstr("Set (2): takes attribute values\n"));

    const ProgramRun missing = Zedsh("call 'Network core Router r9' Show");
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.out, HasSubstr("common exception NoSuchEntity (1): The entity does not exist"));
}

// The README's two commands, on a private snmpd.
TEST(Zedsh, AgentsOfAnAgentsFileAreShownAndSet)
{
    if (TSnmpLocalAgent::Program().empty()) {
        if (std::getenv("CI"))
            FAIL() << "snmpd is not installed (scripts/setup.sh installs it)";
        GTEST_SKIP() << "snmpd is not installed";
    }
    TSnmpLocalAgent agent({});
    TempDir dir;
    const std::string agents = dir / "agents.conf";
    agent.WriteAgentsFile(agents, TSnmpAgent::Version::V2c, "core-r");
    const ProgramRun set = Zedsh("--agents " + agents + " call 'Agent core-r-1' Set Location='Hall C'");
    EXPECT_EQ(set.exitCode, 0) << set.out << set.err;
    EXPECT_THAT(set.out,
                HasSubstr("response Success (1): Attributes changed\n    Attributes:\n      Location = Hall C\n"));
    const ProgramRun show = Zedsh("--agents " + agents + " call 'Agent core-r-1' Show");
    EXPECT_EQ(show.exitCode, 0) << show.err;
    EXPECT_THAT(show.out, HasSubstr("Agent core-r-1  at "));
    EXPECT_THAT(show.out, HasSubstr("      Location = Hall C\n"));
    EXPECT_THAT(Zedsh("--agents " + agents + " classes").out, HasSubstr("Agent (1)\n  Interface (2)\n"));

    // An agents file others may read is refused, saying why.
    ::chmod(agents.c_str(), 0644);
    const ProgramRun open = Zedsh("--agents " + agents + " call 'Agent core-r-1' Show");
    EXPECT_EQ(open.exitCode, 3);
    EXPECT_THAT(open.err, HasSubstr("make it private with: chmod 600"));
    EXPECT_EQ(Zedsh("--agents " + agents + " --instances x.json classes").exitCode, 2);
}

// MIB modules compiled on their own, and into the dictionary of agents.
TEST(Zedsh, MibModulesAreCompiledAndTheirFaultsSaid)
{
    KEL_NEEDS_ERLANG_MIBS();
    const std::string dirs = " --mib-dirs '+" + ErlangMibFolder() + ":" + TestMibFolder() + "'";
    const ProgramRun compiled = Zedsh("mib" + dirs + " KEL-TEST-MIB");
    EXPECT_EQ(compiled.exitCode, 0) << compiled.err;
    EXPECT_NO_THROW(TDictionary::Parse(compiled.out, "zedsh mib"));
    EXPECT_THAT(compiled.out, HasSubstr("\"name\":\"kelPeerTable\""));

    const ProgramRun missing = Zedsh("mib" + dirs + " KEL-TEST-MIB NO-SUCH-MIB");
    EXPECT_EQ(missing.exitCode, 1) << "a module named could not be compiled";
    EXPECT_THAT(missing.err, HasSubstr("error: NO-SUCH-MIB: no file of the MIB search path defines it ("));
    EXPECT_THAT(missing.out, HasSubstr("kelPeerTable")) << "the others are compiled all the same";
    EXPECT_EQ(Zedsh("mib").exitCode, 2);
    EXPECT_EQ(Zedsh("--mibs IF-MIB classes").exitCode, 2) << "--mibs is for agents";

    REQUIRE_SNMPD();
    TSnmpLocalAgent agent({});
    TempDir dir;
    const std::string agents = dir / "agents.conf";
    agent.WriteAgentsFile(agents, TSnmpAgent::Version::V2c, "core-r");
    const ProgramRun rows =
        Zedsh("--agents " + agents + dirs + " --mibs SNMPv2-MIB call 'Agent core-r-1 sysORTable *' Show");
    EXPECT_EQ(rows.exitCode, 0) << rows.out << rows.err;
    EXPECT_THAT(rows.out, HasSubstr("Agent core-r-1 sysORTable 1  at "));
    EXPECT_THAT(rows.out, HasSubstr("      sysORDescr = "));
    // Values are named from the modules' nodes too, not only from the dictionary's classes.
    const ProgramRun named = Zedsh("--agents " + agents + dirs + " --mibs NET-SNMP-MIB call 'Agent core-r-1' Show");
    EXPECT_THAT(named.out, HasSubstr("Object ID = 1.3.6.1.4.1.8072.3.2.10 (netSnmpAgentOIDs.10)")) << named.err;
}

TEST(Zedsh, ValidatePrintsEveryFaultWithFileAndPath)
{
    const std::string data = std::string(KEL_SOURCE_DIR) + "/data/network/";
    const ProgramRun shipped = Zedsh("validate " + data + "dictionary.json " + data + "instances.json");
    EXPECT_EQ(shipped.exitCode, 0) << shipped.out << shipped.err;
    EXPECT_THAT(shipped.out, HasSubstr("dictionary.json: valid\n"));
    EXPECT_THAT(shipped.out, HasSubstr("instances.json: valid\n"));

    // An instance file is checked against the dictionary beside it when one is valid.
    const std::string dictionary = TestTempPath("d.json"), instances = TestTempPath("i.json");
    std::ofstream(dictionary) << R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "P"}],
        "classes": [{"code": 1, "name": "Box", "attributes": [{"id": 1, "name": "Size", "type": "Unsigned16", "partition": "P"}]}]})";
    std::ofstream(instances) << R"({"format": "zed-instances 1", "instances": [
        {"entity": "Box b", "attributes": {"Size": "big"}}, {"entity": "Network core"}]})";
    const ProgramRun bad = Zedsh("validate " + instances + " " + dictionary + " /nonexistent.json");
    EXPECT_EQ(bad.exitCode, 1);
    EXPECT_THAT(bad.out, HasSubstr(dictionary + ": valid\n"));
    EXPECT_THAT(bad.out, HasSubstr(instances + ": $.instances[0].attributes.Size: "));
    EXPECT_THAT(bad.out, HasSubstr(instances + ": $.instances[1].entity: unknown class \"Network\""));
    EXPECT_THAT(bad.out, HasSubstr("/nonexistent.json: cannot read the file: No such file or directory"));
    EXPECT_EQ(Zedsh("validate").exitCode, 2);
    EXPECT_EQ(Zedsh("--dictionary /nonexistent.json validate " + instances).exitCode, 3);
}

TEST(Zedsh, BadInputExplainsItself)
{
    EXPECT_THAT(Zedsh("call 'Planet x' Show").err, HasSubstr("bad entity"));
    EXPECT_EQ(Zedsh("call 'Network core' Fly").exitCode, 2);
    EXPECT_THAT(Zedsh("call 'Network core Router r1 Interface eth0' Test Count=lots").err,
                HasSubstr("Count: \"lots\": not a whole number"));
    EXPECT_THAT(Zedsh("call 'Network core' Show Colour=red").err, HasSubstr("is not ARGUMENT=VALUE"));
    EXPECT_THAT(Zedsh("call 'Network core' Set Colour=red").err,
                HasSubstr("is not ATTRIBUTE=VALUE for an attribute of Network"));
    EXPECT_THAT(Zedsh("call '' Show").err, HasSubstr("bad entity \"\": names no class"));
    const ProgramRun load = Zedsh("--dictionary /nonexistent.json classes");
    EXPECT_EQ(load.exitCode, 3);
    EXPECT_THAT(load.err, HasSubstr("/nonexistent.json: cannot read the dictionary file: No such file or directory"));
    EXPECT_THAT(Zedsh("--dictionary /tmp classes").err,
                HasSubstr("/tmp: cannot read the dictionary file: Is a directory"));
    EXPECT_THAT(Zedsh("--dictionary /dev/zero classes").err, HasSubstr("a device, not a regular file"));
    // A pasted argument of any length is cut in the message.
    const ProgramRun pasted = Zedsh("call 'Network core' Show Partition=" + std::string(5000, 'x'));
    EXPECT_EQ(pasted.exitCode, 2);
    EXPECT_LT(pasted.err.size(), 300u);
    EXPECT_THAT(pasted.err, HasSubstr("(5000 characters)"));
    std::string deep = "true";
    for (int i = 0; i < 3500; ++i)
        deep = R"({"attribute": "Watch", "value": )" + deep + "}";
    const ProgramRun nested = Zedsh("call 'Network core Router r1 Interface eth0' Set 'Watch=" + deep + "'");
    EXPECT_EQ(nested.exitCode, 2);
    EXPECT_THAT(nested.err, HasSubstr("values nest deeper than 96 levels"));
    EXPECT_EQ(Zedsh("").exitCode, 2);
    EXPECT_EQ(Zedsh("help").exitCode, 0);
}

}  // namespace
