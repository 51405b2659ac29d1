#ifndef SORVANE_FLAT_ANIMATIONFRAME_H
#define SORVANE_FLAT_ANIMATIONFRAME_H

// The array results of the animation classes, whose getters take (out,
// outSize) and return their count, a null out only asking for it.

#include <cstdint>

#include "sorvane/arf/animation/data/AnimationLocation.h"
#include "sorvane/flat/Frame.h"

namespace sorvane::flat::animation {

// *pvalueCount = the element count (scale per counted item); then, with an
// out, the copy, whose own failure text goes to the slot. The count is
// reported also when the copy fails, so a caller learns the size it needs.
template <class T, class Work>
int32_t array(void* out, int64_t outBytes, int64_t* pvalueCount, long scale, const char* nullText, T* self,
              Work&& work) {
    if (!self) return fail(nullText);
    if (!pvalueCount) return fail("pvalueCount is NULL");
    return guard([&] {
        *pvalueCount = static_cast<int64_t>(work(*self, nullptr, 0L)) * scale;
        if (out) work(*self, out, static_cast<long>(outBytes));
    });
}

inline arf::AnimationLocation location(int32_t type, int64_t id, int64_t index) {
    return arf::AnimationLocation(static_cast<arf::AnimationLocationType>(type), static_cast<long>(id),
                                  static_cast<long>(index));
}

} // namespace sorvane::flat::animation

#endif
