#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/gltf2/node/node/NodeGraph.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::messageOf;

namespace {

Gltf fromText(const std::string& json) {
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return Gltf::load(provider, "a.gltf", MULTIPLE_FILES, false);
}

int64_t addFloats(Gltf& gltf, const std::vector<float>& v, long count, const char* type) {
    return gltf.accessors.get()
        .addDense(v.data(), count, ACCESSOR_COMPONENT_TYPE_FLOAT, type, std::nullopt, true, nullptr)
        .getPropertyIndex();
}

int64_t addBytes(Gltf& gltf, const std::vector<uint8_t>& v, long count, const char* type) {
    return gltf.accessors.get()
        .addDense(v.data(), count, ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE, type, std::nullopt, true, nullptr)
        .getPropertyIndex();
}

std::vector<float> floatsOf(const DataTree& t) {
    const float* p = t.getData<float>();
    return std::vector<float>(p, p + t.getBufferSize() / static_cast<long>(sizeof(float)));
}

std::vector<int> bytesOf(const DataTree& t) {
    const unsigned char* p = t.getData<unsigned char>();
    return std::vector<int>(p, p + t.getBufferSize());
}

} // namespace

TEST(SceneViews, JointsKeepTheHeaviestInfluencesRenormalised) {
    Gltf gltf;
    gltf.init();
    Primitive primitive = gltf.meshes.get().add(nullptr).primitives.add();
    EXPECT_EQ(messageOf([&] { primitive.attributes.getJointsTensor(-1, 2); }),
              "Getting joints tensor of meshes[0].primitives[0]: There is no accessors");
    primitive.attributes.put("JOINTS_0", addBytes(gltf, {3, 1, 2, 0}, 1, "VEC4"));
    EXPECT_EQ(messageOf([&] { primitive.attributes.getJointsTensor(-1, 2); }),
              "Getting joints tensor of meshes[0].primitives[0]: Missing WEIGHTS_0");
    primitive.attributes.put("WEIGHTS_0", addFloats(gltf, {0.25f, 0.5f, 0.25f, 0}, 1, "VEC4"));

    auto two = primitive.attributes.getJointsTensor(-1, 2);
    EXPECT_EQ(two.first.getTensorSizes(), (std::vector<long>{1, 2}));
    EXPECT_EQ(bytesOf(two.first), (std::vector<int>{1, 3}));  // of the equal 0.25s the earlier stays
    EXPECT_NEAR(floatsOf(two.second)[0], 0.6666667f, 1e-6);
    EXPECT_NEAR(floatsOf(two.second)[1], 0.3333333f, 1e-6);

    primitive.attributes.put("JOINTS_1", addBytes(gltf, {9, 8, 7, 6}, 1, "VEC4"));
    EXPECT_EQ(messageOf([&] { primitive.attributes.getJointsTensor(-1, 2); }),
              "Getting joints tensor of meshes[0].primitives[0]: Missing WEIGHTS_1");
    primitive.attributes.put("WEIGHTS_1", addFloats(gltf, {0.75f, 0, 0, 0}, 1, "VEC4"));
    auto merged = primitive.attributes.getJointsTensor(-1, 2);
    EXPECT_EQ(bytesOf(merged.first), (std::vector<int>{9, 1}));
    EXPECT_NEAR(floatsOf(merged.second)[0], 0.6f, 1e-6);
    EXPECT_NEAR(floatsOf(merged.second)[1], 0.4f, 1e-6);

    // A given vertex count must match; the two-call copy measures first.
    EXPECT_EQ(messageOf([&] { primitive.attributes.getJointsTensor(2, 2); }),
              "Getting joints tensor of meshes[0].primitives[0]: Invalid joints layout, expect (2, 4)");
    EXPECT_EQ(primitive.attributes.getJointsDataLayout(1, 3), (std::vector<long>{1, 3}));
    EXPECT_EQ(primitive.attributes.getJointsData(nullptr, 0, nullptr, 0, 1, 3), 3);
    unsigned char joints[3];
    float weights[3];
    EXPECT_EQ(messageOf([&] { primitive.attributes.getJointsData(joints, 2, weights, sizeof weights, 1, 3); }),
              "Getting joints tensor of meshes[0].primitives[0]: Indices buffer is not large enough");
    EXPECT_EQ(primitive.attributes.getJointsData(joints, 3, weights, sizeof weights, 1, 3), 3);
    EXPECT_EQ(joints[2], 3);
    EXPECT_NEAR(weights[0] + weights[1] + weights[2], 1.0f, 1e-6);

    // More joints than influences pad with zeros.
    auto wide = primitive.attributes.getJointsTensor(1, 9);
    EXPECT_EQ(floatsOf(wide.second)[8], 0.0f);
}

