#ifndef SORVANE_GLTF2_NODE_SAMPLER_SAMPLERENUMS_H
#define SORVANE_GLTF2_NODE_SAMPLER_SAMPLERENUMS_H

#include <cstdint>
#include <ostream>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

// The texture filters and wrap modes of a glTF sampler, with the values of
// the standard (the OpenGL constants).
enum SamplerMagFilter : int32_t {
    SAMPLER_MAG_FILTER_NEAREST = 9728,
    SAMPLER_MAG_FILTER_LINEAR = 9729,
};

enum SamplerMinFilter : int32_t {
    SAMPLER_MIN_FILTER_NEAREST = 9728,
    SAMPLER_MIN_FILTER_LINEAR = 9729,
    SAMPLER_MIN_FILTER_NEAREST_MIPMAP_NEAREST = 9984,
    SAMPLER_MIN_FILTER_LINEAR_MIPMAP_NEAREST = 9985,
    SAMPLER_MIN_FILTER_NEAREST_MIPMAP_LINEAR = 9986,
    SAMPLER_MIN_FILTER_LINEAR_MIPMAP_LINEAR = 9987,
};

enum SamplerWrapS : int32_t {
    SAMPLER_WRAP_S_CLAMP_TO_EDGE = 33071,
    SAMPLER_WRAP_S_MIRRORED_REPEAT = 33648,
    SAMPLER_WRAP_S_REPEAT = 10497,
};

enum SamplerWrapT : int32_t {
    SAMPLER_WRAP_T_CLAMP_TO_EDGE = 33071,
    SAMPLER_WRAP_T_MIRRORED_REPEAT = 33648,
    SAMPLER_WRAP_T_REPEAT = 10497,
};

SORVANE_API SamplerMagFilter int2SamplerMagFilter(long value);
SORVANE_API SamplerMinFilter int2SamplerMinFilter(long value);
SORVANE_API SamplerWrapS int2SamplerWrapS(long value);
SORVANE_API SamplerWrapT int2SamplerWrapT(long value);

SORVANE_API const char* samplerMagFilter2name(SamplerMagFilter value);
SORVANE_API const char* samplerMinFilter2name(SamplerMinFilter value);
SORVANE_API const char* samplerWrapS2name(SamplerWrapS value);
SORVANE_API const char* samplerWrapT2name(SamplerWrapT value);

// The name, or "Invalid".
SORVANE_API std::ostream& operator<<(std::ostream& out, SamplerMagFilter value);
SORVANE_API std::ostream& operator<<(std::ostream& out, SamplerMinFilter value);
SORVANE_API std::ostream& operator<<(std::ostream& out, SamplerWrapS value);
SORVANE_API std::ostream& operator<<(std::ostream& out, SamplerWrapT value);

} // namespace sorvane::gltf2

#endif
