// Round trips (load, save, load gives the same JSON text) for ARF documents in
// each storage mode, .gltf and .glb; random meshes through OBJ and glTF; and
// OBJ positions compared with Assimp's reading where Assimp is installed.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/meshio/mesh_gltf.h"
#include "sorvane/meshio/meshio.h"

#if TALVEX_HAVE_ASSIMP
#include <assimp/Importer.hpp>
#include <assimp/mesh.h>
#include <assimp/scene.h>
#endif

using namespace sorvane;
namespace fs = std::filesystem;

namespace {

struct Scratch {
    fs::path dir;
    Scratch() {
        dir = fs::temp_directory_path() / ("talvex-trip-" + std::to_string(::getpid()) + "-" +
                                           ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    ~Scratch() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
};

std::vector<std::string> payloads(const arf::Arf& document) {
    std::vector<std::string> bytes;
    auto items = document.data.get();
    for (int64_t i = 0; i < items.size(); ++i) bytes.push_back(items.getByIndex(i).getString());
    return bytes;
}

const std::string kRealWorld = std::string(TALVEX_TEST_DATA_DIR) + "/realworld/";

} // namespace

TEST(RoundTrip, ArfInEveryStorageMode) {
    Scratch s;
    // The example avatar with payloads of each kind: own file, embedded, dense tensor.
    arf::Arf source = arf::saveArfAs(arf::Arf::load(fs::path(TALVEX_SOURCE_DIR) / "examples/avatar.arf.json", true),
                                     s.dir / "src" / "a.arf");
    source.data.addContent("hello", 5, false, "application/octet-stream", "hello.bin", "greeting");
    source.data.addContent("embedded", 8, true, "text/plain");
    const float values[6] = {1, 2, 3, 4, 5, 6};
    source.data.addDenseTensor(DataTree::createTensor(values, sizeof values, std::vector<long>{2, 3}, ScalarType::Float));
    source.save();

    for (const char* name : {"a.arf", "a.arfz"}) {
        SCOPED_TRACE(name);
        arf::saveArfAs(source, s.dir / "first" / name);
        arf::Arf first = arf::Arf::load(s.dir / "first" / name, true);
        arf::saveArfAs(first, s.dir / "second" / name);
        arf::Arf second = arf::Arf::load(s.dir / "second" / name, true);
        EXPECT_EQ(first.toJsonString(), second.toJsonString());
        EXPECT_EQ(payloads(first), payloads(second));
        EXPECT_EQ(payloads(first), payloads(source));
    }
    arf::Arf memory = arf::saveArfAs(source, "memory:");
    arf::Arf again = arf::saveArfAs(memory, "memory:");
    EXPECT_EQ(memory.toJsonString(), again.toJsonString());
    EXPECT_EQ(payloads(again), payloads(source));
}

TEST(RoundTrip, GltfAndGlb) {
    Scratch s;
    auto provider = std::make_shared<archive::DiskFileProvider>(s.dir.string());
    gltf2::Gltf text = gltf2::Gltf::load(kRealWorld + "gltf/stride_zero.gltf", true);
    text.save(provider, "a.gltf");
    gltf2::Gltf textAgain = gltf2::Gltf::load(s.dir / "a.gltf", true);
    EXPECT_EQ(text.toJsonString(), textAgain.toJsonString());
    EXPECT_TRUE(text.accessors.getByIndex(0).getTensor() == textAgain.accessors.getByIndex(0).getTensor());

    // A .glb written by hand: JSON chunk, then a BIN chunk holding three floats.
    std::string json = R"({"asset":{"version":"2.0"},"buffers":[{"byteLength":12}],)"
                       R"("bufferViews":[{"buffer":0,"byteLength":12}],)"
                       R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"SCALAR"}]})";
    json.append((4 - json.size() % 4) % 4, ' ');
    const float bin[3] = {1.5f, -2.0f, 8.0f};
    auto word = [](std::string& out, uint32_t v) { out.append(reinterpret_cast<const char*>(&v), 4); };
    std::string glb = "glTF";
    word(glb, 2);
    word(glb, static_cast<uint32_t>(12 + 8 + json.size() + 8 + sizeof bin));
    word(glb, static_cast<uint32_t>(json.size()));
    glb += "JSON" + json;
    word(glb, sizeof bin);
    glb += std::string("BIN\0", 4) + std::string(reinterpret_cast<const char*>(bin), sizeof bin);
    std::ofstream(s.dir / "in.glb", std::ios::binary) << glb;

    gltf2::Gltf first = gltf2::Gltf::load(s.dir / "in.glb", true);
    first.save(provider, "out.glb");
    gltf2::Gltf second = gltf2::Gltf::load(s.dir / "out.glb", true);
    EXPECT_EQ(first.toJsonString(), second.toJsonString());
    const DataTree values = second.accessors.getByIndex(0).getTensor();
    ASSERT_EQ(values.getValueCount(), 3);
    EXPECT_EQ(values.getData<float>()[2], 8.0f);
}

