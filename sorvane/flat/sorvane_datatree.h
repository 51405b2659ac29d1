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

/* A deep copy of the tree, a new handle. */
SORVANE_API int32_t sorvane_datatree_DataTree_copy(DataTree** out, const DataTree* dataTree);
/* Releases the tree. */
SORVANE_API int32_t sorvane_datatree_DataTree_delete(DataTree* dataTree);
/* The kind of the value (DataTreeType). */
SORVANE_API int32_t sorvane_datatree_DataTree_getType(sorvane_DataTreeType* out, const DataTree* dataTree);
/* Whether both trees hold equal values. */
SORVANE_API int32_t sorvane_datatree_DataTree_equals(bool* out, const DataTree* dataTree, const DataTree* other);
/* The tree as JSON text, for display; text size protocol. */
SORVANE_API int32_t sorvane_datatree_DataTree_repr(char* out, int64_t* outSize, const DataTree* dataTree);
/* The tree as JSON text; text size protocol. */
SORVANE_API int32_t sorvane_datatree_DataTree_toJsonString(char* out, int64_t* outSize, const DataTree* dataTree);

/* A new null value. */
SORVANE_API int32_t sorvane_datatree_DataTree_createNull(DataTree** out);
/* A new empty object. */
SORVANE_API int32_t sorvane_datatree_DataTree_createObject(DataTree** out);
/* A new empty list. */
SORVANE_API int32_t sorvane_datatree_DataTree_createList(DataTree** out);
/* A new integer value. */
SORVANE_API int32_t sorvane_datatree_DataTree_createInteger(DataTree** out, int64_t value);
/* A new floating value. */
SORVANE_API int32_t sorvane_datatree_DataTree_createFloat(DataTree** out, double value);
/* A new text value. */
SORVANE_API int32_t sorvane_datatree_DataTree_createString(DataTree** out, const char* value);
/* Copies count elements; dataSize is the byte size of data. */
SORVANE_API int32_t sorvane_datatree_DataTree_createArray(DataTree** out, const void* data, int64_t dataSize,
                                                          int64_t count, sorvane_ScalarType type);
/* Copies the bytes; null data gives a default tensor (sizes [1], type 0). */
SORVANE_API int32_t sorvane_datatree_DataTree_createTensor(DataTree** out, const void* data, int64_t dataSize,
                                                           const int64_t* sizes, int64_t dimCount,
                                                           sorvane_ScalarType type);

/* Whether the value is null. */
SORVANE_API int32_t sorvane_datatree_DataTree_isNull(bool* out, const DataTree* dataTree);
/* Whether the value is an integer. */
SORVANE_API int32_t sorvane_datatree_DataTree_isInteger(bool* out, const DataTree* dataTree);
/* Whether the value is a floating number. */
SORVANE_API int32_t sorvane_datatree_DataTree_isFloat(bool* out, const DataTree* dataTree);
/* Whether the value is a text. */
SORVANE_API int32_t sorvane_datatree_DataTree_isString(bool* out, const DataTree* dataTree);
/* Whether the value is an object. */
SORVANE_API int32_t sorvane_datatree_DataTree_isObject(bool* out, const DataTree* dataTree);
/* Whether the value is an array. */
SORVANE_API int32_t sorvane_datatree_DataTree_isArray(bool* out, const DataTree* dataTree);
/* Whether the value is a tensor. */
SORVANE_API int32_t sorvane_datatree_DataTree_isTensor(bool* out, const DataTree* dataTree);
/* Whether the value is a list. */
SORVANE_API int32_t sorvane_datatree_DataTree_isList(bool* out, const DataTree* dataTree);

/* The integer value. */
SORVANE_API int32_t sorvane_datatree_DataTree_getInteger(int64_t* out, const DataTree* dataTree);
/* The floating value. */
SORVANE_API int32_t sorvane_datatree_DataTree_getFloat(double* out, const DataTree* dataTree);
/* Makes the value this integer. */
SORVANE_API int32_t sorvane_datatree_DataTree_setInteger(DataTree* dataTree, int64_t value);
/* Makes the value this floating number. */
SORVANE_API int32_t sorvane_datatree_DataTree_setFloat(DataTree* dataTree, double value);
/* Makes the value this text. */
SORVANE_API int32_t sorvane_datatree_DataTree_setString(DataTree* dataTree, const char* value);
/* The text value; text size protocol. */
SORVANE_API int32_t sorvane_datatree_DataTree_getString(char* out, int64_t* outSize, const DataTree* dataTree);

