#include "sorvane/arf/node/components/NodeNodeBase.h"

#include "sorvane/arf/node/components/NodeNode.h"
#include "sorvane/core/math.h"

namespace sorvane::arf {

namespace {

// The first `needed` values of a member; a shorter list would be read past its end.
const double* valuesOf(const NodeNode& node, const std::vector<double>& values, size_t needed, const char* key) {
    if (values.size() < needed)
        SORVANE_THROW("Getting transform for %s: Invalid size %ld of %s", node.getNodePath().c_str(),
                      static_cast<long>(values.size()), key);
    return values.data();
}

} // namespace

std::vector<double> NodeNodeBase::getTransformMatrix() const {
    const NodeNode& node = static_cast<const NodeNode&>(*this);
    if (node.hasTransform()) {
        if (node.hasScale() || node.hasRotation() || node.hasTranslation())
            SORVANE_THROW("Getting transform for %s: There is both transform and rotation, translation or scale",
                          node.getNodePath().c_str());
        return node.getTransform();
    }
    std::vector<double> m(16);
    matrix4x4_init_double(m.data());
    if (node.hasTranslation())
        matrix4x4_translation_lmul_double(m.data(), valuesOf(node, node.getTranslation(), 3, "translation"));
    if (node.hasRotation())
        matrix4x4_quaternion_lmul_double(m.data(), valuesOf(node, node.getRotation(), 4, "rotation"));
    if (node.hasScale())
        matrix4x4_scale_lmul_double(m.data(), valuesOf(node, node.getScale(), 3, "scale"));
    return m;
}

} // namespace sorvane::arf
