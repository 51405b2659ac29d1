/* Flat C interface: glTF 2.0 documents. Included by sorvane/sorvane.h.
 *
 * A document handle comes from sorvane_gltf2_Gltf_create or
 * sorvane_gltf2_Gltf_load and is released with sorvane_gltf2_Gltf_delete.
 * The accessors it hands out are new objects owned by the caller and keep the
 * document alive on their own. A list handle taken while its list is absent
 * reads as empty and makes the list on its first add. */
#ifndef SORVANE_FLAT_SORVANE_GLTF2_H
#define SORVANE_FLAT_SORVANE_GLTF2_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_archive.h"
#include "sorvane/flat/sorvane_gltf2_generated.h"

#ifdef __cplusplus
namespace sorvane::gltf2 {
class Gltf;
}
typedef sorvane::gltf2::Gltf sorvane_gltf2_Gltf;
#else
typedef struct sorvane_gltf2_Gltf sorvane_gltf2_Gltf;
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* A new empty document at path: a text document .gltf or a binary one .glb (the extension decides, case counts). */
SORVANE_API int32_t sorvane_gltf2_Gltf_create(sorvane_gltf2_Gltf** out, const char* path);
/* Loads a .gltf or .glb document; with readOnly every change is refused. */
SORVANE_API int32_t sorvane_gltf2_Gltf_load(sorvane_gltf2_Gltf** out, const char* path, bool readOnly);
/* Loads the document name from provider; mode: 0 from the name's extension, 1 .gltf, 2 .glb. */
SORVANE_API int32_t sorvane_gltf2_Gltf_loadProvider(sorvane_gltf2_Gltf** out, sorvane_archive_FileProviderRef* provider,
                                                    const char* name, int mode, bool readOnly);
/* Closes the document's storage; the handle stays to be deleted. */
SORVANE_API int32_t sorvane_gltf2_Gltf_close(sorvane_gltf2_Gltf* self);
/* Releases the document handle; the document lives on while accessors of it do. */
SORVANE_API int32_t sorvane_gltf2_Gltf_delete(sorvane_gltf2_Gltf* self);
/* The storage of the document, as a new provider handle. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getFileProvider(sorvane_archive_FileProviderRef** out, sorvane_gltf2_Gltf* self);
/* The folder of the main file; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getMainDir(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self);
/* The name of the main file; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getMainFileName(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self);
/* The document as JSON text; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_toJsonString(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self);
/* The "asset" object, as a new handle. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getAsset(sorvane_gltf2_Asset** out, sorvane_gltf2_Gltf* self);

/* The root list "buffers", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getBuffers(sorvane_gltf2_BufferList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "buffers" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasBuffers(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "buffers". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeBuffers(sorvane_gltf2_Gltf* self);
/* The root list "bufferViews", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getBufferViews(sorvane_gltf2_BufferViewList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "bufferViews" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasBufferViews(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "bufferViews". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeBufferViews(sorvane_gltf2_Gltf* self);
/* The root list "accessors", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getAccessors(sorvane_gltf2_AccessorList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "accessors" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasAccessors(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "accessors". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeAccessors(sorvane_gltf2_Gltf* self);
/* The root list "images", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getImages(sorvane_gltf2_ImageList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "images" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasImages(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "images". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeImages(sorvane_gltf2_Gltf* self);
/* The root list "samplers", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getSamplers(sorvane_gltf2_SamplerList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "samplers" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasSamplers(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "samplers". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeSamplers(sorvane_gltf2_Gltf* self);
/* The root list "textures", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getTextures(sorvane_gltf2_TextureList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "textures" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasTextures(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "textures". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeTextures(sorvane_gltf2_Gltf* self);
/* The root list "materials", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getMaterials(sorvane_gltf2_MaterialList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "materials" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasMaterials(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "materials". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeMaterials(sorvane_gltf2_Gltf* self);
/* The root list "cameras", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getCameras(sorvane_gltf2_CameraList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "cameras" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasCameras(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "cameras". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeCameras(sorvane_gltf2_Gltf* self);
/* The root list "meshes", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getMeshes(sorvane_gltf2_MeshList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "meshes" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasMeshes(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "meshes". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeMeshes(sorvane_gltf2_Gltf* self);
/* The root list "nodes", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getNodes(sorvane_gltf2_NodeList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "nodes" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasNodes(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "nodes". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeNodes(sorvane_gltf2_Gltf* self);
/* The root list "animations", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getAnimations(sorvane_gltf2_AnimationList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "animations" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasAnimations(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "animations". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeAnimations(sorvane_gltf2_Gltf* self);
/* The root list "skins", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getSkins(sorvane_gltf2_SkinList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "skins" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasSkins(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "skins". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeSkins(sorvane_gltf2_Gltf* self);
/* The root list "scenes", as a new handle; it reads as empty while absent. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getScenes(sorvane_gltf2_SceneList** out, sorvane_gltf2_Gltf* self);
/* Whether the root list "scenes" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasScenes(bool* out, sorvane_gltf2_Gltf* self);
/* Removes the root list "scenes". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeScenes(sorvane_gltf2_Gltf* self);
/* Per node 2 joint, 1 mesh node (a mesh at or below it), 0 other; array size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getNodeTypes(int32_t* out, int64_t outBytes, int64_t* pvalueCount,
                                                    sorvane_gltf2_Gltf* self);
/* The name of the default scene; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getSceneName(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self);
/* The first mesh depth first from the default scene; an accessor with no node when there is none. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getFirstMesh(sorvane_gltf2_Mesh** out, sorvane_gltf2_Gltf* self);

/* The number of names in "extensionsUsed". */
SORVANE_API int32_t sorvane_gltf2_Gltf_getExtensionsUsedSize(int64_t* out, sorvane_gltf2_Gltf* self);
/* The name in "extensionsUsed" at index; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getExtensionsUsedValue(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self,
                                                             int64_t index);
/* Replaces the name in "extensionsUsed" at index. */
SORVANE_API int32_t sorvane_gltf2_Gltf_setExtensionsUsedValue(sorvane_gltf2_Gltf* self, int64_t index, const char* value);
/* Appends a name to "extensionsUsed". */
SORVANE_API int32_t sorvane_gltf2_Gltf_addExtensionsUsedValue(sorvane_gltf2_Gltf* self, const char* value);
/* Whether "extensionsUsed" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasExtensionsUsed(bool* out, sorvane_gltf2_Gltf* self);
/* Removes "extensionsUsed". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeExtensionsUsed(sorvane_gltf2_Gltf* self);
/* The number of names in "extensionsRequired". */
SORVANE_API int32_t sorvane_gltf2_Gltf_getExtensionsRequiredSize(int64_t* out, sorvane_gltf2_Gltf* self);
/* The name in "extensionsRequired" at index; text size protocol. */
SORVANE_API int32_t sorvane_gltf2_Gltf_getExtensionsRequiredValue(char* out, int64_t* outSize, sorvane_gltf2_Gltf* self,
                                                                 int64_t index);
