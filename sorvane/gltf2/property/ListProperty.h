#ifndef SORVANE_GLTF2_PROPERTY_LISTPROPERTY_H
#define SORVANE_GLTF2_PROPERTY_LISTPROPERTY_H

#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/gltf2/property/Property.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/ListProperty.h.inl"

} // namespace sorvane::gltf2

#endif