#if TALVEX_HAVE_ASSIMP
TEST(Differential, ObjPositionsEqualAssimps) {
    int compared = 0;
    for (const char* name : {"obj/negative_indices.obj", "obj/quads.obj", "obj/groups_lines_vp.obj",
                             "obj/crlf_comments.obj", "obj/uv_normal.obj"}) {
        SCOPED_TRACE(name);
        const std::string path = kRealWorld + name;
        const DataTree mesh = loadObj(path);
        const float* v = mesh.getItem("vertices").getData<float>();
        const DataTree& faces = mesh.getItem("facesVertices");
        const long* f = faces.getData<long>();
        std::vector<float> ours;
        for (long i = 0; i < faces.getValueCount(); ++i)
            if (f[i] >= 0) ours.insert(ours.end(), v + 3 * f[i], v + 3 * f[i] + 3);

        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile(path, 0);
        ASSERT_NE(scene, nullptr) << importer.GetErrorString();
        std::vector<float> theirs;
        for (unsigned m = 0; m < scene->mNumMeshes; ++m) {
            const aiMesh* am = scene->mMeshes[m];
            for (unsigned k = 0; k < am->mNumFaces; ++k) {
                const aiFace& face = am->mFaces[k];
                if (face.mNumIndices < 3) continue; // lines and points are not mesh faces here
                for (unsigned c = 0; c < face.mNumIndices; ++c) {
                    const aiVector3D& p = am->mVertices[face.mIndices[c]];
                    theirs.insert(theirs.end(), {p.x, p.y, p.z});
                }
            }
        }
        EXPECT_EQ(ours, theirs);
        ++compared;
    }
    EXPECT_EQ(compared, 5);
}

// Generated files: triangles or quads (one kind a file, as the reader wants),
// positive and negative indices, with or without texture and normal indices,
// numbers written plainly, with signs or (in half the files) exponents, blanks
// and comments between. Values are multiples of 1/8, so every position read
// is exact: ours must equal the written values, and Assimp's where it reads
// them exactly (its reader rounds numbers with exponents, 2.328750e+02 gives
// 232.875015, so those files are checked against the values only).
TEST(Differential, GeneratedObjPositionsEqualAssimps) {
    Scratch s;
    uint32_t seed = 4242;
    auto next = [&seed] {
        seed ^= seed << 13;
        seed ^= seed >> 17;
        seed ^= seed << 5;
        return seed;
    };
    for (int round = 0; round < 30; ++round) {
        SCOPED_TRACE(round);
        const bool exponents = round % 4 >= 2;
        auto number = [&](float v) {
            char text[64];
            switch (next() % (exponents ? 4 : 3)) {
            case 0: std::snprintf(text, sizeof text, "%g", static_cast<double>(v)); break;
            case 1: std::snprintf(text, sizeof text, "%.6f", static_cast<double>(v)); break;
            case 2: std::snprintf(text, sizeof text, "%s%g", v >= 0 ? "+" : "", static_cast<double>(v)); break;
            default: std::snprintf(text, sizeof text, "%e", static_cast<double>(v)); break;
            }
            return std::string(text);
        };
        const int vertexCount = 3 + static_cast<int>(next() % 40);
        const int corners = round % 2 ? 4 : 3;
        const int style = static_cast<int>(next() % 3); // v, v/vt, v/vt/vn
        std::vector<float> written;
        std::string text = "# generated\n";
        for (int i = 0; i < vertexCount; ++i) {
            text += "v";
            for (int c = 0; c < 3; ++c) {
                written.push_back(static_cast<float>(static_cast<int>(next() % 4001) - 2000) / 8.0f);
                text += (next() % 4 ? " " : " \t") + number(written.back());
            }
            text += next() % 5 ? "\n" : "  \n";
            if (style >= 1) text += "vt " + number(static_cast<float>(next() % 9) / 8.0f) + " 0.5\n";
            if (style == 2) text += "vn 0 0 1\n";
            if (next() % 7 == 0) text += "\n# between\n";
        }
        const int faceCount = 1 + static_cast<int>(next() % 30);
        std::vector<float> expected;
        for (int f = 0; f < faceCount; ++f) {
            text += "f";
            for (int c = 0; c < corners; ++c) {
                const int index = static_cast<int>(next() % static_cast<uint32_t>(vertexCount));
                expected.insert(expected.end(), &written[static_cast<size_t>(index) * 3], &written[static_cast<size_t>(index) * 3] + 3);
                // Negative indices count back from the last vertex read.
                const std::string i = next() % 2 ? std::to_string(index + 1) : std::to_string(index - vertexCount);
                text += " " + i;
                if (style == 1) text += "/" + i;
                if (style == 2) text += "/" + i + "/" + i;
            }
            text += "\n";
        }
        const std::string path = (s.dir / ("g" + std::to_string(round) + ".obj")).string();
        std::ofstream(path, std::ios::binary) << text;

        const DataTree mesh = loadObj(path);
        const float* v = mesh.getItem("vertices").getData<float>();
        const DataTree& faces = mesh.getItem("facesVertices");
        const long* f = faces.getData<long>();
        std::vector<float> ours;
        for (long i = 0; i < faces.getValueCount(); ++i)
            if (f[i] >= 0) ours.insert(ours.end(), v + 3 * f[i], v + 3 * f[i] + 3);
        EXPECT_EQ(ours, expected);
        if (exponents) continue;

        Assimp::Importer importer;
        const aiScene* scene = importer.ReadFile(path, 0);
        ASSERT_NE(scene, nullptr) << importer.GetErrorString();
        std::vector<float> theirs;
        for (unsigned m = 0; m < scene->mNumMeshes; ++m) {
            const aiMesh* am = scene->mMeshes[m];
            for (unsigned k = 0; k < am->mNumFaces; ++k)
                for (unsigned c = 0; c < am->mFaces[k].mNumIndices; ++c) {
                    const aiVector3D& p = am->mVertices[am->mFaces[k].mIndices[c]];
                    theirs.insert(theirs.end(), {p.x, p.y, p.z});
                }
        }
        EXPECT_EQ(ours, theirs);
    }
}
#endif

