// Flat functions of AnimationMapper and AnimationOperator.
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationMapper.h"
#include "sorvane/arf/animation/stream/UnitAnimationSample.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/flat/AnimationFrame.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/flat/sorvane_animation.h"

using namespace sorvane;
using namespace sorvane::arf;
using sorvane::flat::animation::location;

namespace {

constexpr const char* kMapper = "animationMapper is NULL";
constexpr const char* kOperator = "animation operator is NULL";

// A typed sample handle from C may hold a sample of any kind: it is read as
// the base, whose kind the mapper checks before it casts.
template <class Sample>
int32_t updateAs(const AnimationMapper* self, AnimationComponents* components, const Sample* sample,
                 AnimationUnitType kind) {
    return flat::call(kMapper, self, [&](const AnimationMapper& m) {
        m.updateComponents(components, reinterpret_cast<const UnitAnimationSample*>(sample), kind);
    });
}

} // namespace

extern "C" {

SORVANE_API int32_t sorvane_arf_AnimationMapper_create(sorvane_arf_AnimationMapper** out, const sorvane_arf_Arf* arf,
                                                       const sorvane_arf_AnimationFramework* framework) {
    return flat::create(out, [&] {
        if (!arf) SORVANE_THROW("arf is NULL");
        if (!framework || !*framework) SORVANE_THROW("source is NULL");
        return new AnimationMapper(*arf, *framework);
    });
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_delete(sorvane_arf_AnimationMapper* self) {
    return flat::destroy(kMapper, self);
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_data(const sorvane_arf_AnimationMapper* self,
                                                                      sorvane_arf_AnimationComponents* components,
                                                                      const sorvane_arf_AnimationData* data) {
    return flat::call(kMapper, self, [&](const AnimationMapper& m) { m.updateComponents(components, data); });
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_sample(const sorvane_arf_AnimationMapper* self,
                                                                        sorvane_arf_AnimationComponents* components,
                                                                        const sorvane_arf_UnitAnimationSample* sample) {
    return flat::call(kMapper, self, [&](const AnimationMapper& m) { m.updateComponents(components, sample); });
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_blendshape(
    const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components,
    const sorvane_arf_BlendshapeAnimationSample* sample) {
    return updateAs(self, components, sample, ANIMATION_UNIT_BLENDSHAPE);
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_joint(const sorvane_arf_AnimationMapper* self,
                                                                       sorvane_arf_AnimationComponents* components,
                                                                       const sorvane_arf_JointAnimationSample* sample) {
    return updateAs(self, components, sample, ANIMATION_UNIT_JOINT);
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_updateComponents_texture(
    const sorvane_arf_AnimationMapper* self, sorvane_arf_AnimationComponents* components,
    const sorvane_arf_TextureAnimationSample* sample) {
    return updateAs(self, components, sample, ANIMATION_UNIT_TEXTURE);
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_buildDescription(DataTree** out,
                                                                 const sorvane_arf_AnimationMapper* self) {
    return flat::get(out, kMapper, self, [](const AnimationMapper& m) { return m.buildDescriptionPtr(); });
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_getOperatorCount(int64_t* out, const sorvane_arf_AnimationMapper* self) {
    return flat::get(out, kMapper, self,
                     [](const AnimationMapper& m) { return static_cast<int64_t>(m.getOperators().size()); });
}

SORVANE_API int32_t sorvane_arf_AnimationMapper_getOperator(sorvane_arf_AnimationOperator** out,
                                                            const sorvane_arf_AnimationMapper* self, int32_t type,
                                                            int64_t id, int64_t index) {
    return flat::get(out, kMapper, self, [&](const AnimationMapper& m) {
        return new AnimationOperatorRef(m.getOperator(location(type, id, index)));
    });
}

SORVANE_API int32_t sorvane_arf_AnimationOperator_getType(int32_t* out, const sorvane_arf_AnimationOperator* self) {
    return flat::get(out, kOperator, self,
                     [](const AnimationOperatorRef& op) { return static_cast<int32_t>(op.getType()); });
}

SORVANE_API int32_t sorvane_arf_AnimationOperator_buildDescription(DataTree** out,
                                                                   const sorvane_arf_AnimationOperator* self) {
    return flat::get(out, kOperator, self,
                     [](const AnimationOperatorRef& op) { return new DataTree(op.buildDescription()); });
}

SORVANE_API int32_t sorvane_arf_AnimationOperator_delete(sorvane_arf_AnimationOperator* self) {
    return flat::destroy(kOperator, self);
}

} // extern "C"
