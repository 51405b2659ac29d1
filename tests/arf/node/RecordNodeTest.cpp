#include <gtest/gtest.h>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/components/NodeNodes.h"
#include "sorvane/arf/node/preamble/AuthenticationFeaturesNodes.h"
#include "sorvane/arf/node/preamble/ProprietaryAnimationNodes.h"
#include "sorvane/arf/node/structure/AssetNodes.h"
#include "sorvane/arf/node/structure/LodNodes.h"
#include "sorvane/arf/node/structure/ProtectionConfigurationNodes.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
using talvex_test::newRoot;
using talvex_test::readRoot;
using talvex_test::stderrOf;

TEST(RecordNode, FreshDocumentInExactOutputForm) {
    auto root = newRoot();
    EXPECT_EQ(root->toJsonString(),
              "{\n"
              "  \"preamble\": {\n"
              "    \"signature\": \"MPEG-ARF-2025\",\n"
              "    \"version\": \"1.0.0\",\n"
              "    \"supportedAnimations\": {}\n"
              "  },\n"
              "  \"identity\": {\n"
              "    \"name\": \"<undefined>\",\n"
              "    \"id\": \"<undefined>\",\n"
              "    \"age\": 0,\n"
              "    \"gender\": \"<undefined>\"\n"
              "  },\n"
              "  \"structure\": {\n"
              "    \"assets\": []\n"
              "  },\n"
              "  \"components\": {\n"
              "    \"meshes\": []\n"
              "  },\n"
              "  \"data\": []\n"
              "}");
}

TEST(RecordNode, ReadBackByteForByte) {
    const std::string text =
        "{\n"
        "  \"preamble\": {\n"
        "    \"signature\": \"other\",\n"
        "    \"version\": \"2.0\",\n"
        "    \"authenticationFeatures\": [\n"
        "      {\n"
        "        \"publicKey\": \"k1\",\n"
        "        \"voiceFeature\": \"v\"\n"
        "      }\n"
        "    ],\n"
        "    \"supportedAnimations\": {\n"
        "      \"faceAnimations\": [\"urn:a\", \"urn:b\"],\n"
        "      \"bodyAnimations\": [],\n"
        "      \"proprietaryAnimations\": [\n"
        "        {\n"
        "          \"id\": 4,\n"
        "          \"scheme\": \"s\",\n"
        "          \"items\": [1, 2, 3]\n"
        "        }\n"
        "      ]\n"
        "    }\n"
        "  },\n"
        "  \"identity\": {\n"
        "    \"name\": \"Ada\",\n"
        "    \"id\": \"x-1\",\n"
        "    \"age\": 31.5,\n"
        "    \"gender\": \"f\"\n"
        "  },\n"
        "  \"structure\": {\n"
        "    \"assets\": [\n"
        "      {\n"
        "        \"lods\": [\n"
        "          {\n"
        "            \"meshes\": [],\n"
        "            \"textureSets\": [99],\n"
        "            \"name\": \"high\",\n"
        "            \"id\": 2\n"
        "          }\n"
        "        ],\n"
        "        \"name\": \"body\",\n"
        "        \"id\": 1\n"
        "      }\n"
        "    ],\n"
        "    \"protectionConfigurations\": [\n"
        "      {\n"
        "        \"schemeIdUri\": \"urn:p\",\n"
        "        \"value\": {\n"
        "          \"k\": \"v\"\n"
        "        }\n"
        "      }\n"
        "    ]\n"
        "  },\n"
        "  \"components\": {\n"
        "    \"meshes\": []\n"
        "  },\n"
        "  \"data\": []\n"
        "}";
    auto root = readRoot(text);
    EXPECT_EQ(root->toJsonString(), text);
    // A dangling reference (99) is accepted from a file and kept.
    auto lod = root->getStructure()->getAssets()->get(1)->getLods()->get(2);
    EXPECT_EQ(lod->getTextureSetsValue(0), 99);
    EXPECT_EQ(root->getIdentity()->getAge(), 31.5);
}

