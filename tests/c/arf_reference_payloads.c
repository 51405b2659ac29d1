/* Payloads read through the references that name data items, in one call:
 * the inverse bind matrices of a skeleton, the weights of a skin and the
 * entries of a mesh give what the data item's own calls give. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

#include "check.h"

/* The call fails and the slot holds a text that contains `part`. */
static int fails(int32_t status, const char* part) {
    char message[512];
    int64_t size = sizeof message;
    if (status != -1) return 0;
    sorvane_getErrorMessage(message, &size);
    if (strstr(message, part)) return 1;
    fprintf(stderr, "unexpected message: %s (wanted %s)\n", message, part);
    return 0;
}

int main(void) {
    sorvane_arf_Arf* arf = NULL;
    CHECK(sorvane_arf_Arf_create(&arf, "memory:"));
    sorvane_arf_DataList* data = NULL;
    CHECK(sorvane_arf_Arf_getData(&data, arf));
    float matrices[32] = {0};
    for (int i = 0; i < 32; ++i) matrices[i] = (float)i;
    const float weights[6] = {1, 0, 0.25f, 0.75f, 0, 1};
    const int64_t ibmDims[2] = {2, 16}, weightDims[2] = {3, 2};
    sorvane_arf_Data* ibm = NULL;
    CHECK(sorvane_arf_DataList_addDense(&ibm, data, matrices, sizeof matrices, 5126, ibmDims, 2, false, NULL, "ibm",
                                        false, 4));
    sorvane_arf_Data* w = NULL;
    CHECK(sorvane_arf_DataList_addDense(&w, data, weights, sizeof weights, 5126, weightDims, 2, false, NULL, "w",
                                        false, 7));

    sorvane_arf_Components* components = NULL;
    CHECK(sorvane_arf_Arf_getComponents(&components, arf));
    sorvane_arf_NodeList* nodes = NULL;
    CHECK(sorvane_arf_Components_getNodes(&nodes, components));
    sorvane_arf_Node* hips = NULL;
    CHECK(sorvane_arf_NodeList_add(&hips, nodes, "Hips", "hips", false, 1));
    sorvane_arf_SkeletonList* skeletons = NULL;
    CHECK(sorvane_arf_Components_getSkeletons(&skeletons, components));
    sorvane_arf_Skeleton* skeleton = NULL;
    CHECK(sorvane_arf_SkeletonList_add(&skeleton, skeletons, 1, "body", false, 1));
    sorvane_arf_MeshList* meshes = NULL;
    CHECK(sorvane_arf_Components_getMeshes(&meshes, components));
    sorvane_arf_Mesh* mesh = NULL;
    CHECK(sorvane_arf_MeshList_add(&mesh, meshes, "body", false, 1));
    const int64_t items[2] = {7, 4};
    CHECK(sorvane_arf_Mesh_setDataItemValues(mesh, items, 2));
    sorvane_arf_SkinList* skins = NULL;
    CHECK(sorvane_arf_Components_getSkins(&skins, components));
    sorvane_arf_Skin* skin = NULL;
    CHECK(sorvane_arf_SkinList_add(&skin, skins, 1, "skin", false, 1));
    CHECK(sorvane_arf_Skin_setWeightsIndex(skin, 7));

    /* An absent reference fails like its getter; the null checks come in frame order. */
    int64_t bytes = 0, dimCount = 0, dims[4] = {0};
    int32_t dtype = 0;
    if (!fails(sorvane_arf_Skeleton_getInverseBindMatrixDataSize(&bytes, skeleton), "inverseBindMatrix")) return 2;
    if (!fails(sorvane_arf_Skeleton_getInverseBindMatrixTensorData(&bytes, &dtype, dims, 4, &dimCount, NULL, 0, NULL),
               "skeleton is NULL"))
        return 2;
    if (!fails(sorvane_arf_Skeleton_getInverseBindMatrixTensorData(&bytes, NULL, dims, 4, &dimCount, NULL, 0, skeleton),
               "pdtype is NULL"))
        return 2;
    CHECK(sorvane_arf_Skeleton_setInverseBindMatrixIndex(skeleton, 4));

    /* The shape first, then the values, as from the item itself. */
    CHECK(sorvane_arf_Skeleton_getInverseBindMatrixTensorData(&bytes, &dtype, dims, 4, &dimCount, NULL, 0, skeleton));
    if (bytes != (int64_t)sizeof matrices || dtype != 5126 || dimCount != 2 || dims[0] != 2 || dims[1] != 16) return 3;
    float back[32] = {0};
    CHECK(sorvane_arf_Skeleton_getInverseBindMatrixTensorData(&bytes, &dtype, dims, 4, &dimCount, back, sizeof back,
                                                              skeleton));
    if (memcmp(back, matrices, sizeof back) != 0) return 3;
    if (sorvane_arf_Skeleton_getInverseBindMatrixTensorData(&bytes, &dtype, dims, 4, &dimCount, back, 16, skeleton) !=
        -1)
        return 3;

    int64_t viaReference = 0, viaItem = 0;
    CHECK(sorvane_arf_Skeleton_getInverseBindMatrixDataSize(&viaReference, skeleton));
    CHECK(sorvane_arf_Data_getDataSize(&viaItem, ibm));
    if (viaReference != viaItem || viaItem <= (int64_t)sizeof matrices) return 4;
    unsigned char raw1[256], raw2[256];
    CHECK(sorvane_arf_Skeleton_getInverseBindMatrixData(&bytes, raw1, sizeof raw1, skeleton));
    CHECK(sorvane_arf_Data_getData(&viaItem, raw2, sizeof raw2, ibm));
    if (bytes != viaItem || memcmp(raw1, raw2, (size_t)bytes) != 0) return 4;

    DataTree* tensor = NULL;
    CHECK(sorvane_arf_Skeleton_getInverseBindMatrixTensorPtr(&tensor, skeleton));
    int64_t sizes[4] = {0}, sizeCount = 0;
    CHECK(sorvane_datatree_DataTree_getTensorSizes(sizes, sizeof sizes, &sizeCount, tensor));
    if (sizeCount != 2 || sizes[0] != 2 || sizes[1] != 16) return 5;
    sorvane_datatree_DataTree_delete(tensor);

    /* Entries of a list of references, by position. */
    CHECK(sorvane_arf_Mesh_getDataItemTensorData(&bytes, &dtype, dims, 4, &dimCount, NULL, 0, mesh, 0));
    if (bytes != (int64_t)sizeof weights || dimCount != 2 || dims[0] != 3 || dims[1] != 2) return 6;
    CHECK(sorvane_arf_Mesh_getDataItemDataSize(&viaReference, mesh, 1));
    CHECK(sorvane_arf_Data_getDataSize(&viaItem, ibm));
    if (viaReference != viaItem) return 6;
    if (!fails(sorvane_arf_Mesh_getDataItemTensorPtr(&tensor, mesh, 2), "Invalid index 2")) return 6;

    /* The compact form of the skin's weights: the largest value of each row. */
    DataTree* values = NULL;
    DataTree* columns = NULL;
    CHECK(sorvane_arf_Skin_getWeightsColSparseTensorPtr(&values, &columns, skin, 1, 1, false));
    CHECK(sorvane_datatree_DataTree_getTensorSizes(sizes, sizeof sizes, &sizeCount, values));
    if (sizeCount != 2 || sizes[0] != 3 || sizes[1] != 1) return 7;
    sorvane_datatree_DataTree_delete(values);
    sorvane_datatree_DataTree_delete(columns);

    /* A removed item leaves the reference dangling: the reads fail as get() does. */
    CHECK(sorvane_arf_DataList_remove(data, 7));
    if (!fails(sorvane_arf_Skin_getWeightsDataSize(&bytes, skin), "Getting item from data: Invalid id 7")) return 8;
    if (!fails(sorvane_arf_Mesh_getDataItemData(&bytes, NULL, 0, mesh, 0), "Invalid id 7")) return 8;

    sorvane_arf_Skin_delete(skin);
    sorvane_arf_SkinList_delete(skins);
    sorvane_arf_Mesh_delete(mesh);
    sorvane_arf_MeshList_delete(meshes);
    sorvane_arf_Skeleton_delete(skeleton);
    sorvane_arf_SkeletonList_delete(skeletons);
    sorvane_arf_Node_delete(hips);
    sorvane_arf_NodeList_delete(nodes);
    sorvane_arf_Components_delete(components);
    sorvane_arf_Data_delete(w);
    sorvane_arf_Data_delete(ibm);
    sorvane_arf_DataList_delete(data);
    sorvane_arf_Arf_delete(arf);
    return 0;
}
