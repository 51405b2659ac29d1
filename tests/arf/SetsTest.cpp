#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "sorvane/archive/FileProvider.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/node/components/SphericalHarmonicsNode.h"
#include "sorvane/arf/property/components/GaussianSplatSet.h"
#include "sorvane/arf/property/components/SphericalHarmonics.h"
#include "sorvane/core/ErrorSlot.h"
#include "sorvane/sorvane.h"
#include "tests/arf/node/NodeTestSupport.h"

using namespace sorvane::arf;
using talvex_test::messageOf;
namespace fs = std::filesystem;

namespace {

// Every set kind with id 1 over data items 1 to 3, keys in no particular order.
const char* kAvatar = R"({"components": {
  "gaussianSplatSets": [{"id": 1, "name": "g", "attributes": {"k": "v"}, "alphas": 3, "colors": 3, "scales": 2,
                         "orientations": 1, "mode": "free", "count": 4, "path": "p"}],
  "attachmentSets": [{"id": 1, "name": "a", "vertices": [3], "meshes": [1], "node": 1, "description": "d"}],
  "textureSets": [{"id": 1, "name": "t", "targets": [{"id": 1, "name": "tt", "texturePath": "tp", "texture": 2}],
                   "materialPath": "mp", "material": 1}],
  "landmarkSets": [{"id": 1, "name": "l", "weights": 3, "faces": 2, "vertices": 1, "baseMesh": 1}],
  "blendshapeSets": [{"id": 1, "name": "b", "baseMesh": 1, "shapes": [{"id": 1, "name": "s", "shape": 2}],
    "animationInfo": [{"mappings": [{"nonLinearAssociations": [{"combination": "COMBINATION_MAX",
        "channels": [{"output": 3, "input": 2, "sourceIndex": 5}], "targetIndex": 1}],
      "linearAssociations": [{"weights": [0.5], "sourceIndices": [1], "targetIndex": 1}], "source": 0}],
      "target": 0, "type": "ANIMATION_FACE"}]}],
  "skins": [{"id": 1, "name": "k", "mesh": 1, "textureSet": 1, "landmarkSet": 1, "blendshapeSet": 1}],
  "nodes": [{"id": 1, "name": "n", "mapping": "Root"}],
  "meshes": [{"id": 1, "name": "m", "data": [1]}]},
 "structure": {"assets": [{"name": "body", "id": 1, "lods": [{"name": "high", "id": 1, "gaussianSplatSets": [1],
   "attachmentSets": [1], "textureSets": [1], "landmarkSets": [1], "blendshapeSets": [1]}]}]},
 "data": [{"id": 1, "name": "d1", "type": "application/mpeg.arf.dense", "uri": "a.bin"},
          {"id": 2, "name": "d2", "type": "application/mpeg.arf.dense", "uri": "b.bin"},
          {"id": 3, "name": "d3", "type": "application/mpeg.arf.dense", "uri": "c.bin"}]})";

const char* kComponentsWritten =
    R"({"skins":[{"blendshapeSet":1,"landmarkSet":1,"textureSet":1,"mesh":1,"name":"k","id":1}],)"
    R"("meshes":[{"data":[1],"name":"m","id":1}],"nodes":[{"mapping":"Root","name":"n","id":1}],)"
    R"("blendshapeSets":[{"animationInfo":[{"type":"ANIMATION_FACE","target":0,"mappings":[{"source":0,)"
    R"("linearAssociations":[{"targetIndex":1,"sourceIndices":[1],"weights":[0.5]}],)"
    R"("nonLinearAssociations":[{"targetIndex":1,"channels":[{"sourceIndex":5,"input":2,)"
    R"("interpolation":"INTERPOLATION_LINEAR","output":3}],"combination":"COMBINATION_MAX"}]}]}],)"
    R"("shapes":[{"shape":2,"name":"s","id":1}],"baseMesh":1,"name":"b","id":1}],)"
    R"("landmarkSets":[{"baseMesh":1,"vertices":1,"faces":2,"weights":3,"name":"l","id":1}],)"
    R"("textureSets":[{"material":1,"materialPath":"mp","targets":[{"texture":2,"texturePath":"tp","name":"tt","id":1}],)"
    R"("name":"t","id":1}],)"
    R"("attachmentSets":[{"description":"d","node":1,"meshes":[1],"vertices":[3],"name":"a","id":1}],)"
    R"("gaussianSplatSets":[{"path":"p","count":4,"mode":"free","orientations":1,"scales":2,"colors":3,)"
    R"("alphas":3,"attributes":{"k":"v"},"name":"g","id":1}]})";

