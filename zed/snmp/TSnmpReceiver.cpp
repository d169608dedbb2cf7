#include "zed/snmp/TSnmpReceiver.h"

#include "zed/TException.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/snmp/ZedSnmpPdu.h"
#include "zed/trace/TTraceStream.h"


#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstring>
#include <utility>

namespace {

const ZedOid kSysUpTime = {1, 3, 6, 1, 2, 1, 1, 3, 0};
const ZedOid kTrapOid = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
// The standard traps' OIDs under snmpTraps (RFC 3584, 3.1).
const ZedOid kSnmpTraps = {1, 3, 6, 1, 6, 3, 1, 1, 5};

// The sender's host out of net-snmp's text of an address: "UDP: [127.0.0.1]:46432->[...]".
std::string SourceHost(netsnmp_transport* transport, const netsnmp_pdu& pdu)
{
    if (!transport || !transport->f_fmtaddr)
        return {};
    char* text = transport->f_fmtaddr(transport, pdu.transport_data, pdu.transport_data_length);
    std::string address = text ? text : "";
    free(text);
    const auto open = address.find('[');
    const auto close = address.find(']', open);
    if (open == std::string::npos || close == std::string::npos)
        return address;
    return address.substr(open + 1, close - open - 1);
}

// A user the SNMPv3 agents send informs as: keys made for this engine, which
// is the authoritative one for an inform.
void AddInformUser(const TSnmpAgent& agent)
{
    u_char engine[SNMP_MAXBUF_SMALL];
    const size_t engineLength = snmpv3_get_engineID(engine, sizeof engine);
    if (engineLength == 0 || usm_get_user(engine, engineLength, const_cast<char*>(agent.user.c_str())))
        return;
    struct usmUser* user = usm_create_user();
    user->name = strdup(agent.user.c_str());
    user->secName = strdup(agent.user.c_str());
    user->engineID = static_cast<u_char*>(netsnmp_memdup(engine, engineLength));
    user->engineIDLen = engineLength;
    const oid* auth = agent.authProtocol == "SHA-512" ? usmHMAC384SHA512AuthProtocol : usmHMAC192SHA256AuthProtocol;
    const bool authenticates = agent.level != TSnmpAgent::Level::NoAuthNoPriv;
    const bool encrypts = agent.level == TSnmpAgent::Level::AuthPriv;
    // The user comes with protocols of its own: ours replace them.
    free(user->authProtocol);
    free(user->privProtocol);
    user->authProtocol = snmp_duplicate_objid(authenticates ? auth : usmNoAuthProtocol, 10);
    user->authProtocolLen = authenticates ? 10 : OID_LENGTH(usmNoAuthProtocol);
    user->privProtocol = snmp_duplicate_objid(encrypts ? usmAESPrivProtocol : usmNoPrivProtocol,
                                              encrypts ? OID_LENGTH(usmAESPrivProtocol) : OID_LENGTH(usmNoPrivProtocol));
    user->privProtocolLen = encrypts ? OID_LENGTH(usmAESPrivProtocol) : OID_LENGTH(usmNoPrivProtocol);
    const auto localize = [&](const std::string& pass, u_char** key, size_t* keyLength) {
        u_char ku[USM_AUTH_KU_LEN];
        size_t kuLength = sizeof ku;
        if (generate_Ku(auth, 10, reinterpret_cast<const u_char*>(pass.data()), pass.size(), ku, &kuLength)
            != SNMPERR_SUCCESS)
            return false;
        *key = static_cast<u_char*>(malloc(USM_AUTH_KU_LEN));
        *keyLength = USM_AUTH_KU_LEN;
        const bool made = generate_kul(auth, 10, engine, engineLength, ku, kuLength, *key, keyLength) == SNMPERR_SUCCESS;
        std::memset(ku, 0, sizeof ku);
        return made;
    };
    if ((authenticates && !localize(agent.authKey, &user->authKey, &user->authKeyLen))
        || (encrypts && !localize(agent.privKey, &user->privKey, &user->privKeyLen))) {
        TTraceStream(ZED_TRACE_SNMP | 1) << "the keys of user " << agent.user << " could not be made" << endl;
        usm_free_user(user);
        return;
    }
    if (encrypts)
        user->privKeyLen = 16;  // AES-128 takes the first 16 octets
    usm_add_user(user);
}

} // namespace

