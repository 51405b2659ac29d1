#include "sorvane/arf/animation/AnimationMapper.h"

#include <algorithm>
#include <cstring>
#include <iostream>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationMapperPlan.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"
#include "sorvane/arf/node/AnimationLinkNode.h"
#include "sorvane/arf/node/AnimationLinkNodes.h"
#include "sorvane/arf/node/animation/AnimationMappingNode.h"
#include "sorvane/arf/node/animation/AnimationMappingNodes.h"
#include "sorvane/arf/node/animation/AssociationChannelNode.h"
#include "sorvane/arf/node/animation/AssociationChannelNodes.h"
#include "sorvane/arf/node/animation/LinearAssociationNode.h"
#include "sorvane/arf/node/animation/LinearAssociationNodes.h"
#include "sorvane/arf/node/animation/NonLinearAssociationNode.h"
#include "sorvane/arf/node/animation/NonLinearAssociationNodes.h"
#include "sorvane/arf/node/data/DataContent.h"
#include "sorvane/arf/property/preamble/SupportedAnimationsLookup.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

// The ids of a set's elements by position (an element without an id is known
// by its position, as components know it).
template <class List, class IdOf>
std::unordered_map<long, long> idsOf(const std::shared_ptr<List>& list, IdOf&& idOf) {
    std::unordered_map<long, long> ids;
    if (!list) return ids;
    const auto& items = list->getItems();
    for (size_t i = 0; i < items.size(); ++i)
        if (items[i]) ids[idOf(*items[i], static_cast<long>(i))] = static_cast<long>(i);
    return ids;
}

std::vector<long> sortedIds(const std::unordered_map<long, long>& ids) {
    std::vector<long> out;
    out.reserve(ids.size());
    for (const auto& entry : ids) out.push_back(entry.first);
    std::sort(out.begin(), out.end());
    return out;
}

std::vector<float> floatsOf(const DataTree& tensor) { return tensor.getVector<float>(); }

} // namespace

// ---- construction ----

AnimationMapper::AnimationMapper(const Arf* arf, const AnimationFrameworkRef& framework_) : framework(framework_) {
    if (!arf) SORVANE_THROW("arf is NULL");
    if (!framework) SORVANE_THROW("source is NULL");
    buildOperators(*arf);
}

AnimationMapper::AnimationMapper(const Arf& arf, const AnimationFrameworkRef& framework_)
    : AnimationMapper(&arf, framework_) {}

AnimationMapper::~AnimationMapper() = default;

void AnimationMapper::buildOperators(const Arf& arf) {
    const auto& root = arf.getRoot();
    long frameworkId = -1;
    if (root && root->getPreamble() && root->getPreamble()->getSupportedAnimations())
        frameworkId = SupportedAnimationsLookup::findFrameworkId(*root->getPreamble()->getSupportedAnimations(),
                                                                 framework->getType(), framework->getName());
    if (frameworkId < 0) SORVANE_THROW("Animation framework '%s' not found", framework->getName().c_str());

    operators.clear();
    documentSets.clear();
    plan.reset();
    const auto components = root->getComponents();
    if (components) {
        if (components->hasBlendshapeSets() && components->getBlendshapeSets()) {
            for (const auto& set : components->getBlendshapeSets()->getItems()) {
                if (!set) continue;
                auto ids = idsOf(set->getShapes(), [](const auto& shape, long) { return shape.getId(); });
                const AnimationLocation base(ANIMATION_LOCATION_BLENDSHAPE_SET, set->getId(), -1);
                documentSets[base] = sortedIds(ids);
                if (set->hasAnimationInfo() && set->getAnimationInfo())
                    processAnimationInfo(frameworkId, base, arf, *set->getAnimationInfo(), ids);
            }
        }
        if (components->hasSkeletons() && components->getSkeletons()) {
            for (const auto& skeleton : components->getSkeletons()->getItems()) {
                if (!skeleton) continue;
                auto ids = idsOf(skeleton->getJoints(), [](const auto& joint, long position) {
                    return joint.hasId() ? static_cast<long>(joint.getId()) : position;
                });
                const AnimationLocation base(ANIMATION_LOCATION_SKELETON, skeleton->getId(), -1);
                documentSets[base] = sortedIds(ids);
                if (skeleton->hasAnimationInfo() && skeleton->getAnimationInfo())
                    processAnimationInfo(frameworkId, base, arf, *skeleton->getAnimationInfo(), ids);
            }
        }
        if (components->hasTextureSets() && components->getTextureSets()) {
            for (const auto& set : components->getTextureSets()->getItems()) {
                if (!set) continue;
                std::unordered_map<long, long> ids;
                if (set->hasTargets())
                    ids = idsOf(set->getTargets(), [](const auto& target, long) { return target.getId(); });
                const AnimationLocation base(ANIMATION_LOCATION_TEXTURE_SET, set->getId(), -1);
                documentSets[base] = sortedIds(ids);
                if (set->hasAnimationInfo() && set->getAnimationInfo())
                    processAnimationInfo(frameworkId, base, arf, *set->getAnimationInfo(), ids);
            }
        }
    }
    compilePlan();
}