TEST(RecordNode, KeysInAnyOrderAndMissingOnes) {
    auto root = readRoot(R"({"identity": {"gender": "m", "name": "Bo"}, "structure": {}})");
    auto identity = root->getIdentity();
    EXPECT_EQ(identity->getName(), "Bo");
    EXPECT_EQ(identity->getId(), "<undefined>");
    EXPECT_EQ(identity->getAge(), 0);
    // Written in the fixed key order, defaults included.
    EXPECT_EQ(identity->toJsonString({false, true, false}),
              R"({"name":"Bo","id":"<undefined>","age":0,"gender":"m"})");
    // No structure content and no preamble in the file: empty assets, defaults.
    EXPECT_TRUE(root->getStructure()->getAssets()->isNodeEmpty());
    EXPECT_EQ(root->getPreamble()->getSignature(), "MPEG-ARF-2025");

    // A record with a missing required key loads, and writes the empty value.
    auto other = readRoot(R"({"structure": {"assets": [{"id": 3}]}})");
    auto asset = other->getStructure()->getAssets()->get(3);
    EXPECT_EQ(asset->getName(), "");
    EXPECT_NE(other->toJsonString().find("\"name\": \"\""), std::string::npos);
    // A child list the text leaves out is there, empty and linked to its record.
    ASSERT_TRUE(asset->getLods());
    EXPECT_TRUE(asset->getLods()->isNodeEmpty());
    EXPECT_EQ(asset->getLods()->getNodeParent().lock(), asset);

    // A key given twice: the second value is the one kept.
    auto twice = readRoot(R"({"structure": {"assets": [{"lods": [{"id": 1}], "lods": [], "id": 3}]}})");
    EXPECT_TRUE(twice->getStructure()->getAssets()->get(3)->getLods()->isNodeEmpty());

    // A record read again in place that fails half-way still has its list.
    std::istringstream in(R"({"id": 3, "name": 5})");
    sorvane::archive::JsonImporter importer(in);
    EXPECT_THROW(asset->fromJson(importer), std::exception);
    ASSERT_TRUE(asset->getLods());
    EXPECT_EQ(asset->getLods()->getNodeParent().lock(), asset);
}

TEST(RecordNode, UnknownKeysAreSkippedWithAWarning) {
    std::shared_ptr<RootNode> root;
    std::string err = stderrOf([&] {
        root = readRoot("{\"identity\": {\"name\": \"A\",\n \"shoeSize\": [1, {\"x\": [2]}], \"age\": 3},\n\"extra\": 5}");
    });
    EXPECT_EQ(err,
              "Ignore invalid or unsupported property \"shoeSize\" at line 2\n"
              "Ignore invalid or unsupported property \"extra\" at line 3\n");
    EXPECT_EQ(root->getIdentity()->getAge(), 3);
}

TEST(RecordNode, ReadingFailures) {
    EXPECT_EQ(messageOf([] { readRoot("[]"); }), "Expect an object at line 1");
    EXPECT_EQ(messageOf([] { readRoot("{\"identity\": {\n\"age\": \"old\"}}"); }), "Error parsing age at line 2");
    EXPECT_EQ(messageOf([] { readRoot("{\"identity\": {\"name\": \"a\" \"id\": \"b\"}}"); }),
              "Expect the end of an object at line 1");
    EXPECT_EQ(messageOf([] { readRoot(R"({"structure": {"assets": {}}})"); }), "Expect an array at line 1");
    EXPECT_EQ(messageOf([] { readRoot(R"({"structure": {"assets": [{"lods": [{"meshes": [1.5]}]}]}})"); }),
              "Error parsing meshes at line 1");
    EXPECT_EQ(messageOf([] { readRoot(R"({"bad": "\u0041"})"); }), "Failed to skip content for key \"bad\" at line 1");
    EXPECT_EQ(messageOf([] { readRoot("{\"bad\": [1,\n"); }), "Failed to skip content for key \"bad\" at line 2");
    // The skipper stops at a closing brace it did not open: an unbalanced
    // value is taken as ended there.
    EXPECT_EQ(messageOf([] { readRoot("{\"bad\": [1, }"); }), "");
    // A generic value holds no fractions.
    EXPECT_EQ(messageOf([] {
                  readRoot(R"({"structure": {"protectionConfigurations": [{"schemeIdUri": "u", "value": {"a": 1.5}}]}})");
              }),
              "Expect the end of an object at line 1");
    EXPECT_EQ(messageOf([] {
                  readRoot(R"({"structure": {"protectionConfigurations": [{"value": {"a": true}}]}})");
              }),
              "Unsupported or invalid object at line 1");
}

