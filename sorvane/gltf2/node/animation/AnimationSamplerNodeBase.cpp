#include "sorvane/gltf2/node/animation/AnimationSamplerNodeBase.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/accessor/AccessorNodes.h"
#include "sorvane/gltf2/node/animation/AnimationProcessor.h"
#include "sorvane/gltf2/node/animation/AnimationSamplerNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"

namespace sorvane::gltf2 {

namespace {

// The accessor an index of the sampler points at; the index was stored as
// read, so it is checked here.
const AccessorNode& accessorAt(const AnimationSamplerNode& sampler, int64_t index) {
    const std::shared_ptr<RootNode> root = sampler.getNodeRoot().lock();
    if (!root) SORVANE_THROW("In %s: Invalid node", sampler.getNodePath().c_str());
    const auto& list = root->getAccessors();
    if (!list || !list->hasNodeItem(index))
        SORVANE_THROW("In %s: Invalid accessor index %ld", sampler.getNodePath().c_str(), static_cast<long>(index));
    return *list->getByIndex(index);
}

std::vector<float> readFloats(const AccessorNode& accessor) {
    const int64_t bytes = BinaryData::getDataSize(accessor);
    std::vector<float> values(static_cast<size_t>(bytes / 4));
    BinaryData::getData(accessor, values.data(), static_cast<int64_t>(values.size() * 4));
    return values;
}

} // namespace

std::tuple<std::vector<float>, std::vector<float>, std::string>
getAnimationSamplerData(const AnimationSamplerNode& sampler) {
    const std::string path = sampler.getNodePath();  // short lists: cheap beside the reads
    const AccessorNode& input = accessorAt(sampler, sampler.getInput());
    if (input.getType() != "SCALAR")
        SORVANE_THROW("Getting sample(s) in %s:\nInvalid accessor type, expect scalar", path.c_str());
    if (input.getComponentType() != ACCESSOR_COMPONENT_TYPE_FLOAT)
        SORVANE_THROW("Getting sample(s) in %s:\nInvalid accessor component type, expect float", path.c_str());
    const AccessorNode& output = accessorAt(sampler, sampler.getOutput());
    if (output.getComponentType() != ACCESSOR_COMPONENT_TYPE_FLOAT)
        SORVANE_THROW("Getting sample(s) in %s:\nInvalid accessor component type, expect float", path.c_str());
    return {readFloats(input), readFloats(output), sampler.getInterpolation()};
}

const AnimationSamplerNode& AnimationSamplerNodeBase::sampler() const {
    return static_cast<const AnimationSamplerNode&>(*this);
}

void AnimationSamplerNodeBase::getSample(float* out, long outSize, float time) const {
    AnimationProcessor processor;
    processor.prepare(sampler(), 30.0f);
    processor.getSample(out, outSize, time);
}

std::pair<long, long> AnimationSamplerNodeBase::getData(float* times, long timesBytes, float* values,
                                                        long valuesBytes, float frameRate) const {
    AnimationProcessor processor;
    processor.prepare(sampler(), frameRate);
    if (times && values) processor.getData(times, timesBytes, values, valuesBytes);
    return {processor.sampleCount, processor.valueSize};
}

std::pair<DataTree, DataTree> AnimationSamplerNodeBase::getTensor(float frameRate) const {
    AnimationProcessor processor;
    processor.prepare(sampler(), frameRate);
    const long n = processor.sampleCount, size = processor.valueSize;
    DataTree times = DataTree::createTensor(std::vector<long>{n}, ScalarType::Float);
    DataTree values = DataTree::createTensor(std::vector<long>{n, size}, ScalarType::Float);
    if (n > 0) processor.getData(times.getData<float>(), n * 4, values.getData<float>(), n * size * 4);
    return {times, values};
}

std::pair<float, float> AnimationSamplerNodeBase::getTimeRange() const {
    const std::string path = getNodePath();
    const AccessorNode& input = accessorAt(sampler(), sampler().getInput());
    if (input.getType() != "SCALAR")
        SORVANE_THROW("Getting time range in %s:\nInvalid accessor type, expect scalar", path.c_str());
    if (input.getComponentType() != ACCESSOR_COMPONENT_TYPE_FLOAT)
        SORVANE_THROW("Getting time range in %s:\nInvalid accessor component type, expect float", path.c_str());
    const std::vector<float> keys = readFloats(input);
    if (keys.empty()) SORVANE_THROW("Getting time range in %s:\nNo keys", path.c_str());
    return {keys.front(), keys.back()};
}

} // namespace sorvane::gltf2
