#ifndef UNITFLOW_TOOLS_CONSOLE_PROGRESS_H
#define UNITFLOW_TOOLS_CONSOLE_PROGRESS_H

#include <QString>

#include <chrono>

namespace tools {

class Console;

/// How far a run has come.
struct Progress {
    int done = 0;
    int total = 0;
    std::chrono::milliseconds elapsed{0};
};

/// As a bar of at most `width` columns; the bar itself is left out when there is no room for it.
QString barText(const Progress& progress, int width);

/// As a line of a log.
QString lineText(const Progress& progress);

/// "850 ms", "12 s", "3 min 20 s", "2 h 5 min".
QString durationText(std::chrono::milliseconds duration);

/// Shows on standard error how far a run has come: as a bar on a terminal, otherwise as a line for
/// every tenth of the run. A run of less than a second, or a quiet one, stays without.
class ProgressReport {
public:
    using Clock = std::chrono::steady_clock;

    ProgressReport(Console& console, int total, Clock::time_point start);

    /// Cheap when it is too early to show anything new. Nobody need call it more often than each
    /// `interval`.
    void update(int done, Clock::time_point now);

    static constexpr std::chrono::milliseconds interval{100};

private:
    bool isDue(const Progress& progress, Clock::time_point now) const;

    Console& console;
    int total;
    Clock::time_point start;
    Clock::time_point lastShown;
    int lastTenth = 0;
};

} // namespace tools

#endif
