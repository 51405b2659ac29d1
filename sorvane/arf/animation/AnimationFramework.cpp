#include "sorvane/arf/animation/AnimationFramework.h"

#include <climits>
#include <cstring>
#include <ostream>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/BuiltinFrameworks.h"
#include "sorvane/arf/node/AnimationLinkNodes.h"
#include "sorvane/arf/node/components/BlendshapeSetNodes.h"
#include "sorvane/arf/node/components/SkeletonNodes.h"
#include "sorvane/arf/node/components/TextureSetNodes.h"
#include "sorvane/arf/property/AnimationLinkList.h"
#include "sorvane/arf/property/preamble/SupportedAnimationsLookup.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

AnimationFramework* AnimationFrameworkRef::operator->() const {
    if (!framework) SORVANE_THROW("framework is NULL");
    return framework.get();
}

AnimationFramework& AnimationFrameworkRef::operator*() const { return *operator->(); }

AnimationFramework::AnimationFramework(const std::string& name_, const std::string& type_)
    : name(name_), type(type_), layout(std::make_shared<AnimationFrameLayout>()) {}

AnimationFramework::~AnimationFramework() = default;

namespace {

long floatsOf(AnimationValueType type) {
    switch (type) {
    case ANIMATION_VALUE_WEIGHT: return 1;
    case ANIMATION_VALUE_VECTOR3: return 3;
    case ANIMATION_VALUE_QUATERNION: return 4;
    default: return 16;
    }
}

} // namespace

AnimationFrameworkRef AnimationFramework::create(const std::string& urn, long id) {
    long count = 0;
    const detail::BuiltinFramework* table = detail::builtinFrameworks(&count);
    for (long f = 0; f < count; ++f) {
        const detail::BuiltinFramework& b = table[f];
        if (urn != b.urn) continue;
        auto framework = std::make_shared<AnimationFramework>(b.urn, b.type);
        for (long row = 0; row < b.rowCount; ++row) {
            const AnimationLocation location(ANIMATION_LOCATION_STREAM, id, row);
            const std::string rowName = b.numberedRows ? std::to_string(row) : std::string(b.rows[row].name);
            if (b.valueType == ANIMATION_VALUE_WEIGHT)
                framework->addInput(location,
                                    std::make_shared<AnimationWeightInput>(rowName, b.rows[row].min, b.rows[row].max));
            else
                framework->addInput(location, b.valueType, rowName);
        }
        return AnimationFrameworkRef(framework);
    }
    SORVANE_THROW("Unknow animation framework %s", urn.c_str());
}

bool AnimationFramework::knows(const std::string& urn) {
    long count = 0;
    const detail::BuiltinFramework* table = detail::builtinFrameworks(&count);
    for (long f = 0; f < count; ++f)
        if (urn == table[f].urn) return table[f].known;
    return false;
}

std::pair<std::string, long> AnimationFramework::guessFramework(const AnimationLinkNodes& links) {
    std::string type;
    long target = -1;
    for (const auto& link : links.getItems()) {
        if (!link || (target >= 0 && link->hasMappings())) continue;
        type = link->getType();
        target = link->getTarget();
    }
    return {type, target};
}

std::pair<std::string, long> AnimationFramework::guessFramework(const AnimationLinkList& links) {
    std::string type;
    long target = -1;
    for (int64_t i = 0; i < links.size(); ++i) {
        const auto link = links.getByIndex(i);
        if (target >= 0 && link.mappings.isPropertyPresent()) continue;
        type = link.type.get();
        target = link.target.get();
    }
    return {type, target};
}

