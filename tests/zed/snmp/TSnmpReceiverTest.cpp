// SPDX-License-Identifier: BSD-3-Clause
// Notifications believed only once checked, sent by net-snmp's tools from
// loopback addresses of the test's choosing: the agent's host and community
// (or user and level), a forged SNMPv1 agent-address, informs acknowledged
// only when they pass, every refusal counted by its reason, and a bound on
// the events that wait.

#include "zed/TApplication.h"
#include "zed/snmp/TSnmpModule.h"
#include "zed/value/TEventReport.h"

#include "support/SnmpTestSupport.h"
#include "support/WaitFor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;
using namespace std::chrono_literals;

namespace {

constexpr const char* kWrongCommunity = "the community is not the agent's";

class SnmpReceiverTest : public ::testing::Test {
protected:
    // core-r1 on this host, whose notifications carry "trapsecret"; far-r2
    // on 127.0.0.2 with the community public; v3-r3 on 127.0.0.4 speaking
    // SNMPv3 as kel at authPriv. No agent needs to run: only notifications
    // come in.
    void SetUp() override
    {
        REQUIRE_SNMPD();
        TSnmpAgents agents;
        TSnmpAgent core;
        core.name = "core-r1";
        core.address = "udp:127.0.0.1:16161";
        core.trapCommunity = "trapsecret";
        TSnmpAgent far;
        far.name = "far-r2";
        far.address = "udp:127.0.0.2:161";
        TSnmpAgent v3;
        v3.name = "v3-r3";
        v3.address = "udp:127.0.0.4:161";
        v3.version = TSnmpAgent::Version::V3;
        v3.user = TSnmpLocalAgent::kUser;
        v3.level = TSnmpAgent::Level::AuthPriv;
        v3.authProtocol = "SHA-256";
        v3.authKey = TSnmpLocalAgent::kAuthKey;
        v3.privProtocol = "AES";
        v3.privKey = TSnmpLocalAgent::kPrivKey;
        agents.agents = {core, far, v3};
        agents.receiverAddress = "udp:127.0.0.1:0";
        agents.mostWaiting = 5;
        dictionary = TDictionary::Load(SnmpFile("dictionary.json"));
        module = std::make_shared<TSnmpModule>(dictionary, std::move(agents), true);
        target = module->GetReceiverAddress().substr(4);
    }

    // A linkDown of interface 7, as SNMPv2c from a loopback address.
    int Trap(const std::string& community, const std::string& from = "127.0.0.1")
    {
        return RunBeside(*module, {"/usr/bin/snmptrap", "-v", "2c", "-c", community, "--clientaddr=" + from, target, "",
                                   "1.3.6.1.6.3.1.1.5.3", "1.3.6.1.2.1.2.2.1.1.7", "i", "7"});
    }

    int InformV3(const std::string& level, const std::string& from, const std::string& user = TSnmpLocalAgent::kUser,
                 const std::string& authKey = TSnmpLocalAgent::kAuthKey)
    {
        std::vector<std::string> args = {"/usr/bin/snmpinform", "-v", "3", "-u", user, "-l", level, "-a", "SHA-256",
                                         "-A", authKey,
                                         // No retry: a resent inform would be refused twice.
                                         "-t", "0.5", "-r", "0", "--clientaddr=" + from};
        if (level == "authPriv")
            args.insert(args.end(), {"-x", "AES", "-X", TSnmpLocalAgent::kPrivKey});
        args.insert(args.end(), {target, "", "1.3.6.1.6.3.1.1.5.2"});
        return RunBeside(*module, args);
    }

    std::vector<std::string> Entities()
    {
        std::vector<std::string> entities;
        for (const TCallResult& event : module->TakeEvents())
            entities.push_back(event.outEntity.ToString(dictionary.get()));
        return entities;
    }

