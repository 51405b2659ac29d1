#ifndef SORVANE_ARF_ANIMATION_DATA_ANIMATIONDATA_H
#define SORVANE_ARF_ANIMATION_DATA_ANIMATIONDATA_H

#include <iosfwd>
#include <map>
#include <memory>
#include <vector>

#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/arf/animation/data/AnimationValue.h"
#include "sorvane/arf/animation/data/AnimationValueNotFound.h"

namespace sorvane::arf {

// A full frame: one value per location, made once by a framework and then
// rewritten in place for every sample. The values' floats lie in one block in
// location order, so a frame of weights or of matrices is copied in or out in
// one piece.
class SORVANE_API AnimationData {
public:
    using ValueMap = std::map<AnimationLocation, std::shared_ptr<AnimationValue>>;

    AnimationData();
    // Takes the values (they move into the frame's block); the set of
    // locations is fixed from here on.
    explicit AnimationData(ValueMap values);
    ~AnimationData();

    // An absent location throws AnimationValueNotFound.
    std::shared_ptr<AnimationValue> getValue(const AnimationLocation& location);
    std::shared_ptr<const AnimationValue> getValue(const AnimationLocation& location) const;

    // With a null out: the number of values. Otherwise one float per value,
    // in location order.
    long getWeights(void* out, long outSize) const;
    void setWeights(const void* in, long inSize, long count);
    void setWeights(const std::vector<float>& weights);
    std::vector<float> getWeights() const;

    // 16 floats per value, in location order; count counts floats.
    long getTransforms(void* out, long outSize) const;
    void setTransforms(const void* in, long inSize, long count);
    void setTransforms(const std::vector<float>& transforms);
    std::vector<float> getTransforms() const;

    const ValueMap& getValues() const { return values; }
    long getValueCount() const { return static_cast<long>(ordered.size()); }
    // The values in location order, and where each one's floats start in the
    // block (for callers that resolve positions once and then index).
    const std::vector<AnimationValue*>& getOrderedValues() const { return ordered; }
    long getFloatOffset(long position) const { return offsets[static_cast<size_t>(position)]; }
    float* getBlock() { return block.get(); }
    const float* getBlock() const { return block.get(); }
    long getFloatCount() const { return floatCount; }

private:
    ValueMap values;
    std::vector<AnimationValue*> ordered;
    std::vector<long> offsets;
    std::shared_ptr<float[]> block;
    long floatCount = 0;
    bool allWeights = true;
    bool allTransforms = true;
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const AnimationData& data);

} // namespace sorvane::arf

#endif
