#include "PatternGenerator.h"

#include "NastyPatterns.h"
#include "PatternForms.h"

#include <QStringView>

#include <array>
#include <utility>
#include <vector>

namespace patterns {
namespace {

/// A stretch of pattern, and what it probably matches.
struct Piece {
    QString pattern;
    QString sample;
    bool unbounded = false; ///< whether a quantifier without an upper bound is in it
};

/// A piece that may be repeated: a quantifier behind it repeats only the end of it.
struct Atom {
    Piece piece;
    QString repeated; ///< the end of the sample, which a quantifier repeats
};

QString text(std::u16string_view view)
{
    return QStringView(view.data(), qsizetype(view.size())).toString();
}

QString latin1(const char* text)
{
    return QString::fromLatin1(text);
}

/// One pattern. It draws left to right, as the dialect reads: an option that is switched on holds
/// to the end of the group around it, beyond the next "|" as well.
class Grammar {
public:
    explicit Grammar(Random& random) : random(random) {}

    DrawnPattern draw()
    {
        QString start;
        if (random.oneIn(12)) {
            const Form form = random.oneOf(startForms);
            start = noted(form);
            options.caseless = start.contains(QLatin1String("(?i)"));
        }
        const Piece piece = random.oneIn(2) ? almostText() : anything();
        return {start + damaged(piece.pattern), piece.sample, constructs};
    }

private:
    struct Options {
        bool caseless = false;
        bool extended = false;
    };

    QString noted(const Form& form)
    {
        constructs.insert(form.construct);
        return latin1(form.pattern);
    }

    void note(const char* construct) { constructs.insert(construct); }

    Piece anything() { return anchored(random.oneIn(4) ? alternation(2) : sequence(2)); }

    /// One odd thing does not hide behind the next.
    Piece almostText()
    {
        liveliness = 2;
        Piece whole;
        const int odd = random.below(3);
        for (int i = 0; i < 3; ++i) {
            const Piece next = i == odd ? oddPart(1) : random.oneIn(3) ? Piece() : literal().piece;
            whole.pattern += next.pattern + gap();
            whole.sample += next.sample;
        }
        return whole;
    }

    // ---- From the whole to its pieces -----------------------------------------------------------

    Piece anchored(Piece piece)
    {
        if (random.oneIn(8)) {
            note("start");
            piece.pattern.prepend('^');
        } else if (random.oneIn(12)) {
            note("very start");
            piece.pattern.prepend(random.oneIn(2) ? "\\A" : "\\G");
        }
        if (random.oneIn(8)) {
            note("end");
            piece.pattern.append('$');
            piece.sample.append(random.oneIn(2) ? "\n" : "");
        } else if (random.oneIn(12)) {
            const bool atAll = random.oneIn(2);
            note(atAll ? "very end" : "end or last newline");
            piece.pattern.append(atAll ? "\\z" : "\\Z");
        }
        return piece;
    }

    /// Some patterns get a fault, or a change that leaves them something else.
    QString damaged(QString pattern)
    {
        const int place = random.below(pattern.size() + 1);
        if (random.oneIn(40)) {
            return pattern.insert(place, latin1(random.oneOf(invalidFragments)));
        }
        if (random.oneIn(200)) {
            return pattern.insert(place, QChar(random.pick({0xD800, 0xDC00, 0xDFFF})));
        }
        if (random.oneIn(20)) {
            return pattern.remove(place, 1);
        }
        if (random.oneIn(20)) {
            static const QString signs = QStringLiteral("()[]{}|?\\^$-#:=!<> zk1");
            return pattern.insert(place, random.oneOf(signs));
        }
        return pattern;
    }

    Piece alternation(int depth)
    {
        note("alternation");
        Piece whole;
        const int branches = random.between(2, 3);
        const int taken = random.below(branches);
        for (int i = 0; i < branches; ++i) {
            const Piece branch = random.oneIn(8) ? Piece() : sequence(depth);
            whole.pattern += (i == 0 ? "" : "|") + branch.pattern;
            whole.unbounded = whole.unbounded || branch.unbounded;
            if (i == taken) {
                whole.sample = branch.sample;
            }
        }
        return whole;
    }

    Piece sequence(int depth)
    {
        Piece whole;
        for (int count = random.between(1, depth + 2); count > 0; --count) {
            const Piece next = part(depth);
            whole.pattern += next.pattern + gap();
            whole.sample += next.sample;
            whole.unbounded = whole.unbounded || next.unbounded;
        }
        return whole;
    }

