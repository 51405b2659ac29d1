#include <gtest/gtest.h>

#include <memory>

#include "sorvane/arf/property/Identity.h"
#include "sorvane/arf/property/Preamble.h"
#include "sorvane/arf/property/Structure.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
using talvex_test::newRoot;

TEST(Accessor, ValuesThroughMembers) {
    auto root = newRoot();
    Identity identity(root, root->getIdentity(), false);
    EXPECT_TRUE(identity.has("name"));
    EXPECT_FALSE(identity.has("x"));
    EXPECT_EQ(identity.name.get(), "<undefined>");
    identity.name.set("Ada");
    identity.name.add(" L.");
    identity.age.set(36.5);
    EXPECT_STREQ(identity.name.c_str(), "Ada L.");
    EXPECT_EQ(root->getIdentity()->getAge(), 36.5);
    EXPECT_EQ(identity.name.getPropertyPath(), "identity.name");
    EXPECT_EQ(identity.name.getPropertyName(), "name");
    EXPECT_EQ(identity.name.getPropertyIndex(), -1);
    EXPECT_STREQ(identity.age.getPropertyTypeName(), "number");
    EXPECT_TRUE(identity.name.isPropertyPresent());
    EXPECT_EQ(identity.name.buildRepresentation(), "\"Ada L.\"");
    EXPECT_EQ(identity.getPropertyPath(), "identity");
    EXPECT_STREQ(identity.getPropertyTypeName(), "Identity");
    EXPECT_EQ(messageOf([&] { identity.name.set(static_cast<const char*>(nullptr)); }),
              "basic_string::_S_construct null not valid");
}

TEST(Accessor, ReadOnlyRefusesEveryChange) {
    auto root = newRoot();
    root->getStructure()->getAssets()->add("a", 4)->getLods()->add("l", 2)->setMeshes({});
    Identity identity(root, root->getIdentity(), true);
    EXPECT_EQ(messageOf([&] { identity.name.set("x"); }), "Setting identity.name: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { identity.name.add("x"); }), "Appending identity.name: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { identity.removeProperty(); }), "Removing identity: Forbidden, read-only accessor");

    Structure structure(root, root->getStructure(), true);
    EXPECT_EQ(messageOf([&] { structure.assets.add("b", std::nullopt); }),
              "Adding an item to structure.assets: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { structure.assets.get().add("b", std::nullopt); }),
              "Adding an item to structure.assets\nForbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { structure.assets.get().remove(4); }),
              "Adding an item to structure.assets\nForbidden, read-only accessor");
    auto lod = structure.assets[4].lods[2];
    EXPECT_EQ(messageOf([&] { lod.meshes.add(1); }),
              "Adding an item to structure.assets[4].lods[2].meshes: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { lod.meshes.removeProperty(); }),
              "Removing structure.assets[4].lods[2].meshes: Forbidden, read-only accessor");
    EXPECT_EQ(messageOf([&] { lod.name.set("n"); }),
              "Setting structure.assets[4].lods[2].name: Forbidden, read-only accessor");
    EXPECT_EQ(lod.name.get(), "l");  // reading is allowed
}

TEST(Accessor, RemovePropertyInvalidatesTheAccessor) {
    auto root = newRoot();
    Identity identity(root, root->getIdentity(), false);
    Identity other = identity;
    identity.removeProperty();
    EXPECT_EQ(messageOf([&] { identity.name.get(); }), "Invalid node");
    EXPECT_EQ(messageOf([&] { identity.getPropertyPath(); }), "Invalid node");
    // Another accessor keeps working on the detached node.
    other.name.set("still here");
    EXPECT_EQ(other.name.get(), "still here");
    EXPECT_FALSE(other.isPropertyPresent());
    Identity empty;
    EXPECT_EQ(messageOf([&] { empty.age.get(); }), "Invalid node");
}

TEST(Accessor, ListsChildrenAndOptionalValues) {
    auto root = newRoot();
    Structure structure(root, root->getStructure(), false);
    auto body = structure.assets.add("body", std::nullopt);
    structure.assets.add("head", 9);
    EXPECT_EQ(structure.assets.size(), 2);
    EXPECT_TRUE(structure.assets.has(9));
    EXPECT_EQ(structure.assets.get().find("head"), 9);
    EXPECT_EQ(structure.assets.get().getByName("body").id.get(), 1);
    EXPECT_EQ(messageOf([&] { structure.assets.get().getByName("tail"); }),
              "No item with name 'tail' in structure.assets");
    std::vector<std::string> names;
    for (const Asset& asset : structure.assets) names.push_back(asset.name.get());
    EXPECT_EQ(names, (std::vector<std::string>{"body", "head"}));

    // An optional child list is made by its first add.
    EXPECT_FALSE(structure.protectionConfigurations.isPropertyPresent());
    EXPECT_EQ(messageOf([&] { structure.protectionConfigurations.getPropertyItemNames(); }),
              "Getting names of items of structure.protectionConfigurations: Property does not exist");
    structure.protectionConfigurations.add("urn:x");
    EXPECT_EQ(structure.protectionConfigurations.size(), 1);

    auto lod = body.lods.add("high", std::nullopt);
    EXPECT_FALSE(lod.meshes.isPropertyPresent());
    lod.meshes.set(std::vector<int64_t>{});
    EXPECT_TRUE(lod.meshes.isPropertyPresent());
    EXPECT_EQ(lod.meshes.size(), 0);

    Preamble preamble(root, root->getPreamble(), false);
    auto features = preamble.authenticationFeatures.add("key");
    EXPECT_EQ(messageOf([&] { features.facialFeature.get(); }),
              "In preamble.authenticationFeatures[0]: No facialFeature");
    features.facialFeature.set("f");
    EXPECT_TRUE(features.facialFeature.isPropertyPresent());
    features.facialFeature.removeProperty();
    EXPECT_FALSE(features.facialFeature.isPropertyPresent());
    preamble.supportedAnimations->faceAnimations.add("urn:face");
    EXPECT_EQ(preamble.supportedAnimations.get().faceAnimations.get(0), "urn:face");
}

TEST(Accessor, MembersCopiedOutOwnTheirReferences) {
    auto root = newRoot();
    auto identity = std::make_unique<Identity>(root, root->getIdentity(), false);
    auto structure = std::make_unique<Structure>(root, root->getStructure(), false);
    Identity::Name name = identity->name;
    Structure::Assets assets = structure->assets;
    // The members are the last holders of the document.
    identity.reset();
    structure.reset();
    root.reset();
    name.set("Ada");
    EXPECT_EQ(name.get(), "Ada");
    assets.add("body", 3);
    EXPECT_EQ(assets.size(), 1);
    EXPECT_EQ(assets[3].name.get(), "body");
    EXPECT_EQ(assets[3].name.getPropertyRoot(), name.getPropertyRoot());
}
