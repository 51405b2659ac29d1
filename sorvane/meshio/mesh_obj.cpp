#include "sorvane/meshio/mesh_obj.h"

#include <charconv>
#include <cstring>
#include <vector>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/file.h"
#include "sorvane/core/stringio.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/meshio/detail/TextWriter.h"
#include "sorvane/meshio/meshio.h"

namespace sorvane {

namespace {

inline bool isBlank(char c) { return c == ' ' || c == '\t'; }

// A read position over one line.
struct Cursor {
    const char* p;
    const char* end;

    void skipBlanks() {
        while (p < end && isBlank(*p)) ++p;
    }
    bool atEnd() {
        skipBlanks();
        return p >= end;
    }
    // The next blank-separated word.
    std::pair<const char*, const char*> word() {
        skipBlanks();
        const char* start = p;
        while (p < end && !isBlank(*p)) ++p;
        return {start, p};
    }
    bool number(float& value) {
        skipBlanks();
        const char* start = p;
        if (start < end && *start == '+') ++start;
        const auto result = std::from_chars(start, end, value);
        if (result.ec != std::errc() || (result.ptr < end && !isBlank(*result.ptr))) return false;
        p = result.ptr;
        return true;
    }
};

// How the corners of every face of one file are written.
enum class FaceFormat { Unset, V, VT, VTN, VN };

struct ObjReader {
    const std::string& path;
    std::vector<float> vertices, colors, uvs, normals;
    std::vector<long> facesVertices, facesUvs, facesNormals;
    long vertexCount = 0, uvCount = 0, normalCount = 0;
    long colorCount = 0;
    long faceCount = 0;
    long edgeCount = 0;
    long slashes = 0, doubles = 0;
    FaceFormat format = FaceFormat::Unset;

    explicit ObjReader(const std::string& p) : path(p) {}

    [[noreturn]] void badNumber(const std::string& line) {
        SORVANE_THROW("Error parsing '%s' in %s", line.c_str(), path.c_str());
    }

    void readNumbers(Cursor& c, const std::string& line, std::vector<float>& out, int count) {
        for (int i = 0; i < count; ++i) {
            float v;
            if (!c.number(v)) badNumber(line);
            out.push_back(v);
        }
    }

    void vertex(Cursor c, const std::string& line) {
        const long words = countWords(line);
        if (words != 4 && words != 7) badNumber(line);
        readNumbers(c, line, vertices, 3);
        if (words == 7) {
            // Colours belong to every vertex or to none: a partial list would not match the vertices.
            if (colorCount != vertexCount)
                SORVANE_THROW("Error in %s: colors on some vertices only, at '%s'", path.c_str(), line.c_str());
            readNumbers(c, line, colors, 3);
            ++colorCount;
        } else if (colorCount > 0) {
            SORVANE_THROW("Error in %s: colors on some vertices only, at '%s'", path.c_str(), line.c_str());
        }
        ++vertexCount;
    }

    // One corner index: 1-based, or negative and relative to the items read so far.
    long index(const char*& p, const char* end, long countSoFar, const std::string& line) {
        long value = 0;
        const auto result = std::from_chars(p, end, value);
        if (result.ec != std::errc()) SORVANE_THROW("Error in %s: unsupported format '%s'", path.c_str(), line.c_str());
        p = result.ptr;
        if (value > 0) return value - 1; // checked against the final counts at the end
        if (value < 0 && value >= -countSoFar) return countSoFar + value;
        SORVANE_THROW("Error in %s: invalid index %ld in '%s'", path.c_str(), value, line.c_str());
    }

