#ifndef SORVANE_GLTF2_GLTFCOPY_H
#define SORVANE_GLTF2_GLTFCOPY_H

#include <filesystem>

#include "sorvane/core/Export.h"
#include "sorvane/gltf2/Gltf.h"

namespace sorvane::gltf2 {

// Writes the document again at `path`, in the form its extension names
// (.gltf text with one .bin beside it, .glb binary), and returns the new
// document. Every record goes across as it is; the bytes of all buffers are
// packed into one (the BIN chunk, or the .bin file), each at a multiple of 4,
// and the views are rebased onto it. The source is left as it is.
SORVANE_API Gltf saveGltfAs(const Gltf& source, const std::filesystem::path& path);

} // namespace sorvane::gltf2

#endif
