#ifndef SORVANE_GLTF2_GLTF_H
#define SORVANE_GLTF2_GLTF_H

#include <cstdint>
#include <filesystem>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/core/Export.h"
#include "sorvane/gltf2/node/RootNode.h"
#include "sorvane/gltf2/node/StorageMode.h"
#include "sorvane/gltf2/property/Asset.h"
#include "sorvane/gltf2/property/Property.h"
#include "sorvane/gltf2/property/accessor/AccessorList.h"
#include "sorvane/gltf2/property/animation/AnimationList.h"
#include "sorvane/gltf2/property/buffer/BufferList.h"
#include "sorvane/gltf2/property/bufferview/BufferViewList.h"
#include "sorvane/gltf2/property/camera/CameraList.h"
#include "sorvane/gltf2/property/image/ImageList.h"
#include "sorvane/gltf2/property/material/MaterialList.h"
#include "sorvane/gltf2/property/mesh/MeshList.h"
#include "sorvane/gltf2/property/node/NodeList.h"
#include "sorvane/gltf2/property/sampler/SamplerList.h"
#include "sorvane/gltf2/property/scene/SceneList.h"
#include "sorvane/gltf2/property/skin/SkinList.h"
#include "sorvane/gltf2/property/texture/TextureList.h"

namespace sorvane::archive {
class FileProvider;
}

namespace sorvane::gltf2 {

namespace roots {
struct SORVANE_API BuffersKey {
    static constexpr const char* kKey = "buffers";
    static const std::shared_ptr<BufferNodes>& get(const RootNode& r) { return r.getBuffers(); }
};
struct SORVANE_API BufferViewsKey {
    static constexpr const char* kKey = "bufferViews";
    static const std::shared_ptr<BufferViewNodes>& get(const RootNode& r) { return r.getBufferViews(); }
};
struct SORVANE_API AccessorsKey {
    static constexpr const char* kKey = "accessors";
    static const std::shared_ptr<AccessorNodes>& get(const RootNode& r) { return r.getAccessors(); }
};
struct SORVANE_API ImagesKey {
    static constexpr const char* kKey = "images";
    static const std::shared_ptr<ImageNodes>& get(const RootNode& r) { return r.getImages(); }
};
struct SORVANE_API SamplersKey {
    static constexpr const char* kKey = "samplers";
    static const std::shared_ptr<SamplerNodes>& get(const RootNode& r) { return r.getSamplers(); }
};
struct SORVANE_API TexturesKey {
    static constexpr const char* kKey = "textures";
    static const std::shared_ptr<TextureNodes>& get(const RootNode& r) { return r.getTextures(); }
};
struct SORVANE_API MaterialsKey {
    static constexpr const char* kKey = "materials";
    static const std::shared_ptr<MaterialNodes>& get(const RootNode& r) { return r.getMaterials(); }
};
struct SORVANE_API CamerasKey {
    static constexpr const char* kKey = "cameras";
    static const std::shared_ptr<CameraNodes>& get(const RootNode& r) { return r.getCameras(); }
};
struct SORVANE_API MeshesKey {
    static constexpr const char* kKey = "meshes";
    static const std::shared_ptr<MeshNodes>& get(const RootNode& r) { return r.getMeshes(); }
};
struct SORVANE_API NodesKey {
    static constexpr const char* kKey = "nodes";
    static const std::shared_ptr<NodeNodes>& get(const RootNode& r) { return r.getNodes(); }
};
struct SORVANE_API AnimationsKey {
    static constexpr const char* kKey = "animations";
    static const std::shared_ptr<AnimationNodes>& get(const RootNode& r) { return r.getAnimations(); }
};
struct SORVANE_API SkinsKey {
    static constexpr const char* kKey = "skins";
    static const std::shared_ptr<SkinNodes>& get(const RootNode& r) { return r.getSkins(); }
};
struct SORVANE_API ScenesKey {
    static constexpr const char* kKey = "scenes";
    static const std::shared_ptr<SceneNodes>& get(const RootNode& r) { return r.getScenes(); }
};
struct SORVANE_API ExtensionsUsedKey {
    static constexpr const char* kKey = "extensionsUsed";
    static std::optional<std::vector<std::string>>& get(RootNode& r) { return r.getExtensionsUsed(); }
};
struct SORVANE_API ExtensionsRequiredKey {
    static constexpr const char* kKey = "extensionsRequired";
    static std::optional<std::vector<std::string>>& get(RootNode& r) { return r.getExtensionsRequired(); }
};
} // namespace roots

// One list of the top level as the Gltf object holds it: a handle on the
// list, which may be absent (it is made on the first add).
template <class ListAcc, class Key>
class SORVANE_API RootList : public Property {
public:
    using Item = typename ListAcc::Item;

    RootList() = default;
    RootList(const std::shared_ptr<RootNode>& root_, bool readOnly_) : Property(root_, readOnly_) {}

