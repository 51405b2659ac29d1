#include "sorvane/arf/animation/AnimationComponents.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <unordered_set>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/node/components/BlendshapeSetNodes.h"
#include "sorvane/arf/node/components/TextureSetNodes.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

constexpr long kJoint = 16;

// count * size > bytes, for any operands.
bool exceeds(long count, long size, long bytes) {
    return static_cast<__int128>(count) * size > static_cast<__int128>(bytes);
}

// The texts of the two weight families.
struct WeightTexts {
    const char* invalidSet;
    const char* invalidCount;
    const char* duplicate;
    const char* invalidIndex;
};

const WeightTexts kBlendshapeTexts = {
    "Invalid blendshape set id %ld", "Invalid blendshape count %ld != %ld for blendshape set id %ld",
    "Duplicate blendshape id %ld", "Invalid blendshape index %ld for blendshape set id %ld"};
const WeightTexts kTextureTexts = {"Invalid texture set id %ld",
                                   "Invalid texture count %ld != %ld for texture set id %ld",
                                   "Duplicate texture id %ld", "Invalid texture index %ld for texture set id %ld"};

template <class Set>
const Set& findSet(const std::unordered_map<long, std::shared_ptr<Set>>& sets, long setId, const char* text) {
    auto it = sets.find(setId);
    if (it == sets.end() || !it->second) SORVANE_THROW(text, setId);
    return *it->second;
}

template <class Set>
Set* lookup(const std::unordered_map<long, std::shared_ptr<Set>>& sets, long setId) {
    auto it = sets.find(setId);
    return it == sets.end() ? nullptr : it->second.get();
}

template <class Map>
std::vector<long> keysOf(const Map& sets) {
    std::vector<long> ids;
    ids.reserve(sets.size());
    for (const auto& entry : sets) ids.push_back(entry.first);
    std::sort(ids.begin(), ids.end());
    return ids;
}

long positionOf(const std::vector<long>& ids, long id) {
    auto it = std::lower_bound(ids.begin(), ids.end(), id);
    return (it != ids.end() && *it == id) ? static_cast<long>(it - ids.begin()) : -1;
}

long idsOut(const std::vector<long>& ids, void* out, long outSize) {
    const long count = static_cast<long>(ids.size());
    if (!out) return count;
    if (exceeds(count, 8, outSize)) SORVANE_THROW("out is too small");
    if (count > 0) std::memcpy(out, ids.data(), static_cast<size_t>(count) * sizeof(long));
    return count;
}

// The new order of a relabelling: the i-th given id takes the i-th present
// entry. Checks for repeats before anything changes.
std::vector<size_t> relabel(const long* given, long count, const char* duplicateText,
                            std::vector<long>& sortedIds) {
    sortedIds.assign(given, given + count);
    std::vector<size_t> order(static_cast<size_t>(count));
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return given[a] < given[b]; });
    for (size_t i = 0; i < order.size(); ++i) {
        sortedIds[i] = given[order[i]];
        if (i > 0 && sortedIds[i] == sortedIds[i - 1]) SORVANE_THROW(duplicateText, sortedIds[i]);
    }
    return order;
}

// Reads a relabelling's ids from a caller's buffer.
const long* checkedIds(const void* in, long inSize, long count) {
    if (!in) SORVANE_THROW("in is NULL");
    if (exceeds(count, 8, inSize)) SORVANE_THROW("in is too small");
    return static_cast<const long*>(in);
}

// A joint's rest pose: the identity, overwritten by as much of the node's
// matrix as there is.
void restPose(float* matrix, const std::vector<double>& m) {
    static const float identity[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    std::memcpy(matrix, identity, sizeof identity);
    const size_t n = std::min<size_t>(m.size(), 16);
    for (size_t i = 0; i < n; ++i) matrix[i] = static_cast<float>(m[i]);
}

} // namespace

// ---- sets ----

long AnimationComponents::AnimationWeightSet::find(long id) const { return positionOf(ids, id); }

