#include "sorvane/gltf2/property/animation/mixer/Transform.h"

#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/math.h"

namespace sorvane::gltf2 {

Transform::~Transform() = default;

void Transform::sample(float* out, long outSize) const {
    if (!time) SORVANE_THROW("No time");
    const float t = rangeConverter ? rangeConverter->convert(*time) : *time;
    processor.getSample(out, outSize, t);
}

void Transform::combine(float* data, const float* s, long count) const {
    switch (policy) {
    case TransformPolicy::Replace:
        for (long i = 0; i < count; ++i) data[i] = s[i];
        break;
    case TransformPolicy::Add:
        for (long i = 0; i < count; ++i) data[i] += s[i];
        break;
    case TransformPolicy::Multiply:
        for (long i = 0; i < count; ++i) data[i] *= s[i];
        break;
    default: SORVANE_THROW("Invalid or unsupported policy");
    }
}

void MatrixTransform::apply(TransformData& data) const {
    data.transformed = true;
    data.setTransformType(TransformType::Matrix);
    float s[16];
    sample(s, 16);
    if (policy == TransformPolicy::Multiply) {
        matrix4x4_mul_float(data.matrix, s, data.matrix, MATRIX4X4_COLUMN_MAJOR);
        return;
    }
    combine(data.matrix, s, 16);
}

void ScaleTransform::apply(TransformData& data) const {
    data.transformed = true;
    data.setTransformType(TransformType::STR);
    float s[3];
    sample(s, 3);
    combine(data.scale, s, 3);
}

void RotationTransform::apply(TransformData& data) const {
    data.transformed = true;
    data.setTransformType(TransformType::STR);
    float s[4];
    sample(s, 4);
    if (policy != TransformPolicy::Multiply) {
        combine(data.rotation, s, 4);  // Add leaves the unit sphere as it may
        return;
    }
    // Hamilton product s * r, the sample on the left.
    const float* r = data.rotation;
    const float x = s[3] * r[0] + s[0] * r[3] + s[1] * r[2] - s[2] * r[1];
    const float y = s[3] * r[1] - s[0] * r[2] + s[1] * r[3] + s[2] * r[0];
    const float z = s[3] * r[2] + s[0] * r[1] - s[1] * r[0] + s[2] * r[3];
    const float w = s[3] * r[3] - s[0] * r[0] - s[1] * r[1] - s[2] * r[2];
    data.rotation[0] = x, data.rotation[1] = y, data.rotation[2] = z, data.rotation[3] = w;
}

void TranslationTransform::apply(TransformData& data) const {
    data.transformed = true;
    data.setTransformType(TransformType::STR);
    float s[3];
    sample(s, 3);
    combine(data.translation, s, 3);
}

void WeightsTransform::apply(TransformData& data) const {
    if (!data.hasWeights) {
        data.hasWeights = true;
        data.weights.assign(static_cast<size_t>(processor.valueSize), 0.0f);
    }
    // A longer vector combines its tail with zeros; a shorter one is refused
    // by the sampler ("Out is too small").
    std::vector<float> s(data.weights.size(), 0.0f);
    sample(s.data(), static_cast<long>(s.size()));
    combine(data.weights.data(), s.data(), static_cast<long>(s.size()));
}

std::ostream& operator<<(std::ostream& out, const Transform& transform) {
    return out << transform.animationName << ": " << transform.name() << "\n";
}

} // namespace sorvane::gltf2
