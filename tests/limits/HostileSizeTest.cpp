// Small inputs that declare huge counts, lengths, dimensions or nesting: each
// reader must refuse them before allocating what they claim. The program runs
// under a 4 GB memory cap, so an allocation that slips through fails loudly.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/Zip.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"
#include "sorvane/arf/node/data/DataNodes.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/meshio/meshio.h"

using namespace sorvane;
namespace fs = std::filesystem;

namespace {

struct Scratch {
    fs::path dir;
    Scratch() {
        dir = fs::temp_directory_path() / ("talvex-hostile-" + std::to_string(::getpid()) + "-" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(dir / name, std::ios::binary) << bytes;
        return (dir / name).string();
    }
};

std::string failure(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& e) {
        return e.what();
    }
    return "(no failure)";
}

#define EXPECT_REFUSED(statement, text)                                                                 \
    do {                                                                                               \
        const std::string what_ = failure([&] { statement; });                                         \
        EXPECT_NE(what_.find(text), std::string::npos) << #statement << "\n  gave: " << what_;         \
    } while (0)

void put32le(std::string& out, uint32_t v) {
    for (int i = 0; i < 4; ++i) out += static_cast<char>((v >> (8 * i)) & 0xff);
}
void put16le(std::string& out, uint32_t v) {
    out += static_cast<char>(v & 0xff);
    out += static_cast<char>((v >> 8) & 0xff);
}
void put32be(std::string& out, uint32_t v) {
    for (int i = 3; i >= 0; --i) out += static_cast<char>((v >> (8 * i)) & 0xff);
}

uint32_t crc32(const std::string& bytes) {
    uint32_t crc = 0xffffffffu;
    for (unsigned char c : bytes) {
        crc ^= c;
        for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return crc ^ 0xffffffffu;
}

std::string pngChunk(const std::string& type, const std::string& data) {
    std::string out;
    put32be(out, static_cast<uint32_t>(data.size()));
    out += type + data;
    put32be(out, crc32(type + data));
    return out;
}

std::string nested(long depth, const std::string& open, const std::string& inner, const std::string& close) {
    std::string text;
    for (long i = 0; i < depth; ++i) text += open;
    text += inner;
    for (long i = 0; i < depth; ++i) text += close;
    return text;
}

} // namespace

TEST(HostileSizes, JsonDocumentsNestedTooDeep) {
    Scratch s;
    // A DataTree file and an ARF document whose "extras"-like content nests deeper than any reader takes.
    const std::string deep = nested(100000, "[", "1", "]");
    EXPECT_REFUSED(loadDataTree(s.write("deep.json", deep).c_str()), "Unsupported or invalid object");
    EXPECT_REFUSED(loadDataTree(s.write("objects.json", nested(100000, "{\"a\":", "1", "}")).c_str()),
                   "Unsupported or invalid object");
    // In documents, deep values under unknown keys are skipped and under
    // known ones refused; either way without a stack overflow.
    for (const std::string& text : {"{\"extras\":" + deep + "}", "{\"data\":" + deep + "}",
                                    "{\"components\":{\"x\":" + deep + "}}"})
        failure([&] { arf::Arf::load(s.write("deep.arf", text), true); });
    for (const std::string& text : {"{\"asset\":{\"version\":\"2.0\"},\"extras\":" + deep + "}",
                                    "{\"asset\":{\"version\":\"2.0\"},\"accessors\":" + deep + "}",
                                    "{\"asset\":{\"version\":\"2.0\"},\"buffers\":[{\"extras\":" + deep + "}]}"})
        failure([&] { gltf2::Gltf::load(s.write("deep.gltf", text), true); });
}

TEST(HostileSizes, PayloadsDeclaringMoreThanTheyHold) {
    Scratch s;
    arf::Arf arf = arf::Arf::create("memory:");
    // A dense header of 2 x 100000 x 100000 floats over sixteen bytes of values.
    std::string dense;
    put32le(dense, 3);
    put32le(dense, 2);
    put32le(dense, 100000);
    put32le(dense, 100000);
    put32le(dense, 5126);
    dense += std::string(16, '\0');
    arf::Data item = arf.data.addContent(dense.data(), static_cast<int64_t>(dense.size()), false, arf::kDenseMimeType);
    EXPECT_NE(failure([&] { item.getTensor(); }), "(no failure)");

    // A payload file of four bytes whose item claims a petabyte: reading and
    // copying the document refuse it.
    fs::create_directories(s.dir / "doc");
    s.write("doc/p.bin", "tiny");
    const std::string path = s.write("doc/a.arf", R"({"data": [
        {"type": "application/octet-stream", "uri": "p.bin", "byteLength": 1000000000000000, "name": "", "id": 1}]})");
    arf::Arf loaded = arf::Arf::load(path, true);
    EXPECT_REFUSED(loaded.data.get()[1].getString(), "does not fit");
    EXPECT_NE(failure([&] { arf::saveArfAs(loaded, s.dir / "copy" / "b.arf"); }), "(no failure)");
}