bool AnimationMapper::processAnimationInfo(long frameworkId, const AnimationLocation& base, const Arf& arf,
                                           const AnimationLinkNodes& links,
                                           const std::unordered_map<long, long>& ids) {
    std::string foundType;
    long foundTarget = -1;
    for (const auto& link : links.getItems()) {
        if (!link) continue;
        if (!(foundTarget >= 0 && link->hasMappings())) {
            foundType = link->getType();
            foundTarget = link->getTarget();
        }
        processAnimationLink(frameworkId, base, arf, *link, ids);
    }
    if (foundTarget < 0) return false;
    if (foundType == framework->getType() && foundTarget == frameworkId) {
        createBypass(base, arf, ids);
        return true;
    }
    return false;
}

void AnimationMapper::createBypass(const AnimationLocation& base, const Arf& arf,
                                   const std::unordered_map<long, long>& ids) {
    for (const auto& [location, input] : framework->getInputs()) {
        const long i = location.index;
        const AnimationLocation target(base.type, base.id, i);
        if (ids.count(i) && target.existsIn(arf))
            insertOperator(target, AnimationBypassOperatorRef(location, ANIMATION_MERGE_REPLACE));
    }
}

void AnimationMapper::processAnimationLink(long frameworkId, const AnimationLocation& base, const Arf& arf,
                                           const AnimationLinkNode& link, const std::unordered_map<long, long>& ids) {
    if (link.getType() != framework->getType() || !link.hasMappings() || !link.getMappings()) return;
    const auto warnTarget = [&](const std::string& path, long id) {
        std::cerr << "In " << path << ": Invalid target id " << id << " in "
                  << animationLocationType2string(base.type) << ":" << base.id << std::endl;
    };
    const auto sourceAt = [&](long index) {
        AnimationLocation source = framework->getDefaultLocation();
        source.index = index;
        if (!framework->getInputs().count(source))
            SORVANE_THROW("Invalid input source location '%s'", source.desc().c_str());
        return source;
    };
    for (const auto& mapping : link.getMappings()->getItems()) {
        if (!mapping || mapping->getSource() != frameworkId) continue;
        if (mapping->hasLinearAssociations() && mapping->getLinearAssociations()) {
            for (const auto& a : mapping->getLinearAssociations()->getItems()) {
                if (!a) continue;
                const auto& sources = a->getSourceIndices();
                const auto& weights = a->getWeights();
                if (sources.size() != weights.size())
                    SORVANE_THROW("Different size of sourceIndices and weights: %ld != %ld",
                                  static_cast<long>(sources.size()), static_cast<long>(weights.size()));
                if (!ids.count(a->getTargetIndex())) {
                    warnTarget(a->getNodePath(), a->getTargetIndex());
                    continue;
                }
                const AnimationLocation target(base.type, base.id, a->getTargetIndex());
                for (size_t k = 0; k < sources.size(); ++k)
                    insertOperator(target, AnimationMulOperatorRef(sourceAt(sources[k]),
                                                                   static_cast<float>(weights[k]), ANIMATION_MERGE_SUM));
            }
        }
        if (mapping->hasNonLinearAssociations() && mapping->getNonLinearAssociations()) {
            for (const auto& a : mapping->getNonLinearAssociations()->getItems()) {
                if (!a) continue;
                if (!ids.count(a->getTargetIndex())) {
                    warnTarget(a->getNodePath(), a->getTargetIndex());
                    continue;
                }
                AnimationMergeType merge = base.type == ANIMATION_LOCATION_SKELETON ? ANIMATION_MERGE_MUL
                                                                                    : ANIMATION_MERGE_SUM;
                if (a->hasCombination()) {
                    if (a->getCombination() == "COMBINATION_SUM")
                        merge = ANIMATION_MERGE_SUM;
                    else if (a->getCombination() == "COMBINATION_MUL")
                        merge = ANIMATION_MERGE_MUL;
                    else
                        SORVANE_THROW("Invalid or unsuppoted combination");
                }
                const AnimationLocation target(base.type, base.id, a->getTargetIndex());
                if (!a->getChannels()) continue;
                for (const auto& channel : a->getChannels()->getItems()) {
                    if (!channel) continue;
                    const AnimationLocation source = sourceAt(channel->getSourceIndex());
                    const auto& data = arf.getRoot()->getData();
                    if (!data) SORVANE_THROW("There is no data in %s", channel->getNodePath().c_str());
                    const auto inputs = floatsOf(DataContent::getTensor(*data->get(channel->getInput())));
                    const auto outputs = floatsOf(DataContent::getTensor(*data->get(channel->getOutput())));
                    const std::string path = channel->hasPath() ? channel->getPath() : std::string();
                    auto op = std::make_shared<AnimationChannelOperator>(source, inputs, outputs,
                                                                         channel->getInterpolation(), merge);
                    op->init(path);
                    insertOperator(target, AnimationOperatorRef(op));
                }
            }
        }
    }
}

