// SPDX-License-Identifier: BSD-3-Clause
// MIB modules made dictionaries: every construct of the suite's module,
// merged into the shipped dictionary, and the hand-written dictionary as the
// oracle of what real modules compile to.

#include "support/MibTestSupport.h"
#include "support/SnmpTestSupport.h"
#include "support/TempDir.h"
#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/dict/TDictionary.h"
#include "zed/mib/TMibCompiler.h"
#include "zed/mib/TMibLoad.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

TDictionaryPtr Compiled(const std::vector<std::string>& modules, TMibCompileOptions options = {},
                        std::vector<TMibFault>* warnings = nullptr)
{
    const TMibCompilation compiled = TMibCompiler::Compile(TMibReader::Read(TestMibPath(), modules), {}, options);
    if (warnings)
        *warnings = compiled.warnings;
    return TDictionary::Parse(compiled.json, "compiled");
}

const TDictClass& ClassOf(const TDictionary& dictionary, const char* name)
{
    const TDictClass* cls = dictionary.GetRootClass(0).FindChild(std::string(name));
    if (!cls)
        throw std::runtime_error(std::string("no class ") + name);
    return *cls;
}

const TDictAttribute& AttributeOf(const TDictClass& cls, const char* name)
{
    const TDictAttribute* attribute = cls.FindAttribute(std::string(name));
    if (!attribute)
        throw std::runtime_error(std::string("no attribute ") + name);
    return *attribute;
}

std::vector<std::string> DirectivesOf(const TDictClass& cls)
{
    std::vector<std::string> names;
    for (const TDictDirective& directive : cls.GetDirectives())
        if (directive.GetID() != ZED_COMMON_EXCEPTION_DIRECTIVE)
            names.push_back(directive.GetName());
    return names;
}

