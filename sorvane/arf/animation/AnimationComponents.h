#ifndef SORVANE_ARF_ANIMATION_ANIMATIONCOMPONENTS_H
#define SORVANE_ARF_ANIMATION_ANIMATIONCOMPONENTS_H

#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/arf/animation/data/AnimationValue.h"
#include "sorvane/core/Export.h"

namespace sorvane::arf {

class Arf;

// The live state of an avatar's animatable parts: the weight of each
// blendshape and texture target and the matrix of each joint, grouped by set
// and kept in ascending id order. Each set keeps its values in one float
// block (joints 16 floats apiece), so bulk reads and writes are one copy.
// Holds nothing of the document after init.
class SORVANE_API AnimationComponents {
public:
    // Weights of one blendshape or texture set, by ascending id.
    class SORVANE_API AnimationWeightSet {
    public:
        // The position of an id, or -1.
        long find(long id) const;
        long size() const { return static_cast<long>(ids.size()); }
        const std::vector<long>& getIds() const { return ids; }
        float* getWeights() { return weights.data(); }
        const float* getWeights() const { return weights.data(); }

    private:
        friend class AnimationComponents;
        // Files a weight under an id; a repeated id replaces the entry.
        void put(long id, float weight);

        std::vector<long> ids;
        std::vector<float> weights;
    };
    class SORVANE_API AnimationBlendshapeSet : public AnimationWeightSet {};
    class SORVANE_API AnimationTextureSet : public AnimationWeightSet {};

    // Joint matrices of one skeleton, by ascending joint id, 16 floats each.
    // A joint given a vector of another length keeps that length: the block
    // holds its first 16 floats (zeros past a short joint's end), any floats
    // beyond 16 are kept aside.
    class SORVANE_API AnimationSkeleton {
    public:
        long find(long id) const;
        long size() const { return static_cast<long>(ids.size()); }
        const std::vector<long>& getIds() const { return ids; }
        float* getTransforms() { return transforms.data(); }
        const float* getTransforms() const { return transforms.data(); }
        // Floats of the joint at a position.
        long getLength(long position) const { return lengths[static_cast<size_t>(position)]; }
        // Whether every joint holds exactly 16 floats (all of them in the block).
        bool allSixteen() const { return oddJoints == 0; }

    private:
        friend class AnimationComponents;
        void put(long id, const float* matrix);
        std::vector<float> get(long position) const;
        void assign(long position, const float* values, long count);

        std::vector<long> ids;
        std::vector<float> transforms;
        std::vector<long> lengths;
        std::map<long, std::vector<float>> beyond; // floats past 16, by position
        long oddJoints = 0;                        // joints whose length is not 16
    };

    AnimationComponents();
    // A copy owns its own sets: updating it leaves the original as it was.
    AnimationComponents(const AnimationComponents& other);
    AnimationComponents& operator=(const AnimationComponents& other);
    AnimationComponents(AnimationComponents&&) noexcept;
    AnimationComponents& operator=(AnimationComponents&&) noexcept;
    // Refuses a null document ("arf is NULL"), then runs init.
    explicit AnimationComponents(const Arf* arf);
    explicit AnimationComponents(const Arf& arf);
    ~AnimationComponents();

    // Rebuilds every set from the document: weights 0, joints in the rest pose
    // of their nodes.
    void init(const Arf& arf);

    bool hasBlendshape(long setId, long id) const;
    long getBlendshapeCount(long setId) const;
    long getBlendshapeIds(void* out, long outSize, long setId) const;
    std::vector<long> getBlendshapeIds(long setId) const;
    void setBlendshapeIds(long setId, const void* in, long inSize, long count);
    float getBlendshapeWeight(long setId, long id) const;
    long getBlendshapeWeights(void* out, long outSize, long setId) const;
    std::vector<float> getBlendshapeWeights(long setId) const;
    void setBlendshapeWeight(long setId, long id, float weight);
    void setBlendshapeWeights(long setId, const void* in, long inSize, long count);
    void setBlendshapeWeights(long setId, const std::vector<float>& weights);

    bool hasTexture(long setId, long id) const;
    long getTextureCount(long setId) const;
    long getTextureIds(void* out, long outSize, long setId) const;
    std::vector<long> getTextureIds(long setId) const;
    void setTextureIds(long setId, const void* in, long inSize, long count);
    float getTextureWeight(long setId, long id) const;
    long getTextureWeights(void* out, long outSize, long setId) const;
    std::vector<float> getTextureWeights(long setId) const;
    void setTextureWeight(long setId, long id, float weight);
    void setTextureWeights(long setId, const void* in, long inSize, long count);
    void setTextureWeights(long setId, const std::vector<float>& weights);

    bool hasJoint(long skeletonId, long jointId) const;
    long getJointCount(long skeletonId) const;
    long getJointIds(void* out, long outSize, long skeletonId) const;
    std::vector<long> getJointIds(long skeletonId) const;
    void setJointIds(long skeletonId, const void* in, long inSize, long count);
    std::vector<float> getJointTransform(long skeletonId, long jointId) const;
    long getJointTransform(void* out, long outSize, long skeletonId, long jointId) const;
    long getJointTransforms(void* out, long outSize, long skeletonId) const;
    std::vector<float> getJointTransforms(long skeletonId) const;
    void setJointTransform(long skeletonId, long jointId, const std::vector<float>& transform);
    void setJointTransform(long skeletonId, long jointId, const void* in, long inSize, long count);
    void setJointTransforms(long skeletonId, const void* in, long inSize, long count);
    void setJointTransforms(long skeletonId, const std::vector<float>& transforms);

    bool hasValue(const AnimationLocation& location) const;
    std::shared_ptr<AnimationValue> getValue(const AnimationLocation& location) const;
    void setValue(const AnimationLocation& location, const std::shared_ptr<AnimationValue>& value);

    // The sets themselves, for callers that resolve positions once (null when
    // absent), and their ids in ascending order.
    AnimationBlendshapeSet* findBlendshapeSet(long setId);
    AnimationTextureSet* findTextureSet(long setId);
    AnimationSkeleton* findSkeleton(long skeletonId);
    const AnimationBlendshapeSet* findBlendshapeSet(long setId) const;
    const AnimationTextureSet* findTextureSet(long setId) const;
    const AnimationSkeleton* findSkeleton(long skeletonId) const;
    std::vector<long> getBlendshapeSetIds() const;
    std::vector<long> getTextureSetIds() const;
    std::vector<long> getSkeletonIds() const;

private:
    const AnimationSkeleton& skeleton(long skeletonId) const;

    std::unordered_map<long, std::shared_ptr<AnimationBlendshapeSet>> blendshapeSets;
    std::unordered_map<long, std::shared_ptr<AnimationTextureSet>> textureSets;
    std::unordered_map<long, std::shared_ptr<AnimationSkeleton>> skeletons;
};

} // namespace sorvane::arf

#endif
