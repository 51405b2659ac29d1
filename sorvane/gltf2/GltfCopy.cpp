#include "sorvane/gltf2/GltfCopy.h"

#include <string>
#include <vector>

#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/RootNode.h"

namespace sorvane::gltf2 {

Gltf saveGltfAs(const Gltf& source, const std::filesystem::path& path) {
    // Everything is read before anything is written, so a bad buffer leaves
    // no half-written document, and a copy onto the source's own files works.
    const int64_t bufferCount = source.buffers.size();
    std::vector<std::string> bytes;
    bytes.reserve(static_cast<size_t>(bufferCount));
    for (int64_t i = 0; i < bufferCount; ++i) bytes.push_back(source.buffers.getByIndex(i).getString(0, -1, 1, -1));
    const std::string text = source.toJsonString();

    Gltf target = Gltf::create(path);
    RootNode& root = *target.getRoot();
    {
        archive::JsonImporter importer(text.data(), text.size());
        root.fromJson(importer);
    }
    const bool binary = target.getStorageMode() == SINGLE_FILE;
    size_t total = 0;
    for (const std::string& b : bytes) total += b.size();
    root.setBuffers(nullptr);
    std::vector<int64_t> base;
    int64_t shared = -1;
    if (binary) {
        shared = root.__beginSharedBuffer(true, nullptr);
    } else if (total > 0) {
        shared = root.beginSharedBuffer(false, nullptr);
    } else if (bufferCount > 0) {
        // A text document cannot write an empty .bin: one empty buffer stands for all.
        BufferNodes& list = root.buffers();
        auto node = std::make_shared<BufferNode>(root.getBuffers());
        node->init(0, nullptr);
        list.add(node);
        shared = 0;
    }
    for (const std::string& b : bytes) {
        if (total == 0) {
            base.push_back(0);
            continue;
        }
        root.appendSharedBuffer(nullptr, 0, 4, false);
        base.push_back(root.appendSharedBuffer(b.data(), static_cast<int64_t>(b.size()), 1, false));
    }

    if (const auto& views = root.getBufferViews()) {
        for (int64_t i = 0; i < views->getNodeSize(); ++i) {
            BufferViewNode& view = *views->getByIndex(i);
            const int64_t buffer = view.getBuffer();
            if (buffer < 0 || buffer >= bufferCount)
                SORVANE_THROW("bufferViews[%ld]: no buffer %ld", static_cast<long>(i), static_cast<long>(buffer));
            view.setBuffer(shared);
            const int64_t offset = base[static_cast<size_t>(buffer)] + (view.hasByteOffset() ? view.getByteOffset() : 0);
            // An offset the source left out stays out while it is still 0.
            if (view.hasByteOffset() || offset != 0) view.setByteOffset(offset);
        }
    }
    if (!binary && total > 0) root.endSharedBuffer();
    target.save();
    return target;
}

} // namespace sorvane::gltf2
