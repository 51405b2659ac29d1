#ifndef SORVANE_GLTF2_PROPERTY_ANIMATION_ANIMATIONCHANNELLISTADDS_H
#define SORVANE_GLTF2_PROPERTY_ANIMATION_ANIMATIONCHANNELLISTADDS_H

#include <cstdint>
#include <string>

#include "sorvane/gltf2/node/animation/AnimationChannelNodes.h"
#include "sorvane/gltf2/property/ListProperty.h"
#include "sorvane/gltf2/property/animation/AnimationChannel.h"

namespace sorvane::gltf2 {

// The channel list's accessor, with a channel and its target added in one call.
class SORVANE_API AnimationChannelListAdds : public ListProperty<AnimationChannelNodes, AnimationChannel> {
public:
    using ListProperty::add;
    using ListProperty::addPtr;
    using ListProperty::ListProperty;

    // The node index is checked like the target's own setter checks it.
    AnimationChannel addTarget(long sampler, long node, const std::string& path) {
        AnimationChannel channel = add(static_cast<int64_t>(sampler));
        const auto& target = channel.getNode()->getTarget();
        target->setPath(path);
        target->setNode(node);
        return channel;
    }
    AnimationChannel* addTargetPtr(long sampler, long node, const std::string& path) {
        return new AnimationChannel(addTarget(sampler, node, path));
    }
};

} // namespace sorvane::gltf2

#endif
