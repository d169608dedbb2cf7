// SPDX-License-Identifier: BSD-3-Clause
// What a trace site costs when tracing is off, against an empty loop body
// (the baseline) and a site that is on but writes into a capture.

#include "kel/frame/KELTrace.h"
#include "zed/TApplication.h"
#include "zed/trace/TTraceProvider.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

void SetMask(unsigned int mask)
{
    ZEDGetApplication()->GetTraceProvider()->SetMask(mask);
    KELTraceMethEntrance::ForgetMaskForTesting();
}

void BM_Baseline_EmptyBody(benchmark::State& state)
{
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(i);
        ++i;
    }
}
BENCHMARK(BM_Baseline_EmptyBody);

void BM_TraceSite_Disabled(benchmark::State& state)
{
    SetMask(0);
    const std::string name = "Display";
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(i);
        KEL_TRACE(KEL_TRACE_PBLM, "KELBench", &i) << "ISection::Save " << name << ' ' << i;
        ++i;
    }
}
BENCHMARK(BM_TraceSite_Disabled);

void BM_MethEntrance_Disabled(benchmark::State& state)
{
    SetMask(0);
    int i = 0;
    for (auto _ : state) {
        KELTraceMethEntrance trace("KELBench", KEL_TRACE_MODULE, &i, "Run");
        benchmark::DoNotOptimize(i);
        trace.Leave();
    }
}
BENCHMARK(BM_MethEntrance_Disabled);

void BM_TraceSite_EnabledIntoCapture(benchmark::State& state)
{
    TTraceProvider* provider = ZEDGetApplication()->GetTraceProvider();
    SetMask(KEL_TRACE_MODULE | KEL_TRACE_PBLM);
    provider->StartCapture();
    const std::string name = "Display";
    int i = 0;
    for (auto _ : state) {
        KEL_TRACE(KEL_TRACE_PBLM, "KELBench", &i) << "ISection::Save " << name << ' ' << i;
        if (++i % 4096 == 0)
            provider->ClearCapture();
    }
    provider->StopCapture();
    SetMask(0);
}
BENCHMARK(BM_TraceSite_EnabledIntoCapture);

}  // namespace
