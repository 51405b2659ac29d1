#include "sorvane/gltf2/node/animation/AnimationNodeBase.h"

#include <algorithm>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/animation/AnimationNode.h"

namespace sorvane::gltf2 {

std::pair<float, float> AnimationNodeBase::getTimeRange() const {
    const auto& self = static_cast<const AnimationNode&>(*this);
    const std::string path = getNodePath();
    const auto& channels = self.getChannels();
    const auto& samplers = self.getSamplers();
    if (!channels || channels->isNodeEmpty()) SORVANE_THROW("Getting time range in %s:\nNo channels", path.c_str());
    if (!samplers || samplers->isNodeEmpty()) SORVANE_THROW("Getting time range in %s:\nNo samplers", path.c_str());
    std::pair<float, float> range(0.0f, 0.0f);
    bool first = true;
    for (int64_t c = 0; c < channels->getNodeSize(); ++c) {
        const auto& channel = channels->getByIndex(c);
        if (!channel) SORVANE_THROW("Getting time range in %s:\nInvalid channel %ld", path.c_str(), static_cast<long>(c));
        const int64_t s = channel->getSampler();
        if (!samplers->hasNodeItem(s) || !samplers->getByIndex(s))
            SORVANE_THROW("Getting time range in %s:\nInvalid sampler %ld", path.c_str(), static_cast<long>(s));
        const auto r = samplers->getByIndex(s)->getTimeRange();
        range.first = first ? r.first : std::min(range.first, r.first);
        range.second = first ? r.second : std::max(range.second, r.second);
        first = false;
    }
    return range;
}

} // namespace sorvane::gltf2
