// Accessor bytes compared with tinygltf's reading of the same files, for
// generated documents whose accessors are tightly packed at offset 0 of their
// views: .gltf with buffer files, .gltf with data uris, and .glb. tinygltf is
// linked into this test only, where it is installed.
#include <gtest/gtest.h>

#if TALVEX_HAVE_TINYGLTF

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <tiny_gltf.h>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"

namespace fs = std::filesystem;

namespace {

struct Random {
    uint32_t state;
    uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    uint32_t below(uint32_t n) { return next() % n; }
};

struct Type {
    const char* name;
    int values;
};
const Type kTypes[] = {{"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}, {"MAT2", 4}, {"MAT3", 9}, {"MAT4", 16}};
const int kComponentTypes[] = {5120, 5121, 5122, 5123, 5125, 5126};

int componentSize(int componentType) {
    return componentType <= 5121 ? 1 : componentType <= 5123 ? 2 : 4;
}

struct Accessor {
    int view, componentType, count;
    const Type* type;
    bool explicitOffset;
};
struct View {
    int buffer;
    size_t offset, length;
};

struct Document {
    std::vector<std::string> buffers;
    std::vector<View> views;
    std::vector<Accessor> accessors;
};

// Several views per buffer and several accessors per view, all starting at
// the view's first byte. Matrices whose columns glTF pads (MAT2 and MAT3 of
// one-byte, MAT3 of two-byte components) are not tightly packed and left out.
Document generate(Random& random, int bufferCount) {
    Document doc;
    for (int b = 0; b < bufferCount; ++b) {
        std::string bytes;
        const int viewCount = 1 + static_cast<int>(random.below(4));
        for (int v = 0; v < viewCount; ++v) {
            const int view = static_cast<int>(doc.views.size());
            size_t length = 0;
            const int accessorCount = 1 + static_cast<int>(random.below(3));
            for (int a = 0; a < accessorCount; ++a) {
                Accessor accessor{};
                accessor.view = view;
                accessor.componentType = kComponentTypes[random.below(6)];
                const int size = componentSize(accessor.componentType);
                do {
                    accessor.type = &kTypes[random.below(7)];
                } while ((size == 1 && (accessor.type->values == 4 || accessor.type->values == 9) &&
                          accessor.type->name[0] == 'M') ||
                         (size == 2 && accessor.type->values == 9));
                accessor.count = 1 + static_cast<int>(random.below(random.below(4) == 0 ? 300 : 20));
                accessor.explicitOffset = random.below(2) == 0;
                length = std::max(length, static_cast<size_t>(accessor.count * accessor.type->values * size));
                doc.accessors.push_back(accessor);
            }
            length += random.below(3) == 0 ? random.below(9) : 0; // views may hold more than their accessors read
            bytes.append((4 - bytes.size() % 4) % 4, '\0');
            doc.views.push_back({b, bytes.size(), length});
            for (size_t i = 0; i < length; ++i) bytes.push_back(static_cast<char>(random.next() >> 24));
        }
        doc.buffers.push_back(bytes);
    }
    return doc;
}

std::string base64(const std::string& bytes) {
    static const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        uint32_t word = static_cast<uint8_t>(bytes[i]) << 16;
        if (i + 1 < bytes.size()) word |= static_cast<uint8_t>(bytes[i + 1]) << 8;
        if (i + 2 < bytes.size()) word |= static_cast<uint8_t>(bytes[i + 2]);
        out += alphabet[(word >> 18) & 63];
        out += alphabet[(word >> 12) & 63];
        out += i + 1 < bytes.size() ? alphabet[(word >> 6) & 63] : '=';
        out += i + 2 < bytes.size() ? alphabet[word & 63] : '=';
    }
    return out;
}

enum class Form { Files, DataUris, Glb };

// The JSON text, written by hand so that the library's writer plays no part.
std::string json(const Document& doc, Form form) {
    std::string text = R"({"asset":{"version":"2.0"},"buffers":[)";
    for (size_t b = 0; b < doc.buffers.size(); ++b) {
        if (b) text += ",";
        text += R"({"byteLength":)" + std::to_string(doc.buffers[b].size());
        if (form == Form::Files) text += R"(,"uri":"b)" + std::to_string(b) + R"(.bin")";
        if (form == Form::DataUris) text += R"(,"uri":"data:application/octet-stream;base64,)" + base64(doc.buffers[b]) + "\"";
        text += "}";
    }
    text += R"(],"bufferViews":[)";
    for (size_t v = 0; v < doc.views.size(); ++v) {
        const View& view = doc.views[v];
        if (v) text += ",";
        text += R"({"buffer":)" + std::to_string(view.buffer) + R"(,"byteLength":)" + std::to_string(view.length);
        if (view.offset) text += R"(,"byteOffset":)" + std::to_string(view.offset);
        text += "}";
    }
    text += R"(],"accessors":[)";
    for (size_t a = 0; a < doc.accessors.size(); ++a) {
        const Accessor& accessor = doc.accessors[a];
        if (a) text += ",";
        text += R"({"bufferView":)" + std::to_string(accessor.view) + R"(,"componentType":)" +
                std::to_string(accessor.componentType) + R"(,"count":)" + std::to_string(accessor.count) +
                R"(,"type":")" + accessor.type->name + "\"";
        if (accessor.explicitOffset) text += R"(,"byteOffset":0)";
        text += "}";
    }
    return text + "]}";
}

