#ifndef SORVANE_ARF_PROPERTY_PROPERTY_H
#define SORVANE_ARF_PROPERTY_PROPERTY_H

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>

#include "sorvane/core/Export.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/Property.h.inl"

} // namespace sorvane::arf

#endif
