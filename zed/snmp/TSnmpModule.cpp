// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpModule.h"
#include "zed/dict/ZedDirectiveNames.h"

#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/ZedText.h"
#include "zed/call/TCallAnswers.h"
#include "zed/snmp/TSnmpEventReports.h"
#include "zed/snmp/TSnmpIndex.h"
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

// Why a notification nothing reports is counted.
constexpr const char* kNoEvent = "no event of the dictionary reports it";
constexpr long kDestroy = 6;

using Kind = TDictSnmpClass::Kind;

ZedOid Joined(ZedOid oid, const ZedOid& tail)
{
    oid.insert(oid.end(), tail.begin(), tail.end());
    return oid;
}

TSnmpDatum NoSuchInstance()
{
    TSnmpDatum datum;
    datum.kind = TSnmpDatum::Kind::NoSuchInstance;
    return datum;
}

}  // namespace

struct TSnmpModule::Impl {
    TDictionaryPtr dictionary;
    TSnmpAgents agents;
    std::vector<std::unique_ptr<TSnmpSession>> sessions;  // one per agent, in the file's order
    std::unique_ptr<TSnmpReceiver> receiver;
    TSnmpOidNames names;        // what the dictionary calls an OID
    TSnmpEventReports reports;  // what the notifications become
    std::vector<TCallResult> events;
    TSnmpNotificationCounts counts;  // the module's own: events dropped, notifications no event reports
    EventListener listener;

    // A call in flight: one part per agent asked (or per fault found at once).
    struct Call {
        TEntitySpec entity;
        Completion done;
        std::vector<std::vector<TCallResult>> parts;
        std::size_t open = 0;
        std::vector<std::pair<TSnmpSession*, std::uint64_t>> requests;
        std::vector<std::unique_ptr<TSnmpWalk>> walks;
        std::shared_ptr<TSnmpWalk::Budget> budget;  // what its walks read together
    };
    std::map<TCallTicket, std::unique_ptr<Call>> calls;
    std::vector<TCallTicket> finished;
    TCallTicket nextOwnTicket = ~TCallTicket(0);

    // What one agent is asked, and how its answer is read.
    struct Target {
        TSnmpSession* session;
        TEntitySpec entity;     // the agent's (or row's) specification
        const TDictClass* cls;  // the class asked about
        const TDictDirective* directive;
        std::string instance;  // a row's name (tables)
    };

    Impl(TDictionaryPtr d, TSnmpAgents a)
        : dictionary(std::move(d)), agents(std::move(a)), names(*dictionary), reports(dictionary, names)
    {
        for (const TSnmpAgent& agent : agents.agents)
            sessions.push_back(std::make_unique<TSnmpSession>(agent));
    }

    std::string NameOf(const ZedOid& oid) const { return names.NameOf(oid); }

    std::string Who(const TSnmpSession& session) const
    {
        return "agent " + session.GetAgent().name + " (" + session.GetAgent().address + ")";
    }

    // ---- what is asked -----------------------------------------------------

    // The OID of an attribute's object in an instance (".0" for scalars).
    static ZedOid ObjectOf(const TDictClass& cls, const TDictAttribute& attribute, const ZedOid& index)
    {
        const TDictSnmpColumn& column = *attribute.GetSnmp();
        ZedOid oid = column.entry.empty() ? cls.GetSnmp()->oid : column.entry;
        oid.push_back(column.column);
        if (cls.GetSnmp()->kind == Kind::Table)
            return Joined(std::move(oid), index);
        oid.push_back(0);
        return oid;
    }

    static bool IsIndex(const TDictClass& cls, const TDictAttribute& attribute)
    {
        const auto& index = cls.GetSnmp()->index;
        return std::find(index.begin(), index.end(), attribute.GetID()) != index.end();
    }

    // The attributes a Show asks for: bound ones of the partition asked
    // ("Partition" argument; 0 or none: all), index columns apart (a row's
    // name holds them).
    std::vector<const TDictAttribute*> Asked(const TDictClass& cls, const TDictDirective& directive,
                                             const TRequest& request) const
    {
        unsigned int partition = 0;
        if (const TDictArgument* argument = directive.FindRequestArgument(std::string(ZedDirective::kPartition)))
            if (const TValue* value = request.Find(argument->GetID());
                value && value->IsPresent() && !value->IsDefault() && value->GetDatatype() == ZED_DT_ENUMERATION)
                partition = static_cast<unsigned int>(static_cast<const TEnumeration&>(*value).GetCode());
        std::vector<const TDictAttribute*> asked;
        for (const TDictAttribute& attribute : cls.GetAttributes())
            if (attribute.GetSnmp() && !IsIndex(cls, attribute)
                && (partition == 0 || attribute.GetPartition() == partition))
                asked.push_back(&attribute);
        return asked;
    }

