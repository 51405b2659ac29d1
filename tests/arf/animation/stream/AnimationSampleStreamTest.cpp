#include <gtest/gtest.h>

#include <sstream>

#include "StreamSamples.h"
#include "sorvane/arf/animation/stream/AnimationSampleStreamException.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/SilentAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"

using namespace streamtest;

namespace {

bool endsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// The message after the location prefix.
std::string plain(const std::string& text) {
    const size_t at = text.find("(): ");
    return at == std::string::npos ? text : text.substr(at + 4);
}

std::string encodeFailure(const UnitAnimationSample& sample) {
    sorvane::BitBuffer scratch;
    try {
        sample.encode(scratch);
    } catch (const std::exception& e) {
        return plain(e.what());
    }
    return "encoded";
}

BlendshapeAnimationSample blendshapes(long count) {
    BlendshapeAnimationSample s;
    s.setBlendshapeCount(count);
    for (long i = 0; i < count; ++i) s.setBlendshapeId(i, i);
    return s;
}

} // namespace

TEST(AnimationSampleStream, WaitsForWholeUnits) {
    AnimationSampleStream stream(false);
    EXPECT_TRUE(stream.isBigEndian());
    EXPECT_FALSE(AnimationSampleStream(true).isBigEndian());
    auto next = stream.nextUnitSamplePtr();
    EXPECT_EQ(next.first, nullptr);
    EXPECT_EQ(next.second, nullptr);
    EXPECT_EQ(stream.getState(), 1);
    EXPECT_EQ(stream.getErrorMsg(), "Not enough data");

    const auto bytes = readFile(fixturePath("silent", false)); // a 15-byte unit first
    stream.feed(bytes.data(), 3);
    stream.nextUnitSamplePtr();
    EXPECT_EQ(stream.getState(), 1);
    // The header is there, its timestamp is not: the decoder's exception path.
    stream.feed(bytes.data() + 3, 3);
    EXPECT_EQ(stream.nextUnitSamplePtr().first, nullptr);
    EXPECT_EQ(stream.getState(), 1);
    EXPECT_TRUE(endsWith(stream.getErrorMsg(), "decode(): Not enough data")) << stream.getErrorMsg();
    EXPECT_EQ(stream.getReadPos(), 0);
    // Header and timestamp complete, body not yet.
    stream.feed(bytes.data() + 6, 8);
    EXPECT_EQ(stream.nextUnitSamplePtr().first, nullptr);
    EXPECT_EQ(stream.getState(), 1);
    EXPECT_EQ(stream.getErrorMsg(), "Not enough data");
    EXPECT_EQ(stream.getReadPos(), 0);
    stream.feed(bytes.data() + 14, 1);
    next = stream.nextUnitSamplePtr();
    ASSERT_NE(next.first, nullptr);
    std::unique_ptr<HeaderAnimationSample> h(next.first);
    std::unique_ptr<UnitAnimationSample> s(next.second);
    EXPECT_EQ(stream.getState(), 0);
    EXPECT_EQ(stream.getErrorMsg(), "");
    EXPECT_EQ(h->getTimestamp(), 1000);
    EXPECT_EQ(s->type(), ANIMATION_UNIT_SILENT);
    EXPECT_EQ(static_cast<SilentAnimationSample&>(*s).getDuration(), 0x102);
    // Consumed bytes left memory.
    EXPECT_EQ(stream.getReadPos(), 0);
    EXPECT_EQ(stream.getBitSize(), 0);
}

TEST(AnimationSampleStream, UnknownUnitTypesStay) {
    for (int type : {6, 17, 63}) {
        AnimationSampleStream stream(true);
        const uint8_t unit[6] = {static_cast<uint8_t>(type << 2), 0, 0, 2, 0, 0};
        stream.feed(unit, 6);
        for (int repeat = 0; repeat < 2; ++repeat) {
            EXPECT_EQ(stream.nextUnitSamplePtr().first, nullptr);
            EXPECT_EQ(stream.getState(), 3);
            EXPECT_EQ(stream.getErrorMsg(), "Invalid unit type");
            EXPECT_EQ(stream.getReadPos(), 0);
        }
        std::istringstream in("");
        try {
            stream.getNextSamplePtr(in, 16);
            FAIL();
        } catch (const sorvane::RuntimeException& e) {
            EXPECT_EQ(plain(e.what()), "Failed getting next sample: Invalid unit type");
        }
    }
}

