// SPDX-License-Identifier: BSD-3-Clause
#include "zed/sim/TSimulatedNetwork.h"
#include "zed/dict/ZedDirectiveNames.h"

#include "zed/TApplication.h"
#include "zed/TException.h"
#include "zed/call/TCallAnswers.h"
#include "zed/sim/TSimInstanceStore.h"
#include "zed/value/TAttribute.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TEventReport.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TValueParser.h"

#include <mutex>
#include <optional>
#include <utility>

struct TSimulatedNetwork::Impl {
    explicit Impl(TDictionaryPtr dictionary) : dictionary(dictionary), store(std::move(dictionary)) {}

    TDictionaryPtr dictionary;
    TSimInstanceStore store;
    std::mutex mutex;
    std::vector<TCallResult> events;
    EventListener listener;

    // ---- replies -----------------------------------------------------------

    static TCallResult Result(const TEntitySpec& entity, TReply reply, unsigned int status)
    {
        return ZedAnswer::Result(entity, std::move(reply), status);
    }
    static TCallResult Common(const TEntitySpec& entity, unsigned int code) { return ZedAnswer::Common(entity, code); }
    static TCallResult Exception(const TEntitySpec& entity, const TDictDirective& directive, const std::string& name,
                                 ZedNamedValues values)
    {
        return ZedAnswer::Exception(entity, directive, name, std::move(values));
    }
    static TCallResult Response(const TEntitySpec& entity, const TDictDirective& directive, ZedNamedValues values)
    {
        return ZedAnswer::Response(entity, directive, std::move(values));
    }

    // ---- requests ----------------------------------------------------------

    // The request's value of a named argument, or the dictionary default, or null.
    TValuePtr Argument(const TDictDirective& directive, const TRequest& request, const std::string& name,
                       const TDictClass& cls) const
    {
        const TDictArgument* argument = directive.FindRequestArgument(name);
        if (!argument)
            return nullptr;
        const TValue* value = request.Find(argument->GetID());
        if (value && value->IsPresent() && !value->IsDefault())
            return value->Clone();
        if (argument->DefaultAllowed() == ZED_DEFAULT_DICTIONARY)
            return ZEDParseValue(argument->GetType(), argument->GetDefaultValue(), argument->GetID(),
                                 {dictionary.get(), &cls});
        return nullptr;
    }

    // ---- directives --------------------------------------------------------

    TCallResult Show(const TEntitySpec& entity, const TDictDirective& directive, const TRequest& request,
                     TSimInstanceStore::Instance& instance) const
    {
        unsigned int partition = 0;
        if (TValuePtr asked = Argument(directive, request, ZedDirective::kPartition, *instance.cls))
            if (asked->GetDatatype() == ZED_DT_ENUMERATION)
                partition = static_cast<unsigned int>(static_cast<const TEnumeration&>(*asked).GetCode());
        auto list = std::make_unique<TAttributeList>();
        for (const TDictAttribute& attribute : instance.cls->GetAttributes()) {
            if (partition != 0 && attribute.GetPartition() != partition)
                continue;
            if (attribute.GetAccess() == ZED_ACCESS_WRITE_ONLY) {
                // Shown, but without its content: a server never reads a secret back.
                TValuePtr hidden = std::make_unique<TOctetString>();
                hidden->SetReason(ZED_REASON_ACCESS_DENIED);
                list->Add(TAttribute(TAttributeID(attribute.GetID(), attribute.GetName()), std::move(hidden)));
                continue;
            }
            if (const TValue* value = instance.attributes.Find(attribute.GetID()))
                list->Add(TAttribute(TAttributeID(attribute.GetID(), attribute.GetName()), value->Clone()));
        }
        ZedNamedValues values;
        values.emplace_back("Attributes", std::move(list));
        return Response(entity, directive, std::move(values));
    }

