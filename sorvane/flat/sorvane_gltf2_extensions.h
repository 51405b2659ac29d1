/* Flat C interface, extensions: calls beyond the accessor families that a C
 * caller needs to finish a glTF job without C++ (saving, binary data in and
 * out, removing records, glb payloads from a document). Included by
 * sorvane/sorvane.h.
 *
 * target: 0 for none, 34962 ARRAY_BUFFER, 34963 ELEMENT_ARRAY_BUFFER.
 * Byte reads follow the value size protocol: *outSize below the size gives
 * -1 with *outSize set to it; a capacity equal to the size is enough. */
#ifndef SORVANE_FLAT_SORVANE_GLTF2_EXTENSIONS_H
#define SORVANE_FLAT_SORVANE_GLTF2_EXTENSIONS_H

#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_arf.h"
#include "sorvane/flat/sorvane_datatree.h"
#include "sorvane/flat/sorvane_gltf2.h"
#include "sorvane/flat/sorvane_gltf2_extensions_generated.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes the document where it was created or loaded from; a document loaded
 * read-only is refused ("Saving %s: Forbidden, read-only document"). */
SORVANE_API int32_t sorvane_gltf2_Gltf_save(sorvane_gltf2_Gltf* self);
/* Writes a copy at path in the form its extension names (.gltf with one .bin
 * beside it, .glb), every buffer packed into one and the views rebased; self
 * stays attached to its own storage. */
SORVANE_API int32_t sorvane_gltf2_Gltf_saveAs(sorvane_gltf2_Gltf* self, const char* path);

/* The bytes of a buffer; value size protocol, in bytes. */
SORVANE_API int32_t sorvane_gltf2_Buffer_getBytes(void* out, int64_t* outSize, sorvane_gltf2_Buffer* self);
/* The bytes of a view (its byteOffset and byteLength applied); value size protocol, in bytes. */
SORVANE_API int32_t sorvane_gltf2_BufferView_getBytes(void* out, int64_t* outSize, sorvane_gltf2_BufferView* self);
/* Copies the buffer into target with a new file for its bytes; *out is its index there. */
SORVANE_API int32_t sorvane_gltf2_Buffer_clone(int64_t* out, sorvane_gltf2_Buffer* self, sorvane_gltf2_Gltf* target);
/* Copies the view and its bytes into target; *out is its index there. */
SORVANE_API int32_t sorvane_gltf2_BufferView_clone(int64_t* out, sorvane_gltf2_BufferView* self,
                                                   sorvane_gltf2_Gltf* target);
/* Copies the accessor, its view and bytes into target; *out is its index there. */
SORVANE_API int32_t sorvane_gltf2_Accessor_clone(int64_t* out, sorvane_gltf2_Accessor* self,
                                                 sorvane_gltf2_Gltf* target);

/* The shape of the accessor's tensor ([count] for SCALAR, [count, 3] for VEC3,
 * [count, 3, 3] for MAT3), under the array size protocol. */
SORVANE_API int32_t sorvane_gltf2_Accessor_getDims(int64_t* out, int64_t outBytes, int64_t* pvalueCount,
                                                   sorvane_gltf2_Accessor* self);
/* The accessor's elements as a new DataTree tensor shaped as getDims says. */
SORVANE_API int32_t sorvane_gltf2_Accessor_getTensor(DataTree** out, sorvane_gltf2_Accessor* self);
/* The same values as a new DataTree array of count rows. */
SORVANE_API int32_t sorvane_gltf2_Accessor_getDataArray(DataTree** out, sorvane_gltf2_Accessor* self);
/* Every accessor of the list as a new DataTree tensor, in order, under the
 * array size protocol (out holds DataTree handles; a null out asks for the
 * count and reads nothing). Faster than a getTensor per accessor when every
 * tensor is kept; small tensors share blocks, so a tensor kept keeps its block. */
SORVANE_API int32_t sorvane_gltf2_AccessorList_getTensors(DataTree** out, int64_t outBytes, int64_t* pvalueCount,
                                                          sorvane_gltf2_AccessorList* self);

/* A view over a range of an existing buffer; arguments after self: buffer,
 * target, byteLength, byteOffset, name (null for none). */
SORVANE_API int32_t sorvane_gltf2_BufferViewList_addBuffer(sorvane_gltf2_BufferView** out,
                                                           sorvane_gltf2_BufferViewList* self, int64_t buffer,
                                                           int32_t target, int64_t byteLength, int64_t byteOffset,
                                                           const char* name);