void AnimationComponents::AnimationWeightSet::put(long id, float weight) {
    auto it = std::lower_bound(ids.begin(), ids.end(), id);
    const auto at = it - ids.begin();
    if (it != ids.end() && *it == id) {
        weights[static_cast<size_t>(at)] = weight;
        return;
    }
    ids.insert(it, id);
    weights.insert(weights.begin() + at, weight);
}

long AnimationComponents::AnimationSkeleton::find(long id) const { return positionOf(ids, id); }

void AnimationComponents::AnimationSkeleton::put(long id, const float* matrix) {
    auto it = std::lower_bound(ids.begin(), ids.end(), id);
    const auto at = it - ids.begin();
    if (!(it != ids.end() && *it == id)) {
        ids.insert(it, id);
        transforms.insert(transforms.begin() + at * kJoint, kJoint, 0.0f);
        lengths.insert(lengths.begin() + at, kJoint);
        // Positions past the new one move up by one.
        std::map<long, std::vector<float>> moved;
        for (auto& [position, rest] : beyond) moved.emplace(position >= at ? position + 1 : position, std::move(rest));
        beyond.swap(moved);
    }
    assign(static_cast<long>(at), matrix, kJoint);
}

std::vector<float> AnimationComponents::AnimationSkeleton::get(long position) const {
    const long length = lengths[static_cast<size_t>(position)];
    const float* first = transforms.data() + position * kJoint;
    std::vector<float> out(first, first + std::min(length, kJoint));
    if (length > kJoint) {
        const auto& rest = beyond.at(position);
        out.insert(out.end(), rest.begin(), rest.end());
    }
    return out;
}

void AnimationComponents::AnimationSkeleton::assign(long position, const float* values, long count) {
    float* block = transforms.data() + position * kJoint;
    const long head = std::min(count, kJoint);
    if (head > 0) std::memcpy(block, values, static_cast<size_t>(head) * sizeof(float));
    std::fill(block + std::max(head, 0L), block + kJoint, 0.0f); // a short joint reads as zeros past its end
    oddJoints += (count != kJoint) - (lengths[static_cast<size_t>(position)] != kJoint);
    lengths[static_cast<size_t>(position)] = count;
    if (count > kJoint)
        beyond[position].assign(values + kJoint, values + count);
    else
        beyond.erase(position);
}

// ---- construction ----

AnimationComponents::AnimationComponents() = default;
AnimationComponents::~AnimationComponents() = default;
AnimationComponents::AnimationComponents(AnimationComponents&&) noexcept = default;
AnimationComponents& AnimationComponents::operator=(AnimationComponents&&) noexcept = default;

namespace {

template <class Set>
std::unordered_map<long, std::shared_ptr<Set>> deepCopy(const std::unordered_map<long, std::shared_ptr<Set>>& sets) {
    std::unordered_map<long, std::shared_ptr<Set>> out;
    for (const auto& [id, set] : sets) out.emplace(id, set ? std::make_shared<Set>(*set) : nullptr);
    return out;
}

} // namespace

AnimationComponents::AnimationComponents(const AnimationComponents& other)
    : blendshapeSets(deepCopy(other.blendshapeSets)),
      textureSets(deepCopy(other.textureSets)),
      skeletons(deepCopy(other.skeletons)) {}

AnimationComponents& AnimationComponents::operator=(const AnimationComponents& other) {
    if (this != &other) {
        AnimationComponents copy(other);
        *this = std::move(copy);
    }
    return *this;
}

AnimationComponents::AnimationComponents(const Arf* arf) {
    if (!arf) SORVANE_THROW("arf is NULL");
    init(*arf);
}

AnimationComponents::AnimationComponents(const Arf& arf) { init(arf); }

