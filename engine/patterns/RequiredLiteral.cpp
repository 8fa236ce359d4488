#include "patterns/RequiredLiteral.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace patterns {

namespace {

constexpr int maximalDepth = 250; // no expression with deeper groups compiles

bool isDigit(QChar unit)
{
    return unit >= QLatin1Char('0') && unit <= QLatin1Char('9');
}

bool isAsciiLetter(QChar unit)
{
    return (unit >= QLatin1Char('a') && unit <= QLatin1Char('z')) ||
           (unit >= QLatin1Char('A') && unit <= QLatin1Char('Z'));
}

bool isWordUnit(QChar unit)
{
    return isDigit(unit) || isAsciiLetter(unit) || unit == QLatin1Char('_');
}

/// Whether a backslash before `unit` takes every meaning from it.
bool isQuotable(QChar unit)
{
    return unit >= QLatin1Char(' ') && unit <= QLatin1Char('~') && !isDigit(unit) &&
           !isAsciiLetter(unit);
}

/// Reads a pattern from left to right and collects the units that a match cannot do without.
/// Units that follow each other in the pattern follow each other in the text, unless a run ends
/// between them. Each reading function returns false when it met what it does not know.
class Reader {
public:
    explicit Reader(const QString& pattern) : pattern(pattern) {}

    QStringList read()
    {
        if (!readAlternatives(0) || !atEnd()) {
            return {};
        }
        endRun();
        QStringList literals;
        int start = 0;
        for (const int end : ends) {
            literals.append(units.mid(start, end - start));
            start = end;
        }
        return literals;
    }

private:
    struct Mark {
        int unitCount;
        std::size_t runCount;
    };

    bool atEnd() const { return at >= pattern.size(); }
    bool isAt(char character) const { return !atEnd() && pattern.at(at) == QLatin1Char(character); }
    bool skip(char character)
    {
        const bool skipped = isAt(character);
        at += skipped ? 1 : 0;
        return skipped;
    }

    Mark mark() const { return {units.size(), ends.size()}; }
    void endRun()
    {
        if (units.size() > (ends.empty() ? 0 : ends.back())) {
            ends.push_back(units.size());
        }
    }
    void forgetSince(const Mark& before)
    {
        units.truncate(before.unitCount);
        ends.resize(before.runCount);
        endRun();
    }

    /// Up to the end of the pattern or the bracket that closes the group.
    bool readAlternatives(int depth)
    {
        const Mark before = mark();
        bool severalAlternatives = false;
        while (!atEnd() && !isAt(')')) {
            if (skip('|')) {
                severalAlternatives = true;
            } else if (!readItem(depth)) {
                return false;
            }
        }
        if (severalAlternatives) {
            forgetSince(before);
        }
        return true;
    }

    bool readItem(int depth)
    {
        const Mark before = mark();
        const QChar unit = pattern.at(at);
        switch (unit.unicode()) {
        case u'(':
            return readGroup(depth) && readQuantifier(before);
        case u'[':
            return readClass() && readQuantifier(before);
        case u'\\':
            return readEscape() && readQuantifier(before);
        case u'*':
        case u'+':
        case u'?':
        case u'{':
            return false; // a quantifier of nothing, or a brace that may be one
        case u'.':
        case u'^':
        case u'$':
            endRun();
            break;
        default:
            takeUnit(unit);
        }
        ++at;
        return readQuantifier(before);
    }

    void takeUnit(QChar unit)
    {
        if (unit.isSurrogate()) {
            endRun(); // a quantifier would concern two of them
        } else {
            units.append(unit);
        }
    }

    bool readEscape()
    {
        ++at;
        if (atEnd()) {
            return false;
        }
        const QChar unit = pattern.at(at++);
        if (isQuotable(unit)) {
            units.append(unit);
            return true;
        }
        endRun();
        return QLatin1String("dDwWsShHvVRbBAzZK").contains(unit);
    }

    bool readClass()
    {
        endRun();
        ++at;
        skip('^');
        skip(']'); // is no end at the beginning
        while (!atEnd()) {
            const QChar unit = pattern.at(at++);
            if (unit == QLatin1Char(']')) {
                return true;
            }
            if (unit == QLatin1Char('[') && (isAt(':') || isAt('.') || isAt('='))) {
                return false;
            }
            if (unit == QLatin1Char('\\') && !readEscapeInClass()) {
                return false;
            }
        }
        return false;
    }

    bool readEscapeInClass()
    {
        if (atEnd()) {
            return false;
        }
        const QChar unit = pattern.at(at++);
        return isQuotable(unit) || QLatin1String("dDwWsShHvVb").contains(unit);
    }

    bool readGroup(int depth)
    {
        ++at;
        if (isAt('*') || depth == maximalDepth) {
            return false;
        }
        bool consumes = true;
        if (skip('?') && !readGroupKind(consumes)) {
            return false;
        }
        const Mark before = mark();
        if (!readAlternatives(depth + 1) || !skip(')')) {
            return false;
        }
        if (!consumes) {
            forgetSince(before);
        }
        return true;
    }

    /// What follows "(?". A look-around consumes nothing of the text.
    bool readGroupKind(bool& consumes)
    {
        if (skip(':')) {
            return true;
        }
        if (skip('\'')) {
            return readName('\'');
        }
        if (skip('P')) {
            return skip('<') && readName('>');
        }
        const bool mayBeNamed = skip('<');
        if (skip('=') || skip('!')) {
            consumes = false;
            return true;
        }
        return mayBeNamed && readName('>');
    }

    bool readName(char end)
    {
        const int start = at;
        while (!atEnd() && isWordUnit(pattern.at(at))) {
            ++at;
        }
        return at > start && !isDigit(pattern.at(start)) && skip(end);
    }

    /// The quantifier of what was read since `before`, if there is one.
    bool readQuantifier(const Mark& before)
    {
        const std::optional<bool> optional = readMinimum();
        if (!optional) {
            return !isAt('{');
        }
        if (!skip('?')) {
            skip('+');
        }
        if (*optional) {
            forgetSince(before);
        }
        endRun(); // the next unit follows the last repetition, which need not be the first
        return true;
    }

    /// Whether a quantifier allows no repetition at all; nothing when there is no quantifier.
    std::optional<bool> readMinimum()
    {
        if (skip('*') || skip('?')) {
            return true;
        }
        if (skip('+')) {
            return false;
        }
        return isAt('{') ? readBraces() : std::nullopt;
    }

    /// {n}, {n,} or {n,m}; at the brace again when it is anything else.
    std::optional<bool> readBraces()
    {
        const int start = at++;
        const int minimumStart = at;
        skipDigits();
        const QStringRef minimum = pattern.midRef(minimumStart, at - minimumStart);
        if (skip(',')) {
            skipDigits();
        }
        bool ok = false;
        const bool none = minimum.toUShort(&ok) == 0;
        if (!ok || !skip('}')) {
            at = start;
            return std::nullopt;
        }
        return none;
    }

    void skipDigits()
    {
        while (!atEnd() && isDigit(pattern.at(at))) {
            ++at;
        }
    }

    const QString& pattern;
    int at = 0;
    QString units;
    std::vector<int> ends; // of the runs, as counts of units
};

} // namespace

QStringList requiredLiterals(const QString& pattern)
{
    return Reader(pattern).read();
}

} // namespace patterns