TEST(MibCompiler, EveryConstructOfAModuleBecomesWhatFormsPresent)
{
    KEL_NEEDS_ERLANG_MIBS();
    const TDictionaryPtr dictionary = Compiled({"KEL-TEST-MIB"});
    const TDictClass& scalars = ClassOf(*dictionary, "kelTestScalars");
    EXPECT_EQ(scalars.GetSnmp()->kind, TDictSnmpClass::Kind::Scalars);
    EXPECT_THAT(DirectivesOf(scalars), ElementsAre("Show", "Set"));
    const TDictAttribute& name = AttributeOf(scalars, "kelName");
    EXPECT_EQ(name.GetAccess(), ZED_ACCESS_READ_WRITE);
    EXPECT_EQ(name.GetValueLength(), 32u) << "SIZE";
    EXPECT_EQ(name.GetDefaultValue(), "kel") << "DEFVAL";
    EXPECT_EQ(name.GetDescription(), "The name of the test device.");
    EXPECT_EQ(AttributeOf(scalars, "kelTemperature").GetUnits(), "degrees Celsius");
    EXPECT_EQ(AttributeOf(scalars, "kelTemperature").GetSnmp()->hint, "d-2") << "its convention's DISPLAY-HINT";
    EXPECT_EQ(AttributeOf(scalars, "kelTemperature").GetDatatype(), ZED_DT_LATIN1STRING) << "\"21.50\" is text";
    EXPECT_EQ(AttributeOf(scalars, "kelBooted").GetDatatype(), ZED_DT_ABSTIME) << "DateAndTime";
    EXPECT_EQ(AttributeOf(scalars, "kelEnabled").GetDatatype(), ZED_DT_BOOLEAN) << "TruthValue";
    EXPECT_EQ(AttributeOf(scalars, "kelEnabled").GetDefaultValue(), "true");
    ASSERT_TRUE(AttributeOf(scalars, "kelLevel").GetRange());
    EXPECT_EQ(AttributeOf(scalars, "kelLevel").GetRange()->high, 100) << "Integer32 (0..100)";
    EXPECT_EQ(AttributeOf(scalars, "kelUptime").GetDatatype(), ZED_DT_RELTIME);
    EXPECT_EQ(AttributeOf(scalars, "kelOctets").GetSnmp()->syntax, ZedSnmpSyntax::Counter64);
    EXPECT_EQ(AttributeOf(scalars, "kelFeatures").GetSnmp()->syntax, ZedSnmpSyntax::Bits);
    EXPECT_EQ(scalars.FindAttribute(std::string("kelLegacy")), nullptr) << "deprecated objects are left out";
    EXPECT_NE(ClassOf(*Compiled({"KEL-TEST-MIB"}, {true}), "kelTestScalars").FindAttribute(std::string("kelLegacy")),
              nullptr)
        << "unless asked for";

    const TDictClass& peers = ClassOf(*dictionary, "kelPeerTable");
    const TDictSnmpClass& table = *peers.GetSnmp();
    EXPECT_EQ(ZedOidText(table.oid), "1.3.6.1.3.7227.1.2.1");
    ASSERT_EQ(table.index.size(), 1u);
    EXPECT_EQ(peers.FindAttribute(table.index[0])->GetName(), "kelPeerName") << "a not-accessible index is kept";
    EXPECT_TRUE(table.implied);
    EXPECT_EQ(peers.FindAttribute(table.rowStatus)->GetName(), "kelPeerStatus");
    EXPECT_THAT(DirectivesOf(peers), ElementsAre("Show", "Set", "Create", "Delete"));
    EXPECT_EQ(AttributeOf(peers, "kelPeerAddress").GetSnmp()->hint, "1d.1d.1d.1d");
    EXPECT_EQ(AttributeOf(peers, "kelPeerMac").GetSnmp()->hint, "1x:");
    const TDictAttribute& kind = AttributeOf(peers, "kelPeerKind");
    EXPECT_EQ(kind.GetDatatype(), ZED_DT_ENUMERATION);
    EXPECT_EQ(kind.GetDefaultValue(), "backup");
    EXPECT_EQ(AttributeOf(peers, "kelPeerStatus").GetAccess(), ZED_ACCESS_READ_ONLY)
        << "Create and Delete set the RowStatus, not a field";
    const TDictAttribute& augmenting = AttributeOf(peers, "kelPeerInOctets");
    EXPECT_EQ(ZedOidText(augmenting.GetSnmp()->entry), "1.3.6.1.3.7227.1.3.1") << "AUGMENTS joins its columns";
    EXPECT_EQ(augmenting.GetPartition(), 3u) << "counters in Counters";

    const TDictClass& routes = ClassOf(*dictionary, "kelRouteTable");
    ASSERT_EQ(routes.GetSnmp()->index.size(), 2u);
    const TDictAttribute& foreign = *routes.FindAttribute(routes.GetSnmp()->index[0]);
    EXPECT_EQ(foreign.GetName(), "kelPeerName");
    EXPECT_EQ(ZedOidText(foreign.GetSnmp()->entry), "1.3.6.1.3.7227.1.2.1") << "an index column of another table";
    EXPECT_THAT(DirectivesOf(routes), ElementsAre("Show")) << "nothing writable";

    ASSERT_EQ(peers.GetEvents().size(), 1u) << "a notification of a table's columns is the table's";
    const TDictEvent& lost = peers.GetEvents()[0];
    EXPECT_EQ(lost.GetName(), "kelPeerLost");
    EXPECT_EQ(ZedOidText(*lost.GetSnmpTrap()), "1.3.6.1.3.7227.2.1");
    ASSERT_EQ(lost.GetArguments().size(), 2u);
    EXPECT_EQ(ZedOidText(lost.GetArguments()[0].GetSnmp()->oid), "1.3.6.1.3.7227.1.2.1.2");
    const TDictClass& agent = dictionary->GetRootClass(0);
    EXPECT_NE(std::find_if(agent.GetEvents().begin(), agent.GetEvents().end(),
                           [](const TDictEvent& e) { return e.GetName() == "kelOverheated"; }),
              agent.GetEvents().end());
}

