// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TCallAnswers.h"
#include "zed/dict/ZedDirectiveNames.h"
#include "zed/snmp/TSnmpJobs.h"
#include "zed/snmp/TSnmpValue.h"

namespace {

struct Written {
    std::vector<const TDictAttribute*> named;
    std::vector<TSnmpVarbind> varbinds;
};

// The request's attributes as objects to set; why not when one cannot be.
std::optional<std::string> Objects(const TSnmpTarget& target, const TRequest& request, Written& written)
{
    const TDictClass& cls = *target.cls;
    for (std::size_t i = 0; i < request.Size(); ++i) {
        const TValue& value = request.At(i);
        const TDictAttribute* attribute = cls.FindAttribute(value.GetID());
        // A row's index columns are set by its name.
        if (!attribute
            || (cls.GetSnmp()->kind == TDictSnmpClass::Kind::Table && TSnmpAnswers::IsIndex(cls, *attribute)))
            continue;
        if (!attribute->GetSnmp())
            return "the attribute " + attribute->GetName() + " has no SNMP object";
        if (value.IsDefault())
            return "an SNMP agent keeps no default for " + attribute->GetName() + ": give a value";
        std::string why;
        std::optional<TSnmpDatum> datum =
            ZedSnmpFromValue(value, attribute->GetSnmp()->syntax, &why, attribute->GetSnmp()->hint);
        if (!datum)
            return attribute->GetName() + ": " + why;
        written.named.push_back(attribute);
        written.varbinds.push_back(
            TSnmpVarbind{TSnmpAnswers::ObjectOf(cls, *attribute, target.index), std::move(*datum)});
    }
    return std::nullopt;
}

void AddRowStatus(const TSnmpTarget& target, long rowStatus, Written& written)
{
    const TDictAttribute& status = *target.cls->FindAttribute(target.cls->GetSnmp()->rowStatus);
    TSnmpDatum datum;
    datum.kind = TSnmpDatum::Kind::Integer;
    datum.integer = rowStatus;
    written.named.push_back(&status);
    written.varbinds.push_back(TSnmpVarbind{TSnmpAnswers::ObjectOf(*target.cls, status, target.index), datum});
}

}  // namespace

void ZedSnmpWrite(const TSnmpJob& job, std::optional<long> rowStatus)
{
    const TSnmpTarget& target = job.target;
    Written written;
    if (target.directive->TakesAttributes())
        if (const auto why = Objects(target, job.request, written)) {
            job.call.Now(ZedAnswer::Common(target.entity, ZED_COMMON_INVALID_REQUEST, *why));
            return;
        }
    if (rowStatus)
        AddRowStatus(target, *rowStatus, written);
    if (written.varbinds.empty()) {
        job.call.Now(ZedAnswer::Response(target.entity, *target.directive, {}));
        return;
    }
    const std::size_t part = job.call.Reserve();
    const std::uint64_t key = target.session->Send(
        TSnmpSession::Operation::Set, written.varbinds,
        [book = &job.book, ticket = job.ticket, answers = &job.answers, part, target, written,
         rowStatus](TSnmpAnswer answer) {
            if (auto refused =
                    TSnmpAnswers::Refusal(target, answer, ZedDirective::kSet, written.named, written.varbinds))
                return book->Finish(ticket, part, {std::move(*refused)});
            if (rowStatus)
                return book->Finish(ticket, part, {ZedAnswer::Response(target.entity, *target.directive, {})});
            auto list = std::make_unique<TAttributeList>();
            answers->AddAnswered(*list, written.named, written.varbinds, answer, target.Who());
            book->Finish(ticket, part, {TSnmpAnswers::Attributes(target, std::move(list))});
        });
    job.call.requests.emplace_back(target.session, key);
}
