/* Writes what a C program reads through the header for the Python tests to
 * compare with: the decoded tensor bytes of the data item named argv[2] of
 * document argv[1]; with "--slot" the error text after the load fails; with
 * "--image" the pixel bytes of image file argv[1] (8-bit, rows first); with
 * "--accessor" the data of the first accessor of glTF file argv[1]. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "sorvane/sorvane.h"

static int fail(void) {
    int64_t size = 0;
    sorvane_getErrorMessage(NULL, &size);
    char* text = malloc((size_t)size);
    if (!text || sorvane_getErrorMessage(text, &size) != 0) return 3;
    fputs(text, stdout);
    free(text);
    return 1;
}

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    sorvane_arf_Arf* arf = NULL;
    if (strcmp(argv[2], "--slot") == 0) return sorvane_arf_Arf_load(&arf, argv[1], false) == 0 ? 4 : (fail(), 0);
    if (strcmp(argv[2], "--image") == 0) {
        DataTree *image = NULL, *pixels = NULL;
        if (sorvane_loadImagePtr(&image, argv[1], 2, 2) != 0) return fail();
        if (sorvane_datatree_DataTree_getObjectItem(&pixels, image, "pixels") != 0) return fail();
        int64_t size = 0;
        sorvane_datatree_DataTree_getValues(NULL, &size, pixels);
        void* bytes = malloc(size > 0 ? (size_t)size : 1);
        if (!bytes || sorvane_datatree_DataTree_getValues(bytes, &size, pixels) != 0) return fail();
        fwrite(bytes, 1, (size_t)size, stdout);
        free(bytes);
        sorvane_datatree_DataTree_delete(pixels);
        sorvane_datatree_DataTree_delete(image);
        return 0;
    }
    if (strcmp(argv[2], "--accessor") == 0) {
        sorvane_gltf2_Gltf* gltf = NULL;
        sorvane_gltf2_AccessorList* accessors = NULL;
        sorvane_gltf2_Accessor* accessor = NULL;
        if (sorvane_gltf2_Gltf_load(&gltf, argv[1], true) != 0 || sorvane_gltf2_Gltf_getAccessors(&accessors, gltf) != 0 ||
            sorvane_gltf2_AccessorList_getByIndex(&accessor, accessors, 0) != 0)
            return fail();
        int64_t size = 0;
        if (sorvane_gltf2_Accessor_getData(NULL, &size, accessor) != 0 && size == 0) return fail();
        void* bytes = malloc(size > 0 ? (size_t)size : 1);
        if (!bytes || sorvane_gltf2_Accessor_getData(bytes, &size, accessor) != 0) return fail();
        fwrite(bytes, 1, (size_t)size, stdout);
        free(bytes);
        sorvane_gltf2_Accessor_delete(accessor);
        sorvane_gltf2_AccessorList_delete(accessors);
        sorvane_gltf2_Gltf_delete(gltf);
        return 0;
    }
    if (sorvane_arf_Arf_load(&arf, argv[1], true) != 0) return fail();
    sorvane_arf_DataList* list = NULL;
    sorvane_arf_Data* item = NULL;
    if (sorvane_arf_Arf_getData(&list, arf) != 0 || sorvane_arf_DataList_getByName(&item, list, argv[2]) != 0)
        return fail();
    int64_t bytes = 0, dims[8], dimCount = 0;
    int32_t dtype = 0;
    if (sorvane_arf_Data_getTensorData(&bytes, &dtype, dims, 8, &dimCount, NULL, 0, item) != 0) return fail();
    void* buffer = malloc(bytes > 0 ? (size_t)bytes : 1);
    if (!buffer || sorvane_arf_Data_getTensorData(&bytes, &dtype, dims, 8, &dimCount, buffer, bytes, item) != 0)
        return fail();
    fwrite(buffer, 1, (size_t)bytes, stdout);
    free(buffer);
    sorvane_arf_Data_delete(item);
    sorvane_arf_DataList_delete(list);
    sorvane_arf_Arf_delete(arf);
    return 0;
}
