#include <gtest/gtest.h>

#include <sstream>

#include "sorvane/arf/node/generic/IntegerNode.h"
#include "sorvane/arf/node/generic/ListNode.h"
#include "sorvane/arf/node/generic/NullNode.h"
#include "sorvane/arf/node/generic/ObjectNode.h"
#include "sorvane/arf/node/generic/StringNode.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;

namespace {

std::shared_ptr<ObjectNode> readObject(const std::string& text) {
    auto object = std::make_shared<ObjectNode>(std::weak_ptr<AbstractNode>());
    std::istringstream in(text);
    sorvane::archive::JsonImporter importer(in);
    object->fromJson(importer);
    return object;
}

} // namespace

TEST(GenericNode, ObjectOfStringsIntegersAndLists) {
    auto object = readObject(R"({"s": "text", "i": -4, "l": ["a", 2]})");
    EXPECT_EQ(object->getNodeSize(), 3);
    EXPECT_EQ(object->getNodeItem(std::string("s"))->getNodeString(), "text");
    EXPECT_EQ(object->getNodeItem(std::string("i"))->getNodeInteger(), -4);
    auto list = object->getNodeItem(std::string("l"));
    EXPECT_TRUE(list->isNodeList());
    EXPECT_EQ(messageOf([&] { list->getNodeStringVector(); }), "<noparent>.l[1] is not a string");
    EXPECT_EQ(list->getNodeItem(int64_t(1))->getNodePath(), "<noparent>.l[1]");
    EXPECT_EQ(object->findNodeItemKey(list.get()), "l");
    EXPECT_EQ(object->findNodeItemKey(object.get()), "<invalid>");

    EXPECT_EQ(messageOf([&] { object->getNodeItem(std::string("zz")); }), "Getting item from <noparent>: No key zz");
    EXPECT_EQ(messageOf([&] { object->removeNodeItem(std::string("zz")); }), "Removing item from <noparent>:\nNo key zz");
    object->removeNodeItem(std::string("l"));
    auto replacement = std::make_shared<IntegerNode>(std::weak_ptr<AbstractNode>(), 9);
    object->setNodeItem("i", replacement);
    EXPECT_EQ(replacement->getNodeParent().lock(), object);
    EXPECT_EQ(object->getNodeItem(std::string("i"))->getNodeInteger(), 9);
}

TEST(GenericNode, ObjectRejectsWhatTheFormatLacks) {
    for (const char* text : {R"({"a": {"b": 1}})", R"({"a": true})", R"({"a": null})", R"({"a": [[1]]})",
                             R"({"a": [1.5]})"}) {
        std::string message = messageOf([&] { readObject(text); });
        EXPECT_TRUE(message == "Unsupported or invalid object at line 1" ||
                    message == "Expect the end of an array at line 1")
            << text << ": " << message;
    }
    EXPECT_EQ(messageOf([] { readObject("[1]"); }), "Expect an object at line 1");
}

TEST(GenericNode, LeavesAndTheirKinds) {
    auto detached = std::weak_ptr<AbstractNode>();
    NullNode null(detached);
    EXPECT_TRUE(null.isNodeNull());
    // A null writes itself as a string: the format has always done so.
    EXPECT_EQ(null.toJsonString(), "\"null\"");
    EXPECT_EQ(messageOf([&] { null.getNodeString(); }), "<noparent> is not a string");
    EXPECT_EQ(messageOf([&] { null.getNodeSize(); }), "<noparent> is not a container");
    EXPECT_EQ(messageOf([&] { null.hasNodeItem(std::string("k")); }), "<noparent> is not an object");
    EXPECT_EQ(messageOf([&] { null.removeNode(); }), "Removing <noparent>: No parent");

    StringNode text(detached, "a\"b");
    EXPECT_EQ(text.toJsonString(), R"("a\"b")");
    text.setNodeString("c");
    EXPECT_EQ(text.getNodeString(), "c");
    EXPECT_EQ(text.getNodeIdRepr(), std::optional<std::string>("<noparent>"));

    std::istringstream in("12 x");
    sorvane::archive::JsonImporter importer(in);
    IntegerNode number(detached);
    number.fromJson(importer);
    EXPECT_EQ(number.getNodeInteger(), 12);
    EXPECT_EQ(messageOf([&] { number.fromJson(importer); }), "Expect an integer at line 1");
}
