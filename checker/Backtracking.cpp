#include "checker/Backtracking.h"

#include "checker/Patterns.h"

#include <QHash>
#include <QRegularExpression>
#include <QVector>

#include <algorithm>

namespace checker {

namespace {

constexpr int mostTexts = 64;
constexpr int mostSamples = 6;      // of one piece of a pattern
constexpr int repetitionCount = 32; // 2 to the power of it is far beyond every limit
constexpr int longestText = 200;    // of characters, as in a long URL
constexpr int deepestGroup = 50;

/// Ends that let a match fail: a character that no pattern is after, and one that those are not
/// after that take any character but the one between names.
QStringList failingEnds(const QString& rest)
{
    const QChar strange(0x01);
    return {QString(strange), rest + strange, QStringLiteral("//")};
}

/// Some characters that a class, or an escape for one, matches.
QStringList findCharacters(const QString& oneCharacter)
{
    const QRegularExpression expression(withoutMachineCode() + QLatin1Char('^') + oneCharacter +
                                        QLatin1Char('$'));
    QStringList samples;
    if (!expression.isValid()) {
        return samples;
    }
    for (const QChar candidate : QStringLiteral("aZ0/_- .,:A1zx")) {
        if (expression.match(QString(candidate)).hasMatch()) {
            samples.append(QString(candidate));
        }
    }
    return samples.mid(0, 3);
}

/// Reads how a pattern is written. Of every piece it keeps some texts that are likely to match, and
/// it notes the text before every repetition together with what repeats.
class Sampler {
public:
    Sampler(const QString& pattern, QHash<QString, QStringList>& knownCharacters)
        : pattern(pattern), knownCharacters(knownCharacters)
    {}

    struct Repetition {
        QString before;
        QStringList bodies;
        bool isOfGroup;
    };

    /// Texts that the whole pattern may match.
    QStringList read() { return readAlternatives({}, 0); }

    const QVector<Repetition>& repetitions() const { return found; }

private:
    QStringList readAlternatives(const QString& before, int depth);
    QStringList readSequence(const QString& before, int depth);
    QStringList readPiece(const QString& before, int depth);
    QStringList readGroup(const QString& before, int depth);
    QStringList readClass();
    QStringList readEscape();
    bool readQuantifier();
    bool isAt(QChar character) const { return at < pattern.size() && pattern.at(at) == character; }
    QStringList charactersOf(const QString& oneCharacter);

