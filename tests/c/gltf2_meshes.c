/* The derived mesh reads through the C header: a primitive with three morph
 * targets (the middle one without POSITION) read as a stack whole and by
 * selection, its joint influences cut to the two strongest, and a mesh as a
 * DataTree. */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

#include "check.h"

static int slotHas(const char* expected) {
    char message[512];
    int64_t size = sizeof message;
    if (sorvane_getErrorMessage(message, &size) != 0) return 0;
    if (strstr(message, expected)) return 1;
    fprintf(stderr, "slot: %s\nexpected: %s\n", message, expected);
    return 0;
}

static const float kPositions[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};
static const float kMorphA[9] = {1, 1, 1, 2, 2, 2, 3, 3, 3};
static const float kMorphB[9] = {-1, 0, 0, -2, 0, 0, -3, 0, 0};
static const float kNormals[9] = {0, 0, 1, 0, 0, 1, 0, 0, 1};
static const uint32_t kFaces[3] = {0, 1, 2};
static const uint8_t kJoints[12] = {4, 2, 9, 0, 1, 3, 0, 0, 7, 7, 7, 7};
static const float kWeights[12] = {0.6f, 0.3f, 0.1f, 0, 0.25f, 0.75f, 0, 0, 1, 0, 0, 0};

static sorvane_gltf2_Accessor* add(sorvane_gltf2_AccessorList* accessors, const void* data, int32_t componentType,
                                   const char* type) {
    sorvane_gltf2_Accessor* accessor = NULL;
    if (sorvane_gltf2_AccessorList_addDense(&accessor, accessors, data, 3, componentType, type, 0, true, NULL) != 0)
        return NULL;
    return accessor;
}

