// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpModule.h"
#include "zed/dict/ZedDirectiveNames.h"

#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/ZedText.h"
#include "zed/call/TCallAnswers.h"
#include "zed/snmp/TSnmpAnswers.h"
#include "zed/snmp/TSnmpCallBook.h"
#include "zed/snmp/TSnmpEventReports.h"
#include "zed/snmp/TSnmpIndex.h"
#include "zed/snmp/TSnmpJobs.h"
#include "zed/snmp/TSnmpKeys.h"
#include "zed/snmp/TSnmpOidNames.h"
#include "zed/snmp/TSnmpReceiver.h"
#include "zed/snmp/TSnmpSession.h"
#include "zed/snmp/TSnmpValue.h"
#include "zed/snmp/TSnmpWalk.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/trace/TTraceStream.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TValueParser.h"

#include <algorithm>
#include <map>

namespace {

constexpr long kCreateAndGo = 4;
constexpr long kDestroy = 6;

// Why a notification nothing reports is counted.
constexpr const char* kNoEvent = "no event of the dictionary reports it";

using Kind = TDictSnmpClass::Kind;

// What a call names on one agent: the agent or its scalars, one row of a
// table, or every row.
enum class Shape { Single, Row, Rows };

void Set(const TSnmpJob& job) { ZedSnmpWrite(job, std::nullopt); }
void Create(const TSnmpJob& job) { ZedSnmpWrite(job, kCreateAndGo); }
void Delete(const TSnmpJob& job)
{
    const TRequest none;
    ZedSnmpWrite({job.book, job.ticket, job.call, job.target, none, job.answers}, kDestroy);
}

// How each directive is carried out on what it names; what is not here is
// not carried out over SNMP.
struct Route {
    std::string_view directive;
    Shape shape;
    void (*run)(const TSnmpJob&);
};
constexpr Route kRoutes[] = {
    {ZedDirective::kShow, Shape::Single, ZedSnmpGet},    {ZedDirective::kSet, Shape::Single, Set},
    {ZedDirective::kShow, Shape::Row, ZedSnmpGet},       {ZedDirective::kSet, Shape::Row, Set},
    {ZedDirective::kCreate, Shape::Row, Create},         {ZedDirective::kDelete, Shape::Row, Delete},
    {ZedDirective::kShow, Shape::Rows, ZedSnmpWalkRows},
};

const Route* RouteOf(const std::string& directive, Shape shape)
{
    for (const Route& route : kRoutes)
        if (route.directive == directive && route.shape == shape)
            return &route;
    return nullptr;
}

}  // namespace

struct TSnmpModule::Impl {
    TDictionaryPtr dictionary;
    TSnmpAgents agents;
    std::vector<std::unique_ptr<TSnmpSession>> sessions;  // one per agent, in the file's order
    std::unique_ptr<TSnmpReceiver> receiver;
    TSnmpOidNames names;        // what the dictionary calls an OID
    TSnmpAnswers answers;       // what the agents' answers become
    TSnmpEventReports reports;  // what the notifications become
    TSnmpCallBook book;
    std::vector<TCallResult> events;
    TSnmpNotificationCounts counts;  // the module's own: events dropped, notifications no event reports
    EventListener listener;
    TCallTicket nextOwnTicket = ~TCallTicket(0);

    Impl(TDictionaryPtr d, TSnmpAgents a)
        : dictionary(std::move(d)), agents(std::move(a)), names(*dictionary), answers(*dictionary, names),
          reports(dictionary, names), book(agents.callRows, agents.callBytes)
    {
        for (const TSnmpAgent& agent : agents.agents)
            sessions.push_back(std::make_unique<TSnmpSession>(agent));
    }

    // Where on the agent the entity points: its shape, and a row's name and
    // index; the exception when it points at nothing.
    std::optional<TCallResult> Aim(const TEntitySpec& entity, TSnmpTarget& target, Shape& shape) const
    {
        const TDictClass& cls = *target.cls;
        target.depth = entity.GetDepth() - 1;
        if (cls.GetSnmp()->kind != Kind::Table) {
            if (cls.GetSnmp()->kind == Kind::Scalars)
                target.entity = target.entity.WithInstance(target.depth, "0");
            shape = Shape::Single;
            return std::nullopt;
        }
        const auto& component = entity.GetComponent(target.depth);
        if (component.kind == TEntitySpec::Instance::Wildcard) {
            shape = Shape::Rows;
            return std::nullopt;
        }
        if (component.kind != TEntitySpec::Instance::Named)
            return ZedAnswer::Common(target.entity, ZED_COMMON_NO_SUCH_ENTITY, "name a row of " + cls.GetName());
        std::string why;
        const TSnmpIndex index = TSnmpIndex::Of(cls);
        const auto suffix = index.Encode(component.name, &why);
        if (!suffix)
            return ZedAnswer::Common(target.entity, ZED_COMMON_NO_SUCH_ENTITY,
                                     "no " + cls.GetName() + " is named \"" + component.name + "\": " + why);
        shape = Shape::Row;
        target.instance = component.name;
        target.index = *suffix;
        target.parts = index.Decode(*suffix).value_or(std::vector<std::string>{});
        return std::nullopt;
    }

