// Arbitrary bytes split at the first zero byte into a "memory:" document and
// an animation sample stream. For every framework the document's preamble
// names, a mapper is built and driven: with frames at the bottom, middle and
// top of every input's range (by plan and by location, which must agree to
// the bit) and with every unit the stream decodes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/arf/animation/AnimationMapper.h"
#include "sorvane/arf/animation/stream/AnimationSampleStream.h"
#include "sorvane/arf/node/PreambleNode.h"
#include "sorvane/arf/node/preamble/SupportedAnimationsNode.h"
#include "sorvane/core/RuntimeException.h"

using namespace sorvane::arf;

namespace {

void check(bool condition) {
    if (!condition) std::abort();
}

// (type, URN) of every framework the preamble names.
std::vector<std::pair<std::string, std::string>> namedFrameworks(const Arf& arf) {
    std::vector<std::pair<std::string, std::string>> out;
    const auto& root = arf.getRoot();
    const auto preamble = root ? root->getPreamble() : nullptr;
    const auto s = preamble ? preamble->getSupportedAnimations() : nullptr;
    if (!s) return out;
    const auto add = [&](const char* type, const std::vector<std::string>& urns) {
        for (const auto& urn : urns) out.emplace_back(type, urn);
    };
    if (s->hasFaceAnimations()) add("ANIMATION_FACE", s->getFaceAnimations());
    if (s->hasBodyAnimations()) add("ANIMATION_BODY", s->getBodyAnimations());
    if (s->hasHandAnimations()) add("ANIMATION_HAND", s->getHandAnimations());
    if (s->hasLandmarkAnimations()) add("ANIMATION_LANDMARK", s->getLandmarkAnimations());
    if (s->hasTextureAnimations()) add("ANIMATION_TEXTURE", s->getTextureAnimations());
    return out;
}

AnimationFrameworkRef frameworkOf(const Arf& arf, const std::string& type, const std::string& urn) {
    if (AnimationFramework::knows(urn)) return AnimationFramework::create(urn, 0);
    return AnimationFramework::tryCreate(arf, type, urn, 0);
}

// Every float of every set, for comparing two states bit for bit.
std::vector<float> state(const AnimationComponents& c) {
    std::vector<float> all;
    for (long set : c.getBlendshapeSetIds())
        for (float w : c.getBlendshapeWeights(set)) all.push_back(w);
    for (long set : c.getTextureSetIds())
        for (float w : c.getTextureWeights(set)) all.push_back(w);
    for (long skeleton : c.getSkeletonIds())
        for (float m : c.getJointTransforms(skeleton)) all.push_back(m);
    return all;
}

bool sameBits(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0);
}

// A frame with every weight at a point of its range (0 bottom, 1 middle, 2
// top) and every other value filled from the same position.
void fill(AnimationData& frame, const AnimationFramework& framework, int where) {
    for (const auto& [location, input] : framework.getInputs()) {
        auto value = frame.getValue(location);
        if (const auto* w = dynamic_cast<const AnimationWeightInput*>(input.get())) {
            value->data()[0] = where == 0 ? w->min : where == 2 ? w->max : w->min + (w->max - w->min) / 2;
        } else {
            for (long k = 0; k < value->dataCount(); ++k)
                value->data()[k] = (k % 5 == 0) ? 1.0f : static_cast<float>(where) * 0.25f;
        }
    }
}

// The plan and the operators by location from the same start: the same
// failure or none, and the same floats.
void compare(const AnimationMapper& mapper, const AnimationComponents& start, const AnimationData& frame) {
    AnimationComponents planned = start, keyed = start;
    bool plannedFailed = false, keyedFailed = false;
    try {
        mapper.updateComponents(&planned, &frame);
    } catch (const sorvane::RuntimeException&) {
        plannedFailed = true;
    }
    try {
        mapper.updateComponentsKeyed(&keyed, &frame);
    } catch (const sorvane::RuntimeException&) {
        keyedFailed = true;
    }
    check(plannedFailed == keyedFailed);
    const auto a = state(planned), b = state(keyed);
    check(sameBits(a, b));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto* bytes = reinterpret_cast<const char*>(data);
    const auto* zero = static_cast<const char*>(std::memchr(bytes, 0, size));
    const size_t documentSize = zero ? static_cast<size_t>(zero - bytes) : size;
    const std::string document(bytes, documentSize);
    const char* stream = zero ? zero + 1 : bytes + size;
    const size_t streamSize = size - (zero ? documentSize + 1 : size);

    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    try {
        const Arf arf = Arf::load("memory:" + document);
        AnimationComponents start(arf);
        for (const auto& [type, urn] : namedFrameworks(arf)) {
            try {
                const auto framework = frameworkOf(arf, type, urn);
                if (!framework) continue;
                const AnimationMapper mapper(arf, framework);
                mapper.buildDescription();
                auto frame = framework->createData();
                for (int where = 0; where < 3; ++where) {
                    fill(*frame, *framework, where);
                    compare(mapper, start, *frame);
                }
                // Every unit of the stream, fed in small chunks.
                AnimationComponents live = start;
                AnimationSampleStream units(false);
                HeaderAnimationSample header;
                std::unique_ptr<UnitAnimationSample> sample;
                size_t at = 0;
                for (int guard = 0; guard < 4096; ++guard) {
                    if (units.nextUnitSample(header, sample)) {
                        // The plan and the operators by location agree on samples too.
                        AnimationComponents keyed = live;
                        bool planFailed = false, keyedFailed = false;
                        try {
                            mapper.updateComponents(&live, sample.get());
                        } catch (const sorvane::RuntimeException&) {
                            planFailed = true;
                        }
                        try {
                            mapper.updateComponentsKeyed(&keyed, sample.get());
                        } catch (const sorvane::RuntimeException&) {
                            keyedFailed = true;
                        }
                        check(planFailed == keyedFailed);
                        const auto a = state(live), b = state(keyed);
                        check(sameBits(a, b));
                        continue;
                    }
                    if (units.getState() != 1 || at >= streamSize) break;
                    const size_t n = std::min<size_t>(7, streamSize - at);
                    units.feed(stream + at, static_cast<long>(n));
                    at += n;
                }
            } catch (const sorvane::RuntimeException&) {
            }
        }
    } catch (const sorvane::RuntimeException&) {
    }
    std::cerr.rdbuf(old);
    return 0;
}
