#include "sorvane/gltf2/Gltf.h"

#include "sorvane/gltf2/node/node/NodeGraph.h"

// The scene-graph queries of a document.

namespace sorvane::gltf2 {

std::vector<int32_t> Gltf::getNodeTypes() const { return NodeGraph::nodeTypes(*root); }

std::string Gltf::getSceneName() const {
    if (!root->hasScene()) return "<No main scene>";
    const int64_t index = root->getScene();
    const auto& list = root->getScenes();
    if (!list || index < 0 || index >= list->getNodeSize())
        return "<Invalid main scene " + std::to_string(index) + ">";
    const SceneNode& scene = *list->getByIndex(index);
    return scene.hasName() ? scene.getName() : "Scene " + std::to_string(index);
}

Mesh Gltf::getFirstMesh() const {
    const int64_t index = NodeGraph::firstMesh(*root);
    if (index < 0) return Mesh();
    return meshes.getByIndex(index);
}

Mesh* Gltf::getFirstMeshPtr() const { return new Mesh(getFirstMesh()); }

bool isMeshNode(const NodeList& nodes, long index) {
    const auto& list = nodes.getNode();
    if (!list) SORVANE_THROW("Invalid node");
    return NodeGraph::isMeshNode(*list, index);
}

} // namespace sorvane::gltf2