TEST(MibCompiler, ModulesJoinTheShippedDictionaryWithoutChangingIt)
{
    KEL_NEEDS_ERLANG_MIBS();
    const std::string shipped = ZedReadFile(SnmpFile("dictionary.json"), "dictionary");
    const TMibModules modules = TMibReader::Read(TestMibPath(), {"SNMPv2-MIB", "SNMP-NOTIFICATION-MIB"});
    const TMibCompilation compiled = TMibCompiler::Compile(modules, shipped);
    const TDictionaryPtr merged = TDictionary::Parse(compiled.json, "merged");
    const TDictionaryPtr original = TDictionary::Parse(shipped, "shipped");
    const TDictClass& agent = merged->GetRootClass(0);
    for (std::size_t i = 0; i < original->GetRootClass(0).GetChildCount(); ++i) {
        const TDictClass& was = original->GetRootClass(0).GetChild(i);
        ASSERT_NE(agent.FindChild(was.GetName()), nullptr) << was.GetName();
        EXPECT_EQ(agent.FindChild(was.GetName())->GetCode(), was.GetCode());
    }
    EXPECT_EQ(agent.FindChild(std::string("system")), nullptr) << "the agent's own scalars are the system group";
    EXPECT_NE(agent.FindChild(std::string("sysORTable")), nullptr);
    EXPECT_NE(agent.FindChild(std::string("snmpNotifyFilterTable")), nullptr);
    EXPECT_EQ(agent.FindChild(std::string("snmpNotifyTable")), nullptr) << "Notify binds that table already";
    EXPECT_EQ(agent.GetEvents().size(), original->GetRootClass(0).GetEvents().size() + 1)
        << "coldStart and warmStart are bound already; authenticationFailure is new";
    EXPECT_EQ(merged->GetPartitions().size(), original->GetPartitions().size());

    EXPECT_THROW(TMibCompiler::Compile(modules, R"({"format": "zed-dictionary 1", "classes": []})"), TException);
    const auto ranged = [](const char* type, const char* range) {
        return std::string(R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "P"}],
            "classes": [{"code": 1, "name": "C", "attributes": [{"id": 1, "name": "A", "partition": "P", "type": ")")
               + type + R"(", "range": )" + range + "}]}]}";
    };
    EXPECT_NO_THROW(TDictionary::Parse(ranged("Unsigned32", "[0, 4294967295]"), "ranged"));
    EXPECT_THROW(TDictionary::Parse(ranged("Integer32", "[5, 1]"), "ranged"), TException);
    EXPECT_THROW(TDictionary::Parse(ranged("Latin1String", "[0, 1]"), "ranged"), TException);
    EXPECT_THROW(TMibCompiler::Compile(modules, "[1"), TException);
}

// Where the hand-written dictionary binds a column, the modules that define
// it say the same: OID, syntax, access, and a table's index.
TEST(MibCompiler, TheHandWrittenDictionaryIsTheOracle)
{
    KEL_NEEDS_ERLANG_MIBS();
    const TDictionaryPtr hand = TDictionary::Load(SnmpFile("dictionary.json"));
    const TDictionaryPtr compiled =
        Compiled({"SNMPv2-MIB", "RFC1213-MIB", "SNMP-NOTIFICATION-MIB", "UCD-SNMP-MIB", "NET-SNMP-EXTEND-MIB"});
    struct Column {
        const TDictClass* cls;
        const TDictAttribute* attribute;
    };
    const auto columns = [](const TDictionary& dictionary) {
        std::map<std::string, Column> found;
        const TDictClass& agent = dictionary.GetRootClass(0);
        std::vector<const TDictClass*> classes{&agent};
        for (std::size_t i = 0; i < agent.GetChildCount(); ++i)
            classes.push_back(&agent.GetChild(i));
        for (const TDictClass* cls : classes)
            for (const TDictAttribute& attribute : cls->GetAttributes())
                if (const auto& snmp = attribute.GetSnmp(); snmp && cls->GetSnmp())
                    found[ZedOidText(snmp->entry.empty() ? cls->GetSnmp()->oid : snmp->entry) + "."
                          + std::to_string(snmp->column)] = {cls, &attribute};
        return found;
    };
    const auto indexOids = [](const Column& column) {
        std::vector<std::string> oids;
        for (unsigned int id : column.cls->GetSnmp()->index) {
            const TDictAttribute& part = *column.cls->FindAttribute(id);
            oids.push_back(
                ZedOidText(part.GetSnmp()->entry.empty() ? column.cls->GetSnmp()->oid : part.GetSnmp()->entry) + "."
                + std::to_string(part.GetSnmp()->column));
        }
        return oids;
    };
    const auto made = columns(*compiled);
    std::size_t compared = 0;
    for (const auto& [oid, bound] : columns(*hand)) {
        const auto it = made.find(oid);
        if (it == made.end())
            continue;  // IF-MIB's ifXTable and HOST-RESOURCES-MIB are not on a stock Debian
        ++compared;
        const Column& mine = it->second;
        EXPECT_EQ(mine.attribute->GetSnmp()->syntax, bound.attribute->GetSnmp()->syntax) << oid;
        EXPECT_EQ(mine.attribute->GetAccess(), bound.attribute->GetAccess())
            << oid << " " << bound.attribute->GetName();
        EXPECT_EQ(indexOids(mine), indexOids(bound)) << oid;
        EXPECT_EQ(mine.cls->GetSnmp()->implied, bound.cls->GetSnmp()->implied) << oid;
    }
    EXPECT_GE(compared, 40u)
        << "the system group, ifTable, laTable, snmpNotifyTable, ipAddrTable, nsExtendOutput2Table";
}

