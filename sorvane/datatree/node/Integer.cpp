#include "sorvane/datatree/node/Integer.h"

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree {

Integer::Integer(long value) : value(value) {}
DataTreeType Integer::getType() const { return DataTreeType::Integer; }
bool Integer::equals(const Node& other) const { return other.isInteger() && other.getInteger() == value; }
Node* Integer::clone() const { return new Integer(value); }
bool Integer::isInteger() const { return true; }
long Integer::getInteger() const { return value; }
void Integer::setInteger(long newValue) { value = newValue; }
ScalarType Integer::getScalarType() const { return ScalarType::Integer64; }

void Integer::fromJson(archive::JsonImporter& importer, DataTreeImport) {
    auto read = importer.nextInteger();
    if (!read) SORVANE_THROW("Expect an integer at line %d", static_cast<int>(importer.getLine()));
    value = *read;
}

void Integer::toJson(archive::JsonExporter& exporter) const { exporter.addInteger(value); }

} // namespace sorvane::datatree
