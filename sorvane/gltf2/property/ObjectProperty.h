#ifndef SORVANE_GLTF2_PROPERTY_OBJECTPROPERTY_H
#define SORVANE_GLTF2_PROPERTY_OBJECTPROPERTY_H

#include <cstring>
#include <memory>
#include <string>

#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/property/Property.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/ObjectProperty.h.inl"

} // namespace sorvane::gltf2

#endif
