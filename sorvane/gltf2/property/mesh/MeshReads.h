#ifndef SORVANE_GLTF2_PROPERTY_MESH_MESHREADS_H
#define SORVANE_GLTF2_PROPERTY_MESH_MESHREADS_H

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/mesh/MeshNode.h"
#include "sorvane/gltf2/property/ObjectProperty.h"

namespace sorvane::gltf2 {

// The Mesh accessor's view of a one-primitive mesh as a DataTree object.
class SORVANE_API MeshReads : public ObjectProperty<MeshNode> {
public:
    // {"vertices": POSITION, "faces": indices}, each in its accessor's own
    // scalar type and shape.
    DataTree getDataTree() const;
    DataTree* getDataTreePtr() const { return new DataTree(getDataTree()); }

protected:
    MeshReads() = default;
    MeshReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<MeshNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::gltf2

#endif
