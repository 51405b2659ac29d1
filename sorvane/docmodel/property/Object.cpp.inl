// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

Object::Object() = default;

Object::Object(const GenericProperty& value) : GenericProperty(value) {}

Object::~Object() = default;

const char* Object::getPropertyTypeName() const { return "Object"; }
