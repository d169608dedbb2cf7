// SPDX-License-Identifier: BSD-3-Clause
// The SNMP module against Debian's snmpd, started by each test on loopback
// ports of its own: the same calls the forms make, compared with what the
// net-snmp tools read, refusals, timeouts, notifications and many agents.

#include "zed/TApplication.h"
#include "zed/call/TCallAnswers.h"
#include "zed/call/TCallLoop.h"
#include "zed/snmp/TSnmpLocalAgent.h"
#include "zed/snmp/TSnmpModule.h"
#include "zed/snmp/TSnmpReceiver.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TValueParser.h"

#include "support/SnmpTestSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <map>
#include <sstream>

using ::testing::HasSubstr;
using namespace std::chrono_literals;

namespace {

class SnmpModuleTest : public ::testing::Test {
protected:
    void Start(TSnmpLocalAgent::Options options = {}, TSnmpAgent::Version version = TSnmpAgent::Version::V2c,
               bool receive = false)
    {
        agent = std::make_unique<TSnmpLocalAgent>(std::move(options));
        Use(agent->MakeAgents(version), receive);
    }

    void Use(TSnmpAgents agents, bool receive = false)
    {
        dictionary = TDictionary::Load(SnmpFile("dictionary.json"));
        module = InstallForTest(dictionary, std::move(agents), receive);
    }

    void TearDown() override { ZEDGetApplication()->SetDefaultModule(nullptr); }

    TSyncCall Call(const std::string& entity, const std::string& directive,
                   const std::map<std::string, std::string>& values = {})
    {
        return CallAs(*dictionary, entity, directive, values);
    }

    static std::string Attribute(const TCall& call, const std::string& name) { return AttributeOf(call, name); }

    static std::string Reason(const TCall& call) { return call.GetReply()[1].ToString(); }