AnimationOperatorRef AnimationMapper::getOperator(const AnimationLocation& target) const {
    auto it = operators.find(target);
    if (it == operators.end()) SORVANE_THROW("No operator for '%s'", target.desc().c_str());
    return it->second;
}

void AnimationMapper::insertOperator(const AnimationLocation& target, const AnimationOperatorRef& op) {
    auto it = operators.find(target);
    if (it == operators.end()) {
        op.setMergeType(firstMerge);
        operators.emplace(target, op);
        return;
    }
    if (it->second.getType() == ANIMATION_OPERATOR_QUEUE) {
        AnimationQueueOperatorRef(std::static_pointer_cast<AnimationQueueOperator>(it->second.get())).add(op);
        return;
    }
    AnimationQueueOperatorRef queue(ANIMATION_MERGE_REPLACE);
    queue.add(it->second);
    queue.add(op);
    it->second = queue;
}

void AnimationMapper::addOperator(const AnimationLocation& target, const AnimationOperatorRef& op) {
    insertOperator(target, op);
    compilePlan();
}

// ---- the plan ----

void AnimationMapper::compilePlan() {
    plan = std::make_shared<const AnimationMapperPlan>(framework->getFrameLayout(), operators, documentSets);
}

bool AnimationMapper::planFits(const AnimationComponents& components, const AnimationData& data) const {
    return plan && plan->fits(components, data);
}

// ---- running ----

void AnimationMapper::runKeyed(AnimationComponents& components, const AnimationData& data, bool checkTargets) const {
    for (const auto& [target, op] : operators) {
        if (checkTargets && !components.hasValue(target))
            SORVANE_THROW("Invalid target location '%s'", target.desc().c_str());
        try {
            auto value = components.getValue(target);
            op.run(*value, data);
            components.setValue(target, value);
        } catch (const AnimationValueNotFound&) {
            // A target with a missing source keeps its value whole.
        }
    }
}