void AnimationComponents::init(const Arf& arf) {
    blendshapeSets.clear();
    textureSets.clear();
    skeletons.clear();
    const auto& root = arf.getRoot();
    if (!root) return;
    const auto components = root->getComponents();
    if (!components) return;

    if (components->hasBlendshapeSets() && components->getBlendshapeSets()) {
        for (const auto& setNode : components->getBlendshapeSets()->getItems()) {
            if (!setNode) continue;
            auto set = std::make_shared<AnimationBlendshapeSet>();
            if (const auto& shapes = setNode->getShapes())
                for (const auto& shape : shapes->getItems())
                    if (shape) set->put(shape->getId(), 0.0f);
            blendshapeSets[setNode->getId()] = std::move(set);
        }
    }
    if (components->hasSkeletons() && components->getSkeletons()) {
        const auto& nodes = components->getNodes();
        for (const auto& skeletonNode : components->getSkeletons()->getItems()) {
            if (!skeletonNode) continue;
            auto skeleton = std::make_shared<AnimationSkeleton>();
            if (const auto& joints = skeletonNode->getJoints()) {
                const auto& items = joints->getItems();
                for (size_t position = 0; position < items.size(); ++position) {
                    const auto& joint = items[position];
                    if (!joint) continue;
                    if (!nodes) SORVANE_THROW("There is no nodes in %s", components->getNodePath().c_str());
                    float matrix[16];
                    restPose(matrix, nodes->get(joint->getNode())->getTransformMatrix());
                    // A joint may be written without an id; it is then known by its position, as
                    // locations address joints.
                    skeleton->put(joint->hasId() ? joint->getId() : static_cast<long>(position), matrix);
                }
            }
            skeletons[skeletonNode->getId()] = std::move(skeleton);
        }
    }
    if (components->hasTextureSets() && components->getTextureSets()) {
        for (const auto& setNode : components->getTextureSets()->getItems()) {
            if (!setNode) continue;
            auto set = std::make_shared<AnimationTextureSet>();
            if (setNode->hasTargets() && setNode->getTargets())
                for (const auto& target : setNode->getTargets()->getItems())
                    if (target) set->put(target->getId(), 0.0f);
            textureSets[setNode->getId()] = std::move(set);
        }
    }
}

// ---- weight families ----

#define SORVANE_WEIGHT_FAMILY(Name, Set, sets, texts)                                                              \
    bool AnimationComponents::has##Name(long setId, long id) const {                                             \
        const auto* set = lookup(sets, setId);                                                                     \
        return set && set->find(id) >= 0;                                                                          \
    }                                                                                                              \
    long AnimationComponents::get##Name##Count(long setId) const {                                               \
        return findSet(sets, setId, texts.invalidSet).size();                                                      \
    }                                                                                                              \
    long AnimationComponents::get##Name##Ids(void* out, long outSize, long setId) const {                        \
        return idsOut(findSet(sets, setId, texts.invalidSet).getIds(), out, outSize);                              \
    }                                                                                                              \
    std::vector<long> AnimationComponents::get##Name##Ids(long setId) const {                                    \
        return findSet(sets, setId, texts.invalidSet).getIds();                                                    \
    }                                                                                                              \
    void AnimationComponents::set##Name##Ids(long setId, const void* in, long inSize, long count) {              \
        const long* given = checkedIds(in, inSize, count);                                                         \
        auto& set = const_cast<Set&>(findSet(sets, setId, texts.invalidSet));                                      \
        if (count != set.size()) SORVANE_THROW(texts.invalidCount, set.size(), count, setId);                     \
        std::vector<long> ids;                                                                                     \
        const auto order = relabel(given, count, texts.duplicate, ids);                                            \
        std::vector<float> weights(order.size());                                                                  \
        for (size_t i = 0; i < order.size(); ++i) weights[i] = set.weights[order[i]];                             \
        set.ids.swap(ids);                                                                                         \
        set.weights.swap(weights);                                                                                 \
    }                                                                                                              \
    float AnimationComponents::get##Name##Weight(long setId, long id) const {                                    \
        const auto& set = findSet(sets, setId, texts.invalidSet);                                                  \
        const long at = set.find(id);                                                                              \
        if (at < 0) SORVANE_THROW(texts.invalidIndex, id, setId);                                                  \
        return set.getWeights()[at];                                                                               \
    }                                                                                                              \
    long AnimationComponents::get##Name##Weights(void* out, long outSize, long setId) const {                    \
        const auto& set = findSet(sets, setId, texts.invalidSet);                                                  \
        const long count = set.size();                                                                             \
        if (!out) return count;                                                                                    \
        if (exceeds(count, 4, outSize)) SORVANE_THROW("out is too small");                                         \
        if (count > 0) std::memcpy(out, set.getWeights(), static_cast<size_t>(count) * sizeof(float));            \
        return count;                                                                                              \
    }                                                                                                              \
    std::vector<float> AnimationComponents::get##Name##Weights(long setId) const {                               \
        const auto& set = findSet(sets, setId, texts.invalidSet);                                                  \
        return std::vector<float>(set.getWeights(), set.getWeights() + set.size());                                \
    }                                                                                                              \
    void AnimationComponents::set##Name##Weight(long setId, long id, float weight) {                             \
        auto& set = const_cast<Set&>(findSet(sets, setId, texts.invalidSet));                                      \
        const long at = set.find(id);                                                                              \
        if (at < 0) SORVANE_THROW(texts.invalidIndex, id, setId);                                                  \
        set.getWeights()[at] = weight;                                                                             \
    }                                                                                                              \
    void AnimationComponents::set##Name##Weights(long setId, const void* in, long inSize, long count) {          \
        if (!in) SORVANE_THROW("in is NULL");                                                                      \
        if (exceeds(count, 4, inSize)) SORVANE_THROW("in is too small");                                           \
        auto& set = const_cast<Set&>(findSet(sets, setId, texts.invalidSet));                                      \
        if (count != set.size()) SORVANE_THROW(texts.invalidCount, set.size(), count, setId);                     \
        if (count > 0) std::memcpy(set.getWeights(), in, static_cast<size_t>(count) * sizeof(float));             \
    }                                                                                                              \
    void AnimationComponents::set##Name##Weights(long setId, const std::vector<float>& weights) {                \
        set##Name##Weights(setId, weights.data(), static_cast<long>(weights.size() * sizeof(float)),               \
                           static_cast<long>(weights.size()));                                                     \
    }