    // ---- answers -----------------------------------------------------------

    TValuePtr ValueOf(const TDictAttribute& attribute, const TSnmpDatum& datum, const std::string& where) const
    {
        if (datum.IsException() || datum.kind == TSnmpDatum::Kind::Null) {
            TValuePtr missing = ZEDMakeValue(attribute.GetType(), attribute.GetID());
            missing->SetReason(datum.kind == TSnmpDatum::Kind::NoSuchObject ? ZED_REASON_NOT_IMPLEMENTED
                                                                            : ZED_REASON_NOT_AVAILABLE);
            return missing;
        }
        std::string why;
        TValuePtr value = ZedSnmpToValue(datum, attribute.GetType(), attribute.GetSnmp()->syntax, attribute.GetID(),
                                         &why, [this](const ZedOid& oid) { return NameOf(oid); });
        if (!value) {
            TTraceStream(ZED_TRACE_SNMP | 1) << where << ": " << attribute.GetName() << ": " << why << endl;
            value = ZEDMakeValue(attribute.GetType(), attribute.GetID());
            value->SetReason(ZED_REASON_INVALID_VALUE, ZedEscapeControls(why));
        }
        return value;
    }

    // The value of each attribute asked for, found in the answer by its
    // object's OID: an agent may answer in another order or leave an object
    // out, and a value is never put under another attribute's name.
    void AddAnswered(TAttributeList& list, const std::vector<const TDictAttribute*>& asked,
                     const std::vector<TSnmpVarbind>& sent, const TSnmpAnswer& answer, const std::string& who) const
    {
        std::map<ZedOid, const TSnmpDatum*> answered;
        for (const TSnmpVarbind& varbind : answer.varbinds)
            answered.emplace(varbind.oid, &varbind.datum);
        for (std::size_t i = 0; i < asked.size() && i < sent.size(); ++i) {
            const TDictAttribute& attribute = *asked[i];
            const TAttributeID id(attribute.GetID(), attribute.GetName());
            if (const auto found = answered.find(sent[i].oid); found != answered.end()) {
                list.Add(TAttribute(id, ValueOf(attribute, *found->second, who)));
                continue;
            }
            TTraceStream(ZED_TRACE_SNMP | 1)
                << who << " did not return " << attribute.GetName() << " (" << ZedOidText(sent[i].oid) << ")" << endl;
            TValuePtr missing = ZEDMakeValue(attribute.GetType(), attribute.GetID());
            missing->SetReason(ZED_REASON_NOT_AVAILABLE, "not returned by the agent");
            list.Add(TAttribute(id, std::move(missing)));
        }
    }

    // The index columns' values out of a row's name.
    void AddIndex(TAttributeList& list, const TDictClass& cls, const std::vector<std::string>& parts) const
    {
        const auto& index = cls.GetSnmp()->index;
        for (std::size_t i = 0; i < index.size() && i < parts.size(); ++i) {
            const TDictAttribute& attribute = *cls.FindAttribute(index[i]);
            if (TValuePtr value =
                    ZEDParseValue(attribute.GetType(), parts[i], attribute.GetID(), {dictionary.get(), &cls}))
                list.Add(TAttribute(TAttributeID(attribute.GetID(), attribute.GetName()), std::move(value)));
        }
    }

    TCallResult Attributes(const Target& target, std::unique_ptr<TAttributeList> list) const
    {
        ZedNamedValues values;
        values.emplace_back("Attributes", std::move(list));
        return ZedAnswer::Response(target.entity, *target.directive, std::move(values));
    }

