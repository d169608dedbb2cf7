// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpReceiver.h"

#include "zed/TException.h"
#include "zed/ZedText.h"
#include "zed/snmp/TSnmpKeys.h"
#include "zed/snmp/ZedSnmpEndpoint.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/snmp/ZedSnmpPdu.h"
#include "zed/trace/TTraceRate.h"
#include "zed/trace/TTraceStream.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

const ZedOid kSysUpTime = {1, 3, 6, 1, 2, 1, 1, 3, 0};
const ZedOid kTrapOid = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
// The standard traps' OIDs under snmpTraps (RFC 3584, 3.1).
const ZedOid kSnmpTraps = {1, 3, 6, 1, 6, 3, 1, 1, 5};

// Why a notification is refused: the texts the counts and the trace give.
constexpr const char* kUnknownSender = "the sender is no agent of the agents file";
constexpr const char* kWrongCommunity = "the community is not the agent's";
constexpr const char* kWrongVersion = "the SNMP version is not the agent's";
constexpr const char* kWrongUser = "the user is not the agent's";
constexpr const char* kWeakLevel = "the security level is below the agent's";
constexpr const char* kNotNotification = "not a notification";

// What net-snmp refused before a message reached us, by the counter it
// raised. Engine discovery and time synchronisation are missing from the
// list: they are the SNMPv3 handshake that precedes an inform, which
// net-snmp answers with a report and nobody believes.
struct LibraryRefusal {
    int statistic;
    const char* reason;
};
constexpr std::array kLibraryRefusals = {
    LibraryRefusal{STAT_SNMPINASNPARSEERRS, "malformed"},
    LibraryRefusal{STAT_SNMPINBADVERSIONS, "an unknown SNMP version"},
    LibraryRefusal{STAT_SNMPUNKNOWNSECURITYMODELS, "an unknown security model"},
    LibraryRefusal{STAT_SNMPINVALIDMSGS, "an invalid SNMPv3 message"},
    LibraryRefusal{STAT_USMSTATSUNKNOWNUSERNAMES, "an unknown SNMPv3 user"},
    LibraryRefusal{STAT_USMSTATSWRONGDIGESTS, "a wrong authentication key"},
    LibraryRefusal{STAT_USMSTATSDECRYPTIONERRORS, "a wrong privacy key"},
    LibraryRefusal{STAT_USMSTATSUNSUPPORTEDSECLEVELS, "a security level the user does not have"},
};
constexpr std::array kHandshake = {STAT_USMSTATSUNKNOWNENGINEIDS, STAT_USMSTATSNOTINTIMEWINDOWS};

using Statistics = std::array<u_int, kLibraryRefusals.size() + kHandshake.size()>;

Statistics ReadStatistics()
{
    Statistics now{};
    for (std::size_t i = 0; i < kLibraryRefusals.size(); ++i)
        now[i] = snmp_get_statistic(kLibraryRefusals[i].statistic);
    for (std::size_t i = 0; i < kHandshake.size(); ++i)
        now[kLibraryRefusals.size() + i] = snmp_get_statistic(kHandshake[i]);
    return now;
}

// Why net-snmp kept a datagram from us: none when it was the handshake.
std::optional<std::string> LibraryReason(const Statistics& before, const Statistics& after)
{
    for (std::size_t i = 0; i < kLibraryRefusals.size(); ++i)
        if (after[i] != before[i])
            return std::string("net-snmp refused it: ") + kLibraryRefusals[i].reason;
    for (std::size_t i = kLibraryRefusals.size(); i < after.size(); ++i)
        if (after[i] != before[i])
            return std::nullopt;
    return std::string("net-snmp refused it: not a message it could read");
}

int LevelOf(TSnmpAgent::Level level)
{
    switch (level) {
    case TSnmpAgent::Level::AuthPriv: return SNMP_SEC_LEVEL_AUTHPRIV;
    case TSnmpAgent::Level::AuthNoPriv: return SNMP_SEC_LEVEL_AUTHNOPRIV;
    case TSnmpAgent::Level::NoAuthNoPriv: break;
    }
    return SNMP_SEC_LEVEL_NOAUTH;
}

// A larger receive buffer than the system's default rides out a burst of
// notifications between two turns of the event loop.
constexpr int kReceiveBuffer = 4 * 1024 * 1024;

void WidenReceiveBuffer(int socket)
{
    if (setsockopt(socket, SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBuffer, sizeof kReceiveBuffer) != 0)
        setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof kReceiveBuffer);
}

bool Readable(int socket)
{
    pollfd p{socket, POLLIN, 0};
    return poll(&p, 1, 0) > 0 && (p.revents & POLLIN);
}

