// talvex list PATH: the items of a provider with their sizes. A directory is
// walked through a disk provider, anything else is opened as a zip archive.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "apps/talvex/ListMode.h"
#include "sorvane/archive/DiskFileProvider.h"
#include "sorvane/archive/RelativeFileProvider.h"
#include "sorvane/archive/Zip.h"

namespace fs = std::filesystem;
using namespace sorvane::archive;

namespace talvex_app {

ListMode::ListMode(args::ArgumentParser& parser_)
    : sorvane::Mode(parser_),
      path(parser_, "PATH", "a directory or a zip archive (.zip, .arfz)", args::Options::Required),
      folder(parser_, "FOLDER", "list only the items under this folder of the provider", {'f', "folder"}) {
    parser_.Description("Lists the items of a directory or an archive with their sizes in bytes.");
}

void ListMode::execute() {
    const std::string root = args::get(path);
    std::shared_ptr<FileProvider> provider;
    std::vector<std::string> names;
    if (fs::is_directory(root)) {
        provider = std::make_shared<DiskFileProvider>(root);
        // The disk provider cannot list itself: walk the folder.
        for (const auto& entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_regular_file()) names.push_back(entry.path().lexically_relative(root).generic_string());
        }
    } else {
        auto zip = Zip::openShared(root);
        names = zip->getAllNames();
        provider = zip;
    }
    std::string prefix;
    if (folder) {
        prefix = provider->canonizeName(args::get(folder) + "/");
        provider = std::make_shared<RelativeFileProvider>(provider, args::get(folder));
    }
    std::sort(names.begin(), names.end());
    int64_t total = 0;
    size_t count = 0;
    for (const std::string& name : names) {
        if (name.compare(0, prefix.size(), prefix) != 0) continue;
        const std::string inner = name.substr(prefix.size());
        if (inner.empty() || inner.back() == '/') continue;  // folder entries of an archive
        const int64_t size = provider->getDataSize(inner);
        std::cout << size << "\t" << inner << "\n";
        total += size;
        ++count;
    }
    std::cout << count << " items, " << total << " bytes in " << provider->className() << " " << root << std::endl;
}

} // namespace talvex_app
