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
        // What the library writes it must read back, and from the second
        // write on the text must not change. Numbers are written with 16
        // significant digits, so a double that needs 17 may move once to
        // the neighbour its 16-digit text names ("1e-24" is not the double
        // read from 1.00000000000000001e-24); after that it is stable.
        std::string previous = written;
        for (int round = 0; round < 2; ++round) {
            auto again = std::make_shared<sorvane::arf::RootNode>();
            std::istringstream in(previous);
            sorvane::archive::JsonImporter importer(in);
            try {
                again->fromJson(importer);
            } catch (const sorvane::RuntimeException& e) {
                std::fprintf(stderr, "written text does not read back: %s\n", e.what());
                std::abort();
            }
            std::string next = again->toJsonString();
            if (round == 1 && next != previous) {
                std::fprintf(stderr, "third write differs from the second\n");
                std::abort();
            }
            previous = std::move(next);
        }
    }
    std::istringstream in(text);
    sorvane::archive::JsonImporter importer(in);
    importer.skipContent(0, 0);
    return 0;
}
