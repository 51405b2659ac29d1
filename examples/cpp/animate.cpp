// Quick start in C++: load an avatar, build a mapper for one framework, feed
// a stream file in 4 KB chunks and print the weights and joint matrices each
// unit drives.
//
//   animate AVATAR STREAM [URN [TYPE]]
//
// URN and TYPE default to the body framework of examples/avatar.arf.json,
// which the avatar drives directly (a built-in URN such as
// urn:mpeg:avatar:blendshapes:mediapipe is used as it is).
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

#include <sorvane/arf/Arf.h>
#include <sorvane/arf/animation/AnimationComponents.h>
#include <sorvane/arf/animation/AnimationFramework.h>
#include <sorvane/arf/animation/AnimationMapper.h>
#include <sorvane/arf/animation/stream/AnimationSampleStream.h>

using namespace sorvane::arf;

int main(int argc, char** argv) try {
    if (argc < 3) {
        std::cerr << "usage: " << argv[0] << " AVATAR STREAM [URN [TYPE]]\n";
        return 2;
    }
    const std::string urn = argc > 3 ? argv[3] : "urn:mpeg:arf:animation:body:smpl";
    const std::string type = argc > 4 ? argv[4] : "ANIMATION_BODY";
    const Arf arf = Arf::load(argv[1], true);
    const AnimationFrameworkRef framework =
        AnimationFramework::knows(urn) ? AnimationFramework::create(urn, 0) : AnimationFramework::tryCreate(arf, type, urn, 0);
    if (!framework) throw std::runtime_error("no framework " + urn);
    const AnimationMapper mapper(arf, framework);
    AnimationComponents components(arf);

    std::ifstream in(argv[2], std::ios::binary);
    AnimationSampleStream stream(false);
    HeaderAnimationSample header;
    std::unique_ptr<UnitAnimationSample> sample; // reused from unit to unit
    std::vector<char> chunk(4096);
    long units = 0;
    while (in.read(chunk.data(), static_cast<std::streamsize>(chunk.size())) || in.gcount() > 0) {
        stream.feed(chunk.data(), static_cast<long>(in.gcount()));
        while (stream.nextUnitSample(header, sample)) {
            ++units;
            const auto kind = sample->type();
            const bool weights = kind == ANIMATION_UNIT_BLENDSHAPE || kind == ANIMATION_UNIT_TEXTURE;
            const bool joints = kind == ANIMATION_UNIT_JOINT;
            const auto inputs = framework->getInputs().begin()->second->getValueType();
            if (!(weights && inputs == ANIMATION_VALUE_WEIGHT) && !(joints && inputs == ANIMATION_VALUE_TRANSFORM))
                continue; // config, silent, or a unit for another framework
            mapper.updateComponents(&components, sample.get());
            std::cout << "unit at " << header.getTimestamp() << "\n";
            for (long set : components.getBlendshapeSetIds()) {
                std::cout << "  blendshape set " << set << ":";
                for (float w : components.getBlendshapeWeights(set)) std::cout << " " << w;
                std::cout << "\n";
            }
            for (long skeleton : components.getSkeletonIds())
                for (long joint : components.getJointIds(skeleton)) {
                    const auto m = components.getJointTransform(skeleton, joint);
                    std::cout << "  skeleton " << skeleton << " joint " << joint << ": translation (" << m[3] << ", "
                              << m[7] << ", " << m[11] << ")\n";
                }
        }
        if (stream.getState() > 1) throw std::runtime_error(stream.getErrorMsg());
    }
    std::cout << units << " units\n";
    return 0;
} catch (const std::exception& e) {
    std::cerr << e.what() << "\n";
    return 1;
}
