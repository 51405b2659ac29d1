#include "sorvane/arf/property/components/Node.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::arf::Node;

extern "C" {

int32_t sorvane_arf_Node_getTransformMatrix(double* out, int64_t outBytes, int64_t* pvalueCount,
                                            sorvane_arf_Node* self) {
    return flat::values(out, outBytes, pvalueCount, "node is NULL", self,
                        [](Node& n) { return n.getTransformMatrix(); });
}

} // extern "C"