    int64_t getPropertyIndex() const override { return -1; }
    std::string getPropertyName() const override { return Key::kKey; }
    std::string getPropertyPath() const override { return Key::kKey; }
    const char* getPropertyTypeName() const override { return Item::NodeType::kListTypeName; }
    void outputRepresentation(std::ostream& out) const override { get().outputRepresentation(out); }
    bool isPropertyPresent() const { return propertyRoot && Key::get(*propertyRoot); }

    ListAcc get() const {
        if (!propertyRoot) failInvalidNode();
        return ListAcc(propertyRoot, Key::get(*propertyRoot), propertyReadOnly, Key::kKey);
    }
    ListAcc* getPtr() const { return new ListAcc(get()); }
    operator ListAcc() const { return get(); }
    struct Arrow {
        ListAcc value;
        ListAcc* operator->() { return &value; }
    };
    Arrow operator->() const { return Arrow{get()}; }

    int64_t size() const { return get().size(); }
    bool has(int64_t index) const { return get().hasByIndex(index); }
    Item getByIndex(int64_t index) const { return get().getByIndex(index); }
    Item operator[](int64_t index) const { return get().getByIndex(index); }
    void removeProperty() {
        if (!propertyRoot) failInvalidNode();
        checkWritable(Change::RemoveProperty, Key::kKey);
        propertyRoot->setNodeItem(Key::kKey, nullptr);
    }
    typename ListAcc::Iterator begin() const { return get().begin(); }
    typename ListAcc::Iterator end() const { return get().end(); }
};

// "extensionsUsed" and "extensionsRequired": names in order, duplicates kept.
template <class Key>
class SORVANE_API ExtensionNames : public Property {
public:
    ExtensionNames() = default;
    ExtensionNames(const std::shared_ptr<RootNode>& root_, bool readOnly_) : Property(root_, readOnly_) {}

    int64_t getPropertyIndex() const override { return -1; }
    std::string getPropertyName() const override { return Key::kKey; }
    std::string getPropertyPath() const override { return Key::kKey; }
    const char* getPropertyTypeName() const override { return "list"; }
    void outputRepresentation(std::ostream& out) const override {
        const auto& names = list();
        if (!names) {
            out << "null";
            return;
        }
        archive::JsonExporter exporter(out);
        exporter.addStringList(*names);
    }

    bool isPropertyPresent() const { return list().has_value(); }
    int64_t size() const { return list() ? static_cast<int64_t>(list()->size()) : 0; }
    const std::vector<std::string>& get() const {
        static const std::vector<std::string> none;
        return list() ? *list() : none;
    }
    const std::string& get(int64_t index) const {
        checkIndex(index);
        return (*list())[static_cast<size_t>(index)];
    }
    // Empties the list; it stays present.
    void clear() { writable().emplace(); }
    void set(int64_t index, const std::string& name) {
        auto& names = writable(Change::SetItem);
        checkIndex(index);
        (*names)[static_cast<size_t>(index)] = name;
    }
    // The first position of the name, -1 without it.
    int64_t find(const std::string& name) const {
        const auto& names = list();
        if (!names) return -1;
        for (size_t i = 0; i < names->size(); ++i)
            if ((*names)[i] == name) return static_cast<int64_t>(i);
        return -1;
    }
    void add(const std::string& name) {
        auto& names = writable(Change::AddValue);
        if (!names) names.emplace();
        names->push_back(name);
    }
    void removeProperty() { writable(Change::RemoveProperty).reset(); }

private:
    std::optional<std::vector<std::string>>& list() const {
        if (!propertyRoot) failInvalidNode();
        return Key::get(*propertyRoot);
    }
    std::optional<std::vector<std::string>>& writable(Change change = Change::Set) {
        auto& names = list();
        checkWritable(change, Key::kKey);
        return names;
    }
    void checkIndex(int64_t index) const {
        if (index < 0 || index >= size())
            SORVANE_THROW("In %s: Invalid index %ld", Key::kKey, static_cast<long>(index));
    }
};

// The handle of one glTF document. Copies share the document; accessors taken
// from it keep the document alive on their own.
class SORVANE_API Gltf {
public:
    // "asset": always present.
    class SORVANE_API Asset : public Property {
    public:
        Asset() = default;
        Asset(const std::shared_ptr<RootNode>& root_, bool readOnly_) : Property(root_, readOnly_) {}
        int64_t getPropertyIndex() const override { return -1; }
        std::string getPropertyName() const override { return "asset"; }
        std::string getPropertyPath() const override { return "asset"; }
        const char* getPropertyTypeName() const override { return AssetNode::kTypeName; }
        void outputRepresentation(std::ostream& out) const override { get().outputRepresentation(out); }
        bool isPropertyPresent() const { return true; }
        ::sorvane::gltf2::Asset get() const;
        ::sorvane::gltf2::Asset* getPtr() const { return new ::sorvane::gltf2::Asset(get()); }
        operator ::sorvane::gltf2::Asset() const { return get(); }
        struct Arrow {
            ::sorvane::gltf2::Asset value;
            ::sorvane::gltf2::Asset* operator->() { return &value; }
        };
        Arrow operator->() const { return Arrow{get()}; }
    };
    using ExtensionsUsed = ExtensionNames<roots::ExtensionsUsedKey>;
    using ExtensionsRequired = ExtensionNames<roots::ExtensionsRequiredKey>;
    using Buffers = RootList<BufferList, roots::BuffersKey>;
    using BufferViews = RootList<BufferViewList, roots::BufferViewsKey>;
    using Accessors = RootList<AccessorList, roots::AccessorsKey>;
    using Images = RootList<ImageList, roots::ImagesKey>;
    using Samplers = RootList<SamplerList, roots::SamplersKey>;
    using Textures = RootList<TextureList, roots::TexturesKey>;
    using Materials = RootList<MaterialList, roots::MaterialsKey>;
    using Cameras = RootList<CameraList, roots::CamerasKey>;
    using Meshes = RootList<MeshList, roots::MeshesKey>;
    using Nodes = RootList<NodeList, roots::NodesKey>;
    using Animations = RootList<AnimationList, roots::AnimationsKey>;
    using Skins = RootList<SkinList, roots::SkinsKey>;
    using Scenes = RootList<SceneList, roots::ScenesKey>;
    // "scene": the index of the default scene, checked against "scenes" when set.
    class SORVANE_API Scene : public Property {
    public:
        Scene() = default;
        Scene(const std::shared_ptr<RootNode>& root_, bool readOnly_) : Property(root_, readOnly_) {}
        int64_t getPropertyIndex() const override { return -1; }
        std::string getPropertyName() const override { return "scene"; }
        std::string getPropertyPath() const override { return "scene"; }
        const char* getPropertyTypeName() const override { return "integer"; }
        void outputRepresentation(std::ostream& out) const override;
        bool isPropertyPresent() const;
        int64_t get() const;
        void set(int64_t index);
        void removeProperty();
    };

