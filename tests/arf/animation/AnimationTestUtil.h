#ifndef TALVEX_TESTS_ARF_ANIMATION_ANIMATIONTESTUTIL_H
#define TALVEX_TESTS_ARF_ANIMATION_ANIMATIONTESTUTIL_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace animtest {

// The message after the location prefix "file:line function(): ".
inline std::string plain(const std::string& text) {
    const size_t at = text.find("(): ");
    return at == std::string::npos ? text : text.substr(at + 4);
}

// The text the call fails with, or "ok".
template <class F>
std::string failure(F&& f) {
    try {
        f();
    } catch (const std::exception& e) {
        return plain(e.what());
    }
    return "ok";
}

inline void expectFloats(const std::vector<float>& expected, const float* actual, float tolerance = 1e-6f) {
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(expected[i], actual[i], tolerance) << "at " << i;
}

} // namespace animtest

#endif
