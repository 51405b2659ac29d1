// stream-make: writes an animation sample stream file from a text description.
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

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

const char* const kFormat = R"(Description format: one unit per line, "#" starts a comment.
"byteorder big" or "byteorder little" and "padding N" (zero bytes behind each unit) come before the first unit; the defaults are big and 0.
A unit line is its kind and key=value words. Every kind takes t=N (timestamp), ext=N and extdata=0|1 (header extension).
config: profile=NAME, then assoc=TYPE:SET:TIMESCALE for that profile.
blendshape, texture: set=N, w=ID:WEIGHT[:CONFIDENCE] per entry.
joint: set=N, rest=0|1, j=ID:16 comma-separated values[:16 velocity values] per joint.
landmark: set=N, 3d=0|1, l=ID:X,Y[,Z][/VELOCITY[/CONFIDENCE]] per landmark, "-" leaving a value out.
silent: timescale=N duration=N.
Example: "config t=0 profile=urn:face assoc=1:0:30" then "blendshape t=33 set=0 w=0:0.5 w=1:0.25".)";

[[noreturn]] void bad(long line, const std::string& why) {
    SORVANE_THROW("line %ld: %s", line, why.c_str());
}

std::vector<std::string> split(const std::string& text, char sep) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, sep)) parts.push_back(part);
    if (!text.empty() && text.back() == sep) parts.push_back("");
    return parts;
}

long toLong(long line, const std::string& text) {
    try {
        size_t used = 0;
        long v = std::stol(text, &used);
        if (used == text.size()) return v;
    } catch (const std::exception&) {
    }
    bad(line, "not an integer: \"" + text + "\"");
}

float toFloat(long line, const std::string& text) {
    try {
        size_t used = 0;
        float v = std::stof(text, &used);
        if (used == text.size()) return v;
    } catch (const std::exception&) {
    }
    bad(line, "not a number: \"" + text + "\"");
}

std::vector<float> floats(long line, const std::string& text) {
    std::vector<float> out;
    for (const std::string& v : split(text, ',')) out.push_back(toFloat(line, v));
    return out;
}

// "ID:REST": the id and the rest.
std::pair<long, std::string> entry(long line, const std::string& text) {
    const size_t colon = text.find(':');
    if (colon == std::string::npos) bad(line, "expected ID:...: \"" + text + "\"");
    return {toLong(line, text.substr(0, colon)), text.substr(colon + 1)};
}

struct Unit {
    HeaderAnimationSample header;
    std::unique_ptr<UnitAnimationSample> sample;
};

template <class Entries>
void weightEntry(long line, Entries& entries, bool& confidence, const std::string& value) {
    auto [id, rest] = entry(line, value);
    const auto parts = split(rest, ':');
    if (parts.empty() || parts.size() > 2) bad(line, "expected ID:WEIGHT[:CONFIDENCE]: \"" + value + "\"");
    typename Entries::value_type e;
    e.id = id;
    e.weight = toFloat(line, parts[0]);
    if (parts.size() == 2) {
        e.confidence = toFloat(line, parts[1]);
        confidence = true;
    }
    entries.push_back(e);
}

