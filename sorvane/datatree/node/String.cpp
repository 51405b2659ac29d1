#include "sorvane/datatree/node/String.h"

#include <utility>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree {

String::String(const std::string& value) : value(value) {}
String::String(std::string&& value) : value(std::move(value)) {}
DataTreeType String::getType() const { return DataTreeType::String; }
bool String::equals(const Node& other) const { return other.isString() && other.getString() == value; }
Node* String::clone() const { return new String(value); }
bool String::isString() const { return true; }
const std::string& String::getString() const { return value; }
void String::setString(const std::string& newValue) { value = newValue; }

void String::fromJson(archive::JsonImporter& importer, DataTreeImport) {
    std::string read;
    if (!importer.nextString(read)) SORVANE_THROW("Expect an integer at line %d", static_cast<int>(importer.getLine()));
    value = std::move(read);
}

void String::toJson(archive::JsonExporter& exporter) const { exporter.addString(value); }

} // namespace sorvane::datatree
