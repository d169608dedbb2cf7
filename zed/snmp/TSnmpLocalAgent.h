// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A private SNMP agent for tours, tests and benchmarks: Debian's snmpd, run
// as the current user on 127.0.0.1 ports that were free, configured in a
// folder of its own (read and write communities limited to 127.0.0.1, an
// SNMPv3 user with authPriv, optionally a trap sink), started and stopped by
// its process id. Nothing it does reaches beyond the loopback address, and
// writes reach only the system group and the notification tables: run by
// root, snmpd would otherwise let a Set take the machine's interfaces down.

#include "zed/snmp/TSnmpAgentsFile.h"

#include <string>
#include <vector>

/// A private snmpd on loopback ports, started and stopped by its owner.
class ZED_EXPORT TSnmpLocalAgent {
public:
    static constexpr const char* kReadCommunity = "public";
    static constexpr const char* kWriteCommunity = "private";
    static constexpr const char* kUser = "kel";
    static constexpr const char* kAuthKey = "kel-auth-key";
    static constexpr const char* kPrivKey = "kel-priv-key";

    /// How many agents it acts as, where its notifications go, and more
    /// configuration.
    struct Options {
        /// Each port is one agent to its managers.
        std::size_t ports = 1;
        /// "127.0.0.1:PORT": where snmpd sends its notifications (SNMPv2c, public).
        std::string trapSink;
        /// More snmpd.conf lines ("extend rows /usr/bin/seq 1 1000").
        std::vector<std::string> configuration;
    };

    /// snmpd's path when it is installed; empty otherwise.
    static std::string Program();

    /// Starts snmpd and returns once it answers; throws TException when it
    /// cannot (not installed, no free port, it ended).
    explicit TSnmpLocalAgent(Options options);
    TSnmpLocalAgent(const TSnmpLocalAgent&) = delete;
    TSnmpLocalAgent& operator=(const TSnmpLocalAgent&) = delete;
    /// Stops it and removes its folder.
    ~TSnmpLocalAgent();

    const std::vector<int>& GetPorts() const { return m_ports; }
    /// "udp:127.0.0.1:PORT" of a port.
    std::string GetAddress(std::size_t port = 0) const;
    int GetPid() const { return m_pid; }
    const std::string& GetFolder() const { return m_folder; }

    /// One agent per port, named "<prefix>-1", "<prefix>-2"...: SNMPv2c with
    /// both communities, or SNMPv3 with the user's keys.
    TSnmpAgents MakeAgents(TSnmpAgent::Version version, const std::string& prefix = "agent", double timeout = 2,
                           int retries = 1) const;
    /// The same as an agents file (only its owner may read it).
    void WriteAgentsFile(const std::string& path, TSnmpAgent::Version version, const std::string& prefix = "agent",
                         double timeout = 2, int retries = 1) const;

    /// Holds the agent still (SIGSTOP): it answers nothing until Resume.
    void Pause();
    void Resume();
    /// Ends it now (it is ended anyway when this object goes).
    void Stop();

private:
    bool TryStart(const Options& options);
    bool WaitReady(const std::string& log);

    std::string m_folder;
    std::vector<int> m_ports;
    int m_pid = -1;
};
