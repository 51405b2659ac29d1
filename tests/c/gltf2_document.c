/* A .glb document built from empty through list handles alone, its accessor
 * read back, enumerations checked at the flat boundary. */
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "sorvane/sorvane.h"

#include "check.h"

int main(void) {
    char path[64];
    snprintf(path, sizeof path, "/tmp/talvex-c-gltf2-%ld.glb", (long)getpid());
    sorvane_gltf2_Gltf* gltf = NULL;
    CHECK(sorvane_gltf2_Gltf_create(&gltf, path));

    /* The list is absent: its handle reads as empty and makes it on the first add. */
    sorvane_gltf2_AccessorList* accessors = NULL;
    CHECK(sorvane_gltf2_Gltf_getAccessors(&accessors, gltf));
    bool present = true;
    CHECK(sorvane_gltf2_Gltf_hasAccessors(&present, gltf));
    if (present) return 2;
    const float values[6] = {1, 2, 3, 4, 5, 6};
    sorvane_gltf2_Accessor* accessor = NULL;
    CHECK(sorvane_gltf2_AccessorList_addDense(&accessor, accessors, values, 2, 5126, "VEC3", 34962, false, "xyz"));
    CHECK(sorvane_gltf2_Gltf_hasAccessors(&present, gltf));
    if (!present) return 3;

    int64_t count = 0;
    CHECK(sorvane_gltf2_Accessor_getCount(&count, accessor));
    double max = 0;
    CHECK(sorvane_gltf2_Accessor_getMaxValue(&max, accessor, 2));
    if (count != 2 || max != 6) return 4;
    int64_t size = 0;
    CHECK(sorvane_gltf2_Accessor_getData(NULL, &size, accessor));
    float out[6];
    if (size != sizeof out) return 5;
    CHECK(sorvane_gltf2_Accessor_getData(out, &size, accessor));
    if (memcmp(out, values, sizeof out) != 0) return 6;

    /* Enumerations are checked where they come in. */
    if (sorvane_gltf2_Accessor_setComponentType(accessor, 7) != -1) return 7;
    CHECK(sorvane_gltf2_Gltf_addExtensionsUsedValue(gltf, "KHR_x"));
    CHECK(sorvane_gltf2_Gltf_getExtensionsUsedSize(&count, gltf));
    if (count != 1) return 8;

    sorvane_gltf2_Accessor_delete(accessor);
    sorvane_gltf2_AccessorList_delete(accessors);
    CHECK(sorvane_gltf2_Gltf_delete(gltf));
    remove(path);
    return 0;
}