// A user the SNMPv3 agents send informs as: keys localized for this engine,
// which is the authoritative one for an inform.
void AddInformUser(const TSnmpAgent& agent)
{
    u_char engine[SNMP_MAXBUF_SMALL];
    const size_t engineLength = snmpv3_get_engineID(engine, sizeof engine);
    if (engineLength == 0 || usm_get_user(engine, engineLength, const_cast<char*>(agent.user.c_str())))
        return;
    const std::string engineId(reinterpret_cast<const char*>(engine), engineLength);
    const bool authenticates = agent.level != TSnmpAgent::Level::NoAuthNoPriv;
    const bool encrypts = agent.level == TSnmpAgent::Level::AuthPriv;
    std::unique_ptr<TSnmpSecret> auth, priv;
    if ((authenticates
         && !(agent.keys && agent.keys->auth && (auth = ZedSnmpLocalize(agent, *agent.keys->auth, engineId))))
        || (encrypts
            && !(agent.keys && agent.keys->priv && (priv = ZedSnmpLocalize(agent, *agent.keys->priv, engineId))))) {
        TTraceStream(ZED_TRACE_SNMP | 1) << "the keys of user " << agent.user << " could not be made" << endl;
        return;
    }
    struct usmUser* user = usm_create_user();
    user->name = strdup(agent.user.c_str());
    user->secName = strdup(agent.user.c_str());
    user->engineID = static_cast<u_char*>(netsnmp_memdup(engine, engineLength));
    user->engineIDLen = engineLength;
    const oid* hash = agent.authProtocol == "SHA-512" ? usmHMAC384SHA512AuthProtocol : usmHMAC192SHA256AuthProtocol;
    // The user comes with protocols of its own: ours replace them.
    free(user->authProtocol);
    free(user->privProtocol);
    user->authProtocol = snmp_duplicate_objid(authenticates ? hash : usmNoAuthProtocol, 10);
    user->authProtocolLen = authenticates ? 10 : OID_LENGTH(usmNoAuthProtocol);
    user->privProtocol =
        snmp_duplicate_objid(encrypts ? usmAESPrivProtocol : usmNoPrivProtocol,
                             encrypts ? OID_LENGTH(usmAESPrivProtocol) : OID_LENGTH(usmNoPrivProtocol));
    user->privProtocolLen = encrypts ? OID_LENGTH(usmAESPrivProtocol) : OID_LENGTH(usmNoPrivProtocol);
    if (auth) {
        user->authKey = static_cast<u_char*>(netsnmp_memdup(auth->Data(), auth->Size()));
        user->authKeyLen = auth->Size();
    }
    if (priv) {
        // AES-128 takes the first 16 octets.
        constexpr std::size_t kAes128Key = 16;
        user->privKey = static_cast<u_char*>(netsnmp_memdup(priv->Data(), priv->Size()));
        user->privKeyLen = std::min(priv->Size(), kAes128Key);
    }
    usm_add_user(user);
}

}  // namespace

struct TSnmpReceiver::Impl {
    // An agent of the agents file and the numeric addresses of its host.
    struct Known {
        TSnmpAgent agent;
        std::vector<std::string> hosts;
    };

    std::string address;
    void* handle = nullptr;
    int socket = -1;
    std::vector<Known> known;
    std::vector<TSnmpNotification> arrived;
    TSnmpNotificationCounts counts;
    TTraceRate traced;            // a flood of refusals is counted whole, traced in part
    std::uint64_t delivered = 0;  // PDUs net-snmp handed us, to tell what it kept
    std::uint64_t dropsAtStart = 0;

    static int Callback(int operation, netsnmp_session* s, int, netsnmp_pdu* pdu, void*)
    {
        auto* self = static_cast<Impl*>(s->callback_magic);
        // A message that failed its security checks comes without a command:
        // net-snmp refused it, and ReadOne says why.
        if (self && operation == NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE && pdu && pdu->command != 0) {
            ++self->delivered;
            self->Arrived(*pdu);
        }
        return 1;
    }

    void Refuse(const std::string& reason, const std::string& from, const std::string& as,
                const std::string& agent = {})
    {
        counts.Refuse(reason);
        std::uint64_t held = 0;
        const bool write = traced.Allow(reason, &held);
        if (held)
            TTraceStream(ZED_TRACE_SNMP | 1)
                << held << " more notifications refused in a second, not traced: " << reason << endl;
        if (write)
            TTraceStream(ZED_TRACE_SNMP | 1)
                << "notification refused: from " << from << " as \"" << ZedEscapeControls(as) << "\": " << reason
                << (agent.empty() ? "" : " (agent " + agent + ")") << endl;
    }

