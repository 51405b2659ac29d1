#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/property/components/Node.h"
#include "sorvane/core/ErrorSlot.h"
#include "sorvane/sorvane.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;

namespace {

const char* kTransforms = R"(memory:{"components": {"meshes": [], "nodes": [
  {"mapping": "a", "translation": [1, 2, 3], "name": "t", "id": 1},
  {"mapping": "b", "translation": [1, 2, 3], "rotation": [0, 0, 1, 0], "scale": [2, 2, 2], "name": "srt", "id": 2},
  {"mapping": "c", "scale": [2, 2, 2], "transform": [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1], "name": "both", "id": 3},
  {"mapping": "d", "name": "none", "id": 4},
  {"mapping": "e", "transform": [1, 2, 3], "name": "short transform", "id": 5},
  {"mapping": "f", "rotation": [0, 0], "name": "short rotation", "id": 6},
  {"mapping": "g", "translation": [0, 0], "name": "short translation", "id": 7},
  {"mapping": "h", "rotation": [0, 0, 2, 0], "parent": 9, "name": "unnormalised", "id": 8}]}})";

using Matrix = std::vector<double>;

} // namespace

TEST(NodeTransform, ScaleRotationTranslationAppliedFromTheLeft) {
    Arf arf = Arf::load(kTransforms);
    auto nodes = arf.components->nodes;
    EXPECT_EQ(nodes[1].getTransformMatrix(), (Matrix{1, 0, 0, 1, 0, 1, 0, 2, 0, 0, 1, 3, 0, 0, 0, 1}));
    // S * R * T, not T * R * S (which would keep the translation (1, 2, 3) unscaled).
    EXPECT_EQ(nodes[2].getTransformMatrix(), (Matrix{-2, 0, 0, -2, 0, -2, 0, -4, 0, 0, 2, 6, 0, 0, 0, 1}));
    EXPECT_EQ(nodes[4].getTransformMatrix(), (Matrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}));
    // "transform" comes back as stored, whatever its length.
    EXPECT_EQ(nodes[5].getTransformMatrix(), (Matrix{1, 2, 3}));
    // The quaternion is used as stored: (0, 0, 2, 0) gives 1 - 2 * 4, where its unit form gives -1.
    EXPECT_EQ(nodes[8].getTransformMatrix()[0], -7);

    EXPECT_EQ(messageOf([&] { nodes[3].getTransformMatrix(); }),
              "Getting transform for components.nodes[3]: There is both transform and rotation, translation or scale");
    EXPECT_EQ(messageOf([&] { nodes[6].getTransformMatrix(); }),
              "Getting transform for components.nodes[6]: Invalid size 2 of rotation");
    EXPECT_EQ(messageOf([&] { nodes[7].getTransformMatrix(); }),
              "Getting transform for components.nodes[7]: Invalid size 2 of translation");

    // The conflicting node and the dangling parent are written back unchanged.
    const std::string text = arf.toJsonString({false, true, false});
    EXPECT_NE(text.find(R"("scale":[2, 2, 2],"transform":[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1],"name":"both")"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find(R"("parent":9)"), std::string::npos);
}

TEST(NodeTransform, FlatArrayProtocol) {
    sorvane_arf_Arf* arf = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_load(&arf, kTransforms, true), 0);
    sorvane_arf_Components* components = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getComponents(&components, arf), 0);
    sorvane_arf_NodeList* nodes = nullptr;
    ASSERT_EQ(sorvane_arf_Components_getNodes(&nodes, components), 0);
    sorvane_arf_Node* srt = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_get(&srt, nodes, 2), 0);

    int64_t count = 0;
    EXPECT_EQ(sorvane_arf_Node_getTransformMatrix(nullptr, 0, &count, srt), 0);
    EXPECT_EQ(count, 16);
    double m[16] = {};
    EXPECT_EQ(sorvane_arf_Node_getTransformMatrix(m, 15 * sizeof(double), &count, srt), -1);
    EXPECT_EQ(m[3], 0);  // too small: nothing copied
    EXPECT_EQ(sorvane_arf_Node_getTransformMatrix(m, sizeof m, &count, srt), 0);
    EXPECT_EQ(m[3], -2);
    EXPECT_EQ(m[11], 6);

    sorvane_arf_Node* both = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_get(&both, nodes, 3), 0);
    EXPECT_EQ(sorvane_arf_Node_getTransformMatrix(m, sizeof m, &count, both), -1);
    EXPECT_NE(std::string(sorvane_errorMessage).find("There is both transform"), std::string::npos);
    EXPECT_EQ(sorvane_arf_Node_getTransformMatrix(m, sizeof m, &count, nullptr), -1);
    EXPECT_EQ(sorvane_errorMessage, "node is NULL");

    sorvane_arf_Node_delete(both);
    sorvane_arf_Node_delete(srt);
    sorvane_arf_NodeList_delete(nodes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Arf_delete(arf);
}

