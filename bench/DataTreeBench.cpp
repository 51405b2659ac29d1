// DataTree files and scalar conversion against references in the same run:
//   DataTree_LoadFile / Rapid_ParseFile   read a file holding a [1000, 1000]
//                                         tensor of doubles
//   DataTree_SaveFile / Rapid_WriteFile   write the same value to a file
//   Convert_*  / Loop_*                   convertScalarType of a tensor of
//                                         16 million values, and the plain loop
#include <benchmark/benchmark.h>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "sorvane/datatree/DataTree.h"

using sorvane::DataTree;
using sorvane::ScalarType;

namespace {

constexpr long kRows = 1000;
constexpr long kColumns = 1000;
constexpr long kConvertCount = 16L << 20;

std::string benchDir() {
    const auto dir = std::filesystem::temp_directory_path() / "talvex-datatree-bench";
    std::filesystem::create_directories(dir);
    return dir.string();
}

const DataTree& tensor() {
    static const DataTree value = [] {
        DataTree t = DataTree::createTensor({kRows, kColumns}, ScalarType::Double);
        std::mt19937_64 random(42);
        std::uniform_real_distribution<double> values(-1000.0, 1000.0);
        double* data = t.getData<double>();
        for (long i = 0; i < kRows * kColumns; ++i) data[i] = values(random);
        DataTree object = DataTree::createObject();
        object["tensor"] = t;
        return object;
    }();
    return value;
}

const std::string& sourcePath() {
    static const std::string path = [] {
        std::string p = benchDir() + "/tensor.json";
        sorvane::saveDataTree(p.c_str(), tensor());
        return p;
    }();
    return path;
}

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    in.seekg(0, std::ios::end);
    std::string text(static_cast<size_t>(in.tellg()), '\0');
    in.seekg(0);
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    return text;
}

int64_t fileSize(const std::string& path) { return static_cast<int64_t>(std::filesystem::file_size(path)); }

void DataTree_LoadFile(benchmark::State& state) {
    const std::string& path = sourcePath();
    for (auto _ : state) {
        DataTree tree = sorvane::loadDataTree(path.c_str());
        benchmark::DoNotOptimize(tree.getNode());
    }
    state.SetBytesProcessed(state.iterations() * fileSize(path));
}

void Rapid_ParseFile(benchmark::State& state) {
    const std::string& path = sourcePath();
    for (auto _ : state) {
        std::string text = readFile(path);
        rapidjson::Document document;
        document.Parse(text.c_str(), text.size());
        if (document.HasParseError()) state.SkipWithError("parse error");
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(state.iterations() * fileSize(path));
}

void DataTree_SaveFile(benchmark::State& state) {
    const DataTree tree = sorvane::loadDataTree(sourcePath().c_str());
    const std::string path = benchDir() + "/saved.json";
    for (auto _ : state) sorvane::saveDataTree(path.c_str(), tree);
    state.SetBytesProcessed(state.iterations() * fileSize(path));
}

void Rapid_WriteFile(benchmark::State& state) {
    const std::string text = readFile(sourcePath());
    rapidjson::Document document;
    document.Parse(text.c_str(), text.size());
    const std::string path = benchDir() + "/rapid.json";
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
        writer.SetIndent(' ', 2);
        writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        document.Accept(writer);
        std::FILE* file = std::fopen(path.c_str(), "wb");
        std::fwrite(buffer.GetString(), 1, buffer.GetSize(), file);
        std::fclose(file);
    }
    state.SetBytesProcessed(state.iterations() * fileSize(path));
}

template <class T>
DataTree filled(ScalarType type, double scale) {
    DataTree t = DataTree::createTensor({kConvertCount}, type);
    T* data = t.getData<T>();
    for (long i = 0; i < kConvertCount; ++i) data[i] = static_cast<T>(static_cast<double>(i % 256) * scale);
    return t;
}

