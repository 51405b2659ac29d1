/* The generated glTF appearance families from C99: a material's read
 * defaults, a camera made by type, and a child object made on first read. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

int main(void) {
    sorvane_gltf2_Gltf* gltf = NULL;
    sorvane_gltf2_MaterialList* materials = NULL;
    sorvane_gltf2_Material* material = NULL;
    sorvane_gltf2_PbrMetallicRoughness* pbr = NULL;
    sorvane_gltf2_CameraList* cameras = NULL;
    sorvane_gltf2_Camera* camera = NULL;
    sorvane_gltf2_CameraPerspective* perspective = NULL;
    double value = 0;
    bool present = true;
    char text[32];
    int64_t size = sizeof(text);
    if (sorvane_gltf2_Gltf_create(&gltf, "appearance_c.gltf") != 0) return 1;
    if (sorvane_gltf2_Gltf_getMaterials(&materials, gltf) != 0) return 2;
    if (sorvane_gltf2_MaterialList_add(&material, materials) != 0) return 3;
    if (sorvane_gltf2_Material_hasPbrMetallicRoughness(&present, material) != 0 || present) return 4;
    /* Reading the absent child makes it; its absent factor reads 1. */
    if (sorvane_gltf2_Material_getPbrMetallicRoughness(&pbr, material) != 0) return 5;
    if (sorvane_gltf2_PbrMetallicRoughness_getMetallicFactor(&value, pbr) != 0 || value != 1.0) return 6;
    if (sorvane_gltf2_Material_getAlphaCutoff(&value, material) != 0 || value != 0.5) return 7;

    if (sorvane_gltf2_Gltf_getCameras(&cameras, gltf) != 0) return 8;
    if (sorvane_gltf2_CameraList_add(&camera, cameras, "perspective", "eye") != 0) return 9;
    if (sorvane_gltf2_Camera_getType(text, &size, camera) != 0 || strcmp(text, "perspective") != 0) return 10;
    if (sorvane_gltf2_Camera_hasOrthographic(&present, camera) != 0 || present) return 11;
    if (sorvane_gltf2_Camera_getPerspective(&perspective, camera) != 0) return 12;
    if (sorvane_gltf2_CameraPerspective_getZnear(&value, perspective) != 0 || value != 1.0) return 13;
    if (sorvane_gltf2_CameraList_add(&camera, cameras, "fisheye", "") != -1) return 14;

    sorvane_gltf2_CameraPerspective_delete(perspective);
    sorvane_gltf2_Camera_delete(camera);
    sorvane_gltf2_CameraList_delete(cameras);
    sorvane_gltf2_PbrMetallicRoughness_delete(pbr);
    sorvane_gltf2_Material_delete(material);
    sorvane_gltf2_MaterialList_delete(materials);
    sorvane_gltf2_Gltf_delete(gltf);
    printf("c gltf2 appearance ok\n");
    return 0;
}
