#ifndef SORVANE_ARF_ANIMATION_STREAM_STREAMCODEC_H
#define SORVANE_ARF_ANIMATION_STREAM_STREAMCODEC_H

// Internal to the sample classes: the two failures every codec shares, raised
// at the call site so the message names the encoder or decoder.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

#include "sorvane/arf/animation/stream/AnimationSampleStreamException.h"
#include "sorvane/core/RuntimeException.h"

#define SORVANE_STREAM_WRITE(expr)                                                                                     \
    do {                                                                                                               \
        if (!(expr)) SORVANE_THROW("Error encoding");                                                                  \
    } while (0)

#define SORVANE_STREAM_NOT_ENOUGH_DATA()                                                                               \
    throw ::sorvane::arf::AnimationSampleStreamException(__FILE__, __LINE__, __func__, 1, "Not enough data")

#define SORVANE_STREAM_READ(expr)                                                                                      \
    do {                                                                                                               \
        if (!(expr)) SORVANE_STREAM_NOT_ENOUGH_DATA();                                                                 \
    } while (0)

// Indexed getters and setters refuse negative and too large indices.
#define SORVANE_STREAM_CHECK_INDEX(index, size)                                                                        \
    do {                                                                                                               \
        if ((index) < 0 || static_cast<size_t>(index) >= (size)) SORVANE_THROW("Invalid index %ld", (long)(index));    \
    } while (0)

// Count setters refuse a negative count before it reaches the vector.
#define SORVANE_STREAM_CHECK_COUNT(count)                                                                              \
    do {                                                                                                               \
        if ((count) < 0) SORVANE_THROW("Invalid count %ld", (long)(count));                                            \
    } while (0)

namespace sorvane::arf::detail {

// Limit checks compare the value as unsigned, so that a negative one fails as
// too large.
inline bool above(long value, unsigned long limit) { return static_cast<unsigned long>(value) > limit; }

// Reads an unsigned field of `bits` plain bits.
template <class T>
inline bool readPlain(BitBuffer& b, long bits, T& out) {
    unsigned long v = 0;
    if (!b.readBits(bits, v)) return false;
    out = static_cast<T>(v);
    return true;
}

inline uint16_t loadOrdered16(const uint8_t* p, bool bigEndian) {
    return bigEndian ? static_cast<uint16_t>((p[0] << 8) | p[1]) : static_cast<uint16_t>(p[0] | (p[1] << 8));
}

// A float as readFloat takes it: the four bytes most significant first.
inline float loadFloat(const uint8_t* p) {
    uint32_t bits;
    __builtin_memcpy(&bits, p, 4);
    bits = __builtin_bswap32(bits);
    float f;
    __builtin_memcpy(&f, &bits, 4);
    return f;
}

inline void storeOrdered16(uint8_t* p, unsigned long v, bool bigEndian) {
    if (bigEndian) {
        p[0] = static_cast<uint8_t>(v >> 8);
        p[1] = static_cast<uint8_t>(v);
    } else {
        p[0] = static_cast<uint8_t>(v);
        p[1] = static_cast<uint8_t>(v >> 8);
    }
}

// A float as writeFloat lays it down: swapped when little endian, then most
// significant byte first.
inline void storeFloat(uint8_t* p, float f, bool bigEndian) {
    uint32_t bits;
    __builtin_memcpy(&bits, &f, 4);
    if (bigEndian) bits = __builtin_bswap32(bits);
    __builtin_memcpy(p, &bits, 4);
}

// Reads an entry count stored minus one in 16 ordered bits, and makes sure
// the entries it announces have arrived before anything is allocated for
// them: a hostile count never costs more memory than the bytes that are there.
inline long readCount16(BitBuffer& b, long entryBits) {
    uint16_t stored = 0;
    SORVANE_STREAM_READ(b.read(stored));
    const long count = static_cast<long>(stored) + 1;
    if (count * entryBits > b.bitsLeft()) SORVANE_STREAM_NOT_ENOUGH_DATA(); // both small: no overflow
    return count;
}

// The entries of a blendshape or texture body: id 16 ordered, weight float,
// [confidence float]. A whole aligned block goes in one pass.
template <class Entry, class CheckId>
void encodeWeights(BitBuffer& b, const std::vector<Entry>& entries, bool confidence, CheckId checkId) {
    const long size = confidence ? 10 : 6;
    const bool big = b.isBigEndian();
    if (uint8_t* p = b.writeBlock(size * static_cast<long>(entries.size()))) {
        for (const Entry& e : entries) {
            checkId(e.id);
            storeOrdered16(p, static_cast<unsigned long>(e.id), big);
            storeFloat(p + 2, e.weight, big);
            if (confidence) storeFloat(p + 6, e.confidence, big);
            p += size;
        }
        return;
    }
    for (const Entry& e : entries) {
        checkId(e.id);
        SORVANE_STREAM_WRITE(b.write<uint16_t>(static_cast<uint16_t>(e.id)));
        SORVANE_STREAM_WRITE(b.writeFloat(e.weight));
        if (confidence) SORVANE_STREAM_WRITE(b.writeFloat(e.confidence));
    }
}

// Walks an aligned block of weight entries, decoding each on access, with
// the byte order and the presence of confidences fixed at compile time. The
// vector is filled from it in one pass: one allocation, no default values
// written first.
template <class Entry, bool Big, bool Confidence>
struct WeightReader {
    using iterator_category = std::random_access_iterator_tag;
    using value_type = Entry;
    using difference_type = std::ptrdiff_t;
    using pointer = const Entry*;
    using reference = Entry;
    static constexpr long size = Confidence ? 10 : 6;

