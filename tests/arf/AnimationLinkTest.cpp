#include <gtest/gtest.h>

#include "sorvane/arf/Arf.h"
#include "sorvane/core/ErrorSlot.h"
#include "sorvane/sorvane.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;

namespace {

// A skeleton whose links are read from `links`, over data items 2 and 3.
Arf withLinks(const std::string& links) {
    return Arf::load(R"(memory:{"components": {"nodes": [{"mapping": "r", "name": "r", "id": 1}],
        "skeletons": [{"root": 1, "joints": [], "name": "s", "id": 1, "animationInfo": )" +
                     links + R"(}]}, "data": [{"id": 2, "name": "keys", "type": "t", "uri": "u"},
        {"id": 3, "name": "values", "type": "t", "uri": "u"}]})");
}

} // namespace

TEST(AnimationLinks, WrittenInTheirOrderWithTheirDefaults) {
    Arf arf = withLinks(R"([{"target": 0, "type": "ANIMATION_FACE"},
        {"type": "ANIMATION_FOO", "target": 1, "mappings": [{"source": 2,
          "nonLinearAssociations": [{"targetIndex": 4},
            {"channels": [{"output": 3, "input": 2, "sourceIndex": 5, "path": "CHANNEL_FOO", "range": [0, 1]},
                          {"interpolation": "INTERPOLATION_SLERP", "output": 3, "input": 2, "sourceIndex": 6}],
             "combination": "COMBINATION_MAX", "targetIndex": 5}],
          "linearAssociations": [{"targetIndex": 7}]}]}])");
    auto links = arf.components->skeletons[1].animationInfo.get();
    EXPECT_EQ(links.getByIndex(0).buildRepresentation(), "{\n  \"type\": \"ANIMATION_FACE\",\n  \"target\": 0\n}");

    auto mapping = links.getByIndex(1).mappings.getByIndex(0);
    EXPECT_EQ(mapping.getPropertyPath(), "components.skeletons[1].animationInfo[1].mappings[0]");
    EXPECT_EQ(mapping.linearAssociations.getByIndex(0).buildRepresentation(),
              "{\n  \"targetIndex\": 7,\n  \"sourceIndices\": [],\n  \"weights\": []\n}");
    auto associations = mapping.nonLinearAssociations.get();
    EXPECT_EQ(associations.getByIndex(0).buildRepresentation(), "{\n  \"targetIndex\": 4,\n  \"channels\": []\n}");
    auto channels = associations.getByIndex(1).channels.get();
    EXPECT_EQ(channels.getByIndex(0).buildRepresentation(),
              "{\n  \"sourceIndex\": 5,\n  \"range\": [0, 1],\n  \"path\": \"CHANNEL_FOO\",\n  \"input\": 2,\n"
              "  \"interpolation\": \"INTERPOLATION_LINEAR\",\n  \"output\": 3\n}");
    EXPECT_EQ(channels.getByIndex(1).interpolation.get(), "INTERPOLATION_SLERP");
    EXPECT_EQ(associations.getByIndex(1).combination.get(), "COMBINATION_MAX");
    EXPECT_EQ(links.getByIndex(1).type.get(), "ANIMATION_FOO");
    // The curve's keys and values are data items.
    EXPECT_EQ(channels.getByIndex(0).input.get().name.get(), "keys");
    EXPECT_EQ(channels.getByIndex(0).output.get().name.get(), "values");

    // Lists without ids: by position, no names.
    EXPECT_TRUE(channels.hasByIndex(1));
    EXPECT_FALSE(channels.hasByIndex(2));
    EXPECT_EQ(channels.findPropertyItemIndexByName("x"), -1);
    EXPECT_EQ(messageOf([&] { channels.getByIndex(2); }),
              "Getting item from components.skeletons[1].animationInfo[1].mappings[0].nonLinearAssociations[1]"
              ".channels: Invalid index 2");
}

TEST(AnimationLinks, BadValuesFailTheLoad) {
    EXPECT_EQ(messageOf([] { withLinks(R"([{"mappings": [{"linearAssociations": [{"sourceIndices": [1.5]}]}]}])"); })
                  .rfind("Error parsing sourceIndices at line", 0),
              0u);
    EXPECT_EQ(messageOf([] { withLinks(R"([{"target": "0"}])"); }), "Error parsing target at line 2");
    EXPECT_EQ(messageOf([] { withLinks(R"({"type": "x"})"); }), "Expect an array at line 2");
}

