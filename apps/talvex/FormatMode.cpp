#include "apps/talvex/FormatMode.h"

#include <fstream>
#include <iostream>
#include <memory>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/core/RuntimeException.h"

namespace talvex_app {

FormatMode::FormatMode(args::ArgumentParser& parser_)
    : Mode(parser_),
      input(parser_, "FILE", "the ARF JSON text to read", args::Options::Required),
      output(parser_, "OUT", "write here instead of standard output", {'o', "output"}),
      compact(parser_, "compact", "no line feeds or indentation", {'c', "compact"}) {
    parser_.Description("Reads an ARF document's JSON into the document tree and writes it back.");
}

void FormatMode::execute() {
    std::ifstream in(args::get(input), std::ios::binary);
    if (!in) SORVANE_THROW("Cannot open %s", args::get(input).c_str());
    auto root = std::make_shared<sorvane::arf::RootNode>();
    sorvane::archive::JsonImporter importer(in);
    root->fromJson(importer);

    sorvane::archive::JsonExporter::Options options;
    options.compact = args::get(compact);
    const std::string text = root->toJsonString(options);
    if (output) {
        std::ofstream out(args::get(output), std::ios::binary);
        out << text;
        if (!out) SORVANE_THROW("Error while writing file %s", args::get(output).c_str());
    } else {
        std::cout << text << std::endl;
    }
}

} // namespace talvex_app
