#ifndef UNITFLOW_FILEHOST_PROBLEM_H
#define UNITFLOW_FILEHOST_PROBLEM_H

#include "filehost/Export.h"

#include <QList>
#include <QString>

namespace filehost {

/// A failure: data first, words second. Tests check the code and the place.
struct Problem {
    enum class Code {
        Syntax,       ///< the text is no JSON
        DuplicateKey, ///< an object has the same key twice
        NumberRange,  ///< a whole number does not fit 64 bits, or a number is beyond all doubles
        Depth,        ///< nested deeper than `limits::depth`
        Size,     ///< larger than `limits::fileSize`, of more values than `limits::valueCount`, or
                  ///< with more problems than `limits::problemCount`
        Shape,    ///< JSON, but not what is wanted at that place
        Name,     ///< a name that is not allowed, or leads out of the workspace
        Missing,  ///< there is no such file
        Read,     ///< the file cannot be read
        Write,    ///< the file cannot be written
        Conflict, ///< the file was changed by somebody else since it was read
        Lock,     ///< the workspace's lock cannot be had
        NotATree, ///< what was to be stored is no tree of this host
    };

    Code code;
    QString file;    ///< as the user would name it: relative to the workspace where it is inside
    int line;        ///< from 1; 0 when the problem has no place in the file
    int column;      ///< from 1, in characters; 0 without a place
    QString message; ///< what is wrong, quoting the offending text
    QString advice;  ///< the way out; may be empty
};

/// "file:line:column: message", then the advice indented on a line of its own if there is one.
UNITFLOW_FILEHOST_EXPORT QString toText(const Problem& problem);

} // namespace filehost

#endif
