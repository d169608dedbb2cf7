// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Who a datagram came from, learnt before net-snmp reads it: an answer is
// taken only from the address and port its request went to, and a
// notification only from a host of the agents file. Internal to the SNMP
// module (it brings net-snmp's and the socket headers along).

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>

#include <sys/socket.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// An address and port, IPv4 or IPv6.
struct ZedSnmpEndpoint {
    sockaddr_storage address{};

    /// The same host and, with port, the same port.
    bool Same(const ZedSnmpEndpoint& other, bool port = true) const;
    /// "127.0.0.1" or "::1".
    std::string Host() const;
    /// "127.0.0.1:161" or "[::1]:161".
    std::string Text() const;
};

/// The agent a UDP client transport sends to; none for other transports
/// (a stream is bound to its peer already).
std::optional<ZedSnmpEndpoint> ZedSnmpPeerOf(const netsnmp_transport* transport);
/// The sender of what a UDP server transport read, from the PDU net-snmp made of it.
std::optional<ZedSnmpEndpoint> ZedSnmpSenderOf(const netsnmp_transport* transport, const netsnmp_pdu& pdu);

/// The sender of the next datagram waiting on the socket, without taking
/// it; none when nothing waits.
std::optional<ZedSnmpEndpoint> ZedSnmpPeekSender(int socket);
/// Takes the next datagram off the socket unread.
void ZedSnmpDiscardDatagram(int socket);

/// The host part of an agent's address: "udp:127.0.0.1:16161" -> "127.0.0.1".
std::string ZedSnmpHostOf(std::string address);
/// The numeric addresses the host of an agent's address stands for
/// ("localhost" -> "127.0.0.1", "::1"); the host itself when it resolves to none.
std::vector<std::string> ZedSnmpNumericHosts(const std::string& address);

/// How many datagrams the system dropped for the socket because its receive
/// buffer was full (Linux says so in /proc/net/udp); none when it cannot be known.
std::optional<std::uint64_t> ZedSnmpSocketDrops(int socket);
