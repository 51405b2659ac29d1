// A libFuzzer custom mutator for PNG input: after the usual mutation, the CRC
// of every whole chunk is computed again, so that the decoder gets past its
// checksum test and the mutation reaches the chunk's contents. One run in
// four keeps the mutated CRCs, so bad checksums stay covered too.
#ifndef TALVEX_FUZZ_MUTATORS_PNGCHUNKS_H
#define TALVEX_FUZZ_MUTATORS_PNGCHUNKS_H

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t* data, size_t size, size_t maxSize);

namespace talvex_fuzz {

inline uint32_t pngCrc(const uint8_t* p, size_t n) {
    uint32_t crc = 0xffffffffu;
    for (size_t i = 0; i < n; ++i) {
        crc ^= p[i];
        for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return crc ^ 0xffffffffu;
}

inline void fixPngCrcs(uint8_t* data, size_t size) {
    static const uint8_t signature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    if (size < 8 || std::memcmp(data, signature, 8) != 0) return;
    size_t at = 8;
    while (at + 12 <= size) {
        const uint32_t length = (uint32_t(data[at]) << 24) | (uint32_t(data[at + 1]) << 16) |
                                (uint32_t(data[at + 2]) << 8) | uint32_t(data[at + 3]);
        if (length > size - at - 12) break;
        const uint32_t crc = pngCrc(data + at + 4, 4 + size_t(length));
        uint8_t* out = data + at + 8 + length;
        out[0] = uint8_t(crc >> 24);
        out[1] = uint8_t(crc >> 16);
        out[2] = uint8_t(crc >> 8);
        out[3] = uint8_t(crc);
        at += 12 + size_t(length);
    }
}

} // namespace talvex_fuzz

extern "C" size_t LLVMFuzzerCustomMutator(uint8_t* data, size_t size, size_t maxSize, unsigned int seed) {
    size = LLVMFuzzerMutate(data, size, maxSize);
    if (seed % 4 != 0) talvex_fuzz::fixPngCrcs(data, size);
    return size;
}

#endif
