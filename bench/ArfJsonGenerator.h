// Deterministic ARF-shaped JSON for benchmarks: a preamble, then many records
// with names, ids, integer and number lists and nested lists, in the exact
// layout of the library's exporter.
//
//   std::string text = bench::generateArfJson(10 << 20);   // >= 10 MiB
//
// makeArfJsonModel(bytes) gives the same content as plain structs, and
// writeArfJson(exporter, model) writes it, so a writer benchmark can time the
// writing alone.
#ifndef TALVEX_BENCH_ARFJSONGENERATOR_H
#define TALVEX_BENCH_ARFJSONGENERATOR_H

#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonExporter.h"

namespace bench {

struct ArfJsonModel {
    struct Mesh {
        std::string name;
        int64_t id = 0;
        std::vector<int64_t> data;  // indices
    };
    struct Node {
        std::string name;
        int64_t id = 0;
        std::vector<double> translation;
        std::vector<double> rotation;
        std::vector<double> scale;
        std::vector<int64_t> children;
    };
    struct BlendshapeSet {
        std::string name;
        int64_t id = 0;
        std::vector<std::string> shapes;
        std::vector<std::vector<double>> weights;  // nested lists, one per shape
    };
    struct Data {
        std::string name;
        int64_t id = 0;
        std::string uri;
        std::string type;
        int64_t byteOffset = 0;
        int64_t byteLength = 0;
    };
    std::string signature = "MPEG-ARF-2025";
    std::string version = "1.0";
    std::vector<std::string> supportedAnimations;
    std::vector<Mesh> meshes;
    std::vector<Node> nodes;
    std::vector<BlendshapeSet> blendshapeSets;
    std::vector<Data> data;
};

namespace detail {

// A small linear congruential generator: the same text on every platform.
struct Lcg {
    uint64_t state;
    uint32_t next() {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<uint32_t>(state >> 33);
    }
    // A number with a few decimals, as tools write them.
    double real(double scale) { return (static_cast<double>(next() % 2000001) - 1000000.0) / 1000000.0 * scale; }
};

} // namespace detail

// Adds one group of records (a mesh, a node, a blendshape set, a data item).
inline void addArfJsonRecords(ArfJsonModel& model, detail::Lcg& random) {
    int64_t id = static_cast<int64_t>(model.meshes.size()) + 1;
    ArfJsonModel::Mesh mesh;
    mesh.name = "mesh_" + std::to_string(id);
    mesh.id = id;
    size_t indices = 30 + random.next() % 60;
    for (size_t i = 0; i < indices; ++i) mesh.data.push_back(random.next() % 65536);
    model.meshes.push_back(std::move(mesh));

    ArfJsonModel::Node node;
    node.name = "joint_" + std::to_string(id);
    node.id = id;
    node.translation = {random.real(1), random.real(1), random.real(1)};
    node.rotation = {random.real(1), random.real(1), random.real(1), 1.0};
    node.scale = {1.0, 1.0, 1.0};
    for (uint32_t i = 0, n = random.next() % 4; i < n; ++i) node.children.push_back(id * 4 + i);
    model.nodes.push_back(std::move(node));

    ArfJsonModel::BlendshapeSet set;
    set.name = "face \"expressions\" " + std::to_string(id);
    set.id = id;
    for (int s = 0; s < 3; ++s) {
        set.shapes.push_back("shape_" + std::to_string(s));
        std::vector<double> weights;
        for (int w = 0; w < 8; ++w) weights.push_back(random.real(0.01));
        set.weights.push_back(std::move(weights));
    }
    model.blendshapeSets.push_back(std::move(set));

    ArfJsonModel::Data item;
    item.name = "payload_" + std::to_string(id);
    item.id = id;
    item.uri = "data/buffer_" + std::to_string(id % 97) + ".bin";
    item.type = "application/mpeg.arf.dense";
    item.byteOffset = static_cast<int64_t>(random.next()) * 16;
    item.byteLength = static_cast<int64_t>(random.next() % 100000);
    model.data.push_back(std::move(item));
}

inline void writeArfJson(sorvane::archive::JsonExporter& out, const ArfJsonModel& model) {
    out.beginObject();
    out.addObjectItem("preamble");
    out.beginObject();
    out.addObjectItem("signature");
    out.addString(model.signature);
    out.addObjectItem("version");
    out.addString(model.version);
    out.addObjectItem("supportedAnimations");
    out.addStringList(model.supportedAnimations);
    out.endObject();

    out.addObjectItem("components");
    out.beginObject();
    out.addObjectItem("meshes");
    out.beginArray();
    for (const auto& mesh : model.meshes) {
        out.addArrayItem();
        out.beginObject();
        out.addObjectItem("name");
        out.addString(mesh.name);
        out.addObjectItem("id");
        out.addInteger(mesh.id);
        out.addObjectItem("data");
        out.addIntegerList(mesh.data);
        out.endObject();
    }
    out.endArray();
    out.addObjectItem("nodes");
    out.beginArray();
    for (const auto& node : model.nodes) {
        out.addArrayItem();
        out.beginObject();
        out.addObjectItem("name");
        out.addString(node.name);
        out.addObjectItem("id");
        out.addInteger(node.id);
        out.addObjectItem("translation");
        out.addNumberList(node.translation);
        out.addObjectItem("rotation");
        out.addNumberList(node.rotation);
        out.addObjectItem("scale");
        out.addNumberList(node.scale);
        out.addObjectItem("children");
        out.addIntegerList(node.children);
        out.endObject();
    }
    out.endArray();
    out.addObjectItem("blendshapeSets");
    out.beginArray();
    for (const auto& set : model.blendshapeSets) {
        out.addArrayItem();
        out.beginObject();
        out.addObjectItem("name");
        out.addString(set.name);
        out.addObjectItem("id");
        out.addInteger(set.id);
        out.addObjectItem("shapes");
        out.addStringList(set.shapes);
        out.addObjectItem("weights");
        out.beginArray();
        for (const auto& weights : set.weights) {
            out.addArrayItem();
            out.addNumberList(weights);
        }
        out.endArray();
        out.endObject();
    }
    out.endArray();
    out.endObject();

    out.addObjectItem("data");
    out.beginArray();
    for (const auto& item : model.data) {
        out.addArrayItem();
        out.beginObject();
        out.addObjectItem("name");
        out.addString(item.name);
        out.addObjectItem("id");
        out.addInteger(item.id);
        out.addObjectItem("uri");
        out.addString(item.uri);
        out.addObjectItem("type");
        out.addString(item.type);
        out.addObjectItem("byteOffset");
        out.addInteger(item.byteOffset);
        out.addObjectItem("byteLength");
        out.addInteger(item.byteLength);
        out.endObject();
    }
    out.endArray();
    out.endObject();
}

// Records enough for a text of at least `minBytes` (about 1.6 KiB per group).
inline ArfJsonModel makeArfJsonModel(size_t minBytes, uint64_t seed = 1) {
    ArfJsonModel model;
    model.supportedAnimations = {"urn:mpeg:arf:animation:linear", "urn:mpeg:arf:animation:skeletal"};
    detail::Lcg random{seed};
    size_t groups = minBytes / 1200 + 1;
    for (size_t i = 0; i < groups; ++i) addArfJsonRecords(model, random);
    return model;
}

// The text itself, at least `minBytes` long.
inline std::string generateArfJson(size_t minBytes, uint64_t seed = 1) {
    ArfJsonModel model = makeArfJsonModel(minBytes, seed);
    for (;;) {
        std::ostringstream stream;
        {
            sorvane::archive::JsonExporter out(stream);
            writeArfJson(out, model);
        }
        std::string text = stream.str();
        if (text.size() >= minBytes) return text;
        detail::Lcg random{seed + model.meshes.size()};
        size_t more = (minBytes - text.size()) / 1200 + 1;
        for (size_t i = 0; i < more; ++i) addArfJsonRecords(model, random);
    }
}

} // namespace bench

#endif
