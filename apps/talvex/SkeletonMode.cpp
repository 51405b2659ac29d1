// skeleton: the node tree, the joints of each skeleton, each node's matrix
// and the skins; optionally an SVG drawing of the rest pose.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "apps/talvex/AppModes.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/core/RuntimeException.h"
#include "sorvane/core/math.h"

namespace talvex_app {

using namespace sorvane::arf;

namespace {

// The library's messages carry "file:line function(): " in front.
std::string messageOf(const std::exception& e) {
    std::string text = e.what();
    auto cut = text.find("(): ");
    return cut == std::string::npos ? text : text.substr(cut + 4);
}

struct SceneNode {
    int64_t id = 0;
    std::string name;
    std::string mapping;
    std::optional<int64_t> parent;
    std::vector<int64_t> children;
    bool hasChildren = false;
    std::vector<double> local;  // 16 values when usable
    std::string matrixError;
    double world[16];
    bool worldDone = false;
};

class Scene {
public:
    explicit Scene(const NodeList& list) {
        for (const Node& n : list) {
            SceneNode s;
            s.id = n.id.get();
            s.name = n.name.get();
            s.mapping = n.mapping.get();
            if (n.parent.isPropertyPresent()) s.parent = n.parent.getIndex();
            s.hasChildren = n.children.isPropertyPresent();
            if (s.hasChildren) s.children = n.children.get();
            try {
                s.local = n.getTransformMatrix();
                if (s.local.size() != 16) {
                    s.matrixError = "\"transform\" holds " + std::to_string(s.local.size()) + " values, not 16";
                    s.local.clear();
                }
            } catch (const std::exception& e) {
                s.matrixError = messageOf(e);
            }
            if (!byId.count(s.id)) byId[s.id] = nodes.size();
            nodes.push_back(std::move(s));
        }
    }

    const SceneNode* find(int64_t id) const {
        auto it = byId.find(id);
        return it == byId.end() ? nullptr : &nodes[it->second];
    }
    std::string label(int64_t id) const {
        const SceneNode* n = find(id);
        return n ? std::to_string(id) + " (" + n->name + ")" : std::to_string(id) + " (dangling)";
    }

    // World matrices from the parent chain (row-major; a node whose matrix
    // cannot be had counts as the identity). A parent cycle is cut where the
    // walk meets itself. Iterative, so that a long chain cannot exhaust the stack.
    void computeWorld() {
        std::vector<char> visiting(nodes.size(), 0);
        for (size_t i = 0; i < nodes.size(); ++i) {
            std::vector<size_t> chain;
            for (size_t cur = i;;) {
                if (nodes[cur].worldDone || visiting[cur]) break;
                visiting[cur] = 1;
                chain.push_back(cur);
                const SceneNode& n = nodes[cur];
                if (!n.parent) break;
                auto it = byId.find(*n.parent);
                if (it == byId.end()) break;
                cur = it->second;
            }
            for (size_t k = chain.size(); k-- > 0;) {
                SceneNode& n = nodes[chain[k]];
                double local[16];
                sorvane::matrix4x4_init_double(local);
                if (!n.local.empty()) std::copy(n.local.begin(), n.local.end(), local);
                const SceneNode* p = nullptr;
                if (n.parent) {
                    auto it = byId.find(*n.parent);
                    if (it != byId.end() && nodes[it->second].worldDone) p = &nodes[it->second];
                }
                if (p) sorvane::matrix4x4_mul_double(n.world, p->world, local);
                else std::copy(local, local + 16, n.world);
                n.worldDone = true;
            }
        }
    }

    // Positions of the nodes whose "parent" is the given id.
    std::vector<size_t> childrenOf(int64_t id) const {
        auto it = byParent.find(id);
        return it == byParent.end() ? std::vector<size_t>() : it->second;
    }

    void indexParents() {
        for (size_t i = 0; i < nodes.size(); ++i)
            if (nodes[i].parent && *nodes[i].parent != nodes[i].id) byParent[*nodes[i].parent].push_back(i);
    }

