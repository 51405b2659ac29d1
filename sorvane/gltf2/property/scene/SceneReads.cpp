#include "sorvane/gltf2/property/scene/SceneReads.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/Gltf.h"

namespace sorvane::gltf2 {

int64_t SceneReads::clone(Gltf& target) const {
    const SceneNode& source = node();
    if (target.isReadOnly())
        SORVANE_THROW("Cloning %s: Forbidden, read-only target container", source.getNodePath().c_str());
    ::sorvane::gltf2::Scene copy = target.scenes.get().add(nullptr);
    if (source.hasName()) copy.getNode()->setName(source.getName());
    // Generic values have no deep copy yet.
    if (source.hasExtras()) SORVANE_THROW("Not implemented");
    return copy.getPropertyIndex();
}

Scene* SceneReads::clonePtr(Gltf& target) const {
    const int64_t index = clone(target);
    return new ::sorvane::gltf2::Scene(target.scenes.getByIndex(index));
}

} // namespace sorvane::gltf2
