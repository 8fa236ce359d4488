#include "tools/Messages.h"

#include <iostream>
#include <utility>

namespace tools {

namespace {

// Qt's handler is a plain function, so what it works on can only be found from here.
thread_local Messages* innermost = nullptr;

} // namespace

Messages::Messages(std::function<void(const QString&)> lastWords)
    : lastWords(std::move(lastWords)), outer(innermost), previous(qInstallMessageHandler(&handle))
{
    innermost = this;
}

Messages::~Messages()
{
    innermost = outer;
    qInstallMessageHandler(previous);
}

QStringList Messages::take()
{
    return std::exchange(caught, {});
}

void Messages::handle(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (innermost == nullptr) {
        std::cerr << qFormatLogMessage(type, context, text).toStdString() << std::endl;
    } else if (type == QtFatalMsg) {
        innermost->lastWords(text);
    } else {
        innermost->caught.append(text);
    }
}

} // namespace tools
