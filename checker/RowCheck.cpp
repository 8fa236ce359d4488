#include "checker/RowCheck.h"

#include "DependencyWalkerDefinitions.h"
#include "checker/Backtracking.h"
#include "checker/ColumnTarget.h"

#include <QMultiHash>
#include <QRegularExpression>

#include <algorithm>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::json::JsonText;
using JsonKind = JsonText::Kind;

namespace {

constexpr int longestShown = 40;

QString shortened(const QString& text)
{
    return text.size() <= longestShown ? text : text.left(longestShown) + QStringLiteral("...");
}

/// What a value is compared with, and how.
struct Comparison {
    bool isEqual; ///< otherwise unequal
    QString constant;
    int line;
};

class RowChecker {
public:
    RowChecker(const Table& table, const DescriptionPlaces& places, Patterns& patterns,
               Findings& findings)
        : columns(table.type->table), places(places), patterns(patterns), findings(findings),
          isCommand(table.type->kind == TypeDescription::Kind::Command)
    {}

    void check(const Row& row)
    {
        for (int i = 0; i < row.layout->size(); ++i) {
            const ColumnDescription& column = columns.columns.at(row.layout->at(i));
            checkCell(row.cells[static_cast<std::size_t>(i)], column);
        }
        checkGroups(row);
        checkComparison(row);
    }

private:
    void checkCell(Index cell, const ColumnDescription& column);
    void checkIsText(Index cell, const ColumnDescription& column);
    void checkSourceUrl(Index cell, const QString& url);
    void checkComparator(Index cell, const QString& comparator);
    void checkPattern(Index cell, const QString& text, bool needsGroup);
    void checkColumn(Index cell, const QString& text);
    void checkPlaces(Index cell, const QString& url);
    void checkTemplate(Index cell, const QString& url);
    void checkGroups(const Row& row);
    void checkComparison(const Row& row);
    void reportInvalid(Index cell, const QString& text, int offset);
    void reportSlow(Index cell, const QString& text);
    void reportEmpty(Index cell, const QString& what);

