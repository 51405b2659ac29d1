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

std::string withPrimitiveExtensions(const std::string& extensions) {
    return R"({"asset":{"version":"2.0"},"meshes":[{"primitives":[{"extensions":)" + extensions + "}]}]}";
}

std::string primitiveExtensionsOf(const Gltf& gltf) {
    const std::string text = compact(gltf);
    const std::string key = "\"extensions\":";
    const size_t at = text.find(key);
    return at == std::string::npos ? "" : text.substr(at + key.size(), text.size() - at - key.size() - 5);
}

} // namespace

TEST(SceneExtensions, SplattingDefaultsOfThreeSorts) {
    // Always written: kernel, colorSpace; read defaults: projection, sortingMethod.
    Gltf gltf = fromText(withPrimitiveExtensions(R"({"KHR_gaussian_splatting":{"kernel":"x"}})"));
    EXPECT_EQ(primitiveExtensionsOf(gltf),
              R"({"KHR_gaussian_splatting":{"kernel":"x","colorSpace":"srgb_rec709_display"}})");
    GaussianSplatting splatting =
        gltf.meshes.getByIndex(0).primitives.getByIndex(0).extensions.get().KHR_gaussian_splatting.get();
    EXPECT_EQ(splatting.projection.get(), "perspective");
    EXPECT_EQ(GaussianSplatting::Projection::defaultValue, "perspective");
    EXPECT_EQ(splatting.sortingMethod.get(), "cameraDistance");
    EXPECT_FALSE(splatting.projection.isPropertyPresent());
    splatting.projection.set("perspective");
    EXPECT_NE(compact(gltf).find(R"("projection":"perspective")"), std::string::npos);

    // An empty transport writes its always-written values.
    GaussianSplattingTransport transport = splatting.extensions.get().MPEG_gaussian_splatting_transport.get();
    EXPECT_EQ(transport.deltaRotation.get(), 7.0);
    EXPECT_EQ(transport.logScale.get(), 9.0);
    EXPECT_NE(compact(gltf).find(R"({"MPEG_gaussian_splatting_transport":{"coordinateMode":"world",)"
                                 R"("encodingVersion":"tavrin-local-log-v1","deltaRotation":7,"logScale":9}})"),
              std::string::npos)
        << compact(gltf);
    EXPECT_EQ(transport.sortingMethod.get(), "cameraDistance");
    GaussianSplattingSHEncoding sh = transport.shEncoding.get();
    EXPECT_EQ(sh.layout.get(), "khrPacked");
    EXPECT_EQ(sh.maxDegree.get(), 0);
    EXPECT_FALSE(sh.dcFromColor0.get());
}

