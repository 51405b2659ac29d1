/* A glTF document built only through the C header (buffers, views,
 * accessors from raw bytes and from a tensor), saved with saveAs as .gltf and
 * .glb, reloaded equal; removal by position; a .glb stored in an ARF document
 * and opened again; the generic values of the glTF module. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "sorvane/sorvane.h"

#include "check.h"

static char message[4096];

static const char* slot(void) {
    int64_t size = sizeof message;
    if (sorvane_getErrorMessage(message, &size) != 0) return "";
    return message;
}

static int fails_with(int32_t status, const char* text) {
    if (status != -1) return 0;
    if (strstr(slot(), text) == NULL) {
        fprintf(stderr, "slot \"%s\" lacks \"%s\"\n", message, text);
        return 0;
    }
    return 1;
}

static const float kPositions[6] = {1, 2, 3, 4, 5, 6};
static const uint16_t kIndices[3] = {0, 1, 1};

/* Every accessor's bytes and dims and every view's bytes of a document. */
static int check_document(sorvane_gltf2_Gltf* gltf) {
    sorvane_gltf2_AccessorList* accessors = NULL;
    sorvane_gltf2_Accessor* a = NULL;
    int64_t count = 0;
    CHECK(sorvane_gltf2_Gltf_getAccessors(&accessors, gltf));
    CHECK(sorvane_gltf2_AccessorList_getSize(&count, accessors));
    EXPECT(count == 2);

    float positions[6];
    int64_t size = sizeof positions;
    CHECK(sorvane_gltf2_AccessorList_getByIndex(&a, accessors, 0));
    CHECK(sorvane_gltf2_Accessor_getData(positions, &size, a));
    EXPECT(size == sizeof positions && memcmp(positions, kPositions, sizeof positions) == 0);
    int64_t dims[2] = {0, 0};
    int64_t dimCount = 0;
    CHECK(sorvane_gltf2_Accessor_getDims(dims, sizeof dims, &dimCount, a));
    EXPECT(dimCount == 2 && dims[0] == 2 && dims[1] == 3);
    sorvane_gltf2_Accessor_delete(a);

    uint16_t indices[3];
    size = sizeof indices;
    CHECK(sorvane_gltf2_AccessorList_getByIndex(&a, accessors, 1));
    CHECK(sorvane_gltf2_Accessor_getData(indices, &size, a));
    EXPECT(size == sizeof indices && memcmp(indices, kIndices, sizeof indices) == 0);
    sorvane_gltf2_Accessor_delete(a);
    sorvane_gltf2_AccessorList_delete(accessors);

    /* The raw view keeps its five bytes wherever the buffers were packed. */
    sorvane_gltf2_BufferViewList* views = NULL;
    sorvane_gltf2_BufferView* view = NULL;
    char bytes[8] = {0};
    CHECK(sorvane_gltf2_Gltf_getBufferViews(&views, gltf));
    CHECK(sorvane_gltf2_BufferViewList_getByIndex(&view, views, 0));
    size = sizeof bytes;
    CHECK(sorvane_gltf2_BufferView_getBytes(bytes, &size, view));
    EXPECT(memcmp(bytes, "ABCDE", 5) == 0);
    sorvane_gltf2_BufferView_delete(view);
    sorvane_gltf2_BufferViewList_delete(views);
    return 0;
}

