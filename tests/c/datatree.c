/* The DataTree part of the C header compiles as C99 and works from C. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

int main(void) {
    DataTree* object = NULL;
    DataTree* item = NULL;
    const double values[] = {1.5, 2.5, 3.5, 4.5};
    const int64_t sizes[] = {2, 2};
    char text[64];
    int64_t size = 0;
    bool isTensor = false;
    if (sorvane_datatree_DataTree_createObject(&object) != 0) return 1;
    if (sorvane_datatree_DataTree_setObjectItemTensor(object, "t", values, sizeof(values), sizes, 2, 11) != 0) return 2;
    if (sorvane_datatree_DataTree_getObjectItem(&item, object, "t") != 0) return 3;
    if (sorvane_datatree_DataTree_isTensor(&isTensor, item) != 0 || !isTensor) return 4;
    if (sorvane_datatree_DataTree_toJsonString(NULL, &size, object) != -1 || size > (int64_t)sizeof(text)) return 5;
    if (sorvane_datatree_DataTree_toJsonString(text, &size, object) != 0) return 6;
    if (strcmp(text, "{\n  \"t\": [\n    [1.5, 2.5],\n    [3.5, 4.5]\n  ]\n}") != 0) return 7;
    if (sorvane_datatree_DataTree_delete(item) != 0 || sorvane_datatree_DataTree_delete(object) != 0) return 8;
    printf("c datatree ok\n");
    return 0;
}