struct TSnmpReceiver::Impl {
    std::string address;
    void* handle = nullptr;
    std::vector<TSnmpNotification> arrived;

    static int Callback(int operation, netsnmp_session* s, int, netsnmp_pdu* pdu, void*)
    {
        auto* self = static_cast<Impl*>(s->callback_magic);
        if (self && operation == NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE && pdu)
            self->Arrived(*pdu);
        return 1;
    }

    void Arrived(netsnmp_pdu& pdu)
    {
        if (pdu.command != SNMP_MSG_TRAP && pdu.command != SNMP_MSG_TRAP2 && pdu.command != SNMP_MSG_INFORM)
            return;
        TSnmpNotification notification;
        notification.source = SourceHost(snmp_sess_transport(handle), pdu);
        if (pdu.version == SNMP_VERSION_3)
            notification.community.assign(pdu.securityName ? pdu.securityName : "", pdu.securityNameLen);
        else
            notification.community.assign(reinterpret_cast<const char*>(pdu.community), pdu.community_len);
        notification.inform = pdu.command == SNMP_MSG_INFORM;
        if (pdu.command == SNMP_MSG_TRAP) {
            // RFC 3584: a generic trap is snmpTraps.(generic+1), a specific one enterprise.0.specific.
            if (pdu.trap_type != SNMP_TRAP_ENTERPRISESPECIFIC) {
                notification.trap = kSnmpTraps;
                notification.trap.push_back(static_cast<std::uint32_t>(pdu.trap_type + 1));
            } else {
                notification.trap.assign(pdu.enterprise, pdu.enterprise + pdu.enterprise_length);
                notification.trap.push_back(0);
                notification.trap.push_back(static_cast<std::uint32_t>(pdu.specific_type));
            }
            if (pdu.agent_addr[0] || pdu.agent_addr[1] || pdu.agent_addr[2] || pdu.agent_addr[3]) {
                char text[INET_ADDRSTRLEN];
                if (inet_ntop(AF_INET, pdu.agent_addr, text, sizeof text))
                    notification.source = text;
            }
        }
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
        if (notification.inform) {
            netsnmp_pdu* reply = snmp_clone_pdu(&pdu);
            if (reply) {
                reply->command = SNMP_MSG_RESPONSE;
                reply->errstat = 0;
                reply->errindex = 0;
                if (!snmp_sess_send(handle, reply))
                    snmp_free_pdu(reply);
            }
        }
        TTraceStream(ZED_TRACE_SNMP | 4) << (notification.inform ? "inform " : "trap ") << ZedOidText(notification.trap)
                                         << " from " << notification.source << endl;
        arrived.push_back(std::move(notification));
    }
};

TSnmpReceiver::TSnmpReceiver(const std::string& address, const std::vector<TSnmpAgent>& agents)
    : m_pImpl(std::make_unique<Impl>())
{
    ZedSnmpInitLibrary();
    for (const TSnmpAgent& agent : agents)
        if (agent.version == TSnmpAgent::Version::V3)
            AddInformUser(agent);
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

void TSnmpReceiver::AddWaitSet(ZedWaitSet& set) const
{
    if (netsnmp_transport* transport = snmp_sess_transport(m_pImpl->handle); transport && transport->sock >= 0)
        set.descriptors.push_back(transport->sock);
}

std::vector<TSnmpNotification> TSnmpReceiver::ProcessReady(const std::set<int>& readable)
{
    netsnmp_transport* transport = snmp_sess_transport(m_pImpl->handle);
    if (transport && readable.count(transport->sock)) {
        netsnmp_large_fd_set fds;
        netsnmp_large_fd_set_init(&fds, FD_SETSIZE);
        NETSNMP_LARGE_FD_SET(transport->sock, &fds);
        snmp_sess_read2(m_pImpl->handle, &fds);
        netsnmp_large_fd_set_cleanup(&fds);
    }
    return std::exchange(m_pImpl->arrived, {});
}
