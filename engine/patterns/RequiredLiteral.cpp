#include "patterns/RequiredLiteral.h"

#include <optional>

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

bool standsForItself(QChar unit)
{
    switch (unit.unicode()) {
    case u'\\':
    case u'^':
    case u'$':
    case u'.':
    case u'[':
    case u'|':
    case u'(':
    case u')':
    case u'*':
    case u'+':
    case u'?':
    case u'{':
        return false;
    default:
        return !unit.isSurrogate(); // a quantifier would concern two of them
    }
}

bool startsQuantifier(QChar unit)
{
    return unit == QLatin1Char('*') || unit == QLatin1Char('+') || unit == QLatin1Char('?') ||
           unit == QLatin1Char('{');
}

/// Whether a backslash before `unit` takes every meaning from it.
bool isQuotable(QChar unit)
{
    return unit >= QLatin1Char(' ') && unit <= QLatin1Char('~') && !isDigit(unit) &&
           !isAsciiLetter(unit);
}

/// Reads a pattern from left to right and collects the units that a match cannot do without.
/// Units that follow each other in the pattern follow each other in the text, unless a text ends
/// between them. Each reading function returns false when it met what it does not know.
class Reader {
public:
    Reader(const QString& pattern, Literals& literals)
        : at(pattern.constData()), end(at + pattern.size()), literals(literals)
    {}

    bool read() { return readAlternatives(0) && atEnd(); }

private:
    bool atEnd() const { return at == end; }
    bool isAt(char character) const { return !atEnd() && *at == QLatin1Char(character); }
    bool skip(char character)
    {
        const bool skipped = isAt(character);
        at += skipped ? 1 : 0;
        return skipped;
    }

    /// Up to the end of the pattern or the bracket that closes the group.
    bool readAlternatives(int depth)
    {
        const Literals::Mark before = literals.mark();
        bool severalAlternatives = false;
        for (takeUnits(); !atEnd() && !isAt(')'); takeUnits()) {
            if (skip('|')) {
                severalAlternatives = true;
            } else if (!readItem(depth)) {
                return false;
            }
        }
        if (severalAlternatives) {
            literals.forgetSince(before);
        }
        return true;
    }

    /// Takes as many units as stand for themselves alone.
    void takeUnits()
    {
        const QChar* const start = at;
        while (!atEnd() && standsForItself(*at)) {
            ++at;
        }
        if (at > start && !atEnd() && startsQuantifier(*at)) {
            --at;
        }
        literals.append(start, at);
    }

    bool readItem(int depth)
    {
        const Literals::Mark before = literals.mark();
        const QChar unit = *at;
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
            literals.endText();
            break;
        default:
            if (unit.isSurrogate()) {
                literals.endText();
            } else {
                literals.append(at, at + 1);
            }
        }
        ++at;
        return readQuantifier(before);
    }

    bool readEscape()
    {
        ++at;
        if (atEnd()) {
            return false;
        }
        const QChar unit = *at++;
        if (isQuotable(unit)) {
            literals.append(at - 1, at);
            return true;
        }
        literals.endText();
        return QLatin1String("dDwWsShHvVRbBAzZK").contains(unit);
    }

    bool readClass()
    {
        literals.endText();
        ++at;
        skip('^');
        skip(']'); // is no end at the beginning
        while (!atEnd()) {
            const QChar unit = *at++;
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
        const QChar unit = *at++;
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
        const Literals::Mark before = literals.mark();
        if (!readAlternatives(depth + 1) || !skip(')')) {
            return false;
        }
        if (!consumes) {
            literals.forgetSince(before);
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

    bool readName(char closing)
    {
        const QChar* const start = at;
        while (!atEnd() && isWordUnit(*at)) {
            ++at;
        }
        return at > start && !isDigit(*start) && skip(closing);
    }

    /// The quantifier of what was read since `before`, if there is one.
    bool readQuantifier(const Literals::Mark& before)
    {
        if (atEnd() || !startsQuantifier(*at)) {
            return true;
        }
        const std::optional<bool> optional = readMinimum();
        if (!optional) {
            return false;
        }
        if (!skip('?')) {
            skip('+');
        }
        if (*optional) {
            literals.forgetSince(before);
        }
        literals
            .endText(); // the next unit follows the last repetition, which need not be the first
        return true;
    }

    /// Whether a quantifier allows no repetition at all; nothing when braces are none.
    std::optional<bool> readMinimum()
    {
        if (skip('*') || skip('?')) {
            return true;
        }
        if (skip('+')) {
            return false;
        }
        return readBraces();
    }

    /// {n}, {n,} or {n,m}.
    std::optional<bool> readBraces()
    {
        const QChar* const start = ++at;
        skipDigits();
        bool ok = false;
        const bool none = QString(start, int(at - start)).toUShort(&ok) == 0;
        if (skip(',')) {
            skipDigits();
        }
        return ok && skip('}') ? std::optional(none) : std::nullopt;
    }

    void skipDigits()
    {
        while (!atEnd() && isDigit(*at)) {
            ++at;
        }
    }

    const QChar* at;
    const QChar* const end;
    Literals& literals;
};

} // namespace

void addRequiredLiterals(const QString& pattern, Literals& literals)
{
    const Literals::Mark before = literals.mark();
    if (Reader(pattern, literals).read()) {
        literals.endText();
    } else {
        literals.forgetSince(before);
    }
}

} // namespace patterns