void AnimationMapper::updateComponents(AnimationComponents* components, const AnimationData* data) const {
    if (!components) SORVANE_THROW("components is NULL");
    if (!data) SORVANE_THROW("data is NULL");
    if (!plan || !plan->run(*components, *data)) runKeyed(*components, *data, true);
}

void AnimationMapper::updateComponentsKeyed(AnimationComponents* components, const AnimationData* data) const {
    if (!components) SORVANE_THROW("components is NULL");
    if (!data) SORVANE_THROW("data is NULL");
    runKeyed(*components, *data, true);
}

namespace {

// A scratch frame of a sample's entries at the framework's default location;
// a repeated id keeps the first.
template <class Entries, class Make>
AnimationData scratchFrame(const AnimationFramework& framework, const Entries& entries, Make&& make) {
    AnimationData::ValueMap values;
    AnimationLocation location = framework.getDefaultLocation();
    for (const auto& entry : entries) {
        location.index = entry.id;
        if (!values.count(location)) values.emplace(location, make(entry));
    }
    return AnimationData(std::move(values));
}

// The floats and id of a sample's i-th entry, for the plan.
const float* valuesOf(const BlendshapeAnimationSample::Blendshape& e) { return &e.weight; }
const float* valuesOf(const TextureAnimationSample::Texture& e) { return &e.weight; }
const float* valuesOf(const JointAnimationSample::Joint& e) { return e.transform; }
const float* valuesOf(const LandmarkAnimationSample::Landmark& e) { return e.coords; }

const auto& entriesOf(const BlendshapeAnimationSample& s) { return s.getBlendshapes(); }
const auto& entriesOf(const TextureAnimationSample& s) { return s.getTextures(); }
const auto& entriesOf(const JointAnimationSample& s) { return s.getJoints(); }
const auto& entriesOf(const LandmarkAnimationSample& s) { return s.getLandmarks(); }

template <class Sample>
const float* entryOf(const void* sample, long i, long* id) {
    const auto& e = entriesOf(*static_cast<const Sample*>(sample))[static_cast<size_t>(i)];
    *id = e.id;
    return valuesOf(e);
}

} // namespace

void AnimationMapper::updateComponents(AnimationComponents* components, const UnitAnimationSample* sample,
                                       AnimationUnitType kind) const {
    if (!components) SORVANE_THROW("components is NULL");
    if (!sample) SORVANE_THROW("data is NULL");
    // The kind is read through the base, so a handle of another kind is
    // refused before anything is cast to the kind asked for.
    if (sample->type() != kind) {
        switch (kind) {
        case ANIMATION_UNIT_JOINT: SORVANE_THROW("sample is not a Joint");
        case ANIMATION_UNIT_BLENDSHAPE: SORVANE_THROW("sample is not a Blendshape");
        case ANIMATION_UNIT_TEXTURE: SORVANE_THROW("sample is not a Texture");
        case ANIMATION_UNIT_LANDMARK: SORVANE_THROW("sample is not a Landmark");
        default: SORVANE_THROW("Invalid or unsupported unit animation sample");
        }
    }
    if (plan) {
        const AnimationLocation base = framework->getDefaultLocation();
        bool done = false;
        switch (kind) {
        case ANIMATION_UNIT_BLENDSHAPE:
            done = plan->runSample(*components, base, sample,
                                   static_cast<const BlendshapeAnimationSample*>(sample)->getBlendshapeCount(), 1,
                                   &entryOf<BlendshapeAnimationSample>);
            break;
        case ANIMATION_UNIT_TEXTURE:
            done = plan->runSample(*components, base, sample,
                                   static_cast<const TextureAnimationSample*>(sample)->getTextureCount(), 1,
                                   &entryOf<TextureAnimationSample>);
            break;
        case ANIMATION_UNIT_JOINT:
            done = plan->runSample(*components, base, sample,
                                   static_cast<const JointAnimationSample*>(sample)->getJointCount(), 16,
                                   &entryOf<JointAnimationSample>);
            break;
        default:
            done = plan->runSample(*components, base, sample,
                                   static_cast<const LandmarkAnimationSample*>(sample)->getLandmarkCount(), 3,
                                   &entryOf<LandmarkAnimationSample>);
            break;
        }
        if (done) return;
    }
    runSampleKeyed(*components, sample, kind);
}

