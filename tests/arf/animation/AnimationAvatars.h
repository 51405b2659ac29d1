#ifndef TALVEX_TESTS_ARF_ANIMATION_ANIMATIONAVATARS_H
#define TALVEX_TESTS_ARF_ANIMATION_ANIMATIONAVATARS_H

// Two small avatars for the animation tests. F: one blendshape set (id 1,
// shapes 0, 1, 2) whose link (face framework 0) maps mediapipe inputs (face
// framework 1) linearly onto shapes 0 and 2. S: a skeleton (id 1) whose joint
// 1 follows curves of mediapipe weights 25 (translation) and 9 (rotation).

#include <string>
#include <vector>

#include "sorvane/arf/Arf.h"

namespace animtest {

inline const char* const kPreamble = R"("preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0",
    "supportedAnimations": {"faceAnimations": ["urn:example:rig", "urn:mpeg:avatar:blendshapes:mediapipe"]}})";

inline sorvane::arf::Arf avatarF(long staleTarget = -1) {
    std::string stale = staleTarget >= 0 ? R"(, {"targetIndex": )" + std::to_string(staleTarget) +
                                               R"(, "sourceIndices": [3], "weights": [1]})"
                                         : std::string();
    return sorvane::arf::Arf::load(std::string("memory:{") + kPreamble + R"(, "components": {"meshes": [],
      "blendshapeSets": [{"animationInfo": [{"type": "ANIMATION_FACE", "target": 0, "mappings": [{"source": 1,
          "linearAssociations": [{"targetIndex": 0, "sourceIndices": [1, 2], "weights": [0.5, 0.25]},
                                 {"targetIndex": 2, "sourceIndices": [25], "weights": [2]})" + stale + R"(]}]}],
        "shapes": [{"shape": 1, "name": "a", "id": 0}, {"shape": 1, "name": "b", "id": 1},
                   {"shape": 1, "name": "c", "id": 2}],
        "baseMesh": 1, "name": "face", "id": 1}]}})");
}

inline sorvane::arf::Arf avatarS() {
    auto arf = sorvane::arf::Arf::load(std::string("memory:{") + kPreamble + R"(, "components": {"meshes": [],
      "nodes": [{"mapping": "a", "translation": [1, 2, 3], "rotation": [0, 0, 1, 0], "scale": [2, 2, 2], "name": "a", "id": 1},
                {"mapping": "b", "name": "b", "id": 2}],
      "skeletons": [{"root": 1, "joints": [{"node": 1, "id": 0}, {"node": 2, "id": 1}], "name": "s", "id": 1,
        "animationInfo": [{"type": "ANIMATION_FACE", "target": 0, "mappings": [{"source": 1,
          "nonLinearAssociations": [{"targetIndex": 1, "channels": [
            {"sourceIndex": 25, "input": 1, "output": 2, "path": "CHANNEL_JOINT_TRANSLATION"},
            {"sourceIndex": 9, "input": 1, "output": 3, "path": "CHANNEL_JOINT_ROTATION"}]}]}]}]}]}})");
    const std::vector<float> keys = {0, 1};
    const std::vector<float> moves = {0, 0, 0, 2, 4, 6};
    const std::vector<float> turns = {0, 0, 0, 1, 0, 0, 1, 0};
    using sorvane::arf::DATA_DTYPE_FLOAT;
    arf.data.addDense(keys.data(), 8, DATA_DTYPE_FLOAT, {2}, true);
    arf.data.addDense(moves.data(), 24, DATA_DTYPE_FLOAT, {2, 3}, true);
    arf.data.addDense(turns.data(), 32, DATA_DTYPE_FLOAT, {2, 4}, true);
    return arf;
}

// F's blendshape set with other associations in its mediapipe mapping (for
// the build's refusals).
inline sorvane::arf::Arf faceWith(const std::string& associations) {
    return sorvane::arf::Arf::load(std::string("memory:{") + kPreamble + R"(, "components": {"meshes": [],
      "blendshapeSets": [{"animationInfo": [{"type": "ANIMATION_FACE", "target": 0, "mappings": [{"source": 1, )" +
                                   associations + R"(}]}],
        "shapes": [{"shape": 1, "name": "a", "id": 0}, {"shape": 1, "name": "b", "id": 1},
                   {"shape": 1, "name": "c", "id": 2}],
        "baseMesh": 1, "name": "face", "id": 1}]}})");
}

// A skeleton (id 1) of n joints, ids 0..n-1, each on its own node with a
// distinct rest translation, driven directly by body framework 0,
// "urn:example:body".
inline sorvane::arf::Arf avatarBody(long n) {
    std::string nodes, joints;
    for (long i = 0; i < n; ++i) {
        const std::string id = std::to_string(i + 1);
        nodes += std::string(i ? ", " : "") + R"({"mapping": "j)" + id + R"(", "translation": [)" + id +
                 R"(, 0, 0], "name": "j)" + id + R"(", "id": )" + id + "}";
        joints += std::string(i ? ", " : "") + R"({"node": )" + id + R"(, "id": )" + std::to_string(i) + "}";
    }
    return sorvane::arf::Arf::load(std::string(R"(memory:{"preamble": {"signature": "MPEG-ARF-2025", "version": "1.0.0",
    "supportedAnimations": {"bodyAnimations": ["urn:example:body"]}}, "components": {"meshes": [], "nodes": [)") +
                                   nodes + R"(], "skeletons": [{"root": 1, "joints": [)" + joints +
                                   R"(], "name": "body", "id": 1, "animationInfo": [{"type": "ANIMATION_BODY", "target": 0}]}]}})");
}

} // namespace animtest

#endif
