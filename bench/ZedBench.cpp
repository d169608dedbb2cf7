// SPDX-License-Identifier: BSD-3-Clause
// The access library's hot paths, each against a named baseline in the same run:
//   dictionary load    vs  parsing the same JSON text alone (nlohmann);
//   dictionary check   vs  the dictionary load (what collecting every fault costs);
//   reply lookup       vs  a linear scan of the same values per lookup;
//   wildcard Show      vs  the same instances asked one call each.

#include "zed/call/TCall.h"
#include "zed/dict/TDictionary.h"
#include "zed/sim/TSimulatedNetwork.h"
#include "zed/value/TScalarValues.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace {

// 1,000 classes (10 at the top, 99 below each) of 50 attributes each.
const std::string& LargeDictionary()
{
    static const std::string text = [] {
        std::string attributes;
        const char* types[] = {"Unsigned32", "Latin1String", "Counter32", "Real", "SimpleName"};
        for (int a = 1; a <= 50; ++a)
            attributes += std::string(a > 1 ? "," : "") + R"({"id": )" + std::to_string(a) + R"(, "name": "Attribute)"
                          + std::to_string(a) + R"(", "type": ")" + types[a % 5]
                          + R"(", "partition": "Status", "units": "things", "length": 32})";
        const std::string body = R"(, "attributes": [)" + attributes + R"(], "directives": [{"id": 1, "name": "Show",
            "responses": [{"code": 1, "name": "Success", "text": "Shown"}]}])";
        std::string classes;
        for (int top = 1; top <= 10; ++top) {
            std::string children;
            for (int child = 1; child <= 99; ++child)
                children += std::string(child > 1 ? "," : "") + R"({"code": )" + std::to_string(child)
                            + R"(, "name": "Child)" + std::to_string(child) + "\"" + body + "}";
            classes += std::string(top > 1 ? "," : "") + R"({"code": )" + std::to_string(top) + R"(, "name": "Top)"
                       + std::to_string(top) + "\"" + body + R"(, "children": [)" + children + "]}";
        }
        return R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}], "classes": [)" + classes
               + "]}";
    }();
    return text;
}

void BM_Baseline_DictionaryJsonParseOnly(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json::parse(LargeDictionary()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeDictionary().size()));
}
BENCHMARK(BM_Baseline_DictionaryJsonParseOnly)->Unit(benchmark::kMillisecond);

void BM_DictionaryLoad_1000Classes50Attributes(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(TDictionary::Parse(LargeDictionary(), "bench.json"));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeDictionary().size()));
}
BENCHMARK(BM_DictionaryLoad_1000Classes50Attributes)->Unit(benchmark::kMillisecond);

void BM_DictionaryCheck_1000Classes50Attributes(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<std::string> faults;
        benchmark::DoNotOptimize(TDictionary::Check(LargeDictionary(), "bench.json", faults));
        if (!faults.empty())
            state.SkipWithError(faults.front().c_str());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * LargeDictionary().size()));
}
BENCHMARK(BM_DictionaryCheck_1000Classes50Attributes)->Unit(benchmark::kMillisecond);

constexpr unsigned int kReplyValues = 1000;

void BM_Baseline_ReplyLookupLinearScan(benchmark::State& state)
{
    std::vector<TValuePtr> values;
    for (unsigned int id = 1; id <= kReplyValues; ++id)
        values.push_back(std::make_unique<TUnsigned32>(id, id));
    for (auto _ : state)
        for (unsigned int id = 1; id <= kReplyValues; ++id)
            benchmark::DoNotOptimize(
                *std::find_if(values.begin(), values.end(), [&](const TValuePtr& v) { return v->GetID() == id; }));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kReplyValues));
}
BENCHMARK(BM_Baseline_ReplyLookupLinearScan);

void BM_ReplyLookupIndexed(benchmark::State& state)
{
    TReply reply(ZED_REPLY_RESPONSE, 1);
    for (unsigned int id = 1; id <= kReplyValues; ++id)
        reply.Add(std::make_unique<TUnsigned32>(id, id));
    for (auto _ : state)
        for (unsigned int id = 1; id <= kReplyValues; ++id)
            benchmark::DoNotOptimize(&reply[id]);
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kReplyValues));
}
BENCHMARK(BM_ReplyLookupIndexed);

// The shipped dictionary with 10,000 interfaces under one router.
std::shared_ptr<TSimulatedNetwork> LargeNetwork()
{
    static const auto network = [] {
        auto net =
            std::make_shared<TSimulatedNetwork>(TDictionary::Load(KEL_SOURCE_DIR "/data/network/dictionary.json"));
        std::string instances = R"({"format": "zed-instances 1", "instances": [
            {"entity": "Network n", "attributes": {"Name": "n"}},
            {"entity": "Network n Router r", "attributes": {"Name": "r"}})";
        for (int i = 0; i < 10000; ++i)
            instances += R"(, {"entity": "Network n Router r Interface if)" + std::to_string(i)
                         + R"(", "attributes": {"Name": "if)" + std::to_string(i)
                         + R"(", "State": "Up", "Speed": 1000, "Mtu": 1500, "InOctets": 1, "OutOctets": 2,
                              "Errors": 0, "ErrorRate": 0.5, "Description": "bench", "Vlans": [1, 2]}})";
        net->ParseInstances(instances + "]}", "bench.json");
        return net;
    }();
    return network;
}

void BM_Baseline_Show10000InstancesOneCallEach(benchmark::State& state)
{
    auto network = LargeNetwork();
    std::vector<TEntitySpec> each;
    for (int i = 0; i < 10000; ++i)
        each.push_back(TEntitySpec().AddClass(1, "n").AddClass(2, "r").AddClass(3, "if" + std::to_string(i)));
    for (auto _ : state)
        for (const TEntitySpec& entity : each)
            benchmark::DoNotOptimize(network->Execute(entity, 1, TRequest()));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * 10000));
}
BENCHMARK(BM_Baseline_Show10000InstancesOneCallEach)->Unit(benchmark::kMillisecond);

void BM_WildcardShow10000Instances(benchmark::State& state)
{
    auto network = LargeNetwork();
    TEntitySpec all;
    all.AddClass(1, "n").AddClass(2, "r").AddClassWildcard(3);
    for (auto _ : state) {
        auto results = network->Execute(all, 1, TRequest());
        if (results.size() != 10000)
            state.SkipWithError("wrong number of answers");
        benchmark::DoNotOptimize(results);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * 10000));
}
BENCHMARK(BM_WildcardShow10000Instances)->Unit(benchmark::kMillisecond);

}  // namespace
