#include "tools/console/Messages.h"

#include <iostream>
#include <mutex>
#include <utility>

namespace tools {

namespace {

// Qt's handler is a plain function, so what it works on can only be found from here.
thread_local Messages* innermost = nullptr;

/// Who installed the handler, of which a process has one for all threads.
struct Installation {
    std::mutex mutex;
    int catchers = 0;
    QtMessageHandler previous = nullptr;
};

Installation& installation()
{
    static Installation only;
    return only;
}

} // namespace

Messages::Messages(std::function<void(const QString&)> lastWords)
    : lastWords(std::move(lastWords)), outer(innermost)
{
    install();
    innermost = this;
}

Messages::~Messages()
{
    innermost = outer;
    uninstall();
}

QStringList Messages::take()
{
    return std::exchange(caught, {});
}

QStringList Messages::during(const std::function<void()>& work)
{
    if (innermost == nullptr) {
        work();
        return {};
    }
    QStringList earlier = innermost->take();
    work();
    return std::exchange(innermost->caught, std::move(earlier));
}

void Messages::install()
{
    Installation& shared = installation();
    const std::lock_guard<std::mutex> guard(shared.mutex);
    if (shared.catchers == 0) {
        shared.previous = qInstallMessageHandler(&handle);
    }
    ++shared.catchers;
}

void Messages::uninstall()
{
    Installation& shared = installation();
    const std::lock_guard<std::mutex> guard(shared.mutex);
    --shared.catchers;
    if (shared.catchers == 0) {
        qInstallMessageHandler(shared.previous);
    }
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
