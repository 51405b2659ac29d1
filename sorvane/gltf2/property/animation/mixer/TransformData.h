#ifndef SORVANE_GLTF2_PROPERTY_ANIMATION_MIXER_TRANSFORMDATA_H
#define SORVANE_GLTF2_PROPERTY_ANIMATION_MIXER_TRANSFORMDATA_H

#include <cstdint>
#include <ostream>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

enum class TransformType : int32_t { Matrix = 0, STR = 1 };

// How a sample combines with the state: Default looks the path up in the
// mixer's table when the transform is added.
enum class TransformPolicy : int32_t { Default = 0, Replace = 1, Add = 2, Multiply = 3 };

// Maps a time linearly from one interval onto another; the result is not clamped.
struct SORVANE_API RangeConverter {
    float inputStart = 0.0f;
    float inputEnd = 1.0f;
    float outputStart = 0.0f;
    float outputEnd = 1.0f;

    float convert(float t) const {
        return (t - inputStart) / (inputEnd - inputStart) * (outputEnd - outputStart) + outputStart;
    }
};

// The local transform (and morph weights) of one node, as transforms see it.
struct SORVANE_API TransformData {
    bool transformed = false;
    TransformType transformType = TransformType::Matrix;
    float scale[3] = {1, 1, 1};
    float rotation[4] = {0, 0, 0, 1};
    float translation[3] = {0, 0, 0};
    float matrix[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};  // column-major
    bool hasWeights = false;
    std::vector<float> weights;

    explicit TransformData(TransformType type = TransformType::Matrix) : transformType(type) {}

    // Converts between T * R * S and the matrix through the math kernels; a
    // half turn has no STR form ("Invalid matrix transform", a standard error).
    void setTransformType(TransformType type);
    void print(std::ostream& out) const;
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const TransformData& data);

} // namespace sorvane::gltf2

#endif
