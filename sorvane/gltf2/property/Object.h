#ifndef SORVANE_GLTF2_PROPERTY_OBJECT_H
#define SORVANE_GLTF2_PROPERTY_OBJECT_H

#include "sorvane/gltf2/property/GenericProperty.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/Object.h.inl"

} // namespace sorvane::gltf2

#endif