    // The agent the notification is from, once its sender and credentials
    // are that agent's; none (counted and traced) otherwise.
    const Known* Admit(const netsnmp_pdu& pdu, const std::string& from, const std::string& as)
    {
        std::vector<const Known*> candidates;
        for (const Known& k : known)
            if (std::find(k.hosts.begin(), k.hosts.end(), from) != k.hosts.end())
                candidates.push_back(&k);
        if (candidates.empty()) {
            Refuse(kUnknownSender, from, as);
            return nullptr;
        }
        const bool v3 = pdu.version == SNMP_VERSION_3;
        const char* reason = kWrongVersion;
        for (const Known* k : candidates) {
            const TSnmpAgent& agent = k->agent;
            if ((agent.version == TSnmpAgent::Version::V3) != v3)
                continue;
            if (!v3 && agent.NotificationCommunity() == as)
                return k;
            if (v3 && agent.user == as && pdu.securityLevel >= LevelOf(agent.level))
                return k;
            if (reason != kWeakLevel)
                reason = !v3 ? kWrongCommunity : agent.user == as ? kWeakLevel : kWrongUser;
        }
        Refuse(reason, from, as, candidates.size() == 1 ? candidates.front()->agent.name : std::string());
        return nullptr;
    }

    void Arrived(netsnmp_pdu& pdu)
    {
        const auto sender = ZedSnmpSenderOf(snmp_sess_transport(handle), pdu);
        const std::string from = sender ? sender->Host() : std::string("an unknown address");
        std::string as;
        if (pdu.version == SNMP_VERSION_3)
            as.assign(pdu.securityName ? pdu.securityName : "", pdu.securityName ? pdu.securityNameLen : 0);
        else if (pdu.community)
            as.assign(reinterpret_cast<const char*>(pdu.community), pdu.community_len);
        if (pdu.command != SNMP_MSG_TRAP && pdu.command != SNMP_MSG_TRAP2 && pdu.command != SNMP_MSG_INFORM) {
            Refuse(kNotNotification, from, as);
            return;
        }
        const Known* agent = Admit(pdu, from, as);
        if (!agent)
            return;
        TSnmpNotification notification;
        notification.agent = agent->agent.name;
        notification.source = from;
        notification.community = std::move(as);
        notification.inform = pdu.command == SNMP_MSG_INFORM;
        if (pdu.command == SNMP_MSG_TRAP)
            ReadTrapV1(pdu, notification);
        for (const netsnmp_variable_list* v = pdu.variables; v; v = v->next_variable) {
            TSnmpVarbind varbind;
            varbind.oid.assign(v->name, v->name + v->name_length);
            if (varbind.oid == kSysUpTime)
                continue;
            if (varbind.oid == kTrapOid) {
                if (v->type == ASN_OBJECT_ID)
                    notification.trap.assign(v->val.objid, v->val.objid + v->val_len / sizeof(oid));
                continue;
            }
            varbind.datum = ZedSnmpDatumOf(*v);
            notification.varbinds.push_back(std::move(varbind));
        }
        if (notification.inform)
            Acknowledge(pdu);
        ++counts.accepted;
        TTraceStream(ZED_TRACE_SNMP | 4) << (notification.inform ? "inform " : "trap ") << ZedOidText(notification.trap)
                                         << " from " << notification.source << " (agent " << notification.agent << ")"
                                         << endl;
        arrived.push_back(std::move(notification));
    }

    // RFC 3584: a generic trap is snmpTraps.(generic+1), a specific one
    // enterprise.0.specific. Its agent-address is the sender's word only:
    // said when it differs from where the trap came from, never believed.
    void ReadTrapV1(const netsnmp_pdu& pdu, TSnmpNotification& notification)
    {
        if (pdu.trap_type != SNMP_TRAP_ENTERPRISESPECIFIC) {
            notification.trap = kSnmpTraps;
            notification.trap.push_back(static_cast<std::uint32_t>(pdu.trap_type + 1));
        } else {
            notification.trap.assign(pdu.enterprise, pdu.enterprise + pdu.enterprise_length);
            notification.trap.push_back(0);
            notification.trap.push_back(static_cast<std::uint32_t>(pdu.specific_type));
        }
        const bool named = pdu.agent_addr[0] || pdu.agent_addr[1] || pdu.agent_addr[2] || pdu.agent_addr[3];
        char claimed[INET_ADDRSTRLEN] = "";
        if (named && inet_ntop(AF_INET, pdu.agent_addr, claimed, sizeof claimed) && notification.source != claimed) {
            ++counts.agentAddressesIgnored;
            TTraceStream(ZED_TRACE_SNMP | 1)
                << "an SNMPv1 trap from " << notification.source << " names the agent address " << claimed
                << ": taken as agent " << notification.agent << "'s" << endl;
        }
    }