TEST(RecordNode, InitChecksAndDefaults) {
    auto root = newRoot();
    auto preamble = root->getPreamble();
    preamble->init("sig", nullptr);
    EXPECT_EQ(preamble->getSignature(), "sig");
    EXPECT_EQ(preamble->getVersion(), "1.0.0");

    auto features = std::make_shared<AuthenticationFeaturesNodes>(preamble);
    preamble->setAuthenticationFeatures(features);
    EXPECT_EQ(messageOf([&] { features->add(static_cast<const char*>(nullptr)); }),
              "Initialization of preamble.authenticationFeatures[-1]: publicKey must be defined");
    auto feature = features->add("key");
    EXPECT_EQ(feature->getNodePath(), "preamble.authenticationFeatures[0]");
    EXPECT_EQ(messageOf([&] { feature->getFacialFeature(); }),
              "Getting preamble.authenticationFeatures[0].facialFeature: No value");

    auto animations = std::make_shared<ProprietaryAnimationNodes>(preamble->getSupportedAnimations());
    EXPECT_EQ(messageOf([&] { animations->add(std::nullopt, "s"); }).find("id must be defined") != std::string::npos,
              true);
    EXPECT_EQ(messageOf([&] { animations->add(5, nullptr); }).find("scheme must be defined") != std::string::npos,
              true);
    // Not an id-carrying list: the same id twice is fine.
    animations->add(5, "a");
    animations->add(5, "b");
    EXPECT_EQ(animations->getNodeSize(), 2);
}

