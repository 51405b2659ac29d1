// Peak resident size of loading and saving a large generated document in each
// storage mode. Each step runs in a process of its own, so that the peak
// (VmHWM) belongs to that step:
//
//   talvex_peak make DIR MB          writes DIR/doc.arf (+ payload files) and DIR/doc.arfz,
//                                    about MB megabytes, payloads a little over half
//   talvex_peak load PATH            loads a .arf or .arfz document
//   talvex_peak save PATH OUT        loads PATH and saves it again at OUT (.arf, .arfz) as
//                                    `talvex convert` does, every payload read and stored again
//   talvex_peak memory PATH          puts the files of a .arf document into a memory store,
//                                    then loads it from there and saves it back
//
// Every step prints the size of the document and the peak before and after,
// in MiB; the growth over the starting peak is what the step cost.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/archive/Zip.h"
#include "sorvane/arf/Arf.h"
#include "sorvane/arf/ArfCopy.h"
#include "sorvane/core/file.h"

namespace fs = std::filesystem;
using namespace sorvane::arf;

namespace {

double peakMiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
    return 0;
}

// The document's own size: its files, or the entries of its archive as they
// are once inflated (what a load holds).
uint64_t documentBytes(const fs::path& path) {
    if (path.extension() == ".arfz") {
        const sorvane::archive::Zip zip = sorvane::archive::Zip::open(path);
        uint64_t total = 0;
        for (const std::string& name : zip.getAllNames()) total += static_cast<uint64_t>(zip.getDataSize(name));
        return total;
    }
    uint64_t total = 0;
    for (const auto& entry : fs::directory_iterator(path.parent_path().empty() ? fs::path(".") : path.parent_path()))
        if (entry.is_regular_file() && entry.path().extension() != ".arfz") total += entry.file_size();
    return total;
}

// The JSON part: many assets with levels of detail and their reference lists;
// about 45% of the whole.
std::string recordsText(size_t bytes) {
    std::ostringstream json;
    json << "{\"preamble\": {\"signature\": \"MPEG-ARF-2025\", \"version\": \"1.0.0\"}, \"structure\": {\"assets\": [";
    for (int a = 0; json.tellp() < static_cast<std::streamoff>(bytes); ++a) {
        json << (a ? ", " : "") << "{\"lods\": [";
        for (int l = 0; l < 4; ++l) {
            json << (l ? ", " : "") << "{";
            for (const char* key : {"skins", "meshes", "skeletons", "blendshapeSets", "landmarkSets", "textureSets"}) {
                json << "\"" << key << "\": [";
                for (int k = 0; k < 6; ++k) json << (k ? ", " : "") << (a * 31 + l * 7 + k + 1);
                json << "], ";
            }
            json << "\"name\": \"lod " << l << "\", \"id\": " << (l + 1) << "}";
        }
        json << "], \"name\": \"asset number " << a << "\", \"id\": " << (a + 1) << "}";
    }
    json << "]}}";
    return json.str();
}

int make(const fs::path& dir, long megabytes) {
    fs::create_directories(dir);
    const size_t total = static_cast<size_t>(megabytes) << 20;
    const std::string text = recordsText(total * 45 / 100);
    // Payloads: dense float tensors of 4 MiB each, up to the rest.
    std::vector<float> values(1u << 20);
    std::mt19937 rng(3);
    for (auto& v : values) v = static_cast<float>(rng() % 1000) / 7.0f;
    for (const char* name : {"doc.arf", "doc.arfz"}) {
        const fs::path path = dir / name;
        const fs::path previous = fs::current_path();
        fs::current_path(dir);
        {
            Arf arf = Arf::create(name);
            std::istringstream in(text);
            sorvane::archive::JsonImporter importer(in);
            arf.fromJson(importer);
            for (size_t done = text.size(), i = 0; done < total; done += values.size() * 4, ++i)
                arf.data.addDense(values.data(), static_cast<int64_t>(values.size() * 4), DATA_DTYPE_FLOAT,
                                  {static_cast<long>(values.size() / 4), 4}, false, nullptr,
                                  ("payload" + std::to_string(i)).c_str());
            arf.save();
        }
        fs::current_path(previous);
        std::cout << path.string() << ": " << documentBytes(path) / 1048576.0 << " MiB\n";
    }
    return 0;
}

void report(const char* step, const fs::path& path, double before) {
    const double after = peakMiB();
    const double document = static_cast<double>(documentBytes(path)) / 1048576.0;
    std::printf("%s %s: document %.1f MiB, peak %.1f MiB before, %.1f MiB after, growth %.1f MiB = %.2fx document\n",
                step, path.string().c_str(), document, before, after, after - before, (after - before) / document);
}

int load(const fs::path& path) {
    const double before = peakMiB();
    Arf arf = Arf::load(path, true);
    report("load", path, before);
    return arf.data.get().size() > 0 ? 0 : 1;
}

int save(const fs::path& path, const fs::path& out) {
    const double before = peakMiB();
    {
        Arf source = Arf::load(path, true);
        fs::create_directories(out.parent_path());
        const fs::path previous = fs::current_path();
        fs::current_path(out.parent_path());
        // As `talvex convert` does it: every payload read and stored again.
        saveArfAs(std::move(source), out.filename());
        fs::current_path(previous);
    }
    report("load+save", out, before);
    return 0;
}

int memory(const fs::path& path) {
    auto store = std::make_shared<sorvane::archive::MemoryFileProvider>();
    const fs::path dir = path.parent_path();
    for (const auto& entry : fs::directory_iterator(dir)) {
        if (!entry.is_regular_file()) continue;
        const std::string name = entry.path().filename() == path.filename() ? "arf.json" : entry.path().filename().string();
        store->createFromFile(name, entry.path().string(), true);
    }
    double before = peakMiB();
    Arf arf = Arf::load(store, "arf.json", AUTO, false);
    report("memory load", path, before);
    before = peakMiB();
    Arf target = saveArfAs(std::move(arf), "memory:");
    report("memory save (into a second memory document)", path, before);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        const std::string step = argc > 1 ? argv[1] : "";
        if (step == "make" && argc == 4) return make(argv[2], std::stol(argv[3]));
        if (step == "load" && argc == 3) return load(argv[2]);
        if (step == "save" && argc == 4) return save(argv[2], fs::absolute(argv[3]));
        if (step == "memory" && argc == 3) return memory(argv[2]);
    } catch (const std::exception& e) {
        std::cerr << e.what() << "\n";
        return 1;
    }
    std::cerr << "usage: talvex_peak make DIR MB | load PATH | save PATH OUT | memory PATH\n";
    return 2;
}
