#include "filehost/Files.h"

#include "filehost/Limits.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

void failToRead(QList<Problem>& problems, const File& file, int error)
{
    add(problems, Problem::Code::Read, file,
        QStringLiteral("the file cannot be read: %1").arg(qt_error_string(error)),
        QStringLiteral("check its permissions and the disk"));
}

int openToRead(const QByteArray& path)
{
    // Opening a pipe would wait for its writer.
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-vararg): the system declares it like this
    return ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
}

/// A file opened for reading by the system itself: most of what a workspace is made of are small
/// files, and `QFile` asks twice as much about one as reading it takes.
class Source {
public:
    explicit Source(const File& file)
        : descriptor(openToRead(QFile::encodeName(file.path))), error(errno)
    {}
    ~Source()
    {
        if (isOpen()) {
            ::close(descriptor);
        }
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    bool isMissing() const { return error == ENOENT || error == ENOTDIR || error == ELOOP; }

    /// Why it could not be opened or read.
    int lastError() const { return error; }

    /// Nothing when it is no regular file.
    std::optional<qint64> size() const
    {
        struct stat status = {};
        if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
            return std::nullopt;
        }
        return status.st_size;
    }

    /// Asks for a byte more than there is, because that shows the end, and goes on if it grows.
    bool read(qint64 size, QByteArray& bytes)
    {
        int count = 0;
        for (bytes.resize(static_cast<int>(size) + 1);;) {
            const ssize_t more =
                ::read(descriptor, bytes.data() + count, static_cast<size_t>(bytes.size() - count));
            if (more < 0 && errno == EINTR) {
                continue;
            }
            if (more < 0) {
                error = errno;
                return false;
            }
            count += static_cast<int>(more);
            if (more == 0 || count == size) {
                bytes.truncate(count);
                return true;
            }
            if (count == bytes.size()) {
                bytes.resize(2 * count);
            }
        }
    }

private:
    const int descriptor;
    int error;
};

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
    Source source(file);
    if (!source.isOpen() && source.isMissing()) {
        add(problems, Problem::Code::Missing, file, QStringLiteral("there is no such file"), {});
        return std::nullopt;
    }
    if (!source.isOpen() && source.lastError() != ENXIO) { // which a socket gives
        failToRead(problems, file, source.lastError());
        return std::nullopt;
    }
    const std::optional<qint64> size = source.isOpen() ? source.size() : std::nullopt;
    if (!size) {
        add(problems, Problem::Code::Read, file, QStringLiteral("this is no regular file"),
            QStringLiteral("put a file of JSON in its place"));
        return std::nullopt;
    }
    if (*size > limits::fileSize) {
        problems.append(JsonText::tooLarge(file.shown));
        return std::nullopt;
    }
    QByteArray bytes;
    if (!source.read(*size, bytes)) {
        failToRead(problems, file, source.lastError());
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