    // Applies the attribute values of a request the call layer checked (for
    // Create, read-only attributes too: they are initial values). A value
    // marked default puts the attribute back to its dictionary default (or
    // leaves it without a value). What was applied is added to `applied`.
    void Apply(const TDictDirective& directive, const TRequest& request, TSimInstanceStore::Instance& instance,
               TAttributeList& applied) const
    {
        if (!directive.TakesAttributes())
            return;
        const TDictClass& cls = *instance.cls;
        for (std::size_t i = 0; i < request.Size(); ++i) {
            const TValue& given = request.At(i);
            const TDictAttribute& attribute = *cls.FindAttribute(given.GetID());
            if (!given.IsDefault())
                instance.attributes.Put(given.Clone());
            else if (attribute.DefaultAllowed() == ZED_DEFAULT_DICTIONARY)
                instance.attributes.Put(ZEDParseValue(attribute.GetType(), attribute.GetDefaultValue(),
                                                      attribute.GetID(), {dictionary.get(), &cls}));
            else
                instance.attributes.Remove(attribute.GetID());
            auto done = std::make_unique<TAttribute>(TAttributeID(attribute.GetID(), attribute.GetName()));
            if (const TValue* now = instance.attributes.Find(attribute.GetID()))
                done->SetValue(now->Clone());
            applied.Add(std::move(done));
        }
    }

    TCallResult Set(const TEntitySpec& entity, const TDictDirective& directive, const TRequest& request,
                    TSimInstanceStore::Instance& instance)
    {
        auto applied = std::make_unique<TAttributeList>();
        Apply(directive, request, instance, *applied);
        Report(entity, *instance.cls, directive, *applied, &instance);
        ReportLinkState(entity, instance, *applied);
        ZedNamedValues values;
        values.emplace_back("Attributes", std::move(applied));
        return Response(entity, directive, std::move(values));
    }

    TCallResult Create(const TEntitySpec& entity, const TDictDirective& directive, const TRequest& request,
                       const TDictClass& cls)
    {
        const auto& last = entity.GetComponent(entity.GetDepth() - 1);
        TSimInstanceStore::Instance* parent = store.ParentFor(entity);
        if (!parent || last.kind != TEntitySpec::Instance::Named)
            return Common(entity, kNoSuchEntity);
        if (!store.Resolve(entity).empty())
            return Exception(entity, directive, "AlreadyExists", {});
        // Check the initial values on a scratch instance before adding the real one.
        TSimInstanceStore::Instance scratch;
        scratch.cls = &cls;
        for (const TDictAttribute& attribute : cls.GetAttributes())
            if (attribute.DefaultAllowed() == ZED_DEFAULT_DICTIONARY)
                scratch.attributes.Put(ZEDParseValue(attribute.GetType(), attribute.GetDefaultValue(),
                                                     attribute.GetID(), {dictionary.get(), &cls}));
        if (const TDictAttribute* name = cls.FindAttribute(std::string("Name"));
            name && name->GetDatatype() == ZED_DT_SIMPLENAME)
            scratch.attributes.Put(std::make_unique<TSimpleName>(last.name, name->GetID()));
        TAttributeList applied;
        Apply(directive, request, scratch, applied);
        TSimInstanceStore::Instance* created = store.Add(parent, cls, last.name);
        created->attributes = std::move(scratch.attributes);
        Report(entity, cls, directive, applied, created);
        return Response(entity, directive, {});
    }

    // ---- the one action of the shipped network -----------------------------

    TCallResult Test(const TEntitySpec& entity, const TDictDirective& directive, const TRequest& request,
                     TSimInstanceStore::Instance& instance) const
    {
        const auto number = [&](const std::string& name, unsigned int fallback) -> unsigned int {
            TValuePtr value = Argument(directive, request, name, *instance.cls);
            if (!value || !value->IsPresent() || value->HasReason())
                return fallback;
            try {
                return static_cast<unsigned int>(std::stoul(value->ToString()));
            } catch (const std::exception&) {
                return fallback;
            }
        };
        constexpr unsigned int kMaximumCount = 1000;
        constexpr unsigned int kServerDefaultSize = 64;
        const unsigned int count = number("Count", 4);
        const unsigned int size = number("Size", kServerDefaultSize);
        ZedNamedValues values;
        if (count > kMaximumCount) {
            values.emplace_back("MaximumCount", std::make_unique<TUnsigned16>(kMaximumCount));
            return Exception(entity, directive, "CountTooLarge", std::move(values));
        }
        if (const TDictAttribute* state = instance.cls->FindAttribute(std::string("State")))
            if (const TValue* value = instance.attributes.Find(state->GetID()); value && value->ToString() == "Down") {
                values.emplace_back("Reason", std::make_unique<TLatin1String>("the interface is down"));
                return Exception(entity, directive, "Unreachable", std::move(values));
            }
        // Large packets lose one reply in the simulation, so both counts show.
        const unsigned int received = size > 1500 && count > 0 ? count - 1 : count;
        values.emplace_back("Sent", std::make_unique<TUnsigned16>(static_cast<std::uint16_t>(count)));
        values.emplace_back("Received", std::make_unique<TUnsigned16>(static_cast<std::uint16_t>(received)));
        values.emplace_back("RoundTrip", std::make_unique<TReal>(0.25 + size / 256.0));
        return Response(entity, directive, std::move(values));
    }

