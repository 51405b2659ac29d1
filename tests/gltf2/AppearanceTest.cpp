#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::GltfScratch;
using talvex_test::messageOf;
using talvex_test::stderrOf;

namespace {

Gltf fromText(const std::string& json, bool readOnly = false) {
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return Gltf::load(provider, "a.gltf", MULTIPLE_FILES, readOnly);
}

std::string compact(const Gltf& gltf) {
    archive::JsonExporter::Options options;
    options.compact = true;
    return gltf.toJsonString(options);
}

bool contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// Two pixels, red then green.
const unsigned char kPixels[] = {255, 0, 0, 0, 255, 0};

void expectPixels(const Image& image) {
    DataTree tree = image.getImage(ScalarType::UInteger8, ImageFormat::YXC);
    const DataTree& pixels = tree.getItem("pixels");
    ASSERT_EQ(pixels.getTensorSizes(), (std::vector<long>{1, 2, 3}));
    EXPECT_EQ(std::string(static_cast<const char*>(pixels.getBuffer()), 6),
              std::string(reinterpret_cast<const char*>(kPixels), 6));
}

} // namespace

TEST(Appearance, ReadDefaultsAnswerAbsentKeysAndAreNeverWritten) {
    Gltf gltf = fromText(R"({"asset":{"version":"2.0"},"materials":[{"pbrMetallicRoughness":{}}],
        "samplers":[{}],"textures":[{}]})");
    Material material = gltf.materials.getByIndex(0);
    PbrMetallicRoughness pbr = material.pbrMetallicRoughness.get();
    EXPECT_EQ(pbr.metallicFactor.get(), 1.0);
    EXPECT_EQ(pbr.roughnessFactor.get(), 1.0);
    EXPECT_EQ(pbr.baseColorFactor.get(), (std::vector<double>{1, 1, 1, 1}));
    EXPECT_EQ(pbr.baseColorFactor.getFloats(), (std::vector<float>{1, 1, 1, 1}));
    EXPECT_EQ(material.alphaCutoff.get(), 0.5);
    EXPECT_EQ(material.alphaMode.get(), "OPAQUE");
    EXPECT_FALSE(material.doubleSided.get());
    EXPECT_EQ(material.emissiveFactor.get(), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(material.emissiveFactor.size(), 3);
    EXPECT_EQ(Material::EmissiveFactor::defaultValue, (std::vector<double>{0, 0, 0}));
    EXPECT_FALSE(material.emissiveFactor.isPropertyPresent());

    Sampler sampler = gltf.samplers.getByIndex(0);
    EXPECT_EQ(sampler.wrapS.get(), SAMPLER_WRAP_S_REPEAT);
    EXPECT_EQ(sampler.wrapT.get(), SAMPLER_WRAP_T_REPEAT);
    EXPECT_EQ(messageOf([&] { sampler.magFilter.get(); }), "In samplers[0]: No magFilter");
    EXPECT_EQ(messageOf([&] { sampler.minFilter.get(); }), "In samplers[0]: No minFilter");

    const std::string json = compact(gltf);
    EXPECT_TRUE(contains(json, R"("samplers":[{}],"textures":[{}],"materials":[{"pbrMetallicRoughness":{}}])")) << json;

    // Set values are written, in the record's key order.
    pbr.metallicFactor.set(0.25);
    material.alphaCutoff.set(0.75);
    material.emissiveFactor.set({1, 0, 0});
    material.name.set("skin");
    EXPECT_TRUE(contains(compact(gltf), R"({"pbrMetallicRoughness":{"metallicFactor":0.25},"emissiveFactor":[1, 0, 0],)"
                                        R"("alphaCutoff":0.75,"name":"skin"})"))
        << compact(gltf);
}

TEST(Appearance, CamerasWriteTheirFieldsAlways) {
    Gltf gltf;
    gltf.init();
    gltf.cameras.get().add(nullptr, nullptr);
    EXPECT_TRUE(contains(compact(gltf),
                         R"("cameras":[{"type":"orthographic","orthographic":{"xmag":0,"ymag":0,"zfar":1000,"znear":1}}])"))
        << compact(gltf);

    Camera perspective = gltf.cameras.get().add("perspective", "eye");
    EXPECT_TRUE(contains(compact(gltf), R"({"type":"perspective","name":"eye","perspective":{"yfov":1,"znear":1}})"));
    perspective.perspective.get().aspectRatio.set(1.5);
    EXPECT_TRUE(contains(compact(gltf), R"("perspective":{"aspectRatio":1.5,"yfov":1,"znear":1})"));

    const std::string message = messageOf([&] { gltf.cameras.get().add("fisheye", nullptr); });
    EXPECT_EQ(message.rfind("Initialization of cameras[", 0), 0u) << message;
    EXPECT_TRUE(contains(message, "]:\nInvalid value 'fisheye' for type")) << message;
    EXPECT_EQ(gltf.cameras.size(), 2);
}

