/* A glTF scene graph built through the C header: a mesh with a primitive
 * whose attributes and morph targets are maps, a node tree and a scene; the
 * node types and the first mesh read back; the map messages in the slot. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "sorvane/sorvane.h"

#include "check.h"

static const float kPositions[9] = {0, 0, 0, 1, 0, 0, 0, 1, 0};

static int build(const char* path) {
    sorvane_gltf2_Gltf* gltf = NULL;
    sorvane_gltf2_AccessorList* accessors = NULL;
    sorvane_gltf2_Accessor* accessor = NULL;
    sorvane_gltf2_MeshList* meshes = NULL;
    sorvane_gltf2_Mesh* mesh = NULL;
    sorvane_gltf2_Primitive* primitive = NULL;
    sorvane_gltf2_NodeList* nodes = NULL;
    sorvane_gltf2_Node* parent = NULL;
    sorvane_gltf2_Node* child = NULL;
    sorvane_gltf2_SceneList* scenes = NULL;
    sorvane_gltf2_Scene* scene = NULL;
    sorvane_gltf2_Mesh* first = NULL;
    char text[256];
    int64_t size = 0, index = -1, count = 0;
    int32_t types[4] = {9, 9, 9, 9};

    CHECK(sorvane_gltf2_Gltf_create(&gltf, path));
    CHECK(sorvane_gltf2_Gltf_getAccessors(&accessors, gltf));
    CHECK(sorvane_gltf2_AccessorList_addDense(&accessor, accessors, kPositions, 3, 5126, "VEC3", 34962, true, NULL));
    CHECK(sorvane_gltf2_Gltf_getMeshes(&meshes, gltf));
    CHECK(sorvane_gltf2_MeshList_add(&mesh, meshes, "body"));
    CHECK(sorvane_gltf2_Mesh_addPrimitives(&primitive, mesh));
    CHECK(sorvane_gltf2_Primitive_setAttributesValue(primitive, "POSITION", 0));
    EXPECT(sorvane_gltf2_Primitive_setAttributesValue(primitive, "NORMAL", 5) == -1);
    size = sizeof text;
    sorvane_getErrorMessage(text, &size);
    EXPECT(strstr(text, "Setting item NORMAL of meshes[0].primitives[0].attributes: Invalid index 5 in accessors"));
    CHECK(sorvane_gltf2_Primitive_getAttributesSize(&count, primitive));
    EXPECT(count == 1);
    size = sizeof text;
    CHECK(sorvane_gltf2_Primitive_getAttributesKey(text, &size, primitive, 0));
    EXPECT(strcmp(text, "POSITION") == 0);
    CHECK(sorvane_gltf2_Primitive_addTargetsItem(&index, primitive));
    EXPECT(index == 0);
    CHECK(sorvane_gltf2_Primitive_setTargetsValue(primitive, 0, "POSITION", 0));
    CHECK(sorvane_gltf2_Primitive_getTargetsValue(&index, primitive, 0, "POSITION"));
    EXPECT(index == 0);

    CHECK(sorvane_gltf2_Gltf_getNodes(&nodes, gltf));
    CHECK(sorvane_gltf2_NodeList_add(&parent, nodes, "root"));
    CHECK(sorvane_gltf2_NodeList_add(&child, nodes, "leaf"));
    CHECK(sorvane_gltf2_Node_addChildrenValue(parent, 1));
    CHECK(sorvane_gltf2_Node_setMesh(child, 0));
    CHECK(sorvane_gltf2_Gltf_getScenes(&scenes, gltf));
    CHECK(sorvane_gltf2_SceneList_add(&scene, scenes, "main"));
    CHECK(sorvane_gltf2_Scene_addNodesValue(scene, 0));
    CHECK(sorvane_gltf2_Gltf_setScene(gltf, 0));

    count = 0;
    CHECK(sorvane_gltf2_Gltf_getNodeTypes(NULL, 0, &count, gltf));
    EXPECT(count == 2);
    CHECK(sorvane_gltf2_Gltf_getNodeTypes(types, sizeof types, &count, gltf));
    EXPECT(types[0] == 1 && types[1] == 1 && types[2] == 9);
    size = sizeof text;
    CHECK(sorvane_gltf2_Gltf_getSceneName(text, &size, gltf));
    EXPECT(strcmp(text, "main") == 0);
    CHECK(sorvane_gltf2_Gltf_getFirstMesh(&first, gltf));
    size = sizeof text;
    CHECK(sorvane_gltf2_Mesh_getName(text, &size, first));
    EXPECT(strcmp(text, "body") == 0);

    sorvane_gltf2_Mesh_delete(first);
    sorvane_gltf2_Scene_delete(scene);
    sorvane_gltf2_SceneList_delete(scenes);
    sorvane_gltf2_Node_delete(child);
    sorvane_gltf2_Node_delete(parent);
    sorvane_gltf2_NodeList_delete(nodes);
    sorvane_gltf2_Primitive_delete(primitive);
    sorvane_gltf2_Mesh_delete(mesh);
    sorvane_gltf2_MeshList_delete(meshes);
    sorvane_gltf2_Accessor_delete(accessor);
    sorvane_gltf2_AccessorList_delete(accessors);
    sorvane_gltf2_Gltf_delete(gltf);
    return 0;
}

int main(void) {
    char dir[128], path[256], command[300];
    snprintf(dir, sizeof dir, "/tmp/talvex-c-gltf2scene-%ld", (long)getpid());
    snprintf(command, sizeof command, "mkdir -p %s", dir);
    if (system(command) != 0) return 1;
    snprintf(path, sizeof path, "%s/scene.gltf", dir);
    int rc = build(path);
    snprintf(command, sizeof command, "rm -rf %s", dir);
    if (system(command) != 0) return 1;
    return rc;
}
