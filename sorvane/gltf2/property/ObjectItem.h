#ifndef SORVANE_GLTF2_PROPERTY_OBJECTITEM_H
#define SORVANE_GLTF2_PROPERTY_OBJECTITEM_H

#include <cstdint>
#include <memory>
#include <string>

#include "sorvane/gltf2/node/AbstractNode.h"
#include "sorvane/gltf2/property/Property.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/ObjectItem.h.inl"

} // namespace sorvane::gltf2

#include "sorvane/gltf2/property/GenericProperty.h"

#endif