TEST(AnimationSampleStream, HostileCountsCostNoMemory) {
    // A joint unit that announces 65536 joints (8.9 MB decoded) in 10 bytes.
    const uint8_t unit[9] = {0x08, 0, 0, 5, 0, 1, 0, 0xFF, 0xFF};
    AnimationSampleStream stream(false);
    stream.feed(unit, 9);
    EXPECT_EQ(stream.nextUnitSamplePtr().first, nullptr);
    EXPECT_EQ(stream.getState(), 1);
    EXPECT_TRUE(endsWith(stream.getErrorMsg(), "Not enough data"));
    // Decoded directly, the sample refuses before it grows.
    for (auto* sample : std::initializer_list<UnitAnimationSample*>{
             new JointAnimationSample(), new BlendshapeAnimationSample(), new TextureAnimationSample(),
             new LandmarkAnimationSample(), new ConfigAnimationSample()}) {
        std::unique_ptr<UnitAnimationSample> owned(sample);
        sorvane::BitBuffer b;
        b.feed(std::vector<uint8_t>{0, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
        try {
            sample->decode(b);
            FAIL();
        } catch (const AnimationSampleStreamException& e) {
            EXPECT_EQ(e.code, 1);
            EXPECT_EQ(plain(e.what()), "Not enough data");
        }
    }
    // A decoder accepts up to 65536 entries when they are all there.
    BlendshapeAnimationSample big = blendshapes(65535);
    sorvane::BitBuffer b;
    b.setBigEndian(true);
    big.encode(b);
    BlendshapeAnimationSample back;
    back.decode(b);
    EXPECT_EQ(back.getBlendshapeCount(), 65535);
}

TEST(AnimationSampleStream, EncodingFailuresLeaveTheStreamAlone) {
    AnimationSampleStream stream(false);
    SilentAnimationSample silent;
    ASSERT_TRUE(stream.addUnitSample(1.9f, &silent));
    const long size = stream.getBitSize();
    BlendshapeAnimationSample empty;
    EXPECT_FALSE(stream.addUnitSample(2.0f, &empty));
    EXPECT_EQ(stream.getState(), 4);
    EXPECT_EQ(plain(stream.getErrorMsg()), "Error encoding: No blendshapes to encode");
    EXPECT_EQ(stream.getBitSize(), size);
    EXPECT_FALSE(stream.addUnitSample(2.0f, nullptr));
    EXPECT_EQ(stream.getErrorMsg(), "sample is NULL");
    EXPECT_FALSE(stream.addUnitSample(-2.0f, &silent));
    EXPECT_EQ(plain(stream.getErrorMsg()), "Error encoding: timestamp -2 does not fit in a 32-bit unsigned int");
    EXPECT_FALSE(stream.addUnitSample(static_cast<HeaderAnimationSample*>(nullptr), &silent));
    EXPECT_EQ(plain(stream.getErrorMsg()), "header is NULL");
    EXPECT_EQ(stream.getBitSize(), size);

    HeaderAnimationSample header;
    header.setExtensionPresent(true);
    header.setExtension8bits(256);
    EXPECT_FALSE(stream.addUnitSample(&header, &silent));
    EXPECT_EQ(plain(stream.getErrorMsg()), "Error encoding: extension value 256 does not fit in an 8-bit unsigned int");
    EXPECT_EQ(stream.getBitSize(), size);

    // A failure in the middle of the stream: the next unit overwrites the rest.
    EXPECT_TRUE(stream.addUnitSample(3.0f, &silent));
    auto first = stream.nextUnitSamplePtr();
    ASSERT_NE(first.first, nullptr);
    EXPECT_EQ(first.first->getTimestamp(), 1); // 1.9 truncated
    delete first.first;
    delete first.second;
    auto second = stream.nextUnitSamplePtr();
    ASSERT_NE(second.first, nullptr);
    EXPECT_EQ(second.first->getTimestamp(), 3);
    delete second.first;
    delete second.second;
}

TEST(AnimationSampleStream, EncoderLimitMessages) {
    HeaderAnimationSample h;
    h.setUnitType(static_cast<AnimationUnitType>(64));
    EXPECT_EQ(encodeFailure(SilentAnimationSample()), "encoded");
    sorvane::BitBuffer b;
    auto headerFailure = [&](HeaderAnimationSample x) {
        try {
            x.encode(b);
        } catch (const std::exception& e) {
            return plain(e.what());
        }
        return std::string("encoded");
    };
    EXPECT_EQ(headerFailure(h), "Error encoding: animation unit type 64 does not fit in a 6-bit unsigned int");
    h.setUnitType(ANIMATION_UNIT_INVALID);
    EXPECT_EQ(headerFailure(h), "Error encoding: animation unit type -1 does not fit in a 6-bit unsigned int");
    h.setUnitType(ANIMATION_UNIT_SILENT);
    h.setUnitLength(16777216);
    EXPECT_EQ(headerFailure(h), "Error encoding: unit length 16777216 does not fit in a 24-bit unsigned int");
    h.setUnitLength(1);
    h.setTimestamp(4294967296l);
    EXPECT_EQ(headerFailure(h), "encoded"); // not present, not checked
    h.setTimestampPresent(true);
    EXPECT_EQ(headerFailure(h), "Error encoding: timestamp 4294967296 does not fit in a 32-bit unsigned int");

    ConfigAnimationSample config;
    EXPECT_EQ(encodeFailure(config), "Error encoding: No profiles to encode");
    config.addProfile(std::string(256, 'x'));
    EXPECT_EQ(encodeFailure(config), "Error encoding: profile length does not fit in an 8-bit unsigned int");
    config.setProfile(0, "p");
    for (int i = 0; i < 256; ++i) config.addAssociation(0, ANIMATION_UNIT_JOINT, 1, 1.0f);
    EXPECT_EQ(encodeFailure(config), "Error encoding: association count does not fit in an 8-bit unsigned int");
    config.getProfiles()[0].associations.resize(1);
    config.setAssociationUnitType(0, 0, static_cast<AnimationUnitType>(256));
    EXPECT_EQ(encodeFailure(config), "Error encoding: animation unit type 256 does not fit in an 8-bit unsigned int");
    config.setAssociationUnitType(0, 0, ANIMATION_UNIT_JOINT);
    config.setAssociationSetId(0, 0, 65536);
    EXPECT_EQ(encodeFailure(config), "Error encoding: set id 65536 does not fit in a 16-bit unsigned int");
    config.setAssociationSetId(0, 0, 1);
    for (int i = 0; i < 256; ++i) config.addProfile("q");
    EXPECT_EQ(encodeFailure(config), "Error encoding: profile count does not fit in an 8-bit unsigned int plus one");

    BlendshapeAnimationSample shapes = blendshapes(65536);
    EXPECT_EQ(encodeFailure(shapes), "Error encoding: blendshape count does not fit in a 16-bit unsigned int");
    shapes = blendshapes(2);
    shapes.setBlendshapeId(1, -4);
    EXPECT_EQ(encodeFailure(shapes), "Error encoding: blendshape index -4 is negative");
    shapes.setBlendshapeId(1, 65536);
    EXPECT_EQ(encodeFailure(shapes), "Error encoding: blendshape index 65536 does not fit in a 16-bit unsigned int");
    shapes.setBlendshapeId(1, 65535);
    shapes.setSetId(1 << 20); // cut to 16 bits, not refused
    EXPECT_EQ(encodeFailure(shapes), "encoded");

    JointAnimationSample joints;
    EXPECT_EQ(encodeFailure(joints), "Error encoding: No joints to encode");
    joints.setJointCount(65536);
    EXPECT_EQ(encodeFailure(joints), "Error encoding: joint count does not fit in a 16-bit unsigned int");
    joints.setJointCount(1); // id -1 by default
    EXPECT_EQ(encodeFailure(joints), "Error encoding: joint index does not fit in a 16-bit unsigned int");

    LandmarkAnimationSample marks;
    EXPECT_EQ(encodeFailure(marks), "Error encoding: No landmarks to encode");
    marks.setLandmarkCount(65536);
    EXPECT_EQ(encodeFailure(marks), "Error encoding: landmark count does not fit in a 16-bit unsigned int");
    marks.setLandmarkCount(1);
    EXPECT_EQ(encodeFailure(marks), "Error encoding: landmark index does not fit in a 16-bit unsigned int");

    TextureAnimationSample textures;
    textures.setSetId(65536);
    EXPECT_EQ(encodeFailure(textures), "Error encoding: texture set id 65536 does not fit in a 16-bit unsigned int");
    textures.setSetId(0);
    EXPECT_EQ(encodeFailure(textures), "Error encoding: No textures to encode");
    textures.setTextureCount(65536);
    EXPECT_EQ(encodeFailure(textures), "Error encoding: texture count does not fit in a 16-bit unsigned int");
    textures.setTextureCount(1);
    EXPECT_EQ(encodeFailure(textures), "Error encoding: texture index -1 does not fit in a 16-bit unsigned int");

    SilentAnimationSample silent;
    silent.setTimescale(-1);
    EXPECT_EQ(encodeFailure(silent), "Error encoding: timescale -1 does not fit in a 32-bit unsigned int");
    silent.setTimescale(1);
    silent.setDuration(16777216);
    EXPECT_EQ(encodeFailure(silent), "Error encoding: duration 16777216 does not fit in a 24-bit unsigned int");
}

TEST(AnimationSampleStream, PaddingOutsideTheUnit) {
    std::vector<Unit> units = fixtureUnits("silent");
    units.resize(1);
    units.push_back(fixtureUnits("blendshape")[0]);
    const auto padded = encodeUnits(units, false, 2);
    const auto plainBytes = encodeUnits(units, false, 0);
    EXPECT_EQ(padded.size(), plainBytes.size() + 4);
    const auto expected = decodeChunked(plainBytes, false, [] { return size_t(100); });
    ASSERT_EQ(expected.size(), 2u);
    EXPECT_EQ(decodeChunked(padded, false, [] { return size_t(1); }, 2), expected);
    // Padding 5 skips the two zero bytes and stops at the next header.
    EXPECT_EQ(decodeChunked(padded, false, [] { return size_t(3); }, 5), expected);

    // A receiver without padding takes the first zero byte as a header.
    AnimationSampleStream stream(false);
    stream.feed(padded);
    auto first = stream.nextUnitSamplePtr();
    ASSERT_NE(first.first, nullptr);
    EXPECT_EQ(describe(*first.first, *first.second), expected[0]);
    delete first.first;
    delete first.second;
    auto second = stream.nextUnitSamplePtr();
    if (second.first) {
        EXPECT_NE(describe(*second.first, *second.second), expected[1]);
        delete second.first;
        delete second.second;
    }
}

TEST(AnimationSampleStream, ReadsFromAnInputStream) {
    const auto bytes = readFile(fixturePath("joint", true));
    for (long chunk : {1L, 5L, 64L, 4096L}) {
        std::istringstream in(std::string(bytes.begin(), bytes.end()));
        AnimationSampleStream stream(true);
        std::vector<std::string> got;
        for (;;) {
            auto next = stream.getNextSamplePtr(in, chunk);
            if (!next.first) break;
            got.push_back(describe(*next.first, *next.second));
            delete next.first;
            delete next.second;
        }
        EXPECT_EQ(got, decodeChunked(bytes, true, [] { return size_t(1000); })) << chunk;
        // The fill bits behind the unaligned last unit stay: not the clean end.
        EXPECT_EQ(stream.getState(), 1);
    }
    const auto aligned = readFile(fixturePath("blendshape", false));
    std::istringstream in(std::string(aligned.begin(), aligned.end()));
    AnimationSampleStream stream(false);
    int units = 0;
    for (auto next = stream.getNextSamplePtr(in, 10); next.first; next = stream.getNextSamplePtr(in, 10)) {
        ++units;
        delete next.first;
        delete next.second;
    }
    EXPECT_EQ(units, 2);
    EXPECT_EQ(stream.getState(), -1);

    std::istringstream more("abc");
    AnimationSampleStream fresh(false);
    EXPECT_THROW(fresh.getNextSamplePtr(more, -1), std::length_error);
}

TEST(AnimationSampleStream, LittleEndianAsymmetries) {
    // Floats come back with their bytes reversed, and a silent duration with
    // its bytes moved and its lowest byte lost; integers round-trip.
    AnimationSampleStream stream(true);
    SilentAnimationSample silent;
    silent.setTimescale(0x01020304);
    silent.setDuration(0xABCDEF);
    LandmarkAnimationSample marks;
    marks.setLandmarkCount(1);
    marks.setLandmarkId(0, 300);
    const float xy[2] = {1.0f, 2.0f};
    marks.setLandmarkCoords(0, xy, 8, 2);
    marks.setVelocityPresent(true);
    marks.setConfidencePresent(true);
    ASSERT_TRUE(stream.addUnitSample(0.0f, &silent));
    ASSERT_TRUE(stream.addUnitSample(0.0f, &marks));
    auto a = stream.nextUnitSamplePtr();
    auto b = stream.nextUnitSamplePtr();
    ASSERT_NE(a.second, nullptr);
    ASSERT_NE(b.second, nullptr);
    auto& s = static_cast<SilentAnimationSample&>(*a.second);
    EXPECT_EQ(s.getTimescale(), 0x01020304);
    EXPECT_EQ(s.getDuration(), 0xCDAB00);
    auto& m = static_cast<LandmarkAnimationSample&>(*b.second);
    EXPECT_EQ(m.getLandmarkId(0), 300);
    // is3d false: 2 + 4 * 4 bytes per landmark and z decoded as 0
    EXPECT_EQ(b.first->getUnitLength(), 5 + 2 + 16);
    float coords[3] = {9, 9, 9};
    EXPECT_EQ(m.getLandmarkCoords(coords, sizeof coords, 0), 2);
    uint32_t bits;
    std::memcpy(&bits, &coords[0], 4);
    EXPECT_EQ(bits, 0x0000803Fu);
    EXPECT_EQ(m.getLandmarks()[0].coords[2], 0.0f);
    for (auto* p : {static_cast<AnimationSample*>(a.first), static_cast<AnimationSample*>(a.second),
                    static_cast<AnimationSample*>(b.first), static_cast<AnimationSample*>(b.second)})
        delete p;
}
