// Arbitrary bytes read as an ARF document into the node tree, written back,
// and the written text read again; and the same bytes skipped as an unknown
// value. Only the library's own exceptions are expected.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "sorvane/arf/node/RootNode.h"
#include "sorvane/core/RuntimeException.h"

namespace {

struct QuietErrors {
    // Unknown keys are reported on the error stream; keep the fuzzer's output readable.
    std::stringstream sink;
    std::streambuf* old = std::cerr.rdbuf(sink.rdbuf());
    ~QuietErrors() { std::cerr.rdbuf(old); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    QuietErrors quiet;
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string written;
    try {
        auto root = std::make_shared<sorvane::arf::RootNode>();
        std::istringstream in(text);
        sorvane::archive::JsonImporter importer(in);
        root->fromJson(importer);
        written = root->toJsonString();
    } catch (const sorvane::RuntimeException&) {
    }
    if (!written.empty()) {
        // What the library writes it must read back to the same text.
        auto again = std::make_shared<sorvane::arf::RootNode>();
        std::istringstream in(written);
        sorvane::archive::JsonImporter importer(in);
        try {
            again->fromJson(importer);
        } catch (const sorvane::RuntimeException& e) {
            std::fprintf(stderr, "written text does not read back: %s\n", e.what());
            std::abort();
        }
        if (again->toJsonString() != written) {
            std::fprintf(stderr, "second write differs\n");
            std::abort();
        }
    }
    std::istringstream in(text);
    sorvane::archive::JsonImporter importer(in);
    importer.skipContent(0, 0);
    return 0;
}
