// SPDX-License-Identifier: BSD-3-Clause
// Outputs against plain Qt in the same run:
// - an output form made from a reply of 1,000 values (a pair: see below);
// - an output list receiving 100,000 replies and sorted by a column, against
//   a QStandardItemModel in a QTreeView doing the same, with the heap bytes
//   each row costs in both.

#include "kel/frame/IApplication.h"
#include "kel/model/IPresentationContainer.h"
#include "kel/output/IOutputForm.h"
#include "kel/output/IOutputList.h"
#include "kel/output/KELCallReply.h"
#include "kel/output/KELListModel.h"
#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TScalarValues.h"

#include "BenchApplication.h"
#include "BenchPair.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QStandardItemModel>
#include <QTreeView>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <string>

namespace {

constexpr int kValues = 1000;
constexpr int kRows = 100000;
constexpr int kColumns = 5;

// Directive 1 answers 1,000 numbers; directive 2 five columns of a row.
void InstallOutputDictionary()
{
    std::string wide;
    for (int i = 1; i <= kValues; ++i)
        wide += (i > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(i) + R"(, "name": "V)"
                + std::to_string(i) + R"(", "type": "Unsigned32"})";
    std::string row;
    for (int i = 1; i <= kColumns; ++i)
        row += (i > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(i) + R"(, "name": "C)"
               + std::to_string(i) + (i == 1 ? R"(", "type": "Latin1String"})" : R"(", "type": "Unsigned32"})");
    const std::string json = R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}],
        "classes": [{"code": 1, "name": "Box", "directives": [
            {"id": 1, "name": "Wide", "responses": [{"code": 1, "name": "Done", "text": "Done", "arguments": [)"
                             + wide + R"(]}]},
            {"id": 2, "name": "Row", "responses": [{"code": 1, "name": "Done", "text": "Done", "arguments": [)"
                             + row + "]}]}]}]}";
    ZEDGetApplication()->SetDictionary(TDictionary::Parse(json, "outputs.json"));
}

// A call that came back with the given reply, without a network.
class AnsweredCall : public TCall {
public:
    AnsweredCall(const TEntitySpec& entity, TReply reply) : TCall(entity, 1)
    {
        SetResults({TCallResult{entity, TAbsTime(0), std::move(reply), ZED_STATUS_RESPONSE}});
    }
};

TReply WideReply()
{
    TReply reply(ZED_REPLY_RESPONSE, 1);
    for (unsigned int i = 1; i <= kValues; ++i)
        reply.Add(TUnsigned32(i * 7, i));
    return reply;
}

std::size_t HeapInUse() { return mallinfo2().uordblks; }

// An output form made from a reply of 1,000 values, against the same values
// set into 1,000 labelled read-only line edits. Aim: at most 1.1x.
void Pair_OutputForm1000Values(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallOutputDictionary();
    const TEntitySpec entity("Box b");
    const TReply wide = WideReply();
    const KELCallReply reply(AnsweredCall(entity, wide));
    RunPair(
        state,
        [&] {
            IOutputForm form;
            form.resize(800, 600);
            form.CreatePresentation("Wide", reply, 1);
            benchmark::DoNotOptimize(form.GetContainer()->GetElementCount());
        },
        [&] {
            QScrollArea area;
            area.resize(800, 600);
            auto* inside = new QWidget;
            auto* layout = new QFormLayout(inside);
            for (TReplyIterator it(wide); it.IsValid(); it.Next()) {
                auto* edit = new QLineEdit(QString::fromStdString(it.Get().ToString()));
                edit->setReadOnly(true);
                layout->addRow(new QLabel(QStringLiteral("V%1 :").arg(it.Get().GetID())), edit);
            }
            area.setWidget(inside);
            layout->activate();
            benchmark::DoNotOptimize(layout->rowCount());
        });
    DestroyKEL();
}
BENCHMARK(Pair_OutputForm1000Values)->Unit(benchmark::kMillisecond);

TReply RowReply(int n)
{
    TReply reply(ZED_REPLY_RESPONSE, 1);
    reply.Add(TLatin1String("row " + std::to_string((n * 7919) % kRows), 1));
    for (unsigned int c = 2; c <= kColumns; ++c)
        reply.Add(TUnsigned32(static_cast<std::uint32_t>(n) * c, c));
    return reply;
}

void BM_OutputList100000RowsAndSort(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallOutputDictionary();
    const TEntitySpec entity("Box b");
    std::vector<TReply> replies;
    for (int n = 0; n < kRows; ++n)
        replies.push_back(RowReply(n));
    double bytesPerRow = 0;
    for (auto _ : state) {
        const std::size_t before = HeapInUse();
        IOutputList list;
        list.resize(800, 600);
        list.CreatePresentation("Row", entity, 2, ZED_DICT_RESPONSE, 1);
        for (const TReply& reply : replies)
            list.ProcessReply(reply);
        bytesPerRow = static_cast<double>(HeapInUse() - before) / kRows;
        list.GetModel()->sort(1);
        benchmark::DoNotOptimize(list.GetModel()->rowCount());
    }
    DestroyKEL();
    state.counters["bytes_per_row"] = bytesPerRow;
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_OutputList100000RowsAndSort)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Baseline_QStandardItemModel100000RowsAndSort(benchmark::State& state)
{
    EnsureApplication();
    std::vector<TReply> replies;
    for (int n = 0; n < kRows; ++n)
        replies.push_back(RowReply(n));
    double bytesPerRow = 0;
    for (auto _ : state) {
        const std::size_t before = HeapInUse();
        QTreeView view;
        view.resize(800, 600);
        QStandardItemModel model(0, kColumns + 1);
        view.setModel(&model);
        view.setUniformRowHeights(true);
        for (const TReply& reply : replies) {
            QList<QStandardItem*> row{new QStandardItem(QStringLiteral("Box b"))};
            for (unsigned int c = 1; c <= kColumns; ++c)
                row.push_back(new QStandardItem(QString::fromStdString(reply[c].ToString())));
            model.appendRow(row);
        }
        bytesPerRow = static_cast<double>(HeapInUse() - before) / kRows;
        model.sort(1);
        benchmark::DoNotOptimize(model.rowCount());
    }
    state.counters["bytes_per_row"] = bytesPerRow;
    state.SetItemsProcessed(state.iterations() * kRows);
}
// One pass: with the view attached every appended row costs the view work, about a minute in all.
BENCHMARK(BM_Baseline_QStandardItemModel100000RowsAndSort)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
