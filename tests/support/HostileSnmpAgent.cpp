// SPDX-License-Identifier: BSD-3-Clause
// An SNMP agent that misbehaves on purpose, and a sender of notifications,
// for the tests and benchmarks of what the SNMP module believes. It listens
// on 127.0.0.1 only and prints its address ("udp:127.0.0.1:PORT") on a line
// of its own once it answers; it runs until it is stopped by its process id.
//
//   hostile_snmp_agent reorder   answers a Get with its varbinds reversed
//   hostile_snmp_agent omit      leaves the first varbind out
//   hostile_snmp_agent foreign   answers first from another port, with "forged"
//   hostile_snmp_agent huge      answers every GetBulk with rows of 1,000 octets, never ending
//   hostile_snmp_agent creep     one row per GetBulk answer, 20 ms apart, never ending
//   hostile_snmp_agent badindex  a table of three rows, the second with an index of two parts
//   hostile_snmp_agent flood HOST:PORT COUNT SECONDS COMMUNITY
//                                sends COUNT SNMPv2c linkDown traps within SECONDS, then ends

#include <net-snmp/net-snmp-config.h>
#include <net-snmp/net-snmp-includes.h>
#include <net-snmp/library/large_fd_set.h>

#include <sys/select.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace {

enum class Mode { Reorder, Omit, Foreign, Huge, Creep, BadIndex };

Mode g_mode = Mode::Reorder;
void* g_main = nullptr;
void* g_other = nullptr;

// The length of a column's OID of the interface tables this agent makes up
// (ifEntry.C, ifXEntry.C); the name's own length for others.
std::size_t ColumnLength(const oid* name, std::size_t length)
{
    static const oid ifEntry[] = {1, 3, 6, 1, 2, 1, 2, 2, 1};
    static const oid ifXEntry[] = {1, 3, 6, 1, 2, 1, 31, 1, 1, 1};
    if (length >= 10 && std::memcmp(name, ifEntry, sizeof ifEntry) == 0)
        return 10;
    if (length >= 11 && std::memcmp(name, ifXEntry, sizeof ifXEntry) == 0)
        return 11;
    return length;
}

std::vector<oid> NextOf(const oid* name, std::size_t length)
{
    const std::size_t column = ColumnLength(name, length);
    std::vector<oid> next(name, name + length);
    if (length <= column)
        next.push_back(1);
    else
        ++next.back();
    return next;
}

void AddText(netsnmp_pdu* pdu, const oid* name, std::size_t length, const std::string& text)
{
    snmp_pdu_add_variable(pdu, name, length, ASN_OCTET_STR, text.data(), text.size());
}

std::string ValueOf(const oid* name, std::size_t length)
{
    std::string text = "value of ";
    for (std::size_t i = 0; i < length; ++i)
        text += (i ? "." : "") + std::to_string(name[i]);
    return text;
}

netsnmp_pdu* ResponseTo(netsnmp_pdu* request)
{
    netsnmp_pdu* reply = snmp_clone_pdu(request);
    snmp_free_varbind(reply->variables);
    reply->variables = nullptr;
    reply->command = SNMP_MSG_RESPONSE;
    reply->errstat = 0;
    reply->errindex = 0;
    return reply;
}

void Answer(netsnmp_pdu* request)
{
    netsnmp_pdu* reply = ResponseTo(request);
    std::vector<netsnmp_variable_list*> asked;
    for (netsnmp_variable_list* v = request->variables; v; v = v->next_variable)
        asked.push_back(v);
    if (request->command == SNMP_MSG_GETBULK && g_mode == Mode::BadIndex) {
        // Rows 1, 2.5 and 3 of every column asked, then the end of the view.
        static const std::vector<std::vector<oid>> kRows = {{1}, {2, 5}, {3}};
        for (netsnmp_variable_list* v : asked) {
            std::vector<oid> column(v->name, v->name + ColumnLength(v->name, v->name_length));
            for (const auto& row : kRows) {
                std::vector<oid> name = column;
                name.insert(name.end(), row.begin(), row.end());
                if (snmp_oid_compare(name.data(), name.size(), v->name, v->name_length) > 0) {
                    AddText(reply, name.data(), name.size(), "row");
                    break;
                }
            }
        }
        if (!reply->variables)
            for (netsnmp_variable_list* v : asked)
                snmp_pdu_add_variable(reply, v->name, v->name_length, SNMP_ENDOFMIBVIEW, nullptr, 0);
    } else if (request->command == SNMP_MSG_GETBULK) {
        // Huge answers stay within one datagram: about 60 KB.
        const long most = g_mode == Mode::Huge ? std::max(1L, 60 / static_cast<long>(asked.size())) : 1000;
        const long repetitions = g_mode == Mode::Creep ? 1 : std::clamp(request->max_repetitions, 1L, most);
        const std::string big(g_mode == Mode::Huge ? 1000 : 8, 'x');
        std::vector<std::vector<oid>> cursors;
        for (netsnmp_variable_list* v : asked)
            cursors.push_back(NextOf(v->name, v->name_length));
        for (long r = 0; r < repetitions; ++r)
            for (auto& cursor : cursors) {
                AddText(reply, cursor.data(), cursor.size(), big);
                ++cursor.back();
            }
        if (g_mode == Mode::Creep)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    } else {
        if (g_mode == Mode::Reorder)
            std::reverse(asked.begin(), asked.end());
        for (std::size_t i = g_mode == Mode::Omit ? 1 : 0; i < asked.size(); ++i)
            AddText(reply, asked[i]->name, asked[i]->name_length, ValueOf(asked[i]->name, asked[i]->name_length));
    }
    if (g_mode == Mode::Foreign) {
        // The same answer with forged values, first and from another port.
        netsnmp_pdu* forged = ResponseTo(request);
        for (netsnmp_variable_list* v : asked)
            AddText(forged, v->name, v->name_length, "forged");
        if (!snmp_sess_send(g_other, forged))
            snmp_free_pdu(forged);
    }
    if (!snmp_sess_send(g_main, reply))
        snmp_free_pdu(reply);
}