TEST(RecordNode, IdsFreeIdsAndPaths) {
    auto root = newRoot();
    auto assets = root->getStructure()->getAssets();
    EXPECT_EQ(assets->getNodeItemFreeId(), 1);
    auto a3 = assets->add("three", 3);
    assets->add("seven", 7);
    EXPECT_EQ(assets->getNodeItemFreeId(), 8);
    auto auto8 = assets->add("next", std::nullopt);
    EXPECT_EQ(auto8->getId(), 8);
    assets->remove(8);
    assets->remove(7);
    EXPECT_EQ(assets->getNodeItemFreeId(), 4);

    EXPECT_EQ(a3->getNodePath(), "structure.assets[3]");
    EXPECT_EQ(a3->getNodeIndex(), 0);
    auto lod = a3->getLods()->add("low", std::nullopt);
    EXPECT_EQ(lod->getNodePath(), "structure.assets[3].lods[1]");

    EXPECT_EQ(messageOf([&] { assets->add("dup", 3); }), "Initialization of structure.assets[0]: id 3 is already used");
    EXPECT_EQ(messageOf([&] { assets->get(42); }), "Getting item from structure.assets: Invalid id 42");
    EXPECT_EQ(messageOf([&] { assets->remove(42); }), "Getting item from structure.assets: Invalid id 42");
    EXPECT_EQ(messageOf([&] { assets->getByIndex(5); }), "Getting item from structure.assets: Invalid index 5");
    EXPECT_EQ(messageOf([&] { assets->removeByIndex(-1); }), "Removing item in structure.assets:\nInvalid index -1");

    // add(item) refuses a used id and a null item; an item made elsewhere is adopted.
    auto loose = std::make_shared<AssetNode>(assets);
    loose->init("loose", 10);
    auto other = std::make_shared<AssetNode>(assets);
    other->init("other", 10);
    assets->add(loose);
    EXPECT_EQ(messageOf([&] { assets->add(other); }), "Adding item to structure.assets:\nid 10 is already used");
    EXPECT_EQ(messageOf([&] { assets->add(std::shared_ptr<AssetNode>()); }),
              "Adding item to structure.assets:\nItem is NULL");
    EXPECT_EQ(assets->findNodeItemIdByName("loose"), 10);
    EXPECT_EQ(assets->findNodeItemIndexByName("loose"), 1);
    EXPECT_EQ(assets->findNodeItemIdByName("nobody"), -1);
    EXPECT_EQ(assets->getNodeItemNames(), (std::vector<std::string>{"three", "loose"}));

    // setId: unchanged is a no-op, a used id fails, a free one moves the record.
    a3->setId(3);
    EXPECT_EQ(messageOf([&] { a3->setId(10); }), "Setting structure.assets[3].id: 10 already used");
    a3->setId(12);
    EXPECT_EQ(a3->getNodePath(), "structure.assets[12]");
    auto detached = std::make_shared<AssetNode>(std::weak_ptr<AbstractNode>());
    EXPECT_EQ(detached->getNodePath(), "<noparent>");
    EXPECT_EQ(messageOf([&] { detached->setId(4); }), "Setting <noparent>.id: No parent");
    EXPECT_EQ(messageOf([&] { detached->init("x", std::nullopt); }),
              "Initialization of <noparent>: Internal error: no parent");
    auto misplaced = std::make_shared<AssetNode>(root->getIdentity());
    EXPECT_EQ(messageOf([&] { misplaced->setId(4); }), "Setting identity.<invalid>.id: Invalid parent");
}

TEST(RecordNode, ListReadsKeepKeysAndLookupsRight) {
    // Keys in any order, a key given twice (the later value stays) and an unknown key between known ones.
    std::shared_ptr<RootNode> root;
    const std::string err = stderrOf([&] {
        root = readRoot(R"({"structure": {"assets": [
            {"name": "a", "id": 2, "lods": []},
            {"id": 5, "name": "b"},
            {"name": "c", "id": 7, "name": "c2", "shoe": 1, "id": 8}]}})");
    });
    EXPECT_EQ(err, "Ignore invalid or unsupported property \"shoe\" at line 4\n");
    auto assets = root->getStructure()->getAssets();
    EXPECT_EQ(assets->get(5)->getName(), "b");
    EXPECT_EQ(assets->get(8)->getName(), "c2");
    EXPECT_EQ(messageOf([&] { assets->get(7); }), "Getting item from structure.assets: Invalid id 7");
    EXPECT_EQ(assets->findNodeItemIdByName("c2"), 8);
    EXPECT_EQ(assets->getNodeItemFreeId(), 9);
    EXPECT_EQ(assets->get(8)->getNodePath(), "structure.assets[8]");
    EXPECT_EQ(assets->get(8)->getNodeRoot().lock(), root);

    // One record read again on its own moves its id and name in the list's lookups.
    std::istringstream one(R"({"name": "z", "id": 20})");
    sorvane::archive::JsonImporter oneImporter(one);
    assets->get(5)->fromJson(oneImporter);
    EXPECT_EQ(assets->get(20)->getName(), "z");
    EXPECT_EQ(assets->findNodeItemIdByName("z"), 20);
    EXPECT_EQ(assets->findNodeItemIdByName("b"), -1);
    EXPECT_EQ(assets->getNodeItemFreeId(), 21);
    EXPECT_EQ(messageOf([&] { assets->get(5); }), "Getting item from structure.assets: Invalid id 5");

    // The whole list read again in place replaces every entry.
    std::istringstream all(R"([{"name": "q", "id": 3}])");
    sorvane::archive::JsonImporter allImporter(all);
    assets->fromJson(allImporter);
    EXPECT_EQ(assets->get(3)->getName(), "q");
    EXPECT_EQ(assets->findNodeItemIdByName("z"), -1);
    EXPECT_EQ(assets->getNodeItemFreeId(), 4);
}

