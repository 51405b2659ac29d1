#include "sorvane/arf/animation/data/AnimationData.h"

#include <cstring>
#include <ostream>

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

// count * size > bytes, computed without overflow for any operands.
bool exceeds(long count, long size, long bytes) {
    return static_cast<__int128>(count) * size > static_cast<__int128>(bytes);
}

} // namespace

AnimationData::AnimationData() = default;
AnimationData::~AnimationData() = default;

AnimationData::AnimationData(ValueMap values_) : values(std::move(values_)) {
    ordered.reserve(values.size());
    offsets.reserve(values.size());
    for (auto& [location, value] : values) {
        if (!value) SORVANE_THROW("Value at %s is NULL", location.desc().c_str());
        ordered.push_back(value.get());
        offsets.push_back(floatCount);
        floatCount += value->dataCount();
        allWeights = allWeights && value->getType() == ANIMATION_VALUE_WEIGHT && value->dataCount() == 1;
        allTransforms = allTransforms && value->getType() == ANIMATION_VALUE_TRANSFORM && value->dataCount() == 16;
    }
    block = std::shared_ptr<float[]>(new float[static_cast<size_t>(floatCount > 0 ? floatCount : 1)]());
    for (size_t i = 0; i < ordered.size(); ++i) ordered[i]->bindStorage(block.get() + offsets[i], block);
}

std::shared_ptr<AnimationValue> AnimationData::getValue(const AnimationLocation& location) {
    auto it = values.find(location);
    if (it == values.end()) throw AnimationValueNotFound(location);
    return it->second;
}

std::shared_ptr<const AnimationValue> AnimationData::getValue(const AnimationLocation& location) const {
    auto it = values.find(location);
    if (it == values.end()) throw AnimationValueNotFound(location);
    return it->second;
}

long AnimationData::getWeights(void* out, long outSize) const {
    const long count = getValueCount();
    if (!out) return count;
    if (outSize < 0 || exceeds(count, 4, outSize)) SORVANE_THROW("out too small");
    if (allWeights) {
        if (count > 0) std::memcpy(out, block.get(), static_cast<size_t>(count) * sizeof(float));
        return count;
    }
    float* o = static_cast<float*>(out);
    for (long i = 0; i < count; ++i) {
        const AnimationValue* v = ordered[static_cast<size_t>(i)];
        if (v->getType() != ANIMATION_VALUE_WEIGHT)
            SORVANE_THROW("Value for index %ld is not a weight (type %ld)", i, static_cast<long>(v->getType()));
        o[i] = v->data()[0];
    }
    return count;
}

void AnimationData::setWeights(const void* in, long inSize, long count) {
    // A null buffer holds nothing, whatever size comes with it.
    if (exceeds(count, 4, in ? inSize : 0)) SORVANE_THROW("data too small");
    const long n = getValueCount();
    if (count != n) SORVANE_THROW("Invalid number of weights %ld expect %ld", count, n);
    if (allWeights) {
        if (n > 0) std::memcpy(block.get(), in, static_cast<size_t>(n) * sizeof(float));
        return;
    }
    const float* w = static_cast<const float*>(in);
    for (long i = 0; i < n; ++i) {
        AnimationValue* v = ordered[static_cast<size_t>(i)];
        if (v->getType() != ANIMATION_VALUE_WEIGHT)
            SORVANE_THROW("Value for weight #%ld is not a weight (type %ld)", i, static_cast<long>(v->getType()));
        v->data()[0] = w[i];
    }
}

void AnimationData::setWeights(const std::vector<float>& weights) {
    setWeights(weights.data(), static_cast<long>(weights.size() * sizeof(float)), static_cast<long>(weights.size()));
}

std::vector<float> AnimationData::getWeights() const {
    std::vector<float> out(static_cast<size_t>(getValueCount()));
    getWeights(out.data(), static_cast<long>(out.size() * sizeof(float)));
    return out;
}

long AnimationData::getTransforms(void* out, long outSize) const {
    const long count = getValueCount();
    if (!out) return count;
    if (outSize < 0 || exceeds(count, 64, outSize)) SORVANE_THROW("out too small");
    if (allTransforms) {
        if (count > 0) std::memcpy(out, block.get(), static_cast<size_t>(count) * 64);
        return count;
    }
    float* o = static_cast<float*>(out);
    for (long i = 0; i < count; ++i) {
        const AnimationValue* v = ordered[static_cast<size_t>(i)];
        if (v->getType() != ANIMATION_VALUE_TRANSFORM)
            SORVANE_THROW("Value for index %ld is not a transform (type %ld)", i, static_cast<long>(v->getType()));
        std::memcpy(o + i * 16, v->data(), 64);
    }
    return count;
}

void AnimationData::setTransforms(const void* in, long inSize, long count) {
    if (exceeds(count, 4, in ? inSize : 0)) SORVANE_THROW("data too small");
    const long n = getValueCount();
    // Each value takes 16 floats: fewer than that for all of them is refused
    // before anything is written, rather than read past the caller's floats.
    if (exceeds(n, 16, count)) SORVANE_THROW("data too small");
    if (allTransforms) {
        if (n > 0) std::memcpy(block.get(), in, static_cast<size_t>(n) * 64);
        return;
    }
    const float* t = static_cast<const float*>(in);
    for (long i = 0; i < n; ++i) {
        AnimationValue* v = ordered[static_cast<size_t>(i)];
        if (v->getType() != ANIMATION_VALUE_TRANSFORM)
            SORVANE_THROW("Value for index %ld is not a transform (type %ld)", i, static_cast<long>(v->getType()));
        std::memcpy(v->data(), t + i * 16, 64);
    }
}

void AnimationData::setTransforms(const std::vector<float>& transforms) {
    setTransforms(transforms.data(), static_cast<long>(transforms.size() * sizeof(float)),
                  static_cast<long>(transforms.size()));
}

std::vector<float> AnimationData::getTransforms() const {
    std::vector<float> out(static_cast<size_t>(getValueCount()) * 16);
    getTransforms(out.data(), static_cast<long>(out.size() * sizeof(float)));
    return out;
}

std::ostream& operator<<(std::ostream& out, const AnimationData& data) {
    for (const auto& [location, value] : data.getValues()) out << location << ": " << *value << "\n";
    return out;
}

} // namespace sorvane::arf