TEST(OptionalLists, AHandleTakenWhileAbsentCreatesTheListOnItsFirstAdd) {
    const char* text = R"(memory:{"components": {"meshes": []}})";
    sorvane_arf_Arf* arf = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_load(&arf, text, false), 0);
    sorvane_arf_Components* components = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getComponents(&components, arf), 0);
    sorvane_arf_NodeList* nodes = nullptr;
    sorvane_arf_NodeList* early = nullptr;
    ASSERT_EQ(sorvane_arf_Components_getNodes(&nodes, components), 0);
    ASSERT_EQ(sorvane_arf_Components_getNodes(&early, components), 0);
    sorvane_arf_Node* hips = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_add(&hips, nodes, "Hips", "root", true, 0), 0) << sorvane_errorMessage;
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_NodeList_getSize(&size, nodes), 0);
    EXPECT_EQ(size, 1);
    // The other handle taken before follows the list now made, rather than making a second one.
    sorvane_arf_Node* spine = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_add(&spine, early, "Spine", "spine", true, 0), 0);
    EXPECT_EQ(sorvane_arf_NodeList_getSize(&size, nodes), 0);
    EXPECT_EQ(size, 2);
    sorvane_arf_Node_delete(spine);
    sorvane_arf_Node_delete(hips);
    sorvane_arf_NodeList_delete(early);
    sorvane_arf_NodeList_delete(nodes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Arf_delete(arf);

    // The same for the other optional lists, through accessors.
    Arf doc = Arf::load(text);
    auto skeletons = doc.components->skeletons.get();
    auto skins = doc.components->skins.get();
    doc.components->nodes->add("Hips", "root", std::nullopt);
    skeletons.add(1, "body", std::nullopt);
    auto mesh = doc.components->meshes->add("m", std::nullopt);
    skins.add(mesh.id.get(), "skin", std::nullopt);
    EXPECT_EQ(doc.components->skeletons.size(), 1);
    EXPECT_EQ(doc.components->skins.size(), 1);
    EXPECT_NE(doc.toJsonString({false, true, false}).find(R"("skeletons":[{"root":1,"joints":[],"name":"body","id":1}])"),
              std::string::npos);

    // Read-only documents still refuse, naming the list, and create nothing.
    Arf readOnly = Arf::load(text, true);
    auto absent = readOnly.components->nodes.get();
    EXPECT_EQ(messageOf([&] { absent.add("Hips", "root", std::nullopt); }),
              "Adding an item to components.nodes\nForbidden, read-only accessor");
    EXPECT_FALSE(readOnly.components->nodes.isPropertyPresent());
    // Other uses of an absent handle report it as before.
    EXPECT_EQ(messageOf([&] { absent.size(); }), "Invalid node");
}

