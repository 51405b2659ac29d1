#ifndef SORVANE_ARF_NODE_ROOTNODE_H
#define SORVANE_ARF_NODE_ROOTNODE_H

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "sorvane/arf/node/ComponentsNode.h"
#include "sorvane/arf/node/IdentityNode.h"
#include "sorvane/arf/node/PreambleNode.h"
#include "sorvane/arf/node/RecordNode.h"
#include "sorvane/arf/node/StorageMode.h"
#include "sorvane/arf/node/StructureNode.h"
#include "sorvane/arf/node/data/DataNodes.h"

namespace sorvane::archive {
class FileProvider;
}

namespace sorvane::arf {

// The root of an ARF document tree: owns the top-level sections. It has an
// empty name and path, so the paths of its children start with their key.
class SORVANE_API RootNode : public RecordNode {
public:
    // Payloads being gathered into one file (main JSON file mode only).
    struct SharedRawData {
        std::string fileName;
        std::vector<uint8_t> data;
    };

    // A root with no storage, in memory.
    RootNode();
    // A root over a provider; nothing is read.
    RootNode(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
             StorageMode storageMode);
    ~RootNode() override;

    const std::shared_ptr<archive::FileProvider>& getFileProvider() const { return provider; }
    const std::string& getMainFileName() const { return mainFileName; }
    StorageMode getStorageMode() const { return storageMode; }
    bool getOverwrite() const { return overwrite; }
    bool getKeepRawData() const { return keepRawData; }
    void setKeepRawData(bool keep) { keepRawData = keep; }
    std::unordered_map<std::string, std::vector<uint8_t>>& getRawDataCache() { return rawDataCache; }

    // Reads the main JSON file through the provider into the tree.
    void __load();
    // Writes the JSON through the provider, then closes the provider.
    void save() const;
    void close();
    // Points the tree at another storage. Nothing is read or written: the
    // caller moves the payloads (the copy into another storage mode).
    void __setStorage(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
                      StorageMode storageMode);

    // A file name for a payload: the uri when given and usable, else built
    // from the main file name, the item's name and id, and the extension.
    std::string findFreeFileName(const char* uri, const char* name, int64_t id, const std::string& extension) const;

    void beginSharedRawData(bool embedded, const char* name);
    int64_t appendSharedRawData(const void* data, int64_t size, bool embedded);
    void endSharedRawData();
    void __beginSharedRawData(const char* name);
    int64_t __appendSharedRawData(const void* data, int64_t size);
    void __endSharedRawData();
    const SharedRawData* getSharedRawData() const { return sharedRawData.get(); }

    const char* getNodeTypeName() const override;
    int64_t getNodeIndex() const override;
    std::string getNodeName() const override;
    std::string getNodePath() const override;

    // True for every section key of the format, whether the section exists.
    bool hasNodeItem(const std::string& key) const override;
    using RecordNode::hasNodeItem;
    ConstRef getNodeItem(const std::string& key) const override;
    Ref getNodeItem(const std::string& key) override;
    using RecordNode::getNodeItem;

    RecordFields getRecordFields() const override;
    // Every section built empty, for reading.
    void incompleteInit() override;
    // Every section built with its fresh content.
    void init();

    const std::shared_ptr<PreambleNode>& getPreamble() const { return preamble_; }
    const std::shared_ptr<IdentityNode>& getIdentity() const { return identity_; }
    const std::shared_ptr<StructureNode>& getStructure() const { return structure_; }
    const std::shared_ptr<ComponentsNode>& getComponents() const { return components_; }
    void setPreamble(const std::shared_ptr<PreambleNode>& node);
    void setIdentity(const std::shared_ptr<IdentityNode>& node);
    void setStructure(const std::shared_ptr<StructureNode>& node);
    void setComponents(const std::shared_ptr<ComponentsNode>& node);
    const std::shared_ptr<DataNodes>& getData() const { return data_; }
    void setData(const std::shared_ptr<DataNodes>& node);

    static bool isSectionKey(const std::string& key);

    ReferenceListCache& referenceListCache() const { return referenceLists; }

private:
    mutable ReferenceListCache referenceLists;
    std::shared_ptr<archive::FileProvider> provider;
    std::string mainFileName;
    bool overwrite = true;
    StorageMode storageMode = MEMORY_ONLY;
    std::unique_ptr<SharedRawData> sharedRawData;
    bool keepRawData = false;
    std::unordered_map<std::string, std::vector<uint8_t>> rawDataCache;

    std::shared_ptr<PreambleNode> preamble_;
    std::shared_ptr<IdentityNode> identity_;
    std::shared_ptr<StructureNode> structure_;
    std::shared_ptr<ComponentsNode> components_;
    std::shared_ptr<DataNodes> data_;
};

} // namespace sorvane::arf

#endif
