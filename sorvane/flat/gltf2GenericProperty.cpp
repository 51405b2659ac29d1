#include "sorvane/flat/GenericPropertyFlat.h"
#include "sorvane/gltf2/property/GenericProperty.h"
#include "sorvane/gltf2/property/ObjectItem.h"
#include "sorvane/sorvane.h"

extern "C" {

SORVANE_FLAT_GENERIC_PROPERTY(gltf2)

} // extern "C"