    std::unique_ptr<TSnmpLocalAgent> agent;
    TDictionaryPtr dictionary;
    std::shared_ptr<TSnmpModule> module;
};

TEST_F(SnmpModuleTest, ShowOfTheSystemGroupAndOfAnInterfaceOverEveryVersion)
{
    REQUIRE_SNMPD();
    Start();
    TSyncCall system = Call("Agent agent-1", "Show");
    ASSERT_EQ(system.GetStatus(), ZED_STATUS_RESPONSE) << system.GetReply().ToString();
    EXPECT_THAT(Attribute(system, "Description"), HasSubstr("Linux"));
    EXPECT_EQ(Attribute(system, "ObjectID"), "1.3.6.1.4.1.8072.3.2.10");
    EXPECT_EQ(Attribute(system, "Name"), Shell("hostname").substr(0, Shell("hostname").find('\n')));

    TSyncCall lo = Call("Agent agent-1 Interface 1", "Show");
    ASSERT_EQ(lo.GetStatus(), ZED_STATUS_RESPONSE) << lo.GetReply().ToString();
    EXPECT_EQ(Attribute(lo, "Index"), "1");
    EXPECT_EQ(Attribute(lo, "Description"), "lo");
    EXPECT_EQ(Attribute(lo, "Type"), "softwareLoopback");
    EXPECT_EQ(Attribute(lo, "IfName"), "lo");  // from the augmenting ifXTable

    TSyncCall status = Call("Agent agent-1 Interface 1", "Show", {{"Partition", "Status"}});
    EXPECT_EQ(Attribute(status, "Description"), "(no Description)") << "the partition asked for only";
    EXPECT_EQ(Attribute(status, "OperStatus"), "up");

    // The same over SNMPv3 with authentication and privacy, and over SNMPv1.
    for (auto version : {TSnmpAgent::Version::V3, TSnmpAgent::Version::V1}) {
        Use(agent->MakeAgents(version));
        EXPECT_TRUE(module->GetAgents().agents[0].authKey.empty()) << "the module keeps no pass phrase";
        EXPECT_EQ(module->GetAgents().agents[0].keys, nullptr) << "nor keys: its sessions hold theirs";
        TSyncCall again = Call("Agent agent-1 Interface 1", "Show");
        EXPECT_EQ(again.GetStatus(), ZED_STATUS_RESPONSE) << again.GetReply().ToString();
        EXPECT_EQ(Attribute(again, "Description"), "lo");
    }

    TSyncCall missing = Call("Agent agent-1 Interface 999", "Show");
    EXPECT_EQ(missing.GetStatus(), ZED_STATUS_COMMON_EXCEPTION);
    EXPECT_EQ(missing.GetReply().GetReplyCode(), ZED_COMMON_NO_SUCH_ENTITY);
    EXPECT_EQ(Reason(missing), "agent agent-1 (" + agent->GetAddress() + ") has no Interface 999");
    EXPECT_EQ(Reason(Call("Agent agent-1 Interface eth0", "Show")),
              "no Interface is named \"eth0\": \"eth0\" is not a whole number from 0 to 4294967295");
    EXPECT_EQ(Reason(Call("Agent nobody", "Show")), "the agents file names no agent \"nobody\"");
}

TEST_F(SnmpModuleTest, AWildcardShowGivesTheRowsOfABulkWalkOfTheSameColumns)
{
    REQUIRE_SNMPD();
    Start({1, {}, {"extend rows /usr/bin/seq 1 300"}});
    // What the command-line tool reads: ifDescr and ifType of every row.
    std::map<std::string, std::string> walked;
    std::istringstream lines(Shell("snmpbulkwalk -v2c -c public -On -Oq -m \"\" 127.0.0.1:"
                                   + std::to_string(agent->GetPorts()[0]) + " 1.3.6.1.2.1.2.2.1.2"));
    for (std::string line; std::getline(lines, line);) {
        const std::string prefix = ".1.3.6.1.2.1.2.2.1.2.";
        if (line.rfind(prefix, 0) == 0)
            walked[line.substr(prefix.size(), line.find(' ') - prefix.size())] = line.substr(line.find(' ') + 1);
    }
    ASSERT_FALSE(walked.empty());

    TSyncCall all = Call("Agent agent-1 Interface *", "Show");
    std::map<std::string, std::string> shown;
    for (std::size_t i = 0; all.SelectReply(i); ++i) {
        ASSERT_EQ(all.GetStatus(), ZED_STATUS_RESPONSE) << all.GetReply().ToString();
        const auto& row = all.GetOutEntity().GetComponent(1);
        EXPECT_EQ(Attribute(all, "Index"), row.name);
        shown[row.name] = "\"" + Attribute(all, "Description") + "\"";
    }
    EXPECT_EQ(shown, walked);

    // A table of two-part indexes (a command's name and a line number), longer
    // than one request carries.
    TSyncCall lines300 = Call("Agent agent-1 Output *", "Show");
    ASSERT_EQ(lines300.GetReplyCount(), 300u);
    lines300.SelectReply(299);
    EXPECT_EQ(lines300.GetOutEntity().GetComponent(1).name, "rows/300");
    EXPECT_EQ(Attribute(lines300, "Text"), "300");
    EXPECT_EQ(Attribute(lines300, "Command"), "rows");
    EXPECT_EQ(Attribute(Call("Agent agent-1 Output rows/7", "Show"), "Text"), "7");

    // Rows named by an IpAddress.
    TSyncCall loopback = Call("Agent agent-1 Address 127.0.0.1", "Show");
    EXPECT_EQ(Attribute(loopback, "Address"), "127.0.0.1");
    EXPECT_EQ(Attribute(loopback, "NetMask"), "255.0.0.0");
    EXPECT_EQ(Attribute(loopback, "IfIndex"), "1");
    TSyncCall addresses = Call("Agent agent-1 Address *", "Show");
    EXPECT_GE(addresses.GetReplyCount(), 1u);
    EXPECT_EQ(addresses.GetOutEntity().ToString(dictionary.get()), "Agent agent-1 Address 127.0.0.1");
}

TEST_F(SnmpModuleTest, SetOfLocationRoundTripsAndRowsAreCreatedAndDeleted)
{
    REQUIRE_SNMPD();
    Start();
    TSyncCall set = Call("Agent agent-1", "Set", {{"Location", "Hall C"}});
    ASSERT_EQ(set.GetStatus(), ZED_STATUS_RESPONSE) << set.GetReply().ToString();
    EXPECT_EQ(Attribute(set, "Location"), "Hall C");
    EXPECT_EQ(Attribute(Call("Agent agent-1", "Show"), "Location"), "Hall C");

    Use(agent->MakeAgents(TSnmpAgent::Version::V3));
    EXPECT_EQ(Call("Agent agent-1", "Set", {{"Location", "Hall D"}}).GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(Attribute(Call("Agent agent-1", "Show"), "Location"), "Hall D");

    // A RowStatus table: createAndGo, the row with its values, destroy.
    TSyncCall create = Call("Agent agent-1 Notify kel", "Create", {{"Tag", "kelTag"}, {"Type", "inform"}});
    ASSERT_EQ(create.GetStatus(), ZED_STATUS_RESPONSE) << create.GetReply().ToString();
    TSyncCall row = Call("Agent agent-1 Notify kel", "Show");
    EXPECT_EQ(Attribute(row, "Name"), "kel");
    EXPECT_EQ(Attribute(row, "Tag"), "kelTag");
    EXPECT_EQ(Attribute(row, "Type"), "inform");
    EXPECT_EQ(Attribute(row, "RowStatus"), "active");
    EXPECT_EQ(Call("Agent agent-1 Notify kel", "Delete").GetStatus(), ZED_STATUS_RESPONSE);
    EXPECT_EQ(Call("Agent agent-1 Notify kel", "Show").GetReply().GetReplyCode(), ZED_COMMON_NO_SUCH_ENTITY);
}

TEST_F(SnmpModuleTest, RefusalsNameTheAgentTheObjectAndTheReason)
{
    REQUIRE_SNMPD();
    Start();
    // Read-only in the dictionary: refused before anything is sent.
    TSyncCall readOnly = Call("Agent agent-1", "Set", {{"Description", "x"}});
    EXPECT_EQ(readOnly.GetStatus(), ZED_STATUS_SPECIALISED_EXCEPTION);
    EXPECT_EQ(readOnly.GetReply().ToString(), "exception 91 { 1 = Description }");

    // Refused by the agent: a value too long for the object, an object the
    // community may not write.
    const std::string who = "agent agent-1 (" + agent->GetAddress() + ")";
    TSyncCall tooLong = Call("Agent agent-1", "Set", {{"Contact", std::string(300, 'x')}});
    EXPECT_EQ(tooLong.GetReply().GetReplyCode(), ZED_COMMON_AGENT_ERROR);
    EXPECT_EQ(Reason(tooLong), who + " refused the Set of Contact (1.3.6.1.2.1.1.4.0): wrongLength");
    TSyncCall interface = Call("Agent agent-1 Interface 1", "Set", {{"Alias", "uplink"}});
    EXPECT_EQ(interface.GetReply().GetReplyCode(), ZED_COMMON_NOT_AUTHORIZED);
    EXPECT_EQ(Reason(interface), who + " refused the Set of Alias (1.3.6.1.2.1.31.1.1.1.18.1): noAccess");

    TSyncCall every = Call("Agent agent-1 Notify *", "Delete");
    EXPECT_EQ(every.GetReply().GetReplyCode(), ZED_COMMON_INVALID_REQUEST);
    EXPECT_EQ(Reason(every), "Delete names one row of Notify, not every row");
}

TEST_F(SnmpModuleTest, AWrongCommunityOrKeyEndsWithinTheConfiguredTimeout)
{
    REQUIRE_SNMPD();
    Start();
    TSnmpAgents wrong = agent->MakeAgents(TSnmpAgent::Version::V2c, "agent", 0.3, 1);
    wrong.agents[0].community = "wrong";
    Use(wrong);
    auto started = std::chrono::steady_clock::now();
    TSyncCall community = Call("Agent agent-1", "Show");
    EXPECT_LT(std::chrono::steady_clock::now() - started, 2s) << "two tries of 0.3 s";
    EXPECT_EQ(community.GetReply().GetReplyCode(), ZED_COMMON_NO_ANSWER);
    EXPECT_EQ(Reason(community),
              "no answer from agent agent-1 (" + agent->GetAddress()
                  + ") within 0.3 s (2 tries); a wrong community looks the same: the agent does not answer one");

    TSnmpAgents key = agent->MakeAgents(TSnmpAgent::Version::V3, "agent", 5, 0);
    key.agents[0].authKey = "not-the-key";
    Use(key);
    started = std::chrono::steady_clock::now();
    TSyncCall v3 = Call("Agent agent-1", "Show");
    EXPECT_LT(std::chrono::steady_clock::now() - started, 2s) << "the agent says so at once";
    EXPECT_EQ(v3.GetReply().GetReplyCode(), ZED_COMMON_NOT_AUTHORIZED);
    EXPECT_EQ(Reason(v3), "agent agent-1 (" + agent->GetAddress()
                              + ") refused us: wrong authentication key or protocol (wrongDigests)");
}

TEST_F(SnmpModuleTest, AnAgentStoppedMidCallEndsInATimeoutWhileTheLoopKeepsTurning)
{
    REQUIRE_SNMPD();
    Start();
    Use(agent->MakeAgents(TSnmpAgent::Version::V2c, "agent", 1, 0));
    agent->Pause();
    // The host's event loop: waits on the wait set, never longer than 10 ms,
    // and gives the loop its turn; the longest turn is its stall.
    TCallLoop& loop = ZEDGetCallLoop();
    std::optional<std::vector<TCallResult>> results;
    auto longest = 0ms;
    const auto started = std::chrono::steady_clock::now();
    const auto timed = [&](auto&& step) {
        const auto at = std::chrono::steady_clock::now();
        step();
        longest =
            std::max(longest, std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now() - at));
    };
    timed([&] {
        loop.Submit(TEntitySpec("Agent agent-1 Interface *"), 1, {},
                    [&](std::vector<TCallResult> r) { results = std::move(r); });
    });
    while (!results && std::chrono::steady_clock::now() - started < 10s) {
        ZedWait(loop.GetWaitSet(), 10ms);
        timed([&] { loop.ProcessReady(); });
    }
    const auto took = std::chrono::steady_clock::now() - started;
    ASSERT_TRUE(results);
    EXPECT_EQ((*results)[0].reply.GetReplyCode(), ZED_COMMON_NO_ANSWER);
    EXPECT_GE(took, 900ms);
    EXPECT_LT(took, 3s);
    EXPECT_LT(longest, 100ms) << "a turn held the loop for " << longest.count() << " ms of a 1000 ms timeout";
    agent->Resume();
}

TEST_F(SnmpModuleTest, TrapsAndInformsBecomeEventReportsOfTheirAgent)
{
    REQUIRE_SNMPD();
    Start({}, TSnmpAgent::Version::V2c, true);
    const std::string receiver = module->GetReceiverAddress();
    ASSERT_THAT(receiver, HasSubstr("udp:127.0.0.1:"));
    const std::string target = receiver.substr(4);
    const auto send = [&](std::vector<std::string> args) { return RunBeside(*module, std::move(args)); };
    EXPECT_EQ(send({"/usr/bin/snmptrap", "-v", "2c", "-c", "public", target, "", "1.3.6.1.6.3.1.1.5.1"}), 0);
    EXPECT_EQ(
        send({"/usr/bin/snmptrap", "-v", "2c", "-c", "public", target, "", "1.3.6.1.6.3.1.1.5.3",
              "1.3.6.1.2.1.2.2.1.1.2", "i", "2", "1.3.6.1.2.1.2.2.1.7.2", "i", "2", "1.3.6.1.2.1.2.2.1.8.2", "i", "2"}),
        0);
    // An inform is acknowledged: snmpinform ends 0 only then.
    EXPECT_EQ(send({"/usr/bin/snmpinform", "-v", "2c", "-c", "public", "-t", "2", "-r", "0", target, "",
                    "1.3.6.1.6.3.1.1.5.2"}),
              0);
    // Bound to no event: the agent's unbound notification, its OID and variables as text.
    EXPECT_EQ(send({"/usr/bin/snmptrap", "-v", "2c", "-c", "public", target, "", "1.3.6.1.4.1.99999.0.1",
                    "1.3.6.1.2.1.2.2.1.2.1", "s", "eth0"}),
              0);
    std::vector<TCallResult> events = module->TakeEvents();
    ASSERT_EQ(events.size(), 4u);
    const auto* cold = static_cast<const TEventReport*>(events[0].reply.FindFirst(ZED_DT_EVENTREPORT));
    ASSERT_NE(cold, nullptr);
    EXPECT_EQ(cold->GetEventID(), 1u);
    EXPECT_EQ(cold->GetEntity().ToString(dictionary.get()), "Agent agent-1");
    const auto* down = static_cast<const TEventReport*>(events[1].reply.FindFirst(ZED_DT_EVENTREPORT));
    ASSERT_NE(down, nullptr);
    EXPECT_EQ(down->GetEventID(), 1u);
    EXPECT_EQ(down->GetEntity().ToString(dictionary.get()), "Agent agent-1 Interface 2");
    EXPECT_EQ((*down)[2].ToString(), "down");
    const auto* warm = static_cast<const TEventReport*>(events[2].reply.FindFirst(ZED_DT_EVENTREPORT));
    EXPECT_EQ(warm->GetEventID(), 2u);
    const auto* other = static_cast<const TEventReport*>(events[3].reply.FindFirst(ZED_DT_EVENTREPORT));
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->GetEventID(), 4u);
    EXPECT_EQ(other->GetEntity().ToString(dictionary.get()), "Agent agent-1");
    EXPECT_EQ((*other)[1].ToString(), "1.3.6.1.4.1.99999.0.1");
    EXPECT_EQ((*other)[2].ToString(), "Interface Description.1 = eth0");

