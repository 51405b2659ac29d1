// A libFuzzer custom mutator for .glb input: after the usual mutation, the
// header's total length is set to the input's size and each chunk length is
// cut to what is left, so that mutations reach the JSON and BIN contents
// instead of stopping at the length checks. One run in four keeps the
// mutated lengths.
#ifndef TALVEX_FUZZ_MUTATORS_GLBCHUNKS_H
#define TALVEX_FUZZ_MUTATORS_GLBCHUNKS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace talvex_fuzz {

inline uint32_t readLe32(const uint8_t* p) {
    return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}

inline void writeLe32(uint8_t* p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = uint8_t(v >> (8 * i));
}

inline void fixGlbLengths(uint8_t* data, size_t size) {
    if (size < 12 || std::memcmp(data, "glTF", 4) != 0 || size > 0xffffffffu) return;
    writeLe32(data + 8, uint32_t(size));
    size_t at = 12;
    while (at + 8 <= size) {
        const size_t left = size - at - 8;
        uint32_t length = readLe32(data + at);
        if (length > left) {
            length = uint32_t(left);
            writeLe32(data + at, length);
        }
        at += 8 + size_t(length);
    }
}

} // namespace talvex_fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
    size = LLVMFuzzerMutate(data, size, maxSize);
    if (seed % 4 != 0) talvex_fuzz::fixGlbLengths(data, size);
    return size;
}

#endif
