#include "sorvane/gltf2/node/RootNode.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <streambuf>

#include "sorvane/archive/FileProvider.h"
#include "sorvane/archive/base64.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/archive/DocumentUri.h"

namespace sorvane::gltf2 {

const char* const RootNode::kTopLevelKeys[] = {
    "asset",     "extensionsUsed", "extensionsRequired", "buffers", "bufferViews", "accessors", "images",
    "samplers",  "textures",       "materials",          "cameras", "meshes",      "nodes",     "animations",
    "skins",     "scenes",         "scene",
};

namespace {

constexpr uint32_t kGlbMagic = 0x46546C67;     // "glTF"
constexpr uint32_t kChunkJson = 0x4E4F534A;    // "JSON"
constexpr uint32_t kChunkBin = 0x004E4942;     // "BIN\0"
constexpr uint64_t kMaxChunk = 0xFFFFFFFFull;  // every length of the header is one 32-bit word

uint32_t readWord(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 | static_cast<uint32_t>(p[2]) << 16 |
           static_cast<uint32_t>(p[3]) << 24;
}

void writeWord(uint8_t* p, uint64_t v) {
    for (int i = 0; i < 4; ++i) p[i] = static_cast<uint8_t>(v >> (8 * i));
}

uint64_t roundMod4(uint64_t n) { return (n + 3) & ~uint64_t(3); }

// A read-only stream over bytes someone else owns.
class SpanBuffer : public std::streambuf {
public:
    SpanBuffer(const void* data, size_t size) {
        char* p = const_cast<char*>(static_cast<const char*>(data));
        setg(p, p, p + size);
    }

protected:
    pos_type seekoff(off_type off, std::ios_base::seekdir dir, std::ios_base::openmode) override {
        char* target = dir == std::ios_base::beg ? eback() + off : dir == std::ios_base::cur ? gptr() + off : egptr() + off;
        if (target < eback() || target > egptr()) return pos_type(off_type(-1));
        setg(eback(), target, egptr());
        return pos_type(target - eback());
    }
    pos_type seekpos(pos_type pos, std::ios_base::openmode mode) override {
        return seekoff(off_type(pos), std::ios_base::beg, mode);
    }
};

// The bytes left in a stream, when it can tell.
std::optional<uint64_t> bytesLeft(std::istream& in) {
    const std::istream::pos_type here = in.tellg();
    if (here == std::istream::pos_type(-1)) return std::nullopt;
    in.seekg(0, std::ios_base::end);
    const std::istream::pos_type end = in.tellg();
    in.seekg(here);
    if (end == std::istream::pos_type(-1) || !in) {
        in.clear();
        in.seekg(here);
        return std::nullopt;
    }
    return static_cast<uint64_t>(end - here);
}

// Reads exactly `size` bytes. A length that the stream cannot hold fails
// before anything of that size is allocated: with a known remainder at once,
// otherwise after reading what there is in bounded steps.
template <class Bytes>
bool readExactly(std::istream& in, uint64_t size, Bytes& out) {
    out.clear();
    const std::optional<uint64_t> left = bytesLeft(in);
    if (left && size > *left) return false;
    constexpr uint64_t kStep = uint64_t(1) << 24;
    uint64_t done = 0;
    while (done < size) {
        const uint64_t step = left ? size - done : std::min(kStep, size - done);
        out.resize(static_cast<size_t>(done + step));
        in.read(reinterpret_cast<char*>(&out[static_cast<size_t>(done)]), static_cast<std::streamsize>(step));
        if (static_cast<uint64_t>(in.gcount()) != step) return false;
        done += step;
    }
    return true;
}

bool readWords(std::istream& in, uint32_t* words, int count) {
    uint8_t bytes[12];
    in.read(reinterpret_cast<char*>(bytes), 4 * count);
    if (in.gcount() != 4 * count) return false;
    for (int i = 0; i < count; ++i) words[i] = readWord(bytes + 4 * i);
    return true;
}

// Reads a .glb up to the BIN chunk's data: the header, the JSON chunk into
// the root, and the BIN chunk's header. Returns the BIN chunk's length.
uint32_t decodeHead(RootNode& root, std::istream& in) {
    const std::string fileName = root.getMainFileName();
    const char* file = fileName.c_str();
    uint32_t header[3] = {0, 0, 0};
    const bool haveHeader = readWords(in, header, 3);
    if (!haveHeader || header[0] != kGlbMagic) SORVANE_THROW("Reading %s: Invalid header: not a glb file", file);
    if (header[1] != 2) SORVANE_THROW("Reading %s: Invalid header: not version 2.0", file);
    // header[2], the total length, is not needed: each chunk carries its own.
    uint32_t chunk[2] = {0, 0};
    if (!readWords(in, chunk, 2) || chunk[1] != kChunkJson)
        SORVANE_THROW("Reading %s: Invalid first chunk: expect a JSON chunk", file);
    std::string json;
    if (!readExactly(in, chunk[0], json))
        SORVANE_THROW("Reading %s: Error read %ld bytes in first chunk", file, static_cast<long>(chunk[0]));
    {
        archive::JsonImporter importer(json.data(), json.size());
        root.fromJson(importer);
    }
    // A file that ends here keeps the old type word, so it fails as a wrong chunk.
    readWords(in, chunk, 2);
    if (chunk[1] != kChunkBin) SORVANE_THROW("Reading %s: Invalid second chunk: expect a BIN chunk", file);
    return chunk[0];
}

} // namespace

RootNode::RootNode() = default;

RootNode::RootNode(const std::shared_ptr<archive::FileProvider>& provider_, const std::string& mainFileName_,
                   StorageMode storageMode_)
    : fileProvider(provider_), mainFileName(mainFileName_), storageMode(storageMode_) {
    if (storageMode == AUTO) SORVANE_THROW("Invalid storage mode");
    if (mainFileName.empty() && storageMode != MEMORY_ONLY) SORVANE_THROW("Empty file name");
}

RootNode::~RootNode() = default;

const char* RootNode::getNodeTypeName() const { return "root"; }
int64_t RootNode::getNodeIndex() const { return -1; }
std::string RootNode::getNodeName() const { return std::string(); }
std::string RootNode::getNodePath() const { return std::string(); }

AbstractNode::ConstRef RootNode::getNodeItem(const std::string& key) const {
    return const_cast<RootNode*>(this)->getNodeItem(key);
}

AbstractNode::Ref RootNode::getNodeItem(const std::string& key) {
    // A top-level list this model does not hold yet reads as absent.
    if (!findChildField(key) && key != "scene" && key != "extensionsUsed" && key != "extensionsRequired")
        for (const char* k : kTopLevelKeys)
            if (key == k) return Ref();
    return RecordNode::getNodeItem(key);
}

RecordFields RootNode::getRecordFields() const {
    // Writing order of the top level; the lists of later families slot in
    // between "accessors" and "scene".
    static constexpr RecordField fields[] = {
        recordField<&RootNode::asset_>("asset"),
        recordField<&RootNode::extensionsUsed_>("extensionsUsed"),
        recordField<&RootNode::extensionsRequired_>("extensionsRequired"),
        recordField<&RootNode::buffers_>("buffers"),
        recordField<&RootNode::bufferViews_>("bufferViews"),
        recordField<&RootNode::accessors_>("accessors"),
        recordField<&RootNode::images_>("images"),
        recordField<&RootNode::samplers_>("samplers"),
        recordField<&RootNode::textures_>("textures"),
        recordField<&RootNode::materials_>("materials"),
        recordField<&RootNode::cameras_>("cameras"),
        recordField<&RootNode::meshes_>("meshes"),
        recordField<&RootNode::nodes_>("nodes"),
        recordField<&RootNode::animations_>("animations"),
        recordField<&RootNode::skins_>("skins"),
        recordField<&RootNode::scenes_>("scenes"),
        recordField<&RootNode::scene_>("scene"),
    };
    return {fields, fields + sizeof fields / sizeof fields[0]};
}

void RootNode::incompleteInit() {
    asset_ = std::make_shared<AssetNode>(shared_from_this());
    asset_->incompleteInit();
    scene_.reset();
    extensionsUsed_.reset();
    extensionsRequired_.reset();
    buffers_.reset();
    bufferViews_.reset();
    accessors_.reset();
    images_.reset();
    samplers_.reset();
    textures_.reset();
    materials_.reset();
    cameras_.reset();
    meshes_.reset();
    nodes_.reset();
    animations_.reset();
    skins_.reset();
    scenes_.reset();
}

void RootNode::init() {
    incompleteInit();
    asset_->init(nullptr);
}

int64_t RootNode::getScene() const {
    if (!scene_) failNoValue("scene");
    return *scene_;
}

void RootNode::setScene(int64_t index) {
    if (scene_ && *scene_ == index) return;
    // Checked here: the shared check reaches the list through the node's
    // root, which the root itself does not hold.
    if (!scenes_) SORVANE_THROW("There is no scenes in %s", getNodePath().c_str());
    if (index < 0 || index >= scenes_->getNodeSize())
        SORVANE_THROW("Setting %s.scene: Invalid index %ld in %s", getNodePath().c_str(), static_cast<long>(index),
                      scenes_->getNodePath().c_str());
    scene_ = index;
}

void RootNode::setAsset(const std::shared_ptr<AssetNode>& node) {
    if (node) node->setNodeParent(shared_from_this());
    asset_ = node;
}

void RootNode::setBuffers(const std::shared_ptr<BufferNodes>& node) {
    if (node) node->setNodeParent(shared_from_this());
    buffers_ = node;
}

void RootNode::setBufferViews(const std::shared_ptr<BufferViewNodes>& node) {
    if (node) node->setNodeParent(shared_from_this());
    bufferViews_ = node;
}

void RootNode::setAccessors(const std::shared_ptr<AccessorNodes>& node) {
    if (node) node->setNodeParent(shared_from_this());
    accessors_ = node;
}

void RootNode::setAnimations(const std::shared_ptr<AnimationNodes>& node) {
    if (node) node->setNodeParent(shared_from_this());
    animations_ = node;
}

BufferNodes& RootNode::buffers() {
    if (!buffers_) buffers_ = std::make_shared<BufferNodes>(shared_from_this());
    return *buffers_;
}

BufferViewNodes& RootNode::bufferViews() {
    if (!bufferViews_) bufferViews_ = std::make_shared<BufferViewNodes>(shared_from_this());
    return *bufferViews_;
}

AccessorNodes& RootNode::accessors() {
    if (!accessors_) accessors_ = std::make_shared<AccessorNodes>(shared_from_this());
    return *accessors_;
}

AnimationNodes& RootNode::animations() {
    if (!animations_) animations_ = std::make_shared<AnimationNodes>(shared_from_this());
    return *animations_;
}

void RootNode::__create() {
    init();
    switch (storageMode) {
    case MULTIPLE_FILES: break;
    case SINGLE_FILE: __beginSharedBuffer(true, nullptr); break;
    default: SORVANE_THROW("Unsupported storage mode");
    }
}

namespace {

// The parts of a .glb in the provider when its words are consistent: the
// JSON chunk, and the BIN chunk's offset and length. False when they are not.
bool glbLayout(const archive::FileProvider& provider, const std::string& name, std::string& json, int64_t& binOffset,
               uint32_t& binLength) {
    const int64_t size = provider.getDataSize(name);
    if (size < 20) return false;
    uint8_t head[20];
    provider.getRange(head, 20, name, 0);
    if (readWord(head) != kGlbMagic || readWord(head + 4) != 2 || readWord(head + 16) != kChunkJson) return false;
    const int64_t jsonLength = readWord(head + 12);
    if (jsonLength + 28 > size) return false;
    uint8_t binHead[8];
    provider.getRange(binHead, 8, name, 20 + jsonLength);
    if (readWord(binHead + 4) != kChunkBin) return false;
    binLength = readWord(binHead);
    binOffset = 28 + jsonLength;
    if (binOffset + static_cast<int64_t>(binLength) > size) return false;
    json.resize(static_cast<size_t>(jsonLength));
    provider.getRange(json.data(), jsonLength, name, 20);
    return true;
}

bool loadChunks(RootNode& root) {
    const archive::FileProvider& provider = *root.getFileProvider();
    const std::string name = root.getMainFileName();
    std::string json;
    int64_t binOffset = 0;
    uint32_t binLength = 0;
    if (!glbLayout(provider, name, json, binOffset, binLength)) return false;
    {
        archive::JsonImporter importer(json.data(), json.size());
        root.fromJson(importer);
    }
    if (!root.getBuffers()) SORVANE_THROW("No buffers");
    if (!root.getBuffers()->hasNodeItem(int64_t(0))) SORVANE_THROW("Invalid buffer id %ld", 0L);
    // Not zero-filled: the file's bytes land straight in their final place.
    ByteVector data(binLength);
    if (binLength > 0) provider.getRange(data.data(), binLength, name, binOffset);
    root.__setSharedBuffer(0, std::move(data));
    return true;
}

} // namespace

void RootNode::__load() {
    if (!fileProvider) SORVANE_THROW("No file provider");
    switch (storageMode) {
    case SINGLE_FILE: {
        // A well-formed file is read in its parts, the BIN chunk straight into
        // the shared buffer; anything else goes the whole-file way, which
        // gives the reasons.
        if (!loadChunks(*this)) {
            const std::vector<uint8_t> bytes = fileProvider->getBytes(mainFileName, 0);
            __decode(bytes.data(), bytes.size());
        }
        break;
    }
    case MULTIPLE_FILES: {
        const std::string text = fileProvider->getString(mainFileName, 0);
        archive::JsonImporter importer(text.data(), text.size());
        fromJson(importer);
        break;
    }
    default: SORVANE_THROW("Unsupported storage mode");
    }
}

void RootNode::__decode(const void* data, size_t size) {
    SpanBuffer buffer(data, size);
    std::istream in(&buffer);
    __decode(in);
}

void RootNode::__decode(std::istream& in) {
    const uint32_t binLength = decodeHead(*this, in);
    __setSharedBuffer(0, in, binLength);
}

void RootNode::__setSharedBuffer(int64_t bufferIndex, std::istream& in, int64_t size) {
    if (!buffers_) SORVANE_THROW("No buffers");
    if (!buffers_->hasNodeItem(bufferIndex)) SORVANE_THROW("Invalid buffer id %ld", static_cast<long>(bufferIndex));
    ByteVector data;
    if (size < 0 || !readExactly(in, static_cast<uint64_t>(size), data)) SORVANE_THROW("Error reading stream");
    __setSharedBuffer(bufferIndex, std::move(data));
}

void RootNode::__setSharedBuffer(int64_t bufferIndex, ByteVector&& data) {
    if (!buffers_) SORVANE_THROW("No buffers");
    if (!buffers_->hasNodeItem(bufferIndex)) SORVANE_THROW("Invalid buffer id %ld", static_cast<long>(bufferIndex));
    sharedBuffer = std::make_unique<SharedBuffer>();
    sharedBuffer->bufferIndex = bufferIndex;
    sharedBuffer->data = std::move(data);
    sharedBuffer->embedded = true;
}

std::string RootNode::toJsonText(bool compact) const {
    std::ostringstream out;
    {
        archive::JsonExporter::Options options;
        options.compact = compact;
        archive::JsonExporter exporter(out, options);
        toJson(exporter);
    }
    return out.str();
}

void RootNode::save() const { save(fileProvider, mainFileName); }

void RootNode::save(const std::shared_ptr<archive::FileProvider>& provider, const std::string& fileName) const {
    if (!provider) SORVANE_THROW("No file provider");
    const char* file = fileName.c_str();
    switch (storageMode) {
    case MULTIPLE_FILES: provider->create(fileName, toJsonText(false)); return;
    case SINGLE_FILE: break;
    default: SORVANE_THROW("Unsupported storage mode");
    }
    if (!sharedBuffer) SORVANE_THROW("Can't save %s:\nThere is no shared buffer", file);
    const std::string json = toJsonText(true);
    const uint64_t jsonLength = roundMod4(json.size());
    if (jsonLength > kMaxChunk) SORVANE_THROW("Can't save %s:\nJson data is too large (more than 4GB)", file);
    const ByteVector& bin = sharedBuffer->data;
    const uint64_t binLength = roundMod4(bin.size());
    if (binLength > kMaxChunk) SORVANE_THROW("Can't save %s:\nBinary data is too large (more than 4GB)", file);
    const uint64_t total = jsonLength + binLength + 28;
    if (total > kMaxChunk) SORVANE_THROW("Can't save %s:\nTotal length is too large (more than 4GB)", file);

    // Laid down as blocks: the BIN chunk goes from the shared buffer to the
    // store in one copy, with no whole-file block in between.
    uint8_t head[20];
    writeWord(head, kGlbMagic);
    writeWord(head + 4, 2);
    writeWord(head + 8, total);
    writeWord(head + 12, jsonLength);
    writeWord(head + 16, kChunkJson);
    static const char kSpaces[4] = {0x20, 0x20, 0x20, 0x20};
    static const uint8_t kZeros[4] = {0, 0, 0, 0};
    uint8_t binHead[8];
    writeWord(binHead, binLength);
    writeWord(binHead + 4, kChunkBin);
    const archive::FileProvider::Block blocks[] = {
        {head, 20},
        {json.data(), static_cast<int64_t>(json.size())},
        {kSpaces, static_cast<int64_t>(jsonLength - json.size())},
        {binHead, 8},
        {bin.data(), static_cast<int64_t>(bin.size())},
        {kZeros, static_cast<int64_t>(binLength - bin.size())},
    };
    provider->createBlocks(fileName, blocks, sizeof blocks / sizeof blocks[0]);
}

void RootNode::close() {
    if (fileProvider) fileProvider->close();
}

std::string RootNode::findFreeFileName(const char* uri, const char* name, int64_t index,
                                       const std::string& extension) const {
    const std::string mainBase =
        storageMode == MULTIPLE_FILES ? mainFileName.substr(0, mainFileName.find('.')) : std::string();
    return archive::findFreeFileName(fileProvider.get(), overwriteFiles, uri, name, index, extension, mainBase);
}

int64_t RootNode::beginSharedBuffer(bool embedded, const char* name) {
    if (storageMode == SINGLE_FILE) return sharedBuffer ? sharedBuffer->bufferIndex : -1;
    if (sharedBuffer) SORVANE_THROW("There is already a shared buffer");
    return __beginSharedBuffer(embedded, name);
}

int64_t RootNode::__beginSharedBuffer(bool embedded, const char* name) {
    BufferNodes& list = buffers();
    auto node = std::make_shared<BufferNode>(buffers_);
    node->init(0, name);
    list.add(node);
    sharedBuffer = std::make_unique<SharedBuffer>();
    sharedBuffer->bufferIndex = list.getNodeSize() - 1;
    sharedBuffer->embedded = embedded;
    return sharedBuffer->bufferIndex;
}

int64_t RootNode::appendSharedBuffer(const void* data, int64_t valueCount, int64_t valueSize, bool) {
    if (!sharedBuffer) SORVANE_THROW("There is no shared buffer");
    if (valueSize < 1 || valueCount < 0) SORVANE_THROW("Invalid value size %ld or count %ld",
                                                       static_cast<long>(valueSize), static_cast<long>(valueCount));
    ByteVector& bytes = sharedBuffer->data;
    // Each value starts at a multiple of its own size.
    const size_t padded = (bytes.size() + valueSize - 1) / valueSize * valueSize;
    const size_t size = static_cast<size_t>(valueCount * valueSize);
    // Grown by doubling: an exact reserve per add would copy the whole buffer
    // at every add, quadratic over a document of many accessors.
    if (bytes.capacity() < padded + size) bytes.reserve(std::max(bytes.capacity() * 2, padded + size));
    // The padding is written as zeros (the buffer's own growth leaves bytes unset).
    bytes.resize(padded, 0);
    const size_t offset = bytes.size();
    bytes.insert(bytes.end(), static_cast<const uint8_t*>(data), static_cast<const uint8_t*>(data) + size);
    if (buffers_ && buffers_->hasNodeItem(sharedBuffer->bufferIndex))
        buffers_->getByIndex(sharedBuffer->bufferIndex)->setByteLength(static_cast<int64_t>(bytes.size()));
    return static_cast<int64_t>(offset);
}

void RootNode::endSharedBuffer() {
    if (storageMode == SINGLE_FILE) return;
    if (!sharedBuffer) SORVANE_THROW("There is no shared buffer");
    __endSharedBuffer();
}

void RootNode::__endSharedBuffer() {
    const ByteVector& bytes = sharedBuffer->data;
    if (bytes.empty()) SORVANE_THROW("Shared buffer is empty");
    const std::shared_ptr<BufferNode>& node = buffers().getByIndex(sharedBuffer->bufferIndex);
    node->setByteLength(static_cast<int64_t>(bytes.size()));
    if (sharedBuffer->embedded) {
        node->setUri(archive::makeDataUri("application/octet-stream", bytes.data(), static_cast<int64_t>(bytes.size())));
    } else {
        const std::string name = node->hasName() ? node->getName() : std::string();
        const std::string fileName = node->hasName() ? findFreeFileName(nullptr, name.c_str(), -1, ".bin")
                                                     : findFreeFileName(nullptr, "buffer", buffers().getNodeSize(), ".bin");
        if (!fileProvider) SORVANE_THROW("No file provider");
        fileProvider->create(fileName, bytes.data(), static_cast<int64_t>(bytes.size()));
        node->setUri(fileName);
    }
    sharedBuffer.reset();
}

} // namespace sorvane::gltf2
