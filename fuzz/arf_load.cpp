// Arbitrary bytes loaded as a "memory:" document, walked through the
// accessors and saved back into its memory store.
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>

#include "sorvane/arf/Arf.h"
#include "sorvane/core/RuntimeException.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        auto arf = sorvane::arf::Arf::load("memory:" + std::string(reinterpret_cast<const char*>(data), size));
        auto structure = arf.structure.get();
        for (const auto& asset : structure.assets) {
            asset.name.get();
            for (const auto& lod : asset.lods) lod.meshes.size();
        }
        arf.identity->name.add("!");
        arf.save();
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
