// Arbitrary bytes loaded as a "memory:" document, then everything an
// application does with its animation state: components from it, frameworks
// derived from it for every kind and built-in URN, every element's location
// checked against it, and the bulk getters of every set, whose sizes must
// agree with what they report.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/core/RuntimeException.h"

using namespace sorvane::arf;

namespace {

void check(bool condition) {
    if (!condition) std::abort();
}

void walkComponents(const AnimationComponents& c) {
    for (long set : c.getBlendshapeSetIds()) {
        const long n = c.getBlendshapeWeights(nullptr, 0, set);
        std::vector<float> w(static_cast<size_t>(n));
        check(c.getBlendshapeWeights(w.data(), n * 4, set) == n);
        std::vector<long> ids(static_cast<size_t>(n));
        check(c.getBlendshapeIds(ids.data(), n * 8, set) == n);
        for (long id : ids) check(c.hasBlendshape(set, id));
    }
    for (long set : c.getTextureSetIds()) {
        const long n = c.getTextureWeights(nullptr, 0, set);
        std::vector<float> w(static_cast<size_t>(n));
        check(c.getTextureWeights(w.data(), n * 4, set) == n);
    }
    for (long skeleton : c.getSkeletonIds()) {
        const long n = c.getJointTransforms(nullptr, 0, skeleton);
        std::vector<float> m(static_cast<size_t>(n) * 16);
        check(c.getJointTransforms(m.data(), n * 64, skeleton) == n);
        for (long joint : c.getJointIds(skeleton)) check(c.getJointTransform(skeleton, joint).size() == 16);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        const Arf arf = Arf::load("memory:" + std::string(reinterpret_cast<const char*>(data), size));
        try {
            AnimationComponents components(arf);
            walkComponents(components);
        } catch (const sorvane::RuntimeException&) {
        }
        for (const auto& urn : AnimationFramework::getBuiltinUrns())
            for (const char* kind : {"ANIMATION_FACE", "ANIMATION_BODY", "ANIMATION_HAND", "ANIMATION_LANDMARK",
                                     "ANIMATION_TEXTURE"}) {
                try {
                    if (auto f = AnimationFramework::tryCreate(arf, kind, urn, 0)) f->createData();
                } catch (const sorvane::RuntimeException&) {
                }
            }
        // Every element of every set, as locations.
        for (int type = 2; type <= 5; ++type)
            for (long id = -1; id < 4; ++id)
                for (long index = -1; index < 8; ++index)
                    AnimationLocation(static_cast<AnimationLocationType>(type), id, index).existsIn(arf);
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
