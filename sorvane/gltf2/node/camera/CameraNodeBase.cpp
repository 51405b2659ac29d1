#include "sorvane/gltf2/node/camera/CameraNodeBase.h"

#include <optional>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/camera/CameraNode.h"

namespace sorvane::gltf2 {

void CameraNodeBase::initType() {
    CameraNode& camera = static_cast<CameraNode&>(*this);
    const std::string& type = camera.getType();
    if (type == "perspective") {
        auto child = std::make_shared<CameraPerspectiveNode>(shared_from_this());
        child->init(std::nullopt, std::nullopt);
        camera.setPerspective(child);
        camera.removeOrthographic();
    } else if (type == "orthographic") {
        auto child = std::make_shared<CameraOrthographicNode>(shared_from_this());
        child->init(std::nullopt, std::nullopt, std::nullopt, std::nullopt);
        camera.setOrthographic(child);
        camera.removePerspective();
    } else {
        SORVANE_THROW("Initialization of %s:\nInvalid value '%s' for type", getNodePath().c_str(), type.c_str());
    }
}

} // namespace sorvane::gltf2
