/* Quick start in C: load an avatar, build a mapper for one framework, feed a
 * stream file in 4 KB chunks and print the weights and joint matrices each
 * unit drives.
 *
 *   animate AVATAR STREAM [URN]
 *
 * URN defaults to the body framework of examples/avatar.arf.json. A built-in
 * framework is used as it is; any other is made from the component the avatar
 * drives directly with it. */
#include <stdio.h>
#include <stdlib.h>

#include "sorvane/sorvane.h"

static void fail(const char* what) {
    char text[1024];
    int64_t size = sizeof text;
    if (sorvane_getErrorMessage(text, &size) != 0) text[0] = 0;
    fprintf(stderr, "%s: %s\n", what, text);
    exit(1);
}

static sorvane_arf_AnimationFramework* frameworkOf(const sorvane_arf_Arf* arf, const char* urn) {
    static const char* const types[] = {"ANIMATION_FACE", "ANIMATION_BODY", "ANIMATION_HAND", "ANIMATION_LANDMARK",
                                        "ANIMATION_TEXTURE"};
    sorvane_arf_AnimationFramework* framework = NULL;
    size_t i;
    if (sorvane_arf_AnimationFramework_create(&framework, urn, 0) == 0) return framework;
    for (i = 0; i < sizeof types / sizeof *types && !framework; ++i)
        if (sorvane_arf_AnimationFramework_tryCreate(&framework, arf, types[i], urn, 0) != 0) fail("tryCreate");
    if (!framework) {
        fprintf(stderr, "no framework %s\n", urn);
        exit(1);
    }
    return framework;
}

/* Whether a unit type (1 blendshape, 2 joint, 3 landmark, 4 texture) holds
 * values of the framework's kind (1 weight, 2 vector, 4 matrix). */
static int fits(int32_t unitType, int32_t valueType) {
    return ((unitType == 1 || unitType == 4) && valueType == 1) || (unitType == 2 && valueType == 4) ||
           (unitType == 3 && valueType == 2);
}

static void print(const sorvane_arf_AnimationComponents* c) {
    int64_t sets[64], ids[256], setCount = 0, count = 0, i, k;
    float values[256 * 16];
    sorvane_arf_AnimationComponents_getBlendshapeSetIds(sets, sizeof sets, &setCount, c);
    for (i = 0; i < setCount; ++i) {
        sorvane_arf_AnimationComponents_getBlendshapeIds(ids, sizeof ids, &count, c, sets[i]);
        if (sorvane_arf_AnimationComponents_getBlendshapeWeights(values, sizeof values, &count, c, sets[i]) != 0)
            continue;
        printf("  blendshape set %lld:", (long long)sets[i]);
        for (k = 0; k < count; ++k) printf(" %lld=%g", (long long)ids[k], values[k]);
        printf("\n");
    }
    sorvane_arf_AnimationComponents_getSkeletonIds(sets, sizeof sets, &setCount, c);
    for (i = 0; i < setCount; ++i) {
        sorvane_arf_AnimationComponents_getJointIds(ids, sizeof ids, &count, c, sets[i]);
        if (sorvane_arf_AnimationComponents_getJointTransforms(values, sizeof values, &count, c, sets[i]) != 0)
            continue;
        for (k = 0; k * 16 < count; ++k) {
            const float* m = values + k * 16;
            printf("  skeleton %lld joint %lld: translation (%g, %g, %g)\n", (long long)sets[i], (long long)ids[k],
                   m[3], m[7], m[11]);
        }
    }
}

int main(int argc, char** argv) {
    sorvane_arf_Arf* arf = NULL;
    sorvane_arf_AnimationFramework* framework = NULL;
    sorvane_arf_AnimationMapper* mapper = NULL;
    sorvane_arf_AnimationComponents* components = NULL;
    sorvane_arf_AnimationSampleStream* stream = NULL;
    char chunk[4096];
    size_t got;
    long units = 0;
    int32_t locationType = 0, valueType = 0;
    int64_t locationId = 0, locationIndex = 0;
    FILE* in;

    if (argc < 3) {
        fprintf(stderr, "usage: %s AVATAR STREAM [URN]\n", argv[0]);
        return 2;
    }
    if (sorvane_arf_Arf_load(&arf, argv[1], true) != 0) fail("load");
    framework = frameworkOf(arf, argc > 3 ? argv[3] : "urn:mpeg:arf:animation:body:smpl");
    if (sorvane_arf_AnimationFramework_getDefaultLocation(&locationType, &locationId, &locationIndex, framework) != 0 ||
        sorvane_arf_AnimationFramework_getInputValueType(&valueType, framework, locationType, locationId,
                                                         locationIndex) != 0)
        fail("framework");
    if (sorvane_arf_AnimationMapper_create(&mapper, arf, framework) != 0) fail("mapper");
    if (sorvane_arf_AnimationComponents_create(&components, arf) != 0) fail("components");
    if (sorvane_arf_AnimationSampleStream_create(&stream, false) != 0) fail("stream");
    in = fopen(argv[2], "rb");
    if (!in) {
        fprintf(stderr, "can't open %s\n", argv[2]);
        return 1;
    }
    do {
        sorvane_arf_HeaderAnimationSample* header = NULL;
        sorvane_arf_UnitAnimationSample* sample = NULL;
        got = fread(chunk, 1, sizeof chunk, in);
        if (got > 0 && sorvane_arf_AnimationSampleStream_feed(stream, chunk, (int64_t)got) != 0) fail("feed");
        /* Every whole unit the bytes so far hold. */
        while (sorvane_arf_AnimationSampleStream_nextUnitSample(&header, &sample, stream) == 0 && sample) {
            int64_t timestamp = 0;
            int32_t type = 0;
            sorvane_arf_HeaderAnimationSample_getTimestamp(&timestamp, header);
            sorvane_arf_HeaderAnimationSample_getUnitType(&type, header);
            /* Config and silent units carry no values, and units of another
             * kind are for another framework. */
            if (fits(type, valueType)) {
                printf("unit %ld at %lld\n", units, (long long)timestamp);
                if (sorvane_arf_AnimationMapper_updateComponents_sample(mapper, components, sample) != 0)
                    fail("update");
                print(components);
            }
            ++units;
            sorvane_arf_UnitAnimationSample_delete(sample);
            sorvane_arf_HeaderAnimationSample_delete(header);
        }
    } while (got > 0);
    fclose(in);
    printf("%ld units\n", units);

    sorvane_arf_AnimationSampleStream_delete(stream);
    sorvane_arf_AnimationComponents_delete(components);
    sorvane_arf_AnimationMapper_delete(mapper);
    sorvane_arf_AnimationFramework_delete(framework);
    sorvane_arf_Arf_delete(arf);
    return 0;
}
