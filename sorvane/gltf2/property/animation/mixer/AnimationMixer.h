#ifndef SORVANE_GLTF2_PROPERTY_ANIMATION_MIXER_ANIMATIONMIXER_H
#define SORVANE_GLTF2_PROPERTY_ANIMATION_MIXER_ANIMATIONMIXER_H

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/core/Export.h"
#include "sorvane/gltf2/property/animation/mixer/Transform.h"
#include "sorvane/gltf2/property/animation/mixer/TransformData.h"

namespace sorvane::gltf2 {

class AnimationMixer;
class AbstractNode;
class Animation;
class AnimationChannel;
class AnimationSampler;
class AnimationChannelNode;
class AnimationSamplerNode;

// The transforms stacked on one node, applied in the order they were added.
class SORVANE_API Channel {
public:
    AnimationMixer* mixer = nullptr;
    long nodeIndex = -1;
    TransformData transformData;  // the node's rest state
    std::vector<std::shared_ptr<Transform>> transforms;

    Channel(AnimationMixer* mixer, long nodeIndex, const TransformData& rest);

    // The rest state of a node from its values (null when absent): a matrix
    // alone, or scale, rotation and translation, never both.
    static TransformData restState(const std::string& nodePath, const std::vector<double>* matrix,
                                   const std::vector<double>* translation, const std::vector<double>* rotation,
                                   const std::vector<double>* scale);

    void apply(TransformData& data) const;
    // Replaces any transform of the same animation name on this node.
    void addAnimationChannel(const std::string& path, const std::vector<float>& input,
                             const std::vector<float>& output, const std::string& interpolation, const float& time,
                             const std::string& name, const std::optional<RangeConverter>& converter,
                             TransformPolicy policy);
    void setAnimationChannelOutput(const std::string& name, const std::vector<float>& output);
    void removeAnimation(const std::string& name);
};

// Several animations stacked on the nodes of one document. It copies the key
// data, so the document may close once the animations are added.
class SORVANE_API AnimationMixer {
public:
    float frameRate = 30.0f;
    std::unordered_map<std::string, TransformPolicy> defaultTransformPolicies;
    std::vector<std::shared_ptr<Channel>> channels;

    AnimationMixer() = default;
    explicit AnimationMixer(float frameRate,
                            std::unordered_map<std::string, TransformPolicy> defaultTransformPolicies = {});

    void addAnimation(const Animation& animation, const float& time, const std::string& name,
                      const std::optional<RangeConverter>& converter = std::nullopt,
                      TransformPolicy policy = TransformPolicy::Default);
    void addAnimationChannel(const AnimationChannel& channel, const AnimationSampler& sampler, const float& time,
                             const std::string& name, const std::optional<RangeConverter>& converter = std::nullopt,
                             TransformPolicy policy = TransformPolicy::Default);
    // A node accessor of the document (`gltf2::Node`): its index, and its rest
    // state from the values it holds when it has no channel yet.
    template <class NodeAccessor>
    void addAnimationChannel(const NodeAccessor& node, const std::string& path, const std::vector<float>& input,
                             const std::vector<float>& output, const std::string& interpolation, const float& time,
                             const std::string& name, const std::optional<RangeConverter>& converter = std::nullopt,
                             TransformPolicy policy = TransformPolicy::Default) {
        addNodeChannel(*node.getNode(), path, input, output, interpolation, time, name, converter, policy);
    }
    // The node given by its index and rest state; the rest state is used only
    // when the node has no channel yet.
    void addAnimationChannel(long nodeIndex, const TransformData& rest, const std::string& path,
                             const std::vector<float>& input, const std::vector<float>& output,
                             const std::string& interpolation, const float& time, const std::string& name,
                             const std::optional<RangeConverter>& converter = std::nullopt,
                             TransformPolicy policy = TransformPolicy::Default);
    void setAnimationChannelOutput(const std::string& name, const std::vector<float>& output);
    void removeAnimation(const std::string& name);

    // The channel of a node (the last one added for it), null without one.
    Channel* findChannel(long nodeIndex) const;
    // Every channel applied to a copy of its rest state, in channel order.
    std::vector<TransformData> apply() const;

    void addNodeChannel(const AbstractNode& node, const std::string& path, const std::vector<float>& input,
                        const std::vector<float>& output, const std::string& interpolation, const float& time,
                        const std::string& name, const std::optional<RangeConverter>& converter,
                        TransformPolicy policy);

private:
    void addChannelNodes(const AnimationChannelNode& channel, const AnimationSamplerNode& sampler, const float& time,
                         const std::string& name, const std::optional<RangeConverter>& converter,
                         TransformPolicy policy);
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const Channel& channel);
SORVANE_API std::ostream& operator<<(std::ostream& out, const AnimationMixer& mixer);

} // namespace sorvane::gltf2

#endif
