#include <string>

#include "sorvane/arf/property/GenericProperty.h"
#include "sorvane/arf/property/ObjectItem.h"
#include "sorvane/flat/Frame.h"
#include "sorvane/sorvane.h"

namespace flat = sorvane::flat;
using sorvane::arf::GenericProperty;

namespace {
constexpr const char* kNull = "genericProperty is NULL";
} // namespace

extern "C" {

int32_t sorvane_arf_GenericProperty_createNull(sorvane_arf_GenericProperty** out) {
    return flat::create(out, [] { return GenericProperty::createNullPtr(); });
}

int32_t sorvane_arf_GenericProperty_createInteger(sorvane_arf_GenericProperty** out, int64_t value) {
    return flat::create(out, [&] { return GenericProperty::createIntegerPtr(value); });
}

int32_t sorvane_arf_GenericProperty_createString(sorvane_arf_GenericProperty** out, const char* value) {
    return flat::create(out, [&] { return GenericProperty::createStringPtr(flat::str(value)); });
}

int32_t sorvane_arf_GenericProperty_createList(sorvane_arf_GenericProperty** out) {
    return flat::create(out, [] { return GenericProperty::createListPtr(); });
}

int32_t sorvane_arf_GenericProperty_delete(sorvane_arf_GenericProperty* self) { return flat::destroy(kNull, self); }

int32_t sorvane_arf_GenericProperty_removeProperty(sorvane_arf_GenericProperty* self) {
    return flat::call(kNull, self, [](GenericProperty& g) { g.removeProperty(); });
}

int32_t sorvane_arf_GenericProperty_getPropertyIndex(int64_t* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.getPropertyIndex(); });
}

int32_t sorvane_arf_GenericProperty_getPropertyName(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self) {
    return flat::text(out, outSize, kNull, self, [](GenericProperty& g) { return g.getPropertyName(); });
}

int32_t sorvane_arf_GenericProperty_getPropertyPath(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self) {
    return flat::text(out, outSize, kNull, self, [](GenericProperty& g) { return g.getPropertyPath(); });
}

int32_t sorvane_arf_GenericProperty_getPropertyTypeName(char* out, int64_t* outSize,
                                                        sorvane_arf_GenericProperty* self) {
    return flat::text(out, outSize, kNull, self,
                      [](GenericProperty& g) { return std::string(g.getPropertyTypeName()); });
}

int32_t sorvane_arf_GenericProperty_toString(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self) {
    return flat::text(out, outSize, kNull, self, [](GenericProperty& g) { return g.buildRepresentation(); });
}

int32_t sorvane_arf_GenericProperty_isNull(bool* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.isNull(); });
}

int32_t sorvane_arf_GenericProperty_isInteger(bool* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.isInteger(); });
}

int32_t sorvane_arf_GenericProperty_isString(bool* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.isString(); });
}

int32_t sorvane_arf_GenericProperty_isList(bool* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.isList(); });
}

int32_t sorvane_arf_GenericProperty_isObject(bool* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.isObject(); });
}

int32_t sorvane_arf_GenericProperty_isEmpty(bool* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.empty(); });
}

int32_t sorvane_arf_GenericProperty_getInteger(int64_t* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.getInteger(); });
}

int32_t sorvane_arf_GenericProperty_setInteger(sorvane_arf_GenericProperty* self, int64_t value) {
    return flat::call(kNull, self, [&](GenericProperty& g) { g.setInteger(value); });
}

int32_t sorvane_arf_GenericProperty_getString(char* out, int64_t* outSize, sorvane_arf_GenericProperty* self) {
    return flat::text(out, outSize, kNull, self, [](GenericProperty& g) { return g.getString(); });
}

int32_t sorvane_arf_GenericProperty_setString(sorvane_arf_GenericProperty* self, const char* value) {
    return flat::call(kNull, self, [&](GenericProperty& g) { g.setString(flat::str(value)); });
}

int32_t sorvane_arf_GenericProperty_getSize(int64_t* out, sorvane_arf_GenericProperty* self) {
    return flat::get(out, kNull, self, [](GenericProperty& g) { return g.size(); });
}

int32_t sorvane_arf_GenericProperty_clear(sorvane_arf_GenericProperty* self) {
    return flat::call(kNull, self, [](GenericProperty& g) { g.clear(); });
}

int32_t sorvane_arf_GenericProperty_hasByKey(bool* out, sorvane_arf_GenericProperty* self, const char* key) {
    return flat::get(out, kNull, self, [&](GenericProperty& g) { return g.has(flat::str(key)); });
}

int32_t sorvane_arf_GenericProperty_getByKey(sorvane_arf_GenericProperty** out, sorvane_arf_GenericProperty* self,
                                             const char* key) {
    return flat::get(out, kNull, self, [&](GenericProperty& g) { return g.get(flat::str(key)).getItemPtr(); });
}

int32_t sorvane_arf_GenericProperty_setByKey(sorvane_arf_GenericProperty* self, const char* key,
                                             sorvane_arf_GenericProperty* value) {
    if (!self) return flat::fail(kNull);
    if (!value) return flat::fail("value is NULL");
    return flat::call(kNull, self, [&](GenericProperty& g) { g.set(flat::str(key), *value); });
}

int32_t sorvane_arf_GenericProperty_getByIndex(sorvane_arf_GenericProperty** out, sorvane_arf_GenericProperty* self,
                                               int64_t index) {
    return flat::get(out, kNull, self, [&](GenericProperty& g) { return g.getPtr(index); });
}

int32_t sorvane_arf_GenericProperty_addNull(sorvane_arf_GenericProperty* self) {
    return flat::call(kNull, self, [](GenericProperty& g) { g.addNull(); });
}

int32_t sorvane_arf_GenericProperty_addString(sorvane_arf_GenericProperty* self, const char* value) {
    return flat::call(kNull, self, [&](GenericProperty& g) { g.add(flat::str(value)); });
}

} // extern "C"
