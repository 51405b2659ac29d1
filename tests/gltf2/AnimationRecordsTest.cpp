#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "sorvane/archive/MemoryFileProvider.h"
#include "sorvane/gltf2/Gltf.h"
#include "sorvane/gltf2/node/animation/AnimationProcessor.h"
#include "sorvane/gltf2/property/animation/mixer/AnimationMixer.h"
#include "tests/gltf2/GltfTestSupport.h"

using namespace sorvane;
using namespace sorvane::gltf2;
using talvex_test::messageOf;

namespace {

Gltf fromText(const std::string& json) {
    auto provider = std::make_shared<archive::MemoryFileProvider>();
    provider->create("a.gltf", json);
    return Gltf::load(provider, "a.gltf", MULTIPLE_FILES);
}

// A document with one animation whose sampler 0 maps `times` to `values`
// (FLOAT accessors, the values of the given type).
Gltf withTrack(const std::vector<float>& times, const std::vector<float>& values, const char* type,
               const char* interpolation = nullptr) {
    Gltf gltf;
    gltf.init();
    const int64_t per = std::string(type) == "VEC4" ? 4 : std::string(type) == "VEC3" ? 3 : 1;
    gltf.accessors.get().addDense(times.data(), static_cast<int64_t>(times.size()), ACCESSOR_COMPONENT_TYPE_FLOAT,
                                  "SCALAR", std::nullopt, true);
    gltf.accessors.get().addDense(values.data(), static_cast<int64_t>(values.size()) / per,
                                  ACCESSOR_COMPONENT_TYPE_FLOAT, type, std::nullopt, true);
    Animation animation = gltf.animations.get().add("a");
    animation.samplers.add(int64_t(0), int64_t(1), interpolation);
    return gltf;
}

const AnimationSamplerNode& firstSampler(const Gltf& gltf) {
    return *gltf.animations[0].getNode()->getSamplers()->getByIndex(0);
}

} // namespace

TEST(AnimationRecords, WriteOrderDefaultsAndChecks) {
    Gltf gltf = withTrack({0, 1}, {0, 10}, "SCALAR");
    Animation animation = gltf.animations[0];
    AnimationChannel channel = animation.channels.add(int64_t(0));
    channel.target->path.set("weights");
    EXPECT_EQ(animation.samplers.getByIndex(0).interpolation.get(), "LINEAR");
    EXPECT_FALSE(animation.samplers.getByIndex(0).interpolation.isPropertyPresent());
    const std::string json = gltf.toJsonString(archive::JsonExporter::Options{false, true, false});
    EXPECT_NE(json.find("\"animations\":[{\"channels\":[{\"sampler\":0,\"target\":{\"path\":\"weights\"}}],"
                        "\"samplers\":[{\"input\":0,\"output\":1}],\"name\":\"a\"}]"),
              std::string::npos)
        << json;

    EXPECT_EQ(messageOf([&] { animation.samplers.add(std::nullopt, int64_t(1), nullptr); }),
              "Initialization of animations[0].samplers[-1]: input must be defined");
    EXPECT_EQ(messageOf([&] { animation.samplers.add(int64_t(0), std::nullopt, nullptr); }),
              "Initialization of animations[0].samplers[-1]: output must be defined");
    EXPECT_EQ(messageOf([&] { animation.channels.add(std::optional<int64_t>()); }),
              "Initialization of animations[0].channels[-1]: sampler must be defined");
    EXPECT_EQ(messageOf([&] { animation.samplers.getByIndex(0).input.set(7); }),
              "Setting animations[0].samplers[0].input: Invalid index 7 in accessors");
    EXPECT_EQ(messageOf([&] { animation.samplers.getByIndex(0).output.set(-1); }),
              "Setting animations[0].samplers[0].output: Invalid index -1 in accessors");
    // Targets refer to nodes, which this document does not have.
    EXPECT_NE(messageOf([&] { channel.target->node_.set(0); }), "");
    EXPECT_NE(messageOf([&] { animation.channels.get().addTarget(0, 0, "rotation"); }), "");
}