Unit parseUnit(long line, const std::string& kind, const std::vector<std::pair<std::string, std::string>>& keys) {
    Unit u;
    if (kind == "config") u.sample.reset(new ConfigAnimationSample());
    else if (kind == "blendshape") u.sample.reset(new BlendshapeAnimationSample());
    else if (kind == "texture") u.sample.reset(new TextureAnimationSample());
    else if (kind == "joint") u.sample.reset(new JointAnimationSample());
    else if (kind == "landmark") u.sample.reset(new LandmarkAnimationSample());
    else if (kind == "silent") u.sample.reset(new SilentAnimationSample());
    else bad(line, "unknown unit kind \"" + kind + "\"");

    for (const auto& [key, value] : keys) {
        if (key == "t") {
            u.header.setTimestampPresent(true);
            u.header.setTimestamp(toLong(line, value));
        } else if (key == "ext") {
            u.header.setExtensionPresent(true);
            u.header.setExtension8bits(toLong(line, value));
        } else if (key == "extdata") {
            u.header.setExtensionData(toLong(line, value) != 0);
        } else if (auto* c = dynamic_cast<ConfigAnimationSample*>(u.sample.get())) {
            if (key == "profile") {
                c->addProfile(value);
            } else if (key == "assoc") {
                const auto parts = split(value, ':');
                if (parts.size() != 3 || c->getProfileCount() == 0) bad(line, "expected profile=... assoc=TYPE:SET:TIMESCALE");
                c->addAssociation(c->getProfileCount() - 1, static_cast<AnimationUnitType>(toLong(line, parts[0])),
                                  toLong(line, parts[1]), toFloat(line, parts[2]));
            } else {
                bad(line, "unknown key \"" + key + "\"");
            }
        } else if (auto* b = dynamic_cast<BlendshapeAnimationSample*>(u.sample.get())) {
            if (key == "set") b->setSetId(toLong(line, value));
            else if (key == "w") {
                bool confidence = b->getConfidencePresent();
                weightEntry(line, b->getBlendshapes(), confidence, value);
                b->setConfidencePresent(confidence);
            } else bad(line, "unknown key \"" + key + "\"");
        } else if (auto* t = dynamic_cast<TextureAnimationSample*>(u.sample.get())) {
            if (key == "set") t->setSetId(toLong(line, value));
            else if (key == "w") {
                bool confidence = t->getConfidencePresent();
                weightEntry(line, t->getTextures(), confidence, value);
                t->setConfidencePresent(confidence);
            } else bad(line, "unknown key \"" + key + "\"");
        } else if (auto* j = dynamic_cast<JointAnimationSample*>(u.sample.get())) {
            if (key == "set") j->setSetId(toLong(line, value));
            else if (key == "rest") j->setRestPoseFlag(toLong(line, value) != 0);
            else if (key == "j") {
                auto [id, rest] = entry(line, value);
                const auto parts = split(rest, ':');
                JointAnimationSample::Joint joint;
                joint.id = id;
                const auto transform = floats(line, parts[0]);
                if (transform.size() != 16 || parts.size() > 2) bad(line, "a joint takes 16 values[:16 values]");
                std::copy(transform.begin(), transform.end(), joint.transform);
                if (parts.size() == 2) {
                    const auto velocity = floats(line, parts[1]);
                    if (velocity.size() != 16) bad(line, "a joint velocity takes 16 values");
                    std::copy(velocity.begin(), velocity.end(), joint.velocity);
                    j->setVelocityPresent(true);
                }
                j->getJoints().push_back(joint);
            } else bad(line, "unknown key \"" + key + "\"");
        } else if (auto* l = dynamic_cast<LandmarkAnimationSample*>(u.sample.get())) {
            if (key == "set") l->setSetId(toLong(line, value));
            else if (key == "3d") l->set3d(toLong(line, value) != 0);
            else if (key == "l") {
                auto [id, rest] = entry(line, value);
                const auto parts = split(rest, '/');
                LandmarkAnimationSample::Landmark mark;
                mark.id = id;
                const auto coords = floats(line, parts[0]);
                if (coords.size() < 2 || coords.size() > 3 || parts.size() > 3)
                    bad(line, "a landmark takes X,Y[,Z][/VELOCITY[/CONFIDENCE]]");
                std::copy(coords.begin(), coords.end(), mark.coords);
                if (parts.size() > 1 && parts[1] != "-") {
                    mark.velocity = toFloat(line, parts[1]);
                    l->setVelocityPresent(true);
                }
                if (parts.size() > 2 && parts[2] != "-") {
                    mark.confidence = toFloat(line, parts[2]);
                    l->setConfidencePresent(true);
                }
                l->getLandmarks().push_back(mark);
            } else bad(line, "unknown key \"" + key + "\"");
        } else if (auto* q = dynamic_cast<SilentAnimationSample*>(u.sample.get())) {
            if (key == "timescale") q->setTimescale(toLong(line, value));
            else if (key == "duration") q->setDuration(toLong(line, value));
            else bad(line, "unknown key \"" + key + "\"");
        }
    }
    return u;
}

class StreamMakeMode : public sorvane::Mode {
public:
    explicit StreamMakeMode(args::ArgumentParser& p)
        : Mode(p),
          input(p, "DESCRIPTION", "the text description", args::Options::Required),
          output(p, "OUTPUT", "the stream file to write", args::Options::Required) {
        p.Description("Writes an animation sample stream file from a small text description.");
        p.Epilog(kFormat);
    }

    void execute() override {
        std::ifstream in(args::get(input));
        if (!in) SORVANE_THROW("Can't open %s", args::get(input).c_str());
        bool little = false, started = false;
        long padding = 0;
        std::unique_ptr<AnimationSampleStream> stream;
        std::string text;
        long line = 0, units = 0;
        while (std::getline(in, text)) {
            ++line;
            const size_t hash = text.find('#');
            if (hash != std::string::npos) text.resize(hash);
            std::istringstream words(text);
            std::string kind, word;
            if (!(words >> kind)) continue;
            std::vector<std::pair<std::string, std::string>> keys;
            std::vector<std::string> plain;
            while (words >> word) {
                const size_t eq = word.find('=');
                if (eq == std::string::npos) plain.push_back(word);
                else keys.emplace_back(word.substr(0, eq), word.substr(eq + 1));
            }
            if (kind == "byteorder" || kind == "padding") {
                if (started) bad(line, kind + " must come before the first unit");
                if (plain.size() != 1) bad(line, "expected " + kind + " VALUE");
                if (kind == "padding") padding = toLong(line, plain[0]);
                else if (plain[0] == "little" || plain[0] == "big") little = plain[0] == "little";
                else bad(line, "byteorder is big or little");
                continue;
            }
            if (!plain.empty()) bad(line, "expected key=value: \"" + plain[0] + "\"");
            if (!stream) {
                stream.reset(new AnimationSampleStream(little));
                stream->setExtraBytePadding(padding);
                started = true;
            }
            Unit u = parseUnit(line, kind, keys);
            if (!stream->addUnitSample(&u.header, u.sample.get())) bad(line, stream->getErrorMsg());
            ++units;
        }
        if (!stream) stream.reset(new AnimationSampleStream(little));
        // A header extension with its data bit leaves the last byte partial.
        if (stream->getBitSize() % 8) stream->writeBits(0, 8 - stream->getBitSize() % 8);
        const std::vector<uint8_t> bytes = stream->flushBytes();
        std::ofstream out(args::get(output), std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        if (!out) SORVANE_THROW("Can't write %s", args::get(output).c_str());
        std::cout << "wrote " << units << " units, " << bytes.size() << " bytes, "
                  << (little ? "little" : "big") << " endian, to " << args::get(output) << "\n";
    }

private:
    args::Positional<std::string> input;
    args::Positional<std::string> output;
};

} // namespace

sorvane::Mode* createStreamMakeMode(args::ArgumentParser& parser) { return new StreamMakeMode(parser); }

} // namespace talvex_app