TEST(SceneExtensions, StitchingAndItsAccessorReferences) {
    Gltf gltf = fromText(withPrimitiveExtensions(
        R"({"KHR_gaussian_splatting":{"extensions":{"MPEG_gaussian_splatting_transport":{"stitching":{}}}}})"));
    EXPECT_NE(compact(gltf).find(R"("stitching":{"mesh":0,"primitive":0})"), std::string::npos);
    GaussianSplattingStitching stitching = gltf.meshes.getByIndex(0)
                                               .primitives.getByIndex(0)
                                               .extensions.get()
                                               .KHR_gaussian_splatting.get()
                                               .extensions.get()
                                               .MPEG_gaussian_splatting_transport.get()
                                               .stitching.get();
    const std::string path = "meshes[0].primitives[0].extensions.KHR_gaussian_splatting.extensions."
                             "MPEG_gaussian_splatting_transport.stitching";
    EXPECT_EQ(stitching.mode.get(), "triangleBarycentric");
    EXPECT_FALSE(stitching.positionReuse.get());
    EXPECT_EQ(messageOf([&] { stitching.vertices.getIndex(); }), "Getting " + path + ".vertices: No value");
    EXPECT_EQ(messageOf([&] { stitching.mdoes.set(0); }), "There is no accessors in ");

    const float data[3] = {1, 2, 3};
    gltf.accessors.get().addDense(data, 3, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR", std::nullopt, true, nullptr);
    EXPECT_EQ(messageOf([&] { stitching.mdoes.set(1); }), "Setting " + path + ".mdoes: Invalid index 1 in accessors");
    EXPECT_EQ(messageOf([&] { stitching.binding.set(2); }),
              "Setting " + path + ".binding: Invalid index 2 in accessors");
    stitching.mdoes.set(0);
    EXPECT_EQ(stitching.mdoes.getDims(), (std::vector<long>{3}));
    EXPECT_TRUE(stitching.mdoes == 0);
    EXPECT_EQ(messageOf([&] { stitching.mesh.set(1); }), "Setting " + path + ".mesh: Invalid index 1 in meshes");
    stitching.primitive.set(42);  // any integer

    // "mdoes" round-trips under its own spelling; the usual spelling is unknown.
    Gltf again = fromText(compact(gltf));
    EXPECT_NE(compact(again).find(R"("mdoes":0)"), std::string::npos);
    std::string warned = stderrOf([] {
        fromText(withPrimitiveExtensions(R"({"KHR_gaussian_splatting":{"extensions":{)"
                                         R"("MPEG_gaussian_splatting_transport":{"stitching":{"modes":1}}}}})"));
    });
    EXPECT_NE(warned.find("Ignore invalid or unsupported property \"modes\" at line 1"), std::string::npos);

    // Removing the accessor leaves the old number behind.
    gltf.accessors.get().removeByIndex(0);
    EXPECT_EQ(stitching.mdoes.getIndex(), 0);

    // init goes through the setters: a given mesh is checked, an absent one is 0.
    GaussianSplattingStitchingNode& node = *stitching.getNode();
    EXPECT_EQ(messageOf([&] { node.init(int64_t(3), std::nullopt); }),
              "Setting " + path + ".mesh: Invalid index 3 in meshes");
    EXPECT_EQ(messageOf([&] { node.init(int64_t(-1), int64_t(5)); }),
              "Setting " + path + ".mesh: Invalid index -1 in meshes");
    node.init(int64_t(0), int64_t(7));
    EXPECT_EQ(stitching.mesh.get(), 0);
    EXPECT_EQ(stitching.primitive.get(), 7);
    node.init(std::nullopt, std::nullopt);
    EXPECT_EQ(stitching.primitive.get(), 0);
    EXPECT_FALSE(stitching.mdoes.isPropertyPresent());
}

TEST(SceneExtensions, ChildrenMadeOnReadOnlyWhenWritable) {
    Gltf gltf = fromText(R"({"asset":{"version":"2.0"},"nodes":[{}]})");
    AvatarNode avatar = gltf.nodes.getByIndex(0).extensions.get().MPEG_node_avatar.get();
    EXPECT_TRUE(avatar.isAvatar.get());
    EXPECT_EQ(compact(gltf),
              R"({"asset":{"version":"2.0"},"nodes":[{"extensions":{"MPEG_node_avatar":)"
              R"({"type":"urn:mpeg:sd:2023:avatar"}}}]})");
    avatar.isAvatar.set(false);
    AvatarMapping mapping = avatar.mappings.add(std::nullopt, nullptr);
    EXPECT_EQ(mapping.node_.getIndex(), -1);
    EXPECT_EQ(mapping.path.get(), "full_body");
    const std::string saved = compact(gltf);
    EXPECT_NE(saved.find(R"({"isAvatar":false,"type":"urn:mpeg:sd:2023:avatar","mappings":[{"node":-1,"path":"full_body"}]})"),
              std::string::npos)
        << saved;
    EXPECT_EQ(compact(fromText(saved)), saved);
    mapping.node_.set(0);
    EXPECT_EQ(mapping.node_.get().getPropertyIndex(), 0);

    Gltf readOnly = fromText(R"({"asset":{"version":"2.0"},"nodes":[{}]})", true);
    EXPECT_EQ(messageOf([&] { readOnly.nodes.getByIndex(0).extensions.get(); }),
              "Getting nodes[0].extensions: Property does not exist");
    EXPECT_EQ(compact(readOnly), R"({"asset":{"version":"2.0"},"nodes":[{}]})");
}

TEST(SceneExtensions, OtherExtensionsAreDroppedWithAWarning) {
    std::string warned;
    Gltf gltf;
    warned = stderrOf([&] {
        gltf = fromText(R"({"asset":{"version":"2.0"},"nodes":[{"extensions":{"EXT_other":{"a":1},)"
                        R"("MPEG_node_avatar":{}}}]})");
    });
    EXPECT_NE(warned.find("Ignore invalid or unsupported property \"EXT_other\" at line 1"), std::string::npos);
    EXPECT_EQ(compact(gltf), R"({"asset":{"version":"2.0"},"nodes":[{"extensions":{"MPEG_node_avatar":)"
                             R"({"type":"urn:mpeg:sd:2023:avatar"}}}]})");
    EXPECT_FALSE(gltf.extensionsUsed.isPropertyPresent());  // never listed by itself
}
