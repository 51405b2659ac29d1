#ifndef SORVANE_ARF_PROPERTY_GENERICPROPERTY_H
#define SORVANE_ARF_PROPERTY_GENERICPROPERTY_H

#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/arf/node/AbstractNode.h"
#include "sorvane/arf/property/Property.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/GenericProperty.h.inl"

} // namespace sorvane::arf

#include "sorvane/arf/property/ObjectItem.h"

#endif
