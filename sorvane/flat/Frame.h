#ifndef SORVANE_FLAT_FRAME_H
#define SORVANE_FLAT_FRAME_H

// The frame every flat function is built on. Each flat function is one call
// into these templates; the object's null text ("arf is NULL", "instancePtr_ is
// NULL", ...) is a parameter, never a copy of the frame.

#include <cstdint>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/core/ErrorSlot.h"
#include "sorvane/core/IdList.h"

namespace sorvane::flat {

// Puts the text into the slot and returns the failure status.
inline int32_t fail(const char* text) {
    sorvane_errorMessage = text;
    return -1;
}

// Runs the work inside the guard for standard exceptions. Anything not derived
// from std::exception passes through on purpose.
template <class Work>
int32_t guard(Work&& work) {
    try {
        work();
        return 0;
    } catch (const std::exception& e) {
        sorvane_errorMessage = e.what();
        return -1;
    }
}

// A text argument that names something; null fails with the standard
// library's historical message, inside the guard.
inline std::string str(const char* text) {
    if (!text) throw std::logic_error("basic_string::_S_construct null not valid");
    return std::string(text);
}

// Copies a finished text result out under the size protocol.
inline int32_t putText(char* out, int64_t* outSize, const std::string& text) {
    if (!outSize) return fail("outSize is NULL");
    const int64_t length = static_cast<int64_t>(text.size());
    if (*outSize <= length) {
        *outSize = length + 1;
        return -1;
    }
    if (!out) return fail("out is NULL");
    std::memcpy(out, text.c_str(), text.size() + 1);
    return 0;
}

// An array result under the array size protocol: the count in values is
// reported through pvalueCount whenever it differs; the values are copied
// when out is set and outBytes holds them all. A null out only asks for the
// count (0); an out too small is -1 with the slot untouched.
template <class T, class Obj, class Work>
int32_t values(T* out, int64_t outBytes, int64_t* pvalueCount, const char* nullText, Obj* self, Work&& work) {
    if (!self) return fail(nullText);
    if (!pvalueCount) return fail("pvalueCount is NULL");
    bool copied = false;
    if (guard([&] {
            const auto& result = work(*self);
            const int64_t count = static_cast<int64_t>(result.size());
            if (*pvalueCount != count) *pvalueCount = count;
            if (out && outBytes >= 0 && static_cast<uint64_t>(outBytes) / sizeof(T) >= static_cast<uint64_t>(count)) {
                if (count > 0) std::memcpy(out, result.data(), static_cast<size_t>(count) * sizeof(T));
                copied = true;
            }
        }) != 0)
        return -1;
    return (copied || !out) ? 0 : -1;
}

// The values of a list that is absent.
template <class T>
const std::vector<T>& none() {
    static const std::vector<T> empty;
    return empty;
}

// The ids of a reference list that is absent.
inline const IdList& noIds() {
    static const IdList empty;
    return empty;
}

// The values of an array argument; a null array is refused unless empty.
template <class T>
std::vector<T> array(const T* values, int64_t count) {
    if (count < 0) throw std::invalid_argument("count is negative");
    if (count > 0 && !values) throw std::invalid_argument("values is NULL");
    return count > 0 ? std::vector<T>(values, values + count) : std::vector<T>();
}

// A block of values handed out under the value size protocol: unlike texts,
// a capacity equal to the byte size is enough.
struct Bytes {
    const void* data;
    int64_t size;
};

inline int32_t putValues(void* out, int64_t* outSize, const Bytes& bytes) {
    if (!outSize) return fail("outSize is NULL");
    if (*outSize < bytes.size) {
        *outSize = bytes.size;
        return -1;
    }
    if (!out) return fail("out is NULL");
    if (bytes.size > 0) std::memcpy(out, bytes.data, static_cast<size_t>(bytes.size));
    return 0;
}

// *out = make(), a new object owned by the caller; no object argument.
template <class T, class Make>
int32_t create(T** out, Make&& make) {
    if (!out) return fail("out is NULL");
    return guard([&] { *out = make(); });
}

// self->work(), no result.
template <class T, class Work>
int32_t call(const char* nullText, T* self, Work&& work) {
    if (!self) return fail(nullText);
    return guard([&] { work(*self); });
}

// *out = self->work(); out is written only after the work returned.
template <class R, class T, class Work>
int32_t get(R* out, const char* nullText, T* self, Work&& work) {
    if (!self) return fail(nullText);
    if (!out) return fail("out is NULL");
    return guard([&] {
        auto result = work(*self);
        *out = std::move(result);
    });
}

// A text result: the work runs first, then outSize and out are checked.
template <class T, class Work>
int32_t text(char* out, int64_t* outSize, const char* nullText, T* self, Work&& work) {
    if (!self) return fail(nullText);
    std::string result;
    if (guard([&] { result = work(*self); }) != 0) return -1;
    return putText(out, outSize, result);
}

// A value block result: the work (returning Bytes) runs first, then outSize
// and out are checked.
template <class T, class Work>
int32_t values(void* out, int64_t* outSize, const char* nullText, T* self, Work&& work) {
    if (!self) return fail(nullText);
    Bytes result{nullptr, 0};
    if (guard([&] { result = work(*self); }) != 0) return -1;
    return putValues(out, outSize, result);
}

// The _delete frame: runs the destructor outside any guard.
template <class T>
int32_t destroy(const char* nullText, T* self) {
    if (!self) return fail(nullText);
    delete self;
    return 0;
}

} // namespace sorvane::flat

#endif
