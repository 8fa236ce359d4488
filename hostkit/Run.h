#ifndef UNITFLOW_HOSTKIT_RUN_H
#define UNITFLOW_HOSTKIT_RUN_H

#include <QStringList>

#include <iosfwd>

namespace hostkit {

class Adapter;

/// The whole program of a host's checks, for its `main`. Without arguments carries out all checks;
/// with names those; `--list` prints the names, one a line; `--help` explains. Writes one line per
/// check, and for one that fails what was expected, what the engine does wrong otherwise, and what
/// was found. Returns the exit code: 0 when no check failed, 1 when one did, 2 when an argument is
/// not understood.
int run(Adapter& adapter, int argc, char** argv);

/// The same on any streams. `arguments` come without the program's name.
int run(Adapter& adapter, const QStringList& arguments, std::ostream& out, std::ostream& err);

} // namespace hostkit

#endif
