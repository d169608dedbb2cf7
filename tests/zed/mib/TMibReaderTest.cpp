// SPDX-License-Identifier: BSD-3-Clause
// MIB modules read with net-snmp's parser: real modules of the machine and
// the suite's, and modules that fail in each way a person's can.

#include "support/MibTestSupport.h"
#include "support/TempDir.h"
#include "zed/mib/TMibReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

const TMibNode& Node(const TMibModules& read, const char* name)
{
    const TMibNode* node = read.Find(name);
    if (!node)
        throw std::runtime_error(std::string("no node ") + name);
    return *node;
}

// A module whose objects hang below experimental, with text between.
std::string Module(const std::string& name, const std::string& body, const std::string& imports = "")
{
    return name + " DEFINITIONS ::= BEGIN\nIMPORTS OBJECT-TYPE, Integer32, experimental FROM SNMPv2-SMI" + imports
           + ";\n" + body + "END\n";
}

std::string Scalar(const std::string& name, int subid, const std::string& syntax = "Integer32")
{
    return name + " OBJECT-TYPE\n  SYNTAX " + syntax
           + "\n  MAX-ACCESS read-only\n  STATUS current\n  DESCRIPTION \"x\"\n  ::= { experimental "
           + std::to_string(subid) + " }\n";
}

TEST(MibReader, ReadsWhatRealModulesDefine)
{
    KEL_NEEDS_ERLANG_MIBS();
    const TMibModules read = TMibReader::Read(TestMibPath(), {"SNMPv2-MIB", "KEL-TEST-MIB"});
    EXPECT_THAT(read.loaded, ElementsAre("SNMPv2-MIB", "KEL-TEST-MIB"));
    EXPECT_THAT(read.failed, IsEmpty());
    EXPECT_TRUE(std::is_sorted(read.nodes.begin(), read.nodes.end(),
                               [](const TMibNode& a, const TMibNode& b) { return a.oid < b.oid; }));

    const TMibNode& descr = Node(read, "sysDescr");
    EXPECT_EQ(descr.kind, ZedMibKind::Scalar);
    EXPECT_EQ(ZedOidText(descr.oid), "1.3.6.1.2.1.1.1");
    EXPECT_EQ(descr.syntax, "OCTET STRING");
    EXPECT_EQ(descr.convention, "DisplayString");
    EXPECT_EQ(descr.hint, "255a");
    EXPECT_EQ(descr.module, "SNMPv2-MIB");
    EXPECT_THAT(descr.description, HasSubstr("A textual description of the entity"));
    EXPECT_EQ(descr.description.find("\n "), std::string::npos) << "the text's indentation is gone";
    EXPECT_EQ(Node(read, "sysLocation").access, ZedMibAccess::ReadWrite);

    EXPECT_EQ(Node(read, "sysORTable").kind, ZedMibKind::Table);
    EXPECT_THAT(Node(read, "sysOREntry").index, ElementsAre("sysORIndex"));
    EXPECT_EQ(Node(read, "sysORID").kind, ZedMibKind::Column);
    EXPECT_EQ(Node(read, "coldStart").kind, ZedMibKind::Notification);
    EXPECT_EQ(Node(read, "mib-2").module, "SNMPv2-SMI") << "the nodes of imports come too, with their module";

    const TMibNode& peers = Node(read, "kelPeerEntry");
    EXPECT_TRUE(peers.implied);
    EXPECT_EQ(Node(read, "kelPeerStatsEntry").augments, "kelPeerEntry");
    EXPECT_THAT(Node(read, "kelRouteEntry").index, ElementsAre("kelPeerName", "kelRouteDest"));
    const TMibNode& kind = Node(read, "kelPeerKind");
    ASSERT_EQ(kind.numbers.size(), 3u);
    EXPECT_EQ(kind.numbers[0].name, "primary") << "named numbers in their order";
    EXPECT_EQ(kind.defval, "backup");
    EXPECT_EQ(Node(read, "kelTemperature").hint, "d-2") << "a convention's hint";
    EXPECT_EQ(Node(read, "kelTemperature").units, "degrees Celsius");
    EXPECT_EQ(Node(read, "kelLegacy").status, ZedMibStatus::Deprecated);
    EXPECT_EQ(Node(read, "kelOctets").syntax, "Counter64");
    EXPECT_THAT(Node(read, "kelPeerLost").objects, ElementsAre("kelPeerAddress", "kelPeerInOctets"));
    ASSERT_EQ(Node(read, "kelName").ranges.size(), 1u);
    EXPECT_EQ(Node(read, "kelName").ranges[0].high, 32);
    EXPECT_THAT(read.ChildrenOf(Node(read, "kelPeerStatsEntry")).size(), 2u);
}

