// Reads from a .glb's BIN chunk take a shorter way than reads from data uris
// and files; these tests hold both ways to the same bytes and messages.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::glbOf;
using talvex_test::messageOf;

namespace {

std::string base64(const std::string& bytes) {
    const long size = static_cast<long>(bytes.size());
    std::string text(static_cast<size_t>(base64encode(nullptr, 0, bytes.data(), size, BASE64_ENCODING_STANDARD, '=')), ' ');
    base64encode(text.data(), static_cast<long>(text.size()), bytes.data(), size, BASE64_ENCODING_STANDARD, '=');
    return text;
}

std::string bytesOf(const void* data, size_t size) { return std::string(static_cast<const char*>(data), size); }

// The same document twice: its buffer 0 as a data uri of a .gltf, and as the
// BIN chunk of a .glb. `rest` is the JSON after "buffers".
struct Pair {
    Gltf text;
    Gltf binary;
};

Pair both(const std::string& bin, const std::string& rest, long byteLength = -1) {
    const std::string length = std::to_string(byteLength < 0 ? static_cast<long>(bin.size()) : byteLength);
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", "{\"buffers\":[{\"uri\":\"data:application/octet-stream;base64," + base64(bin) +
                                   "\",\"byteLength\":" + length + "}]" + rest + "}");
    std::istringstream glb(glbOf("{\"buffers\":[{\"byteLength\":" + length + "}]" + rest + "}", bin));
    return {Gltf::load(provider, "a.gltf", MULTIPLE_FILES), Gltf::decode(glb)};
}

std::string outcomeOf(const DataTree& tensor) {
    std::string out;
    for (long size : tensor.getTensorSizes()) out += std::to_string(size) + ",";
    out += " " + std::to_string(static_cast<int>(tensor.getScalarType())) + " ";
    return out + bytesOf(tensor.getBuffer(), static_cast<size_t>(tensor.getBufferSize()));
}

// Every accessor read at once, as tensorOutcome reads one, joined by "|".
std::string allOutcome(const Gltf& gltf) {
    try {
        std::string out;
        for (const DataTree& tensor : gltf.accessors.get().getTensors()) out += (out.empty() ? "" : "|") + outcomeOf(tensor);
        return out;
    } catch (const std::exception& e) {
        return std::string("error: ") + e.what();
    }
}

// What a read gives: the tensor's sizes, type and bytes, or the message.
std::string tensorOutcome(const Gltf& gltf, int64_t index) {
    std::string out;
    try {
        out = outcomeOf(gltf.accessors.getByIndex(index).getTensor());
    } catch (const std::exception& e) {
        out = std::string("error: ") + e.what();
    }
    return out;
}

std::string dataOutcome(const Gltf& gltf, int64_t index, int64_t outSize) {
    try {
        std::string out(static_cast<size_t>(outSize), '\x7f');
        const Accessor accessor = gltf.accessors.getByIndex(index);
        const int64_t size = accessor.getDataSize();
        const int64_t got = accessor.getData(out.data(), outSize);
        return std::to_string(size) + " " + std::to_string(got) + " " + out.substr(0, static_cast<size_t>(got));
    } catch (const std::exception& e) {
        return std::string("error: ") + e.what();
    }
}

std::string sixFloats() {
    const float floats[] = {1, 2, 3, 4, 5, 6};
    return bytesOf(floats, sizeof floats);
}

} // namespace