    // Why the directive is not carried out on what it names.
    static TCallResult Unrouted(const TSnmpTarget& target, Shape shape)
    {
        const std::string& name = target.directive->GetName();
        const std::string& cls = target.cls->GetName();
        if (shape == Shape::Rows)
            return ZedAnswer::Common(target.entity, ZED_COMMON_INVALID_REQUEST,
                                     name + " names one row of " + cls + ", not every row");
        if (shape == Shape::Row && (name == ZedDirective::kCreate || name == ZedDirective::kDelete))
            return ZedAnswer::Common(target.entity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED,
                                     cls + " rows cannot be " + (name == ZedDirective::kCreate ? "created" : "deleted")
                                         + " over SNMP: the table has no RowStatus column");
        return ZedAnswer::Common(target.entity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED,
                                 name + " is not carried out on " + cls + " over SNMP");
    }

    // One agent's part of a call.
    void Launch(TCallTicket ticket, TSnmpCall& call, std::size_t agent, const TEntitySpec& entity,
                const TDictClass& cls, const TDictDirective& directive, const TRequest& request)
    {
        TSnmpSession& session = *sessions[agent];
        TSnmpTarget target;
        target.session = &session;
        target.entity = entity.WithInstance(0, session.GetAgent().name);
        target.cls = &cls;
        target.directive = &directive;
        Shape shape = Shape::Single;
        if (auto refused = Aim(entity, target, shape))
            return call.Now(std::move(*refused));
        const Route* route = RouteOf(directive.GetName(), shape);
        const bool rowStatusNeeded = route && (route->run == Create || route->run == Delete);
        if (!route || (rowStatusNeeded && cls.GetSnmp()->rowStatus == 0))
            return call.Now(Unrouted(target, shape));
        route->run({book, ticket, call, std::move(target), request, answers});
    }

    // The agents a call names: every one for a wildcard; none (and the
    // exception said in the call) when it names none of the file's.
    std::vector<std::size_t> AgentsOf(const TEntitySpec& entity, TSnmpCall& call) const
    {
        const auto& agent = entity.GetComponent(0);
        std::vector<std::size_t> named;
        for (std::size_t i = 0; i < sessions.size(); ++i)
            if (agent.kind == TEntitySpec::Instance::Wildcard
                || (agent.kind == TEntitySpec::Instance::Named && sessions[i]->GetAgent().name == agent.name))
                named.push_back(i);
        if (agent.kind == TEntitySpec::Instance::Named && named.empty())
            call.Now(ZedAnswer::Common(entity, ZED_COMMON_NO_SUCH_ENTITY,
                                       "the agents file names no agent \"" + agent.name + "\""));
        else if (agent.kind != TEntitySpec::Instance::Named && agent.kind != TEntitySpec::Instance::Wildcard)
            call.Now(ZedAnswer::Common(entity, ZED_COMMON_NO_SUCH_ENTITY, "name an agent"));
        return named;
    }

    void Start(TCallTicket ticket, const TEntitySpec& entity, unsigned int directiveId, const TRequest& request,
               Completion done)
    {
        TSnmpCall& call = book.Open(ticket, entity, std::move(done));
        const TDictClass* cls = dictionary->FindClass(entity.GetEntityClass());
        const TDictDirective* directive = cls ? cls->FindDirective(directiveId) : nullptr;
        const TDictClass* top = entity.GetDepth() ? dictionary->FindClass(TEntityClass({entity.GetCode(0)})) : nullptr;
        if (!cls || !cls->GetSnmp() || !top || !top->GetSnmp() || top->GetSnmp()->kind != Kind::Agent
            || entity.GetDepth() > 2)
            call.Now(ZedAnswer::Common(entity, ZED_COMMON_NO_SUCH_ENTITY, "no SNMP object stands for this entity"));
        else if (!directive || directiveId == ZED_COMMON_EXCEPTION_DIRECTIVE)
            call.Now(ZedAnswer::Common(entity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED));
        else
            for (std::size_t agent : AgentsOf(entity, call))
                Launch(ticket, call, agent, entity, *cls, *directive, request);
        book.CompleteIfDone(ticket);
    }

    // ---- notifications -----------------------------------------------------

    void Report(const TSnmpNotification& notification)
    {
        if (auto made = reports.Make(notification)) {
            Queue(made->entity, std::move(made->report));
            return;
        }
        counts.Refuse(kNoEvent);
        TTraceStream(ZED_TRACE_SNMP | 1) << "notification " << ZedOidText(notification.trap) << " from agent "
                                         << notification.agent << ": " << kNoEvent << endl;
    }

