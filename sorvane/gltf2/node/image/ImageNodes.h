#ifndef SORVANE_GLTF2_NODE_IMAGE_IMAGENODES_H
#define SORVANE_GLTF2_NODE_IMAGE_IMAGENODES_H

#include <cstdint>
#include <memory>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/ItemList.h"
#include "sorvane/gltf2/node/image/ImageNode.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane::gltf2 {

// The "images" list of a document. Images are written as PNG only.
class SORVANE_API ImageNodes : public ItemList<ImageNode> {
public:
    explicit ImageNodes(const NodeParent& parent);
    ~ImageNodes() override;

    using ItemList<ImageNode>::add;
    std::shared_ptr<ImageNode> add();

    // An image that names a file of the document; the file is neither read
    // nor copied. Embedding a file is refused.
    int64_t addFile(const char* uri, bool embedded, const char* name);
    // The pixels encoded as PNG: a file beside a .gltf unless `embedded`,
    // otherwise (and always in a .glb) a buffer view. Returns the index.
    int64_t addPixels(const void* data, int64_t width, int64_t height, int64_t channels, int64_t size,
                      ScalarType scalarType, ImageFormat imageFormat, PixelFormat pixelFormat, bool embedded,
                      const char* name);
    // A pixel tensor laid out as `imageFormat`.
    int64_t addTensor(const DataTree& pixels, ImageFormat imageFormat, PixelFormat pixelFormat, bool embedded,
                      const char* name);
    // An image object ("imageFormat", "pixelFormat", "pixels").
    int64_t addImage(const DataTree& image, bool embedded, const char* name);
};

} // namespace sorvane::gltf2

#endif