    // How a request that was not answered as asked ends: none when it was.
    std::optional<TCallResult> Refusal(const Target& target, const TSnmpAnswer& answer, const char* operation,
                                       const std::vector<const TDictAttribute*>& named,
                                       const std::vector<TSnmpVarbind>& sent) const
    {
        const std::string who = Who(*target.session);
        switch (answer.outcome) {
        case TSnmpAnswer::Outcome::Timeout:
            return ZedAnswer::Common(target.entity, ZED_COMMON_NO_ANSWER, answer.reason);
        case TSnmpAnswer::Outcome::Unauthorized:
            return ZedAnswer::Common(target.entity, ZED_COMMON_NOT_AUTHORIZED, who + " refused us: " + answer.reason);
        case TSnmpAnswer::Outcome::Failed:
            return ZedAnswer::Common(target.entity, ZED_COMMON_AGENT_ERROR, answer.reason);
        case TSnmpAnswer::Outcome::Response: break;
        }
        if (answer.errorStatus == 0)
            return std::nullopt;
        std::string object;
        if (answer.errorIndex >= 1 && static_cast<std::size_t>(answer.errorIndex) <= sent.size()) {
            const std::size_t at = static_cast<std::size_t>(answer.errorIndex) - 1;
            object =
                (at < named.size() ? named[at]->GetName() + " " : std::string()) + "(" + ZedOidText(sent[at].oid) + ")";
        }
        const bool refusedWho = answer.errorStatus == 6 || answer.errorStatus == 16;  // noAccess, authorizationError
        return ZedAnswer::Common(target.entity, refusedWho ? ZED_COMMON_NOT_AUTHORIZED : ZED_COMMON_AGENT_ERROR,
                                 who + " refused the " + operation + (object.empty() ? "" : " of " + object) + ": "
                                     + ZedSnmpErrorStatusName(answer.errorStatus));
    }

    // What the call's walks over every agent read together.
    std::shared_ptr<TSnmpWalk::Budget> Budget(Call& call) const
    {
        if (!call.budget) {
            call.budget = std::make_shared<TSnmpWalk::Budget>();
            call.budget->mostRows = agents.callRows;
            call.budget->mostBytes = agents.callBytes;
        }
        return call.budget;
    }

    // The list's last word when it is not the whole table: why, and how many
    // rows it does hold.
    TCallResult Incomplete(const Target& target, std::size_t rows, const std::string& bound,
                           std::size_t unreadable) const
    {
        std::string reason = Who(*target.session) + ": the list of " + target.cls->GetName() + " is incomplete ("
                             + std::to_string(rows) + (rows == 1 ? " row" : " rows") + " shown)";
        if (!bound.empty())
            reason += ": " + bound;
        if (unreadable)
            reason += std::string(bound.empty() ? ": " : "; ") + std::to_string(unreadable)
                      + (unreadable == 1 ? " row was left out, its index" : " rows were left out, their indexes")
                      + " not one of " + target.cls->GetName();
        TTraceStream(ZED_TRACE_SNMP | 1) << reason << endl;
        return ZedAnswer::Common(target.entity, ZED_COMMON_LIST_INCOMPLETE, reason);
    }

    // ---- the call's bookkeeping --------------------------------------------

    std::size_t Reserve(Call& call)
    {
        call.parts.emplace_back();
        ++call.open;
        return call.parts.size() - 1;
    }

    void Finish(TCallTicket ticket, std::size_t part, std::vector<TCallResult> results)
    {
        const auto it = calls.find(ticket);
        if (it == calls.end())
            return;
        it->second->parts[part] = std::move(results);
        if (--it->second->open == 0)
            finished.push_back(ticket);
    }

    void Now(Call& call, TCallResult result)
    {
        call.parts.emplace_back();
        call.parts.back().push_back(std::move(result));
    }

    void Complete(TCallTicket ticket)
    {
        const auto it = calls.find(ticket);
        if (it == calls.end())
            return;
        std::unique_ptr<Call> call = std::move(it->second);
        calls.erase(it);
        std::vector<TCallResult> results;
        for (auto& part : call->parts)
            for (auto& result : part)
                results.push_back(std::move(result));
        if (results.empty())
            results.push_back(ZedAnswer::Common(call->entity, ZED_COMMON_NO_SUCH_ENTITY, "no instance answered"));
        call->done(std::move(results));
    }

    // ---- directives --------------------------------------------------------

