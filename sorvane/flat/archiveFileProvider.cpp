// Flat interface of the file providers.
#include <memory>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/FileProviderRef.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/RelativeFileProvider.h"
#include "sorvane/archive/Zip.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_archive.h"

using sorvane::archive::FileProviderRef;
namespace flat = sorvane::flat;
namespace archive = sorvane::archive;

namespace {

constexpr const char* kNull = "instancePtr_ is NULL";

// Hands a new handle out through `out`, written only once it exists.
template <class Make>
int32_t make(FileProviderRef** out, Make&& makeProvider) {
    if (!out) return flat::fail("out is NULL");
    return flat::guard([&] {
        auto handle = std::make_unique<FileProviderRef>(makeProvider());
        *out = handle.release();
    });
}

} // namespace

extern "C" {

int32_t sorvane_archive_FileProvider_createMemory(FileProviderRef** out) {
    return make(out, [] { return std::make_shared<archive::MemoryFileProvider>(); });
}

int32_t sorvane_archive_FileProvider_createDisk(FileProviderRef** out, const char* dir) {
    return make(out, [&] { return std::make_shared<archive::DiskFileProvider>(flat::str(dir)); });
}

int32_t sorvane_archive_FileProvider_createRelative(FileProviderRef** out, FileProviderRef* parent, const char* dir) {
    if (!parent) return flat::fail(kNull);
    return make(out, [&] { return std::make_shared<archive::RelativeFileProvider>(parent->get(), flat::str(dir)); });
}

int32_t sorvane_archive_FileProvider_createZip(FileProviderRef** out, const char* path) {
    return make(out, [&] { return archive::Zip::createShared(flat::str(path)); });
}

int32_t sorvane_archive_FileProvider_delete(FileProviderRef* handle) {
    return flat::destroy(kNull, handle);
}

int32_t sorvane_archive_FileProvider_className(char* out, int64_t* outSize, FileProviderRef* handle) {
    return flat::text(out, outSize, kNull, handle, [](FileProviderRef& self) { return self.className(); });
}

int32_t sorvane_archive_FileProvider_getMainDir(char* out, int64_t* outSize, FileProviderRef* handle) {
    return flat::text(out, outSize, kNull, handle, [](FileProviderRef& self) { return self.getMainDir(); });
}

int32_t sorvane_archive_FileProvider_close(FileProviderRef* handle) {
    return flat::call(kNull, handle, [](FileProviderRef& self) { self.close(); });
}

int32_t sorvane_archive_FileProvider_exists(bool* out, FileProviderRef* handle, const char* name) {
    return flat::get(out, kNull, handle, [&](FileProviderRef& self) { return self.exists(flat::str(name)); });
}

int32_t sorvane_archive_FileProvider_getDataSize(int64_t* out, FileProviderRef* handle, const char* name) {
    return flat::get(out, kNull, handle, [&](FileProviderRef& self) { return self.getDataSize(flat::str(name)); });
}

int32_t sorvane_archive_FileProvider_getData(void* out, int64_t* outSize, FileProviderRef* handle, const char* name,
                                             int64_t offset) {
    if (!handle) return flat::fail(kNull);
    if (!outSize) return flat::fail("poutSize is NULL");
    int64_t size = 0;
    if (flat::guard([&] { size = handle->getData(out, *outSize, flat::str(name), offset); }) != 0) return -1;
    *outSize = size;
    return 0;
}

int32_t sorvane_archive_FileProvider_getString(char* out, int64_t* outSize, FileProviderRef* handle, const char* name,
                                               int64_t offset) {
    return flat::text(out, outSize, kNull, handle,
                      [&](FileProviderRef& self) { return self.getString(flat::str(name), offset); });
}

int32_t sorvane_archive_FileProvider_create(FileProviderRef* handle, const char* name, const void* buffer,
                                            int64_t size) {
    if (!handle) return flat::fail(kNull);
    if (!buffer) return flat::fail("buffer is NULL");
    return flat::guard([&] { handle->create(flat::str(name), buffer, size); });
}

int32_t sorvane_archive_FileProvider_createFromFile(FileProviderRef* handle, const char* name, const char* path,
                                                    bool overwrite) {
    return flat::call(kNull, handle, [&](FileProviderRef& self) {
        self.createFromFile(flat::str(name), flat::str(path), overwrite);
    });
}

} // extern "C"
