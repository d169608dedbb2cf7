// SPDX-License-Identifier: BSD-3-Clause
// Laying out a field container of 200 and of 2,000 fields: the cost per
// field must not grow with the count. Baseline: Qt's own QVBoxLayout placing
// as many line edits, in the same run.

#include "kel/fields/IField.h"
#include "kel/fields/IFieldContainer.h"
#include "kel/model/IElementInfo.h"

#include "BenchApplication.h"

#include <QApplication>
#include <QLineEdit>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

namespace {

void BM_FieldContainerLayout(benchmark::State& state)
{
    EnsureApplication();
    const int count = static_cast<int>(state.range(0));
    IFieldContainer fields(nullptr);
    for (int i = 0; i < count; ++i) {
        IElementInfo info;
        info.SetID(i + 1);
        info.SetDT(0);  // the placeholder: a real line edit, no value conversion
        fields.InsertField(info)->SetIndent(static_cast<unsigned int>(i % 3));
    }
    int step = 20;
    for (auto _ : state) {
        // Another step each time, so that every field really moves.
        fields.SetIndentStep(step ^= 1);
        fields.PlaceElements();
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["ns_per_field"] = benchmark::Counter(
        static_cast<double>(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_FieldContainerLayout)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);

void BM_Baseline_QVBoxLayout(benchmark::State& state)
{
    EnsureApplication();
    const int count = static_cast<int>(state.range(0));
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    layout->setSpacing(2);
    for (int i = 0; i < count; ++i)
        layout->addWidget(new QLineEdit(&window));
    int width = 600;
    for (auto _ : state) {
        window.resize(width ^= 1, count * 24);
        layout->invalidate();
        layout->activate();
    }
    state.SetItemsProcessed(state.iterations() * count);
    state.counters["ns_per_field"] = benchmark::Counter(
        static_cast<double>(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_Baseline_QVBoxLayout)->Arg(200)->Arg(2000)->Unit(benchmark::kMicrosecond);

}  // namespace
