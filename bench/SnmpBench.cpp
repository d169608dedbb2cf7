// SPDX-License-Identifier: BSD-3-Clause
// The SNMP module against a private snmpd, each against a named baseline in
// the same run:
//   wildcard Show of a table   vs  snmpbulkwalk of the same column (the
//                                  net-snmp tool as people run it);
//   50 agents at once          vs  one agent (the same Show of the interfaces),
//                                  on loopback and 2 ms away each way;
//   an agent that stopped      the longest turn of the event loop while the
//                              call waits for its timeout (a blocking call
//                              would hold the loop for the whole timeout).
// Without snmpd the benchmarks say so and are skipped.

#include "zed/TApplication.h"
#include "zed/call/TCall.h"
#include "zed/call/TCallLoop.h"
#include "zed/dict/TDictionary.h"
#include "zed/snmp/TSnmpLocalAgent.h"
#include "zed/snmp/TSnmpModule.h"
#include "UdpDelayLine.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <memory>

namespace {

using namespace std::chrono_literals;

const TDictionaryPtr& Dictionary()
{
    static const TDictionaryPtr dictionary = TDictionary::Load(KEL_SOURCE_DIR "/data/snmp/dictionary.json");
    return dictionary;
}

// One snmpd per shape, started once for the run: `rows` lines of an extension's
// output (a table with a two-part index), on `ports` ports.
TSnmpLocalAgent* Agent(std::size_t rows, std::size_t ports)
{
    static std::map<std::pair<std::size_t, std::size_t>, std::unique_ptr<TSnmpLocalAgent>> agents;
    auto& agent = agents[{rows, ports}];
    if (!agent && !TSnmpLocalAgent::Program().empty())
        agent = std::make_unique<TSnmpLocalAgent>(
            TSnmpLocalAgent::Options{ports, {}, {"extend rows /usr/bin/seq 1 " + std::to_string(rows)}});
    return agent.get();
}

void Install(const TSnmpLocalAgent& agent, double timeout = 5, int retries = 1)
{
    ZEDGetApplication()->SetDictionary(Dictionary());
    ZEDGetApplication()->SetDefaultModule(std::make_shared<TSnmpModule>(
        Dictionary(), agent.MakeAgents(TSnmpAgent::Version::V2c, "agent", timeout, retries), false));
}

bool Skipped(benchmark::State& state, const TSnmpLocalAgent* agent)
{
    if (agent)
        return false;
    state.SkipWithError("snmpd is not installed (Debian package snmpd)");
    return true;
}

std::size_t Show(const char* entity)
{
    TSyncCall call(TEntitySpec(entity), 1);
    call.Execute();
    std::size_t answered = 0;
    for (std::size_t i = 0; call.SelectReply(i); ++i)
        answered += call.GetStatus() == ZED_STATUS_RESPONSE ? 1 : 0;
    return answered;
}

void BM_Baseline_SnmpBulkWalkTool(benchmark::State& state)
{
    const auto rows = static_cast<std::size_t>(state.range(0));
    const TSnmpLocalAgent* agent = Agent(rows, 1);
    if (Skipped(state, agent))
        return;
    const std::string command = "MIBS= snmpbulkwalk -v2c -c public -m '' -On -Oq 127.0.0.1:"
                                + std::to_string(agent->GetPorts()[0]) + " 1.3.6.1.4.1.8072.1.3.2.4.1.2";
    for (auto _ : state) {
        std::size_t lines = 0;
        if (FILE* pipe = popen(command.c_str(), "r")) {
            char buffer[512];
            while (fgets(buffer, sizeof buffer, pipe))
                ++lines;
            pclose(pipe);
        }
        if (lines != rows)
            state.SkipWithError("snmpbulkwalk did not read every row");
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * rows));
}
BENCHMARK(BM_Baseline_SnmpBulkWalkTool)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_WildcardShowOfATable(benchmark::State& state)
{
    const auto rows = static_cast<std::size_t>(state.range(0));
    const TSnmpLocalAgent* agent = Agent(rows, 1);
    if (Skipped(state, agent))
        return;
    Install(*agent);
    for (auto _ : state)
        if (Show("Agent agent-1 Output *") != rows)
            state.SkipWithError("the Show did not read every row");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * rows));
}
BENCHMARK(BM_WildcardShowOfATable)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_Baseline_OneAgentsInterfaces(benchmark::State& state)
{
    const TSnmpLocalAgent* agent = Agent(1, 1);
    if (Skipped(state, agent))
        return;
    Install(*agent);
    for (auto _ : state)
        benchmark::DoNotOptimize(Show("Agent * Interface *"));
}
BENCHMARK(BM_Baseline_OneAgentsInterfaces)->Unit(benchmark::kMillisecond);

