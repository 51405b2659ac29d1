#ifndef SORVANE_ARF_ANIMATION_ANIMATIONMAPPERPLAN_H
#define SORVANE_ARF_ANIMATION_ANIMATIONMAPPERPLAN_H

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/data/AnimationData.h"
#include "sorvane/arf/animation/data/AnimationOperator.h"

namespace sorvane::arf {

// A mapper's operators compiled against one frame layout and the sets of the
// document: each target a position in its set's float block, each source an
// offset in the frame's block. Bypass and Mul chains on weights and joints
// run as plain arithmetic on those blocks; every other target keeps its
// operator and runs by location, in the same ascending order. Immutable once
// built, so threads may share it.
class AnimationMapperPlan {
public:
    AnimationMapperPlan(std::shared_ptr<const AnimationFrameLayout> layout,
                        const std::map<AnimationLocation, AnimationOperatorRef>& operators,
                        const std::map<AnimationLocation, std::vector<long>>& documentSets);

    // Whether the frame has the plan's layout and the components the sets
    // with the ids it was compiled for (every joint 16 floats).
    bool fits(const AnimationComponents& components, const AnimationData& data) const;
    // Runs the plan when it fits and answers whether it did; nothing is
    // touched otherwise.
    bool run(AnimationComponents& components, const AnimationData& data) const;

    // A sample's entries: the floats of entry i and its id.
    using Entry = const float* (*)(const void* sample, long i, long* id);
    // Runs the plan on a sample of `count` entries of `size` floats each, put
    // at `base` with the entry's id as index (the first of a repeated id
    // wins), and answers whether it did. It does when every target is plain
    // arithmetic, the components match and each entry the layout has is of
    // the layout's size there; a target missing a source keeps its value, as
    // by location. Nothing is touched when it answers false.
    bool runSample(AnimationComponents& components, const AnimationLocation& base, const void* sample, long count,
                   long size, Entry entry) const;

private:
    enum Kind : uint8_t {
        COPY,     // bypasses replacing a run of values: one copy of `length` floats
        SUM,      // Mul replacing, then Muls summing, into a weight
        STEPS,    // any chain of Bypass and Mul into a weight
        STEPS16,  // any chain into a joint
        KEYED,    // the operator, by location
        SKIP,     // a source the layout lacks: the target keeps its value
    };
    struct Target {
        Kind kind;
        uint32_t set;
        uint32_t first;
        uint32_t count;
        long position; // in floats, within the set's block
        long length;   // floats copied, for COPY
    };
    struct Step {
        long source; // float offset in the frame's block
        float weight;
        bool scaled;
        AnimationMergeType merge;
    };
    struct Keyed {
        AnimationLocation location;
        AnimationOperatorRef op;
    };
    struct Set {
        AnimationLocationType type;
        long id;
        std::vector<long> ids;
    };

    // The sets' blocks in the given components, or false when they do not match.
    bool resolve(AnimationComponents& components, const AnimationData& data, float** blocks) const;
    bool resolveSets(AnimationComponents& components, float** blocks) const;
    // The arithmetic of every target but KEYED ones; with `present`, a target
    // whose sources are not all there is passed over.
    template <bool sample>
    void runPlain(const Target& t, float** blocks, const float* frame, const bool* present) const;
    Kind compile(const AnimationOperatorRef& op, bool weight, std::vector<Step>& out) const;

    std::shared_ptr<const AnimationFrameLayout> layout;
    std::vector<Set> sets;
    std::vector<Target> targets;
    std::vector<Step> steps;
    std::vector<Keyed> keyed; // by Target::first for KEYED targets
    bool plain = true;        // no KEYED or SKIP target
};

} // namespace sorvane::arf

#endif
