/* The archive part of the C header: a memory provider through handles. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

int main(void) {
    sorvane_archive_FileProviderRef* memory = NULL;
    char text[32];
    int64_t size = 0;
    bool found = false;
    if (sorvane_archive_FileProvider_createMemory(&memory) != 0) return 1;
    if (sorvane_archive_FileProvider_create(memory, "a/b.txt", "hello", 5) != 0) return 2;
    if (sorvane_archive_FileProvider_exists(&found, memory, "a/./b.txt") != 0 || !found) return 3;
    if (sorvane_archive_FileProvider_getString(NULL, &size, memory, "a/b.txt", 0) != -1 || size != 6) return 4;
    if (sorvane_archive_FileProvider_getString(text, &size, memory, "a/b.txt", 0) != 0) return 5;
    if (strcmp(text, "hello") != 0) return 6;
    if (sorvane_archive_FileProvider_delete(memory) != 0) return 7;
    if (sorvane_archive_FileProvider_delete(NULL) != -1) return 8;
    size = sizeof text;
    if (sorvane_getErrorMessage(text, &size) != 0 || strcmp(text, "instancePtr_ is NULL") != 0) return 9;
    printf("archive header ok\n");
    return 0;
}