static int build_save_reload(const char* dir) {
    char path[512], glb[512], gltfCopy[512];
    snprintf(path, sizeof path, "%s/built.gltf", dir);
    snprintf(glb, sizeof glb, "%s/copy.glb", dir);
    snprintf(gltfCopy, sizeof gltfCopy, "%s/again.gltf", dir);

    sorvane_gltf2_Gltf* gltf = NULL;
    CHECK(sorvane_gltf2_Gltf_create(&gltf, path));
    sorvane_gltf2_BufferViewList* views = NULL;
    sorvane_gltf2_AccessorList* accessors = NULL;
    sorvane_gltf2_BufferView* view = NULL;
    sorvane_gltf2_Accessor* accessor = NULL;
    CHECK(sorvane_gltf2_Gltf_getBufferViews(&views, gltf));
    CHECK(sorvane_gltf2_Gltf_getAccessors(&accessors, gltf));

    CHECK(sorvane_gltf2_BufferViewList_addData(&view, views, "ABCDE", 5, 5, 1, 0, true, "raw"));
    sorvane_gltf2_BufferView_delete(view);
    CHECK(sorvane_gltf2_AccessorList_addDense(&accessor, accessors, kPositions, 2, 5126, "VEC3", 34962, true, NULL));
    sorvane_gltf2_Accessor_delete(accessor);

    /* From a tensor: a [3] UInteger16 tensor becomes a SCALAR of 5123. */
    DataTree* tensor = NULL;
    const int64_t sizes[1] = {3};
    CHECK(sorvane_datatree_DataTree_createTensor(&tensor, kIndices, sizeof kIndices, sizes, 1, 4));
    EXPECT(fails_with(sorvane_gltf2_AccessorList_addTensor(&accessor, accessors, NULL, 34963, true, NULL),
                      "tensor is NULL"));
    EXPECT(fails_with(sorvane_gltf2_AccessorList_addTensor(NULL, NULL, NULL, 0, true, NULL), "accessorList is NULL"));
    CHECK(sorvane_gltf2_AccessorList_addTensor(&accessor, accessors, tensor, 34963, true, "indices"));
    int32_t componentType = 0;
    CHECK(sorvane_gltf2_Accessor_getComponentType(&componentType, accessor));
    EXPECT(componentType == 5123);
    sorvane_datatree_DataTree_delete(tensor);

    /* The accessor back as a tensor equals its bytes. */
    DataTree* back = NULL;
    CHECK(sorvane_gltf2_Accessor_getTensor(&back, accessor));
    uint16_t values[3];
    int64_t size = sizeof values;
    CHECK(sorvane_datatree_DataTree_getValues(values, &size, back));
    EXPECT(memcmp(values, kIndices, sizeof values) == 0);
    sorvane_datatree_DataTree_delete(back);
    sorvane_gltf2_Accessor_delete(accessor);

    /* Every accessor at once: the count first, then the handles. */
    int64_t tensorCount = 0;
    CHECK(sorvane_gltf2_AccessorList_getTensors(NULL, 0, &tensorCount, accessors));
    EXPECT(tensorCount == 2);
    DataTree* all[3] = {NULL, NULL, NULL};
    EXPECT(sorvane_gltf2_AccessorList_getTensors(all, sizeof all[0], &tensorCount, accessors) == -1 && all[0] == NULL);
    CHECK(sorvane_gltf2_AccessorList_getTensors(all, sizeof all, &tensorCount, accessors));
    size = sizeof values;
    CHECK(sorvane_datatree_DataTree_getValues(values, &size, all[1]));
    EXPECT(memcmp(values, kIndices, sizeof values) == 0 && all[2] == NULL);
    sorvane_datatree_DataTree_delete(all[0]);
    sorvane_datatree_DataTree_delete(all[1]);
    EXPECT(fails_with(sorvane_gltf2_AccessorList_getTensors(all, sizeof all, NULL, accessors), "pvalueCount is NULL"));

    /* A second view over the first one's bytes, by range; out of range fails. */
    CHECK(sorvane_gltf2_BufferViewList_addBuffer(&view, views, 0, 0, 2, 1, "BC"));
    char bc[2];
    size = sizeof bc;
    CHECK(sorvane_gltf2_BufferView_getBytes(bc, &size, view));
    EXPECT(bc[0] == 'B' && bc[1] == 'C');
    sorvane_gltf2_BufferView_delete(view);
    EXPECT(fails_with(sorvane_gltf2_BufferViewList_addBuffer(&view, views, 0, 0, 8, 8, NULL),
                      "Invalid byte offset 8 >= 5"));
    CHECK(sorvane_gltf2_BufferViewList_removeByIndex(views, 3));

    CHECK(sorvane_gltf2_Gltf_saveAs(gltf, glb));
    CHECK(sorvane_gltf2_Gltf_save(gltf));
    sorvane_gltf2_BufferViewList_delete(views);
    sorvane_gltf2_AccessorList_delete(accessors);
    CHECK(sorvane_gltf2_Gltf_delete(gltf));

    /* .gltf -> .glb -> .gltf: each reload reads the same values. */
    sorvane_gltf2_Gltf* loaded = NULL;
    CHECK(sorvane_gltf2_Gltf_load(&loaded, path, true));
    if (check_document(loaded)) return 1;
    CHECK(sorvane_gltf2_Gltf_delete(loaded));
    CHECK(sorvane_gltf2_Gltf_load(&loaded, glb, false));
    if (check_document(loaded)) return 1;
    CHECK(sorvane_gltf2_Gltf_saveAs(loaded, gltfCopy));
    CHECK(sorvane_gltf2_Gltf_delete(loaded));
    CHECK(sorvane_gltf2_Gltf_load(&loaded, gltfCopy, true));
    if (check_document(loaded)) return 1;
    sorvane_gltf2_BufferList* buffers = NULL;
    int64_t count = 0;
    CHECK(sorvane_gltf2_Gltf_getBuffers(&buffers, loaded));
    CHECK(sorvane_gltf2_BufferList_getSize(&count, buffers));
    EXPECT(count == 1);
    sorvane_gltf2_Buffer* buffer = NULL;
    CHECK(sorvane_gltf2_BufferList_getByIndex(&buffer, buffers, 0));
    char uri[256];
    size = sizeof uri;
    CHECK(sorvane_gltf2_Buffer_getUri(uri, &size, buffer));
    EXPECT(strcmp(uri, "again_buffer_1.bin") == 0);
    sorvane_gltf2_Buffer_delete(buffer);
    sorvane_gltf2_BufferList_delete(buffers);
    CHECK(sorvane_gltf2_Gltf_delete(loaded));
    return 0;
}

