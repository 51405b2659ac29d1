// Loading a document of about 12 MB from each storage mode and saving it
// back, against reading the same bytes with the JSON cursor alone (every
// value read by type, nothing kept), in the same run.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "bench/ArfDocumentText.h"
#include "sorvane/arf/Arf.h"

namespace {

using sorvane::arf::Arf;
using talvex_bench::documentText;
namespace fs = std::filesystem;

// Reads one value of any kind, as a generic reader would.
bool walk(sorvane::archive::JsonImporter& in, std::string& scratch) {
    if (in.nextBeginObject()) {
        while (in.nextObjectItem(scratch))
            if (!walk(in, scratch)) return false;
        return in.nextEndObject();
    }
    if (in.nextBeginArray()) {
        while (in.nextArrayItem())
            if (!walk(in, scratch)) return false;
        return in.nextEndArray();
    }
    if (in.nextString(scratch)) return true;
    if (in.nextNumber()) return true;
    if (in.nextBoolean()) return true;
    return in.nextNull();
}

fs::path scratchDir() {
    static const fs::path dir = [] {
        fs::path d = fs::temp_directory_path() / "talvex-bench-arf";
        fs::create_directories(d);
        return d;
    }();
    return dir;
}

// The document saved once in each storage mode.
const std::string& savedPath(int mode) {
    static std::string paths[2];
    std::string& path = paths[mode];
    if (path.empty()) {
        path = (scratchDir() / (mode == 0 ? "doc.arf.json" : "doc.arfz")).string();
        Arf arf = Arf::create(path);
        std::istringstream in(documentText());
        sorvane::archive::JsonImporter importer(in);
        arf.fromJson(importer);
        arf.save();
    }
    return path;
}

struct Quiet {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    ~Quiet() { std::cerr.rdbuf(old); }
};

void BM_JsonReaderAlone(benchmark::State& state) {
    const std::string& text = documentText();
    std::string scratch;
    for (auto _ : state) {
        std::istringstream in(text);
        sorvane::archive::JsonImporter importer(in);
        if (!walk(importer, scratch)) state.SkipWithError("walk failed");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_Arf_LoadMemory(benchmark::State& state) {
    const std::string path = "memory:" + documentText();
    for (auto _ : state) {
        Arf arf = Arf::load(path, true);
        benchmark::DoNotOptimize(arf.getRoot().get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * documentText().size()));
}

void BM_Arf_LoadFiles(benchmark::State& state) {
    const std::string& path = savedPath(0);
    for (auto _ : state) {
        Arf arf = Arf::load(path, true);
        benchmark::DoNotOptimize(arf.getRoot().get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * documentText().size()));
}

void BM_Arf_LoadArchive(benchmark::State& state) {
    const std::string& path = savedPath(1);
    for (auto _ : state) {
        Arf arf = Arf::load(path, true);
        benchmark::DoNotOptimize(arf.getRoot().get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * documentText().size()));
}

// Saving: the document is made outside the timed part, then saved.
void saveInto(benchmark::State& state, const std::string& path) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            Arf arf = Arf::create(path);
            std::istringstream in(documentText());
            sorvane::archive::JsonImporter importer(in);
            arf.fromJson(importer);
            state.ResumeTiming();
            arf.save();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * documentText().size()));
}

void BM_Arf_SaveMemory(benchmark::State& state) { saveInto(state, "memory:"); }
void BM_Arf_SaveFiles(benchmark::State& state) { saveInto(state, (scratchDir() / "out.arf.json").string()); }
void BM_Arf_SaveArchive(benchmark::State& state) { saveInto(state, (scratchDir() / "out.arfz").string()); }

} // namespace

BENCHMARK(BM_JsonReaderAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Arf_LoadMemory)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Arf_LoadFiles)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Arf_LoadArchive)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Arf_SaveMemory)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Arf_SaveFiles)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Arf_SaveArchive)->Unit(benchmark::kMillisecond);
