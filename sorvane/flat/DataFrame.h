#ifndef SORVANE_FLAT_DATAFRAME_H
#define SORVANE_FLAT_DATAFRAME_H

// The payload reads of data items in the flat frame, shared by the item's own
// functions and by those that read through a reference to an item.

#include <cstdint>
#include <memory>
#include <vector>

#include "sorvane/arf/node/data/DataDType.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/Frame.h"

namespace sorvane::flat {

// A decoded tensor: with a null buffer only *pdtype, *pdimCount and up to
// dimsCapacity dimensions are set, and *out is the byte size. `read(self,
// sizes, dtype)` runs the C++ getTensorData and returns its result.
template <class T, class Read>
int32_t tensorData(int64_t* out, int32_t* pdtype, int64_t* dims, int64_t dimsCapacity, int64_t* pdimCount,
                   const char* nullText, T* self, Read&& read) {
    // self, then out, then the other pointers.
    if (self && out && !pdtype) return fail("pdtype is NULL");
    if (self && out && !pdimCount) return fail("pdimCount is NULL");
    return get(out, nullText, self, [&](T& s) {
        std::vector<long> sizes;
        arf::DataDType dtype = arf::DATA_DTYPE_NONE;
        const int64_t bytes = read(s, sizes, dtype);
        *pdtype = dtype;
        *pdimCount = static_cast<int64_t>(sizes.size());
        for (size_t i = 0; dims && i < sizes.size() && static_cast<int64_t>(i) < dimsCapacity; ++i) dims[i] = sizes[i];
        return bytes;
    });
}

// The compact form of a matrix payload as two new tensors; `read(self)`
// returns the C++ getColSparseTensor pair. Both outputs are written or none.
template <class T, class Read>
int32_t colSparseTensor(DataTree** values, DataTree** indices, const char* nullText, T* self, Read&& read) {
    if (!self) return fail(nullText);
    if (!values) return fail("values is NULL");
    if (!indices) return fail("indices is NULL");
    return guard([&] {
        auto pair = read(*self);
        auto v = std::make_unique<DataTree>(pair.first);
        *indices = new DataTree(pair.second);
        *values = v.release();
    });
}

} // namespace sorvane::flat

#endif