    TDictionaryPtr dictionary;
    std::shared_ptr<TSnmpModule> module;
    std::string target;
};

TEST_F(SnmpReceiverTest, ATrapIsTheAgentsOnlyFromItsHostWithItsNotificationCommunity)
{
    EXPECT_EQ(Trap("trapsecret"), 0);
    EXPECT_EQ(Trap("public", "127.0.0.2"), 0);
    EXPECT_THAT(Entities(), ElementsAre("Agent core-r1 Interface 7", "Agent far-r2 Interface 7"));

    // The read community is not core-r1's notification community; another
    // agent's community is no better; nor is an address nobody configured.
    EXPECT_EQ(Trap("public"), 0);
    EXPECT_EQ(Trap("evil"), 0);
    EXPECT_EQ(Trap("trapsecret", "127.0.0.3"), 0);
    EXPECT_EQ(Trap("public", "127.0.0.4"), 0) << "v3-r3 speaks SNMPv3 only";
    EXPECT_THAT(Entities(), ElementsAre());

    const TSnmpNotificationCounts counts = module->GetNotificationCounts();
    EXPECT_EQ(counts.accepted, 2u);
    EXPECT_THAT(counts.refused, ElementsAre(Pair("the SNMP version is not the agent's", 1), Pair(kWrongCommunity, 2),
                                            Pair("the sender is no agent of the agents file", 1)));
    EXPECT_EQ(counts.Summary(),
              "4 notifications refused (the SNMP version is not the agent's: 1; the community is not the agent's: 2; "
              "the sender is no agent of the agents file: 1)");
}

TEST_F(SnmpReceiverTest, AnSnmpV1AgentAddressIsSaidNeverBelieved)
{
    // Sent from core-r1's host, claiming to be far-r2's.
    EXPECT_EQ(RunBeside(*module, {"/usr/bin/snmptrap", "-v", "1", "-c", "trapsecret", target, "1.3.6.1.4.1.8072",
                                  "127.0.0.2", "2", "0", "", "1.3.6.1.2.1.2.2.1.1.7", "i", "7"}),
              0);
    EXPECT_THAT(Entities(), ElementsAre("Agent core-r1 Interface 7"));
    EXPECT_EQ(module->GetNotificationCounts().agentAddressesIgnored, 1u);
    EXPECT_THAT(module->GetNotificationCounts().Summary(),
                HasSubstr("1 SNMPv1 trap named another agent address than its sender's"));
}

TEST_F(SnmpReceiverTest, AnInformIsAcknowledgedOnlyOnceItPassed)
{
    const auto inform = [&](const std::string& community) {
        return RunBeside(*module, {"/usr/bin/snmpinform", "-v", "2c", "-c", community, "-t", "0.5", "-r", "0", target,
                                   "", "1.3.6.1.6.3.1.1.5.2"});
    };
    EXPECT_NE(inform("evil"), 0) << "no acknowledgement for a refused inform";
    EXPECT_EQ(inform("trapsecret"), 0);
    EXPECT_THAT(Entities(), ElementsAre("Agent core-r1"));
    EXPECT_THAT(module->GetNotificationCounts().refused, ElementsAre(Pair(kWrongCommunity, 1)));
}

TEST_F(SnmpReceiverTest, SnmpV3InformsComeOnlyFromTheAgentsUserAtItsLevelOrStronger)
{
    EXPECT_EQ(InformV3("authPriv", "127.0.0.4"), 0);
    EXPECT_THAT(Entities(), ElementsAre("Agent v3-r3"));

    EXPECT_NE(InformV3("authNoPriv", "127.0.0.4"), 0);
    EXPECT_NE(InformV3("authPriv", "127.0.0.4", TSnmpLocalAgent::kUser, "not-the-auth-key"), 0);
    EXPECT_NE(InformV3("authPriv", "127.0.0.1"), 0) << "the right user from another agent's host";
    EXPECT_THAT(Entities(), ElementsAre());
    auto refused = module->GetNotificationCounts().refused;
    EXPECT_EQ(refused["the security level is below the agent's"], 1u);
    EXPECT_EQ(refused["net-snmp refused it: a wrong authentication key"], 1u);
    EXPECT_EQ(refused["the SNMP version is not the agent's"], 1u);
    EXPECT_EQ(module->GetNotificationCounts().Refused(), 3u) << "the SNMPv3 handshake of each inform is no refusal";
}

TEST_F(SnmpReceiverTest, EventsWaitingPastTheBoundDropTheOldestAndSaySo)
{
    for (int i = 0; i < 7; ++i)
        Trap("trapsecret");
    EXPECT_EQ(module->TakeEvents().size(), 5u);
    EXPECT_EQ(module->GetNotificationCounts().dropped, 2u);
    EXPECT_THAT(module->GetNotificationCounts().Summary(), HasSubstr("2 events dropped unshown (too many waited)"));
}

TEST_F(SnmpReceiverTest, DatagramsTheSystemDroppedUnreadAreCountedNotLostInSilence)
{
    // 20,000 traps while nobody reads: more than the receive buffer holds.
    constexpr int kSent = 20000;
    Child flood({HOSTILE_SNMP_AGENT, "flood", target, std::to_string(kSent), "0.2", "trapsecret"});
    WaitFor([&] { return flood.Ended().has_value(); }, 20s);
    std::uint64_t seen = 0;
    TurnUntil(*module, [&] {
        const TSnmpNotificationCounts counts = module->GetNotificationCounts();
        const bool settled = counts.accepted + counts.lost == seen && seen > 0;
        seen = counts.accepted + counts.lost;
        return settled;
    });
    const TSnmpNotificationCounts counts = module->GetNotificationCounts();
    EXPECT_GT(counts.lost, 0u) << "the buffer overflowed";
    EXPECT_EQ(counts.accepted + counts.lost, static_cast<std::uint64_t>(kSent)) << "every trap taken or counted";
    EXPECT_THAT(counts.Summary(), HasSubstr("datagrams lost unread (the receive buffer was full)"));
    EXPECT_EQ(counts.dropped, counts.accepted - 5) << "of what was taken, all but MostWaiting dropped, counted";
}

}  // namespace
