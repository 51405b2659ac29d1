// The member accessors inside a record's accessor use that accessor's
// references; these tests hold what a user sees: a member copied out lives on
// its own, and members always view what their own accessor views.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::messageOf;

namespace {

// Accessor i has count i + 1, so every read tells which record it saw. A
// writable document (a decoded .glb is read-only).
std::unique_ptr<Gltf> document(int accessors) {
    std::string bytes;  // base64 of 64 bytes of 5
    for (int i = 0; i < 21; ++i) bytes += "BQUF";
    std::string json = "{\"buffers\":[{\"uri\":\"data:application/octet-stream;base64," + bytes +
                       "BQ==\",\"byteLength\":64}],\"bufferViews\":[{\"buffer\":0,\"byteLength\":64}],"
                       "\"accessors\":[";
    for (int i = 0; i < accessors; ++i) {
        json += std::string(i ? "," : "") + "{\"bufferView\":0,\"componentType\":5121,\"count\":" +
                std::to_string(i + 1) + ",\"type\":\"SCALAR\",\"name\":\"a" + std::to_string(i) + "\"}";
    }
    json += "],\"meshes\":[{\"primitives\":[{\"attributes\":{\"POSITION\":0}}]}]}";
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return std::make_unique<Gltf>(Gltf::load(provider, "a.gltf", MULTIPLE_FILES));
}

} // namespace

TEST(HandleMembers, CopiedOutMembersOutliveHandleAndDocument) {
    auto gltf = document(2);
    auto handle = std::make_unique<Accessor>(gltf->accessors.getByIndex(1));
    Accessor::Count count = handle->count;
    Accessor::Name name(handle->name);
    Accessor::Max max = handle->max;
    Accessor::ByteOffset byteOffset = std::move(handle->byteOffset);
    auto mesh = std::make_unique<Mesh>(gltf->meshes.getByIndex(0));
    Mesh::Primitives primitives = mesh->primitives;
    EXPECT_EQ(count.getPropertyRoot(), gltf->getRoot());
    // Nothing else holds the document now.
    handle.reset();
    mesh.reset();
    gltf.reset();
    EXPECT_EQ(count.get(), 2);
    EXPECT_EQ(count.getPropertyPath(), "accessors[1].count");
    count.set(7);
    EXPECT_EQ(count.get(), 7);
    EXPECT_STREQ(name.c_str(), "a1");
    max.add(1.5);
    EXPECT_EQ(max.buildRepresentation(), "[1.5]");
    EXPECT_EQ(byteOffset.get(), 0);
    EXPECT_EQ(primitives.size(), 1);
    EXPECT_EQ(primitives.getByIndex(0).attributes.buildRepresentation(), "{\n  \"POSITION\": 0\n}");
    // A copy of a copy, and an assignment, own their references too.
    Accessor::Count again = count;
    count = Accessor::Count();
    EXPECT_EQ(again.get(), 7);
    EXPECT_EQ(messageOf([&] { count.get(); }), "Invalid node");
}

TEST(HandleMembers, MembersFollowTheirOwnHandle) {
    auto gltf = document(40);
    // Growing the vector moves the handles: each keeps viewing its record.
    std::vector<Accessor> handles;
    for (int64_t i = 0; i < 40; ++i) handles.push_back(gltf->accessors.getByIndex(i));
    for (int64_t i = 0; i < 40; ++i) {
        EXPECT_EQ(handles[static_cast<size_t>(i)].count.get(), i + 1);
        EXPECT_EQ(handles[static_cast<size_t>(i)].name.getPropertyPath(), "accessors[" + std::to_string(i) + "].name");
    }

    std::optional<Accessor> source(gltf->accessors.getByIndex(3));
    Accessor copy(*source);
    Accessor assigned = gltf->accessors.getByIndex(0);
    assigned = *source;
    Accessor moved = gltf->accessors.getByIndex(0);
    moved = std::move(*source);
    source.reset();
    for (Accessor* a : {&copy, &assigned, &moved}) {
        EXPECT_EQ(a->count.get(), 4);
        EXPECT_EQ(a->count.getPropertyRoot(), gltf->getRoot());
    }
    copy.count.set(9);
    EXPECT_EQ(moved.count.get(), 9);

    // A read-only accessor's members refuse changes; assigned a writable one,
    // they take its rule.
    Accessor readOnly(gltf->getRoot(), gltf->getRoot()->getAccessors()->getItems()[0], true);
    EXPECT_EQ(messageOf([&] { readOnly.count.set(1); }), "Setting accessors[0].count: Forbidden, read-only accessor");
    Accessor::Count readOnlyCount = readOnly.count;
    readOnly = copy;
    readOnly.count.set(10);
    EXPECT_EQ(copy.count.get(), 10);
    EXPECT_EQ(messageOf([&] { readOnlyCount.set(1); }), "Setting accessors[0].count: Forbidden, read-only accessor");

    // A removed record: the accessor's members fail, a member taken out
    // before keeps viewing the detached record.
    Accessor doomed = gltf->accessors.getByIndex(5);
    Accessor::Name doomedName = doomed.name;
    doomed.removeProperty();
    EXPECT_EQ(messageOf([&] { doomed.name.get(); }), "Invalid node");
    EXPECT_EQ(doomedName.get(), "a5");
    Accessor empty;
    Accessor emptyCopy = empty;
    EXPECT_EQ(messageOf([&] { emptyCopy.count.get(); }), "Invalid node");
}