TEST(AnimationRecords, ParsedIndicesAreStoredAsReadAndStepRoundTrips) {
    const std::string animations =
        "\"animations\":[{\"channels\":[{\"sampler\":4,\"target\":{\"node\":3,\"path\":\"translation\"}}],"
        "\"samplers\":[{\"input\":9,\"output\":8,\"interpolation\":\"STEP\"}]}]";
    Gltf gltf = fromText("{\"asset\":{\"version\":\"2.0\"}," + animations + "}");
    EXPECT_EQ(gltf.animations[0].channels.getByIndex(0).target->node_.get(), 3);
    EXPECT_EQ(gltf.animations[0].samplers.getByIndex(0).interpolation.get(), "STEP");
    // Removing the target's "node" clears that value only; the target stays in its channel.
    {
        Gltf copy = fromText("{\"asset\":{\"version\":\"2.0\"}," + animations + "}");
        auto channel = copy.animations[0].channels.getByIndex(0);
        channel.target->node_.removeProperty();
        EXPECT_FALSE(channel.target->node_.isPropertyPresent());
        EXPECT_EQ(channel.target->path.get(), "translation");
        EXPECT_NE(copy.toJsonString(archive::JsonExporter::Options{false, true, false}).find("\"target\":{\"path\":\"translation\"}"), std::string::npos);
    }
    EXPECT_NE(gltf.toJsonString(archive::JsonExporter::Options{false, true, false}).find(animations),
              std::string::npos);
    // Following the dangling indices fails, it does not read past a list.
    EXPECT_EQ(messageOf([&] { firstSampler(gltf).getTimeRange(); }),
              "In animations[0].samplers[0]: Invalid accessor index 9");
    EXPECT_EQ(messageOf([&] { gltf.animations[0].getNode()->getTimeRange(); }),
              "Getting time range in animations[0]:\nInvalid sampler 4");
}

// A sampler's "input" and "output" follow to their accessors as the other
// accessor references do, and keep the stored number beside.
TEST(AnimationRecords, SamplerInputAndOutputForwardToTheirAccessors) {
    Gltf gltf = withTrack({0, 0.5f, 1}, {0, 0, 1, 2, 2, 3}, "VEC3");
    gltf.accessors.get().addDense(std::vector<float>{9}.data(), 1, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR",
                                  std::nullopt, true);
    AnimationSampler sampler = gltf.animations[0].samplers.getByIndex(0);
    EXPECT_EQ(sampler.input.getIndex(), 0);
    EXPECT_EQ(sampler.output.get().getPropertyIndex(), 1);
    EXPECT_EQ(sampler.input.getDims(), (std::vector<long>{3}));
    EXPECT_EQ(sampler.output.getDims(), (std::vector<long>{2, 3}));
    EXPECT_EQ(sampler.output.getComponentType(), ACCESSOR_COMPONENT_TYPE_FLOAT);
    float times[3] = {};
    EXPECT_EQ(sampler.input.getData(times, sizeof times), static_cast<int64_t>(sizeof times));
    EXPECT_EQ(times[1], 0.5f);
    EXPECT_EQ(sampler.output.getTensor(), gltf.accessors.getByIndex(1).getTensor());
    EXPECT_EQ(sampler.input.getDataArray(), gltf.accessors.getByIndex(0).getDataArray());
    std::unique_ptr<DataTree> tensor(sampler.input.getTensorPtr());
    EXPECT_EQ(*tensor, gltf.accessors.getByIndex(0).getTensor());
    // Set by number or by accessor, both checked against the list.
    sampler.input.set(gltf.accessors.getByIndex(2));
    EXPECT_TRUE(sampler.input == 2);
    EXPECT_EQ(messageOf([&] { sampler.output.set(3); }),
              "Setting animations[0].samplers[0].output: Invalid index 3 in accessors");

    // A dangling number read from a file fails on the follow, not before.
    Gltf parsed = fromText(R"({"asset":{"version":"2.0"},"animations":[{"channels":[],)"
                           R"("samplers":[{"input":9,"output":8}]}]})");
    AnimationSampler dangling = parsed.animations[0].samplers.getByIndex(0);
    EXPECT_EQ(dangling.input.getIndex(), 9);
    EXPECT_EQ(messageOf([&] { dangling.input.getDims(); }), "There is no accessors in ");
}

