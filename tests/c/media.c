/* The media extensions of the C header from C99: crops and flips of an image
 * object, and a quad through .obj files. */
#include <stdio.h>
#include <string.h>

#include "sorvane/sorvane.h"

static DataTree* makeImage(void) {
    /* 4 x 2 RGB, black but for pixel (1, 0). */
    unsigned char pixels[2 * 4 * 3];
    const int64_t sizes[] = {2, 4, 3};
    DataTree* image = NULL;
    memset(pixels, 0, sizeof(pixels));
    pixels[3] = 200;
    if (sorvane_datatree_DataTree_createObject(&image) != 0) return NULL;
    if (sorvane_datatree_DataTree_setObjectItemInteger(image, "imageFormat", 2) != 0 ||
        sorvane_datatree_DataTree_setObjectItemInteger(image, "pixelFormat", 1) != 0 ||
        sorvane_datatree_DataTree_setObjectItemTensor(image, "pixels", pixels, sizeof(pixels), sizes, 3, 2) != 0)
        return NULL;
    return image;
}

static int64_t tensorSize(const DataTree* object, const char* key, int64_t dim) {
    DataTree* item = NULL;
    int64_t size = -1;
    if (sorvane_datatree_DataTree_getObjectItem(&item, object, key) != 0) return -1;
    sorvane_datatree_DataTree_getTensorSize(&size, item, dim);
    sorvane_datatree_DataTree_delete(item);
    return size;
}

int main(void) {
    DataTree* image = makeImage();
    DataTree* cropped = NULL;
    DataTree* flipped = NULL;
    DataTree* mesh = NULL;
    DataTree* again = NULL;
    const double black[] = {0, 0, 0};
    int64_t box[4] = {0, 0, 0, 0};
    FILE* obj = NULL;
    if (!image) return 1;
    if (sorvane_cropImagePtr(&cropped, image, 1, 0, 3, 2) != 0 || tensorSize(cropped, "pixels", 1) != 2) return 2;
    if (sorvane_vflipImagePtr(&flipped, image) != 0 || tensorSize(flipped, "pixels", 0) != 2) return 3;
    if (sorvane_smallestImageCrop(box, image, black, 3) != 0) return 4;
    /* Only column 1 differs: the scan from the right stops short of it, so right stays width - 1. */
    if (box[0] != 1 || box[1] != 3 || box[2] != 0 || box[3] != 1) return 5;
    if (sorvane_cropImagePtr(&cropped, NULL, 0, 0, 1, 1) != -1) return 6;

    obj = fopen("media_c_quad.obj", "w");
    if (!obj) return 7;
    fputs("v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nf 1 2 3 4\n", obj);
    fclose(obj);
    if (sorvane_loadMeshPtr(&mesh, "media_c_quad.obj") != 0 || tensorSize(mesh, "facesVertices", 1) != 4) return 8;
    if (sorvane_saveMesh("media_c_copy.obj", mesh, false) != 0) return 9;
    if (sorvane_loadObjPtr(&again, "media_c_copy.obj") != 0 || tensorSize(again, "vertices", 0) != 4) return 10;
    if (sorvane_saveObj("media_c_copy.obj", NULL) != -1) return 11;
    if (sorvane_saveMesh("media_c_quad.ply", again, false) != -1) return 12;

    sorvane_datatree_DataTree_delete(again);
    sorvane_datatree_DataTree_delete(mesh);
    sorvane_datatree_DataTree_delete(flipped);
    sorvane_datatree_DataTree_delete(cropped);
    sorvane_datatree_DataTree_delete(image);
    remove("media_c_quad.obj");
    remove("media_c_copy.obj");
    printf("c media ok\n");
    return 0;
}
