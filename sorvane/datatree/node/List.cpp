#include "sorvane/datatree/node/List.h"

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/datatree/node/Walk.h"
#include "sorvane/datatree/node/Array.h"
#include "sorvane/datatree/node/String.h"

namespace sorvane::datatree {

// Nesting built in code can be deeper than the stack allows: the walks over
// it keep their own work lists.
List::~List() { detail::dismantle(items); }

DataTreeType List::getType() const { return DataTreeType::List; }

bool List::equals(const Node& other) const { return detail::deepEquals(*this, other); }

Node* List::clone() const { return detail::deepClone(*this); }

bool List::isList() const { return true; }
long List::getSize() const { return static_cast<long>(items.size()); }
void List::removeItems() { items.clear(); }

std::vector<std::string> List::getStringVector() const {
    std::vector<std::string> strings;
    strings.reserve(items.size());
    for (const DataTree& item : items) strings.push_back(item.getString());
    return strings;
}

void List::checkIndex(long index, long limit) const {
    if (index < 0 || index >= limit) SORVANE_THROW("Invalid index %ld", index);
}

const DataTree& List::getItem(long index) const {
    checkIndex(index, getSize());
    return items[static_cast<size_t>(index)];
}

DataTree& List::getItem(long index) {
    checkIndex(index, getSize());
    return items[static_cast<size_t>(index)];
}

void List::addItem(const DataTree& item) { items.push_back(item); }

// The slot operations check their index too: an index out of range would
// otherwise write outside the vector.
void List::insertItem(long index, const DataTree& item) {
    checkIndex(index, getSize() + 1);
    items.insert(items.begin() + index, item);
}

void List::setItem(long index, const DataTree& item) {
    checkIndex(index, getSize());
    items[static_cast<size_t>(index)] = item;
}

void List::setItems(const std::vector<std::string>& strings) {
    std::vector<DataTree> fresh;
    fresh.reserve(strings.size());
    for (const std::string& s : strings) fresh.emplace_back(new String(s));
    items.swap(fresh);
}

void List::removeItem(long index) {
    checkIndex(index, getSize());
    items.erase(items.begin() + index);
}

bool List::canConvertToIntegerArray(ScalarType) const {
    for (const DataTree& item : items) {
        if (!item.isInteger()) return false;
    }
    return true;
}

bool List::canConvertToFloatArray(ScalarType) const {
    for (const DataTree& item : items) {
        if (!item.isInteger() && !item.isFloat()) return false;
    }
    return true;
}

Node* List::convertToArray(ScalarType type) const {
    if (isScalarTypeInteger(type)) return convertToIntegerArray(type);
    return convertToFloatArray(type);
}

Node* List::convertToIntegerArray(ScalarType type) const {
    if (type != ScalarType::Integer64) SORVANE_THROW("Invalid or unsupported scalar type %s", scalarType2string(type));
    auto* array = new Array(getSize(), type);
    auto* values = static_cast<long*>(array->getBuffer());
    try {
        for (size_t i = 0; i < items.size(); ++i) values[i] = items[i].getInteger();
    } catch (...) {
        delete array;
        throw;
    }
    return array;
}

namespace {

template <class T>
void fillFloats(T* values, const std::vector<DataTree>& items, ScalarType type) {
    for (size_t i = 0; i < items.size(); ++i) {
        const DataTree& item = items[i];
        if (item.isFloat())
            values[i] = static_cast<T>(item.getFloat());
        else if (item.isInteger())
            values[i] = static_cast<T>(item.getInteger());
        else
            SORVANE_THROW("Can't convert to a %s", scalarType2string(type));
    }
}

} // namespace

Node* List::convertToFloatArray(ScalarType type) const {
    if (type != ScalarType::Float && type != ScalarType::Double)
        SORVANE_THROW("Invalid or unsupported scalar type %s", scalarType2string(type));
    auto* array = new Array(getSize(), type);
    try {
        if (type == ScalarType::Float) {
            // Doubles past the Float range would be an undefined cast: go
            // through the buffer conversion, which rounds them to infinity.
            std::vector<double> wide(items.size());
            fillFloats(wide.data(), items, type);
            convertBufferScalarType(array->getBuffer(), ScalarType::Float, wide.data(), ScalarType::Double,
                                    getSize());
        } else {
            fillFloats(static_cast<double*>(array->getBuffer()), items, type);
        }
    } catch (...) {
        delete array;
        throw;
    }
    return array;
}

void List::fromJson(archive::JsonImporter& importer, DataTreeImport flags) {
    items.clear();
    if (!importer.nextBeginArray()) SORVANE_THROW("Expect an array at line %d", static_cast<int>(importer.getLine()));
    while (importer.nextArrayItem()) {
        DataTree item(Node::nextItem(importer, flags));
        items.push_back(std::move(item));
    }
    if (!importer.nextEndArray())
        SORVANE_THROW("Expect the end of an array at line %d", static_cast<int>(importer.getLine()));
}

void List::toJson(archive::JsonExporter& exporter) const {
    detail::WriteDepthGuard depth(*this);
    exporter.beginArray();
    for (const DataTree& item : items) {
        exporter.addArrayItem();
        item.toJson(exporter);
    }
    exporter.endArray();
}

} // namespace sorvane::datatree
