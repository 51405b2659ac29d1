/* A document built only through the C header (records, payloads, references),
 * written in each storage mode with saveAs and read back equal; then records
 * and list entries removed through the extension calls. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "sorvane/sorvane.h"

#include "check.h"

static char* jsonOf(sorvane_arf_Arf* arf) {
    int64_t size = 0;
    char* text;
    sorvane_arf_Arf_toJsonString(NULL, &size, arf);
    text = (char*)malloc((size_t)size);
    if (text && sorvane_arf_Arf_toJsonString(text, &size, arf) != 0) {
        free(text);
        return NULL;
    }
    return text;
}

static int slotIs(const char* expected) {
    char message[512];
    int64_t size = sizeof message;
    if (sorvane_getErrorMessage(message, &size) != 0) return 0;
    return strstr(message, expected) != NULL;
}

/* The dense payload of data item `id` equals `values`. */
static int payloadEquals(sorvane_arf_Arf* arf, int64_t id, const float* values) {
    sorvane_arf_DataList* list = NULL;
    sorvane_arf_Data* item = NULL;
    float out[6];
    int64_t bytes = 0, dims[2], dimCount = 0;
    int32_t dtype = 0;
    int equal;
    if (sorvane_arf_Arf_getData(&list, arf) != 0) return 0;
    if (sorvane_arf_DataList_get(&item, list, id) != 0) {
        sorvane_arf_DataList_delete(list);
        return 0;
    }
    equal = sorvane_arf_Data_getTensorData(&bytes, &dtype, dims, 2, &dimCount, out, sizeof out, item) == 0 &&
            bytes == sizeof out && memcmp(out, values, sizeof out) == 0;
    sorvane_arf_Data_delete(item);
    sorvane_arf_DataList_delete(list);
    return equal;
}