TEST(RecordNode, DuplicateIdsFromAFile) {
    auto root = readRoot(R"({"structure": {"assets": [{"name": "a", "id": 2}, {"name": "b", "id": 2}]}})");
    auto assets = root->getStructure()->getAssets();
    EXPECT_EQ(assets->getNodeSize(), 2);
    EXPECT_EQ(assets->get(2)->getName(), "a");
}

TEST(RecordNode, ValueListsAndReferenceSetters) {
    auto root = newRoot();
    auto lod = root->getStructure()->getAssets()->add("a", std::nullopt)->getLods()->add("l", std::nullopt);
    const std::string path = "structure.assets[1].lods[1]";
    EXPECT_FALSE(lod->hasMeshes());
    EXPECT_EQ(lod->getMeshesSize(), 0);
    EXPECT_FALSE(lod->hasMeshesValue(0));
    EXPECT_EQ(messageOf([&] { lod->getMeshesValue(0); }), "Getting item of " + path + ".meshes: No list");
    EXPECT_EQ(messageOf([&] { lod->setMeshesValue(2, 1); }), "Setting item 2 of " + path + ".meshes: No list");
    EXPECT_EQ(messageOf([&] { lod->removeMeshesValue(1); }), "Removing item 1 of " + path + ".meshes: No list");
    EXPECT_EQ(messageOf([&] { lod->getMeshes(); }), "Getting " + path + ".meshes: No value");
    // References are checked against the components when they are set.
    EXPECT_EQ(messageOf([&] { lod->addMeshesValue(1); }),
              "Adding item to " + path + ".meshes: Invalid id 1 in components.meshes");
    EXPECT_EQ(messageOf([&] { lod->setSkins({1}); }), "There is no skins in components");
    root->getComponents()->getMeshes()->add("m", 1);
    lod->addMeshesValue(1);
    EXPECT_EQ(lod->getMeshes(), std::vector<int64_t>{1});
    lod->removeMeshesValue(0);
    root->setComponents(nullptr);
    EXPECT_EQ(messageOf([&] { lod->addMeshesValue(1); }), "There is no components");

    // An empty list that is present is written; an absent one is not.
    lod->setMeshes({});
    EXPECT_TRUE(lod->hasMeshes());
    EXPECT_EQ(lod->toJsonString({false, true, false}), R"({"meshes":[],"name":"l","id":1})");
    EXPECT_EQ(messageOf([&] { lod->getMeshesValue(0); }), "Getting item of " + path + ".meshes: Invalid index 0");
    EXPECT_EQ(messageOf([&] { lod->setMeshesValue(0, 3); }),
              "Setting item 0 of " + path + ".meshes: Invalid index 0");
    EXPECT_EQ(messageOf([&] { lod->removeMeshesValue(0); }), "Removing item 0 of " + path + ".meshes: Invalid index");
    lod->removeMeshes();
    EXPECT_FALSE(lod->hasMeshes());

    auto items = root->getPreamble()->getSupportedAnimations();
    items->addFaceAnimationsValue("urn:x");
    items->addFaceAnimationsValue("urn:y");
    items->setFaceAnimationsValue(0, "urn:z");
    items->removeFaceAnimationsValue(1);
    EXPECT_EQ(items->getFaceAnimations(), std::vector<std::string>{"urn:z"});
}