TEST(RoundTrip, SaveObjThenLoadObjGivesTheSameTensors) {
    Scratch s;
    uint32_t seed = 12345;
    auto next = [&seed] {
        seed ^= seed << 13;
        seed ^= seed >> 17;
        seed ^= seed << 5;
        return seed;
    };
    for (int round = 0; round < 20; ++round) {
        const long vertexCount = 3 + static_cast<long>(next() % 50);
        const long faceCount = 1 + static_cast<long>(next() % 40);
        std::vector<float> vertices(static_cast<size_t>(vertexCount * 3));
        // Numbers are written with six significant digits: values they hold exactly.
        for (float& v : vertices) v = static_cast<float>(static_cast<int>(next() % 20001) - 10000) / 4.0f;
        std::vector<long> faces(static_cast<size_t>(faceCount * 3));
        for (long& f : faces) f = static_cast<long>(next() % static_cast<uint32_t>(vertexCount));
        DataTree mesh = DataTree::createObject();
        mesh.setItem("vertices", DataTree::createTensor(static_cast<const void*>(vertices.data()), static_cast<long>(vertices.size() * 4),
                                                        std::vector<long>{vertexCount, 3}, ScalarType::Float));
        mesh.setItem("facesVertices", DataTree::createTensor(static_cast<const void*>(faces.data()), static_cast<long>(faces.size() * 8),
                                                             std::vector<long>{faceCount, 3}, ScalarType::Integer64));
        const std::string path = (s.dir / ("m" + std::to_string(round) + ".obj")).string();
        saveObj(path, mesh);
        const DataTree back = loadObj(path);
        SCOPED_TRACE(round);
        EXPECT_TRUE(back.getItem("vertices") == mesh.getItem("vertices"));
        EXPECT_TRUE(back.getItem("facesVertices") == mesh.getItem("facesVertices"));
    }
}

namespace {

DataTree floatTensor(std::vector<float> values, long rows, long columns) {
    return DataTree::createTensor(static_cast<const void*>(values.data()), static_cast<long>(values.size() * 4),
                                  std::vector<long>{rows, columns}, ScalarType::Float);
}

} // namespace