    const TableDescription& columns;
    const DescriptionPlaces& places;
    Patterns& patterns;
    Findings& findings;
    bool isCommand;
    QMultiHash<QString, Comparison> comparisons; ///< of the rows so far, by what they look at
};

void RowChecker::checkCell(Index cell, const ColumnDescription& column)
{
    if (column.role == CellRole::Remark || column.role == CellRole::Constant) {
        return;
    }
    checkIsText(cell, column);
    const QString text = textOf(places, cell);
    switch (column.role) {
    case CellRole::SourceUrl:
        checkSourceUrl(cell, text);
        break;
    case CellRole::TargetUrl:
        checkPlaces(cell, text);
        break;
    case CellRole::TargetUrlTemplate:
        checkTemplate(cell, text);
        break;
    case CellRole::TargetUrlByGroups:
        if (text.isEmpty()) {
            reportEmpty(cell, column.name);
        }
        checkPlaces(cell, text);
        break;
    case CellRole::TargetColumn:
        if (parameterPlacesIn(text).isEmpty()) {
            checkColumn(cell, text);
        }
        checkPlaces(cell, text);
        break;
    case CellRole::Pattern:
        checkPattern(cell, text, false);
        break;
    case CellRole::PatternWithGroups:
        checkPattern(cell, text, true);
        break;
    case CellRole::Unit:
        if (text.isEmpty()) {
            findings.add(Code::EmptyUnit, places.valueAt(cell),
                         QStringLiteral("the unit is empty; the engine skips the row"),
                         QStringLiteral("write a unit, or remove the row"));
        }
        break;
    case CellRole::Comparator:
        checkComparator(cell, text);
        break;
    case CellRole::Constant:
    case CellRole::Remark:
        break;
    }
}

void RowChecker::checkIsText(Index cell, const ColumnDescription& column)
{
    if (places.text().kind(cell) != JsonKind::String) {
        findings.add(Code::CellNotText, places.valueAt(cell),
                     QStringLiteral("the %1 is no text; the engine takes it for %2")
                         .arg(column.name, quoted(textOf(places, cell))),
                     QStringLiteral("write it in double quotes"));
    }
}

void RowChecker::reportEmpty(Index cell, const QString& what)
{
    findings.add(Code::EmptyUrl, places.valueAt(cell),
                 QStringLiteral("the %1 is empty, and the empty URL names no leaf; %2")
                     .arg(what, isCommand ? QStringLiteral("the engine skips the row")
                                          : QStringLiteral("the row does not hold")),
                 QStringLiteral("write the URL of a leaf, or remove the row"));
}

void RowChecker::checkSourceUrl(Index cell, const QString& url)
{
    if (url.isEmpty()) {
        reportEmpty(cell, QStringLiteral("URL"));
        return;
    }
    const QString prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    if (isCommand || !url.startsWith(prefix)) {
        return;
    }
    findings.add(Code::PrefixedUrl, places.charactersAt(cell, 0, prefix.size()),
                 QStringLiteral("the URL begins with %1, so the node runs where the rest matches, "
                                "but the condition takes it for a plain URL, which no leaf has")
                     .arg(quoted(prefix)),
                 QStringLiteral("patterns stand, without %1, in the condition whose name ends in "
                                "\"RegExp\"")
                     .arg(quoted(prefix)));
    const QString pattern = url.mid(prefix.size());
    if (!patterns[pattern].isValid) {
        reportInvalid(cell, pattern, prefix.size());
    }
}

void RowChecker::checkComparator(Index cell, const QString& comparator)
{
    if (comparator == QLatin1String("==") || comparator == QLatin1String("!=")) {
        return;
    }
    static const QStringList alikeEqual{QStringLiteral("="), QStringLiteral("==="),
                                        QStringLiteral("eq"), QStringLiteral("is")};
    static const QStringList alikeUnequal{
        QStringLiteral("<>"), QStringLiteral("!=="), QStringLiteral("!"),   QStringLiteral("=!"),
        QStringLiteral("~="), QStringLiteral("ne"),  QString(QChar(0x2260))};
    const QString plain = comparator.trimmed().toLower();
    QString advice = QStringLiteral("write \"==\" or \"!=\"; there is nothing else");
    if (alikeEqual.contains(plain) || plain == QLatin1String("==")) {
        advice = QStringLiteral("write \"==\"");
    } else if (alikeUnequal.contains(plain) || plain == QLatin1String("!=")) {
        advice = QStringLiteral("write \"!=\"");
    }
    findings.add(
        Code::UnknownComparator, places.valueAt(cell),
        QStringLiteral("there is no comparator %1; the row never holds").arg(quoted(comparator)),
        advice);
}

void RowChecker::checkPattern(Index cell, const QString& text, bool needsGroup)
{
    const Pattern pattern = patterns[text];
    if (!pattern.isValid) {
        reportInvalid(cell, text, 0);
        return;
    }
    if (text.isEmpty()) {
        findings.add(Code::EmptyPattern, places.valueAt(cell),
                     QStringLiteral("the pattern is empty and matches every URL"),
                     QStringLiteral("write what the URLs have in common, as in \"^Settings/\""));
        return;
    }
    const QString prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    if (text.startsWith(prefix)) {
        findings.add(Code::PrefixedPattern, places.charactersAt(cell, 0, prefix.size()),
                     QStringLiteral("the pattern begins with %1, which is searched in the URL like "
                                    "any other characters")
                         .arg(quoted(prefix)),
                     QStringLiteral("patterns of a table stand without %1").arg(quoted(prefix)));
    }
    if (needsGroup && !pattern.hasGroups()) {
        findings.add(Code::PatternWithoutGroup, places.valueAt(cell),
                     QStringLiteral("the pattern has no group, so the engine passes over the row, "
                                    "even where it matches"),
                     QStringLiteral("put round brackets around a part of it; \"(?<name>...)\" is "
                                    "what the target URL can take up"));
    }
    reportSlow(cell, text);
}

void RowChecker::reportInvalid(Index cell, const QString& text, int offset)
{
    const Pattern pattern = patterns[text];
    const int at = pattern.errorOffset();
    const int shown = std::min(at, std::max(0, text.size() - 1));
    findings.add(Code::InvalidPattern, places.charactersAt(cell, offset + shown, 1),
                 QStringLiteral("the pattern is invalid at character %1: %2; it never matches")
                     .arg(at + 1)
                     .arg(pattern.expression.errorString()),
                 QStringLiteral("a bracket that stands for itself is written \"\\\\(\" or "
                                "\"\\\\[\": in JSON each backslash stands twice"));
}

void RowChecker::reportSlow(Index cell, const QString& text)
{
    const std::optional<QString>& slow = patterns.slowText(text);
    if (slow) {
        findings.add(
            Code::SlowPattern, places.valueAt(cell),
            QStringLiteral("matching %1, of %2 characters, takes more than %3 steps; a write at "
                           "such a URL takes long, and may find no match in the end")
                .arg(quoted(shortened(*slow)), QString::number(slow->size()),
                     QString::number(stepLimit)),
            QStringLiteral("let each character belong to one repetition only: \"[^/]+\" instead of "
                           "\"(.+)+\", and a fixed text between two repetitions"));
    }
}

void RowChecker::checkColumn(Index cell, const QString& text)
{
    const ColumnTarget target = readColumnTarget(text);
    if (!target.complaint.isEmpty()) {
        findings.add(Code::InvalidColumn, places.valueAt(cell),
                     QStringLiteral("%1 names no column: %2; the engine skips the row")
                         .arg(quoted(text), target.complaint),
                     QStringLiteral("as in \"Table[1]\", \"Table[2+1]\" or \"Table[4-1]\"; the "
                                    "first column is 0"));
        return;
    }
    const int behind = text.lastIndexOf(QLatin1Char(']')) + 1;
    if (behind < text.size()) {
        findings.add(
            Code::IgnoredText, places.charactersAt(cell, behind, text.size() - behind),
            QStringLiteral("the engine drops %1 behind the column").arg(quoted(text.mid(behind))),
            QStringLiteral("end the URL with the column"));
    }
}

/// Places in a URL that has none.
void RowChecker::checkPlaces(Index cell, const QString& url)
{
    const QList<int> numbers = parameterPlacesIn(url);
    if (!numbers.isEmpty()) {
        const QString place = QStringLiteral("%") + QString::number(numbers.first());
        findings.add(Code::UnfilledPlace,
                     places.charactersAt(cell, url.indexOf(place), place.size()),
                     QStringLiteral("%1 is not filled by this command; the URL is taken as it is "
                                    "written")
                         .arg(quoted(place)),
                     QStringLiteral("only \"CommandSetUnitByConfigurationParameter\" fills \"%1\" "
                                    "and \"%2\""));
    }
}

void RowChecker::checkTemplate(Index cell, const QString& url)
{
    if (url.isEmpty()) {
        reportEmpty(cell, QStringLiteral("target URL"));
    }
    const QList<int> numbers = parameterPlacesIn(url);
    if (numbers.size() > 2) {
        const QString place = QStringLiteral("%") + QString::number(numbers.at(2));
        findings.add(Code::UnfilledPlace,
                     places.charactersAt(cell, url.indexOf(place), place.size()),
                     QStringLiteral("%1 is not filled: a link has two parameters, which go to the "
                                    "places with the lowest numbers")
                         .arg(quoted(place)),
                     QStringLiteral("write \"%1\" and \"%2\" only, each as often as you like"));
    }
}

/// What a target URL takes from the groups of the pattern beside it.
void RowChecker::checkGroups(const Row& row)
{
    const Index patternCell = row.cell(columns, CellRole::PatternWithGroups);
    const Index urlCell = row.cell(columns, CellRole::TargetUrlByGroups);
    if (patternCell == JsonText::none || urlCell == JsonText::none) {
        return;
    }
    const QString text = textOf(places, patternCell);
    const Pattern pattern = patterns[text];
    if (!pattern.isValid) {
        return;
    }
    QStringList names = pattern.groups;
    names.removeAll(QString());
    QStringList used;
    for (const GroupPlace& place : groupPlacesIn(textOf(places, urlCell))) {
        used.append(place.name);
        if (!names.contains(place.name)) {
            findings.add(
                Code::UnknownGroup, places.charactersAt(urlCell, place.first, place.count),
                QStringLiteral("the pattern has no group %1; its place stays in the URL as it is "
                               "written")
                    .arg(quoted(place.name)),
                names.isEmpty()
                    ? QStringLiteral("name a group of the pattern: \"(?<%1>...)\"").arg(place.name)
                    : didYouMean(place.name, names,
                                 QStringLiteral("the groups are \"%1\"")
                                     .arg(names.join(QStringLiteral("\", \"")))));
        }
    }
    for (const QString& name : names) {
        const int at = text.indexOf(QLatin1Char('<') + name + QLatin1Char('>'));
        if (!used.contains(name) && at >= 0) {
            findings.add(
                Code::UnusedGroup, places.charactersAt(patternCell, at + 1, name.size()),
                QStringLiteral("the target URL has no place for the group %1; what it "
                               "captures is dropped")
                    .arg(quoted(name)),
                QStringLiteral("write \"(?<%1>)\" into the URL, or \"(?:...)\" for a group "
                               "that captures nothing")
                    .arg(name));
        }
    }
}

/// Whether a row holds for whatever another one leaves out.
void RowChecker::checkComparison(const Row& row)
{
    const Index comparatorCell = row.cell(columns, CellRole::Comparator);
    const Index constantCell = row.cell(columns, CellRole::Constant);
    if (comparatorCell == JsonText::none || constantCell == JsonText::none) {
        return;
    }
    const QString comparator = textOf(places, comparatorCell);
    const Comparison own{comparator == QLatin1String("=="), textOf(places, constantCell),
                         places.valueAt(comparatorCell).line};
    if (!own.isEqual && comparator != QLatin1String("!=")) {
        return;
    }
    const QString compared = textOf(places, row.cells.front());
    const QList<Comparison> earlier = comparisons.values(compared);
    const auto other =
        std::find_if(earlier.begin(), earlier.end(), [&](const Comparison& comparison) {
            const bool isSame = comparison.constant == own.constant;
            return own.isEqual != comparison.isEqual ? isSame : !own.isEqual && !isSame;
        });
    if (other != earlier.end()) {
        findings.add(Code::AlwaysHolds, places.valueAt(comparatorCell),
                     QStringLiteral("rows are alternatives, and with line %1 this one leaves no "
                                    "value of %2 out: the condition holds whatever it is")
                         .arg(other->line)
                         .arg(quoted(compared)),
                     QStringLiteral("for \"neither this nor that\" put one switch node behind the "
                                    "other, a condition on each edge"));
    }
    comparisons.insert(compared, own);
}

} // namespace

void checkRows(const Table& table, const DescriptionPlaces& places, Patterns& patterns,
               Findings& findings)
{
    RowChecker checker(table, places, patterns, findings);
    for (const Row& row : table.rows) {
        checker.check(row);
    }
}

QList<GroupPlace> groupPlacesIn(const QString& url)
{
    static const QRegularExpression place(QStringLiteral(R"(\(\?<([^<>()]*)>\))"));
    QList<GroupPlace> found;
    auto matches = place.globalMatch(url);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        found.append({match.captured(1), match.capturedStart(), match.capturedLength()});
    }
    return found;
}

QList<int> parameterPlacesIn(const QString& url)
{
    if (!url.contains(QLatin1Char('%'))) {
        return {};
    }
    static const QRegularExpression place(QStringLiteral("%L?([0-9]{1,2})"));
    QList<int> numbers;
    auto matches = place.globalMatch(url);
    while (matches.hasNext()) {
        const int number = matches.next().captured(1).toInt();
        if (!numbers.contains(number)) {
            numbers.append(number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

} // namespace checker
