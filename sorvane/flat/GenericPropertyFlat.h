#ifndef SORVANE_FLAT_GENERICPROPERTYFLAT_H
#define SORVANE_FLAT_GENERICPROPERTYFLAT_H

// The flat family of GenericProperty, one definition for every module that
// has the class: SORVANE_FLAT_GENERIC_PROPERTY(arf) defines the
// sorvane_arf_GenericProperty_* functions over sorvane::arf::GenericProperty.
// Used inside extern "C", with no semicolon after it.

#include <string>

#include "sorvane/flat/Frame.h"

#define SORVANE_FLAT_GENERIC_PROPERTY(M)                                                                               \
int32_t sorvane_##M##_GenericProperty_createNull(sorvane_##M##_GenericProperty** out) {                                \
    return ::sorvane::flat::create(out, [] { return ::sorvane::M::GenericProperty::createNullPtr(); });                \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_createInteger(sorvane_##M##_GenericProperty** out, int64_t value) {              \
    return ::sorvane::flat::create(out, [&] { return ::sorvane::M::GenericProperty::createIntegerPtr(value); });       \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_createString(sorvane_##M##_GenericProperty** out, const char* value) {           \
    return ::sorvane::flat::create(out, [&] { return ::sorvane::M::GenericProperty::createStringPtr(::sorvane::flat::str(value)); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_createList(sorvane_##M##_GenericProperty** out) {                                \
    return ::sorvane::flat::create(out, [] { return ::sorvane::M::GenericProperty::createListPtr(); });                \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_delete(sorvane_##M##_GenericProperty* self) { return ::sorvane::flat::destroy("genericProperty is NULL", self); } \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_removeProperty(sorvane_##M##_GenericProperty* self) {                            \
    return ::sorvane::flat::call("genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { g.removeProperty(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getPropertyIndex(int64_t* out, sorvane_##M##_GenericProperty* self) {            \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.getPropertyIndex(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getPropertyName(char* out, int64_t* outSize, sorvane_##M##_GenericProperty* self) { \
    return ::sorvane::flat::text(out, outSize, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.getPropertyName(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getPropertyPath(char* out, int64_t* outSize, sorvane_##M##_GenericProperty* self) { \
    return ::sorvane::flat::text(out, outSize, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.getPropertyPath(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getPropertyTypeName(char* out, int64_t* outSize,                                 \
                                                        sorvane_##M##_GenericProperty* self) {                         \
    return ::sorvane::flat::text(out, outSize, "genericProperty is NULL", self,                                        \
                      [](::sorvane::M::GenericProperty& g) { return std::string(g.getPropertyTypeName()); });          \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_toString(char* out, int64_t* outSize, sorvane_##M##_GenericProperty* self) {     \
    return ::sorvane::flat::text(out, outSize, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.buildRepresentation(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_isNull(bool* out, sorvane_##M##_GenericProperty* self) {                         \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.isNull(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_isInteger(bool* out, sorvane_##M##_GenericProperty* self) {                      \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.isInteger(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_isString(bool* out, sorvane_##M##_GenericProperty* self) {                       \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.isString(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_isList(bool* out, sorvane_##M##_GenericProperty* self) {                         \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.isList(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_isObject(bool* out, sorvane_##M##_GenericProperty* self) {                       \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.isObject(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_isEmpty(bool* out, sorvane_##M##_GenericProperty* self) {                        \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.empty(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getInteger(int64_t* out, sorvane_##M##_GenericProperty* self) {                  \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.getInteger(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_setInteger(sorvane_##M##_GenericProperty* self, int64_t value) {                 \
    return ::sorvane::flat::call("genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { g.setInteger(value); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getString(char* out, int64_t* outSize, sorvane_##M##_GenericProperty* self) {    \
    return ::sorvane::flat::text(out, outSize, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.getString(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_setString(sorvane_##M##_GenericProperty* self, const char* value) {              \
    return ::sorvane::flat::call("genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { g.setString(::sorvane::flat::str(value)); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getSize(int64_t* out, sorvane_##M##_GenericProperty* self) {                     \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { return g.size(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_clear(sorvane_##M##_GenericProperty* self) {                                     \
    return ::sorvane::flat::call("genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { g.clear(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_hasByKey(bool* out, sorvane_##M##_GenericProperty* self, const char* key) {      \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { return g.has(::sorvane::flat::str(key)); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getByKey(sorvane_##M##_GenericProperty** out, sorvane_##M##_GenericProperty* self, \
                                             const char* key) {                                                        \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { return g.get(::sorvane::flat::str(key)).getItemPtr(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_setByKey(sorvane_##M##_GenericProperty* self, const char* key,                   \
                                             sorvane_##M##_GenericProperty* value) {                                   \
    if (!self) return ::sorvane::flat::fail("genericProperty is NULL");                                                \
    if (!value) return ::sorvane::flat::fail("value is NULL");                                                         \
    return ::sorvane::flat::call("genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { g.set(::sorvane::flat::str(key), *value); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_getByIndex(sorvane_##M##_GenericProperty** out, sorvane_##M##_GenericProperty* self, \
                                               int64_t index) {                                                        \
    return ::sorvane::flat::get(out, "genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { return g.getPtr(index); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_addNull(sorvane_##M##_GenericProperty* self) {                                   \
    return ::sorvane::flat::call("genericProperty is NULL", self, [](::sorvane::M::GenericProperty& g) { g.addNull(); }); \
}                                                                                                                      \
                                                                                                                       \
int32_t sorvane_##M##_GenericProperty_addString(sorvane_##M##_GenericProperty* self, const char* value) {              \
    return ::sorvane::flat::call("genericProperty is NULL", self, [&](::sorvane::M::GenericProperty& g) { g.add(::sorvane::flat::str(value)); }); \
}

#endif
