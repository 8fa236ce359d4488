#include "hostkit/Run.h"

#include "hostkit/Adapter.h"
#include "hostkit/Check.h"

#include <algorithm>
#include <iostream>

namespace hostkit {

namespace {

enum ExitCode { NothingFailed = 0, SomeFailed = 1, NotUnderstood = 2 };

constexpr const char* help = "Checks what the engine expects of this host.\n"
                             "\n"
                             "usage: [CHECK]...   carries out these checks, or all of them\n"
                             "       --list       prints the names of all checks\n"
                             "       --help       prints this\n"
                             "\n"
                             "Start with the first check that fails: later ones rely on it.\n"
                             "The exit code is 0 when no check failed, 1 when one did, and 2 when\n"
                             "an argument is not understood.\n";

const Check* findCheck(const QString& name)
{
    const QList<Check>& checks = allChecks();
    const auto found = std::find_if(checks.cbegin(), checks.cend(),
                                    [&name](const Check& check) { return check.name == name; });
    return found == checks.cend() ? nullptr : &*found;
}

void print(std::ostream& out, const char* title, const QString& text)
{
    out << "    " << title << text.toStdString() << '\n';
}

void printFailure(std::ostream& out, const Check& check, const Outcome& outcome)
{
    out << "failed  " << check.name.toStdString() << '\n';
    print(out, "expected:  ", check.expectation);
    print(out, "otherwise: ", check.consequence);
    for (const QString& found : outcome.found) {
        print(out, "found:     ", found);
    }
    for (const QString& message : outcome.messages) {
        print(out, "message:   ", message);
    }
}

void print(std::ostream& out, const Check& check, const Outcome& outcome)
{
    switch (outcome.kind) {
    case Outcome::Kind::Passed:
        out << "passed  " << check.name.toStdString() << '\n';
        break;
    case Outcome::Kind::Skipped:
        out << "skipped " << check.name.toStdString() << ": "
            << outcome.found.join(QStringLiteral("; ")).toStdString() << '\n';
        break;
    case Outcome::Kind::Failed:
        printFailure(out, check, outcome);
        break;
    }
    out.flush(); // a host may stop the process in the next check
}

int perform(Adapter& adapter, const QList<const Check*>& checks, std::ostream& out)
{
    int failed = 0;
    for (const Check* check : checks) {
        const Outcome outcome = hostkit::perform(*check, adapter);
        print(out, *check, outcome);
        failed += outcome.kind == Outcome::Kind::Failed ? 1 : 0;
    }
    if (checks.size() > 1) {
        out << checks.size() << " checks, " << failed << " failed\n";
    }
    return failed == 0 ? NothingFailed : SomeFailed;
}

} // namespace

int run(Adapter& adapter, int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    return run(adapter, arguments, std::cout, std::cerr);
}

int run(Adapter& adapter, const QStringList& arguments, std::ostream& out, std::ostream& err)
{
    if (arguments == QStringList(QStringLiteral("--help"))) {
        out << help;
        return NothingFailed;
    }
    if (arguments == QStringList(QStringLiteral("--list"))) {
        for (const Check& check : allChecks()) {
            out << check.name.toStdString() << '\n';
        }
        return NothingFailed;
    }

    QList<const Check*> wanted;
    bool understood = true;
    for (const QString& name : arguments) {
        const Check* check = findCheck(name);
        if (check == nullptr) {
            err << "There is no check \"" << name.toStdString() << "\". --list prints them all.\n";
            understood = false;
            continue;
        }
        wanted.append(check);
    }
    if (!understood) {
        return NotUnderstood;
    }
    if (arguments.isEmpty()) {
        for (const Check& check : allChecks()) {
            wanted.append(&check);
        }
    }
    return perform(adapter, wanted, out);
}

} // namespace hostkit
