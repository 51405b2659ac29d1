#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::GltfScratch;
using talvex_test::messageOf;

namespace {

std::string base64(const void* data, long size) {
    std::string text(static_cast<size_t>(base64encode(nullptr, 0, data, size, BASE64_ENCODING_STANDARD, '=')), ' ');
    base64encode(text.data(), static_cast<long>(text.size()), data, size, BASE64_ENCODING_STANDARD, '=');
    return text;
}

// A document whose buffer 0 holds the floats 1 to 6 (24 bytes), with one
// view and one accessor described by the given JSON fragments.
Gltf withFloats(const std::string& view, const std::string& accessor) {
    const float floats[] = {1, 2, 3, 4, 5, 6};
    const std::string json = "{\"buffers\":[{\"uri\":\"data:application/octet-stream;base64," + base64(floats, 24) +
                             "\",\"byteLength\":24}],\"bufferViews\":[" + view + "],\"accessors\":[" + accessor + "]}";
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return Gltf::load(provider, "a.gltf", MULTIPLE_FILES);
}

std::vector<float> floatsOf(const Accessor& accessor) {
    std::vector<float> values(static_cast<size_t>(accessor.getDataSize()) / 4);
    accessor.getData(values.data(), static_cast<int64_t>(values.size() * 4));
    return values;
}

} // namespace

TEST(BinaryData, StridesAndOffsetsAsWritten) {
    Gltf packed = withFloats("{\"buffer\":0,\"byteLength\":24,\"byteStride\":4}",
                             "{\"bufferView\":0,\"componentType\":5126,\"count\":6,\"type\":\"SCALAR\"}");
    EXPECT_EQ(floatsOf(packed.accessors.getByIndex(0)), (std::vector<float>{1, 2, 3, 4, 5, 6}));

    Gltf interleaved = withFloats("{\"buffer\":0,\"byteLength\":24,\"byteStride\":12}",
                                  "{\"bufferView\":0,\"componentType\":5126,\"count\":2,\"type\":\"VEC3\"}");
    const std::string message = messageOf([&] { interleaved.accessors.getByIndex(0).getTensor(); });
    EXPECT_EQ(message.rfind("Getting data from bufferViews[0]: ", 0), 0u) << message;
    EXPECT_NE(message.find("byteStrire != valueSize not implemented"), std::string::npos);

    // The offset is taken off the count's bytes: 16 - 8 leaves the floats 3 and 4.
    Gltf offset = withFloats("{\"buffer\":0,\"byteLength\":24}",
                             "{\"bufferView\":0,\"byteOffset\":8,\"componentType\":5126,\"count\":4,\"type\":\"SCALAR\"}");
    EXPECT_EQ(floatsOf(offset.accessors.getByIndex(0)), (std::vector<float>{3, 4}));
    DataTree tensor = offset.accessors.getByIndex(0).getTensor();
    EXPECT_EQ(static_cast<const float*>(tensor.getBuffer())[3], 0.0f);  // the bytes never read stay zero
    Gltf tooFar = withFloats("{\"buffer\":0,\"byteLength\":24}",
                             "{\"bufferView\":0,\"byteOffset\":8,\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\"}");
    EXPECT_NE(messageOf([&] { tooFar.accessors.getByIndex(0).getDataSize(); }).find("Invalid offset"), std::string::npos);
    // The most negative offset fails before any arithmetic with it.
    Gltf negative = withFloats("{\"buffer\":0,\"byteLength\":24}",
                               "{\"bufferView\":0,\"byteOffset\":-9223372036854775808,\"componentType\":5126,"
                               "\"count\":4,\"type\":\"SCALAR\"}");
    EXPECT_NE(messageOf([&] { negative.accessors.getByIndex(0).getDataSize(); }).find("Invalid offset"),
              std::string::npos);
}

