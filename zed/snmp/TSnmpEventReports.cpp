// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpEventReports.h"

#include "zed/ZedText.h"
#include "zed/snmp/TSnmpIndex.h"
#include "zed/snmp/TSnmpValue.h"
#include "zed/value/TTimeValues.h"
#include "zed/value/TValueParser.h"

#include <algorithm>

namespace {

// The unbound event's arguments.
constexpr const char* kUnboundOid = "Notification";
constexpr const char* kUnboundVariables = "Variables";

bool StartsWith(const ZedOid& oid, const ZedOid& prefix)
{
    return oid.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), oid.begin());
}

std::unique_ptr<TEventReport> NewReport(const TDictEvent& event, const TEntitySpec& entity)
{
    auto report = std::make_unique<TEventReport>(event.GetID());
    report->SetEntity(entity);
    report->SetTime(TAbsTime::Now().GetMilliseconds());
    return report;
}

}  // namespace

TSnmpEventReports::TSnmpEventReports(TDictionaryPtr dictionary, const TSnmpOidNames& names)
    : m_dictionary(std::move(dictionary)), m_names(names)
{
    for (std::size_t i = 0; i < m_dictionary->GetRootClassCount(); ++i)
        Add(m_dictionary->GetRootClass(i));
}

void TSnmpEventReports::Add(const TDictClass& cls)
{
    for (const TDictEvent& event : cls.GetEvents()) {
        if (event.IsSnmpUnbound() && !m_unbound.first)
            m_unbound = {&cls, &event};
        if (event.GetSnmpTrap())
            m_traps.emplace(*event.GetSnmpTrap(), Bound{&cls, &event});
    }
    for (std::size_t i = 0; i < cls.GetChildCount(); ++i)
        Add(cls.GetChild(i));
}

std::optional<TSnmpEventReports::Made> TSnmpEventReports::Make(const TSnmpNotification& notification) const
{
    if (const auto found = m_traps.find(notification.trap); found != m_traps.end())
        return BoundReport(notification, *found->second.first, *found->second.second);
    if (m_unbound.first)
        return UnboundReport(notification);
    return std::nullopt;
}

// The agent, and for a table's event the row its variables name.
TEntitySpec TSnmpEventReports::EntityOf(const TSnmpNotification& notification, const TDictClass& cls,
                                        const TDictEvent& event) const
{
    std::vector<const TDictClass*> path;
    for (const TDictClass* c = &cls; c; c = c->GetParent())
        path.insert(path.begin(), c);
    TEntitySpec entity;
    entity.AddClass(path.front()->GetCode(), notification.agent);
    if (path.size() == 1)
        return entity;
    std::optional<std::string> row;
    const TSnmpIndex index = TSnmpIndex::Of(cls);
    for (const TDictArgument& argument : event.GetArguments())
        for (const TSnmpVarbind& varbind : notification.varbinds)
            if (!row && argument.GetSnmp() && varbind.oid.size() > argument.GetSnmp()->oid.size()
                && StartsWith(varbind.oid, argument.GetSnmp()->oid))
                if (const auto parts = index.Decode(varbind.oid.data() + argument.GetSnmp()->oid.size(),
                                                    varbind.oid.size() - argument.GetSnmp()->oid.size()))
                    row = TSnmpIndex::Join(*parts);
    for (std::size_t i = 1; i + 1 < path.size(); ++i)
        entity.AddClassWildcard(path[i]->GetCode());
    if (row)
        entity.AddClass(cls.GetCode(), *row);
    else
        entity.AddClassNullInstance(cls.GetCode());
    return entity;
}

TSnmpEventReports::Made TSnmpEventReports::BoundReport(const TSnmpNotification& notification, const TDictClass& cls,
                                                       const TDictEvent& event) const
{
    Made made{EntityOf(notification, cls, event), nullptr};
    made.report = NewReport(event, made.entity);
    const auto nameOf = [this](const ZedOid& oid) { return m_names.NameOf(oid); };
    for (const TDictArgument& argument : event.GetArguments()) {
        if (!argument.GetSnmp())
            continue;
        for (const TSnmpVarbind& varbind : notification.varbinds)
            if (StartsWith(varbind.oid, argument.GetSnmp()->oid)) {
                if (TValuePtr value = ZedSnmpToValue(varbind.datum, argument.GetType(), argument.GetSnmp()->syntax,
                                                     argument.GetID(), nullptr, nameOf, argument.GetSnmp()->hint))
                    made.report->Add(std::move(value));
                break;
            }
    }
    return made;
}

TSnmpEventReports::Made TSnmpEventReports::UnboundReport(const TSnmpNotification& notification) const
{
    const auto [cls, event] = m_unbound;
    Made made;
    made.entity.AddClass(cls->GetCode(), notification.agent);
    made.report = NewReport(*event, made.entity);
    std::string variables;
    for (const TSnmpVarbind& varbind : notification.varbinds) {
        const std::string name = m_names.NameOf(varbind.oid);
        variables += (variables.empty() ? "" : "; ") + (name.empty() ? ZedOidText(varbind.oid) : name) + " = "
                     + ZedEscapeControls(ZedSnmpDatumText(varbind.datum));
    }
    const std::string trapName = m_names.NameOf(notification.trap);
    const std::pair<const char*, std::string> texts[] = {
        {kUnboundOid, ZedOidText(notification.trap) + (trapName.empty() ? "" : " (" + trapName + ")")},
        {kUnboundVariables, variables},
    };
    for (const auto& [name, text] : texts)
        if (const TDictArgument* argument = ZedFindNamed(event->GetArguments(), std::string(name)))
            if (TValuePtr value =
                    ZEDParseValue(argument->GetType(), text, argument->GetID(), {m_dictionary.get(), cls}))
                made.report->Add(std::move(value));
    return made;
}
