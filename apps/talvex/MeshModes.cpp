// talvex mesh-convert IN OUT: a mesh file to another format, by extension.
#include <iostream>
#include <string>
#include <vector>

#include <args.hxx>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/meshio/meshio.h"
#include "sorvane/tools/Mode.h"

namespace talvex_app {

namespace {

class MeshConvertMode : public sorvane::Mode {
public:
    explicit MeshConvertMode(args::ArgumentParser& parser)
        : Mode(parser),
          input(parser, "IN", "the mesh to read (.obj, .gltf, .glb)", args::Options::Required),
          output(parser, "OUT", "the file to write (.obj, .gltf, .glb, .x3d, .pts)", args::Options::Required) {
        parser.Description("Reads a mesh and writes it in the format OUT's extension names. X3D keeps the "
                           "vertices and faces only, a point list the vertices only; what is left out is listed.");
    }

    void execute() override {
        const std::string in = args::get(input);
        const std::string out = args::get(output);
        const std::string from = sorvane::getFileExtension(in);
        if (from != ".obj" && from != ".gltf" && from != ".glb")
            SORVANE_THROW("Unsupported file extension %s", from.c_str());
        const sorvane::DataTree mesh = sorvane::loadMesh(in);
        const std::string to = sorvane::getFileExtension(out);
        if (to == ".obj" || to == ".gltf" || to == ".glb") {
            sorvane::saveMesh(out, mesh, true);
        } else if (to == ".x3d") {
            sorvane::DataTree kept = sorvane::DataTree::createObject();
            for (const std::string& key : mesh.getItemNames()) {
                if (key == "vertices" || key == "facesVertices" || key == "facesNormal") {
                    kept.setItem(key, mesh.getItem(key));
                } else if (key == "faces" && !mesh.hasItem("facesVertices")) {
                    kept.setItem("facesVertices", mesh.getItem(key));
                } else {
                    std::cout << "left out: " << key << "\n";
                }
            }
            sorvane::saveX3d(out, kept);
        } else if (to == ".pts") {
            if (!mesh.hasItem("vertices")) SORVANE_THROW("%s has no vertices", in.c_str());
            const sorvane::DataTree& vertices = mesh.getItem("vertices");
            sorvane::savePts(out, vertices.getData<float>(), vertices.getTensorSize(0));
        } else {
            SORVANE_THROW("Unsupported file extension %s", to.c_str());
        }
        const long vertices = mesh.hasItem("vertices") ? mesh.getItem("vertices").getTensorSize(0) : 0;
        const char* facesKey = mesh.hasItem("facesVertices") ? "facesVertices" : "faces";
        const long faces = mesh.hasItem(facesKey) ? mesh.getItem(facesKey).getTensorSize(0) : 0;
        std::cout << out << ": " << vertices << " vertices, " << faces << " faces\n";
    }

private:
    args::Positional<std::string> input;
    args::Positional<std::string> output;
};

} // namespace

sorvane::Mode* createMeshConvertMode(args::ArgumentParser& parser) { return new MeshConvertMode(parser); }

} // namespace talvex_app
