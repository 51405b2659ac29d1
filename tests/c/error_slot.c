/* The public header compiles as strict C99 and the slot functions link. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

int main(void) {
    char buffer[64];
    int64_t size = 0;
    sorvane_setErrorMessage("hello");
    if (sorvane_getErrorMessage(NULL, &size) != -1 || size != 6) return 1;
    if (sorvane_getErrorMessage(buffer, &size) != 0 || strcmp(buffer, "hello") != 0) return 2;
    sorvane_clearErrorMessage();
    size = 0;
    if (sorvane_getErrorMessage(NULL, &size) != -1 || size != 1) return 3;
    printf("c header ok\n");
    return 0;
}
