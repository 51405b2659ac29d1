#ifndef SORVANE_GLTF2_PROPERTY_IMAGE_IMAGEREADS_H
#define SORVANE_GLTF2_PROPERTY_IMAGE_IMAGEREADS_H

#include <memory>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/node/image/ImageNode.h"
#include "sorvane/gltf2/property/ObjectProperty.h"
#include "sorvane/imageio/imageio.h"

namespace sorvane::gltf2 {

// The decoding reads of the Image accessor.
class SORVANE_API ImageReads : public ObjectProperty<ImageNode> {
public:
    void getImageData(ImageInfo& info) const { node().getImageData(info); }
    // The image object of the decoded pixels in `imageFormat`; decoders give
    // 8-bit pixels, so `scalarType` must be UInteger8.
    DataTree getImage(ScalarType scalarType = ScalarType::UInteger8, ImageFormat imageFormat = ImageFormat::YXC) const;
    DataTree* getImagePtr(ScalarType scalarType = ScalarType::UInteger8,
                          ImageFormat imageFormat = ImageFormat::YXC) const {
        return new DataTree(getImage(scalarType, imageFormat));
    }

protected:
    ImageReads() = default;
    ImageReads(const std::shared_ptr<RootNode>& root_, const std::shared_ptr<ImageNode>& node_, bool readOnly_)
        : ObjectProperty(root_, node_, readOnly_) {}
};

} // namespace sorvane::gltf2

#endif
