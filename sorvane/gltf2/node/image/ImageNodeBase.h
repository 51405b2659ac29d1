#ifndef SORVANE_GLTF2_NODE_IMAGE_IMAGENODEBASE_H
#define SORVANE_GLTF2_NODE_IMAGE_IMAGENODEBASE_H

#include "sorvane/gltf2/node/RecordNode.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane::gltf2 {

// The decoding of an image record, beneath the generated ImageNode (the only
// class deriving from it).
class SORVANE_API ImageNodeBase : public RecordNode {
public:
    // Decodes the file named by "uri", else the bytes of "bufferView" (which
    // needs "mimeType"), into `info` (see ImageInfo for what it asks and gets).
    void getImageData(ImageInfo& info) const;

protected:
    using RecordNode::RecordNode;
};

} // namespace sorvane::gltf2

#endif
