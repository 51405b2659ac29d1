#include "sorvane/gltf2/property/animation/mixer/AnimationMixer.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/property/animation/Animation.h"

namespace sorvane::gltf2 {

namespace {

void copyValues(float* out, const std::vector<double>& values, size_t count) {
    if (values.size() != count) SORVANE_THROW("Invalid dimension");
    for (size_t i = 0; i < count; ++i) out[i] = static_cast<float>(values[i]);
}

std::shared_ptr<Transform> makeTransform(const std::string& path) {
    if (path == "scale") return std::make_shared<ScaleTransform>();
    if (path == "rotation") return std::make_shared<RotationTransform>();
    if (path == "translation") return std::make_shared<TranslationTransform>();
    if (path == "matrix") return std::make_shared<MatrixTransform>();
    if (path == "weights") return std::make_shared<WeightsTransform>();
    SORVANE_THROW("Invalid or unsupported path %s", path.c_str());
}

// The rest state of node `index` of the document, from the values the node
// writes: only what is present counts, so read defaults stay out.
TransformData nodeRestState(const AbstractNode& node) {
    const std::string text = node.toJsonString();
    archive::JsonImporter importer(text.data(), text.size());
    std::optional<std::vector<double>> values[4];  // matrix, translation, rotation, scale
    static const char* const kKeys[] = {"matrix", "translation", "rotation", "scale"};
    if (!importer.nextBeginObject()) SORVANE_THROW("Expect an object at line %d", importer.getLine());
    std::string key;
    while (importer.nextObjectItem(key)) {
        bool read = false;
        for (int k = 0; k < 4 && !read; ++k)
            if (key == kKeys[k]) {
                values[k] = importer.nextNumberList();
                if (!values[k]) SORVANE_THROW("Error parsing %s at line %d", key.c_str(), importer.getLine());
                read = true;
            }
        if (!read && !importer.skipContent(0, 0))
            SORVANE_THROW("Failed to skip content for key \"%s\" at line %d", key.c_str(), importer.getLine());
    }
    auto at = [&](int k) { return values[k] ? &*values[k] : nullptr; };
    return Channel::restState(node.getNodePath(), at(0), at(1), at(2), at(3));
}

// Node `index` of the document.
const AbstractNode& documentNode(const RootNode& root, long index) {
    const AbstractNode::ConstRef nodes = root.getNodeItem("nodes");
    if (!nodes) SORVANE_THROW("There is no nodes");
    const AbstractNode::ConstRef node = nodes->getNodeItem(static_cast<int64_t>(index));
    if (!node) SORVANE_THROW("Getting item from nodes: Invalid index %ld", index);
    return *node;
}

} // namespace

Channel::Channel(AnimationMixer* mixer_, long nodeIndex_, const TransformData& rest)
    : mixer(mixer_), nodeIndex(nodeIndex_), transformData(rest) {}

TransformData Channel::restState(const std::string& nodePath, const std::vector<double>* matrix,
                                 const std::vector<double>* translation, const std::vector<double>* rotation,
                                 const std::vector<double>* scale) {
    TransformData data(TransformType::Matrix);
    if (!translation && !rotation && !scale) {
        if (matrix) {
            copyValues(data.matrix, *matrix, 16);
            data.transformed = true;
        }
        return data;
    }
    if (matrix)
        SORVANE_THROW("Error in %s:\nCan't mix Scale/Rotation/Translation and Matrix transform", nodePath.c_str());
    data.transformType = TransformType::STR;
    if (scale) copyValues(data.scale, *scale, 3);
    if (rotation) copyValues(data.rotation, *rotation, 4);
    if (translation) copyValues(data.translation, *translation, 3);
    data.transformed = true;
    return data;
}

void Channel::apply(TransformData& data) const {
    for (const auto& transform : transforms) transform->apply(data);
}

void Channel::addAnimationChannel(const std::string& path, const std::vector<float>& input,
                                  const std::vector<float>& output, const std::string& interpolation,
                                  const float& time, const std::string& name,
                                  const std::optional<RangeConverter>& converter, TransformPolicy policy) {
    if (policy == TransformPolicy::Default) {
        const auto found = mixer ? mixer->defaultTransformPolicies.find(path)
                                 : std::unordered_map<std::string, TransformPolicy>::const_iterator();
        if (!mixer || found == mixer->defaultTransformPolicies.end())
            SORVANE_THROW("No default transform policy %s", path.c_str());
        policy = found->second;
    }
    std::shared_ptr<Transform> transform = makeTransform(path);
    transform->time = &time;
    transform->rangeConverter = converter;
    transform->policy = policy;
    transform->animationName = name;
    transform->processor.prepare(input, output, interpolation, mixer ? mixer->frameRate : 30.0f);
    removeAnimation(name);
    transforms.push_back(std::move(transform));
}

void Channel::setAnimationChannelOutput(const std::string& name, const std::vector<float>& output) {
    for (const auto& transform : transforms)
        if (transform->animationName == name) transform->processor.setOutput(output);
}

void Channel::removeAnimation(const std::string& name) {
    transforms.erase(std::remove_if(transforms.begin(), transforms.end(),
                                    [&](const std::shared_ptr<Transform>& t) { return t->animationName == name; }),
                     transforms.end());
}

AnimationMixer::AnimationMixer(float frameRate_, std::unordered_map<std::string, TransformPolicy> policies)
    : frameRate(frameRate_), defaultTransformPolicies(std::move(policies)) {}

Channel* AnimationMixer::findChannel(long nodeIndex) const {
    Channel* found = nullptr;
    for (const auto& channel : channels)
        if (channel->nodeIndex == nodeIndex) found = channel.get();
    return found;
}

void AnimationMixer::addAnimationChannel(long nodeIndex, const TransformData& rest, const std::string& path,
                                         const std::vector<float>& input, const std::vector<float>& output,
                                         const std::string& interpolation, const float& time,
                                         const std::string& name, const std::optional<RangeConverter>& converter,
                                         TransformPolicy policy) {
    Channel* channel = findChannel(nodeIndex);
    if (!channel) {
        channels.push_back(std::make_shared<Channel>(this, nodeIndex, rest));
        channel = channels.back().get();
    }
    channel->addAnimationChannel(path, input, output, interpolation, time, name, converter, policy);
}

void AnimationMixer::addAnimation(const Animation& animation, const float& time, const std::string& name,
                                  const std::optional<RangeConverter>& converter, TransformPolicy policy) {
    const AnimationNode& node = *animation.getNode();
    for (const auto& channel : node.getChannels()->getItems())
        addChannelNodes(*channel, *node.getSamplers()->getByIndex(channel->getSampler()), time, name, converter,
                        policy);
}

void AnimationMixer::addAnimationChannel(const AnimationChannel& channel, const AnimationSampler& sampler,
                                         const float& time, const std::string& name,
                                         const std::optional<RangeConverter>& converter, TransformPolicy policy) {
    addChannelNodes(*channel.getNode(), *sampler.getNode(), time, name, converter, policy);
}

void AnimationMixer::addChannelNodes(const AnimationChannelNode& channel, const AnimationSamplerNode& sampler,
                                     const float& time, const std::string& name,
                                     const std::optional<RangeConverter>& converter, TransformPolicy policy) {
    const AnimationChannelTargetNode& target = *channel.getTarget();
    if (!target.hasNode()) SORVANE_THROW("%s has no node", target.getPath().c_str());
    auto [input, output, interpolation] = getAnimationSamplerData(sampler);
    const long index = static_cast<long>(target.getNode());
    if (!findChannel(index)) {
        const std::shared_ptr<RootNode> root = channel.getNodeRoot().lock();
        if (!root) SORVANE_THROW("In %s: Invalid node", channel.getNodePath().c_str());
        channels.push_back(std::make_shared<Channel>(this, index, nodeRestState(documentNode(*root, index))));
    }
    addAnimationChannel(index, TransformData(), target.getPath(), input, output, interpolation, time, name, converter,
                        policy);
}

void AnimationMixer::addNodeChannel(const AbstractNode& node, const std::string& path, const std::vector<float>& input,
                                    const std::vector<float>& output, const std::string& interpolation,
                                    const float& time, const std::string& name,
                                    const std::optional<RangeConverter>& converter, TransformPolicy policy) {
    const long index = static_cast<long>(node.getNodeIndex());
    if (!findChannel(index)) channels.push_back(std::make_shared<Channel>(this, index, nodeRestState(node)));
    addAnimationChannel(index, TransformData(), path, input, output, interpolation, time, name, converter, policy);
}

void AnimationMixer::setAnimationChannelOutput(const std::string& name, const std::vector<float>& output) {
    for (const auto& channel : channels) channel->setAnimationChannelOutput(name, output);
}

void AnimationMixer::removeAnimation(const std::string& name) {
    for (const auto& channel : channels) channel->removeAnimation(name);
}

std::vector<TransformData> AnimationMixer::apply() const {
    std::vector<TransformData> states;
    states.reserve(channels.size());
    for (const auto& channel : channels) {
        states.push_back(channel->transformData);
        channel->apply(states.back());
    }
    return states;
}

std::ostream& operator<<(std::ostream& out, const Channel& channel) {
    out << "Node " << channel.nodeIndex << "\n";
    for (size_t i = 0; i < channel.transforms.size(); ++i) out << "Transform " << i << " " << *channel.transforms[i];
    return out;
}

std::ostream& operator<<(std::ostream& out, const AnimationMixer& mixer) {
    out << " === Animation Mixer === " << "\n";
    for (size_t i = 0; i < mixer.channels.size(); ++i) out << "Channel " << i << " " << *mixer.channels[i] << "\n";
    return out;
}

} // namespace sorvane::gltf2