std::string compact(const Arf& arf) { return arf.toJsonString({false, true, false}); }

// A fresh document with three dense data items (ids 1 to 3) and a mesh 7.
Arf avatarWithData() {
    Arf arf = Arf::create("memory:");
    const float values[] = {1, 2, 3, 4, 5, 6};
    for (const char* name : {"d1", "d2", "d3"})
        arf.data.addDense(values, sizeof values, DATA_DTYPE_FLOAT, {2, 3}, false, nullptr, name);
    arf.components->meshes.add("m", 7);
    return arf;
}

} // namespace

TEST(Sets, ReadInAnyOrderWrittenInTheFixedOrder) {
    Arf arf = Arf::load(std::string("memory:") + kAvatar);
    const std::string text = compact(arf);
    const std::string components = std::string(R"("components":)") + kComponentsWritten;
    EXPECT_NE(text.find(components), std::string::npos) << text;
    EXPECT_NE(text.find(R"("lods":[{"blendshapeSets":[1],"landmarkSets":[1],"textureSets":[1],"attachmentSets":[1],)"
                        R"("gaussianSplatSets":[1],"name":"high","id":1}])"),
              std::string::npos)
        << text;

    // References of skins and levels of detail now reach the sets themselves.
    auto c = arf.components.get();
    auto skin = c.skins[1];
    EXPECT_EQ(skin.blendshapeSet.get().name.get(), "b");
    EXPECT_EQ(skin.landmarkSet.get().baseMesh.get().name.get(), "d1");  // a landmark base mesh is a data item
    EXPECT_EQ(skin.textureSet.get().targets.get().get(1).texture.get().name.get(), "d2");
    auto lod = arf.structure->assets[1].lods[1];
    EXPECT_EQ(lod.gaussianSplatSets.getItem(0).get().mode.get(), "free");
    EXPECT_EQ(lod.attachmentSets.getItem(0).get().node_.get().mapping.get(), "Root");
    EXPECT_EQ(c.blendshapeSets[1].shapes[1].getPropertyPath(), "components.blendshapeSets[1].shapes[1]");
    EXPECT_EQ(c.gaussianSplatSets[1].attributes["k"].getItem().getString(), "v");
}

