// The real-world input set (tests/data/realworld/, made by make/make.py):
// every file gives the outcome its manifest line states. Images that load are
// also decoded straight through libpng or libjpeg, and the pixels compared.
#include <gtest/gtest.h>

#include <png.h>
#include <stdio.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/meshio/meshio.h"
#include "hardening/DirectDecode.h"

using namespace sorvane;

namespace {

const std::string kRoot = std::string(TALVEX_TEST_DATA_DIR) + "/realworld/";

struct Entry {
    std::string path;
    bool load = false;
    std::string expect;
};

std::vector<Entry> manifest() {
    std::vector<Entry> entries;
    std::ifstream in(kRoot + "manifest.tsv");
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        const size_t a = line.find('\t');
        const size_t b = line.find('\t', a + 1);
        entries.push_back({line.substr(0, a), line.compare(a + 1, b - a - 1, "load") == 0, line.substr(b + 1)});
    }
    return entries;
}

bool endsWith(const std::string& s, const char* tail) {
    const size_t n = std::strlen(tail);
    return s.size() >= n && s.compare(s.size() - n, n, tail) == 0;
}

// "key=value" out of a blank-separated expectation.
std::string field(const std::string& expect, const std::string& key) {
    std::istringstream words(expect);
    std::string word;
    while (words >> word)
        if (word.compare(0, key.size() + 1, key + "=") == 0) return word.substr(key.size() + 1);
    return "";
}

std::string join(const std::vector<long>& values) {
    std::string text;
    for (long v : values) text += (text.empty() ? "" : ",") + std::to_string(v);
    return text;
}

std::string number(double v) {
    std::ostringstream s;
    s << v;
    return s.str();
}

// The outcome of one file, as text comparable with its manifest line.
std::string imageOutcome(const std::string& path, std::vector<unsigned char>* pixels) {
    ImageInfo info;
    info.allocate = std::malloc;
    info.free = std::free;
    loadImage(info, path);
    const long channels = info.pixelsSize / (info.width * info.height);
    const auto* p = static_cast<const unsigned char*>(info.pixels);
    if (pixels) pixels->assign(p, p + info.pixelsSize);
    std::string text = std::to_string(info.width) + "x" + std::to_string(info.height) + "x" + std::to_string(channels);
    return text + " p0=" + join(std::vector<long>(p, p + channels));
}

std::string objOutcome(const std::string& path) {
    const DataTree mesh = loadObj(path);
    const DataTree& v = mesh.getItem("vertices");
    const long faces = mesh.hasItem("facesVertices") ? mesh.getItem("facesVertices").getTensorSize(0) : 0;
    const float* xyz = v.getData<float>();
    return "vertices=" + std::to_string(v.getTensorSize(0)) + " faces=" + std::to_string(faces) + " v0=" +
           number(xyz[0]) + "," + number(xyz[1]) + "," + number(xyz[2]);
}

long depthOf(DataTree tree) {
    long depth = 0;
    while (tree.isList()) {
        ++depth;
        if (tree.getSize() == 0) break;
        tree = tree.getItem(0L);
    }
    return depth;
}

void checkGltf(const std::string& path, const std::string& expect) {
    gltf2::Gltf gltf = gltf2::Gltf::load(path, true);
    EXPECT_EQ(std::to_string(gltf.accessors.size()), field(expect, "accessors")) << path;
    for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
        const std::string key = "a" + std::to_string(i);
        if (field(expect, key) == "refused") {
            EXPECT_ANY_THROW(gltf.accessors.getByIndex(i).getTensor()) << path << " " << key;
            continue;
        }
        std::istringstream words(expect);
        std::string word;
        while (words >> word) {
            if (word.compare(0, key.size() + 1, key + "[") != 0) continue;
            const long at = std::stol(word.substr(key.size() + 1));
            const double want = std::stod(word.substr(word.find('=') + 1));
            const DataTree tensor = gltf.accessors.getByIndex(i).getTensor();
            ASSERT_EQ(tensor.getScalarType(), ScalarType::Float);
            ASSERT_LT(at, tensor.getValueCount());
            EXPECT_EQ(tensor.getData<float>()[at], want) << path << " " << word;
        }
    }
}

} // namespace

TEST(RealWorld, EveryFileGivesItsStatedOutcome) {
    const std::vector<Entry> entries = manifest();
    ASSERT_GT(entries.size(), 50u);
    for (const Entry& e : entries) {
        const std::string path = kRoot + e.path;
        SCOPED_TRACE(e.path);
        try {
            if (endsWith(path, ".png") || endsWith(path, ".jpg")) {
                const std::string got = imageOutcome(path, nullptr);
                if (e.load) {
                    EXPECT_EQ(got.substr(0, e.expect.size()), e.expect);
                } else {
                    ADD_FAILURE() << "loaded as " << got;
                }
            } else if (endsWith(path, ".obj")) {
                const std::string got = objOutcome(path);
                if (e.load)
                    EXPECT_EQ(got, e.expect);
                else
                    ADD_FAILURE() << "loaded as " << got;
            } else if (endsWith(path, ".json")) {
                const DataTree tree = loadDataTree(path.c_str());
                if (!e.load) {
                    ADD_FAILURE() << "loaded as " << tree.toJsonString();
                } else if (!field(e.expect, "depth").empty()) {
                    EXPECT_EQ(std::to_string(depthOf(tree)), field(e.expect, "depth"));
                } else {
                    const std::string text = e.expect.substr(e.expect.find('=') + 1);
                    archive::JsonImporter importer(text.data(), text.size());
                    EXPECT_TRUE(tree.equals(DataTree::createFromJson(importer))) << tree.toJsonString();
                }
            } else if (endsWith(path, ".gltf") || endsWith(path, ".glb")) {
                if (e.load) {
                    checkGltf(path, e.expect);
                } else {
                    gltf2::Gltf gltf = gltf2::Gltf::load(path, true);
                    ADD_FAILURE() << "loaded with " << gltf.accessors.size() << " accessors";
                }
            } else {
                ADD_FAILURE() << "no reader for the file";
            }
        } catch (const std::exception& ex) {
            if (e.load)
                ADD_FAILURE() << "refused: " << ex.what();
            else
                EXPECT_NE(std::string(ex.what()).find(e.expect), std::string::npos) << ex.what();
        }
    }
}

TEST(RealWorld, ImagePixelsEqualADirectLibraryDecode) {
    int compared = 0;
    for (const Entry& e : manifest()) {
        const std::string path = kRoot + e.path;
        const bool isPng = endsWith(path, ".png");
        if (!e.load || !(isPng || endsWith(path, ".jpg"))) continue;
        SCOPED_TRACE(e.path);
        std::vector<unsigned char> ours, theirs;
        imageOutcome(path, &ours);
        // A JPEG cut inside its scan is completed by libjpeg's own warning
        // path; both decodes must still agree byte for byte.
        ASSERT_TRUE(isPng ? direct::libpngDecode(path, theirs) : direct::libjpegDecode(path, theirs));
        EXPECT_TRUE(ours == theirs) << ours.size() << " bytes against " << theirs.size();
        ++compared;
    }
    EXPECT_GT(compared, 15);
}