    /// White space and comments where they mean nothing.
    QString gap()
    {
        if (!options.extended || random.oneIn(3)) {
            return {};
        }
        if (random.oneIn(3)) {
            note("extended comment");
            return QStringLiteral("#temp\n");
        }
        note("extended space");
        return random.oneIn(2) ? QStringLiteral(" ") : QStringLiteral("\t\n\u200E");
    }

    Piece part(int depth)
    {
        return random.below(10) < liveliness ? oddPart(depth) : literal().piece;
    }

    Piece oddPart(int depth)
    {
        switch (random.below(12)) {
        case 0:
            return {noted(random.oneOf(emptyForms)), {}};
        case 1:
            return option();
        case 2:
            return reference();
        case 3:
            return depth > 0 ? lookAround(depth) : literal().piece;
        case 4:
            return depth > 0 ? special() : literal().piece;
        case 5:
            return random.oneIn(4) ? nasty() : literal().piece;
        default:
            return quantified(atom(depth));
        }
    }

    Piece nasty()
    {
        note("nasty");
        return {random.oneOf(nastyPatterns()), {}};
    }

    Piece option()
    {
        const Form form = random.oneOf(optionForms);
        QString pattern = noted(form);
        switchOptions(pattern);
        return {pattern, {}};
    }

    void switchOptions(const QString& pattern)
    {
        const bool off = pattern.contains('-') || pattern.contains('^');
        if (pattern.contains('^')) {
            options = Options();
        }
        if (pattern.contains('i')) {
            options.caseless = pattern.contains("?i") || pattern.contains("^i");
        }
        if (pattern.contains('x')) {
            options.extended = !off;
        }
    }

    // ---- Repetition -----------------------------------------------------------------------------

    Piece quantified(const Atom& atom)
    {
        const Piece& piece = atom.piece;
        if (random.oneIn(30)) {
            note("text in braces");
            const QString braces = latin1(random.oneOf(textInBraces));
            return {piece.pattern + braces, piece.sample + braces, piece.unbounded};
        }
        if (!random.oneIn(3)) {
            return piece;
        }
        const Quantifier quantifier = random.oneOf(quantifiers);
        if (quantifier.unbounded && (piece.unbounded || unboundedLeft == 0)) {
            return piece; // what could take forever
        }
        if (quantifier.unbounded) {
            --unboundedLeft;
        }
        note(quantifier.construct);
        const char* const manner = random.pick({"", "", "?", "+"});
        if (*manner != 0) {
            note(*manner == '?' ? "lazy" : "possessive");
        }
        const QString sample =
            piece.sample.chopped(atom.repeated.size()) +
            atom.repeated.repeated(random.between(quantifier.least, quantifier.most));
        return {piece.pattern + gap() + quantifier.pattern + manner, sample,
                piece.unbounded || quantifier.unbounded};
    }

    Atom whole(const Piece& piece) { return {piece, piece.sample}; }

    Atom atom(int depth)
    {
        const int choice = random.below(depth > 0 ? 12 : 8);
        if (choice < 5) {
            return literal();
        }
        if (choice == 5) {
            const Form form = random.oneOf(characterForms);
            return whole({noted(form), text(form.sample)});
        }
        if (choice == 6) {
            return quoted();
        }
        return choice == 7 ? whole(characterClass()) : whole(group(depth - 1));
    }

    // ---- Text -----------------------------------------------------------------------------------

    Atom literal()
    {
        const QString word = drawWord(random);
        Atom atom;
        for (const uint character : word.toUcs4()) {
            const QString written = QString::fromUcs4(&character, 1);
            atom.piece.pattern += spelled(written, character);
            atom.repeated = options.caseless ? otherCase(written) : written;
            atom.piece.sample += atom.repeated;
        }
        return atom;
    }

    QString spelled(const QString& written, uint character)
    {
        switch (spelledOut ? random.below(30) : -1) {
        case 0:
            note("hexadecimal in braces");
            return QStringLiteral("\\x{%1}").arg(character, 0, 16);
        case 1:
            note("octal in braces");
            return QStringLiteral("\\o{%1}").arg(character, 0, 8);
        case 2:
            note("Unicode number");
            return QStringLiteral("\\N{U+%1}").arg(character, 0, 16);
        case 3:
            if (character < 0x100) {
                note("hexadecimal");
                return QStringLiteral("\\x%1").arg(character, 2, 16, QChar('0'));
            }
            break;
        case 4:
            if (character < 0100) {
                note("octal");
                return QStringLiteral("\\%1").arg(character, 3, 8, QChar('0'));
            }
            break;
        default:
            break;
        }
        static const QString metacharacters = QStringLiteral("\\^$.|?*+()[{");
        const bool wouldBeSkipped =
            options.extended && (written == ' ' || written == '\n' || written == '#');
        if (metacharacters.contains(written) || wouldBeSkipped) {
            note("escaped metacharacter");
            return '\\' + written;
        }
        if (character == 0) {
            note("NUL");
        } else if (character > 0xFFFF) {
            note("surrogate pair");
        } else if (character > 0x7F) {
            note("not ASCII");
        } else {
            note("text");
        }
        return written;
    }

