// SPDX-License-Identifier: BSD-3-Clause
#include "support/TempDir.h"
#include "zed/TException.h"
#include "zed/snmp/TSnmpAgentsFile.h"
#include "zed/snmp/TSnmpKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <unistd.h>

using ::testing::HasSubstr;

namespace {

std::string Fault(const std::string& text)
{
    try {
        ZedParseAgents(text, "agents.conf");
    } catch (const TException& e) {
        return e.what();
    }
    return "";
}

}  // namespace

TEST(SnmpAgentsFile, ReadsAgentsOfEveryVersionAndTheReceiver)
{
    const TSnmpAgents agents = ZedParseAgents(R"(
# the core
[ Agent : core-r1 ]
    Address = udp:127.0.0.1:16161
    Version = 2c
    Community = public
    WriteCommunity = private
    Timeout = 2
    Retries = 1
    TrapCommunity = traps
    WalkRows = 5000
    WalkBytes = 1000000
    WalkTime = 7.5
[ End Agent : core-r1 ]

[ agent : edge ]
    address = 127.0.0.1:16162
    VERSION = 3
    User = kel
    AuthProtocol = sha-512
    AuthKey = "a key with blanks "
    PrivKey = privprivpriv
[ end agent : edge ]

[ Notifications ]
    Address = udp:127.0.0.1:0
    MostWaiting = 50
[ End Notifications ]

[ Calls ]
    MostRows = 2000
    MostBytes = 3000000
[ End Calls ]
)",
                                              "agents.conf");
    ASSERT_EQ(agents.agents.size(), 2u);
    const TSnmpAgent& core = agents.agents[0];
    EXPECT_EQ(core.name, "core-r1");
    EXPECT_EQ(core.version, TSnmpAgent::Version::V2c);
    EXPECT_EQ(core.writeCommunity, "private");
    EXPECT_DOUBLE_EQ(core.timeout, 2);
    EXPECT_TRUE(core.HoldsSecrets());
    EXPECT_EQ(core.NotificationCommunity(), "traps");
    EXPECT_EQ(core.walkRows, 5000u);
    EXPECT_EQ(core.walkBytes, 1000000u);
    EXPECT_DOUBLE_EQ(core.walkTime, 7.5);

    const TSnmpAgent* edge = agents.Find("edge");
    ASSERT_NE(edge, nullptr);
    EXPECT_EQ(edge->version, TSnmpAgent::Version::V3);
    EXPECT_EQ(edge->authProtocol, "SHA-512");
    EXPECT_EQ(edge->authKey, "a key with blanks ");
    // Keys given, level left out: the strongest the keys allow, AES by default.
    EXPECT_EQ(edge->level, TSnmpAgent::Level::AuthPriv);
    EXPECT_EQ(edge->privProtocol, "AES");
    EXPECT_EQ(edge->NotificationCommunity(), "public");
    EXPECT_EQ(edge->walkRows, TSnmpAgent::kDefaultWalkRows);
    EXPECT_EQ(agents.mostWaiting, 50u);
    EXPECT_EQ(agents.callRows, 2000u);
    EXPECT_EQ(agents.callBytes, 3000000u);
    EXPECT_EQ(ZedParseAgents("", "empty").callRows, TSnmpAgents::kDefaultCallRows);
    EXPECT_EQ(agents.receiverAddress, "udp:127.0.0.1:0");
    EXPECT_EQ(ZedParseAgents("", "empty").receiverAddress, TSnmpAgents::kDefaultReceiver);
}

