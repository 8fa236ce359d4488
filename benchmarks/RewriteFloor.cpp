// The floor for `unitflow set`: reads and parses files and rewrites some of them durably, with the
// file host's parser and QSaveFile, and does nothing else.
// Usage: rewrite-floor FILE... --rewrite FILE...

#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"

#include <QByteArray>
#include <QFile>
#include <QSaveFile>
#include <QString>

#include <cstdlib>
#include <iostream>
#include <string_view>

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

} // namespace

int main(int argc, char* argv[])
{
    bool rewriting = false;
    for (int index = 1; index < argc; ++index) {
        if (std::string_view(argv[index]) == "--rewrite") {
            rewriting = true;
            continue;
        }
        const QString path = QString::fromLocal8Bit(argv[index]);
        const QByteArray bytes = readAndParse(path);
        if (rewriting) {
            rewrite(path, bytes);
        }
    }
    return EXIT_SUCCESS;
}
