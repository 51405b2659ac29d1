#ifndef SORVANE_GLTF2_NODE_MESH_PRIMITIVE_PRIMITIVEDATA_H
#define SORVANE_GLTF2_NODE_MESH_PRIMITIVE_PRIMITIVEDATA_H

#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/Export.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/accessor/AccessorComponentType.h"

namespace sorvane::gltf2 {

class RootNode;

// The views of a primitive's data that span several accessors: the morph
// target stack of one attribute, and the skinning influences merged from all
// JOINTS_n / WEIGHTS_n sets. `path` names the member in messages.
struct SORVANE_API PrimitiveData {
    using IntegerMap = archive::JsonImporter::IntegerMap;

    // ---- morph targets; `targets` is null when the primitive has none ----

    // The first target with `key`, -1 without one.
    static int64_t firstTargetWith(const std::vector<IntegerMap>* targets, const std::string& key);
    static AccessorComponentType targetsComponentType(const RootNode& root, const std::string& path,
                                                      const std::vector<IntegerMap>* targets, const std::string& key);
    // [targets, vertices, components]; `selection` null means every target.
    static std::vector<long> targetsLayout(const RootNode& root, const std::string& path,
                                           const std::vector<IntegerMap>* targets, const std::string& key,
                                           const std::vector<long>* selection);
    // Writes the targets one block after the other, zeros for a target
    // without the key; returns the bytes written.
    static int64_t targetsData(const RootNode& root, const std::string& path, const std::vector<IntegerMap>* targets,
                               void* out, int64_t outSize, const std::string& key, const std::vector<long>* selection);
    static DataTree targetsTensor(const RootNode& root, const std::string& path,
                                  const std::vector<IntegerMap>* targets, const std::string& key,
                                  const std::vector<long>* selection);

    // ---- skinning ----

    struct Joints {
        long vertexCount = 0;
        long jointCount = 0;
        std::vector<uint8_t> joints;  // [vertexCount, jointCount]
        std::vector<float> weights;   // [vertexCount, jointCount], each row summing to 1 (or all 0)
    };
    // `vertexCount` below 0: the first set decides it.
    static Joints joints(const RootNode& root, const std::string& path, const IntegerMap* attributes,
                         long vertexCount, long jointCount);
    // The pair [joints UInteger8, weights Float].
    static std::pair<DataTree, DataTree> jointsTensors(const RootNode& root, const std::string& path,
                                                       const IntegerMap* attributes, long vertexCount,
                                                       long jointCount);
};

} // namespace sorvane::gltf2

#endif