    /// Matches the same without regard to case, by rules of which some surprise.
    QString otherCase(const QString& written)
    {
        static const std::array<std::pair<QChar, QChar>, 8> pairs{{{'k', QChar(0x212A)},
                                                                   {'K', QChar(0x212A)},
                                                                   {QChar(0x212A), 'k'},
                                                                   {'s', QChar(0x017F)},
                                                                   {'S', QChar(0x017F)},
                                                                   {QChar(0x03C3), QChar(0x03C2)},
                                                                   {QChar(0x03C2), QChar(0x03A3)},
                                                                   {QChar(0x00DF), QChar(0x1E9E)}}};
        if (random.oneIn(2)) {
            for (const auto& [one, other] : pairs) {
                if (written == one) {
                    note("surprising case");
                    return other;
                }
            }
        }
        switch (random.below(3)) {
        case 0:
            return written.toUpper().size() == written.size() ? written.toUpper() : written;
        case 1:
            return written.toLower().size() == written.size() ? written.toLower() : written;
        default:
            return written;
        }
    }

    Atom quoted()
    {
        note("quoting");
        const QString word = drawWord(random) + drawWord(random);
        const int last = word.right(1).at(0).isLowSurrogate() ? 2 : 1;
        return {{"\\Q" + word + "\\E", word}, word.right(last)};
    }

    Piece characterClass()
    {
        if (random.oneIn(12)) {
            note("word start and end");
            return {QStringLiteral("[[:<:]]zone[[:>:]]"), QStringLiteral("zone")};
        }
        const bool negated = random.oneIn(4);
        QString pattern = negated ? "[^" : "[";
        QString sample;
        if (random.oneIn(6)) {
            note("class with closing bracket first");
            pattern += ']';
            sample = ']';
        }
        for (int count = random.between(1, 3); count > 0; --count) {
            const Form form = random.oneOf(memberForms);
            pattern += noted(form);
            sample = text(form.sample);
        }
        if (random.oneIn(6)) {
            note("class with hyphen last");
            pattern += '-';
            sample = '-';
        }
        if (negated) {
            note("negated class");
            sample = QStringLiteral("\u00A7");
        }
        return {pattern + ']', sample.left(1)};
    }

    // ---- Groups ---------------------------------------------------------------------------------

    Piece group(int depth)
    {
        if (random.oneIn(10)) {
            return branchReset();
        }
        const Form form = random.oneOf(groupForms);
        QString opening = noted(form);
        const bool named = opening.contains('%');
        if (named || opening == '(') {
            ++groups;
        }
        if (named) {
            opening = opening.arg(name(groups));
        }
        const Options outside = options;
        if (opening.startsWith(QLatin1String("(?")) && !named && opening != QLatin1String("(?>")) {
            switchOptions(opening);
        }
        const Piece inside = random.oneIn(2) ? alternation(depth) : sequence(depth);
        options = outside;
        return {opening + inside.pattern + ')', inside.sample, inside.unbounded};
    }

    static QString name(int number) { return QStringLiteral("n%1").arg(number); }

    Piece branchReset()
    {
        note("branch reset");
        const Piece left = literal().piece;
        const Piece right = literal().piece;
        const QString again = '\\' + QString::number(++groups);
        const QString sample = random.oneIn(2) ? left.sample : right.sample;
        return {"(?|(" + left.pattern + ")|(" + right.pattern + "))(?:" + again + ")?", sample};
    }

    Piece lookAround(int depth)
    {
        if (random.oneIn(3)) {
            QString opening = noted(random.oneOf(negativeForms));
            const Options outside = options;
            const Piece inside = literal().piece;
            options = outside;
            return {opening + inside.pattern + ')', {}};
        }
        const QString opening = noted(random.oneOf(aheadForms));
        const bool behind = opening.contains('<') || opening.contains(QLatin1String("plb"));
        const Options outside = options;
        const Piece inside = behind || random.oneIn(2) ? literal().piece : sequence(depth - 1);
        options = outside;
        const QString assertion = opening + inside.pattern + ')';
        const QString quantifier = random.oneIn(8) ? random.pick({"?", "{0,1}", "*", "{0}"}) : "";
        if (behind) {
            return {inside.pattern + assertion + quantifier, inside.sample, inside.unbounded};
        }
        // Whatever follows goes over the same text, so it is well to let that follow.
        return random.oneIn(2) ? Piece{assertion + quantifier + "(?:" + inside.pattern + ')',
                                       inside.sample, true}
                               : Piece{assertion + quantifier, inside.sample, inside.unbounded};
    }