    void Get(TCallTicket ticket, Call& call, Target target, const TRequest& request, const ZedOid& index,
             const std::vector<std::string>& parts)
    {
        std::vector<const TDictAttribute*> asked = Asked(*target.cls, *target.directive, request);
        std::vector<TSnmpVarbind> varbinds;
        for (const TDictAttribute* attribute : asked)
            varbinds.push_back(TSnmpVarbind{ObjectOf(*target.cls, *attribute, index), {}});
        if (varbinds.empty()) {
            auto list = std::make_unique<TAttributeList>();
            AddIndex(*list, *target.cls, parts);
            Now(call, Attributes(target, std::move(list)));
            return;
        }
        const std::size_t part = Reserve(call);
        const bool row = target.cls->GetSnmp()->kind == Kind::Table;
        auto sent = varbinds;
        const std::uint64_t key = target.session->Send(
            TSnmpSession::Operation::Get, std::move(varbinds),
            [this, ticket, part, target, asked, sent, parts, row](TSnmpAnswer answer) {
                if (auto refused = Refusal(target, answer, "Get", asked, sent)) {
                    Finish(ticket, part, {std::move(*refused)});
                    return;
                }
                const bool none = std::all_of(answer.varbinds.begin(), answer.varbinds.end(),
                                              [](const TSnmpVarbind& v) { return v.datum.IsException(); });
                if (row && none) {
                    Finish(ticket, part,
                           {ZedAnswer::Common(target.entity, ZED_COMMON_NO_SUCH_ENTITY,
                                              Who(*target.session) + " has no " + target.cls->GetName() + " "
                                                  + target.instance)});
                    return;
                }
                auto list = std::make_unique<TAttributeList>();
                AddIndex(*list, *target.cls, parts);
                AddAnswered(*list, asked, sent, answer, Who(*target.session));
                Finish(ticket, part, {Attributes(target, std::move(list))});
            });
        call.requests.emplace_back(target.session, key);
    }

    void Walk(TCallTicket ticket, Call& call, Target target, const TRequest& request, std::size_t depth)
    {
        const TDictClass& cls = *target.cls;
        std::vector<const TDictAttribute*> asked = Asked(cls, *target.directive, request);
        // A partition of index columns only: the rows are still found by a column.
        std::vector<const TDictAttribute*> walked = asked;
        if (walked.empty())
            for (const TDictAttribute& attribute : cls.GetAttributes())
                if (attribute.GetSnmp() && (walked.empty() || !IsIndex(cls, attribute)))
                    walked.assign(1, &attribute);
        std::vector<ZedOid> columns;
        for (const TDictAttribute* attribute : walked)
            columns.push_back(ObjectOf(cls, *attribute, {}));
        const std::size_t part = Reserve(call);
        const TSnmpIndex index = TSnmpIndex::Of(cls);
        const TSnmpAgent& agent = target.session->GetAgent();
        auto walk = std::make_unique<TSnmpWalk>(
            *target.session, std::move(columns),
            TSnmpWalk::Bounds{agent.walkRows, agent.walkBytes, agent.walkTime, Budget(call)},
            [this, ticket, part, target, asked, walked, index, depth](TSnmpWalk::Ending ending, TSnmpWalk::Rows rows) {
                std::vector<TCallResult> results;
                std::size_t unreadable = 0;
                for (auto& [suffix, cells] : rows) {
                    const auto parts = index.Decode(suffix);
                    if (!parts) {
                        TTraceStream(ZED_TRACE_SNMP | 1)
                            << Who(*target.session) << ": a row of " << target.cls->GetName() << " whose index "
                            << ZedOidText(suffix) << " does not fit" << endl;
                        ++unreadable;
                        continue;
                    }
                    Target row = target;
                    row.entity = target.entity.WithInstance(depth, TSnmpIndex::Join(*parts));
                    auto list = std::make_unique<TAttributeList>();
                    AddIndex(*list, *target.cls, *parts);
                    if (!asked.empty())
                        for (std::size_t c = 0; c < walked.size(); ++c)
                            list->Add(TAttribute(
                                TAttributeID(walked[c]->GetID(), walked[c]->GetName()),
                                ValueOf(*walked[c], cells[c].value_or(NoSuchInstance()), Who(*target.session))));
                    results.push_back(Attributes(row, std::move(list)));
                }
                if (ending.failure)
                    if (auto refused = Refusal(target, *ending.failure, "GetBulk", {}, {}))
                        results.push_back(std::move(*refused));
                if (!ending.bound.empty() || unreadable)
                    results.push_back(Incomplete(target, results.size(), ending.bound, unreadable));
                Finish(ticket, part, std::move(results));
            });
        call.walks.push_back(std::move(walk));
        call.walks.back()->Start();
    }

