#ifndef SORVANE_ARF_ANIMATION_DATA_ANIMATIONLOCATION_H
#define SORVANE_ARF_ANIMATION_DATA_ANIMATIONLOCATION_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <tuple>

#include "sorvane/core/Export.h"

namespace sorvane::arf {

class Arf;

enum AnimationLocationType : int32_t {
    ANIMATION_LOCATION_INVALID = 0,
    ANIMATION_LOCATION_STREAM = 1,
    ANIMATION_LOCATION_BLENDSHAPE_SET = 2,
    ANIMATION_LOCATION_SKELETON = 3,
    ANIMATION_LOCATION_LANDMARK_SET = 4,
    ANIMATION_LOCATION_TEXTURE_SET = 5,
};

SORVANE_API const char* animationLocationType2string(AnimationLocationType type);

// The address of one value: a stream, set or skeleton id and the element in
// it. Unset id and index are -1. Ordered by type, id, index, all signed.
struct SORVANE_API AnimationLocation {
    AnimationLocationType type = ANIMATION_LOCATION_INVALID;
    long id = -1;
    long index = -1;

    AnimationLocation() = default;
    AnimationLocation(AnimationLocationType type_, long id_ = -1, long index_ = -1)
        : type(type_), id(id_), index(index_) {}

    // "Skeleton[002](017)": the type's name ("?" past the known ones), then
    // the id and the index when not negative, three digits at least.
    std::string desc() const;
    // Whether the document has the element: a joint by position, a shape or a
    // texture target by id; other types never.
    bool existsIn(const Arf& arf) const;

    bool operator<(const AnimationLocation& o) const {
        return std::tie(type, id, index) < std::tie(o.type, o.id, o.index);
    }
    bool operator==(const AnimationLocation& o) const {
        return type == o.type && id == o.id && index == o.index;
    }
    bool operator!=(const AnimationLocation& o) const { return !(*this == o); }
};

SORVANE_API std::ostream& operator<<(std::ostream& out, const AnimationLocation& location);

} // namespace sorvane::arf

#endif