TEST(AnimationLinks, ConstructionChecksChannelsInOrder) {
    Arf arf = withLinks("[]");
    auto links = arf.components->skeletons[1].animationInfo.get();
    EXPECT_EQ(messageOf([&] { links.add(nullptr, 0); }),
              "Initialization of components.skeletons[1].animationInfo[-1]: type must be defined");
    auto link = links.add("ANIMATION_BODY", 0);
    EXPECT_EQ(messageOf([&] { links.add("ANIMATION_BODY", std::nullopt); }),
              "Initialization of components.skeletons[1].animationInfo[-1]: target must be defined");
    auto mapping = link.mappings.add(0);
    auto association = mapping.nonLinearAssociations.add(3);
    EXPECT_EQ(association.buildRepresentation(), "{\n  \"targetIndex\": 3,\n  \"channels\": []\n}");
    auto channels = association.channels.get();
    auto list = channels.getNode();
    const std::string at = "Initialization of components.skeletons[1].animationInfo[0].mappings[0]"
                           ".nonLinearAssociations[0].channels[-1]: ";
    EXPECT_EQ(messageOf([&] { list->add(std::nullopt, 99, nullptr, 1); }), at + "sourceIndex must be defined");
    EXPECT_EQ(messageOf([&] { list->add(0, std::nullopt, nullptr, 1); }), at + "input must be defined");
    EXPECT_EQ(messageOf([&] { list->add(0, 99, nullptr, 1); }), "id 99 does not exist in data");
    EXPECT_EQ(messageOf([&] { list->add(0, 2, nullptr, std::nullopt); }), at + "output must be defined");
    EXPECT_EQ(messageOf([&] { list->add(0, 2, nullptr, 98); }), "id 98 does not exist in data");
    EXPECT_EQ(list->getNodeSize(), 0);
    auto channel = channels.add(0, 2, nullptr, 3);
    EXPECT_EQ(channel.interpolation.get(), "INTERPOLATION_LINEAR");
    EXPECT_EQ(channels.add(1, 2, "INTERPOLATION_CUBICSPLINE", 3).interpolation.get(), "INTERPOLATION_CUBICSPLINE");
    EXPECT_EQ(messageOf([&] { channel.input.set(5); }),
              "Setting components.skeletons[1].animationInfo[0].mappings[0].nonLinearAssociations[0].channels[0]"
              ".input: Invalid id 5 in data");
    // Texts are stored as given.
    channel.path.set("CHANNEL_ANYTHING");
    EXPECT_EQ(channel.path.get(), "CHANNEL_ANYTHING");
}

TEST(AnimationLinks, FlatFunctions) {
    Arf arf = withLinks(R"([{"type": "ANIMATION_FACE", "target": 0}])");
    auto links = arf.components->skeletons[1].animationInfo.get();
    auto* list = new AnimationLinkList(links);
    bool has = false;
    EXPECT_EQ(sorvane_arf_AnimationLinkList_has(&has, list, 0), 0);
    EXPECT_TRUE(has);
    EXPECT_EQ(sorvane_arf_AnimationLinkList_has(&has, list, 1), 0);
    EXPECT_FALSE(has);
    sorvane_arf_AnimationLink* link = nullptr;
    ASSERT_EQ(sorvane_arf_AnimationLinkList_get(&link, list, 0), 0);
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_AnimationLink_toString(nullptr, &size, link), -1);  // asks for the size
    std::string text(static_cast<size_t>(size), '\0');
    ASSERT_EQ(sorvane_arf_AnimationLink_toString(text.data(), &size, link), 0);
    EXPECT_STREQ(text.c_str(), "{\n  \"type\": \"ANIMATION_FACE\",\n  \"target\": 0\n}");
    sorvane_arf_AnimationLink* added = nullptr;
    EXPECT_EQ(sorvane_arf_AnimationLinkList_add(&added, list, nullptr, 1), -1);
    ASSERT_EQ(sorvane_arf_AnimationLinkList_add(&added, list, "ANIMATION_HAND", 1), 0);
    sorvane_arf_AnimationMappingList* mappings = nullptr;
    ASSERT_EQ(sorvane_arf_AnimationLink_getMappings(&mappings, added), 0);
    sorvane_arf_AnimationLink_delete(added);
    sorvane_arf_AnimationLink_delete(link);
    sorvane_arf_AnimationMappingList_delete(mappings);
    sorvane_arf_AnimationLinkList_delete(list);

    // A channel: both forms of its curve references.
    auto association = arf.components->skeletons[1].animationInfo.getByIndex(0).mappings.add(0)
                           .nonLinearAssociations.add(1);
    auto* channels = new AssociationChannelList(association.channels.get());
    sorvane_arf_AssociationChannel* channel = nullptr;
    EXPECT_EQ(sorvane_arf_AssociationChannelList_add(&channel, channels, 0, 2, nullptr, 3), -1);
    ASSERT_EQ(sorvane_arf_AssociationChannelList_add(&channel, channels, 0, 2, "INTERPOLATION_STEP", 3), 0);
    sorvane_arf_Data* input = nullptr;
    ASSERT_EQ(sorvane_arf_AssociationChannel_getInput(&input, channel), 0);
    EXPECT_EQ(sorvane_arf_AssociationChannel_setOutput(channel, input), 0);
    int64_t id = 0;
    EXPECT_EQ(sorvane_arf_AssociationChannel_getOutputIndex(&id, channel), 0);
    EXPECT_EQ(id, 2);
    EXPECT_EQ(sorvane_arf_AssociationChannel_setInputIndex(channel, 4), -1);
    sorvane_arf_Data_delete(input);
    sorvane_arf_AssociationChannel_delete(channel);
    sorvane_arf_AssociationChannelList_delete(channels);
}
