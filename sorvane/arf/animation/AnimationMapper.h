#ifndef SORVANE_ARF_ANIMATION_ANIMATIONMAPPER_H
#define SORVANE_ARF_ANIMATION_ANIMATIONMAPPER_H

#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/arf/animation/data/AnimationData.h"
#include "sorvane/arf/animation/data/AnimationOperator.h"
#include "sorvane/arf/animation/stream/AnimationUnitType.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane::arf {

class Arf;
class AnimationMapperPlan;
class AnimationLinkNode;
class AnimationLinkNodes;
class UnitAnimationSample;
class BlendshapeAnimationSample;
class JointAnimationSample;
class TextureAnimationSample;
class LandmarkAnimationSample;

// Turns the frames or samples of one framework into an avatar's weights and
// joint matrices, through the operators the document's animation links
// describe, one entry per driven target, run in ascending target order.
//
// Building also compiles a plan: every target and source resolved to a
// position in the components' and the frame's float blocks. A frame whose
// layout and components whose sets match what the plan was built for are
// updated by walking the plan (no lookups, no allocation); anything else goes
// through the operators by location, which is also the reference the plan is
// tested against. A built mapper is only read, so threads with their own
// components and frames may share it.
class SORVANE_API AnimationMapper {
public:
    // "arf is NULL", "source is NULL"; then buildOperators.
    AnimationMapper(const Arf* arf, const AnimationFrameworkRef& framework);
    AnimationMapper(const Arf& arf, const AnimationFrameworkRef& framework);
    ~AnimationMapper();

    void buildOperators(const Arf& arf);
    AnimationOperatorRef getOperator(const AnimationLocation& target) const;
    // The first operator at a target replaces; a second makes a queue.
    void addOperator(const AnimationLocation& target, const AnimationOperatorRef& op);
    const std::map<AnimationLocation, AnimationOperatorRef>& getOperators() const { return operators; }
    const AnimationFrameworkRef& getFramework() const { return framework; }

    void updateComponents(AnimationComponents* components, const AnimationData* data) const;
    void updateComponents(AnimationComponents* components, const UnitAnimationSample* sample) const;
    void updateComponents(AnimationComponents* components, const BlendshapeAnimationSample* sample) const;
    void updateComponents(AnimationComponents* components, const JointAnimationSample* sample) const;
    void updateComponents(AnimationComponents* components, const TextureAnimationSample* sample) const;
    void updateComponents(AnimationComponents* components, const LandmarkAnimationSample* sample) const;
    // A sample that must be of the given kind ("sample is not a Joint" ...):
    // for callers holding a handle whose kind the type system does not vouch
    // for, such as the flat layer.
    void updateComponents(AnimationComponents* components, const UnitAnimationSample* sample,
                          AnimationUnitType kind) const;

    // The operators by location only, never the plan (for comparison).
    void updateComponentsKeyed(AnimationComponents* components, const AnimationData* data) const;
    void updateComponentsKeyed(AnimationComponents* components, const UnitAnimationSample* sample) const;
    // Whether the plan serves this frame and these components.
    bool planFits(const AnimationComponents& components, const AnimationData& data) const;

    DataTree buildDescription() const;
    DataTree* buildDescriptionPtr() const;

private:
    bool processAnimationInfo(long frameworkId, const AnimationLocation& base, const Arf& arf,
                              const AnimationLinkNodes& links, const std::unordered_map<long, long>& ids);
    void processAnimationLink(long frameworkId, const AnimationLocation& base, const Arf& arf, const AnimationLinkNode& link,
                              const std::unordered_map<long, long>& ids);
    void createBypass(const AnimationLocation& base, const Arf& arf, const std::unordered_map<long, long>& ids);
    void insertOperator(const AnimationLocation& target, const AnimationOperatorRef& op);
    void compilePlan();
    void runKeyed(AnimationComponents& components, const AnimationData& data, bool checkTargets) const;
    void runSampleKeyed(AnimationComponents& components, const UnitAnimationSample* sample, AnimationUnitType kind) const;

    AnimationMergeType firstMerge = ANIMATION_MERGE_REPLACE;
    AnimationFrameworkRef framework;
    std::map<AnimationLocation, AnimationOperatorRef> operators;
    // The sets' ids as the document gives them (ascending, repeated ids
    // once): what components made from it hold.
    std::map<AnimationLocation, std::vector<long>> documentSets;
    std::shared_ptr<const AnimationMapperPlan> plan;
};

} // namespace sorvane::arf

#endif
