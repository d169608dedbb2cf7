// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/ZedSnmpEndpoint.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>

#include <net-snmp/library/snmpUDPIPv6Domain.h>

#include <sys/stat.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>
#include <cstring>

namespace {

bool IsUdp(const netsnmp_transport* transport)
{
    if (!transport || !transport->domain)
        return false;
    // transportDomainUdpIpv6 (RFC 3419), which net-snmp declares without its length.
    constexpr int kUdpIpv6DomainLength = 9;
    const auto length = static_cast<std::size_t>(transport->domain_length);
    return netsnmp_oid_equals(transport->domain, length, netsnmpUDPDomain, netsnmpUDPDomain_len) == 0
           || (length == kUdpIpv6DomainLength
               && netsnmp_oid_equals(transport->domain, length, netsnmp_UDPIPv6Domain, length) == 0);
}

std::optional<ZedSnmpEndpoint> Of(const sockaddr* address)
{
    ZedSnmpEndpoint endpoint;
    if (address->sa_family == AF_INET)
        std::memcpy(&endpoint.address, address, sizeof(sockaddr_in));
    else if (address->sa_family == AF_INET6)
        std::memcpy(&endpoint.address, address, sizeof(sockaddr_in6));
    else
        return std::nullopt;
    return endpoint;
}

}  // namespace

bool ZedSnmpEndpoint::Same(const ZedSnmpEndpoint& other, bool port) const
{
    if (address.ss_family != other.address.ss_family)
        return false;
    if (address.ss_family == AF_INET) {
        const auto& a = reinterpret_cast<const sockaddr_in&>(address);
        const auto& b = reinterpret_cast<const sockaddr_in&>(other.address);
        return a.sin_addr.s_addr == b.sin_addr.s_addr && (!port || a.sin_port == b.sin_port);
    }
    if (address.ss_family == AF_INET6) {
        const auto& a = reinterpret_cast<const sockaddr_in6&>(address);
        const auto& b = reinterpret_cast<const sockaddr_in6&>(other.address);
        return std::memcmp(&a.sin6_addr, &b.sin6_addr, sizeof a.sin6_addr) == 0
               && (!port || a.sin6_port == b.sin6_port);
    }
    return false;
}

std::string ZedSnmpEndpoint::Host() const
{
    char text[INET6_ADDRSTRLEN] = "";
    if (address.ss_family == AF_INET)
        inet_ntop(AF_INET, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, text, sizeof text);
    else if (address.ss_family == AF_INET6)
        inet_ntop(AF_INET6, &reinterpret_cast<const sockaddr_in6&>(address).sin6_addr, text, sizeof text);
    return text;
}

std::string ZedSnmpEndpoint::Text() const
{
    if (address.ss_family == AF_INET6)
        return "[" + Host() + "]:" + std::to_string(ntohs(reinterpret_cast<const sockaddr_in6&>(address).sin6_port));
    return Host() + ":" + std::to_string(ntohs(reinterpret_cast<const sockaddr_in&>(address).sin_port));
}

std::optional<ZedSnmpEndpoint> ZedSnmpPeerOf(const netsnmp_transport* transport)
{
    // A UDP client transport keeps where it sends in its address pair.
    if (!IsUdp(transport) || !transport->data
        || transport->data_length < static_cast<int>(sizeof(netsnmp_indexed_addr_pair)))
        return std::nullopt;
    return Of(&static_cast<const netsnmp_indexed_addr_pair*>(transport->data)->remote_addr.sa);
}

std::optional<ZedSnmpEndpoint> ZedSnmpSenderOf(const netsnmp_transport* transport, const netsnmp_pdu& pdu)
{
    if (!IsUdp(transport) || !pdu.transport_data
        || pdu.transport_data_length < static_cast<int>(sizeof(netsnmp_indexed_addr_pair)))
        return std::nullopt;
    return Of(&static_cast<const netsnmp_indexed_addr_pair*>(pdu.transport_data)->remote_addr.sa);
}

std::optional<ZedSnmpEndpoint> ZedSnmpPeekSender(int socket)
{
    sockaddr_storage from{};
    socklen_t length = sizeof from;
    char octet;
    if (recvfrom(socket, &octet, sizeof octet, MSG_PEEK | MSG_DONTWAIT | MSG_TRUNC, reinterpret_cast<sockaddr*>(&from),
                 &length)
        < 0)
        return std::nullopt;
    return Of(reinterpret_cast<const sockaddr*>(&from));
}

void ZedSnmpDiscardDatagram(int socket)
{
    char octet;
    [[maybe_unused]] const auto read = recv(socket, &octet, sizeof octet, MSG_DONTWAIT | MSG_TRUNC);
}

std::string ZedSnmpHostOf(std::string address)
{
    for (const char* prefix : {"udp:", "udp6:", "tcp:", "tcp6:", "UDP:", "TCP:", "UDP6:", "TCP6:", "udpv6:", "tcpv6:"})
        if (address.rfind(prefix, 0) == 0)
            address = address.substr(std::strlen(prefix));
    if (!address.empty() && address.front() == '[')
        return address.substr(1, address.find(']') - 1);
    const auto colon = address.rfind(':');
    if (colon != std::string::npos && address.find(':') == colon)
        return address.substr(0, colon);
    return address;
}

std::vector<std::string> ZedSnmpNumericHosts(const std::string& address)
{
    const std::string host = ZedSnmpHostOf(address);
    std::vector<std::string> hosts;
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) == 0) {
        for (const addrinfo* a = found; a; a = a->ai_next)
            if (const auto endpoint = Of(a->ai_addr)) {
                std::string text = endpoint->Host();
                if (std::find(hosts.begin(), hosts.end(), text) == hosts.end())
                    hosts.push_back(std::move(text));
            }
        freeaddrinfo(found);
    }
    if (hosts.empty())
        hosts.push_back(host);
    return hosts;
}

std::optional<std::uint64_t> ZedSnmpSocketDrops(int socket)
{
    struct stat info {};
    if (fstat(socket, &info) != 0)
        return std::nullopt;
    // Fields of a line: sl local rem st queues timer retransmits uid timeout inode ref pointer drops.
    constexpr std::size_t kInodeField = 9;
    constexpr std::size_t kDropsField = 12;
    for (const char* table : {"/proc/net/udp", "/proc/net/udp6"}) {
        std::ifstream in(table);
        std::string line;
        std::getline(in, line);  // the heading
        while (std::getline(in, line)) {
            std::istringstream fields(line);
            std::vector<std::string> field;
            for (std::string f; fields >> f;)
                field.push_back(std::move(f));
            if (field.size() <= kDropsField || field[kInodeField] != std::to_string(info.st_ino))
                continue;
            std::uint64_t drops = 0;
            const auto [end, error] = std::from_chars(field[kDropsField].data(),
                                                      field[kDropsField].data() + field[kDropsField].size(), drops);
            if (error != std::errc())
                return std::nullopt;
            return drops;
        }
    }
    return std::nullopt;
}
