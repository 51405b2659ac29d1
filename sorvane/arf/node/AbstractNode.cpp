#include "sorvane/arf/node/AbstractNode.h"

#include <sstream>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/archive/StringSink.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

#include "sorvane/docmodel/node/AbstractNode.cpp.inl"

} // namespace sorvane::arf