TEST(AnimationRecords, TimeRanges) {
    Gltf gltf = withTrack({1, 2, 4}, {0, 1, 2}, "SCALAR");
    Animation animation = gltf.animations[0];
    EXPECT_EQ(messageOf([&] { animation.getNode()->getTimeRange(); }),
              "Getting time range in animations[0]:\nNo channels");
    animation.channels.add(int64_t(0));
    EXPECT_EQ(animation.getNode()->getTimeRange(), std::make_pair(1.0f, 4.0f));
    // The list merges from (0, 0): 0 always lies inside.
    EXPECT_EQ(animation.samplers.get().getTimeRange(), std::make_pair(0.0f, 4.0f));
    EXPECT_EQ(gltf.animations.get().add("b").samplers.get().getTimeRange(), std::make_pair(0.0f, 0.0f));

    // A VEC3 key time accessor is refused.
    gltf.accessors.get().addDense(std::vector<float>(6, 1.0f).data(), 2, ACCESSOR_COMPONENT_TYPE_FLOAT, "VEC3",
                                  std::nullopt, true);
    animation.samplers.getByIndex(0).input.set(2);
    EXPECT_EQ(messageOf([&] { firstSampler(gltf).getTimeRange(); }),
              "Getting time range in animations[0].samplers[0]:\nInvalid accessor type, expect scalar");
    EXPECT_EQ(messageOf([&] { firstSampler(gltf).getSample(nullptr, 0, 0); }),
              "Getting sample(s) in animations[0].samplers[0]:\nInvalid accessor type, expect scalar");
}

TEST(AnimationSampling, LinearSegmentsAndTheSegmentRule) {
    AnimationProcessor p;
    p.prepare({0, 1, 2}, {0, 10, 30}, "LINEAR", 30.0f);
    float out[4] = {};
    p.getSample(out, 1, 1.5f);
    EXPECT_FLOAT_EQ(out[0], 20.0f);
    p.getSample(out, 1, 2.0f);  // the last key: a = 1 on the last segment
    EXPECT_FLOAT_EQ(out[0], 30.0f);
    EXPECT_EQ(messageOf([&] { p.getSample(out, 1, 2.5f); }), "Getting a sample:\nInvalid time");
    EXPECT_EQ(messageOf([&] { p.getSample(out, 1, -0.1f); }), "Getting a sample:\nInvalid time");
    EXPECT_EQ(messageOf([&] { p.getSample(out, 1, std::nanf("")); }), "Getting a sample:\nInvalid time");
    EXPECT_EQ(messageOf([&] { p.getSample(out, 0, 1.0f); }), "Getting a sample:\nOut is too small");

    // Before a first key above 0 the first segment extrapolates.
    p.prepare({1, 2}, {10, 20}, "LINEAR", 30.0f);
    p.getSample(out, 1, 0.5f);
    EXPECT_FLOAT_EQ(out[0], 5.0f);

    // Quaternions blend per component: no slerp, no normalisation.
    p.prepare({0, 1}, {0, 0, 0, 1, 0, 0, 1, 0}, "LINEAR", 30.0f);
    p.getSample(out, 4, 0.5f);
    EXPECT_EQ(std::vector<float>(out, out + 4), (std::vector<float>{0, 0, 0.5f, 0.5f}));
}

TEST(AnimationSampling, CubicSplineScalesBothTangentsByTheInterval) {
    AnimationProcessor p;
    // Keys 0 and 2: (in, value, out) = (100, 1, 2) and (-1, 3, 100).
    p.prepare({0, 2}, {100, 1, 2, -1, 3, 100}, "CUBICSPLINE", 30.0f);
    EXPECT_EQ(p.valueSize, 1);
    float out = 0;
    p.getSample(&out, 1, 0.5f);
    EXPECT_FLOAT_EQ(out, 1.96875f);
    p.getSample(&out, 1, 1.0f);
    EXPECT_FLOAT_EQ(out, 2.75f);
    EXPECT_EQ(messageOf([&] { p.prepare({0, 2}, {1, 2, 3, 4}, "CUBICSPLINE", 30.0f); }),
              "Output value count must divide 3 * (input value count)");
}

