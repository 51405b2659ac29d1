#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"
#include "sorvane/core/ErrorSlot.h"
#include "sorvane/sorvane.h"

namespace {

std::string slot() { return sorvane_errorMessage; }

// The text after the location prefix of the slot.
std::string slotMessage() {
    std::string text = slot();
    auto cut = text.find("(): ");
    return cut == std::string::npos ? text : text.substr(cut + 4);
}

template <class F, class T>
std::string textOf(F function, T* self) {
    int64_t size = 0;
    EXPECT_EQ(function(nullptr, &size, self), -1);
    std::string out(static_cast<size_t>(size), '\0');
    EXPECT_EQ(function(&out[0], &size, self), 0);
    out.resize(static_cast<size_t>(size - 1));
    return out;
}

struct Document {
    sorvane_arf_Arf* arf = nullptr;
    Document(const char* path, bool readOnly = false) {
        EXPECT_EQ(sorvane_arf_Arf_load(&arf, path, readOnly), 0) << slot();
    }
    ~Document() { sorvane_arf_Arf_delete(arf); }
};

} // namespace

TEST(ArfFlat, ValueKindsAndOptionalValues) {
    Document doc(R"(memory:{"preamble": {"authenticationFeatures": [{"publicKey": "k"}]}})");
    sorvane_arf_Preamble* preamble = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getPreamble(&preamble, doc.arf), 0);
    EXPECT_EQ(textOf(sorvane_arf_Preamble_getSignature, preamble), "MPEG-ARF-2025");

    sorvane_arf_AuthenticationFeaturesList* features = nullptr;
    ASSERT_EQ(sorvane_arf_Preamble_getAuthenticationFeatures(&features, preamble), 0);
    sorvane_arf_AuthenticationFeatures* feature = nullptr;
    ASSERT_EQ(sorvane_arf_AuthenticationFeaturesList_get(&feature, features, 0), 0);  // by index: no ids here
    bool has = true;
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_hasVoiceFeature(&has, feature), 0);
    EXPECT_FALSE(has);
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_getVoiceFeature(nullptr, &size, feature), -1);
    EXPECT_EQ(slotMessage(), "In preamble.authenticationFeatures[0]: No voiceFeature");
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_setVoiceFeature(feature, "v"), 0);
    EXPECT_EQ(textOf(sorvane_arf_AuthenticationFeatures_getVoiceFeature, feature), "v");
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_setVoiceFeature(feature, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(textOf(sorvane_arf_AuthenticationFeatures_getPropertyPath, feature), "preamble.authenticationFeatures[0]");
    EXPECT_EQ(textOf(sorvane_arf_AuthenticationFeatures_toString, feature),
              "{\n  \"publicKey\": \"k\",\n  \"voiceFeature\": \"v\"\n}");

    // After removeProperty the handle is good for _delete only.
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_removeProperty(feature), 0);
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_getPublicKey(nullptr, &size, feature), -1);
    EXPECT_EQ(slotMessage(), "Invalid node");
    EXPECT_EQ(sorvane_arf_AuthenticationFeatures_delete(feature), 0);
    EXPECT_EQ(sorvane_arf_AuthenticationFeaturesList_delete(features), 0);
    EXPECT_EQ(sorvane_arf_Preamble_delete(preamble), 0);
}

TEST(ArfFlat, NullHandlesAndOutsInFrameOrder) {
    double age = 0;
    EXPECT_EQ(sorvane_arf_Identity_getAge(&age, nullptr), -1);
    EXPECT_EQ(slot(), "identity is NULL");
    EXPECT_EQ(sorvane_arf_AssetList_getSize(nullptr, nullptr), -1);
    EXPECT_EQ(slot(), "assetList is NULL");
    EXPECT_EQ(sorvane_arf_SupportedAnimations_delete(nullptr), -1);
    EXPECT_EQ(slot(), "supportedAnimations is NULL");
    Document doc("memory:{}");
    sorvane_arf_Identity* identity = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getIdentity(&identity, doc.arf), 0);
    EXPECT_EQ(sorvane_arf_Identity_getAge(nullptr, identity), -1);
    EXPECT_EQ(slot(), "out is NULL");
    EXPECT_EQ(sorvane_arf_Arf_getIdentity(nullptr, nullptr), -1);
    EXPECT_EQ(slot(), "arf is NULL");
    bool known = false;
    EXPECT_EQ(sorvane_arf_Identity_has(&known, identity, "gender"), 0);
    EXPECT_TRUE(known);
    EXPECT_EQ(sorvane_arf_Identity_has(&known, identity, "x"), 0);
    EXPECT_FALSE(known);
    sorvane_arf_Identity_delete(identity);
}

