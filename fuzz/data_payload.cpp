// Arbitrary bytes read as a dense and as a sparse payload: straight through
// the decoders, and as a data item of a memory document, both through the
// tensor read, the compact column read and the two-pass read into a buffer
// of the announced size.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/format/dense.h"
#include "sorvane/arf/node/data/DataContent.h"
#include "sorvane/core/RuntimeException.h"

namespace {

using namespace sorvane::arf;

// Caps what the two-pass read allocates; the decoders refuse larger
// payload claims themselves.
constexpr int64_t kMaxOutput = 1 << 24;

void readItem(const Data& item) {
    try {
        item.getTensor();
    } catch (const sorvane::RuntimeException&) {
    }
    try {
        item.getColSparseTensor(0, 64, true);
    } catch (const sorvane::RuntimeException&) {
    }
    try {
        std::vector<long> sizes;
        DataDType dtype = DATA_DTYPE_NONE;
        const int64_t bytes = item.getTensorData(sizes, dtype, nullptr, 0);
        if (bytes >= 0 && bytes <= kMaxOutput) {
            std::vector<uint8_t> out(static_cast<size_t>(bytes) + 1);
            item.getTensorData(sizes, dtype, out.data(), bytes);
        }
    } catch (const sorvane::RuntimeException&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    for (const char* type : {kDenseMimeType, kSparseMimeType}) {
        try {
            sorvane::BitBuffer buffer;
            buffer.feed(data, static_cast<long>(size));
            DataContent::decodeTensor(type, buffer);
        } catch (const sorvane::RuntimeException&) {
        }
    }
    Arf arf = Arf::create("memory:");
    const uint8_t none = 0;
    const void* bytes = size ? static_cast<const void*>(data) : &none;
    readItem(arf.data.addContent(bytes, static_cast<int64_t>(size), false, kDenseMimeType));
    readItem(arf.data.addContent(bytes, static_cast<int64_t>(size), false, kSparseMimeType));
    readItem(arf.data.addContent(bytes, static_cast<int64_t>(size), true, kSparseMimeType));
    return 0;
}
