#ifndef SORVANE_ARCHIVE_BITBUFFER_H
#define SORVANE_ARCHIVE_BITBUFFER_H

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane {

// Bit-exact reader and writer over one byte vector. Bits are taken most
// significant first inside each byte; the byte order flag only decides
// whether multi-byte values are swapped on the way in and out.
//
// Reads and writes report exhausted input or a bad count by returning false
// and never throw; only feed and flush do.
class SORVANE_API BitBuffer {
public:
    BitBuffer() = default;

    void setBigEndian(bool value) { bigEndian = value ? 1 : 0; }
    bool isBigEndian() const { return bigEndian != 0; }

    long getBitSize() const { return bitSize; }
    long getReadPos() const { return readPos; }
    long bitsLeft() const { return bitSize - readPos; }
    // The stored bytes (at least the valid ones), as a copy and in place.
    std::vector<uint8_t> getBytes() const { return std::vector<uint8_t>(bytes.begin() + static_cast<std::ptrdiff_t>(base), bytes.end()); }
    const uint8_t* data() const { return bytes.data() + base; }
    long storedSize() const { return static_cast<long>(bytes.size() - base); }
    // Empties the buffer and keeps its memory for reuse; the byte order stays.
    void clear();

    // Byte level: append whole bytes, take whole bytes out.
    void feed(const void* buffer, long size);
    void feed(const std::vector<uint8_t>& buffer);
    long flush(void* out, long size);
    std::vector<uint8_t> flushBytes();
    void clearRead();

    // Reading.
    bool readBits(long count, unsigned long& out);
    template <class T>
    bool read(T& out);
    bool readBool(bool& out);
    bool readFloat(float& out);
    bool readDouble(double& out);
    bool readBytes(void* out, long size);
    // count floats read as readFloat does, a whole block at once when aligned.
    bool readFloats(float* out, long count);

    // Writing.
    void ensureWriteCapacity(long bits);
    bool writeBits(unsigned long value, long count);
    template <class T>
    bool write(T value);
    bool writeFloat(float value);
    bool writeDouble(double value);
    bool writeBytes(const void* in, long size);
    // count floats written as writeFloat does, a whole block at once when aligned.
    bool writeFloats(const float* in, long count);

    // Direct access for codecs that lay down whole aligned fields at once.
    // readBlock: when the read position is on a byte boundary and size bytes
    // are there, returns them and moves past; else null and nothing moves.
    // writeBlock: when the write position is on a byte boundary, makes room for
    // size bytes behind it and returns them for the caller to fill; else null.
    const uint8_t* readBlock(long size);
    uint8_t* writeBlock(long size);

protected:
    std::vector<uint8_t> bytes;
    int32_t bigEndian = 0;
    int64_t bitSize = 0;
    int64_t readPos = 0;
    // Where the stored bytes begin in bytes: clearRead moves it forward and
    // compacts only now and then, so that dropping the read bytes of every
    // unit costs no copy of the rest each time.
    size_t base = 0;
};

namespace detail {

inline uint16_t swapBytes(uint16_t v) { return __builtin_bswap16(v); }
inline uint32_t swapBytes(uint32_t v) { return __builtin_bswap32(v); }
inline uint64_t swapBytes(uint64_t v) { return __builtin_bswap64(v); }
inline uint8_t swapBytes(uint8_t v) { return v; }

template <size_t N>
struct UnsignedOfSize;
template <>
struct UnsignedOfSize<1> { using type = uint8_t; };
template <>
struct UnsignedOfSize<2> { using type = uint16_t; };
template <>
struct UnsignedOfSize<4> { using type = uint32_t; };
template <>
struct UnsignedOfSize<8> { using type = uint64_t; };

} // namespace detail

inline bool BitBuffer::readBits(long count, unsigned long& out) {
    if (count == 0 || count > 64) return false;
    if (count > bitSize - readPos) return false;
    if (count < 0) {
        out = 0;
        return true;
    }
    // Gather the (at most nine) bytes that hold the field into one word, the
    // first bit at the top, then shift the field down.
    const size_t index = static_cast<size_t>(readPos >> 3);
    const unsigned offset = static_cast<unsigned>(readPos & 7);
    const size_t needed = (offset + static_cast<size_t>(count) + 7) >> 3;
    const uint8_t* p = bytes.data() + base + index;
    uint64_t word = 0;
    if (base + index + 8 <= bytes.size()) {
        std::memcpy(&word, p, 8);
        word = __builtin_bswap64(word);
    } else {
        for (size_t k = 0; k < needed && k < 8; ++k) word |= static_cast<uint64_t>(p[k]) << (56 - 8 * k);
    }
    word <<= offset;
    if (needed > 8) word |= static_cast<uint64_t>(p[8]) >> (8 - offset);
    out = count == 64 ? word : word >> (64 - count);
    readPos += count;
    return true;
}

inline bool BitBuffer::writeBits(unsigned long value, long count) {
    if (count == 0 || count > 64) return false;
    ensureWriteCapacity(bitSize + count);
    if (count < 0) return true;
    size_t index = base + static_cast<size_t>(bitSize >> 3);
    unsigned offset = static_cast<unsigned>(bitSize & 7);
    long remaining = count;
    while (remaining > 0) {
        const unsigned room = 8 - offset;
        const unsigned take = remaining < static_cast<long>(room) ? static_cast<unsigned>(remaining) : room;
        const unsigned chunk = static_cast<unsigned>((value >> (remaining - take)) & ((1u << take) - 1));
        const unsigned shift = room - take;
        const unsigned mask = ((1u << take) - 1) << shift;
        bytes[index] = static_cast<uint8_t>((bytes[index] & ~mask) | (chunk << shift));
        remaining -= take;
        offset = 0;
        ++index;
    }
    bitSize += count;
    return true;
}

template <class T>
bool BitBuffer::read(T& out) {
    if constexpr (std::is_same_v<T, float>) {
        return readFloat(out);
    } else if constexpr (std::is_same_v<T, double>) {
        return readDouble(out);
    } else {
        static_assert(std::is_integral_v<T>, "BitBuffer::read takes integers and floating point values");
        using U = typename detail::UnsignedOfSize<sizeof(T)>::type;
        unsigned long raw = 0;
        if (!readBits(static_cast<long>(sizeof(T) * 8), raw)) return false;
        U value = static_cast<U>(raw);
        if (!bigEndian) value = detail::swapBytes(value);
        out = static_cast<T>(value);
        return true;
    }
}

template <class T>
bool BitBuffer::write(T value) {
    if constexpr (std::is_same_v<T, float>) {
        return writeFloat(value);
    } else if constexpr (std::is_same_v<T, double>) {
        return writeDouble(value);
    } else {
        static_assert(std::is_integral_v<T>, "BitBuffer::write takes integers and floating point values");
        using U = typename detail::UnsignedOfSize<sizeof(T)>::type;
        U raw = static_cast<U>(value);
        if (!bigEndian) raw = detail::swapBytes(raw);
        return writeBits(raw, static_cast<long>(sizeof(T) * 8));
    }
}

inline bool BitBuffer::readBool(bool& out) {
    unsigned long bit = 0;
    if (!readBits(1, bit)) return false;
    out = bit != 0;
    return true;
}

// The bits are taken as they stand, whatever the byte order: the swap made by
// writeFloat is not undone on purpose (see the class comment in the .cpp).
inline bool BitBuffer::readFloat(float& out) {
    unsigned long raw = 0;
    if (!readBits(32, raw)) return false;
    const uint32_t bits = static_cast<uint32_t>(raw);
    std::memcpy(&out, &bits, 4);
    return true;
}

inline bool BitBuffer::readDouble(double& out) {
    unsigned long raw = 0;
    if (!readBits(64, raw)) return false;
    std::memcpy(&out, &raw, 8);
    return true;
}

inline bool BitBuffer::writeFloat(float value) {
    uint32_t bits;
    std::memcpy(&bits, &value, 4);
    if (!bigEndian) bits = __builtin_bswap32(bits);
    return writeBits(bits, 32);
}

inline bool BitBuffer::writeDouble(double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, 8);
    if (!bigEndian) bits = __builtin_bswap64(bits);
    return writeBits(bits, 64);
}

inline void BitBuffer::ensureWriteCapacity(long bits) {
    if (bits <= 0) return;
    const size_t needed = base + static_cast<size_t>((bits + 7) / 8);
    if (bytes.size() < needed) bytes.resize(needed, 0);
}

} // namespace sorvane

#endif
