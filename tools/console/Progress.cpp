#include "tools/console/Progress.h"

#include "tools/console/Console.h"
#include "tools/console/Text.h"

#include <algorithm>

namespace tools {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds shortRun{1000};
constexpr milliseconds betweenLines{2000};
constexpr int widestBar = 24;
constexpr int narrowestBar = 5;

int tenthOf(const Progress& progress)
{
    return progress.total == 0 ? 0 : static_cast<int>(10LL * progress.done / progress.total);
}

QString rateText(const Progress& progress)
{
    const double rate = 1000.0 * progress.done / static_cast<double>(progress.elapsed.count());
    return QString::number(rate, 'f', rate < 10 ? 1 : 0);
}

milliseconds remainingTime(const Progress& progress)
{
    return milliseconds(progress.elapsed.count() * (progress.total - progress.done) /
                        progress.done);
}

/// "812/s, 6 s left"; empty as long as nothing can be said.
QString speedText(const Progress& progress)
{
    if (progress.done == 0 || progress.elapsed.count() == 0) {
        return {};
    }
    // In whole seconds, so that the last ones do not flicker.
    const milliseconds left = std::chrono::ceil<std::chrono::seconds>(remainingTime(progress));
    return QStringLiteral(", %1/s, %2 left").arg(rateText(progress), durationText(left));
}

} // namespace

QString barText(const Progress& progress, int width)
{
    const QString text =
        QStringLiteral("%1 of %2").arg(progress.done).arg(progress.total) + speedText(progress);
    const int room = std::min(widestBar, width - displayWidth(text) - 3);
    if (room < narrowestBar || progress.total == 0) {
        return elided(text, width);
    }
    const int filled = static_cast<int>(1LL * room * progress.done / progress.total);
    return QStringLiteral("[%1%2] %3")
        .arg(QString(filled, QLatin1Char('#')), QString(room - filled, QLatin1Char('-')), text);
}

QString lineText(const Progress& progress)
{
    return QStringLiteral("%1 of %2 links").arg(progress.done).arg(progress.total) +
           speedText(progress);
}

QString durationText(milliseconds duration)
{
    const auto all = std::chrono::duration_cast<std::chrono::seconds>(duration).count();
    if (all == 0 && duration.count() > 0) {
        return QStringLiteral("%1 ms").arg(duration.count());
    }
    if (all < 60) {
        return QStringLiteral("%1 s").arg(all);
    }
    if (all < 3600) {
        return QStringLiteral("%1 min %2 s").arg(all / 60).arg(all % 60);
    }
    return QStringLiteral("%1 h %2 min").arg(all / 3600).arg(all % 3600 / 60);
}

ProgressReport::ProgressReport(Console& console, int total, Clock::time_point start)
    : console(console), total(total), start(start), lastShown(start)
{}

void ProgressReport::update(int done, Clock::time_point now)
{
    const Progress progress{done, total, std::chrono::duration_cast<milliseconds>(now - start)};
    if (!isDue(progress, now)) {
        return;
    }
    if (console.hasTerminal()) {
        console.showStatus(barText(progress, console.statusWidth()));
    } else {
        console.note(lineText(progress));
    }
    lastShown = now;
    lastTenth = tenthOf(progress);
}

bool ProgressReport::isDue(const Progress& progress, Clock::time_point now) const
{
    if (now - start < shortRun || progress.done == progress.total) {
        return false;
    }
    return console.hasTerminal() ? now - lastShown >= interval
                                 : now - lastShown >= betweenLines && tenthOf(progress) > lastTenth;
}

} // namespace tools