TEST(ArfFlat, ListsIdsAndArrays) {
    Document doc(R"(memory:{"structure": {"assets": [{"name": "a", "id": 1}, {"name": "b", "id": 2}]}})");
    sorvane_arf_Structure* structure = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getStructure(&structure, doc.arf), 0);
    sorvane_arf_AssetList* assets = nullptr;
    ASSERT_EQ(sorvane_arf_Structure_getAssets(&assets, structure), 0);
    sorvane_arf_Asset* asset = nullptr;
    ASSERT_EQ(sorvane_arf_AssetList_add(&asset, assets, "c", true, 77), 0);
    int64_t id = 0;
    EXPECT_EQ(sorvane_arf_Asset_getPropertyId(&id, asset), 0);
    EXPECT_EQ(id, 3);  // autoId: the argument is ignored
    sorvane_arf_Asset_delete(asset);
    EXPECT_EQ(sorvane_arf_AssetList_add(&asset, assets, "d", false, 2), -1);
    EXPECT_EQ(slotMessage(), "Initialization of structure.assets[0]: id 2 is already used");
    ASSERT_EQ(sorvane_arf_AssetList_getByName(&asset, assets, "b"), 0);
    int64_t index = -5;
    EXPECT_EQ(sorvane_arf_AssetList_findPropertyItemIndexByName(&index, assets, "b"), 0);
    EXPECT_EQ(index, 1);

    sorvane_arf_LodList* lods = nullptr;
    ASSERT_EQ(sorvane_arf_Asset_getLods(&lods, asset), 0);
    sorvane_arf_Lod* lod = nullptr;
    ASSERT_EQ(sorvane_arf_LodList_add(&lod, lods, "l", true, 0), 0);
    int64_t count = -1;
    // An absent optional list has no values, as its size says.
    EXPECT_EQ(sorvane_arf_Lod_getMeshesItemValues(nullptr, 0, &count, lod), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(sorvane_arf_Lod_getMeshesSize(&count, lod), 0);
    EXPECT_EQ(count, 0);
    int64_t untouched[1] = {42};
    count = -1;
    EXPECT_EQ(sorvane_arf_Lod_getMeshesItemValues(untouched, sizeof untouched, &count, lod), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(untouched[0], 42);
    bool has = true;
    EXPECT_EQ(sorvane_arf_Lod_hasMeshes(&has, lod), 0);
    EXPECT_FALSE(has);
    EXPECT_EQ(sorvane_arf_Lod_setMeshesItemValues(lod, nullptr, 0), 0);
    EXPECT_EQ(sorvane_arf_Lod_getMeshesItemValues(nullptr, 0, &count, lod), 0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(sorvane_arf_Lod_getMeshesItemValues(nullptr, 0, nullptr, lod), -1);
    EXPECT_EQ(slot(), "pvalueCount is NULL");
    EXPECT_EQ(sorvane_arf_Lod_setMeshesItemValues(lod, nullptr, 2), -1);
    EXPECT_EQ(slot(), "values is NULL");
    // References are checked when they are set: there is no mesh 1.
    const int64_t ids[] = {1};
    EXPECT_EQ(sorvane_arf_Lod_setMeshesItemValues(lod, ids, 1), -1);
    EXPECT_EQ(slotMessage(), "Setting item 0 of structure.assets[2].lods[1].meshes: Invalid id 1 in components.meshes");

    sorvane_arf_Lod_delete(lod);
    sorvane_arf_LodList_delete(lods);
    sorvane_arf_Asset_delete(asset);
    sorvane_arf_AssetList_delete(assets);
    sorvane_arf_Structure_delete(structure);
}

TEST(ArfFlat, ArfFunctions) {
    sorvane_arf_Arf* arf = nullptr;
    EXPECT_EQ(sorvane_arf_Arf_create(&arf, nullptr), -1);
    EXPECT_EQ(slot(), "basic_string::_S_construct null not valid");
    EXPECT_EQ(sorvane_arf_Arf_load(&arf, "memory:", false), -1);
    EXPECT_EQ(slotMessage(), "No initial JSON");
    EXPECT_EQ(arf, nullptr);  // untouched on failure
    ASSERT_EQ(sorvane_arf_Arf_create(&arf, "memory:"), 0);
    EXPECT_EQ(textOf(sorvane_arf_Arf_getMainFileName, arf), "arf.json");
    EXPECT_EQ(textOf(sorvane_arf_Arf_getMainDir, arf), "memory:");
    sorvane_archive_FileProviderRef* provider = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getFileProvider(&provider, arf), 0);
    sorvane_arf_Arf* again = nullptr;
    EXPECT_EQ(sorvane_arf_Arf_loadProvider(&again, provider, "x", 0, false), -1);  // nothing saved yet
    EXPECT_EQ(sorvane_arf_Arf_loadProvider(&again, nullptr, "x", 0, false), -1);
    EXPECT_EQ(slot(), "instancePtr_ is NULL");
    sorvane_archive_FileProvider_delete(provider);
    EXPECT_EQ(sorvane_arf_Arf_close(arf), 0);
    EXPECT_EQ(sorvane_arf_Arf_delete(arf), 0);
}

TEST(ArfFlat, GenericValues) {
    Document doc(R"(memory:{"structure": {"protectionConfigurations": [{"schemeIdUri": "u", "value": {"a": 1}}]}})");
    sorvane_arf_Structure* structure = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getStructure(&structure, doc.arf), 0);
    sorvane_arf_ProtectionConfigurationList* list = nullptr;
    ASSERT_EQ(sorvane_arf_Structure_getProtectionConfigurations(&list, structure), 0);
    sorvane_arf_ProtectionConfiguration* config = nullptr;
    ASSERT_EQ(sorvane_arf_ProtectionConfigurationList_getByIndex(&config, list, 0), 0);
    sorvane_arf_GenericProperty* value = nullptr;
    ASSERT_EQ(sorvane_arf_ProtectionConfiguration_getValue(&value, config), 0);
    bool isObject = false;
    EXPECT_EQ(sorvane_arf_GenericProperty_isObject(&isObject, value), 0);
    EXPECT_TRUE(isObject);

    sorvane_arf_GenericProperty* text = nullptr;
    ASSERT_EQ(sorvane_arf_GenericProperty_createString(&text, "hello"), 0);
    EXPECT_EQ(sorvane_arf_GenericProperty_setByKey(value, "b", text), 0);
    EXPECT_EQ(sorvane_arf_GenericProperty_setByKey(value, "c", nullptr), -1);
    EXPECT_EQ(slot(), "value is NULL");
    sorvane_arf_GenericProperty* item = nullptr;
    ASSERT_EQ(sorvane_arf_GenericProperty_getByKey(&item, value, "a"), 0);
    int64_t number = 0;
    EXPECT_EQ(sorvane_arf_GenericProperty_getInteger(&number, item), 0);
    EXPECT_EQ(number, 1);
    EXPECT_EQ(textOf(sorvane_arf_ProtectionConfiguration_toString, config),
              "{\n  \"schemeIdUri\": \"u\",\n  \"value\": {\n    \"a\": 1,\n    \"b\": \"hello\"\n  }\n}");
    EXPECT_EQ(sorvane_arf_GenericProperty_getInteger(&number, nullptr), -1);
    EXPECT_EQ(slot(), "genericProperty is NULL");

    for (auto* handle : {item, text, value}) sorvane_arf_GenericProperty_delete(handle);
    sorvane_arf_ProtectionConfiguration_delete(config);
    sorvane_arf_ProtectionConfigurationList_delete(list);
    sorvane_arf_Structure_delete(structure);
}

