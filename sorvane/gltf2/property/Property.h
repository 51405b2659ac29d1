#ifndef SORVANE_GLTF2_PROPERTY_PROPERTY_H
#define SORVANE_GLTF2_PROPERTY_PROPERTY_H

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/property/Property.h.inl"

} // namespace sorvane::gltf2

#endif
