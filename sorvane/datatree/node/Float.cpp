#include "sorvane/datatree/node/Float.h"

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree {

Float::Float(double value) : value(value) {}
DataTreeType Float::getType() const { return DataTreeType::Float; }
// NaN equals nothing, itself included: plain floating comparison.
bool Float::equals(const Node& other) const { return other.isFloat() && other.getFloat() == value; }
Node* Float::clone() const { return new Float(value); }
bool Float::isFloat() const { return true; }
double Float::getFloat() const { return value; }
void Float::setFloat(double newValue) { value = newValue; }
// The value is held as a double, yet it reports Float.
ScalarType Float::getScalarType() const { return ScalarType::Float; }

void Float::fromJson(archive::JsonImporter& importer, DataTreeImport) {
    auto read = importer.nextNumber();
    if (!read) SORVANE_THROW("Expect an integer at line %d", static_cast<int>(importer.getLine()));
    value = *read;
}

void Float::toJson(archive::JsonExporter& exporter) const { exporter.addNumber(value); }

} // namespace sorvane::datatree
