// talvex gltf-info, gltf-nodes and gltf-anim FILE, and the glTF half of talvex convert: a .gltf and a
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


// The node hierarchy as an indented tree from the roots (nodes no other node
// lists as a child), each node's type, and the skins. Walked without
// recursion; a node met again on its own branch is printed as a cycle and not
// entered.
class GltfNodesMode : public sorvane::Mode {
public:
    explicit GltfNodesMode(args::ArgumentParser& parser)
        : Mode(parser), path(parser, "FILE", "a .gltf or .glb document", args::Options::Required) {
        parser.Description("Prints a glTF document's default scene, its node tree (name, mesh, skin, camera, "
                           "children), each node's type (mesh, joint or other) and its skins.");
    }

    void execute() override {
        const Gltf gltf = Gltf::load(args::get(path), true);
        std::cout << "scene: " << gltf.getSceneName() << "\n";
        const int64_t count = gltf.nodes.size();
        std::vector<int32_t> types;
        std::string typeError;
        try {
            types = gltf.getNodeTypes();
        } catch (const std::exception& e) {
            typeError = e.what();
        }
        static const char* const typeNames[] = {"other", "mesh", "joint"};
        std::cout << "nodes: " << count << "\n";
        std::vector<bool> isChild(static_cast<size_t>(count), false);
        for (int64_t i = 0; i < count; ++i)
            for (int64_t child : childrenOf(gltf, i))
                if (child >= 0 && child < count) isChild[static_cast<size_t>(child)] = true;
        std::vector<int32_t> onBranch(static_cast<size_t>(count), 0);
        struct Frame {
            int64_t node;
            size_t next;
        };
        for (int64_t start = 0; start < count; ++start) {
            if (isChild[static_cast<size_t>(start)]) continue;
            std::vector<Frame> stack{{start, 0}};
            printNode(gltf, start, 0, types);
            onBranch[static_cast<size_t>(start)] = 1;
            while (!stack.empty()) {
                Frame& top = stack.back();
                const std::vector<int64_t> children = childrenOf(gltf, top.node);
                if (top.next >= children.size()) {
                    onBranch[static_cast<size_t>(top.node)] = 0;
                    stack.pop_back();
                    continue;
                }
                const int64_t child = children[top.next++];
                const std::string indent(2 * stack.size(), ' ');
                if (child < 0 || child >= count) {
                    std::cout << indent << "node " << child << ": invalid index\n";
                } else if (onBranch[static_cast<size_t>(child)]) {
                    std::cout << indent << "node " << child << ": cycle\n";
                } else {
                    printNode(gltf, child, stack.size(), types);
                    onBranch[static_cast<size_t>(child)] = 1;
                    stack.push_back({child, 0});
                }
            }
        }
        if (!typeError.empty()) std::cout << "node types: " << typeError << "\n";
        else {
            std::cout << "node types:";
            for (int32_t t : types) std::cout << " " << (t >= 0 && t <= 2 ? typeNames[t] : "?");
            std::cout << "\n";
        }
        std::cout << "skins: " << gltf.skins.size() << "\n";
        for (int64_t i = 0; i < gltf.skins.size(); ++i) {
            const Skin skin = gltf.skins.getByIndex(i);
            std::cout << "skin " << i;
            if (skin.name.isPropertyPresent()) std::cout << " \"" << skin.name.get() << "\"";
            std::cout << ": joints [";
            const std::vector<int64_t>& joints = skin.joints.get();
            for (size_t j = 0; j < joints.size(); ++j) std::cout << (j ? ", " : "") << joints[j];
            std::cout << "]";
            if (skin.skeleton.isPropertyPresent()) std::cout << ", skeleton " << skin.skeleton.getIndex();
            if (skin.inverseBindMatrices.isPropertyPresent())
                std::cout << ", inverseBindMatrices " << skin.inverseBindMatrices.getIndex();
            std::cout << "\n";
        }
    }

private:
    static std::vector<int64_t> childrenOf(const Gltf& gltf, int64_t index) {
        const Node node = gltf.nodes.getByIndex(index);
        return node.children.isPropertyPresent() ? node.children.get() : std::vector<int64_t>();
    }

    static void printNode(const Gltf& gltf, int64_t index, size_t depth, const std::vector<int32_t>& types) {
        static const char* const typeNames[] = {"other", "mesh", "joint"};
        const Node node = gltf.nodes.getByIndex(index);
        std::cout << std::string(2 * depth, ' ') << "node " << index;
        if (node.name.isPropertyPresent()) std::cout << " \"" << node.name.get() << "\"";
        if (node.mesh.isPropertyPresent()) std::cout << " mesh " << node.mesh.getIndex();
        if (node.skin.isPropertyPresent()) std::cout << " skin " << node.skin.getIndex();
        if (node.camera.isPropertyPresent()) std::cout << " camera " << node.camera.get();
        if (static_cast<size_t>(index) < types.size()) {
            const int32_t t = types[static_cast<size_t>(index)];
            std::cout << " (" << (t >= 0 && t <= 2 ? typeNames[t] : "?") << ")";
        }
        std::cout << "\n";
    }

    args::Positional<std::string> path;
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
sorvane::Mode* createGltfNodesMode(args::ArgumentParser& parser) { return new GltfNodesMode(parser); }

} // namespace talvex_app