/* Replaces the name in "extensionsRequired" at index. */
SORVANE_API int32_t sorvane_gltf2_Gltf_setExtensionsRequiredValue(sorvane_gltf2_Gltf* self, int64_t index,
                                                                 const char* value);
/* Appends a name to "extensionsRequired". */
SORVANE_API int32_t sorvane_gltf2_Gltf_addExtensionsRequiredValue(sorvane_gltf2_Gltf* self, const char* value);
/* Whether "extensionsRequired" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasExtensionsRequired(bool* out, sorvane_gltf2_Gltf* self);
/* Removes "extensionsRequired". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeExtensionsRequired(sorvane_gltf2_Gltf* self);

/* The default scene index "scene". */
SORVANE_API int32_t sorvane_gltf2_Gltf_getScene(int64_t* out, sorvane_gltf2_Gltf* self);
/* Sets the default scene index "scene". */
SORVANE_API int32_t sorvane_gltf2_Gltf_setScene(sorvane_gltf2_Gltf* self, int64_t value);
/* Whether "scene" is present. */
SORVANE_API int32_t sorvane_gltf2_Gltf_hasScene(bool* out, sorvane_gltf2_Gltf* self);
/* Removes "scene". */
SORVANE_API int32_t sorvane_gltf2_Gltf_removeScene(sorvane_gltf2_Gltf* self);

/* The accessor's elements as packed bytes; value size protocol in bytes (a null out gives the size). */
SORVANE_API int32_t sorvane_gltf2_Accessor_getData(void* out, int64_t* outSize, sorvane_gltf2_Accessor* self);
/* Adds count elements of data as a new accessor; arguments after self: data, count, componentType (5120 ... 5126),
 * type ("SCALAR" ... "MAT4"), target (0 for none), embedded, name. */
SORVANE_API int32_t sorvane_gltf2_AccessorList_addDense(sorvane_gltf2_Accessor** out, sorvane_gltf2_AccessorList* self,
                                                       const void* data, int64_t count, int32_t componentType,
                                                       const char* type, int32_t target, bool embedded,
                                                       const char* name);
/* Adds a buffer of byteLength bytes of data, stored under uri; arguments after self: data, byteLength, uri, name. */
SORVANE_API int32_t sorvane_gltf2_BufferList_addData(sorvane_gltf2_Buffer** out, sorvane_gltf2_BufferList* self,
                                                    const void* data, int64_t byteLength, const char* uri,
                                                    const char* name);

#ifdef __cplusplus
}
#endif

#endif
