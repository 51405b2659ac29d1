// Flat functions of AnimationFramework and AnimationData.
#include <cstring>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/animation/AnimationFramework.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/flat/AnimationFrame.h"
#include "sorvane/flat/sorvane_animation.h"

using namespace sorvane;
using namespace sorvane::arf;
using sorvane::flat::animation::array;
using sorvane::flat::animation::location;

namespace {
constexpr const char* kFramework = "framework is NULL";
constexpr const char* kData = "animationData is NULL";
} // namespace

extern "C" {

SORVANE_API int32_t sorvane_arf_AnimationFramework_new(sorvane_arf_AnimationFramework** out, const char* name,
                                                       const char* type) {
    return flat::create(out, [&] {
        return new AnimationFrameworkRef(std::make_shared<AnimationFramework>(flat::str(name), flat::str(type)));
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_create(sorvane_arf_AnimationFramework** out, const char* urn,
                                                          int64_t id) {
    return flat::create(out, [&] { return new AnimationFrameworkRef(AnimationFramework::create(flat::str(urn), id)); });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_tryCreate(sorvane_arf_AnimationFramework** out,
                                                             const sorvane_arf_Arf* arf, const char* type,
                                                             const char* urn, int64_t id) {
    return flat::create(out, [&]() -> AnimationFrameworkRef* {
        if (!arf) SORVANE_THROW("arf is NULL");
        auto framework = AnimationFramework::tryCreate(*arf, flat::str(type), flat::str(urn), id);
        return framework ? new AnimationFrameworkRef(framework) : nullptr;
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_knows(bool* out, const char* urn) {
    if (!out) return flat::fail("out is NULL");
    return flat::guard([&] { *out = AnimationFramework::knows(flat::str(urn)); });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_delete(sorvane_arf_AnimationFramework* self) {
    return flat::destroy(kFramework, self);
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getName(char* out, int64_t* outSize,
                                                           const sorvane_arf_AnimationFramework* self) {
    return flat::text(out, outSize, kFramework, self, [](const AnimationFrameworkRef& f) { return f->getName(); });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getType(char* out, int64_t* outSize,
                                                           const sorvane_arf_AnimationFramework* self) {
    return flat::text(out, outSize, kFramework, self, [](const AnimationFrameworkRef& f) { return f->getType(); });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_addInput(sorvane_arf_AnimationFramework* self, int32_t type,
                                                            int64_t id, int64_t index, int32_t valueType,
                                                            const char* name) {
    return flat::call(kFramework, self, [&](AnimationFrameworkRef& f) {
        f->addInput(location(type, id, index), static_cast<AnimationValueType>(valueType), flat::str(name));
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_addWeightInput(sorvane_arf_AnimationFramework* self, int32_t type,
                                                                  int64_t id, int64_t index, const char* name,
                                                                  float min, float max) {
    return flat::call(kFramework, self, [&](AnimationFrameworkRef& f) {
        f->addInput(location(type, id, index), std::make_shared<AnimationWeightInput>(flat::str(name), min, max));
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_addNextInput(int64_t* out, sorvane_arf_AnimationFramework* self,
                                                                int32_t valueType, const char* name, int32_t type,
                                                                int64_t id) {
    return flat::get(out, kFramework, self, [&](AnimationFrameworkRef& f) {
        return static_cast<int64_t>(f->addInput(static_cast<AnimationValueType>(valueType), flat::str(name),
                                                static_cast<AnimationLocationType>(type), id)
                                        ->location.index);
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputCount(int64_t* out,
                                                                 const sorvane_arf_AnimationFramework* self,
                                                                 int32_t type, int64_t id) {
    return flat::get(out, kFramework, self, [&](const AnimationFrameworkRef& f) {
        return static_cast<int64_t>(f->getInputCount(static_cast<AnimationLocationType>(type), id));
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputName(char* out, int64_t* outSize,
                                                                const sorvane_arf_AnimationFramework* self,
                                                                int32_t type, int64_t id, int64_t index) {
    return flat::text(out, outSize, kFramework, self, [&](const AnimationFrameworkRef& f) {
        const AnimationFramework& framework = *f;
        return framework.getInput(location(type, id, index))->name;
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputValueType(int32_t* out,
                                                                     const sorvane_arf_AnimationFramework* self,
                                                                     int32_t type, int64_t id, int64_t index) {
    return flat::get(out, kFramework, self, [&](const AnimationFrameworkRef& f) {
        const AnimationFramework& framework = *f;
        return static_cast<int32_t>(framework.getInput(location(type, id, index))->getValueType());
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getDefaultLocation(int32_t* outType, int64_t* outId,
                                                                      int64_t* outIndex,
                                                                      const sorvane_arf_AnimationFramework* self) {
    if (!self) return flat::fail(kFramework);
    if (!outType || !outId || !outIndex) return flat::fail("out is NULL");
    return flat::guard([&] {
        const AnimationLocation l = (*self)->getDefaultLocation();
        *outType = static_cast<int32_t>(l.type);
        *outId = l.id;
        *outIndex = l.index;
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_getInputRanges(float* outMin, float* outMax, int64_t outBytes,
                                                                  int64_t* pvalueCount,
                                                                  const sorvane_arf_AnimationFramework* self,
                                                                  int32_t type, int64_t id) {
    if (!self) return flat::fail(kFramework);
    if (!pvalueCount) return flat::fail("pvalueCount is NULL");
    return flat::guard([&] {
        const auto locationType = static_cast<AnimationLocationType>(type);
        *pvalueCount = (*self)->getInputRanges(nullptr, 0, nullptr, 0, locationType, id);
        if (outMin || outMax)
            (*self)->getInputRanges(outMin, static_cast<long>(outBytes), outMax, static_cast<long>(outBytes),
                                    locationType, id);
    });
}

SORVANE_API int32_t sorvane_arf_AnimationFramework_createData(sorvane_arf_AnimationData** out,
                                                              const sorvane_arf_AnimationFramework* self) {
    return flat::get(out, kFramework, self, [](const AnimationFrameworkRef& f) { return f->createDataPtr(); });
}

SORVANE_API int32_t sorvane_arf_AnimationData_delete(sorvane_arf_AnimationData* self) {
    return flat::destroy(kData, self);
}

SORVANE_API int32_t sorvane_arf_AnimationData_getValueCount(int64_t* out, const sorvane_arf_AnimationData* self) {
    return flat::get(out, kData, self, [](const AnimationData& d) { return static_cast<int64_t>(d.getValueCount()); });
}

SORVANE_API int32_t sorvane_arf_AnimationData_getWeights(float* out, int64_t outBytes, int64_t* pvalueCount,
                                                         const sorvane_arf_AnimationData* self) {
    return array(out, outBytes, pvalueCount, 1, kData, self,
                 [](const AnimationData& d, void* o, long size) { return d.getWeights(o, size); });
}

SORVANE_API int32_t sorvane_arf_AnimationData_setWeights(sorvane_arf_AnimationData* self, const float* in,
                                                         int64_t inBytes, int64_t count) {
    return flat::call(kData, self, [&](AnimationData& d) { d.setWeights(in, inBytes, count); });
}

SORVANE_API int32_t sorvane_arf_AnimationData_getTransforms(float* out, int64_t outBytes, int64_t* pvalueCount,
                                                            const sorvane_arf_AnimationData* self) {
    return array(out, outBytes, pvalueCount, 16, kData, self,
                 [](const AnimationData& d, void* o, long size) { return d.getTransforms(o, size); });
}

SORVANE_API int32_t sorvane_arf_AnimationData_setTransforms(sorvane_arf_AnimationData* self, const float* in,
                                                            int64_t inBytes, int64_t count) {
    return flat::call(kData, self, [&](AnimationData& d) { d.setTransforms(in, inBytes, count); });
}

SORVANE_API int32_t sorvane_arf_AnimationData_hasValue(bool* out, const sorvane_arf_AnimationData* self, int32_t type,
                                                       int64_t id, int64_t index) {
    return flat::get(out, kData, self,
                     [&](const AnimationData& d) { return d.getValues().count(location(type, id, index)) > 0; });
}

SORVANE_API int32_t sorvane_arf_AnimationData_getValueType(int32_t* out, const sorvane_arf_AnimationData* self,
                                                           int32_t type, int64_t id, int64_t index) {
    return flat::get(out, kData, self, [&](const AnimationData& d) {
        return static_cast<int32_t>(d.getValue(location(type, id, index))->getType());
    });
}

SORVANE_API int32_t sorvane_arf_AnimationData_getValue(float* out, int64_t outBytes, int64_t* pvalueCount,
                                                       const sorvane_arf_AnimationData* self, int32_t type,
                                                       int64_t id, int64_t index) {
    return array(out, outBytes, pvalueCount, 1, kData, self, [&](const AnimationData& d, void* o, long size) {
        auto value = d.getValue(location(type, id, index));
        const long count = value->dataCount();
        if (o) {
            if (size < 0 || size / 4 < count) SORVANE_THROW("out too small");
            std::memcpy(o, value->data(), static_cast<size_t>(count) * sizeof(float));
        }
        return count;
    });
}

SORVANE_API int32_t sorvane_arf_AnimationData_setValue(sorvane_arf_AnimationData* self, int32_t type, int64_t id,
                                                       int64_t index, const float* in, int64_t inBytes,
                                                       int64_t count) {
    return flat::call(kData, self, [&](AnimationData& d) {
        auto value = d.getValue(location(type, id, index));
        if (!in || inBytes < 0 || inBytes / 4 < count) SORVANE_THROW("data too small");
        if (count != value->dataCount())
            SORVANE_THROW("Invalid value size %ld expect %ld", static_cast<long>(count), value->dataCount());
        std::memcpy(value->data(), in, static_cast<size_t>(count) * sizeof(float));
    });
}

} // extern "C"
