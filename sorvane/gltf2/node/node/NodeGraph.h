#ifndef SORVANE_GLTF2_NODE_NODE_NODEGRAPH_H
#define SORVANE_GLTF2_NODE_NODE_NODEGRAPH_H

#include <cstdint>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

class NodeList;
class NodeNodes;
class RootNode;

// Walks of the node hierarchy. All of them are iterative and refuse a child
// cycle and a hierarchy deeper than kMaxDepth, so that no document can
// exhaust the stack or loop forever.
struct SORVANE_API NodeGraph {
    static constexpr int64_t kMaxDepth = 4096;

    // Whether the node has a mesh, or any node below it has.
    static bool isMeshNode(const NodeNodes& nodes, int64_t index);
    // Per node: 2 joint, 1 mesh node, 0 other.
    static std::vector<int32_t> nodeTypes(const RootNode& root);
    // The mesh index of the first node with a mesh, depth first from the
    // default scene's nodes; -1 when there is none.
    static int64_t firstMesh(const RootNode& root);
};

// True when the node at `index` has a mesh or any node below it has one;
// "In node %s:\nInvalid child id %ld" for a child outside the list.
SORVANE_API bool isMeshNode(const NodeList& nodes, long index);

} // namespace sorvane::gltf2

#endif
