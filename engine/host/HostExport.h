#ifndef UNITFLOW_HOST_HOSTEXPORT_H
#define UNITFLOW_HOST_HOSTEXPORT_H

/// Marks a class that the host process defines. The engine only refers to these classes, so they
/// need default visibility on both sides of the boundary, whatever visibility either is built with.
#if defined(__GNUC__)
#define UNITFLOW_HOST_API __attribute__((visibility("default")))
#else
#define UNITFLOW_HOST_API
#endif

#endif
