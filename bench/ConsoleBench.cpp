// SPDX-License-Identifier: BSD-3-Clause
// The console's message windows against a plain QTreeWidget.

#include "kel/console/IConsole.h"
#include "kel/console/IOutputWnd.h"
#include "kel/frame/IApplication.h"
#include "zed/value/TTimeValues.h"

#include "BenchApplication.h"
#include "BenchPair.h"

#include <QTreeWidget>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> Messages(int count)
{
    std::vector<std::string> messages;
    messages.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        messages.push_back("Poll " + std::to_string(i) + " of the interfaces' counters done");
    return messages;
}

double HeapMegabytes() { return static_cast<double>(mallinfo2().uordblks) / (1024.0 * 1024.0); }

// The console receiving N messages (so trimming 2,000 at a time many times),
// against appending the same rows, time and text, to a plain QTreeWidget that
// never trims. Aim at 100,000: at least 250,000 messages a second, and the
// heap after all of them no larger than after the first 10,000 (trimming keeps
// it flat); 1,000,000 shows the growth of both.
void Pair_Console(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    EnsureApplication();
    InitializeKEL("kel_bench");
    const std::vector<std::string> messages = Messages(count);
    double at10000 = 0, atEnd = 0;
    const PairTimes times = RunPair(
        state,
        [&] {
            IConsole console;
            console.AddTabWnd("Output", 0);
            console.Create(nullptr);
            console.resize(800, 300);
            IOutputWnd& output = *console.GetTabWnd(0);
            for (int i = 0; i < count; ++i) {
                output.SetMessage(i % 7 ? KEL_SEVERITY_INFORMATION : KEL_SEVERITY_PROBLEM, messages[i].c_str());
                if (i == 9999) {
                    QApplication::processEvents();
                    at10000 = HeapMegabytes();
                }
            }
            QApplication::processEvents();
            atEnd = HeapMegabytes();
        },
        [&] {
            QTreeWidget list;
            list.setColumnCount(2);
            list.setUniformRowHeights(true);
            list.resize(800, 300);
            for (int i = 0; i < count; ++i)
                new QTreeWidgetItem(
                    &list, {QString::fromStdString(TAbsTime::Now().ToString()), QString::fromStdString(messages[i])});
            QApplication::processEvents();
            benchmark::DoNotOptimize(list.topLevelItemCount());
        });
    DestroyKEL();
    state.counters["messages_per_second"] = count / times.subjectSeconds;
    state.counters["baseline_rows_per_second"] = count / times.baselineSeconds;
    state.counters["heap_MB_at_10000"] = at10000;
    state.counters["heap_MB_at_end"] = atEnd;
}
BENCHMARK(Pair_Console)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(Pair_Console)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
