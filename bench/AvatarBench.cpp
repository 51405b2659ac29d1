// A whole avatar of more than 10 MB (200 blendshape sets of 100 shapes,
// 1,000 Gaussian splat sets, 20,000 linear associations, 5,000 channels),
// loaded and saved in memory, against the JSON reader alone and the JSON
// writer alone on the same bytes, in the same run.
#include <benchmark/benchmark.h>

#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "sorvane/arf/Arf.h"

namespace {

using sorvane::arf::Arf;

const std::string& avatarText() {
    static const std::string text = [] {
        std::ostringstream json;
        json << "{\"components\": {\"meshes\": [";
        for (int m = 1; m <= 200; ++m) json << (m > 1 ? ", " : "") << "{\"data\": [" << m << "], \"name\": \"mesh " << m << "\", \"id\": " << m << "}";
        json << "], \"nodes\": [{\"mapping\": \"Root\", \"name\": \"root\", \"id\": 1}], \"skeletons\": [{\"root\": 1, "
                "\"joints\": [], \"animationInfo\": [{\"type\": \"ANIMATION_BODY\", \"target\": 0, \"mappings\": [";
        // 20,000 linear associations and 5,000 channels in 50 mappings.
        for (int m = 0; m < 50; ++m) {
            json << (m ? ", " : "") << "{\"source\": " << m % 4 << ", \"linearAssociations\": [";
            for (int a = 0; a < 400; ++a)
                json << (a ? ", " : "") << "{\"targetIndex\": " << a + 1 << ", \"sourceIndices\": [" << a % 52 << ", "
                     << (a + 7) % 52 << "], \"weights\": [0.25, " << 0.5 + a * 0.001 << "]}";
            json << "], \"nonLinearAssociations\": [";
            for (int a = 0; a < 50; ++a) {
                json << (a ? ", " : "") << "{\"targetIndex\": " << a + 1 << ", \"channels\": [";
                for (int c = 0; c < 2; ++c)
                    json << (c ? ", " : "") << "{\"sourceIndex\": " << c << ", \"range\": [0, 1], \"path\": "
                         << "\"CHANNEL_JOINT_ROTATION\", \"input\": 1, \"interpolation\": \"INTERPOLATION_LINEAR\", "
                            "\"output\": 2}";
                json << "], \"combination\": \"COMBINATION_SUM\"}";
            }
            json << "]}";
        }
        json << "]}], \"name\": \"body\", \"id\": 1}], \"blendshapeSets\": [";
        for (int s = 1; s <= 200; ++s) {
            json << (s > 1 ? ", " : "") << "{\"shapes\": [";
            for (int k = 1; k <= 100; ++k)
                json << (k > 1 ? ", " : "") << "{\"shape\": " << (s * 100 + k) % 3000 + 1 << ", \"name\": \"shape "
                     << s << "." << k << "\", \"id\": " << k << "}";
            json << "], \"baseMesh\": " << s << ", \"name\": \"face set " << s << "\", \"id\": " << s << "}";
        }
        json << "], \"gaussianSplatSets\": [";
        for (int g = 1; g <= 1000; ++g)
            json << (g > 1 ? ", " : "") << "{\"path\": \"splats/" << g << "\", \"count\": " << g * 1000
                 << ", \"positions\": " << g << ", \"mode\": \"free\", \"orientations\": " << g + 1
                 << ", \"scales\": " << g + 2 << ", \"colors\": " << g + 3 << ", \"alphas\": " << g + 4
                 << ", \"normals\": " << g + 5 << ", \"attributes\": {\"quality\": \"high\", \"lod\": " << g % 4
                 << "}, \"name\": \"cloud " << g << "\", \"id\": " << g << "}";
        json << "]}, \"data\": [";
        for (int d = 1; d <= 12000; ++d)
            json << (d > 1 ? ", " : "") << "{\"type\": \"application/mpeg.arf.dense\", \"uri\": \"payload.bin\", "
                    "\"offset\": "
                 << d * 64 << ", \"byteLength\": 64, \"name\": \"item " << d << "\", \"id\": " << d << "}";
        json << "]}";
        // The library's own output form, as it reads and writes in practice.
        std::stringstream quiet;
        std::streambuf* old = std::cerr.rdbuf(quiet.rdbuf());
        std::string out = Arf::load("memory:" + json.str()).toJsonString();
        std::cerr.rdbuf(old);
        if (out.size() < 10u * 1000u * 1000u) throw std::logic_error("avatar document under 10 MB: " + std::to_string(out.size()));
        return out;
    }();
    return text;
}

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

// The document as writer calls: keys, texts, integers, numbers, brackets.
struct Event {
    enum Kind { BeginObject, EndObject, BeginArray, EndArray, Key, Text, Integer, Number, IntegerList, NumberList };
    explicit Event(Kind kind_, std::string text_ = std::string()) : kind(kind_), text(std::move(text_)) {}
    Kind kind;
    std::string text;
    int64_t integer = 0;
    double number = 0;
    std::vector<int64_t> integers;
    std::vector<double> numbers;
};

// Number lists become one list event, as the records write them.
void record(sorvane::archive::JsonImporter& in, std::vector<Event>& events) {
    std::string s;
    if (in.nextBeginObject()) {
        events.emplace_back(Event::BeginObject);
        while (in.nextObjectItem(s)) {
            events.emplace_back(Event::Key, s);
            record(in, events);
        }
        in.nextEndObject();
        events.emplace_back(Event::EndObject);
        return;
    }
    std::vector<int64_t> integers;
    if (in.nextIntegerList(integers)) {
        Event e{Event::IntegerList};
        e.integers = std::move(integers);
        events.push_back(std::move(e));
        return;
    }
    std::vector<double> numbers;
    if (in.nextNumberList(numbers)) {
        Event e{Event::NumberList};
        e.numbers = std::move(numbers);
        events.push_back(std::move(e));
        return;
    }
    if (in.nextBeginArray()) {
        events.emplace_back(Event::BeginArray);
        while (in.nextArrayItem()) record(in, events);
        in.nextEndArray();
        events.emplace_back(Event::EndArray);
        return;
    }
    if (in.nextString(s)) {
        events.emplace_back(Event::Text, s);
    } else if (auto i = in.nextInteger()) {
        Event e{Event::Integer};
        e.integer = *i;
        events.push_back(std::move(e));
    } else if (auto n = in.nextNumber()) {
        Event e{Event::Number};
        e.number = *n;
        events.push_back(std::move(e));
    } else {
        throw std::logic_error("unexpected value in the avatar document");
    }
}

const std::vector<Event>& avatarEvents() {
    static const std::vector<Event> events = [] {
        std::vector<Event> out;
        std::istringstream in(avatarText());
        sorvane::archive::JsonImporter importer(in);
        record(importer, out);
        return out;
    }();
    return events;
}

void replay(sorvane::archive::JsonExporter& out, const std::vector<Event>& events) {
    // Array items need their separator call; a stack says where we are.
    std::vector<bool> inArray;
    auto item = [&] {
        if (!inArray.empty() && inArray.back()) out.addArrayItem();
    };
    for (const Event& e : events) {
        if (e.kind != Event::Key && e.kind != Event::EndObject && e.kind != Event::EndArray) item();
        switch (e.kind) {
        case Event::BeginObject: out.beginObject(); inArray.push_back(false); break;
        case Event::EndObject: out.endObject(); inArray.pop_back(); break;
        case Event::BeginArray: out.beginArray(); inArray.push_back(true); break;
        case Event::EndArray: out.endArray(); inArray.pop_back(); break;
        case Event::Key: out.addObjectItem(e.text); break;
        case Event::Text: out.addString(e.text); break;
        case Event::Integer: out.addInteger(e.integer); break;
        case Event::Number: out.addNumber(e.number); break;
        case Event::IntegerList: out.addIntegerList(e.integers); break;
        case Event::NumberList: out.addNumberList(e.numbers); break;
        }
    }
}

void BM_Avatar_JsonReaderAlone(benchmark::State& state) {
    const std::string& text = avatarText();
    std::string scratch;
    for (auto _ : state) {
        std::istringstream in(text);
        sorvane::archive::JsonImporter importer(in);
        if (!walk(importer, scratch)) state.SkipWithError("walk failed");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

void BM_Avatar_LoadMemory(benchmark::State& state) {
    const std::string path = "memory:" + avatarText();
    for (auto _ : state) {
        Arf arf = Arf::load(path, true);
        benchmark::DoNotOptimize(arf.getRoot().get());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * avatarText().size()));
}

void BM_Avatar_JsonWriterAlone(benchmark::State& state) {
    const std::vector<Event>& events = avatarEvents();
    std::ostringstream check;
    {
        sorvane::archive::JsonExporter out(check);
        replay(out, events);
    }
    if (check.str() != avatarText()) state.SkipWithError("the replayed writer calls give other bytes");
    for (auto _ : state) {
        std::ostringstream text;
        sorvane::archive::JsonExporter out(text);
        replay(out, events);
        out.flush();
        benchmark::DoNotOptimize(text.tellp());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * avatarText().size()));
}

void BM_Avatar_SaveMemory(benchmark::State& state) {
    Arf arf = Arf::load("memory:" + avatarText());
    for (auto _ : state) {
        std::string text = arf.toJsonString();
        benchmark::DoNotOptimize(text.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * avatarText().size()));
}

} // namespace

BENCHMARK(BM_Avatar_JsonReaderAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Avatar_LoadMemory)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Avatar_JsonWriterAlone)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Avatar_SaveMemory)->Unit(benchmark::kMillisecond);
