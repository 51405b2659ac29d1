#ifndef SORVANE_ARF_ARF_H
#define SORVANE_ARF_ARF_H

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>
#include <string>
#include <string_view>

#include "sorvane/archive/JsonExporter.h"
#include "sorvane/archive/JsonImporter.h"
#include "sorvane/arf/SectionProperty.h"
#include "sorvane/arf/node/RootNode.h"
#include "sorvane/arf/node/StorageMode.h"
#include "sorvane/arf/property/Components.h"
#include "sorvane/arf/property/Identity.h"
#include "sorvane/arf/property/Preamble.h"
#include "sorvane/arf/property/Structure.h"
#include "sorvane/arf/property/data/DataList.h"
#include "sorvane/core/Export.h"

namespace sorvane::archive {
class FileProvider;
}

namespace sorvane::arf {

namespace sections {
struct SORVANE_API PreambleSection {
    static constexpr const char* kKey = "preamble";
    static std::shared_ptr<PreambleNode> get(const RootNode& r) { return r.getPreamble(); }
    static void set(RootNode& r, const std::shared_ptr<PreambleNode>& n) { r.setPreamble(n); }
    static void init(PreambleNode& n) { n.init(nullptr, nullptr); }
};
struct SORVANE_API IdentitySection {
    static constexpr const char* kKey = "identity";
    static std::shared_ptr<IdentityNode> get(const RootNode& r) { return r.getIdentity(); }
    static void set(RootNode& r, const std::shared_ptr<IdentityNode>& n) { r.setIdentity(n); }
    static void init(IdentityNode& n) { n.init(nullptr, nullptr, std::nullopt, nullptr); }
};
struct SORVANE_API StructureSection {
    static constexpr const char* kKey = "structure";
    static std::shared_ptr<StructureNode> get(const RootNode& r) { return r.getStructure(); }
    static void set(RootNode& r, const std::shared_ptr<StructureNode>& n) { r.setStructure(n); }
    static void init(StructureNode& n) { n.init(); }
};
struct SORVANE_API ComponentsSection {
    static constexpr const char* kKey = "components";
    static std::shared_ptr<ComponentsNode> get(const RootNode& r) { return r.getComponents(); }
    static void set(RootNode& r, const std::shared_ptr<ComponentsNode>& n) { r.setComponents(n); }
    static void init(ComponentsNode& n) { n.init(); }
};
struct SORVANE_API DataSection {
    static constexpr const char* kKey = "data";
    static std::shared_ptr<DataNodes> get(const RootNode& r) { return r.getData(); }
    static void set(RootNode& r, const std::shared_ptr<DataNodes>& n) { r.setData(n); }
    static void init(DataNodes&) {}
};
} // namespace sections

// The "data" section as the Arf object holds it, with the payload-adding
// operations of the data list.
class SORVANE_API DataSectionProperty : public SectionProperty<DataList, sections::DataSection> {
public:
    using SectionProperty::SectionProperty;

