#include <filesystem>
#include <iostream>
#include <vector>

#include "apps/talvex/InfoMode.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/tools/Mode.h"

namespace talvex_app {

namespace {

// `talvex make-example OUT`: a small avatar with dense and sparse payloads,
// in the storage mode of OUT's extension.
class MakeExampleMode : public sorvane::Mode {
public:
    explicit MakeExampleMode(args::ArgumentParser& parser_)
        : Mode(parser_),
          output(parser_, "OUT", "the document to write (.arf/.json, .arfz/.zip), or memory: to build it in memory "
                                 "and print its data items",
                 args::Options::Required) {
        parser_.Description("Writes an example avatar with dense and sparse tensor payloads: a vertex matrix in "
                            "its own file, an embedded index list, and in the main JSON file mode a shared raw "
                            "data file holding a dense and a sparse skinning weight matrix.");
    }

    void execute() override {
        namespace fs = std::filesystem;
        using namespace sorvane::arf;
        if (args::get(output).rfind("memory:", 0) == 0) {
            Arf arf = Arf::create("memory:");
            fill(arf);
            printDataItems(std::cout, arf, true);
            return;
        }
        const fs::path out = args::get(output);
        // The shared raw data file is written relative to the working
        // directory, so the document is made from inside its own folder.
        const fs::path previous = fs::current_path();
        const fs::path folder = out.has_parent_path() ? out.parent_path() : fs::path(".");
        fs::create_directories(folder);
        fs::current_path(folder);
        try {
            Arf arf = Arf::create(out.filename());
            fill(arf);
            arf.save();
        } catch (...) {
            fs::current_path(previous);
            throw;
        }
        fs::current_path(previous);
        std::cout << "wrote " << out.string() << std::endl;
    }

private:
    static void fill(sorvane::arf::Arf& arf) {
        using namespace sorvane::arf;
        arf.identity->name.set("Example");
        auto lod = arf.structure->assets.add("body", std::nullopt).lods.add("high", std::nullopt);

        const std::vector<float> vertices = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
        auto positions = arf.data.addDense(vertices.data(), 48, DATA_DTYPE_FLOAT, {4, 3}, false, nullptr, "vertices");
        const std::vector<uint16_t> faces = {0, 1, 2, 0, 2, 3};
        auto triangles = arf.data.addDense(faces.data(), 12, DATA_DTYPE_UNSIGNED_SHORT, {2, 3}, true, nullptr, "faces");

        // A mesh made of those two items, in the level of detail.
        auto mesh = arf.components->meshes.add("quad", std::nullopt);
        mesh.data.add(positions.id.get());
        mesh.data.add(triangles.id.get());
        lod.meshes.add(mesh.id.get());

        // Weights of 4 vertices over 8 joints, mostly zero.
        std::vector<float> weights(32, 0.0f);
        weights[0 * 8 + 0] = 1.0f;
        weights[1 * 8 + 1] = 0.75f;
        weights[1 * 8 + 2] = 0.25f;
        weights[2 * 8 + 5] = 0.5f;
        weights[2 * 8 + 7] = 0.5f;
        weights[3 * 8 + 3] = 1.0f;
        arf.getRoot()->beginSharedRawData(false, "weights");
        arf.data.addDense(weights.data(), 128, DATA_DTYPE_FLOAT, {4, 8}, false, nullptr, "weights dense");
        arf.data.addSparseFromDense(weights.data(), 32, DATA_DTYPE_FLOAT, {4, 8}, DATA_ITYPE_NONE, false, nullptr,
                                    "weights sparse");
        arf.getRoot()->endSharedRawData();
    }

    args::Positional<std::string> output;
};

} // namespace

sorvane::Mode* createMakeExampleMode(args::ArgumentParser& parser) { return new MakeExampleMode(parser); }

} // namespace talvex_app
