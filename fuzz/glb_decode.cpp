// Arbitrary bytes decoded as a .glb; when they load, every accessor is read
// as a tensor one at a time and all at once (the two must agree), the scene
// graph is walked (node types, first mesh), every primitive's joints and
// morph stacks are built, every animation sampler is resampled at 30 fps and
// mixed, and the document is saved into a memory store.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/gltf2/property/animation/mixer/AnimationMixer.h"

namespace {

void sampleAnimations(const sorvane::gltf2::Gltf& gltf) {
    using namespace sorvane::gltf2;
    float time = 0.0f;
    AnimationMixer mixer(30.0f, {{"translation", TransformPolicy::Replace}, {"rotation", TransformPolicy::Multiply},
                                 {"scale", TransformPolicy::Multiply}, {"weights", TransformPolicy::Add},
                                 {"matrix", TransformPolicy::Multiply}});
    for (int64_t a = 0; a < gltf.animations.size(); ++a) {
        const Animation animation = gltf.animations.getByIndex(a);
        try {
            animation.getNode()->getTimeRange();
        } catch (const std::exception&) {
        }
        for (const auto& sampler : animation.getNode()->getSamplers()->getItems()) {
            try {
                sampler->getTensor(30.0f);
                sampler->getTimeRange();
            } catch (const std::exception&) {
            }
        }
        try {
            mixer.addAnimation(animation, time, "a" + std::to_string(a));
        } catch (const std::exception&) {
        }
    }
    try {
        mixer.apply();
    } catch (const std::exception&) {
    }
}

} // namespace

#if TALVEX_FUZZ_MUTATORS
#include "mutators/GlbChunks.h"
#endif

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
        sorvane::gltf2::Gltf gltf = sorvane::gltf2::Gltf::decode(in);
        // One read at a time, then all at once: the same tensors, or the
        // first failure's own message.
        std::vector<sorvane::DataTree> single;
        std::string firstFailure;
        for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
            try {
                single.push_back(gltf.accessors.getByIndex(i).getTensor());
            } catch (const sorvane::RuntimeException& e) {
                if (firstFailure.empty()) firstFailure = std::string("error: ") + e.what();
            }
        }
        try {
            const std::vector<sorvane::DataTree> all = gltf.accessors.get().getTensors();
            if (!firstFailure.empty() || all.size() != single.size()) std::abort();
            for (size_t i = 0; i < all.size(); ++i)
                if (!all[i].equals(single[i])) std::abort();
        } catch (const sorvane::RuntimeException& e) {
            if (firstFailure != std::string("error: ") + e.what()) std::abort();
        }
        for (auto walk : {+[](const sorvane::gltf2::Gltf& g) { g.getNodeTypes(); },
                          +[](const sorvane::gltf2::Gltf& g) { g.getFirstMesh(); },
                          +[](const sorvane::gltf2::Gltf& g) { g.getSceneName(); }}) {
            try {
                walk(gltf);
            } catch (const sorvane::RuntimeException&) {
            }
        }
        for (int64_t m = 0; m < gltf.meshes.size(); ++m) {
            const sorvane::gltf2::Mesh mesh = gltf.meshes.getByIndex(m);
            for (int64_t p = 0; p < mesh.primitives.size(); ++p) {
                const sorvane::gltf2::Primitive primitive = mesh.primitives.getByIndex(p);
                try {
                    primitive.attributes.getJointsTensor(-1, 4);
                } catch (const sorvane::RuntimeException&) {
                }
                for (const char* key : {"POSITION", "NORMAL", "TANGENT"}) {
                    try {
                        primitive.targets.getTensor(key);
                    } catch (const sorvane::RuntimeException&) {
                    }
                }
            }
        }
        sampleAnimations(gltf);
        gltf.save(std::make_shared<sorvane::archive::MemoryFileProvider>(), "out.glb");
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
