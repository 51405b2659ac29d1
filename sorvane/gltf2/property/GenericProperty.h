#ifndef SORVANE_GLTF2_PROPERTY_GENERICPROPERTY_H
#define SORVANE_GLTF2_PROPERTY_GENERICPROPERTY_H

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/gltf2/node/AbstractNode.h"
#include "sorvane/gltf2/property/Property.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/GenericProperty.h.inl"

} // namespace sorvane::gltf2

#include "sorvane/gltf2/property/ObjectItem.h"

#endif
