#ifndef SORVANE_ARF_ANIMATION_STREAM_ANIMATIONSAMPLESTREAM_H
#define SORVANE_ARF_ANIMATION_STREAM_ANIMATIONSAMPLESTREAM_H

#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <utility>

#include "sorvane/archive/BitBuffer.h"
#include "sorvane/arf/animation/stream/HeaderAnimationSample.h"
#include "sorvane/arf/animation/stream/UnitAnimationSample.h"

namespace sorvane::arf {

// The wire stream of animation units: header, body, then extraBytePadding
// zero bytes. A sender adds samples and drains the bytes with flush; a
// receiver feeds bytes in chunks of any size and takes whole units back.
//
// state after each call: -1 end of input, 0 success, 1 not enough data (feed
// more and call again), 2 a decoder failed, 3 unknown unit type (permanent:
// the stream does not resynchronise), 4 encoding failed.
class SORVANE_API AnimationSampleStream : public BitBuffer {
public:
    using SamplePair = std::pair<HeaderAnimationSample*, UnitAnimationSample*>;

    explicit AnimationSampleStream(bool littleEndian);

    // The next whole unit, both owned by the caller, or two nulls (see state).
    SamplePair nextUnitSamplePtr();
    // The same into the caller's objects, for a receiver that decodes every
    // frame: the header is overwritten, and the sample is reused when it is
    // of the unit's kind (its storage with it) or replaced otherwise. False
    // with the state set when no whole unit is there.
    bool nextUnitSample(HeaderAnimationSample& header, std::unique_ptr<UnitAnimationSample>& sample);
    // Appends one unit; sets unitType and unitLength of the header. On failure
    // the stream is left as it was and the result is false.
    bool addUnitSample(HeaderAnimationSample* header, const UnitAnimationSample* sample);
    // The same with a header carrying the timestamp truncated toward zero.
    bool addUnitSample(float timestamp, const UnitAnimationSample* sample);
    // nextUnitSamplePtr, reading chunks of chunkSize bytes from in as needed.
    SamplePair getNextSamplePtr(std::istream& in, long chunkSize);

    const std::string& getErrorMsg() const { return errorMsg; }
    int32_t getState() const { return state; }
    long getExtraBytePadding() const { return extraBytePadding; }
    void setExtraBytePadding(long value) { extraBytePadding = value; }

private:
    SamplePair fail(int32_t newState, const std::string& message, int64_t restore);
    void skipPadding();

    std::string errorMsg;
    int32_t state = 0;
    long extraBytePadding = 0;
    // Padding bytes of the last unit that were not there when it was decoded.
    long pendingPadding = 0;
    // Where a sample is encoded before its header is known; kept for its memory.
    BitBuffer scratch;
};

} // namespace sorvane::arf

#endif
