#include "sorvane/datatree/node/Boolean.h"

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree {

Boolean::Boolean(bool value) : value(value) {}
DataTreeType Boolean::getType() const { return DataTreeType::Boolean; }
bool Boolean::equals(const Node& other) const { return other.isBoolean() && other.getBoolean() == value; }
Node* Boolean::clone() const { return new Boolean(value); }
bool Boolean::isBoolean() const { return true; }
bool Boolean::getBoolean() const { return value; }
void Boolean::setBoolean(bool newValue) { value = newValue; }
ScalarType Boolean::getScalarType() const { return ScalarType::Boolean; }

void Boolean::fromJson(archive::JsonImporter& importer, DataTreeImport) {
    auto read = importer.nextBoolean();
    if (!read) SORVANE_THROW("Expect a boolean at line %d", static_cast<int>(importer.getLine()));
    value = *read;
}

void Boolean::toJson(archive::JsonExporter& exporter) const { exporter.addBoolean(value); }

} // namespace sorvane::datatree