    // Set, Create and Delete: one Set PDU of the request's attributes, and
    // for Create and Delete the RowStatus.
    void Write(TCallTicket ticket, Call& call, Target target, const TRequest& request, const ZedOid& index,
               std::optional<long> rowStatus)
    {
        const TDictClass& cls = *target.cls;
        std::vector<const TDictAttribute*> named;
        std::vector<TSnmpVarbind> varbinds;
        if (target.directive->TakesAttributes()) {
            for (std::size_t i = 0; i < request.Size(); ++i) {
                const TValue& value = request.At(i);
                const TDictAttribute* attribute = cls.FindAttribute(value.GetID());
                // A row's index columns are set by its name.
                if (!attribute || (cls.GetSnmp()->kind == Kind::Table && IsIndex(cls, *attribute)))
                    continue;
                std::string why;
                if (!attribute->GetSnmp())
                    why = "the attribute " + attribute->GetName() + " has no SNMP object";
                else if (value.IsDefault())
                    why = "an SNMP agent keeps no default for " + attribute->GetName() + ": give a value";
                std::optional<TSnmpDatum> datum;
                if (why.empty() && !(datum = ZedSnmpFromValue(value, attribute->GetSnmp()->syntax, &why)))
                    why = attribute->GetName() + ": " + why;
                if (!why.empty()) {
                    Now(call, ZedAnswer::Common(target.entity, ZED_COMMON_INVALID_REQUEST, why));
                    return;
                }
                named.push_back(attribute);
                varbinds.push_back(TSnmpVarbind{ObjectOf(cls, *attribute, index), std::move(*datum)});
            }
        }
        if (rowStatus) {
            const TDictAttribute& status = *cls.FindAttribute(cls.GetSnmp()->rowStatus);
            named.push_back(&status);
            TSnmpDatum datum;
            datum.kind = TSnmpDatum::Kind::Integer;
            datum.integer = *rowStatus;
            varbinds.push_back(TSnmpVarbind{ObjectOf(cls, status, index), datum});
        }
        if (varbinds.empty()) {
            Now(call, ZedAnswer::Response(target.entity, *target.directive, {}));
            return;
        }
        const std::size_t part = Reserve(call);
        auto sent = varbinds;
        const std::uint64_t key = target.session->Send(
            TSnmpSession::Operation::Set, std::move(varbinds),
            [this, ticket, part, target, named, sent, rowStatus](TSnmpAnswer answer) {
                if (auto refused = Refusal(target, answer, ZedDirective::kSet, named, sent)) {
                    Finish(ticket, part, {std::move(*refused)});
                    return;
                }
                if (rowStatus) {
                    Finish(ticket, part, {ZedAnswer::Response(target.entity, *target.directive, {})});
                    return;
                }
                auto list = std::make_unique<TAttributeList>();
                AddAnswered(*list, named, sent, answer, Who(*target.session));
                Finish(ticket, part, {Attributes(target, std::move(list))});
            });
        call.requests.emplace_back(target.session, key);
    }

