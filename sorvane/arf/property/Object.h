#ifndef SORVANE_ARF_PROPERTY_OBJECT_H
#define SORVANE_ARF_PROPERTY_OBJECT_H

#include "sorvane/arf/property/GenericProperty.h"

namespace sorvane::arf {

#include "sorvane/docmodel/property/Object.h.inl"

} // namespace sorvane::arf

#endif
