#ifndef SORVANE_FLAT_STREAMFRAME_H
#define SORVANE_FLAT_STREAMFRAME_H

// Shapes of the stream's flat functions that the common frame has no
// template for: a checked downcast, and a value getter that reports its
// value count.

#include <cstdint>

#include "sorvane/arf/animation/stream/UnitAnimationSample.h"
#include "sorvane/flat/Frame.h"

namespace sorvane::flat::streamframe {

// The same object under its sample class; another class fails with text.
template <class K>
int32_t downcast(K** out, arf::UnitAnimationSample* self, const char* text) {
    if (!self) return fail("unitAnimationSample is NULL");
    if (!out) return fail("out is NULL");
    K* sample = dynamic_cast<K*>(self);
    if (!sample) return fail(text);
    *out = sample;
    return 0;
}

// *pvalueCount = work(self), the work copying the values when it has a buffer.
template <class T, class Work>
int32_t valueCount(int64_t* pvalueCount, const char* nullText, T* self, Work&& work) {
    if (!self) return fail(nullText);
    if (!pvalueCount) return fail("pvalueCount is NULL");
    return guard([&] {
        const int64_t count = work(*self);
        *pvalueCount = count;
    });
}

} // namespace sorvane::flat::streamframe

#endif