void BM_FiftyAgentsInterfacesAtOnce(benchmark::State& state)
{
    const TSnmpLocalAgent* agent = Agent(1, 50);
    if (Skipped(state, agent))
        return;
    Install(*agent);
    for (auto _ : state)
        benchmark::DoNotOptimize(Show("Agent * Interface *"));
}
BENCHMARK(BM_FiftyAgentsInterfacesAtOnce)->Unit(benchmark::kMillisecond);

// The same, each agent 2 ms away each way: what asking them at once saves.
void InstallFarAway(const TSnmpLocalAgent& agent, const UdpDelayLine& line)
{
    TSnmpAgents agents = agent.MakeAgents(TSnmpAgent::Version::V2c, "agent", 5, 1);
    for (std::size_t i = 0; i < agents.agents.size(); ++i)
        agents.agents[i].address = "udp:127.0.0.1:" + std::to_string(line.GetPorts()[i]);
    ZEDGetApplication()->SetDictionary(Dictionary());
    ZEDGetApplication()->SetDefaultModule(std::make_shared<TSnmpModule>(Dictionary(), agents, false));
}

void BM_Baseline_OneAgentsInterfaces2msAway(benchmark::State& state)
{
    const TSnmpLocalAgent* agent = Agent(1, 1);
    if (Skipped(state, agent))
        return;
    const UdpDelayLine line(agent->GetPorts(), 2ms);
    InstallFarAway(*agent, line);
    for (auto _ : state)
        benchmark::DoNotOptimize(Show("Agent * Interface *"));
}
BENCHMARK(BM_Baseline_OneAgentsInterfaces2msAway)->Unit(benchmark::kMillisecond);

void BM_FiftyAgentsInterfacesAtOnce2msAway(benchmark::State& state)
{
    const TSnmpLocalAgent* agent = Agent(1, 50);
    if (Skipped(state, agent))
        return;
    const UdpDelayLine line(agent->GetPorts(), 2ms);
    InstallFarAway(*agent, line);
    for (auto _ : state)
        benchmark::DoNotOptimize(Show("Agent * Interface *"));
}
BENCHMARK(BM_FiftyAgentsInterfacesAtOnce2msAway)->Unit(benchmark::kMillisecond);

// The host's event loop while an agent does not answer: it waits at most
// 10 ms at a time and gives the call loop its turn; the longest turn is what
// the operator would feel.
void BM_StoppedAgentLongestTurn(benchmark::State& state)
{
    TSnmpLocalAgent* agent = Agent(1, 1);
    if (Skipped(state, agent))
        return;
    constexpr auto kTimeout = 1000ms;
    Install(*agent, 1, 0);
    agent->Pause();
    TCallLoop& loop = ZEDGetCallLoop();
    double longest = 0;
    for (auto _ : state) {
        bool done = false;
        auto turn = [&](auto&& step) {
            const auto at = std::chrono::steady_clock::now();
            step();
            longest = std::max(
                longest, std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - at).count());
        };
        turn([&] {
            loop.Submit(TEntitySpec("Agent * Interface *"), 1, {}, [&](std::vector<TCallResult>) { done = true; });
        });
        while (!done) {
            ZedWait(loop.GetWaitSet(), std::chrono::milliseconds(10));
            turn([&] { loop.ProcessReady(); });
        }
    }
    agent->Resume();
    state.counters["longest_turn_ms"] = longest;
    state.counters["timeout_ms"] = static_cast<double>(kTimeout.count());
    state.counters["stall_share"] = longest / static_cast<double>(kTimeout.count());
}
BENCHMARK(BM_StoppedAgentLongestTurn)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
