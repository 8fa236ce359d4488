#include "hostkit/Check.h"

#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"

#include <exception>
#include <iostream>

namespace hostkit {

namespace {

/// Takes over Qt's message log for the time of one check.
class MessageLog {
public:
    explicit MessageLog(const Check& check)
        : check(check), outer(current), previous(qInstallMessageHandler(receive))
    {
        current = this;
    }
    ~MessageLog()
    {
        current = outer;
        qInstallMessageHandler(previous);
    }
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;

    QStringList messages;

private:
    static void receive(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
    {
        if (type == QtFatalMsg) {
            // The process ends when this returns, so this is the check's only report.
            std::cerr << "failed  " << current->check.name.toStdString()
                      << "\n    expected:  " << current->check.expectation.toStdString()
                      << "\n    otherwise: " << current->check.consequence.toStdString()
                      << "\n    found:     the process was stopped: " << text.toStdString()
                      << std::endl;
        }
        current->messages.append(text);
    }

    // Qt calls a plain function, so the log that is in charge stands here.
    static MessageLog* current;

    const Check& check;
    MessageLog* outer; // a manipulator or a host may perform checks of its own
    QtMessageHandler previous;
};

MessageLog* MessageLog::current = nullptr;

} // namespace

const QList<Check>& allChecks()
{
    static const QList<Check> checks = keyChecks() + treeChecks() + valueChecks() + tableChecks() +
                                       arrayChecks() + parserChecks() + storeChecks() +
                                       registerChecks() + jsonChecks() + manifestChecks() +
                                       resolutionChecks();
    return checks;
}

Outcome perform(const Check& check, Adapter& adapter)
{
    Bench bench(check, adapter);
    MessageLog log(check);
    try {
        check.run(bench);
    } catch (const Stop&) {
        // the outcome says why
    } catch (const std::exception& thrown) {
        bench.fail(QStringLiteral("the host threw an exception: %1")
                       .arg(QString::fromLocal8Bit(thrown.what())));
    } catch (...) {
        bench.fail(QStringLiteral("the host threw something that is no std::exception"));
    }
    Outcome outcome = bench.outcome();
    outcome.messages = log.messages;
    return outcome;
}

} // namespace hostkit
