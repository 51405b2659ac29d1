// Buffer conversion between scalar types: one tight loop per supported pair,
// selected once per call.
#include <emmintrin.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/ScalarType.h"

namespace sorvane {

namespace {

using Byte = unsigned char;

[[noreturn]] void overflow() { throw std::overflow_error("Overflow in scalar conversion"); }

// Floating value to UInteger8: the range check stops only the infinities (the
// limits are those of the source type), then the value is truncated to a
// signed 32-bit integer and its low byte kept. NaN and values beyond 32 bits
// take the x86 integer indefinite value 0x80000000, whose low byte is 0.
inline uint8_t toUInteger8(double value, double limit) {
    if (value < -limit || value > limit) overflow();
    if (!(value > -2147483649.0 && value < 2147483648.0)) return 0;
    return static_cast<uint8_t>(static_cast<int32_t>(value));
}

// Double to Float, rounding to nearest; values past the largest Float plus
// half an ulp become infinities, written out so no out-of-range cast happens.
constexpr double kFloatRoundsToInfinity = 3.4028235677973366e+38;  // FLT_MAX + 2^103

inline float toFloat(double value) {
    if (value >= kFloatRoundsToInfinity) return std::numeric_limits<float>::infinity();
    if (value <= -kFloatRoundsToInfinity) return -std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

// Element loops. Loads and stores go through memcpy so that unaligned buffers
// are fine; the restrict form lets the compiler vectorise when the buffers are
// apart, the plain form keeps the first-to-last order when they overlap.
template <class S, class D, class Op>
void loopApart(Byte* __restrict destination, const Byte* __restrict source, long count, Op op) {
    for (long i = 0; i < count; ++i) {
        S value;
        std::memcpy(&value, source + i * sizeof(S), sizeof(S));
        const D result = op(value);
        std::memcpy(destination + i * sizeof(D), &result, sizeof(D));
    }
}

template <class S, class D, class Op>
void loopOverlapping(Byte* destination, const Byte* source, long count, Op op) {
    for (long i = 0; i < count; ++i) {
        S value;
        std::memcpy(&value, source + i * sizeof(S), sizeof(S));
        const D result = op(value);
        std::memcpy(destination + i * sizeof(D), &result, sizeof(D));
    }
}

template <class S, class D, class Op>
void run(void* destination, const void* source, long count, bool overlapping, Op op) {
    if (overlapping)
        loopOverlapping<S, D>(static_cast<Byte*>(destination), static_cast<const Byte*>(source), count, op);
    else
        loopApart<S, D>(static_cast<Byte*>(destination), static_cast<const Byte*>(source), count, op);
}

template <class S, class D>
void widen(void* destination, const void* source, long count, bool overlapping) {
    run<S, D>(destination, source, count, overlapping, [](S v) { return static_cast<D>(v); });
}

// Packs four vectors of 32-bit integers to sixteen low bytes.
inline __m128i lowBytes(__m128i a, __m128i b, __m128i c, __m128i d) {
    const __m128i mask = _mm_set1_epi32(0xFF);
    const __m128i ab = _mm_packs_epi32(_mm_and_si128(a, mask), _mm_and_si128(b, mask));
    const __m128i cd = _mm_packs_epi32(_mm_and_si128(c, mask), _mm_and_si128(d, mask));
    return _mm_packus_epi16(ab, cd);
}

// Float to UInteger8, sixteen at a time. cvttps2dq gives exactly the
// indefinite value for NaN and out-of-range lanes. A block holding an
// infinity is left to the scalar loop, which raises at the right element.
long floatToUInteger8Sse(Byte* destination, const float* source, long count) {
    const __m128 low = _mm_set1_ps(-FLT_MAX);
    const __m128 high = _mm_set1_ps(FLT_MAX);
    long i = 0;
    for (; i + 16 <= count; i += 16) {
        const __m128 a = _mm_loadu_ps(source + i);
        const __m128 b = _mm_loadu_ps(source + i + 4);
        const __m128 c = _mm_loadu_ps(source + i + 8);
        const __m128 d = _mm_loadu_ps(source + i + 12);
        __m128 bad = _mm_or_ps(_mm_cmplt_ps(a, low), _mm_cmpgt_ps(a, high));
        bad = _mm_or_ps(bad, _mm_or_ps(_mm_cmplt_ps(b, low), _mm_cmpgt_ps(b, high)));
        bad = _mm_or_ps(bad, _mm_or_ps(_mm_cmplt_ps(c, low), _mm_cmpgt_ps(c, high)));
        bad = _mm_or_ps(bad, _mm_or_ps(_mm_cmplt_ps(d, low), _mm_cmpgt_ps(d, high)));
        if (_mm_movemask_ps(bad)) break;
        const __m128i bytes =
            lowBytes(_mm_cvttps_epi32(a), _mm_cvttps_epi32(b), _mm_cvttps_epi32(c), _mm_cvttps_epi32(d));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), bytes);
    }
    return i;
}

long doubleToUInteger8Sse(Byte* destination, const double* source, long count) {
    const __m128d low = _mm_set1_pd(-DBL_MAX);
    const __m128d high = _mm_set1_pd(DBL_MAX);
    long i = 0;
    for (; i + 16 <= count; i += 16) {
        __m128d v[8];
        __m128d bad = _mm_setzero_pd();
        for (int k = 0; k < 8; ++k) {
            v[k] = _mm_loadu_pd(source + i + 2 * k);
            bad = _mm_or_pd(bad, _mm_or_pd(_mm_cmplt_pd(v[k], low), _mm_cmpgt_pd(v[k], high)));
        }
        if (_mm_movemask_pd(bad)) break;
        __m128i q[4];
        for (int k = 0; k < 4; ++k)
            q[k] = _mm_unpacklo_epi64(_mm_cvttpd_epi32(v[2 * k]), _mm_cvttpd_epi32(v[2 * k + 1]));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + i), lowBytes(q[0], q[1], q[2], q[3]));
    }
    return i;
}