TEST(ReadPath, GlbReadsMatchDataUriReads) {
    struct Case {
        const char* views;
        const char* accessor;
    };
    const Case cases[] = {
        {"{\"buffer\":0,\"byteLength\":24,\"byteStride\":4}", "\"componentType\":5126,\"count\":6,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24,\"byteStride\":12}", "\"componentType\":5126,\"count\":2,\"type\":\"VEC3\""},
        {"{\"buffer\":0,\"byteLength\":24,\"byteStride\":8}", "\"componentType\":5126,\"count\":2,\"type\":\"SCALAR\""},
        // The offset is taken off the count's bytes; the rest of the tensor is zeros.
        {"{\"buffer\":0,\"byteLength\":24}", "\"byteOffset\":8,\"componentType\":5126,\"count\":4,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"byteOffset\":8,\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"byteOffset\":24,\"componentType\":5126,\"count\":6,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24}",
         "\"byteOffset\":-9223372036854775808,\"componentType\":5126,\"count\":4,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":1099511627776,\"type\":\"MAT4\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":4611686018427387904,\"type\":\"MAT4\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":7,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":0,\"type\":\"VEC2\""},
        {"{\"buffer\":0,\"byteLength\":24,\"byteOffset\":-4}", "\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":16,\"byteOffset\":8}", "\"componentType\":5126,\"count\":2,\"type\":\"VEC2\""},
        {"{\"buffer\":0,\"byteLength\":16,\"byteOffset\":20}", "\"componentType\":5126,\"count\":2,\"type\":\"VEC2\""},
        {"{\"buffer\":1,\"byteLength\":24}", "\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":1,\"type\":\"MAT2\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5123,\"count\":3,\"type\":\"VEC4\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5121,\"count\":2,\"type\":\"MAT3\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5120,\"count\":6,\"type\":\"VEC4\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5122,\"count\":3,\"type\":\"VEC2\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5125,\"count\":2,\"type\":\"VEC3\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":1,\"type\":\"VEC5\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"componentType\":5126,\"count\":1,\"type\":\"MAT1\""},
        {"{\"buffer\":0,\"byteLength\":24}", "\"bufferView\":3,\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\""},
    };
    for (const Case& c : cases) {
        std::string accessor = std::string("{") + c.accessor + "}";
        if (accessor.find("bufferView") == std::string::npos) accessor.insert(1, "\"bufferView\":0,");
        const Pair pair = both(sixFloats(), std::string(",\"bufferViews\":[") + c.views + "],\"accessors\":[" + accessor +
                                                "]");
        SCOPED_TRACE(std::string(c.views) + " " + c.accessor);
        EXPECT_EQ(tensorOutcome(pair.binary, 0), tensorOutcome(pair.text, 0));
        EXPECT_EQ(allOutcome(pair.binary), tensorOutcome(pair.binary, 0));
        EXPECT_EQ(allOutcome(pair.text), tensorOutcome(pair.text, 0));
        for (int64_t outSize : {0, 4, 8, 24, 32})
            EXPECT_EQ(dataOutcome(pair.binary, 0, outSize), dataOutcome(pair.text, 0, outSize)) << outSize;
    }
    // Some of the cases, spelled out.
    const Pair offset = both(sixFloats(), ",\"bufferViews\":[{\"buffer\":0,\"byteLength\":24}],\"accessors\":["
                                          "{\"bufferView\":0,\"byteOffset\":8,\"componentType\":5126,\"count\":4,"
                                          "\"type\":\"SCALAR\"}]");
    const DataTree tensor = offset.binary.accessors.getByIndex(0).getTensor();
    EXPECT_EQ(std::vector<float>(tensor.getData<float>(), tensor.getData<float>() + 4), (std::vector<float>{3, 4, 0, 0}));
    const Pair mat3 = both(sixFloats(), ",\"bufferViews\":[{\"buffer\":0,\"byteLength\":24}],\"accessors\":["
                                        "{\"bufferView\":0,\"componentType\":5121,\"count\":2,\"type\":\"MAT3\"}]");
    EXPECT_EQ(mat3.binary.accessors.getByIndex(0).getTensor().getTensorSizes(), (std::vector<long>{2, 3, 3}));
}

TEST(ReadPath, GlbReadsWithoutViewsFailAsDataUriReads) {
    // No view, or no views at all.
    const Pair noView = both(sixFloats(), ",\"bufferViews\":[{\"buffer\":0,\"byteLength\":24}],\"accessors\":["
                                          "{\"componentType\":5126,\"count\":6,\"type\":\"SCALAR\"}]");
    EXPECT_EQ(tensorOutcome(noView.binary, 0), tensorOutcome(noView.text, 0));
    EXPECT_NE(tensorOutcome(noView.binary, 0).find("Buffer view is not defined"), std::string::npos);
    const Pair noViews = both(sixFloats(), ",\"accessors\":[{\"bufferView\":0,\"componentType\":5126,\"count\":6,"
                                           "\"type\":\"SCALAR\"}]");
    EXPECT_EQ(tensorOutcome(noViews.binary, 0), tensorOutcome(noViews.text, 0));
}

