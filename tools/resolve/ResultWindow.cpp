#include "tools/resolve/ResultWindow.h"

#include <iterator>
#include <utility>

namespace tools {

using Lock = std::unique_lock<std::mutex>;

ResultWindow::ResultWindow(int units, std::size_t limit) : units(units), limit(limit) {}

void ResultWindow::enter()
{
    const Lock lock(mutex);
    ++jobs;
}

void ResultWindow::leave(const std::vector<int>& undone)
{
    const Lock lock(mutex);
    --jobs;
    undoneLinks.insert(undoneLinks.end(), undone.begin(), undone.end());
    forReader.notify_one();
}

std::optional<int> ResultWindow::nextUnit()
{
    const Lock lock(mutex);
    if (handedOut == units) {
        return std::nullopt;
    }
    open.emplace(handedOut, Unit{});
    return handedOut++;
}

/// The others must not take the room of the unit at the front: the reader waits for it alone.
bool ResultWindow::hasRoom(int unit) const
{
    return (unit == front ? open.at(unit).waiting.size() : waiting) < limit;
}

void ResultWindow::push(int unit, LinkResult result)
{
    Lock lock(mutex);
    forJobs.wait(lock, [&] { return hasRoom(unit); });
    open.at(unit).waiting.push_back(std::move(result));
    ++waiting;
    ++done;
    wakeReader();
}

void ResultWindow::endUnit(int unit)
{
    const Lock lock(mutex);
    open.at(unit).isEnded = true;
    wakeReader();
}

void ResultWindow::pushLastWords(const Diagnostic& diagnostic)
{
    Lock lock(mutex);
    lastWords = diagnostic;
    forReader.notify_one();
    forJobs.wait(lock, [&] { return areLastWordsTold; });
}

/// To wake the reader for each single result costs more than many a result itself.
bool ResultWindow::hasNews() const
{
    const auto first = open.find(front);
    const bool isReady =
        first != open.end() && (first->second.isEnded || !first->second.waiting.empty());
    return (isReady && waiting >= limit / 4) || lastWords || jobs == 0;
}

void ResultWindow::wakeReader()
{
    if (hasNews()) {
        forReader.notify_one();
    }
}

ResultWindow::Batch ResultWindow::take(std::chrono::milliseconds patience)
{
    Lock lock(mutex);
    forReader.wait_for(lock, patience, [&] { return hasNews(); });
    Batch batch;
    batch.lastWords = std::exchange(lastWords, std::nullopt);
    moveReady(batch.results);
    batch.done = done;
    batch.isLast = jobs == 0;
    forJobs.notify_all();
    return batch;
}

/// Takes the results of the front unit and, as far as it is ended, of those behind it.
void ResultWindow::moveReady(std::vector<LinkResult>& results)
{
    for (auto unit = open.find(front); unit != open.end(); unit = open.find(front)) {
        std::vector<LinkResult>& ready = unit->second.waiting;
        waiting -= ready.size();
        std::move(ready.begin(), ready.end(), std::back_inserter(results));
        ready.clear();
        if (!unit->second.isEnded) {
            return;
        }
        open.erase(unit);
        ++front;
    }
}

void ResultWindow::confirmLastWords()
{
    const Lock lock(mutex);
    areLastWordsTold = true;
    forJobs.notify_all();
}

} // namespace tools
