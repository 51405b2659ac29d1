#ifndef SORVANE_ARF_PROPERTY_OBJECTITEM_H
#define SORVANE_ARF_PROPERTY_OBJECTITEM_H

#include <cstdint>
#include <memory>
#include <string>

#include "sorvane/arf/node/AbstractNode.h"
#include "sorvane/arf/property/Property.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/ObjectItem.h.inl"

} // namespace sorvane::arf

#include "sorvane/arf/property/GenericProperty.h"

#endif
