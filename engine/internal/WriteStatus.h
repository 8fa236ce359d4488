#ifndef UNITFLOW_INTERNAL_WRITESTATUS_H
#define UNITFLOW_INTERNAL_WRITESTATUS_H

namespace internal {

/// Turns the status of a host's write into a command's two flags: 0 (written and changed) sets
/// both, 1 (accepted without a change) only the result, anything else neither. Neither is ever
/// reset.
inline void noteStatus(int status, bool& commandResult, bool& changed)
{
    if (status == 0 || status == 1) {
        commandResult = true;
    }
    if (status == 0) {
        changed = true;
    }
}

} // namespace internal

#endif
