#ifndef SORVANE_GLTF2_NODE_ABSTRACTNODE_H
#define SORVANE_GLTF2_NODE_ABSTRACTNODE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/Export.h"

namespace sorvane::gltf2 {

#include "sorvane/docmodel/node/AbstractNode.h.inl"

} // namespace sorvane::gltf2

#endif
