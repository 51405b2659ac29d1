#ifndef SORVANE_TOOLS_COMPARE_H
#define SORVANE_TOOLS_COMPARE_H

#include <ostream>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane {

class DataTree;

// What the comparisons return when the shapes (or types, or formats) differ
// and no element was compared.
constexpr long kCompareMismatch = 0x7FFFFFFF;

// Counts the elements of two dense row-major tensors whose absolute
// difference exceeds the tolerance. Shapes that differ are reported on `out`
// and give kCompareMismatch. With `verbose`, the first 20 differences and a
// summary are written; ranks above 3 cannot be written and raise
// "Unsupported shape" at the first difference. Instances: signed char,
// unsigned char, short, unsigned short, int, unsigned int, float, double.
template <class T>
SORVANE_API long compare_tensors(const T* a, const std::vector<long>& dimsA, const T* b,
                                 const std::vector<long>& dimsB, T tolerance, bool verbose, std::ostream& out);

// compare_tensors over two DataTree tensors (or arrays) of one scalar type;
// the integer instances take the tolerance converted to their type.
SORVANE_API long compare_data_tensors(const DataTree& a, const DataTree& b, double tolerance, bool verbose,
                                      std::ostream& out);

// Two DataTree image objects ("pixelFormat", "imageFormat", "pixels"): the
// formats must agree, then the pixels are compared exactly.
SORVANE_API long compare_data_images(const DataTree& a, const DataTree& b, bool verbose, std::ostream& out);

} // namespace sorvane

#endif
