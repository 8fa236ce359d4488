#ifndef UNITFLOW_TOOLS_CONSOLE_MESSAGES_H
#define UNITFLOW_TOOLS_CONSOLE_MESSAGES_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>

namespace tools {

/// Catches what the engine, the host or Qt logs on this thread for as long as it lives. Catchers
/// nest: the innermost one gets the message. Messages of threads without one go to standard error.
/// The handler of messages that was installed before comes back when the last catcher of all
/// threads is gone.
class Messages {
public:
    /// `lastWords` gets a fatal message: Qt ends the process as soon as it returns.
    explicit Messages(std::function<void(const QString&)> lastWords);
    ~Messages();
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    /// The messages caught since the last call.
    QStringList take();

    /// What some work logs on this thread, instead of leaving it to the thread's catcher. Fatal
    /// messages go there all the same, and without a catcher all of them go their way.
    static QStringList during(const std::function<void()>& work);

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);
    static void install();
    static void uninstall();

    std::function<void(const QString&)> lastWords;
    QStringList caught;
    Messages* outer;
};

} // namespace tools

#endif