namespace {

// A framework of one component's elements when the component is driven
// directly by (type, urn), else an empty handle.
template <class Component, class Elements, class IdOf>
AnimationFrameworkRef fromComponent(const Component& component, const SupportedAnimationsNode* supported,
                                    const std::string& type, const std::string& urn, long id,
                                    const std::shared_ptr<Elements>& elements, bool weights, IdOf&& idOf) {
    if (!component.hasAnimationInfo() || !component.getAnimationInfo()) return {};
    const auto guess = AnimationFramework::guessFramework(*component.getAnimationInfo());
    if (guess.first.empty() || guess.first != type) return {};
    const long found = supported ? SupportedAnimationsLookup::findFrameworkId(*supported, guess.first, urn) : -1;
    if (found < 0 || found != guess.second) return {};
    auto framework = std::make_shared<AnimationFramework>(urn, guess.first);
    if (elements) {
        const auto& items = elements->getItems();
        for (size_t i = 0; i < items.size(); ++i) {
            if (!items[i]) continue;
            const AnimationLocation location(ANIMATION_LOCATION_STREAM, id, idOf(*items[i], static_cast<long>(i)));
            const std::string name = items[i]->getItemName();
            if (weights)
                framework->addInput(location, std::make_shared<AnimationWeightInput>(name, 0.0f, 1.0f));
            else
                framework->addInput(location, std::make_shared<AnimationTransformInput>(name));
        }
    }
    return AnimationFrameworkRef(framework);
}

} // namespace

AnimationFrameworkRef AnimationFramework::tryCreate(const Arf& arf, const std::string& type, const std::string& urn,
                                                    long id) {
    const auto& root = arf.getRoot();
    const auto components = root ? root->getComponents() : nullptr;
    if (!components) return {};
    const SupportedAnimationsNode* supported =
        root->getPreamble() && root->getPreamble()->getSupportedAnimations()
            ? root->getPreamble()->getSupportedAnimations().get()
            : nullptr;
    const auto byId = [](const auto& element, long) { return static_cast<long>(element.getId()); };
    if (components->hasBlendshapeSets() && components->getBlendshapeSets())
        for (const auto& set : components->getBlendshapeSets()->getItems())
            if (set)
                if (auto f = fromComponent(*set, supported, type, urn, id, set->getShapes(), true, byId)) return f;
    if (components->hasSkeletons() && components->getSkeletons())
        for (const auto& skeleton : components->getSkeletons()->getItems())
            if (skeleton)
                if (auto f = fromComponent(*skeleton, supported, type, urn, id, skeleton->getJoints(), false,
                                           [](const auto& joint, long position) {
                                               return joint.hasId() ? static_cast<long>(joint.getId()) : position;
                                           }))
                    return f;
    if (components->hasTextureSets() && components->getTextureSets())
        for (const auto& set : components->getTextureSets()->getItems())
            if (set && set->hasTargets())
                if (auto f = fromComponent(*set, supported, type, urn, id, set->getTargets(), true, byId)) return f;
    return {};
}

std::vector<std::string> AnimationFramework::getBuiltinUrns() {
    long count = 0;
    const detail::BuiltinFramework* table = detail::builtinFrameworks(&count);
    std::vector<std::string> urns;
    for (long f = 0; f < count; ++f) urns.emplace_back(table[f].urn);
    return urns;
}

std::shared_ptr<AnimationInput> AnimationFramework::addInput(const AnimationLocation& location,
                                                             std::shared_ptr<AnimationInput> input) {
    if (!input) SORVANE_THROW("input is NULL");
    if (inputs.count(location)) SORVANE_THROW("Input at '%s' already defined", location.desc().c_str());
    input->location = location;
    inputs.emplace(location, input);
    auto next = std::make_shared<AnimationFrameLayout>();
    for (const auto& [at, in] : inputs) {
        next->locations.push_back(at);
        next->offsets.push_back(next->floatCount);
        next->floatCount += floatsOf(in->getValueType());
    }
    layout = std::move(next);
    return input;
}

std::shared_ptr<AnimationInput> AnimationFramework::addInput(const AnimationLocation& location,
                                                             AnimationValueType valueType,
                                                             const std::string& inputName) {
    // The location is checked before the input is made, so a taken location
    // fails with its own text whatever the type.
    if (inputs.count(location)) SORVANE_THROW("Input at '%s' already defined", location.desc().c_str());
    return addInput(location, AnimationInput::create(valueType, inputName));
}

std::shared_ptr<AnimationInput> AnimationFramework::addInput(AnimationValueType valueType,
                                                             const std::string& inputName,
                                                             AnimationLocationType locationType, long id) {
    return addInput(AnimationLocation(locationType, id, static_cast<long>(inputs.size())), valueType, inputName);
}

