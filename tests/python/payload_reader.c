/* Writes what a C program reads through the header for the Python tests to
 * compare with: the decoded tensor bytes of the data item named argv[2] of
 * document argv[1], or with "--slot" the error text after the load fails. */
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
