#include <functional>
#include <iostream>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/tools/Mode.h"

namespace talvex_app {

namespace {

// Element count of a tensor payload, from its header only; -1 when it
// cannot be read (a dangling id, a payload that is not a tensor).
long elementCount(const std::function<sorvane::arf::Data()>& follow, std::string& error) {
    try {
        std::vector<long> sizes;
        sorvane::arf::DataDType dtype = sorvane::arf::DATA_DTYPE_NONE;
        follow().getTensorData(sizes, dtype, nullptr, 0);
        long count = 1;
        for (long s : sizes) count *= s;
        return count;
    } catch (const std::exception& e) {
        error = e.what();
        return -1;
    }
}

void printChannel(std::ostream& out, const sorvane::arf::AssociationChannel& channel, int64_t index) {
    out << "          channel " << index << ": source " << channel.sourceIndex.get();
    if (channel.path.isPropertyPresent()) out << ", " << channel.path.get();
    out << ", " << channel.interpolation.get() << ", input " << channel.input.getIndex() << ", output "
        << channel.output.getIndex();
    std::string error;
    const long keys = elementCount([&] { return channel.input.get(); }, error);
    const long values = keys < 0 ? -1 : elementCount([&] { return channel.output.get(); }, error);
    if (keys < 0 || values < 0) out << ", curve unreadable: " << error;
    else out << ", " << keys << " key(s), sample size " << (keys ? values / keys : 0);
    out << "\n";
}

void printLinks(std::ostream& out, const sorvane::arf::AnimationLinkList& links) {
    using namespace sorvane::arf;
    int64_t l = 0;
    for (const AnimationLink& link : links) {
        out << "    link " << l++ << ": " << link.type.get() << ", target " << link.target.get();
        if (!link.mappings.isPropertyPresent()) {
            out << ", driven directly\n";
            continue;
        }
        out << ", " << link.mappings.size() << " mapping(s)\n";
        int64_t m = 0;
        for (const AnimationMapping& mapping : link.mappings) {
            out << "      mapping " << m++ << ": source " << mapping.source.get() << "\n";
            if (mapping.linearAssociations.isPropertyPresent()) {
                int64_t a = 0;
                for (const LinearAssociation& association : mapping.linearAssociations) {
                    out << "        linear " << a++ << ": target " << association.targetIndex.get() << " <-";
                    for (int64_t i = 0; i < association.sourceIndices.size(); ++i) {
                        out << " " << association.sourceIndices.get(i);
                        if (association.weights.has(i)) out << "*" << association.weights.get(i);
                    }
                    out << "\n";
                }
            }
            if (mapping.nonLinearAssociations.isPropertyPresent()) {
                int64_t a = 0;
                for (const NonLinearAssociation& association : mapping.nonLinearAssociations) {
                    out << "        non-linear " << a++ << ": target " << association.targetIndex.get();
                    if (association.combination.isPropertyPresent()) out << ", " << association.combination.get();
                    out << ", " << association.channels.size() << " channel(s)\n";
                    int64_t c = 0;
                    for (const AssociationChannel& channel : association.channels) printChannel(out, channel, c++);
                }
            }
        }
    }
}

// `talvex links DOCUMENT`: the animation links of every component as a tree.
class LinksMode : public sorvane::Mode {
public:
    explicit LinksMode(args::ArgumentParser& parser_)
        : Mode(parser_),
          path(parser_, "DOCUMENT", "a .arf/.json main file, a .arfz/.zip archive or memory:JSON",
               args::Options::Required) {
        parser_.Description("Prints the animation links of each component (skeletons and sets) as a tree down to "
                            "the channels, with the key count and sample size of each curve.");
    }

    void execute() override {
        using namespace sorvane::arf;
        Arf arf = Arf::load(args::get(path), true);
        auto components = arf.components.get();
        std::ostream& out = std::cout;
        int64_t shown = 0;
        auto each = [&](const char* kind, const auto& list) {
            if (!list.isPropertyPresent()) return;
            for (const auto& component : list) {
                if (!component.animationInfo.isPropertyPresent()) continue;
                ++shown;
                out << kind << " " << component.id.get() << " \"" << component.name.get() << "\": "
                    << component.animationInfo.size() << " link(s)\n";
                printLinks(out, component.animationInfo.get());
            }
        };
        each("skeleton", components.skeletons);
        each("blendshapeSet", components.blendshapeSets);
        each("landmarkSet", components.landmarkSets);
        each("textureSet", components.textureSets);
        each("gaussianSplatSet", components.gaussianSplatSets);
        if (!shown) out << "no animation links\n";
    }

private:
    args::Positional<std::string> path;
};

} // namespace

sorvane::Mode* createLinksMode(args::ArgumentParser& parser) { return new LinksMode(parser); }

} // namespace talvex_app
