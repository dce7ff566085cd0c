#ifndef DMCOMMON_DMCOMMON_EXPORT_H
#define DMCOMMON_DMCOMMON_EXPORT_H

// The library is built with hidden visibility; only declarations marked with
// DMCOMMON_EXPORT form its binary interface.
#if defined(__GNUC__) || defined(__clang__)
#define DMCOMMON_EXPORT __attribute__((visibility("default")))
#else
#define DMCOMMON_EXPORT
#endif

#endif  // DMCOMMON_DMCOMMON_EXPORT_H