// Double to Float, four at a time: cvtpd2ps rounds to nearest and gives the
// infinities past the Float range, the same as toFloat.
void doubleToFloat(void* destination, const void* source, long count, bool overlapping) {
    long i = 0;
    if (!overlapping) {
        auto* d = static_cast<float*>(destination);
        const auto* s = static_cast<const double*>(source);
        for (; i + 4 <= count; i += 4) {
            const __m128 low = _mm_cvtpd_ps(_mm_loadu_pd(s + i));
            const __m128 high = _mm_cvtpd_ps(_mm_loadu_pd(s + i + 2));
            _mm_storeu_ps(d + i, _mm_movelh_ps(low, high));
        }
    }
    loopOverlapping<double, float>(static_cast<Byte*>(destination) + i * sizeof(float),
                                   static_cast<const Byte*>(source) + i * sizeof(double), count - i,
                                   [](double v) { return toFloat(v); });
}

template <class S>
void floatingToUInteger8(void* destination, const void* source, long count, bool overlapping, double limit) {
    long done = 0;
    if (!overlapping) {
        if constexpr (sizeof(S) == 4)
            done = floatToUInteger8Sse(static_cast<Byte*>(destination), static_cast<const float*>(source), count);
        else
            done = doubleToUInteger8Sse(static_cast<Byte*>(destination), static_cast<const double*>(source), count);
    }
    loopOverlapping<S, uint8_t>(static_cast<Byte*>(destination) + done,
                                static_cast<const Byte*>(source) + done * sizeof(S), count - done,
                                [limit](S v) { return toUInteger8(static_cast<double>(v), limit); });
}

constexpr int32_t pair(ScalarType source, ScalarType destination) {
    return static_cast<int32_t>(source) * 16 + static_cast<int32_t>(destination);
}

} // namespace