    // One agent's part of a call.
    void Launch(TCallTicket ticket, Call& call, std::size_t agent, const TEntitySpec& entity, const TDictClass& cls,
                const TDictDirective& directive, const TRequest& request)
    {
        TSnmpSession& session = *sessions[agent];
        const TEntitySpec agentEntity = entity.WithInstance(0, session.GetAgent().name);
        Target target{&session, agentEntity, &cls, &directive, {}};
        const std::string& name = directive.GetName();
        const Kind kind = cls.GetSnmp()->kind;
        const std::size_t depth = entity.GetDepth() - 1;

        if (kind != Kind::Table) {
            if (kind == Kind::Scalars)
                target.entity = agentEntity.WithInstance(depth, "0");
            if (name == ZedDirective::kShow)
                Get(ticket, call, target, request, {}, {});
            else if (name == ZedDirective::kSet)
                Write(ticket, call, target, request, {}, std::nullopt);
            else
                Now(call, ZedAnswer::Common(target.entity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED,
                                            name + " is not carried out on " + cls.GetName() + " over SNMP"));
            return;
        }

        const auto& component = entity.GetComponent(depth);
        if (component.kind == TEntitySpec::Instance::Wildcard) {
            if (name == ZedDirective::kShow)
                Walk(ticket, call, target, request, depth);
            else
                Now(call, ZedAnswer::Common(agentEntity, ZED_COMMON_INVALID_REQUEST,
                                            name + " names one row of " + cls.GetName() + ", not every row"));
            return;
        }
        if (component.kind != TEntitySpec::Instance::Named) {
            Now(call, ZedAnswer::Common(agentEntity, ZED_COMMON_NO_SUCH_ENTITY, "name a row of " + cls.GetName()));
            return;
        }
        std::string why;
        const TSnmpIndex index = TSnmpIndex::Of(cls);
        const auto suffix = index.Encode(component.name, &why);
        target.instance = component.name;
        if (!suffix) {
            Now(call, ZedAnswer::Common(agentEntity, ZED_COMMON_NO_SUCH_ENTITY,
                                        "no " + cls.GetName() + " is named \"" + component.name + "\": " + why));
            return;
        }
        const std::vector<std::string> parts = index.Decode(*suffix).value_or(std::vector<std::string>{});
        const bool rows = cls.GetSnmp()->rowStatus != 0;
        if (name == ZedDirective::kShow)
            Get(ticket, call, target, request, *suffix, parts);
        else if (name == ZedDirective::kSet)
            Write(ticket, call, target, request, *suffix, std::nullopt);
        else if ((name == ZedDirective::kCreate || name == ZedDirective::kDelete) && rows)
            Write(ticket, call, target, name == ZedDirective::kCreate ? request : TRequest(), *suffix,
                  name == ZedDirective::kCreate ? kCreateAndGo : kDestroy);
        else if (name == ZedDirective::kCreate || name == ZedDirective::kDelete)
            Now(call, ZedAnswer::Common(agentEntity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED,
                                        cls.GetName() + " rows cannot be "
                                            + (name == ZedDirective::kCreate ? "created" : "deleted")
                                            + " over SNMP: the table has no RowStatus column"));
        else
            Now(call, ZedAnswer::Common(agentEntity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED,
                                        name + " is not carried out on " + cls.GetName() + " over SNMP"));
    }

    void Start(TCallTicket ticket, const TEntitySpec& entity, unsigned int directiveId, const TRequest& request,
               Completion done)
    {
        auto call = std::make_unique<Call>();
        call->entity = entity;
        call->done = std::move(done);
        Call& c = *call;
        calls[ticket] = std::move(call);

        const TDictClass* cls = dictionary->FindClass(entity.GetEntityClass());
        const TDictDirective* directive = cls ? cls->FindDirective(directiveId) : nullptr;
        const TDictClass* top = entity.GetDepth() ? dictionary->FindClass(TEntityClass({entity.GetCode(0)})) : nullptr;
        if (!cls || !cls->GetSnmp() || !top || !top->GetSnmp() || top->GetSnmp()->kind != Kind::Agent
            || entity.GetDepth() > 2)
            Now(c, ZedAnswer::Common(entity, ZED_COMMON_NO_SUCH_ENTITY, "no SNMP object stands for this entity"));
        else if (!directive || directiveId == ZED_COMMON_EXCEPTION_DIRECTIVE)
            Now(c, ZedAnswer::Common(entity, ZED_COMMON_DIRECTIVE_NOT_SUPPORTED));
        else {
            const auto& agent = entity.GetComponent(0);
            if (agent.kind == TEntitySpec::Instance::Wildcard)
                for (std::size_t i = 0; i < sessions.size(); ++i)
                    Launch(ticket, c, i, entity, *cls, *directive, request);
            else if (agent.kind == TEntitySpec::Instance::Named) {
                const auto found = std::find_if(sessions.begin(), sessions.end(),
                                                [&](const auto& s) { return s->GetAgent().name == agent.name; });
                if (found == sessions.end())
                    Now(c, ZedAnswer::Common(entity, ZED_COMMON_NO_SUCH_ENTITY,
                                             "the agents file names no agent \"" + agent.name + "\""));
                else
                    Launch(ticket, c, static_cast<std::size_t>(found - sessions.begin()), entity, *cls, *directive,
                           request);
            } else
                Now(c, ZedAnswer::Common(entity, ZED_COMMON_NO_SUCH_ENTITY, "name an agent"));
        }
        if (c.open == 0)
            Complete(ticket);
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
        if (!finished.empty())
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
        for (TCallTicket ticket : std::exchange(finished, {}))
            Complete(ticket);
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

void TSnmpModule::Cancel(TCallTicket ticket)
{
    const auto it = m_pImpl->calls.find(ticket);
    if (it == m_pImpl->calls.end())
        return;
    for (const auto& [session, key] : it->second->requests)
        session->Forget(key);
    m_pImpl->calls.erase(it);  // its walks forget theirs
}

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
