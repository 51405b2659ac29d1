// Arbitrary bytes loaded as a "memory:" document, walked through the
// accessors (structure, node matrices, references, joints) and saved back
// into its memory store.
#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>

#include "sorvane/arf/Arf.h"
#include "sorvane/core/RuntimeException.h"

namespace {

// Each step on its own: a refused matrix or a dangling reference must not
// stop the walk of the rest.
template <class F>
void attempt(F&& f) {
    try {
        f();
    } catch (const sorvane::RuntimeException&) {
    }
}

void walkComponents(sorvane::arf::Arf& arf) {
    auto components = arf.components.get();
    for (const auto& node : components.nodes) {
        attempt([&] { node.getTransformMatrix(); });
        attempt([&] { node.parent.get(); });
        attempt([&] {
            for (int64_t i = 0; i < node.children.size(); ++i) attempt([&] { node.children[i].get(); });
        });
    }
    for (const auto& skeleton : components.skeletons) {
        attempt([&] { skeleton.root.get(); });
        attempt([&] { skeleton.inverseBindMatrix.getDataSize(); });
        for (const auto& joint : skeleton.joints) attempt([&] { joint.node_.get(); });
    }
    for (const auto& skin : components.skins) {
        attempt([&] { skin.mesh.get(); });
        attempt([&] { skin.skeleton.get(); });
        attempt([&] { skin.weights.get(); });
    }
    for (const auto& mesh : components.meshes)
        for (int64_t i = 0; i < mesh.data.size(); ++i) attempt([&] { mesh.data[i].get(); });
}

} // namespace

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
        attempt([&] { walkComponents(arf); });
        arf.identity->name.add("!");
        arf.save();
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
