// Arbitrary bytes loaded as .gltf text; when they load, every accessor is
// read as a tensor (embedded buffers decoded) and the document is saved into
// a memory store.
#include <cstdint>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/Gltf.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        auto provider = std::make_shared<sorvane::archive::MemoryFileProvider>();
        provider->create("a.gltf", std::string(reinterpret_cast<const char*>(data), size));
        sorvane::gltf2::Gltf gltf = sorvane::gltf2::Gltf::load(provider, "a.gltf", sorvane::gltf2::MULTIPLE_FILES);
        for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
            try {
                gltf.accessors.getByIndex(i).getTensor();
            } catch (const sorvane::RuntimeException&) {
            }
        }
        gltf.save(provider, "b.gltf");
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