// Reference lists short enough to stay inside their record and longer ones
// change, write and read back alike.
TEST(RecordNode, ReferenceListsOfAnyLength) {
    auto root = newRoot();
    auto meshes = root->getComponents()->getMeshes();
    for (int64_t id = 1; id <= 20; ++id) meshes->add(("m" + std::to_string(id)).c_str(), id);
    auto lod = root->getStructure()->getAssets()->add("a", std::nullopt)->getLods()->add("l", std::nullopt);
    std::vector<int64_t> expected;
    for (int64_t id = 1; id <= 20; ++id) {
        lod->addMeshesValue(id);
        expected.push_back(id);
        ASSERT_EQ(lod->getMeshes(), expected);
    }
    lod->setMeshesValue(7, 3);
    expected[7] = 3;
    for (int64_t at : {19, 0, 9}) {
        lod->removeMeshesValue(at);
        expected.erase(expected.begin() + at);
    }
    EXPECT_EQ(lod->getMeshes(), expected);
    lod->setSkins({});
    const std::string text = root->toJsonString();
    auto copy = readRoot(text);
    EXPECT_EQ(copy->toJsonString(), text);
    auto read = copy->getStructure()->getAssets()->get(1)->getLods()->get(1);
    EXPECT_EQ(read->getMeshes(), expected);
    EXPECT_TRUE(read->hasSkins());
    EXPECT_TRUE(read->getSkins().empty());
    // Shrunk back under the record's own room.
    while (read->getMeshesSize() > 2) read->removeMeshesValue(0);
    EXPECT_EQ(read->getMeshes(), (std::vector<int64_t>{expected[15], expected[16]}));
    EXPECT_EQ(readRoot(copy->toJsonString())->toJsonString(), copy->toJsonString());
}

TEST(RecordNode, GenericObjectView) {
    auto root = newRoot();
    auto preamble = root->getPreamble();
    EXPECT_TRUE(preamble->isNodeObject());
    EXPECT_TRUE(preamble->hasNodeItem(std::string("supportedAnimations")));
    EXPECT_FALSE(preamble->hasNodeItem(std::string("authenticationFeatures")));
    EXPECT_EQ(messageOf([&] { preamble->getNodeItem(std::string("signature")); }),
              "Getting item in preamble: no property signature");
    EXPECT_EQ(preamble->getNodeItemNames(), std::vector<std::string>{"supportedAnimations"});
    EXPECT_EQ(preamble->getSupportedAnimations()->getNodeName(), "supportedAnimations");

    // A required child can be removed like any other and is then not written.
    preamble->getSupportedAnimations()->removeNode();
    EXPECT_FALSE(preamble->getSupportedAnimations());
    EXPECT_EQ(preamble->toJsonString({false, true, false}), R"({"signature":"MPEG-ARF-2025","version":"1.0.0"})");

    // A removed node keeps its parent link but is no longer present.
    auto identity = root->getIdentity();
    EXPECT_TRUE(identity->isNodePresent());
    identity->removeNode();
    EXPECT_FALSE(identity->isNodePresent());
    EXPECT_EQ(identity->getNodeName(), "<invalid>");
    EXPECT_EQ(messageOf([&] { identity->removeNode(); }), "Removing at item of : Node was not found");

    // Root: section keys are known whether present or not.
    EXPECT_TRUE(root->hasNodeItem(std::string("identity")));
    EXPECT_TRUE(root->hasNodeItem(std::string("components")));
    EXPECT_FALSE(root->hasNodeItem(std::string("other")));
    EXPECT_EQ(root->getNodePath(), "");
    EXPECT_EQ(root->getNodeIndex(), -1);
    EXPECT_EQ(messageOf([&] { root->getNodeInteger(); }), " is not an integer");
    EXPECT_EQ(messageOf([&] { preamble->getNodeItem(int64_t(0)); }), "preamble is not a list");
}

