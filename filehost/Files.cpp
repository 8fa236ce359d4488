#include "filehost/Files.h"

#include "filehost/Limits.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace filehost {

namespace {

using json::JsonText;

void add(QList<Problem>& problems, Problem::Code code, const File& file, const QString& message,
         const QString& advice)
{
    problems.append({code, file.shown, 0, 0, message, advice});
}

bool fail(QList<Problem>& problems, const File& file, const QString& reason)
{
    add(problems, Problem::Code::Write, file,
        QStringLiteral("the file cannot be written: %1").arg(reason),
        QStringLiteral("check its folder, the permissions and the space on the disk"));
    return false;
}

/// Asks for a byte more than there is, because that shows the end.
QByteArray readToEnd(QFile& file, int size)
{
    QByteArray bytes(size + 1, Qt::Uninitialized);
    const qint64 count = file.read(bytes.data(), bytes.size());
    if (count > size) {
        return bytes + file.readAll(); // it grows
    }
    bytes.truncate(static_cast<int>(std::max(count, qint64{0})));
    return bytes;
}

bool isAsExpected(const File& file, const JsonText* expected)
{
    if (expected == nullptr) {
        return !exists(file);
    }
    QList<Problem> ignored; // a file that cannot be read any more was changed as well
    const std::optional<QByteArray> present = readBytes(file, ignored);
    return present && *present == expected->bytes();
}

} // namespace

bool exists(const File& file)
{
    const QFileInfo info(file.path);
    return info.exists() || info.isSymLink();
}

std::optional<QByteArray> readBytes(const File& file, QList<Problem>& problems)
{
    const QFileInfo info(file.path);
    if (!info.isFile() && !info.exists()) {
        add(problems, Problem::Code::Missing, file, QStringLiteral("there is no such file"), {});
        return std::nullopt;
    }
    if (!info.isFile()) {
        // Reading a pipe would wait for its writer.
        add(problems, Problem::Code::Read, file, QStringLiteral("this is no regular file"),
            QStringLiteral("put a file of JSON in its place"));
        return std::nullopt;
    }
    QFile source(file.path);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        add(problems, Problem::Code::Read, file,
            QStringLiteral("the file cannot be read: %1").arg(source.errorString()),
            QStringLiteral("check its permissions"));
        return std::nullopt;
    }
    const qint64 size = source.size();
    if (size > limits::fileSize) {
        problems.append(JsonText::tooLarge(file.shown));
        return std::nullopt;
    }
    const QByteArray bytes = readToEnd(source, static_cast<int>(size));
    if (source.error() != QFileDevice::NoError) {
        add(problems, Problem::Code::Read, file,
            QStringLiteral("the file cannot be read: %1").arg(source.errorString()),
            QStringLiteral("check the disk"));
        return std::nullopt;
    }
    return bytes;
}

std::shared_ptr<const JsonText> readJson(const File& file, QList<Problem>& problems)
{
    const std::optional<QByteArray> bytes = readBytes(file, problems);
    return bytes ? JsonText::parse(*bytes, file.shown, problems) : nullptr;
}

std::shared_ptr<const JsonText> readTree(const File& file, QList<Problem>& problems)
{
    const std::optional<QByteArray> bytes = readBytes(file, problems);
    return bytes ? parseTree(*bytes, file.shown, problems) : nullptr;
}

std::shared_ptr<const JsonText> parseTree(const QByteArray& bytes, const QString& shown,
                                          QList<Problem>& problems)
{
    std::shared_ptr<const JsonText> text = JsonText::parse(bytes, shown, problems);
    if (text && text->kind(JsonText::root) != JsonText::Kind::Object) {
        problems.append(text->problem(Problem::Code::Shape, text->node(JsonText::root).value.begin,
                                      QStringLiteral("a tree is an object"),
                                      QStringLiteral("put it in braces: { ... }")));
        return nullptr;
    }
    return text;
}

bool replaceBytes(const File& file, const JsonText* expected, const QByteArray& bytes,
                  QList<Problem>& problems)
{
    if (!isAsExpected(file, expected)) {
        add(problems, Problem::Code::Conflict, file,
            QStringLiteral("the file was changed by somebody else since it was read"),
            QStringLiteral("look at what changed, then run this again; the file was left alone"));
        return false;
    }
    // A file that was read has a folder.
    if (expected == nullptr && !QDir().mkpath(QFileInfo(file.path).path())) {
        return fail(problems, file, QStringLiteral("its folder cannot be made"));
    }
    QSaveFile target(file.path);
    if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size() ||
        !target.commit()) {
        return fail(problems, file, target.errorString());
    }
    return true;
}

} // namespace filehost
