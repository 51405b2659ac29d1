// JSON reading and writing against RapidJSON on the same ARF-shaped text,
// in the same run:
//   Json_ImporterWalk   our cursor, typed reads as a node reader does them (keys in place)
//   Json_RapidParse     rapidjson::Document::Parse of the same text
//   Json_SimdParse      simdjson's DOM parse of the same text (when installed)
//   Json_ExporterWrite  our writer, the same structure
//   Json_RapidPretty    rapidjson::PrettyWriter, the same structure
#include <benchmark/benchmark.h>

#include <rapidjson/document.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#ifdef TALVEX_HAVE_SIMDJSON
#include <simdjson.h>
#endif

#include <cstdlib>
#include <istream>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "ArfJsonGenerator.h"
#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"

using sorvane::archive::JsonExporter;
using sorvane::archive::JsonImporter;

namespace {

constexpr size_t kTextSize = 12 << 20;

const std::string& text() {
    static const std::string value = bench::generateArfJson(kTextSize);
    return value;
}

const bench::ArfJsonModel& model() {
    static const bench::ArfJsonModel value = bench::makeArfJsonModel(kTextSize);
    return value;
}

// Reads from memory without a copy, as Parse does.
class MemoryInput : public std::streambuf {
public:
    explicit MemoryInput(const std::string& text) {
        char* begin = const_cast<char*>(text.data());
        setg(begin, begin, begin + text.size());
    }
};

// Appends to one reused string, as RapidJSON's StringBuffer does.
class StringOutput : public std::streambuf {
public:
    std::string text;

protected:
    std::streamsize xsputn(const char* s, std::streamsize n) override {
        text.append(s, static_cast<size_t>(n));
        return n;
    }
    int_type overflow(int_type c) override {
        if (!traits_type::eq_int_type(c, traits_type::eof())) text.push_back(traits_type::to_char_type(c));
        return c;
    }
};

void fail(const char* what, JsonImporter& in) {
    std::fprintf(stderr, "bench reader: %s at line %d\n", what, in.getLine());
    std::abort();
}

// A key where it lies in the text, as the record reader takes it.
bool nextKey(JsonImporter& in, std::string_view& key) {
    const char* text = nullptr;
    size_t length = 0;
    if (!in.nextObjectKey(text, length)) return false;
    key = std::string_view(text, length);
    return true;
}

// The next record of a list read into `list`: an earlier one is overwritten
// in place, so a model read again keeps its storage.
template <class List>
typename List::value_type& slot(List& list, size_t& used) {
    if (used == list.size()) list.emplace_back();
    return list[used++];
}

// The reading pattern of a record: keys dispatched to typed calls, unknown
// keys skipped.
void readRecords(JsonImporter& in, bench::ArfJsonModel& model) {
    std::string_view key;
    if (!in.nextBeginObject()) fail("object", in);
    while (nextKey(in, key)) {
        if (key == "preamble") {
            if (!in.nextBeginObject()) fail("preamble", in);
            while (nextKey(in, key)) {
                if (key == "signature") {
                    if (!in.nextString(model.signature)) fail("signature", in);
                } else if (key == "version") {
                    if (!in.nextString(model.version)) fail("version", in);
                } else if (key == "supportedAnimations") {
                    if (!in.nextStringList(model.supportedAnimations)) fail("animations", in);
                } else if (!in.skipContent(0, 0)) {
                    fail("skip", in);
                }
            }
            if (!in.nextEndObject()) fail("end", in);
        } else if (key == "components") {
            if (!in.nextBeginObject()) fail("components", in);
            while (nextKey(in, key)) {
                if (!in.nextBeginArray()) fail("list", in);
                if (key == "meshes") {
                    size_t used = 0;
                    while (in.nextArrayItem()) {
                        auto& mesh = slot(model.meshes, used);
                        if (!in.nextBeginObject()) fail("mesh", in);
                        while (nextKey(in, key)) {
                            bool ok = key == "name"   ? in.nextString(mesh.name)
                                      : key == "id"   ? (mesh.id = in.nextInteger().value_or(-1)) >= 0
                                      : key == "data" ? in.nextIntegerList(mesh.data)
                                                      : in.skipContent(0, 0);
                            if (!ok) fail(std::string(key).c_str(), in);
                        }
                        if (!in.nextEndObject()) fail("end", in);
                    }
                    model.meshes.resize(used);
                } else if (key == "nodes") {
                    size_t used = 0;
                    while (in.nextArrayItem()) {
                        auto& node = slot(model.nodes, used);
                        if (!in.nextBeginObject()) fail("node", in);
                        while (nextKey(in, key)) {
                            bool ok = key == "name"          ? in.nextString(node.name)
                                      : key == "id"          ? (node.id = in.nextInteger().value_or(-1)) >= 0
                                      : key == "translation" ? in.nextNumberList(node.translation)
                                      : key == "rotation"    ? in.nextNumberList(node.rotation)
                                      : key == "scale"       ? in.nextNumberList(node.scale)
                                      : key == "children"    ? in.nextIntegerList(node.children)
                                                             : in.skipContent(0, 0);
                            if (!ok) fail(std::string(key).c_str(), in);
                        }
                        if (!in.nextEndObject()) fail("end", in);
                    }
                    model.nodes.resize(used);
                } else if (key == "blendshapeSets") {
                    size_t used = 0;
                    while (in.nextArrayItem()) {
                        auto& set = slot(model.blendshapeSets, used);
                        if (!in.nextBeginObject()) fail("set", in);
                        while (nextKey(in, key)) {
                            bool ok = true;
                            if (key == "name") {
                                ok = in.nextString(set.name);
                            } else if (key == "id") {
                                ok = (set.id = in.nextInteger().value_or(-1)) >= 0;
                            } else if (key == "shapes") {
                                ok = in.nextStringList(set.shapes);
                            } else if (key == "weights") {
                                ok = in.nextBeginArray();
                                size_t lists = 0;
                                while (ok && in.nextArrayItem()) ok = in.nextNumberList(slot(set.weights, lists));
                                set.weights.resize(lists);
                                ok = ok && in.nextEndArray();
                            } else {
                                ok = in.skipContent(0, 0);
                            }
                            if (!ok) fail(std::string(key).c_str(), in);
                        }
                        if (!in.nextEndObject()) fail("end", in);
                    }
                    model.blendshapeSets.resize(used);
                } else if (!in.skipContent(0, 1)) {
                    fail("skip", in);
                    continue;
                }
                if (!in.nextEndArray()) fail("end", in);
            }
            if (!in.nextEndObject()) fail("end", in);
        } else if (key == "data") {
            if (!in.nextBeginArray()) fail("data", in);
            size_t used = 0;
            while (in.nextArrayItem()) {
                auto& item = slot(model.data, used);
                if (!in.nextBeginObject()) fail("item", in);
                while (nextKey(in, key)) {
                    bool ok = key == "name"         ? in.nextString(item.name)
                              : key == "id"         ? (item.id = in.nextInteger().value_or(-1)) >= 0
                              : key == "uri"        ? in.nextString(item.uri)
                              : key == "type"       ? in.nextString(item.type)
                              : key == "byteOffset" ? (item.byteOffset = in.nextInteger().value_or(-1)) >= 0
                              : key == "byteLength" ? (item.byteLength = in.nextInteger().value_or(-1)) >= 0
                                                    : in.skipContent(0, 0);
                    if (!ok) fail(std::string(key).c_str(), in);
                }
                if (!in.nextEndObject()) fail("end", in);
            }
            model.data.resize(used);
            if (!in.nextEndArray()) fail("end", in);
        } else if (!in.skipContent(0, 0)) {
            fail("skip", in);
        }
    }
    if (!in.nextEndObject()) fail("end", in);
}

// The text read in place, as Parse reads it.
void Json_ImporterWalk(benchmark::State& state) {
    const std::string& json = text();
    size_t records = 0;
    for (auto _ : state) {
        JsonImporter in(json.data(), json.size());
        bench::ArfJsonModel read;
        readRecords(in, read);
        records = read.meshes.size() + read.nodes.size() + read.blendshapeSets.size() + read.data.size();
        benchmark::DoNotOptimize(read);
    }
    state.counters["records"] = static_cast<double>(records);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * json.size()));
}
BENCHMARK(Json_ImporterWalk)->Unit(benchmark::kMillisecond);

