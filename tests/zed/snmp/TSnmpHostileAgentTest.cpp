// SPDX-License-Identifier: BSD-3-Clause
// The SNMP module against an agent that misbehaves on purpose (the
// hostile_snmp_agent program, started by each test on a loopback port):
// answers reordered, left out or forged from another port, and walks that
// would never end or would take all the memory.

#include "zed/TApplication.h"
#include "zed/call/TCallAnswers.h"
#include "zed/call/TCallLoop.h"
#include "zed/snmp/TSnmpModule.h"
#include "zed/value/TAttribute.h"

#include "support/SnmpTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::HasSubstr;
using ::testing::StartsWith;
using namespace std::chrono_literals;

namespace {

class HostileAgentTest : public ::testing::Test {
protected:
    void Start(const char* mode, void (*configure)(TSnmpAgent&) = nullptr)
    {
        hostile = std::make_unique<Child>(std::vector<std::string>{HOSTILE_SNMP_AGENT, mode}, true);
        address = hostile->FirstLine();
        ASSERT_THAT(address, StartsWith("udp:127.0.0.1:"));
        TSnmpAgents agents;
        TSnmpAgent agent;
        agent.name = "hostile";
        agent.address = address;
        // Room for a slow machine (a sanitized build, two cores busy): no
        // test here waits for a timeout.
        agent.timeout = 5;
        agent.retries = 0;
        if (configure)
            configure(agent);
        agents.agents = {agent};
        dictionary = TDictionary::Load(SnmpFile("dictionary.json"));
        module = std::make_shared<TSnmpModule>(dictionary, std::move(agents), false);
        ZEDGetApplication()->SetDictionary(dictionary);
        ZEDGetApplication()->SetDefaultModule(module);
    }

    void TearDown() override { ZEDGetApplication()->SetDefaultModule(nullptr); }

    TSyncCall Show(const std::string& entity)
    {
        const TEntitySpec spec(entity);
        TSyncCall call(spec, dictionary->FindClass(spec.GetEntityClass())->FindDirective("Show")->GetID());
        call.Execute();
        return call;
    }

    static std::string Attribute(const TCall& call, const std::string& name)
    {
        const auto* list = static_cast<const TAttributeList*>(call.GetReply().FindFirst(ZED_DT_ATTRIBUTELIST));
        for (std::size_t i = 0; list && i < list->Size(); ++i)
            if (list->At(i).GetAttributeID().GetName() == name)
                return list->At(i).GetValue().ToString();
        return "(no " + name + ")";
    }

