// KZExport.h - symbol visibility for libKzBasicServices.
//
// The library is built with hidden visibility; only what a public header marks
// with KZBS_API is exported. Consumers see the same macro as a no-op import
// (on Windows the MinGW linker imports data and functions without
// __declspec(dllimport)).
#ifndef KZ_EXPORT_H
#define KZ_EXPORT_H

#if defined(_WIN32) && defined(KZBS_BUILDING_LIBRARY)
#define KZBS_API __declspec(dllexport)
#elif defined(_WIN32)
#define KZBS_API
#elif defined(__GNUC__) || defined(__clang__)
#define KZBS_API __attribute__((visibility("default")))
#else
#define KZBS_API
#endif

#endif // KZ_EXPORT_H