void convertBufferScalarType(void* destination, ScalarType destinationType, const void* source,
                             ScalarType sourceType, long count) {
    using T = ScalarType;
    if (sourceType == destinationType) {
        const long size = getScalarSize(sourceType);
        if (count <= 0) return;
        const size_t bytes = static_cast<size_t>(count) * static_cast<size_t>(size);
        auto* d = static_cast<Byte*>(destination);
        const auto* s = static_cast<const Byte*>(source);
        if (d > s && d < s + bytes) {
            // A forward element copy into a later, overlapping place repeats
            // elements; memmove would not, so copy the way the loop would.
            for (long i = 0; i < count; ++i) {
                Byte element[8];
                std::memcpy(element, s + i * size, static_cast<size_t>(size));
                std::memcpy(d + i * size, element, static_cast<size_t>(size));
            }
        } else {
            std::memmove(d, s, bytes);
        }
        return;
    }

    const int32_t selected = pair(sourceType, destinationType);
    switch (selected) {
    case pair(T::UInteger8, T::Float): case pair(T::UInteger8, T::Double):
    case pair(T::UInteger16, T::UInteger64): case pair(T::UInteger16, T::Integer64):
    case pair(T::UInteger16, T::Float): case pair(T::UInteger16, T::Double):
    case pair(T::UInteger32, T::UInteger64): case pair(T::UInteger32, T::Integer64):
    case pair(T::UInteger32, T::Float): case pair(T::UInteger32, T::Double):
    case pair(T::Integer64, T::UInteger8): case pair(T::Integer64, T::UInteger16):
    case pair(T::Integer64, T::UInteger32): case pair(T::Integer64, T::UInteger64):
    case pair(T::Integer64, T::Float): case pair(T::Integer64, T::Double):
    case pair(T::Float, T::UInteger8): case pair(T::Double, T::UInteger8):
    case pair(T::Double, T::Float):
        break;
    default:
        SORVANE_THROW("Invalid or unsupported scalar type conversion %s => %s", scalarType2string(sourceType),
                      scalarType2string(destinationType));
    }
    if (count <= 0) return;

    const auto s = reinterpret_cast<uintptr_t>(source);
    const auto d = reinterpret_cast<uintptr_t>(destination);
    const uintptr_t sEnd = s + static_cast<uintptr_t>(count) * static_cast<uintptr_t>(getScalarSize(sourceType));
    const uintptr_t dEnd = d + static_cast<uintptr_t>(count) * static_cast<uintptr_t>(getScalarSize(destinationType));
    const bool overlapping = s < dEnd && d < sEnd;

    switch (selected) {
    case pair(T::UInteger8, T::Float): widen<uint8_t, float>(destination, source, count, overlapping); break;
    case pair(T::UInteger8, T::Double): widen<uint8_t, double>(destination, source, count, overlapping); break;
    case pair(T::UInteger16, T::UInteger64): widen<uint16_t, uint64_t>(destination, source, count, overlapping); break;
    case pair(T::UInteger16, T::Integer64): widen<uint16_t, int64_t>(destination, source, count, overlapping); break;
    case pair(T::UInteger16, T::Float): widen<uint16_t, float>(destination, source, count, overlapping); break;
    case pair(T::UInteger16, T::Double): widen<uint16_t, double>(destination, source, count, overlapping); break;
    case pair(T::UInteger32, T::UInteger64): widen<uint32_t, uint64_t>(destination, source, count, overlapping); break;
    case pair(T::UInteger32, T::Integer64): widen<uint32_t, int64_t>(destination, source, count, overlapping); break;
    case pair(T::UInteger32, T::Float): widen<uint32_t, float>(destination, source, count, overlapping); break;
    case pair(T::UInteger32, T::Double): widen<uint32_t, double>(destination, source, count, overlapping); break;
    // Narrowing to unsigned keeps the low bytes: well defined modulo arithmetic.
    case pair(T::Integer64, T::UInteger8): widen<int64_t, uint8_t>(destination, source, count, overlapping); break;
    case pair(T::Integer64, T::UInteger16): widen<int64_t, uint16_t>(destination, source, count, overlapping); break;
    case pair(T::Integer64, T::UInteger32): widen<int64_t, uint32_t>(destination, source, count, overlapping); break;
    case pair(T::Integer64, T::UInteger64): widen<int64_t, uint64_t>(destination, source, count, overlapping); break;
    case pair(T::Integer64, T::Float): widen<int64_t, float>(destination, source, count, overlapping); break;
    case pair(T::Integer64, T::Double): widen<int64_t, double>(destination, source, count, overlapping); break;
    case pair(T::Float, T::UInteger8):
        floatingToUInteger8<float>(destination, source, count, overlapping, static_cast<double>(FLT_MAX));
        break;
    case pair(T::Double, T::UInteger8):
        floatingToUInteger8<double>(destination, source, count, overlapping, DBL_MAX);
        break;
    case pair(T::Double, T::Float):
        doubleToFloat(destination, source, count, overlapping);
        break;
    default:
        break;
    }
}

} // namespace sorvane
