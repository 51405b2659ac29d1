#ifndef SORVANE_ARF_PROPERTY_OBJECTPROPERTY_H
#define SORVANE_ARF_PROPERTY_OBJECTPROPERTY_H

#include <cstring>
#include <memory>
#include <string>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/property/Property.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/ObjectProperty.h.inl"

} // namespace sorvane::arf

#endif
