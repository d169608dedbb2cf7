// SPDX-License-Identifier: BSD-3-Clause
#include "zed/TException.h"
#include "zed/dict/TDictionary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;

namespace {

std::string SnmpFile(const char* name) { return std::string(KEL_SOURCE_DIR) + "/data/snmp/" + name; }

// One table class, Row, whose binding and attributes each test varies.
std::string Table(const std::string& snmp, const std::string& attributeSnmp = R"({"column": 1, "syntax": "Integer32"})")
{
    return R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}],
               "classes": [{"code": 1, "name": "Row", "snmp": )"
           + snmp + R"(,
                            "attributes": [{"id": 1, "name": "Index", "type": "Integer32", "partition": "Status",
                                            "snmp": )"
           + attributeSnmp + R"(},
                                           {"id": 2, "name": "Plain", "type": "Integer32", "partition": "Status"}]}]})";
}

std::string LoadError(const std::string& json)
{
    try {
        TDictionary::Parse(json, "t.json");
    } catch (const TException& e) {
        return e.what();
    }
    return "";
}

}  // namespace

TEST(DictionarySnmp, ShippedDictionaryBindsTheAgentItsTablesAndNotifications)
{
    const TDictionaryPtr dictionary = TDictionary::Load(SnmpFile("dictionary.json"));
    const TDictClass& agent = dictionary->GetRootClass(0);
    ASSERT_TRUE(agent.GetSnmp());
    EXPECT_EQ(agent.GetSnmp()->kind, TDictSnmpClass::Kind::Agent);
    EXPECT_EQ(ZedOidText(agent.GetSnmp()->oid), "1.3.6.1.2.1.1");
    const TDictAttribute* location = agent.FindAttribute(std::string("Location"));
    EXPECT_EQ(location->GetSnmp()->column, 6u);
    EXPECT_EQ(location->GetAccess(), ZED_ACCESS_READ_WRITE);

    const TDictClass* interface = agent.FindChild("Interface");
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->GetSnmp()->kind, TDictSnmpClass::Kind::Table);
    EXPECT_EQ(ZedOidText(interface->GetSnmp()->oid), "1.3.6.1.2.1.2.2.1");
    EXPECT_EQ(interface->GetSnmp()->index, std::vector<unsigned int>{1});
    const TDictAttribute* alias = interface->FindAttribute(std::string("Alias"));
    EXPECT_EQ(ZedOidText(alias->GetSnmp()->entry), "1.3.6.1.2.1.31.1.1.1");
    EXPECT_EQ(interface->FindAttribute(std::string("HCInOctets"))->GetSnmp()->syntax, ZedSnmpSyntax::Counter64);

    const TDictEvent* linkDown = interface->FindEvent(1);
    ASSERT_NE(linkDown, nullptr);
    EXPECT_EQ(linkDown->GetName(), "LinkDown");
    EXPECT_EQ(ZedOidText(*linkDown->GetSnmpTrap()), "1.3.6.1.6.3.1.1.5.3");
    EXPECT_EQ(ZedOidText(linkDown->GetArguments()[0].GetSnmp()->oid), "1.3.6.1.2.1.2.2.1.1");

    for (const char* name : {"Storage", "Process", "Load"})
        EXPECT_TRUE(agent.FindChild(name) && agent.FindChild(name)->GetSnmp()) << name;
}

TEST(DictionarySnmp, OidsAndSyntaxesAreReadExactly)
{
    EXPECT_EQ(ZedParseOid("1.3.6.1.2.1.1"), (ZedOid{1, 3, 6, 1, 2, 1, 1}));
    EXPECT_EQ(ZedParseOid("4294967295.0"), (ZedOid{4294967295u, 0}));
    for (const char* bad : {"", "1", "1.", ".1.3", "1..3", "1.3.x", "1.3 ", "4294967296.1", "-1.3"})
        EXPECT_FALSE(ZedParseOid(bad)) << bad;
    std::string deep = "1";
    for (int i = 0; i < 128; ++i)
        deep += ".1";
    EXPECT_FALSE(ZedParseOid(deep));

    EXPECT_EQ(ZedSnmpSyntaxNamed("Gauge32"), ZedSnmpSyntax::Unsigned);
    EXPECT_EQ(ZedSnmpSyntaxNamed("OCTET STRING"), ZedSnmpSyntax::OctetString);
    EXPECT_FALSE(ZedSnmpSyntaxNamed("octet string"));
}

TEST(DictionarySnmp, BindingFaultsNameWhereAndWhy)
{
    EXPECT_EQ(LoadError(Table(R"({"table": "1.3.6.1.4.1.1.1", "index": ["Index"]})")), "");
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3.6", "index": ["Index"], "scalars": "1.3.6.2"})")),
                HasSubstr("t.json: $.classes[0].snmp: a class is the agent"));
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3.6", "index": []})")),
                HasSubstr("$.classes[0].snmp.index: a table's rows are named by one index column or more"));
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3.6", "index": ["Nope"]})")),
                HasSubstr("$.classes[0].snmp.index[0]: no attribute \"Nope\" in Row"));
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3.6", "index": ["Plain"]})")),
                HasSubstr("the attribute Plain has no SNMP column"));
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3.6", "index": ["Index"], "rowStatus": "Index"})")),
                HasSubstr("$.classes[0].snmp.rowStatus: the attribute Index has not the syntax RowStatus"));
    EXPECT_THAT(LoadError(Table(R"({"scalars": "1.3.6", "index": ["Index"]})")),
                HasSubstr("only a table has an index and a RowStatus"));
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3..6", "index": ["Index"]})")),
                HasSubstr("$.classes[0].snmp.table: expected an OID"));
    EXPECT_THAT(LoadError(Table(R"({"table": "1.3.6", "index": ["Index"]})", R"({"column": 1, "syntax": "Float"})")),
                HasSubstr("$.classes[0].attributes[0].snmp.syntax: unknown SMI syntax \"Float\""));
    EXPECT_THAT(
        LoadError(Table(R"({"table": "1.3.6", "index": ["Index"]})", R"({"column": 1, "syntax": "Counter64"})")),
        HasSubstr("Counter64 does not fit the type Integer32"));
    EXPECT_THAT(
        LoadError(Table(R"({"table": "1.3.6", "index": ["Index"]})", R"({"column": 0, "syntax": "Integer32"})")),
        HasSubstr("$.classes[0].attributes[0].snmp.column: a column's sub-identifier is 1 or more"));
}