TEST(BinaryData, BuffersAreCheckedAtEveryRead) {
    auto load = [](const std::string& uri, int byteLength) {
        auto provider = std::make_shared<archive::MemoryFileProvider>();
        provider->create("a.gltf", "{\"buffers\":[{\"uri\":\"" + uri + "\",\"byteLength\":" +
                                       std::to_string(byteLength) + "}]}");
        return Gltf::load(provider, "a.gltf", MULTIPLE_FILES);
    };
    Gltf shortData = load("data:application/gltf-buffer;base64,QUJDRA==", 8);
    EXPECT_EQ(messageOf([&] { shortData.buffers.getByIndex(0).getString(); }), "In buffers[0]: Invalid byteLength 4 >= 8");
    Gltf text = load("data:text/plain;base64,QUJDRA==", 4);
    EXPECT_EQ(messageOf([&] { text.buffers.getByIndex(0).getString(); }), "Unsupported data mime type text/plain");
    for (const char* uri : {"../x.bin", "a/../../x.bin", "..\\\\x.bin"}) {
        Gltf climbing = load(uri, 4);
        EXPECT_NE(messageOf([&] { climbing.buffers.getByIndex(0).getString(); }).find("leaves the document's folder"),
                  std::string::npos)
            << uri;
    }
    for (const char* uri : {"C:\\\\x.bin", "/etc/passwd"}) {
        Gltf absolute = load(uri, 4);
        EXPECT_NE(messageOf([&] { absolute.buffers.getByIndex(0).getString(); }).find("is absolute"), std::string::npos)
            << uri;
    }
}

TEST(BinaryData, HostileCountsFailBeforeAllocating) {
    Gltf huge = withFloats("{\"buffer\":0,\"byteLength\":24}",
                           "{\"bufferView\":0,\"componentType\":5126,\"count\":1099511627776,\"type\":\"MAT4\"}");
    EXPECT_NE(messageOf([&] { huge.accessors.getByIndex(0).getTensor(); }).find("Invalid value count"),
              std::string::npos);
    Gltf overflowing = withFloats("{\"buffer\":0,\"byteLength\":24}",
                                  "{\"bufferView\":0,\"componentType\":5126,\"count\":4611686018427387904,\"type\":\"MAT4\"}");
    EXPECT_EQ(messageOf([&] { overflowing.accessors.getByIndex(0).getTensor(); }),
              "Getting data from accessors[0]:\nInvalid count 4611686018427387904");
    Gltf negative = withFloats("{\"buffer\":0,\"byteLength\":24,\"byteOffset\":-4}",
                               "{\"bufferView\":0,\"componentType\":5126,\"count\":1,\"type\":\"SCALAR\"}");
    EXPECT_NE(messageOf([&] { negative.accessors.getByIndex(0).getTensor(); }).find("Invalid value offset"),
              std::string::npos);
}