template <class S, class D>
void convertWith(benchmark::State& state, ScalarType from, ScalarType to, double scale) {
    const DataTree source = filled<S>(from, scale);
    for (auto _ : state) {
        DataTree converted = source;
        converted.convertScalarType(to);
        benchmark::DoNotOptimize(converted.getBuffer());
    }
    state.SetBytesProcessed(state.iterations() * kConvertCount * static_cast<int64_t>(sizeof(S) + sizeof(D)));
}

// The reference: allocate the destination and convert with a plain loop.
template <class S, class D, class Op>
void loopWith(benchmark::State& state, ScalarType from, double scale, Op op) {
    const DataTree source = filled<S>(from, scale);
    const S* input = static_cast<const S*>(source.getBuffer());
    for (auto _ : state) {
        D* output = static_cast<D*>(std::malloc(kConvertCount * sizeof(D)));
        for (long i = 0; i < kConvertCount; ++i) output[i] = op(input[i]);
        benchmark::DoNotOptimize(output);
        benchmark::ClobberMemory();
        std::free(output);
    }
    state.SetBytesProcessed(state.iterations() * kConvertCount * static_cast<int64_t>(sizeof(S) + sizeof(D)));
}

void Convert_FloatToUInteger8(benchmark::State& state) {
    convertWith<float, uint8_t>(state, ScalarType::Float, ScalarType::UInteger8, 0.99);
}
void Loop_FloatToUInteger8(benchmark::State& state) {
    loopWith<float, uint8_t>(state, ScalarType::Float, 0.99,
                             [](float v) { return static_cast<uint8_t>(static_cast<int32_t>(v)); });
}
void Convert_UInteger8ToDouble(benchmark::State& state) {
    convertWith<uint8_t, double>(state, ScalarType::UInteger8, ScalarType::Double, 1.0);
}
void Loop_UInteger8ToDouble(benchmark::State& state) {
    loopWith<uint8_t, double>(state, ScalarType::UInteger8, 1.0, [](uint8_t v) { return static_cast<double>(v); });
}
void Convert_DoubleToFloat(benchmark::State& state) {
    convertWith<double, float>(state, ScalarType::Double, ScalarType::Float, 0.37);
}
void Loop_DoubleToFloat(benchmark::State& state) {
    loopWith<double, float>(state, ScalarType::Double, 0.37, [](double v) { return static_cast<float>(v); });
}
void Convert_DoubleToUInteger8(benchmark::State& state) {
    convertWith<double, uint8_t>(state, ScalarType::Double, ScalarType::UInteger8, 0.99);
}
void Loop_DoubleToUInteger8(benchmark::State& state) {
    loopWith<double, uint8_t>(state, ScalarType::Double, 0.99,
                              [](double v) { return static_cast<uint8_t>(static_cast<int32_t>(v)); });
}

} // namespace

BENCHMARK(DataTree_LoadFile)->Unit(benchmark::kMillisecond);
BENCHMARK(Rapid_ParseFile)->Unit(benchmark::kMillisecond);
BENCHMARK(DataTree_SaveFile)->Unit(benchmark::kMillisecond);
BENCHMARK(Rapid_WriteFile)->Unit(benchmark::kMillisecond);
BENCHMARK(Convert_FloatToUInteger8)->Unit(benchmark::kMillisecond);
BENCHMARK(Loop_FloatToUInteger8)->Unit(benchmark::kMillisecond);
BENCHMARK(Convert_DoubleToUInteger8)->Unit(benchmark::kMillisecond);
BENCHMARK(Loop_DoubleToUInteger8)->Unit(benchmark::kMillisecond);
BENCHMARK(Convert_UInteger8ToDouble)->Unit(benchmark::kMillisecond);
BENCHMARK(Loop_UInteger8ToDouble)->Unit(benchmark::kMillisecond);
BENCHMARK(Convert_DoubleToFloat)->Unit(benchmark::kMillisecond);
BENCHMARK(Loop_DoubleToFloat)->Unit(benchmark::kMillisecond);
