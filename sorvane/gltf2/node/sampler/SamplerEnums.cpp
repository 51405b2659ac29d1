#include "sorvane/gltf2/node/sampler/SamplerEnums.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

namespace {

const char* filterName(long value, bool withMipmaps) {
    switch (value) {
    case 9728: return "NEAREST";
    case 9729: return "LINEAR";
    default: break;
    }
    if (!withMipmaps) return nullptr;
    switch (value) {
    case 9984: return "NEAREST_MIPMAP_NEAREST";
    case 9985: return "LINEAR_MIPMAP_NEAREST";
    case 9986: return "NEAREST_MIPMAP_LINEAR";
    case 9987: return "LINEAR_MIPMAP_LINEAR";
    default: return nullptr;
    }
}

const char* wrapName(long value) {
    switch (value) {
    case 33071: return "CLAMP_TO_EDGE";
    case 33648: return "MIRRORED_REPEAT";
    case 10497: return "REPEAT";
    default: return nullptr;
    }
}

// `what` is the type's name in the message ("samplerMagFilter").
const char* checked(const char* name, long value, const char* what) {
    if (!name) SORVANE_THROW("Invalid or unsupported %s type %d", what, static_cast<int>(value));
    return name;
}

std::ostream& print(std::ostream& out, const char* name) { return out << (name ? name : "Invalid"); }

} // namespace

SamplerMagFilter int2SamplerMagFilter(long value) {
    checked(filterName(value, false), value, "samplerMagFilter");
    return static_cast<SamplerMagFilter>(value);
}
SamplerMinFilter int2SamplerMinFilter(long value) {
    checked(filterName(value, true), value, "samplerMinFilter");
    return static_cast<SamplerMinFilter>(value);
}
SamplerWrapS int2SamplerWrapS(long value) {
    checked(wrapName(value), value, "samplerWrapS");
    return static_cast<SamplerWrapS>(value);
}
SamplerWrapT int2SamplerWrapT(long value) {
    checked(wrapName(value), value, "samplerWrapT");
    return static_cast<SamplerWrapT>(value);
}

const char* samplerMagFilter2name(SamplerMagFilter value) {
    return checked(filterName(value, false), value, "samplerMagFilter");
}
const char* samplerMinFilter2name(SamplerMinFilter value) {
    return checked(filterName(value, true), value, "samplerMinFilter");
}
const char* samplerWrapS2name(SamplerWrapS value) { return checked(wrapName(value), value, "samplerWrapS"); }
const char* samplerWrapT2name(SamplerWrapT value) { return checked(wrapName(value), value, "samplerWrapT"); }

std::ostream& operator<<(std::ostream& out, SamplerMagFilter value) { return print(out, filterName(value, false)); }
std::ostream& operator<<(std::ostream& out, SamplerMinFilter value) { return print(out, filterName(value, true)); }
std::ostream& operator<<(std::ostream& out, SamplerWrapS value) { return print(out, wrapName(value)); }
std::ostream& operator<<(std::ostream& out, SamplerWrapT value) { return print(out, wrapName(value)); }

} // namespace sorvane::gltf2
