/* Payloads of a memory document from C: a dense and a sparse tensor added,
 * read back into the caller's buffers and as DataTree tensors. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

#include "check.h"

int main(void) {
    sorvane_arf_Arf* arf = NULL;
    CHECK(sorvane_arf_Arf_create(&arf, "memory:"));
    sorvane_arf_DataList* list = NULL;
    CHECK(sorvane_arf_Arf_getData(&list, arf));

    const float values[6] = {0, 1.5f, 0, 0, -2, 0};
    const int64_t dims[2] = {2, 3};
    sorvane_arf_Data* dense = NULL;
    CHECK(sorvane_arf_DataList_addDense(&dense, list, values, sizeof values, 5126, dims, 2, false, NULL, "dense",
                                        true, 0));
    sorvane_arf_Data* sparse = NULL;
    CHECK(sorvane_arf_DataList_addSparseFromDense(&sparse, list, values, 6, 5126, dims, 2, 0, true, NULL, "sparse",
                                                  false, 9));
    int64_t id = 0;
    CHECK(sorvane_arf_Data_getId(&id, sparse));
    if (id != 9) return 2;

    sorvane_arf_Data* items[2] = {dense, sparse};
    for (int k = 0; k < 2; ++k) {
        int64_t bytes = 0, dimCount = 0, got[5] = {0};
        int32_t dtype = 0;
        CHECK(sorvane_arf_Data_getTensorData(&bytes, &dtype, got, 5, &dimCount, NULL, 0, items[k]));
        if (bytes != 24 || dtype != 5126 || dimCount != 2 || got[0] != 2 || got[1] != 3) return 3;
        float out[6];
        CHECK(sorvane_arf_Data_getTensorData(&bytes, &dtype, got, 5, &dimCount, out, sizeof out, items[k]));
        if (memcmp(out, values, sizeof out) != 0) return 4;
        DataTree* tensor = NULL;
        CHECK(sorvane_arf_Data_getTensorPtr(&tensor, items[k]));
        sorvane_datatree_DataTree_delete(tensor);
    }
    int64_t size = 0;
    CHECK(sorvane_arf_Data_getDataSize(&size, dense));
    if (size != 40) return 5;
    /* A type outside the table is refused with status -1. */
    sorvane_arf_Data* bad = NULL;
    if (sorvane_arf_DataList_addDense(&bad, list, values, sizeof values, 5124, dims, 2, false, NULL, NULL, true, 0) != -1)
        return 6;

    sorvane_arf_Data_delete(dense);
    sorvane_arf_Data_delete(sparse);
    sorvane_arf_DataList_delete(list);
    sorvane_arf_Arf_delete(arf);
    return 0;
}
