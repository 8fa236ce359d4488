#include "tools/graph/OutputFile.h"

#include "tools/console/Console.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace tools {

namespace {

using filehost::Problem;

/// Empty on success, otherwise why not.
QString replaced(const QString& name, const QByteArray& bytes)
{
    QSaveFile file(name);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

QString written(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    const bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                           file.write(bytes) == bytes.size();
    return isWritten ? QString() : file.errorString();
}

} // namespace

bool writeFile(const QString& name, const QByteArray& bytes, Console& console)
{
    const QFileInfo place(name);
    const bool isRegular = !place.exists() || place.isFile() || place.isDir();
    const QString error = isRegular ? replaced(name, bytes) : written(name, bytes);
    if (error.isEmpty()) {
        return true;
    }
    console.report(Problem{
        Problem::Code::Write, name, 0, 0, QStringLiteral("cannot be written: %1").arg(error),
        QStringLiteral("check its folder, the permissions and the space on the disk")});
    return false;
}

} // namespace tools
