#ifndef SORVANE_MESHIO_MESH_GLTF_H
#define SORVANE_MESHIO_MESH_GLTF_H

// Meshes to and from glTF: one mesh, primitive, node and scene on the way
// out; the first node of the scene, with its mesh, transform and children,
// on the way in.

#include <string>
#include <unordered_map>

#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"

namespace sorvane::gltf2 {
class Gltf;
class AnimationSamplerList;
class AnimationChannelList;
} // namespace sorvane::gltf2

namespace sorvane {

// "faces" (triangles of "facesVertices" or "faces"), "vertices", "uvs",
// "colors" and an image object under "texture". `embedded` writes the one
// buffer of a .gltf as a data uri rather than a file beside it.
SORVANE_API void saveGltf(const std::string& path, const DataTree& mesh, bool embedded);
SORVANE_API DataTree loadGltf(const std::string& path);

// Mesh `meshIndex`'s first primitive into `out`.
SORVANE_API void parseGltfMesh(DataTree& out, const std::string& path, const gltf2::Gltf& gltf, int meshIndex);
// Node `nodeIndex` into `out`, its children under "nodes"; `nodes` maps each
// node visited to its place in the order of visits.
SORVANE_API void parseGltfNode(DataTree& out, std::unordered_map<long, long>& nodes, const std::string& path,
                               const gltf2::Gltf& gltf, int nodeIndex);
// One object per sampler: "input" and "output" tensors, "interpolation".
SORVANE_API DataTree parseAnimationSamplers(const gltf2::AnimationSamplerList& samplers, const gltf2::Gltf& gltf);
// One object per channel: "sampler", "mesh" (the target node's place in
// `nodes`) and "path".
SORVANE_API DataTree parseAnimationChannels(const gltf2::AnimationChannelList& channels,
                                            const std::unordered_map<long, long>& nodes);

} // namespace sorvane

#endif