TEST(SnmpAgentsFile, FaultsNameTheLineAndWhatIsWrong)
{
    const std::string open = "[ Agent : a ]\n  Address = udp:127.0.0.1:1\n";
    EXPECT_EQ(Fault(open), "agents.conf:1: the section \"Agent : a\" has no end line");
    EXPECT_EQ(Fault(open + "[ End Agent : b ]\n"),
              "agents.conf:3: the section \"Agent : a\" (line 1) ends with \"End Agent : b\"");
    EXPECT_EQ(Fault("Address = x\n"), "agents.conf:1: a key outside any section");
    EXPECT_EQ(Fault("[ Router ]\n"), "agents.conf:1: unknown section \"Router\": expected \"Agent : name\", "
                                     "\"Notifications\" or \"Calls\"");
    EXPECT_EQ(Fault("[ Calls ]\n  Address = x\n[ End Calls ]"),
              "agents.conf:2: unknown key Address in Calls: expected MostRows or MostBytes");
    EXPECT_THAT(Fault(open + "  Colour = red\n[ End Agent : a ]"), HasSubstr("agents.conf:3: unknown key Colour"));
    EXPECT_EQ(Fault(open + "  Version = 2\n[ End Agent : a ]"), "agents.conf:3: Version \"2\" is not 1, 2c or 3");
    EXPECT_THAT(Fault(open + "  Timeout = 0\n[ End Agent : a ]"),
                HasSubstr("Timeout \"0\" is not a number of seconds"));
    EXPECT_THAT(Fault(open + "  Retries = -1\n[ End Agent : a ]"), HasSubstr("Retries \"-1\" is not a whole number"));
    EXPECT_EQ(Fault(open + "  WalkRows = 0\n[ End Agent : a ]"),
              "agents.conf:3: WalkRows \"0\" is not a whole number from 1 to 10000000");
    EXPECT_EQ(Fault(open + "  WalkTime = forever\n[ End Agent : a ]"),
              "agents.conf:3: WalkTime \"forever\" is not a number of seconds from 0.01 to 3600");
    EXPECT_EQ(Fault("[ Notifications ]\n  MostWaiting = 1e9\n[ End Notifications ]"),
              "agents.conf:2: MostWaiting \"1e9\" is not a whole number from 1 to 10000000");
    EXPECT_EQ(Fault(open + "  Address = y\n[ End Agent : a ]"),
              "agents.conf:3: the key Address is given twice in this section");
    EXPECT_EQ(Fault("[ Agent : a ]\n[ End Agent : a ]"), "agents.conf:1: the agent a has no Address");
    EXPECT_EQ(Fault(open + "[ End Agent : a ]\n" + open + "[ End Agent : a ]"),
              "agents.conf:4: a second agent named \"a\"");
    EXPECT_EQ(Fault(open + "  Version = 3\n[ End Agent : a ]"), "agents.conf:1: the agent a has no User (SNMPv3)");
    EXPECT_EQ(Fault(open + "  Version = 3\n  User = u\n  Level = authPriv\n  AuthKey = 12345678\n[ End Agent : a ]"),
              "agents.conf:1: the agent a has no PrivKey for its Level");
    EXPECT_EQ(Fault(open + "  AuthKey = 1234\n[ End Agent : a ]"),
              "agents.conf:3: AuthKey is shorter than 8 characters");
    EXPECT_EQ(Fault(open + "  AuthProtocol = MD5\n[ End Agent : a ]"),
              "agents.conf:3: AuthProtocol \"MD5\" is not one of SHA-256, SHA-512");
    EXPECT_EQ(Fault(open + "  AuthKey = 12345678\n[ End Agent : a ]"),
              "agents.conf:1: the agent a has SNMPv3 keys but Version is not 3");
}

TEST(SnmpAgentsFile, SecretsOthersCanReadAreRefused)
{
    TempDir dir;
    const std::string path = dir / "agents.conf";
    const std::string plain = "[ Agent : a ]\n  Address = udp:127.0.0.1:1\n[ End Agent : a ]\n";
    const std::string secret =
        "[ Agent : a ]\n  Address = udp:127.0.0.1:1\n  WriteCommunity = private\n[ End Agent : a ]\n";

    TempDir::Write(path, plain);
    chmod(path.c_str(), 0644);
    EXPECT_EQ(ZedReadAgentsFile(path).agents.size(), 1u);  // a read community only: no secret

    TempDir::Write(path, secret);
    try {
        ZedReadAgentsFile(path);
        ADD_FAILURE() << "a write community readable by others was taken";
    } catch (const TException& e) {
        EXPECT_EQ(std::string(e.what()), path
                                             + ": holds keys or a write community but its group or others may read it "
                                               "(mode 0644); make it private with: chmod 600 "
                                             + path);
    }
    chmod(path.c_str(), 0640);
    EXPECT_THROW(ZedReadAgentsFile(path), TException);
    chmod(path.c_str(), 0600);
    EXPECT_EQ(ZedReadAgentsFile(path).agents[0].writeCommunity, "private");
    EXPECT_THROW(ZedReadAgentsFile(dir / "missing.conf"), TException);
}

