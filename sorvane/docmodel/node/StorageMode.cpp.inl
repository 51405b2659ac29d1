// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

StorageMode int2StorageMode(long value) {
    if (value < AUTO || value > MEMORY_ONLY)
        SORVANE_THROW("Invalid or unsupported storageMode type %d", static_cast<int>(value));
    return static_cast<StorageMode>(value);
}

const char* storageMode2name(StorageMode mode) {
    switch (mode) {
    case AUTO: return "AUTO";
    case MULTIPLE_FILES: return "MULTIPLE_FILES";
    case SINGLE_FILE: return "SINGLE_FILE";
    case MEMORY_ONLY: return "MEMORY_ONLY";
    }
    SORVANE_THROW("Invalid or unsupported storageMode type %d", static_cast<int>(mode));
}

std::ostream& operator<<(std::ostream& out, StorageMode mode) {
    switch (mode) {
    case AUTO:
    case MULTIPLE_FILES:
    case SINGLE_FILE:
    case MEMORY_ONLY: return out << storageMode2name(mode);
    }
    return out << "Invalid";
}