TEST(BinaryData, AddingChecksRangesAndTypes) {
    GltfScratch scratch;
    Gltf gltf = Gltf::create(scratch.path("a.gltf"));
    gltf.buffers.get().addData("0123456789AB", 12, "b.bin");
    EXPECT_EQ(messageOf([&] { gltf.bufferViews.get().addBuffer(0, std::nullopt, 8, 8); }),
              "Adding item to bufferViews:\nInvalid byte offset and length 8 + 8 > 12 for buffer 0");
    EXPECT_EQ(messageOf([&] { gltf.bufferViews.get().addBuffer(0, std::nullopt, 1, 12); }),
              "Adding item to bufferViews:\nInvalid byte offset 12 >= 12");
    EXPECT_EQ(messageOf([&] { gltf.bufferViews.get().addBuffer(3, std::nullopt, 1, 0); }),
              "Setting bufferViews[0].buffer: Invalid index 3 in buffers");
    EXPECT_EQ(messageOf([&] { gltf.buffers.get().addData("x", 0); }), "Adding item to buffers:\nInvalid byte length 0");

    const int64_t minusOne[] = {-1};
    EXPECT_EQ(messageOf([&] { gltf.accessors.get().addTensor(DataTree::createTensor(minusOne, 8, {1}, ScalarType::Integer64)); }),
              "Only unsigned 32-bit value can be handled");
    const double doubles[] = {1};
    EXPECT_EQ(messageOf([&] { gltf.accessors.get().addTensor(DataTree::createTensor(doubles, 8, {1}, ScalarType::Double)); }),
              "Invalid or unsupported scalar type 11");
    EXPECT_EQ(messageOf([&] { gltf.accessors.get().addTensor(DataTree::createTensor({10, 5}, ScalarType::Float)); }),
              "Invalid or unsupported tensor layout [10,5]");

    // [n,16] and [n,4,4] both make MAT4; Integer64 narrows to UNSIGNED_INT.
    Accessor flat = gltf.accessors.get().addTensor(DataTree::createTensor({2, 16}, ScalarType::Float), std::nullopt, true);
    Accessor square = gltf.accessors.get().addTensor(DataTree::createTensor({2, 4, 4}, ScalarType::Float), std::nullopt, true);
    EXPECT_EQ(flat.type.get(), "MAT4");
    EXPECT_EQ(square.getDims(), (std::vector<long>{2, 4, 4}));
    const int64_t joints[] = {0, 4294967295};
    Accessor narrowed = gltf.accessors.get().addTensor(DataTree::createTensor(joints, 16, {2}, ScalarType::Integer64),
                                                       std::nullopt, true);
    EXPECT_EQ(narrowed.componentType.get(), ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT);
    EXPECT_EQ(narrowed.max.get(0), 4294967295.0);

    // Bounds are kept in double: a float 0.1 is written with its float value.
    const float tenth[] = {0.1f};
    gltf.accessors.get().addDense(tenth, 1, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR", std::nullopt, true);
    EXPECT_NE(gltf.toJsonString().find("0.1000000014901161"), std::string::npos);

    Gltf memory;
    memory.init();
    EXPECT_EQ(messageOf([&] { memory.buffers.get().addData("x", 1, "x.bin"); }),
              "Adding item to buffers:\nFiles are not allowed with MEMORY_ONLY storage mode");
}

TEST(BinaryData, EnumerationsAndDims) {
    EXPECT_EQ(messageOf([] { int2AccessorComponentType(5124); }), "Invalid or unsupported accessorComponentType type 5124");
    EXPECT_EQ(messageOf([] { accessorComponentType2size(ACCESSOR_COMPONENT_TYPE_NONE); }),
              "Invalid or unsupported component type 0");
    EXPECT_EQ(messageOf([] { accessorComponentType2ScalarType(ACCESSOR_COMPONENT_TYPE_NONE); }),
              "Invalid or unsupported gltf component type 0");
    EXPECT_EQ(messageOf([] { scalarType2componentType(ScalarType::Integer32); }), "Invalid or unsupported scalar type 7");
    EXPECT_EQ(messageOf([] { int2BufferViewTarget(1); }), "Invalid or unsupported bufferViewTarget type 1");
    EXPECT_EQ(accessorType2valueCount("MAT3"), 9);
    EXPECT_EQ(messageOf([] { accessorType2valueCount("mat3"); }), "Invalid accessor type mat3");

    Gltf gltf;
    gltf.init();
    Accessor accessor = gltf.accessors.get().add(ACCESSOR_COMPONENT_TYPE_FLOAT, 3, "MAT3", nullptr);
    EXPECT_EQ(accessor.getDims(), (std::vector<long>{3, 3, 3}));
    accessor.type.set("MAT2");
    EXPECT_EQ(accessor.getDims(), (std::vector<long>{3, 2, 2}));
    EXPECT_EQ(messageOf([&] { accessor.getData(nullptr, 0); }),
              "Getting data from accessors[0]\n:There is no buffer views");
    EXPECT_EQ(messageOf([&] { accessor.bufferView.set(0); }), "There is no bufferViews in ");
    gltf.bufferViews.get().add(0, 4, nullptr);
    EXPECT_EQ(messageOf([&] { accessor.bufferView.set(3); }),
              "Setting accessors[0].bufferView: Invalid index 3 in bufferViews");
    EXPECT_EQ(accessor.byteOffset.get(), 0);  // answered when absent, never written
    EXPECT_EQ(gltf.toJsonString().find("byteOffset"), std::string::npos);
}

TEST(BinaryData, ClonesAlwaysMakeNewFiles) {
    GltfScratch scratch;
    const float floats[] = {1, 2, 3};
    Gltf source = Gltf::create(scratch.path("s.glb"));
    Accessor accessor = source.accessors.get().addDense(floats, 3, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR");
    Gltf target = Gltf::create(scratch.path("t.gltf"));
    accessor.clone(target);
    accessor.clone(target);
    EXPECT_EQ(target.buffers.getByIndex(0).uri.get(), "t_0.bin");
    EXPECT_EQ(target.buffers.getByIndex(1).uri.get(), "t_1.bin");
    EXPECT_EQ(scratch.read("t_1.bin").size(), 12u);
    EXPECT_EQ(static_cast<const float*>(target.accessors.getByIndex(1).getTensor().getBuffer())[2], 3.0f);
    EXPECT_EQ(target.accessors.getByIndex(1).max.get(0), 3.0);
}
