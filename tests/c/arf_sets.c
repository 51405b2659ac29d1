/* Sets and animation links made from C through the _add functions with the
 * arguments of their init, in order: the header's signatures are the ones a
 * C caller compiles against. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "sorvane/sorvane.h"

#include "check.h"

int main(void) {
    const char* path =
        "memory:{\"components\": {\"textureSets\": [], \"gaussianSplatSets\": [],"
        " \"skeletons\": [{\"root\": 1, \"name\": \"s\", \"id\": 1, \"animationInfo\": []}],"
        " \"nodes\": [{\"mapping\": \"r\", \"name\": \"r\", \"id\": 1}]},"
        " \"data\": [{\"id\": 1, \"name\": \"a\", \"type\": \"t\", \"uri\": \"u\"},"
        " {\"id\": 2, \"name\": \"b\", \"type\": \"t\", \"uri\": \"u\"}]}";
    sorvane_arf_Arf* arf = NULL;
    CHECK(sorvane_arf_Arf_load(&arf, path, false));
    sorvane_arf_Components* components = NULL;
    CHECK(sorvane_arf_Arf_getComponents(&components, arf));

    sorvane_arf_TextureSetList* textures = NULL;
    CHECK(sorvane_arf_Components_getTextureSets(&textures, components));
    sorvane_arf_TextureSet* texture = NULL;
    CHECK(sorvane_arf_TextureSetList_add(&texture, textures, 1, "materials/0", "skin", false, 5));
    int64_t id = 0;
    CHECK(sorvane_arf_TextureSet_getPropertyId(&id, texture));
    if (id != 5) return 2;

    sorvane_arf_GaussianSplatSetList* splats = NULL;
    CHECK(sorvane_arf_Components_getGaussianSplatSets(&splats, components));
    sorvane_arf_GaussianSplatSet* splat = NULL;
    CHECK(sorvane_arf_GaussianSplatSetList_add(&splat, splats, 0, 1, 2, 1, 2, "cloud", true, 0));
    if (sorvane_arf_GaussianSplatSetList_add(&splat, splats, 0, 1, 2, 1, 9, "cloud", true, 0) != -1) return 3;
    CHECK(sorvane_arf_GaussianSplatSet_setTextureSet(splat, texture));

    sorvane_arf_SkeletonList* skeletons = NULL;
    CHECK(sorvane_arf_Components_getSkeletons(&skeletons, components));
    sorvane_arf_Skeleton* skeleton = NULL;
    CHECK(sorvane_arf_SkeletonList_get(&skeleton, skeletons, 1));
    sorvane_arf_AnimationLinkList* links = NULL;
    CHECK(sorvane_arf_Skeleton_getAnimationInfo(&links, skeleton));
    sorvane_arf_AnimationLink* link = NULL;
    CHECK(sorvane_arf_AnimationLinkList_add(&link, links, "ANIMATION_BODY", 0));
    sorvane_arf_AnimationMappingList* mappings = NULL;
    CHECK(sorvane_arf_AnimationLink_getMappings(&mappings, link));
    bool has = true;
    CHECK(sorvane_arf_AnimationLink_hasMappings(&has, link));
    if (has) return 4;

    char text[256];
    int64_t size = sizeof text;
    CHECK(sorvane_arf_AnimationLink_toString(text, &size, link));
    if (strcmp(text, "{\n  \"type\": \"ANIMATION_BODY\",\n  \"target\": 0\n}") != 0) return 5;

    sorvane_arf_AnimationMappingList_delete(mappings);
    sorvane_arf_AnimationLink_delete(link);
    sorvane_arf_AnimationLinkList_delete(links);
    sorvane_arf_Skeleton_delete(skeleton);
    sorvane_arf_SkeletonList_delete(skeletons);
    sorvane_arf_GaussianSplatSet_delete(splat);
    sorvane_arf_GaussianSplatSetList_delete(splats);
    sorvane_arf_TextureSet_delete(texture);
    sorvane_arf_TextureSetList_delete(textures);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Arf_delete(arf);
    return 0;
}