    void Acknowledge(const netsnmp_pdu& pdu)
    {
        netsnmp_pdu* reply = snmp_clone_pdu(const_cast<netsnmp_pdu*>(&pdu));
        if (!reply)
            return;
        reply->command = SNMP_MSG_RESPONSE;
        reply->errstat = 0;
        reply->errindex = 0;
        if (!snmp_sess_send(handle, reply))
            snmp_free_pdu(reply);
    }

    // One datagram through net-snmp; what it kept from us is counted too.
    void ReadOne()
    {
        const Statistics before = ReadStatistics();
        const std::uint64_t deliveredBefore = delivered;
        const auto sender = ZedSnmpPeekSender(socket);
        netsnmp_large_fd_set fds;
        netsnmp_large_fd_set_init(&fds, FD_SETSIZE);
        NETSNMP_LARGE_FD_SET(socket, &fds);
        snmp_sess_read2(handle, &fds);
        netsnmp_large_fd_set_cleanup(&fds);
        if (delivered != deliveredBefore)
            return;
        if (const auto reason = LibraryReason(before, ReadStatistics()))
            Refuse(*reason, sender ? sender->Host() : std::string("an unknown address"), {});
    }
};

TSnmpReceiver::TSnmpReceiver(const std::string& address, const std::vector<TSnmpAgent>& agents)
    : m_pImpl(std::make_unique<Impl>())
{
    ZedSnmpInitLibrary();
    for (const TSnmpAgent& given : agents) {
        // The receiver keeps who an agent is, never its keys.
        TSnmpAgent agent = given;
        if (agent.version == TSnmpAgent::Version::V3) {
            ZedSnmpSealKeys(agent);
            AddInformUser(agent);
        }
        agent.keys.reset();
        agent.writeCommunity.clear();
        m_pImpl->known.push_back(Impl::Known{std::move(agent), ZedSnmpNumericHosts(given.address)});
    }
    netsnmp_transport* transport = netsnmp_transport_open_server("snmptrap", address.c_str());
    if (!transport)
        throw TException("cannot receive notifications on " + address + ": the address is taken or not one of "
                         + "this machine");
    netsnmp_session s;
    snmp_sess_init(&s);
    s.peername = SNMP_DEFAULT_PEERNAME;
    s.version = SNMP_DEFAULT_VERSION;
    s.community_len = SNMP_DEFAULT_COMMUNITY_LEN;
    s.retries = SNMP_DEFAULT_RETRIES;
    s.timeout = SNMP_DEFAULT_TIMEOUT;
    s.callback = Impl::Callback;
    s.callback_magic = m_pImpl.get();
    s.isAuthoritative = SNMP_SESS_UNKNOWNAUTH;
    const int socket = transport->sock;
    m_pImpl->handle = snmp_sess_add(&s, transport, nullptr, nullptr);
    if (!m_pImpl->handle)
        throw TException("cannot receive notifications on " + address);
    m_pImpl->socket = socket;
    WidenReceiveBuffer(socket);
    m_pImpl->dropsAtStart = ZedSnmpSocketDrops(socket).value_or(0);
    // The port the system chose, when the address asked for any (port 0).
    sockaddr_in bound{};
    socklen_t length = sizeof bound;
    char host[INET_ADDRSTRLEN];
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&bound), &length) == 0 && bound.sin_family == AF_INET
        && inet_ntop(AF_INET, &bound.sin_addr, host, sizeof host))
        m_pImpl->address = "udp:" + std::string(host) + ":" + std::to_string(ntohs(bound.sin_port));
    else
        m_pImpl->address = address;
}

TSnmpReceiver::~TSnmpReceiver()
{
    if (m_pImpl->handle)
        snmp_sess_close(m_pImpl->handle);
}

const std::string& TSnmpReceiver::GetAddress() const { return m_pImpl->address; }

TSnmpNotificationCounts TSnmpReceiver::GetCounts() const
{
    TSnmpNotificationCounts counts = m_pImpl->counts;
    if (const auto drops = ZedSnmpSocketDrops(m_pImpl->socket))
        counts.lost = *drops - std::min(*drops, m_pImpl->dropsAtStart);
    return counts;
}

void TSnmpReceiver::AddWaitSet(ZedWaitSet& set) const
{
    if (m_pImpl->socket >= 0)
        set.descriptors.push_back(m_pImpl->socket);
}

std::vector<TSnmpNotification> TSnmpReceiver::ProcessReady(const std::set<int>& readable)
{
    // Every datagram that waits, not one a turn: a burst otherwise
    // overflows the socket's buffer while the host draws.
    if (m_pImpl->socket >= 0 && readable.count(m_pImpl->socket))
        for (std::size_t read = 0; read < kMostPerTurn && Readable(m_pImpl->socket); ++read)
            m_pImpl->ReadOne();
    return std::exchange(m_pImpl->arrived, {});
}
