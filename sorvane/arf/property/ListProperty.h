#ifndef SORVANE_ARF_PROPERTY_LISTPROPERTY_H
#define SORVANE_ARF_PROPERTY_LISTPROPERTY_H

#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "sorvane/arf/node/AbstractNode.h"
#include "sorvane/arf/property/Property.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/ListProperty.h.inl"

} // namespace sorvane::arf

#endif
