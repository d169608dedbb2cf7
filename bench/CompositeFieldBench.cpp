// SPDX-License-Identifier: BSD-3-Clause
// A form with a set of records (5 numbers each) taking a reply's value and
// giving it back, per element at 50 and at 500 elements: the cost of an
// element must not grow with the count. The baseline is the same members as
// flat lines of a form (500 "elements" of 5 lines: 2,500 lines), built,
// filled and read back the same way.

#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/forms/IInputForm.h"
#include "kel/frame/IApplication.h"
#include "kel/model/IPresentationContainer.h"
#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TScalarValues.h"
#include "zed/value/TValueParser.h"

#include "BenchApplication.h"

#include <benchmark/benchmark.h>

#include <string>

namespace {

constexpr int kMembers = 5;
constexpr int kFlatElements = 500;

// Directive 1 takes a set of records of five numbers; directive 2 takes the
// members of 500 such records as 2,500 plain arguments.
void InstallCompositeDictionary()
{
    std::string flat;
    for (int i = 1; i <= kFlatElements * kMembers; ++i)
        flat += (i > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(i) + R"(, "name": "A)"
                + std::to_string(i) + R"(", "type": "Unsigned32"})";
    std::string members;
    for (int m = 1; m <= kMembers; ++m)
        members += (m > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(m) + R"(, "name": "M)"
                   + std::to_string(m) + R"(", "type": "Unsigned32"})";
    const std::string json = R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}],
        "types": [{"id": 100, "name": "Row", "kind": "record", "members": [)"
                             + members + R"(]}, {"id": 101, "name": "Rows", "kind": "set", "element": "Row"}],
        "classes": [{"code": 1, "name": "Box", "directives": [
            {"id": 1, "name": "Many", "request": [{"id": 1, "name": "Items", "type": "Rows"}]},
            {"id": 2, "name": "Flat", "request": [)"
                             + flat + "]}]}]}";
    ZEDGetApplication()->SetDictionary(TDictionary::Parse(json, "composite.json"));
}

// The set value of a reply with that many records.
TValuePtr Rows(int count)
{
    std::string json = "[";
    for (int i = 0; i < count; ++i) {
        json += i ? ",{" : "{";
        for (int m = 1; m <= kMembers; ++m)
            json += (m > 1 ? "," : "") + std::string("\"M") + std::to_string(m) + "\": " + std::to_string(i * m);
        json += "}";
    }
    json += "]";
    const TDictionary& dictionary = *ZEDGetApplication()->GetDictionary();
    return ZEDParseValue(*dictionary.FindType("Rows"), json, 1, {&dictionary, nullptr}, nullptr);
}

template <class Visit>
void ForEachField(IInputForm& form, Visit visit)
{
    form.GetContainer()->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element); line && line->GetField())
            visit(*line->GetField());
    });
}

void BM_SetOfRecords_SetValueGetTValue(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallCompositeDictionary();
    KELConfigContext* context = GetKELapp()->DefineNewContext("BENCH");
    const TEntitySpec entity("Box b");
    const int count = static_cast<int>(state.range(0));
    const TValuePtr value = Rows(count);
    for (auto _ : state) {
        IInputForm form(context);
        form.resize(800, 600);
        form.CreatePresentation("Many", entity, 1);
        ForEachField(form, [&](IField& set) {
            set.SetValue(*value);
            benchmark::DoNotOptimize(set.GetTValue(false));
        });
    }
    DestroyKEL();
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_SetOfRecords_SetValueGetTValue)->Arg(50)->Arg(500)->Unit(benchmark::kMillisecond);

void BM_Baseline_FlatLines_SetValueGetTValue(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallCompositeDictionary();
    KELConfigContext* context = GetKELapp()->DefineNewContext("BENCH");
    const TEntitySpec entity("Box b");
    for (auto _ : state) {
        IInputForm form(context);
        form.resize(800, 600);
        form.CreatePresentation("Flat", entity, 2);
        unsigned int n = 0;
        ForEachField(form, [&](IField& field) {
            field.SetValue(TUnsigned32(n++));
            benchmark::DoNotOptimize(field.GetTValue(false));
        });
    }
    DestroyKEL();
    state.SetItemsProcessed(state.iterations() * kFlatElements);
}
BENCHMARK(BM_Baseline_FlatLines_SetValueGetTValue)->Unit(benchmark::kMillisecond);

}  // namespace