SORVANE_WEIGHT_FAMILY(Blendshape, AnimationBlendshapeSet, blendshapeSets, kBlendshapeTexts)
SORVANE_WEIGHT_FAMILY(Texture, AnimationTextureSet, textureSets, kTextureTexts)
#undef SORVANE_WEIGHT_FAMILY

// ---- skeletons ----

const AnimationComponents::AnimationSkeleton& AnimationComponents::skeleton(long skeletonId) const {
    return findSet(skeletons, skeletonId, "Invalid skeleton id %ld");
}

bool AnimationComponents::hasJoint(long skeletonId, long jointId) const {
    const auto* s = lookup(skeletons, skeletonId);
    return s && s->find(jointId) >= 0;
}

long AnimationComponents::getJointCount(long skeletonId) const { return skeleton(skeletonId).size(); }

long AnimationComponents::getJointIds(void* out, long outSize, long skeletonId) const {
    return idsOut(skeleton(skeletonId).getIds(), out, outSize);
}

std::vector<long> AnimationComponents::getJointIds(long skeletonId) const { return skeleton(skeletonId).getIds(); }

void AnimationComponents::setJointIds(long skeletonId, const void* in, long inSize, long count) {
    const long* given = checkedIds(in, inSize, count);
    auto& s = const_cast<AnimationSkeleton&>(skeleton(skeletonId));
    if (count != s.size()) SORVANE_THROW("Invalid joint count %ld != %ld for skeleton id %ld", s.size(), count, skeletonId);
    std::vector<long> ids;
    const auto order = relabel(given, count, "Duplicate joint id %ld", ids);
    std::vector<float> transforms(order.size() * kJoint);
    std::vector<long> lengths(order.size());
    std::map<long, std::vector<float>> beyond;
    for (size_t i = 0; i < order.size(); ++i) {
        std::memcpy(transforms.data() + i * kJoint, s.transforms.data() + order[i] * kJoint, kJoint * sizeof(float));
        lengths[i] = s.lengths[order[i]];
        auto it = s.beyond.find(static_cast<long>(order[i]));
        if (it != s.beyond.end()) beyond.emplace(static_cast<long>(i), it->second);
    }
    s.ids.swap(ids);
    s.transforms.swap(transforms);
    s.lengths.swap(lengths);
    s.beyond.swap(beyond);
}

