#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "sorvane/tools/geometry.h"
#include "sorvane/tools/timing.h"

TEST(Geometry, FacesMaxIndexPerBatch) {
    const long faces[] = {0, 5, 2, 7, 1, 3};
    long out[2] = {99, 99};
    sorvane::faces_max_index_cpu(out, faces, 2, 3, 1, -1);
    EXPECT_EQ(out[0], 7);
    sorvane::faces_max_index_cpu(out, faces, 0, 3, 1, -1);
    EXPECT_EQ(out[0], -1);
    // Two batches of one face each, and a stride that skips a padding index.
    sorvane::faces_max_index_cpu(out, faces, 1, 3, 2, 3);
    EXPECT_EQ(out[0], 5);
    EXPECT_EQ(out[1], 7);
    const long padded[] = {1, 2, 99, 4, 0, 99};
    sorvane::faces_max_index_cpu(out, padded, 2, 2, 1, 3);
    EXPECT_EQ(out[0], 4);
}

TEST(Geometry, TriangleAndVertexNormals) {
    // Two batches: the second triangle is the first one turned upside down.
    const float vertices[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5,
                              0, 0, 0, 0, 1, 0, 1, 0, 0, 5, 5, 5};
    const long faces[] = {0, 1, 2};
    float normals[6];
    sorvane::triangles_normals_cpu(normals, vertices, 4, faces, 1, 2, -1, 1e-12f);
    EXPECT_FLOAT_EQ(normals[2], 1.0f);
    EXPECT_FLOAT_EQ(normals[5], -1.0f);
    EXPECT_EQ(normals[0], 0.0f);

    float perVertex[24];
    std::fill(std::begin(perVertex), std::end(perVertex), 42.0f);
    sorvane::vertices_normals_cpu(perVertex, 4, vertices, faces, 1, 3, 2, -1, -1, 1e-12f);
    for (int v = 0; v < 3; ++v) {
        EXPECT_FLOAT_EQ(perVertex[v * 3 + 2], 1.0f);
        EXPECT_FLOAT_EQ(perVertex[12 + v * 3 + 2], -1.0f);
    }
    for (int k = 0; k < 3; ++k) {  // the unreferenced vertex of each batch
        EXPECT_EQ(perVertex[9 + k], 0.0f);
        EXPECT_EQ(perVertex[21 + k], 0.0f);
    }
}

TEST(Geometry, DegenerateAndOutOfRangeFacesGiveZero) {
    const float vertices[] = {0, 0, 0, 1, 1, 1, 2, 2, 2};
    const long faces[] = {0, 1, 2, 0, 1, 9};
    float normals[6] = {7, 7, 7, 7, 7, 7};
    sorvane::triangles_normals_cpu(normals, vertices, 3, faces, 2, 1, -1, 0.0f);
    for (float n : normals) EXPECT_EQ(n, 0.0f);
    float perVertex[9];
    sorvane::vertices_normals_cpu(perVertex, 3, vertices, faces, 2, 3, 1, -1, -1, 0.0f);
    for (float n : perVertex) EXPECT_FALSE(std::isnan(n));
}

TEST(Timing, ClocksTicTocAndFolders) {
    const int64_t a = sorvane::get_walltime();
    const int64_t b = sorvane::get_walltime();
    EXPECT_LE(a, b);
    EXPECT_GE(sorvane::get_process_cputime(), 0);
    EXPECT_GE(sorvane::get_thread_cputime(), 0);

    const int64_t start = sorvane::tic();
    EXPECT_EQ(sorvane::ticTime, start);
    EXPECT_EQ(sorvane::tocTime, start);
    testing::internal::CaptureStdout();
    sorvane::toc("label");
    const std::string line = testing::internal::GetCapturedStdout();
    double sinceTic = -1, sinceToc = -1;
    char label[16] = {};
    ASSERT_EQ(std::sscanf(line.c_str(), "Elapsed time is %lf (tic) %lf (toc) %15s", &sinceTic, &sinceToc, label), 3)
        << line;
    EXPECT_EQ(std::string(label), "label");
    EXPECT_DOUBLE_EQ(sinceTic, sinceToc);  // right after tic both clocks agree
    EXPECT_EQ(line.back(), '\n');
    EXPECT_EQ(line.rfind("Elapsed time is ", 0), 0u);
    char expected[128];
    std::snprintf(expected, sizeof expected, "Elapsed time is % 8.4f (tic) % 8.4f (toc) %s\n", sinceTic, sinceToc,
                  "label");
    EXPECT_EQ(line, expected);
    EXPECT_GE(sorvane::tocTime, start);

    sorvane::setMainTestDataDir("/data");
    sorvane::setRunDir("run");
    EXPECT_EQ(sorvane::getMainTestDataDir(), "/data");
    EXPECT_EQ(sorvane::getRunDir(), "run");
}

TEST(Timing, RandomFloatFollowsRand) {
    srand(7);
    const int r = rand();
    srand(7);
    EXPECT_EQ(sorvane::randomFloat(2.0f, 4.0f), 2.0f + 2.0f * (static_cast<float>(r) * 4.656613e-10f));
    for (int i = 0; i < 100; ++i) {
        const float x = sorvane::randomFloat(-1.0f, 1.0f);
        EXPECT_GE(x, -1.0f);
        EXPECT_LE(x, 1.0f);
    }
}