TEST(SnmpAgentsFile, AFileOthersMayWriteOrAnotherUserOwnsIsRefused)
{
    TempDir dir;
    const std::string path = dir / "agents.conf";
    TempDir::Write(path, "[ Agent : a ]\n  Address = udp:127.0.0.1:1\n[ End Agent : a ]\n");
    for (const mode_t mode : {0622, 0602, 0664}) {
        chmod(path.c_str(), mode);
        char octal[8];
        std::snprintf(octal, sizeof octal, "%04o", unsigned(mode));
        try {
            ZedReadAgentsFile(path);
            ADD_FAILURE() << "a file of mode " << octal << " was taken";
        } catch (const TException& e) {
            EXPECT_EQ(std::string(e.what()), path + ": its group or others may write it (mode " + octal
                                                 + "), and so point an agent at a host of their own; make it "
                                                   "private with: chmod 600 "
                                                 + path);
        }
    }
    chmod(path.c_str(), 0644);
    EXPECT_NO_THROW(ZedReadAgentsFile(path));
    // Only root can give a file away; as root, nobody's file is refused.
    if (geteuid() == 0 && chown(path.c_str(), 65534, 65534) == 0) {
        try {
            ZedReadAgentsFile(path);
            ADD_FAILURE() << "another user's file was taken";
        } catch (const TException& e) {
            EXPECT_EQ(std::string(e.what()), path
                                                 + ": it belongs to another user (uid 65534), who may point an agent "
                                                   "at a host of their own; copy it to a file of your own");
        }
    }
}

// The flags the kernel keeps of the mapping that holds an address ("dd": not dumped).
std::string MappingFlags(const void* address)
{
    std::ifstream maps("/proc/self/smaps");
    const auto at = reinterpret_cast<std::uintptr_t>(address);
    bool inside = false;
    for (std::string line; std::getline(maps, line);) {
        std::uintptr_t from = 0, to = 0;
        // A mapping's first line: "7f12a000-7f12b000 rw-p ..."; its fields follow, VmFlags last.
        if (line.find(':') == std::string::npos || line.find(':') > line.find(' '))
            if (std::sscanf(line.c_str(), "%lx-%lx", &from, &to) == 2)
                inside = from <= at && at < to;
        if (inside && line.rfind("VmFlags:", 0) == 0)
            return line;
    }
    return {};
}

TEST(SnmpAgentsFile, PassPhrasesBecomeMasterKeysOutOfCoreDumpsAndAreWiped)
{
    TempDir dir;
    const std::string path = dir / "agents.conf";
    TempDir::Write(path, "[ Agent : edge ]\n  Address = udp:127.0.0.1:1\n  Version = 3\n  User = kel\n"
                         "  AuthKey = kel-auth-key\n  PrivKey = kel-priv-key\n[ End Agent : edge ]\n");
    chmod(path.c_str(), 0600);
    const TSnmpAgents agents = ZedReadAgentsFile(path);
    const TSnmpAgent& edge = agents.agents[0];
    EXPECT_TRUE(edge.authKey.empty()) << "no pass phrase is kept";
    EXPECT_TRUE(edge.privKey.empty());
    ASSERT_NE(edge.keys, nullptr);
    ASSERT_NE(edge.keys->auth, nullptr);
    EXPECT_EQ(edge.keys->auth->Size(), 32u) << "SHA-256 makes a key of 32 octets";
    EXPECT_TRUE(edge.HoldsSecrets());
    EXPECT_THAT(MappingFlags(edge.keys->auth->Data()), HasSubstr(" dd")) << "left out of core dumps";

    // The same pass phrase makes the same key (RFC 3414 A.3): the keys stay usable.
    TSnmpAgent again = edge;
    again.keys.reset();
    again.authKey = "kel-auth-key";
    ZedSnmpSealKeys(again);
    EXPECT_EQ(0, std::memcmp(again.keys->auth->Data(), edge.keys->auth->Data(), edge.keys->auth->Size()));
}