/* A view over new bytes (valueCount values of valueSize bytes) appended to the
 * document's shared buffer; arguments after self: data, dataSize, valueCount,
 * valueSize, target, embedded, name. */
SORVANE_API int32_t sorvane_gltf2_BufferViewList_addData(sorvane_gltf2_BufferView** out,
                                                         sorvane_gltf2_BufferViewList* self, const void* data,
                                                         int64_t dataSize, int64_t valueCount, int64_t valueSize,
                                                         int32_t target, bool embedded, const char* name);
/* An accessor over a DataTree tensor ([n], [n, k], [n, 4, 4] ...); arguments
 * after self: tensor, target, embedded, name. */
SORVANE_API int32_t sorvane_gltf2_AccessorList_addTensor(sorvane_gltf2_Accessor** out,
                                                         sorvane_gltf2_AccessorList* self, DataTree* tensor,
                                                         int32_t target, bool embedded, const char* name);

/* Derived mesh reads. A selection lists target positions; a null selection
 * takes every target, an empty or bad one fails ("Selection is empty",
 * "Invalid index %ld in selection"). Targets without the key give zero blocks. */

/* The morph stack of key ("POSITION", ...) as a new DataTree tensor [targets, count, components]. */
SORVANE_API int32_t sorvane_gltf2_Primitive_getTargetsTensor(DataTree** out, sorvane_gltf2_Primitive* self,
                                                             const char* key, const int64_t* selection,
                                                             int64_t selectionCount);
/* The same stack as packed bytes; value size protocol, in bytes (a null out gives the size). */
SORVANE_API int32_t sorvane_gltf2_Primitive_getTargetsData(void* out, int64_t* outSize, sorvane_gltf2_Primitive* self,
                                                           const char* key, const int64_t* selection,
                                                           int64_t selectionCount);
/* The stack's shape {targets, count, components}; array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_gltf2_Primitive_getTargetsDataLayout(int64_t* out, int64_t outBytes,
                                                                 int64_t* pvalueCount, sorvane_gltf2_Primitive* self,
                                                                 const char* key, const int64_t* selection,
                                                                 int64_t selectionCount);
/* The component type (5120 ... 5126) of the stack of key. */
SORVANE_API int32_t sorvane_gltf2_Primitive_getTargetsComponentType(int32_t* out, sorvane_gltf2_Primitive* self,
                                                                    const char* key);
/* The position of the first target that has key, or -1. */
SORVANE_API int32_t sorvane_gltf2_Primitive_getTargetsFirstdWith(int64_t* out, sorvane_gltf2_Primitive* self,
                                                                 const char* key);
/* Every vertex's jointCount strongest influences over all JOINTS_n/WEIGHTS_n sets, weights renormalised, as
 * two new DataTree tensors (joints, weights); a vertexCount below 0 takes the first set's count. */
SORVANE_API int32_t sorvane_gltf2_Primitive_getJointsTensor(DataTree** joints, DataTree** weights,
                                                            sorvane_gltf2_Primitive* self, int64_t vertexCount,
                                                            int64_t jointCount);
/* The vertex and joint counts the joints reads give for these arguments. */
SORVANE_API int32_t sorvane_gltf2_Primitive_getJointsDataLayout(int64_t* vertexCountOut, int64_t* jointCountOut,
                                                                sorvane_gltf2_Primitive* self, int64_t vertexCount,
                                                                int64_t jointCount);
/* The same influences as one byte per joint index and one float per weight; capacity protocol: with both
 * buffers null only *out (vertices times joints) is set, else each must hold *out values. */
SORVANE_API int32_t sorvane_gltf2_Primitive_getJointsData(int64_t* out, uint8_t* joints, int64_t jointsBytes,
                                                          float* weights, int64_t weightsBytes,
                                                          sorvane_gltf2_Primitive* self, int64_t vertexCount,
                                                          int64_t jointCount);
/* A mesh of one primitive as a new DataTree object {"vertices", "faces"}. */
SORVANE_API int32_t sorvane_gltf2_Mesh_getDataTree(DataTree** out, sorvane_gltf2_Mesh* self);

/* A binary glTF item holding the document (which must be a .glb), saved under
 * uri; arguments after self: uri, gltf, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addGlbDocument(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                        const char* uri, sorvane_gltf2_Gltf* gltf, const char* name,
                                                        bool autoId, int64_t id);

#ifdef __cplusplus
}
#endif

#endif