    const uint8_t* p;

    Entry operator*() const {
        Entry e;
        e.id = loadOrdered16(p, Big);
        e.weight = loadFloat(p + 2);
        e.confidence = Confidence ? loadFloat(p + 6) : 0.0f;
        return e;
    }
    WeightReader& operator++() {
        p += size;
        return *this;
    }
    WeightReader operator++(int) {
        WeightReader before = *this;
        p += size;
        return before;
    }
    WeightReader& operator--() {
        p -= size;
        return *this;
    }
    WeightReader& operator+=(difference_type n) {
        p += n * size;
        return *this;
    }
    difference_type operator-(const WeightReader& other) const { return (p - other.p) / size; }
    bool operator==(const WeightReader& other) const { return p == other.p; }
    bool operator!=(const WeightReader& other) const { return p != other.p; }
};

template <class Entry, bool Big, bool Confidence>
void decodeWeightBlock(const uint8_t* p, long count, std::vector<Entry>& entries) {
    using Reader = WeightReader<Entry, Big, Confidence>;
    entries.assign(Reader{p}, Reader{p + Reader::size * count});
}

template <class Entry>
void decodeWeights(BitBuffer& b, std::vector<Entry>& entries, bool confidence) {
    const long size = confidence ? 10 : 6;
    const long count = readCount16(b, size * 8);
    if (const uint8_t* p = b.readBlock(size * count)) {
        if (b.isBigEndian()) {
            if (confidence) decodeWeightBlock<Entry, true, true>(p, count, entries);
            else decodeWeightBlock<Entry, true, false>(p, count, entries);
        } else {
            if (confidence) decodeWeightBlock<Entry, false, true>(p, count, entries);
            else decodeWeightBlock<Entry, false, false>(p, count, entries);
        }
        return;
    }
    entries.resize(static_cast<size_t>(count));
    Entry* out = entries.data();
    for (long i = 0; i < count; ++i) {
        uint16_t id = 0;
        SORVANE_STREAM_READ(b.read(id));
        out[i].id = id;
        SORVANE_STREAM_READ(b.readFloat(out[i].weight));
        out[i].confidence = 0.0f;
        if (confidence) SORVANE_STREAM_READ(b.readFloat(out[i].confidence));
    }
}

} // namespace sorvane::arf::detail

#endif