/* Removing a view by position leaves the accessor's index dangling. */
static int remove_records(const char* dir) {
    char path[512];
    snprintf(path, sizeof path, "%s/copy.glb", dir);
    sorvane_gltf2_Gltf* gltf = NULL;
    CHECK(sorvane_gltf2_Gltf_load(&gltf, path, false));
    sorvane_gltf2_BufferViewList* views = NULL;
    sorvane_gltf2_AccessorList* accessors = NULL;
    sorvane_gltf2_Accessor* accessor = NULL;
    CHECK(sorvane_gltf2_Gltf_getBufferViews(&views, gltf));
    CHECK(sorvane_gltf2_Gltf_getAccessors(&accessors, gltf));
    CHECK(sorvane_gltf2_AccessorList_remove(accessors, 0));
    int64_t count = 0;
    CHECK(sorvane_gltf2_AccessorList_getSize(&count, accessors));
    EXPECT(count == 1);
    CHECK(sorvane_gltf2_AccessorList_getByIndex(&accessor, accessors, 0));
    int64_t view = -1;
    CHECK(sorvane_gltf2_Accessor_getBufferView(&view, accessor));
    EXPECT(view == 2);
    CHECK(sorvane_gltf2_BufferViewList_remove(views, 2));
    CHECK(sorvane_gltf2_Accessor_getBufferView(&view, accessor));
    EXPECT(view == 2);
    int64_t size = 0;
    EXPECT(sorvane_gltf2_Accessor_getData(NULL, &size, accessor) == -1);
    EXPECT(fails_with(sorvane_gltf2_BufferViewList_remove(views, 7), "7"));

    /* Type names: the class, and the list class with "List". */
    char type[64];
    int64_t typeSize = sizeof type;
    CHECK(sorvane_gltf2_Accessor_getPropertyTypeName(type, &typeSize, accessor));
    EXPECT(strcmp(type, "Accessor") == 0);
    typeSize = sizeof type;
    CHECK(sorvane_gltf2_AccessorList_getPropertyTypeName(type, &typeSize, accessors));
    EXPECT(strcmp(type, "AccessorList") == 0);

    /* Removing an entry of a list of values. */
    int64_t maxCount = 0;
    CHECK(sorvane_gltf2_Accessor_getMaxSize(&maxCount, accessor));
    CHECK(sorvane_gltf2_Accessor_removeMaxItem(accessor, 0));
    int64_t after = 0;
    CHECK(sorvane_gltf2_Accessor_getMaxSize(&after, accessor));
    EXPECT(after == maxCount - 1);
    sorvane_gltf2_Accessor_delete(accessor);
    sorvane_gltf2_BufferViewList_delete(views);
    sorvane_gltf2_AccessorList_delete(accessors);
    CHECK(sorvane_gltf2_Gltf_delete(gltf));
    return 0;
}

