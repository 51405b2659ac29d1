/* Symbol visibility for libtalvex. The library builds with hidden visibility;
 * only what carries SORVANE_API is exported. Plain C so the C header can use it. */
#ifndef SORVANE_CORE_EXPORT_H
#define SORVANE_CORE_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#define SORVANE_API __attribute__((visibility("default")))
#else
#define SORVANE_API
#endif

#ifdef __cplusplus
#define SORVANE_EXTERN_C extern "C"
#else
#define SORVANE_EXTERN_C
#endif

#endif