    std::vector<SceneNode> nodes;
    std::map<int64_t, size_t> byId;
    std::map<int64_t, std::vector<size_t>> byParent;
};

void printMatrix(std::ostream& out, const std::vector<double>& m, const char* indent) {
    for (int r = 0; r < 4; ++r) {
        out << indent << "[";
        for (int c = 0; c < 4; ++c) {
            char buf[32];
            std::snprintf(buf, sizeof buf, "%9.4g", m[static_cast<size_t>(r * 4 + c)]);
            out << buf;
        }
        out << " ]\n";
    }
}

std::string xmlEscape(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += c;
        }
    }
    return out;
}

class SkeletonMode : public sorvane::Mode {
public:
    explicit SkeletonMode(args::ArgumentParser& p)
        : Mode(p),
          file(p, "FILE", "a .arf/.json main file, a .arfz/.zip archive or memory:JSON", args::Options::Required),
          svg(p, "OUT.svg", "also draw the rest pose into an SVG file", {"svg"}),
          plane(p, "PLANE", "the plane of the drawing: xy (default), xz or zy", {"plane"}, "xy") {
        p.Description("Prints the node tree with each node's matrix, the joints of each skeleton and each skin "
                      "(mesh, joints, inverse bind matrix, weights), reporting conflicting transforms, dangling "
                      "references and unreadable payloads instead of stopping; --svg draws the rest pose (world "
                      "positions from the parent chain, bones as lines, joint names).");
    }

    void execute() override {
        const std::string axes = args::get(plane);
        if (axes != "xy" && axes != "xz" && axes != "zy") SORVANE_THROW("Invalid plane '%s'", axes.c_str());
        Arf arf = Arf::load(args::get(file), false);  // writable only so that absent sections read as empty
        auto components = arf.components.get();
        Scene scene(components.nodes.get());
        scene.computeWorld();
        scene.indexParents();
        std::ostream& out = std::cout;
        int problems = 0;

        out << "nodes: " << scene.nodes.size() << "\n";
        std::set<int64_t> shown;
        for (const SceneNode& n : scene.nodes)
            if (!n.parent || !scene.find(*n.parent)) printTree(out, scene, n, 1, shown, problems);
        for (const SceneNode& n : scene.nodes)
            if (!shown.count(n.id)) {
                out << "  ! node " << n.id << " (" << n.name << ") is in a parent cycle\n";
                ++problems;
                printTree(out, scene, n, 1, shown, problems);
            }

        auto skeletons = components.skeletons.get();
        const int64_t skeletonCount = skeletons.isPropertyPresent() ? skeletons.size() : 0;
        out << "skeletons: " << skeletonCount << "\n";
        std::set<int64_t> jointNodes;
        for (int64_t i = 0; i < skeletonCount; ++i) {
            Skeleton s = skeletons.getByIndex(i);
            out << "  skeleton " << s.id.get() << " \"" << s.name.get() << "\" root " << scene.label(s.root.getIndex());
            if (!scene.find(s.root.getIndex())) ++problems;
            if (s.inverseBindMatrix.isPropertyPresent()) {
                out << ", inverseBindMatrix data " << s.inverseBindMatrix.getIndex();
                try {
                    s.inverseBindMatrix.get();
                } catch (const std::exception& e) {
                    out << " (" << messageOf(e) << ")";
                    ++problems;
                }
            }
            out << "\n";
            auto joints = s.joints.get();
            for (int64_t j = 0; j < joints.size(); ++j) {
                JointKey joint = joints.getByIndex(j);
                const int64_t node = joint.node_.getIndex();
                out << "    joint " << j;
                if (joint.name.isPropertyPresent()) out << " \"" << joint.name.get() << "\"";
                out << " -> node " << scene.label(node) << "\n";
                if (scene.find(node)) jointNodes.insert(node);
                else ++problems;
            }
        }
        printSkins(out, components, scene, problems);
        out << problems << " problem(s)\n";
        if (svg) writeSvg(args::get(svg), scene, jointNodes, axes);
    }

private:
    // Each skin with its mesh, its skeleton's joints and inverse bind
    // matrices, and its weights; dangling references and unreadable payloads
    // are reported in place.
    void printSkins(std::ostream& out, Components& components, const Scene& scene, int& problems) {
        auto skins = components.skins.get();
        const int64_t count = skins.isPropertyPresent() ? skins.size() : 0;
        out << "skins: " << count << "\n";
        for (int64_t i = 0; i < count; ++i) {
            Skin skin = skins.getByIndex(i);
            out << "  skin " << skin.id.get() << " \"" << skin.name.get() << "\" mesh " << skin.mesh.getIndex();
            try {
                const std::string mesh = skin.mesh.get().name.get();
                out << " (" << mesh << ")";
            } catch (const std::exception&) {
                out << " (dangling)";
                ++problems;
            }
            std::optional<Skeleton> skeleton;
            if (skin.skeleton.isPropertyPresent()) {
                out << ", skeleton " << skin.skeleton.getIndex();
                try {
                    skeleton = skin.skeleton.get();
                    out << " (" << skeleton->name.get() << ")";
                } catch (const std::exception&) {
                    out << " (dangling)";
                    ++problems;
                }
            } else {
                out << ", no skeleton";
            }
            out << "\n";
            if (skeleton) {
                auto joints = skeleton->joints.get();
                out << "    joints (" << joints.size() << "):";
                for (int64_t j = 0; j < joints.size(); ++j) {
                    const int64_t node = joints.getByIndex(j).node_.getIndex();
                    out << (j ? ", " : " ") << scene.label(node);
                }
                out << "\n    inverseBindMatrix: ";
                if (skeleton->inverseBindMatrix.isPropertyPresent())
                    printPayload(out, skeleton->inverseBindMatrix.getIndex(), skeleton->inverseBindMatrix, problems);
                else
                    out << "none\n";
            }
            if (skin.weights.isPropertyPresent()) {
                out << "    weights: ";
                printPayload(out, skin.weights.getIndex(), skin.weights, problems);
            }
        }
    }

