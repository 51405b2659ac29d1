#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::glbOf;
using talvex_test::GltfScratch;
using talvex_test::messageOf;
using talvex_test::stderrOf;
using talvex_test::wordAt;

namespace {

Gltf fromText(const std::string& json, bool readOnly = false) {
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return Gltf::load(provider, "a.gltf", MULTIPLE_FILES, readOnly);
}

Gltf fromGlb(const std::string& bytes) {
    std::istringstream in(bytes);
    return Gltf::decode(in);
}

} // namespace

TEST(GltfFile, EmptyDocumentsAreByteExact) {
    GltfScratch scratch;
    Gltf::create(scratch.path("e.gltf")).save();
    EXPECT_EQ(scratch.read("e.gltf"), "{\n  \"asset\": {\n    \"version\": \"2.0\"\n  }\n}");

    Gltf::create(scratch.path("e.glb")).save();
    const std::string glb = scratch.read("e.glb");
    const std::string json = "{\"asset\":{\"version\":\"2.0\"},\"buffers\":[{\"byteLength\":0}]}";
    ASSERT_EQ(glb.size(), 84u);
    EXPECT_EQ(glb.substr(0, 4), "glTF");
    EXPECT_EQ(wordAt(glb, 4), 2u);
    EXPECT_EQ(wordAt(glb, 8), 84u);
    EXPECT_EQ(wordAt(glb, 12), json.size());
    EXPECT_EQ(glb.substr(20, json.size()), json);
    EXPECT_EQ(wordAt(glb, 76), 0u);  // BIN chunk written even when empty
    EXPECT_EQ(glb.substr(80, 4), std::string("BIN\0", 4));
}

TEST(GltfFile, GlbChunksArePaddedAndViewsAligned) {
    GltfScratch scratch;
    Gltf gltf = Gltf::create(scratch.path("d.glb"));
    gltf.bufferViews.get().addData("ABCDE", 5, 5, 1);
    gltf.save();
    std::string glb = scratch.read("d.glb");
    ASSERT_EQ(glb.size(), 152u);
    EXPECT_EQ(wordAt(glb, 8), 152u);
    EXPECT_EQ(wordAt(glb, 12), 116u);
    EXPECT_EQ(glb[20 + 115], ' ');
    EXPECT_EQ(wordAt(glb, 136), 8u);
    EXPECT_EQ(glb.substr(144), std::string("ABCDE\0\0\0", 8));

    // A uint16 accessor after a 1-byte view starts at the next even offset.
    Gltf second = Gltf::create(scratch.path("e.glb"));
    second.bufferViews.get().addData("A", 1, 1, 1);
    const uint16_t values[] = {7, 9};
    Accessor accessor = second.accessors.get().addDense(values, 2, ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT, "SCALAR");
    EXPECT_EQ(second.bufferViews.getByIndex(1).byteOffset.get(), 2);
    EXPECT_NE(second.toJsonString().find("\"max\": [9],\n      \"min\": [7]"), std::string::npos);

    // What is written reads back.
    second.save();
    Gltf loaded = Gltf::load(scratch.path("e.glb"), true);
    DataTree tensor = loaded.accessors.getByIndex(0).getTensor();
    ASSERT_EQ(tensor.getBufferSize(), 4);
    EXPECT_EQ(static_cast<const uint16_t*>(tensor.getBuffer())[1], 9);
}