void AnimationMapper::updateComponentsKeyed(AnimationComponents* components, const UnitAnimationSample* sample) const {
    if (!components) SORVANE_THROW("components is NULL");
    if (!sample) SORVANE_THROW("data is NULL");
    const auto kind = sample->type();
    if (kind < ANIMATION_UNIT_BLENDSHAPE || kind > ANIMATION_UNIT_TEXTURE)
        SORVANE_THROW("Invalid or unsupported unit animation sample");
    runSampleKeyed(*components, sample, kind);
}

void AnimationMapper::runSampleKeyed(AnimationComponents& components, const UnitAnimationSample* sample,
                                     AnimationUnitType kind) const {
    const auto weight = [](const auto& e) { return std::make_shared<AnimationWeight>(e.weight); };
    const AnimationData data = [&]() -> AnimationData {
        switch (kind) {
        case ANIMATION_UNIT_BLENDSHAPE:
            return scratchFrame(*framework, static_cast<const BlendshapeAnimationSample*>(sample)->getBlendshapes(),
                                weight);
        case ANIMATION_UNIT_TEXTURE:
            return scratchFrame(*framework, static_cast<const TextureAnimationSample*>(sample)->getTextures(), weight);
        case ANIMATION_UNIT_JOINT:
            return scratchFrame(*framework, static_cast<const JointAnimationSample*>(sample)->getJoints(),
                                [](const auto& e) {
                                    auto value = std::make_shared<AnimationTransform>();
                                    std::memcpy(value->data(), e.transform, 16 * sizeof(float));
                                    return value;
                                });
        default:
            return scratchFrame(*framework, static_cast<const LandmarkAnimationSample*>(sample)->getLandmarks(),
                                [](const auto& e) {
                                    auto value = std::make_shared<AnimationVector3>();
                                    std::memcpy(value->data(), e.coords, 3 * sizeof(float));
                                    return value;
                                });
        }
    }();
    runKeyed(components, data, false);
}

void AnimationMapper::updateComponents(AnimationComponents* components, const BlendshapeAnimationSample* sample) const {
    updateComponents(components, sample, ANIMATION_UNIT_BLENDSHAPE);
}

void AnimationMapper::updateComponents(AnimationComponents* components, const TextureAnimationSample* sample) const {
    updateComponents(components, sample, ANIMATION_UNIT_TEXTURE);
}

void AnimationMapper::updateComponents(AnimationComponents* components, const JointAnimationSample* sample) const {
    updateComponents(components, sample, ANIMATION_UNIT_JOINT);
}

void AnimationMapper::updateComponents(AnimationComponents* components, const LandmarkAnimationSample* sample) const {
    updateComponents(components, sample, ANIMATION_UNIT_LANDMARK);
}

void AnimationMapper::updateComponents(AnimationComponents* components, const UnitAnimationSample* sample) const {
    if (!components) SORVANE_THROW("components is NULL");
    if (!sample) SORVANE_THROW("data is NULL");
    switch (sample->type()) {
    case ANIMATION_UNIT_BLENDSHAPE:
    case ANIMATION_UNIT_JOINT:
    case ANIMATION_UNIT_LANDMARK:
    case ANIMATION_UNIT_TEXTURE: return updateComponents(components, sample, sample->type());
    default: SORVANE_THROW("Invalid or unsupported unit animation sample");
    }
}

DataTree AnimationMapper::buildDescription() const {
    DataTree d = DataTree::createObject();
    for (const auto& [target, op] : operators) d.setItem(target.desc(), op.buildDescription());
    return d;
}

DataTree* AnimationMapper::buildDescriptionPtr() const { return new DataTree(buildDescription()); }

} // namespace sorvane::arf