    void face(Cursor c, const std::string& line) {
        const long count = countWords(line);
        const long slash = countChars(line, '/');
        const long twice = countPatterns(line, "//");
        if (format == FaceFormat::Unset) {
            const long e = count - 1;
            FaceFormat f = FaceFormat::Unset;
            if (e >= 3) {
                if (slash == 0) f = FaceFormat::V;
                else if (slash == e && twice == 0) f = FaceFormat::VT;
                else if (slash == 2 * e && twice == 0) f = FaceFormat::VTN;
                else if (slash == 2 * e && twice == e) f = FaceFormat::VN;
            }
            if (f == FaceFormat::Unset)
                SORVANE_THROW("Error in %s: unsupported format '%s' (count=%d, slash=%d, double=%d)", path.c_str(),
                              line.c_str(), static_cast<int>(count), static_cast<int>(slash), static_cast<int>(twice));
            format = f;
            edgeCount = e;
            slashes = slash;
            doubles = twice;
        } else if (count - 1 != edgeCount || slash != slashes || twice != doubles) {
            SORVANE_THROW("Error in %s: unsupported format '%s' (count=%d, slash=%d, double=%d)", path.c_str(),
                          line.c_str(), static_cast<int>(count), static_cast<int>(slash), static_cast<int>(twice));
        }
        for (long k = 0; k < edgeCount; ++k) {
            const auto token = c.word();
            const char* p = token.first;
            const char* end = token.second;
            auto expect = [&](char ch) {
                if (p >= end || *p != ch) SORVANE_THROW("Error in %s: unsupported format '%s'", path.c_str(), line.c_str());
                ++p;
            };
            facesVertices.push_back(index(p, end, vertexCount, line));
            switch (format) {
            case FaceFormat::V: break;
            case FaceFormat::VT:
                expect('/');
                facesUvs.push_back(index(p, end, uvCount, line));
                break;
            case FaceFormat::VTN:
                expect('/');
                facesUvs.push_back(index(p, end, uvCount, line));
                expect('/');
                facesNormals.push_back(index(p, end, normalCount, line));
                break;
            case FaceFormat::VN:
                expect('/');
                expect('/');
                facesNormals.push_back(index(p, end, normalCount, line));
                break;
            case FaceFormat::Unset: break;
            }
            if (p != end) SORVANE_THROW("Error in %s: unsupported format '%s'", path.c_str(), line.c_str());
        }
        ++faceCount;
    }

    void checkRange(const std::vector<long>& indices, long count, const char* what) {
        for (long i : indices)
            if (i >= count)
                SORVANE_THROW("Error in %s: index %ld out of range of %ld %s", path.c_str(), i + 1, count, what);
    }

