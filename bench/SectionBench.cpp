// SPDX-License-Identifier: BSD-3-Clause
// Reading sections from memory with the section reader, against a baseline
// that only splits the same text into lines with std::getline (what a naive
// stream-based reader pays before it has parsed anything).

#include "kel/config/ISection.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"

#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

namespace {

// About 400 bytes a section: 25 fields of realistic length.
std::string MakeText(int sections)
{
    std::string text;
    for (int s = 0; s < sections; ++s) {
        text += "[ Router - " + std::to_string(s) + " - 0 ]\n";
        for (int f = 0; f < 25; ++f)
            text += "    Column" + std::to_string(f) + ".Width = " + std::to_string(80 + f) + "\n";
        text += "[ End Router - " + std::to_string(s) + " - 0 ]\n\n";
    }
    return text;
}

const std::string& Text()
{
    static const std::string text = MakeText(2000);
    return text;
}

void BM_Baseline_GetlineSplit(benchmark::State& state)
{
    for (auto _ : state) {
        std::istringstream in(Text());
        std::size_t lines = 0;
        for (std::string line; std::getline(in, line);)
            ++lines;
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size()));
}
BENCHMARK(BM_Baseline_GetlineSplit);

void BM_SectionLoad(benchmark::State& state)
{
    for (auto _ : state) {
        KELTextReader file = KELTextReader::OverView(Text());
        std::size_t sections = 0;
        for (;;) {
            ISection section;
            if (section.Load(file) != KEL_CFG_SUCCESS)
                break;
            ++sections;
        }
        benchmark::DoNotOptimize(sections);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size()));
}
BENCHMARK(BM_SectionLoad);

void BM_SectionSave(benchmark::State& state)
{
    KELTextReader file = KELTextReader::OverView(Text());
    std::vector<std::unique_ptr<ISection>> sections;
    for (;;) {
        auto section = std::make_unique<ISection>();
        if (section->Load(file) != KEL_CFG_SUCCESS)
            break;
        sections.push_back(std::move(section));
    }
    for (auto _ : state) {
        std::string out;
        out.reserve(Text().size());
        for (const auto& section : sections)
            section->Save(out);
        benchmark::DoNotOptimize(out.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Text().size()));
}
BENCHMARK(BM_SectionSave);

}  // namespace