// Random meshes: positions, texcoords, colours (three or four channels), faces
// mixing triangles, quads and quads ended early by -1, and morph targets of
// the three kinds loadGltf sorts by name. saveGltf writes no targets, so they
// are added to the saved document before it is read back.
TEST(RoundTrip, SaveGltfThenLoadGltfGivesTheSameTensors) {
    Scratch s;
    uint32_t seed = 777;
    auto next = [&seed] {
        seed ^= seed << 13;
        seed ^= seed >> 17;
        seed ^= seed << 5;
        return seed;
    };
    auto randomFloats = [&](long count) {
        std::vector<float> values(static_cast<size_t>(count));
        for (float& v : values) v = static_cast<float>(static_cast<int32_t>(next())) / 65536.0f;
        return values;
    };
    const char* const forms[] = {".glb", ".gltf", "_embedded.gltf"};
    int targetsRead = 0;
    for (int round = 0; round < 24; ++round) {
        SCOPED_TRACE(round);
        const long n = 3 + static_cast<long>(next() % 60);
        const long faceCount = 1 + static_cast<long>(next() % 30);
        const long corners = round % 2 ? 4 : 3;
        const long channels = round % 3 ? 3 : 4;
        std::vector<long> faces(static_cast<size_t>(faceCount * corners));
        std::vector<long> triangles;
        for (long f = 0; f < faceCount; ++f) {
            long* face = &faces[static_cast<size_t>(f * corners)];
            for (long c = 0; c < corners; ++c) face[c] = static_cast<long>(next() % static_cast<uint32_t>(n));
            if (corners == 4 && next() % 3 == 0) face[3] = -1;
            triangles.insert(triangles.end(), {face[0], face[1], face[2]});
            if (corners == 4 && face[3] >= 0) triangles.insert(triangles.end(), {face[0], face[2], face[3]});
        }
        DataTree mesh = DataTree::createObject();
        mesh.setItem("vertices", floatTensor(randomFloats(n * 3), n, 3));
        mesh.setItem("facesVertices", DataTree::createTensor(static_cast<const void*>(faces.data()),
                                                             static_cast<long>(faces.size() * 8),
                                                             std::vector<long>{faceCount, corners}, ScalarType::Integer64));
        if (round % 4 != 3) mesh.setItem("uvs", floatTensor(randomFloats(n * 2), n, 2));
        if (round % 5 != 4) mesh.setItem("colors", floatTensor(randomFloats(n * channels), n, channels));

        const std::string form = forms[round % 3];
        const std::string path = (s.dir / ("m" + std::to_string(round) + form)).string();
        saveGltf(path, mesh, form == "_embedded.gltf");

        // Targets: "Shape_" and "Blendshape_" move positions, "Colors_" colours.
        std::vector<std::vector<float>> shapes, blendshapes, colorTargets;
        {
            gltf2::Gltf gltf = gltf2::Gltf::load(path);
            gltf2::Mesh saved = gltf.meshes.getByIndex(0);
            gltf2::Primitive primitive = saved.primitives.getByIndex(0);
            saved.extras.get().set("targetNames", gltf2::GenericProperty::createList());
            const long targetCount = static_cast<long>(next() % 5);
            for (long t = 0; t < targetCount; ++t) {
                const uint32_t kind = mesh.hasItem("colors") ? next() % 3 : next() % 2;
                const long width = kind == 2 ? channels : 3;
                std::vector<float> values = randomFloats(n * width);
                const int64_t accessor = gltf.accessors.get()
                                             .addTensor(floatTensor(values, n, width), std::nullopt, true)
                                             .getPropertyIndex();
                const std::string name = (kind == 0 ? "Shape_" : kind == 1 ? "Blendshape_" : "Colors_") + std::to_string(t);
                primitive.targets.add().put(kind == 2 ? "COLOR_0" : "POSITION", accessor);
                saved.extras.get().get("targetNames").add(name.c_str());
                (kind == 0 ? shapes : kind == 1 ? blendshapes : colorTargets).push_back(values);
            }
            gltf.save();
        }

        const DataTree back = loadGltf(path);
        EXPECT_TRUE(back.getItem("vertices") == mesh.getItem("vertices"));
        const DataTree& loadedFaces = back.getItem("faces");
        EXPECT_EQ(loadedFaces.getTensorSizes(), (std::vector<long>{static_cast<long>(triangles.size() / 3), 3}));
        EXPECT_EQ(std::vector<long>(loadedFaces.getData<long>(), loadedFaces.getData<long>() + loadedFaces.getValueCount()),
                  triangles);
        for (const char* key : {"uvs", "colors"}) {
            EXPECT_EQ(back.hasItem(key), mesh.hasItem(key)) << key;
            if (mesh.hasItem(key) && back.hasItem(key)) {
                EXPECT_TRUE(back.getItem(key) == mesh.getItem(key)) << key;
            }
        }
        const struct {
            const char* key;
            const std::vector<std::vector<float>>& values;
        } groups[] = {{"shapesBase", shapes}, {"blendshapesBase", blendshapes}, {"colorsBase", colorTargets}};
        for (const auto& group : groups) {
            SCOPED_TRACE(group.key);
            ASSERT_EQ(back.hasItem(group.key), !group.values.empty());
            if (group.values.empty()) continue;
            targetsRead += static_cast<int>(group.values.size());
            const DataTree& stack = back.getItem(group.key);
            std::vector<float> expected;
            for (const auto& target : group.values) expected.insert(expected.end(), target.begin(), target.end());
            EXPECT_EQ(stack.getValueCount(), static_cast<long>(expected.size()));
            EXPECT_EQ(stack.getTensorSize(0), static_cast<long>(group.values.size()));
            EXPECT_EQ(std::vector<float>(stack.getData<float>(), stack.getData<float>() + stack.getValueCount()), expected);
        }
    }
    EXPECT_GT(targetsRead, 20);
}
