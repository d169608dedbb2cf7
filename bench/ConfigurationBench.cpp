// Configuration files of 20,000 sections of 25 fields, with short values
// ("417 px", about 11.7 MB) and with long ones (20 to 40 characters, as paths
// and lists of identifiers are, about 20.6 MB): load (parse and store) and
// save in MB/s, against QSettings reading the same data as an INI file and
// inih's bare callback parse (which stores nothing); and a layered lookup
// whose user file misses and whose system file hits, against a lookup in one
// file. The argument of each file benchmark is 0 for short values, 1 for long.

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"

#include <QSettings>

#include <benchmark/benchmark.h>
#include <ini.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

constexpr int kSections = 20000;
constexpr int kFields = 25;

struct Files {
    std::string kel;
    std::string ini;
    std::size_t kelBytes = 0;
    std::size_t iniBytes = 0;
};

std::string Value(int s, int k, bool longValues)
{
    if (!longValues)
        return std::to_string(80 + (s * 7 + k) % 900) + " px";
    // 20 to 40 characters: a list of column identifiers.
    std::string value = "Arg:" + std::to_string(s % 97);
    const std::size_t length = 20 + static_cast<std::size_t>((s * 13 + k * 7) % 21);
    while (value.size() < length)
        value += ",Arg:" + std::to_string((s + k + value.size()) % 89);
    value.resize(length);
    return value;
}

// The same sections and fields in KEL's format and as INI.
Files MakeFiles(bool longValues)
{
    Files f;
    const std::string stem = "/tmp/kel-bench-" + std::to_string(::getpid()) + (longValues ? "-long" : "-short");
    f.kel = stem + ".cfg";
    f.ini = stem + ".ini";
    std::string kel, ini;
    for (int s = 0; s < kSections; ++s) {
        const std::string name = "Router" + std::to_string(s) + ".Interface.Columns";
        kel += "[ " + name + " ]\n";
        ini += "[" + name + "]\n";
        for (int k = 0; k < kFields; ++k) {
            const std::string key = "Width" + std::to_string(k);
            const std::string value = Value(s, k, longValues);
            kel += "    " + key + " = " + value + "\n";
            ini += key + "=" + value + "\n";
        }
        kel += "[ End " + name + " ]\n\n";
    }
    std::ofstream(f.kel, std::ios::binary) << kel;
    std::ofstream(f.ini, std::ios::binary) << ini;
    f.kelBytes = kel.size();
    f.iniBytes = ini.size();
    return f;
}

const Files& TestFiles(const benchmark::State& state)
{
    static const Files shortValues = MakeFiles(false);
    static const Files longValues = MakeFiles(true);
    return state.range(0) ? longValues : shortValues;
}

void BM_ConfigurationLoad(benchmark::State& state)
{
    const Files& files = TestFiles(state);
    for (auto _ : state) {
        IConfiguration configuration(files.kel);
        if (configuration.Load() != 1 || configuration.GetGlobalSections().Size() != kSections)
            state.SkipWithError("load failed");
        benchmark::DoNotOptimize(configuration);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * files.kelBytes));
}
BENCHMARK(BM_ConfigurationLoad)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_ConfigurationSave(benchmark::State& state)
{
    const Files& files = TestFiles(state);
    IConfiguration configuration(files.kel);
    configuration.Load();
    configuration.SetFilename(files.kel + ".saved");
    for (auto _ : state)
        if (configuration.Save() != 1)
            state.SkipWithError("save failed");
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * files.kelBytes));
    std::remove((files.kel + ".saved").c_str());
}
BENCHMARK(BM_ConfigurationSave)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Baseline_QSettingsIniLoad(benchmark::State& state)
{
    const Files& files = TestFiles(state);
    for (auto _ : state) {
        QSettings settings(QString::fromStdString(files.ini), QSettings::IniFormat);
        // QSettings reads on first access.
        if (settings.childGroups().size() != kSections)
            state.SkipWithError("QSettings did not read every group");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * files.iniBytes));
}
BENCHMARK(BM_Baseline_QSettingsIniLoad)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_Baseline_InihCallbackParse(benchmark::State& state)
{
    const Files& files = TestFiles(state);
    for (auto _ : state) {
        long fields = 0;
        ini_parse(files.ini.c_str(),
                  [](void* user, const char*, const char*, const char*) {
                      ++*static_cast<long*>(user);
                      return 1;
                  },
                  &fields);
        if (fields != static_cast<long>(kSections) * kFields)
            state.SkipWithError("inih did not see every field");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * files.iniBytes));
}
BENCHMARK(BM_Baseline_InihCallbackParse)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// A context whose user file lacks the key and whose system file has it.
struct Lookup {
    Lookup()
    {
        InitializeKEL("bench");
        context = GetKELapp()->DefineNewContext("bench");
        for (int s = 0; s < 1000; ++s)
            for (int k = 0; k < kFields; ++k)
                context->GetSystemConfigFile()->SetString("Section" + std::to_string(s), "Key" + std::to_string(k),
                                                         "value", 1);
        context->GetUserConfigFile()->SetString("Section500", "Other", "x", 1);
    }
    KELConfigContext* context;
};

void BM_Baseline_OneFileLookup(benchmark::State& state)
{
    static Lookup lookup;
    const IConfiguration& system = *lookup.context->GetSystemConfigFile();
    for (auto _ : state)
        benchmark::DoNotOptimize(system.FindValue("Section500", "Key17", 1));
}
BENCHMARK(BM_Baseline_OneFileLookup);

void BM_LayeredLookupUserMissSystemHit(benchmark::State& state)
{
    static Lookup lookup;
    std::string value;
    value.reserve(32);
    for (auto _ : state) {
        GetKELapp()->GetConfigString(lookup.context, "Section500", "Key17", value, "", 1);
        benchmark::DoNotOptimize(value.data());
    }
}
BENCHMARK(BM_LayeredLookupUserMissSystemHit);

} // namespace
