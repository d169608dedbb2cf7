// SPDX-License-Identifier: BSD-3-Clause
// Dictionaries compiled from real MIB modules, used on a private snmpd: the
// same calls a form makes, on classes no one bound by hand.

#include "support/MibTestSupport.h"
#include "support/SnmpTestSupport.h"
#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/call/TCallAnswers.h"
#include "zed/dict/TDictionary.h"
#include "zed/mib/TMibCompiler.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TValueParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

using ::testing::HasSubstr;

namespace {

class MibAgentTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (ErlangMibFolder().empty())
            GTEST_SKIP() << "erlang-snmp's MIB text is not installed (bash scripts/test.sh installs it)";
        REQUIRE_SNMPD();
        const TMibModules modules = TMibReader::Read(
            TestMibPath(), {"SNMPv2-MIB", "RFC1213-MIB", "SNMP-NOTIFICATION-MIB", "SNMP-TARGET-MIB", "KEL-TEST-MIB"});
        ASSERT_TRUE(modules.failed.empty());
        dictionary = TDictionary::Parse(TMibCompiler::Compile(modules).json, "compiled");
        agent = std::make_unique<TSnmpLocalAgent>(TSnmpLocalAgent::Options{});
        module = InstallForTest(dictionary, agent->MakeAgents(TSnmpAgent::Version::V2c), true);
    }

    void TearDown() override { ZEDGetApplication()->SetDefaultModule(nullptr); }

    TSyncCall Call(const std::string& entity, const std::string& directive,
                   const std::map<std::string, std::string>& values = {})
    {
        return CallAs(*dictionary, entity, directive, values);
    }

    static std::string Attribute(const TCall& call, const std::string& name) { return AttributeOf(call, name); }

    TDictionaryPtr dictionary;
    std::unique_ptr<TSnmpLocalAgent> agent;
    std::shared_ptr<TSnmpModule> module;
};

TEST_F(MibAgentTest, ScalarsAndRowsAreShownAndSet)
{
    TSyncCall system = Call("Agent agent-1 system", "Show");
    ASSERT_EQ(system.GetStatus(), ZED_STATUS_RESPONSE) << system.GetReply().ToString();
    EXPECT_EQ(Attribute(system, "sysName"), Shell("hostname").substr(0, Shell("hostname").size() - 1));
    EXPECT_THAT(Attribute(system, "sysObjectID"), HasSubstr("1.3.6.1.4.1.8072.3.2."));

    ASSERT_EQ(Call("Agent agent-1 system", "Set", {{"sysLocation", "Hall C"}}).GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(Attribute(Call("Agent agent-1 system", "Show"), "sysLocation"), "Hall C");

    TSyncCall loopback = Call("Agent agent-1 ifTable 1", "Show");
    ASSERT_EQ(loopback.GetStatus(), ZED_STATUS_RESPONSE) << loopback.GetReply().ToString();
    EXPECT_EQ(Attribute(loopback, "ifDescr"), "lo");
    EXPECT_EQ(Attribute(loopback, "ifType"), "softwareLoopback") << "named numbers";

    TSyncCall every = Call("Agent agent-1 ifTable *", "Show");
    ASSERT_EQ(every.GetStatus(), ZED_STATUS_RESPONSE);
    ASSERT_GE(every.GetReplyCount(), 1u);
    ASSERT_TRUE(every.SelectReply(0));
    EXPECT_EQ(every.GetOutEntity().ToString(dictionary.get()), "Agent agent-1 ifTable 1");
    EXPECT_EQ(Attribute(every, "ifDescr"), "lo");
}

TEST_F(MibAgentTest, RowsOfARowStatusTableAreCreatedAndDeleted)
{
    const std::string row = "Agent agent-1 snmpNotifyTable kel";
    TSyncCall create = Call(row, "Create", {{"snmpNotifyTag", "kelTag"}, {"snmpNotifyType", "inform"}});
    ASSERT_EQ(create.GetStatus(), ZED_STATUS_RESPONSE) << create.GetReply().ToString();
    TSyncCall shown = Call(row, "Show");
    EXPECT_EQ(Attribute(shown, "snmpNotifyTag"), "kelTag");
    EXPECT_EQ(Attribute(shown, "snmpNotifyType"), "inform");
    EXPECT_EQ(Attribute(shown, "snmpNotifyRowStatus"), "active");
    EXPECT_EQ(Call(row, "Delete").GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(Call(row, "Show").GetReply().GetReplyCode(), ZED_COMMON_NO_SUCH_ENTITY);
}

TEST_F(MibAgentTest, ANotificationIsNamedFromItsModuleAndLandsOnItsRow)
{
    const std::string target = module->GetReceiverAddress().substr(4);
    // kelPeerLost of the peer "p1" (IMPLIED: the name's octets alone).
    const std::string p1 = ".112.49";
    ASSERT_EQ(
        RunBeside(*module, {"/usr/bin/snmptrap", "-v", "2c", "-c", "public", target, "", "1.3.6.1.3.7227.2.1",
                            "1.3.6.1.3.7227.1.2.1.2" + p1, "x", "0A000001", "1.3.6.1.3.7227.1.3.1.1" + p1, "c", "42"}),
        0);
    ASSERT_EQ(RunBeside(*module, {"/usr/bin/snmptrap", "-v", "2c", "-c", "public", target, "", "1.3.6.1.6.3.1.1.5.1"}),
              0);
    const std::vector<TCallResult> events = module->TakeEvents();
    ASSERT_EQ(events.size(), 2u);
    const auto* lost = static_cast<const TEventReport*>(events[0].reply.FindFirst(ZED_DT_EVENTREPORT));
    ASSERT_NE(lost, nullptr);
    EXPECT_EQ(lost->GetEntity().ToString(dictionary.get()), "Agent agent-1 kelPeerTable p1");
    EXPECT_EQ((*lost)[2].ToString(), "42");
    const auto* cold = static_cast<const TEventReport*>(events[1].reply.FindFirst(ZED_DT_EVENTREPORT));
    ASSERT_NE(cold, nullptr);
    EXPECT_EQ(dictionary->GetRootClass(0).FindEvent(cold->GetEventID())->GetName(), "coldStart");
}

}  // namespace
