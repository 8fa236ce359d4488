#include "MessageCapture.h"

#include <iostream>

namespace testhost {
namespace {

MessageCapture* currentCapture = nullptr;

} // namespace

bool operator==(const Message& left, const Message& right)
{
    return left.type == right.type && left.text == right.text && left.file == right.file &&
           left.line == right.line && left.function == right.function &&
           left.category == right.category;
}

std::ostream& operator<<(std::ostream& out, const Message& message)
{
    return out << "type " << int(message.type) << " [" << message.category.toStdString() << "] "
               << message.file.toStdString() << ':' << message.line << ": "
               << message.function.toStdString() << ": " << message.text.toStdString();
}

MessageCapture::MessageCapture() : previous(qInstallMessageHandler(receive))
{
    currentCapture = this;
}

MessageCapture::~MessageCapture()
{
    qInstallMessageHandler(previous);
    currentCapture = nullptr;
}

QList<Message> MessageCapture::take()
{
    QList<Message> taken;
    taken.swap(messages);
    return taken;
}

void MessageCapture::receive(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (type == QtFatalMsg) {
        std::cerr << text.toStdString() << '\n';
    }
    currentCapture->messages.append({type, text, QString::fromUtf8(context.file), context.line,
                                     QString::fromUtf8(context.function),
                                     QString::fromUtf8(context.category)});
}

} // namespace testhost
