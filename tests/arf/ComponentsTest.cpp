#include <gtest/gtest.h>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/property/components/Node.h"
#include "sorvane/core/ErrorSlot.h"
#include "sorvane/sorvane.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;

namespace {

const char* kDocument = R"(memory:{"components": {
  "nodes": [{"mapping": "Hips", "children": [2], "name": "hips", "id": 1},
            {"mapping": "Spine", "parent": 9, "name": "spine", "id": 2}],
  "skeletons": [{"root": 1, "joints": [{"node": 1}, {"name": "spine", "node": 2, "id": 4}], "name": "s", "id": 1}],
  "skins": [{"name": "no mesh", "id": 1}]}})";

} // namespace

TEST(Components, ReadingKeepsWhatTheFileSays) {
    Arf arf = Arf::load(kDocument);
    auto components = arf.components.get();
    auto spine = components.nodes[2];
    // A dangling parent loads; following it fails, its stored id is kept.
    EXPECT_EQ(spine.parent.getIndex(), 9);
    EXPECT_EQ(messageOf([&] { spine.parent.get(); }), "Getting item from components.nodes: Invalid id 9");
    EXPECT_EQ(components.nodes[1].children[0].get().name.get(), "spine");
    // A skin read without a mesh has the mesh id 0.
    EXPECT_EQ(components.skins[1].mesh.getIndex(), 0);

    auto skeleton = components.skeletons[1];
    EXPECT_EQ(skeleton.root.get().name.get(), "hips");
    EXPECT_EQ(skeleton.joints.size(), 2);
    auto joints = skeleton.joints.get();
    EXPECT_FALSE(joints.getByIndex(0).name.isPropertyPresent());
    EXPECT_EQ(joints.getPropertyItemNames(), (std::vector<std::string>{"", "spine"}));
    EXPECT_EQ(joints.getByIndex(1).getPropertyPath(), "components.skeletons[1].joints[1]");

    // Written back as read: the joint without name and id, "meshes" always there.
    const std::string text = arf.toJsonString({false, true, false});
    EXPECT_NE(text.find(R"("joints":[{"node":1},{"name":"spine","node":2,"id":4}])"), std::string::npos) << text;
    EXPECT_NE(text.find(R"("meshes":[])"), std::string::npos);
}

TEST(Components, ConstructionResolvesRequiredReferences) {
    Arf arf = Arf::create("memory:");
    auto components = arf.components.get();
    EXPECT_EQ(messageOf([&] { components.skeletons.add(1, "s", std::nullopt); }),
              "There is no nodes in components");
    components.nodes.add("Hips", "hips", std::nullopt);
    EXPECT_EQ(messageOf([&] { components.skeletons.add(5, "s", std::nullopt); }),
              "id 5 does not exist in components.nodes");
    EXPECT_EQ(messageOf([&] { components.skeletons.add(std::nullopt, "s", std::nullopt); }),
              "Initialization of components.skeletons[1]: root must be defined");
    auto skeleton = components.skeletons.add(1, "s", std::nullopt);
    EXPECT_EQ(skeleton.root.get().name.get(), "hips");
    EXPECT_EQ(messageOf([&] { components.skins.add(std::nullopt, "skin", std::nullopt); }),
              "Initialization of components.skins[1]: mesh must be defined");
    EXPECT_EQ(messageOf([&] { components.skins.add(3, "skin", std::nullopt); }),
              "id 3 does not exist in components.meshes");

    auto mesh = components.meshes.add("m", std::nullopt);
    auto skin = components.skins.add(mesh.id.get(), "skin", std::nullopt);
    EXPECT_EQ(messageOf([&] { skin.skeleton.set(7); }),
              "Setting components.skins[1].skeleton: Invalid id 7 in components.skeletons");
    skin.skeleton.set(skeleton);
    EXPECT_TRUE(skin.skeleton == skeleton);
    EXPECT_TRUE(skin.skeleton == 1);
    // An absent set list is named in the failure.
    EXPECT_EQ(messageOf([&] { skin.blendshapeSet.set(1); }), "There is no blendshapeSets in components");

    // References are one-way: setting a parent leaves the parent's children alone.
    auto spine = components.nodes.add("Spine", "spine", std::nullopt);
    spine.parent.set(1);
    EXPECT_FALSE(components.nodes[1].children.isPropertyPresent());
    EXPECT_EQ(messageOf([&] { components.nodes[1].children.set(std::vector<int64_t>{2, 8}); }),
              "Setting item 1 of components.nodes[1].children: Invalid id 8 in components.nodes");
    EXPECT_FALSE(components.nodes[1].children.isPropertyPresent());  // unchanged after the failure
}

