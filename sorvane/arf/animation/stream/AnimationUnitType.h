#ifndef SORVANE_ARF_ANIMATION_STREAM_ANIMATIONUNITTYPE_H
#define SORVANE_ARF_ANIMATION_STREAM_ANIMATIONUNITTYPE_H

#include <cstdint>

namespace sorvane::arf {

// The kind of a stream unit; the value travels in the unit header.
enum AnimationUnitType : int32_t {
    ANIMATION_UNIT_INVALID = -1,
    ANIMATION_UNIT_CONFIG = 0,
    ANIMATION_UNIT_BLENDSHAPE = 1,
    ANIMATION_UNIT_JOINT = 2,
    ANIMATION_UNIT_LANDMARK = 3,
    ANIMATION_UNIT_TEXTURE = 4,
    ANIMATION_UNIT_SILENT = 5,
};

} // namespace sorvane::arf

#endif