    template <class... A>
    Data add(A&&... args) { return get().add(std::forward<A>(args)...); }
    template <class... A>
    Data* addPtr(A&&... args) { return get().addPtr(std::forward<A>(args)...); }
    Data addDense(const void* buffer, int64_t size, DataDType dtype, const std::vector<long>& sizes,
                  bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                  std::optional<int64_t> id = std::nullopt) {
        return get().addDense(buffer, size, dtype, sizes, embedded, uri, name, id);
    }
    Data* addDensePtr(const void* buffer, int64_t size, DataDType dtype, const std::vector<long>& sizes,
                      bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                      std::optional<int64_t> id = std::nullopt) {
        return new Data(addDense(buffer, size, dtype, sizes, embedded, uri, name, id));
    }
    Data addDenseTensor(const DataTree& tensor, bool embedded = false, const char* uri = nullptr,
                        const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return get().addDenseTensor(tensor, embedded, uri, name, id);
    }
    Data* addDenseTensorPtr(const DataTree& tensor, bool embedded = false, const char* uri = nullptr,
                            const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return new Data(addDenseTensor(tensor, embedded, uri, name, id));
    }
    Data addSparse(const void* indices, int64_t indicesSize, DataIType itype, const void* values, int64_t valuesSize,
                   DataDType dtype, const std::vector<long>& sizes, int64_t count, bool embedded = false,
                   const char* uri = nullptr, const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return get().addSparse(indices, indicesSize, itype, values, valuesSize, dtype, sizes, count, embedded, uri,
                               name, id);
    }
    Data* addSparsePtr(const void* indices, int64_t indicesSize, DataIType itype, const void* values,
                       int64_t valuesSize, DataDType dtype, const std::vector<long>& sizes, int64_t count,
                       bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                       std::optional<int64_t> id = std::nullopt) {
        return new Data(
            addSparse(indices, indicesSize, itype, values, valuesSize, dtype, sizes, count, embedded, uri, name, id));
    }
    Data addSparseFromDense(const void* buffer, int64_t valueCount, DataDType dtype, const std::vector<long>& sizes,
                            DataIType itype = DATA_ITYPE_NONE, bool embedded = false, const char* uri = nullptr,
                            const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return get().addSparseFromDense(buffer, valueCount, dtype, sizes, itype, embedded, uri, name, id);
    }
    Data* addSparseFromDensePtr(const void* buffer, int64_t valueCount, DataDType dtype,
                                const std::vector<long>& sizes, DataIType itype = DATA_ITYPE_NONE,
                                bool embedded = false, const char* uri = nullptr, const char* name = nullptr,
                                std::optional<int64_t> id = std::nullopt) {
        return new Data(addSparseFromDense(buffer, valueCount, dtype, sizes, itype, embedded, uri, name, id));
    }
    Data addSparseTensor(const DataTree& tensor, DataIType itype = DATA_ITYPE_NONE, bool embedded = false,
                         const char* uri = nullptr, const char* name = nullptr,
                         std::optional<int64_t> id = std::nullopt) {
        return get().addSparseTensor(tensor, itype, embedded, uri, name, id);
    }
    Data* addSparseTensorPtr(const DataTree& tensor, DataIType itype = DATA_ITYPE_NONE, bool embedded = false,
                             const char* uri = nullptr, const char* name = nullptr,
                             std::optional<int64_t> id = std::nullopt) {
        return new Data(addSparseTensor(tensor, itype, embedded, uri, name, id));
    }
    template <class Source>
    Data addGlb(const char* uri, const Source& source, const char* name = nullptr,
                std::optional<int64_t> id = std::nullopt) {
        return get().addGlb(uri, source, name, id);
    }
    template <class Source>
    Data* addGlbPtr(const char* uri, const Source& source, const char* name = nullptr,
                    std::optional<int64_t> id = std::nullopt) {
        return new Data(addGlb(uri, source, name, id));
    }
    Data addContent(const void* content, int64_t size, bool embedded, const char* type, const char* uri = nullptr,
                    const char* name = nullptr, std::optional<int64_t> id = std::nullopt) {
        return get().addContent(content, size, embedded, type, uri, name, id);
    }
};

class Arf;
// See ArfCopy.h.
SORVANE_API Arf saveArfAs(Arf&& source, const std::filesystem::path& path);

// The handle of one ARF document. Copies share the document; accessors taken
// from it keep the document alive on their own.
class SORVANE_API Arf {
public:
    using Preamble = SectionProperty<::sorvane::arf::Preamble, sections::PreambleSection>;
    using Identity = SectionProperty<::sorvane::arf::Identity, sections::IdentitySection>;
    using Structure = SectionProperty<::sorvane::arf::Structure, sections::StructureSection>;
    using Components = SectionProperty<::sorvane::arf::Components, sections::ComponentsSection>;
    using Data = DataSectionProperty;

    // A document with no storage, in memory, not loaded.
    Arf();
    // A document over a provider; nothing is read.
    Arf(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName, StorageMode mode,
        bool readOnly);

    void init();

    static Arf create(const std::filesystem::path& path);
    static Arf* createPtr(const std::filesystem::path& path);
    static Arf load(const std::filesystem::path& path, bool readOnly = false);
    static Arf* loadPtr(const std::filesystem::path& path, bool readOnly = false);
    // The same for paths given as text: "memory:" text is then taken where it
    // lies, without the copy and the splitting at every '/' of a path object.
    static Arf create(const std::string& path);
    static Arf create(const char* path);
    static Arf* createPtr(const std::string& path);
    static Arf* createPtr(const char* path);
    static Arf load(const std::string& path, bool readOnly = false);
    static Arf load(const char* path, bool readOnly = false);
    static Arf* loadPtr(const std::string& path, bool readOnly = false);
    static Arf* loadPtr(const char* path, bool readOnly = false);
    static Arf load(const std::shared_ptr<archive::FileProvider>& provider, const std::string& name, StorageMode mode,
                    bool readOnly = false);
    static Arf* loadPtr(const std::shared_ptr<archive::FileProvider>& provider, const std::string& name,
                        StorageMode mode, bool readOnly = false);

    // The storage mode of a path: "memory:" text, .arf/.json main file, .arfz/.zip archive.
    static StorageMode detectStorageMode(const std::filesystem::path& path, StorageMode mode = AUTO);

    void save() const;
    void close();

    void toJson(archive::JsonExporter& exporter) const;
    void fromJson(archive::JsonImporter& importer) const;
    std::string toJsonString(const archive::JsonExporter::Options& options = {}) const;

    const std::shared_ptr<RootNode>& getRoot() const { return root; }
    bool isReadOnly() const { return readOnly; }
    StorageMode getStorageMode() const;
    std::string getMainDir() const;
    std::string getMainFileName() const;
    std::shared_ptr<archive::FileProvider> getFileProvider() const;

private:
    friend Arf saveArfAs(Arf&& source, const std::filesystem::path& path);
    explicit Arf(std::shared_ptr<RootNode> root, bool readOnly);
    static Arf fromPath(const std::filesystem::path& path, bool load, bool readOnly);
    static Arf fromText(std::string_view path, bool load, bool readOnly);
    static Arf fromMemory(std::string_view text, bool load, bool readOnly);

    std::shared_ptr<RootNode> root;
    bool readOnly = false;

public:
    Preamble preamble;
    Identity identity;
    Structure structure;
    Components components;
    Data data;
};

} // namespace sorvane::arf

#endif
