#include "sorvane/gltf2/property/image/ImageReads.h"

#include <cstdlib>

namespace sorvane::gltf2 {

DataTree ImageReads::getImage(ScalarType scalarType, ImageFormat imageFormat) const {
    ImageInfo info;
    info.allocate = std::malloc;
    info.free = std::free;
    node().getImageData(info);
    return createImage(info, scalarType, imageFormat);
}

} // namespace sorvane::gltf2
