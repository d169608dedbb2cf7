// Building an input form of 1,000 arguments and filling its request, against
// plain Qt in the same run: 1,000 labelled line edits in a QFormLayout inside
// a QScrollArea, laid out and read back. Aim: at most 2x the plain form.

#include "kel/forms/IInputForm.h"
#include "kel/frame/IApplication.h"
#include "zed/TApplication.h"
#include "zed/call/TRequest.h"
#include "zed/dict/TDictionary.h"

#include "BenchApplication.h"

#include <QApplication>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

constexpr int kArguments = 1000;

// A dictionary with one class whose directive 1 takes 1,000 numbers, each with a default.
void InstallWideDictionary()
{
    std::string arguments;
    for (int i = 1; i <= kArguments; ++i)
        arguments += (i > 1 ? "," : "") + std::string(R"({"id": )") + std::to_string(i) + R"(, "name": "A)"
                     + std::to_string(i) + R"(", "type": "Unsigned32", "default": ")" + std::to_string(i) + "\"}";
    const std::string json = R"({"format": "zed-dictionary 1", "partitions": [{"code": 1, "name": "Status"}],
        "classes": [{"code": 1, "name": "Box", "directives": [{"id": 1, "name": "Wide", "request": [)"
                             + arguments + "]}]}]}";
    ZEDGetApplication()->SetDictionary(TDictionary::Parse(json, "wide.json"));
}

void BM_InputForm1000Arguments(benchmark::State& state)
{
    EnsureApplication();
    InitializeKEL("kel_bench");
    InstallWideDictionary();
    KELConfigContext* context = GetKELapp()->DefineNewContext("BENCH");
    const TEntitySpec entity("Box b");
    for (auto _ : state) {
        IInputForm form(context);
        form.resize(800, 600);
        form.CreatePresentation("Wide", entity, 1);
        form.FillWithDefaults();
        TRequest request;
        form.FillRequest(request);
        benchmark::DoNotOptimize(request.Size());
    }
    DestroyKEL();
    state.SetItemsProcessed(state.iterations() * kArguments);
}
BENCHMARK(BM_InputForm1000Arguments)->Unit(benchmark::kMillisecond);

void BM_Baseline_QFormLayout1000LineEdits(benchmark::State& state)
{
    EnsureApplication();
    for (auto _ : state) {
        QScrollArea area;
        area.resize(800, 600);
        auto* inside = new QWidget;
        auto* layout = new QFormLayout(inside);
        std::vector<QLineEdit*> edits;
        edits.reserve(kArguments);
        for (int i = 1; i <= kArguments; ++i) {
            auto* edit = new QLineEdit(QString::number(i));
            edit->setAccessibleName(QStringLiteral("A%1").arg(i));
            layout->addRow(new QLabel(QStringLiteral("A%1 :").arg(i)), edit);
            edits.push_back(edit);
        }
        area.setWidget(inside);
        layout->activate();
        std::vector<unsigned int> values;
        values.reserve(kArguments);
        for (QLineEdit* edit : edits)
            values.push_back(edit->text().toUInt());
        benchmark::DoNotOptimize(values.data());
    }
    state.SetItemsProcessed(state.iterations() * kArguments);
}
BENCHMARK(BM_Baseline_QFormLayout1000LineEdits)->Unit(benchmark::kMillisecond);

} // namespace