TEST(ReferenceItems, EachPositionOfAReferenceListIsAReference) {
    const char* text = R"(memory:{"components": {"meshes": [], "nodes": [
      {"mapping": "Hips", "children": [2], "name": "hips", "id": 1},
      {"mapping": "Spine", "name": "spine", "id": 2},
      {"mapping": "Head", "name": "head", "id": 3}]}})";
    sorvane_arf_Arf* arf = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_load(&arf, text, false), 0);
    sorvane_arf_Components* components = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getComponents(&components, arf), 0);
    sorvane_arf_NodeList* nodes = nullptr;
    ASSERT_EQ(sorvane_arf_Components_getNodes(&nodes, components), 0);
    sorvane_arf_Node* hips = nullptr;
    ASSERT_EQ(sorvane_arf_NodeList_get(&hips, nodes, 1), 0);
    const int64_t ids[] = {2, 9};
    EXPECT_EQ(sorvane_arf_Node_setChildrenItemValues(hips, ids, 2), -1);
    const std::string slot = sorvane_errorMessage;
    EXPECT_EQ(slot.substr(slot.find("(): ") + 4),
              "Setting item 1 of components.nodes[1].children: Invalid id 9 in components.nodes");
    int64_t count = 0;
    int64_t stored[4] = {};
    EXPECT_EQ(sorvane_arf_Node_getChildrenItemValues(stored, sizeof stored, &count, hips), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(stored[0], 2);
    sorvane_arf_Node* child = nullptr;
    ASSERT_EQ(sorvane_arf_Node_getChildrenItem(&child, hips, 0), 0);
    int64_t id = 0;
    EXPECT_EQ(sorvane_arf_Node_getPropertyId(&id, child), 0);
    EXPECT_EQ(id, 2);
    sorvane_arf_Node_delete(child);
    sorvane_arf_Node_delete(hips);
    sorvane_arf_NodeList_delete(nodes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Arf_delete(arf);

    Arf doc = Arf::load(text);
    auto node = doc.components->nodes[1];
    Node::ChildrenItem item = node.children[0];
    EXPECT_EQ(item.getIndex(), 2);
    EXPECT_TRUE(item == 2);
    EXPECT_EQ(item.get().name.get(), "spine");
    EXPECT_TRUE(item == item.get());
    EXPECT_EQ(item.getPropertyPath(), "components.nodes[1].children[0]");
    EXPECT_EQ(messageOf([&] { item.set(9); }),
              "Setting item 0 of components.nodes[1].children: Invalid id 9 in components.nodes");
    EXPECT_EQ(item.getIndex(), 2);
    item.set(doc.components->nodes[3]);
    EXPECT_EQ(node.children.get(), (std::vector<int64_t>{3}));
    EXPECT_EQ(messageOf([&] { node.children[1].getIndex(); }),
              "Getting item of components.nodes[1].children: Invalid index 1");
    item.removeProperty();
    EXPECT_EQ(node.children.size(), 0);
    EXPECT_TRUE(node.children.isPropertyPresent());  // the list stays, empty

    Arf readOnly = Arf::load(text, true);
    EXPECT_EQ(messageOf([&] { readOnly.components->nodes[1].children[0].set(3); }),
              "Setting an item of components.nodes[1].children: Forbidden, read-only accessor");
}

TEST(ReferenceItems, ReferencesToADataItemReadItsPayload) {
    Arf arf = Arf::create("memory:");
    const float matrices[32] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 2};
    auto item = arf.data.addDense(matrices, sizeof matrices, DATA_DTYPE_FLOAT, {2, 16}, false, nullptr, "ibm");
    auto components = arf.components.get();
    components.nodes.add("Hips", "hips", std::nullopt);
    auto skeleton = components.skeletons.add(1, "body", std::nullopt);
    skeleton.inverseBindMatrix.set(item);
    auto mesh = components.meshes.add("m", std::nullopt);
    mesh.data.add(item.id.get());

    EXPECT_EQ(skeleton.inverseBindMatrix.getTensor().getTensorSizes(), item.getTensor().getTensorSizes());
    EXPECT_EQ(skeleton.inverseBindMatrix.getDataSize(), item.getDataSize());
    Mesh::DataItem first = mesh.data[0];
    EXPECT_EQ(first.getTensor().getTensorSizes(), (std::vector<long>{2, 16}));
    std::vector<long> sizes;
    DataDType dtype{};
    float back[32] = {};
    first.getTensorData(sizes, dtype, back, sizeof back);
    EXPECT_EQ(back[16], 2);
    EXPECT_EQ(dtype, DATA_DTYPE_FLOAT);

    arf.data.get().remove(item.id.get());
    EXPECT_EQ(messageOf([&] { first.getDataSize(); }), "Getting item from data: Invalid id 1");
    EXPECT_EQ(messageOf([&] { skeleton.inverseBindMatrix.getTensor(); }), "Getting item from data: Invalid id 1");
}

