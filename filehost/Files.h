#ifndef UNITFLOW_FILEHOST_FILES_H
#define UNITFLOW_FILEHOST_FILES_H

#include "filehost/Export.h"
#include "filehost/Problem.h"
#include "filehost/json/JsonText.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>
#include <optional>

namespace filehost {

/// A file, and how problems name it.
struct File {
    QString path; ///< canonical, so that no symbolic link is replaced by a file
    QString shown;
};

bool exists(const File& file);

/// All bytes of a regular file; nothing with a problem when there is no such file, it cannot be
/// read or is too large.
UNITFLOW_FILEHOST_EXPORT std::optional<QByteArray> readBytes(const File& file,
                                                             QList<Problem>& problems);

/// Null with problems when the file cannot be read or holds no JSON.
std::shared_ptr<const json::JsonText> readJson(const File& file, QList<Problem>& problems);

/// The same when the JSON's root is no object either.
std::shared_ptr<const json::JsonText> readTree(const File& file, QList<Problem>& problems);

/// Reads a tree from bytes.
std::shared_ptr<const json::JsonText> parseTree(const QByteArray& bytes, const QString& shown,
                                                QList<Problem>& problems);

/// Replaces a file's bytes, atomically and durably. `expected` is what the file must hold, null
/// when there must be none; otherwise it is left alone. False with a problem.
bool replaceBytes(const File& file, const json::JsonText* expected, const QByteArray& bytes,
                  QList<Problem>& problems);

} // namespace filehost

#endif