    // "data ID, TYPE [DIMS]" from the payload header alone.
    template <class Reference>
    static void printPayload(std::ostream& out, int64_t id, const Reference& reference, int& problems) {
        out << "data " << id;
        try {
            std::vector<long> sizes;
            DataDType dtype = DATA_DTYPE_NONE;
            reference.getTensorData(sizes, dtype, nullptr, 0);
            out << ", " << dtype << " [";
            for (size_t k = 0; k < sizes.size(); ++k) out << (k ? ", " : "") << sizes[k];
            out << "]";
        } catch (const std::exception& e) {
            out << " (" << messageOf(e) << ")";
            ++problems;
        }
        out << "\n";
    }

    // Depth first through the "parent" links, with an explicit stack.
    void printTree(std::ostream& out, const Scene& scene, const SceneNode& top, int depth, std::set<int64_t>& shown,
                   int& problems) {
        std::vector<std::pair<const SceneNode*, int>> stack{{&top, depth}};
        while (!stack.empty()) {
            auto [node, level] = stack.back();
            stack.pop_back();
            const SceneNode& n = *node;
            if (!shown.insert(n.id).second) continue;
            printNode(out, scene, n, level, problems);
            auto children = scene.childrenOf(n.id);
            for (size_t k = children.size(); k-- > 0;) stack.emplace_back(&scene.nodes[children[k]], level + 1);
        }
    }

    void printNode(std::ostream& out, const Scene& scene, const SceneNode& n, int depth, int& problems) {
        const std::string indent(static_cast<size_t>(depth) * 2, ' ');
        out << indent << n.name << " (id " << n.id << ", mapping \"" << n.mapping << "\")";
        if (n.parent && !scene.find(*n.parent)) {
            out << " ! dangling parent " << *n.parent;
            ++problems;
        }
        out << "\n";
        if (n.hasChildren) {
            out << indent << "  children:";
            for (int64_t c : n.children) {
                const SceneNode* child = scene.find(c);
                out << " " << c;
                if (!child) {
                    out << " (dangling)";
                    ++problems;
                } else if (!child->parent || *child->parent != n.id) {
                    out << " (its parent is " << (child->parent ? std::to_string(*child->parent) : "none") << ")";
                }
            }
            out << "\n";
        }
        if (!n.matrixError.empty()) {
            out << indent << "  ! matrix: " << n.matrixError << "\n";
            ++problems;
        } else {
            printMatrix(out, n.local, (indent + "  ").c_str());
        }
    }