    // Gives the arguments back: response Mirrored copies each one given (or
    // its dictionary default) into the response argument of the same name;
    // Summary, chosen by the Outcome argument, counts the arguments given.
    TCallResult Echo(const TEntitySpec& entity, const TDictDirective& directive, const TRequest& request,
                     const TDictClass& cls) const
    {
        int outcome = 1;
        if (TValuePtr chosen = Argument(directive, request, "Outcome", cls);
            chosen && chosen->GetDatatype() == ZED_DT_ENUMERATION)
            outcome = static_cast<const TEnumeration&>(*chosen).GetCode();
        const TDictReply* definition = directive.FindReply(ZED_DICT_RESPONSE, static_cast<unsigned int>(outcome));
        if (!definition)
            return Response(entity, directive, {});
        ZedNamedValues values;
        for (const TDictArgument& argument : definition->GetArguments()) {
            if (argument.GetName() == "Received") {
                std::uint16_t given = 0;
                for (std::size_t i = 0; i < request.Size(); ++i)
                    given = static_cast<std::uint16_t>(given + (request.At(i).IsPresent() ? 1 : 0));
                values.emplace_back(argument.GetName(), std::make_unique<TUnsigned16>(given));
            } else if (TValuePtr value = Argument(directive, request, argument.GetName(), cls)) {
                values.emplace_back(argument.GetName(), std::move(value));
            }
        }
        return Result(entity, ZedAnswer::Reply(*definition, ZED_REPLY_RESPONSE, std::move(values)),
                      ZED_STATUS_RESPONSE);
    }

    // ---- events ------------------------------------------------------------

    std::unique_ptr<TEventReport> NewReport(const TEntitySpec& entity, const TDictEvent& event) const
    {
        auto report = std::make_unique<TEventReport>(event.GetID());
        report->SetEntity(entity);
        report->SetTime(TAbsTime::Now().GetMilliseconds());
        return report;
    }

    void Queue(const TEntitySpec& entity, std::unique_ptr<TEventReport> report)
    {
        TReply reply(ZED_REPLY_RESPONSE, report->GetEventID());
        reply.Add(std::move(report));
        events.push_back(Result(entity, std::move(reply), ZED_STATUS_RESPONSE));
    }

    // An AdminState that was set moves the operational state with it: Locked
    // takes the link down (with a reason), anything else brings it up (the
    // report then has no reason).
    void ReportLinkState(const TEntitySpec& entity, TSimInstanceStore::Instance& instance,
                         const TAttributeList& changed)
    {
        const TDictClass& cls = *instance.cls;
        const TDictAttribute* admin = cls.FindAttribute(std::string("AdminState"));
        const TDictAttribute* state = cls.FindAttribute(std::string("State"));
        const TDictEvent* event = ZedFindNamed(cls.GetEvents(), "LinkStateChanged");
        if (!admin || !state || !event || !changed.FindAttribute(admin->GetID()))
            return;
        const bool locked = changed[admin->GetID()].ToString() == "Locked";
        TValuePtr now =
            ZEDParseValue(state->GetType(), locked ? "Down" : "Up", state->GetID(), {dictionary.get(), &cls});
        if (!now)
            return;
        instance.attributes.Put(now->Clone());
        auto report = NewReport(entity, *event);
        if (const TDictArgument* a = ZedFindNamed(event->GetArguments(), "State")) {
            now->SetID(a->GetID());
            report->Add(std::move(now));
        }
        if (const TDictArgument* a = ZedFindNamed(event->GetArguments(), "Reason"); a && locked)
            report->Add(std::make_unique<TLatin1String>("administratively locked", a->GetID()));
        Queue(entity, std::move(report));
    }

