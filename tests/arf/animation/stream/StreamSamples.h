// Shared by the stream tests: the units of the frozen fixtures, a textual
// description of a decoded unit, and chunked decoding.
#ifndef TALVEX_TESTS_STREAMSAMPLES_H
#define TALVEX_TESTS_STREAMSAMPLES_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/arf/animation/stream/AnimationSampleStream.h"

namespace streamtest {

using namespace sorvane::arf;

struct Unit {
    HeaderAnimationSample header;
    std::shared_ptr<UnitAnimationSample> sample;
};

// Fixture names: <kind>_<le|be>.bin in tests/data/stream.
const std::vector<std::string>& kindNames();
std::vector<Unit> fixtureUnits(const std::string& kind);
std::string fixturePath(const std::string& kind, bool littleEndian);
std::vector<uint8_t> readFile(const std::string& path);

// Encodes the units in order into a fresh stream and drains it.
std::vector<uint8_t> encodeUnits(std::vector<Unit>& units, bool littleEndian, long padding = 0);

// Every field of a unit, floats as bit patterns. With asLittleWire the
// description is the one such a unit has after a trip through a
// little-endian stream: float bytes reversed, duration bytes moved.
std::string describe(const HeaderAnimationSample& header, const UnitAnimationSample& sample,
                     bool asLittleWire = false);

// Feeds the bytes in chunks whose sizes the chunker gives (called until the
// bytes are used up) and drains the stream after each chunk. Fails the test
// on a state other than 0 or 1.
std::vector<std::string> decodeChunked(const std::vector<uint8_t>& bytes, bool littleEndian,
                                       const std::function<size_t()>& chunker, long padding = 0);

} // namespace streamtest

#endif
