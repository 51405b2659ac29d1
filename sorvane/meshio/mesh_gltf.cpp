#include "sorvane/meshio/mesh_gltf.h"

#include <cstdint>
#include <iostream>
#include <optional>
#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/meshio/faces2triangles.h"

namespace sorvane {

namespace {

// Deeper node trees are refused rather than walked on the stack.
constexpr int kMaxNodeDepth = 256;

const DataTree* findItem(const DataTree& mesh, const char* key) {
    return mesh.hasItem(key) ? &mesh.getItem(key) : nullptr;
}

// The triangles of a face tensor (3 or 4 corners, a negative fourth ends a
// quad early) as 32-bit indices.
std::vector<uint32_t> triangleIndices(const DataTree& faces, const char* key) {
    if (!faces.isTensor()) SORVANE_THROW("%s are not a tensor", key);
    if (faces.getScalarType() != ScalarType::Integer64)
        SORVANE_THROW("Failed faces.getScalarType() == ScalarType::Integer64");
    if (faces.getTensorDim() != 2) SORVANE_THROW("%s have not 2 dimensions", key);
    const long faceCount = faces.getTensorSize(0);
    const long edgeCount = faces.getTensorSize(1);
    const long* data = faces.getData<long>();
    const long count = faces2triangles_int64_cpu(nullptr, 0, data, 1, faceCount, edgeCount);
    std::vector<long> triangles(static_cast<size_t>(count) * 3);
    faces2triangles_int64_cpu(triangles.data(), count, data, 1, faceCount, edgeCount);
    std::vector<uint32_t> indices(triangles.size());
    for (size_t i = 0; i < triangles.size(); ++i) {
        if (triangles[i] < 0 || triangles[i] > 0xFFFFFFFFL) SORVANE_THROW("Only unsigned 32-bit value can be handled");
        indices[i] = static_cast<uint32_t>(triangles[i]);
    }
    return indices;
}

DataTree tensorOf(const gltf2::Gltf& gltf, int64_t accessor, ScalarType type) {
    DataTree tensor = gltf.accessors.getByIndex(accessor).getTensor();
    if (tensor.getScalarType() != type) tensor.convertScalarType(type);
    return tensor;
}

// Keyed values in a tensor: its first size (a scalar counts as one).
long elementCount(const DataTree& tensor) {
    return tensor.getTensorDim() > 0 ? tensor.getTensorSize(0) : 1;
}

DataTree doubles(const std::vector<double>& values) {
    return DataTree::createArray(values.data(), static_cast<long>(values.size()), ScalarType::Double);
}

void parseTargets(DataTree& out, const gltf2::Mesh& mesh, const gltf2::Primitive& primitive) {
    if (!primitive.targets.isPropertyPresent() || primitive.targets.size() == 0) return;
    if (!mesh.extras.isPropertyPresent() || !mesh.extras.get().has("targetNames"))
        SORVANE_THROW("No mesh target names");
    const std::vector<std::string> names = mesh.extras.get().get("targetNames").getItem().getStringVector();
    if (static_cast<int64_t>(names.size()) != primitive.targets.size())
        SORVANE_THROW("Inconsistency target / names");
    struct Group {
        const char* prefix;
        const char* key;
        const char* base;
        const char* names;
    };
    static const Group groups[] = {
        {"Shape_", "POSITION", "shapesBase", "shapesName"},
        {"Blendshape_", "POSITION", "blendshapesBase", "blendshapesName"},
        {"Colors_", "COLOR_0", "colorsBase", "colorsName"},
    };
    for (const Group& group : groups) {
        std::vector<long> selection;
        DataTree groupNames = DataTree::createList();
        for (size_t i = 0; i < names.size(); ++i) {
            if (names[i].rfind(group.prefix, 0) != 0) continue;
            selection.push_back(static_cast<long>(i));
            groupNames.addItem(DataTree::createString(names[i]));
        }
        if (selection.empty()) continue;
        out.setItem(group.base, primitive.targets.getTensor(group.key, selection));
        out.setItem(group.names, groupNames);
    }
}

void parseMesh(DataTree& out, const std::string& path, const gltf2::Gltf& gltf, int64_t meshIndex);

void parseNode(DataTree& out, std::unordered_map<long, long>& nodes, const std::string& path,
               const gltf2::Gltf& gltf, int64_t nodeIndex, int depth) {
    // A child listed twice, or a node among its own descendants, would be
    // walked without end.
    if (nodes.count(static_cast<long>(nodeIndex)))
        SORVANE_THROW("Node %ld is reached twice in %s", static_cast<long>(nodeIndex), path.c_str());
    if (depth > kMaxNodeDepth) SORVANE_THROW("Nodes nested deeper than %d in %s", kMaxNodeDepth, path.c_str());
    const long position = static_cast<long>(nodes.size());
    nodes[static_cast<long>(nodeIndex)] = position;
    gltf2::Node node = gltf.nodes.getByIndex(nodeIndex);
    if (node.rotation.isPropertyPresent()) out.setItem("rotation", doubles(node.rotation.get()));
    if (node.translation.isPropertyPresent()) out.setItem("translation", doubles(node.translation.get()));
    if (node.scale.isPropertyPresent()) out.setItem("scale", doubles(node.scale.get()));
    if (node.matrix.isPropertyPresent()) {
        const std::vector<double>& matrix = node.matrix.get();
        const long count = static_cast<long>(matrix.size());
        out.setItem("matrix", DataTree::createTensor(matrix.data(), count * 8, {count}, ScalarType::Double));
    }
    if (node.mesh.isPropertyPresent()) parseMesh(out, path, gltf, node.mesh.getIndex());
    if (node.children.isPropertyPresent()) {
        DataTree children = DataTree::createList();
        for (int64_t child : node.children.get()) {
            DataTree item = DataTree::createObject();
            parseNode(item, nodes, path, gltf, child, depth + 1);
            children.addItem(item);
        }
        out.setItem("nodes", children);
    }
}

} // namespace

void saveGltf(const std::string& path, const DataTree& mesh, bool embedded) {
    gltf2::Gltf gltf = gltf2::Gltf::create(path);
    gltf.getRoot()->beginSharedBuffer(embedded, nullptr);

    gltf2::Mesh gltfMesh = gltf.meshes.get().add(nullptr);
    gltf2::Primitive primitive = gltfMesh.primitives.add();
    gltf2::Node node = gltf.nodes.get().add(nullptr);
    node.mesh.set(gltfMesh.getPropertyIndex());
    gltf2::Scene scene = gltf.scenes.get().add(nullptr);
    scene.nodes.add(node.getPropertyIndex());
    gltf.scene.set(scene.getPropertyIndex());

    const char* facesKey = mesh.hasItem("facesVertices") ? "facesVertices" : "faces";
    const DataTree* faces = findItem(mesh, facesKey);
    if (!faces) SORVANE_THROW("%s are not a tensor", facesKey);
    const std::vector<uint32_t> indices = triangleIndices(*faces, facesKey);

    // glTF has one index per vertex: separate uv indices do not fit.
    if (mesh.hasItem("facesUvs")) SORVANE_THROW("Unsupported");
    std::optional<int64_t> texture;
    if (const DataTree* image = findItem(mesh, "texture")) {
        if (!image->isObject()) SORVANE_THROW("Unsupported texture type");
        gltf2::Image added = gltf.images.get().addImage(*image, embedded, nullptr);
        gltf2::Texture textureItem = gltf.textures.get().add();
        textureItem.source.set(added.getPropertyIndex());
        texture = textureItem.getPropertyIndex();
    }
    if (const DataTree* uvs = findItem(mesh, "uvs")) {
        gltf2::Accessor accessor = gltf.accessors.get().addTensor(*uvs, std::nullopt, embedded, "texcoords");
        primitive.attributes.put("TEXCOORD_0", accessor.getPropertyIndex());
    }
    if (texture) {
        gltf2::Material material = gltf.materials.get().add();
        material.name.set("uvmap");
        material.pbrMetallicRoughness.get().baseColorTexture.get().index.set(*texture);
        primitive.material.set(material.getPropertyIndex());
    }
    const DataTree* vertices = findItem(mesh, "vertices");
    if (!vertices) SORVANE_THROW("vertices are not a tensor");
    gltf2::Accessor positions = gltf.accessors.get().addTensor(*vertices, std::nullopt, embedded, "positions");
    primitive.attributes.put("POSITION", positions.getPropertyIndex());
    gltf2::Accessor indexAccessor =
        gltf.accessors.get().addDense(indices.data(), static_cast<int64_t>(indices.size()),
                                      gltf2::ACCESSOR_COMPONENT_TYPE_UNSIGNED_INT, "SCALAR", std::nullopt,
                                      embedded, "indices");
    primitive.indices.set(indexAccessor.getPropertyIndex());
    if (const DataTree* colors = findItem(mesh, "colors")) {
        gltf2::Accessor accessor = gltf.accessors.get().addTensor(*colors, std::nullopt, embedded, "colors");
        primitive.attributes.put("COLOR_0", accessor.getPropertyIndex());
    }
    gltf.getRoot()->endSharedBuffer();
    gltf.save();
}

void parseGltfMesh(DataTree& out, const std::string& path, const gltf2::Gltf& gltf, int meshIndex) {
    parseMesh(out, path, gltf, meshIndex);
}

namespace {

void parseMesh(DataTree& out, const std::string& path, const gltf2::Gltf& gltf, int64_t meshIndex) {
    gltf2::Mesh mesh = gltf.meshes.getByIndex(meshIndex);
    const std::string name = mesh.name.isPropertyPresent() ? mesh.name.get() : std::string();
    if (mesh.name.isPropertyPresent()) out.setItem("name", DataTree::createString(name));
    if (mesh.primitives.size() > 1)
        std::cerr << "Warning: only first primitive is considered in mesh " << name << " of " << path << "\n";
    gltf2::Primitive primitive = mesh.primitives.getByIndex(0);

    if (!primitive.indices.isPropertyPresent())
        SORVANE_THROW("In %s: No indices", primitive.getPropertyPath().c_str());
    DataTree indices = tensorOf(gltf, primitive.indices.getIndex(), ScalarType::Integer64);
    const long count = indices.getValueCount();
    if (count % 3 != 0) SORVANE_THROW("The number of indices does not divide 3");
    out.setItem("faces", DataTree::createTensor(static_cast<const void*>(indices.getBuffer()), indices.getBufferSize(), {count / 3, 3},
                                                ScalarType::Integer64));
    out.setItem("vertices", tensorOf(gltf, primitive.attributes.get("POSITION").getIndex(), ScalarType::Float));
    if (primitive.attributes.has("COLOR_0"))
        out.setItem("colors", tensorOf(gltf, primitive.attributes.get("COLOR_0").getIndex(), ScalarType::Float));
    if (primitive.attributes.has("TEXCOORD_0"))
        out.setItem("uvs", tensorOf(gltf, primitive.attributes.get("TEXCOORD_0").getIndex(), ScalarType::Float));

    parseTargets(out, mesh, primitive);

    if (primitive.material.isPropertyPresent()) {
        gltf2::Material material = gltf.materials.getByIndex(primitive.material.get());
        if (material.pbrMetallicRoughness.isPropertyPresent()) {
            gltf2::PbrMetallicRoughness pbr = material.pbrMetallicRoughness.get();
            if (pbr.baseColorTexture.isPropertyPresent()) {
                gltf2::Texture texture = gltf.textures.getByIndex(pbr.baseColorTexture.get().index.get());
                gltf2::Image image = gltf.images.getByIndex(texture.source.get());
                out.setItem("texture", image.getImage(ScalarType::UInteger8, ImageFormat::YXC));
            }
        }
    }
}

} // namespace

void parseGltfNode(DataTree& out, std::unordered_map<long, long>& nodes, const std::string& path,
                   const gltf2::Gltf& gltf, int nodeIndex) {
    parseNode(out, nodes, path, gltf, nodeIndex, 0);
}

DataTree parseAnimationSamplers(const gltf2::AnimationSamplerList& samplers, const gltf2::Gltf& gltf) {
    DataTree out = DataTree::createList();
    for (int64_t i = 0; i < samplers.size(); ++i) {
        gltf2::AnimationSampler sampler = samplers.getByIndex(i);
        DataTree input = gltf.accessors.getByIndex(sampler.input.getIndex()).getTensor();
        DataTree output = gltf.accessors.getByIndex(sampler.output.getIndex()).getTensor();
        const std::string interpolation = sampler.interpolation.get();
        // A cubic spline keys an in-tangent, a value and an out-tangent per time.
        if (interpolation == "CUBICSPLINE" && elementCount(output) != 3 * elementCount(input))
            SORVANE_THROW("There is something wrong in output value count in %s", sampler.getPropertyPath().c_str());
        DataTree item = DataTree::createObject();
        item.setItem("input", input);
        item.setItem("output", output);
        item.setItem("interpolation", DataTree::createString(interpolation));
        out.addItem(item);
    }
    return out;
}

DataTree parseAnimationChannels(const gltf2::AnimationChannelList& channels,
                                const std::unordered_map<long, long>& nodes) {
    DataTree out = DataTree::createList();
    for (int64_t i = 0; i < channels.size(); ++i) {
        gltf2::AnimationChannel channel = channels.getByIndex(i);
        gltf2::AnimationChannelTarget target = channel.target.get();
        const auto found = nodes.find(static_cast<long>(target.node_.get()));
        if (found == nodes.end()) SORVANE_THROW("Invalid node in %s", channel.getPropertyPath().c_str());
        DataTree item = DataTree::createObject();
        item.setItem("sampler", DataTree(static_cast<long>(channel.sampler.get())));
        item.setItem("mesh", DataTree(found->second));
        item.setItem("path", DataTree::createString(target.path.get()));
        out.addItem(item);
    }
    return out;
}

DataTree loadGltf(const std::string& path) {
    gltf2::Gltf gltf = gltf2::Gltf::load(path, true);
    if (gltf.scenes.size() == 0) SORVANE_THROW("No scene in %s", path.c_str());
    const int64_t sceneIndex = gltf.scene.isPropertyPresent() ? gltf.scene.get() : 0;
    gltf2::Scene scene = gltf.scenes.getByIndex(sceneIndex);
    if (!scene.nodes.isPropertyPresent() || scene.nodes.size() == 0)
        SORVANE_THROW("No nodes in scene %d in %s", static_cast<int>(sceneIndex), path.c_str());
    if (scene.nodes.size() > 1) std::cerr << "Warning: only first scene node is considered in " << path << "\n";
    DataTree out = DataTree::createObject();
    std::unordered_map<long, long> nodes;
    parseNode(out, nodes, path, gltf, scene.nodes.get(0), 0);
    if (gltf.animations.isPropertyPresent() && gltf.animations.size() > 0) {
        DataTree animations = DataTree::createList();
        for (int64_t i = 0; i < gltf.animations.size(); ++i) {
            gltf2::Animation animation = gltf.animations.getByIndex(i);
            DataTree item = DataTree::createObject();
            item.setItem("name", DataTree::createString(animation.name.isPropertyPresent()
                                                            ? animation.name.get()
                                                            : "animation_" + std::to_string(i)));
            item.setItem("samplers", parseAnimationSamplers(animation.samplers.get(), gltf));
            item.setItem("channels", parseAnimationChannels(animation.channels.get(), nodes));
            animations.addItem(item);
        }
        out.setItem("animations", animations);
    }
    return out;
}

} // namespace sorvane
