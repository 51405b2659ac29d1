/* The stream's flat functions from plain C99: encode a blendshape unit, drain
 * the bytes, feed them one at a time to a receiver and read the unit back. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

static int slotIs(const char* expected) {
    char text[256];
    int64_t size = sizeof text;
    if (sorvane_getErrorMessage(text, &size) != 0) return 0;
    return strcmp(text, expected) == 0;
}

int main(void) {
    sorvane_arf_AnimationSampleStream* sender = NULL;
    sorvane_arf_AnimationSampleStream* receiver = NULL;
    sorvane_arf_BlendshapeAnimationSample* shapes = NULL;
    sorvane_arf_UnitAnimationSample* unit = NULL;
    sorvane_arf_HeaderAnimationSample* header = NULL;
    sorvane_arf_UnitAnimationSample* got = NULL;
    sorvane_arf_BlendshapeAnimationSample* back = NULL;
    sorvane_arf_JointAnimationSample* wrong = NULL;
    unsigned char bytes[64];
    int64_t size = 0, i, value = 0;
    int32_t state = 0, type = -1;
    bool ok = false;
    float weight = 0;

    if (sorvane_arf_AnimationSampleStream_create(&sender, false) != 0) return 1;
    if (sorvane_arf_AnimationSampleStream_create(&receiver, false) != 0) return 1;
    if (sorvane_arf_BlendshapeAnimationSample_create(&shapes) != 0) return 2;
    sorvane_arf_BlendshapeAnimationSample_setSetId(shapes, 4);
    sorvane_arf_BlendshapeAnimationSample_setBlendshapeCount(shapes, 2);
    for (i = 0; i < 2; ++i) {
        sorvane_arf_BlendshapeAnimationSample_setBlendshapeId(shapes, i, 10 + i);
        sorvane_arf_BlendshapeAnimationSample_setBlendshapeWeight(shapes, i, 0.5f * (float)(i + 1));
    }
    if (sorvane_arf_BlendshapeAnimationSample_setBlendshapeWeight(shapes, 2, 1.0f) != -1) return 3;
    sorvane_arf_BlendshapeAnimationSample_toUnitAnimationSample(&unit, shapes);
    if (sorvane_arf_AnimationSampleStream_addUnitSampleTimestamp(&ok, sender, 25.0f, unit) != 0 || !ok) return 4;
    if (sorvane_arf_AnimationSampleStream_flush(&size, sender, NULL, 0) != 0 || size != 4 + 4 + 5 + 12) return 5;
    if (sorvane_arf_AnimationSampleStream_flush(&size, sender, bytes, sizeof bytes) != 0) return 5;

    for (i = 0; i < size; ++i) {
        sorvane_arf_AnimationSampleStream_feed(receiver, bytes + i, 1);
        if (sorvane_arf_AnimationSampleStream_nextUnitSample(&header, &got, receiver) != 0) return 6;
        sorvane_arf_AnimationSampleStream_getState(&state, receiver);
        if ((i + 1 < size) != (got == NULL)) return 7;
        if (got == NULL && state != 1) return 7;
    }
    sorvane_arf_UnitAnimationSample_getUnitType(&type, got);
    if (type != 1) return 8;
    if (sorvane_arf_UnitAnimationSample_toJointAnimationSample(&wrong, got) != -1) return 9;
    if (!slotIs("Can't cast to JointAnimationSample")) return 9;
    sorvane_arf_UnitAnimationSample_toBlendshapeAnimationSample(&back, got);
    sorvane_arf_BlendshapeAnimationSample_getBlendshapeId(&value, back, 1);
    sorvane_arf_BlendshapeAnimationSample_getBlendshapeWeight(&weight, back, 1);
    if (value != 11 || weight != 1.0f) return 10;
    sorvane_arf_HeaderAnimationSample_getTimestamp(&value, header);
    if (value != 25) return 11;

    if (sorvane_arf_AnimationSampleStream_getState(&state, NULL) != -1 || !slotIs("animationSampleStream is NULL"))
        return 12;
    sorvane_arf_UnitAnimationSample_delete(got);
    sorvane_arf_HeaderAnimationSample_delete(header);
    sorvane_arf_BlendshapeAnimationSample_delete(shapes);
    sorvane_arf_AnimationSampleStream_delete(sender);
    sorvane_arf_AnimationSampleStream_delete(receiver);
    printf("sample stream ok\n");
    return 0;
}
