#include <filesystem>
#include <optional>

#include "sorvane/archive/FileProviderRef.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::gltf2::Gltf;

namespace {
constexpr const char* kNull = "gltf is NULL";

std::optional<sorvane::gltf2::BufferViewTarget> targetOf(int32_t target) {
    if (target == 0) return std::nullopt;
    return sorvane::gltf2::int2BufferViewTarget(target);
}
} // namespace

extern "C" {

int32_t sorvane_gltf2_Gltf_create(sorvane_gltf2_Gltf** out, const char* path) {
    if (!out) return flat::fail("out is NULL");
    return flat::guard([&] { *out = Gltf::createPtr(std::filesystem::path(flat::str(path))); });
}

int32_t sorvane_gltf2_Gltf_load(sorvane_gltf2_Gltf** out, const char* path, bool readOnly) {
    if (!out) return flat::fail("out is NULL");
    return flat::guard([&] { *out = Gltf::loadPtr(std::filesystem::path(flat::str(path)), readOnly); });
}

int32_t sorvane_gltf2_Gltf_loadProvider(sorvane_gltf2_Gltf** out, sorvane_archive_FileProviderRef* provider,
                                        const char* name, int mode, bool readOnly) {
    if (!out) return flat::fail("out is NULL");
    if (!provider) return flat::fail("instancePtr_ is NULL");
    return flat::guard([&] {
        *out = Gltf::loadPtr(provider->get(), flat::str(name), sorvane::gltf2::int2StorageMode(mode), readOnly);
    });
}

int32_t sorvane_gltf2_Gltf_close(sorvane_gltf2_Gltf* self) {
    return flat::call(kNull, self, [](Gltf& gltf) { gltf.close(); });
}

int32_t sorvane_gltf2_Gltf_delete(sorvane_gltf2_Gltf* self) { return flat::destroy(kNull, self); }

int32_t sorvane_gltf2_Gltf_getFileProvider(sorvane_archive_FileProviderRef** out, sorvane_gltf2_Gltf* self) {
    return flat::get(out, kNull, self,
                     [](Gltf& gltf) { return new sorvane::archive::FileProviderRef(gltf.getFileProvider()); });
}

int32_t sorvane_gltf2_Gltf_getMainDir(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self) {
    return flat::text(out, outSize, kNull, self, [](Gltf& gltf) { return gltf.getMainDir(); });
}

int32_t sorvane_gltf2_Gltf_getMainFileName(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self) {
    return flat::text(out, outSize, kNull, self, [](Gltf& gltf) { return gltf.getMainFileName(); });
}

int32_t sorvane_gltf2_Gltf_toJsonString(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self) {
    return flat::text(out, outSize, kNull, self, [](Gltf& gltf) { return gltf.toJsonString(); });
}

int32_t sorvane_gltf2_Gltf_getAsset(sorvane_gltf2_Asset** out, sorvane_gltf2_Gltf* self) {
    return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.asset.getPtr(); });
}

#define SORVANE_GLTF2_ROOT_LIST(Name, member, List)                                                              \
    int32_t sorvane_gltf2_Gltf_get##Name(List** out, sorvane_gltf2_Gltf* self) {                                 \
        return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.member.getPtr(); });                     \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_has##Name(bool* out, sorvane_gltf2_Gltf* self) {                                  \
        return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.member.isPropertyPresent(); });          \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_remove##Name(sorvane_gltf2_Gltf* self) {                                          \
        return flat::call(kNull, self, [](Gltf& gltf) { gltf.member.removeProperty(); });                        \
    }

SORVANE_GLTF2_ROOT_LIST(Buffers, buffers, sorvane_gltf2_BufferList)
SORVANE_GLTF2_ROOT_LIST(BufferViews, bufferViews, sorvane_gltf2_BufferViewList)
SORVANE_GLTF2_ROOT_LIST(Accessors, accessors, sorvane_gltf2_AccessorList)
SORVANE_GLTF2_ROOT_LIST(Images, images, sorvane_gltf2_ImageList)
SORVANE_GLTF2_ROOT_LIST(Samplers, samplers, sorvane_gltf2_SamplerList)
SORVANE_GLTF2_ROOT_LIST(Textures, textures, sorvane_gltf2_TextureList)
SORVANE_GLTF2_ROOT_LIST(Materials, materials, sorvane_gltf2_MaterialList)
SORVANE_GLTF2_ROOT_LIST(Cameras, cameras, sorvane_gltf2_CameraList)
SORVANE_GLTF2_ROOT_LIST(Meshes, meshes, sorvane_gltf2_MeshList)
SORVANE_GLTF2_ROOT_LIST(Nodes, nodes, sorvane_gltf2_NodeList)
SORVANE_GLTF2_ROOT_LIST(Animations, animations, sorvane_gltf2_AnimationList)
SORVANE_GLTF2_ROOT_LIST(Skins, skins, sorvane_gltf2_SkinList)
SORVANE_GLTF2_ROOT_LIST(Scenes, scenes, sorvane_gltf2_SceneList)