    std::unique_ptr<Child> hostile;
    std::string address;
    TDictionaryPtr dictionary;
    std::shared_ptr<TSnmpModule> module;
};

TEST_F(HostileAgentTest, AnswersAreMatchedByTheirObjectsNotByTheirPlaces)
{
    Start("reorder");
    TSyncCall reordered = Show("Agent hostile");
    ASSERT_EQ(reordered.GetStatus(), ZED_STATUS_RESPONSE) << reordered.GetReply().ToString();
    EXPECT_EQ(Attribute(reordered, "Description"), "value of 1.3.6.1.2.1.1.1.0");
    EXPECT_EQ(Attribute(reordered, "Location"), "value of 1.3.6.1.2.1.1.6.0");
    // What arrived and what the binding expects, not a bare "(invalid value)".
    EXPECT_THAT(Attribute(reordered, "UpTime"),
                StartsWith("(invalid value: OCTET STRING value of 1.3.6.1.2.1.1.3.0 does not fit"));

    Start("omit");
    TSyncCall omitted = Show("Agent hostile");
    EXPECT_EQ(Attribute(omitted, "Description"), "(not available: not returned by the agent)");
    EXPECT_EQ(Attribute(omitted, "Location"), "value of 1.3.6.1.2.1.1.6.0");
}

TEST_F(HostileAgentTest, AnAnswerFromAnotherPortIsRefusedAndTheAgentsOwnTaken)
{
    Start("foreign");
    TSyncCall call = Show("Agent hostile");
    ASSERT_EQ(call.GetStatus(), ZED_STATUS_RESPONSE) << call.GetReply().ToString();
    EXPECT_EQ(Attribute(call, "Description"), "value of 1.3.6.1.2.1.1.1.0") << "never \"forged\"";
}

TEST_F(HostileAgentTest, AWalkStopsAtItsBoundsKeepsItsRowsAndSaysTheListIsIncomplete)
{
    // Rows of 1,000 octets without end: the octets' bound.
    Start("huge", [](TSnmpAgent& agent) { agent.walkBytes = 2 * 1024 * 1024; });
    TSyncCall huge = Show("Agent hostile Interface *");
    const std::size_t rows = huge.GetReplyCount() - 1;
    EXPECT_GT(rows, 50u);
    EXPECT_LT(rows, 2000u);
    huge.SelectReply(rows);
    EXPECT_EQ(huge.GetReply().GetReplyCode(), ZED_COMMON_LIST_INCOMPLETE);
    EXPECT_THAT(huge.GetReply()[1].ToString(),
                HasSubstr("the list of Interface is incomplete (" + std::to_string(rows) + " rows shown): "));
    EXPECT_THAT(huge.GetReply()[1].ToString(), HasSubstr("the most an agent may give (WalkBytes)"));

    // The same without end in rows.
    Start("huge", [](TSnmpAgent& agent) { agent.walkRows = 300; });
    TSyncCall many = Show("Agent hostile Interface *");
    EXPECT_EQ(many.GetReplyCount(), 301u);
    many.SelectReply(300);
    EXPECT_THAT(many.GetReply()[1].ToString(), HasSubstr("300 rows were read, the most an agent may give (WalkRows)"));

    // One row an answer, slowly: the time's bound.
    Start("creep", [](TSnmpAgent& agent) { agent.walkTime = 0.5; });
    const auto started = std::chrono::steady_clock::now();
    TSyncCall creeping = Show("Agent hostile Interface *");
    EXPECT_LT(std::chrono::steady_clock::now() - started, 3s);
    creeping.SelectReply(creeping.GetReplyCount() - 1);
    EXPECT_EQ(creeping.GetReply().GetReplyCode(), ZED_COMMON_LIST_INCOMPLETE);
    EXPECT_THAT(creeping.GetReply()[1].ToString(), HasSubstr("the 0.5 s an agent may take (WalkTime)"));
}

TEST_F(HostileAgentTest, TheWalksOfOneCallOverManyAgentsShareTheCallsBounds)
{
    // Two agents without end; each alone may give 100,000 rows, the call 500 in all.
    Child second({HOSTILE_SNMP_AGENT, "huge"}, true);
    const std::string other = second.FirstLine();
    ASSERT_THAT(other, StartsWith("udp:127.0.0.1:"));
    Start("huge");
    TSnmpAgents agents = module->GetAgents();
    TSnmpAgent another = agents.agents[0];
    another.name = "hostile-2";
    another.address = other;
    agents.agents.push_back(another);
    agents.callRows = 500;
    module = std::make_shared<TSnmpModule>(dictionary, std::move(agents), false);
    ZEDGetApplication()->SetDefaultModule(module);
    TSyncCall all = Show("Agent * Interface *");
    std::size_t rows = 0, incomplete = 0;
    for (std::size_t i = 0; all.SelectReply(i); ++i) {
        if (all.GetStatus() == ZED_STATUS_RESPONSE) {
            ++rows;
            continue;
        }
        EXPECT_EQ(all.GetReply().GetReplyCode(), ZED_COMMON_LIST_INCOMPLETE) << all.GetReply().ToString();
        EXPECT_THAT(all.GetReply()[1].ToString(), HasSubstr("the most a call may (Calls, MostRows)"));
        ++incomplete;
    }
    EXPECT_EQ(incomplete, 2u) << "each agent's list says it is incomplete";
    EXPECT_GE(rows, 500u);
    EXPECT_LT(rows, 700u) << "the call's bound, not twice an agent's";
}

TEST_F(HostileAgentTest, RowsWhoseIndexDoesNotFitAreLeftOutCountedAndSaid)
{
    Start("badindex");
    TSyncCall rows = Show("Agent hostile Interface *");
    ASSERT_EQ(rows.GetReplyCount(), 3u) << rows.GetReply().ToString();
    EXPECT_EQ(rows.GetOutEntity().GetComponent(1).name, "1");
    rows.SelectReply(1);
    EXPECT_EQ(rows.GetOutEntity().GetComponent(1).name, "3");
    rows.SelectReply(2);
    EXPECT_EQ(rows.GetReply().GetReplyCode(), ZED_COMMON_LIST_INCOMPLETE);
    EXPECT_THAT(rows.GetReply()[1].ToString(),
                HasSubstr("the list of Interface is incomplete (2 rows shown): 1 row was left out, its index not "
                          "one of Interface"));
}

}  // namespace