TEST(ArfFlat, DataItemsAddAndRead) {
    Document doc("memory:{}");
    sorvane_arf_DataList* list = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getData(&list, doc.arf), 0);
    const uint16_t values[4] = {7, 0, 0, 9};
    const int64_t dims[1] = {4};
    sorvane_arf_Data* item = nullptr;
    ASSERT_EQ(sorvane_arf_DataList_addDense(&item, list, values, sizeof values, 5123, dims, 1, true, nullptr, "v",
                                            true, 0), 0) << slot();
    int64_t size = 0;
    ASSERT_EQ(sorvane_arf_Data_getData(&size, nullptr, 0, item), 0);
    EXPECT_EQ(size, 4 + 4 + 4 + 8);
    std::string bytes(static_cast<size_t>(size), '\0');
    ASSERT_EQ(sorvane_arf_Data_getData(&size, &bytes[0], size, item), 0);
    EXPECT_EQ(bytes.substr(12), std::string(reinterpret_cast<const char*>(values), 8));
    EXPECT_EQ(sorvane_arf_Data_getData(&size, &bytes[0], 3, item), -1);
    EXPECT_EQ(slotMessage(), "out is too small");

    sorvane_arf_Data* sparse = nullptr;
    EXPECT_EQ(sorvane_arf_DataList_addSparse(&sparse, list, values, 2, 5121, values, 2, 5123, dims, 1, 2, false,
                                             nullptr, nullptr, true, 0), -1);
    EXPECT_EQ(slotMessage().substr(slotMessage().rfind(": ") + 2), "Invalid values size 2 < 4");
    EXPECT_EQ(sorvane_arf_DataList_addDense(&sparse, list, values, 8, 5123, nullptr, 1, false, nullptr, nullptr, true,
                                            0), -1);
    EXPECT_EQ(slotMessage(), "dims is NULL");
    EXPECT_EQ(sorvane_arf_Data_getDataSize(&size, nullptr), -1);
    EXPECT_EQ(slotMessage(), "data is NULL");
    EXPECT_EQ(sorvane_arf_DataList_addDenseTensor(&sparse, list, nullptr, false, nullptr, nullptr, true, 0), -1);
    EXPECT_EQ(slotMessage(), "tensor is NULL");
    // Checks run self, then out, then the other pointers.
    int32_t dtype = 0;
    int64_t dimCount = 0;
    EXPECT_EQ(sorvane_arf_Data_getTensorData(nullptr, nullptr, nullptr, 0, nullptr, nullptr, 0, nullptr), -1);
    EXPECT_EQ(slotMessage(), "data is NULL");
    EXPECT_EQ(sorvane_arf_Data_getTensorData(nullptr, nullptr, nullptr, 0, nullptr, nullptr, 0, item), -1);
    EXPECT_EQ(slotMessage(), "out is NULL");
    EXPECT_EQ(sorvane_arf_Data_getTensorData(&size, nullptr, nullptr, 0, nullptr, nullptr, 0, item), -1);
    EXPECT_EQ(slotMessage(), "pdtype is NULL");
    EXPECT_EQ(sorvane_arf_Data_getTensorData(&size, &dtype, nullptr, 0, nullptr, nullptr, 0, item), -1);
    EXPECT_EQ(slotMessage(), "pdimCount is NULL");
    EXPECT_EQ(sorvane_arf_Data_getTensorData(&size, &dtype, nullptr, 0, &dimCount, nullptr, 0, item), 0);
    EXPECT_EQ(dimCount, 1);
    EXPECT_EQ(sorvane_arf_DataList_addDenseTensor(nullptr, nullptr, nullptr, false, nullptr, nullptr, true, 0), -1);
    EXPECT_EQ(slotMessage(), "dataList is NULL");
    EXPECT_EQ(sorvane_arf_DataList_addSparseTensor(nullptr, list, nullptr, 0, false, nullptr, nullptr, true, 0), -1);
    EXPECT_EQ(slotMessage(), "out is NULL");

    DataTree* tensor = nullptr;
    ASSERT_EQ(sorvane_arf_Data_getTensorPtr(&tensor, item), 0);
    ASSERT_EQ(sorvane_arf_DataList_addSparseTensor(&sparse, list, tensor, 0, false, nullptr, "s", true, 0), 0);
    DataTree* back = nullptr;
    ASSERT_EQ(sorvane_arf_Data_getTensorPtr(&back, sparse), 0);
    EXPECT_TRUE(*back == *tensor);
    delete back;
    delete tensor;

    const int64_t matrixDims[2] = {2, 2};
    sorvane_arf_Data* matrix = nullptr;
    ASSERT_EQ(sorvane_arf_DataList_addDense(&matrix, list, values, sizeof values, 5123, matrixDims, 2, false,
                                            nullptr, nullptr, true, 0), 0);
    DataTree* weights = nullptr;
    DataTree* columns = nullptr;
    ASSERT_EQ(sorvane_arf_Data_getColSparseTensorPtr(&weights, &columns, matrix, 0, 4, false), 0) << slot();
    EXPECT_EQ(weights->getTensorSizes(), (std::vector<long>{2, 1}));
    EXPECT_EQ(static_cast<const uint16_t*>(weights->getBuffer())[1], 9);
    EXPECT_EQ(static_cast<const int64_t*>(columns->getBuffer())[1], 1);
    delete weights;
    delete columns;
    EXPECT_EQ(sorvane_arf_Data_getColSparseTensorPtr(&weights, nullptr, matrix, 0, 4, false), -1);
    EXPECT_EQ(slotMessage(), "indices is NULL");
    sorvane_arf_Data_delete(matrix);
    sorvane_arf_Data_delete(sparse);
    sorvane_arf_Data_delete(item);
    sorvane_arf_DataList_delete(list);
}

