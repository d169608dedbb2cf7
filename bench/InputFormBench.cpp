// SPDX-License-Identifier: BSD-3-Clause
// Generated input forms against the same lines written by hand in plain Qt.

#include "kel/forms/IInputForm.h"
#include "kel/frame/IApplication.h"
#include "zed/TApplication.h"
#include "zed/call/TRequest.h"
#include "zed/dict/TDictionary.h"

#include "BenchApplication.h"
#include "BenchPair.h"
#include "WideDictionary.h"

#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

void BuildInputForm(KELConfigContext* context, const TEntitySpec& entity)
{
    IInputForm form(context);
    form.resize(800, 600);
    form.CreatePresentation("Wide", entity, 1);
    form.FillWithDefaults();
    TRequest request;
    form.FillRequest(request);
    benchmark::DoNotOptimize(request.Size());
}

// What a hand-written form of the same lines costs in plain Qt.
void BuildPlainForm(int count)
{
    QScrollArea area;
    area.resize(800, 600);
    auto* inside = new QWidget;
    auto* layout = new QFormLayout(inside);
    std::vector<QLineEdit*> edits;
    edits.reserve(static_cast<std::size_t>(count));
    for (int i = 1; i <= count; ++i) {
        auto* edit = new QLineEdit(QString::number(i));
        edit->setAccessibleName(QStringLiteral("A%1").arg(i));
        layout->addRow(new QLabel(QStringLiteral("A%1 :").arg(i)), edit);
        edits.push_back(edit);
    }
    area.setWidget(inside);
    layout->activate();
    std::vector<unsigned int> values;
    values.reserve(static_cast<std::size_t>(count));
    for (QLineEdit* edit : edits)
        values.push_back(edit->text().toUInt());
    benchmark::DoNotOptimize(values.data());
}

// An input form of N arguments built, defaulted and its request filled,
// against N labelled line edits in a QFormLayout inside a QScrollArea, laid
// out and read back. Aim at 1,000: at most 1.1x; 10,000 shows the growth.
void Pair_InputForm(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallWideDictionary(count);
    KELConfigContext* context = GetKELapp()->DefineNewContext("BENCH");
    const TEntitySpec entity("Box b");
    const PairTimes times = RunPair(
        state, [&] { BuildInputForm(context, entity); }, [&] { BuildPlainForm(count); });
    DestroyKEL();
    state.counters["subject_us_per_line"] = times.subjectSeconds * 1e6 / count;
}
BENCHMARK(Pair_InputForm)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
