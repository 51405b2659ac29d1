/* The mapper's flat functions from plain C99: a face avatar driven by a
 * mediapipe frame and by stream samples, its graph read back, and the texts
 * of the calls it refuses. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

static int slotEndsWith(const char* expected) {
    char text[512];
    int64_t size = sizeof text;
    size_t n, m;
    if (sorvane_getErrorMessage(text, &size) != 0) return 0;
    n = strlen(text);
    m = strlen(expected);
    return n >= m && strcmp(text + n - m, expected) == 0;
}

static const char* const kFace =
    "memory:{\"preamble\": {\"signature\": \"MPEG-ARF-2025\", \"version\": \"1.0.0\","
    " \"supportedAnimations\": {\"faceAnimations\": [\"urn:example:rig\", \"urn:mpeg:avatar:blendshapes:mediapipe\"]}},"
    " \"components\": {\"meshes\": [], \"blendshapeSets\": [{\"animationInfo\": [{\"type\": \"ANIMATION_FACE\","
    " \"target\": 0, \"mappings\": [{\"source\": 1, \"linearAssociations\": ["
    " {\"targetIndex\": 0, \"sourceIndices\": [1, 2], \"weights\": [0.5, 0.25]},"
    " {\"targetIndex\": 2, \"sourceIndices\": [25], \"weights\": [2]}]}]}],"
    " \"shapes\": [{\"shape\": 1, \"name\": \"a\", \"id\": 0}, {\"shape\": 1, \"name\": \"b\", \"id\": 1},"
    " {\"shape\": 1, \"name\": \"c\", \"id\": 2}], \"baseMesh\": 1, \"name\": \"face\", \"id\": 1}]}}";

static int run(sorvane_arf_Arf* arf) {
    sorvane_arf_AnimationFramework* mediapipe = NULL;
    sorvane_arf_AnimationMapper* mapper = NULL;
    sorvane_arf_AnimationComponents* c = NULL;
    sorvane_arf_AnimationData* frame = NULL;
    sorvane_arf_BlendshapeAnimationSample* sample = NULL;
    sorvane_arf_SilentAnimationSample* silent = NULL;
    sorvane_arf_UnitAnimationSample* unit = NULL;
    sorvane_arf_AnimationOperator* op = NULL;
    DataTree* description = NULL;
    const float start[3] = {0.9f, 0.7f, 0.5f};
    const float one = 0.2f, two = 0.4f, jaw = 0.3f;
    float weights[3];
    int64_t count = 0;
    int32_t type = 0;
    char text[2048];
    int64_t textSize = sizeof text;

    if (sorvane_arf_AnimationFramework_create(&mediapipe, "urn:mpeg:avatar:blendshapes:mediapipe", 0) != 0) return 10;
    if (sorvane_arf_AnimationMapper_create(&mapper, NULL, mediapipe) != -1 || !slotEndsWith("arf is NULL")) return 11;
    if (sorvane_arf_AnimationMapper_create(&mapper, arf, NULL) != -1 || !slotEndsWith("source is NULL")) return 12;
    if (sorvane_arf_AnimationMapper_create(&mapper, arf, mediapipe) != 0 || !mapper) return 13;
    if (sorvane_arf_AnimationMapper_getOperatorCount(&count, mapper) != 0 || count != 2) return 14;

    /* A frame: target 0 = 0.5 * 0.2 + 0.25 * 0.4, target 2 = 2 * 0.3, target 1 untouched. */
    if (sorvane_arf_AnimationComponents_create(&c, arf) != 0) return 20;
    if (sorvane_arf_AnimationComponents_setBlendshapeWeights(c, 1, start, sizeof start, 3) != 0) return 21;
    if (sorvane_arf_AnimationFramework_createData(&frame, mediapipe) != 0) return 22;
    if (sorvane_arf_AnimationData_setValue(frame, 1, 0, 1, &one, sizeof one, 1) != 0) return 23;
    if (sorvane_arf_AnimationData_setValue(frame, 1, 0, 2, &two, sizeof two, 1) != 0) return 23;
    if (sorvane_arf_AnimationData_setValue(frame, 1, 0, 25, &jaw, sizeof jaw, 1) != 0) return 23;
    if (sorvane_arf_AnimationMapper_updateComponents_data(mapper, c, frame) != 0) return 24;
    if (sorvane_arf_AnimationComponents_getBlendshapeWeights(weights, sizeof weights, &count, c, 1) != 0) return 25;
    if (weights[0] != 0.2f || weights[1] != 0.7f || weights[2] != 0.6f) return 26;
    if (sorvane_arf_AnimationMapper_updateComponents_data(mapper, NULL, frame) != -1 ||
        !slotEndsWith("components is NULL"))
        return 27;

    /* A sample with ids 1 and 2 only: target 0 follows, target 2 (input 25) stays. */
    if (sorvane_arf_AnimationComponents_setBlendshapeWeights(c, 1, start, sizeof start, 3) != 0) return 30;
    if (sorvane_arf_BlendshapeAnimationSample_create(&sample) != 0) return 31;
    sorvane_arf_BlendshapeAnimationSample_setSetId(sample, 99);
    sorvane_arf_BlendshapeAnimationSample_setBlendshapeCount(sample, 2);
    sorvane_arf_BlendshapeAnimationSample_setBlendshapeId(sample, 0, 1);
    sorvane_arf_BlendshapeAnimationSample_setBlendshapeWeight(sample, 0, 0.2f);
    sorvane_arf_BlendshapeAnimationSample_setBlendshapeId(sample, 1, 2);
    sorvane_arf_BlendshapeAnimationSample_setBlendshapeWeight(sample, 1, 0.4f);
    if (sorvane_arf_AnimationMapper_updateComponents_blendshape(mapper, c, sample) != 0) return 32;
    if (sorvane_arf_AnimationComponents_getBlendshapeWeights(weights, sizeof weights, &count, c, 1) != 0) return 33;
    if (weights[0] != 0.2f || weights[1] != 0.7f || weights[2] != 0.5f) return 34;
    if (sorvane_arf_BlendshapeAnimationSample_toUnitAnimationSample(&unit, sample) != 0) return 35;
    if (sorvane_arf_AnimationMapper_updateComponents_sample(mapper, c, unit) != 0) return 35;
    /* A handle of the wrong kind is refused, not misread. */
    if (sorvane_arf_AnimationMapper_updateComponents_joint(mapper, c, (const sorvane_arf_JointAnimationSample*)sample) != -1 ||
        !slotEndsWith("sample is not a Joint"))
        return 36;
    if (sorvane_arf_AnimationMapper_updateComponents_texture(mapper, c, (const sorvane_arf_TextureAnimationSample*)sample) != -1 ||
        !slotEndsWith("sample is not a Texture"))
        return 37;
    if (sorvane_arf_SilentAnimationSample_create(&silent) != 0) return 38;
    if (sorvane_arf_SilentAnimationSample_toUnitAnimationSample(&unit, silent) != 0) return 38;
    if (sorvane_arf_AnimationMapper_updateComponents_sample(mapper, c, unit) != -1 ||
        !slotEndsWith("Invalid or unsupported unit animation sample"))
        return 39;

    /* The graph. */
    if (sorvane_arf_AnimationMapper_buildDescription(&description, mapper) != 0) return 40;
    if (sorvane_datatree_DataTree_toJsonString(text, &textSize, description) != 0) return 41;
    if (!strstr(text, "BlendshapeSet[001](000)") || !strstr(text, "\"queue\"") || !strstr(text, "Stream[000](025)"))
        return 42;
    sorvane_datatree_DataTree_delete(description);
    description = NULL;
    if (sorvane_arf_AnimationMapper_getOperator(&op, mapper, 2, 1, 0) != 0) return 43;
    if (sorvane_arf_AnimationOperator_getType(&type, op) != 0 || type != 8) return 44;
    if (sorvane_arf_AnimationOperator_buildDescription(&description, op) != 0) return 45;
    textSize = sizeof text;
    if (sorvane_datatree_DataTree_toJsonString(text, &textSize, description) != 0 || !strstr(text, "\"Sum\"")) return 46;
    sorvane_datatree_DataTree_delete(description);
    sorvane_arf_AnimationOperator_delete(op);
    op = NULL;
    if (sorvane_arf_AnimationMapper_getOperator(&op, mapper, 2, 1, 1) != -1 || op != NULL ||
        !slotEndsWith("No operator for 'BlendshapeSet[001](001)'"))
        return 47;
    if (sorvane_arf_AnimationOperator_getType(&type, NULL) != -1 || !slotEndsWith("animation operator is NULL")) return 48;

    sorvane_arf_SilentAnimationSample_delete(silent);
    sorvane_arf_BlendshapeAnimationSample_delete(sample);
    sorvane_arf_AnimationData_delete(frame);
    sorvane_arf_AnimationComponents_delete(c);
    sorvane_arf_AnimationMapper_delete(mapper);
    sorvane_arf_AnimationFramework_delete(mediapipe);
    return 0;
}

int main(void) {
    sorvane_arf_Arf* arf = NULL;
    int result;
    if (sorvane_arf_Arf_load(&arf, kFace, false) != 0) {
        fprintf(stderr, "load failed\n");
        return 1;
    }
    result = run(arf);
    sorvane_arf_Arf_delete(arf);
    if (result != 0) fprintf(stderr, "animation_mapper: check %d failed\n", result);
    return result;
}
