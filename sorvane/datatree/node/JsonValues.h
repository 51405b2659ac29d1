#ifndef SORVANE_DATATREE_NODE_JSONVALUES_H
#define SORVANE_DATATREE_NODE_JSONVALUES_H

// Internal: the one-line number lists that arrays and tensors write.

#include <ostream>

#include "sorvane/datatree/ScalarType.h"

namespace sorvane::archive {
class JsonExporter;
}

namespace sorvane::datatree::detail {

// Tells the number writer which stream an exporter writes to, for as long as
// the binding lives, so that long lists go to the stream in blocks.
class JsonStreamBinding {
public:
    JsonStreamBinding(archive::JsonExporter& exporter, std::ostream& stream);
    ~JsonStreamBinding();
    JsonStreamBinding(const JsonStreamBinding&) = delete;
    JsonStreamBinding& operator=(const JsonStreamBinding&) = delete;
};

// "Invalid or unsupported scalar type" for Boolean and anything outside
// UInteger8 to Double.
void checkWritableType(ScalarType type);

// "[" values joined by ", " "]" on one line; eight-bit values as numbers,
// Float with 8 significant digits, Double with 16.
void writeValueLine(archive::JsonExporter& exporter, ScalarType type, const void* data, long count);

} // namespace sorvane::datatree::detail

#endif
