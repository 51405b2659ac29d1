// Arbitrary bytes decoded as a .glb; when they load, every accessor is read
// as a tensor and the document is saved into a memory store.
#include <cstdint>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/Gltf.h"

#if TALVEX_FUZZ_MUTATORS
#include "mutators/GlbChunks.h"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
        sorvane::gltf2::Gltf gltf = sorvane::gltf2::Gltf::decode(in);
        for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
            try {
                gltf.accessors.getByIndex(i).getTensor();
            } catch (const sorvane::RuntimeException&) {
            }
        }
        gltf.save(std::make_shared<sorvane::archive::MemoryFileProvider>(), "out.glb");
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
