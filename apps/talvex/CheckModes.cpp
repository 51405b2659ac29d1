// talvex compare-tensors A B [--tolerance T], compare-images A B and validate FILE: checks
// whose exit code tells the answer (0 equal or clean, 3 different or
// invalid, 2 error).
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <vector>
#include <string>

#include <args.hxx>

#include "sorvane/arf/Arf.h"
#include "sorvane/datatree/DataTree.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/imageio/imageio.h"
#include "sorvane/tools/Mode.h"
#include "sorvane/tools/compare.h"
#include "sorvane/tools/validate.h"

namespace talvex_app {

namespace {

// Nested lists of numbers as in a DataTree file: their nesting gives the shape.
void gather(const sorvane::DataTree& value, size_t depth, std::vector<long>& sizes, std::vector<double>& values) {
    long count = 0;
    if (value.isList()) count = value.getSize();
    else if (value.isArray() || value.isTensor()) count = value.getValueCount();
    else if (value.isInteger() || value.isFloat()) {
        if (depth != sizes.size()) throw std::runtime_error("Ragged tensor");
        values.push_back(value.isInteger() ? static_cast<double>(value.getInteger()) : value.getFloat());
        return;
    } else {
        throw std::runtime_error("Not a tensor of numbers");
    }
    if (depth == sizes.size() && values.empty()) sizes.push_back(count);
    else if (depth >= sizes.size() || sizes[depth] != count) throw std::runtime_error("Ragged tensor");
    if (value.isList()) {
        for (long i = 0; i < count; ++i) gather(value.getItem(i), depth + 1, sizes, values);
        return;
    }
    if (depth + 1 != sizes.size() && !(value.isTensor() && value.getTensorDim() == 1))
        throw std::runtime_error("Ragged tensor");
    const sorvane::DataTree doubles = value.convertToArray(sorvane::ScalarType::Double);
    const double* data = static_cast<const double*>(doubles.getBuffer());
    values.insert(values.end(), data, data + count);
}

// A tensor as it is, or nested lists and arrays of numbers as a Double tensor,
// since a file's numbers do not say their type.
sorvane::DataTree loadTensor(const std::string& path) {
    const sorvane::DataTree tree = sorvane::loadDataTree(path.c_str());
    if (tree.isTensor()) return tree;
    std::vector<long> sizes;
    std::vector<double> values;
    gather(tree, 0, sizes, values);
    return sorvane::DataTree::createTensor(static_cast<const void*>(values.data()), static_cast<long>(values.size() * sizeof(double)), sizes,
                                           sorvane::ScalarType::Double);
}

class CompareTensorsMode : public sorvane::Mode {
public:
    explicit CompareTensorsMode(args::ArgumentParser& parser)
        : Mode(parser),
          first(parser, "A", "first DataTree file holding a tensor", args::Options::Required),
          second(parser, "B", "second DataTree file holding a tensor", args::Options::Required),
          tolerance(parser, "T", "largest absolute difference that counts as equal (default 0)", {"tolerance"}, 0.0) {
        parser.Description("Compares two tensors of DataTree files element by element and lists the first "
                           "differences. Exit code 0 when equal, 3 when different.");
    }

    void execute() override {
        const sorvane::DataTree a = loadTensor(args::get(first));
        const sorvane::DataTree b = loadTensor(args::get(second));
        const long differences = sorvane::compare_data_tensors(a, b, args::get(tolerance), true, std::cout);
        if (differences == 0) std::cout << "equal" << std::endl;
        else setStatus(STATUS_DIFFERENT);
    }

private:
    args::Positional<std::string> first;
    args::Positional<std::string> second;
    args::ValueFlag<double> tolerance;
};

class CompareImagesMode : public sorvane::Mode {
public:
    explicit CompareImagesMode(args::ArgumentParser& parser)
        : Mode(parser),
          first(parser, "A", "first image (PNG or JPEG)", args::Options::Required),
          second(parser, "B", "second image (PNG or JPEG)", args::Options::Required) {
        parser.Description("Compares two images pixel by pixel after decoding (8 bits per channel, rows first): "
                           "pixel formats and sizes must agree. Exit code 0 when equal, 3 when different.");
    }

    void execute() override {
        const sorvane::DataTree a =
            sorvane::loadImage(args::get(first), sorvane::ScalarType::UInteger8, sorvane::ImageFormat::YXC);
        const sorvane::DataTree b =
            sorvane::loadImage(args::get(second), sorvane::ScalarType::UInteger8, sorvane::ImageFormat::YXC);
        const long differences = sorvane::compare_data_images(a, b, true, std::cout);
        if (differences == 0) std::cout << "equal" << std::endl;
        else setStatus(STATUS_DIFFERENT);
    }

private:
    args::Positional<std::string> first;
    args::Positional<std::string> second;
};

class ValidateMode : public sorvane::Mode {
public:
    explicit ValidateMode(args::ArgumentParser& parser)
        : Mode(parser),
          path(parser, "FILE", "ARF document (.arf, .json, .arfz, .zip) or glTF (.gltf, .glb)", args::Options::Required) {
        parser.Description("Checks a document beyond what loading checks: dangling and duplicate ids (ARF), indices "
                           "past their list (glTF), payloads and accessors that fail to read, one line each. Exit "
                           "code 0 when clean, 3 when not.");
    }

    void execute() override {
        const std::string file = args::get(path);
        const std::string extension = std::filesystem::path(file).extension().string();
        const bool gltf = extension == ".gltf" || extension == ".glb";
        const auto problems = gltf ? sorvane::validateGltf(sorvane::gltf2::Gltf::load(file, true))
                                   : sorvane::validateArf(sorvane::arf::Arf::load(file, true));
        for (const std::string& problem : problems) std::cout << problem << "\n";
        if (problems.empty()) std::cout << "valid" << std::endl;
        else setStatus(STATUS_DIFFERENT);
    }

private:
    args::Positional<std::string> path;
};

} // namespace

sorvane::Mode* createCompareTensorsMode(args::ArgumentParser& parser) { return new CompareTensorsMode(parser); }
sorvane::Mode* createCompareImagesMode(args::ArgumentParser& parser) { return new CompareImagesMode(parser); }
sorvane::Mode* createValidateMode(args::ArgumentParser& parser) { return new ValidateMode(parser); }

} // namespace talvex_app
