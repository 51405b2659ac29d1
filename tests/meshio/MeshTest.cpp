#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/core/file.h"
#include "sorvane/core/stringio.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/meshio/meshio.h"

using namespace sorvane;
namespace fs = std::filesystem;

namespace {

std::string messageOf(const std::exception& e) {
    std::string text = e.what();
    const auto cut = text.find("(): ");
    return cut == std::string::npos ? text : text.substr(cut + 4);
}

template <class F>
std::string failure(F&& f) {
    try {
        f();
    } catch (const std::exception& e) {
        return messageOf(e);
    }
    return "no failure";
}

struct TempDir {
    fs::path dir = fs::temp_directory_path() / ("talvex_meshio_" + std::to_string(::getpid()));
    TempDir() { fs::create_directories(dir / "sub"); }
    ~TempDir() { fs::remove_all(dir); }
    std::string write(const std::string& name, const std::string& text) const {
        const std::string path = (dir / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }
    std::string path(const std::string& name) const { return (dir / name).string(); }
};

std::vector<long> longs(const DataTree& tensor) {
    const long* v = tensor.getData<long>();
    return std::vector<long>(v, v + tensor.getValueCount());
}

std::vector<float> floats(const DataTree& tensor) {
    const float* v = tensor.getData<float>();
    return std::vector<float>(v, v + tensor.getValueCount());
}

DataTree floatTensor(const std::vector<float>& values, long cols) {
    return DataTree::createTensor(static_cast<const void*>(values.data()), static_cast<long>(values.size() * 4),
                                  {static_cast<long>(values.size()) / cols, cols}, ScalarType::Float);
}

DataTree longTensor(const std::vector<long>& values, long cols) {
    return DataTree::createTensor(static_cast<const void*>(values.data()), static_cast<long>(values.size() * 8),
                                  {static_cast<long>(values.size()) / cols, cols}, ScalarType::Integer64);
}

const char* kTwoQuads =
    "# two quads sharing an edge\r\n"
    "v 0 0 0\r\nv 1 0 0\r\n\r\nv 1 1 0\r\nv 0 1 0\r\nv 2 0 0\r\nv 2 1 0\r\n"
    "vt 0 0\r\nvt 1 0\r\nvt 1 1\r\nvt 0 1\r\n"
    "\r\n"
    "f 1/1 2/2 3/3 4/4\r\n"
    "f 2/2 5/1 6/4 3/3\r\n";

} // namespace

TEST(ObjLoad, SplitIndexArraysWithCrLfAndBlankLines) {
    TempDir t;
    for (std::string text : {std::string(kTwoQuads), std::string()}) {
        if (text.empty()) {  // the same file with plain line feeds
            text = kTwoQuads;
            text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
        }
        const DataTree mesh = loadObj(t.write("quads.obj", text));
        EXPECT_EQ(mesh.getItem("vertices").getTensorSizes(), (std::vector<long>{6, 3}));
        EXPECT_EQ(mesh.getItem("uvs").getTensorSizes(), (std::vector<long>{4, 2}));
        EXPECT_EQ(mesh.getItem("facesVertices").getTensorSizes(), (std::vector<long>{2, 4}));
        EXPECT_EQ(longs(mesh.getItem("facesVertices")), (std::vector<long>{0, 1, 2, 3, 1, 4, 5, 2}));
        EXPECT_EQ(longs(mesh.getItem("facesUvs")), (std::vector<long>{0, 1, 2, 3, 1, 0, 3, 2}));
        EXPECT_FALSE(mesh.hasItem("colors"));
        EXPECT_FALSE(mesh.hasItem("facesNormals"));
    }
    // Six numbers carry a colour; "v//vn" faces; negative indices count back from the last item read.
    const DataTree coloured = loadObj(t.write("c.obj", "v 0 0 0 1 0 0\nv 1 0 0 0 1 0\nv 0 1 0 0 0 1\n"
                                                       "vn 0 0 1\nf 1//1 2//1 3//-1\nf -3//1 -2//1 -1//1\n"
                                                       "usemtl skin\n"));
    EXPECT_EQ(floats(coloured.getItem("colors")), (std::vector<float>{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ(longs(coloured.getItem("facesVertices")), (std::vector<long>{0, 1, 2, 0, 1, 2}));
    EXPECT_EQ(longs(coloured.getItem("facesNormals")), (std::vector<long>{0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(coloured.getItem("material").getString(), "skin");
}

TEST(ObjLoad, RefusesMixedFormatsBadNumbersAndIndicesOutOfRange) {
    TempDir t;
    const std::string mixed = t.write("m.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3\nf 1 2 3 4\n");
    EXPECT_EQ(failure([&] { loadObj(mixed); }),
              "Error in " + mixed + ": unsupported format 'f 1 2 3 4' (count=5, slash=0, double=0)");
    const std::string slashes = t.write("s.obj", "v 0 0 0\nvt 0 0\nf 1/1 1/1 1/1\nf 1 1 1\n");
    EXPECT_EQ(failure([&] { loadObj(slashes); }),
              "Error in " + slashes + ": unsupported format 'f 1 1 1' (count=4, slash=0, double=0)");
    const std::string token = t.write("k.obj", "v 0 0 0\nf 1 x 1\n");
    EXPECT_EQ(failure([&] { loadObj(token); }), "Error in " + token + ": unsupported format 'f 1 x 1'");
    const std::string number = t.write("n.obj", "v 0 0 zero\n");
    EXPECT_EQ(failure([&] { loadObj(number); }), "Error parsing 'v 0 0 zero' in " + number);
    EXPECT_EQ(failure([&] { loadObj(t.write("w.obj", "v 0 0 0 1\n")); }).rfind("Error parsing 'v 0 0 0 1'", 0), 0u);

    // Indices never reach a tensor unchecked: 0, past the end, and too far back.
    for (const char* face : {"f 0 1 2\n", "f 1 2 4\n", "f 1 2 -4\n"}) {
        const std::string path = t.write("i.obj", std::string("v 0 0 0\nv 1 0 0\nv 0 1 0\n") + face);
        EXPECT_NE(failure([&] { loadObj(path); }), "no failure") << face;
    }
    const std::string uvPast = t.write("u.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nf 1/1 2/1 3/2\n");
    EXPECT_EQ(failure([&] { loadObj(uvPast); }), "Error in " + uvPast + ": index 2 out of range of 1 uvs");
}

TEST(ObjLoad, MaterialAndTextureBesideTheMtlAndUrisThatLeaveAreRefused) {
    TempDir t;
    const unsigned char red[6] = {255, 0, 0, 0, 255, 0};
    saveImage(t.path("sub/tex.png"), red, 6, 2, 1, 3, ScalarType::UInteger8, ImageFormat::YXC, PixelFormat::RGB);
    t.write("sub/m.mtl", "newmtl skin\nKd 1 1 1\nmap_Kd tex.png\n");
    const DataTree mesh = loadObj(t.write("a.obj", "mtllib sub/m.mtl\nv 0 0 0\n"));
    EXPECT_EQ(mesh.getItem("newmtl").getString(), "skin");
    EXPECT_EQ(mesh.getItem("Kd").getString(), "1 1 1");
    EXPECT_EQ(mesh.getItem("map_Kd").getString(), "tex.png");
    EXPECT_EQ(mesh.getItem("textureFile").getString(), t.path("sub/tex.png"));
    EXPECT_EQ(mesh.getItem("texture").getItem("pixels").getTensorSizes(), (std::vector<long>{1, 2, 3}));

    t.write("sub/up.mtl", "map_Kd ../escape.png\n");
    for (const char* line : {"mtllib ../m.mtl\n", "mtllib /etc/m.mtl\n", "mtllib C:\\m.mtl\n", "mtllib sub/up.mtl\n",
                             "mtllib sub\\..\\..\\m.mtl\n"}) {
        const std::string path = t.write("b.obj", line);
        const std::string text = failure([&] { loadObj(path); });
        EXPECT_NE(text.find("is absolute or leaves the file's folder"), std::string::npos) << line << text;
    }
}

TEST(ObjSave, FormatsChecksAndTextureFilesBesideTheMesh) {
    TempDir t;
    DataTree mesh = DataTree::createObject();
    mesh.setItem("vertices", floatTensor({0.1f, 1234567.0f, 1.0f / 3, 0, 0, 0, 1, 0, 0, 1, 1, 0}, 3));
    mesh.setItem("uvs", floatTensor({0, 0, 1, 0, 1, 1, 0, 1}, 2));
    mesh.setItem("facesVertices", longTensor({0, 1, 2, 3}, 4));
    mesh.setItem("facesUvs", longTensor({0, 1, 2, 3}, 4));
    const std::string path = t.path("out.obj");
    saveObj(path, mesh);
    const std::vector<std::string> lines = loadStringLines(path, false);
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[0], "# Wavefront file generated by Sorvane Studio");
    EXPECT_EQ(lines[2], "v 0.1 1.23457e+06 0.333333");
    EXPECT_EQ(lines.back(), "f 1/1 2/2 3/3 4/4");
    const DataTree back = loadObj(path);
    EXPECT_EQ(longs(back.getItem("facesUvs")), (std::vector<long>{0, 1, 2, 3}));

    // A triangle in a quad array ends at its -1; uvs without facesUvs follow the vertex index.
    DataTree mixed = DataTree::createObject();
    mixed.setItem("vertices", floatTensor({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0}, 3));
    mixed.setItem("uvs", floatTensor({0, 0, 1, 0, 1, 1, 0, 1}, 2));
    mixed.setItem("faces", longTensor({0, 1, 2, 3, 0, 2, 3, -1}, 4));
    saveObj(path, mixed);
    EXPECT_EQ(loadStringLines(path, false).back(), "f 1/1 3/3 4/4");
    mixed.setItem("faces", longTensor({0, 1, -1, 3}, 4));
    EXPECT_EQ(failure([&] { saveObj(path, mixed); }), "Failed edgeIndex == (edgeCount - 1)");
    mixed.setItem("faces", longTensor({0, 1, 2, 9}, 4));
    EXPECT_NE(failure([&] { saveObj(path, mixed); }), "no failure");

    // A texture image goes to a .png and a .mtl next to the mesh, and comes back.
    const unsigned char pixels[6] = {255, 0, 0, 0, 255, 0};
    ImageInfo info;
    info.pixels = const_cast<unsigned char*>(pixels);
    info.pixelsSize = 6;
    info.width = 2, info.height = 1, info.channels = 3;
    info.pixelFormat = PixelFormat::RGB, info.imageFormat = ImageFormat::YXC, info.scalarType = ScalarType::UInteger8;
    mesh.setItem("texture", createImage(info, ScalarType::UInteger8, ImageFormat::YXC));
    info.pixels = nullptr;
    saveObj(path, mesh);
    EXPECT_EQ(loadStringLines(t.path("out.mtl"), false), (std::vector<std::string>{"newmtl out", "map_Kd out.png"}));
    const DataTree textured = loadObj(path);
    EXPECT_TRUE(textured.getItem("texture").getItem("pixels").equals(mesh.getItem("texture").getItem("pixels")));
    mesh.setItem("texture", DataTree(3L));
    EXPECT_EQ(failure([&] { saveObj(path, mesh); }), "Error creating '" + path + "': invalid texture type");
    mesh.removeItem("texture");

    // Loadable, not savable: normals; and one normal per face.
    DataTree normals(mesh.getNode().clone());
    normals.setItem("normals", floatTensor({0, 0, 1}, 3));
    EXPECT_EQ(failure([&] { saveObj(path, normals); }), "normals not supported");
    normals.setItem("facesNormal", floatTensor({0, 0, 1}, 3));
    EXPECT_EQ(failure([&] { saveObj(path, normals); }), "One normal per face is not supported by .obj");
    DataTree wrong(mesh.getNode().clone());
    wrong.setItem("vertices", longTensor({0, 0, 0}, 3));
    EXPECT_EQ(failure([&] { saveObj(path, wrong); }), "Failed vertices.getScalarType() == ScalarType::Float");
    wrong.setItem("vertices", floatTensor({0, 0, 0, 0}, 2));
    EXPECT_EQ(failure([&] { saveObj(path, wrong); }), "Failed vertices.getTensorSize(1) == 3");
    EXPECT_EQ(failure([&] { saveObj(t.path("missing/x.obj"), mesh); }),
              "Error writing file '" + t.path("missing/x.obj") + "'");
}

TEST(MeshText, X3dAndPointFiles) {
    TempDir t;
    DataTree mesh = DataTree::createObject();
    mesh.setItem("vertices", floatTensor({0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0.5f}, 3));
    mesh.setItem("facesVertices", longTensor({0, 1, 2, 3, 0, 2, 3, -1}, 4));
    const std::string path = t.path("m.x3d");
    saveX3d(path, mesh);
    const std::vector<std::string> lines = loadStringLines(path, false);
    ASSERT_EQ(lines.size(), 11u);
    EXPECT_EQ(lines[0], "<?xml version=\"1.0\" encoding=\"UTF - 8\"?>");
    EXPECT_EQ(lines[5], "   <IndexedFaceSet normalPerVertex=\"false\" solid=\"false\" coordIndex=\"0 1 2 3 -1 0 2 3 -1\">");
    EXPECT_EQ(lines[6], "    <Coordinate point=\"0 0 0 1 0 0 1 1 0 0 1 0.5\"/>");
    EXPECT_EQ(lines[10], "</X3D>");
    mesh.setItem("uvs", floatTensor({0, 0}, 2));
    EXPECT_EQ(failure([&] { saveX3d(path, mesh); }), "Saving " + path + ": 'uvs' is not supported");
    mesh.removeItem("uvs");
    mesh.removeItem("facesVertices");
    EXPECT_EQ(failure([&] { saveX3d(path, mesh); }), "Saving " + path + ": 'facesVertices' is required");

    const float points[6] = {1.5f, 2, 3, -4, 5e-7f, 6};
    savePts(t.path("p.pts"), points, 2);
    EXPECT_EQ(loadStringLines(t.path("p.pts"), false), (std::vector<std::string>{"2", "1.5 2 3", "-4 5e-07 6"}));
}

TEST(FaceKernels, TrianglesFromQuadsAndMergedIndices) {
    const long quads[8] = {0, 1, 2, 3, 4, 5, 6, -1};
    EXPECT_EQ(faces2triangles_int64_cpu(nullptr, 0, quads, 1, 2, 4), 3);
    long out[12];
    EXPECT_EQ(faces2triangles_int64_cpu(out, 4, quads, 1, 2, 4), 3);
    EXPECT_EQ(std::vector<long>(out, out + 12), (std::vector<long>{0, 1, 2, 0, 2, 3, 4, 5, 6, -1, -1, -1}));
    // Two batches of one quad each: the shorter one is padded.
    const long batches[8] = {0, 1, 2, -1, 0, 1, 2, 3};
    long two[12];
    EXPECT_EQ(faces2triangles_int64_cpu(two, 2, batches, 2, 1, 4), 2);
    EXPECT_EQ(std::vector<long>(two, two + 12), (std::vector<long>{0, 1, 2, -1, -1, -1, 0, 1, 2, 0, 2, 3}));
    EXPECT_NE(failure([&] { faces2triangles_int64_cpu(out, 2, quads, 1, 2, 4); }), "no failure");
    EXPECT_EQ(failure([&] { faces2triangles_int64_cpu(out, 4, quads, 1, 1, 5); }),
              "Unable to convert from polygons with 5 edges");

    const long vertices[8] = {0, 1, 2, 3, 1, 4, 5, 2};
    const long uvs[8] = {0, 1, 2, 3, 1, 0, 3, 2};
    long merged[8];
    // (1, 1) and (2, 2) come back in the second face and keep their first number.
    EXPECT_EQ(merge_face_indexes_int64_cpu(merged, vertices, uvs, 2, 4), 6);
    EXPECT_EQ(std::vector<long>(merged, merged + 8), (std::vector<long>{0, 1, 2, 3, 1, 4, 5, 2}));

    EXPECT_EQ(countPatterns("f 1//2 3//4", "//"), 2);
    EXPECT_EQ(countPatterns("a///b", "//"), 1);
    EXPECT_EQ(countPatterns("abc", ""), 0);
    EXPECT_EQ(countWords("  f\t1 2  3 "), 4);
    EXPECT_EQ(countChars("1/2/3", '/'), 2);
}