int main(void) {
    const float values[6] = {1, 0, 0, 2.5f, 0, -3};
    const int64_t dims[2] = {2, 3};
    const char* paths[3] = {"arf-extensions-out/doc.arf", "arf-extensions-out.arfz", "arf-extensions-out.zip"};
    sorvane_arf_Arf* arf = NULL;
    sorvane_arf_DataList* data = NULL;
    sorvane_arf_Data* dense = NULL;
    sorvane_arf_Data* sparse = NULL;
    sorvane_arf_Components* components = NULL;
    sorvane_arf_MeshList* meshes = NULL;
    sorvane_arf_Mesh* mesh = NULL;
    sorvane_arf_NodeList* nodes = NULL;
    sorvane_arf_Node* hips = NULL;
    sorvane_arf_Node* spine = NULL;
    sorvane_arf_Node* parent = NULL;
    char* json;
    int64_t value = 0, count = 0;
    int k;

    CHECK(sorvane_arf_Arf_create(&arf, "memory:"));
    CHECK(sorvane_arf_Arf_getData(&data, arf));
    CHECK(sorvane_arf_DataList_addDense(&dense, data, values, sizeof values, 5126, dims, 2, false, NULL, "dense",
                                        true, 0));
    CHECK(sorvane_arf_DataList_addSparseFromDense(&sparse, data, values, 6, 5126, dims, 2, 0, true, NULL, "sparse",
                                                  false, 9));
    CHECK(sorvane_arf_Arf_getComponents(&components, arf));
    CHECK(sorvane_arf_Components_getMeshes(&meshes, components));
    CHECK(sorvane_arf_MeshList_add(&mesh, meshes, "body", true, 0));
    CHECK(sorvane_arf_Mesh_addDataItemValue(mesh, 1));
    CHECK(sorvane_arf_Mesh_addDataItemValue(mesh, 9));
    /* A reference is checked when it is added. */
    if (sorvane_arf_Mesh_addDataItemValue(mesh, 5) != -1 || !slotIs("Invalid id 5")) return 2;
    /* The node list is absent: the first record is added through its owner. */
    CHECK(sorvane_arf_Components_addNodes(&hips, components, "Hips", "hips", true, 0));
    CHECK(sorvane_arf_Components_getNodes(&nodes, components));
    CHECK(sorvane_arf_NodeList_add(&spine, nodes, "Spine", "spine", true, 0));
    CHECK(sorvane_arf_Node_setParentIndex(spine, 1));
    CHECK(sorvane_arf_Node_addChildrenItemValue(hips, 2));
    CHECK(sorvane_arf_Node_addTranslationValue(hips, 0.5));
    CHECK(sorvane_arf_Node_addTranslationValue(hips, 1.5));
    CHECK(sorvane_arf_Node_removeTranslationItem(hips, 0));
    CHECK(sorvane_arf_Node_getTranslationSize(&count, hips));
    if (count != 1) return 3;

    json = jsonOf(arf);
    if (!json) return 4;
    for (k = 0; k < 3; ++k) {
        sorvane_arf_Arf* copy = NULL;
        char* again;
        CHECK(sorvane_arf_Arf_saveAs(arf, paths[k]));
        CHECK(sorvane_arf_Arf_load(&copy, paths[k], false));
        again = jsonOf(copy);
        if (!again || strcmp(again, json) != 0) {
            fprintf(stderr, "%s reads back as:\n%s\ninstead of:\n%s\n", paths[k], again ? again : "", json);
            return 5;
        }
        if (!payloadEquals(copy, 1, values) || !payloadEquals(copy, 9, values)) return 6;
        /* A main file copy saves where it was loaded from. */
        if (k == 0) CHECK(sorvane_arf_Arf_save(copy));
        free(again);
        sorvane_arf_Arf_delete(copy);
        /* Loaded read-only, no mode writes it back; a copy elsewhere is allowed. */
        CHECK(sorvane_arf_Arf_load(&copy, paths[k], true));
        if (sorvane_arf_Arf_save(copy) != -1 || !slotIs("Forbidden, read-only document")) return 16;
        if (k == 0) CHECK(sorvane_arf_Arf_saveAs(copy, "arf-extensions-readonly/doc.arf"));
        sorvane_arf_Arf_delete(copy);
    }
    free(json);
    if (sorvane_arf_Arf_saveAs(arf, NULL) != -1 || !slotIs("null not valid")) return 7;
    if (sorvane_arf_Arf_saveAs(NULL, "x.arf") != -1 || !slotIs("arf is NULL")) return 8;

    /* Removing by id leaves the references to the record dangling. */
    CHECK(sorvane_arf_NodeList_remove(nodes, 1));
    CHECK(sorvane_arf_Node_getParentIndex(&value, spine));
    if (value != 1) return 9;
    if (sorvane_arf_Node_getParent(&parent, spine) != -1 || !slotIs("Invalid id 1")) return 10;
    if (sorvane_arf_NodeList_remove(nodes, 1) != -1) return 11;
    CHECK(sorvane_arf_Mesh_removeDataItem(mesh, 0));
    CHECK(sorvane_arf_Mesh_getDataItemValue(&value, mesh, 0));
    if (value != 9) return 12;
    if (sorvane_arf_Mesh_removeDataItem(mesh, 4) != -1) return 13;
    CHECK(sorvane_arf_DataList_remove(data, 9));
    CHECK(sorvane_arf_MeshList_removeByIndex(meshes, 0));
    CHECK(sorvane_arf_MeshList_getSize(&count, meshes));
    if (count != 0) return 14;
    CHECK(sorvane_arf_DataList_getSize(&count, data));
    if (count != 1) return 15;

    sorvane_arf_Node_delete(hips);
    sorvane_arf_Node_delete(spine);
    sorvane_arf_NodeList_delete(nodes);
    sorvane_arf_Mesh_delete(mesh);
    sorvane_arf_MeshList_delete(meshes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Data_delete(dense);
    sorvane_arf_Data_delete(sparse);
    sorvane_arf_DataList_delete(data);
    sorvane_arf_Arf_delete(arf);
    printf("extensions ok\n");
    return 0;
}
