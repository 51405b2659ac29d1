#include "sorvane/gltf2/property/Property.h"

#include <sstream>

#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

Property::Property() = default;

Property::Property(const std::shared_ptr<RootNode>& root_, bool readOnly_) : propertyRoot(root_), propertyReadOnly(readOnly_) {}

Property::~Property() = default;

std::string Property::buildRepresentation() const {
    std::ostringstream out;
    outputRepresentation(out);
    return out.str();
}

void Property::failInvalidNode() { SORVANE_THROW("Invalid node"); }

// The glTF accessors have their own texts for additions and item changes.
void Property::checkWritable(Change change, const std::string& path) const {
    if (!propertyReadOnly) return;
    const char* p = path.c_str();
    switch (change) {
    case Change::Set: SORVANE_THROW("Setting %s: Forbidden, read-only accessor", p);
    case Change::Append: SORVANE_THROW("Appending %s: Forbidden, read-only accessor", p);
    case Change::AddItem:
    case Change::ListAdd:
    case Change::AddValue: SORVANE_THROW("Adding to %s: Forbidden, read-only accessor", p);
    case Change::SetItem: SORVANE_THROW("Setting an item of %s\nForbidden, read-only accessor", p);
    case Change::RemoveItem: SORVANE_THROW("Removing an item of %s: Forbidden, read-only accessor", p);
    case Change::RemoveProperty: SORVANE_THROW("Removing %s: Forbidden, read-only accessor", p);
    case Change::Get: SORVANE_THROW("Getting %s: Forbidden, read-only accessor", p);
    case Change::Clear: SORVANE_THROW("Clearing %s: Forbidden, read-only object", p);
    case Change::AddNull: SORVANE_THROW("Adding Null to %s: Forbidden, read-only accessor", p);
    case Change::Modify: SORVANE_THROW("Modifying %s: Forbidden, read-only object", p);
    case Change::Clone: SORVANE_THROW("Cloning %s: Forbidden, read-only target container", p);
    }
}

} // namespace sorvane::gltf2
