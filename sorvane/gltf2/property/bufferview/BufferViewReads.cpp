#include "sorvane/gltf2/property/bufferview/BufferViewReads.h"

#include "sorvane/gltf2/Gltf.h"

namespace sorvane::gltf2 {

int64_t BufferViewReads::clone(Gltf& target) const { return BinaryData::clone(node(), *target.getRoot()); }

BufferView* BufferViewReads::clonePtr(Gltf& target) const {
    const int64_t index = clone(target);
    return new BufferView(target.getRoot(), target.getRoot()->bufferViews().getByIndex(index), false);
}

} // namespace sorvane::gltf2
