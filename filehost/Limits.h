#ifndef UNITFLOW_FILEHOST_LIMITS_H
#define UNITFLOW_FILEHOST_LIMITS_H

/// What the file host refuses to read or write, with an error that says so. Far beyond what people
/// write by hand, and low enough that no file can exhaust the memory or the stack.
namespace filehost::limits {

constexpr int depth = 1024;                  ///< objects and arrays inside one another
constexpr int fileSize = 256 * 1024 * 1024;  ///< bytes in one file
constexpr int valueCount = 16 * 1024 * 1024; ///< values in one file, containers included
constexpr int problemCount = 100;            ///< problems of a file's JSON that are listed

} // namespace filehost::limits

#endif
