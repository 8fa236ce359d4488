#ifndef UNITFLOW_TESTS_HOST_MESSAGECAPTURE_H
#define UNITFLOW_TESTS_HOST_MESSAGECAPTURE_H

#include <QList>
#include <QString>
#include <QtGlobal>

#include <ostream>

namespace testhost {

/// One message of Qt's message log with its whole context.
struct Message {
    QtMsgType type = QtDebugMsg;
    QString text;
    QString file;
    int line = 0;
    QString function;
    QString category;

    friend bool operator==(const Message& left, const Message& right);
    friend std::ostream& operator<<(std::ostream& out, const Message& message);
};

/// Takes over Qt's message log while it lives: messages are kept instead of printed. A fatal one is
/// printed too, since nobody is left to ask for it.
class MessageCapture {
public:
    MessageCapture();
    ~MessageCapture();
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;

    /// The messages since the last time this was asked, in order.
    QList<Message> take();

private:
    static void receive(QtMsgType type, const QMessageLogContext& context, const QString& text);

    QList<Message> messages;
    QtMessageHandler previous;
};

} // namespace testhost

#endif
