#include "sorvane/meshio/mesh_x3d.h"

#include "sorvane/core/RuntimeException.h"
#include "sorvane/meshio/detail/TextWriter.h"

namespace sorvane {

namespace {

// The values of a Float or Double tensor as one blank-separated list.
void writeValues(detail::TextWriter& file, const DataTree& tensor, const char* what, const std::string& path) {
    const long count = tensor.getValueCount();
    if (tensor.getScalarType() == ScalarType::Float) {
        const float* v = tensor.getData<float>();
        for (long i = 0; i < count; ++i) {
            if (i) file << ' ';
            file << static_cast<double>(v[i]);
        }
    } else if (tensor.getScalarType() == ScalarType::Double) {
        const double* v = tensor.getData<double>();
        for (long i = 0; i < count; ++i) {
            if (i) file << ' ';
            file << v[i];
        }
    } else {
        SORVANE_THROW("Saving %s: '%s' is not a Float tensor", path.c_str(), what);
    }
}

} // namespace

void saveX3d(const std::string& path, const DataTree& mesh) {
    if (!mesh.hasItem("vertices")) SORVANE_THROW("Saving %s: 'vertices' is required", path.c_str());
    if (!mesh.hasItem("facesVertices")) SORVANE_THROW("Saving %s: 'facesVertices' is required", path.c_str());
    for (const std::string& key : mesh.getItemNames()) {
        if (key != "vertices" && key != "facesVertices" && key != "facesNormal")
            SORVANE_THROW("Saving %s: '%s' is not supported", path.c_str(), key.c_str());
    }
    const DataTree& faces = mesh.getItem("facesVertices");
    if (!faces.isTensor() || faces.getTensorDim() != 2)
        SORVANE_THROW("Saving %s: 'facesVertices' has not 2 dimensions", path.c_str());
    const long faceCount = faces.getTensorSize(0);
    const long edgeCount = faces.getTensorSize(1);
    if (edgeCount < 3 || faces.getScalarType() != ScalarType::Integer64)
        SORVANE_THROW("Saving %s: 'facesVertices': unsupported edge count", path.c_str());
    const DataTree& vertices = mesh.getItem("vertices");
    if (!vertices.isTensor() || vertices.getTensorDim() != 2)
        SORVANE_THROW("Saving %s: 'vertices' has not 2 dimensions", path.c_str());
    const long vertexCount = vertices.getTensorSize(0);
    const DataTree* normals = mesh.hasItem("facesNormal") ? &mesh.getItem("facesNormal") : nullptr;
    if (normals && (!normals->isTensor() || normals->getTensorDim() != 2))
        SORVANE_THROW("Saving %s: 'facesNormal' has not 2 dimensions", path.c_str());

    detail::TextWriter file(path);
    file << "<?xml version=\"1.0\" encoding=\"UTF - 8\"?>\n"
         << "<!DOCTYPE X3D PUBLIC \"ISO//Web3D//DTD X3D 3.1//EN\" \"http://www.web3d.org/specifications/x3d-3.1.dtd\">\n"
         << "<X3D profile=\"Immersive\" version=\"3.1\">\n"
         << " <Scene>\n"
         << "  <Shape>\n"
         << "   <IndexedFaceSet normalPerVertex=\"false\" solid=\"false\" coordIndex=\"";
    const long* f = faces.getData<long>();
    for (long i = 0; i < faceCount; ++i) {
        if (i) file << ' ';
        for (long k = 0; k < edgeCount; ++k) {
            const long index = f[i * edgeCount + k];
            if (index < 0) break; // a shorter face in a wider array
            // An index past the coordinates would not read back.
            if (index >= vertexCount)
                SORVANE_THROW("Saving %s: 'facesVertices' index %ld out of range", path.c_str(), index);
            file << index << ' ';
        }
        file << "-1";
    }
    file << "\">\n    <Coordinate point=\"";
    writeValues(file, vertices, "vertices", path);
    file << "\"/>\n";
    if (normals) {
        file << "    <Normal vector=\"";
        writeValues(file, *normals, "facesNormal", path);
        file << "\"/>\n";
    }
    file << "   </IndexedFaceSet>\n"
         << "  </Shape>\n"
         << " </Scene>\n"
         << "</X3D>\n";
    file.close();
}

} // namespace sorvane
