/* Tensors compared from C: equal, different beyond a tolerance, and of
 * another element type; null arguments refused in order. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

static int slotIs(const char* expected) {
    char message[256];
    int64_t size = sizeof message;
    return sorvane_getErrorMessage(message, &size) == 0 && strcmp(message, expected) == 0;
}

int main(void) {
    const float a[4] = {1, 2, 3, 4}, b[4] = {1, 2, 3.5f, 6};
    const double d[4] = {1, 2, 3, 4};
    const int64_t sizes[2] = {2, 2};
    DataTree* ta = NULL;
    DataTree* tb = NULL;
    DataTree* td = NULL;
    int64_t count = -1;
    if (sorvane_datatree_DataTree_createTensor(&ta, a, sizeof a, sizes, 2, 10) != 0) return 1;
    if (sorvane_datatree_DataTree_createTensor(&tb, b, sizeof b, sizes, 2, 10) != 0) return 1;
    if (sorvane_datatree_DataTree_createTensor(&td, d, sizeof d, sizes, 2, 11) != 0) return 1;
    if (sorvane_tools_compareDataTensors(&count, ta, ta, 0.0, false) != 0 || count != 0) return 2;
    if (sorvane_tools_compareDataTensors(&count, ta, tb, 0.0, false) != 0 || count != 2) return 3;
    if (sorvane_tools_compareDataTensors(&count, ta, tb, 1.0, false) != 0 || count != 1) return 4;
    if (sorvane_tools_compareDataTensors(&count, ta, td, 0.0, false) != 0 || count != 2147483647) return 5;
    if (sorvane_tools_compareDataTensors(NULL, NULL, ta, 0.0, false) != -1 || !slotIs("out is NULL")) return 6;
    if (sorvane_tools_compareDataTensors(&count, ta, NULL, 0.0, false) != -1 || !slotIs("second is NULL")) return 7;
    /* A tensor is no image object. */
    if (sorvane_tools_compareDataImages(&count, ta, ta, false) != 0 || count != 2147483647) return 8;
    sorvane_datatree_DataTree_delete(ta);
    sorvane_datatree_DataTree_delete(tb);
    sorvane_datatree_DataTree_delete(td);
    printf("compare ok\n");
    return 0;
}
