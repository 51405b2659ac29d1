// Arbitrary bytes as a zip archive: written to a temporary file, opened, and
// every entry read in each way a document reads it.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "sorvane/archive/Zip.h"
#include "sorvane/core/RuntimeException.h"

namespace {

const std::string& scratchPath() {
    static const std::string path = [] {
        char name[] = "/tmp/talvex_zip_open_XXXXXX";
        const int fd = mkstemp(name);
        if (fd < 0) std::abort();
        ::close(fd);
        return std::string(name);
    }();
    return path;
}

void readEntry(const sorvane::archive::Zip& zip, const std::string& name) {
    zip.exists(name);
    const int64_t size = zip.getDataSize(name);
    std::vector<unsigned char> buffer(static_cast<size_t>(size));
    zip.getData(buffer.data(), size, name, 0);
    if (size > 1) zip.getData(buffer.data(), size, name, size / 2);
    zip.getString(name, 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string& path = scratchPath();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return 0;
    if (size) std::fwrite(data, 1, size, file);
    std::fclose(file);
    try {
        sorvane::archive::Zip zip = sorvane::archive::Zip::open(path);
        for (const std::string& name : zip.getAllNames()) {
            try {
                readEntry(zip, name);
            } catch (const sorvane::RuntimeException&) {
            }
        }
        zip.close();
    } catch (const sorvane::RuntimeException&) {
    }
    return 0;
}
