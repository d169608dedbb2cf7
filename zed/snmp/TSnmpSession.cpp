// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpSession.h"

#include "zed/snmp/TSnmpKeys.h"
#include "zed/snmp/ZedSnmpEndpoint.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/snmp/ZedSnmpPdu.h"
#include "zed/trace/TTraceRate.h"
#include "zed/trace/TTraceStream.h"

#include <poll.h>

#include <cmath>
#include <cstring>
#include <map>

namespace {

// The discovery probe's own key: requests are numbered from 1.
constexpr std::uint64_t kProbeKey = 0;

// Datagrams read from one socket in one turn at most.
constexpr int kMostReadsPerTurn = 64;

bool Readable(int socket)
{
    pollfd p{socket, POLLIN, 0};
    return poll(&p, 1, 0) > 0 && (p.revents & POLLIN);
}

const char* const kErrorStatusNames[] = {
    "noError",
    "tooBig",
    "noSuchName",
    "badValue",
    "readOnly",
    "genErr",
    "noAccess",
    "wrongType",
    "wrongLength",
    "wrongEncoding",
    "wrongValue",
    "noCreation",
    "inconsistentValue",
    "resourceUnavailable",
    "commitFailed",
    "undoFailed",
    "authorizationError",
    "notWritable",
    "inconsistentName",
};

// The counters an SNMPv3 agent reports a refusal with (usmStats, RFC 3414).
std::string ReportReason(const netsnmp_pdu& pdu)
{
    static const oid usmStats[] = {1, 3, 6, 1, 6, 3, 15, 1, 1};
    const netsnmp_variable_list* v = pdu.variables;
    if (v && v->name_length == 11 && snmp_oid_ncompare(v->name, v->name_length, usmStats, 9, 9) == 0) {
        switch (v->name[9]) {
        case 1: return "the agent does not support this security level (unsupportedSecLevels)";
        case 2: return "the agent's clock and ours disagree (notInTimeWindows)";
        case 3: return "the agent does not know the user (unknownUserNames)";
        case 4: return "the agent's engine is not the one addressed (unknownEngineIDs)";
        case 5: return "wrong authentication key or protocol (wrongDigests)";
        case 6: return "wrong privacy key or protocol (decryptionErrors)";
        default: break;
        }
    }
    std::string text = "the agent sent a report";
    if (v) {
        text += " (";
        for (std::size_t i = 0; i < v->name_length; ++i)
            text += (i ? "." : "") + std::to_string(v->name[i]);
        text += ")";
    }
    return text;
}

// The user without name or keys that the engine-discovery probe speaks as
// (RFC 5343); net-snmp keeps users process-wide.
void EnsureProbeUser()
{
    if (usm_get_user(nullptr, 0, const_cast<char*>("")))
        return;
    auto* user = usm_create_user();
    free(user->authProtocol);
    free(user->privProtocol);
    user->name = strdup("");
    user->secName = strdup("");
    user->authProtocol = snmp_duplicate_objid(usmNoAuthProtocol, OID_LENGTH(usmNoAuthProtocol));
    user->authProtocolLen = OID_LENGTH(usmNoAuthProtocol);
    user->privProtocol = snmp_duplicate_objid(usmNoPrivProtocol, OID_LENGTH(usmNoPrivProtocol));
    user->privProtocolLen = OID_LENGTH(usmNoPrivProtocol);
    usm_add_user(user);
}

}  // namespace

std::string ZedSnmpSecondsText(double seconds)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", seconds);
    return text;
}

std::string ZedSnmpErrorStatusName(long status)
{
    if (status >= 0 && status < long(std::size(kErrorStatusNames)))
        return kErrorStatusNames[status];
    return "error status " + std::to_string(status);
}

struct TSnmpSession::Impl {
    explicit Impl(TSnmpAgent a) : agent(std::move(a)) { ZedSnmpInitLibrary(); }

    ~Impl()
    {
        closing = true;
        if (session)
            snmp_sess_close(session);
        if (probe)
            snmp_sess_close(probe);
    }