std::vector<float> AnimationComponents::getJointTransform(long skeletonId, long jointId) const {
    const auto& s = skeleton(skeletonId);
    const long at = s.find(jointId);
    if (at < 0) SORVANE_THROW("Invalid joint id %ld for skeleton id %ld", jointId, skeletonId);
    return s.get(at);
}

long AnimationComponents::getJointTransform(void* out, long outSize, long skeletonId, long jointId) const {
    const auto& s = skeleton(skeletonId);
    const long at = s.find(jointId);
    if (at < 0) SORVANE_THROW("Invalid joint id %ld for skeleton id %ld", jointId, skeletonId);
    const long count = s.getLength(at);
    if (!out) return count;
    if (exceeds(count, 4, outSize)) SORVANE_THROW("out is too small");
    const auto values = s.get(at);
    if (count > 0) std::memcpy(out, values.data(), static_cast<size_t>(count) * sizeof(float));
    return count;
}

long AnimationComponents::getJointTransforms(void* out, long outSize, long skeletonId) const {
    const auto& s = skeleton(skeletonId);
    const long count = s.size();
    if (!out) return count;
    if (exceeds(count, 64, outSize)) SORVANE_THROW("out is too small");
    if (count > 0) std::memcpy(out, s.getTransforms(), static_cast<size_t>(count) * 64);
    return count;
}

std::vector<float> AnimationComponents::getJointTransforms(long skeletonId) const {
    const auto& s = skeleton(skeletonId);
    return std::vector<float>(s.getTransforms(), s.getTransforms() + s.size() * kJoint);
}

void AnimationComponents::setJointTransform(long skeletonId, long jointId, const std::vector<float>& transform) {
    auto& s = const_cast<AnimationSkeleton&>(skeleton(skeletonId));
    const long at = s.find(jointId);
    if (at < 0) SORVANE_THROW("Invalid joint id %ld for skeleton id %ld", jointId, skeletonId);
    s.assign(at, transform.data(), static_cast<long>(transform.size()));
}

void AnimationComponents::setJointTransform(long skeletonId, long jointId, const void* in, long inSize, long count) {
    if (!in) SORVANE_THROW("in is NULL");
    if (exceeds(count, 4, inSize)) SORVANE_THROW("in is too small");
    auto& s = const_cast<AnimationSkeleton&>(skeleton(skeletonId));
    const long at = s.find(jointId);
    if (at < 0) SORVANE_THROW("Invalid joint id %ld for skeleton id %ld", jointId, skeletonId);
    if (count != s.getLength(at))
        SORVANE_THROW("Invalid transform size %ld for joint id %ld for skeleton id %ld", count, jointId, skeletonId);
    s.assign(at, static_cast<const float*>(in), count);
}

void AnimationComponents::setJointTransforms(long skeletonId, const void* in, long inSize, long count) {
    if (!in) SORVANE_THROW("in is NULL");
    if (exceeds(count, 64, inSize)) SORVANE_THROW("in is too small");
    auto& s = const_cast<AnimationSkeleton&>(skeleton(skeletonId));
    if (count != s.size())
        SORVANE_THROW("Invalid joint count %ld != %ld for skeleton %ld", count, s.size(), skeletonId);
    if (count > 0) std::memcpy(s.transforms.data(), in, static_cast<size_t>(count) * 64);
    // Every joint now holds the 16 floats it was given.
    if (!s.beyond.empty() || std::any_of(s.lengths.begin(), s.lengths.end(), [](long l) { return l != kJoint; })) {
        std::fill(s.lengths.begin(), s.lengths.end(), kJoint);
        s.beyond.clear();
        s.oddJoints = 0;
    }
}

void AnimationComponents::setJointTransforms(long skeletonId, const std::vector<float>& transforms) {
    const long count = static_cast<long>(transforms.size()) / kJoint;
    setJointTransforms(skeletonId, transforms.data(), static_cast<long>(transforms.size() * sizeof(float)), count);
}

// ---- by location ----

