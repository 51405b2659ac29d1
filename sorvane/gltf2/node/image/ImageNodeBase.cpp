#include "sorvane/gltf2/node/image/ImageNodeBase.h"

#include <cstdint>
#include <string>
#include <vector>

#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/buffer/BinaryData.h"
#include "sorvane/gltf2/node/image/ImageNode.h"

namespace sorvane::gltf2 {

namespace {

// The file's bytes through the document's provider. An image uri is always a
// file name: a data uri is looked for as a file and is not found.
std::vector<uint8_t> readFile(const RootNode* root, const std::string& uri) {
    if (archive::isAbsoluteUri(uri)) SORVANE_THROW("uri '%s' is absolute", uri.c_str());
    if (archive::climbsOutOfFolder(uri)) SORVANE_THROW("uri '%s' leaves the document's folder", uri.c_str());
    if (!root || !root->getFileProvider()) SORVANE_THROW("No file provider");
    // The same rule as for buffers: links inside the folder are resolved first.
    if (archive::leavesFolder(root->getFileProvider().get(), uri))
        SORVANE_THROW("uri '%s' leaves the document's folder", uri.c_str());
    return root->getFileProvider()->getBytes(uri, 0);
}

void decode(ImageInfo& info, const std::vector<uint8_t>& bytes, const std::string& name) {
    decodeImage(info, bytes.data(), static_cast<long>(bytes.size()), name);
}

} // namespace

void ImageNodeBase::getImageData(ImageInfo& info) const {
    const ImageNode& image = static_cast<const ImageNode&>(*this);
    const std::string path = getNodePath();
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (image.hasUri()) {
        const std::string& uri = image.getUri();
        try {
            decode(info, readFile(rootNode.get(), uri), uri);
        } catch (const std::exception& e) {
            SORVANE_THROW("Decoding image from %s (uri='%s'):\n%s", path.c_str(), uri.c_str(), e.what());
        }
        return;
    }
    if (!image.hasBufferView()) SORVANE_THROW("Getting image from %s:\nInvalid or unsupported format", path.c_str());
    const int64_t index = image.getBufferView();
    const std::shared_ptr<BufferViewNodes> views = rootNode ? rootNode->getBufferViews() : nullptr;
    if (!views || !views->hasNodeItem(index))
        SORVANE_THROW("Getting image from %s:\nInvalid buffer view %ld", path.c_str(), static_cast<long>(index));
    if (!image.hasMimeType()) SORVANE_THROW("Getting image from %s:\nNo mimeType", path.c_str());
    std::vector<uint8_t> bytes;
    try {
        const BufferViewNode& view = *views->getByIndex(index);
        const int64_t size = BinaryData::getData(view, nullptr, 0, 0, -1, -1);
        bytes.resize(static_cast<size_t>(size));
        BinaryData::getData(view, bytes.data(), size, 0, -1, -1);
    } catch (const std::exception& e) {
        SORVANE_THROW("Decoding image from %s (bufferView=%ld):\n%s", path.c_str(), static_cast<long>(index), e.what());
    }
    try {
        decode(info, bytes, image.getMimeType());
    } catch (const std::exception& e) {
        SORVANE_THROW("Decoding image from %s:\n%s", path.c_str(), e.what());
    }
}

} // namespace sorvane::gltf2
