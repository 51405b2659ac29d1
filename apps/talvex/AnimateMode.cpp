// animate: drives an avatar from an animation sample stream through one
// mapper per framework and prints, describes or plots what it drives.
#include <fstream>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>
#include <algorithm>
#include <cmath>

#include "apps/talvex/AppModes.h"
#include "apps/talvex/CurvePlot.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/arf/animation/AnimationMapper.h"
#include "sorvane/arf/animation/stream/AnimationSampleStream.h"
#include "sorvane/arf/node/PreambleNode.h"
#include "sorvane/arf/node/preamble/SupportedAnimationsNode.h"
#include "sorvane/core/RuntimeException.h"

namespace talvex_app {

using namespace sorvane::arf;

namespace {

const char* const kTypes[] = {"ANIMATION_FACE", "ANIMATION_BODY", "ANIMATION_HAND", "ANIMATION_LANDMARK",
                              "ANIMATION_TEXTURE"};

// The URNs the document's preamble lists, in its order, without repeats.
std::vector<std::string> documentUrns(const Arf& arf) {
    std::vector<std::string> urns;
    const auto& root = arf.getRoot();
    const auto preamble = root ? root->getPreamble() : nullptr;
    const auto supported = preamble ? preamble->getSupportedAnimations() : nullptr;
    if (!supported) return urns;
    const auto take = [&](const std::vector<std::string>& list) {
        for (const auto& urn : list)
            if (std::find(urns.begin(), urns.end(), urn) == urns.end()) urns.push_back(urn);
    };
    if (supported->hasFaceAnimations()) take(supported->getFaceAnimations());
    if (supported->hasBodyAnimations()) take(supported->getBodyAnimations());
    if (supported->hasHandAnimations()) take(supported->getHandAnimations());
    if (supported->hasLandmarkAnimations()) take(supported->getLandmarkAnimations());
    if (supported->hasTextureAnimations()) take(supported->getTextureAnimations());
    return urns;
}

// A built-in framework of that URN, else the one made from the elements of
// the component the document drives directly with it; empty for neither.
AnimationFrameworkRef frameworkOf(const Arf& arf, const std::string& urn) {
    const auto builtin = AnimationFramework::getBuiltinUrns();
    if (std::find(builtin.begin(), builtin.end(), urn) != builtin.end()) return AnimationFramework::create(urn, 0);
    for (const char* type : kTypes)
        if (auto f = AnimationFramework::tryCreate(arf, type, urn, 0)) return f;
    return {};
}

AnimationValueType valueTypeOf(AnimationUnitType unit) {
    switch (unit) {
    case ANIMATION_UNIT_BLENDSHAPE:
    case ANIMATION_UNIT_TEXTURE: return ANIMATION_VALUE_WEIGHT;
    case ANIMATION_UNIT_JOINT: return ANIMATION_VALUE_TRANSFORM;
    case ANIMATION_UNIT_LANDMARK: return ANIMATION_VALUE_VECTOR3;
    default: return ANIMATION_VALUE_INVALID;
    }
}

const char* unitName(AnimationUnitType type) {
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

struct Driver {
    std::string urn;
    AnimationFrameworkRef framework;
    std::unique_ptr<AnimationMapper> mapper;
    AnimationValueType valueType = ANIMATION_VALUE_INVALID;
    std::set<std::pair<AnimationLocationType, long>> sets; // (type, id) of the sets it drives
};

// JSON has no NaN or infinity: those are written as null there.
void printFloats(std::ostream& out, const float* values, long count, const char* separator, bool json = false) {
    for (long i = 0; i < count; ++i) {
        out << (i ? separator : "");
        if (json && !std::isfinite(values[i])) out << "null";
        else out << values[i];
    }
}

class AnimateMode : public sorvane::Mode {
public:
    explicit AnimateMode(args::ArgumentParser& p)
        : Mode(p),
          avatar(p, "AVATAR", "the ARF document", args::Options::Required),
          streamFile(p, "STREAM", "the animation sample stream file", args::Options::Required),
          urns(p, "URN", "a framework to drive with (repeatable; default: every one the document lists)",
               {'f', "framework"}),
          little(p, "little", "the stream is little endian (default: big endian)", {'l', "little-endian"}),
          padding(p, "N", "zero bytes of padding behind each unit", {'p', "padding"}, 0),
          json(p, "json", "one JSON object per unit instead of text", {'j', "json"}),
          describe(p, "describe", "print each mapper's graph of operators and stop", {'d', "describe"}),
          plot(p, "OUT.svg", "also draw each driven weight and joint translation over time", {"plot"}) {
        p.Description("Drives an avatar from an animation sample stream: one mapper per framework, each unit "
                      "given to the mappers whose inputs are of its kind (blendshape and texture units: weights, "
                      "joint units: matrices, landmark units: vectors). Prints per unit its timestamp and the "
                      "weights and joint matrices it drove.");
    }

    void execute() override {
        const Arf arf = Arf::load(args::get(avatar), true);
        buildDrivers(arf);
        if (describe) {
            for (const auto& d : drivers)
                std::cout << d.urn << "\n" << d.mapper->buildDescription().toJsonString() << "\n";
            return;
        }
        AnimationComponents components(arf);
        std::ifstream in(args::get(streamFile), std::ios::binary);
        if (!in) SORVANE_THROW("Can't open %s", args::get(streamFile).c_str());
        AnimationSampleStream stream(little);
        stream.setExtraBytePadding(args::get(padding));
        HeaderAnimationSample header;
        std::unique_ptr<UnitAnimationSample> sample;
        std::vector<char> chunk(4096);
        long index = 0;
        for (;;) {
            if (!stream.nextUnitSample(header, sample)) {
                if (stream.getState() != 1)
                    SORVANE_THROW("Failed getting next sample: %s", stream.getErrorMsg().c_str());
                in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
                if (in.gcount() <= 0) break;
                stream.feed(chunk.data(), static_cast<long>(in.gcount()));
                continue;
            }
            drive(components, header, *sample, index++);
        }
        if (stream.storedSize() > 0 && stream.getState() == 1)
            std::cerr << "the stream ends inside a unit\n";
        if (plot) {
            std::ofstream out(args::get(plot));
            curves.writeSvg(out, args::get(avatar) + " driven by " + args::get(streamFile));
            if (!out) SORVANE_THROW("Can't write %s", args::get(plot).c_str());
        }
        if (!json) std::cout << index << " units\n";
    }

private:
    void buildDrivers(const Arf& arf) {
        std::vector<std::string> wanted = args::get(urns);
        const bool explicitUrns = !wanted.empty();
        if (!explicitUrns) wanted = documentUrns(arf);
        for (const auto& urn : wanted) {
            Driver d;
            d.urn = urn;
            d.framework = frameworkOf(arf, urn);
            if (!d.framework || d.framework->getInputs().empty()) {
                if (explicitUrns) SORVANE_THROW("No framework %s in the library or the document", urn.c_str());
                continue;
            }
            try {
                d.mapper = std::make_unique<AnimationMapper>(arf, d.framework);
            } catch (const std::exception& e) {
                if (explicitUrns) throw;
                std::cerr << urn << ": " << e.what() << "\n";
                continue;
            }
            d.valueType = d.framework->getInputs().begin()->second->getValueType();
            for (const auto& [target, op] : d.mapper->getOperators()) d.sets.insert({target.type, target.id});
            drivers.push_back(std::move(d));
        }
        if (drivers.empty()) std::cerr << "no framework drives anything in " << args::get(avatar) << "\n";
    }

    void drive(AnimationComponents& components, const HeaderAnimationSample& header, const UnitAnimationSample& unit,
               long index) {
        const double time = header.getTimestampPresent() ? static_cast<double>(header.getTimestamp())
                                                         : static_cast<double>(index);
        const AnimationValueType kind = valueTypeOf(unit.type());
        for (const auto& d : drivers) {
            if (kind == ANIMATION_VALUE_INVALID || d.valueType != kind) continue;
            // A unit the mapper refuses (a curve input out of range, say) is
            // reported and the stream goes on: targets before it are updated.
            try {
                d.mapper->updateComponents(&components, &unit);
            } catch (const std::exception& e) {
                std::cerr << "unit " << index << " (" << d.urn << "): " << e.what() << "\n";
            }
            report(components, d, unit, index, time);
        }
    }

    void report(const AnimationComponents& c, const Driver& d, const UnitAnimationSample& unit, long index,
                double time) {
        std::ostream& out = std::cout;
        std::ostringstream text, weightsJson, jointsJson;
        for (const auto& [type, id] : d.sets) {
            const bool shapes = type == ANIMATION_LOCATION_BLENDSHAPE_SET;
            if (shapes || type == ANIMATION_LOCATION_TEXTURE_SET) {
                const auto ids = shapes ? c.getBlendshapeIds(id) : c.getTextureIds(id);
                const auto weights = shapes ? c.getBlendshapeWeights(id) : c.getTextureWeights(id);
                const std::string panel = std::string(shapes ? "blendshape set " : "texture set ") + std::to_string(id);
                weightsJson << (weightsJson.tellp() > 0 ? ", " : "") << "\"" << panel << "\": [";
                printFloats(weightsJson, weights.data(), static_cast<long>(weights.size()), ", ", true);
                weightsJson << "]";
                text << "  " << panel << ":";
                for (size_t i = 0; i < ids.size(); ++i) {
                    text << " " << ids[i] << "=" << weights[i];
                    curves.add(panel, "weight", std::to_string(ids[i]), time, weights[i]);
                }
                text << "\n";
            } else if (type == ANIMATION_LOCATION_SKELETON) {
                const std::string panel = "skeleton " + std::to_string(id);
                jointsJson << (jointsJson.tellp() > 0 ? ", " : "") << "\"" << panel << "\": {";
                bool first = true;
                for (long joint : c.getJointIds(id)) {
                    const auto m = c.getJointTransform(id, joint);
                    jointsJson << (first ? "" : ", ") << "\"" << joint << "\": [";
                    printFloats(jointsJson, m.data(), static_cast<long>(m.size()), ", ", true);
                    jointsJson << "]";
                    text << "  " << panel << " joint " << joint << ": [";
                    printFloats(text, m.data(), static_cast<long>(m.size()), " ");
                    text << "]\n";
                    first = false;
                    if (m.size() >= 12) {
                        const std::string name = "joint " + std::to_string(joint);
                        curves.add(panel + " translation", "translation", name + " x", time, m[3]);
                        curves.add(panel + " translation", "translation", name + " y", time, m[7]);
                        curves.add(panel + " translation", "translation", name + " z", time, m[11]);
                    }
                }
                jointsJson << "}";
            }
        }
        if (json)
            out << "{\"unit\": " << index << ", \"timestamp\": " << time << ", \"kind\": \"" << unitName(unit.type())
                << "\", \"framework\": \"" << d.urn << "\", \"weights\": {" << weightsJson.str() << "}, \"joints\": {"
                << jointsJson.str() << "}}\n";
        else
            out << "#" << index << " t=" << time << " " << unitName(unit.type()) << " -> " << d.urn << "\n"
                << text.str();
    }

    args::Positional<std::string> avatar;
    args::Positional<std::string> streamFile;
    args::ValueFlagList<std::string> urns;
    args::Flag little;
    args::ValueFlag<long> padding;
    args::Flag json;
    args::Flag describe;
    args::ValueFlag<std::string> plot;
    std::vector<Driver> drivers;
    CurvePlot curves;
};

} // namespace

sorvane::Mode* createAnimateMode(args::ArgumentParser& parser) { return new AnimateMode(parser); }

} // namespace talvex_app
