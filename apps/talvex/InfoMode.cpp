#include "apps/talvex/InfoMode.h"

#include <iostream>
#include <vector>

#include "sorvane/arf/Arf.h"

namespace talvex_app {

namespace {

double valueAt(const sorvane::DataTree& tensor, long i) {
    using sorvane::ScalarType;
    const void* p = tensor.getBuffer();
    switch (tensor.getScalarType()) {
    case ScalarType::Integer8: return static_cast<const int8_t*>(p)[i];
    case ScalarType::UInteger8: return static_cast<const uint8_t*>(p)[i];
    case ScalarType::Integer16: return static_cast<const int16_t*>(p)[i];
    case ScalarType::UInteger16: return static_cast<const uint16_t*>(p)[i];
    case ScalarType::UInteger32: return static_cast<const uint32_t*>(p)[i];
    case ScalarType::Float: return static_cast<const float*>(p)[i];
    default: return 0;
    }
}

} // namespace

InfoMode::InfoMode(args::ArgumentParser& parser_)
    : Mode(parser_), path(parser_, "DOCUMENT", "a .arf/.json main file, a .arfz/.zip archive or memory:JSON",
                          args::Options::Required),
      values(parser_, "values", "also print the first values of every tensor payload", {'v', "values"}) {
    parser_.Description("Prints the storage, the sections, the identity, the structure and the data items of an "
                        "ARF document.");
}

void printDataItems(std::ostream& out, const sorvane::arf::Arf& arf, bool values) {
    using namespace sorvane::arf;
    auto data = arf.data.get();
    out << "data:         " << data.size() << " item(s)\n";
    for (const Data& item : data) {
        const std::string type = item.type.get();
        const std::string uri = item.uri.get();
        out << "  data " << item.id.get() << " \"" << item.name.get() << "\": " << type << ", "
            << (uri.rfind("data:", 0) == 0 ? std::string("embedded") : "in " + uri);
        if (item.offset.isPropertyPresent() && item.offset.get() != 0) out << " at " << item.offset.get();
        try {
            out << ", " << item.getDataSize() << " bytes";
            if (type == kDenseMimeType || type == kSparseMimeType) {
                std::vector<long> sizes;
                DataDType dtype = DATA_DTYPE_NONE;
                item.getTensorData(sizes, dtype, nullptr, 0);
                out << ", " << (type == kDenseMimeType ? "dense " : "sparse ") << dtype << " [";
                for (size_t i = 0; i < sizes.size(); ++i) out << (i ? ", " : "") << sizes[i];
                out << "]";
                if (values) {
                    sorvane::DataTree tensor = item.getTensor();
                    const long n = tensor.getValueCount();
                    out << " =";
                    for (long i = 0; i < n && i < 8; ++i) out << " " << valueAt(tensor, i);
                    if (n > 8) out << " ...";
                }
            }
        } catch (const std::exception& e) {
            out << ", unreadable: " << e.what();
        }
        out << "\n";
    }
}

namespace {

// The first size of a tensor payload, read from its header; 0 when it cannot be read.
long firstSize(const sorvane::arf::Data& item) {
    try {
        std::vector<long> sizes;
        sorvane::arf::DataDType dtype = sorvane::arf::DATA_DTYPE_NONE;
        item.getTensorData(sizes, dtype, nullptr, 0);
        return sizes.empty() ? 0 : sizes[0];
    } catch (const std::exception&) {
        return 0;
    }
}

// One line per set: kind, id, name, element count and what it is built on.
void printSets(std::ostream& out, const sorvane::arf::Components& components) {
    using namespace sorvane::arf;
    auto line = [&](const char* kind, const auto& set, int64_t count, const char* unit, const std::string& base) {
        out << "  " << kind << " " << set.id.get() << " \"" << set.name.get() << "\": " << count << " " << unit
            << ", " << base << "\n";
    };
    // Absent lists are skipped: iterating one would fail.
    auto each = [](const auto& list, const auto& print) {
        if (list.isPropertyPresent())
            for (const auto& set : list) print(set);
    };
    each(components.blendshapeSets, [&](const BlendshapeSet& set) {
        line("blendshapeSet", set, set.shapes.size(), "shape(s)", "base mesh " + std::to_string(set.baseMesh.getIndex()));
    });
    each(components.landmarkSets, [&](const LandmarkSet& set) {
        int64_t count = 0;
        try {
            if (set.vertices.isPropertyPresent()) count = firstSize(set.vertices.get());
        } catch (const std::exception&) {
        }
        line("landmarkSet", set, count, "landmark(s)", "base mesh data " + std::to_string(set.baseMesh.getIndex()));
    });
    each(components.textureSets, [&](const TextureSet& set) {
        line("textureSet", set, set.targets.size(), "target(s)",
             "material data " + std::to_string(set.material.getIndex()));
    });
    each(components.attachmentSets, [&](const AttachmentSet& set) {
        line("attachmentSet", set, set.meshes.size(), "mesh(es)", "node " + std::to_string(set.node_.getIndex()));
    });
    each(components.gaussianSplatSets, [&](const GaussianSplatSet& set) {
        std::string base = "mode " + set.mode.get();
        if (set.baseMesh.isPropertyPresent()) base += ", base mesh " + std::to_string(set.baseMesh.getIndex());
        if (set.baseMeshData.isPropertyPresent())
            base += ", base mesh data " + std::to_string(set.baseMeshData.getIndex());
        if (set.positions.isPropertyPresent()) base += ", positions data " + std::to_string(set.positions.getIndex());
        line("gaussianSplatSet", set, set.count.get(), "splat(s)", base);
    });
}

} // namespace

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

    auto components = arf.components.get();
    out << "components:   " << components.meshes.size() << " mesh(es), " << components.nodes.size() << " node(s), "
        << components.skeletons.size() << " skeleton(s), " << components.skins.size() << " skin(s), "
        << components.blendshapeSets.size() + components.landmarkSets.size() + components.textureSets.size() +
               components.attachmentSets.size() + components.gaussianSplatSets.size()
        << " set(s)\n";
    for (const Mesh& mesh : components.meshes) {
        out << "  mesh " << mesh.id.get() << " \"" << mesh.name.get() << "\": data";
        for (int64_t i = 0; i < mesh.data.size(); ++i) out << " " << mesh.data.get(i);
        out << "\n";
    }

    printSets(out, components);

    printDataItems(out, arf, args::get(values));
}

} // namespace talvex_app
