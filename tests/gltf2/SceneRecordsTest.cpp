#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::messageOf;
using talvex_test::stderrOf;

namespace {

Gltf fromText(const std::string& json, bool readOnly = false) {
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return Gltf::load(provider, "a.gltf", MULTIPLE_FILES, readOnly);
}

std::string compact(const Gltf& gltf) { return gltf.toJsonString(archive::JsonExporter::Options{false, true, false}); }

} // namespace

TEST(SceneRecords, KeysComeBackInWritingOrder) {
    // Keys scrambled on input; "matrix" is written before "mesh", "joints"
    // is always written, defaults of a node are never written.
    const std::string in = R"({"scene":0,"scenes":[{"name":"s","nodes":[0]}],
      "skins":[{"joints":[1],"skeleton":0,"inverseBindMatrices":0}],
      "nodes":[{"name":"n0","mesh":0,"matrix":[1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1],"children":[1]},
               {"translation":[1,2,3],"rotation":[0,0,0,1]}],
      "meshes":[{"name":"m","weights":[0.5],"primitives":[{"targets":[{"POSITION":0}],"mode":1,"indices":1,
                 "attributes":{"POSITION":0}}]}],
      "asset":{"version":"2.0"}})";
    Gltf gltf = fromText(in);
    const std::string out = compact(gltf);
    EXPECT_EQ(out,
              R"({"asset":{"version":"2.0"},"meshes":[{"primitives":[{"attributes":{"POSITION":0},"indices":1,)"
              R"("mode":1,"targets":[{"POSITION":0}]}],"weights":[0.5],"name":"m"}],)"
              R"("nodes":[{"children":[1],"matrix":[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1],"mesh":0,"name":"n0"},)"
              R"({"rotation":[0, 0, 0, 1],"translation":[1, 2, 3]}],)"
              R"("skins":[{"inverseBindMatrices":0,"skeleton":0,"joints":[1]}],"scenes":[{"nodes":[0],"name":"s"}],)"
              R"("scene":0})");
    // Read back: the same text.
    EXPECT_EQ(compact(fromText(out)), out);
}