    struct Request {
        Operation operation;
        std::vector<TSnmpVarbind> varbinds;
        int maxRepetitions;
    };

    TSnmpAgent agent;
    void* session = nullptr;
    void* probe = nullptr;  // the SNMPv3 engine discovery while it runs
    bool probeDone = false;
    std::string engineId;
    bool closing = false;
    std::uint64_t foreignAnswers = 0;  // datagrams from elsewhere than the agent, refused
    TTraceRate traced;                 // and traced, a few a second
    std::uint64_t nextKey = 1;
    std::map<std::uint64_t, Done> wanted;     // every request not yet handed on
    std::map<std::uint64_t, Request> queued;  // waiting for the session to open
    std::vector<std::pair<std::uint64_t, TSnmpAnswer>> ended;
    // An SNMPv1 Get or GetNext being asked again without the objects the
    // agent named noSuchName, as SNMPv2 would have answered them.
    struct Narrowing {
        Request request;
        std::vector<std::size_t> positions;  // of request's varbinds in the first request
        std::vector<TSnmpVarbind> answers;   // in the first request's order
    };
    std::map<std::uint64_t, Narrowing> narrowing;

    bool IsV3() const { return agent.version == TSnmpAgent::Version::V3; }

    std::string Who() const { return "agent " + agent.name + " (" + agent.address + ")"; }

    void End(std::uint64_t key, TSnmpAnswer::Outcome outcome, std::string reason)
    {
        narrowing.erase(key);
        TSnmpAnswer answer;
        answer.outcome = outcome;
        answer.reason = std::move(reason);
        ended.emplace_back(key, std::move(answer));
    }

    std::string TimeoutReason() const
    {
        const int tries = agent.retries + 1;
        // An SNMPv1 or v2c agent says nothing to a wrong community: from
        // here, that looks exactly like an agent that is down.
        return "no answer from " + Who() + " within " + ZedSnmpSecondsText(agent.timeout) + " s ("
               + std::to_string(tries) + (tries == 1 ? " try)" : " tries)")
               + (IsV3() ? "" : "; a wrong community looks the same: the agent does not answer one");
    }

    // ---- opening -----------------------------------------------------------

    void Prepare(netsnmp_session& s) const
    {
        snmp_sess_init(&s);
        s.peername = const_cast<char*>(agent.address.c_str());
        s.timeout = static_cast<long>(std::lround(agent.timeout * 1e6));
        s.retries = agent.retries;
        s.callback_magic = const_cast<Impl*>(this);
    }

    // Starts what opening takes: the session itself, or the discovery of an
    // SNMPv3 agent's engine first (net-snmp's own discovery would wait).
    void Open()
    {
        if (session || probe)
            return;
        if (IsV3() && engineId.empty()) {
            StartProbe();
            return;
        }
        OpenSession();
    }