TEST(ReadPath, SharedBufferPaddingIsZeros) {
    // Built in a .glb: a 1-byte view, then a uint16 accessor at "byteOffset" 2.
    talvex_test::GltfScratch scratch;
    Gltf gltf = Gltf::create(scratch.path("a.glb"));
    gltf.bufferViews.get().addData("A", 1, 1, 1, std::nullopt, true, nullptr);
    const uint16_t shorts[] = {0x0102, 0x0304};
    gltf.accessors.get().addDense(shorts, 2, ACCESSOR_COMPONENT_TYPE_UNSIGNED_SHORT, "SCALAR", std::nullopt, true,
                                  nullptr);
    EXPECT_EQ(gltf.buffers.getByIndex(0).getString(0, -1, 1, -1), std::string("A\0\x02\x01\x04\x03", 6));

    // Loaded from a .glb, then added to: the padding after the chunk's bytes is zeros too.
    auto memory = std::make_shared<archive::MemoryFileProvider>();
    gltf.save(memory, "a.glb");
    Gltf loaded = Gltf::load(memory, "a.glb", SINGLE_FILE);
    EXPECT_EQ(loaded.accessors.getByIndex(0).getTensor().getData<uint16_t>()[1], 0x0304);
    loaded.bufferViews.get().addData("B", 1, 1, 1, std::nullopt, true, nullptr);
    const float one = 1.0f;
    loaded.accessors.get().addDense(&one, 1, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR", std::nullopt, true, nullptr);
    const std::string bytes = loaded.buffers.getByIndex(0).getString(0, -1, 1, -1);
    // The chunk came back with its own padding to 8 bytes.
    EXPECT_EQ(bytes.substr(0, 12), std::string("A\0\x02\x01\x04\x03\0\0" "B\0\0\0", 12));
    EXPECT_EQ(loaded.accessors.getByIndex(1).getTensor().getData<float>()[0], 1.0f);
}

TEST(ReadPath, JointsAndMorphStacksFromAGlb) {
    // Two vertices. JOINTS_0 as unsigned shorts, WEIGHTS_0 as unsigned bytes
    // (read as their integer values), JOINTS_1 as bytes, WEIGHTS_1 as floats;
    // two targets, the second without POSITION, the first through a view that
    // gives 4 bytes less than its count (the offset is subtracted).
    std::string bin;
    const uint16_t joints0[] = {5, 6, 7, 8, 1, 2, 3, 4};
    const uint8_t weights0[] = {10, 30, 0, 20, 1, 1, 1, 1};
    const uint8_t joints1[] = {9, 10, 11, 12, 13, 14, 15, 16};
    const float weights1[] = {25, 0, 0, 0, 0, 0, 0, 4};
    const float offsets[] = {1, 2, 3, 4, 5, 6};
    bin += bytesOf(joints0, sizeof joints0);    // 0, 16 bytes
    bin += bytesOf(weights0, sizeof weights0);  // 16, 8
    bin += bytesOf(joints1, sizeof joints1);    // 24, 8
    bin += bytesOf(weights1, sizeof weights1);  // 32, 32
    bin += bytesOf(offsets, sizeof offsets);    // 64, 24
    const std::string rest =
        ",\"bufferViews\":[{\"buffer\":0,\"byteLength\":16},{\"buffer\":0,\"byteOffset\":16,\"byteLength\":8},"
        "{\"buffer\":0,\"byteOffset\":24,\"byteLength\":8},{\"buffer\":0,\"byteOffset\":32,\"byteLength\":32},"
        "{\"buffer\":0,\"byteOffset\":60,\"byteLength\":28}],"
        "\"accessors\":[{\"bufferView\":0,\"componentType\":5123,\"count\":2,\"type\":\"VEC4\"},"
        "{\"bufferView\":1,\"componentType\":5121,\"count\":2,\"type\":\"VEC4\"},"
        "{\"bufferView\":2,\"componentType\":5121,\"count\":2,\"type\":\"VEC4\"},"
        "{\"bufferView\":3,\"componentType\":5126,\"count\":2,\"type\":\"VEC4\"},"
        "{\"bufferView\":4,\"byteOffset\":4,\"componentType\":5126,\"count\":2,\"type\":\"VEC3\"}],"
        "\"meshes\":[{\"primitives\":[{\"attributes\":{\"JOINTS_0\":0,\"WEIGHTS_0\":1,\"JOINTS_1\":2,\"WEIGHTS_1\":3},"
        "\"targets\":[{\"POSITION\":4},{\"NORMAL\":4}]}]}]";
    const Pair pair = both(bin, rest);
    for (const Gltf* gltf : {&pair.binary, &pair.text}) {
        const Primitive primitive = gltf->meshes.getByIndex(0).primitives.getByIndex(0);
        const auto tensors = primitive.attributes.getJointsTensor(-1, 6);
        ASSERT_EQ(tensors.first.getTensorSizes(), (std::vector<long>{2, 6}));
        const uint8_t* joints = tensors.first.getData<unsigned char>();
        const float* weights = tensors.second.getData<float>();
        // Vertex 0: 30 (6), 25 (9), 20 (8), 10 (5), then the zero weights in set order (7, 10, ...).
        EXPECT_EQ(std::vector<int>(joints, joints + 6), (std::vector<int>{6, 9, 8, 5, 7, 10}));
        EXPECT_NEAR(weights[0], 30.0f / 85.0f, 1e-6);
        EXPECT_EQ(weights[5], 0.0f);
        // Vertex 1: 4 (16), then the four 1s of set 0 in order, then 0 (13).
        EXPECT_EQ(std::vector<int>(joints + 6, joints + 12), (std::vector<int>{16, 1, 2, 3, 4, 13}));
        EXPECT_NEAR(weights[6], 0.5f, 1e-6);
        EXPECT_NEAR(weights[7], 0.125f, 1e-6);

        // Two joints per vertex: the rest is dropped and the kept weights renormalised.
        unsigned char two[4];
        float twoWeights[4];
        EXPECT_EQ(primitive.attributes.getJointsData(two, 4, twoWeights, sizeof twoWeights, -1, 2), 4);
        EXPECT_EQ(std::vector<int>(two, two + 4), (std::vector<int>{6, 9, 16, 1}));
        EXPECT_NEAR(twoWeights[0], 30.0f / 55.0f, 1e-6);
        EXPECT_NEAR(twoWeights[3], 0.2f, 1e-6);

        const DataTree stack = primitive.targets.getTensor("POSITION");
        EXPECT_EQ(stack.getTensorSizes(), (std::vector<long>{2, 2, 3}));
        const float* s = stack.getData<float>();
        EXPECT_EQ(std::vector<float>(s, s + 12), (std::vector<float>{1, 2, 3, 4, 5, 0, 0, 0, 0, 0, 0, 0}));
    }
}

// Tensors read from a .glb are the caller's: small ones hold their values
// beside the node, large ones in a block of their own; either way they
// outlive the document and give up a block the caller frees.
TEST(ReadPath, GlbTensorsAreTheCallers) {
    std::string bin(100000, '\0');
    for (size_t i = 0; i < bin.size(); ++i) bin[i] = static_cast<char>(i * 7);
    const Pair pair = both(bin, ",\"bufferViews\":[{\"buffer\":0,\"byteLength\":100000}],\"accessors\":["
                                "{\"bufferView\":0,\"componentType\":5126,\"count\":25000,\"type\":\"SCALAR\"},"
                                "{\"bufferView\":0,\"componentType\":5121,\"count\":2,\"type\":\"VEC3\"},"
                                "{\"bufferView\":0,\"byteOffset\":8,\"componentType\":5126,\"count\":25000,"
                                "\"type\":\"SCALAR\"},"
                                "{\"bufferView\":7,\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\"},"
                                "{\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\"},"
                                "{\"bufferView\":0,\"componentType\":5121,\"count\":3,\"type\":\"SCALAR\"}]");
    // In order twice (reads in order are looked ahead of), then backwards.
    for (int64_t i : {0, 1, 2, 3, 4, 5, 0, 1, 2, 3, 4, 5, 5, 4, 3, 2, 1, 0})
        EXPECT_EQ(tensorOutcome(pair.binary, i), tensorOutcome(pair.text, i)) << i;

    auto memory = std::make_shared<archive::MemoryFileProvider>();
    pair.binary.save(memory, "a.glb");
    auto loaded = std::make_unique<Gltf>(Gltf::load(memory, "a.glb", SINGLE_FILE));
    const std::shared_ptr<AccessorNode> node = loaded->getRoot()->getAccessors()->getItems()[1];
    DataTree large = loaded->accessors.getByIndex(0).getTensor();
    DataTree small = BinaryData::getTensor(*node);
    small.getData<uint8_t>()[0] = 0xff;
    EXPECT_EQ(BinaryData::getTensor(*node).getData<uint8_t>()[0], 0);
    loaded.reset();
    // The document is gone: the node alone cannot be read, the tensors stay.
    EXPECT_EQ(messageOf([&] { BinaryData::getTensor(*node); }), "Invalid node");
    EXPECT_EQ(large.getData<float>()[24999], pair.text.accessors.getByIndex(0).getTensor().getData<float>()[24999]);
    void* block = small.releaseBuffer();
    EXPECT_EQ(std::string(static_cast<const char*>(block), 6), "\xff\x07\x0e\x15\x1c\x23");
    std::free(block);
    std::free(large.releaseBuffer());
}

// Every accessor at once: the same tensors as one read each, which outlive
// the document and each other; the first accessor that cannot be read fails
// the whole read with its own message.
TEST(ReadPath, AllTensorsAtOnce) {
    std::string bin(100000, '\0');
    for (size_t i = 0; i < bin.size(); ++i) bin[i] = static_cast<char>(i * 7);
    std::string accessors;
    // Small ones that share blocks, then one past the shared size and one with its offset subtracted.
    for (int i = 0; i < 300; ++i)
        accessors += "{\"bufferView\":0,\"byteOffset\":" + std::to_string(i) +
                     ",\"componentType\":5121,\"count\":" + std::to_string(i % 7 + 1 + i) + ",\"type\":\"VEC2\"},";
    accessors += "{\"bufferView\":0,\"componentType\":5126,\"count\":25000,\"type\":\"SCALAR\"},"
                 "{\"bufferView\":1,\"byteOffset\":8,\"componentType\":5126,\"count\":4,\"type\":\"SCALAR\"}";
    const std::string views = ",\"bufferViews\":[{\"buffer\":0,\"byteLength\":100000},{\"buffer\":0,\"byteLength\":24}]";
    auto pair = std::make_unique<Pair>(both(bin, views + ",\"accessors\":[" + accessors + "]"));
    std::vector<DataTree> tensors = pair->binary.accessors.get().getTensors();
    ASSERT_EQ(static_cast<int64_t>(tensors.size()), pair->binary.accessors.size());
    for (size_t i = 0; i < tensors.size(); ++i)
        ASSERT_EQ(outcomeOf(tensors[i]), tensorOutcome(pair->text, static_cast<int64_t>(i))) << i;
    EXPECT_EQ(allOutcome(pair->text), allOutcome(pair->binary));
    const std::string kept = outcomeOf(tensors[150]);
    tensors[150].getData<uint8_t>()[0] ^= 0xff;
    EXPECT_EQ(outcomeOf(tensors[151]), tensorOutcome(pair->text, 151));
    tensors[150].getData<uint8_t>()[0] ^= 0xff;
    DataTree one = tensors[150];
    tensors.clear();
    pair.reset();
    EXPECT_EQ(outcomeOf(one), kept);

    const Pair failing = both(bin, views + ",\"accessors\":[" + accessors +
                                       ",{\"bufferView\":7,\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\"}]");
    EXPECT_EQ(allOutcome(failing.binary), tensorOutcome(failing.binary, 302));
    EXPECT_EQ(allOutcome(failing.binary).rfind("error: ", 0), 0u);

    // No list: no tensors.
    talvex_test::GltfScratch scratch;
    EXPECT_TRUE(Gltf::create(scratch.path("a.glb")).accessors.get().getTensors().empty());
}