TEST(GltfFile, SharedBufferFilesAndDataUris) {
    GltfScratch scratch;
    const float floats[] = {1, 2, 3};

    Gltf text = Gltf::create(scratch.path("model.gltf"));
    RootNode& root = *text.getRoot();
    root.beginSharedBuffer(false, nullptr);
    EXPECT_EQ(messageOf([&] { root.beginSharedBuffer(false, nullptr); }), "There is already a shared buffer");
    text.accessors.get().addDense(floats, 3, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR");
    root.endSharedBuffer();
    EXPECT_EQ(text.buffers.getByIndex(0).uri.get(), "model_buffer_1.bin");
    EXPECT_EQ(scratch.read("model_buffer_1.bin").size(), 12u);

    Gltf embedded = Gltf::create(scratch.path("m.gltf"));
    embedded.getRoot()->beginSharedBuffer(true, nullptr);
    embedded.accessors.get().addDense(floats, 3, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR");
    embedded.getRoot()->endSharedBuffer();
    EXPECT_EQ(embedded.buffers.getByIndex(0).uri.get(), "data:application/octet-stream;base64,AACAPwAAAEAAAEBA");

    // A direct embedded add says gltf-buffer; both read back.
    embedded.accessors.get().addDense(floats, 3, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR", std::nullopt, true);
    EXPECT_EQ(embedded.buffers.getByIndex(1).uri.get().rfind("data:application/gltf-buffer;base64,", 0), 0u);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(static_cast<const float*>(embedded.accessors.getByIndex(i).getTensor().getBuffer())[2], 3.0f);

    // In a .glb the shared buffer is open for life and always buffer 0.
    Gltf glb = Gltf::create(scratch.path("g.glb"));
    EXPECT_EQ(glb.getRoot()->beginSharedBuffer(false, nullptr), 0);
    EXPECT_EQ(glb.getRoot()->beginSharedBuffer(false, nullptr), 0);

    EXPECT_EQ(root.findFreeFileName(nullptr, "left arm!", 7, ".bin"), "model_leftarm_7.bin");
    EXPECT_EQ(messageOf([&] { root.findFreeFileName("/x.bin", nullptr, -1, ".bin"); }), "uri '/x.bin' is absolute");
}

TEST(GltfFile, StorageModeIsDecidedByExactExtension) {
    EXPECT_EQ(Gltf::detectStorageMode("a.gltf"), MULTIPLE_FILES);
    EXPECT_EQ(Gltf::detectStorageMode("a.glb"), SINGLE_FILE);
    EXPECT_EQ(Gltf::detectStorageMode("a.txt", SINGLE_FILE), SINGLE_FILE);
    EXPECT_EQ(messageOf([] { Gltf::create("a.GLB"); }), "Unable to guess storage mode from extension");
    EXPECT_EQ(messageOf([] { Gltf::detectStorageMode(""); }), "File path is empty");
    EXPECT_EQ(messageOf([] { Gltf::detectStorageMode("dir/a"); }), "File has no extension");

    // A given mode wins over the name: this .gltf name is read as a .glb.
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    const std::string glb = glbOf("{\"buffers\":[{\"byteLength\":4}]}", "WXYZ");
    provider->create("x.gltf", glb.data(), static_cast<int64_t>(glb.size()));
    Gltf gltf = Gltf::load(provider, "x.gltf", SINGLE_FILE);
    EXPECT_EQ(gltf.buffers.getByIndex(0).getString(), "WXYZ");
}

TEST(GltfFile, GlbReaderChecksEachStep) {
    const std::string good = glbOf("{\"buffers\":[{\"byteLength\":3}]}", "abc");
    std::string bad = good;
    bad[3] = 'X';
    EXPECT_EQ(messageOf([&] { fromGlb(bad); }), "Reading <istream>: Invalid header: not a glb file");
    bad = good;
    bad[4] = 1;
    EXPECT_EQ(messageOf([&] { fromGlb(bad); }), "Reading <istream>: Invalid header: not version 2.0");
    bad = good;
    bad[16] = 'j';
    EXPECT_EQ(messageOf([&] { fromGlb(bad); }), "Reading <istream>: Invalid first chunk: expect a JSON chunk");
    EXPECT_EQ(messageOf([&] { fromGlb(good.substr(0, 20 + wordAt(good, 12))); }),
              "Reading <istream>: Invalid second chunk: expect a BIN chunk");
    EXPECT_EQ(messageOf([&] { fromGlb(glbOf("{}", "")); }), "No buffers");
    EXPECT_EQ(messageOf([&] { fromGlb(glbOf("{\"buffers\":[]}", "")); }), "Invalid buffer id 0");

    // The total word is not trusted, and bytes after the BIN chunk are not read.
    std::string loose = good;
    loose[8] = loose[9] = loose[10] = loose[11] = 0;
    loose += "trailing garbage";
    EXPECT_EQ(fromGlb(loose).buffers.getByIndex(0).getString(0, 3), "abc");
}

TEST(GltfFile, HostileChunkLengthsFailWithoutAllocating) {
    std::string glb = glbOf("{\"buffers\":[{\"byteLength\":3}]}", "abc");
    glb.resize(100, ' ');
    std::string json = glb;
    json[12] = '\xF0';
    json[13] = json[14] = json[15] = '\xFF';
    EXPECT_EQ(messageOf([&] { fromGlb(json); }), "Reading <istream>: Error read 4294967280 bytes in first chunk");

    std::string bin = glbOf("{\"buffers\":[{\"byteLength\":3}]}", "abc");
    const size_t binHeader = 20 + wordAt(bin, 12);
    bin[binHeader] = '\xF0';
    bin[binHeader + 1] = bin[binHeader + 2] = bin[binHeader + 3] = '\xFF';
    EXPECT_EQ(messageOf([&] { fromGlb(bin); }), "Error reading stream");
}

TEST(GltfFile, TextDocumentsKeepWhatTheModelHolds) {
    std::string warnings = stderrOf([] {
        Gltf gltf = fromText("{\"asset\":{\"version\":\"2.0\"},\"extensions\":{\"X\":{}},\"extras\":1,"
                             "\"extensionsUsed\":[\"A\"],\"scene\":4}");
        EXPECT_EQ(gltf.toJsonString(archive::JsonExporter::Options{false, true, false}),
                  "{\"asset\":{\"version\":\"2.0\"},\"extensionsUsed\":[\"A\"],\"scene\":4}");
    });
    EXPECT_NE(warnings.find("Ignore invalid or unsupported property \"extensions\" at line 1\n"), std::string::npos);
    EXPECT_NE(warnings.find("\"extras\""), std::string::npos);

    // A document without "asset" still answers its version and the generator default, which is never written.
    Gltf bare = fromText("{}");
    EXPECT_EQ(bare.asset->version.get(), "2.0");
    EXPECT_EQ(bare.asset->generator.get(), "Sorvane Studio, Media Group, Immersive Lab");
    EXPECT_FALSE(bare.asset->generator.isPropertyPresent());
    EXPECT_EQ(bare.toJsonString().find("generator"), std::string::npos);
}

TEST(GltfFile, ExtensionNamesAndScene) {
    Gltf gltf;
    gltf.init();
    EXPECT_EQ(gltf.extensionsUsed.find("X"), -1);
    gltf.extensionsUsed.add("X");
    gltf.extensionsUsed.add("X");
    EXPECT_EQ(gltf.extensionsUsed.size(), 2);
    EXPECT_EQ(gltf.extensionsUsed.find("X"), 0);
    EXPECT_EQ(messageOf([&] { gltf.extensionsUsed.set(5, "Y"); }), "In extensionsUsed: Invalid index 5");
    EXPECT_FALSE(gltf.extensionsRequired.isPropertyPresent());

    EXPECT_EQ(messageOf([&] { gltf.scene.set(0); }), "There is no scenes in ");
    EXPECT_FALSE(gltf.scene.isPropertyPresent());
}

TEST(GltfFile, ReadOnlyDocumentsRefuseChanges) {
    Gltf gltf = fromText("{\"buffers\":[{\"byteLength\":1,\"uri\":\"data:application/gltf-buffer;base64,QQ==\"}]}",
                         true);
    EXPECT_EQ(messageOf([&] { gltf.buffers.get().addData("A", 1); }), "Adding to buffers: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { gltf.accessors.get().addDense("A", 1, ACCESSOR_COMPONENT_TYPE_BYTE, "SCALAR"); }),
              "Adding to accessors: Forbidden, read-only accessor");
    EXPECT_FALSE(gltf.accessors.isPropertyPresent());
    EXPECT_EQ(messageOf([&] { gltf.asset->copyright.set("c"); }), "Setting asset.copyright: Forbidden, read-only accessor");
    EXPECT_EQ(gltf.buffers.getByIndex(0).getString(), "A");
}
