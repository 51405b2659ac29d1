/* Flat C interface: datatree. Included by sorvane/sorvane.h.
 *
 * A DataTree* is a handle on a value; the value may be shared with other
 * handles (copy, getListItem and getObjectItem share, they do not copy).
 * Every handle handed out is released with sorvane_datatree_DataTree_delete.
 * Text results use the text size protocol (a capacity equal to the length is
 * too small); getValues uses the value protocol (a capacity equal to the byte
 * size is enough). */
#ifndef SORVANE_FLAT_SORVANE_DATATREE_H
#define SORVANE_FLAT_SORVANE_DATATREE_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "sorvane/core/Export.h"

#ifdef __cplusplus
namespace sorvane {
class DataTree;
}
typedef ::sorvane::DataTree DataTree;
#else
typedef struct DataTree DataTree;
#endif

/* ScalarType: 1 Boolean, 2 UInteger8, 3 Integer8, 4 UInteger16, 5 Integer16,
 * 6 UInteger32, 7 Integer32, 8 UInteger64, 9 Integer64, 10 Float, 11 Double. */
typedef int32_t sorvane_ScalarType;
/* DataTreeType: 0 Null, 1 String, 2 Integer, 3 Float, 4 Boolean, 5 Array,
 * 6 Tensor, 7 Object, 8 List. */
typedef int32_t sorvane_DataTreeType;

#ifdef __cplusplus
extern "C" {
#endif

SORVANE_API int32_t sorvane_datatree_DataTree_copy(DataTree** out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_delete(DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getType(sorvane_DataTreeType* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_equals(bool* out, const DataTree* dataTree, const DataTree* other);
SORVANE_API int32_t sorvane_datatree_DataTree_repr(char* out, int64_t* outSize, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_toJsonString(char* out, int64_t* outSize, const DataTree* dataTree);

SORVANE_API int32_t sorvane_datatree_DataTree_createNull(DataTree** out);
SORVANE_API int32_t sorvane_datatree_DataTree_createObject(DataTree** out);
SORVANE_API int32_t sorvane_datatree_DataTree_createList(DataTree** out);
SORVANE_API int32_t sorvane_datatree_DataTree_createInteger(DataTree** out, int64_t value);
SORVANE_API int32_t sorvane_datatree_DataTree_createFloat(DataTree** out, double value);
SORVANE_API int32_t sorvane_datatree_DataTree_createString(DataTree** out, const char* value);
/* Copies count elements; dataSize is the byte size of data. */
SORVANE_API int32_t sorvane_datatree_DataTree_createArray(DataTree** out, const void* data, int64_t dataSize,
                                                          int64_t count, sorvane_ScalarType type);
/* Copies the bytes; null data gives a default tensor (sizes [1], type 0). */
SORVANE_API int32_t sorvane_datatree_DataTree_createTensor(DataTree** out, const void* data, int64_t dataSize,
                                                           const int64_t* sizes, int64_t dimCount,
                                                           sorvane_ScalarType type);

SORVANE_API int32_t sorvane_datatree_DataTree_isNull(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isInteger(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isFloat(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isString(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isObject(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isArray(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isTensor(bool* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_isList(bool* out, const DataTree* dataTree);

SORVANE_API int32_t sorvane_datatree_DataTree_getInteger(int64_t* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getFloat(double* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_setInteger(DataTree* dataTree, int64_t value);
SORVANE_API int32_t sorvane_datatree_DataTree_setFloat(DataTree* dataTree, double value);
SORVANE_API int32_t sorvane_datatree_DataTree_setString(DataTree* dataTree, const char* value);
SORVANE_API int32_t sorvane_datatree_DataTree_getString(char* out, int64_t* outSize, const DataTree* dataTree);

SORVANE_API int32_t sorvane_datatree_DataTree_getScalarType(sorvane_ScalarType* out, const DataTree* dataTree);
/* The node's own block, not a copy: valid until the value changes. */
SORVANE_API int32_t sorvane_datatree_DataTree_getBuffer(void** out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getValueCount(int64_t* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getValues(void* out, int64_t* outSize, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getSize(int64_t* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getTensorDim(int64_t* out, const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_getTensorSize(int64_t* out, const DataTree* dataTree, int64_t dim);
/* Stores the dimension in *pvalueCount; copies the sizes when outSize (bytes)
 * holds them; null out returns 0, a too small buffer -1 with no message. */
SORVANE_API int32_t sorvane_datatree_DataTree_getTensorSizes(int64_t* out, int64_t outSize, int64_t* pvalueCount,
                                                             const DataTree* dataTree);
SORVANE_API int32_t sorvane_datatree_DataTree_setTensorData(DataTree* dataTree, const void* data, int64_t dataSize,
                                                            const int64_t* sizes, int64_t dimCount,
                                                            sorvane_ScalarType type);

SORVANE_API int32_t sorvane_datatree_DataTree_hasItem(bool* out, const DataTree* dataTree, const char* name);
SORVANE_API int32_t sorvane_datatree_DataTree_getObjectItem(DataTree** out, const DataTree* dataTree,
                                                            const char* name);
SORVANE_API int32_t sorvane_datatree_DataTree_getObjectItemInteger(int64_t* out, const DataTree* dataTree,
                                                                   const char* name);
SORVANE_API int32_t sorvane_datatree_DataTree_getObjectItemString(char* out, int64_t* outSize,
                                                                  const DataTree* dataTree, const char* name);
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItem(DataTree* dataTree, const char* name,
                                                            const DataTree* item);
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItemInteger(DataTree* dataTree, const char* name,
                                                                   int64_t value);
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItemString(DataTree* dataTree, const char* name,
                                                                  const char* value);
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItemTensor(DataTree* dataTree, const char* name,
                                                                  const void* data, int64_t dataSize,
                                                                  const int64_t* sizes, int64_t dimCount,
                                                                  sorvane_ScalarType type);

SORVANE_API int32_t sorvane_datatree_DataTree_getListItem(DataTree** out, const DataTree* dataTree, int64_t index);
SORVANE_API int32_t sorvane_datatree_DataTree_getListItemInteger(int64_t* out, const DataTree* dataTree,
                                                                 int64_t index);
SORVANE_API int32_t sorvane_datatree_DataTree_getListItemString(char* out, int64_t* outSize,
                                                                const DataTree* dataTree, int64_t index);
SORVANE_API int32_t sorvane_datatree_DataTree_addListItem(DataTree* dataTree, const DataTree* item);
SORVANE_API int32_t sorvane_datatree_DataTree_setListItem(DataTree* dataTree, int64_t index, const DataTree* item);
SORVANE_API int32_t sorvane_datatree_DataTree_setListItemInteger(DataTree* dataTree, int64_t index, int64_t value);
SORVANE_API int32_t sorvane_datatree_DataTree_setListItemString(DataTree* dataTree, int64_t index,
                                                                const char* value);

/* A new handle, or null with the error slot set. */
SORVANE_API DataTree* sorvane_loadDataTree(const char* path);
SORVANE_API int32_t sorvane_saveDataTree(const char* path, const DataTree* dataTree);

#ifdef __cplusplus
}
#endif

#endif