/* A .glb document stored as an ARF data item, opened again through the item. */
static int glb_payload(const char* dir) {
    char arfPath[512], glb[512], text[512];
    snprintf(arfPath, sizeof arfPath, "%s/avatar.arf", dir);
    snprintf(glb, sizeof glb, "%s/copy.glb", dir);
    snprintf(text, sizeof text, "%s/built.gltf", dir);
    sorvane_arf_Arf* arf = NULL;
    sorvane_arf_DataList* data = NULL;
    sorvane_arf_Data* item = NULL;
    sorvane_gltf2_Gltf* gltf = NULL;
    CHECK(sorvane_arf_Arf_create(&arf, arfPath));
    CHECK(sorvane_arf_Arf_getData(&data, arf));

    CHECK(sorvane_gltf2_Gltf_load(&gltf, text, true));
    EXPECT(fails_with(sorvane_arf_DataList_addGlbDocument(&item, data, "m.glb", gltf, NULL, true, 0),
                      "glTF is not a single file storage mode (e.g., glb)"));
    CHECK(sorvane_gltf2_Gltf_delete(gltf));
    EXPECT(fails_with(sorvane_arf_DataList_addGlbDocument(&item, data, "m.glb", NULL, NULL, true, 0), "gltf is NULL"));

    CHECK(sorvane_gltf2_Gltf_load(&gltf, glb, true));
    CHECK(sorvane_arf_DataList_addGlbDocument(&item, data, "models/m.glb", gltf, "model", true, 0));
    CHECK(sorvane_gltf2_Gltf_delete(gltf));
    CHECK(sorvane_arf_Arf_save(arf));

    sorvane_gltf2_Gltf* opened = NULL;
    CHECK(sorvane_arf_Data_getGltf(&opened, item, true));
    if (check_document(opened)) return 1;
    CHECK(sorvane_gltf2_Gltf_delete(opened));
    sorvane_arf_Data_delete(item);
    sorvane_arf_DataList_delete(data);
    CHECK(sorvane_arf_Arf_delete(arf));
    return 0;
}

static int generic_values(void) {
    sorvane_gltf2_GenericProperty* list = NULL;
    sorvane_gltf2_GenericProperty* item = NULL;
    CHECK(sorvane_gltf2_GenericProperty_createList(&list));
    CHECK(sorvane_gltf2_GenericProperty_addString(list, "a"));
    CHECK(sorvane_gltf2_GenericProperty_addNull(list));
    int64_t size = 0;
    CHECK(sorvane_gltf2_GenericProperty_getSize(&size, list));
    EXPECT(size == 2);
    CHECK(sorvane_gltf2_GenericProperty_getByIndex(&item, list, 0));
    char text[32];
    int64_t textSize = sizeof text;
    CHECK(sorvane_gltf2_GenericProperty_getString(text, &textSize, item));
    EXPECT(strcmp(text, "a") == 0);
    EXPECT(fails_with(sorvane_gltf2_GenericProperty_getInteger(&size, NULL), "genericProperty is NULL"));
    sorvane_gltf2_GenericProperty_delete(item);
    sorvane_gltf2_GenericProperty_delete(list);
    return 0;
}

int main(void) {
    char dir[128];
    snprintf(dir, sizeof dir, "/tmp/talvex-c-gltf2x-%ld", (long)getpid());
    char command[256];
    snprintf(command, sizeof command, "mkdir -p %s", dir);
    if (system(command) != 0) return 1;
    int rc = build_save_reload(dir);
    if (!rc) rc = remove_records(dir);
    if (!rc) rc = glb_payload(dir);
    if (!rc) rc = generic_values();
    snprintf(command, sizeof command, "rm -rf %s", dir);
    if (system(command) != 0) return 1;
    return rc;
}