    const QString pattern;
    QHash<QString, QStringList>& knownCharacters;
    int at = 0;
    QVector<Repetition> found;
};

QStringList Sampler::readAlternatives(const QString& before, int depth)
{
    QStringList samples = readSequence(before, depth);
    while (isAt(QLatin1Char('|'))) {
        ++at;
        samples += readSequence(before, depth);
    }
    samples.removeDuplicates();
    return samples.mid(0, mostSamples);
}

/// Whole sequences: one made of the first sample of each piece, and one of the last.
QStringList Sampler::readSequence(const QString& before, int depth)
{
    QString first;
    QString last;
    while (at < pattern.size() && !isAt(QLatin1Char('|')) && !isAt(QLatin1Char(')'))) {
        const bool isGroup = isAt(QLatin1Char('('));
        const QStringList samples = readPiece(before + first, depth);
        const bool repeats = readQuantifier();
        if (repeats && !samples.isEmpty()) {
            found.append({before + first, samples, isGroup});
        }
        if (!samples.isEmpty()) {
            first += samples.first();
            last += samples.last();
        }
    }
    return first == last ? QStringList{first} : QStringList{first, last};
}

QStringList Sampler::readPiece(const QString& before, int depth)
{
    const QChar character = pattern.at(at);
    switch (character.unicode()) {
    case '(':
        return readGroup(before, depth);
    case '[':
        return readClass();
    case '\\':
        return readEscape();
    case '^':
    case '$':
        ++at;
        return {};
    case '.':
        ++at;
        return {QStringLiteral("a"), QStringLiteral("/")};
    default:
        ++at;
        return {QString(character)};
    }
}

QStringList Sampler::readGroup(const QString& before, int depth)
{
    ++at; // the bracket
    bool isAssertion = false;
    if (isAt(QLatin1Char('?'))) {
        const QStringRef kind = pattern.midRef(at, 3);
        isAssertion = kind.startsWith(QLatin1String("?=")) ||
                      kind.startsWith(QLatin1String("?!")) || kind == QLatin1String("?<=") ||
                      kind == QLatin1String("?<!");
        const bool isNamed = !isAssertion && (kind.startsWith(QLatin1String("?<")) ||
                                              kind.startsWith(QLatin1String("?P<")) ||
                                              kind.startsWith(QLatin1String("?'")));
        const QString ends = isNamed ? QStringLiteral(">'") : QStringLiteral(":=!>|)");
        at += isNamed ? 3 : 0;
        while (at < pattern.size() && !ends.contains(pattern.at(at))) {
            ++at;
        }
        if (!isAt(QLatin1Char(')'))) {
            ++at;
        }
    }
    const QStringList samples =
        depth < deepestGroup ? readAlternatives(before, depth + 1) : QStringList();
    if (isAt(QLatin1Char(')'))) {
        ++at;
    }
    return isAssertion ? QStringList() : samples;
}

QStringList Sampler::readClass()
{
    const int start = at;
    ++at;
    if (isAt(QLatin1Char('^'))) {
        ++at;
    }
    if (isAt(QLatin1Char(']'))) {
        ++at;
    }
    while (at < pattern.size() && !isAt(QLatin1Char(']'))) {
        if (pattern.midRef(at, 2) == QLatin1String("[:")) {
            at = std::max(at, pattern.indexOf(QLatin1String(":]"), at) + 1);
        } else if (isAt(QLatin1Char('\\'))) {
            ++at;
        }
        ++at;
    }
    ++at;
    return charactersOf(pattern.mid(start, at - start));
}

QStringList Sampler::readEscape()
{
    const QString escape = pattern.mid(at, 2);
    at += 2;
    if (escape.size() == 2 && escape.at(1).isLetterOrNumber()) {
        return charactersOf(escape);
    }
    return {escape.mid(1)};
}

/// Some characters that a class, or an escape for one, matches.
QStringList Sampler::charactersOf(const QString& oneCharacter)
{
    auto known = knownCharacters.find(oneCharacter);
    if (known == knownCharacters.end()) {
        known = knownCharacters.insert(oneCharacter, findCharacters(oneCharacter));
    }
    return *known;
}

/// Whether what was read may repeat without a bound, or often enough to do harm.
bool Sampler::readQuantifier()
{
    static const QRegularExpression quantifier(
        QStringLiteral(R"(\G(?:([*+])|\?|\{(\d+)(?:(,)(\d*))?\})[?+]?)"));
    const QRegularExpressionMatch match = quantifier.match(pattern, at);
    if (!match.hasMatch()) {
        return false;
    }
    at = match.capturedEnd();
    constexpr int often = 10;
    const bool isOpen = !match.captured(3).isEmpty() && match.captured(4).isEmpty();
    return !match.captured(1).isEmpty() || isOpen ||
           std::max(match.captured(2).toInt(), match.captured(4).toInt()) >= often;
}

/// Whether at most two characters repeat, as one sees without reading all of the pattern.
bool repeatsTwoCharactersAtMost(const QString& pattern)
{
    int count = 0;
    for (int at = 0; at < pattern.size(); ++at) {
        const QChar character = pattern.at(at);
        if (character == QLatin1Char('*') || character == QLatin1Char('+') ||
            character == QLatin1Char('{')) {
            ++count;
            if (count > 2 || (at > 0 && pattern.at(at - 1) == QLatin1Char(')'))) {
                return false;
            }
        }
    }
    return true;
}

bool takesTooLong(const QRegularExpression& limited, const QString& text)
{
    const QRegularExpressionMatch match = limited.match(text);
    return !match.isValid(); // which is how Qt tells that matching was given up
}

} // namespace

QStringList temptingTexts(const QString& pattern)
{
    if (repeatsTwoCharactersAtMost(pattern)) {
        return {};
    }
    thread_local QHash<QString, QStringList> knownCharacters; // few classes are in many patterns
    Sampler sampler(pattern, knownCharacters);
    const QString whole = sampler.read().value(0);
    const QVector<Sampler::Repetition>& found = sampler.repetitions();
    QStringList texts;
    const bool repeatsGroup =
        std::any_of(found.begin(), found.end(),
                    [](const Sampler::Repetition& repetition) { return repetition.isOfGroup; });
    if (found.size() <= 2 && !repeatsGroup) {
        return texts;
    }
    for (const Sampler::Repetition& repetition : found) {
        for (const QString& body : repetition.bodies) {
            const int room = longestText - repetition.before.size();
            const int count = std::min(repetitionCount, room / std::max(1, body.size()));
            if (body.isEmpty() || count < 2) {
                continue;
            }
            const QString rest = whole.mid(repetition.before.size() + body.size());
            for (const QString& end : failingEnds(rest)) {
                texts.append(repetition.before + body.repeated(count) + end);
            }
        }
    }
    texts.removeDuplicates();
    return texts.mid(0, mostTexts);
}

std::optional<QString> findSlowText(const QString& pattern)
{
    const QStringList texts = temptingTexts(pattern);
    if (texts.isEmpty()) {
        return std::nullopt;
    }
    const QRegularExpression limited(QStringLiteral("(*NO_JIT)(*LIMIT_MATCH=%1)").arg(stepLimit) +
                                     pattern);
    if (!limited.isValid()) {
        return std::nullopt;
    }
    const auto slow = std::find_if(texts.cbegin(), texts.cend(), [&](const QString& text) {
        return takesTooLong(limited, text);
    });
    return slow == texts.cend() ? std::nullopt : std::optional(*slow);
}

} // namespace checker