TEST(Sets, EqualByteForByteAfterAReloadInEachStorageMode) {
    const std::string written = Arf::load(std::string("memory:") + kAvatar).toJsonString();
    const fs::path dir = fs::temp_directory_path() / ("talvex-sets-" + std::to_string(::getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    for (const std::string& path : {std::string("memory:"), (dir / "avatar.arf.json").string(), (dir / "avatar.arfz").string()}) {
        std::string saved;
        {
            Arf arf = Arf::create(path);
            std::istringstream in(written);
            sorvane::archive::JsonImporter importer(in);
            arf.fromJson(importer);
            arf.save();
            saved = arf.getStorageMode() == MEMORY_ONLY ? "memory:" + arf.getFileProvider()->getString("arf.json", 0) : path;
        }
        EXPECT_EQ(Arf::load(saved, true).toJsonString(), written) << path;
    }
    fs::remove_all(dir);
}

TEST(Sets, ReferencesResolveAgainstTheirOwnLists) {
    Arf arf = avatarWithData();
    auto c = arf.components.get();
    // A landmark set's base mesh is a data item; a blendshape set's is a mesh.
    EXPECT_EQ(messageOf([&] { c.landmarkSets.add(7, "l", std::nullopt); }), "id 7 does not exist in data");
    auto landmarks = c.landmarkSets.add(1, "l", std::nullopt);
    EXPECT_EQ(messageOf([&] { landmarks.baseMesh.set(7); }),
              "Setting components.landmarkSets[1].baseMesh: Invalid id 7 in data");
    EXPECT_EQ(messageOf([&] { landmarks.faces.get(); }), "In components.landmarkSets[1]: No faces");
    landmarks.faces.set(3);
    // A reference to a data item reads its payload itself.
    EXPECT_EQ(landmarks.faces.getTensor().getTensorSizes(), (std::vector<long>{2, 3}));
    EXPECT_EQ(landmarks.faces.getDataSize(), landmarks.faces.get().getDataSize());
    auto shapes = c.blendshapeSets.add(7, "b", std::nullopt);
    EXPECT_EQ(shapes.baseMesh.get().name.get(), "m");
    EXPECT_EQ(messageOf([&] { shapes.baseMesh.set(1); }),
              "Setting components.blendshapeSets[1].baseMesh: Invalid id 1 in components.meshes");

    // An attachment set: mesh ids in "meshes", data ids in "vertices", both always written.
    EXPECT_EQ(messageOf([&] { c.attachmentSets.add(1, "a", std::nullopt); }), "There is no nodes in components");
    c.nodes.add("Root", "n", std::nullopt);
    auto attach = c.attachmentSets.add(1, "a", std::nullopt);
    EXPECT_EQ(attach.buildRepresentation(), "{\n  \"node\": 1,\n  \"meshes\": [],\n  \"vertices\": [],\n  \"name\": \"a\",\n  \"id\": 1\n}");
    EXPECT_EQ(messageOf([&] { attach.meshes.add(1); }),
              "Adding item to components.attachmentSets[1].meshes: Invalid id 1 in components.meshes");
    EXPECT_EQ(messageOf([&] { attach.vertices.add(7); }),
              "Adding item to components.attachmentSets[1].vertices: Invalid id 7 in data");
    attach.meshes.add(7);
    attach.vertices.add(2);
    EXPECT_EQ(messageOf([&] { attach.vertices.set(0, 9); }),
              "Setting item 0 of components.attachmentSets[1].vertices: Invalid id 9 in data");
    EXPECT_EQ(messageOf([&] { attach.meshes.remove(1); }),
              "Removing item 1 of components.attachmentSets[1].meshes: Invalid index");

    // A removed target leaves the id, which fails only when followed.
    arf.data.get().remove(2);
    EXPECT_EQ(attach.vertices.get(0), 2);
    EXPECT_EQ(messageOf([&] { attach.vertices.getItem(0).get(); }), "Getting item from data: Invalid id 2");
}

TEST(Sets, InitChecksInTheirOrderAndLeaveTheListAlone) {
    Arf arf = avatarWithData();
    auto c = arf.components.get();
    auto textures = c.textureSets.add(1, "p", "t", std::nullopt);
    auto list = c.textureSets.get().getNode();
    auto failsUnchanged = [&](auto call) {
        const int64_t before = list->getNodeSize();
        std::string message = messageOf(call);
        EXPECT_EQ(list->getNodeSize(), before) << message;
        return message;
    };
    EXPECT_EQ(failsUnchanged([&] { list->add(std::nullopt, nullptr, nullptr, std::nullopt); }),
              "Initialization of components.textureSets[2]: material must be defined");
    EXPECT_EQ(failsUnchanged([&] { list->add(9, "p", "t", std::nullopt); }), "id 9 does not exist in data");
    EXPECT_EQ(failsUnchanged([&] { list->add(3, nullptr, "t", std::nullopt); }),
              "Initialization of components.textureSets[2]: materialPath must be defined");
    EXPECT_EQ(failsUnchanged([&] { list->add(3, "p", nullptr, 1); }),
              "Initialization of components.textureSets[0]: id 1 is already used");

    auto blend = c.blendshapeSets.add(7, std::string("b"), std::nullopt);
    blend.shapes.add(1, "s", std::nullopt);
    auto shapes = blend.shapes.get().getNode();
    const int64_t shapeCount = shapes->getNodeSize();
    EXPECT_EQ(messageOf([&] { shapes->add(std::nullopt, "s", std::nullopt); }),
              "Initialization of components.blendshapeSets[1].shapes[2]: shape must be defined");
    EXPECT_EQ(messageOf([&] { shapes->add(4, "s", std::nullopt); }), "id 4 does not exist in data");
    EXPECT_EQ(shapes->getNodeSize(), shapeCount);
    EXPECT_EQ(messageOf([&] { c.blendshapeSets.add(8, "b2", std::nullopt); }),
              "id 8 does not exist in components.meshes");

    c.gaussianSplatSets.add(0, 1, 1, 1, 1, "g", std::nullopt);  // a count of 0 is a count
    auto splats = c.gaussianSplatSets.get().getNode();
    list = nullptr;
    const int64_t splatCount = splats->getNodeSize();
    EXPECT_EQ(messageOf([&] { splats->add(std::nullopt, 9, 1, 1, 1, "g2", std::nullopt); }),
              "Initialization of components.gaussianSplatSets[2]: count must be defined");
    EXPECT_EQ(messageOf([&] { splats->add(0, 9, 1, 1, 1, "g2", std::nullopt); }), "id 9 does not exist in data");
    EXPECT_EQ(messageOf([&] { splats->add(0, 1, 1, 9, std::nullopt, "g2", std::nullopt); }),
              "id 9 does not exist in data");
    EXPECT_EQ(messageOf([&] { splats->add(0, 1, 1, 1, std::nullopt, "g2", std::nullopt); }),
              "Initialization of components.gaussianSplatSets[2]: alphas must be defined");
    EXPECT_EQ(messageOf([&] { splats->add(0, 1, 1, 1, 1, nullptr, std::nullopt); }),
              "Initialization of components.gaussianSplatSets[2]: name must be defined");
    EXPECT_EQ(messageOf([&] { splats->add(0, 1, 1, 1, 1, "g2", 1); }),
              "Initialization of components.gaussianSplatSets[0]: id 1 is already used");
    EXPECT_EQ(splats->getNodeSize(), splatCount);

    // Without a components section the section is named.
    Arf bare = Arf::create("memory:");
    bare.components.get().removeProperty();
    auto detached = std::make_shared<BlendshapeSetNodes>(bare.getRoot());
    EXPECT_EQ(messageOf([&] { detached->add(1, "b", std::nullopt); }), "There is no components");
}

TEST(Sets, TextureTargetsAppearWithTheFirstTarget) {
    Arf arf = avatarWithData();
    auto textures = arf.components->textureSets.add(1, "p", "t", std::nullopt);
    EXPECT_EQ(textures.buildRepresentation().find("targets"), std::string::npos);
    auto target = textures.targets.add(2, "tt", std::nullopt);
    EXPECT_EQ(target.buildRepresentation().find("texturePath"), std::string::npos);
    target.removeProperty();
    EXPECT_EQ(textures.targets.size(), 0);
    EXPECT_NE(textures.buildRepresentation().find("\"targets\": []"), std::string::npos) << textures.buildRepresentation();
}

TEST(Sets, SplatModeIsAReadDefault) {
    Arf arf = Arf::load(R"(memory:{"components": {"gaussianSplatSets": [{"count": 2, "name": "g", "id": 1}]},
        "data": [{"id": 1, "name": "d", "type": "t", "uri": "u"}]})");
    auto g = arf.components->gaussianSplatSets[1];
    EXPECT_EQ(g.mode.get(), "triangleBarycentric");
    EXPECT_EQ(GaussianSplatSet::Mode::defaultValue, "triangleBarycentric");
    EXPECT_FALSE(g.mode.isPropertyPresent());
    // Read without "orientations": the id 0 is written, following it fails.
    EXPECT_EQ(g.buildRepresentation(), "{\n  \"count\": 2,\n  \"orientations\": 0,\n  \"scales\": 0,\n  \"colors\": 0,\n"
                            "  \"alphas\": 0,\n  \"name\": \"g\",\n  \"id\": 1\n}");
    EXPECT_EQ(messageOf([&] { g.orientations.get(); }), "Getting item from data: Invalid id 0");

    g.mode.set("free");
    g.baryCenters.set(1);
    const std::string text = g.buildRepresentation();
    EXPECT_LT(text.find("\"count\""), text.find("\"mode\": \"free\""));
    EXPECT_LT(text.find("\"mode\""), text.find("\"baryCenters\": 1"));
    EXPECT_LT(text.find("\"baryCenters\""), text.find("\"orientations\""));
    g.mode.removeProperty();
    EXPECT_EQ(g.mode.get(), "triangleBarycentric");
    EXPECT_EQ(g.buildRepresentation().find("mode"), std::string::npos);

    EXPECT_EQ(messageOf([&] { g.textureSet.set(1); }), "There is no textureSets in components");
    EXPECT_EQ(messageOf([&] { g.baseMesh.set(1); }),
              "Setting components.gaussianSplatSets[1].baseMesh: Invalid id 1 in components.meshes");
    EXPECT_EQ(messageOf([&] { g.normals.set(2); }),
              "Setting components.gaussianSplatSets[1].normals: Invalid id 2 in data");
    EXPECT_EQ(messageOf([&] { g.positions.getIndex(); }), "In components.gaussianSplatSets[1]: No positions");
    EXPECT_EQ(messageOf([&] { g.getNode()->getUvs(); }), "Getting components.gaussianSplatSets[1].uvs: No value");

    // Attributes are a flat generic object: a nested object fails the load.
    EXPECT_EQ(messageOf([] {
                  Arf::load(R"(memory:{"components": {"gaussianSplatSets": [{"attributes": {"a": {"b": 1}}}]}})");
              }),
              "Unsupported or invalid object at line 1");
}

TEST(Sets, AttributesCopyIsDeepAndChecked) {
    const std::string text = std::string("memory:") + kAvatar;
    Arf arf = Arf::load(text);
    auto c = arf.components.get();
    auto g = c.gaussianSplatSets[1];

    // From a detached object: later changes to either side stay apart.
    GenericProperty source{{"a", 1}, {"l", {"x", "y"}}};
    g.attributes.copy(source);
    source.set("a", GenericProperty(2));
    g.attributes["l"].add("z");
    EXPECT_EQ(g.attributes["a"].getItem().getInteger(), 1);
    EXPECT_EQ(source.get("l").getItem().size(), 2);
    EXPECT_FALSE(g.attributes.get().has("k"));
    EXPECT_EQ(g.attributes["l"].getPropertyPath(), "components.gaussianSplatSets[1].attributes[\"l\"]");

    // From another document's attributes, and written as read.
    Arf other = Arf::load(text);
    auto h = other.components->gaussianSplatSets[1];
    h.attributes.copy(g.attributes.get());
    g.attributes.copy(g.attributes.get());  // onto itself
    EXPECT_EQ(h.attributes.get().buildRepresentation(), g.attributes.get().buildRepresentation());
    EXPECT_NE(other.toJsonString().find(R"("attributes": {)"), std::string::npos);

    // Anything a document could not read back fails, and the member stays.
    const std::string before = g.attributes.get().buildRepresentation();
    EXPECT_EQ(messageOf([&] { g.attributes.copy(GenericProperty{"x", "y"}); }),
              "Cloning <noparent>: list is not an object");
    GenericProperty nested{{"a", 1}};
    nested.getNode()->setNodeItem("o", GenericProperty{{"b", 2}}.getNode());
    EXPECT_EQ(messageOf([&] { g.attributes.copy(nested); }).rfind("Unsupported nested", 0), 0u);
    EXPECT_EQ(messageOf([&] { g.attributes.copy(GenericProperty(nullptr, nullptr, false)); }), "Invalid node");
    EXPECT_EQ(g.attributes.get().buildRepresentation(), before);

    // Read-only documents refuse it; an absent member is made by the copy.
    Arf readOnly = Arf::load(text, true);
    EXPECT_EQ(messageOf([&] { readOnly.components->gaussianSplatSets[1].attributes.copy(source); }),
              "Cloning components.gaussianSplatSets[1].attributes: Forbidden, read-only target container");
    g.attributes.removeProperty();
    g.attributes.copy(source);
    EXPECT_EQ(g.attributes["a"].getItem().getInteger(), 2);
}

TEST(Sets, SphericalHarmonicsStandsAlone) {
    Arf arf = avatarWithData();
    auto node = std::make_shared<SphericalHarmonicsNode>(arf.getRoot());
    EXPECT_EQ(messageOf([&] { node->init(std::nullopt, 1); }), "Initialization of <invalid>: degree must be defined");
    EXPECT_EQ(messageOf([&] { node->init(2, 9); }), "id 9 does not exist in data");
    EXPECT_EQ(messageOf([&] { node->init(2, std::nullopt); }),
              "Initialization of <invalid>: coefficients must be defined");
    node->init(2, 3);
    SphericalHarmonics harmonics(arf.getRoot(), node, false);
    EXPECT_EQ(harmonics.coefficients.get().name.get(), "d3");
    EXPECT_EQ(messageOf([&] { harmonics.coefficients.set(5); }), "Setting <invalid>.coefficients: Invalid id 5 in data");
    EXPECT_EQ(harmonics.buildRepresentation(), "{\n  \"degree\": 2,\n  \"coefficients\": 3\n}");
}

TEST(Sets, FlatForms) {
    Arf arf = avatarWithData();
    sorvane_arf_Components* components = nullptr;
    ASSERT_EQ(sorvane_arf_Arf_getComponents(&components, &arf), 0);
    sorvane_arf_LandmarkSetList* landmarks = nullptr;
    ASSERT_EQ(sorvane_arf_Components_getLandmarkSets(&landmarks, components), 0);
    sorvane_arf_LandmarkSet* lm = nullptr;
    arf.components->landmarkSets.add(1, "l", std::nullopt);
    sorvane_arf_LandmarkSetList_delete(landmarks);
    ASSERT_EQ(sorvane_arf_Components_getLandmarkSets(&landmarks, components), 0);
    ASSERT_EQ(sorvane_arf_LandmarkSetList_get(&lm, landmarks, 1), 0);
    EXPECT_EQ(sorvane_arf_LandmarkSet_setBaseMeshIndex(lm, 7), -1);
    const std::string slot = sorvane_errorMessage;
    EXPECT_EQ(slot.substr(slot.find("(): ") + 4), "Setting components.landmarkSets[1].baseMesh: Invalid id 7 in data");
    sorvane_arf_Data* data = nullptr;
    ASSERT_EQ(sorvane_arf_LandmarkSet_getBaseMesh(&data, lm), 0);
    int64_t id = 0;
    EXPECT_EQ(sorvane_arf_Data_getId(&id, data), 0);
    EXPECT_EQ(id, 1);

    sorvane_arf_GaussianSplatSetList* splats = nullptr;
    arf.components->gaussianSplatSets.add(3, 1, 2, 3, 1, "first", std::nullopt);
    ASSERT_EQ(sorvane_arf_Components_getGaussianSplatSets(&splats, components), 0);
    sorvane_arf_GaussianSplatSet* g = nullptr;
    ASSERT_EQ(sorvane_arf_GaussianSplatSetList_add(&g, splats, 0, 1, 1, 1, 1, "g", true, 0), 0);
    EXPECT_EQ(sorvane_arf_GaussianSplatSetList_add(&g, splats, 0, 1, 1, 1, 1, nullptr, true, 0), -1);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_getPropertyId(&id, g), 0);
    EXPECT_EQ(id, 2);
    int64_t size = 0;
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_getMode(nullptr, &size, g), -1);  // asks for the size
    std::string mode(static_cast<size_t>(size), '\0');
    ASSERT_EQ(sorvane_arf_GaussianSplatSet_getMode(mode.data(), &size, g), 0);
    EXPECT_STREQ(mode.c_str(), "triangleBarycentric");
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_setMode(g, "free"), 0);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_setBaseMeshData(g, data), 0);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_getBaseMeshDataIndex(&id, g), 0);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_setLandmarkSet(g, lm), 0);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_setBaseMeshData(g, nullptr), -1);
    EXPECT_STREQ(sorvane_errorMessage.c_str(), "data is NULL");
    bool has = false;
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_hasLandmarkSet(&has, g), 0);
    EXPECT_TRUE(has);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_removeLandmarkSet(g), 0);
    EXPECT_EQ(sorvane_arf_GaussianSplatSet_getLandmarkSetIndex(&id, g), -1);

    sorvane_arf_GaussianSplatSet_delete(g);
    sorvane_arf_GaussianSplatSetList_delete(splats);
    sorvane_arf_Data_delete(data);
    sorvane_arf_LandmarkSet_delete(lm);
    sorvane_arf_LandmarkSetList_delete(landmarks);
    sorvane_arf_Components_delete(components);
}
