// The floor for what `unitflow` does with a workspace: reads and parses files and rewrites some of
// them durably, with the file host's parser and QSaveFile, and does nothing else.
//
// Usage: rewrite-floor FILE... --rewrite FILE...
//
// In place of all that, "@LIST" names a file that holds it, one argument on each line.

#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"

#include <QByteArray>
#include <QFile>
#include <QSaveFile>
#include <QString>
#include <QStringList>

#include <cstdlib>
#include <iostream>

namespace {

[[noreturn]] void fail(const char* action, const QString& path)
{
    std::cerr << "rewrite-floor: cannot " << action << " \"" << path.toStdString() << "\"\n";
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): there is one thread
}

QByteArray readAndParse(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail("read", path);
    }
    QByteArray bytes = file.readAll();
    const BaseClassSharedPointer tree = ConfigurationAndProcessDataParser().parseFromJson(
        QString::fromUtf8(bytes), PropertyManagerConst::getConfigFileExtension());
    // The links and the manifest are lists, which are read all the same but are no trees.
    if (tree.isNull() && !bytes.startsWith('[')) {
        fail("parse", path);
    }
    return bytes;
}

void rewrite(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        fail("write", path);
    }
}

QStringList argumentsIn(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail("read", path);
    }
    return QString::fromUtf8(file.readAll()).split('\n');
}

QStringList argumentsOf(int argc, char** argv)
{
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromLocal8Bit(argv[index]));
    }
    return arguments.size() == 1 && arguments.first().startsWith('@')
               ? argumentsIn(arguments.first().mid(1))
               : arguments;
}

} // namespace

int main(int argc, char* argv[])
{
    bool rewriting = false;
    for (const QString& argument : argumentsOf(argc, argv)) {
        if (argument == QLatin1String("--rewrite")) {
            rewriting = true;
            continue;
        }
        const QByteArray bytes = readAndParse(argument);
        if (rewriting) {
            rewrite(argument, bytes);
        }
    }
    return EXIT_SUCCESS;
}
