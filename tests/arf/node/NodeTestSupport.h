#ifndef TALVEX_TESTS_ARF_NODE_NODETESTSUPPORT_H
#define TALVEX_TESTS_ARF_NODE_NODETESTSUPPORT_H

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "sorvane/arf/node/RootNode.h"

namespace talvex_test {

// Reads a whole document text into a fresh root.
inline std::shared_ptr<sorvane::arf::RootNode> readRoot(const std::string& text) {
    auto root = std::make_shared<sorvane::arf::RootNode>();
    std::istringstream in(text);
    sorvane::archive::JsonImporter importer(in);
    root->fromJson(importer);
    return root;
}

inline std::shared_ptr<sorvane::arf::RootNode> newRoot() {
    auto root = std::make_shared<sorvane::arf::RootNode>();
    root->init();
    return root;
}

// The message of the exception the call throws, with the location prefix
// ("file:line function(): ") cut off; "" when nothing is thrown.
inline std::string messageOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::exception& e) {
        std::string text = e.what();
        auto cut = text.find("(): ");
        return cut == std::string::npos ? text : text.substr(cut + 4);
    }
    return "";
}

// Runs the call with the standard error stream captured.
inline std::string stderrOf(const std::function<void()>& call) {
    std::stringstream captured;
    std::streambuf* old = std::cerr.rdbuf(captured.rdbuf());
    try {
        call();
    } catch (...) {
        std::cerr.rdbuf(old);
        throw;
    }
    std::cerr.rdbuf(old);
    return captured.str();
}

} // namespace talvex_test

#endif