    // Events wait, at most the agents file's bound of them, to be taken.
    void Queue(const TEntitySpec& entity, std::unique_ptr<TEventReport> report)
    {
        const unsigned int event = report->GetEventID();
        TReply reply(ZED_REPLY_RESPONSE, event);
        reply.Add(std::move(report));
        events.push_back(ZedAnswer::Result(entity, std::move(reply), ZED_STATUS_RESPONSE));
        if (events.size() > agents.mostWaiting) {
            const std::size_t excess = events.size() - agents.mostWaiting;
            events.erase(events.begin(), events.begin() + static_cast<std::ptrdiff_t>(excess));
            counts.dropped += excess;
        }
    }

    // ---- turns -------------------------------------------------------------

    void AddWaitSet(ZedWaitSet& set) const
    {
        for (const auto& session : sessions)
            session->AddWaitSet(set);
        if (receiver)
            receiver->AddWaitSet(set);
        if (book.HasFinished())
            set.WaitUntil(ZedWaitSet::Clock::now());
    }

    void ProcessReady()
    {
        ZedWaitSet set;
        AddWaitSet(set);
        const std::set<int> readable = ZedWait(set, std::chrono::milliseconds(0));
        for (const auto& session : sessions)
            session->ProcessReady(readable);
        if (receiver)
            for (const TSnmpNotification& notification : receiver->ProcessReady(readable))
                Report(notification);
        book.CompleteFinished();
        if (listener)
            for (const TCallResult& event : std::exchange(events, {}))
                listener(event);
    }
};

TSnmpModule::TSnmpModule(TDictionaryPtr dictionary, TSnmpAgents agents, bool receive)
{
    ZedSnmpInitLibrary();
    for (TSnmpAgent& agent : agents.agents)
        ZedSnmpSealKeys(agent);
    m_pImpl = std::make_unique<Impl>(std::move(dictionary), std::move(agents));
    if (receive)
        m_pImpl->receiver = std::make_unique<TSnmpReceiver>(m_pImpl->agents.receiverAddress, m_pImpl->agents.agents);
    // The sessions and the receiver hold what keys they need: the module's
    // own list of agents keeps none.
    for (TSnmpAgent& agent : m_pImpl->agents.agents)
        agent.keys.reset();
}

TSnmpModule::~TSnmpModule() = default;

const TSnmpAgents& TSnmpModule::GetAgents() const { return m_pImpl->agents; }

std::string TSnmpModule::GetReceiverAddress() const
{
    return m_pImpl->receiver ? m_pImpl->receiver->GetAddress() : std::string();
}

std::vector<TCallResult> TSnmpModule::Execute(const TEntitySpec& entity, unsigned int directive,
                                              const TRequest& request)
{
    std::optional<std::vector<TCallResult>> results;
    const TCallTicket ticket = m_pImpl->nextOwnTicket--;
    Start(ticket, entity, directive, request, [&results](std::vector<TCallResult> r) { results = std::move(r); });
    while (!results) {
        ZedWaitSet set;
        AddWaitSet(set);
        ZedWait(set);
        ProcessReady();
    }
    return std::move(*results);
}

void TSnmpModule::Start(TCallTicket ticket, const TEntitySpec& entity, unsigned int directive, const TRequest& request,
                        Completion done)
{
    m_pImpl->Start(ticket, entity, directive, request, std::move(done));
}

void TSnmpModule::Cancel(TCallTicket ticket) { m_pImpl->book.Cancel(ticket); }

void TSnmpModule::AddWaitSet(ZedWaitSet& set) const { m_pImpl->AddWaitSet(set); }

void TSnmpModule::ProcessReady() { m_pImpl->ProcessReady(); }

TSnmpNotificationCounts TSnmpModule::GetNotificationCounts() const
{
    TSnmpNotificationCounts counts = m_pImpl->receiver ? m_pImpl->receiver->GetCounts() : TSnmpNotificationCounts{};
    for (const auto& [reason, count] : m_pImpl->counts.refused)
        counts.refused[reason] += count;
    counts.dropped += m_pImpl->counts.dropped;
    return counts;
}

void TSnmpModule::NameOids(const std::vector<std::pair<ZedOid, std::string>>& names)
{
    for (const auto& [oid, name] : names)
        m_pImpl->names.Name(oid, name);
}

std::vector<TCallResult> TSnmpModule::TakeEvents() { return std::exchange(m_pImpl->events, {}); }

void TSnmpModule::SetEventListener(EventListener listener) { m_pImpl->listener = std::move(listener); }

std::shared_ptr<TSnmpModule> TSnmpModule::Install(const std::string& dictionaryPath, const std::string& agentsPath,
                                                  bool receive)
{
    TDictionaryPtr dictionary = TDictionary::Load(dictionaryPath);
    auto module = std::make_shared<TSnmpModule>(dictionary, ZedReadAgentsFile(agentsPath), receive);
    ZEDGetApplication()->SetDictionary(dictionary);
    ZEDGetApplication()->SetDefaultModule(module);
    return module;
}
