#include "sorvane/gltf2/property/animation/mixer/TransformData.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/math.h"

namespace sorvane::gltf2 {

namespace {

bool known(TransformType type) { return type == TransformType::Matrix || type == TransformType::STR; }

void printValues(std::ostream& out, const float* values, size_t count) {
    for (size_t i = 0; i < count; ++i) out << (i ? " " : "") << values[i];
}

} // namespace

void TransformData::setTransformType(TransformType type) {
    if (type == transformType) return;
    if (!known(transformType)) SORVANE_THROW("Invalid or unsupported transform type");
    if (transformType == TransformType::STR && type == TransformType::Matrix) {
        srt2matrix4x4_float(matrix, scale, rotation, translation, MATRIX4X4_COLUMN_MAJOR);
    } else if (transformType == TransformType::Matrix && type == TransformType::STR) {
        matrix4x42srt_float(scale, rotation, translation, matrix, MATRIX4X4_COLUMN_MAJOR);
    } else {
        SORVANE_THROW("Invalid or unsupported transform type conversion");
    }
    transformType = type;
}

void TransformData::print(std::ostream& out) const {
    out << "TransformData(";
    if (transformed) {
        out << "transform:";
        if (transformType == TransformType::Matrix) {
            out << "Matrix=\n";
            // Rows of the column-major matrix.
            for (int r = 0; r < 4; ++r) {
                out << "    ";
                for (int c = 0; c < 4; ++c) out << (c ? " " : "") << matrix[c * 4 + r];
                out << "\n";
            }
        } else if (transformType == TransformType::STR) {
            out << "STR=\n    scale=";
            printValues(out, scale, 3);
            out << "\n    rotation=";
            printValues(out, rotation, 4);
            out << "\n    translation=";
            printValues(out, translation, 3);
            out << "\n";
        } else {
            out << "?";
        }
    }
    if (hasWeights) {
        out << "weights=";
        printValues(out, weights.data(), weights.size());
    }
    out << ")";
}

std::ostream& operator<<(std::ostream& out, const TransformData& data) {
    data.print(out);
    return out;
}

} // namespace sorvane::gltf2