    // Queues the class's ConfigurationChanged event, and keeps it in the
    // instance's LastEvent attribute when it has one.
    void Report(const TEntitySpec& entity, const TDictClass& cls, const TDictDirective& directive,
                const TAttributeList& changed, TSimInstanceStore::Instance* instance)
    {
        const TDictEvent* event = ZedFindNamed(cls.GetEvents(), "ConfigurationChanged");
        if (!event)
            return;
        auto report = NewReport(entity, *event);
        if (const TDictArgument* a = ZedFindNamed(event->GetArguments(), "Directive"))
            report->Add(std::make_unique<TSimpleName>(directive.GetName(), a->GetID()));
        if (const TDictArgument* a = ZedFindNamed(event->GetArguments(), "Attributes")) {
            TValuePtr list = changed.Clone();
            list->SetID(a->GetID());
            report->Add(std::move(list));
        }
        if (const TDictAttribute* last = cls.FindAttribute(std::string("LastEvent"));
            instance && last && last->GetDatatype() == ZED_DT_EVENTREPORT) {
            TValuePtr kept = report->Clone();
            kept->SetID(last->GetID());
            instance->attributes.Put(std::move(kept));
        }
        Queue(entity, std::move(report));
    }

    std::vector<TCallResult> Execute(const TEntitySpec& entity, unsigned int directiveId, const TRequest& request)
    {
        const TDictClass* cls = dictionary->FindClass(entity.GetEntityClass());
        if (!cls)
            return {Common(entity, kNoSuchEntity)};
        const TDictDirective* directive = cls->FindDirective(directiveId);
        if (!directive || directiveId == ZED_COMMON_EXCEPTION_DIRECTIVE)
            return {Common(entity, kDirectiveNotSupported)};
        const std::string& name = directive->GetName();
        if (name == ZedDirective::kCreate)
            return {Create(entity, *directive, request, *cls)};

        const std::vector<TSimInstanceStore::Instance*> instances = store.Resolve(entity);
        if (instances.empty())
            return {Common(entity, kNoSuchEntity)};
        std::vector<TCallResult> results;
        results.reserve(instances.size());
        for (TSimInstanceStore::Instance* instance : instances) {
            const TEntitySpec answered = TSimInstanceStore::SpecOf(*instance);
            if (name == ZedDirective::kShow)
                results.push_back(Show(answered, *directive, request, *instance));
            else if (name == ZedDirective::kSet)
                results.push_back(Set(answered, *directive, request, *instance));
            else if (name == "Test")
                results.push_back(Test(answered, *directive, request, *instance));
            else if (name == "Echo")
                results.push_back(Echo(answered, *directive, request, *cls));
            else if (name == ZedDirective::kDelete) {
                Report(answered, *cls, *directive, TAttributeList(), nullptr);
                store.Remove(instance);
                results.push_back(Response(answered, *directive, {}));
            } else
                results.push_back(Response(answered, *directive, {}));
        }
        return results;
    }
};

TSimulatedNetwork::TSimulatedNetwork(TDictionaryPtr dictionary) : m_pImpl(std::make_unique<Impl>(std::move(dictionary)))
{
}

TSimulatedNetwork::~TSimulatedNetwork() = default;

void TSimulatedNetwork::LoadInstances(const std::string& path)
{
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->store.Load(path);
}

void TSimulatedNetwork::ParseInstances(std::string_view json, const std::string& source)
{
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->store.Parse(json, source);
}

std::vector<TCallResult> TSimulatedNetwork::Execute(const TEntitySpec& entity, unsigned int directive,
                                                    const TRequest& request)
{
    std::unique_lock lock(m_pImpl->mutex);
    std::vector<TCallResult> results = m_pImpl->Execute(entity, directive, request);
    if (!m_pImpl->listener)
        return results;
    // Delivered once the network is free again: the listener may call it.
    std::vector<TCallResult> events = std::exchange(m_pImpl->events, {});
    const EventListener listener = m_pImpl->listener;
    lock.unlock();
    for (const TCallResult& event : events)
        listener(event);
    return results;
}

std::vector<TCallResult> TSimulatedNetwork::TakeEvents()
{
    std::lock_guard lock(m_pImpl->mutex);
    return std::exchange(m_pImpl->events, {});
}

void TSimulatedNetwork::SetEventListener(EventListener listener)
{
    std::lock_guard lock(m_pImpl->mutex);
    m_pImpl->listener = std::move(listener);
}

const TSimInstanceStore& TSimulatedNetwork::GetStore() const { return m_pImpl->store; }

std::shared_ptr<TSimulatedNetwork> TSimulatedNetwork::Install(const std::string& dictionaryPath,
                                                              const std::string& instancePath)
{
    TDictionaryPtr dictionary = TDictionary::Load(dictionaryPath);
    auto network = std::make_shared<TSimulatedNetwork>(dictionary);
    network->LoadInstances(instancePath);
    ZEDGetApplication()->SetDictionary(dictionary);
    ZEDGetApplication()->SetDefaultModule(network);
    return network;
}
