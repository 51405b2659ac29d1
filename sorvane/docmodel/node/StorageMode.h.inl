// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

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
