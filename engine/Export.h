#ifndef UNITFLOW_EXPORT_H
#define UNITFLOW_EXPORT_H

/// Marks a public class of the engine. Everything without this mark stays inside the library.
#if defined(__GNUC__)
#define UNITFLOW_EXPORT __attribute__((visibility("default")))
#else
#define UNITFLOW_EXPORT
#endif

#endif
