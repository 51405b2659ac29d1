// Round trips (load, save, load gives the same JSON text) for ARF documents in
// each storage mode, .gltf and .glb; and OBJ positions compared with Assimp's
// reading of the same files where Assimp is installed.
#include <gtest/gtest.h>

#include <unistd.h>

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
