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

/* Writes the document where it was created or loaded from. */
SORVANE_API int32_t sorvane_gltf2_Gltf_save(sorvane_gltf2_Gltf* self);
/* Writes a copy at path in the form its extension names (.gltf with one .bin
 * beside it, .glb), every buffer packed into one and the views rebased; self
 * stays attached to its own storage. */
SORVANE_API int32_t sorvane_gltf2_Gltf_saveAs(sorvane_gltf2_Gltf* self, const char* path);

/* The bytes of a buffer, of a view (its byteOffset and byteLength applied). */
SORVANE_API int32_t sorvane_gltf2_Buffer_getBytes(void* out, int64_t* outSize, sorvane_gltf2_Buffer* self);
SORVANE_API int32_t sorvane_gltf2_BufferView_getBytes(void* out, int64_t* outSize, sorvane_gltf2_BufferView* self);
/* Copies the item into target with a new file for its bytes; *out is its index there. */
SORVANE_API int32_t sorvane_gltf2_Buffer_clone(int64_t* out, sorvane_gltf2_Buffer* self, sorvane_gltf2_Gltf* target);
SORVANE_API int32_t sorvane_gltf2_BufferView_clone(int64_t* out, sorvane_gltf2_BufferView* self,
                                                   sorvane_gltf2_Gltf* target);
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

/* A binary glTF item holding the document (which must be a .glb), saved under
 * uri; arguments after self: uri, gltf, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addGlbDocument(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                        const char* uri, sorvane_gltf2_Gltf* gltf, const char* name,
                                                        bool autoId, int64_t id);

#ifdef __cplusplus
}
#endif

#endif
