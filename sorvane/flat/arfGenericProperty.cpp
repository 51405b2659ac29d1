#include "sorvane/arf/property/GenericProperty.h"
#include "sorvane/arf/property/ObjectItem.h"
#include "sorvane/flat/GenericPropertyFlat.h"
#include "sorvane/sorvane.h"

extern "C" {

SORVANE_FLAT_GENERIC_PROPERTY(arf)

} // extern "C"
