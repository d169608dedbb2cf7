// SPDX-License-Identifier: BSD-3-Clause
#include "zed/snmp/TSnmpIndex.h"
#include "zed/snmp/TSnmpJobs.h"
#include "zed/snmp/ZedSnmpLibrary.h"
#include "zed/trace/TTraceStream.h"

namespace {

TSnmpDatum NoSuchInstance()
{
    TSnmpDatum datum;
    datum.kind = TSnmpDatum::Kind::NoSuchInstance;
    return datum;
}

// The columns walked: those asked, or for a partition of index columns only
// one column, which still finds the rows.
std::vector<const TDictAttribute*> Walked(const TDictClass& cls, const std::vector<const TDictAttribute*>& asked)
{
    std::vector<const TDictAttribute*> walked = asked;
    if (walked.empty())
        for (const TDictAttribute& attribute : cls.GetAttributes())
            if (attribute.GetSnmp() && (walked.empty() || !TSnmpAnswers::IsIndex(cls, attribute)))
                walked.assign(1, &attribute);
    return walked;
}

// The rows a walk read, each as the response of its row's entity; rows
// whose index does not fit the table are left out and counted.
struct RowReader {
    const TSnmpAnswers& answers;
    TSnmpTarget target;
    std::vector<const TDictAttribute*> asked, walked;
    TSnmpIndex index;

    std::vector<TCallResult> Read(TSnmpWalk::Rows& rows, std::size_t& unreadable) const
    {
        std::vector<TCallResult> results;
        for (auto& [suffix, cells] : rows) {
            const auto parts = index.Decode(suffix);
            if (!parts) {
                TTraceStream(ZED_TRACE_SNMP | 1) << target.Who() << ": a row of " << target.cls->GetName()
                                                 << " whose index " << ZedOidText(suffix) << " does not fit" << endl;
                ++unreadable;
                continue;
            }
            TSnmpTarget row = target;
            row.entity = target.entity.WithInstance(target.depth, TSnmpIndex::Join(*parts));
            auto list = std::make_unique<TAttributeList>();
            answers.AddIndex(*list, *target.cls, *parts);
            if (!asked.empty())
                for (std::size_t c = 0; c < walked.size(); ++c)
                    list->Add(
                        TAttribute(TAttributeID(walked[c]->GetID(), walked[c]->GetName()),
                                   answers.ValueOf(*walked[c], cells[c].value_or(NoSuchInstance()), target.Who())));
            results.push_back(TSnmpAnswers::Attributes(row, std::move(list)));
        }
        return results;
    }
};

}  // namespace

void ZedSnmpWalkRows(const TSnmpJob& job)
{
    const TSnmpTarget& target = job.target;
    const std::vector<const TDictAttribute*> asked = TSnmpAnswers::Asked(*target.cls, *target.directive, job.request);
    RowReader reader{job.answers, target, asked, Walked(*target.cls, asked), TSnmpIndex::Of(*target.cls)};
    std::vector<ZedOid> columns;
    for (const TDictAttribute* attribute : reader.walked)
        columns.push_back(TSnmpAnswers::ObjectOf(*target.cls, *attribute, {}));
    const std::size_t part = job.call.Reserve();
    const TSnmpAgent& agent = target.session->GetAgent();
    auto walk = std::make_unique<TSnmpWalk>(
        *target.session, std::move(columns),
        TSnmpWalk::Bounds{agent.walkRows, agent.walkBytes, agent.walkTime, job.call.budget},
        [book = &job.book, ticket = job.ticket, part, reader](TSnmpWalk::Ending ending, TSnmpWalk::Rows rows) {
            std::size_t unreadable = 0;
            std::vector<TCallResult> results = reader.Read(rows, unreadable);
            if (ending.failure)
                if (auto refused = TSnmpAnswers::Refusal(reader.target, *ending.failure, "GetBulk", {}, {}))
                    results.push_back(std::move(*refused));
            if (!ending.bound.empty() || unreadable)
                results.push_back(TSnmpAnswers::Incomplete(reader.target, results.size(), ending.bound, unreadable));
            book->Finish(ticket, part, std::move(results));
        });
    job.call.walks.push_back(std::move(walk));
    job.call.walks.back()->Start();
}
