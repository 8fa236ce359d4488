#ifndef UNITFLOW_FILEHOST_EXPORT_H
#define UNITFLOW_FILEHOST_EXPORT_H

/// Marks what the file host offers to programs and tests. Everything without this mark stays
/// inside the library.
#if defined(__GNUC__)
#define UNITFLOW_FILEHOST_EXPORT __attribute__((visibility("default")))
#else
#define UNITFLOW_FILEHOST_EXPORT
#endif

#endif
