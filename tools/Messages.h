#ifndef UNITFLOW_TOOLS_MESSAGES_H
#define UNITFLOW_TOOLS_MESSAGES_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>

namespace tools {

/// Catches what the engine, the host or Qt logs on this thread for as long as it lives. Catchers
/// nest: the innermost one gets the message. Messages of other threads go to standard error.
class Messages {
public:
    /// `lastWords` gets a fatal message: Qt ends the process as soon as it returns.
    explicit Messages(std::function<void(const QString&)> lastWords);
    ~Messages();
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    /// The messages caught since the last call.
    QStringList take();

private:
    static void handle(QtMsgType type, const QMessageLogContext& context, const QString& text);

    std::function<void(const QString&)> lastWords;
    QStringList caught;
    Messages* outer;
    QtMessageHandler previous;
};

} // namespace tools

#endif