// The cursor alone: the same reads into one model kept from round to round,
// so that its strings and lists keep their storage and the figure is the
// cursor's, not the allocator's (RapidJSON's Parse allocates from a pool).
void Json_ImporterWalkReused(benchmark::State& state) {
    const std::string& json = text();
    bench::ArfJsonModel read;
    for (auto _ : state) {
        JsonImporter in(json.data(), json.size());
        readRecords(in, read);
        benchmark::DoNotOptimize(read);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * json.size()));
}
BENCHMARK(Json_ImporterWalkReused)->Unit(benchmark::kMillisecond);

// The same through a stream over the text (blocks copied into the cursor).
void Json_ImporterWalkStream(benchmark::State& state) {
    const std::string& json = text();
    for (auto _ : state) {
        MemoryInput buffer(json);
        std::istream stream(&buffer);
        JsonImporter in(stream);
        bench::ArfJsonModel read;
        readRecords(in, read);
        benchmark::DoNotOptimize(read);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * json.size()));
}
BENCHMARK(Json_ImporterWalkStream)->Unit(benchmark::kMillisecond);

void Json_RapidParse(benchmark::State& state) {
    const std::string& json = text();
    for (auto _ : state) {
        rapidjson::Document document;
        document.Parse(json.c_str(), json.size());
        if (document.HasParseError()) std::abort();
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * json.size()));
}
BENCHMARK(Json_RapidParse)->Unit(benchmark::kMillisecond);

