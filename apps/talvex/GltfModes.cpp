// talvex gltf-info FILE, talvex gltf-anim FILE, and the glTF half of talvex convert: a .gltf and a
// .glb written again in the other form (or the same), with every buffer
// packed into one (the BIN chunk, or one .bin beside the .gltf) and the views
// rebased onto it.
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <args.hxx>

#include "sorvane/core/file.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/gltf2/node/animation/AnimationProcessor.h"
#include "sorvane/gltf2/GltfCopy.h"
#include "sorvane/tools/Mode.h"

namespace talvex_app {

namespace {

using namespace sorvane::gltf2;

std::string shortText(const std::string& text) { return text.size() > 48 ? text.substr(0, 45) + "..." : text; }

void printNumbers(const char* label, const std::vector<double>& values) {
    std::cout << " " << label << " [";
    for (size_t i = 0; i < values.size(); ++i) std::cout << (i ? ", " : "") << values[i];
    std::cout << "]";
}

class GltfInfoMode : public sorvane::Mode {
public:
    explicit GltfInfoMode(args::ArgumentParser& parser)
        : Mode(parser), path(parser, "FILE", "a .gltf or .glb document", args::Options::Required) {
        parser.Description("Prints a glTF document's storage mode, asset, extensions, list sizes, buffers and "
                           "accessors (type, component type, count, min, max).");
    }

    void execute() override {
        const Gltf gltf = Gltf::load(args::get(path), true);
        std::cout << "mode: " << gltf.getStorageMode() << "\n";
        const Asset asset = gltf.asset.get();
        std::cout << "asset: version " << asset.version.get();
        if (asset.generator.isPropertyPresent()) std::cout << ", generator \"" << asset.generator.get() << "\"";
        if (asset.copyright.isPropertyPresent()) std::cout << ", copyright \"" << asset.copyright.get() << "\"";
        std::cout << "\n";
        for (const auto& name : gltf.extensionsUsed.get()) std::cout << "extension used: " << name << "\n";
        for (const auto& name : gltf.extensionsRequired.get()) std::cout << "extension required: " << name << "\n";
        std::cout << "buffers: " << gltf.buffers.size() << ", bufferViews: " << gltf.bufferViews.size()
                  << ", accessors: " << gltf.accessors.size() << "\n";
        for (int64_t i = 0; i < gltf.buffers.size(); ++i) {
            const Buffer buffer = gltf.buffers.getByIndex(i);
            std::cout << "buffer " << i << ": " << buffer.byteLength.get() << " bytes";
            if (buffer.uri.isPropertyPresent()) std::cout << ", uri " << shortText(buffer.uri.get());
            std::cout << "\n";
        }
        for (int64_t i = 0; i < gltf.accessors.size(); ++i) {
            const Accessor accessor = gltf.accessors.getByIndex(i);
            std::cout << "accessor " << i << ": " << accessor.type.get() << " " << accessor.componentType.get()
                      << " count " << accessor.count.get();
            if (accessor.min.isPropertyPresent()) printNumbers("min", accessor.min.get());
            if (accessor.max.isPropertyPresent()) printNumbers("max", accessor.max.get());
            std::cout << "\n";
        }
    }

private:
    args::Positional<std::string> path;
};

// The animations of a document: per animation its time range, per channel its
// target, interpolation and track shape, and with --time the sample there.
class GltfAnimMode : public sorvane::Mode {
public:
    explicit GltfAnimMode(args::ArgumentParser& parser)
        : Mode(parser), path(parser, "FILE", "a .gltf or .glb document", args::Options::Required),
          node(parser, "N", "only the channels that target node N", {"node"}),
          time(parser, "T", "the sample of each channel at T seconds", {"time"}) {
        parser.Description("Prints a glTF document's animations: time ranges, channels (target node and path, "
                           "interpolation, keys, values per key) and, with --time, the samples at that time.");
    }

    void execute() override {
        const Gltf gltf = Gltf::load(args::get(path), true);
        std::cout << "animations: " << gltf.animations.size() << "\n";
        for (int64_t a = 0; a < gltf.animations.size(); ++a) {
            const AnimationNode& animation = *gltf.animations.getByIndex(a).getNode();
            std::cout << "animation " << a;
            if (animation.hasName()) std::cout << " \"" << animation.getName() << "\"";
            std::cout << ": " << animation.getChannels()->getNodeSize() << " channels, "
                      << animation.getSamplers()->getNodeSize() << " samplers";
            try {
                const auto range = animation.getTimeRange();
                std::cout << ", time " << range.first << " to " << range.second;
            } catch (const std::exception& e) {
                std::cout << ", no time range (" << e.what() << ")";
            }
            std::cout << "\n";
            printChannels(animation);
        }
    }

private:
    void printChannels(const AnimationNode& animation) {
        const auto& samplers = *animation.getSamplers();
        const auto& channels = animation.getChannels()->getItems();
        for (size_t c = 0; c < channels.size(); ++c) {
            const AnimationChannelTargetNode& target = *channels[c]->getTarget();
            if (node && (!target.hasNode() || target.getNode() != args::get(node))) continue;
            std::cout << "  channel " << c << ": node ";
            if (target.hasNode()) std::cout << target.getNode();
            else std::cout << "-";
            std::cout << " " << target.getPath() << ", sampler " << channels[c]->getSampler();
            try {
                AnimationProcessor processor;
                processor.prepare(*samplers.getByIndex(channels[c]->getSampler()), 30.0f);
                std::cout << " " << processor.interpolation << ", " << processor.inputCount << " keys "
                          << processor.input.front() << " to " << processor.duration << ", " << processor.valueSize
                          << " values per key";
                if (time) {
                    std::vector<float> sample(static_cast<size_t>(processor.valueSize));
                    processor.getSample(sample.data(), processor.valueSize, args::get(time));
                    std::cout << "\n    at " << args::get(time) << ":";
                    for (float v : sample) std::cout << " " << v;
                }
            } catch (const std::exception& e) {
                std::cout << ": " << oneLine(e.what());
            }
            std::cout << "\n";
        }
    }

    static std::string oneLine(std::string text) {
        for (char& ch : text)
            if (ch == '\n') ch = ' ';
        return text;
    }

    args::Positional<std::string> path;
    args::ValueFlag<long> node;
    args::ValueFlag<float> time;
};

} // namespace

bool isGltfPath(const std::string& path) {
    const std::string extension = sorvane::getFileExtension(path);
    return extension == ".gltf" || extension == ".glb";
}

void convertGltf(const std::string& input, const std::string& output) {
    const Gltf source = Gltf::load(input, true);
    sorvane::gltf2::saveGltfAs(source, output);
}

sorvane::Mode* createGltfInfoMode(args::ArgumentParser& parser) { return new GltfInfoMode(parser); }
sorvane::Mode* createGltfAnimMode(args::ArgumentParser& parser) { return new GltfAnimMode(parser); }

} // namespace talvex_app
