// Flat functions of AnimationComponents.
#include <cstring>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationComponents.h"
#include "sorvane/arf/animation/data/AnimationInput.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/flat/AnimationFrame.h"
#include "sorvane/flat/sorvane_animation.h"

using namespace sorvane;
using namespace sorvane::arf;
using sorvane::flat::animation::array;
using sorvane::flat::animation::location;

namespace {

constexpr const char* kComponents = "animationComponents is NULL";

// A list of ids under the array protocol.
long putIds(const std::vector<long>& ids, void* out, long outBytes) {
    const long count = static_cast<long>(ids.size());
    if (out) {
        if (outBytes < 0 || outBytes / 8 < count) SORVANE_THROW("out is too small");
        if (count > 0) std::memcpy(out, ids.data(), static_cast<size_t>(count) * sizeof(long));
    }
    return count;
}

} // namespace

extern "C" {

SORVANE_API int32_t sorvane_arf_AnimationComponents_create(sorvane_arf_AnimationComponents** out,
                                                           const sorvane_arf_Arf* arf) {
    return flat::create(out, [&] { return new AnimationComponents(arf); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_delete(sorvane_arf_AnimationComponents* self) {
    return flat::destroy(kComponents, self);
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_init(sorvane_arf_AnimationComponents* self,
                                                         const sorvane_arf_Arf* arf) {
    return flat::call(kComponents, self, [&](AnimationComponents& c) {
        if (!arf) SORVANE_THROW("arf is NULL");
        c.init(*arf);
    });
}

#define SORVANE_SET_IDS(Name)                                                                                       \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_get##Name##Ids(                                             \
        int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self) {       \
        return array(out, outBytes, pvalueCount, 1, kComponents, self,                                              \
                     [](const AnimationComponents& c, void* o, long size) { return putIds(c.get##Name##Ids(), o, size); }); \
    }
SORVANE_SET_IDS(BlendshapeSet)
SORVANE_SET_IDS(TextureSet)
SORVANE_SET_IDS(Skeleton)
#undef SORVANE_SET_IDS

#define SORVANE_WEIGHT_FAMILY(Name)                                                                                 \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_has##Name(bool* out, const sorvane_arf_AnimationComponents* self, \
                                                                  int64_t setId, int64_t id) {                    \
        return flat::get(out, kComponents, self, [&](const AnimationComponents& c) { return c.has##Name(setId, id); }); \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_get##Name##Count(                                           \
        int64_t* out, const sorvane_arf_AnimationComponents* self, int64_t setId) {                                \
        return flat::get(out, kComponents, self,                                                                    \
                         [&](const AnimationComponents& c) { return static_cast<int64_t>(c.get##Name##Count(setId)); }); \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_get##Name##Ids(                                             \
        int64_t* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self,         \
        int64_t setId) {                                                                                            \
        return array(out, outBytes, pvalueCount, 1, kComponents, self,                                              \
                     [&](const AnimationComponents& c, void* o, long size) { return c.get##Name##Ids(o, size, setId); }); \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_set##Name##Ids(                                             \
        sorvane_arf_AnimationComponents* self, int64_t setId, const int64_t* in, int64_t inBytes, int64_t count) { \
        return flat::call(kComponents, self,                                                                        \
                          [&](AnimationComponents& c) { c.set##Name##Ids(setId, in, inBytes, count); });            \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_get##Name##Weight(                                          \
        float* out, const sorvane_arf_AnimationComponents* self, int64_t setId, int64_t id) {                      \
        return flat::get(out, kComponents, self,                                                                    \
                         [&](const AnimationComponents& c) { return c.get##Name##Weight(setId, id); });             \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_get##Name##Weights(                                         \
        float* out, int64_t outBytes, int64_t* pvalueCount, const sorvane_arf_AnimationComponents* self,           \
        int64_t setId) {                                                                                            \
        return array(out, outBytes, pvalueCount, 1, kComponents, self,                                              \
                     [&](const AnimationComponents& c, void* o, long size) { return c.get##Name##Weights(o, size, setId); }); \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_set##Name##Weight(sorvane_arf_AnimationComponents* self,   \
                                                                          int64_t setId, int64_t id, float weight) { \
        return flat::call(kComponents, self, [&](AnimationComponents& c) { c.set##Name##Weight(setId, id, weight); }); \
    }                                                                                                               \
    SORVANE_API int32_t sorvane_arf_AnimationComponents_set##Name##Weights(                                         \
        sorvane_arf_AnimationComponents* self, int64_t setId, const float* in, int64_t inBytes, int64_t count) {   \
        return flat::call(kComponents, self,                                                                        \
                          [&](AnimationComponents& c) { c.set##Name##Weights(setId, in, inBytes, count); });        \
    }
SORVANE_WEIGHT_FAMILY(Blendshape)
SORVANE_WEIGHT_FAMILY(Texture)
#undef SORVANE_WEIGHT_FAMILY

SORVANE_API int32_t sorvane_arf_AnimationComponents_hasJoint(bool* out, const sorvane_arf_AnimationComponents* self,
                                                             int64_t skeletonId, int64_t jointId) {
    return flat::get(out, kComponents, self,
                     [&](const AnimationComponents& c) { return c.hasJoint(skeletonId, jointId); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointCount(int64_t* out,
                                                                  const sorvane_arf_AnimationComponents* self,
                                                                  int64_t skeletonId) {
    return flat::get(out, kComponents, self,
                     [&](const AnimationComponents& c) { return static_cast<int64_t>(c.getJointCount(skeletonId)); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointIds(int64_t* out, int64_t outBytes, int64_t* pvalueCount,
                                                                const sorvane_arf_AnimationComponents* self,
                                                                int64_t skeletonId) {
    return array(out, outBytes, pvalueCount, 1, kComponents, self,
                 [&](const AnimationComponents& c, void* o, long size) { return c.getJointIds(o, size, skeletonId); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointIds(sorvane_arf_AnimationComponents* self,
                                                                int64_t skeletonId, const int64_t* in,
                                                                int64_t inBytes, int64_t count) {
    return flat::call(kComponents, self,
                      [&](AnimationComponents& c) { c.setJointIds(skeletonId, in, inBytes, count); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointTransform(float* out, int64_t outBytes,
                                                                      int64_t* pvalueCount,
                                                                      const sorvane_arf_AnimationComponents* self,
                                                                      int64_t skeletonId, int64_t jointId) {
    return array(out, outBytes, pvalueCount, 1, kComponents, self,
                 [&](const AnimationComponents& c, void* o, long size) {
                     return c.getJointTransform(o, size, skeletonId, jointId);
                 });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointTransform(sorvane_arf_AnimationComponents* self,
                                                                      int64_t skeletonId, int64_t jointId,
                                                                      const float* in, int64_t inBytes,
                                                                      int64_t count) {
    return flat::call(kComponents, self,
                      [&](AnimationComponents& c) { c.setJointTransform(skeletonId, jointId, in, inBytes, count); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_getJointTransforms(float* out, int64_t outBytes,
                                                                       int64_t* pvalueCount,
                                                                       const sorvane_arf_AnimationComponents* self,
                                                                       int64_t skeletonId) {
    return array(out, outBytes, pvalueCount, 16, kComponents, self,
                 [&](const AnimationComponents& c, void* o, long size) {
                     return c.getJointTransforms(o, size, skeletonId);
                 });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_setJointTransforms(sorvane_arf_AnimationComponents* self,
                                                                       int64_t skeletonId, const float* in,
                                                                       int64_t inBytes, int64_t count) {
    return flat::call(kComponents, self,
                      [&](AnimationComponents& c) { c.setJointTransforms(skeletonId, in, inBytes, count); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_hasValue(bool* out, const sorvane_arf_AnimationComponents* self,
                                                             int32_t type, int64_t id, int64_t index) {
    return flat::get(out, kComponents, self,
                     [&](const AnimationComponents& c) { return c.hasValue(location(type, id, index)); });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_getValue(float* out, int64_t outBytes, int64_t* pvalueCount,
                                                             const sorvane_arf_AnimationComponents* self,
                                                             int32_t type, int64_t id, int64_t index) {
    return array(out, outBytes, pvalueCount, 1, kComponents, self,
                 [&](const AnimationComponents& c, void* o, long size) {
                     auto value = c.getValue(location(type, id, index));
                     const long count = value->dataCount();
                     if (o) {
                         if (size < 0 || size / 4 < count) SORVANE_THROW("out is too small");
                         std::memcpy(o, value->data(), static_cast<size_t>(count) * sizeof(float));
                     }
                     return count;
                 });
}

SORVANE_API int32_t sorvane_arf_AnimationComponents_setValue(sorvane_arf_AnimationComponents* self, int32_t type,
                                                             int64_t id, int64_t index, int32_t valueType,
                                                             const float* in, int64_t inBytes, int64_t count) {
    return flat::call(kComponents, self, [&](AnimationComponents& c) {
        auto value = AnimationInput::create(static_cast<AnimationValueType>(valueType), "value")->createValue();
        if (!in) SORVANE_THROW("in is NULL");
        if (inBytes < 0 || inBytes / 4 < count) SORVANE_THROW("in is too small");
        if (count != value->dataCount())
            SORVANE_THROW("Invalid value size %ld expect %ld", static_cast<long>(count), value->dataCount());
        std::memcpy(value->data(), in, static_cast<size_t>(count) * sizeof(float));
        c.setValue(location(type, id, index), value);
    });
}

} // extern "C"