TEST(AnimationSampling, PrepareRefusals) {
    AnimationProcessor p;
    EXPECT_EQ(messageOf([&] { p.prepare({0}, {1}, "LINEAR", 30.0f); }), "Not enough data");
    EXPECT_EQ(messageOf([&] { p.prepare({0, 1}, {1, 2, 3}, "LINEAR", 30.0f); }),
              "Output value count must divide input value count");
    EXPECT_EQ(messageOf([&] { p.prepare({0, 1}, {1, 2}, "STEP", 30.0f); }),
              "Invalid or unsupported interpolation STEP");
    EXPECT_EQ(messageOf([&] { p.prepare({0, -1}, {1, 2}, "LINEAR", 30.0f); }), "Input values must be positive");
    // Hostile key times and rates fail before any resampling buffer exists.
    const float inf = std::numeric_limits<float>::infinity();
    EXPECT_EQ(messageOf([&] { p.prepare({0, 1e30f}, {1, 2}, "LINEAR", 30.0f); }), "Too many samples: 3e+31");
    EXPECT_EQ(messageOf([&] { p.prepare({0, std::nanf("")}, {1, 2}, "LINEAR", 30.0f); }),
              "Input values must be finite");
    EXPECT_EQ(messageOf([&] { p.prepare({0, inf}, {1, 2}, "LINEAR", 30.0f); }), "Input values must be finite");
    EXPECT_EQ(messageOf([&] { p.prepare({0, 1e6f}, {1, 2}, "LINEAR", 30.0f); }), "Too many samples: 3e+07");
    EXPECT_EQ(messageOf([&] { p.prepare({0, 1}, {1, 2}, "LINEAR", inf); }), "Invalid frame rate");

    p.prepare({0, 1}, {1, 2}, "LINEAR", 30.0f);
    EXPECT_EQ(messageOf([&] { p.setOutput({1, 2, 3}); }), "Invalid output size");
    p.setOutput({5, 7});
    float out = 0;
    p.getSample(&out, 1, 1.0f);
    EXPECT_FLOAT_EQ(out, 7.0f);
}

TEST(AnimationSampling, ResamplingNeverReachesTheLastKey) {
    AnimationProcessor p;
    p.prepare({0, 1}, {0, 10}, "LINEAR", 4.0f);
    ASSERT_EQ(p.sampleCount, 4);
    float times[4], values[4];
    EXPECT_EQ(messageOf([&] { p.getData(times, 12, values, 16); }), "Input is too small");
    EXPECT_EQ(messageOf([&] { p.getData(times, 16, values, 12); }), "Output is too small");
    p.getData(times, 16, values, 16);
    EXPECT_EQ(std::vector<float>(times, times + 4), (std::vector<float>{0, 0.25f, 0.5f, 0.75f}));
    EXPECT_EQ(std::vector<float>(values, values + 4), (std::vector<float>{0, 2.5f, 5, 7.5f}));

    // The sampler's own forms read through the accessors, two-call style.
    Gltf gltf = withTrack({0, 1, 2}, {0, 0, 0, 3, 6, 9, 6, 12, 18}, "VEC3");
    const AnimationSamplerNode& sampler = firstSampler(gltf);
    EXPECT_EQ(sampler.getData(nullptr, 0, nullptr, 0, 2.0f), std::make_pair(4L, 3L));
    auto [t, v] = sampler.getTensor(2.0f);
    EXPECT_EQ(v.getTensorSizes(), (std::vector<long>{4, 3}));
    EXPECT_FLOAT_EQ(t.getData<float>()[3], 1.5f);
    EXPECT_FLOAT_EQ(v.getData<float>()[3 * 3 + 2], 13.5f);
    float sample[3];
    sampler.getSample(sample, 3, 0.5f);
    EXPECT_FLOAT_EQ(sample[1], 3.0f);
}