bool AnimationComponents::hasValue(const AnimationLocation& location) const {
    switch (location.type) {
    case ANIMATION_LOCATION_BLENDSHAPE_SET: return hasBlendshape(location.id, location.index);
    case ANIMATION_LOCATION_SKELETON: return hasJoint(location.id, location.index);
    case ANIMATION_LOCATION_TEXTURE_SET: return hasTexture(location.id, location.index);
    default: SORVANE_THROW("Invalid or unsupported location");
    }
}

std::shared_ptr<AnimationValue> AnimationComponents::getValue(const AnimationLocation& location) const {
    switch (location.type) {
    case ANIMATION_LOCATION_BLENDSHAPE_SET:
        return std::make_shared<AnimationWeight>(getBlendshapeWeight(location.id, location.index));
    case ANIMATION_LOCATION_TEXTURE_SET:
        return std::make_shared<AnimationWeight>(getTextureWeight(location.id, location.index));
    case ANIMATION_LOCATION_SKELETON: {
        const auto& s = skeleton(location.id);
        const long at = s.find(location.index);
        if (at < 0) SORVANE_THROW("Invalid joint id %ld for skeleton id %ld", location.index, location.id);
        // The joint's block: its first 16 floats, zeros past a short joint.
        auto value = std::make_shared<AnimationTransform>();
        std::memcpy(value->data(), s.getTransforms() + at * kJoint, 64);
        return value;
    }
    default: SORVANE_THROW("Invalid or unsupported location");
    }
}

void AnimationComponents::setValue(const AnimationLocation& location, const std::shared_ptr<AnimationValue>& value) {
    if (!value) SORVANE_THROW("value is NULL");
    switch (location.type) {
    case ANIMATION_LOCATION_BLENDSHAPE_SET:
        if (value->getType() != ANIMATION_VALUE_WEIGHT)
            SORVANE_THROW("Invalid value type %ld for blendshapeSet %ld", static_cast<long>(value->getType()),
                          location.id);
        setBlendshapeWeight(location.id, location.index, value->data()[0]);
        return;
    case ANIMATION_LOCATION_TEXTURE_SET:
        if (value->getType() != ANIMATION_VALUE_WEIGHT)
            SORVANE_THROW("Invalid value type %ld for textureSet %ld", static_cast<long>(value->getType()),
                          location.id);
        setTextureWeight(location.id, location.index, value->data()[0]);
        return;
    case ANIMATION_LOCATION_SKELETON:
        if (value->getType() != ANIMATION_VALUE_TRANSFORM)
            SORVANE_THROW("Invalid value type %ld for skeleton %ld", static_cast<long>(value->getType()), location.id);
        setJointTransform(location.id, location.index,
                          std::vector<float>(value->data(), value->data() + value->dataCount()));
        return;
    default: SORVANE_THROW("Invalid or unsupported location");
    }
}

// ---- sets by id ----

AnimationComponents::AnimationBlendshapeSet* AnimationComponents::findBlendshapeSet(long setId) {
    return lookup(blendshapeSets, setId);
}
AnimationComponents::AnimationTextureSet* AnimationComponents::findTextureSet(long setId) {
    return lookup(textureSets, setId);
}
AnimationComponents::AnimationSkeleton* AnimationComponents::findSkeleton(long skeletonId) {
    return lookup(skeletons, skeletonId);
}
const AnimationComponents::AnimationBlendshapeSet* AnimationComponents::findBlendshapeSet(long setId) const {
    return lookup(blendshapeSets, setId);
}
const AnimationComponents::AnimationTextureSet* AnimationComponents::findTextureSet(long setId) const {
    return lookup(textureSets, setId);
}
const AnimationComponents::AnimationSkeleton* AnimationComponents::findSkeleton(long skeletonId) const {
    return lookup(skeletons, skeletonId);
}
std::vector<long> AnimationComponents::getBlendshapeSetIds() const { return keysOf(blendshapeSets); }
std::vector<long> AnimationComponents::getTextureSetIds() const { return keysOf(textureSets); }
std::vector<long> AnimationComponents::getSkeletonIds() const { return keysOf(skeletons); }

} // namespace sorvane::arf
