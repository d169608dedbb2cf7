// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpAnswers.h"

#include "zed/ZedText.h"
#include "zed/call/TCallAnswers.h"
#include "zed/dict/ZedDirectiveNames.h"
#include "zed/snmp/TSnmpOidNames.h"
#include "zed/snmp/TSnmpValue.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/trace/TTraceStream.h"
#include "zed/value/TEnumeration.h"
#include "zed/value/TValueParser.h"

#include <algorithm>
#include <map>

namespace {

// The error statuses that say who asked was refused, not what was asked.
constexpr long kNoAccess = 6;
constexpr long kAuthorizationError = 16;

}  // namespace

std::string TSnmpTarget::Who() const
{
    return "agent " + session->GetAgent().name + " (" + session->GetAgent().address + ")";
}

ZedOid TSnmpAnswers::ObjectOf(const TDictClass& cls, const TDictAttribute& attribute, const ZedOid& index)
{
    const TDictSnmpColumn& column = *attribute.GetSnmp();
    ZedOid oid = column.entry.empty() ? cls.GetSnmp()->oid : column.entry;
    oid.push_back(column.column);
    if (cls.GetSnmp()->kind == TDictSnmpClass::Kind::Table) {
        oid.insert(oid.end(), index.begin(), index.end());
        return oid;
    }
    oid.push_back(0);
    return oid;
}

bool TSnmpAnswers::IsIndex(const TDictClass& cls, const TDictAttribute& attribute)
{
    const auto& index = cls.GetSnmp()->index;
    return std::find(index.begin(), index.end(), attribute.GetID()) != index.end();
}

std::vector<const TDictAttribute*> TSnmpAnswers::Asked(const TDictClass& cls, const TDictDirective& directive,
                                                       const TRequest& request)
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

TValuePtr TSnmpAnswers::ValueOf(const TDictAttribute& attribute, const TSnmpDatum& datum,
                                const std::string& where) const
{
    if (datum.IsException() || datum.kind == TSnmpDatum::Kind::Null) {
        TValuePtr missing = ZEDMakeValue(attribute.GetType(), attribute.GetID());
        missing->SetReason(datum.kind == TSnmpDatum::Kind::NoSuchObject ? ZED_REASON_NOT_IMPLEMENTED
                                                                        : ZED_REASON_NOT_AVAILABLE);
        return missing;
    }
    std::string why;
    TValuePtr value = ZedSnmpToValue(
        datum, attribute.GetType(), attribute.GetSnmp()->syntax, attribute.GetID(), &why,
        [this](const ZedOid& oid) { return m_names.NameOf(oid); }, attribute.GetSnmp()->hint);
    if (!value) {
        TTraceStream(ZED_TRACE_SNMP | 1) << where << ": " << attribute.GetName() << ": " << why << endl;
        value = ZEDMakeValue(attribute.GetType(), attribute.GetID());
        value->SetReason(ZED_REASON_INVALID_VALUE, ZedEscapeControls(why));
    }
    return value;
}

void TSnmpAnswers::AddAnswered(TAttributeList& list, const std::vector<const TDictAttribute*>& asked,
                               const std::vector<TSnmpVarbind>& sent, const TSnmpAnswer& answer,
                               const std::string& who) const
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
        TTraceStream(ZED_TRACE_SNMP | 1) << who << " did not return " << attribute.GetName() << " ("
                                         << ZedOidText(sent[i].oid) << ")" << endl;
        TValuePtr missing = ZEDMakeValue(attribute.GetType(), attribute.GetID());
        missing->SetReason(ZED_REASON_NOT_AVAILABLE, "not returned by the agent");
        list.Add(TAttribute(id, std::move(missing)));
    }
}

void TSnmpAnswers::AddIndex(TAttributeList& list, const TDictClass& cls, const std::vector<std::string>& parts) const
{
    const auto& index = cls.GetSnmp()->index;
    for (std::size_t i = 0; i < index.size() && i < parts.size(); ++i) {
        const TDictAttribute& attribute = *cls.FindAttribute(index[i]);
        if (TValuePtr value = ZEDParseValue(attribute.GetType(), parts[i], attribute.GetID(), {&m_dictionary, &cls}))
            list.Add(TAttribute(TAttributeID(attribute.GetID(), attribute.GetName()), std::move(value)));
    }
}

TCallResult TSnmpAnswers::Attributes(const TSnmpTarget& target, std::unique_ptr<TAttributeList> list)
{
    ZedNamedValues values;
    values.emplace_back("Attributes", std::move(list));
    return ZedAnswer::Response(target.entity, *target.directive, std::move(values));
}

std::optional<TCallResult> TSnmpAnswers::Refusal(const TSnmpTarget& target, const TSnmpAnswer& answer,
                                                 const char* operation, const std::vector<const TDictAttribute*>& named,
                                                 const std::vector<TSnmpVarbind>& sent)
{
    switch (answer.outcome) {
    case TSnmpAnswer::Outcome::Timeout: return ZedAnswer::Common(target.entity, ZED_COMMON_NO_ANSWER, answer.reason);
    case TSnmpAnswer::Outcome::Unauthorized:
        return ZedAnswer::Common(target.entity, ZED_COMMON_NOT_AUTHORIZED,
                                 target.Who() + " refused us: " + answer.reason);
    case TSnmpAnswer::Outcome::Failed: return ZedAnswer::Common(target.entity, ZED_COMMON_AGENT_ERROR, answer.reason);
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
    const bool refusedWho = answer.errorStatus == kNoAccess || answer.errorStatus == kAuthorizationError;
    return ZedAnswer::Common(target.entity, refusedWho ? ZED_COMMON_NOT_AUTHORIZED : ZED_COMMON_AGENT_ERROR,
                             target.Who() + " refused the " + operation + (object.empty() ? "" : " of " + object) + ": "
                                 + ZedSnmpErrorStatusName(answer.errorStatus));
}

TCallResult TSnmpAnswers::Incomplete(const TSnmpTarget& target, std::size_t rows, const std::string& bound,
                                     std::size_t unreadable)
{
    std::string reason = target.Who() + ": the list of " + target.cls->GetName() + " is incomplete ("
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
