#include "sorvane/arf/animation/stream/AnimationSampleStream.h"

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

#include "sorvane/arf/animation/stream/AnimationSampleStreamException.h"
#include "sorvane/arf/animation/stream/BlendshapeAnimationSample.h"
#include "sorvane/arf/animation/stream/ConfigAnimationSample.h"
#include "sorvane/arf/animation/stream/JointAnimationSample.h"
#include "sorvane/arf/animation/stream/LandmarkAnimationSample.h"
#include "sorvane/arf/animation/stream/SilentAnimationSample.h"
#include "sorvane/arf/animation/stream/TextureAnimationSample.h"
#include "sorvane/core/RuntimeException.h"

namespace sorvane::arf {

namespace {

const char* const kNotEnoughData = "Not enough data";

UnitAnimationSample* makeSample(unsigned long type) {
    switch (type) {
    case ANIMATION_UNIT_CONFIG: return new ConfigAnimationSample();
    case ANIMATION_UNIT_BLENDSHAPE: return new BlendshapeAnimationSample();
    case ANIMATION_UNIT_JOINT: return new JointAnimationSample();
    case ANIMATION_UNIT_LANDMARK: return new LandmarkAnimationSample();
    case ANIMATION_UNIT_TEXTURE: return new TextureAnimationSample();
    case ANIMATION_UNIT_SILENT: return new SilentAnimationSample();
    default: return nullptr;
    }
}

// Float to integer, truncated toward zero; values an integer can't hold (and
// NaN) become the most negative one, which the header then refuses.
long truncateTimestamp(float timestamp) {
    if (!(timestamp > -9.2e18f && timestamp < 9.2e18f)) {
        return timestamp > 0 ? std::numeric_limits<long>::max() : std::numeric_limits<long>::min();
    }
    return static_cast<long>(timestamp);
}

} // namespace

AnimationSampleStream::AnimationSampleStream(bool littleEndian) { setBigEndian(!littleEndian); }

AnimationSampleStream::SamplePair AnimationSampleStream::fail(int32_t newState, const std::string& message,
                                                              int64_t restore) {
    if (restore <= bitSize) readPos = restore;
    state = newState;
    errorMsg = message;
    return SamplePair(nullptr, nullptr);
}

void AnimationSampleStream::skipPadding() {
    while (pendingPadding > 0) {
        unsigned long byte = 0;
        if (!readBits(8, byte)) return; // not there yet: the next call goes on
        if (byte != 0) {
            if (readPos > 7) readPos -= 8;
            pendingPadding = 0;
            return;
        }
        --pendingPadding;
    }
}

AnimationSampleStream::SamplePair AnimationSampleStream::nextUnitSamplePtr() {
    std::unique_ptr<HeaderAnimationSample> header(new HeaderAnimationSample());
    std::unique_ptr<UnitAnimationSample> sample;
    if (!nextUnitSample(*header, sample)) return SamplePair(nullptr, nullptr);
    return SamplePair(header.release(), sample.release());
}

bool AnimationSampleStream::nextUnitSample(HeaderAnimationSample& header, std::unique_ptr<UnitAnimationSample>& sample) {
    state = 0;
    errorMsg.clear();
    if (pendingPadding > 0) skipPadding();
    const int64_t start = readPos;
    if (bitSize - readPos < 32) return fail(1, kNotEnoughData, start), false;

    try {
        header.decode(*this);
    } catch (const AnimationSampleStreamException& e) {
        return fail(e.code, e.what(), start), false;
    } catch (const std::exception& e) {
        return fail(2, e.what(), start), false;
    }
    // A unit is decoded only once it has arrived whole.
    if (header.getUnitLength() > (bitSize - readPos) / 8) return fail(1, kNotEnoughData, start), false;

    const auto type = static_cast<unsigned long>(header.getUnitType());
    if (!sample || static_cast<unsigned long>(sample->type()) != type) {
        sample.reset(makeSample(type));
        if (!sample) return fail(3, "Invalid unit type", start), false;
    }
    try {
        sample->decode(*this);
    } catch (const AnimationSampleStreamException& e) {
        return fail(e.code, e.what(), start), false;
    } catch (const std::exception& e) {
        return fail(2, e.what(), start), false;
    }

    // Skip up to extraBytePadding zero bytes; the first non-zero byte is left
    // for the next header. Padding that has not arrived yet is skipped by the
    // next call, so that the units do not depend on how the bytes were cut.
    if (extraBytePadding > 0) {
        pendingPadding = extraBytePadding;
        skipPadding();
    }
    clearRead();
    return true;
}

bool AnimationSampleStream::addUnitSample(HeaderAnimationSample* header, const UnitAnimationSample* sample) {
    if (!sample) {
        state = 4;
        errorMsg = "sample is NULL";
        return false;
    }
    state = 0;
    errorMsg.clear();
    const int64_t start = bitSize;
    try {
        if (!header) SORVANE_THROW("header is NULL");
        scratch.clear();
        scratch.setBigEndian(isBigEndian());
        sample->encode(scratch);
        header->setUnitType(sample->type());
        header->setUnitLength(static_cast<long>((scratch.getBitSize() + 7) / 8));
        header->encode(*this);
        if (!writeBytes(scratch.data(), header->getUnitLength())) SORVANE_THROW("Error encoding");
        if (extraBytePadding > 0) {
            if (extraBytePadding > (std::numeric_limits<int64_t>::max() - bitSize) / 8 - 64)
                SORVANE_THROW("Error encoding");
            ensureWriteCapacity(bitSize + extraBytePadding * 8);
            for (long i = 0; i < extraBytePadding; ++i)
                if (!writeBits(0, 8)) SORVANE_THROW("Error encoding");
        }
        return true;
    } catch (const std::exception& e) {
        bitSize = start;
        state = 4;
        errorMsg = e.what();
        return false;
    }
}

bool AnimationSampleStream::addUnitSample(float timestamp, const UnitAnimationSample* sample) {
    HeaderAnimationSample header;
    header.setTimestampPresent(true);
    header.setExtensionPresent(false);
    header.setTimestamp(truncateTimestamp(timestamp));
    return addUnitSample(&header, sample);
}

AnimationSampleStream::SamplePair AnimationSampleStream::getNextSamplePtr(std::istream& in, long chunkSize) {
    std::vector<char> chunk;
    for (;;) {
        SamplePair next = nextUnitSamplePtr();
        if (next.first && next.second) return next;
        if (state != 1) SORVANE_THROW("Failed getting next sample: %s", errorMsg.c_str());
        if (in.fail() || in.bad()) {
            if (readPos == bitSize) state = -1;
            return SamplePair(nullptr, nullptr);
        }
        if (chunkSize < 0) throw std::length_error("cannot create std::vector larger than max_size()");
        chunk.resize(static_cast<size_t>(chunkSize));
        in.read(chunk.data(), static_cast<std::streamsize>(chunkSize));
        const std::streamsize got = in.gcount();
        if (got <= 0) return SamplePair(nullptr, nullptr);
        feed(chunk.data(), static_cast<long>(got));
    }
}

} // namespace sorvane::arf
