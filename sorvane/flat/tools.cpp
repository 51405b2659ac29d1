#include <iostream>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"
#include "sorvane/tools/compare.h"

namespace flat = sorvane::flat;

extern "C" {

int32_t sorvane_tools_compareDataTensors(int64_t* out, const DataTree* first, const DataTree* second,
                                         double tolerance, bool verbose) {
    if (!out) return flat::fail("out is NULL");
    if (!first) return flat::fail("first is NULL");
    if (!second) return flat::fail("second is NULL");
    return flat::guard([&] { *out = sorvane::compare_data_tensors(*first, *second, tolerance, verbose, std::cout); });
}

int32_t sorvane_tools_compareDataImages(int64_t* out, const DataTree* first, const DataTree* second, bool verbose) {
    if (!out) return flat::fail("out is NULL");
    if (!first) return flat::fail("first is NULL");
    if (!second) return flat::fail("second is NULL");
    return flat::guard([&] { *out = sorvane::compare_data_images(*first, *second, verbose, std::cout); });
}

} // extern "C"