namespace {

std::string fileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace

// A document loaded read-only refuses the flat save in every storage mode and
// leaves its storage as it was; a copy of it elsewhere is still allowed.
TEST(ArfFlat, ReadOnlyDocumentRefusesSaveInEveryMode) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / "talvex-flat-readonly-save";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const char* text = R"({"preamble": {"signature": "MPEG-ARF-2025", "version": "1.0"}})";
    struct Case {
        fs::path path;
        fs::path written;  // the file a save would touch
        std::string name;  // the main file name in the message
    };
    const Case cases[] = {
        {dir / "main" / "doc.arf", dir / "main" / "doc.arf", "doc.arf"},
        {dir / "json" / "doc.json", dir / "json" / "doc.json", "doc.json"},
        {dir / "doc.arfz", dir / "doc.arfz", "arf.json"},
        {dir / "doc.zip", dir / "doc.zip", "arf.json"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path.string());
        {
            sorvane::arf::Arf source = sorvane::arf::Arf::load(std::string("memory:") + text);
            sorvane::arf::saveArfAs(source, c.path);
        }
        const std::string before = fileBytes(c.written);
        ASSERT_FALSE(before.empty());

        Document readOnly(c.path.string().c_str(), true);
        sorvane_arf_Preamble* preamble = nullptr;
        ASSERT_EQ(sorvane_arf_Arf_getPreamble(&preamble, readOnly.arf), 0);
        EXPECT_EQ(sorvane_arf_Preamble_setVersion(preamble, "2.0"), -1);
        sorvane_arf_Preamble_delete(preamble);
        EXPECT_EQ(sorvane_arf_Arf_save(readOnly.arf), -1);
        EXPECT_EQ(slotMessage(), "Saving " + c.name + ": Forbidden, read-only document");
        EXPECT_EQ(fileBytes(c.written), before);

        // saveAs to another place writes a copy that loads writable.
        const fs::path copy = dir / ("copy-" + c.path.filename().string());
        ASSERT_EQ(sorvane_arf_Arf_saveAs(readOnly.arf, copy.string().c_str()), 0) << slot();
        Document again(copy.string().c_str());
        EXPECT_EQ(sorvane_arf_Arf_save(again.arf), 0) << slot();
    }