/* The element type of an array or tensor (ScalarType). */
SORVANE_API int32_t sorvane_datatree_DataTree_getScalarType(sorvane_ScalarType* out, const DataTree* dataTree);
/* The node's own block, not a copy: valid until the value changes. */
SORVANE_API int32_t sorvane_datatree_DataTree_getBuffer(void** out, const DataTree* dataTree);
/* The number of elements of an array or tensor. */
SORVANE_API int32_t sorvane_datatree_DataTree_getValueCount(int64_t* out, const DataTree* dataTree);
/* A copy of the elements of an array or tensor; value size protocol, in bytes. */
SORVANE_API int32_t sorvane_datatree_DataTree_getValues(void* out, int64_t* outSize, const DataTree* dataTree);
/* The number of items of a list or object, or elements of an array. */
SORVANE_API int32_t sorvane_datatree_DataTree_getSize(int64_t* out, const DataTree* dataTree);
/* The tensor's number of dimensions. */
SORVANE_API int32_t sorvane_datatree_DataTree_getTensorDim(int64_t* out, const DataTree* dataTree);
/* The size of dimension dim of the tensor. */
SORVANE_API int32_t sorvane_datatree_DataTree_getTensorSize(int64_t* out, const DataTree* dataTree, int64_t dim);
/* Stores the dimension in *pvalueCount; copies the sizes when outSize (bytes)
 * holds them; null out returns 0, a too small buffer -1 with no message. Array size protocol (count in values, capacity in bytes). */
SORVANE_API int32_t sorvane_datatree_DataTree_getTensorSizes(int64_t* out, int64_t outSize, int64_t* pvalueCount,
                                                             const DataTree* dataTree);
/* Makes the value a tensor of the given sizes and type, copying dataSize bytes of data. */
SORVANE_API int32_t sorvane_datatree_DataTree_setTensorData(DataTree* dataTree, const void* data, int64_t dataSize,
                                                            const int64_t* sizes, int64_t dimCount,
                                                            sorvane_ScalarType type);

/* Whether the object has an item named name. */
SORVANE_API int32_t sorvane_datatree_DataTree_hasItem(bool* out, const DataTree* dataTree, const char* name);
/* A copy of the item named name, a new handle. */
SORVANE_API int32_t sorvane_datatree_DataTree_getObjectItem(DataTree** out, const DataTree* dataTree,
                                                            const char* name);
/* The integer item named name. */
SORVANE_API int32_t sorvane_datatree_DataTree_getObjectItemInteger(int64_t* out, const DataTree* dataTree,
                                                                   const char* name);
/* The text item named name; text size protocol. */
SORVANE_API int32_t sorvane_datatree_DataTree_getObjectItemString(char* out, int64_t* outSize,
                                                                  const DataTree* dataTree, const char* name);
/* Stores a copy of item under name. */
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItem(DataTree* dataTree, const char* name,
                                                            const DataTree* item);
/* Stores an integer under name. */
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItemInteger(DataTree* dataTree, const char* name,
                                                                   int64_t value);
/* Stores a text under name. */
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItemString(DataTree* dataTree, const char* name,
                                                                  const char* value);
/* Stores a new tensor under name, copying dataSize bytes of data. */
SORVANE_API int32_t sorvane_datatree_DataTree_setObjectItemTensor(DataTree* dataTree, const char* name,
                                                                  const void* data, int64_t dataSize,
                                                                  const int64_t* sizes, int64_t dimCount,
                                                                  sorvane_ScalarType type);

/* A copy of the list item at index, a new handle. */
SORVANE_API int32_t sorvane_datatree_DataTree_getListItem(DataTree** out, const DataTree* dataTree, int64_t index);
/* The integer list item at index. */
SORVANE_API int32_t sorvane_datatree_DataTree_getListItemInteger(int64_t* out, const DataTree* dataTree,
                                                                 int64_t index);
/* The text list item at index; text size protocol. */
SORVANE_API int32_t sorvane_datatree_DataTree_getListItemString(char* out, int64_t* outSize,
                                                                const DataTree* dataTree, int64_t index);
/* Appends a copy of item to the list. */
SORVANE_API int32_t sorvane_datatree_DataTree_addListItem(DataTree* dataTree, const DataTree* item);
/* Replaces the list item at index with a copy of item. */
SORVANE_API int32_t sorvane_datatree_DataTree_setListItem(DataTree* dataTree, int64_t index, const DataTree* item);
/* Replaces the list item at index with an integer. */
SORVANE_API int32_t sorvane_datatree_DataTree_setListItemInteger(DataTree* dataTree, int64_t index, int64_t value);
/* Replaces the list item at index with a text. */
SORVANE_API int32_t sorvane_datatree_DataTree_setListItemString(DataTree* dataTree, int64_t index,
                                                                const char* value);

/* A new handle, or null with the error slot set. */
SORVANE_API DataTree* sorvane_loadDataTree(const char* path);
/* Writes the tree as JSON to path. */
SORVANE_API int32_t sorvane_saveDataTree(const char* path, const DataTree* dataTree);

#ifdef __cplusplus
}
#endif

#endif
