#ifndef SORVANE_ARF_NODE_STORAGEMODE_H
#define SORVANE_ARF_NODE_STORAGEMODE_H

#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::arf {

// Where a document lives.
enum StorageMode {
    AUTO = 0,            // decide from the path or the provider
    MULTIPLE_FILES = 1,  // a main JSON file with payload files beside it, on disk
    SINGLE_FILE = 2,     // a zip archive holding "arf.json" and the payloads
    MEMORY_ONLY = 3,     // a memory provider holding "arf.json" and the payloads
};

SORVANE_API StorageMode int2StorageMode(long value);
SORVANE_API const char* storageMode2name(StorageMode mode);
SORVANE_API std::ostream& operator<<(std::ostream& out, StorageMode mode);

} // namespace sorvane::arf

#endif