int main(void) {
    sorvane_gltf2_Gltf* gltf = NULL;
    sorvane_gltf2_AccessorList* accessors = NULL;
    sorvane_gltf2_Accessor* made[7];
    sorvane_gltf2_MeshList* meshes = NULL;
    sorvane_gltf2_Mesh* mesh = NULL;
    sorvane_gltf2_Primitive* primitive = NULL;
    DataTree* stack = NULL;
    DataTree* joints = NULL;
    DataTree* weights = NULL;
    DataTree* tree = NULL;
    int64_t layout[3] = {0, 0, 0};
    int64_t count = 0, size = 0, value = 0, vertices = 0, perVertex = 0;
    int32_t componentType = 0;
    float block[27];
    uint8_t jointBytes[6];
    float weightValues[6];
    const int64_t pick[2] = {2, 0};
    const int64_t bad[1] = {5};
    bool has = false;
    int k;

    CHECK(sorvane_gltf2_Gltf_create(&gltf, "gltf2-meshes.gltf"));
    CHECK(sorvane_gltf2_Gltf_getAccessors(&accessors, gltf));
    made[0] = add(accessors, kPositions, 5126, "VEC3");
    made[1] = add(accessors, kMorphA, 5126, "VEC3");
    made[2] = add(accessors, kMorphB, 5126, "VEC3");
    made[3] = add(accessors, kNormals, 5126, "VEC3");
    made[4] = add(accessors, kJoints, 5121, "VEC4");
    made[5] = add(accessors, kWeights, 5126, "VEC4");
    made[6] = NULL;
    CHECK(sorvane_gltf2_AccessorList_addDense(&made[6], accessors, kFaces, 3, 5125, "SCALAR", 34963, true, NULL));
    for (k = 0; k < 7; ++k) EXPECT(made[k] != NULL);
    CHECK(sorvane_gltf2_Gltf_getMeshes(&meshes, gltf));
    CHECK(sorvane_gltf2_MeshList_add(&mesh, meshes, "body"));
    CHECK(sorvane_gltf2_Mesh_addPrimitives(&primitive, mesh));
    CHECK(sorvane_gltf2_Primitive_setAttributesValue(primitive, "POSITION", 0));
    CHECK(sorvane_gltf2_Primitive_setAttributesValue(primitive, "JOINTS_0", 4));
    CHECK(sorvane_gltf2_Primitive_setAttributesValue(primitive, "WEIGHTS_0", 5));
    CHECK(sorvane_gltf2_Primitive_setIndices(primitive, 6));
    for (k = 0; k < 3; ++k) CHECK(sorvane_gltf2_Primitive_addTargetsItem(&value, primitive));
    CHECK(sorvane_gltf2_Primitive_setTargetsValue(primitive, 0, "POSITION", 1));
    CHECK(sorvane_gltf2_Primitive_setTargetsValue(primitive, 1, "NORMAL", 3));
    CHECK(sorvane_gltf2_Primitive_setTargetsValue(primitive, 2, "POSITION", 2));

    /* The whole stack: three blocks, the middle one zero. */
    CHECK(sorvane_gltf2_Primitive_getTargetsDataLayout(NULL, 0, &count, primitive, "POSITION", NULL, 0));
    EXPECT(count == 3);
    CHECK(sorvane_gltf2_Primitive_getTargetsDataLayout(layout, sizeof layout, &count, primitive, "POSITION", NULL, 0));
    EXPECT(layout[0] == 3 && layout[1] == 3 && layout[2] == 3);
    CHECK(sorvane_gltf2_Primitive_getTargetsData(NULL, &size, primitive, "POSITION", NULL, 0));
    EXPECT(size == (int64_t)sizeof block);
    size = 8;
    EXPECT(sorvane_gltf2_Primitive_getTargetsData(block, &size, primitive, "POSITION", NULL, 0) == -1);
    EXPECT(size == (int64_t)sizeof block);
    CHECK(sorvane_gltf2_Primitive_getTargetsData(block, &size, primitive, "POSITION", NULL, 0));
    EXPECT(memcmp(block, kMorphA, sizeof kMorphA) == 0 && block[9] == 0 && block[17] == 0);
    EXPECT(memcmp(block + 18, kMorphB, sizeof kMorphB) == 0);
    CHECK(sorvane_gltf2_Primitive_getTargetsTensor(&stack, primitive, "POSITION", NULL, 0));
    CHECK(sorvane_datatree_DataTree_getTensorSizes(layout, sizeof layout, &count, stack));
    EXPECT(count == 3 && layout[0] == 3 && layout[1] == 3 && layout[2] == 3);
    sorvane_datatree_DataTree_delete(stack);

    /* A selection in its own order. */
    CHECK(sorvane_gltf2_Primitive_getTargetsTensor(&stack, primitive, "POSITION", pick, 2));
    size = 0;
    EXPECT(sorvane_datatree_DataTree_getValues(NULL, &size, stack) == -1 && size == 72);
    CHECK(sorvane_datatree_DataTree_getValues(block, &size, stack));
    EXPECT(memcmp(block, kMorphB, sizeof kMorphB) == 0 && memcmp(block + 9, kMorphA, sizeof kMorphA) == 0);
    sorvane_datatree_DataTree_delete(stack);
    EXPECT(sorvane_gltf2_Primitive_getTargetsTensor(&stack, primitive, "POSITION", bad, 1) == -1);
    EXPECT(slotHas("Invalid index 5 in selection"));
    EXPECT(sorvane_gltf2_Primitive_getTargetsTensor(&stack, primitive, "POSITION", pick, 0) == -1);
    EXPECT(slotHas("Selection is empty"));
    EXPECT(sorvane_gltf2_Primitive_getTargetsTensor(&stack, primitive, "TANGENT", NULL, 0) == -1);
    EXPECT(slotHas("No key TANGENT"));
    CHECK(sorvane_gltf2_Primitive_getTargetsComponentType(&componentType, primitive, "POSITION"));
    EXPECT(componentType == 5126);
    CHECK(sorvane_gltf2_Primitive_getTargetsFirstdWith(&value, primitive, "NORMAL"));
    EXPECT(value == 1);
    CHECK(sorvane_gltf2_Primitive_getTargetsFirstdWith(&value, primitive, "TANGENT"));
    EXPECT(value == -1);

    /* Joints: the two strongest per vertex, renormalised, in descending order. */
    CHECK(sorvane_gltf2_Primitive_getJointsDataLayout(&vertices, &perVertex, primitive, -1, 2));
    EXPECT(vertices == 3 && perVertex == 2);
    CHECK(sorvane_gltf2_Primitive_getJointsData(&count, NULL, 0, NULL, 0, primitive, -1, 2));
    EXPECT(count == 6);
    EXPECT(sorvane_gltf2_Primitive_getJointsData(&count, jointBytes, 5, weightValues, sizeof weightValues, primitive,
                                                 -1, 2) == -1);
    EXPECT(slotHas("Indices buffer is not large enough"));
    CHECK(sorvane_gltf2_Primitive_getJointsData(&count, jointBytes, sizeof jointBytes, weightValues,
                                                sizeof weightValues, primitive, -1, 2));
    EXPECT(jointBytes[0] == 4 && jointBytes[1] == 2 && jointBytes[2] == 3 && jointBytes[3] == 1);
    EXPECT(fabsf(weightValues[0] - 0.6666667f) < 1e-6f && fabsf(weightValues[1] - 0.3333333f) < 1e-6f);
    EXPECT(fabsf(weightValues[2] - 0.75f) < 1e-6f && weightValues[4] == 1 && weightValues[5] == 0);
    CHECK(sorvane_gltf2_Primitive_getJointsTensor(&joints, &weights, primitive, -1, 2));
    CHECK(sorvane_datatree_DataTree_getTensorSizes(layout, sizeof layout, &count, weights));
    EXPECT(count == 2 && layout[0] == 3 && layout[1] == 2);
    sorvane_datatree_DataTree_delete(joints);
    sorvane_datatree_DataTree_delete(weights);
    EXPECT(sorvane_gltf2_Primitive_getJointsTensor(&joints, NULL, primitive, -1, 2) == -1 && slotHas("out is NULL"));

    /* A mesh of one primitive as vertices and faces. */
    CHECK(sorvane_gltf2_Mesh_getDataTree(&tree, mesh));
    CHECK(sorvane_datatree_DataTree_hasItem(&has, tree, "vertices"));
    EXPECT(has);
    CHECK(sorvane_datatree_DataTree_hasItem(&has, tree, "faces"));
    EXPECT(has);
    sorvane_datatree_DataTree_delete(tree);

    /* Check order: the primitive, then the result, then the text. */
    EXPECT(sorvane_gltf2_Primitive_getTargetsTensor(NULL, NULL, NULL, NULL, 0) == -1 && slotHas("primitive is NULL"));
    EXPECT(sorvane_gltf2_Primitive_getTargetsTensor(NULL, primitive, NULL, NULL, 0) == -1 && slotHas("out is NULL"));
    EXPECT(sorvane_gltf2_Primitive_getTargetsTensor(&stack, primitive, NULL, NULL, 0) == -1 &&
           slotHas("null not valid"));
    EXPECT(sorvane_gltf2_Mesh_getDataTree(&tree, NULL) == -1 && slotHas("mesh is NULL"));

    for (k = 0; k < 7; ++k) sorvane_gltf2_Accessor_delete(made[k]);
    sorvane_gltf2_Primitive_delete(primitive);
    sorvane_gltf2_Mesh_delete(mesh);
    sorvane_gltf2_MeshList_delete(meshes);
    sorvane_gltf2_AccessorList_delete(accessors);
    sorvane_gltf2_Gltf_delete(gltf);
    printf("gltf2 meshes ok\n");
    return 0;
}
