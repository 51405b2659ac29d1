#include "apps/talvex/InfoMode.h"

#include <iostream>

#include "sorvane/arf/Arf.h"

namespace talvex_app {

InfoMode::InfoMode(args::ArgumentParser& parser_)
    : Mode(parser_), path(parser_, "DOCUMENT", "a .arf/.json main file, a .arfz/.zip archive or memory:JSON",
                          args::Options::Required) {
    parser_.Description("Prints the storage, the sections, the identity and the structure of an ARF document.");
}

void InfoMode::execute() {
    using namespace sorvane::arf;
    Arf arf = Arf::load(args::get(path), true);
    std::ostream& out = std::cout;
    out << "storage mode: " << arf.getStorageMode() << "\n";
    out << "main file:    " << arf.getMainFileName() << " in \"" << arf.getMainDir() << "\"\n";

    const auto& root = arf.getRoot();
    out << "sections:    ";
    for (const char* key : {"preamble", "identity", "structure", "components", "data"})
        out << " " << key << (root->getNodeItem(std::string(key)) ? "" : " (absent)");
    out << "\n";

    auto preamble = arf.preamble.get();
    out << "preamble:     " << preamble.signature.get() << " " << preamble.version.get() << ", "
        << preamble.authenticationFeatures.size() << " authentication feature(s)\n";
    auto identity = arf.identity.get();
    out << "identity:     name \"" << identity.name.get() << "\", id \"" << identity.id.get() << "\", age "
        << identity.age.get() << ", gender \"" << identity.gender.get() << "\"\n";

    auto structure = arf.structure.get();
    out << "structure:    " << structure.assets.size() << " asset(s), "
        << structure.protectionConfigurations.size() << " protection configuration(s)\n";
    for (const Asset& asset : structure.assets) {
        out << "  asset " << asset.id.get() << " \"" << asset.name.get() << "\": " << asset.lods.size()
            << " level(s) of detail\n";
        for (const Lod& lod : asset.lods) {
            out << "    lod " << lod.id.get() << " \"" << lod.name.get() << "\":";
            auto count = [&](const char* key, int64_t n, bool present) {
                if (present) out << " " << n << " " << key;
            };
            count("skins", lod.skins.size(), lod.skins.isPropertyPresent());
            count("meshes", lod.meshes.size(), lod.meshes.isPropertyPresent());
            count("skeletons", lod.skeletons.size(), lod.skeletons.isPropertyPresent());
            count("blendshapeSets", lod.blendshapeSets.size(), lod.blendshapeSets.isPropertyPresent());
            count("landmarkSets", lod.landmarkSets.size(), lod.landmarkSets.isPropertyPresent());
            count("textureSets", lod.textureSets.size(), lod.textureSets.isPropertyPresent());
            count("attachmentSets", lod.attachmentSets.size(), lod.attachmentSets.isPropertyPresent());
            count("gaussianSplatSets", lod.gaussianSplatSets.size(), lod.gaussianSplatSets.isPropertyPresent());
            out << "\n";
        }
    }
}

} // namespace talvex_app
