#include <filesystem>

#include "sorvane/archive/FileProviderRef.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::arf::Arf;

namespace {
constexpr const char* kNull = "arf is NULL";
}

extern "C" {

int32_t sorvane_arf_Arf_create(sorvane_arf_Arf** out, const char* path) {
    if (!out) return flat::fail("out is NULL");
    return flat::guard([&] { *out = Arf::createPtr(flat::str(path)); });
}

int32_t sorvane_arf_Arf_load(sorvane_arf_Arf** out, const char* path, bool readOnly) {
    if (!out) return flat::fail("out is NULL");
    return flat::guard([&] { *out = Arf::loadPtr(flat::str(path), readOnly); });
}

int32_t sorvane_arf_Arf_loadProvider(sorvane_arf_Arf** out, sorvane_archive_FileProviderRef* provider,
                                     const char* name, int mode, bool readOnly) {
    if (!out) return flat::fail("out is NULL");
    if (!provider) return flat::fail("instancePtr_ is NULL");
    return flat::guard([&] {
        *out = Arf::loadPtr(provider->get(), flat::str(name), sorvane::arf::int2StorageMode(mode), readOnly);
    });
}

int32_t sorvane_arf_Arf_close(sorvane_arf_Arf* self) {
    return flat::call(kNull, self, [](Arf& arf) { arf.close(); });
}

int32_t sorvane_arf_Arf_delete(sorvane_arf_Arf* self) { return flat::destroy(kNull, self); }

int32_t sorvane_arf_Arf_getMainDir(char* out, int64_t* outSize, sorvane_arf_Arf* self) {
    return flat::text(out, outSize, kNull, self, [](Arf& arf) { return arf.getMainDir(); });
}

int32_t sorvane_arf_Arf_getMainFileName(char* out, int64_t* outSize, sorvane_arf_Arf* self) {
    return flat::text(out, outSize, kNull, self, [](Arf& arf) { return arf.getMainFileName(); });
}

int32_t sorvane_arf_Arf_toJsonString(char* out, int64_t* outSize, sorvane_arf_Arf* self) {
    return flat::text(out, outSize, kNull, self, [](Arf& arf) { return arf.toJsonString(); });
}

int32_t sorvane_arf_Arf_getPreamble(sorvane_arf_Preamble** out, sorvane_arf_Arf* self) {
    return flat::get(out, kNull, self, [](Arf& arf) { return arf.preamble.getPtr(); });
}

int32_t sorvane_arf_Arf_getIdentity(sorvane_arf_Identity** out, sorvane_arf_Arf* self) {
    return flat::get(out, kNull, self, [](Arf& arf) { return arf.identity.getPtr(); });
}

int32_t sorvane_arf_Arf_getStructure(sorvane_arf_Structure** out, sorvane_arf_Arf* self) {
    return flat::get(out, kNull, self, [](Arf& arf) { return arf.structure.getPtr(); });
}

int32_t sorvane_arf_Arf_getComponents(sorvane_arf_Components** out, sorvane_arf_Arf* self) {
    return flat::get(out, kNull, self, [](Arf& arf) { return arf.components.getPtr(); });
}

int32_t sorvane_arf_Arf_getData(sorvane_arf_DataList** out, sorvane_arf_Arf* self) {
    return flat::get(out, kNull, self, [](Arf& arf) { return arf.data.getPtr(); });
}

int32_t sorvane_arf_Arf_getFileProvider(sorvane_archive_FileProviderRef** out, sorvane_arf_Arf* self) {
    return flat::get(out, kNull, self,
                     [](Arf& arf) { return new sorvane::archive::FileProviderRef(arf.getFileProvider()); });
}

} // extern "C"
