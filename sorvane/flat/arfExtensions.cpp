#include "sorvane/arf/ArfCopy.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::arf::Arf;

namespace {
constexpr const char* kNull = "arf is NULL";
}

extern "C" {

int32_t sorvane_arf_Arf_save(sorvane_arf_Arf* self) {
    return flat::call(kNull, self, [&](Arf& arf) {
        // Arf::save leaves read-only to the storage (only an archive refuses);
        // through this call a read-only document never writes, whatever its mode.
        if (arf.isReadOnly())
            SORVANE_THROW("Saving %s: Forbidden, read-only document", arf.getMainFileName().c_str());
        arf.save();
    });
}

int32_t sorvane_arf_Arf_saveAs(sorvane_arf_Arf* self, const char* path) {
    return flat::call(kNull, self, [&](Arf& arf) { sorvane::arf::saveArfAs(arf, flat::str(path)); });
}

} // extern "C"
