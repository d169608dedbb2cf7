// SPDX-License-Identifier: BSD-3-Clause
#include "zed/call/TCallAnswers.h"
#include "zed/snmp/TSnmpJobs.h"

#include <algorithm>

void ZedSnmpGet(const TSnmpJob& job)
{
    const TSnmpTarget& target = job.target;
    const std::vector<const TDictAttribute*> asked = TSnmpAnswers::Asked(*target.cls, *target.directive, job.request);
    std::vector<TSnmpVarbind> varbinds;
    for (const TDictAttribute* attribute : asked)
        varbinds.push_back(TSnmpVarbind{TSnmpAnswers::ObjectOf(*target.cls, *attribute, target.index), {}});
    if (varbinds.empty()) {
        auto list = std::make_unique<TAttributeList>();
        job.answers.AddIndex(*list, *target.cls, target.parts);
        job.call.Now(TSnmpAnswers::Attributes(target, std::move(list)));
        return;
    }
    const std::size_t part = job.call.Reserve();
    const bool row = target.cls->GetSnmp()->kind == TDictSnmpClass::Kind::Table;
    auto sent = varbinds;
    const std::uint64_t key = target.session->Send(
        TSnmpSession::Operation::Get, std::move(varbinds),
        [book = &job.book, ticket = job.ticket, answers = &job.answers, part, target, asked, sent,
         row](TSnmpAnswer answer) {
            if (auto refused = TSnmpAnswers::Refusal(target, answer, "Get", asked, sent)) {
                book->Finish(ticket, part, {std::move(*refused)});
                return;
            }
            const bool none = std::all_of(answer.varbinds.begin(), answer.varbinds.end(),
                                          [](const TSnmpVarbind& v) { return v.datum.IsException(); });
            if (row && none) {
                book->Finish(
                    ticket, part,
                    {ZedAnswer::Common(target.entity, ZED_COMMON_NO_SUCH_ENTITY,
                                       target.Who() + " has no " + target.cls->GetName() + " " + target.instance)});
                return;
            }
            auto list = std::make_unique<TAttributeList>();
            answers->AddIndex(*list, *target.cls, target.parts);
            answers->AddAnswered(*list, asked, sent, answer, target.Who());
            book->Finish(ticket, part, {TSnmpAnswers::Attributes(target, std::move(list))});
        });
    job.call.requests.emplace_back(target.session, key);
}
