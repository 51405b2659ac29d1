#ifndef SORVANE_ARF_ANIMATION_ANIMATIONFRAMEWORK_H
#define SORVANE_ARF_ANIMATION_ANIMATIONFRAMEWORK_H

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/arf/animation/data/AnimationData.h"
#include "sorvane/arf/animation/data/AnimationInput.h"
#include "sorvane/arf/animation/data/AnimationLocation.h"

namespace sorvane::arf {

class AnimationFramework;
class Arf;
class AnimationLinkList;
class AnimationLinkNodes;

// The handle by which everything holds a framework. An empty handle throws
// "framework is NULL" when used.
class SORVANE_API AnimationFrameworkRef {
public:
    AnimationFrameworkRef() = default;
    AnimationFrameworkRef(std::shared_ptr<AnimationFramework> framework_) : framework(std::move(framework_)) {}

    AnimationFramework* operator->() const;
    AnimationFramework& operator*() const;
    explicit operator bool() const { return static_cast<bool>(framework); }
    bool isNull() const { return !framework; }
    const std::shared_ptr<AnimationFramework>& get() const { return framework; }

private:
    std::shared_ptr<AnimationFramework> framework;
};

// What a source of animation can say: a named, ordered table of inputs keyed
// by location, from which frames are made. Immutable once filled, so that
// mappers and frames on several threads may share it.
class SORVANE_API AnimationFramework {
public:
    using InputMap = std::map<AnimationLocation, std::shared_ptr<AnimationInput>>;

    AnimationFramework(const std::string& name, const std::string& type);
    ~AnimationFramework();

    // The built-in framework of that URN, inputs at (Stream, id, row).
    static AnimationFrameworkRef create(const std::string& urn, long id);
    static bool knows(const std::string& urn);
    // A framework of the elements of the first blendshape set, skeleton or
    // texture set driven directly by (type, urn), inputs at (Stream, id,
    // element id); an empty handle when none is.
    static AnimationFrameworkRef tryCreate(const Arf& arf, const std::string& type, const std::string& urn, long id);
    // The (type, target) that links without mappings name: the last such
    // link, or the first link when all have mappings; ("", -1) for none.
    static std::pair<std::string, long> guessFramework(const AnimationLinkList& links);
    static std::pair<std::string, long> guessFramework(const AnimationLinkNodes& links);
    // The URNs create accepts, in the order it compares them.
    static std::vector<std::string> getBuiltinUrns();

    std::shared_ptr<AnimationInput> addInput(const AnimationLocation& location, std::shared_ptr<AnimationInput> input);
    std::shared_ptr<AnimationInput> addInput(const AnimationLocation& location, AnimationValueType type,
                                             const std::string& name);
    // At (locationType, id, number of inputs so far).
    std::shared_ptr<AnimationInput> addInput(AnimationValueType type, const std::string& name,
                                             AnimationLocationType locationType, long id);

    std::shared_ptr<AnimationInput> getInput(const AnimationLocation& location);
    std::shared_ptr<const AnimationInput> getInput(const AnimationLocation& location) const;
    AnimationLocation getDefaultLocation() const;
    long getInputCount(AnimationLocationType type, long id) const;
    std::vector<std::string> getInputNames(AnimationLocationType type, long id) const;
    long getInputRanges(void* outMin, long outMinSize, void* outMax, long outMaxSize, AnimationLocationType type,
                        long id) const;
    std::pair<std::vector<float>, std::vector<float>> getInputRanges(AnimationLocationType type, long id) const;

    std::shared_ptr<AnimationData> createData() const;
    AnimationData* createDataPtr() const;

    const std::string& getName() const { return name; }
    const std::string& getType() const { return type; }
    const InputMap& getInputs() const { return inputs; }
    const std::shared_ptr<const AnimationFrameLayout>& getFrameLayout() const { return layout; }

private:
    std::string name;
    std::string type;
    InputMap inputs;
    // The layout of the frames createData makes, shared by all of them; kept
    // up to date by addInput.
    std::shared_ptr<const AnimationFrameLayout> layout;
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const AnimationFramework& framework);

} // namespace sorvane::arf

#endif
