// stream-dump: prints each unit of an animation sample stream file.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

#include "apps/talvex/AppModes.h"
#include "sorvane/arf/animation/stream/AnimationSampleStream.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/SilentAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"
#include "sorvane/core/RuntimeException.h"

namespace talvex_app {

using namespace sorvane::arf;

namespace {

const char* kindName(AnimationUnitType type) {
    switch (type) {
    case ANIMATION_UNIT_CONFIG: return "config";
    case ANIMATION_UNIT_BLENDSHAPE: return "blendshape";
    case ANIMATION_UNIT_JOINT: return "joint";
    case ANIMATION_UNIT_LANDMARK: return "landmark";
    case ANIMATION_UNIT_TEXTURE: return "texture";
    case ANIMATION_UNIT_SILENT: return "silent";
    default: return "unknown";
    }
}

template <class Entries>
void printWeights(std::ostream& out, const Entries& entries, bool confidence, size_t first) {
    for (size_t i = 0; i < entries.size() && i < first; ++i) {
        out << (i ? ", " : " ") << entries[i].id << "=" << entries[i].weight;
        if (confidence) out << "/" << entries[i].confidence;
    }
    if (entries.size() > first) out << ", ...";
}

void printUnit(std::ostream& out, long index, const HeaderAnimationSample& h, const UnitAnimationSample& s,
               size_t first) {
    out << "#" << index << " " << kindName(s.type()) << " length " << h.getUnitLength();
    if (h.getTimestampPresent()) out << " timestamp " << h.getTimestamp();
    if (h.getExtensionPresent()) out << " extension " << h.getExtension8bits() << "/" << h.getExtensionData();
    if (auto* c = dynamic_cast<const ConfigAnimationSample*>(&s)) {
        out << " profiles " << c->getProfileCount() << ":";
        for (const auto& p : c->getProfiles()) {
            out << " \"" << p.name << "\" [";
            for (size_t a = 0; a < p.associations.size(); ++a)
                out << (a ? ", " : "") << "type " << p.associations[a].unitType << " set " << p.associations[a].setId
                    << " timescale " << p.associations[a].timescale;
            out << "]";
        }
    } else if (auto* b = dynamic_cast<const BlendshapeAnimationSample*>(&s)) {
        out << " set " << b->getSetId() << " count " << b->getBlendshapeCount() << ":";
        printWeights(out, b->getBlendshapes(), b->getConfidencePresent(), first);
    } else if (auto* t = dynamic_cast<const TextureAnimationSample*>(&s)) {
        out << " set " << t->getSetId() << " count " << t->getTextureCount() << ":";
        printWeights(out, t->getTextures(), t->getConfidencePresent(), first);
    } else if (auto* j = dynamic_cast<const JointAnimationSample*>(&s)) {
        out << " set " << j->getSetId() << " count " << j->getJointCount()
            << (j->getVelocityPresent() ? " velocity" : "") << (j->getRestPoseFlag() ? " rest-pose" : "") << ":";
        const auto& joints = j->getJoints();
        for (size_t i = 0; i < joints.size() && i < first; ++i) {
            out << (i ? ", " : " ") << joints[i].id << " [";
            for (int k = 0; k < 16; ++k) out << (k ? " " : "") << joints[i].transform[k];
            out << "]";
        }
        if (joints.size() > first) out << ", ...";
    } else if (auto* l = dynamic_cast<const LandmarkAnimationSample*>(&s)) {
        out << " set " << l->getSetId() << " count " << l->getLandmarkCount() << (l->get3d() ? " 3d" : " 2d") << ":";
        const auto& marks = l->getLandmarks();
        for (size_t i = 0; i < marks.size() && i < first; ++i) {
            out << (i ? ", " : " ") << marks[i].id << " (" << marks[i].coords[0] << " " << marks[i].coords[1];
            if (l->get3d()) out << " " << marks[i].coords[2];
            out << ")";
            if (l->getVelocityPresent()) out << " v " << marks[i].velocity;
            if (l->getConfidencePresent()) out << " c " << marks[i].confidence;
        }
        if (marks.size() > first) out << ", ...";
    } else if (auto* q = dynamic_cast<const SilentAnimationSample*>(&s)) {
        out << " timescale " << q->getTimescale() << " duration " << q->getDuration();
    }
    out << "\n";
}

class StreamDumpMode : public sorvane::Mode {
public:
    explicit StreamDumpMode(args::ArgumentParser& p)
        : Mode(p),
          file(p, "FILE", "the stream file", args::Options::Required),
          little(p, "little", "the stream is little endian (default: big endian)", {'l', "little-endian"}),
          padding(p, "N", "zero bytes of padding behind each unit", {'p', "padding"}, 0),
          first(p, "N", "values shown per unit", {'n', "values"}, 4) {
        p.Description("Prints each unit of an animation sample stream file: kind, length, timestamp, counts and "
                      "the first values.");
    }

    void execute() override {
        std::ifstream in(args::get(file), std::ios::binary);
        if (!in) SORVANE_THROW("Can't open %s", args::get(file).c_str());
        AnimationSampleStream stream(little);
        stream.setExtraBytePadding(args::get(padding));
        long count = 0;
        for (;;) {
            auto next = stream.getNextSamplePtr(in, 4096);
            if (!next.first) break;
            std::unique_ptr<HeaderAnimationSample> h(next.first);
            std::unique_ptr<UnitAnimationSample> s(next.second);
            printUnit(std::cout, count++, *h, *s, static_cast<size_t>(args::get(first)));
        }
        std::cout << count << " units";
        if (stream.getState() == -1) {
            std::cout << ", end of input\n";
        } else {
            std::cout << ", " << (stream.getBitSize() - stream.getReadPos()) << " bits left over: "
                      << stream.getErrorMsg() << "\n";
        }
    }

private:
    args::Positional<std::string> file;
    args::Flag little;
    args::ValueFlag<long> padding;
    args::ValueFlag<long> first;
};

} // namespace

sorvane::Mode* createStreamDumpMode(args::ArgumentParser& parser) { return new StreamDumpMode(parser); }

} // namespace talvex_app
