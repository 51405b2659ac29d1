#ifndef SORVANE_TOOLS_VALIDATE_H
#define SORVANE_TOOLS_VALIDATE_H

#include <string>
#include <vector>

#include "sorvane/core/Export.h"

namespace sorvane::arf {
class Arf;
}
namespace sorvane::gltf2 {
class Gltf;
}

namespace sorvane {

// The problems of a loaded ARF document that loading itself lets pass, one
// line each: references to ids that no record of their target list has, ids
// used twice in one list, and data items whose payload fails to read. An
// empty result means a clean document.
SORVANE_API std::vector<std::string> validateArf(const arf::Arf& arf);

// The same for a glTF document: indices past the end of their target list,
// and accessors whose data fails to read.
SORVANE_API std::vector<std::string> validateGltf(const gltf2::Gltf& gltf);

} // namespace sorvane

#endif