TEST(RecordNode, InitTakesTheIdBeforeTheOtherArguments) {
    auto root = newRoot();
    auto assets = root->getStructure()->getAssets();
    assets->add("a", 1);
    EXPECT_EQ(messageOf([&] { assets->add(static_cast<const char*>(nullptr), 1); }),
              "Initialization of structure.assets[0]: id 1 is already used");
    EXPECT_EQ(messageOf([&] { assets->add(static_cast<const char*>(nullptr), 2); }),
              "Initialization of structure.assets[2]: name must be defined");
}

// Reference checks remember where their target list was found; every way of
// replacing or removing that list must still be seen by the next check.
TEST(RecordNode, ReferenceChecksFollowReplacedLists) {
    auto root = newRoot();
    auto components = root->getComponents();
    auto makeNodes = [](const std::shared_ptr<ComponentsNode>& owner, std::vector<int64_t> ids) {
        auto list = std::make_shared<NodeNodes>(owner);
        for (int64_t id : ids) list->add("m", ("n" + std::to_string(id)).c_str(), id);
        return list;
    };
    components->setNodes(makeNodes(components, {1, 2}));
    auto node = components->getNodes()->get(2);
    // The node's own path goes with its old list; only the target matters here.
    auto invalid = [](int64_t id) { return ": Invalid id " + std::to_string(id) + " in components.nodes"; };
    auto parentFailure = [&](int64_t id) {
        const std::string text = messageOf([&] { node->setParent(id); });
        return text.substr(text.rfind(':') == std::string::npos ? 0 : text.rfind(':'));
    };
    node->setParent(1);
    node->setChildren({1, 2});

    // Another list object in the same member.
    components->setNodes(makeNodes(components, {5}));
    EXPECT_EQ(parentFailure(2), invalid(2));
    node->setParent(5);
    const std::string children = messageOf([&] { node->setChildren({5, 1}); });
    EXPECT_EQ(children.rfind("Setting item 1 of ", 0), 0u) << children;
    EXPECT_NE(children.find(".children: Invalid id 1 in components.nodes"), std::string::npos) << children;
    node->setChildrenValue(1, 5);
    const std::string item = messageOf([&] { node->setChildrenValue(0, 2); });
    EXPECT_NE(item.find("Setting item 0 of "), std::string::npos) << item;
    EXPECT_NE(item.find(".children: Invalid id 2 in components.nodes"), std::string::npos) << item;
    EXPECT_EQ(node->getChildren(), (std::vector<int64_t>{1, 5}));

    // Removed, through the typed setter and the generic view.
    components->setNodes(nullptr);
    EXPECT_EQ(messageOf([&] { node->setParent(1); }), "There is no nodes in components");
    components->setNodeItem("nodes", makeNodes(components, {6}));
    node->setParent(6);
    components->removeNodeItem("nodes");
    EXPECT_EQ(messageOf([&] { node->setParent(5); }), "There is no nodes in components");

    // The section itself replaced, then gone.
    auto other = std::make_shared<ComponentsNode>(root);
    other->init();
    other->setNodes(makeNodes(other, {7}));
    root->setComponents(other);
    node->setParent(7);
    EXPECT_EQ(parentFailure(6), invalid(6));  // (a set to the current value returns before any check)
    root->setComponents(nullptr);
    EXPECT_EQ(messageOf([&] { node->setParent(6); }), "There is no components");

    // Read again in place: the list objects are new, and so are their ids.
    root->setComponents(other);
    std::istringstream in(R"({"nodes": [{"mapping": "m", "name": "x", "id": 8}]})");
    sorvane::archive::JsonImporter importer(in);
    other->fromJson(importer);
    node->setParent(8);
    EXPECT_EQ(parentFailure(7), invalid(7));

    // Ids changed inside the same list.
    other->getNodes()->get(8)->setId(9);
    node->setParent(9);
    EXPECT_EQ(parentFailure(8), invalid(8));

    // A list at the root itself.
    auto mesh = other->getMeshes()->add("m", 1);
    auto data = std::make_shared<DataNodes>(root);
    data->add("t", "d3.bin", "d", 3);
    root->setData(data);
    mesh->addDataValue(3);
    auto moreData = std::make_shared<DataNodes>(root);
    moreData->add("t", "d4.bin", "d", 4);
    root->setData(moreData);
    mesh->addDataValue(4);
    EXPECT_EQ(messageOf([&] { mesh->addDataValue(3); }),
              "Adding item to components.meshes[1].data: Invalid id 3 in data");
    EXPECT_EQ(mesh->getData(), (std::vector<int64_t>{3, 4}));
}

