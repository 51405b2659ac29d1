#ifndef SORVANE_GLTF2_PROPERTY_GENERICNODES_H
#define SORVANE_GLTF2_PROPERTY_GENERICNODES_H

#include <memory>
#include <string>

#include "sorvane/gltf2/node/AbstractNode.h"

// Internal helpers of the generic accessors (GenericProperty, ObjectItem):
// copying generic values and storing them in generic containers so that
// whatever is stored can be read back from JSON.

namespace sorvane::gltf2::detail {

#include "sorvane/docmodel/property/GenericNodes.h.inl"

} // namespace sorvane::gltf2::detail

#endif
