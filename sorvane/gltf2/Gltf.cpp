#include "sorvane/gltf2/Gltf.h"

#include <sstream>

#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/FileProvider.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"

namespace sorvane::gltf2 {

::sorvane::gltf2::Asset Gltf::Asset::get() const {
    if (!propertyRoot) failInvalidNode();
    return ::sorvane::gltf2::Asset(propertyRoot, propertyRoot->getAsset(), propertyReadOnly);
}

void Gltf::Scene::outputRepresentation(std::ostream& out) const {
    if (isPropertyPresent()) out << get();
    else out << "null";
}

bool Gltf::Scene::isPropertyPresent() const {
    if (!propertyRoot) failInvalidNode();
    return propertyRoot->hasScene();
}

int64_t Gltf::Scene::get() const {
    if (!propertyRoot) failInvalidNode();
    if (!propertyRoot->hasScene()) SORVANE_THROW("In %s: No %s", "", "scene");
    return propertyRoot->getScene();
}

void Gltf::Scene::set(int64_t index) {
    if (!propertyRoot) failInvalidNode();
    checkWritable(Change::Set, "scene");
    propertyRoot->setScene(index);
}

void Gltf::Scene::removeProperty() {
    if (!propertyRoot) failInvalidNode();
    checkWritable(Change::RemoveProperty, "scene");
    propertyRoot->removeScene();
}

Gltf::Gltf() : Gltf(std::make_shared<RootNode>(), false) {}

Gltf::Gltf(std::shared_ptr<RootNode> root_, bool readOnly_)
    : root(std::move(root_)), readOnly(readOnly_), asset(root, readOnly), extensionsUsed(root, readOnly),
      extensionsRequired(root, readOnly), buffers(root, readOnly), bufferViews(root, readOnly),
      accessors(root, readOnly), images(root, readOnly), samplers(root, readOnly), textures(root, readOnly),
      materials(root, readOnly), cameras(root, readOnly), meshes(root, readOnly), nodes(root, readOnly),
      animations(root, readOnly), skins(root, readOnly), scenes(root, readOnly), scene(root, readOnly) {}

Gltf::Gltf(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName, StorageMode mode,
           bool readOnly_)
    : Gltf(std::make_shared<RootNode>(provider, mainFileName, detectStorageMode(mainFileName, mode)), readOnly_) {}

Gltf::Gltf(const std::filesystem::path& path, StorageMode mode, bool readOnly_)
    : Gltf(std::make_shared<archive::DiskFileProvider>(path.parent_path().string()), path.filename().string(), mode,
           readOnly_) {}

void Gltf::init() { root->init(); }

StorageMode Gltf::detectStorageMode(const std::filesystem::path& path, StorageMode mode) {
    const std::string text = path.string();
    if (text.empty()) SORVANE_THROW("File path is empty");
    if (mode != AUTO) return mode;
    const std::string extension = getFileExtension(text);
    if (extension.empty()) SORVANE_THROW("File has no extension");
    if (extension == ".gltf") return MULTIPLE_FILES;
    if (extension == ".glb") return SINGLE_FILE;
    SORVANE_THROW("Unable to guess storage mode from extension");
}

Gltf Gltf::create(const std::filesystem::path& path) {
    Gltf gltf(path, AUTO, false);
    gltf.root->__create();
    return gltf;
}

Gltf* Gltf::createPtr(const std::filesystem::path& path) { return new Gltf(create(path)); }

Gltf Gltf::load(const std::filesystem::path& path, bool readOnly_) {
    Gltf gltf(path, AUTO, readOnly_);
    gltf.root->__load();
    return gltf;
}

Gltf* Gltf::loadPtr(const std::filesystem::path& path, bool readOnly_) { return new Gltf(load(path, readOnly_)); }

Gltf Gltf::load(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
                StorageMode mode, bool readOnly_) {
    Gltf gltf(provider, mainFileName, mode, readOnly_);
    gltf.root->__load();
    return gltf;
}

Gltf* Gltf::loadPtr(const std::shared_ptr<archive::FileProvider>& provider, const std::string& mainFileName,
                    StorageMode mode, bool readOnly_) {
    return new Gltf(load(provider, mainFileName, mode, readOnly_));
}

Gltf Gltf::decode(std::istream& in) {
    Gltf gltf(std::filesystem::path("<istream>"), SINGLE_FILE, true);
    gltf.root->__decode(in);
    return gltf;
}

Gltf* Gltf::decodePtr(std::istream& in) { return new Gltf(decode(in)); }

void Gltf::save() const { root->save(); }

void Gltf::save(const std::shared_ptr<archive::FileProvider>& provider, const std::string& fileName) const {
    root->save(provider, fileName);
}

void Gltf::close() { root->close(); }

void Gltf::toJson(archive::JsonExporter& exporter) const { root->toJson(exporter); }

void Gltf::fromJson(archive::JsonImporter& importer) const { root->fromJson(importer); }

std::string Gltf::toJsonString(const archive::JsonExporter::Options& options) const {
    return root->toJsonString(options);
}

std::string Gltf::getMainDir() const {
    const auto& provider = root->getFileProvider();
    if (!provider) SORVANE_THROW("No file provider");
    return provider->getMainDir();
}

} // namespace sorvane::gltf2
