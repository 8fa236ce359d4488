#ifndef UNITFLOW_PATTERNS_LITERALS_H
#define UNITFLOW_PATTERNS_LITERALS_H

#include <QString>
#include <QStringView>

#include <cstddef>
#include <vector>

namespace patterns {

/// Texts, run together so that one more costs no allocation. None of them is empty.
class Literals {
public:
    /// A place between two units to come back to.
    struct Mark {
        std::size_t unitCount;
        std::size_t textCount;
    };

    std::size_t size() const { return ends.size(); }

    /// Valid until the texts are changed.
    QStringView at(std::size_t index) const
    {
        const std::size_t start = index == 0 ? 0 : ends[index - 1];
        return {units.data() + start, units.data() + ends[index]};
    }

    /// Adds units to the text under way.
    void append(const QChar* begin, const QChar* end) { units.insert(units.end(), begin, end); }

    /// Ends the text under way, if there is one.
    void endText()
    {
        if (units.size() > (ends.empty() ? 0 : ends.back())) {
            ends.push_back(units.size());
        }
    }

    Mark mark() const { return {units.size(), ends.size()}; }

    /// Drops what was added since, and ends the text that was under way then.
    void forgetSince(const Mark& mark)
    {
        units.resize(mark.unitCount);
        ends.resize(mark.textCount);
        endText();
    }

private:
    std::vector<QChar> units;
    std::vector<std::size_t> ends;
};

} // namespace patterns

#endif
