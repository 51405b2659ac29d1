// Flat forms of the derived mesh reads: morph stacks of the targets, the
// strongest joint influences of the skinning sets, a mesh as a DataTree.
#include <optional>
#include <string>
#include <vector>

#include "sorvane/flat/Frame.h"
#include "sorvane/gltf2/property/mesh/Mesh.h"
#include "sorvane/gltf2/property/mesh/primitive/Primitive.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::gltf2::Primitive;

namespace {

constexpr const char* kPrimitive = "primitive is NULL";

// A null selection takes every target; a given one is checked by the read
// ("Selection is empty", "Invalid index %ld in selection").
std::optional<std::vector<long>> selectionOf(const int64_t* selection, int64_t count) {
    if (!selection) return std::nullopt;
    const std::vector<int64_t> values = flat::array(selection, count);
    return std::vector<long>(values.begin(), values.end());
}

} // namespace

extern "C" {

int32_t sorvane_gltf2_Primitive_getTargetsTensor(DataTree** out, sorvane_gltf2_Primitive* self, const char* key,
                                                 const int64_t* selection, int64_t selectionCount) {
    return flat::get(out, kPrimitive, self, [&](Primitive& p) {
        const auto chosen = selectionOf(selection, selectionCount);
        return chosen ? p.targets.getTensorPtr(flat::str(key), *chosen) : p.targets.getTensorPtr(flat::str(key));
    });
}

int32_t sorvane_gltf2_Primitive_getTargetsData(void* out, int64_t* outSize, sorvane_gltf2_Primitive* self,
                                               const char* key, const int64_t* selection, int64_t selectionCount) {
    if (!self) return flat::fail(kPrimitive);
    if (!outSize) return flat::fail("outSize is NULL");
    int32_t status = 0;
    if (flat::guard([&] {
            const std::string name = flat::str(key);
            const auto chosen = selectionOf(selection, selectionCount);
            const int64_t size = chosen ? self->targets.getData(nullptr, 0, name, *chosen)
                                        : self->targets.getData(nullptr, 0, name);
            if (!out || *outSize < size) {
                // Too small a block is the size protocol's -1, with the slot untouched.
                status = out ? -1 : 0;
                *outSize = size;
                return;
            }
            *outSize = chosen ? self->targets.getData(out, *outSize, name, *chosen)
                              : self->targets.getData(out, *outSize, name);
        }) != 0)
        return -1;
    return status;
}

int32_t sorvane_gltf2_Primitive_getTargetsDataLayout(int64_t* out, int64_t outBytes, int64_t* pvalueCount,
                                                     sorvane_gltf2_Primitive* self, const char* key,
                                                     const int64_t* selection, int64_t selectionCount) {
    std::vector<int64_t> layout;
    return flat::values(out, outBytes, pvalueCount, kPrimitive, self, [&](Primitive& p) -> const auto& {
        const auto chosen = selectionOf(selection, selectionCount);
        for (long d : chosen ? p.targets.getDataLayout(flat::str(key), *chosen) : p.targets.getDataLayout(flat::str(key)))
            layout.push_back(d);
        return layout;
    });
}

int32_t sorvane_gltf2_Primitive_getTargetsComponentType(int32_t* out, sorvane_gltf2_Primitive* self, const char* key) {
    return flat::get(out, kPrimitive, self,
                     [&](Primitive& p) { return static_cast<int32_t>(p.targets.getComponentType(flat::str(key))); });
}

int32_t sorvane_gltf2_Primitive_getTargetsFirstdWith(int64_t* out, sorvane_gltf2_Primitive* self, const char* key) {
    return flat::get(out, kPrimitive, self, [&](Primitive& p) { return p.targets.getFirstdWith(flat::str(key)); });
}

int32_t sorvane_gltf2_Primitive_getJointsTensor(DataTree** joints, DataTree** weights, sorvane_gltf2_Primitive* self,
                                                int64_t vertexCount, int64_t jointCount) {
    if (!self) return flat::fail(kPrimitive);
    if (!joints || !weights) return flat::fail("out is NULL");
    return flat::guard([&] {
        auto tensors = self->attributes.getJointsTensorPtr(static_cast<long>(vertexCount), static_cast<long>(jointCount));
        *joints = tensors.first;
        *weights = tensors.second;
    });
}

int32_t sorvane_gltf2_Primitive_getJointsDataLayout(int64_t* vertexCountOut, int64_t* jointCountOut,
                                                    sorvane_gltf2_Primitive* self, int64_t vertexCount,
                                                    int64_t jointCount) {
    if (!self) return flat::fail(kPrimitive);
    if (!vertexCountOut || !jointCountOut) return flat::fail("out is NULL");
    return flat::guard([&] {
        const std::vector<long> layout =
            self->attributes.getJointsDataLayout(static_cast<long>(vertexCount), static_cast<long>(jointCount));
        *vertexCountOut = layout[0];
        *jointCountOut = layout[1];
    });
}

int32_t sorvane_gltf2_Primitive_getJointsData(int64_t* out, uint8_t* joints, int64_t jointsBytes, float* weights,
                                              int64_t weightsBytes, sorvane_gltf2_Primitive* self, int64_t vertexCount,
                                              int64_t jointCount) {
    return flat::get(out, kPrimitive, self, [&](Primitive& p) {
        return static_cast<int64_t>(p.attributes.getJointsData(joints, static_cast<long>(jointsBytes), weights,
                                                                static_cast<long>(weightsBytes),
                                                                static_cast<long>(vertexCount),
                                                                static_cast<long>(jointCount)));
    });
}

int32_t sorvane_gltf2_Mesh_getDataTree(DataTree** out, sorvane_gltf2_Mesh* self) {
    return flat::get(out, "mesh is NULL", self, [](sorvane::gltf2::Mesh& m) { return m.getDataTreePtr(); });
}

} // extern "C"