TEST(Components, FlatReferenceForms) {
    sorvane_arf_Arf* arf = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_load(&arf, kDocument, false), 0);
    sorvane_arf_Components* components = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getComponents(&components, arf), 0);
    sorvane_arf_NodeList* nodes = nullptr;
    ASSERT_EQ(sorvane_arf_Components_getNodes(&nodes, components), 0);
    sorvane_arf_Node* spine = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_get(&spine, nodes, 2), 0);
    int64_t parent = 0;
    EXPECT_EQ(sorvane_arf_Node_getParentIndex(&parent, spine), 0);
    EXPECT_EQ(parent, 9);
    sorvane_arf_Node* target = nullptr;
    EXPECT_EQ(sorvane_arf_Node_getParent(&target, spine), -1);
    EXPECT_NE(sorvane_errorMessage.find("Invalid id 9"), std::string::npos);
    sorvane_arf_Node* hips = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_get(&hips, nodes, 1), 0);
    EXPECT_EQ(sorvane_arf_Node_setParent(spine, nullptr), -1);
    EXPECT_EQ(sorvane_errorMessage, "node is NULL");
    EXPECT_EQ(sorvane_arf_Node_setParent(spine, hips), 0);
    ASSERT_EQ(sorvane_arf_Node_getParent(&target, spine), 0);
    int64_t id = 0;
    EXPECT_EQ(sorvane_arf_Node_getPropertyId(&id, target), 0);
    EXPECT_EQ(id, 1);
    for (auto* handle : {target, hips, spine}) sorvane_arf_Node_delete(handle);
    sorvane_arf_NodeList_delete(nodes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Arf_delete(arf);
}

TEST(Components, AbsentOptionalThroughTheFlatInterface) {
    sorvane_arf_Arf* arf = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_load(&arf, R"(memory:{"components": {"meshes": [{"name": "m", "id": 3}]}})", false), 0);
    sorvane_arf_Components* components = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getComponents(&components, arf), 0);
    sorvane_arf_MeshList* meshes = nullptr;
    ASSERT_EQ(sorvane_arf_Components_getMeshes(&meshes, components), 0);
    sorvane_arf_Mesh* mesh = nullptr;
    ASSERT_EQ(sorvane_arf_MeshList_get(&mesh, meshes, 3), 0);
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_Mesh_getPath(nullptr, &size, mesh), -1);
    const std::string slot = sorvane_errorMessage;
    EXPECT_EQ(slot.substr(slot.find("(): ") + 4), "In components.meshes[3]: No path");
    bool has = true;
    EXPECT_EQ(sorvane_arf_Mesh_hasPath(&has, mesh), 0);
    EXPECT_FALSE(has);
    EXPECT_EQ(sorvane_arf_Mesh_removeProperty(mesh), 0);
    EXPECT_EQ(sorvane_arf_Mesh_getName(nullptr, &size, mesh), -1);
    EXPECT_NE(std::string(sorvane_errorMessage).find("Invalid node"), std::string::npos);
    sorvane_arf_Mesh_delete(mesh);
    sorvane_arf_MeshList_delete(meshes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Arf_delete(arf);
}

TEST(Components, MeshDataFollowsToTheDataItem) {
    Arf arf = Arf::create("memory:");
    const float values[] = {1, 2, 3};
    auto item = arf.data.addDense(values, sizeof values, DATA_DTYPE_FLOAT, {3}, false, nullptr, "verts");
    auto mesh = arf.components->meshes.add("m", std::nullopt);
    EXPECT_EQ(messageOf([&] { mesh.data.add(item.id.get() + 1); }),
              "Adding item to components.meshes[1].data: Invalid id 2 in data");
    mesh.data.add(item.id.get());
    EXPECT_EQ(mesh.data[0].get().name.get(), "verts");
    EXPECT_EQ(mesh.data[0].get().getTensor().getTensorSizes(), (std::vector<long>{3}));
    arf.data.get().remove(item.id.get());
    EXPECT_EQ(messageOf([&] { mesh.data[0].get(); }), "Getting item from data: Invalid id 1");
}