    static DataTree tensor(const std::vector<float>& values, long rows, long cols) {
        return DataTree::createTensor(static_cast<const void*>(values.data()),
                                      static_cast<long>(values.size() * sizeof(float)), {rows, cols},
                                      ScalarType::Float);
    }
    DataTree indexTensor(const std::vector<long>& values) const {
        return DataTree::createTensor(static_cast<const void*>(values.data()),
                                      static_cast<long>(values.size() * sizeof(long)), {faceCount, edgeCount},
                                      ScalarType::Integer64);
    }
};

std::string restOfLine(const std::string& line, const char* after) {
    size_t at = line.find(after);
    at = at == std::string::npos ? line.size() : at + std::strlen(after);
    while (at < line.size() && isBlank(line[at])) ++at;
    size_t end = line.size();
    while (end > at && isBlank(line[end - 1])) --end;
    return line.substr(at, end - at);
}

} // namespace

DataTree loadObj(const std::string& path) {
    const std::vector<std::string> lines = loadStringLines(path, true);
    DataTree out = DataTree::createObject();
    ObjReader reader(path);
    for (const std::string& line : lines) {
        Cursor c{line.data(), line.data() + line.size()};
        const auto first = c.word();
        const size_t length = static_cast<size_t>(first.second - first.first);
        const char* w = first.first;
        if (length == 1 && w[0] == 'v') {
            reader.vertex(c, line);
        } else if (length == 2 && w[0] == 'v' && w[1] == 't') {
            reader.readNumbers(c, line, reader.uvs, 2);
            ++reader.uvCount;
        } else if (length == 2 && w[0] == 'v' && w[1] == 'n') {
            reader.readNumbers(c, line, reader.normals, 3);
            ++reader.normalCount;
        } else if (length == 1 && w[0] == 'f') {
            reader.face(c, line);
        } else if (length == 6 && std::memcmp(w, "mtllib", 6) == 0) {
            const std::string name = restOfLine(line, "mtllib");
            detail::checkLocalUri(name, path);
            loadMtl(out, replaceFileName(path, name));
        } else if (length == 6 && std::memcmp(w, "usemtl", 6) == 0) {
            out.setItem("material", DataTree(restOfLine(line, "usemtl")));
        }
    }
    reader.checkRange(reader.facesVertices, reader.vertexCount, "vertices");
    reader.checkRange(reader.facesUvs, reader.uvCount, "uvs");
    reader.checkRange(reader.facesNormals, reader.normalCount, "normals");
    if (reader.vertexCount > 0) out.setItem("vertices", ObjReader::tensor(reader.vertices, reader.vertexCount, 3));
    if (reader.colorCount > 0) out.setItem("colors", ObjReader::tensor(reader.colors, reader.colorCount, 3));
    if (reader.uvCount > 0) out.setItem("uvs", ObjReader::tensor(reader.uvs, reader.uvCount, 2));
    if (reader.normalCount > 0) out.setItem("normals", ObjReader::tensor(reader.normals, reader.normalCount, 3));
    if (reader.faceCount > 0) {
        out.setItem("facesVertices", reader.indexTensor(reader.facesVertices));
        if (!reader.facesUvs.empty()) out.setItem("facesUvs", reader.indexTensor(reader.facesUvs));
        if (!reader.facesNormals.empty()) out.setItem("facesNormals", reader.indexTensor(reader.facesNormals));
    }
    return out;
}

void loadMtl(DataTree& out, const std::string& path) {
    const std::vector<std::string> lines = loadStringLines(path, true);
    for (const std::string& line : lines) {
        Cursor c{line.data(), line.data() + line.size()};
        const auto first = c.word();
        if (first.first == first.second) continue;
        const std::string key(first.first, first.second);
        out.setItem(key, DataTree(restOfLine(line, key.c_str())));
    }
    if (out.hasItem("map_Kd")) {
        const std::string name = out.getItem("map_Kd").getString();
        detail::checkLocalUri(name, path);
        const std::string textureFile = replaceFileName(path, name);
        out.setItem("textureFile", DataTree(textureFile));
        out.setItem("texture", loadImage(textureFile, ScalarType::UInteger8, ImageFormat::YXC));
    }
}

namespace {

void writeFaces(detail::TextWriter& file, const long* faces, const long* uvFaces, bool uvsByVertex, long faceCount,
                long edgeCount, long vertexCount, long uvCount) {
    for (long f = 0; f < faceCount; ++f) {
        file << 'f';
        for (long edgeIndex = 0; edgeIndex < edgeCount; ++edgeIndex) {
            const long v = faces[f * edgeCount + edgeIndex];
            if (v < 0) {
                // Only the last corner may be left out (a triangle in a quad array).
                if (uvFaces || uvsByVertex) {
                    if (edgeIndex != edgeCount - 1) SORVANE_THROW("Failed edgeIndex == (edgeCount - 1)");
                } else if (edgeIndex != edgeCount - 1) {
                    SORVANE_THROW("Failed edgeIndex == (edgeCount-1)");
                }
                break;
            }
            // An index the file cannot resolve would not read back.
            if (v >= vertexCount) SORVANE_THROW("Face index %ld out of range of %ld vertices", v, vertexCount);
            file << ' ' << v + 1;
            if (uvFaces) {
                const long t = uvFaces[f * edgeCount + edgeIndex];
                if (t < 0 || t >= uvCount) SORVANE_THROW("Face uv index %ld out of range of %ld uvs", t, uvCount);
                file << '/' << t + 1;
            } else if (uvsByVertex) {
                file << '/' << v + 1;
            }
        }
        file << '\n';
    }
}

} // namespace

void saveObj(const std::string& path, const DataTree& mesh) {
    if (mesh.hasItem("facesNormal")) SORVANE_THROW("One normal per face is not supported by .obj");
    detail::TextWriter file(path);
    file << "# Wavefront file generated by Sorvane Studio\n";
    if (mesh.hasItem("texture")) {
        const DataTree& texture = mesh.getItem("texture");
        const std::string mtlPath = replaceFileExtension(path, ".mtl");
        const std::string base = getFileName(removeFileExtension(path));
        std::string textureName;
        if (texture.isObject()) {
            const std::string pngPath = replaceFileExtension(path, ".png");
            saveImage(pngPath, texture);
            textureName = getFileName(pngPath);
        } else if (texture.isString()) {
            textureName = texture.getString();
        } else {
            SORVANE_THROW("Error creating '%s': invalid texture type", path.c_str());
        }
        file << "# Material\n" << "mtllib " << getFileName(mtlPath) << '\n';
        detail::TextWriter mtl(mtlPath);
        mtl << "newmtl " << base << '\n' << "map_Kd " << textureName << '\n';
        mtl.close();
    }

    file << "# Vertices\n";
    const DataTree& vertices = mesh.getItem("vertices");
    if (!vertices.isTensor()) SORVANE_THROW("vertices are not a tensor");
    if (vertices.getTensorDim() != 2 || vertices.getTensorSize(1) != 3)
        SORVANE_THROW("Failed vertices.getTensorSize(1) == 3");
    if (vertices.getScalarType() != ScalarType::Float)
        SORVANE_THROW("Failed vertices.getScalarType() == ScalarType::Float");
    const long vertexCount = vertices.getTensorSize(0);
    const float* v = vertices.getData<float>();
    const float* colors = nullptr;
    long colorChannels = 0;
    if (mesh.hasItem("colors")) {
        const DataTree& c = mesh.getItem("colors");
        if (!c.isTensor()) SORVANE_THROW("colors are not a tensor");
        // One colour per vertex, 3 or 4 values of which the first three are written.
        if (c.getTensorDim() != 2 || c.getTensorSize(0) != vertexCount || c.getTensorSize(1) < 3 ||
            c.getScalarType() != ScalarType::Float)
            SORVANE_THROW("colors do not match the vertices");
        colors = c.getData<float>();
        colorChannels = c.getTensorSize(1);
    }
    for (long i = 0; i < vertexCount; ++i) {
        file << "v " << static_cast<double>(v[i * 3]) << ' ' << static_cast<double>(v[i * 3 + 1]) << ' '
             << static_cast<double>(v[i * 3 + 2]);
        if (colors) {
            const float* c = colors + i * colorChannels;
            file << ' ' << static_cast<double>(c[0]) << ' ' << static_cast<double>(c[1]) << ' '
                 << static_cast<double>(c[2]);
        }
        file << '\n';
    }

    long uvCount = 0;
    if (mesh.hasItem("uvs")) {
        file << "# UVs\n";
        const DataTree& uvs = mesh.getItem("uvs");
        if (!uvs.isTensor()) SORVANE_THROW("uvs are not a tensor");
        if (uvs.getTensorDim() != 2 || uvs.getTensorSize(1) != 2) SORVANE_THROW("Failed uvs.getTensorSize(1) == 2");
        if (uvs.getScalarType() != ScalarType::Float) SORVANE_THROW("uvs are not Float");
        uvCount = uvs.getTensorSize(0);
        const float* t = uvs.getData<float>();
        for (long i = 0; i < uvCount; ++i)
            file << "vt " << static_cast<double>(t[i * 2]) << ' ' << static_cast<double>(t[i * 2 + 1]) << '\n';
    }
    if (mesh.hasItem("facesNormals")) SORVANE_THROW("facesNormals not supported");
    if (mesh.hasItem("normals")) SORVANE_THROW("normals not supported");

    file << "# Faces\n";
    const bool haveFacesVertices = mesh.hasItem("facesVertices");
    if (!haveFacesVertices && !mesh.hasItem("faces")) SORVANE_THROW("facesVertices are not a tensor");
    const DataTree& faces = mesh.getItem(haveFacesVertices ? "facesVertices" : "faces");
    if (!faces.isTensor())
        SORVANE_THROW(haveFacesVertices ? "facesVertices are not a tensor" : "faces are not a tensor");
    if (faces.getScalarType() != ScalarType::Integer64)
        SORVANE_THROW("Failed faces.getScalarType() == ScalarType::Integer64");
    if (faces.getTensorDim() != 2) SORVANE_THROW("faces are not a tensor of two dimensions");
    const long faceCount = faces.getTensorSize(0);
    const long edgeCount = faces.getTensorSize(1);
    const long* uvFaces = nullptr;
    if (mesh.hasItem("facesUvs")) {
        const DataTree& fu = mesh.getItem("facesUvs");
        if (!fu.isTensor() || fu.getTensorDim() != 2 || fu.getTensorSize(0) != faceCount)
            SORVANE_THROW("Failed facesUvs.getTensorSize(0) == faceCount");
        if (fu.getTensorSize(1) != edgeCount) SORVANE_THROW("Failed facesUvs.getTensorSize(1) == edgeCount");
        if (fu.getScalarType() != ScalarType::Integer64)
            SORVANE_THROW("Failed facesUvs.getScalarType() == ScalarType::Integer64");
        uvFaces = fu.getData<long>();
    }
    const bool uvsByVertex = !uvFaces && mesh.hasItem("uvs");
    // Uvs taken by vertex index need one uv per vertex to read back.
    if (uvsByVertex && uvCount < vertexCount) SORVANE_THROW("Fewer uvs (%ld) than vertices (%ld)", uvCount, vertexCount);
    writeFaces(file, faces.getData<long>(), uvFaces, uvsByVertex, faceCount, edgeCount, vertexCount, uvCount);
    file.close();
}

} // namespace sorvane
