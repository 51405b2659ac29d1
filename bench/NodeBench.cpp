// Reading an ARF document text of about 12 MB (checked at start-up) into the node tree and writing
// it back, against RapidJSON parsing the same text into its DOM and writing it
// with its pretty writer, in the same run.
#include <benchmark/benchmark.h>

#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#ifdef TALVEX_HAVE_SIMDJSON
#include <simdjson.h>
#endif

#include "sorvane/arf/node/RootNode.h"
#include "bench/ArfDocumentText.h"

namespace {

using talvex_bench::documentText;

// The text read in place, as a load does it.
std::shared_ptr<sorvane::arf::RootNode> readTree(const std::string& text) {
    auto root = std::make_shared<sorvane::arf::RootNode>();
    sorvane::archive::JsonImporter importer(text.data(), text.size());
    root->fromJson(importer);
    return root;
}

void BM_Nodes_Read(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        auto root = readTree(text);
        benchmark::DoNotOptimize(root.get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

// The same through a stream (a copy into a string stream, then blocks).
void BM_Nodes_ReadStream(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        auto root = std::make_shared<sorvane::arf::RootNode>();
        std::istringstream in(text);
        sorvane::archive::JsonImporter importer(in);
        root->fromJson(importer);
        benchmark::DoNotOptimize(root.get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

#ifdef TALVEX_HAVE_SIMDJSON
// simdjson's DOM parse of the same text (parser reused, as it is meant to be).
void BM_SimdJson_Parse(benchmark::State& state) {
    const simdjson::padded_string text(documentText());
    simdjson::dom::parser parser;
    for (auto _ : state) {
        simdjson::dom::element document;
        if (parser.parse(text).get(document)) state.SkipWithError("simdjson parse failed");
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(BM_SimdJson_Parse)->Unit(benchmark::kMillisecond);
#endif

void BM_Nodes_Write(benchmark::State& state) {
    const std::string& text = documentText();
    auto root = std::make_shared<sorvane::arf::RootNode>();
    std::istringstream in(text);
    sorvane::archive::JsonImporter importer(in);
    root->fromJson(importer);
    size_t written = 0;
    for (auto _ : state) {
        std::string out = root->toJsonString();
        written = out.size();
        benchmark::DoNotOptimize(out.data());
    }
    if (written != text.size()) state.SkipWithError("written text differs in size from the input");
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_RapidJson_Parse(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        rapidjson::Document document;
        document.Parse(text.c_str(), text.size());
        benchmark::DoNotOptimize(&document);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_RapidJson_PrettyWrite(benchmark::State& state) {
    const std::string& text = documentText();
    rapidjson::Document document;
    document.Parse(text.c_str(), text.size());
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
        writer.SetIndent(' ', 2);
        document.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetString());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

// The two reads again with the release of what they built outside the timed
// part: the node tree is many small blocks, and freeing them takes a good
// share of a round, while RapidJSON's pool goes in a few.
void BM_Nodes_ReadBuildOnly(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        auto root = readTree(text);
        benchmark::DoNotOptimize(root.get());
        state.PauseTiming();
        root.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_RapidJson_ParseBuildOnly(benchmark::State& state) {
    const std::string& text = documentText();
    for (auto _ : state) {
        auto document = std::make_unique<rapidjson::Document>();
        document->Parse(text.c_str(), text.size());
        benchmark::DoNotOptimize(document.get());
        state.PauseTiming();
        document.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

} // namespace

BENCHMARK(BM_Nodes_Read)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Nodes_ReadStream)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RapidJson_Parse)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Nodes_ReadBuildOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RapidJson_ParseBuildOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Nodes_Write)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RapidJson_PrettyWrite)->Unit(benchmark::kMillisecond);
