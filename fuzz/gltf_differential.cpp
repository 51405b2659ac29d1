// Arbitrary bytes decoded as a .glb by this library and, where tinygltf is
// installed, by tinygltf from memory with file reads refused. Every accessor
// both read alike (same view, buffer, count, component type and type; packed,
// at offset 0, not sparse, not in a buffer 0 that names a uri) must give the
// same bytes; anything either side refuses is no finding here.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/gltf2/Gltf.h"

#if TALVEX_HAVE_TINYGLTF
#include <tiny_gltf.h>
#endif

namespace {

struct Read {
    bool ok = false;
    int64_t view = -1, buffer = -1, viewOffset = 0, count = 0;
    int componentType = 0;
    std::string type, bytes;
};

std::vector<Read> ours(const uint8_t* data, size_t size) {
    std::vector<Read> reads;
    try {
        std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
        const sorvane::gltf2::Gltf gltf = sorvane::gltf2::Gltf::decode(in);
        // This reader takes the BIN chunk as buffer 0 even when that buffer
        // names a uri; tinygltf then reads the uri. Such reads are not compared.
        const bool firstBufferNamed = gltf.buffers.size() > 0 && gltf.buffers.getByIndex(0).uri.isPropertyPresent();
        for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
            Read read;
            try {
                const sorvane::gltf2::Accessor accessor = gltf.accessors.getByIndex(i);
                const sorvane::DataTree tensor = accessor.getTensor();
                read.bytes.assign(static_cast<const char*>(tensor.getBuffer()), static_cast<size_t>(tensor.getBufferSize()));
                read.view = accessor.bufferView.get();
                const sorvane::gltf2::BufferView view = gltf.bufferViews.getByIndex(read.view);
                read.buffer = view.buffer.get();
                read.viewOffset = view.byteOffset.isPropertyPresent() ? view.byteOffset.get() : 0;
                read.count = accessor.count.get();
                read.componentType = static_cast<int>(accessor.componentType.get());
                read.type = accessor.type.get();
                read.ok = accessor.byteOffset.get() == 0 && !(read.buffer == 0 && firstBufferNamed);
            } catch (const std::exception&) {
            }
            reads.push_back(std::move(read));
        }
    } catch (const std::exception&) {
    }
    return reads;
}

#if TALVEX_HAVE_TINYGLTF
bool noImages(tinygltf::Image*, const int, std::string*, std::string*, int, int, const unsigned char*, int, void*) {
    return true;
}
bool noFile(const std::string&, void*) { return false; }
std::string sameName(const std::string& name, void*) { return name; }
bool noRead(std::vector<unsigned char>*, std::string* error, const std::string&, void*) {
    if (error) *error = "no files";
    return false;
}
bool noWrite(std::string*, const std::string&, const std::vector<unsigned char>&, void*) { return false; }

const char* typeName(int type) {
    switch (type) {
    case TINYGLTF_TYPE_SCALAR: return "SCALAR";
    case TINYGLTF_TYPE_VEC2: return "VEC2";
    case TINYGLTF_TYPE_VEC3: return "VEC3";
    case TINYGLTF_TYPE_VEC4: return "VEC4";
    case TINYGLTF_TYPE_MAT2: return "MAT2";
    case TINYGLTF_TYPE_MAT3: return "MAT3";
    case TINYGLTF_TYPE_MAT4: return "MAT4";
    default: return "";
    }
}

void compare(const uint8_t* data, size_t size, const std::vector<Read>& reads) {
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(noImages, nullptr);
    loader.SetFsCallbacks({noFile, sameName, noRead, noWrite, nullptr});
    tinygltf::Model model;
    std::string error, warning;
    // tinygltf throws on some malformed files (an index checked with at()):
    // that is its refusal, not a difference.
    try {
        if (!loader.LoadBinaryFromMemory(&model, &error, &warning, data, static_cast<unsigned>(size))) return;
    } catch (const std::exception&) {
        return;
    }
    if (model.accessors.size() != reads.size()) return;
    for (size_t i = 0; i < reads.size(); ++i) {
        const Read& read = reads[i];
        const tinygltf::Accessor& accessor = model.accessors[i];
        if (!read.ok || accessor.sparse.isSparse || accessor.byteOffset != 0 || accessor.bufferView != read.view) continue;
        if (accessor.bufferView < 0 || static_cast<size_t>(accessor.bufferView) >= model.bufferViews.size()) continue;
        const tinygltf::BufferView& view = model.bufferViews[static_cast<size_t>(accessor.bufferView)];
        if (view.byteStride != 0 || view.buffer != read.buffer || static_cast<int64_t>(view.byteOffset) != read.viewOffset)
            continue;
        if (static_cast<int64_t>(accessor.count) != read.count || accessor.componentType != read.componentType ||
            read.type != typeName(accessor.type))
            continue;
        if (view.buffer < 0 || static_cast<size_t>(view.buffer) >= model.buffers.size()) continue;
        const std::vector<unsigned char>& bytes = model.buffers[static_cast<size_t>(view.buffer)].data;
        const int stride = accessor.ByteStride(view);
        if (stride <= 0) continue;
        const size_t length = accessor.count * static_cast<size_t>(stride);
        // tinygltf holds the buffer's declared length; the library may also
        // read the padding of the BIN chunk behind it.
        if (view.byteOffset > bytes.size() || length > bytes.size() - view.byteOffset) continue;
        if (length != read.bytes.size() ||
            std::memcmp(bytes.data() + view.byteOffset, read.bytes.data(), length) != 0) {
            std::fprintf(stderr, "accessor %zu: bytes differ from tinygltf's\n", i);
            std::abort();
        }
    }
}
#endif

} // namespace

#if TALVEX_FUZZ_MUTATORS
#include "mutators/GlbChunks.h"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    const std::vector<Read> reads = ours(data, size);
    std::cerr.rdbuf(old);
#if TALVEX_HAVE_TINYGLTF
    // tinygltf is asked only about documents with something to compare.
    for (const Read& read : reads) {
        if (read.ok) {
            compare(data, size, reads);
            break;
        }
    }
#endif
    return 0;
}
