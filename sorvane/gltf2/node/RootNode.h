#ifndef SORVANE_GLTF2_NODE_ROOTNODE_H
#define SORVANE_GLTF2_NODE_ROOTNODE_H

#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/gltf2/node/AssetNode.h"
#include "sorvane/gltf2/node/RecordNode.h"
#include "sorvane/gltf2/node/StorageMode.h"
#include "sorvane/gltf2/node/accessor/AccessorNodes.h"
#include "sorvane/gltf2/node/animation/AnimationNodes.h"
#include "sorvane/gltf2/node/buffer/BufferNodes.h"
#include "sorvane/gltf2/node/buffer/ByteBlock.h"
#include "sorvane/gltf2/node/bufferview/BufferViewNodes.h"
#include "sorvane/gltf2/node/camera/CameraNodes.h"
#include "sorvane/gltf2/node/image/ImageNodes.h"
#include "sorvane/gltf2/node/material/MaterialNodes.h"
#include "sorvane/gltf2/node/mesh/MeshNodes.h"
#include "sorvane/gltf2/node/node/NodeNodes.h"
#include "sorvane/gltf2/node/sampler/SamplerNodes.h"
#include "sorvane/gltf2/node/scene/SceneNodes.h"
#include "sorvane/gltf2/node/skin/SkinNodes.h"
#include "sorvane/gltf2/node/texture/TextureNodes.h"

namespace sorvane::archive {
class FileProvider;
}

namespace sorvane::gltf2 {

// The root of a glTF document: "asset", the extension name lists, the
// top-level lists (absent until read or first added to) and "scene". It also
// holds the storage: the provider, the main file's name, the mode, and the
// shared buffer that gathers binary data (a .glb's BIN chunk for its life).
class SORVANE_API RootNode : public RecordNode {
public:
    struct SharedBuffer {
        int64_t bufferIndex = -1;
        ByteVector data;
        bool embedded = false;
    };

    // The top-level keys in writing order.
    static const char* const kTopLevelKeys[];

    // A memory-only root with no provider.
    RootNode();
    RootNode(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
             StorageMode storageMode);
    ~RootNode() override;

    const std::shared_ptr<archive::FileProvider>& getFileProvider() const { return fileProvider; }
    const std::string& getMainFileName() const { return mainFileName; }
    StorageMode getStorageMode() const { return storageMode; }
    bool getOverwriteFiles() const { return overwriteFiles; }
    const SharedBuffer* getSharedBuffer() const { return sharedBuffer.get(); }

    const char* getNodeTypeName() const override;
    int64_t getNodeIndex() const override;
    std::string getNodeName() const override;
    std::string getNodePath() const override;
    ConstRef getNodeItem(const std::string& key) const override;
    Ref getNodeItem(const std::string& key) override;
    using RecordNode::getNodeItem;

    RecordFields getRecordFields() const override;
    void incompleteInit() override;
    void init();

    // By mode: nothing for .gltf, the open shared buffer 0 for .glb.
    void __create();
    // Reads the main file through the provider.
    void __load();
    // Reads a .glb from the stream.
    void __decode(std::istream& in);
    // Reads a .glb held in memory, without copying it first.
    void __decode(const void* data, size_t size);

    // Writes the document as the main file of the root's provider, or as
    // `fileName` of another provider.
    void save() const;
    void save(const std::shared_ptr<archive::FileProvider>& provider, const std::string& fileName) const;
    void close();

    std::string findFreeFileName(const char* uri, const char* name, int64_t index, const std::string& extension) const;

    int64_t beginSharedBuffer(bool embedded, const char* name);
    int64_t appendSharedBuffer(const void* data, int64_t valueCount, int64_t valueSize, bool embedded);
    void endSharedBuffer();
    int64_t __beginSharedBuffer(bool embedded, const char* name);
    void __endSharedBuffer();
    void __setSharedBuffer(int64_t bufferIndex, std::istream& in, int64_t size);
    void __setSharedBuffer(int64_t bufferIndex, ByteVector&& data);