TEST(SceneViews, AllZeroWeightsStayZero) {
    Gltf gltf;
    gltf.init();
    Primitive primitive = gltf.meshes.get().add(nullptr).primitives.add();
    primitive.attributes.put("JOINTS_0", addBytes(gltf, {1, 2, 3, 4}, 1, "VEC4"));
    primitive.attributes.put("WEIGHTS_0", addFloats(gltf, {0, 0, 0, 0}, 1, "VEC4"));
    for (float w : floatsOf(primitive.attributes.getJointsTensor(-1, 4).second)) {
        EXPECT_FALSE(std::isnan(w));
        EXPECT_EQ(w, 0.0f);
    }
    primitive.attributes.put("WEIGHTS_0", addFloats(gltf, {0, 0, 0, 0, 1, 0, 0, 0}, 2, "VEC4"));
    EXPECT_EQ(messageOf([&] { primitive.attributes.getJointsTensor(-1, 4); }),
              "Getting joints tensor of meshes[0].primitives[0]: Invalid weights layout, expect (vertexCount, 4)");
}

TEST(SceneViews, MorphStackZeroesTargetsWithoutTheKey) {
    Gltf gltf;
    gltf.init();
    Primitive primitive = gltf.meshes.get().add(nullptr).primitives.add();
    EXPECT_EQ(messageOf([&] { primitive.targets.getTensor("POSITION"); }), "In meshes[0].primitives[0]:\nNo targets");
    const int64_t a = addFloats(gltf, {9, 9, 9, 9, 9, 9}, 2, "VEC3");
    const int64_t b = addFloats(gltf, {1, 2, 3, 4, 5, 6}, 2, "VEC3");
    primitive.targets.add().put("NORMAL", a);
    primitive.targets.add().put("POSITION", b);

    DataTree stack = primitive.targets.getTensor("POSITION");
    EXPECT_EQ(stack.getTensorSizes(), (std::vector<long>{2, 2, 3}));
    EXPECT_EQ(floatsOf(stack), (std::vector<float>{0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(primitive.targets.getComponentType("POSITION"), ACCESSOR_COMPONENT_TYPE_FLOAT);
    EXPECT_EQ(primitive.targets.getDataLayout("POSITION", {1}), (std::vector<long>{1, 2, 3}));
    EXPECT_EQ(floatsOf(primitive.targets.getTensor("POSITION", {1, 0})),
              (std::vector<float>{1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(messageOf([&] { primitive.targets.getTensor("POSITION", {}); }),
              "In meshes[0].primitives[0]:\nSelection is empty");
    EXPECT_EQ(messageOf([&] { primitive.targets.getTensor("POSITION", {5}); }),
              "In meshes[0].primitives[0]:\nInvalid index 5 in selection");
    EXPECT_EQ(messageOf([&] { primitive.targets.getTensor("TANGENT"); }),
              "In meshes[0].primitives[0]:\nNo key TANGENT");
    float small[4];
    EXPECT_EQ(messageOf([&] { primitive.targets.getData(small, sizeof small, "POSITION"); }),
              "In meshes[0].primitives[0]:\nOutput buffer is too small");

    // A later target of another shape does not fit the stack.
    const int64_t c = addFloats(gltf, {1, 2, 3}, 1, "VEC3");
    primitive.targets.add().put("POSITION", c);
    EXPECT_EQ(messageOf([&] { primitive.targets.getTensor("POSITION"); }),
              "In meshes[0].primitives[0]:\nUnsupported layout for target 2");
    const int64_t d = addFloats(gltf, {1, 2}, 2, "SCALAR");
    primitive.targets.add().put("TEXCOORD_0", d);
    EXPECT_EQ(messageOf([&] { primitive.targets.getTensor("TEXCOORD_0"); }),
              "In meshes[0].primitives[0]:\nUnsupported targets layout");
}

TEST(SceneViews, MeshAsDataTree) {
    Gltf gltf;
    gltf.init();
    Mesh mesh = gltf.meshes.get().add(nullptr);
    EXPECT_NE(messageOf([&] { mesh.getDataTree(); }), "");  // no primitive: the list access fails
    Primitive primitive = mesh.primitives.add();
    primitive.attributes.put("POSITION", addFloats(gltf, {0, 0, 0, 1, 0, 0, 0, 1, 0}, 3, "VEC3"));
    const uint8_t faces[3] = {0, 1, 2};
    primitive.indices.set(gltf.accessors.get()
                              .addDense(faces, 3, ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE, "SCALAR", std::nullopt, true,
                                        nullptr)
                              .getPropertyIndex());
    DataTree tree = mesh.getDataTree();
    EXPECT_EQ(tree.getItem("vertices").getTensorSizes(), (std::vector<long>{3, 3}));
    EXPECT_EQ(tree.getItem("faces").getTensorSizes(), (std::vector<long>{3}));
    EXPECT_EQ(tree.getItem("faces").getScalarType(), ScalarType::UInteger8);
    mesh.primitives.add();
    EXPECT_EQ(messageOf([&] { mesh.getDataTree(); }),
              "Building DataTree from meshes[0]: meshes with more than one primitive are not supported");
}

TEST(SceneViews, NodeTypesLookThroughDescendants) {
    Gltf empty = fromText(R"({"asset":{"version":"2.0"}})");
    EXPECT_TRUE(empty.getNodeTypes().empty());

    Gltf gltf = fromText(R"({"asset":{"version":"2.0"},"meshes":[{"primitives":[]}],
        "nodes":[{"children":[1]},{"mesh":0},{"name":"joint"},{}],"skins":[{"joints":[2]}]})");
    EXPECT_EQ(gltf.getNodeTypes(), (std::vector<int32_t>{1, 1, 2, 0}));
    EXPECT_TRUE(isMeshNode(gltf.nodes.get(), 0));
    EXPECT_FALSE(isMeshNode(gltf.nodes.get(), 3));

    EXPECT_EQ(messageOf([] {
                  fromText(R"({"asset":{"version":"2.0"},"nodes":[{"mesh":0}],"skins":[{"joints":[0]}]})")
                      .getNodeTypes();
              }),
              "Inconsistent node nodes[0]:\nJoint and Mesh at the same time");
    EXPECT_EQ(messageOf([] {
                  fromText(R"({"asset":{"version":"2.0"},"nodes":[{"children":[1]},{"mesh":0}],)"
                           R"("skins":[{"joints":[0]}]})")
                      .getNodeTypes();
              }),
              "Inconsistent node nodes[0]:\nJoint and Mesh at the same time");
    EXPECT_EQ(messageOf([] { fromText(R"({"asset":{"version":"2.0"},"nodes":[{"children":[5]}]})").getNodeTypes(); }),
              "In node nodes[0]:\nInvalid child id 5");
    EXPECT_EQ(messageOf([] {
                  fromText(R"({"asset":{"version":"2.0"},"nodes":[{}],"skins":[{"joints":[3]}]})").getNodeTypes();
              }),
              "In skin skins[0]:\nInvalid node id 3");
}

TEST(SceneViews, CyclesAndDeepChainsRaise) {
    for (const char* nodes : {R"([{"children":[0]}])", R"([{"children":[1]},{"children":[0]}])"}) {
        Gltf gltf = fromText(std::string(R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":)") +
                             nodes + "}");
        EXPECT_NE(messageOf([&] { gltf.getNodeTypes(); }).find("Cycle in children"), std::string::npos) << nodes;
        EXPECT_NE(messageOf([&] { gltf.getFirstMesh(); }).find("Cycle in children"), std::string::npos) << nodes;
    }
    // A node reached by two parents is no cycle.
    Gltf shared = fromText(R"({"asset":{"version":"2.0"},"nodes":[{"children":[2]},{"children":[2]},{}]})");
    EXPECT_EQ(shared.getNodeTypes(), (std::vector<int32_t>{0, 0, 0}));

    std::string chain = R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[)";
    const int depth = 100000;
    for (int i = 0; i < depth; ++i) {
        chain += i + 1 < depth ? "{\"children\":[" + std::to_string(i + 1) + "]}," : std::string("{}");
    }
    chain += "]}";
    Gltf deep = fromText(chain);
    EXPECT_NE(messageOf([&] { deep.getNodeTypes(); }).find("Hierarchy deeper than"), std::string::npos);
    EXPECT_NE(messageOf([&] { deep.getFirstMesh(); }).find("Hierarchy deeper than"), std::string::npos);
}

TEST(SceneViews, SceneNameAndFirstMesh) {
    EXPECT_EQ(fromText(R"({"asset":{"version":"2.0"}})").getSceneName(), "<No main scene>");
    EXPECT_EQ(fromText(R"({"asset":{"version":"2.0"},"scene":3,"scenes":[{}]})").getSceneName(),
              "<Invalid main scene 3>");
    EXPECT_EQ(fromText(R"({"asset":{"version":"2.0"},"scene":1,"scenes":[{},{}]})").getSceneName(), "Scene 1");
    EXPECT_EQ(fromText(R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"name":"main"}]})").getSceneName(), "main");

    Gltf gltf = fromText(R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[2,0]}],
        "meshes":[{"name":"a","primitives":[]},{"name":"b","primitives":[]},{"name":"c","primitives":[]}],
        "nodes":[{"mesh":0},{"mesh":1},{"children":[3,1]},{"children":[]},{"mesh":2}]})");
    // Depth first from node 2: node 3 has nothing, then node 1 with mesh "b".
    EXPECT_EQ(gltf.getFirstMesh().name.get(), "b");
    EXPECT_FALSE(fromText(R"({"asset":{"version":"2.0"}})").getFirstMesh().isPropertyPresent());

    // The default scene is set against the scenes the document has.
    Gltf built;
    built.init();
    EXPECT_EQ(messageOf([&] { built.scene.set(0); }), "There is no scenes in ");
    built.scenes.get().add("s");
    EXPECT_EQ(messageOf([&] { built.scene.set(1); }), "Setting .scene: Invalid index 1 in scenes");
    built.scene.set(0);
    EXPECT_EQ(built.getSceneName(), "s");
}
