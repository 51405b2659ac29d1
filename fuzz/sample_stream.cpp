// Arbitrary bytes into the animation sample stream, in chunk sizes taken from
// the input. Layout of an input: byte 0 flags (bit 0 little endian, bits 1-2
// padding, bit 6 read through an istream, bit 7 base64 instead), byte 1 the
// seed of the chunk sizes, the rest the stream bytes.
//
// Checks beyond "no crash": the units of a chunked feed equal those of one
// whole feed, and every decoded sample of a big-endian stream that encodes
// again decodes to the same bytes. base64: whatever decodes re-encodes and decodes to the same bytes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "sorvane/archive/base64.h"
#include "sorvane/arf/animation/stream/AnimationSampleStream.h"
#include "sorvane/core/RuntimeException.h"

using namespace sorvane;
using namespace sorvane::arf;

namespace {

struct Decoded {
    std::vector<std::vector<uint8_t>> units; // each unit encoded again (or its type if it can't be)
    int32_t state = 0;
};

std::vector<uint8_t> reencode(bool little, HeaderAnimationSample& h, const UnitAnimationSample& s) {
    AnimationSampleStream out(little);
    if (!out.addUnitSample(&h, &s)) return {static_cast<uint8_t>(0xF0 | s.type())};
    if (out.getBitSize() % 8) out.writeBits(0, 8 - out.getBitSize() % 8);
    return out.flushBytes();
}

Decoded decode(const uint8_t* data, size_t size, bool little, long padding, uint32_t seed) {
    Decoded d;
    AnimationSampleStream stream(little);
    stream.setExtraBytePadding(padding);
    size_t at = 0;
    for (;;) {
        if (at < size) {
            size_t n = size - at;
            if (seed) {
                seed ^= seed << 13;
                seed ^= seed >> 17;
                seed ^= seed << 5;
                n = std::min<size_t>(n, seed % 64 + 1);
            }
            stream.feed(data + at, static_cast<long>(n));
            at += n;
        }
        for (;;) {
            auto next = stream.nextUnitSamplePtr();
            if (!next.first) break;
            std::unique_ptr<HeaderAnimationSample> h(next.first);
            std::unique_ptr<UnitAnimationSample> s(next.second);
            d.units.push_back(reencode(little, *h, *s));
        }
        if (at >= size) break;
    }
    d.state = stream.getState();
    return d;
}

void streamCase(const uint8_t* data, size_t size) {
    if (size < 2) return;
    const bool little = data[0] & 1;
    const long padding = (data[0] >> 1) & 3;
    const uint32_t seed = data[1] | 0x100u;
    const uint8_t* body = data + 2;
    const size_t n = size - 2;

    if (data[0] & 0x40) {
        std::istringstream in(std::string(reinterpret_cast<const char*>(body), n));
        AnimationSampleStream stream(little);
        stream.setExtraBytePadding(padding);
        try {
            for (int guard = 0; guard < 100000; ++guard) {
                auto next = stream.getNextSamplePtr(in, static_cast<long>(seed % 97 + 1));
                if (!next.first) break;
                delete next.first;
                delete next.second;
            }
        } catch (const RuntimeException&) {
        }
        return;
    }

    const Decoded whole = decode(body, n, little, padding, 0);
    const Decoded chunked = decode(body, n, little, padding, seed);
    if (whole.units != chunked.units || whole.state != chunked.state) std::abort();

    // A unit that encodes again decodes to the same bytes. Only big endian:
    // a little-endian trip reverses float bytes by design.
    if (little) return;
    for (const auto& unit : whole.units) {
        if (unit.size() == 1) continue;
        const Decoded again = decode(unit.data(), unit.size(), little, 0, 0);
        if (again.units.size() != 1 || again.units[0] != unit) std::abort();
    }
}

void base64Case(const uint8_t* data, size_t size) {
    const char* text = reinterpret_cast<const char*>(data);
    const long n = static_cast<long>(size);
    try {
        const long need = base64decode(nullptr, 0, text, n);
        if (need < 0 || need > n) std::abort();
        std::vector<uint8_t> bytes(static_cast<size_t>(need) + 1);
        const long got = base64decode(bytes.data(), need, text, n);
        if (got != need) std::abort();
        const long chars = base64encode(nullptr, 0, bytes.data(), got, BASE64_ENCODING_URL, '=');
        std::string encoded(static_cast<size_t>(chars) + 1, '\0');
        if (base64encode(&encoded[0], chars, bytes.data(), got, BASE64_ENCODING_URL, '=') != chars) std::abort();
        std::vector<uint8_t> back(static_cast<size_t>(got) + 1);
        if (base64decode(back.data(), got, encoded.data(), chars) != got) std::abort();
        if (std::memcmp(back.data(), bytes.data(), static_cast<size_t>(got)) != 0) std::abort();
    } catch (const RuntimeException&) {
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    if (data[0] & 0x80)
        base64Case(data + 1, size - 1);
    else
        streamCase(data, size);
    return 0;
}
