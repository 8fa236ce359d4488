#include "tools/graph/Graphviz.h"

#include "tools/console/Console.h"

#include <QProcess>
#include <QStandardPaths>

namespace tools {

namespace {

using filehost::Problem;

constexpr int patience = 60 * 1000; // in milliseconds

const QString otherForms =
    QStringLiteral("use --format dot, mermaid or json, which need no other program");

void report(Problem::Code code, const QString& message, const QString& advice, Console& console)
{
    console.report(Problem{code, {}, 0, 0, message, advice});
}

} // namespace

std::optional<QByteArray> drawnByGraphviz(const QString& dot, const QString& format,
                                          Console& console)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("dot"));
    if (program.isEmpty()) {
        report(Problem::Code::Missing,
               QStringLiteral("the program dot, which draws %1, is not installed").arg(format),
               QStringLiteral("install Graphviz (the package graphviz), or ") + otherForms,
               console);
        return std::nullopt;
    }
    QProcess process;
    process.start(program,
                  {QStringLiteral("-T") + format,
                   QStringLiteral("-Gdpi=%1").arg(format == QLatin1String("png") ? 144 : 72)});
    process.write(dot.toUtf8());
    process.closeWriteChannel();
    if (!process.waitForFinished(patience)) {
        const bool isSlow = process.error() == QProcess::Timedout;
        const QString error = process.errorString();
        process.kill();
        process.waitForFinished();
        report(Problem::Code::Read,
               isSlow ? QStringLiteral("dot is not done within a minute")
                      : QStringLiteral("dot cannot be run: %1").arg(error),
               isSlow ? QStringLiteral("the graph is large: ") + otherForms : otherForms, console);
        return std::nullopt;
    }
    const QByteArray drawn = process.readAllStandardOutput();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 ||
        drawn.isEmpty()) {
        const QString said = QString::fromUtf8(process.readAllStandardError()).simplified();
        report(Problem::Code::Read, QStringLiteral("dot has failed: %1").arg(said), otherForms,
               console);
        return std::nullopt;
    }
    return drawn;
}

} // namespace tools
