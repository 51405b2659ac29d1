#include "sorvane/arf/property/Object.h"

namespace sorvane::arf {

Object::Object() = default;

Object::Object(const GenericProperty& value) : GenericProperty(value) {}

Object::~Object() = default;

const char* Object::getPropertyTypeName() const { return "Object"; }

} // namespace sorvane::arf
