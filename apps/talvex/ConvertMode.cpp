#include "apps/talvex/ConvertMode.h"

#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <utility>
#include <vector>

#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"

namespace talvex_app {

bool isGltfPath(const std::string& path);
void convertGltf(const std::string& input, const std::string& output);

ConvertMode::ConvertMode(args::ArgumentParser& parser_)
    : Mode(parser_),
      input(parser_, "IN", "the document to read (.arf/.json, .arfz/.zip, or glTF .gltf/.glb)", args::Options::Required),
      output(parser_, "OUT", "the document to write; its extension chooses the storage mode", args::Options::Required) {
    parser_.Description("Writes an ARF document again in the storage mode of OUT: a main JSON file with its "
                        "payload files (.arf, .json) or an archive (.arfz, .zip). Every payload is carried across; "
                        "embedded ones stay embedded. A glTF document (.gltf, .glb) is written in the form of OUT "
                        "with its buffers packed into one: the BIN chunk, or one .bin beside the .gltf.");
}

void ConvertMode::execute() {
    using namespace sorvane::arf;
    if (isGltfPath(args::get(input)) || isGltfPath(args::get(output))) {
        convertGltf(args::get(input), args::get(output));
        std::cout << args::get(input) << " -> " << args::get(output) << std::endl;
        return;
    }
    Arf source = Arf::load(args::get(input), true);
    const StorageMode from = source.getStorageMode();
    // The source's tree becomes the target's: one tree in memory, not two.
    Arf target = saveArfAs(std::move(source), args::get(output));
    std::cout << args::get(input) << " (" << from << ") -> " << args::get(output) << " (" << target.getStorageMode()
              << ")" << std::endl;
}

} // namespace talvex_app