void word(std::string& out, uint32_t value) { out.append(reinterpret_cast<const char*>(&value), 4); }

// Writes the document in its form and returns the main file's path.
fs::path write(const Document& doc, Form form, const fs::path& dir) {
    std::string text = json(doc, form);
    if (form != Form::Glb) {
        if (form == Form::Files)
            for (size_t b = 0; b < doc.buffers.size(); ++b)
                std::ofstream(dir / ("b" + std::to_string(b) + ".bin"), std::ios::binary) << doc.buffers[b];
        std::ofstream(dir / "doc.gltf", std::ios::binary) << text;
        return dir / "doc.gltf";
    }
    text.append((4 - text.size() % 4) % 4, ' ');
    std::string bin = doc.buffers[0];
    bin.append((4 - bin.size() % 4) % 4, '\0');
    std::string glb = "glTF";
    word(glb, 2);
    word(glb, static_cast<uint32_t>(12 + 8 + text.size() + 8 + bin.size()));
    word(glb, static_cast<uint32_t>(text.size()));
    glb += "JSON" + text;
    word(glb, static_cast<uint32_t>(bin.size()));
    glb += std::string("BIN\0", 4) + bin;
    std::ofstream(dir / "doc.glb", std::ios::binary) << glb;
    return dir / "doc.glb";
}

bool noImages(tinygltf::Image*, const int, std::string*, std::string*, int, int, const unsigned char*, int, void*) {
    return true;
}

// The bytes tinygltf gives for each accessor: its view's slice of the buffer.
std::vector<std::string> theirs(const fs::path& path, bool binary) {
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(noImages, nullptr);
    tinygltf::Model model;
    std::string error, warning;
    const bool loaded = binary ? loader.LoadBinaryFromFile(&model, &error, &warning, path.string())
                               : loader.LoadASCIIFromFile(&model, &error, &warning, path.string());
    EXPECT_TRUE(loaded) << error;
    std::vector<std::string> out;
    for (const tinygltf::Accessor& accessor : model.accessors) {
        const tinygltf::BufferView& view = model.bufferViews[static_cast<size_t>(accessor.bufferView)];
        const std::vector<unsigned char>& data = model.buffers[static_cast<size_t>(view.buffer)].data;
        const size_t start = view.byteOffset + accessor.byteOffset;
        const size_t size = accessor.count * static_cast<size_t>(accessor.ByteStride(view));
        EXPECT_LE(start + size, data.size());
        out.emplace_back(reinterpret_cast<const char*>(data.data()) + start, size);
    }
    return out;
}

std::vector<std::string> ours(const fs::path& path) {
    const sorvane::gltf2::Gltf gltf = sorvane::gltf2::Gltf::load(path, true);
    std::vector<std::string> out;
    for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
        const sorvane::DataTree tensor = gltf.accessors.getByIndex(i).getTensor();
        out.emplace_back(static_cast<const char*>(tensor.getBuffer()), static_cast<size_t>(tensor.getBufferSize()));
    }
    return out;
}

} // namespace

TEST(Differential, PackedAccessorBytesEqualTinygltfs) {
    const fs::path root = fs::temp_directory_path() / ("talvex-tinygltf-" + std::to_string(::getpid()));
    Random random{0x9e3779b9u};
    int compared = 0;
    for (int round = 0; round < 40; ++round) {
        for (Form form : {Form::Files, Form::DataUris, Form::Glb}) {
            SCOPED_TRACE("round " + std::to_string(round) + " form " + std::to_string(static_cast<int>(form)));
            const Document doc = generate(random, form == Form::Glb ? 1 : 1 + static_cast<int>(random.below(3)));
            const fs::path dir = root / std::to_string(round * 3 + static_cast<int>(form));
            fs::create_directories(dir);
            const fs::path path = write(doc, form, dir);
            const std::vector<std::string> expected = theirs(path, form == Form::Glb);
            ASSERT_EQ(expected.size(), doc.accessors.size());
            EXPECT_EQ(ours(path), expected);
            compared += static_cast<int>(expected.size());
        }
    }
    std::error_code ignored;
    fs::remove_all(root, ignored);
    EXPECT_GT(compared, 300);
}

#endif
