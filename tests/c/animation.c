/* The animation flat functions from plain C99: a built-in framework, a frame
 * written and read through the array protocol, and the texts a failing call
 * leaves in the error slot. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

/* The slot's text ends with the expected one (library texts carry the
 * location of the throw in front). */
static int slotEndsWith(const char* expected) {
    char text[512];
    int64_t size = sizeof text;
    size_t n, m;
    if (sorvane_getErrorMessage(text, &size) != 0) return 0;
    n = strlen(text);
    m = strlen(expected);
    return n >= m && strcmp(text + n - m, expected) == 0;
}

static int frameworkAndFrame(void) {
    sorvane_arf_AnimationFramework* face = NULL;
    sorvane_arf_AnimationFramework* hand = NULL;
    sorvane_arf_AnimationData* frame = NULL;
    float weights[52], back[52], mins[52], maxs[52], value[16], matrices[52 * 16];
    int64_t count = 0, index = -1, id = -1, at = -1;
    int32_t type = 0;
    char name[64];
    int64_t nameSize = sizeof name;
    bool known = false;
    int i;

    if (sorvane_arf_AnimationFramework_create(&face, "urn:mpeg:avatar:blendshapes:mediapipe", 7) != 0) return 10;
    if (sorvane_arf_AnimationFramework_create(&hand, "urn:none", 0) != -1 || hand != NULL) return 11;
    if (!slotEndsWith("Unknow animation framework urn:none")) return 12;
    if (sorvane_arf_AnimationFramework_knows(&known, "urn:mpeg:avatar:landmarks:mediapipe") != 0 || known) return 13;
    if (sorvane_arf_AnimationFramework_getInputName(name, &nameSize, face, 1, 7, 25) != 0) return 14;
    if (strcmp(name, "jawOpen") != 0) return 15;
    if (sorvane_arf_AnimationFramework_getDefaultLocation(&type, &id, &at, face) != 0) return 16;
    if (type != 1 || id != 7 || at != 0) return 16;
    if (sorvane_arf_AnimationFramework_getInputRanges(NULL, NULL, 0, &count, face, 1, 7) != 0 || count != 52) return 17;
    if (sorvane_arf_AnimationFramework_getInputRanges(mins, maxs, sizeof mins, &count, face, 1, 7) != 0) return 17;
    if (mins[3] != 0.0f || maxs[51] != 1.0f) return 17;

    if (sorvane_arf_AnimationFramework_createData(&frame, face) != 0) return 20;
    for (i = 0; i < 52; ++i) weights[i] = 0.01f * (float)i;
    if (sorvane_arf_AnimationData_setWeights(frame, weights, sizeof weights, 51) != -1) return 21;
    if (!slotEndsWith("Invalid number of weights 51 expect 52")) return 21;
    if (sorvane_arf_AnimationData_setWeights(frame, weights, sizeof weights - 1, 52) != -1) return 22;
    if (!slotEndsWith("data too small")) return 22;
    if (sorvane_arf_AnimationData_setWeights(frame, weights, sizeof weights, 52) != 0) return 23;
    count = 0;
    if (sorvane_arf_AnimationData_getWeights(NULL, 0, &count, frame) != 0 || count != 52) return 24;
    if (sorvane_arf_AnimationData_getWeights(back, 4, &count, frame) != -1 || count != 52) return 25;
    if (!slotEndsWith("out too small")) return 25;
    if (sorvane_arf_AnimationData_getWeights(back, sizeof back, &count, frame) != 0) return 26;
    if (memcmp(back, weights, sizeof back) != 0) return 26;
    if (sorvane_arf_AnimationData_getValue(value, sizeof value, &count, frame, 1, 7, 25) != 0 || count != 1) return 27;
    if (value[0] != weights[25]) return 27;
    if (sorvane_arf_AnimationData_getValue(value, sizeof value, &count, frame, 1, 0, 52) != -1) return 28;
    if (!slotEndsWith("Value not found at Stream[000](052)")) return 28;
    if (sorvane_arf_AnimationData_getTransforms(matrices, sizeof matrices, &count, frame) != -1) return 29;
    if (!slotEndsWith("Value for index 0 is not a transform (type 1)")) return 29;

    /* A framework built by hand. */
    if (sorvane_arf_AnimationFramework_new(&hand, "urn:example:hand", "ANIMATION_HAND") != 0) return 30;
    if (sorvane_arf_AnimationFramework_addNextInput(&index, hand, 4, "wrist", 1, 0) != 0 || index != 0) return 31;
    if (sorvane_arf_AnimationFramework_addInput(hand, 1, 0, 0, 4, "again") != -1) return 32;
    if (!slotEndsWith("Input at 'Stream[000](000)' already defined")) return 32;
    if (sorvane_arf_AnimationFramework_addWeightInput(hand, 1, 1, 0, "grip", -1.0f, 2.0f) != 0) return 33;

    sorvane_arf_AnimationData_delete(frame);
    sorvane_arf_AnimationFramework_delete(hand);
    sorvane_arf_AnimationFramework_delete(face);
    if (sorvane_arf_AnimationData_delete(NULL) != -1 || !slotEndsWith("animationData is NULL")) return 34;
    return 0;
}

int main(void) {
    int rc = frameworkAndFrame();
    if (rc != 0) {
        char text[512];
        int64_t size = sizeof text;
        sorvane_getErrorMessage(text, &size);
        fprintf(stderr, "step %d failed; slot: %s\n", rc, text);
    }
    return rc;
}
