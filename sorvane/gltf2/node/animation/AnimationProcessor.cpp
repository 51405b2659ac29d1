#include "sorvane/gltf2/node/animation/AnimationProcessor.h"

#include <cmath>
#include <tuple>
#include <utility>

#include "sorvane/core/RuntimeException.h"
#include "sorvane/gltf2/node/animation/AnimationSamplerNode.h"

namespace sorvane::gltf2 {

namespace {

// Resampling allocates sampleCount * (valueSize + 1) floats. A duration or
// frame rate far beyond what the keys describe (a key time of 1e30 in a small
// file) must fail here, before anything of that size is asked for.
constexpr double kMaxSamplesPerKey = 65536.0;
constexpr double kMaxSampleFloats = double(1 << 28);

} // namespace

void AnimationProcessor::prepare(std::vector<float> input_, std::vector<float> output_, std::string interpolation_,
                                 float frameRate) {
    const size_t keys = input_.size();
    if (keys < 2) SORVANE_THROW("Not enough data");
    if (output_.size() % keys != 0) SORVANE_THROW("Output value count must divide input value count");
    size_t size = output_.size() / keys;
    if (interpolation_ == "CUBICSPLINE") {
        if (size % 3 != 0) SORVANE_THROW("Output value count must divide 3 * (input value count)");
        size /= 3;
    } else if (interpolation_ != "LINEAR") {
        SORVANE_THROW("Invalid or unsupported interpolation %s", interpolation_.c_str());
    }
    for (float t : input_)
        if (!std::isfinite(t)) SORVANE_THROW("Input values must be finite");
    const float last = input_.back();
    if (last < 0.0f) SORVANE_THROW("Input values must be positive");
    if (!std::isfinite(frameRate) || frameRate < 0.0f) SORVANE_THROW("Invalid frame rate");
    const double samples = std::floor(static_cast<double>(last) * static_cast<double>(frameRate));
    if (samples > kMaxSamplesPerKey * static_cast<double>(keys) ||
        samples * static_cast<double>(size + 1) > kMaxSampleFloats)
        SORVANE_THROW("Too many samples: %g", samples);

    input = std::move(input_);
    output = std::move(output_);
    interpolation = std::move(interpolation_);
    inputCount = static_cast<long>(keys);
    valueSize = static_cast<long>(size);
    duration = last;
    sampleCount = static_cast<long>(samples);
}

void AnimationProcessor::prepare(const AnimationSamplerNode& sampler, float frameRate) {
    auto [in, out, interp] = getAnimationSamplerData(sampler);
    prepare(std::move(in), std::move(out), std::move(interp), frameRate);
}

void AnimationProcessor::setOutput(std::vector<float> output_) {
    if (output_.size() != output.size()) SORVANE_THROW("Invalid output size");
    output = std::move(output_);
}

void AnimationProcessor::sampleSegment(float* out, long i, float time) const {
    const float t0 = input[static_cast<size_t>(i - 1)];
    const float t1 = input[static_cast<size_t>(i)];
    const size_t n = static_cast<size_t>(valueSize);
    if (interpolation == "CUBICSPLINE") {
        const float dt = t1 - t0;
        const float s = (time - t0) / dt;
        const float s2 = s * s, s3 = s2 * s;
        const float h00 = 2 * s3 - 3 * s2 + 1, h10 = dt * (s3 - 2 * s2 + s);
        const float h01 = 3 * s2 - 2 * s3, h11 = dt * (s3 - s2);
        // Per key: in-tangent, value, out-tangent.
        const float* k0 = output.data() + static_cast<size_t>(i - 1) * 3 * n;
        const float* k1 = k0 + 3 * n;
        for (size_t c = 0; c < n; ++c)
            out[c] = h00 * k0[n + c] + h10 * k0[2 * n + c] + h01 * k1[n + c] + h11 * k1[c];
        return;
    }
    const float a = (time - t0) / (t1 - t0);
    const float* v0 = output.data() + static_cast<size_t>(i - 1) * n;
    const float* v1 = v0 + n;
    for (size_t c = 0; c < n; ++c) out[c] = v1[c] * a + v0[c] * (1 - a);
}

void AnimationProcessor::getSample(float* out, long outSize, float time) const {
    // Written so that NaN is refused too.
    if (!(time >= 0.0f && time <= duration)) SORVANE_THROW("Getting a sample:\nInvalid time");
    if (valueSize > outSize) SORVANE_THROW("Getting a sample:\nOut is too small");
    if (inputCount < 2) SORVANE_THROW("Not enough data");
    long i = 1;
    while (i < inputCount && !(input[static_cast<size_t>(i)] > time)) ++i;
    if (i == inputCount) i = inputCount - 1;
    sampleSegment(out, i, time);
}

void AnimationProcessor::getData(float* times, long timesBytes, float* values, long valuesBytes) const {
    if (timesBytes / 4 < sampleCount) SORVANE_THROW("Input is too small");
    if (valueSize > 0 && valuesBytes / 4 / valueSize < sampleCount) SORVANE_THROW("Output is too small");
    if (sampleCount < 1) return;
    long i = 1;
    for (long k = 0; k < sampleCount; ++k) {
        const float t = static_cast<float>(k) * duration / static_cast<float>(sampleCount);
        while (i < inputCount - 1 && !(input[static_cast<size_t>(i)] > t)) ++i;
        times[k] = t;
        sampleSegment(values + k * valueSize, i, t);
    }
}

} // namespace sorvane::gltf2
