#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "sorvane/arf/Arf.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using talvex_test::GltfScratch;
using talvex_test::messageOf;

namespace {

gltf2::Gltf smallGlb(const std::string& path) {
    gltf2::Gltf gltf = gltf2::Gltf::create(path);
    const float values[] = {1, 2, 3};
    gltf.accessors.get().addDense(values, 3, gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR");
    return gltf;
}

} // namespace

TEST(GlbPayload, DocumentsAndFilesBecomeItemsThatOpenAgain) {
    GltfScratch scratch;
    arf::Arf arf = arf::Arf::create(scratch.path("a.arf"));
    gltf2::Gltf glb = smallGlb(scratch.path("src.glb"));
    arf::Data saved = arf.data.addGlb("models\\m.glb", glb, "model");
    EXPECT_EQ(saved.uri.get(), "models/m.glb");
    EXPECT_EQ(saved.type.get(), "model/gltf-binary");
    EXPECT_FALSE(saved.offset.isPropertyPresent());
    EXPECT_FALSE(saved.byteLength.isPropertyPresent());
    EXPECT_TRUE(std::filesystem::exists(scratch.dir / "models" / "m.glb"));

    gltf2::Gltf opened = saved.getGltf(true);
    EXPECT_EQ(opened.getStorageMode(), gltf2::SINGLE_FILE);
    EXPECT_EQ(static_cast<const float*>(opened.accessors.getByIndex(0).getTensor().getBuffer())[2], 3.0f);

    glb.save();
    arf::Data copied = arf.data.addGlb("c.glb", scratch.path("src.glb").c_str());
    EXPECT_EQ(copied.getGltf().accessors.size(), 1);
}

TEST(GlbPayload, RefusedSourcesAndUris) {
    GltfScratch scratch;
    arf::Arf arf = arf::Arf::create(scratch.path("a.arf"));
    gltf2::Gltf text = gltf2::Gltf::create(scratch.path("t.gltf"));
    EXPECT_EQ(messageOf([&] { arf.data.addGlb("t.glb", text); }),
              "Adding item to data:\nglTF is not a single file storage mode (e.g., glb)");
    gltf2::Gltf glb = smallGlb(scratch.path("g.glb"));
    EXPECT_EQ(messageOf([&] { arf.data.addGlb(nullptr, glb); }), "Adding item to data:\nNo uri");
    EXPECT_EQ(messageOf([&] { arf.data.addGlb("/abs.glb", glb); }), "Adding item to data:\nuri '/abs.glb' is absolute");
    EXPECT_EQ(messageOf([&] { arf.data.addGlb("x.glb", scratch.path("none.glb").c_str()); }),
              "Adding item to data:\nFile '" + scratch.path("none.glb") + "' not found");

    // Items read from a file are checked when opened, with the data items' uri check.
    arf::Data dense = arf.data.add("application/mpeg.arf.dense", "d.bin", "d", std::nullopt);
    EXPECT_EQ(messageOf([&] { dense.getGltf(); }), "Getting glTF from data[1]:\nNot a glTF");
    arf::Data climbing = arf.data.add("model/gltf-binary", "a/../../x.glb", "x", std::nullopt);
    EXPECT_EQ(messageOf([&] { climbing.getGltf(); }),
              "Getting glTF from data[2]:\nuri 'a/../../x.glb' leaves the document's folder");
}
