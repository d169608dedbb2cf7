// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The agents an SNMP module reaches, from a file of sections that people
// write and keep beside their other settings:
//
//     # the core router
//     [ Agent : core-r1 ]
//         Address = udp:127.0.0.1:16161
//         Version = 2c
//         Community = public
//         WriteCommunity = private
//         Timeout = 2
//         Retries = 1
//     [ End Agent : core-r1 ]
//
//     [ Notifications ]
//         Address = udp:127.0.0.1:1162
//         MostWaiting = 10000
//     [ End Notifications ]
//
//     [ Calls ]
//         MostRows = 1000000
//         MostBytes = 268435456
//     [ End Calls ]
//
// SNMPv3 agents name a User with its keys instead of communities. An agent's
// notifications are taken only from its host and with its community (or its
// TrapCommunity), or from its user at its Level or stronger. A walk of a
// table stops at WalkRows rows, WalkBytes octets of values or WalkTime
// seconds, whichever comes first, and says the list is incomplete; the walks
// of one call over many agents stop at the Calls section's bounds together.
//
// Whoever can write the file can point an agent at a host of their own and
// collect its write community: a file that its group or others may write, or
// that neither its reader nor root owns, is refused. One that holds keys or a
// write community must not be readable by its group or others either.

#include "zed/ZedExport.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct TSnmpMasterKeys;

/// One agent: where it is and how to speak to it.
struct ZED_EXPORT TSnmpAgent {
    enum class Version { V1, V2c, V3 };
    enum class Level { NoAuthNoPriv, AuthNoPriv, AuthPriv };

    /// The name its section gives it: the instance name of its entity.
    std::string name;
    /// A net-snmp transport address: "udp:127.0.0.1:16161", "host:161"...
    std::string address;
    Version version = Version::V2c;
    std::string community = "public";
    /// Sets go with this community; the read community when empty.
    std::string writeCommunity;
    /// Seconds to wait for each try, and how many more tries after the first.
    double timeout = 1.0;
    int retries = 1;
    /// The community its notifications come with, when it is not Community.
    std::string trapCommunity;
    /// A walk's bounds: rows, octets of values, seconds.
    std::size_t walkRows = kDefaultWalkRows;
    std::size_t walkBytes = kDefaultWalkBytes;
    double walkTime = kDefaultWalkTime;
    /// The MIB modules that name the agent's objects ("IF-MIB, HOST-RESOURCES-MIB"), loaded with the others.
    std::string mibs;

    static constexpr std::size_t kDefaultWalkRows = 100000;
    static constexpr std::size_t kDefaultWalkBytes = 16 * 1024 * 1024;
    static constexpr double kDefaultWalkTime = 60;

    // SNMPv3 (user-based security)
    std::string user;
    Level level = Level::NoAuthNoPriv;
    std::string authProtocol;  // "SHA-256", "SHA-512"
    std::string authKey;
    std::string privProtocol;  // "AES"
    std::string privKey;
    /// The master keys made from the pass phrases, which are then wiped
    /// (ZedSnmpSealKeys, TSnmpKeys.h): an agents file read, or a module made,
    /// keeps no pass phrase.
    std::shared_ptr<const TSnmpMasterKeys> keys;

    /// What the file holds that only its owner may read.
    bool HoldsSecrets() const
    {
        return !writeCommunity.empty() || !authKey.empty() || !privKey.empty() || keys != nullptr;
    }
    /// The community its notifications must carry.
    const std::string& NotificationCommunity() const { return trapCommunity.empty() ? community : trapCommunity; }
};

/// The whole file: its agents in order, and where notifications are received.
struct ZED_EXPORT TSnmpAgents {
    static constexpr const char* kDefaultReceiver = "udp:127.0.0.1:1162";
    static constexpr std::size_t kDefaultMostWaiting = 10000;
    static constexpr std::size_t kDefaultCallRows = 1000000;
    static constexpr std::size_t kDefaultCallBytes = 256 * 1024 * 1024;

    std::vector<TSnmpAgent> agents;
    std::string receiverAddress = kDefaultReceiver;
    /// Events not yet taken past this many drop their oldest.
    std::size_t mostWaiting = kDefaultMostWaiting;
    /// What the walks of one call may read together over all its agents
    /// (`Agent *`): rows and octets.
    std::size_t callRows = kDefaultCallRows;
    std::size_t callBytes = kDefaultCallBytes;

    /// The agent of that name, or null.
    const TSnmpAgent* Find(const std::string& name) const;
};

/// Reads the agents file; throws TException "<path>:<line>: <fault>", or
/// "<path>: ..." for a file others may write or whose secrets they may read.
/// Its SNMPv3 pass phrases come back as master keys only (ZedSnmpSealKeys).
ZED_EXPORT TSnmpAgents ZedReadAgentsFile(const std::string& path);
/// The same from text (source names it in faults); permissions are not checked.
ZED_EXPORT TSnmpAgents ZedParseAgents(const std::string& text, const std::string& source);