TEST(MibReader, AFaultFailsItsModuleAloneAndNamesFileAndLine)
{
    KEL_NEEDS_ERLANG_MIBS();
    TempDir dir;
    // A vendor's description in Latin-1 ("Kühler"): read as such, not lost.
    std::string latin1 = Scalar("goodValue", 990);
    latin1.replace(latin1.find("\"x\""), 3, "\"K\xfchler\"");
    TempDir::Write(dir / ("GOOD-MIB.txt"), Module("GOOD-MIB", latin1));
    // Its first object is well written: nothing of the module may stay all the same.
    TempDir::Write(dir / ("BAD-MIB.txt"),
                   Module("BAD-MIB", Scalar("badFirst", 991) + "badOther OBJECT-TYPE SYNTAX ::= { }\n"));
    TempDir::Write(dir / ("LACKING-MIB.txt"),
                   Module("LACKING-MIB",
                          Scalar("lackingValue", 992) + Scalar("lackingGauge", 993, "CounterBasedGauge64"),
                          "\n  CounterBasedGauge64 FROM HCNUM-TC"));
    TMibSearchPath path = TestMibPath();
    path.Apply("+" + dir.Path());

    testing::internal::CaptureStderr();
    const TMibModules read =
        TMibReader::Read(path, {"BAD-MIB", "NO-SUCH-MIB", "GOOD-MIB", "LACKING-MIB", "NOR-THIS-MIB"});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty()) << "the parser's words are faults, not printed";

    EXPECT_THAT(read.loaded, ElementsAre("GOOD-MIB", "LACKING-MIB"));
    EXPECT_THAT(read.failed, ElementsAre("BAD-MIB", "NO-SUCH-MIB", "NOR-THIS-MIB"));
    EXPECT_EQ(read.Find("badFirst"), nullptr) << "nothing of a failed module is half-added";
    ASSERT_NE(read.Find("goodValue"), nullptr);
    EXPECT_EQ(read.Find("goodValue")->description, "K\xc3\xbchler");
    ASSERT_NE(read.Find("lackingValue"), nullptr);
    EXPECT_EQ(read.Find("lackingGauge")->syntax, "") << "a syntax of an import not found is not known";

    std::vector<std::string> said;
    for (const TMibFault& fault : read.faults)
        said.push_back((fault.fatal ? "E " : "W ") + fault.Said());
    const auto has = [&said](const std::string& text) {
        return std::any_of(said.begin(), said.end(), [&text](const std::string& s) { return s.find(text) == 0; });
    };
    EXPECT_TRUE(has("E " + (dir / "BAD-MIB.txt") + ":9: Bad syntax")) << ::testing::PrintToString(said);
    EXPECT_TRUE(has("E NO-SUCH-MIB: no file of the MIB search path defines it (")) << ::testing::PrintToString(said);
    EXPECT_TRUE(has("E NOR-THIS-MIB: no file")) << "each module's own fault, though their words are the same";
    EXPECT_TRUE(has("W " + (dir / "LACKING-MIB.txt") + ":3: imports from HCNUM-TC, which no file"))
        << ::testing::PrintToString(said);
    EXPECT_TRUE(has("W " + (dir / "LACKING-MIB.txt") + ": CounterBasedGauge64 is imported, but no module read"))
        << ::testing::PrintToString(said);
}

TEST(MibReader, EachReadStartsAfreshAndTakesAModuleByItsFile)
{
    KEL_NEEDS_ERLANG_MIBS();
    ASSERT_NE(TMibReader::Read(TestMibPath(), {"KEL-TEST-MIB"}).Find("kelName"), nullptr);
    const TMibModules next = TMibReader::Read(TestMibPath(), {"SNMPv2-MIB"});
    EXPECT_EQ(next.Find("kelName"), nullptr) << "nothing of an earlier read stays";

    TMibSearchPath erlangOnly;
    erlangOnly.Apply(ErlangMibFolder());
    const TMibModules byFile = TMibReader::Read(erlangOnly, {TestMibFolder() + "/KEL-TEST-MIB.txt"});
    EXPECT_THAT(byFile.loaded, ElementsAre("KEL-TEST-MIB"));
    EXPECT_NE(byFile.Find("kelPeerTable"), nullptr);
    const TMibModules notOne = TMibReader::Read(erlangOnly, {TestMibFolder() + "/../mib"});
    EXPECT_THAT(notOne.failed, ElementsAre(TestMibFolder() + "/../mib"));
}

}  // namespace
