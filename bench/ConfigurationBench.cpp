// SPDX-License-Identifier: BSD-3-Clause
// Configuration files of 20,000 sections of 25 fields, with short values
// ("417 px", about 11.7 MB) and with long ones (20 to 40 characters, as paths
// and lists of identifiers are, about 20.6 MB): load (parse and store) and
// save in MB/s, against QSettings reading the same data as an INI file and
// inih's bare callback parse (which stores nothing); and a layered lookup
// whose user file misses and whose system file hits, against a lookup in one
// file. The argument of each file benchmark is 0 for short values, 1 for long.
// The load is also paired, interleaved, with each baseline.

#include "kel/config/IConfiguration.h"
#include "kel/config/KELConfigContext.h"
#include "kel/frame/IApplication.h"

#include <QSettings>

#include "BenchPair.h"

#include <benchmark/benchmark.h>
#include <ini.h>

#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
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

const Files& TestFiles(bool longValues)
{
    static const Files shortFiles = MakeFiles(false);
    static const Files longFiles = MakeFiles(true);
    return longValues ? longFiles : shortFiles;
}

const Files& TestFiles(const benchmark::State& state) { return TestFiles(state.range(0) != 0); }

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

void LoadConfiguration(const Files& files)
{
    IConfiguration configuration(files.kel);
    if (configuration.Load() != 1 || configuration.GetGlobalSections().Size() != kSections)
        throw std::runtime_error("load failed");
    benchmark::DoNotOptimize(configuration);
}

void LoadWithQSettings(const Files& files)
{
    QSettings settings(QString::fromStdString(files.ini), QSettings::IniFormat);
    // QSettings reads on first access.
    if (settings.childGroups().size() != kSections)
        throw std::runtime_error("QSettings did not read every group");
}

void ParseWithInih(const Files& files)
{
    long fields = 0;
    ini_parse(
        files.ini.c_str(),
        [](void* user, const char*, const char*, const char*) {
            ++*static_cast<long*>(user);
            return 1;
        },
        &fields);
    if (fields != static_cast<long>(kSections) * kFields)
        throw std::runtime_error("inih did not see every field");
}

// The least any loader must do: read the file into fresh memory, left
// uninitialised, and find its lines.
void ReadAndFindLines(const Files& files)
{
    const int file = ::open(files.kel.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat info {};
    if (file < 0 || ::fstat(file, &info) != 0)
        throw std::runtime_error("cannot read " + files.kel);
    const auto size = static_cast<std::size_t>(info.st_size);
    const std::unique_ptr<char[]> text(new char[size]);
    std::size_t filled = 0;
    for (ssize_t n; filled < size && (n = ::read(file, text.get() + filled, size - filled)) > 0;)
        filled += static_cast<std::size_t>(n);
    ::close(file);
    std::size_t lines = 0;
    for (const char* at = text.get();
         (at = static_cast<const char*>(std::memchr(at, '\n', filled - (at - text.get())))); ++at)
        ++lines;
    benchmark::DoNotOptimize(lines);
}

// Loading the long-valued file (20.6 MB, 500,000 fields) against each baseline,
// interleaved. Aims: at most 1/8 of QSettings' time, half of inih's bare
// parse, five times the read-and-find-lines floor.
void Pair_ConfigurationLoadVsQSettings(benchmark::State& state)
{
    const Files& files = TestFiles(true);
    RunPair(
        state, [&] { LoadConfiguration(files); }, [&] { LoadWithQSettings(files); });
}
BENCHMARK(Pair_ConfigurationLoadVsQSettings)->Unit(benchmark::kMillisecond);

void Pair_ConfigurationLoadVsInih(benchmark::State& state)
{
    const Files& files = TestFiles(true);
    RunPair(
        state, [&] { LoadConfiguration(files); }, [&] { ParseWithInih(files); });
}
BENCHMARK(Pair_ConfigurationLoadVsInih)->Unit(benchmark::kMillisecond);

void Pair_ConfigurationLoadVsReadFloor(benchmark::State& state)
{
    const Files& files = TestFiles(true);
    RunPair(
        state, [&] { LoadConfiguration(files); }, [&] { ReadAndFindLines(files); });
}
BENCHMARK(Pair_ConfigurationLoadVsReadFloor)->Unit(benchmark::kMillisecond);

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

}  // namespace