TEST(Appearance, ChildObjectsAreMadeOnGetInWritableDocumentsOnly) {
    const std::string text = R"({"asset":{"version":"2.0"},"cameras":[{"type":"perspective"}],"materials":[{}]})";
    Gltf gltf = fromText(text);
    Camera camera = gltf.cameras.getByIndex(0);
    EXPECT_FALSE(camera.perspective.isPropertyPresent());
    EXPECT_EQ(camera.perspective.get().yfov.get(), 1.0);
    EXPECT_TRUE(camera.perspective.isPropertyPresent());
    // The parser took no child for the other type either.
    EXPECT_FALSE(camera.orthographic.isPropertyPresent());
    gltf.materials.getByIndex(0).normalTexture.get().scale.set(2.0);
    EXPECT_TRUE(contains(compact(gltf), R"("materials":[{"normalTexture":{"index":-1,"scale":2}}])"));

    Gltf readOnly = fromText(text, true);
    EXPECT_EQ(messageOf([&] { readOnly.cameras.getByIndex(0).perspective.get(); }),
              "Getting cameras[0].perspective: Property does not exist");
    EXPECT_FALSE(readOnly.cameras.getByIndex(0).perspective.isPropertyPresent());
}

TEST(Appearance, IndexSettersCheckTheirLists) {
    Gltf gltf;
    gltf.init();
    Material material = gltf.materials.get().add();
    TextureInfo info = material.emissiveTexture.get();
    EXPECT_EQ(info.index.get(), -1);
    EXPECT_EQ(messageOf([&] { info.index.set(0); }), "There is no textures in ");
    Texture texture = gltf.textures.get().add();
    info.index.set(0);
    EXPECT_EQ(messageOf([&] { info.index.set(1); }),
              "Setting materials[0].emissiveTexture.index: Invalid index 1 in textures");
    EXPECT_EQ(messageOf([&] { texture.source.set(0); }), "There is no images in ");
    EXPECT_EQ(messageOf([&] { texture.sampler.set(0); }), "There is no samplers in ");
}

TEST(Appearance, SamplerEnumerations) {
    EXPECT_EQ(int2SamplerMinFilter(9987), SAMPLER_MIN_FILTER_LINEAR_MIPMAP_LINEAR);
    EXPECT_STREQ(samplerMinFilter2name(SAMPLER_MIN_FILTER_NEAREST_MIPMAP_LINEAR), "NEAREST_MIPMAP_LINEAR");
    EXPECT_STREQ(samplerWrapT2name(SAMPLER_WRAP_T_MIRRORED_REPEAT), "MIRRORED_REPEAT");
    EXPECT_EQ(messageOf([] { int2SamplerMagFilter(9984); }), "Invalid or unsupported samplerMagFilter type 9984");
    EXPECT_EQ(messageOf([] { int2SamplerWrapS(0); }), "Invalid or unsupported samplerWrapS type 0");
    std::ostringstream out;
    out << SAMPLER_MAG_FILTER_LINEAR << ' ' << static_cast<SamplerWrapS>(1);
    EXPECT_EQ(out.str(), "LINEAR Invalid");
}

TEST(Appearance, ExtensionsOfMaterialsAndTexturesAreDropped) {
    const std::string text = R"({"asset":{"version":"2.0"},"materials":[{"extensions":{"KHR_x":{}},"extras":1}],
        "textures":[{"extensions":{"EXT_y":{}}}]})";
    std::string warnings = stderrOf([&] {
        Gltf gltf = fromText(text);
        EXPECT_TRUE(contains(compact(gltf), R"("textures":[{}],"materials":[{}])"));
    });
    EXPECT_TRUE(contains(warnings, "Ignore invalid or unsupported property \"extensions\" at line 1"));
    EXPECT_TRUE(contains(warnings, "Ignore invalid or unsupported property \"extras\""));
    EXPECT_TRUE(contains(warnings, "Ignore invalid or unsupported property \"extensions\" at line 2"));
}

