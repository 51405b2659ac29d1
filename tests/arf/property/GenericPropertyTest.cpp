#include <gtest/gtest.h>

#include <vector>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/StructureNode.h"
#include "sorvane/arf/node/structure/ProtectionConfigurationNodes.h"
#include "sorvane/arf/property/GenericProperty.h"
#include "sorvane/arf/property/Object.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
using talvex_test::readRoot;

namespace {

std::string compact(const GenericProperty& value) {
    sorvane::archive::JsonExporter::Options options;
    options.compact = true;
    return value.getNode()->toJsonString(options);
}

const char* kDocument = R"({"structure": {"assets": [], "protectionConfigurations": [
    {"schemeIdUri": "urn:x", "value": {"key": "abc", "count": 7, "tags": ["a", "b"], "mixed": [1, "x"]}}]}})";

// The generic value of the document above, as a document accessor.
GenericProperty documentValue(const std::shared_ptr<RootNode>& root, bool readOnly) {
    auto config = root->getStructure()->getProtectionConfigurations()->getByIndex(0);
    return GenericProperty(root, config->getValue(), readOnly);
}

} // namespace

TEST(GenericProperty, DetachedValues) {
    GenericProperty null;
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.getPropertyRoot(), nullptr);
    EXPECT_EQ(null.getPropertyPath(), "<noparent>");
    EXPECT_EQ(null.getPropertyName(), "<noparent>");
    EXPECT_EQ(null.getPropertyIndex(), -1);
    EXPECT_STREQ(null.getPropertyTypeName(), "null");
    EXPECT_EQ(null.buildRepresentation(), "<null>");
    EXPECT_TRUE(GenericProperty::createNull().isNull());

    GenericProperty zero(0);  // an integer, not a null text
    EXPECT_TRUE(zero.isInteger());
    EXPECT_EQ(GenericProperty(int64_t{1} << 40).getInteger(), int64_t{1} << 40);
    EXPECT_EQ(GenericProperty::createInteger(-5).buildRepresentation(), "-5");
    EXPECT_STREQ(GenericProperty::createInteger(3).getPropertyTypeName(), "integer");
    EXPECT_EQ(GenericProperty("a\"b").buildRepresentation(), R"("a\"b")");
    EXPECT_EQ(GenericProperty::createString("s").getString(), "s");
    EXPECT_EQ(messageOf([] { GenericProperty(static_cast<const char*>(nullptr)); }),
              "basic_string::_S_construct null not valid");
    EXPECT_EQ(messageOf([&] { zero.getString(); }), "<noparent> is not a string");
    EXPECT_EQ(messageOf([&] { zero.size(); }), "<noparent> is not a container");

    GenericProperty list = GenericProperty::createList();
    EXPECT_TRUE(list.isList());
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.buildRepresentation(), "[]");

    std::unique_ptr<GenericProperty> owned(GenericProperty::createStringPtr("p"));
    EXPECT_EQ(owned->getString(), "p");
    owned.reset(GenericProperty::createIntegerPtr(9));
    EXPECT_EQ(owned->getInteger(), 9);
    owned.reset(GenericProperty::createNullPtr());
    EXPECT_TRUE(owned->isNull());
    owned.reset(GenericProperty::createListPtr());
    EXPECT_TRUE(owned->isList());

    // Removing a value that is in no container.
    EXPECT_EQ(messageOf([&] { list.removeProperty(); }), "Removing <noparent>: No parent");
}

TEST(GenericProperty, InitializerListsMakeListsOrObjects) {
    GenericProperty list{1, "two", 3};
    EXPECT_TRUE(list.isList());
    EXPECT_EQ(compact(list), R"([1,"two",3])");

    GenericProperty object{{"name", "x"}, {"n", 2}, {"tags", {"a", "b"}}};
    ASSERT_TRUE(object.isObject());
    EXPECT_EQ(compact(object), R"({"n":2,"name":"x","tags":["a","b"]})");
    EXPECT_EQ(object.get("tags").getItem().getPropertyPath(), "<noparent>.tags");

    // One element that is not a pair makes the whole a list.
    GenericProperty notAllPairs{{"a", 1}, 5};
    EXPECT_TRUE(notAllPairs.isList());
    // A pair of two strings is a pair; a pair with an integer key is not.
    EXPECT_TRUE((GenericProperty{{"a", "b"}}).isObject());
    EXPECT_TRUE((GenericProperty{{1, "b"}}).isList());
    EXPECT_EQ(GenericProperty(std::initializer_list<GenericProperty>{}).size(), 0);

    // Objects do not nest: the reader could not take them back.
    EXPECT_EQ(messageOf([] { GenericProperty({{"a", {{"b", 1}}}}); }), "Unsupported nested object in <noparent>");
    EXPECT_EQ(messageOf([] { GenericProperty({{"a", {1, {2, 3}}}}); }), "Unsupported nested list in <noparent>");

    // The elements are copied, not shared.
    GenericProperty text("t");
    GenericProperty holder{text, text};
    text.setString("changed");
    EXPECT_EQ(holder.getStringVector(), (std::vector<std::string>{"t", "t"}));

    Object typed{{"k", 1}};
    EXPECT_STREQ(typed.getPropertyTypeName(), "Object");
    EXPECT_TRUE(typed.isObject());
    EXPECT_EQ(typed.get("k").getItem().getInteger(), 1);
    EXPECT_TRUE(Object().isNull());
}

