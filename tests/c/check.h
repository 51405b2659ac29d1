/* Checks shared by the C programs: a call that fails prints the library's
 * error text and ends the program with 1; so does a condition that is false. */
#ifndef TALVEX_TESTS_C_CHECK_H
#define TALVEX_TESTS_C_CHECK_H

#include <stdint.h>
#include <stdio.h>

#define CHECK(call)                                                                       \
    do {                                                                                  \
        if ((call) != 0) {                                                                \
            char message[512];                                                            \
            int64_t size = sizeof message;                                                \
            sorvane_getErrorMessage(message, &size);                                      \
            fprintf(stderr, "%s:%d %s failed: %s\n", __FILE__, __LINE__, #call, message); \
            return 1;                                                                     \
        }                                                                                 \
    } while (0)

#define EXPECT(cond)                                                           \
    do {                                                                       \
        if (!(cond)) {                                                         \
            fprintf(stderr, "%s:%d expected %s\n", __FILE__, __LINE__, #cond); \
            return 1;                                                          \
        }                                                                      \
    } while (0)

#endif