std::shared_ptr<AnimationInput> AnimationFramework::getInput(const AnimationLocation& location) {
    auto it = inputs.find(location);
    if (it == inputs.end()) SORVANE_THROW("Input not found");
    return it->second;
}

std::shared_ptr<const AnimationInput> AnimationFramework::getInput(const AnimationLocation& location) const {
    auto it = inputs.find(location);
    if (it == inputs.end()) SORVANE_THROW("Input not found");
    return it->second;
}

AnimationLocation AnimationFramework::getDefaultLocation() const {
    if (inputs.empty()) SORVANE_THROW("No inputs set");
    return inputs.begin()->first;
}

namespace {

// The inputs filed under (type, id), in index order.
template <class Map>
auto inputsOf(Map& inputs, AnimationLocationType type, long id) {
    return std::make_pair(inputs.lower_bound(AnimationLocation(type, id, LONG_MIN)),
                          inputs.upper_bound(AnimationLocation(type, id, LONG_MAX)));
}

} // namespace

long AnimationFramework::getInputCount(AnimationLocationType locationType, long id) const {
    auto [first, last] = inputsOf(inputs, locationType, id);
    return static_cast<long>(std::distance(first, last));
}

std::vector<std::string> AnimationFramework::getInputNames(AnimationLocationType locationType, long id) const {
    std::vector<std::string> names(static_cast<size_t>(getInputCount(locationType, id)));
    auto [first, last] = inputsOf(inputs, locationType, id);
    for (auto it = first; it != last; ++it) {
        const long index = it->first.index;
        if (index < 0 || index >= static_cast<long>(names.size())) SORVANE_THROW("Input index out of range");
        names[static_cast<size_t>(index)] = it->second->name;
    }
    return names;
}

long AnimationFramework::getInputRanges(void* outMin, long outMinSize, void* outMax, long outMaxSize,
                                        AnimationLocationType locationType, long id) const {
    const long count = getInputCount(locationType, id);
    if (!outMin || !outMax) return count;
    if (count < 1) SORVANE_THROW("No inputs");
    if (outMinSize < 0 || outMinSize / 4 < count) SORVANE_THROW("outMin too small");
    if (outMaxSize < 0 || outMaxSize / 4 < count) SORVANE_THROW("outMax too small");
    float* mins = static_cast<float*>(outMin);
    float* maxs = static_cast<float*>(outMax);
    std::memset(mins, 0, static_cast<size_t>(count) * sizeof(float));
    std::memset(maxs, 0, static_cast<size_t>(count) * sizeof(float));
    auto [first, last] = inputsOf(inputs, locationType, id);
    for (auto it = first; it != last; ++it) {
        const long index = it->first.index;
        if (index < 0 || index >= count) SORVANE_THROW("Input index out of range");
        auto* weight = dynamic_cast<const AnimationWeightInput*>(it->second.get());
        if (!weight) SORVANE_THROW("Can't compute input ranges because some inputs are not weights");
        mins[index] = weight->min;
        maxs[index] = weight->max;
    }
    return count;
}

std::pair<std::vector<float>, std::vector<float>> AnimationFramework::getInputRanges(AnimationLocationType locationType,
                                                                                     long id) const {
    const long count = getInputCount(locationType, id);
    if (count < 1) SORVANE_THROW("No inputs");
    std::vector<float> mins(static_cast<size_t>(count)), maxs(static_cast<size_t>(count));
    getInputRanges(mins.data(), count * 4, maxs.data(), count * 4, locationType, id);
    return {std::move(mins), std::move(maxs)};
}

std::shared_ptr<AnimationData> AnimationFramework::createData() const {
    return std::shared_ptr<AnimationData>(createDataPtr());
}

AnimationData* AnimationFramework::createDataPtr() const {
    AnimationData::ValueMap values;
    for (const auto& [location, input] : inputs) values.emplace_hint(values.end(), location, input->createValue());
    return new AnimationData(std::move(values), layout);
}

std::ostream& operator<<(std::ostream& out, const AnimationFramework& framework) {
    for (const auto& entry : framework.getInputs()) out << *entry.second << "\n";
    return out;
}

} // namespace sorvane::arf
