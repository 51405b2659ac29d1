// Frozen stream files: one per unit kind and byte order in tests/data/stream.
// They were written once by this encoder and must never change. To write
// them again (only for a deliberate format change), run
//   TALVEX_WRITE_STREAM_FIXTURES=1 ./test_arf --gtest_filter=StreamFixture.*
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <random>

#include "StreamSamples.h"

using namespace streamtest;

namespace {

std::vector<std::string> expectedDescriptions(const std::string& kind, bool littleEndian) {
    std::vector<Unit> units = fixtureUnits(kind);
    encodeUnits(units, littleEndian); // fills unitType and unitLength of the headers
    std::vector<std::string> out;
    for (const Unit& u : units) out.push_back(describe(u.header, *u.sample, littleEndian));
    return out;
}

std::vector<uint8_t> bytesOf(std::initializer_list<int> list) {
    std::vector<uint8_t> out;
    for (int v : list) out.push_back(static_cast<uint8_t>(v));
    return out;
}

std::vector<uint8_t> encodeFirst(const std::string& kind, bool littleEndian) {
    std::vector<Unit> units = fixtureUnits(kind);
    units.resize(1);
    return encodeUnits(units, littleEndian);
}

} // namespace

TEST(StreamFixture, WrittenByTheEncoderAndDecodedBack) {
    const bool write = std::getenv("TALVEX_WRITE_STREAM_FIXTURES") != nullptr;
    for (const std::string& kind : kindNames()) {
        for (bool little : {true, false}) {
            std::vector<Unit> units = fixtureUnits(kind);
            const std::vector<uint8_t> encoded = encodeUnits(units, little);
            const std::string path = fixturePath(kind, little);
            if (write) {
                std::ofstream(path, std::ios::binary)
                    .write(reinterpret_cast<const char*>(encoded.data()), static_cast<std::streamsize>(encoded.size()));
            }
            const std::vector<uint8_t> frozen = readFile(path);
            ASSERT_FALSE(frozen.empty()) << path;
            EXPECT_EQ(frozen, encoded) << path;
            const auto whole = decodeChunked(frozen, little, [&] { return frozen.size(); });
            EXPECT_EQ(whole, expectedDescriptions(kind, little)) << path;
        }
    }
}

TEST(StreamFixture, SameUnitsWhateverTheChunking) {
    std::mt19937 rng(7);
    for (const std::string& kind : kindNames()) {
        for (bool little : {true, false}) {
            const std::vector<uint8_t> frozen = readFile(fixturePath(kind, little));
            const auto expected = expectedDescriptions(kind, little);
            EXPECT_EQ(decodeChunked(frozen, little, [] { return size_t(1); }), expected) << kind;
            EXPECT_EQ(decodeChunked(frozen, little, [] { return size_t(7); }), expected) << kind;
            EXPECT_EQ(decodeChunked(frozen, little, [&] { return size_t(rng() % 40 + 1); }), expected) << kind;
            EXPECT_EQ(decodeChunked(frozen, little, [&] { return frozen.size(); }), expected) << kind;
        }
    }
}

