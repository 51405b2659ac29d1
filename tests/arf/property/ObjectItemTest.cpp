#include <gtest/gtest.h>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/StructureNode.h"
#include "sorvane/arf/node/generic/ListNode.h"
#include "sorvane/arf/node/generic/ObjectNode.h"
#include "sorvane/arf/node/structure/ProtectionConfigurationNodes.h"
#include "sorvane/arf/property/ObjectItem.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
using talvex_test::readRoot;

namespace {

const char* kDocument = R"({"structure": {"assets": [], "protectionConfigurations": [
    {"schemeIdUri": "urn:x", "value": {"key": "abc", "count": 7, "tags": ["a"]}}]}})";

std::shared_ptr<ObjectNode> valueNode(const std::shared_ptr<RootNode>& root) {
    return root->getStructure()->getProtectionConfigurations()->getByIndex(0)->getValue();
}

} // namespace

TEST(ObjectItem, ConstructionAndDescription) {
    auto root = readRoot(kDocument);
    auto object = valueNode(root);
    EXPECT_EQ(messageOf([&] { ObjectItem(root, nullptr, "k", false); }), "Node is null");
    auto tags = object->getNodeItem("tags");
    EXPECT_EQ(messageOf([&] { ObjectItem(root, tags, "k", false); }),
              "structure.protectionConfigurations[0].value.tags is not an object");

    ObjectItem count(root, object, "count", false);
    EXPECT_EQ(count.getPropertyName(), "count");
    EXPECT_EQ(count.getPropertyPath(), "structure.protectionConfigurations[0].value[\"count\"]");
    EXPECT_EQ(count.getPropertyIndex(), -1);
    EXPECT_STREQ(count.getPropertyTypeName(), "integer");
    EXPECT_EQ(count.buildRepresentation(), "7");
    EXPECT_TRUE(count.isPropertyPresent());

    ObjectItem missing(root, object, "missing", false);
    EXPECT_STREQ(missing.getPropertyTypeName(), "null");
    EXPECT_EQ(missing.buildRepresentation(), "<null>");
    EXPECT_FALSE(missing.isPropertyPresent());
    EXPECT_EQ(messageOf([&] { missing.getItem(); }),
              "structure.protectionConfigurations[0].value[missing] doest not exist");

    ObjectItem invalid;
    EXPECT_EQ(messageOf([&] { invalid.getItem(); }), "Invalid node");
    EXPECT_EQ(messageOf([&] { invalid.setInteger(1); }), "Invalid node");
    EXPECT_EQ(messageOf([&] { invalid.addNull(); }), "Invalid node");
}

TEST(ObjectItem, SettingAndAddingCreateOrChangeTheValue) {
    auto root = readRoot(kDocument);
    auto object = valueNode(root);
    GenericProperty value(root, object, false);

    // In place when the type matches: an accessor to the old value sees it.
    GenericProperty count = value.get("count").getItem();
    value.get("count").setInteger(8);
    EXPECT_EQ(count.getInteger(), 8);
    // A new node under the key otherwise.
    value.get("count").setString("eight");
    EXPECT_EQ(count.getInteger(), 8);
    EXPECT_EQ(value.get("count").getItem().getString(), "eight");
    EXPECT_EQ(value.get("count").getItem().getPropertyPath(), "structure.protectionConfigurations[0].value.count");
    value.get("fresh").setInteger(1);
    EXPECT_EQ(value.get("fresh").getItem().getInteger(), 1);

    value.get("list").add("x");
    value.get("list").add(2);
    value.get("list").addNull();
    value.get("tags").add(GenericProperty("b"));
    EXPECT_EQ(value.get("list").getItem().size(), 3);
    EXPECT_EQ(messageOf([&] { value.get("key").add(1); }),
              "structure.protectionConfigurations[0].value.key is not a list");
    EXPECT_EQ(messageOf([&] { value.get("tags").add(GenericProperty{1, 2}); }),
              "Unsupported nested list in structure.protectionConfigurations[0].value.tags");

    value.get("assigned") = GenericProperty{"p", "q"};
    value.get("key") = 5;
    value.get("copy") = value.get("tags");  // the value, not the accessor
    value.get("copy").add("c");
    EXPECT_EQ(messageOf([&] { value.get("x") = value.get("missing"); }),
              "structure.protectionConfigurations[0].value[missing] doest not exist");
    EXPECT_EQ(messageOf([&] { value.get("bad") = GenericProperty{{"o", 1}}; }),
              "Unsupported nested object in structure.protectionConfigurations[0].value");
    EXPECT_FALSE(value.has("bad"));

    value.get("fresh").removeProperty();
    EXPECT_FALSE(value.has("fresh"));
    EXPECT_EQ(messageOf([&] { value.get("fresh").removeProperty(); }),
              "Removing item from structure.protectionConfigurations[0].value:\nNo key fresh");

    sorvane::archive::JsonExporter::Options options;
    options.compact = true;
    auto again = readRoot(root->toJsonString());
    EXPECT_EQ(valueNode(again)->toJsonString(options),
              R"({"assigned":["p","q"],"copy":["a","b","c"],"count":"eight","key":5,"list":["x",2,"null"],"tags":["a","b"]})");
}

TEST(ObjectItem, ReadOnlyRefusesEveryChange) {
    auto root = readRoot(kDocument);
    const std::string before = root->toJsonString();
    GenericProperty value(root, valueNode(root), true);
    const std::string path = "structure.protectionConfigurations[0].value";
    ObjectItem tags = value.get("tags");
    EXPECT_EQ(messageOf([&] { tags.setInteger(1); }), "Modifying " + path + "[tags]: Forbidden, read-only object");
    EXPECT_EQ(messageOf([&] { tags.setString("s"); }), "Modifying " + path + "[tags]: Forbidden, read-only object");
    EXPECT_EQ(messageOf([&] { tags = GenericProperty(1); }),
              "Modifying " + path + "[tags]: Forbidden, read-only object");
    EXPECT_EQ(messageOf([&] { tags = value.get("key"); }),
              "Modifying " + path + "[tags]: Forbidden, read-only object");
    EXPECT_EQ(messageOf([&] { tags.add("c"); }), "Adding to " + path + "[\"tags\"]: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { value.get("new").addNull(); }),
              "Adding Null to " + path + "[\"new\"]: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { tags.removeProperty(); }),
              "Removing " + path + "[\"tags\"]: Forbidden, read-only accessor");
    // The value reached through the item is read-only as well.
    EXPECT_EQ(messageOf([&] { tags.getItem().add("c"); }),
              "Adding an item to " + path + ".tags: Forbidden, read-only accessor");
    EXPECT_EQ(root->toJsonString(), before);
}