    // A memory-only document with no provider.
    Gltf();
    Gltf(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName, StorageMode mode,
         bool readOnly);
    // A document on disk: the provider is the path's folder.
    Gltf(const std::filesystem::path& path, StorageMode mode, bool readOnly);

    void init();

    static Gltf create(const std::filesystem::path& path);
    static Gltf* createPtr(const std::filesystem::path& path);
    static Gltf load(const std::filesystem::path& path, bool readOnly = false);
    static Gltf* loadPtr(const std::filesystem::path& path, bool readOnly = false);
    static Gltf load(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
                     StorageMode mode, bool readOnly = false);
    static Gltf* loadPtr(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
                         StorageMode mode, bool readOnly = false);
    // A .glb from a stream; the document is read-only.
    static Gltf decode(std::istream& in);
    static Gltf* decodePtr(std::istream& in);

    // ".gltf" gives MULTIPLE_FILES, ".glb" SINGLE_FILE, exactly (case counts).
    static StorageMode detectStorageMode(const std::filesystem::path& path, StorageMode mode = AUTO);

    void save() const;
    void save(const std::shared_ptr<archive::FileProvider>& provider, const std::string& fileName) const;
    void close();

    void toJson(archive::JsonExporter& exporter) const;
    void fromJson(archive::JsonImporter& importer) const;
    std::string toJsonString(const archive::JsonExporter::Options& options = {}) const;

    const std::shared_ptr<RootNode>& getRoot() const { return root; }
    bool isReadOnly() const { return readOnly; }
    StorageMode getStorageMode() const { return root->getStorageMode(); }
    std::string getMainDir() const;
    std::string getMainFileName() const { return root->getMainFileName(); }
    std::shared_ptr<archive::FileProvider> getFileProvider() const { return root->getFileProvider(); }

    // Per node: 2 for a joint of any skin, 1 for a node with a mesh at or
    // below it, 0 otherwise. A joint that is also a mesh node fails.
    std::vector<int32_t> getNodeTypes() const;
    // The default scene's name, "Scene N" for one without a name, or a
    // bracketed note when there is none or it is out of range.
    std::string getSceneName() const;
    // The first mesh depth first from the default scene's nodes; the empty
    // accessor when there is none.
    ::sorvane::gltf2::Mesh getFirstMesh() const;
    ::sorvane::gltf2::Mesh* getFirstMeshPtr() const;

private:
    Gltf(std::shared_ptr<RootNode> root, bool readOnly);

    std::shared_ptr<RootNode> root;
    bool readOnly = false;

public:
    Asset asset;
    ExtensionsUsed extensionsUsed;
    ExtensionsRequired extensionsRequired;
    Buffers buffers;
    BufferViews bufferViews;
    Accessors accessors;
    Images images;
    Samplers samplers;
    Textures textures;
    Materials materials;
    Cameras cameras;
    Meshes meshes;
    Nodes nodes;
    Animations animations;
    Skins skins;
    Scenes scenes;
    Scene scene;
};

} // namespace sorvane::gltf2

#endif
