#include "sorvane/arf/node/RootNode.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "sorvane/archive/DocumentUri.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/StringSink.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"

namespace sorvane::arf {

namespace {
const char* const kSectionKeys[] = {"preamble", "identity", "structure", "components", "data"};
}

RootNode::RootNode() = default;

RootNode::RootNode(const std::shared_ptr<archive::FileProvider>& provider_, const std::string& mainFileName_,
                   StorageMode storageMode_)
    : provider(provider_), mainFileName(mainFileName_), storageMode(storageMode_) {
    switch (storageMode) {
    case MULTIPLE_FILES:
    case SINGLE_FILE:
        if (mainFileName.empty()) SORVANE_THROW("Empty file name");
        break;
    case MEMORY_ONLY:
        if (mainFileName != "arf.json") SORVANE_THROW("Invalid main file name");
        break;
    default: SORVANE_THROW("Invalid storage mode");
    }
}

RootNode::~RootNode() = default;

const char* RootNode::getNodeTypeName() const { return "root"; }
int64_t RootNode::getNodeIndex() const { return -1; }
std::string RootNode::getNodeName() const { return std::string(); }
std::string RootNode::getNodePath() const { return std::string(); }

bool RootNode::isSectionKey(const std::string& key) {
    for (const char* k : kSectionKeys)
        if (key == k) return true;
    return false;
}

bool RootNode::hasNodeItem(const std::string& key) const { return isSectionKey(key); }

AbstractNode::ConstRef RootNode::getNodeItem(const std::string& key) const {
    return const_cast<RootNode*>(this)->getNodeItem(key);
}

AbstractNode::Ref RootNode::getNodeItem(const std::string& key) {
    // A section the document model does not hold yet reads as absent.
    if (isSectionKey(key) && !findChildField(key)) return Ref();
    return RecordNode::getNodeItem(key);
}

RecordFields RootNode::getRecordFields() const {
    static constexpr RecordField fields[] = {
        recordField<&RootNode::preamble_>("preamble"),
        recordField<&RootNode::identity_>("identity"),
        recordField<&RootNode::structure_>("structure"),
        recordField<&RootNode::components_>("components"),
        recordField<&RootNode::data_>("data"),
    };
    return {fields, fields + sizeof fields / sizeof fields[0]};
}

void RootNode::incompleteInit() {
    auto self = shared_from_this();
    preamble_ = std::make_shared<PreambleNode>(self);
    identity_ = std::make_shared<IdentityNode>(self);
    structure_ = std::make_shared<StructureNode>(self);
    components_ = std::make_shared<ComponentsNode>(self);
    data_ = std::make_shared<DataNodes>(self);
    preamble_->incompleteInit();
    identity_->incompleteInit();
    structure_->incompleteInit();
    components_->incompleteInit();
}

void RootNode::init() {
    auto self = shared_from_this();
    preamble_ = std::make_shared<PreambleNode>(self);
    identity_ = std::make_shared<IdentityNode>(self);
    structure_ = std::make_shared<StructureNode>(self);
    components_ = std::make_shared<ComponentsNode>(self);
    data_ = std::make_shared<DataNodes>(self);
    preamble_->init(nullptr, nullptr);
    identity_->init(nullptr, nullptr, std::nullopt, nullptr);
    structure_->init();
    components_->init();
}

void RootNode::setPreamble(const std::shared_ptr<PreambleNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    preamble_ = node;
}

void RootNode::setIdentity(const std::shared_ptr<IdentityNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    identity_ = node;
}

void RootNode::setComponents(const std::shared_ptr<ComponentsNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    components_ = node;
}

void RootNode::setStructure(const std::shared_ptr<StructureNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    structure_ = node;
}

void RootNode::setData(const std::shared_ptr<DataNodes>& node) {
    if (node) node->setNodeParent(shared_from_this());
    data_ = node;
}

void RootNode::__load() {
    if (!provider) SORVANE_THROW("No file provider");
    // The text is read where it lies: a memory item in place, a file once.
    if (const auto* memory = dynamic_cast<const archive::MemoryFileProvider*>(provider.get())) {
        int64_t size = 0;
        const uint8_t* bytes = memory->view(mainFileName, size);
        archive::JsonImporter importer(reinterpret_cast<const char*>(bytes), static_cast<size_t>(size));
        fromJson(importer);
        return;
    }
    const std::string text = provider->getString(mainFileName, 0);
    archive::JsonImporter importer(text.data(), text.size());
    fromJson(importer);
}

void RootNode::save() const {
    std::string name;
    switch (storageMode) {
    case MULTIPLE_FILES: name = mainFileName; break;
    case SINGLE_FILE:
    case MEMORY_ONLY: name = "arf.json"; break;
    default: SORVANE_THROW("Unsupported storage mode");
    }
    if (!provider) SORVANE_THROW("No file provider");
    // The text goes to the store in the pieces it was written in: joined, it
    // would be held twice for a moment, the largest part of a save's peak.
    archive::StringSink sink;
    {
        archive::JsonExporter exporter(sink);
        toJson(exporter);
    }
    const std::vector<std::string> pieces = sink.takePieces();
    std::vector<archive::FileProvider::Block> blocks;
    blocks.reserve(pieces.size());
    for (const std::string& piece : pieces) blocks.push_back({piece.data(), static_cast<int64_t>(piece.size())});
    provider->createBlocks(name, blocks.data(), blocks.size());
    provider->close();
}

void RootNode::__setStorage(const std::shared_ptr<archive::FileProvider>& provider_, const std::string& mainFileName_,
                            StorageMode storageMode_) {
    provider = provider_;
    mainFileName = mainFileName_;
    storageMode = storageMode_;
    // Kept bytes are named after the other storage's files.
    rawDataCache.clear();
}

void RootNode::close() {
    if (provider) provider->close();
}

std::string RootNode::findFreeFileName(const char* uri, const char* name, int64_t id,
                                       const std::string& extension) const {
    const std::string mainBase =
        storageMode == MULTIPLE_FILES ? mainFileName.substr(0, mainFileName.find('.')) : std::string();
    return archive::findFreeFileName(provider.get(), overwrite, uri, name, id, extension, mainBase);
}

void RootNode::beginSharedRawData(bool, const char* name) {
    if (storageMode != MULTIPLE_FILES) return;
    if (sharedRawData) SORVANE_THROW("There is already a shared rawData");
    __beginSharedRawData(name);
}

void RootNode::__beginSharedRawData(const char* name) {
    sharedRawData = std::make_unique<SharedRawData>();
    sharedRawData->fileName = findFreeFileName(nullptr, name, -1, ".bin");
}

int64_t RootNode::appendSharedRawData(const void* data, int64_t size, bool embedded) {
    if (storageMode == MULTIPLE_FILES && !sharedRawData) SORVANE_THROW("There is no shared rawData");
    if (embedded) SORVANE_THROW("Embedded shared raw data is not supported");
    if (!sharedRawData) SORVANE_THROW("There is no shared rawData");
    return __appendSharedRawData(data, size);
}

int64_t RootNode::__appendSharedRawData(const void* data, int64_t size) {
    const int64_t offset = static_cast<int64_t>(sharedRawData->data.size());
    if (size > 0) {
        const auto* bytes = static_cast<const uint8_t*>(data);
        sharedRawData->data.insert(sharedRawData->data.end(), bytes, bytes + size);
    }
    return offset;
}

void RootNode::endSharedRawData() {
    if (storageMode != MULTIPLE_FILES) return;
    if (!sharedRawData) SORVANE_THROW("There is no shared rawData");
    if (sharedRawData->data.empty()) SORVANE_THROW("Shared rawData is empty");
    __endSharedRawData();
}

void RootNode::__endSharedRawData() {
    // Written straight to the file system under its own name, not through the
    // provider: documents have always been made this way.
    saveFile(sharedRawData->fileName, sharedRawData->data.data(),
             static_cast<unsigned long>(sharedRawData->data.size()));
    sharedRawData.reset();
}

} // namespace sorvane::arf