namespace {

// The indexed lookups agree with a scan of the list, item by item.
void expectLookupsMatchScan(const NodeNodes& list) {
    const auto& items = list.getItems();
    int64_t free = 1;
    for (size_t i = 0; i < items.size(); ++i) {
        if (!items[i]) continue;
        const int64_t id = items[i]->getId();
        int64_t first = -1, firstNamed = -1;
        for (size_t j = 0; j < items.size() && (first < 0 || firstNamed < 0); ++j) {
            if (!items[j]) continue;
            if (first < 0 && items[j]->getId() == id) first = int64_t(j);
            if (firstNamed < 0 && items[j]->getName() == items[i]->getName()) firstNamed = int64_t(j);
        }
        ASSERT_EQ(list.findNodeItemIndexById(id), first) << "id " << id;
        ASSERT_EQ(list.findNodeItemIndexByName(items[i]->getName()), firstNamed) << items[i]->getName();
        if (id >= free) free = id + 1;
    }
    EXPECT_EQ(list.getNodeItemFreeId(), std::optional<int64_t>(free));
}

} // namespace

TEST(IndexedIds, LookupsFollowEveryChangeOfTheList) {
    // Ids 1..300 with 150 read twice (a document may hold that), named by id.
    std::string text = R"({"components": {"meshes": [], "nodes": [)";
    for (int i = 1; i <= 300; ++i)
        text += std::string(i > 1 ? "," : "") + R"({"mapping": "m", "name": "n)" + std::to_string(i % 250) +
                R"(", "id": )" + std::to_string(i == 200 ? 150 : i) + "}";
    text += "]}}";
    auto root = talvex_test::readRoot(text);
    auto nodes = root->getComponents()->getNodes();
    expectLookupsMatchScan(*nodes);
    EXPECT_EQ(nodes->findNodeItemIndexById(150), 149);
    EXPECT_EQ(nodes->findNodeItemIndexById(200), -1);

    nodes->remove(150);  // the later holder of 150 is found now
    EXPECT_EQ(nodes->findNodeItemIndexById(150), 198);
    expectLookupsMatchScan(*nodes);
    nodes->add("x", "added", std::nullopt);
    EXPECT_EQ(nodes->get(301)->getName(), "added");
    nodes->getByIndex(5)->setId(1000);
    EXPECT_EQ(nodes->findNodeItemIndexById(6), -1);
    EXPECT_EQ(nodes->findNodeItemIndexById(1000), 5);
    expectLookupsMatchScan(*nodes);
    nodes->getByIndex(5)->setId(6);  // back down: the free id follows the largest again
    expectLookupsMatchScan(*nodes);
    EXPECT_EQ(messageOf([&] { nodes->getByIndex(0)->setId(7); }), "Setting components.nodes[1].id: 7 already used");
    nodes->getByIndex(10)->setName("renamed");
    EXPECT_EQ(nodes->findNodeItemIdByName("renamed"), 11);
    expectLookupsMatchScan(*nodes);

    // Generic edits: replacing, removing by position, a null left by the generic append.
    auto other = std::make_shared<NodeNode>(nodes);
    other->init("y", "other", 5000);
    nodes->setNodeItem(int64_t(0), other);
    EXPECT_EQ(nodes->findNodeItemIndexById(1), -1);
    EXPECT_EQ(nodes->findNodeItemIndexById(5000), 0);
    nodes->removeNodeItem(int64_t(1));
    nodes->addNodeItem(nullptr);
    expectLookupsMatchScan(*nodes);
    EXPECT_EQ(nodes->getNodeItemFreeId(), 5001);

    // A reference setter sees the change at once.
    auto head = nodes->get(5000);
    head->setChildren({3, 301});
    EXPECT_EQ(messageOf([&] { head->addChildrenValue(2); }),
              "Adding item to components.nodes[5000].children: Invalid id 2 in components.nodes");

    // Reading again replaces everything.
    auto again = talvex_test::readRoot(R"({"components": {"meshes": [], "nodes": [{"mapping": "m", "name": "a", "id": 9223372036854775807}]}})");
    auto big = again->getComponents()->getNodes();
    EXPECT_EQ(big->getNodeItemFreeId(), std::nullopt);  // no id beyond the largest value
    EXPECT_EQ(messageOf([&] { big->add("m", "b", std::nullopt); }),
              "Initialization of components.nodes[0]: Unable to generate a new id");
    big->removeNodeItems();
    EXPECT_EQ(big->getNodeItemFreeId(), 1);
}