TEST(GenericProperty, ListAccess) {
    GenericProperty list = GenericProperty::createList();
    list.add("a");
    list.add(std::string("b"));
    list.add(0);
    list.add(int64_t{7});
    list.addNull();
    list.add(GenericProperty("c"));
    list.add({8, "d"});
    EXPECT_EQ(list.size(), 8);
    EXPECT_EQ(compact(list), R"(["a","b",0,7,"null","c",8,"d"])");

    GenericProperty third = list.get(2);
    EXPECT_EQ(third.getInteger(), 0);
    EXPECT_EQ(third.getPropertyIndex(), 2);
    EXPECT_EQ(third.getPropertyPath(), "<noparent>[2]");
    EXPECT_TRUE(list.get(4).isNull());
    std::unique_ptr<GenericProperty> owned(list.getPtr(1));
    EXPECT_EQ(owned->getString(), "b");
    EXPECT_EQ(messageOf([&] { list.get(8); }), "Getting item from <noparent>: Invalid index 8");
    EXPECT_EQ(messageOf([&] { list.get(-1); }), "Getting item from <noparent>: Invalid index -1");
    EXPECT_EQ(messageOf([&] { list.getStringVector(); }), "<noparent>[2] is not a string");

    // A list holds scalars only, and what is added is a copy.
    EXPECT_EQ(messageOf([&] { list.add(GenericProperty{1, 2}); }), "Unsupported nested list in <noparent>");
    EXPECT_EQ(messageOf([&] { list.add(GenericProperty{{"k", 1}}); }), "Unsupported nested object in <noparent>");
    EXPECT_EQ(list.size(), 8);
    GenericProperty source(5);
    list.add(source);
    source.setInteger(6);
    EXPECT_EQ(list.get(8).getInteger(), 5);

    // Changing an item through its accessor changes the list.
    list.get(0).setString("A");
    EXPECT_EQ(list.get(0).getString(), "A");

    std::vector<std::string> seen;
    for (GenericProperty item : list) seen.push_back(item.getPropertyTypeName());
    EXPECT_EQ(seen, (std::vector<std::string>{"string", "string", "integer", "integer", "null", "string", "integer",
                                              "string", "integer"}));

    GenericProperty removed = list.get(3);
    removed.removeProperty();
    EXPECT_EQ(list.size(), 8);
    EXPECT_TRUE(list.get(3).isNull());
    EXPECT_EQ(messageOf([&] { removed.getInteger(); }), "Invalid node");
    list.clear();
    EXPECT_TRUE(list.empty());

    GenericProperty texts{"x", "y"};
    EXPECT_EQ(texts.getStringVector(), (std::vector<std::string>{"x", "y"}));
    GenericProperty scalar("s");
    EXPECT_EQ(messageOf([&] { scalar.add(1); }), "<noparent> is not a list");
    EXPECT_EQ(messageOf([&] { scalar.addNull(); }), "<noparent> is not a list");
    EXPECT_EQ(messageOf([&] { scalar.get(0); }), "<noparent> is not a list");
    EXPECT_EQ(messageOf([&] { scalar.get("k"); }), "<noparent> is not an object");
    EXPECT_EQ(messageOf([&] { scalar.set("k", 1); }), "<noparent> is not an object");
    EXPECT_EQ(messageOf([&] { scalar.clear(); }), "<noparent> is not a container");
    EXPECT_EQ(messageOf([&] {
                  for (GenericProperty item : scalar) (void)item;
              }),
              "<noparent> is not a container");
}