    void StartProbe()
    {
        EnsureProbeUser();
        netsnmp_session s;
        Prepare(s);
        s.version = SNMP_VERSION_3;
        s.securityLevel = SNMP_SEC_LEVEL_NOAUTH;
        s.flags |= SNMP_FLAGS_DONT_PROBE;
        probe = snmp_sess_open(&s);
        if (!probe) {
            FailQueued(TSnmpAnswer::Outcome::Failed, OpenFault(s));
            return;
        }
        netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_GET);
        pdu->version = SNMP_VERSION_3;
        pdu->securityName = strdup("");
        pdu->securityNameLen = 0;
        pdu->securityLevel = SNMP_SEC_LEVEL_NOAUTH;
        pdu->securityModel = SNMP_SEC_MODEL_USM;
        if (!snmp_sess_async_send(probe, pdu, Callback, reinterpret_cast<void*>(kProbeKey))) {
            snmp_free_pdu(pdu);
            FailQueued(TSnmpAnswer::Outcome::Failed, "cannot reach " + Who() + ": " + SessionFault(probe));
            probeDone = true;
        }
    }

    void Probed(int operation, const netsnmp_pdu* pdu)
    {
        probeDone = true;
        if (operation == NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE && pdu && pdu->securityEngineIDLen > 0) {
            engineId.assign(reinterpret_cast<const char*>(pdu->securityEngineID), pdu->securityEngineIDLen);
            TTraceStream(ZED_TRACE_SNMP | 4) << Who() << ": engine found (" << engineId.size() << " octets)" << endl;
            OpenSession();
            return;
        }
        FailQueued(
            operation == NETSNMP_CALLBACK_OP_TIMED_OUT ? TSnmpAnswer::Outcome::Timeout : TSnmpAnswer::Outcome::Failed,
            operation == NETSNMP_CALLBACK_OP_TIMED_OUT ? TimeoutReason()
                                                       : "the SNMPv3 engine of " + Who() + " could not be found");
    }

    // The localized keys a v3 session is opened with; net-snmp takes copies,
    // these are wiped as they go out of scope.
    struct LocalKeys {
        std::unique_ptr<TSnmpSecret> auth, priv;
    };

    // An SNMPv3 session's user, level and keys, localized for the agent's
    // engine; the fault when a key could not be made.
    std::string PrepareV3(netsnmp_session& s, LocalKeys& keys)
    {
        s.version = SNMP_VERSION_3;
        s.securityName = const_cast<char*>(agent.user.c_str());
        s.securityNameLen = agent.user.size();
        s.securityModel = SNMP_SEC_MODEL_USM;
        s.securityEngineID = reinterpret_cast<u_char*>(engineId.data());
        s.securityEngineIDLen = engineId.size();
        s.flags |= SNMP_FLAGS_DONT_PROBE;
        s.securityLevel = agent.level == TSnmpAgent::Level::AuthPriv     ? SNMP_SEC_LEVEL_AUTHPRIV
                          : agent.level == TSnmpAgent::Level::AuthNoPriv ? SNMP_SEC_LEVEL_AUTHNOPRIV
                                                                         : SNMP_SEC_LEVEL_NOAUTH;
        ZedSnmpSealKeys(agent);
        if (s.securityLevel != SNMP_SEC_LEVEL_NOAUTH) {
            const bool sha512 = agent.authProtocol == "SHA-512";
            s.securityAuthProto = sha512 ? usmHMAC384SHA512AuthProtocol : usmHMAC192SHA256AuthProtocol;
            s.securityAuthProtoLen = OID_LENGTH(usmHMAC192SHA256AuthProtocol);
            if (!agent.keys || !agent.keys->auth || !(keys.auth = ZedSnmpLocalize(agent, *agent.keys->auth, engineId)))
                return "the authentication key could not be made";
            s.securityAuthLocalKey = keys.auth->Data();
            s.securityAuthLocalKeyLen = keys.auth->Size();
        }
        if (s.securityLevel == SNMP_SEC_LEVEL_AUTHPRIV) {
            s.securityPrivProto = usmAESPrivProtocol;
            s.securityPrivProtoLen = OID_LENGTH(usmAESPrivProtocol);
            if (!agent.keys || !agent.keys->priv || !(keys.priv = ZedSnmpLocalize(agent, *agent.keys->priv, engineId)))
                return "the privacy key could not be made";
            s.securityPrivLocalKey = keys.priv->Data();
            s.securityPrivLocalKeyLen = keys.priv->Size();
        }
        return {};
    }

    void OpenSession()
    {
        netsnmp_session s;
        Prepare(s);
        std::string fault;
        LocalKeys keys;
        if (agent.version == TSnmpAgent::Version::V3) {
            fault = PrepareV3(s, keys);
        } else {
            s.version = agent.version == TSnmpAgent::Version::V1 ? SNMP_VERSION_1 : SNMP_VERSION_2c;
            s.community = reinterpret_cast<u_char*>(agent.community.data());
            s.community_len = agent.community.size();
        }
        if (fault.empty()) {
            session = snmp_sess_open(&s);
            if (!session)
                fault = OpenFault(s);
        }
        // The session has its localized keys: the master keys are no longer
        // this session's to keep.
        if (session)
            agent.keys.reset();
        if (!fault.empty()) {
            FailQueued(TSnmpAnswer::Outcome::Failed, fault);
            return;
        }
        Flush();
    }

    std::string OpenFault(const netsnmp_session& s) const
    {
        const char* text = snmp_api_errstring(s.s_snmp_errno);
        return "cannot open a session to " + Who() + ": " + (text && *text ? text : "unknown fault");
    }

    static std::string SessionFault(void* handle)
    {
        char* text = nullptr;
        int errorCode = 0, snmpError = 0;
        snmp_sess_error(handle, &errorCode, &snmpError, &text);
        std::string fault = text ? text : "unknown fault";
        free(text);
        return fault;
    }

    void FailQueued(TSnmpAnswer::Outcome outcome, const std::string& reason)
    {
        TTraceStream(ZED_TRACE_SNMP | 1) << reason << endl;
        for (const auto& [key, request] : queued)
            End(key, outcome, reason);
        queued.clear();
    }

    // ---- requests ----------------------------------------------------------

    void Flush()
    {
        auto waiting = std::move(queued);
        queued.clear();
        for (auto& [key, request] : waiting)
            Transmit(key, request);
    }

    void Transmit(std::uint64_t key, const Request& request)
    {
        Operation operation = request.operation;
        if (operation == Operation::GetBulk && agent.version == TSnmpAgent::Version::V1)
            operation = Operation::GetNext;  // SNMPv1 has no GetBulk
        const int command = operation == Operation::Get       ? SNMP_MSG_GET
                            : operation == Operation::GetNext ? SNMP_MSG_GETNEXT
                            : operation == Operation::GetBulk ? SNMP_MSG_GETBULK
                                                              : SNMP_MSG_SET;
        if (agent.version == TSnmpAgent::Version::V1 && command != SNMP_MSG_SET && !narrowing.count(key)) {
            Narrowing& n = narrowing[key];
            n.request = request;
            n.request.operation = operation;
            for (std::size_t i = 0; i < request.varbinds.size(); ++i) {
                n.positions.push_back(i);
                n.answers.push_back(TSnmpVarbind{request.varbinds[i].oid, {}});
            }
        }
        netsnmp_pdu* pdu = snmp_pdu_create(command);
        if (command == SNMP_MSG_GETBULK) {
            pdu->non_repeaters = 0;
            pdu->max_repetitions = request.maxRepetitions > 0 ? request.maxRepetitions : 10;
        }
        if (command == SNMP_MSG_SET && !IsV3() && !agent.writeCommunity.empty()) {
            pdu->community = static_cast<u_char*>(malloc(agent.writeCommunity.size()));
            std::memcpy(pdu->community, agent.writeCommunity.data(), agent.writeCommunity.size());
            pdu->community_len = agent.writeCommunity.size();
        }
        for (const TSnmpVarbind& varbind : request.varbinds) {
            if (command == SNMP_MSG_SET)
                ZedSnmpAddVarbind(pdu, varbind);
            else
                ZedSnmpAddVarbind(pdu, TSnmpVarbind{varbind.oid, TSnmpDatum{}});
        }
        if (!snmp_sess_async_send(session, pdu, Callback, reinterpret_cast<void*>(key))) {
            snmp_free_pdu(pdu);
            End(key, TSnmpAnswer::Outcome::Failed, "cannot send to " + Who() + ": " + SessionFault(session));
        }
    }

    static int Callback(int operation, netsnmp_session* s, int, netsnmp_pdu* pdu, void* magic)
    {
        auto* self = static_cast<Impl*>(s->callback_magic);
        if (!self || self->closing)
            return 1;
        const auto key = reinterpret_cast<std::uint64_t>(magic);
        if (key == kProbeKey) {
            // A resend, or the security error the agent's report is (its
            // report follows as a message): the probe goes on.
            if (operation != NETSNMP_CALLBACK_OP_RESEND && operation != NETSNMP_CALLBACK_OP_SEC_ERROR)
                self->Probed(operation, pdu);
            return 1;
        }
        switch (operation) {
        case NETSNMP_CALLBACK_OP_RECEIVED_MESSAGE: self->Received(key, *pdu); break;
        case NETSNMP_CALLBACK_OP_TIMED_OUT: self->End(key, TSnmpAnswer::Outcome::Timeout, self->TimeoutReason()); break;
        case NETSNMP_CALLBACK_OP_SEND_FAILED:
            self->End(key, TSnmpAnswer::Outcome::Failed, "cannot send to " + self->Who());
            break;
        default: break;  // a resend, a security error whose report follows: the request goes on
        }
        return 1;
    }

    void Received(std::uint64_t key, const netsnmp_pdu& pdu)
    {
        if (pdu.command == SNMP_MSG_REPORT) {
            End(key, TSnmpAnswer::Outcome::Unauthorized, ReportReason(pdu));
            return;
        }
        TSnmpAnswer answer;
        answer.errorStatus = pdu.errstat;
        answer.errorIndex = pdu.errindex;
        for (const netsnmp_variable_list* v = pdu.variables; v; v = v->next_variable) {
            TSnmpVarbind varbind;
            varbind.oid.assign(v->name, v->name + v->name_length);
            varbind.datum = ZedSnmpDatumOf(*v);
            answer.varbinds.push_back(std::move(varbind));
        }
        if (const auto n = narrowing.find(key); n != narrowing.end())
            if (Narrow(key, n->second, answer))
                return;
        narrowing.erase(key);
        ended.emplace_back(key, std::move(answer));
    }

    // True when the request goes out again narrower; answer then holds the
    // whole answer when it does not.
    bool Narrow(std::uint64_t key, Narrowing& n, TSnmpAnswer& answer)
    {
        constexpr long kNoSuchName = 2;
        const auto at = static_cast<std::size_t>(answer.errorIndex);
        if (answer.errorStatus == kNoSuchName && at >= 1 && at <= n.request.varbinds.size()) {
            TSnmpDatum missing;
            missing.kind =
                n.request.operation == Operation::Get ? TSnmpDatum::Kind::NoSuchObject : TSnmpDatum::Kind::EndOfMibView;
            n.answers[n.positions[at - 1]].datum = missing;
            n.request.varbinds.erase(n.request.varbinds.begin() + static_cast<std::ptrdiff_t>(at - 1));
            n.positions.erase(n.positions.begin() + static_cast<std::ptrdiff_t>(at - 1));
            if (!n.request.varbinds.empty()) {
                Transmit(key, n.request);
                return true;
            }
            answer.errorStatus = answer.errorIndex = 0;
            answer.varbinds.clear();
        }
        if (answer.errorStatus == 0) {
            for (std::size_t i = 0; i < answer.varbinds.size() && i < n.positions.size(); ++i)
                n.answers[n.positions[i]] = std::move(answer.varbinds[i]);
            answer.varbinds = std::move(n.answers);
        }
        return false;
    }

    // ---- the event loop's turn ---------------------------------------------

    static void AddHandle(void* handle, ZedWaitSet& set)
    {
        if (!handle)
            return;
        if (netsnmp_transport* transport = snmp_sess_transport(handle); transport && transport->sock >= 0)
            set.descriptors.push_back(transport->sock);
        netsnmp_large_fd_set fds;
        netsnmp_large_fd_set_init(&fds, FD_SETSIZE);
        int count = 0;
        int block = 1;
        timeval wait{};
        snmp_sess_select_info2(handle, &count, &fds, &wait, &block);
        netsnmp_large_fd_set_cleanup(&fds);
        if (!block)
            set.WaitUntil(ZedWaitSet::Clock::now() + std::chrono::seconds(wait.tv_sec)
                          + std::chrono::microseconds(wait.tv_usec));
    }

    // Reads what waits for the handle: only what comes from the agent's
    // address and port reaches net-snmp. Anyone else on the path who guesses
    // a request's number would otherwise answer in the agent's name.
    void Turn(void* handle, const std::set<int>& readable)
    {
        if (!handle)
            return;
        netsnmp_transport* transport = snmp_sess_transport(handle);
        if (transport && readable.count(transport->sock)) {
            const auto peer = ZedSnmpPeerOf(transport);
            for (int read = 0; read < kMostReadsPerTurn && Readable(transport->sock); ++read) {
                if (peer) {
                    const auto sender = ZedSnmpPeekSender(transport->sock);
                    if (sender && !sender->Same(*peer)) {
                        RefuseForeign(transport->sock, *sender, *peer);
                        continue;
                    }
                }
                netsnmp_large_fd_set fds;
                netsnmp_large_fd_set_init(&fds, FD_SETSIZE);
                NETSNMP_LARGE_FD_SET(transport->sock, &fds);
                snmp_sess_read2(handle, &fds);
                netsnmp_large_fd_set_cleanup(&fds);
            }
        }
        snmp_sess_timeout(handle);
    }

    void RefuseForeign(int socket, const ZedSnmpEndpoint& sender, const ZedSnmpEndpoint& peer)
    {
        ZedSnmpDiscardDatagram(socket);
        ++foreignAnswers;
        std::uint64_t held = 0;
        const bool write = traced.Allow("foreign", &held);
        if (held)
            TTraceStream(ZED_TRACE_SNMP | 1)
                << Who() << ": " << held << " more answers from elsewhere refused in a second, not traced" << endl;
        if (write)
            TTraceStream(ZED_TRACE_SNMP | 1) << Who() << ": an answer from " << sender.Text() << " refused: only "
                                             << peer.Text() << " answers for the agent" << endl;
    }

    void ProcessReady(const std::set<int>& readable)
    {
        Turn(probe, readable);
        if (probeDone && probe) {
            snmp_sess_close(probe);
            probe = nullptr;
        }
        probeDone = false;
        Turn(session, readable);
        if (session && !queued.empty())
            Flush();
        auto done = std::move(ended);
        ended.clear();
        for (auto& [key, answer] : done) {
            auto it = wanted.find(key);
            if (it == wanted.end())
                continue;
            Done callback = std::move(it->second);
            wanted.erase(it);
            callback(std::move(answer));
        }
    }
};