int Received(int operation, netsnmp_session*, int, netsnmp_pdu* pdu, void*)
{
    if (operation == NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE && pdu
        && (pdu->command == SNMP_MSG_GET || pdu->command == SNMP_MSG_GETNEXT || pdu->command == SNMP_MSG_GETBULK
            || pdu->command == SNMP_MSG_SET))
        Answer(pdu);
    return 1;
}

void* Listen(int* port)
{
    netsnmp_transport* transport = netsnmp_transport_open_server("hostile", "udp:127.0.0.1:0");
    if (!transport)
        return nullptr;
    sockaddr_in bound{};
    socklen_t length = sizeof bound;
    getsockname(transport->sock, reinterpret_cast<sockaddr*>(&bound), &length);
    *port = ntohs(bound.sin_port);
    netsnmp_session s;
    snmp_sess_init(&s);
    s.peername = SNMP_DEFAULT_PEERNAME;
    s.version = SNMP_DEFAULT_VERSION;
    s.community_len = SNMP_DEFAULT_COMMUNITY_LEN;
    s.callback = Received;
    s.isAuthoritative = SNMP_SESS_AUTHORITATIVE;
    return snmp_sess_add(&s, transport, nullptr, nullptr);
}

void Serve()
{
    for (;;) {
        netsnmp_large_fd_set fds;
        netsnmp_large_fd_set_init(&fds, FD_SETSIZE);
        int count = 0, block = 1;
        timeval wait{1, 0};
        snmp_sess_select_info2(g_main, &count, &fds, &wait, &block);
        if (netsnmp_large_fd_set_select(count, &fds, nullptr, nullptr, block ? nullptr : &wait) > 0)
            snmp_sess_read2(g_main, &fds);
        netsnmp_large_fd_set_cleanup(&fds);
    }
}

int Flood(const char* target, long count, double seconds, const char* community)
{
    netsnmp_session s;
    snmp_sess_init(&s);
    s.peername = const_cast<char*>(target);
    s.version = SNMP_VERSION_2c;
    s.community = reinterpret_cast<u_char*>(const_cast<char*>(community));
    s.community_len = std::strlen(community);
    void* session = snmp_sess_open(&s);
    if (!session)
        return 1;
    static const oid sysUpTime[] = {1, 3, 6, 1, 2, 1, 1, 3, 0};
    static const oid trapOid[] = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
    static const oid linkDown[] = {1, 3, 6, 1, 6, 3, 1, 1, 5, 3};
    const auto start = std::chrono::steady_clock::now();
    for (long i = 0; i < count; ++i) {
        netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_TRAP2);
        const u_long ticks = static_cast<u_long>(i);
        snmp_pdu_add_variable(pdu, sysUpTime, OID_LENGTH(sysUpTime), ASN_TIMETICKS, &ticks, sizeof ticks);
        snmp_pdu_add_variable(pdu, trapOid, OID_LENGTH(trapOid), ASN_OBJECT_ID, linkDown, sizeof linkDown);
        oid ifIndex[] = {1, 3, 6, 1, 2, 1, 2, 2, 1, 1, static_cast<oid>(i % 1000 + 1)};
        const long index = static_cast<long>(i % 1000 + 1);
        snmp_pdu_add_variable(pdu, ifIndex, OID_LENGTH(ifIndex), ASN_INTEGER, &index, sizeof index);
        if (!snmp_sess_send(session, pdu))
            snmp_free_pdu(pdu);
        std::this_thread::sleep_until(start
                                      + std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                          std::chrono::duration<double>(seconds * double(i + 1) / double(count))));
    }
    snmp_sess_close(session);
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_READ_CONFIGS, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_LOAD, 1);
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DISABLE_PERSISTENT_SAVE, 1);
    netsnmp_set_mib_directory("/nonexistent");
    snmp_disable_log();
    init_snmp("hostile");
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "flood" && argc == 6)
        return Flood(argv[2], std::atol(argv[3]), std::atof(argv[4]), argv[5]);
    const std::pair<const char*, Mode> modes[] = {{"reorder", Mode::Reorder}, {"omit", Mode::Omit},
                                                  {"foreign", Mode::Foreign}, {"huge", Mode::Huge},
                                                  {"creep", Mode::Creep},     {"badindex", Mode::BadIndex}};
    bool known = false;
    for (const auto& [name, m] : modes)
        if (mode == name) {
            g_mode = m;
            known = true;
        }
    if (!known) {
        std::fprintf(stderr, "usage: hostile_snmp_agent reorder|omit|foreign|huge|creep|badindex\n"
                             "       hostile_snmp_agent flood HOST:PORT COUNT SECONDS COMMUNITY\n");
        return 2;
    }
    int port = 0, otherPort = 0;
    g_main = Listen(&port);
    g_other = Listen(&otherPort);
    if (!g_main || !g_other)
        return 1;
    std::printf("udp:127.0.0.1:%d\n", port);
    std::fflush(stdout);
    Serve();
}