TEST(AnimationSampling, IntegerOutputsAreRefused) {
    Gltf gltf;
    gltf.init();
    const float times[] = {0, 1};
    const uint8_t bytes[] = {0, 255};
    gltf.accessors.get().addDense(times, 2, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR", std::nullopt, true);
    gltf.accessors.get().addDense(bytes, 2, ACCESSOR_COMPONENT_TYPE_UNSIGNED_BYTE, "SCALAR", std::nullopt, true);
    gltf.animations.get().add("a").samplers.add(int64_t(0), int64_t(1), nullptr);
    EXPECT_EQ(messageOf([&] { getAnimationSamplerData(firstSampler(gltf)); }),
              "Getting sample(s) in animations[0].samplers[0]:\nInvalid accessor component type, expect float");
}

TEST(AnimationRecords, MixerTakesTracksFromTheDocument) {
    Gltf built = withTrack({0, 1}, {0, 0, 0, 10, 10, 10}, "VEC3");
    built.animations[0].channels.add(int64_t(0)).target->path.set("translation");
    float time = 0.5f;
    AnimationMixer mixer(30.0f, {{"translation", TransformPolicy::Replace}});
    EXPECT_EQ(messageOf([&] { mixer.addAnimation(built.animations[0], time, "a"); }), "translation has no node");
    EXPECT_TRUE(mixer.channels.empty());

    // A parsed target keeps its node index unchecked; following it needs the node.
    std::string text = built.toJsonString();
    const std::string path = "\"path\": \"translation\"";
    ASSERT_NE(text.find(path), std::string::npos) << text;
    text.replace(text.find(path), path.size(), "\"node\": 0, " + path);
    Gltf parsed = fromText(text);
    EXPECT_EQ(messageOf([&] { mixer.addAnimation(parsed.animations[0], time, "a"); }), "There is no nodes");
}

TEST(AnimationRecords, GlbFilesKeepTheirTracksAndTruncationsFail) {
    talvex_test::GltfScratch scratch;
    const std::string path = scratch.path("a.glb");
    {
        Gltf gltf = Gltf::create(path);
        const float times[] = {0, 1}, values[] = {0, 10};
        gltf.accessors.get().addDense(times, 2, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR");
        gltf.accessors.get().addDense(values, 2, ACCESSOR_COMPONENT_TYPE_FLOAT, "SCALAR");
        gltf.animations.get().add("a").samplers.add(int64_t(0), int64_t(1), nullptr);
        gltf.save();
    }
    {
        const Gltf loaded = Gltf::load(path, true);
        float out = 0;
        firstSampler(loaded).getSample(&out, 1, 0.25f);
        EXPECT_FLOAT_EQ(out, 2.5f);
    }
    // A BIN chunk longer than the file: read whole and refused as before.
    std::string bytes = scratch.read("a.glb");
    scratch.write("a.glb", bytes.substr(0, bytes.size() - 4));
    EXPECT_EQ(messageOf([&] { Gltf::load(path, true); }), "Error reading stream");
}

TEST(AnimationRecords, MixerStartsFromTheTargetNodesRestState) {
    Gltf gltf = withTrack({0, 1}, {0, 0, 0, 10, 10, 10}, "VEC3");
    Node node = gltf.nodes.get().add(nullptr);
    node.getNode()->setTranslation({1, 2, 3});
    gltf.animations[0].channels.get().addTarget(0, 0, "translation");
    float time = 0.5f;
    AnimationMixer mixer(30.0f, {{"translation", TransformPolicy::Add}});
    mixer.addAnimation(gltf.animations[0], time, "a");
    ASSERT_EQ(mixer.channels.size(), 1u);
    EXPECT_EQ(mixer.channels[0]->nodeIndex, 0);
    const TransformData state = mixer.apply()[0];
    EXPECT_EQ(std::vector<float>(state.translation, state.translation + 3), (std::vector<float>{6, 7, 8}));

    AnimationMixer byNode(30.0f, {{"translation", TransformPolicy::Add}});
    byNode.addAnimationChannel(node, "translation", {0, 1}, {0, 0, 0, 10, 10, 10}, "LINEAR", time, "b");
    EXPECT_EQ(byNode.apply()[0].translation[2], 8.0f);

    node.getNode()->setMatrix(std::vector<double>{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    AnimationMixer mixed(30.0f, {{"translation", TransformPolicy::Add}});
    EXPECT_EQ(messageOf([&] { mixed.addAnimation(gltf.animations[0], time, "a"); }),
              "Error in nodes[0]:\nCan't mix Scale/Rotation/Translation and Matrix transform");
}
