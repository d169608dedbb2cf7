// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// A subject and its baseline timed in one benchmark, alternately: whatever
// else the machine does meanwhile falls on both, so their ratio holds where
// each time alone would drift. Every iteration runs one of each, taking turns
// at going first (so neither always finds the caches warmed by the other),
// and the benchmark reports both mean times and the ratio subject / baseline:
// the number a reader compares with its aim (scripts/bench.sh tabulates it).

#include <benchmark/benchmark.h>

#include <chrono>

struct PairTimes {
    double subjectSeconds = 0;  // mean per run
    double baselineSeconds = 0;
};

template <typename Subject, typename Baseline>
PairTimes RunPair(benchmark::State& state, Subject&& subject, Baseline&& baseline)
{
    using Clock = std::chrono::steady_clock;
    std::chrono::duration<double> subjectTime{0}, baselineTime{0};
    const auto timed = [](auto& run, std::chrono::duration<double>& total) {
        const auto start = Clock::now();
        run();
        total += Clock::now() - start;
    };
    bool subjectFirst = true;
    for (auto _ : state) {
        if (subjectFirst) {
            timed(subject, subjectTime);
            timed(baseline, baselineTime);
        } else {
            timed(baseline, baselineTime);
            timed(subject, subjectTime);
        }
        subjectFirst = !subjectFirst;
    }
    const double runs = static_cast<double>(state.iterations());
    PairTimes times{subjectTime.count() / runs, baselineTime.count() / runs};
    state.counters["subject_ms"] = times.subjectSeconds * 1e3;
    state.counters["baseline_ms"] = times.baselineSeconds * 1e3;
    state.counters["ratio"] = times.subjectSeconds / times.baselineSeconds;
    return times;
}
