#include "sorvane/datatree/node/Null.h"

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::datatree {

DataTreeType Null::getType() const { return DataTreeType::Null; }
bool Null::equals(const Node& other) const { return other.isNull(); }
Node* Null::clone() const { return new Null(); }
bool Null::isNull() const { return true; }
void Null::setNull(std::nullptr_t) {}

void Null::fromJson(archive::JsonImporter& importer, DataTreeImport) {
    if (!importer.nextNull()) SORVANE_THROW("Expect a null at line %d", static_cast<int>(importer.getLine()));
}

void Null::toJson(archive::JsonExporter& exporter) const { exporter.addNull(); }

} // namespace sorvane::datatree