int32_t sorvane_gltf2_Gltf_getNodeTypes(int32_t* out, int64_t outBytes, int64_t* pvalueCount,
                                        sorvane_gltf2_Gltf* self) {
    return flat::values(out, outBytes, pvalueCount, kNull, self, [](Gltf& gltf) { return gltf.getNodeTypes(); });
}

int32_t sorvane_gltf2_Gltf_getSceneName(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self) {
    return flat::text(out, outSize, kNull, self, [](Gltf& gltf) { return gltf.getSceneName(); });
}

int32_t sorvane_gltf2_Gltf_getFirstMesh(sorvane_gltf2_Mesh** out, sorvane_gltf2_Gltf* self) {
    return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.getFirstMeshPtr(); });
}

#define SORVANE_GLTF2_NAME_LIST(Name, member)                                                                    \
    int32_t sorvane_gltf2_Gltf_get##Name##Size(int64_t* out, sorvane_gltf2_Gltf* self) {                         \
        return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.member.size(); });                       \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_get##Name##Value(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self,          \
                                                int64_t index) {                                                 \
        return flat::text(out, outSize, kNull, self, [&](Gltf& gltf) { return gltf.member.get(index); });        \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_set##Name##Value(sorvane_gltf2_Gltf* self, int64_t index, const char* value) {   \
        return flat::call(kNull, self, [&](Gltf& gltf) { gltf.member.set(index, flat::str(value)); });           \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_add##Name##Value(sorvane_gltf2_Gltf* self, const char* value) {                   \
        return flat::call(kNull, self, [&](Gltf& gltf) { gltf.member.add(flat::str(value)); });                  \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_has##Name(bool* out, sorvane_gltf2_Gltf* self) {                                  \
        return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.member.isPropertyPresent(); });          \
    }                                                                                                            \
    int32_t sorvane_gltf2_Gltf_remove##Name(sorvane_gltf2_Gltf* self) {                                          \
        return flat::call(kNull, self, [](Gltf& gltf) { gltf.member.removeProperty(); });                        \
    }

SORVANE_GLTF2_NAME_LIST(ExtensionsUsed, extensionsUsed)
SORVANE_GLTF2_NAME_LIST(ExtensionsRequired, extensionsRequired)

int32_t sorvane_gltf2_Gltf_getScene(int64_t* out, sorvane_gltf2_Gltf* self) {
    return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.scene.get(); });
}

int32_t sorvane_gltf2_Gltf_setScene(sorvane_gltf2_Gltf* self, int64_t value) {
    return flat::call(kNull, self, [&](Gltf& gltf) { gltf.scene.set(value); });
}

int32_t sorvane_gltf2_Gltf_hasScene(bool* out, sorvane_gltf2_Gltf* self) {
    return flat::get(out, kNull, self, [](Gltf& gltf) { return gltf.scene.isPropertyPresent(); });
}

int32_t sorvane_gltf2_Gltf_removeScene(sorvane_gltf2_Gltf* self) {
    return flat::call(kNull, self, [](Gltf& gltf) { gltf.scene.removeProperty(); });
}

int32_t sorvane_gltf2_Accessor_getData(void* out, int64_t* outSize, sorvane_gltf2_Accessor* self) {
    if (!self) return flat::fail("accessor is NULL");
    if (!outSize) return flat::fail("outSize is NULL");
    return flat::guard([&] {
        const int64_t size = self->getDataSize();
        if (!out) {
            *outSize = size;
            return;
        }
        *outSize = self->getData(out, *outSize);
    });
}

int32_t sorvane_gltf2_AccessorList_addDense(sorvane_gltf2_Accessor** out, sorvane_gltf2_AccessorList* self,
                                           const void* data, int64_t count, int32_t componentType, const char* type,
                                           int32_t target, bool embedded, const char* name) {
    if (!self) return flat::fail("accessorList is NULL");
    if (!out) return flat::fail("out is NULL");
    if (!data) return flat::fail("data is NULL");
    return flat::guard([&] {
        const std::string typeText = flat::str(type);
        *out = self->addDensePtr(data, count, sorvane::gltf2::int2AccessorComponentType(componentType),
                                 typeText.c_str(), targetOf(target), embedded, name);
    });
}

int32_t sorvane_gltf2_BufferList_addData(sorvane_gltf2_Buffer** out, sorvane_gltf2_BufferList* self,
                                        const void* data, int64_t byteLength, const char* uri, const char* name) {
    if (!self) return flat::fail("bufferList is NULL");
    if (!out) return flat::fail("out is NULL");
    if (!data) return flat::fail("data is NULL");
    return flat::guard([&] { *out = self->addDataPtr(data, byteLength, uri, name); });
}

} // extern "C"
