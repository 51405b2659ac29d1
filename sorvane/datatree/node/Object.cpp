#include "sorvane/datatree/node/Object.h"

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Walk.h"

namespace sorvane::datatree {

// Nesting built in code can be deeper than the stack allows: the walks over
// it keep their own work lists.
Object::~Object() { detail::dismantle(items); }

DataTreeType Object::getType() const { return DataTreeType::Object; }

bool Object::equals(const Node& other) const { return detail::deepEquals(*this, other); }

Node* Object::clone() const { return detail::deepClone(*this); }

bool Object::isObject() const { return true; }
long Object::getSize() const { return static_cast<long>(items.size()); }
void Object::removeItems() { items.clear(); }
bool Object::hasItem(const std::string& name) const { return items.count(name) != 0; }

std::vector<std::string> Object::getItemNames() const {
    std::vector<std::string> names;
    names.reserve(items.size());
    for (const auto& entry : items) names.push_back(entry.first);
    return names;
}

const DataTree& Object::getItem(const std::string& name) const {
    auto found = items.find(name);
    if (found == items.end()) SORVANE_THROW("Item '%s' not found", name.c_str());
    return found->second;
}

DataTree& Object::getItem(const std::string& name) {
    auto found = items.find(name);
    if (found == items.end()) SORVANE_THROW("Item '%s' not found", name.c_str());
    return found->second;
}

void Object::setItem(const std::string& name, const DataTree& item) { items.insert_or_assign(name, item); }

void Object::removeItem(const std::string& name) { items.erase(name); }

void Object::fromJson(archive::JsonImporter& importer, DataTreeImport flags) {
    items.clear();
    if (!importer.nextBeginObject()) SORVANE_THROW("Expect an object at line %d", static_cast<int>(importer.getLine()));
    std::string key;
    while (importer.nextObjectItem(key)) {
        DataTree value(Node::nextItem(importer, flags));
        items.insert_or_assign(key, std::move(value));
    }
    if (!importer.nextEndObject())
        SORVANE_THROW("Expect the end of an object at line %d", static_cast<int>(importer.getLine()));
}

void Object::toJson(archive::JsonExporter& exporter) const {
    detail::WriteDepthGuard depth(*this);
    exporter.beginObject();
    for (const auto& [name, item] : items) {
        exporter.addObjectItem(name);
        item.toJson(exporter);
    }
    exporter.endObject();
}

} // namespace sorvane::datatree
