#include "tools/resolve/BulkRun.h"

#include "filehost/LinkBatch.h"
#include "tools/console/Messages.h"
#include "tools/resolve/Interruption.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

namespace tools {

namespace {

using filehost::Instance;
using filehost::Link;

constexpr std::size_t mostWaiting = 256; // results; each may hold the changes of an instance

Diagnostic withoutLink(Severity severity, const QString& message)
{
    return {severity, {filehost::Problem::Code::Read, {}, 0, 0, message, {}}, std::nullopt};
}

/// What one thread does.
class Job {
public:
    Job(const BulkRun::Input& input, ResultWindow& window)
        : input(input), window(window), session(input.holder.workspace(), input.access),
          strays([&window](const QString& lastWords) {
              window.pushLastWords(withoutLink(Severity::Error, lastWords));
          }),
          batch(session, &Messages::during),
          runner(
              session,
              [this](const Link& link, const QStringList& urls, bool& changed) {
                  return batch.resolve(link, urls, changed);
              },
              [this](const Diagnostic& diagnostic) { result.diagnostics.append(diagnostic); },
              [&window](const Diagnostic& diagnostic) { window.pushLastWords(diagnostic); })
    {}

    void work()
    {
        session.beginNextTo(input.holder);
        while (!isInterrupted()) {
            const std::optional<int> unit = window.nextUnit();
            if (!unit) {
                break;
            }
            workOn(*unit);
            window.endUnit(*unit);
        }
        window.leave(undone);
    }

private:
    bool isInterrupted() const { return input.interruption.signal() != 0; }

    void workOn(int unit)
    {
        const std::vector<int>& links = input.plan.units()[static_cast<std::size_t>(unit)];
        for (auto link = links.begin(); link != links.end(); ++link) {
            if (isInterrupted()) {
                noteUndone({links.begin(), link});
                return;
            }
            runLink(*link);
            window.push(unit, std::exchange(result, {}));
        }
    }

    void runLink(int index)
    {
        const Link& link = input.links[index];
        const LinkRun run = runner.run(link, {});
        result.link = index;
        result.outcome = run.outcome;
        result.changed = run.changed;
        if (input.plan.isLastOfSource(index)) {
            complete(sourceOf(link));
        }
        if (input.plan.isLastOfTarget(index)) {
            complete(targetOf(link));
        }
        for (const QString& message : strays.take()) {
            result.diagnostics.append(withoutLink(Severity::Warning, message));
        }
    }

    void complete(const Instance& instance)
    {
        const filehost::Completion completion = session.complete(instance);
        const QList<filehost::Problem> problems = session.takeProblems();
        if (!completion.changes.isEmpty() || !problems.isEmpty()) {
            result.completed.push_back({countOf(completion.changes),
                                        input.textOf(completion.changes), completion.modifications,
                                        problems});
        }
    }

    /// Of links that were run, those whose targets wait for others that will not be.
    void noteUndone(const std::vector<int>& links)
    {
        std::set<Instance> completed;
        for (const int link : links) {
            if (input.plan.isLastOfSource(link)) {
                completed.insert(sourceOf(input.links[link]));
            }
            if (input.plan.isLastOfTarget(link)) {
                completed.insert(targetOf(input.links[link]));
            }
        }
        std::copy_if(links.begin(), links.end(), std::back_inserter(undone),
                     [&](int link) { return completed.count(targetOf(input.links[link])) == 0; });
    }

    const BulkRun::Input& input;
    ResultWindow& window;
    filehost::Session session;
    Messages strays;
    filehost::LinkBatch batch;
    LinkRunner runner;
    LinkResult result;
    std::vector<int> undone;
};

} // namespace

BulkRun::BulkRun(const Input& input, int jobs)
    : input(input), window(static_cast<int>(input.plan.units().size()), mostWaiting)
{
    const int useful = std::min(jobs, static_cast<int>(input.plan.units().size()));
    for (int job = 0; job < useful; ++job) {
        window.enter();
        try {
            threads.emplace_back([this] { Job(this->input, window).work(); });
        } catch (const std::system_error&) { // the system has no more threads for us
            window.leave({});
            return;
        }
    }
}

BulkRun::~BulkRun()
{
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace tools