TEST(Appearance, AddFileNamesTheFileOnly) {
    Gltf gltf;
    gltf.init();
    EXPECT_EQ(messageOf([&] { gltf.images.get().addFile("a.png", true); }), "Embeded images are not supported");
    Image image = gltf.images.get().addFile("tex/a.png", false, "albedo");
    EXPECT_EQ(image.uri.get(), "tex/a.png");
    EXPECT_FALSE(image.mimeType.isPropertyPresent());
    EXPECT_TRUE(contains(compact(gltf), R"("images":[{"uri":"tex/a.png","name":"albedo"}])"));
}

TEST(Appearance, PixelsBesideAGltfRoundTrip) {
    GltfScratch scratch;
    Gltf gltf = Gltf::create(scratch.path("model.gltf"));
    Image image = gltf.images.get().addPixels(kPixels, 2, 1, 3, 6, ScalarType::UInteger8, ImageFormat::YXC,
                                              PixelFormat::RGB, false, "tex");
    EXPECT_EQ(image.uri.get(), "model_tex_0.png");
    EXPECT_EQ(image.mimeType.get(), "image/png");
    EXPECT_EQ(scratch.read("model_tex_0.png").substr(1, 3), "PNG");
    expectPixels(image);
    gltf.save();
    expectPixels(Gltf::load(scratch.path("model.gltf"), true).images.getByIndex(0));

    // Embedded in a .gltf: a buffer view of a data-uri buffer.
    Image embedded = gltf.images.get().addPixels(kPixels, 2, 1, 3, 6, ScalarType::UInteger8, ImageFormat::YXC,
                                                 PixelFormat::RGB, true, nullptr);
    EXPECT_FALSE(embedded.uri.isPropertyPresent());
    EXPECT_EQ(embedded.bufferView.get(), 0);
    expectPixels(embedded);

    EXPECT_EQ(messageOf([&] {
                  gltf.images.get().addPixels(kPixels, 2, 1, 4, 6, ScalarType::UInteger8, ImageFormat::YXC,
                                              PixelFormat::RGB, false, nullptr);
              }),
              "Adding item to images:\nInvalid channel count 4 for pixel format RGB");
}

TEST(Appearance, PixelsInAGlbLandInTheSharedBuffer) {
    GltfScratch scratch;
    Gltf gltf = Gltf::create(scratch.path("m.glb"));
    // `embedded` false makes no file in a .glb.
    Image image = gltf.images.get().addPixels(kPixels, 2, 1, 3, 6, ScalarType::UInteger8, ImageFormat::YXC,
                                              PixelFormat::RGB, false, "tex");
    EXPECT_FALSE(image.uri.isPropertyPresent());
    EXPECT_EQ(image.mimeType.get(), "image/png");
    EXPECT_EQ(gltf.bufferViews.getByIndex(image.bufferView.get()).buffer.get(), 0);
    expectPixels(image);
    gltf.save();
    EXPECT_FALSE(std::filesystem::exists(scratch.path("m_tex_0.png")));
    expectPixels(Gltf::load(scratch.path("m.glb"), true).images.getByIndex(0));
}

TEST(Appearance, ImageReadsFailWithTheirPlace) {
    GltfScratch scratch;
    scratch.write("a.gltf", R"({"asset":{"version":"2.0"},"images":[
        {"uri":"data:image/png;base64,iVBORw0KGgo="},{"uri":"../up.png"},{"uri":"/etc/x.png"},
        {"bufferView":3,"mimeType":"image/png"},{"name":"none"}]})");
    scratch.write("up.png", "not read");
    Gltf gltf = Gltf::load(scratch.path("a.gltf"), true);
    EXPECT_TRUE(contains(messageOf([&] { gltf.images.getByIndex(0).getImage(); }),
                         "Decoding image from images[0] (uri='data:image/png;base64,iVBORw0KGgo='):\n"));
    // The first message follows the place, with its own location prefix.
    std::string message = messageOf([&] { gltf.images.getByIndex(1).getImage(); });
    EXPECT_EQ(message.rfind("Decoding image from images[1] (uri='../up.png'):\n", 0), 0u) << message;
    EXPECT_TRUE(contains(message, "(): uri '../up.png' leaves the document's folder")) << message;
    message = messageOf([&] { gltf.images.getByIndex(2).getImage(); });
    EXPECT_EQ(message.rfind("Decoding image from images[2] (uri='/etc/x.png'):\n", 0), 0u) << message;
    EXPECT_TRUE(contains(message, "(): uri '/etc/x.png' is absolute")) << message;
    EXPECT_EQ(messageOf([&] { gltf.images.getByIndex(3).getImage(); }),
              "Getting image from images[3]:\nInvalid buffer view 3");
    EXPECT_EQ(messageOf([&] { gltf.images.getByIndex(4).getImage(); }),
              "Getting image from images[4]:\nInvalid or unsupported format");
}