TEST(MibCompiler, ADescriptorTwoModulesDefineIsQualified)
{
    KEL_NEEDS_ERLANG_MIBS();
    TempDir dir;
    const auto module = [](const std::string& name, int subid) {
        return name
               + " DEFINITIONS ::= BEGIN\nIMPORTS OBJECT-TYPE, Integer32, experimental FROM SNMPv2-SMI;\n"
                 "twinGroup OBJECT IDENTIFIER ::= { experimental "
               + std::to_string(subid)
               + " }\ntwinValue OBJECT-TYPE SYNTAX Integer32 MAX-ACCESS read-only STATUS current DESCRIPTION \"x\" "
                 "::= { twinGroup 1 }\nEND\n";
    };
    TempDir::Write(dir / "TWIN-A-MIB.txt", module("TWIN-A-MIB", 881));
    TempDir::Write(dir / "TWIN-B-MIB.txt", module("TWIN-B-MIB", 882));
    TMibSearchPath path = TestMibPath();
    path.Apply("+" + dir.Path());
    const TMibCompilation compiled = TMibCompiler::Compile(TMibReader::Read(path, {"TWIN-A-MIB", "TWIN-B-MIB"}));
    const TDictionaryPtr dictionary = TDictionary::Parse(compiled.json, "twins");
    const TDictClass& a = ClassOf(*dictionary, "TWIN-A-MIB::twinGroup");
    EXPECT_NE(a.FindAttribute(std::string("TWIN-A-MIB::twinValue")), nullptr);
    EXPECT_NE(dictionary->GetRootClass(0).FindChild(std::string("TWIN-B-MIB::twinGroup")), nullptr);
}

TEST(MibLoad, ModulesOfTheDefaultListAreQuietNamedOnesAreSaid)
{
    KEL_NEEDS_ERLANG_MIBS();
    TMibChoice choice;
    choice.path = TestMibPath();
    choice.modules = {"KEL-TEST-MIB", "NO-SUCH-MIB", "UCD-DISKIO-MIB"};
    choice.quiet = {"UCD-DISKIO-MIB"};
    const TMibLoaded loaded = ZedLoadWithMibs(SnmpFile("dictionary.json"), choice);
    EXPECT_THAT(loaded.loaded, ElementsAre("KEL-TEST-MIB", "UCD-DISKIO-MIB"));
    EXPECT_THAT(loaded.failed, ElementsAre("NO-SUCH-MIB"));
    ASSERT_EQ(loaded.faults.size(), 1u) << loaded.faults[1].Said();
    EXPECT_THAT(loaded.faults[0].Said(), HasSubstr("NO-SUCH-MIB: no file of the MIB search path defines it"));
    EXPECT_NE(loaded.dictionary->GetRootClass(0).FindChild(std::string("kelPeerTable")), nullptr);
    EXPECT_NE(loaded.dictionary->GetRootClass(0).FindChild(std::string("Interface")), nullptr);

    const TMibChoice adding = TMibChoice::FromCommandLine("", "+KEL-TEST-MIB");
    EXPECT_EQ(adding.modules.back(), "KEL-TEST-MIB");
    EXPECT_EQ(adding.quiet.size() + 1, adding.modules.size()) << "the defaults quiet, the module named not";
    EXPECT_TRUE(TMibChoice::FromCommandLine("", "KEL-TEST-MIB").quiet.empty());
}

}  // namespace