    // An SNMPv3 inform from the agents file's user, keys and all.
    Use(agent->MakeAgents(TSnmpAgent::Version::V3), true);
    EXPECT_EQ(send({"/usr/bin/snmpinform",
                    "-v",
                    "3",
                    "-u",
                    TSnmpLocalAgent::kUser,
                    "-l",
                    "authPriv",
                    "-a",
                    "SHA-256",
                    "-A",
                    TSnmpLocalAgent::kAuthKey,
                    "-x",
                    "AES",
                    "-X",
                    TSnmpLocalAgent::kPrivKey,
                    "-t",
                    "2",
                    "-r",
                    "0",
                    module->GetReceiverAddress().substr(4),
                    "",
                    "1.3.6.1.6.3.1.1.5.2"}),
              0);
    EXPECT_EQ(module->TakeEvents().size(), 1u);
}

// snmpd's own notification: the shutdown it sends its trap sink as it stops.
TEST_F(SnmpModuleTest, AnAgentStoppingSaysSoToItsTrapSink)
{
    REQUIRE_SNMPD();
    // A port of the receiver's choosing, told to snmpd before it starts.
    std::string sink;
    {
        TSnmpReceiver probe("udp:127.0.0.1:0", {});
        sink = probe.GetAddress().substr(4);
    }
    agent = std::make_unique<TSnmpLocalAgent>(TSnmpLocalAgent::Options{1, sink, {}});
    TSnmpAgents agents = agent->MakeAgents(TSnmpAgent::Version::V2c);
    agents.receiverAddress = "udp:" + sink;
    dictionary = TDictionary::Load(SnmpFile("dictionary.json"));
    module = std::make_shared<TSnmpModule>(dictionary, std::move(agents), true);
    agent->Stop();
    std::vector<TCallResult> events;
    TurnUntil(
        *module, [&] { return !(events = module->TakeEvents()).empty(); }, 5s);
    ASSERT_EQ(events.size(), 1u);
    const auto* shutdown = static_cast<const TEventReport*>(events[0].reply.FindFirst(ZED_DT_EVENTREPORT));
    EXPECT_EQ(shutdown->GetEventID(), 3u);
    EXPECT_EQ(shutdown->GetEntity().ToString(dictionary.get()), "Agent agent-1");
}

