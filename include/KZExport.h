// KZExport.h - symbol visibility for libKzBasicServices.
//
// The library is built with hidden visibility; only what a public header marks
// with KZBS_API is exported. Consumers see the same macro as a no-op import.
#ifndef KZ_EXPORT_H
#define KZ_EXPORT_H

#if defined(__GNUC__) || defined(__clang__)
#  define KZBS_API __attribute__((visibility("default")))
#else
#  define KZBS_API
#endif

#endif // KZ_EXPORT_H
