#include "sorvane/gltf2/property/mesh/MeshReads.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/node/mesh/primitive/PrimitiveNodes.h"

namespace sorvane::gltf2 {

namespace {
const AccessorNode& accessorAt(const RootNode& root, int64_t index) {
    const auto& list = root.getAccessors();
    if (!list) SORVANE_THROW("There is no accessors in %s", root.getNodePath().c_str());
    return *list->getByIndex(index);
}
} // namespace

DataTree MeshReads::getDataTree() const {
    const MeshNode& mesh = node();
    const auto& primitives = mesh.getPrimitives();
    if (primitives->getNodeSize() > 1)
        SORVANE_THROW("Building DataTree from %s: meshes with more than one primitive are not supported",
                      mesh.getNodePath().c_str());
    // An empty mesh fails in the list access, as an absent primitive would.
    const PrimitiveNode& primitive = *primitives->getByIndex(0);
    if (!propertyRoot) failInvalidNode();
    DataTree vertices = BinaryData::getTensor(accessorAt(*propertyRoot, primitive.getAttributesValue("POSITION")));
    DataTree faces = BinaryData::getTensor(accessorAt(*propertyRoot, primitive.getIndices()));
    DataTree object = DataTree::createObject();
    object.setItem("vertices", vertices);
    object.setItem("faces", faces);
    return object;
}

} // namespace sorvane::gltf2