TEST_F(SnmpModuleTest, FiftyAgentsAreAskedAtOnce)
{
    REQUIRE_SNMPD();
    Start({50, {}, {}});
    TSyncCall all = Call("Agent * Interface *", "Show", {{"Partition", "Status"}});
    std::set<std::string> agents;
    std::size_t rows = 0;
    for (std::size_t i = 0; all.SelectReply(i); ++i) {
        ASSERT_EQ(all.GetStatus(), ZED_STATUS_RESPONSE) << all.GetReply().ToString();
        agents.insert(all.GetOutEntity().GetComponent(0).name);
        ++rows;
    }
    EXPECT_EQ(agents.size(), 50u);
    EXPECT_EQ(rows % 50, 0u);

    // Held still, each agent times out after 1 s: one after another that would
    // take 50 s, together about one.
    Use(agent->MakeAgents(TSnmpAgent::Version::V2c, "agent", 1, 0));
    agent->Pause();
    const auto started = std::chrono::steady_clock::now();
    TSyncCall held = Call("Agent * Interface *", "Show");
    EXPECT_LT(std::chrono::steady_clock::now() - started, 5s);
    EXPECT_EQ(held.GetReplyCount(), 50u);
    EXPECT_EQ(held.GetReply().GetReplyCode(), ZED_COMMON_NO_ANSWER);
    agent->Resume();
}

}  // namespace
