#include "sorvane/gltf2/property/buffer/BufferReads.h"

#include "sorvane/gltf2/Gltf.h"

namespace sorvane::gltf2 {

int64_t BufferReads::clone(Gltf& target) const { return BinaryData::clone(node(), *target.getRoot()); }

Buffer* BufferReads::clonePtr(Gltf& target) const {
    const int64_t index = clone(target);
    return new Buffer(target.getRoot(), target.getRoot()->buffers().getByIndex(index), false);
}

} // namespace sorvane::gltf2
