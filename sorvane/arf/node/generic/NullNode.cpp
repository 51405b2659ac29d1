#include "sorvane/arf/node/generic/NullNode.h"

#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

NullNode::NullNode(const NodeParent& parent_) : AbstractNode(parent_) {}

const char* NullNode::getNodeTypeName() const { return "null"; }

bool NullNode::isNodeNull() const { return true; }

void NullNode::fromJson(archive::JsonImporter& importer) {
    if (!importer.nextNull()) SORVANE_THROW("Expect a null at line %d", importer.getLine());
}

void NullNode::toJson(archive::JsonExporter& exporter) const { exporter.addString("null"); }

} // namespace sorvane::arf
