// frameworks: the built-in animation frameworks or one framework's rows.
// pose: the live state of an avatar's animatable parts after init.
#include <iomanip>
#include <iostream>

#include "apps/talvex/AppModes.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"

namespace talvex_app {

using namespace sorvane::arf;

namespace {

class FrameworksMode : public sorvane::Mode {
public:
    explicit FrameworksMode(args::ArgumentParser& p)
        : Mode(p), urn(p, "URN", "a framework's URN: list its rows (default: list the built-in frameworks)") {
        p.Description("Lists the built-in animation frameworks (URN, kind, rows), or the rows of one: index, "
                      "name, value type and, for weights, the range.");
    }

    void execute() override {
        if (!urn) {
            for (const auto& name : AnimationFramework::getBuiltinUrns()) {
                auto f = AnimationFramework::create(name, 0);
                std::cout << name << "  " << f->getType() << "  " << f->getInputs().size() << " rows of "
                          << animationValueType2string(f->getInputs().begin()->second->getValueType())
                          << (AnimationFramework::knows(name) ? "" : "  (not reported by knows)") << "\n";
            }
            return;
        }
        auto f = AnimationFramework::create(args::get(urn), 0);
        std::cout << f->getName() << "  " << f->getType() << "\n";
        for (const auto& [location, input] : f->getInputs()) {
            std::cout << std::setw(4) << location.index << "  " << input->name << "  "
                      << animationValueType2string(input->getValueType());
            if (auto* w = dynamic_cast<const AnimationWeightInput*>(input.get()))
                std::cout << " [" << w->min << ", " << w->max << "]";
            std::cout << "\n";
        }
    }

private:
    args::Positional<std::string> urn;
};

class PoseMode : public sorvane::Mode {
public:
    explicit PoseMode(args::ArgumentParser& p) : Mode(p), file(p, "FILE", "the ARF document", args::Options::Required) {
        p.Description("Prints the animation state of an avatar as it starts: the weight of every blendshape and "
                      "texture target (0) and every joint's matrix (the rest pose of its node), by set, in "
                      "ascending id order.");
    }

    void execute() override {
        const Arf arf = Arf::load(args::get(file), true);
        const AnimationComponents c(arf);
        for (long set : c.getBlendshapeSetIds()) {
            std::cout << "blendshape set " << set << ": " << c.getBlendshapeCount(set) << " shapes\n";
            printWeights(c.getBlendshapeIds(set), c.getBlendshapeWeights(set));
        }
        for (long set : c.getTextureSetIds()) {
            std::cout << "texture set " << set << ": " << c.getTextureCount(set) << " targets\n";
            printWeights(c.getTextureIds(set), c.getTextureWeights(set));
        }
        for (long skeleton : c.getSkeletonIds()) {
            std::cout << "skeleton " << skeleton << ": " << c.getJointCount(skeleton) << " joints\n";
            for (long joint : c.getJointIds(skeleton)) {
                const auto m = c.getJointTransform(skeleton, joint);
                std::cout << "  joint " << joint << "\n";
                for (size_t row = 0; row * 4 < m.size(); ++row) {
                    std::cout << "    [";
                    for (size_t k = row * 4; k < row * 4 + 4 && k < m.size(); ++k) std::cout << " " << std::setw(9) << m[k];
                    std::cout << " ]\n";
                }
            }
        }
        if (c.getBlendshapeSetIds().empty() && c.getTextureSetIds().empty() && c.getSkeletonIds().empty())
            std::cout << "nothing animatable\n";
    }

private:
    static void printWeights(const std::vector<long>& ids, const std::vector<float>& weights) {
        for (size_t i = 0; i < ids.size(); ++i) std::cout << "  " << ids[i] << " = " << weights[i] << "\n";
    }

    args::Positional<std::string> file;
};

} // namespace

sorvane::Mode* createFrameworksMode(args::ArgumentParser& parser) { return new FrameworksMode(parser); }
sorvane::Mode* createPoseMode(args::ArgumentParser& parser) { return new PoseMode(parser); }

} // namespace talvex_app