    // In memory as well, and the writable twin of each still saves.
    Document memory((std::string("memory:") + text).c_str(), true);
    EXPECT_EQ(sorvane_arf_Arf_save(memory.arf), -1);
    EXPECT_NE(slotMessage().find("Forbidden, read-only document"), std::string::npos);
    Document writable((dir / "main" / "doc.arf").string().c_str());
    EXPECT_EQ(sorvane_arf_Arf_save(writable.arf), 0) << slot();
    fs::remove_all(dir);
}

// The same rule for glTF documents.
TEST(ArfFlat, ReadOnlyGltfRefusesSave) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / "talvex-flat-readonly-gltf";
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path path = dir / "scene.gltf";
    sorvane_gltf2_Gltf* gltf = nullptr;
    ASSERT_EQ(sorvane_gltf2_Gltf_create(&gltf, path.string().c_str()), 0) << slot();
    ASSERT_EQ(sorvane_gltf2_Gltf_save(gltf), 0) << slot();
    sorvane_gltf2_Gltf_delete(gltf);
    const std::string before = fileBytes(path);

    ASSERT_EQ(sorvane_gltf2_Gltf_load(&gltf, path.string().c_str(), true), 0) << slot();
    EXPECT_EQ(sorvane_gltf2_Gltf_save(gltf), -1);
    EXPECT_EQ(slotMessage(), "Saving scene.gltf: Forbidden, read-only document");
    EXPECT_EQ(fileBytes(path), before);
    EXPECT_EQ(sorvane_gltf2_Gltf_saveAs(gltf, (dir / "copy.glb").string().c_str()), 0) << slot();
    sorvane_gltf2_Gltf_delete(gltf);
    fs::remove_all(dir);
}
