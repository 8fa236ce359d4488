#ifndef EMBED_CHECKSMODULE_H
#define EMBED_CHECKSMODULE_H

/// The one function that the module exports: all of a check program but its `main`.
extern "C" __attribute__((visibility("default"))) int runChecks(int argc, char** argv);

#endif
