#ifndef SORVANE_GLTF2_PROPERTY_SCENE_SCENEREADS_H
#define SORVANE_GLTF2_PROPERTY_SCENE_SCENEREADS_H

#include <cstdint>

#include "sorvane/gltf2/node/scene/SceneNode.h"
#include "sorvane/gltf2/property/ObjectProperty.h"

namespace sorvane::gltf2 {

class Gltf;
class Scene;

// The Scene accessor's copy into another document.
class SORVANE_API SceneReads : public ObjectProperty<SceneNode> {
public:
    // Adds a scene to `target` with this one's name and returns its index.
    // The node list is not copied: its indices mean nothing there.
    int64_t clone(Gltf& target) const;
    Scene* clonePtr(Gltf& target) const;

protected:
    SceneReads() = default;
    SceneReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<SceneNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::gltf2

#endif
