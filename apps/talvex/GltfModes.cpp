// talvex gltf-info FILE, and the glTF half of talvex convert: a .gltf and a
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

} // namespace talvex_app
