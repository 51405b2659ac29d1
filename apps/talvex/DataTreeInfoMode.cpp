// talvex datatree-info FILE: the structure of a DataTree file, with kinds,
// sizes and scalar types, and no dump of the numbers in arrays.
#include <iostream>
#include <memory>
#include <string>

#include <args.hxx>

#include "sorvane/datatree/DataTree.h"
#include "sorvane/tools/Mode.h"

namespace talvex_app {

namespace {

std::string quoted(const std::string& text, size_t limit) {
    std::string shown = text.size() > limit ? text.substr(0, limit) + "..." : text;
    for (char& c : shown) {
        if (static_cast<unsigned char>(c) < 32) c = ' ';
    }
    return "\"" + shown + "\"";
}

class DataTreeInfoMode : public sorvane::Mode {
public:
    explicit DataTreeInfoMode(args::ArgumentParser& parser)
        : Mode(parser),
          path(parser, "path", "DataTree JSON file", args::Options::Required),
          keepLists(parser, "keep-lists", "read lists of numbers as lists, not arrays", {"keep-lists"}),
          items(parser, "count", "items shown per list or object (default 20)", {"items"}, 20) {
        parser.Description("Prints the structure of a DataTree file: kinds, sizes, shapes and scalar types, "
                           "never the numbers of arrays and tensors.");
    }

    void execute() override {
        const std::string file = args::get(path);
        const sorvane::DataTree tree = sorvane::loadDataTree(
            file.c_str(), keepLists ? sorvane::DATATREE_IMPORT_KEEP_NUMBER_LISTS : sorvane::DATATREE_IMPORT_DEFAULT);
        show(tree, 0);
    }

private:
    void show(const sorvane::DataTree& tree, int depth) {
        const std::string indent(static_cast<size_t>(depth) * 2, ' ');
        const long limit = args::get(items) < 0 ? 0 : args::get(items);
        switch (tree.getType()) {
        case sorvane::DataTreeType::Null: std::cout << "Null\n"; break;
        case sorvane::DataTreeType::Boolean: std::cout << "Boolean " << (tree.getBoolean() ? "true" : "false") << "\n"; break;
        case sorvane::DataTreeType::Integer: std::cout << "Integer " << tree.getInteger() << "\n"; break;
        case sorvane::DataTreeType::Float: std::cout << "Float " << tree.getFloat() << "\n"; break;
        case sorvane::DataTreeType::String: std::cout << "String " << quoted(tree.getString(), 60) << "\n"; break;
        case sorvane::DataTreeType::Array:
            std::cout << "Array " << tree.getScalarType() << " [" << tree.getSize() << "]\n";
            break;
        case sorvane::DataTreeType::Tensor:
            std::cout << "Tensor " << tree.getScalarType() << " [";
            tree.showTensorSizes(std::cout);
            std::cout << "]\n";
            break;
        case sorvane::DataTreeType::Object: {
            std::cout << "Object (" << tree.getSize() << " items)\n";
            long shown = 0;
            for (const std::string& name : tree.getItemNames()) {
                if (shown++ == limit) {
                    std::cout << indent << "  ... " << tree.getSize() - limit << " more\n";
                    break;
                }
                std::cout << indent << "  " << quoted(name, 60) << ": ";
                show(tree.getItem(name), depth + 1);
            }
            break;
        }
        case sorvane::DataTreeType::List: {
            std::cout << "List (" << tree.getSize() << " items)\n";
            for (long i = 0; i < tree.getSize(); ++i) {
                if (i == limit) {
                    std::cout << indent << "  ... " << tree.getSize() - limit << " more\n";
                    break;
                }
                std::cout << indent << "  [" << i << "]: ";
                show(tree.getItem(i), depth + 1);
            }
            break;
        }
        }
    }

    args::Positional<std::string> path;
    args::Flag keepLists;
    args::ValueFlag<long> items;
};

} // namespace

sorvane::Mode* createDataTreeInfoMode(args::ArgumentParser& parser) { return new DataTreeInfoMode(parser); }

} // namespace talvex_app