#ifdef TALVEX_HAVE_SIMDJSON
// simdjson's DOM parse of the same text: the ceiling, not a target.
void Json_SimdParse(benchmark::State& state) {
    const simdjson::padded_string json(text());
    simdjson::dom::parser parser;
    for (auto _ : state) {
        simdjson::dom::element document;
        if (parser.parse(json).get(document)) std::abort();
        benchmark::DoNotOptimize(document);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * json.size()));
}
BENCHMARK(Json_SimdParse)->Unit(benchmark::kMillisecond);
#endif

void Json_ExporterWrite(benchmark::State& state) {
    const bench::ArfJsonModel& data = model();
    StringOutput buffer;
    buffer.text.reserve(text().size() + 4096);
    for (auto _ : state) {
        buffer.text.clear();
        std::ostream stream(&buffer);
        {
            JsonExporter out(stream);
            bench::writeArfJson(out, data);
        }
        benchmark::DoNotOptimize(buffer.text.data());
    }
    if (buffer.text != text()) std::abort();  // the same text as generated
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * buffer.text.size()));
}
BENCHMARK(Json_ExporterWrite)->Unit(benchmark::kMillisecond);

template <class Writer>
void rapidNumbers(Writer& w, const std::vector<double>& values) {
    w.StartArray();
    for (double v : values) w.Double(v);
    w.EndArray();
}

template <class Writer>
void rapidIntegers(Writer& w, const std::vector<int64_t>& values) {
    w.StartArray();
    for (int64_t v : values) w.Int64(v);
    w.EndArray();
}

template <class Writer>
void rapidStrings(Writer& w, const std::vector<std::string>& values) {
    w.StartArray();
    for (const auto& v : values) w.String(v.data(), static_cast<rapidjson::SizeType>(v.size()));
    w.EndArray();
}

template <class Writer>
void rapidText(Writer& w, const std::string& value) {
    w.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
}

void Json_RapidPretty(benchmark::State& state) {
    const bench::ArfJsonModel& data = model();
    rapidjson::StringBuffer buffer;
    size_t bytes = 0;
    for (auto _ : state) {
        buffer.Clear();
        rapidjson::PrettyWriter<rapidjson::StringBuffer> w(buffer);
        w.SetIndent(' ', 2);
        w.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        w.StartObject();
        w.Key("preamble");
        w.StartObject();
        w.Key("signature");
        rapidText(w, data.signature);
        w.Key("version");
        rapidText(w, data.version);
        w.Key("supportedAnimations");
        rapidStrings(w, data.supportedAnimations);
        w.EndObject();
        w.Key("components");
        w.StartObject();
        w.Key("meshes");
        w.StartArray();
        for (const auto& mesh : data.meshes) {
            w.StartObject();
            w.Key("name");
            rapidText(w, mesh.name);
            w.Key("id");
            w.Int64(mesh.id);
            w.Key("data");
            rapidIntegers(w, mesh.data);
            w.EndObject();
        }
        w.EndArray();
        w.Key("nodes");
        w.StartArray();
        for (const auto& node : data.nodes) {
            w.StartObject();
            w.Key("name");
            rapidText(w, node.name);
            w.Key("id");
            w.Int64(node.id);
            w.Key("translation");
            rapidNumbers(w, node.translation);
            w.Key("rotation");
            rapidNumbers(w, node.rotation);
            w.Key("scale");
            rapidNumbers(w, node.scale);
            w.Key("children");
            rapidIntegers(w, node.children);
            w.EndObject();
        }
        w.EndArray();
        w.Key("blendshapeSets");
        w.StartArray();
        for (const auto& set : data.blendshapeSets) {
            w.StartObject();
            w.Key("name");
            rapidText(w, set.name);
            w.Key("id");
            w.Int64(set.id);
            w.Key("shapes");
            rapidStrings(w, set.shapes);
            w.Key("weights");
            w.StartArray();
            for (const auto& weights : set.weights) rapidNumbers(w, weights);
            w.EndArray();
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
        w.Key("data");
        w.StartArray();
        for (const auto& item : data.data) {
            w.StartObject();
            w.Key("name");
            rapidText(w, item.name);
            w.Key("id");
            w.Int64(item.id);
            w.Key("uri");
            rapidText(w, item.uri);
            w.Key("type");
            rapidText(w, item.type);
            w.Key("byteOffset");
            w.Int64(item.byteOffset);
            w.Key("byteLength");
            w.Int64(item.byteLength);
            w.EndObject();
        }
        w.EndArray();
        w.EndObject();
        bytes = buffer.GetSize();
        benchmark::DoNotOptimize(buffer.GetString());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}
BENCHMARK(Json_RapidPretty)->Unit(benchmark::kMillisecond);

} // namespace