    // "scene": the default scene.
    bool hasScene() const { return scene_.has_value(); }
    int64_t getScene() const;
    void setScene(int64_t index);
    void removeScene() { scene_.reset(); }

    const std::shared_ptr<AssetNode>& getAsset() const { return asset_; }
    void setAsset(const std::shared_ptr<AssetNode>& node);

    std::optional<std::vector<std::string>>& getExtensionsUsed() { return extensionsUsed_; }
    const std::optional<std::vector<std::string>>& getExtensionsUsed() const { return extensionsUsed_; }
    std::optional<std::vector<std::string>>& getExtensionsRequired() { return extensionsRequired_; }
    const std::optional<std::vector<std::string>>& getExtensionsRequired() const { return extensionsRequired_; }

    const std::shared_ptr<BufferNodes>& getBuffers() const { return buffers_; }
    const std::shared_ptr<BufferViewNodes>& getBufferViews() const { return bufferViews_; }
    const std::shared_ptr<AccessorNodes>& getAccessors() const { return accessors_; }
    const std::shared_ptr<AnimationNodes>& getAnimations() const { return animations_; }
    void setBuffers(const std::shared_ptr<BufferNodes>& node);
    void setBufferViews(const std::shared_ptr<BufferViewNodes>& node);
    void setAccessors(const std::shared_ptr<AccessorNodes>& node);
    const std::shared_ptr<ImageNodes>& getImages() const { return images_; }
    const std::shared_ptr<SamplerNodes>& getSamplers() const { return samplers_; }
    const std::shared_ptr<TextureNodes>& getTextures() const { return textures_; }
    const std::shared_ptr<MaterialNodes>& getMaterials() const { return materials_; }
    const std::shared_ptr<CameraNodes>& getCameras() const { return cameras_; }
    void setAnimations(const std::shared_ptr<AnimationNodes>& node);
    // The list, made when absent.
    BufferNodes& buffers();
    BufferViewNodes& bufferViews();
    AccessorNodes& accessors();
    AnimationNodes& animations();

    // The scene graph lists; absent until read or first added to.
    const std::shared_ptr<MeshNodes>& getMeshes() const { return meshes_; }
    const std::shared_ptr<NodeNodes>& getNodes() const { return nodes_; }
    const std::shared_ptr<SkinNodes>& getSkins() const { return skins_; }
    const std::shared_ptr<SceneNodes>& getScenes() const { return scenes_; }

    ReferenceListCache& referenceListCache() const { return referenceLists; }

private:
    mutable ReferenceListCache referenceLists;
    std::string toJsonText(bool compact) const;

    std::optional<int64_t> scene_;
    std::shared_ptr<archive::FileProvider> fileProvider;
    std::string mainFileName;
    bool overwriteFiles = true;
    StorageMode storageMode = MEMORY_ONLY;
    std::unique_ptr<SharedBuffer> sharedBuffer;

    std::shared_ptr<AssetNode> asset_;
    std::optional<std::vector<std::string>> extensionsUsed_;
    std::optional<std::vector<std::string>> extensionsRequired_;
    std::shared_ptr<BufferNodes> buffers_;
    std::shared_ptr<BufferViewNodes> bufferViews_;
    std::shared_ptr<AccessorNodes> accessors_;
    std::shared_ptr<ImageNodes> images_;
    std::shared_ptr<SamplerNodes> samplers_;
    std::shared_ptr<TextureNodes> textures_;
    std::shared_ptr<MaterialNodes> materials_;
    std::shared_ptr<CameraNodes> cameras_;
    std::shared_ptr<MeshNodes> meshes_;
    std::shared_ptr<NodeNodes> nodes_;
    std::shared_ptr<AnimationNodes> animations_;
    std::shared_ptr<SkinNodes> skins_;
    std::shared_ptr<SceneNodes> scenes_;
};

} // namespace sorvane::gltf2

#endif