    void writeSvg(const std::string& path, const Scene& scene, const std::set<int64_t>& joints,
                  const std::string& axes) {
        // Row-major world matrices: the position is the translation column.
        auto project = [&](const SceneNode& n) {
            const double x = n.world[3], y = n.world[7], z = n.world[11];
            if (axes == "xz") return std::make_pair(x, z);
            if (axes == "zy") return std::make_pair(z, y);
            return std::make_pair(x, y);
        };
        double minX = 0, maxX = 0, minY = 0, maxY = 0;
        bool first = true;
        for (const SceneNode& n : scene.nodes) {
            auto [x, y] = project(n);
            if (!std::isfinite(x) || !std::isfinite(y)) continue;
            minX = first ? x : std::min(minX, x), maxX = first ? x : std::max(maxX, x);
            minY = first ? y : std::min(minY, y), maxY = first ? y : std::max(maxY, y);
            first = false;
        }
        const double size = 560, margin = 60;
        const double span = std::max({maxX - minX, maxY - minY, 1e-9});
        const double scale = size / span;
        // Centred on the narrower axis; up is up.
        const double padX = (size - (maxX - minX) * scale) / 2, padY = (size - (maxY - minY) * scale) / 2;
        auto sx = [&](double x) { return margin + padX + (x - minX) * scale; };
        auto sy = [&](double y) { return margin + size - padY - (y - minY) * scale; };

        std::ofstream svgOut(path);
        if (!svgOut) SORVANE_THROW("Can't write %s", path.c_str());
        svgOut << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << size + 2 * margin << "\" height=\""
               << size + 2 * margin << "\" viewBox=\"0 0 " << size + 2 * margin << " " << size + 2 * margin
               << "\">\n<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
               << "<text x=\"10\" y=\"20\" font-family=\"sans-serif\" font-size=\"12\">rest pose, plane " << axes
               << "</text>\n";
        for (const SceneNode& n : scene.nodes) {
            if (!n.parent) continue;
            const SceneNode* p = scene.find(*n.parent);
            if (!p || p == &n) continue;
            auto [x1, y1] = project(*p);
            auto [x2, y2] = project(n);
            if (!std::isfinite(x1 + y1 + x2 + y2)) continue;
            svgOut << "<line x1=\"" << sx(x1) << "\" y1=\"" << sy(y1) << "\" x2=\"" << sx(x2) << "\" y2=\"" << sy(y2)
                   << "\" stroke=\"steelblue\" stroke-width=\"3\"/>\n";
        }
        for (const SceneNode& n : scene.nodes) {
            auto [x, y] = project(n);
            if (!std::isfinite(x) || !std::isfinite(y)) continue;
            const bool joint = joints.count(n.id) > 0;
            svgOut << "<circle cx=\"" << sx(x) << "\" cy=\"" << sy(y) << "\" r=\"" << (joint ? 5 : 3) << "\" fill=\""
                   << (joint ? "crimson" : "gray") << "\"/>\n";
            svgOut << "<text x=\"" << sx(x) + 8 << "\" y=\"" << sy(y) - 6
                   << "\" font-family=\"sans-serif\" font-size=\"12\">" << xmlEscape(n.name) << "</text>\n";
        }
        svgOut << "</svg>\n";
        std::cout << "wrote " << path << "\n";
    }

    args::Positional<std::string> file;
    args::ValueFlag<std::string> svg;
    args::ValueFlag<std::string> plane;
};

} // namespace

sorvane::Mode* createSkeletonMode(args::ArgumentParser& parser) { return new SkeletonMode(parser); }

} // namespace talvex_app