// Bytes worked out by hand from the bit layouts.
TEST(StreamFixture, HandDerivedBytes) {
    // silent, big endian, timestamp 1000, timescale 30, duration 0x000102
    //   header: unitType 5 = 000101, timestampPresent 1, extensionPresent 0 -> 0001 0110 = 0x16
    //           unitLength 7 (4 + 3)                                         -> 00 00 07
    //           timestamp 32 ordered, big endian                             -> 00 00 03 E8
    //   body:   timescale 32 ordered                                         -> 00 00 00 1E
    //           duration, low 24 bits                                        -> 00 01 02
    const auto silent = bytesOf({0x16, 0x00, 0x00, 0x07, 0x00, 0x00, 0x03, 0xE8, 0x00, 0x00, 0x00, 0x1E, 0x00, 0x01, 0x02});
    EXPECT_EQ(encodeFirst("silent", false), silent);

    // blendshape, little endian, no timestamp, set 3, one entry: id 7, weight 1.0f
    //   header: unitType 1 = 000001, 0, 0                                    -> 0x04
    //           unitLength 11 (2 + 1 + 2 + 2 + 4)                            -> 00 00 0B
    //   body:   setId 3, swapped                                             -> 03 00
    //           confidencePresent 0, reserved 0000000                        -> 00
    //           count - 1 = 0                                                -> 00 00
    //           id 7, swapped                                                -> 07 00
    //           weight 0x3F800000, swapped by writeFloat                     -> 00 00 80 3F
    const auto blendshape = bytesOf({0x04, 0x00, 0x00, 0x0B, 0x03, 0x00, 0x00, 0x00, 0x00, 0x07, 0x00, 0x00, 0x00, 0x80, 0x3F});
    EXPECT_EQ(encodeFirst("blendshape", true), blendshape);

    // landmark, big endian, extension present with extension8bits 0 (so no data bit)
    //   header: unitType 3 = 000011, timestampPresent 0, extensionPresent 1 -> 0000 1101 = 0x0D
    //           unitLength 19 (2 + 1 + 2 + 2 + 3 * 4)                        -> 00 00 13
    //           extension8bits 0                                             -> 00
    //   body:   setId 0x0102                                                 -> 01 02
    //           velocity 0, confidence 1, is3d 0, reserved 00000             -> 0100 0000 = 0x40
    //           count - 1 = 0                                                -> 00 00
    //           id 5                                                         -> 00 05
    //           x 1.0f, y -2.0f, confidence 0.5f                             -> 3F800000 C0000000 3F000000
    const auto landmark = bytesOf({0x0D, 0x00, 0x00, 0x13, 0x00, 0x01, 0x02, 0x40, 0x00, 0x00, 0x00, 0x05,
                                   0x3F, 0x80, 0x00, 0x00, 0xC0, 0x00, 0x00, 0x00, 0x3F, 0x00, 0x00, 0x00});
    EXPECT_EQ(encodeFirst("landmark", false), landmark);

    // config, little endian, extension8bits 1 with extensionData 1: the body
    // starts one bit late.
    //   header: unitType 0, 0, extensionPresent 1                            -> 0x01
    //           unitLength 12                                                -> 00 00 0C
    //           extension8bits 1                                             -> 01
    //   then the bit 1 and the 12 body bytes
    //           00 (one profile) 02 'a' 'b' 01 (one association)
    //           01 (unit type) 02 00 (set id, swapped) 00 00 80 3F (1.0f, swapped)
    //   shifted right by one bit behind that 1, the last byte filled with zeros:
    //           1|0000000 0|0000001 0|0110000 1|0110001 0|0000000 1|0000000
    //           1|0000001 0|0000000 0|0000000 0|0000000 0|1000000 0|0011111 1|0000000
    const auto config = bytesOf({0x01, 0x00, 0x00, 0x0C, 0x01, 0x80, 0x01, 0x30, 0xB1, 0x00, 0x80, 0x81, 0x00, 0x00,
                                 0x00, 0x40, 0x1F, 0x80});
    EXPECT_EQ(encodeFirst("config", true), config);

    // The frozen files begin with these units.
    for (auto [kind, little, bytes] : {std::make_tuple("silent", false, silent),
                                       std::make_tuple("blendshape", true, blendshape),
                                       std::make_tuple("landmark", false, landmark)}) {
        const auto frozen = readFile(fixturePath(kind, little));
        ASSERT_GE(frozen.size(), bytes.size());
        EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), frozen.begin())) << kind;
    }
}

TEST(StreamFixture, TruncatedFilesGiveOnlyWholeUnits) {
    for (const std::string& kind : kindNames()) {
        for (bool little : {true, false}) {
            const std::vector<uint8_t> frozen = readFile(fixturePath(kind, little));
            const auto expected = expectedDescriptions(kind, little);
            for (size_t cut = 0; cut < frozen.size(); ++cut) {
                AnimationSampleStream stream(little);
                if (cut) stream.feed(frozen.data(), static_cast<long>(cut));
                size_t units = 0;
                for (;;) {
                    auto next = stream.nextUnitSamplePtr();
                    if (!next.first) break;
                    std::unique_ptr<HeaderAnimationSample> h(next.first);
                    std::unique_ptr<UnitAnimationSample> s(next.second);
                    ASSERT_LT(units, expected.size());
                    EXPECT_EQ(describe(*h, *s), expected[units]);
                    ++units;
                }
                EXPECT_EQ(stream.getState(), 1) << kind << " cut " << cut;
                EXPECT_LT(units, expected.size() + (cut + 1 == frozen.size() ? 1 : 0));
            }
        }
    }
}