// A direct re-read of an id list that fails half-way leaves only what it read;
// the ids of the items it dropped must not pass reference checks any more.
TEST(RecordNode, FailedReReadOfAnIdListForgetsTheDroppedIds) {
    auto root = newRoot();
    auto components = root->getComponents();
    auto nodes = std::make_shared<NodeNodes>(components);
    components->setNodes(nodes);
    nodes->add("m", "a", 1);
    nodes->add("m", "b", 2);
    auto first = nodes->get(1);
    first->setParent(2);  // the index now holds both ids
    first->setParent(1);

    std::istringstream in(R"([{"mapping": "m", "name": "c", "id": 3}, 5])");
    sorvane::archive::JsonImporter importer(in);
    EXPECT_NE(messageOf([&] { nodes->fromJson(importer); }), "");
    ASSERT_EQ(nodes->getNodeSize(), 1);

    auto kept = nodes->get(3);
    EXPECT_EQ(messageOf([&] { kept->setParent(2); }),
              "Setting components.nodes[3].parent: Invalid id 2 in components.nodes");
    EXPECT_EQ(messageOf([&] { kept->setParent(1); }),
              "Setting components.nodes[3].parent: Invalid id 1 in components.nodes");
    kept->setParent(3);
    EXPECT_EQ(kept->getParent(), 3);
}

TEST(RecordNode, RootLinksFollowTheNode) {
    // Two documents alive at once, each with its own node list: every node
    // knows its own root, also after it moves, and none once its root is gone.
    auto makeDocument = [](int64_t firstId) {
        auto root = newRoot();
        auto components = root->getComponents();
        auto nodes = std::make_shared<NodeNodes>(components);
        components->setNodes(nodes);
        nodes->add("m", "a", firstId);
        nodes->add("m", "b", firstId + 1);
        return std::make_pair(root, nodes);
    };
    auto [root1, nodes1] = makeDocument(1);
    auto [root2, nodes2] = makeDocument(5);
    EXPECT_EQ(root1->peekNodeRoot(), nullptr);
    auto a = nodes1->get(1);
    auto e = nodes2->get(5);
    EXPECT_EQ(a->peekNodeRoot(), root1.get());
    EXPECT_EQ(e->peekNodeRoot(), root2.get());
    a->setParent(2);
    EXPECT_EQ(messageOf([&] { a->setParent(6); }), "Setting components.nodes[1].parent: Invalid id 6 in components.nodes");

    // Moved into the other document: its references are checked there.
    auto moved = nodes1->get(2);
    nodes1->remove(2);
    nodes2->add(moved);
    EXPECT_EQ(moved->peekNodeRoot(), root2.get());
    moved->setParent(6);
    EXPECT_EQ(messageOf([&] { moved->setParent(1); }), "Setting components.nodes[2].parent: Invalid id 1 in components.nodes");

    // Held past its document.
    root2.reset();
    nodes2.reset();
    EXPECT_EQ(e->peekNodeRoot(), nullptr);
    EXPECT_TRUE(e->getNodeRoot().expired());
    EXPECT_EQ(a->peekNodeRoot(), root1.get());
    auto detached = std::make_shared<NodeNode>(std::weak_ptr<AbstractNode>());
    EXPECT_EQ(detached->peekNodeRoot(), nullptr);
}
