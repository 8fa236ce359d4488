#include "filehost/Names.h"

#include "filehost/NearestNames.h"
#include "host/PropertyManagerConst.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStringRef>
#include <QVector>

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace filehost {

namespace {

bool hasForbiddenSegment(const QString& name)
{
    const QVector<QStringRef> segments = name.splitRef(QLatin1Char('/'));
    return std::any_of(segments.begin(), segments.end(), [](const QStringRef& segment) {
        return segment.isEmpty() || segment == QLatin1String(".") || segment == QLatin1String("..");
    });
}

bool isManifest(Named what, const QString& name)
{
    const QString manifest = PropertyManagerConst::getConfigurationManifestFilename();
    return what == Named::Configuration && manifest.startsWith(name) &&
           QString(name + QLatin1Char('.') + PropertyManagerConst::getConfigFileExtension()) ==
               manifest;
}

/// Whether a character is the same in every locale.
bool isPortable(QChar character)
{
    const ushort code = character.unicode();
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') ||
           (code >= '0' && code <= '9') || code == '-' || code == '_' || code == '.' ||
           code == '/' || code == ' ';
}

/// Whether a file can have the name in this locale. In one that lacks it, a letter turns into "?",
/// and two names into one file.
bool isFileName(const QString& name)
{
    return std::all_of(name.begin(), name.end(), isPortable) ||
           (!name.contains(QChar(QChar::Null)) &&
            QFile::decodeName(QFile::encodeName(name)) == name);
}

/// Why a folder cannot be read: an error of the system; 0 when it can be.
int errorOfReading(const QString& folder)
{
    // With the dot, the system follows links and takes nothing but a folder.
    const QByteArray path = QFile::encodeName(folder + QStringLiteral("/."));
    return ::access(path.constData(), R_OK | X_OK) == 0 ? 0 : errno;
}

QString reasonOf(int error)
{
    return error == ENOENT ? QStringLiteral("it is a symbolic link that leads nowhere")
                           : qt_error_string(error);
}

QString adviceOn(int error)
{
    switch (error) {
    case ENOENT:
    case ELOOP:
        return QStringLiteral("put the folder itself in the place of the link");
    case ENOTDIR:
        return QStringLiteral("put a folder in its place");
    default:
        return QStringLiteral("check its permissions");
    }
}

} // namespace

Named named(Kind kind)
{
    return kind == Kind::Process ? Named::Process : Named::Configuration;
}

QString folderOf(const QString& root, Named what)
{
    switch (what) {
    case Named::Configuration:
        return PropertyManagerConst::getConfigurationFolderPath(root);
    case Named::Process:
        return PropertyManagerConst::getProcessFolderPath(root);
    case Named::Description:
        break;
    }
    return PropertyManagerConst::getDependencyFolderPath(root);
}

QString wordsFor(Named what)
{
    switch (what) {
    case Named::Configuration:
        return QStringLiteral("configuration instance");
    case Named::Process:
        return QStringLiteral("process description");
    case Named::Description:
        break;
    }
    return QStringLiteral("description");
}

bool checkName(Named what, const QString& name, QList<Problem>& problems)
{
    QString wrong;
    if (name.isEmpty()) {
        wrong = QStringLiteral("is empty");
    } else if (name.startsWith(QLatin1Char('/'))) {
        wrong = QStringLiteral("is absolute");
    } else if (hasForbiddenSegment(name)) {
        wrong = QStringLiteral("has an empty, \".\" or \"..\" segment");
    } else if (!isFileName(name)) {
        wrong = QStringLiteral("has a character that no file name can have in this locale");
    } else if (isManifest(what, name)) {
        wrong = QStringLiteral("is the manifest's, which is no instance");
    } else {
        return true;
    }
    problems.append({Problem::Code::Name,
                     {},
                     0,
                     0,
                     QStringLiteral("the name \"%1\" of a %2 %3").arg(name, wordsFor(what), wrong),
                     QStringLiteral("names are relative, with \"/\" for subfolders, as in "
                                    "\"Oven\" or \"Line 1/Oven\"")});
    return false;
}

QString confinedPath(const QString& root, const QString& folder, Named what, const QString& name,
                     QList<Problem>& problems)
{
    if (!checkName(what, name, problems)) {
        return {};
    }
    QString path = QDir(folder).absoluteFilePath(name + QLatin1Char('.') +
                                                 PropertyManagerConst::getConfigFileExtension());
    if (!leadsOut(root, path)) {
        return path;
    }
    const std::optional<Problem> unreadable = unreadableFolder(root, QFileInfo(path).path());
    problems.append(
        unreadable
            ? *unreadable
            : leadingOut(root, path,
                         QStringLiteral("the name \"%1\" of a %2").arg(name, wordsFor(what))));
    return {};
}

Problem leadingOut(const QString& root, const QString& path, const QString& subject)
{
    const QFileInfo file(path);
    const bool isDangling = file.isSymLink() && !file.exists();
    return {Problem::Code::Name,
            shownPath(root, path),
            0,
            0,
            isDangling ? QStringLiteral("%1 is a symbolic link that leads nowhere").arg(subject)
                       : QStringLiteral("%1 leads out of %2 by a symbolic link").arg(subject, root),
            QStringLiteral("put the file itself in the place of the link")};
}

bool leadsOut(const QString& root, const QString& path)
{
    QFileInfo existing(path);
    while (!existing.exists() && !existing.isSymLink() && existing.path() != existing.filePath()) {
        existing.setFile(existing.path());
    }
    // A link that leads nowhere counts as one that leads out: it could be followed anywhere.
    return !existing.exists() || !isInside(canonicalPath(root), existing.canonicalFilePath());
}

std::optional<Problem> unreadableFolder(const QString& root, const QString& folder)
{
    if (folder.size() <= root.size()) {
        return std::nullopt;
    }
    if (std::optional<Problem> outer = unreadableFolder(root, QFileInfo(folder).path())) {
        return outer;
    }
    const QString shown = shownPath(root, folder);
    const int error = errorOfReading(folder);
    // Below a file that stands in the place of a subfolder, everything is just missing.
    const bool isMissing = (error == ENOENT && !QFileInfo(folder).isSymLink()) ||
                           (error == ENOTDIR && shown.contains(QLatin1Char('/')));
    if (error == 0 || isMissing) {
        return std::nullopt;
    }
    return Problem{Problem::Code::Read,
                   shown,
                   0,
                   0,
                   QStringLiteral("this folder cannot be read: %1").arg(reasonOf(error)),
                   adviceOn(error)};
}

QString canonicalPath(const QString& path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(QDir(path).absolutePath()) : canonical;
}

bool isInside(const QString& folder, const QString& path)
{
    return path.startsWith(folder) &&
           (path.size() == folder.size() || folder.endsWith(QLatin1Char('/')) ||
            path.at(folder.size()) == QLatin1Char('/'));
}

QString shownPath(const QString& root, const QString& path)
{
    if (!isInside(root, path)) {
        return path;
    }
    if (path == root) {
        return QStringLiteral(".");
    }
    return path.mid(root.endsWith(QLatin1Char('/')) ? root.size() : root.size() + 1);
}

QStringList namesIn(const QString& folder, Named what)
{
    const QString root = QDir::cleanPath(folder + QStringLiteral("/.."));
    if (leadsOut(root, folder)) {
        return {};
    }
    const QString suffix = QLatin1Char('.') + PropertyManagerConst::getConfigFileExtension();
    QStringList names;
    QDirIterator files(folder, {QLatin1Char('*') + suffix}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QString name = QDir(folder).relativeFilePath(path);
        name.chop(suffix.size());
        QList<Problem> ignored;
        const bool isOut = files.fileInfo().isSymLink() && leadsOut(root, path);
        if (!isOut && checkName(what, name, ignored)) {
            names.append(name);
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

void explainMissing(QList<Problem>& problems, Named what, const QString& name,
                    const QString& folder)
{
    for (Problem& problem : problems) {
        if (problem.code != Problem::Code::Missing) {
            continue;
        }
        const QString root = QDir::cleanPath(folder + QStringLiteral("/.."));
        const QFileInfo file(QDir(folder).absoluteFilePath(name));
        if (const std::optional<Problem> unreadable = unreadableFolder(root, file.path())) {
            problem = *unreadable;
            continue;
        }
        const QString nearest = nearestName(name, namesIn(folder, what));
        problem.message = QStringLiteral("there is no %1 \"%2\"").arg(wordsFor(what), name);
        problem.advice = nearest.isEmpty() ? QStringLiteral("write it to %1").arg(problem.file)
                                           : QStringLiteral("did you mean \"%1\"?").arg(nearest);
    }
}

} // namespace filehost
