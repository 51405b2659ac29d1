/* A document made from "memory:" text and walked through the flat interface
 * from C: identity and structure read, a value changed, the JSON read back,
 * every handle freed. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "sorvane/sorvane.h"

#include "check.h"

/* A text result: the sizing call, then the call with a buffer of that size. */
#define TEXT(function, self, result)                                           \
    do {                                                                       \
        int64_t textSize = 0;                                                  \
        function(NULL, &textSize, self);                                       \
        result = malloc((size_t)textSize);                                     \
        if (result && function(result, &textSize, self) != 0) {                \
            free(result);                                                      \
            result = NULL;                                                     \
        }                                                                      \
    } while (0)

int main(void) {
    const char* path =
        "memory:{\"identity\": {\"name\": \"C caller\", \"age\": 40},"
        " \"structure\": {\"assets\": [{\"name\": \"body\", \"id\": 3, \"lods\": [{\"name\": \"l0\", \"id\": 1}]}]}}";
    sorvane_arf_Arf* arf = NULL;
    CHECK(sorvane_arf_Arf_load(&arf, path, false));

    sorvane_arf_Identity* identity = NULL;
    CHECK(sorvane_arf_Arf_getIdentity(&identity, arf));
    double age = 0;
    CHECK(sorvane_arf_Identity_getAge(&age, identity));
    if (age != 40) return 2;
    char* name = NULL;
    TEXT(sorvane_arf_Identity_getName, identity, name);
    if (!name || strcmp(name, "C caller") != 0) return 3;
    free(name);
    CHECK(sorvane_arf_Identity_setName(identity, "renamed"));

    sorvane_arf_Structure* structure = NULL;
    CHECK(sorvane_arf_Arf_getStructure(&structure, arf));
    sorvane_arf_AssetList* assets = NULL;
    CHECK(sorvane_arf_Structure_getAssets(&assets, structure));
    int64_t count = 0;
    CHECK(sorvane_arf_AssetList_getSize(&count, assets));
    if (count != 1) return 4;
    sorvane_arf_Asset* added = NULL;
    CHECK(sorvane_arf_AssetList_add(&added, assets, "head", true, 0));
    int64_t id = 0;
    CHECK(sorvane_arf_Asset_getId(&id, added));
    if (id != 4) return 5;
    sorvane_arf_LodList* lods = NULL;
    CHECK(sorvane_arf_Asset_getLods(&lods, added));
    sorvane_arf_Lod* lod = NULL;
    CHECK(sorvane_arf_LodList_add(&lod, lods, "only", false, 9));
    int64_t values[3] = {7, 8, 9};
    CHECK(sorvane_arf_Lod_setMeshesItemValues(lod, values, 0));

    /* The frame refuses a null handle with the class's own text. */
    bool present = false;
    if (sorvane_arf_Lod_isPropertyPresent(&present, NULL) != -1) return 6;
    char message[64];
    int64_t size = sizeof message;
    CHECK(sorvane_getErrorMessage(message, &size));
    if (strcmp(message, "lod is NULL") != 0) return 7;

    char* json = NULL;
    TEXT(sorvane_arf_Arf_toJsonString, arf, json);
    if (!json || !strstr(json, "\"name\": \"renamed\"") || !strstr(json, "\"meshes\": []")) return 8;
    free(json);

    CHECK(sorvane_arf_Lod_delete(lod));
    CHECK(sorvane_arf_LodList_delete(lods));
    CHECK(sorvane_arf_Asset_delete(added));
    CHECK(sorvane_arf_AssetList_delete(assets));
    CHECK(sorvane_arf_Structure_delete(structure));
    CHECK(sorvane_arf_Identity_delete(identity));
    CHECK(sorvane_arf_Arf_delete(arf));
    printf("flat document ok\n");
    return 0;
}
