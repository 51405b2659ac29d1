#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <functional>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/gltf2/Gltf.h"
#include "sorvane/meshio/mesh_gltf.h"
#include "sorvane/meshio/meshio.h"

using namespace sorvane;
namespace fs = std::filesystem;

namespace {

std::string failure(const std::function<void()>& f) {
    try {
        f();
    } catch (const std::exception& e) {
        std::string text = e.what();
        const auto cut = text.find("(): ");
        return cut == std::string::npos ? text : text.substr(cut + 4);
    }
    return "no failure";
}

struct Scratch {
    fs::path dir = fs::temp_directory_path() /
                   ("talvex_meshgltf_" + std::to_string(::getpid()) + "_" +
                    ::testing::UnitTest::GetInstance()->current_test_info()->name());
    Scratch() { fs::create_directories(dir); }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }
    std::string read(const std::string& name) const {
        std::ifstream in(dir / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
};

// A unit quad with uvs, as an OBJ loader gives it.
DataTree quad() {
    DataTree mesh = DataTree::createObject();
    const float vertices[] = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    mesh.setItem("vertices", DataTree::createTensor(vertices, sizeof vertices, {4, 3}, ScalarType::Float));
    const long faces[] = {0, 1, 2, 3};
    mesh.setItem("facesVertices", DataTree::createTensor(faces, sizeof faces, {1, 4}, ScalarType::Integer64));
    const float uvs[] = {0, 0, 1, 0, 1, 1, 0, 1};
    mesh.setItem("uvs", DataTree::createTensor(uvs, sizeof uvs, {4, 2}, ScalarType::Float));
    return mesh;
}

template <class T>
std::vector<T> valuesOf(const DataTree& tensor) {
    const T* p = tensor.getData<T>();
    return std::vector<T>(p, p + tensor.getValueCount());
}

} // namespace

TEST(MeshGltf, QuadReloadsAsTwoTriangles) {
    Scratch scratch;
    for (const char* name : {"q.gltf", "q.glb"}) {
        saveMesh(scratch.path(name), quad(), false);
        const DataTree mesh = loadMesh(scratch.path(name));
        const DataTree& faces = mesh.getItem("faces");
        EXPECT_EQ(faces.getTensorSizes(), (std::vector<long>{2, 3})) << name;
        EXPECT_EQ(valuesOf<long>(faces), (std::vector<long>{0, 1, 2, 0, 2, 3})) << name;
        EXPECT_EQ(valuesOf<float>(mesh.getItem("vertices")), valuesOf<float>(quad().getItem("vertices")));
        EXPECT_EQ(valuesOf<float>(mesh.getItem("uvs")), valuesOf<float>(quad().getItem("uvs")));
        EXPECT_FALSE(mesh.hasItem("colors"));
    }
    // saveMesh embeds: the .gltf stands alone, with its accessors named.
    const std::string text = scratch.read("q.gltf");
    EXPECT_NE(text.find("data:application/octet-stream;base64,"), std::string::npos);
    EXPECT_EQ(std::distance(fs::directory_iterator(scratch.dir), fs::directory_iterator()), 2);
    for (const char* name : {"\"positions\"", "\"indices\"", "\"texcoords\"", "\"TEXCOORD_0\""})
        EXPECT_NE(text.find(name), std::string::npos) << name;
    EXPECT_EQ(text.find("generator"), std::string::npos);
}

TEST(MeshGltf, TextureAndColorsTravelThroughAMaterial) {
    Scratch scratch;
    DataTree mesh = quad();
    const float colors[] = {1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 1};
    mesh.setItem("colors", DataTree::createTensor(colors, sizeof colors, {4, 3}, ScalarType::Float));
    const unsigned char pixels[] = {255, 0, 0, 0, 255, 0};
    DataTree image = DataTree::createObject();
    image.setItem("imageFormat", DataTree(2L));
    image.setItem("pixelFormat", DataTree(1L));
    image.setItem("pixels", DataTree::createTensor(pixels, sizeof pixels, {1, 2, 3}, ScalarType::UInteger8));
    mesh.setItem("texture", image);
    saveGltf(scratch.path("t.gltf"), mesh, false);
    // Not embedded: one buffer file beside the document.
    EXPECT_TRUE(fs::exists(scratch.path("t_buffer_1.bin")) || fs::exists(scratch.path("t_buffer_0.bin")));
    EXPECT_NE(scratch.read("t.gltf").find("\"uvmap\""), std::string::npos);

    const DataTree loaded = loadGltf(scratch.path("t.gltf"));
    EXPECT_EQ(valuesOf<float>(loaded.getItem("colors")), std::vector<float>(colors, colors + 12));
    const DataTree& texture = loaded.getItem("texture").getItem("pixels");
    EXPECT_EQ(texture.getTensorSizes(), (std::vector<long>{1, 2, 3}));
    EXPECT_EQ(valuesOf<unsigned char>(texture), std::vector<unsigned char>(pixels, pixels + 6));

    mesh.setItem("texture", DataTree::createString("a.png"));
    EXPECT_EQ(failure([&] { saveGltf(scratch.path("u.gltf"), mesh, true); }), "Unsupported texture type");
    DataTree split = quad();
    split.setItem("facesUvs", split.getItem("facesVertices"));
    EXPECT_EQ(failure([&] { saveGltf(scratch.path("v.gltf"), split, true); }), "Unsupported");
    EXPECT_EQ(failure([&] { loadMesh(scratch.path("q.ply")); }), "Unsupported file extension .ply");
}

TEST(MeshGltf, NodesTargetsAndWarnings) {
    Scratch scratch;
    {
        gltf2::Gltf gltf = gltf2::Gltf::create(scratch.path("n.gltf"));
        const float positions[] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
        const uint32_t indices[] = {0, 1, 2};
        const float offsets[] = {0, 0, 1, 0, 0, 1, 0, 0, 1};
        gltf2::Mesh mesh = gltf.meshes.get().add("tri");
        for (int i = 0; i < 2; ++i) {
            gltf2::Primitive primitive = mesh.primitives.add();
            primitive.attributes.put("POSITION", gltf.accessors.get()
                                                     .addDense(positions, 3, gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT,
                                                               "VEC3", std::nullopt, true)
                                                     .getPropertyIndex());
            primitive.indices.set(gltf.accessors.get()
                                      .addDense(indices, 3, gltf2::ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, "SCALAR",
                                                std::nullopt, true)
                                      .getPropertyIndex());
        }
        const int64_t offset = gltf.accessors.get()
                                   .addDense(offsets, 3, gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                             std::nullopt, true)
                                   .getPropertyIndex();
        gltf2::Primitive first = mesh.primitives.getByIndex(0);
        for (int i = 0; i < 3; ++i) first.targets.add().put("POSITION", offset);
        mesh.extras.get().set("targetNames", gltf2::GenericProperty::createList());
        for (const char* name : {"Shape_up", "Blendshape_smile", "Shape_down"})
            mesh.extras.get().get("targetNames").add(name);
        gltf2::Node root = gltf.nodes.get().add("root");
        gltf2::Node child = gltf.nodes.get().add("child");
        root.children.add(child.getPropertyIndex());
        root.translation.set({1, 2, 3});
        child.mesh.set(mesh.getPropertyIndex());
        gltf2::Scene scene = gltf.scenes.get().add(nullptr);
        scene.nodes.add(root.getPropertyIndex());
        scene.nodes.add(child.getPropertyIndex());
        gltf.scene.set(0);
        // Times 0 and 1; a cubic spline needs three outputs per time, so the
        // second animation's two are refused below.
        const float times[] = {0, 1};
        const int64_t input = gltf.accessors.get()
                                  .addDense(times, 2, gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR",
                                            std::nullopt, true)
                                  .getPropertyIndex();
        const int64_t output = gltf.accessors.get()
                                   .addDense(positions, 2, gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                             std::nullopt, true)
                                   .getPropertyIndex();
        gltf2::Animation animation = gltf.animations.get().add(nullptr);
        animation.samplers.add(input, output, "STEP");
        animation.channels.get().addTarget(0, static_cast<long>(child.getPropertyIndex()), "translation");
        gltf.save();
        gltf2::Animation spline = gltf.animations.get().add("spline");
        spline.samplers.add(input, output, "CUBICSPLINE");
        gltf.save(gltf.getFileProvider(), "spline.gltf");
        gltf2::Animation stray = gltf.animations.get().add("stray");
        stray.samplers.add(input, output, "LINEAR");
        gltf2::Node lone = gltf.nodes.get().add("lone");
        stray.channels.get().addTarget(0, static_cast<long>(lone.getPropertyIndex()), "scale");
        gltf.animations.get().removeByIndex(1);
        gltf.save(gltf.getFileProvider(), "stray.gltf");
    }
    std::string loaded;
    testing::internal::CaptureStderr();
    const DataTree mesh = loadGltf(scratch.path("n.gltf"));
    const std::string warnings = testing::internal::GetCapturedStderr();
    EXPECT_NE(warnings.find("Warning: only first scene node is considered in " + scratch.path("n.gltf")),
              std::string::npos);
    EXPECT_NE(warnings.find("Warning: only first primitive is considered in mesh tri of "), std::string::npos);
    EXPECT_EQ(valuesOf<double>(mesh.getItem("translation")), (std::vector<double>{1, 2, 3}));
    EXPECT_FALSE(mesh.hasItem("rotation"));
    const DataTree& child = mesh.getItem("nodes").getItem(0);
    EXPECT_EQ(child.getItem("name").getString(), "tri");
    EXPECT_EQ(child.getItem("shapesBase").getTensorSize(0), 2);
    EXPECT_EQ(child.getItem("shapesName").getItem(1).getString(), "Shape_down");
    EXPECT_EQ(child.getItem("blendshapesBase").getTensorSize(0), 1);
    EXPECT_FALSE(child.hasItem("colorsBase"));

    const DataTree& animation = mesh.getItem("animations").getItem(0);
    EXPECT_EQ(animation.getItem("name").getString(), "animation_0");
    const DataTree& sampler = animation.getItem("samplers").getItem(0);
    EXPECT_EQ(sampler.getItem("interpolation").getString(), "STEP");
    EXPECT_EQ(valuesOf<float>(sampler.getItem("input")), (std::vector<float>{0, 1}));
    const DataTree& channel = animation.getItem("channels").getItem(0);
    // "mesh" is the node's place in the order of visits: root 0, child 1.
    EXPECT_EQ(channel.getItem("mesh").getInteger(), 1);
    EXPECT_EQ(channel.getItem("sampler").getInteger(), 0);
    EXPECT_EQ(channel.getItem("path").getString(), "translation");

    testing::internal::CaptureStderr();
    EXPECT_EQ(failure([&] { loadGltf(scratch.path("spline.gltf")); }),
              "There is something wrong in output value count in animations[1].samplers[0]");
    // A channel on a node outside the scene's tree has no place to name.
    EXPECT_EQ(failure([&] { loadGltf(scratch.path("stray.gltf")); }).rfind("Invalid node in ", 0), 0u);
    testing::internal::GetCapturedStderr();
}

TEST(MeshGltf, MalformedDocumentsAreRefused) {
    Scratch scratch;
    const float positions[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};
    const uint32_t indices[] = {0, 1, 2, 3};
    // One document per case: `edit` breaks it, loading names the fault.
    auto refusal = [&](const std::string& name, const std::function<void(gltf2::Gltf&, gltf2::Mesh&)>& edit) {
        {
            gltf2::Gltf gltf = gltf2::Gltf::create(scratch.path(name));
            gltf2::Mesh mesh = gltf.meshes.get().add("m");
            gltf2::Primitive primitive = mesh.primitives.add();
            primitive.attributes.put("POSITION", gltf.accessors.get()
                                                     .addDense(positions, 4, gltf2::ACCESSOR_COMPONENT_TYPE_FLOAT,
                                                               "VEC3", std::nullopt, true)
                                                     .getPropertyIndex());
            primitive.indices.set(gltf.accessors.get()
                                      .addDense(indices, 3, gltf2::ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, "SCALAR",
                                                std::nullopt, true)
                                      .getPropertyIndex());
            gltf2::Node node = gltf.nodes.get().add("n");
            node.mesh.set(mesh.getPropertyIndex());
            gltf.scenes.get().add(nullptr).nodes.add(node.getPropertyIndex());
            gltf.scene.set(0);
            edit(gltf, mesh);
            gltf.save();
        }
        return failure([&] { loadGltf(scratch.path(name)); });
    };
    EXPECT_EQ(refusal("ok.gltf", [](gltf2::Gltf&, gltf2::Mesh&) {}), "no failure");
    EXPECT_EQ(refusal("four.gltf",
                      [&](gltf2::Gltf& gltf, gltf2::Mesh& mesh) {
                          mesh.primitives.getByIndex(0).indices.set(
                              gltf.accessors.get()
                                  .addDense(indices, 4, gltf2::ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, "SCALAR",
                                            std::nullopt, true)
                                  .getPropertyIndex());
                      }),
              "The number of indices does not divide 3");
    EXPECT_EQ(refusal("nonames.gltf",
                      [](gltf2::Gltf&, gltf2::Mesh& mesh) {
                          mesh.primitives.getByIndex(0).targets.add().put("POSITION", 0);
                      }),
              "No mesh target names");
    EXPECT_EQ(refusal("fewnames.gltf",
                      [](gltf2::Gltf&, gltf2::Mesh& mesh) {
                          gltf2::Primitive primitive = mesh.primitives.getByIndex(0);
                          primitive.targets.add().put("POSITION", 0);
                          primitive.targets.add().put("POSITION", 0);
                          mesh.extras.get().set("targetNames", gltf2::GenericProperty::createList());
                          mesh.extras.get().get("targetNames").add("Shape_a");
                      }),
              "Inconsistency target / names");
    // A node among its own children would be walked forever.
    const std::string cycle = refusal("cycle.gltf", [](gltf2::Gltf& gltf, gltf2::Mesh&) {
        gltf2::Node child = gltf.nodes.get().add("c");
        gltf.nodes.getByIndex(0).children.add(child.getPropertyIndex());
        child.children.add(0);
    });
    EXPECT_EQ(cycle.rfind("Node 0 is reached twice in ", 0), 0u) << cycle;
    EXPECT_EQ(refusal("empty.gltf", [](gltf2::Gltf& gltf, gltf2::Mesh&) { gltf.scenes.getByIndex(0).nodes.remove(0); }),
              "No nodes in scene 0 in " + scratch.path("empty.gltf"));
}
