/* Flat C interface: payloads of ARF data items. Included by
 * sorvane/flat/sorvane_arf.h.
 *
 * dtype and itype are the glTF component type numbers (5120 BYTE, 5121
 * UNSIGNED_BYTE, 5122 SHORT, 5123 UNSIGNED_SHORT, 5125 UNSIGNED_INT, 5126
 * FLOAT; itype 0 picks the smallest unsigned type). A null uri or name lets
 * the document choose; with autoId true the id argument is ignored. */
#ifndef SORVANE_FLAT_SORVANE_ARF_DATA_H
#define SORVANE_FLAT_SORVANE_ARF_DATA_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"
#include "sorvane/flat/sorvane_arf_generated.h"
#include "sorvane/flat/sorvane_datatree.h"
#include "sorvane/flat/sorvane_gltf2.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of the payload. */
SORVANE_API int32_t sorvane_arf_Data_getDataSize(int64_t* out, sorvane_arf_Data* self);
/* Copies the payload into buffer (capacity bufferSize) and sets *out to its
 * size; with a null buffer only the size is set. */
SORVANE_API int32_t sorvane_arf_Data_getData(int64_t* out, void* buffer, int64_t bufferSize, sorvane_arf_Data* self);
/* The decoded dense or sparse payload as a new DataTree tensor. */
SORVANE_API int32_t sorvane_arf_Data_getTensorPtr(DataTree** out, sorvane_arf_Data* self);
/* Decodes into buffer; with a null buffer only *pdtype, *pdimCount and
 * dims (up to dimsCapacity values) are set, and *out is the byte size. */
SORVANE_API int32_t sorvane_arf_Data_getTensorData(int64_t* out, int32_t* pdtype, int64_t* dims, int64_t dimsCapacity,
                                                   int64_t* pdimCount, void* buffer, int64_t bufferSize,
                                                   sorvane_arf_Data* self);
/* The compact form of a matrix payload: for each row its K largest values
 * and their columns (Integer64), K clamped to [minCols, maxCols]; two new
 * DataTree tensors. */
SORVANE_API int32_t sorvane_arf_Data_getColSparseTensorPtr(DataTree** values, DataTree** indices,
                                                           sorvane_arf_Data* self, int64_t minCols, int64_t maxCols,
                                                           bool normalize);

/* Adds a dense payload of size bytes of buffer; arguments after self: buffer, size, dtype, dims, dimCount, embedded, uri, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addDense(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                  const void* buffer, int64_t size, int32_t dtype,
                                                  const int64_t* dims, int64_t dimCount, bool embedded,
                                                  const char* uri, const char* name, bool autoId, int64_t id);
/* Adds a dense payload from a DataTree tensor; arguments after self: tensor, embedded, uri, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addDenseTensor(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                        DataTree* tensor, bool embedded, const char* uri,
                                                        const char* name, bool autoId, int64_t id);
/* Adds a sparse payload from its indices and values; arguments after self: indices, indicesSize, itype, values, valuesSize, dtype, dims, dimCount, count, embedded, uri, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addSparse(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                   const void* indices, int64_t indicesSize, int32_t itype,
                                                   const void* values, int64_t valuesSize, int32_t dtype,
                                                   const int64_t* dims, int64_t dimCount, int64_t count,
                                                   bool embedded, const char* uri, const char* name, bool autoId,
                                                   int64_t id);
/* Adds a sparse payload of the non-zero values of a dense buffer; arguments after self: buffer, valueCount, dtype, dims, dimCount, itype, embedded, uri, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addSparseFromDense(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                            const void* buffer, int64_t valueCount, int32_t dtype,
                                                            const int64_t* dims, int64_t dimCount, int32_t itype,
                                                            bool embedded, const char* uri, const char* name,
                                                            bool autoId, int64_t id);
/* Adds a sparse payload of the non-zero values of a DataTree tensor; arguments after self: tensor, itype, embedded, uri, name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addSparseTensor(sorvane_arf_Data** out, sorvane_arf_DataList* self,
                                                         DataTree* tensor, int32_t itype, bool embedded,
                                                         const char* uri, const char* name, bool autoId, int64_t id);
/* Opens a binary glTF item ("model/gltf-binary") as a new document; readOnly
 * is handed to the load. */
SORVANE_API int32_t sorvane_arf_Data_getGltf(sorvane_gltf2_Gltf** out, sorvane_arf_Data* self, bool readOnly);
/* A binary glTF item: a copy of the file at localFile stored under uri; arguments after self: uri, localFile,
 * name, autoId, id. */
SORVANE_API int32_t sorvane_arf_DataList_addGlb(sorvane_arf_Data** out, sorvane_arf_DataList* self, const char* uri,
                                                const char* localFile, const char* name, bool autoId, int64_t id);

#ifdef __cplusplus
}
#endif

#endif