    // ---- What refers to something else ----------------------------------------------------------

    /// A group and something that means it.
    Piece reference()
    {
        const Piece meant = literal().piece;
        const int number = ++groups;
        const QString digits = QString::number(number);
        QString use = noted(random.oneOf(referenceForms));
        const bool byName = use.contains(QLatin1String("%2"));
        use.replace("%1", digits).replace("%2", name(number));
        const QString opening = byName ? "(?<" + name(number) + '>' : QStringLiteral("(");
        return {opening + meant.pattern + ')' + use, meant.sample + meant.sample};
    }

    /// A shape around texts of its own.
    Piece special()
    {
        const Special form = random.oneOf(specialForms);
        note(form.construct);
        const int number = groups + 1;
        groups += form.groups;
        const std::array<Piece, 2> texts{literal().piece, literal().piece};
        Piece filled{latin1(form.pattern), latin1(random.oneIn(2) ? form.sample : form.orSample)};
        filled.pattern.replace('#', QString::number(number));
        for (const int i : {0, 1}) {
            const QString place = i == 0 ? QStringLiteral("<A>") : QStringLiteral("<B>");
            filled.pattern.replace(place, texts.at(std::size_t(i)).pattern);
            filled.sample.replace(place, texts.at(std::size_t(i)).sample);
        }
        return filled;
    }

    Random& random;
    std::set<std::string> constructs;
    Options options;
    int liveliness = 9; // how many of ten parts are something else than text
    bool spelledOut = random.oneIn(4);
    int groups = 0; // opened so far
    int unboundedLeft = 3;
};

template <class Forms>
void addConstructs(std::set<std::string>& constructs, const Forms& forms)
{
    for (const auto& form : forms) {
        constructs.insert(form.construct);
    }
}

} // namespace

DrawnPattern drawPattern(Random& random)
{
    if (random.oneIn(20)) {
        return {random.oneOf(nastyPatterns()), random.oneOf(nastyUrls()), {"nasty"}};
    }
    DrawnPattern drawn = Grammar(random).draw();
    drawn.pattern.truncate(300);
    drawn.sample.truncate(100);
    return drawn;
}

std::set<std::string> constructsOfTheDialect()
{
    std::set<std::string> constructs{"start",
                                     "very start",
                                     "end",
                                     "very end",
                                     "end or last newline",
                                     "alternation",
                                     "extended comment",
                                     "extended space",
                                     "nasty",
                                     "text in braces",
                                     "lazy",
                                     "possessive",
                                     "hexadecimal in braces",
                                     "octal in braces",
                                     "Unicode number",
                                     "hexadecimal",
                                     "octal",
                                     "escaped metacharacter",
                                     "NUL",
                                     "surrogate pair",
                                     "not ASCII",
                                     "text",
                                     "surprising case",
                                     "quoting",
                                     "word start and end",
                                     "class with closing bracket first",
                                     "class with hyphen last",
                                     "negated class",
                                     "branch reset"};
    addConstructs(constructs, characterForms);
    addConstructs(constructs, memberForms);
    addConstructs(constructs, groupForms);
    addConstructs(constructs, aheadForms);
    addConstructs(constructs, negativeForms);
    addConstructs(constructs, emptyForms);
    addConstructs(constructs, optionForms);
    addConstructs(constructs, startForms);
    addConstructs(constructs, quantifiers);
    addConstructs(constructs, referenceForms);
    addConstructs(constructs, specialForms);
    return constructs;
}

QString drawWord(Random& random)
{
    return text(random.oneOf(words));
}

QString drawUrl(Random& random, const QString& sample)
{
    QString url = sample;
    if (random.oneIn(3)) {
        url.prepend(drawWord(random));
    }
    if (random.oneIn(3)) {
        url.append(drawWord(random));
    }
    if (random.oneIn(10)) {
        url.append('\n');
    }
    const int place = random.below(url.size() + 1);
    switch (random.below(24)) {
    case 0:
    case 1:
        return url.remove(place, 1);
    case 2:
    case 3:
        return url.insert(place, drawWord(random));
    case 4:
        return url.toUpper();
    case 5:
        return url.toLower();
    case 6:
        return url.left(place);
    case 7:
        return url.insert(place, QChar(random.pick({0xD800, 0xDBFF, 0xDC00, 0xDFFF})));
    case 8:
        return random.oneOf(nastyUrls());
    default:
        return url;
    }
}

} // namespace patterns
