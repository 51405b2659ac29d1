#include "sorvane/archive/BitBuffer.h"

#include <algorithm>

#include "sorvane/core/RuntimeException.h"

// Floats: writeFloat swaps a value's bytes when the buffer is little endian,
// readFloat never does. A little-endian buffer therefore gives floats back
// with their bytes reversed; only big-endian buffers round-trip them. The
// wire formats built on this class depend on that, so it stays.

namespace sorvane {

void BitBuffer::feed(const void* buffer, long size) {
    if (!buffer) SORVANE_THROW("buffer is NULL");
    if (size <= 0) return;
    // Bytes behind the last valid one (left by a rolled-back write) would
    // shadow the fed bytes, so they go first.
    const size_t stored = base + static_cast<size_t>((bitSize + 7) / 8);
    if (bytes.size() > stored) bytes.resize(stored);
    const uint8_t* p = static_cast<const uint8_t*>(buffer);
    bytes.insert(bytes.end(), p, p + size);
    bitSize += static_cast<int64_t>(size) * 8;
}

void BitBuffer::feed(const std::vector<uint8_t>& buffer) {
    if (buffer.empty()) return;
    feed(buffer.data(), static_cast<long>(buffer.size()));
}

long BitBuffer::flush(void* out, long size) {
    const long n = static_cast<long>(bitSize / 8);
    if (!out) return n;
    if (n > size) SORVANE_THROW("buffer is too small");
    if (n > 0) std::memcpy(out, bytes.data() + base, static_cast<size_t>(n));
    bitSize -= static_cast<int64_t>(n) * 8;
    if (bitSize > 0) {
        // Keep the partial byte: it moves to the front.
        bytes[0] = bytes[base + static_cast<size_t>(n)];
        bytes.resize(1);
    } else {
        bytes.clear();
    }
    base = 0;
    return n;
}

std::vector<uint8_t> BitBuffer::flushBytes() {
    std::vector<uint8_t> out(static_cast<size_t>(bitSize / 8));
    // flush wants a non-null target even for zero bytes.
    uint8_t dummy = 0;
    flush(out.empty() ? &dummy : out.data(), static_cast<long>(out.size()));
    return out;
}

void BitBuffer::clearRead() {
    const int64_t k = std::min<int64_t>(readPos / 8, static_cast<int64_t>(bytes.size() - base));
    if (k <= 0) return;
    base += static_cast<size_t>(k);
    bitSize -= k * 8;
    readPos -= k * 8;
    // Compact once the dropped bytes outweigh the kept ones and pass 64 KB:
    // memory stays within twice the unread bytes plus 64 KB, and each byte
    // is moved O(1) times.
    if (base >= 65536 && base >= bytes.size() - base) {
        bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(base));
        base = 0;
    }
}

void BitBuffer::clear() {
    bytes.clear();
    base = 0;
    bitSize = 0;
    readPos = 0;
}

bool BitBuffer::readBytes(void* out, long size) {
    if (size == 0) return true;
    if (!out) return false;
    if (size < 0) return true;
    if (size > (bitSize - readPos) / 8) return false;
    uint8_t* target = static_cast<uint8_t*>(out);
    if ((readPos & 7) == 0) {
        std::memcpy(target, bytes.data() + base + (readPos >> 3), static_cast<size_t>(size));
        readPos += static_cast<int64_t>(size) * 8;
        return true;
    }
    for (long i = 0; i < size; ++i) {
        unsigned long value = 0;
        readBits(8, value);
        target[i] = static_cast<uint8_t>(value);
    }
    return true;
}

bool BitBuffer::writeBytes(const void* in, long size) {
    if (size == 0) return true;
    if (!in) return false;
    if (size < 0) return true;
    const uint8_t* source = static_cast<const uint8_t*>(in);
    if ((bitSize & 7) == 0) {
        const size_t start = base + static_cast<size_t>(bitSize >> 3);
        bytes.resize(start + static_cast<size_t>(size));
        std::memcpy(bytes.data() + start, source, static_cast<size_t>(size));
        bitSize += static_cast<int64_t>(size) * 8;
        return true;
    }
    ensureWriteCapacity(bitSize + static_cast<int64_t>(size) * 8);
    for (long i = 0; i < size; ++i) writeBits(source[i], 8);
    return true;
}

bool BitBuffer::readFloats(float* out, long count) {
    if (count <= 0) return true;
    if (count > (bitSize - readPos) / 32) return false;
    if ((readPos & 7) != 0) {
        for (long i = 0; i < count; ++i) readFloat(out[i]);
        return true;
    }
    // Aligned: one block, then each 32-bit field taken most significant byte
    // first, as readFloat does.
    const uint8_t* p = bytes.data() + base + (readPos >> 3);
    for (long i = 0; i < count; ++i) {
        uint32_t bits;
        std::memcpy(&bits, p + 4 * i, 4);
        bits = __builtin_bswap32(bits);
        std::memcpy(out + i, &bits, 4);
    }
    readPos += static_cast<int64_t>(count) * 32;
    return true;
}

bool BitBuffer::writeFloats(const float* in, long count) {
    if (count <= 0) return true;
    if ((bitSize & 7) != 0) {
        for (long i = 0; i < count; ++i)
            if (!writeFloat(in[i])) return false;
        return true;
    }
    const size_t start = base + static_cast<size_t>(bitSize >> 3);
    if (bytes.size() < start + 4 * static_cast<size_t>(count)) bytes.resize(start + 4 * static_cast<size_t>(count));
    uint8_t* p = bytes.data() + start;
    for (long i = 0; i < count; ++i) {
        uint32_t bits;
        std::memcpy(&bits, in + i, 4);
        // writeFloat: swapped when little endian, then laid down most
        // significant byte first.
        if (bigEndian) bits = __builtin_bswap32(bits);
        std::memcpy(p + 4 * i, &bits, 4);
    }
    bitSize += static_cast<int64_t>(count) * 32;
    return true;
}

const uint8_t* BitBuffer::readBlock(long size) {
    if (size < 0 || (readPos & 7) != 0 || size > (bitSize - readPos) / 8) return nullptr;
    const uint8_t* p = bytes.data() + base + (readPos >> 3);
    readPos += static_cast<int64_t>(size) * 8;
    return p;
}

uint8_t* BitBuffer::writeBlock(long size) {
    if (size < 0 || (bitSize & 7) != 0) return nullptr;
    const size_t start = base + static_cast<size_t>(bitSize >> 3);
    if (bytes.size() < start + static_cast<size_t>(size)) bytes.resize(start + static_cast<size_t>(size));
    bitSize += static_cast<int64_t>(size) * 8;
    return bytes.data() + start;
}

} // namespace sorvane