TEST(HostileSizes, ZipEntryClaimingFourGigabytes) {
    Scratch s;
    // One stored-as-deflate entry "a" with a two-byte stream that claims 4 GB.
    const std::string name = "a";
    const std::string body("\x03\x00", 2);
    std::string local;
    put32le(local, 0x04034b50);
    put16le(local, 20);
    put16le(local, 0);
    put16le(local, 8);
    put32le(local, 0);
    put32le(local, crc32(""));
    put32le(local, static_cast<uint32_t>(body.size()));
    put32le(local, 0xfffffffeu);
    put16le(local, static_cast<uint32_t>(name.size()));
    put16le(local, 0);
    local += name + body;
    std::string central;
    put32le(central, 0x02014b50);
    put16le(central, 20);
    put16le(central, 20);
    put16le(central, 0);
    put16le(central, 8);
    put32le(central, 0);
    put32le(central, crc32(""));
    put32le(central, static_cast<uint32_t>(body.size()));
    put32le(central, 0xfffffffeu);
    put16le(central, static_cast<uint32_t>(name.size()));
    put16le(central, 0);
    put16le(central, 0);
    put16le(central, 0);
    put16le(central, 0);
    put32le(central, 0);
    put32le(central, 0);
    central += name;
    std::string end;
    put32le(end, 0x06054b50);
    put16le(end, 0);
    put16le(end, 0);
    put16le(end, 1);
    put16le(end, 1);
    put32le(end, static_cast<uint32_t>(central.size()));
    put32le(end, static_cast<uint32_t>(local.size()));
    put16le(end, 0);
    const std::string path = s.write("big.zip", local + central + end);
    EXPECT_NE(failure([&] {
                  archive::Zip zip = archive::Zip::open(path);
                  zip.getString(name, 0);
              }),
              "(no failure)");
}

TEST(HostileSizes, GlbAndGltfDeclaringHugeLengthsAndCounts) {
    // A GLB header and JSON chunk that claim 4 GB in a 40-byte file.
    std::string glb = "glTF";
    put32le(glb, 2);
    put32le(glb, 0xfffffff0u);
    put32le(glb, 0xffffffe0u);
    put32le(glb, 0x4e4f534a);
    glb += "{\"asset\":{}}";
    std::istringstream in(glb);
    EXPECT_NE(failure([&] { gltf2::Gltf::decode(in); }), "(no failure)");

    // An accessor of a billion VEC4 floats over an eight-byte buffer, and a
    // buffer that claims a terabyte.
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", R"({"asset":{"version":"2.0"},
        "buffers":[{"uri":"data:application/octet-stream;base64,AAAAAAAAAAA=","byteLength":8},
                   {"uri":"b.bin","byteLength":1000000000000}],
        "bufferViews":[{"buffer":0,"byteLength":8},{"buffer":1,"byteLength":1000000000000}],
        "accessors":[{"bufferView":0,"componentType":5126,"count":1000000000,"type":"VEC4"},
                     {"bufferView":1,"componentType":5126,"count":250000000000,"type":"SCALAR"},
                     {"componentType":5126,"count":1000000000,"type":"MAT4"}]})");
    provider->create("b.bin", "tiny");
    gltf2::Gltf gltf = gltf2::Gltf::load(provider, "a.gltf", gltf2::MULTIPLE_FILES);
    EXPECT_NE(failure([&] { gltf.accessors.getByIndex(0).getTensor(); }), "(no failure)");
    EXPECT_NE(failure([&] { gltf.accessors.getByIndex(1).getTensor(); }), "(no failure)");
    EXPECT_NE(failure([&] { gltf.buffers.getByIndex(1).getString(); }), "(no failure)");
    // Without a buffer view an accessor is zeros: a billion MAT4 would be 64 GB.
    EXPECT_NE(failure([&] { gltf.accessors.getByIndex(2).getTensor(); }), "(no failure)");
}

TEST(HostileSizes, ImagesDeclaringHugeDimensions) {
    // PNG: a valid IHDR of 1,000,000 x 1,000,000 RGBA and one tiny IDAT.
    std::string ihdr;
    put32be(ihdr, 1000000);
    put32be(ihdr, 1000000);
    ihdr += std::string("\x08\x06\x00\x00\x00", 5);
    const std::string png = std::string("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", ihdr) +
                            pngChunk("IDAT", std::string("\x78\x9c\x03\x00\x00\x00\x00\x01", 8)) + pngChunk("IEND", "");
    ImageInfo info;
    info.allocate = std::malloc;
    info.free = std::free;
    EXPECT_REFUSED(decodeImage(info, reinterpret_cast<const unsigned char*>(png.data()), static_cast<long>(png.size()),
                               "big.png"),
                   "too large");
    EXPECT_EQ(info.pixels, nullptr);

    // JPEG: SOI, a baseline frame of 65,000 x 65,000 with three components, EOI.
    std::string jpeg("\xff\xd8\xff\xc0\x00\x11\x08\xfd\xe8\xfd\xe8\x03\x01\x22\x00\x02\x11\x01\x03\x11\x01\xff\xd9",
                     23);
    ImageInfo jinfo;
    jinfo.allocate = std::malloc;
    jinfo.free = std::free;
    EXPECT_NE(failure([&] {
                  decodeImage(jinfo, reinterpret_cast<const unsigned char*>(jpeg.data()),
                              static_cast<long>(jpeg.size()), "big.jpg");
              }),
              "(no failure)");
    EXPECT_EQ(jinfo.pixels, nullptr);
}

TEST(HostileSizes, ObjWithHugeIndices) {
    Scratch s;
    for (const char* face : {"f 1 2 4000000000\n", "f 1 2 -4000000000\n", "f 1 99999999999999999999999 3\n",
                             "vt 0 0\nf 1/99999999 2/1 3/1\n", "f 1 2 3 2147483648\n"}) {
        const std::string path = s.write("a.obj", std::string("v 0 0 0\nv 1 0 0\nv 0 1 0\n") + face);
        EXPECT_REFUSED(loadObj(path), "index");
    }
}