TEST(SceneRecords, ReadDefaultsAreAnsweredButNotWritten) {
    Gltf gltf;
    gltf.init();
    Node node = gltf.nodes.get().add(nullptr);
    Mesh mesh = gltf.meshes.get().add("m");
    Primitive primitive = mesh.primitives.add();
    EXPECT_EQ(node.matrix.get(), (std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    EXPECT_EQ(node.rotation.get(), (std::vector<double>{0, 0, 0, 1}));
    EXPECT_EQ(node.scale.get(), (std::vector<double>{1, 1, 1}));
    EXPECT_EQ(node.translation.get(), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(Node::Scale::defaultValue, (std::vector<double>{1, 1, 1}));
    EXPECT_FALSE(node.matrix.isPropertyPresent());
    EXPECT_EQ(primitive.mode.get(), PRIMITIVE_MODE_TRIANGLES);
    EXPECT_EQ(compact(gltf),
              R"({"asset":{"version":"2.0"},"meshes":[{"primitives":[{}],"name":"m"}],"nodes":[{}]})");

    // Matrix and TRS are stored side by side; only the mixer refuses both.
    node.matrix.set(std::vector<double>(16, 2.0));
    node.scale.set({2, 2, 2});
    EXPECT_EQ(node.matrix.get().size(), 16u);
    EXPECT_EQ(node.scale.get()[0], 2.0);
}

TEST(SceneRecords, PrimitiveModeNames) {
    EXPECT_STREQ(primitiveMode2name(int2PrimitiveMode(0)), "POINTS");
    EXPECT_STREQ(primitiveMode2name(int2PrimitiveMode(6)), "TRIANGLE_FAN");
    EXPECT_EQ(messageOf([] { int2PrimitiveMode(7); }), "Invalid or unsupported primitiveMode type 7");
    EXPECT_EQ(messageOf([] { primitiveMode2name(static_cast<PrimitiveMode>(-1)); }),
              "Invalid or unsupported primitiveMode type -1");
}

TEST(SceneRecords, IndexSettersCheckTheirList) {
    Gltf gltf;
    gltf.init();
    Node node = gltf.nodes.get().add(nullptr);
    EXPECT_EQ(messageOf([&] { node.mesh.set(0); }), "There is no meshes in ");
    gltf.meshes.get().add(nullptr);
    EXPECT_EQ(messageOf([&] { node.mesh.set(1); }), "Setting nodes[0].mesh: Invalid index 1 in meshes");
    node.mesh.set(0);
    EXPECT_EQ(node.mesh.getIndex(), 0);
    EXPECT_EQ(node.mesh.get().getPropertyIndex(), 0);
    EXPECT_EQ(messageOf([&] { node.skin.set(0); }), "There is no skins in ");
    EXPECT_EQ(messageOf([&] { node.camera.set(0); }), "There is no cameras in ");
    EXPECT_EQ(messageOf([&] { node.children.add(3); }), "Adding item to nodes[0].children: Invalid index 3 in nodes");
    node.children.add(0);
    EXPECT_EQ(messageOf([&] { node.children.set(0, 4); }),
              "Setting item 0 of nodes[0].children: Invalid index 4 in nodes");

    Scene scene = gltf.scenes.get().add(nullptr);
    EXPECT_EQ(messageOf([&] { scene.nodes.set(0, 0); }), "Setting item 0 of scenes[0].nodes: No list");
    EXPECT_EQ(messageOf([&] { scene.nodes.add(2); }), "Adding item to scenes[0].nodes: Invalid index 2 in nodes");
    scene.nodes.add(0);
    EXPECT_EQ(messageOf([&] { scene.nodes.set(3, 0); }), "Setting item 3 of scenes[0].nodes: Invalid index 3");
    EXPECT_EQ(messageOf([&] { scene.nodes.get(5); }), "Getting item of scenes[0].nodes: Invalid index 5");
    EXPECT_EQ(messageOf([&] { scene.nodes.remove(5); }), "Removing item 5 of scenes[0].nodes: Invalid index");

    Skin skin = gltf.skins.get().add(nullptr);
    EXPECT_EQ(messageOf([&] { skin.inverseBindMatrices.getIndex(); }),
              "Getting skins[0].inverseBindMatrices: No value");
    EXPECT_EQ(messageOf([&] { skin.inverseBindMatrices.set(0); }), "There is no accessors in ");
    EXPECT_EQ(messageOf([&] { skin.skeleton.set(9); }), "Setting skins[0].skeleton: Invalid index 9 in nodes");
    EXPECT_EQ(messageOf([&] { skin.joints.add(9); }), "Adding item to skins[0].joints: Invalid index 9 in nodes");
    EXPECT_EQ(messageOf([&] { skin.joints.get(0); }), "Getting item of skins[0].joints: Invalid index 0");

    Primitive primitive = gltf.meshes.getByIndex(0).primitives.add();
    EXPECT_EQ(messageOf([&] { primitive.material.set(0); }), "There is no materials in ");
    EXPECT_EQ(messageOf([&] { primitive.indices.set(0); }), "There is no accessors in ");
}

TEST(SceneRecords, AttributeAndTargetMaps) {
    Gltf gltf;
    gltf.init();
    const float data[6] = {1, 2, 3, 4, 5, 6};
    gltf.accessors.get().addDense(data, 2, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3", std::nullopt, true, nullptr);
    Primitive primitive = gltf.meshes.get().add(nullptr).primitives.add();

    EXPECT_EQ(messageOf([&] { primitive.attributes.get("POSITION"); }),
              "Getting item of meshes[0].primitives[0].attributes: No list");
    EXPECT_EQ(messageOf([&] { primitive.attributes.getKeys(); }),
              "Getting keys of meshes[0].primitives[0].attributes: No list");
    EXPECT_EQ(messageOf([&] { primitive.attributes.remove("POSITION"); }),
              "Removing item POSITION of meshes[0].primitives[0].attributes: No list");
    EXPECT_EQ(messageOf([&] { primitive.attributes.put("POSITION", 1); }),
              "Setting item POSITION of meshes[0].primitives[0].attributes: Invalid index 1 in accessors");
    primitive.attributes.put("TEXCOORD_7", 0);  // any key is accepted
    EXPECT_TRUE(primitive.attributes.has("TEXCOORD_7"));
    EXPECT_EQ(primitive.attributes.get("TEXCOORD_7").getDims(), (std::vector<long>{2, 3}));
    EXPECT_EQ(primitive.attributes.get("TEXCOORD_7").getComponentType(), ACCESSOR_COMPONENT_TYPE_FLOAT);
    EXPECT_EQ(messageOf([&] { primitive.attributes.get("NORMAL"); }),
              "Getting item of meshes[0].primitives[0].attributes: Invalid key NORMAL");
    EXPECT_EQ(messageOf([&] { primitive.attributes.remove("NORMAL"); }),
              "Removing item NORMAL of meshes[0].primitives[0].attributes: Invalid key");

    EXPECT_EQ(messageOf([&] { primitive.targets.get(0); }), "Getting item of meshes[0].primitives[0].targets: No list");
    EXPECT_EQ(messageOf([&] { primitive.targets.remove(0); }), "Removing item meshes[0].primitives[0].targets[0]: No list");
    EXPECT_EQ(messageOf([&] { primitive.targets.put(0, "POSITION", 0); }),
              "Setting item meshes[0].primitives[0].targets[0][POSITION]: No list");
    Primitive::TargetsMap target = primitive.targets.add();
    EXPECT_EQ(messageOf([&] { primitive.targets.put(1, "POSITION", 0); }),
              "Setting item meshes[0].primitives[0].targets[1][POSITION]: Invalid index");
    EXPECT_EQ(messageOf([&] { target.put("POSITION", 4); }),
              "Setting item meshes[0].primitives[0].targets[0][POSITION]: Invalid index 4 in accessors");
    target.put("POSITION", 0);
    EXPECT_EQ(primitive.targets.get(0).get("POSITION").getIndex(), 0);
    EXPECT_EQ(messageOf([&] { primitive.targets.get(2); }),
              "Getting item of meshes[0].primitives[0].targets: Invalid index 2");
    EXPECT_EQ(messageOf([&] { target.get("NORMAL"); }),
              "Getting item of meshes[0].primitives[0].targets: Invalid key NORMAL");
    EXPECT_EQ(messageOf([&] { target.remove("NORMAL"); }),
              "Removing item meshes[0].primitives[0].targets[0][NORMAL]: Invalid key");
    EXPECT_EQ(messageOf([&] { primitive.targets.remove(3); }),
              "Removing item meshes[0].primitives[0].targets[3]: Invalid index");
    EXPECT_EQ(primitive.targets.getFirstdWith("POSITION"), 0);
    EXPECT_EQ(primitive.targets.getFirstdWith("NORMAL"), -1);
}

TEST(SceneRecords, ExtrasAreGenericValues) {
    Gltf gltf = fromText(R"({"asset":{"version":"2.0"},"scenes":[{"name":"s","extras":{"a":1,"b":["x",2]}}]})");
    EXPECT_NE(compact(gltf).find(R"("extras":{"a":1,"b":["x",2]})"), std::string::npos);
    // A float fails in the reader itself, which stops an integer at the point.
    EXPECT_EQ(messageOf([] { fromText(R"({"asset":{"version":"2.0"},"nodes":[{"extras":{"f":1.5}}]})"); }),
              "Expect the end of an object at line 1");
    EXPECT_EQ(messageOf([] { fromText(R"({"asset":{"version":"2.0"},"nodes":[{"extras":{"f":true}}]})"); }),
              "Unsupported or invalid object at line 1");

    // A clone copies the name only, and stops at extras it cannot copy.
    Gltf target;
    target.init();
    Scene source = gltf.scenes.getByIndex(0);
    EXPECT_EQ(messageOf([&] { source.clone(target); }), "Not implemented");
    // Extras have no deep copy of their own either; the value stays as it was.
    EXPECT_EQ(messageOf([&] { source.extras.copy(source.extras.get()); }), "Not implemented");
    EXPECT_EQ(messageOf([&] { target.scenes.get().add(nullptr).extras.copy(source.extras.get()); }), "Not implemented");
    EXPECT_NE(compact(gltf).find(R"("extras":{"a":1,"b":["x",2]})"), std::string::npos);
    source.extras.removeProperty();
    source.nodes.removeProperty();
    const int64_t index = source.clone(target);
    EXPECT_EQ(target.scenes.getByIndex(index).name.get(), "s");
    EXPECT_FALSE(target.scenes.getByIndex(index).nodes.isPropertyPresent());
    Gltf readOnly = fromText(R"({"asset":{"version":"2.0"}})", true);
    EXPECT_EQ(messageOf([&] { source.clone(readOnly); }), "Cloning scenes[0]: Forbidden, read-only target container");
}

TEST(SceneRecords, ReferencesAreNotCheckedOnReading) {
    // A parser stores indices as read; the check is the setter's and the use's.
    Gltf gltf = fromText(R"({"asset":{"version":"2.0"},"nodes":[{"mesh":7,"children":[9]}]})");
    EXPECT_EQ(gltf.nodes.getByIndex(0).mesh.getIndex(), 7);
    EXPECT_EQ(messageOf([&] { gltf.nodes.getByIndex(0).mesh.get(); }), "There is no meshes in ");
    EXPECT_EQ(gltf.nodes.getByIndex(0).children.get(0), 9);
}