TEST(GenericProperty, ObjectAccessInADocument) {
    auto root = readRoot(kDocument);
    GenericProperty value = documentValue(root, false);
    EXPECT_EQ(value.getPropertyPath(), "structure.protectionConfigurations[0].value");
    EXPECT_EQ(value.getPropertyName(), "value");
    EXPECT_STREQ(value.getPropertyTypeName(), "object");
    EXPECT_EQ(value.getPropertyRoot(), root);
    EXPECT_TRUE(value.has("key"));
    EXPECT_FALSE(value.has("missing"));
    EXPECT_EQ(value.size(), 4);

    std::unique_ptr<GenericProperty> tags(value.getPropertyPtr("tags"));
    EXPECT_EQ(tags->getPropertyPath(), "structure.protectionConfigurations[0].value.tags");
    EXPECT_EQ(tags->getStringVector(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(messageOf([&] { value.getPropertyPtr("missing"); }),
              "Getting item from structure.protectionConfigurations[0].value: No key missing");
    std::unique_ptr<ObjectItem> item(value.getPtr("count"));
    EXPECT_EQ(item->getItem().getInteger(), 7);

    value.set("count", 8);
    value.set("new", GenericProperty{"p", 1});
    EXPECT_EQ(messageOf([&] { value.set("bad", GenericProperty{{"x", 1}}); }),
              "Unsupported nested object in structure.protectionConfigurations[0].value");
    EXPECT_EQ(messageOf([&] { tags->set("k", 1); }),
              "structure.protectionConfigurations[0].value.tags is not an object");
    // Values of an object come in key order.
    std::vector<std::string> seen;
    for (GenericProperty item : value) seen.push_back(item.getPropertyName());
    EXPECT_EQ(seen, (std::vector<std::string>{"count", "key", "mixed", "new", "tags"}));

    // What was set is written and read back.
    auto again = readRoot(root->toJsonString());
    EXPECT_EQ(compact(documentValue(again, false)),
              R"({"count":8,"key":"abc","mixed":[1,"x"],"new":["p",1],"tags":["a","b"]})");

    // Removing a value takes it out of its object; the accessor is spent.
    GenericProperty mixed = *std::unique_ptr<GenericProperty>(value.getPropertyPtr("mixed"));
    GenericProperty other = mixed;
    mixed.removeProperty();
    EXPECT_FALSE(value.has("mixed"));
    EXPECT_EQ(messageOf([&] { mixed.size(); }), "Invalid node");
    EXPECT_EQ(other.size(), 2);  // still the detached list
    value.clear();
    EXPECT_TRUE(value.empty());
}

TEST(GenericProperty, SetIntegerOverAnotherTypeMovesOnlyTheAccessor) {
    auto root = readRoot(kDocument);
    GenericProperty value = documentValue(root, false);
    GenericProperty tags = *std::unique_ptr<GenericProperty>(value.getPropertyPtr("tags"));
    tags.setInteger(12);
    EXPECT_TRUE(tags.isInteger());
    EXPECT_EQ(tags.getInteger(), 12);
    EXPECT_EQ(tags.getPropertyPath(), "<noparent>");
    EXPECT_EQ(tags.getPropertyRoot(), root);
    // The list is untouched in its object.
    GenericProperty stored = *std::unique_ptr<GenericProperty>(value.getPropertyPtr("tags"));
    EXPECT_TRUE(stored.isList());
    EXPECT_EQ(stored.getStringVector(), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(stored.getPropertyPath(), "structure.protectionConfigurations[0].value.tags");

    // Over the matching type the node itself changes, in place.
    GenericProperty count = *std::unique_ptr<GenericProperty>(value.getPropertyPtr("count"));
    count.setInteger(70);
    EXPECT_EQ(value.get("count").getItem().getInteger(), 70);
    GenericProperty key = *std::unique_ptr<GenericProperty>(value.getPropertyPtr("key"));
    key.setString("xyz");
    EXPECT_EQ(value.get("key").getItem().getString(), "xyz");
    count.setString("now text");
    EXPECT_EQ(value.get("count").getItem().getInteger(), 70);
    EXPECT_EQ(count.getString(), "now text");

    GenericProperty spent;
    spent.setInteger(1);
    EXPECT_EQ(spent.getInteger(), 1);
    GenericProperty invalid(nullptr, nullptr, false);
    EXPECT_EQ(messageOf([&] { invalid.setInteger(1); }), "Invalid node");
    EXPECT_EQ(messageOf([&] { invalid.add(1); }), "Invalid node");
    EXPECT_EQ(messageOf([&] { invalid.buildRepresentation(); }), "Invalid node");
}

TEST(GenericProperty, ReadOnlyRefusesEveryChange) {
    auto root = readRoot(kDocument);
    const std::string before = root->toJsonString();
    GenericProperty value = documentValue(root, true);
    const std::string path = "structure.protectionConfigurations[0].value";
    GenericProperty tags = *std::unique_ptr<GenericProperty>(value.getPropertyPtr("tags"));
    GenericProperty count = value.get("count").getItem();
    EXPECT_TRUE(tags.isPropertyReadOnly());

    EXPECT_EQ(messageOf([&] { value.clear(); }), "Clearing " + path + ": Forbidden, read-only object");
    EXPECT_EQ(messageOf([&] { value.set("count", 1); }),
              "Modifying " + path + "[count]: Forbidden, read-only object");
    EXPECT_EQ(messageOf([&] { value.removeProperty(); }), "Removing " + path + ": Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { tags.add("c"); }), "Adding an item to " + path + ".tags: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { tags.add({1, 2}); }),
              "Adding an item to " + path + ".tags: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { tags.addNull(); }), "Adding Null to " + path + ".tags: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { tags.setInteger(1); }), "Setting " + path + ".tags: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { count.setInteger(1); }), "Setting " + path + ".count: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { count.setString("x"); }), "Setting " + path + ".count: Forbidden, read-only accessor");
    for (GenericProperty item : value)
        EXPECT_EQ(messageOf([&] { item.removeProperty(); }),
                  "Removing " + item.getPropertyPath() + ": Forbidden, read-only accessor");
    EXPECT_EQ(root->toJsonString(), before);
    EXPECT_EQ(tags.getStringVector().size(), 2u);  // reading is allowed
}
