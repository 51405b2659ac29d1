#include "sorvane/gltf2/node/node/NodeGraph.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

namespace {

enum : uint8_t { kUnseen = 0, kOpen = 1, kNoMesh = 2, kMesh = 3 };

struct Frame {
    int64_t node;
    int64_t child;  // next position in its children
};

[[noreturn]] void failCycle(const NodeNodes& nodes, int64_t index) {
    SORVANE_THROW("In node %s:\nCycle in children", nodes.getByIndex(index)->getNodePath().c_str());
}

[[noreturn]] void failDepth(const NodeNodes& nodes, int64_t index) {
    SORVANE_THROW("In node %s:\nHierarchy deeper than %ld levels", nodes.getByIndex(index)->getNodePath().c_str(),
                  static_cast<long>(NodeGraph::kMaxDepth));
}

// Post-order walk from `start` that fills `state` with kMesh / kNoMesh for
// every node it finishes; nodes already finished are not walked again. The
// children are visited in order and the walk stops at the first mesh found,
// as the recursive definition would.
bool walkMesh(const NodeNodes& nodes, int64_t start, std::vector<uint8_t>& state) {
    const int64_t count = nodes.getNodeSize();
    if (state[static_cast<size_t>(start)] >= kNoMesh) return state[static_cast<size_t>(start)] == kMesh;
    std::vector<Frame> stack;
    stack.push_back({start, 0});
    state[static_cast<size_t>(start)] = kOpen;
    bool found = false;
    while (!stack.empty()) {
        Frame& top = stack.back();
        const NodeNode& node = *nodes.getByIndex(top.node);
        if (top.child == 0 && node.hasMesh()) found = true;
        if (!found && top.child < node.getChildrenSize()) {
            const int64_t child = node.getChildrenValue(top.child++);
            if (child < 0 || child >= count)
                SORVANE_THROW("In node %s:\nInvalid child id %ld", node.getNodePath().c_str(), static_cast<long>(child));
            const uint8_t s = state[static_cast<size_t>(child)];
            if (s == kOpen) failCycle(nodes, child);
            if (s == kMesh) found = true;
            if (s == kUnseen) {
                if (static_cast<int64_t>(stack.size()) >= NodeGraph::kMaxDepth) failDepth(nodes, start);
                state[static_cast<size_t>(child)] = kOpen;
                stack.push_back({child, 0});
            }
            continue;
        }
        // Finished: a found mesh marks every open ancestor as a mesh node.
        state[static_cast<size_t>(top.node)] = found ? kMesh : kNoMesh;
        stack.pop_back();
    }
    return found;
}

} // namespace

bool NodeGraph::isMeshNode(const NodeNodes& nodes, int64_t index) {
    std::vector<uint8_t> state(static_cast<size_t>(nodes.getNodeSize()), kUnseen);
    nodes.getByIndex(index);  // the list's own message for a bad index
    return walkMesh(nodes, index, state);
}

std::vector<int32_t> NodeGraph::nodeTypes(const RootNode& root) {
    const auto& nodes = root.getNodes();
    if (!nodes || nodes->getNodeSize() == 0) return {};
    const int64_t count = nodes->getNodeSize();
    std::vector<int32_t> types(static_cast<size_t>(count), 0);
    if (const auto& skins = root.getSkins()) {
        for (int64_t s = 0; s < skins->getNodeSize(); ++s) {
            const SkinNode& skin = *skins->getByIndex(s);
            for (int64_t joint : skin.getJoints()) {
                if (joint < 0 || joint >= count)
                    SORVANE_THROW("In skin %s:\nInvalid node id %ld", skin.getNodePath().c_str(), static_cast<long>(joint));
                types[static_cast<size_t>(joint)] = 2;
            }
        }
    }
    std::vector<uint8_t> state(static_cast<size_t>(count), kUnseen);
    for (int64_t i = 0; i < count; ++i) {
        if (!walkMesh(*nodes, i, state)) continue;
        if (types[static_cast<size_t>(i)] == 2)
            SORVANE_THROW("Inconsistent node %s:\nJoint and Mesh at the same time",
                          nodes->getByIndex(i)->getNodePath().c_str());
        types[static_cast<size_t>(i)] = 1;
    }
    return types;
}

int64_t NodeGraph::firstMesh(const RootNode& root) {
    if (!root.hasScene()) return -1;
    const auto& scenes = root.getScenes();
    const int64_t sceneIndex = root.getScene();
    if (!scenes || sceneIndex < 0 || sceneIndex >= scenes->getNodeSize()) return -1;
    const SceneNode& scene = *scenes->getByIndex(sceneIndex);
    if (!scene.hasNodes()) return -1;
    const auto& nodes = root.getNodes();
    const int64_t count = nodes ? nodes->getNodeSize() : 0;
    std::vector<uint8_t> open(static_cast<size_t>(count), 0);
    std::vector<Frame> stack;
    for (int64_t start : scene.getNodes()) {
        if (start < 0 || start >= count)
            SORVANE_THROW("In scene %s:\nInvalid node id %ld", scene.getNodePath().c_str(), static_cast<long>(start));
        // Pre-order: a node's own mesh before its children, children in order.
        stack.push_back({start, -1});
        open[static_cast<size_t>(start)] = 1;
        while (!stack.empty()) {
            Frame& top = stack.back();
            const NodeNode& node = *nodes->getByIndex(top.node);
            if (top.child < 0) {
                if (node.hasMesh()) return node.getMesh();
                top.child = 0;
            }
            if (top.child < node.getChildrenSize()) {
                const int64_t child = node.getChildrenValue(top.child++);
                if (child < 0 || child >= count)
                    SORVANE_THROW("In node %s:\nInvalid child id %ld", node.getNodePath().c_str(), static_cast<long>(child));
                if (open[static_cast<size_t>(child)]) failCycle(*nodes, child);
                if (static_cast<int64_t>(stack.size()) >= kMaxDepth) failDepth(*nodes, start);
                open[static_cast<size_t>(child)] = 1;
                stack.push_back({child, -1});
                continue;
            }
            open[static_cast<size_t>(top.node)] = 0;
            stack.pop_back();
        }
    }
    return -1;
}

} // namespace sorvane::gltf2
