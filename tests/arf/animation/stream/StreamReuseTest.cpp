// Decoding into reused objects gives the same units as decoding into new ones.
#include <gtest/gtest.h>

#include "tests/arf/animation/stream/StreamSamples.h"

using namespace streamtest;

TEST(StreamReuse, SameUnitsAsFreshObjects) {
    for (bool little : {false, true}) {
        // Every kind one after another, so the reused sample changes kind, and
        // the same kind twice in a row, so its storage is reused.
        std::vector<Unit> units;
        for (const std::string& kind : kindNames())
            for (int twice = 0; twice < 2; ++twice)
                for (Unit& u : fixtureUnits(kind)) units.push_back(u);
        const std::vector<uint8_t> bytes = encodeUnits(units, little, 2);
        const std::vector<std::string> expected = decodeChunked(bytes, little, [] { return size_t(5); }, 2);

        AnimationSampleStream stream(little);
        stream.setExtraBytePadding(2);
        HeaderAnimationSample header;
        std::unique_ptr<UnitAnimationSample> sample;
        std::vector<std::string> got;
        for (size_t at = 0; at < bytes.size(); at += 5) {
            stream.feed(bytes.data() + at, static_cast<long>(std::min<size_t>(5, bytes.size() - at)));
            while (stream.nextUnitSample(header, sample)) got.push_back(describe(header, *sample));
            ASSERT_EQ(stream.getState(), 1) << stream.getErrorMsg();
        }
        EXPECT_EQ(got, expected) << (little ? "little" : "big");
    }

    // A unit of an unknown kind fails as with new objects and keeps the sample.
    AnimationSampleStream stream(false);
    const uint8_t unknown[] = {0x18, 0x00, 0x00, 0x00};  // type 6, no timestamp, length 0
    stream.feed(unknown, 4);
    HeaderAnimationSample header;
    std::unique_ptr<UnitAnimationSample> sample;
    EXPECT_FALSE(stream.nextUnitSample(header, sample));
    EXPECT_EQ(stream.getState(), 3);
    EXPECT_EQ(sample, nullptr);
}
