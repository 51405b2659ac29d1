#include "sorvane/gltf2/property/accessor/AccessorReads.h"

#include "sorvane/gltf2/Gltf.h"

namespace sorvane::gltf2 {

int64_t AccessorReads::clone(Gltf& target) const { return BinaryData::clone(node(), *target.getRoot()); }

Accessor* AccessorReads::clonePtr(Gltf& target) const {
    const int64_t index = clone(target);
    return new Accessor(target.getRoot(), target.getRoot()->accessors().getByIndex(index), false);
}

} // namespace sorvane::gltf2
