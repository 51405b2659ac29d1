#include "StreamSamples.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>

#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/SilentAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"

namespace streamtest {

namespace {

HeaderAnimationSample header(long timestamp, long extension = -1, bool extensionData = false) {
    HeaderAnimationSample h;
    if (timestamp >= 0) {
        h.setTimestampPresent(true);
        h.setTimestamp(timestamp);
    }
    if (extension >= 0) {
        h.setExtensionPresent(true);
        h.setExtension8bits(extension);
        h.setExtensionData(extensionData);
    }
    return h;
}

uint32_t bits(float f) {
    uint32_t b;
    std::memcpy(&b, &f, 4);
    return b;
}

std::string hexFloat(float f, bool reverse) {
    char text[16];
    std::snprintf(text, sizeof text, "%08x", reverse ? __builtin_bswap32(bits(f)) : bits(f));
    return text;
}

} // namespace

const std::vector<std::string>& kindNames() {
    static const std::vector<std::string> names = {"config", "blendshape", "joint", "landmark", "texture", "silent"};
    return names;
}

// The first unit of config, blendshape, landmark and silent is small enough to
// derive by hand (see StreamFixtureTest); the second one sets every flag.
std::vector<Unit> fixtureUnits(const std::string& kind) {
    std::vector<Unit> units;
    if (kind == "config") {
        auto a = std::make_shared<ConfigAnimationSample>();
        a->addAssociation(a->addProfile("ab"), ANIMATION_UNIT_BLENDSHAPE, 2, 1.0f);
        units.push_back({header(-1, 1, true), a});
        auto b = std::make_shared<ConfigAnimationSample>();
        long face = b->addProfile("urn:mpeg:arf:face");
        b->addAssociation(face, ANIMATION_UNIT_BLENDSHAPE, 0, 30.0f);
        b->addAssociation(face, ANIMATION_UNIT_JOINT, 65535, 59.94f);
        b->addProfile("");
        units.push_back({header(0), b});
    } else if (kind == "blendshape") {
        auto a = std::make_shared<BlendshapeAnimationSample>();
        a->setSetId(3);
        a->setBlendshapeCount(1);
        a->setBlendshapeId(0, 7);
        a->setBlendshapeWeight(0, 1.0f);
        units.push_back({header(-1), a});
        auto b = std::make_shared<BlendshapeAnimationSample>();
        b->setSetId(65535);
        b->setConfidencePresent(true);
        b->setBlendshapeCount(3);
        const long ids[3] = {0, 1, 65535};
        const float weights[3] = {0.25f, -1.0f, 1e-3f};
        for (long i = 0; i < 3; ++i) {
            b->setBlendshapeId(i, ids[i]);
            b->setBlendshapeWeight(i, weights[i]);
            b->setBlendshapeConfidence(i, 0.5f + 0.125f * static_cast<float>(i));
        }
        units.push_back({header(123456), b});
    } else if (kind == "joint") {
        auto a = std::make_shared<JointAnimationSample>();
        a->setSetId(1);
        a->setJointCount(1);
        a->setJointId(0, 0);
        for (int k = 0; k < 4; ++k) a->getJoints()[0].transform[5 * k] = 1.0f;
        units.push_back({header(40), a});
        auto b = std::make_shared<JointAnimationSample>();
        b->setSetId(9);
        b->setVelocityPresent(true);
        b->setRestPoseFlag(true);
        b->setJointCount(2);
        for (long j = 0; j < 2; ++j) {
            b->setJointId(j, 100 + j);
            for (int k = 0; k < 16; ++k) {
                b->getJoints()[static_cast<size_t>(j)].transform[k] = static_cast<float>(k) * 0.5f - static_cast<float>(j);
                b->getJoints()[static_cast<size_t>(j)].velocity[k] = -static_cast<float>(k) / 3.0f;
            }
        }
        // A non-zero extension with its data bit puts the body off the byte boundary.
        units.push_back({header(41, 0x7F, false), b});
    } else if (kind == "landmark") {
        auto a = std::make_shared<LandmarkAnimationSample>();
        a->setSetId(0x0102);
        a->setConfidencePresent(true);
        a->setLandmarkCount(1);
        a->setLandmarkId(0, 5);
        const float xy[2] = {1.0f, -2.0f};
        a->setLandmarkCoords(0, xy, sizeof xy, 2);
        a->setLandmarkConfidence(0, 0.5f);
        units.push_back({header(-1, 0), a});
        auto b = std::make_shared<LandmarkAnimationSample>();
        b->setSetId(4);
        b->set3d(true);
        b->setVelocityPresent(true);
        b->setConfidencePresent(true);
        b->setLandmarkCount(3);
        for (long i = 0; i < 3; ++i) {
            const float xyz[3] = {0.1f * static_cast<float>(i), 0.2f, -0.3f};
            b->setLandmarkId(i, 60 + i);
            b->setLandmarkCoords(i, xyz, sizeof xyz, 3);
            b->setLandmarkVelocity(i, 2.0f);
            b->setLandmarkConfidence(i, 0.75f);
        }
        units.push_back({header(7, 2, true), b});
    } else if (kind == "texture") {
        auto a = std::make_shared<TextureAnimationSample>();
        a->setSetId(2);
        a->setTextureCount(1);
        a->setTextureId(0, 1);
        a->setTextureWeight(0, 0.5f);
        units.push_back({header(0), a});
        auto b = std::make_shared<TextureAnimationSample>();
        b->setSetId(65535);
        b->setConfidencePresent(true);
        b->setTextureCount(2);
        for (long i = 0; i < 2; ++i) {
            b->setTextureId(i, 40000 + i);
            b->setTextureWeight(i, 0.125f * static_cast<float>(i + 1));
            b->setTextureConfidence(i, 1.0f);
        }
        units.push_back({header(4294967295l, 200, true), b});
    } else if (kind == "silent") {
        auto a = std::make_shared<SilentAnimationSample>();
        a->setTimescale(30);
        a->setDuration(0x000102);
        units.push_back({header(1000), a});
        auto b = std::make_shared<SilentAnimationSample>();
        b->setTimescale(4294967295l);
        b->setDuration(16777215);
        units.push_back({header(-1, 3, true), b});
    }
    return units;
}

std::string fixturePath(const std::string& kind, bool littleEndian) {
    return std::string(TALVEX_TEST_DATA_DIR) + "/stream/" + kind + (littleEndian ? "_le" : "_be") + ".bin";
}

std::vector<uint8_t> readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

std::vector<uint8_t> encodeUnits(std::vector<Unit>& units, bool littleEndian, long padding) {
    AnimationSampleStream stream(littleEndian);
    stream.setExtraBytePadding(padding);
    for (Unit& u : units) {
        EXPECT_TRUE(stream.addUnitSample(&u.header, u.sample.get())) << stream.getErrorMsg();
    }
    // A unit header with extensionData ends off the byte boundary; pad the
    // last partial byte so that the whole stream leaves.
    if (stream.getBitSize() % 8) stream.writeBits(0, 8 - stream.getBitSize() % 8);
    return stream.flushBytes();
}

std::string describe(const HeaderAnimationSample& h, const UnitAnimationSample& s, bool lw) {
    std::ostringstream o;
    o << "type " << h.getUnitType() << " ts " << h.getTimestampPresent() << "/" << h.getTimestamp() << " ext "
      << h.getExtensionPresent() << "/" << h.getExtension8bits() << "/" << h.getExtensionData() << " len "
      << h.getUnitLength() << " |";
    if (auto* c = dynamic_cast<const ConfigAnimationSample*>(&s)) {
        for (const auto& p : c->getProfiles()) {
            o << " [" << p.name;
            for (const auto& a : p.associations)
                o << " " << a.unitType << ":" << a.setId << ":" << hexFloat(a.timescale, lw);
            o << "]";
        }
    } else if (auto* b = dynamic_cast<const BlendshapeAnimationSample*>(&s)) {
        o << " blendshape set " << b->getSetId() << " conf " << b->getConfidencePresent();
        for (const auto& e : b->getBlendshapes())
            o << " " << e.id << ":" << hexFloat(e.weight, lw) << ":" << hexFloat(e.confidence, lw);
    } else if (auto* t = dynamic_cast<const TextureAnimationSample*>(&s)) {
        o << " texture set " << t->getSetId() << " conf " << t->getConfidencePresent();
        for (const auto& e : t->getTextures())
            o << " " << e.id << ":" << hexFloat(e.weight, lw) << ":" << hexFloat(e.confidence, lw);
    } else if (auto* j = dynamic_cast<const JointAnimationSample*>(&s)) {
        o << " joint set " << j->getSetId() << " vel " << j->getVelocityPresent() << " rest " << j->getRestPoseFlag();
        for (const auto& e : j->getJoints()) {
            o << " " << e.id << ":";
            for (float f : e.transform) o << hexFloat(f, lw) << ",";
            if (j->getVelocityPresent())
                for (float f : e.velocity) o << hexFloat(f, lw) << ",";
        }
    } else if (auto* l = dynamic_cast<const LandmarkAnimationSample*>(&s)) {
        o << " landmark set " << l->getSetId() << " vel " << l->getVelocityPresent() << " conf "
          << l->getConfidencePresent() << " 3d " << l->get3d();
        for (const auto& e : l->getLandmarks()) {
            o << " " << e.id << ":" << hexFloat(e.coords[0], lw) << "," << hexFloat(e.coords[1], lw) << ","
              << hexFloat(l->get3d() ? e.coords[2] : 0.0f, lw) << ","
              << hexFloat(l->getVelocityPresent() ? e.velocity : 0.0f, lw) << ","
              << hexFloat(l->getConfidencePresent() ? e.confidence : 0.0f, lw);
        }
    } else if (auto* q = dynamic_cast<const SilentAnimationSample*>(&s)) {
        long duration = q->getDuration();
        if (lw) duration = static_cast<long>(__builtin_bswap32(static_cast<uint32_t>(duration)) & 0xFFFFFFu);
        o << " silent " << q->getTimescale() << " " << duration;
    }
    return o.str();
}

std::vector<std::string> decodeChunked(const std::vector<uint8_t>& bytes, bool littleEndian,
                                       const std::function<size_t()>& chunker, long padding) {
    AnimationSampleStream stream(littleEndian);
    stream.setExtraBytePadding(padding);
    std::vector<std::string> out;
    size_t at = 0;
    while (at < bytes.size()) {
        const size_t n = std::min(bytes.size() - at, std::max<size_t>(1, chunker()));
        stream.feed(bytes.data() + at, static_cast<long>(n));
        at += n;
        for (;;) {
            auto next = stream.nextUnitSamplePtr();
            if (!next.first) {
                EXPECT_EQ(stream.getState(), 1) << stream.getErrorMsg();
                break;
            }
            std::unique_ptr<HeaderAnimationSample> h(next.first);
            std::unique_ptr<UnitAnimationSample> s(next.second);
            out.push_back(describe(*h, *s));
        }
    }
    // Whatever is left is the zero fill behind an unaligned last unit.
    EXPECT_LT(stream.getBitSize() - stream.getReadPos(), 8);
    return out;
}

} // namespace streamtest
