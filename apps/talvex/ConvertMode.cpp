#include "apps/talvex/ConvertMode.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"

namespace talvex_app {

ConvertMode::ConvertMode(args::ArgumentParser& parser_)
    : Mode(parser_),
      input(parser_, "IN", "the document to read (.arf/.json, .arfz/.zip)", args::Options::Required),
      output(parser_, "OUT", "the document to write; its extension chooses the storage mode", args::Options::Required) {
    parser_.Description("Writes an ARF document again in the storage mode of OUT: a main JSON file with its "
                        "payload files (.arf, .json) or an archive (.arfz, .zip). Every payload is carried across; "
                        "embedded ones stay embedded.");
}

void ConvertMode::execute() {
    using namespace sorvane::arf;
    Arf source = Arf::load(args::get(input), true);
    Arf target = saveArfAs(source, args::get(output));
    std::cout << args::get(input) << " (" << source.getStorageMode() << ") -> " << args::get(output) << " ("
              << target.getStorageMode() << ")" << std::endl;
}

} // namespace talvex_app
