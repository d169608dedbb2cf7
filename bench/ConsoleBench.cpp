// The console receiving 100,000 messages (so trimming 2,000 at a time many
// times), against appending the same rows to a plain QTreeWidget that never
// trims. Aim: at least 50,000 messages per second. Also the heap the console
// holds after its first 10,000 messages and after all 100,000: trimming must
// keep it flat.

#include "kel/console/IConsole.h"
#include "kel/console/IOutputWnd.h"
#include "kel/frame/IApplication.h"
#include "zed/value/TTimeValues.h"

#include "BenchApplication.h"

#include <QTreeWidget>

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <string>
#include <vector>

namespace {

constexpr int kMessages = 100000;

std::vector<std::string> Messages()
{
    std::vector<std::string> messages;
    messages.reserve(kMessages);
    for (int i = 0; i < kMessages; ++i)
        messages.push_back("Poll " + std::to_string(i) + " of the interfaces' counters done");
    return messages;
}

double HeapMegabytes() { return static_cast<double>(mallinfo2().uordblks) / (1024.0 * 1024.0); }

void BM_Console100000Messages(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    const std::vector<std::string> messages = Messages();
    double at10000 = 0, atEnd = 0;
    for (auto _ : state) {
        IConsole console;
        console.AddTabWnd("Output", 0);
        console.Create(nullptr);
        console.resize(800, 300);
        IOutputWnd& output = *console.GetTabWnd(0);
        for (int i = 0; i < kMessages; ++i) {
            output.SetMessage(i % 7 ? KEL_SEVERITY_INFORMATION : KEL_SEVERITY_PROBLEM, messages[i].c_str());
            if (i == 9999) {
                QApplication::processEvents();
                at10000 = HeapMegabytes();
            }
        }
        QApplication::processEvents();
        atEnd = HeapMegabytes();
    }
    DestroyKEL();
    state.counters["messages_per_second"] =
        benchmark::Counter(static_cast<double>(kMessages) * state.iterations(), benchmark::Counter::kIsRate);
    state.counters["heap_MB_at_10000"] = at10000;
    state.counters["heap_MB_at_100000"] = atEnd;
}
BENCHMARK(BM_Console100000Messages)->Unit(benchmark::kMillisecond)->Iterations(1);

void BM_Baseline_QTreeWidget100000Rows(benchmark::State& state)
{
    EnsureApplication();
    const std::vector<std::string> messages = Messages();
    for (auto _ : state) {
        QTreeWidget list;
        list.setColumnCount(2);
        list.setUniformRowHeights(true);
        list.resize(800, 300);
        for (int i = 0; i < kMessages; ++i)
            new QTreeWidgetItem(&list, {QString::fromStdString(TAbsTime::Now().ToString()),
                                        QString::fromStdString(messages[i])});
        QApplication::processEvents();
        benchmark::DoNotOptimize(list.topLevelItemCount());
    }
    state.counters["messages_per_second"] =
        benchmark::Counter(static_cast<double>(kMessages) * state.iterations(), benchmark::Counter::kIsRate);
}
BENCHMARK(BM_Baseline_QTreeWidget100000Rows)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
