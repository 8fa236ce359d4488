// Writes the page of a graph: graph-page JSON SVG PAGE, each a file.

#include "tools/graph/GraphPage.h"

#include <QByteArray>
#include <QFile>

#include <cstdio>

namespace {

QByteArray contentOf(const char* path)
{
    QFile file(QString::fromLocal8Bit(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fputs("usage: graph-page JSON SVG PAGE\n", stderr);
        return 2;
    }
    const QByteArray page =
        tools::graphPage(contentOf(argv[1]), QString::fromUtf8(contentOf(argv[2]))).toUtf8();
    QFile file(QString::fromLocal8Bit(argv[3]));
    return file.open(QIODevice::WriteOnly) && file.write(page) == page.size() ? 0 : 1;
}
