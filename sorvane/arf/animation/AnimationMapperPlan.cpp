#include "sorvane/arf/animation/AnimationMapperPlan.h"

#include <algorithm>
#include <cstring>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/math.h"

namespace sorvane::arf {

namespace {

constexpr long kJoint = 16;
// Sets resolved per call on the stack; a mapper driving more runs by location.
constexpr size_t kMaxSets = 32;
// Floats of a frame a sample is laid out into on the stack (a full-body
// tracker is 84 matrices, 1344 floats).
constexpr long kMaxSampleFloats = 4096;

} // namespace

AnimationMapperPlan::AnimationMapperPlan(std::shared_ptr<const AnimationFrameLayout> layout_,
                                         const std::map<AnimationLocation, AnimationOperatorRef>& operators,
                                         const std::map<AnimationLocation, std::vector<long>>& documentSets)
    : layout(std::move(layout_)) {
    std::map<AnimationLocation, uint32_t> setIndex;
    for (const auto& [target, op] : operators) {
        Target t{KEYED, 0, 0, 0, 0, 0};
        const bool weight =
            target.type == ANIMATION_LOCATION_BLENDSHAPE_SET || target.type == ANIMATION_LOCATION_TEXTURE_SET;
        const AnimationLocation setKey(target.type, target.id, -1);
        const auto set = documentSets.find(setKey);
        if ((weight || target.type == ANIMATION_LOCATION_SKELETON) && set != documentSets.end()) {
            const auto& ids = set->second;
            const auto at = std::lower_bound(ids.begin(), ids.end(), target.index);
            if (at != ids.end() && *at == target.index) {
                const auto [slot, added] = setIndex.emplace(setKey, static_cast<uint32_t>(sets.size()));
                if (added) sets.push_back({target.type, target.id, ids});
                t.set = slot->second;
                t.position = static_cast<long>(at - ids.begin()) * (weight ? 1 : kJoint);
                t.first = static_cast<uint32_t>(steps.size());
                t.kind = compile(op, weight, steps);
                if (t.kind == KEYED || t.kind == SKIP) steps.resize(t.first);
                t.count = static_cast<uint32_t>(steps.size() - t.first);
                t.length = weight ? 1 : kJoint;
            }
        }
        if (t.kind == KEYED || t.kind == SKIP) plain = false;
        if (t.kind == KEYED) {
            t.first = static_cast<uint32_t>(keyed.size());
            keyed.push_back({target, op});
        }
        // Bypasses of consecutive inputs onto consecutive elements (a tracker
        // driving a skeleton or set directly) become one copy.
        if (t.kind == COPY && !targets.empty()) {
            Target& last = targets.back();
            if (last.kind == COPY && last.set == t.set && last.position + last.length == t.position &&
                steps[last.first].source + last.length == steps[t.first].source) {
                last.length += t.length;
                steps.resize(t.first);
                continue;
            }
        }
        targets.push_back(t);
    }
}

AnimationMapperPlan::Kind AnimationMapperPlan::compile(const AnimationOperatorRef& op, bool weight,
                                                       std::vector<Step>& out) const {
    std::vector<AnimationOperatorRef> chain;
    if (op && op.getType() == ANIMATION_OPERATOR_QUEUE)
        chain = static_cast<const AnimationQueueOperator&>(*op.get()).operators;
    else
        chain.push_back(op);
    const auto& locations = layout->locations;
    const long need = weight ? 1 : kJoint;
    for (const auto& step : chain) {
        const auto type = step ? step.getType() : ANIMATION_OPERATOR_INVALID;
        if (type != ANIMATION_OPERATOR_BYPASS && type != ANIMATION_OPERATOR_MUL) return KEYED;
        const auto& value = static_cast<const AnimationValueOperator&>(*step.get());
        if (value.mergeType < ANIMATION_MERGE_REPLACE || value.mergeType > ANIMATION_MERGE_MUL) return KEYED;
        const auto found = std::lower_bound(locations.begin(), locations.end(), value.location);
        // By location this step would find no value and leave the target whole.
        if (found == locations.end() || *found != value.location) return SKIP;
        const size_t position = static_cast<size_t>(found - locations.begin());
        const long offset = layout->offsets[position];
        const long end = position + 1 < locations.size() ? layout->offsets[position + 1] : layout->floatCount;
        if (end - offset != need) return KEYED; // a size mismatch: the operator reports it
        const bool scaled = type == ANIMATION_OPERATOR_MUL;
        out.push_back({offset, scaled ? static_cast<const AnimationMulOperator&>(value).weight : 1.0f, scaled,
                       value.mergeType});
    }
    const size_t n = chain.size();
    if (n == 0) return weight ? STEPS : STEPS16; // an empty queue leaves the value as it is
    const Step* first = out.data() + (out.size() - n);
    if (n == 1 && !first->scaled && first->merge == ANIMATION_MERGE_REPLACE) return COPY;
    if (!weight) return STEPS16;
    bool sum = first->scaled && first->merge == ANIMATION_MERGE_REPLACE;
    for (size_t k = 1; k < n && sum; ++k) sum = first[k].scaled && first[k].merge == ANIMATION_MERGE_SUM;
    return sum ? SUM : STEPS;
}

bool AnimationMapperPlan::resolve(AnimationComponents& components, const AnimationData& data, float** blocks) const {
    const auto& given = data.getLayout();
    if (given != layout && !(given && layout && *given == *layout)) return false;
    return resolveSets(components, blocks);
}

bool AnimationMapperPlan::resolveSets(AnimationComponents& components, float** blocks) const {
    if (sets.size() > kMaxSets) return false;
    for (size_t i = 0; i < sets.size(); ++i) {
        const Set& set = sets[i];
        if (set.type == ANIMATION_LOCATION_SKELETON) {
            auto* s = components.findSkeleton(set.id);
            if (!s || !s->allSixteen() || s->getIds() != set.ids) return false;
            blocks[i] = s->getTransforms();
        } else {
            AnimationComponents::AnimationWeightSet* w =
                set.type == ANIMATION_LOCATION_BLENDSHAPE_SET
                    ? static_cast<AnimationComponents::AnimationWeightSet*>(components.findBlendshapeSet(set.id))
                    : components.findTextureSet(set.id);
            if (!w || w->getIds() != set.ids) return false;
            blocks[i] = w->getWeights();
        }
    }
    return true;
}

bool AnimationMapperPlan::fits(const AnimationComponents& components, const AnimationData& data) const {
    float* blocks[kMaxSets];
    // resolve only reads; the blocks it finds are not written here.
    return resolve(const_cast<AnimationComponents&>(components), data, blocks);
}

// Inlined into both callers: a frame has every source, a sample only those
// marked present.
template <bool sample>
inline void AnimationMapperPlan::runPlain(const Target& t, float** blocks, const float* frame,
                                          const bool* present) const {
    const Step* s = steps.data() + t.first;
    if (sample && t.kind == COPY) {
        // A merged run: each element copied when its own source is there.
        const long stride = sets[t.set].type == ANIMATION_LOCATION_SKELETON ? kJoint : 1;
        for (long k = 0; k < t.length; k += stride)
            if (present[s->source + k])
                std::memcpy(blocks[t.set] + t.position + k, frame + s->source + k,
                            sizeof(float) * static_cast<size_t>(stride));
        return;
    }
    if (sample)
        for (uint32_t k = 0; k < t.count; ++k)
            if (!present[s[k].source]) return;
    switch (t.kind) {
    case COPY:
        std::memcpy(blocks[t.set] + t.position, frame + s->source, sizeof(float) * static_cast<size_t>(t.length));
        break;
    case SUM: {
        float acc = frame[s->source] * s->weight;
        for (uint32_t k = 1; k < t.count; ++k) acc = acc + frame[s[k].source] * s[k].weight;
        blocks[t.set][t.position] = acc;
        break;
    }
    case STEPS: {
        float acc = blocks[t.set][t.position];
        for (uint32_t k = 0; k < t.count; ++k) {
            const float v = s[k].scaled ? frame[s[k].source] * s[k].weight : frame[s[k].source];
            acc = s[k].merge == ANIMATION_MERGE_REPLACE ? v : s[k].merge == ANIMATION_MERGE_SUM ? acc + v : acc * v;
        }
        blocks[t.set][t.position] = acc;
        break;
    }
    case STEPS16: {
        float* target = blocks[t.set] + t.position;
        float acc[kJoint], v[kJoint];
        std::memcpy(acc, target, sizeof acc);
        for (uint32_t k = 0; k < t.count; ++k) {
            for (long e = 0; e < kJoint; ++e)
                v[e] = s[k].scaled ? frame[s[k].source + e] * s[k].weight : frame[s[k].source + e];
            if (s[k].merge == ANIMATION_MERGE_REPLACE)
                std::memcpy(acc, v, sizeof acc);
            else if (s[k].merge == ANIMATION_MERGE_SUM)
                for (long e = 0; e < kJoint; ++e) acc[e] += v[e];
            else
                matrix4x4_lmul_float(acc, v, MATRIX4X4_ROW_MAJOR);
        }
        std::memcpy(target, acc, sizeof acc);
        break;
    }
    case KEYED:
    case SKIP: break;
    }
}

bool AnimationMapperPlan::run(AnimationComponents& components, const AnimationData& data) const {
    float* blocks[kMaxSets];
    if (!resolve(components, data, blocks)) return false;
    const float* frame = data.getBlock();
    for (const Target& t : targets) {
        if (t.kind != KEYED) {
            runPlain<false>(t, blocks, frame, nullptr);
            continue;
        }
        const Keyed& k = keyed[t.first];
        if (!components.hasValue(k.location))
            SORVANE_THROW("Invalid target location '%s'", k.location.desc().c_str());
        try {
            auto value = components.getValue(k.location);
            k.op.run(*value, data);
            components.setValue(k.location, value);
        } catch (const AnimationValueNotFound&) {
            // A target with a missing source keeps its value whole.
        }
    }
    return true;
}

bool AnimationMapperPlan::runSample(AnimationComponents& components, const AnimationLocation& base,
                                   const void* sample, long count, long size, Entry entry) const {
    if (!plain || !layout || layout->floatCount > kMaxSampleFloats) return false;
    float* blocks[kMaxSets];
    if (!resolveSets(components, blocks)) return false;
    float frame[kMaxSampleFloats];
    bool present[kMaxSampleFloats];
    std::memset(present, 0, static_cast<size_t>(layout->floatCount));
    const auto& locations = layout->locations;
    const long first = locations.empty() ? 0 : locations.front().index;
    AnimationLocation at = base;
    for (long i = 0; i < count; ++i) {
        long id = 0;
        const float* values = entry(sample, i, &id);
        at.index = id;
        // Inputs are mostly rows numbered from the first: try that position first.
        // (Unsigned, so that any id wraps to a position out of range instead of overflowing.)
        size_t position = static_cast<size_t>(static_cast<unsigned long>(id) - static_cast<unsigned long>(first));
        if (position >= locations.size() || locations[position] != at) {
            const auto found = std::lower_bound(locations.begin(), locations.end(), at);
            // No plain target reads a location the layout lacks.
            if (found == locations.end() || *found != at) continue;
            position = static_cast<size_t>(found - locations.begin());
        }
        const long offset = layout->offsets[position];
        const long end = position + 1 < locations.size() ? layout->offsets[position + 1] : layout->floatCount;
        if (end - offset != size) return false; // values of another kind: by location, which reports it
        if (present[offset]) continue;          // the first of a repeated id
        std::memcpy(frame + offset, values, sizeof(float) * static_cast<size_t>(size));
        present[offset] = true;
    }
    for (const Target& t : targets) runPlain<true>(t, blocks, frame, present);
    return true;
}

} // namespace sorvane::arf
