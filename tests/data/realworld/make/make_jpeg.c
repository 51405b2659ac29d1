/* Writes the JPEG samples of the real-world set with libjpeg: baseline and
 * progressive, 4:4:4, 4:2:2 and 4:2:0, restart markers, EXIF and ICC
 * segments, gray, CMYK and arithmetic coding.
 * Usage: make_jpeg OUT_DIR */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <jpeglib.h>

static void write_jpeg(const char *dir, const char *name, int width, int height, int components,
                       J_COLOR_SPACE space, int h0, int v0, int progressive, int restart, int exif, int icc,
                       int arith) {
    char path[1024];
    snprintf(path, sizeof path, "%s/%s", dir, name);
    FILE *file = fopen(path, "wb");
    if (!file) exit(1);
    struct jpeg_compress_struct c;
    struct jpeg_error_mgr err;
    c.err = jpeg_std_error(&err);
    jpeg_create_compress(&c);
    jpeg_stdio_dest(&c, file);
    c.image_width = (JDIMENSION)width;
    c.image_height = (JDIMENSION)height;
    c.input_components = components;
    c.in_color_space = space;
    jpeg_set_defaults(&c);
    jpeg_set_quality(&c, 90, TRUE);
    if (components == 3) {
        c.comp_info[0].h_samp_factor = h0;
        c.comp_info[0].v_samp_factor = v0;
    }
    if (progressive) jpeg_simple_progression(&c);
    if (restart) c.restart_interval = (unsigned int)restart;
    if (arith) c.arith_code = TRUE;
    jpeg_start_compress(&c, TRUE);
    if (exif) {
        static const unsigned char tiff[] = {'E', 'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0, 8, 0, 0, 0, 0, 0};
        jpeg_write_marker(&c, JPEG_APP0 + 1, tiff, sizeof tiff);
    }
    if (icc) {
        unsigned char profile[64];
        memset(profile, 0, sizeof profile);
        memcpy(profile, "ICC_PROFILE\0\1\1", 14);
        jpeg_write_marker(&c, JPEG_APP0 + 2, profile, sizeof profile);
    }
    unsigned char *row = malloc((size_t)width * (size_t)components);
    while (c.next_scanline < c.image_height) {
        const int y = (int)c.next_scanline;
        for (int x = 0; x < width; ++x)
            for (int k = 0; k < components; ++k)
                row[x * components + k] = (unsigned char)((x * 255 / (width - 1) + k * 60 + y * 3) & 0xff);
        JSAMPROW rows[1] = {row};
        jpeg_write_scanlines(&c, rows, 1);
    }
    free(row);
    jpeg_finish_compress(&c);
    jpeg_destroy_compress(&c);
    fclose(file);
}

int main(int argc, char **argv) {
    if (argc < 2) return 2;
    const char *d = argv[1];
    write_jpeg(d, "baseline_444.jpg", 33, 17, 3, JCS_RGB, 1, 1, 0, 0, 0, 0, 0);
    write_jpeg(d, "baseline_422.jpg", 33, 17, 3, JCS_RGB, 2, 1, 0, 0, 0, 0, 0);
    write_jpeg(d, "baseline_420.jpg", 33, 17, 3, JCS_RGB, 2, 2, 0, 0, 0, 0, 0);
    write_jpeg(d, "progressive_420.jpg", 40, 24, 3, JCS_RGB, 2, 2, 1, 0, 0, 0, 0);
    write_jpeg(d, "restart_markers.jpg", 48, 32, 3, JCS_RGB, 2, 2, 0, 1, 0, 0, 0);
    write_jpeg(d, "exif_icc.jpg", 16, 16, 3, JCS_RGB, 1, 1, 0, 0, 1, 1, 0);
    write_jpeg(d, "gray.jpg", 21, 13, 1, JCS_GRAYSCALE, 1, 1, 0, 0, 0, 0, 0);
    write_jpeg(d, "cmyk.jpg", 16, 8, 4, JCS_CMYK, 1, 1, 0, 0, 0, 0, 0);
    write_jpeg(d, "arithmetic.jpg", 16, 16, 3, JCS_RGB, 2, 2, 0, 0, 0, 0, 1);
    return 0;
}
