#include "sorvane/gltf2/node/AbstractNode.h"

#include <sstream>

#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/archive/StringSink.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/AbstractNode.cpp.inl"

} // namespace sorvane::gltf2
