// The glTF payloads of the data list: a binary glTF file or document stored
// as an item, and an item opened as a document.
#include <filesystem>

#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/RelativeFileProvider.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/data/DataContent.h"
#include "sorvane/arf/node/data/DataNodes.h"
#include "sorvane/arf/property/data/DataList.h"
#include "sorvane/arf/property/data/DataReads.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/Gltf.h"

namespace sorvane::arf {

namespace {

// The checks both forms of addGlb make on the uri; gives it with "/" separators.
std::string glbUri(const std::string& path, const char* uri) {
    if (!uri) SORVANE_THROW("Adding item to %s:\nNo uri", path.c_str());
    if (archive::isAbsoluteUri(uri)) SORVANE_THROW("Adding item to %s:\nuri '%s' is absolute", path.c_str(), uri);
    if (archive::climbsOutOfFolder(uri))
        SORVANE_THROW("Adding item to %s:\nuri '%s' leaves the document's folder", path.c_str(), uri);
    std::string text = uri;
    for (char& c : text)
        if (c == '\\') c = '/';
    return text;
}

} // namespace

int64_t DataNodes::addGlb(const char* uri, const char* localFile, const char* name, std::optional<int64_t> id) {
    const std::string path = getNodePath();
    if (!uri) SORVANE_THROW("Adding item to %s:\nNo uri", path.c_str());
    if (!localFile || !std::filesystem::exists(localFile))
        SORVANE_THROW("Adding item to %s:\nFile '%s' not found", path.c_str(), localFile ? localFile : "");
    const std::string itemUri = glbUri(path, uri);
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode || !rootNode->getFileProvider()) SORVANE_THROW("Adding item to %s:\nNo file provider", path.c_str());
    if (archive::leavesFolder(rootNode->getFileProvider().get(), itemUri))
        SORVANE_THROW("Adding item to %s:\nuri '%s' leaves the document's folder", path.c_str(), uri);
    rootNode->getFileProvider()->createFromFile(itemUri, localFile, rootNode->getOverwrite());
    add(kGlbMimeType, itemUri.c_str(), name, id);
    return getNodeSize() - 1;
}

int64_t DataNodes::addGlb(const char* uri, const gltf2::Gltf& gltf, const char* name, std::optional<int64_t> id) {
    const std::string path = getNodePath();
    const std::string itemUri = glbUri(path, uri);
    if (gltf.getStorageMode() != gltf2::SINGLE_FILE)
        SORVANE_THROW("Adding item to %s:\nglTF is not a single file storage mode (e.g., glb)", path.c_str());
    std::shared_ptr<RootNode> rootNode = root.lock();
    if (!rootNode || !rootNode->getFileProvider()) SORVANE_THROW("Adding item to %s:\nNo file provider", path.c_str());
    if (archive::leavesFolder(rootNode->getFileProvider().get(), itemUri))
        SORVANE_THROW("Adding item to %s:\nuri '%s' leaves the document's folder", path.c_str(), uri);
    gltf.save(rootNode->getFileProvider(), itemUri);
    add(kGlbMimeType, itemUri.c_str(), name, id);
    return getNodeSize() - 1;
}

gltf2::Gltf DataContent::getGltf(const DataNode& node, bool readOnly) {
    const std::string path = node.getNodePath();
    if (node.getType() != kGlbMimeType) SORVANE_THROW("Getting glTF from %s:\nNot a glTF", path.c_str());
    const std::string& uri = node.getUri();
    if (archive::isAbsoluteUri(uri)) SORVANE_THROW("Getting glTF from %s:\nuri '%s' is absolute", path.c_str(), uri.c_str());
    std::shared_ptr<RootNode> rootNode = node.getNodeRoot().lock();
    if (archive::leavesFolder(rootNode ? rootNode->getFileProvider().get() : nullptr, uri))
        SORVANE_THROW("Getting glTF from %s:\nuri '%s' leaves the document's folder", path.c_str(), uri.c_str());
    if (!rootNode || !rootNode->getFileProvider()) SORVANE_THROW("Getting glTF from %s:\nNo file provider", path.c_str());
    const std::filesystem::path file(uri);
    auto folder = std::make_shared<archive::RelativeFileProvider>(rootNode->getFileProvider(),
                                                                  file.parent_path().generic_string());
    return gltf2::Gltf::load(folder, file.filename().string(), gltf2::SINGLE_FILE, readOnly);
}

gltf2::Gltf* DataContent::getGltfPtr(const DataNode& node, bool readOnly) {
    return new gltf2::Gltf(getGltf(node, readOnly));
}

gltf2::Gltf DataReads::getGltf(bool readOnly) const { return DataContent::getGltf(node(), readOnly); }

gltf2::Gltf* DataReads::getGltfPtr(bool readOnly) const { return DataContent::getGltfPtr(node(), readOnly); }

} // namespace sorvane::arf
