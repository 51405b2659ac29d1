// Shared by the two document models: included inside namespace sorvane::arf
// and namespace sorvane::gltf2, where RootNode and the other names resolve
// to the module's own classes.

// The key function: vtable and type information of the interface live here.
IdItemListBase::~IdItemListBase() = default;