TSnmpSession::TSnmpSession(TSnmpAgent agent) : m_pImpl(std::make_unique<Impl>(std::move(agent))) {}

TSnmpSession::~TSnmpSession() = default;

const TSnmpAgent& TSnmpSession::GetAgent() const { return m_pImpl->agent; }

std::uint64_t TSnmpSession::Send(Operation operation, std::vector<TSnmpVarbind> varbinds, Done done, int maxRepetitions)
{
    Impl& d = *m_pImpl;
    const std::uint64_t key = d.nextKey++;
    d.wanted.emplace(key, std::move(done));
    Impl::Request request{operation, std::move(varbinds), maxRepetitions};
    if (d.session) {
        d.Transmit(key, request);
    } else {
        d.queued.emplace(key, std::move(request));
        d.Open();
    }
    return key;
}

void TSnmpSession::Forget(std::uint64_t key)
{
    m_pImpl->wanted.erase(key);
    m_pImpl->queued.erase(key);
    m_pImpl->narrowing.erase(key);
}

bool TSnmpSession::IsBusy() const { return !m_pImpl->wanted.empty(); }

std::uint64_t TSnmpSession::GetForeignAnswers() const { return m_pImpl->foreignAnswers; }

void TSnmpSession::AddWaitSet(ZedWaitSet& set) const
{
    Impl::AddHandle(m_pImpl->probe, set);
    Impl::AddHandle(m_pImpl->session, set);
    if (!m_pImpl->ended.empty())
        set.WaitUntil(ZedWaitSet::Clock::now());
}

void TSnmpSession::ProcessReady(const std::set<int>& readable) { m_pImpl->ProcessReady(readable); }
