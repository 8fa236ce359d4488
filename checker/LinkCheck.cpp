#include "checker/LinkCheck.h"

#include "Commands/CommandSetUnitPropertiesRegExp.h"
#include "DependencyWalkerDefinitions.h"
#include "checker/ColumnTarget.h"
#include "checker/RowCheck.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QMultiHash>
#include <QSet>

#include <algorithm>
#include <functional>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::Link;
using filehost::json::JsonText;
using Keys = ConfigurationAndProcessDataDefinitions;

namespace {

/// A leaf whose unit a row sets, and for which write; an empty one stands for every write.
struct Target {
    QString url;
    QString writtenUrl;
};

/// A unit that a row sets.
struct SetUnit {
    QString text; ///< of the unit, or the URL of the source whose value it is
    bool isFixed;
};

/// Who sets it, and when.
struct Setting {
    QString writtenUrl;
    SetUnit unit;
    Index cell; ///< of the target
};

QString wordsFor(const SetUnit& unit)
{
    return unit.isFixed ? quoted(unit.text) : QStringLiteral("the value of ") + quoted(unit.text);
}

class LinkChecker {
public:
    LinkChecker(const DescriptionPlaces& places, const LinkedTrees& linked, Patterns& patterns,
                Findings& findings)
        : places(places), link(linked.link), source(linked.source), target(linked.target),
          units(linked.units), patterns(patterns), findings(findings)
    {}

    void check(const Node& node, bool isTopLevel);
    LinkOutline outline() const;

private:
    using Advice = std::function<QString()>;

    void add(Code code, Index cell, const QString& message, const Advice& advice);
    void checkCondition(const Table& condition);
    void checkConstant(const Row& row, const TableDescription& table, const QStringList& urls);
    void checkIsTruth(Index cell, const QString& url, const QVariant& value);
    QStringList matchesOf(const QString& pattern);
    void checkSourceUrl(Index cell, const QString& consequence);
    void checkPattern(Index cell);
    void checkCommands(const Node& node);
    void checkRow(const Table& command, const Row& row);
    QList<Target> targetsOf(const Table& command, const Row& row, Index& cell);
    QList<Target> targetsByGroups(const TableDescription& table, const Row& row, Index cell);
    QList<Target> filledTarget(Index cell);
    void checkTargets(Index cell, const QList<Target>& targets);
    QString adviceOnTarget(Index cell, const QString& missing) const;
    QString firstParameter() const;
    void checkColumn(Index cell, const Row& row, const TableDescription& table);
    void checkUnit(Index cell, const QString& present);
    QString presentUnit(const QString& leaf) const;
    void checkIsUnit(Index parameter, bool isSkipped);
    void noteSetting(const Row& row, const TableDescription& table, Index cell, const Target& set);
    bool areSame(const SetUnit& left, const SetUnit& right);
    SetUnit unitOf(const Row& row, const TableDescription& table, const Target& target) const;

    const DescriptionPlaces& places;
    const Link& link;
    const Tree& source;
    const Tree& target;
    Units* const units;
    Patterns& patterns;
    Findings& findings;
    QMultiHash<QString, Setting> settings; ///< of the command node at hand, by target
    QSet<QString> writtenUrls;             ///< of the source, that any row names or matches
    bool endsProcess = false;
};

bool isUnknown(const QString& unit, Units& units)
{
    return !unit.isEmpty() && !units.isKnown(unit);
}

QString unknownUnitText(const QString& unit)
{
    return QStringLiteral("there is no unit %1; the engine sets it all the same").arg(quoted(unit));
}

QString showsLeaves()
{
    return QStringLiteral("\"unitflow show\" lists the leaves");
}

QString nearestIn(const Tree& tree, const QString& url)
{
    return didYouMean(url, tree.leaves(), showsLeaves());
}

void LinkChecker::add(Code code, Index cell, const QString& message, const Advice& advice)
{
    findings.add(link, code, places.valueAt(cell), message, advice);
}

void LinkChecker::check(const Node& node, bool isTopLevel)
{
    if (node.type == nullptr) {
        return; // the engine looks at nothing in it
    }
    if (!isTopLevel) {
        for (const Table& condition : node.conditions) {
            checkCondition(condition);
        }
    }
    if (node.type->runsCommands) {
        checkCommands(node);
    }
    for (const Node& successor : node.successors) {
        check(successor, false);
    }
}

void LinkChecker::checkCondition(const Table& condition)
{
    const TableDescription& table = condition.type->table;
    const bool hasPatterns = table.columns.first().role == CellRole::Pattern;
    for (const Row& row : condition.rows) {
        const Index cell = row.cells.front();
        const QString text = textOf(places, cell);
        if (hasPatterns) {
            checkPattern(cell);
            const QStringList matches = matchesOf(text);
            writtenUrls += QSet<QString>(matches.begin(), matches.end());
            checkConstant(row, table, matches);
        } else if (!text.startsWith(DependencyWalkerDefinitions::getPrefixRegularExpression())) {
            const bool readsValue = row.cell(table, CellRole::Constant) != JsonText::none;
            if (readsValue || !source.isLeaf(text)) {
                checkSourceUrl(cell, QStringLiteral("the row never holds"));
            }
            writtenUrls.insert(text);
            checkConstant(row, table, {text});
        }
    }
}

/// Whether the constant can be read in the type of any of the values.
void LinkChecker::checkConstant(const Row& row, const TableDescription& table,
                                const QStringList& urls)
{
    const Index cell = row.cell(table, CellRole::Constant);
    if (cell == JsonText::none) {
        return;
    }
    const QVariant constant = places.text().value(cell);
    QString other;
    for (const QString& url : urls) {
        const QVariant value = source.valueAt(url);
        QVariant converted = constant;
        if (!value.isValid()) {
            continue;
        }
        if (converted.convert(value.userType())) {
            checkIsTruth(cell, url, value);
            return;
        }
        other = url;
    }
    if (!other.isNull()) {
        add(Code::ConstantNeverEqual, cell,
            QStringLiteral("the value of %1 is %2, as which the constant cannot be read; they are "
                           "never equal")
                .arg(quoted(other), source.valueAt(other).toString()),
            [] { return QStringLiteral("write a constant of the type that the value has"); });
    }
}

/// Qt takes every text for true but "", "0" and "false". Whether one means that, few texts tell.
void LinkChecker::checkIsTruth(Index cell, const QString& url, const QVariant& value)
{
    static const QStringList asTheyRead{
        QString(),           QStringLiteral("false"), QStringLiteral("true"), QStringLiteral("1"),
        QStringLiteral("0"), QStringLiteral("yes"),   QStringLiteral("on")};
    const QString text = textOf(places, cell);
    if (value.userType() != QMetaType::Bool || places.text().kind(cell) != JsonText::Kind::String ||
        asTheyRead.contains(text.toLower())) {
        return;
    }
    add(Code::TextAsTruth, cell,
        QStringLiteral("%1 is a truth value, beside which the engine reads %2 as %3")
            .arg(quoted(url), quoted(text), QVariant(QVariant(text).toBool()).toString()),
        [] { return QStringLiteral("write true or false, without quotes"); });
}

QStringList LinkChecker::matchesOf(const QString& pattern)
{
    const Pattern compiled = patterns[pattern];
    QStringList matches;
    if (compiled.isValid) {
        for (const QString& url : source.leaves()) {
            if (compiled.findsMatch(url)) {
                matches.append(url);
            }
        }
    }
    return matches;
}

void LinkChecker::checkSourceUrl(Index cell, const QString& consequence)
{
    const QString url = textOf(places, cell);
    if (url.isEmpty() || source.valueAt(url).isValid()) {
        return;
    }
    if (source.isLeaf(url)) {
        add(Code::UnknownSourceUrl, cell,
            QStringLiteral("%1 of the source has no value; as long as it has none, %2")
                .arg(quoted(url), consequence),
            [] { return QStringLiteral("give it a value, or name a leaf that has one"); });
        return;
    }
    const bool isThere = !source.at(url).isNull();
    add(Code::UnknownSourceUrl, cell,
        isThere ? QStringLiteral("%1 of the source is no leaf; %2").arg(quoted(url), consequence)
                : QStringLiteral("the source has no leaf %1; %2").arg(quoted(url), consequence),
        [&] { return nearestIn(source, url); });
}

void LinkChecker::checkPattern(Index cell)
{
    const QString text = textOf(places, cell);
    const bool isPrefixed =
        text.startsWith(DependencyWalkerDefinitions::getPrefixRegularExpression());
    if (patterns[text].isValid && !isPrefixed && matchesOf(text).isEmpty()) {
        add(Code::PatternMatchesNothing, cell,
            QStringLiteral("the pattern matches no leaf of the source"), [&] {
                QString plain = text;
                plain.remove(QLatin1Char('^')).remove(QLatin1Char('$'));
                return didYouMean(plain, source.leaves(),
                                  QStringLiteral("case counts; \"^\" and \"$\" stand for the ends "
                                                 "of the whole URL"));
            });
    }
}

void LinkChecker::checkCommands(const Node& node)
{
    std::vector<const Table*> commands;
    for (const Table& command : node.commands) {
        commands.push_back(&command);
    }
    // As the engine runs them, so that what is said of the last one is right.
    std::sort(commands.begin(), commands.end(), [](const Table* left, const Table* right) {
        return left->type->name < right->type->name;
    });
    settings.clear();
    for (const Table* command : commands) {
        for (const Row& row : command->rows) {
            checkRow(*command, row);
        }
    }
}

void LinkChecker::checkRow(const Table& command, const Row& row)
{
    const TableDescription& table = command.type->table;
    const Index parameter = row.cell(table, CellRole::SourceUrl);
    if (parameter != JsonText::none) {
        checkSourceUrl(parameter, QStringLiteral("the engine skips the row"));
        checkIsUnit(parameter, row.cell(table, CellRole::TargetColumn) != JsonText::none);
    }
    const Index pattern = row.cell(table, CellRole::PatternWithGroups);
    if (pattern != JsonText::none) {
        checkPattern(pattern);
    }
    const Index unit = row.cell(table, CellRole::Unit);
    Index cell = JsonText::none;
    const QList<Target> targets = targetsOf(command, row, cell);
    if (unit != JsonText::none) {
        checkUnit(unit, targets.isEmpty() ? QString() : presentUnit(targets.first().url));
    }
    if (targets.isEmpty()) {
        return;
    }
    checkTargets(cell, targets);
    if (row.cell(table, CellRole::TargetColumn) != JsonText::none) {
        checkColumn(cell, row, table);
    }
    for (const Target& set : targets) {
        noteSetting(row, table, cell, set);
    }
}

/// Whether two units differ in their spelling only.
bool LinkChecker::areSame(const SetUnit& left, const SetUnit& right)
{
    if (left.isFixed != right.isFixed) {
        return false;
    }
    return left.text == right.text ||
           (left.isFixed && units != nullptr && units->areEqual(left.text, right.text));
}

/// The leaves that a row may set, and the cell that names them. None when that cannot be told.
QList<Target> LinkChecker::targetsOf(const Table& command, const Row& row, Index& cell)
{
    const TableDescription& table = command.type->table;
    if ((cell = row.cell(table, CellRole::TargetUrl)) != JsonText::none) {
        const QString url = textOf(places, cell);
        return parameterPlacesIn(url).isEmpty() ? QList<Target>{{firstParameter() + url, {}}}
                                                : QList<Target>(); // told without a link
    }
    if ((cell = row.cell(table, CellRole::TargetUrlTemplate)) != JsonText::none) {
        return filledTarget(cell);
    }
    if ((cell = row.cell(table, CellRole::TargetUrlByGroups)) != JsonText::none) {
        return targetsByGroups(table, row, cell);
    }
    if ((cell = row.cell(table, CellRole::TargetColumn)) != JsonText::none) {
        const QString url = textOf(places, cell);
        const ColumnTarget column = readColumnTarget(url);
        return column.complaint.isEmpty() && parameterPlacesIn(url).isEmpty()
                   ? QList<Target>{{column.arrayUrl, {}}}
                   : QList<Target>();
    }
    return {};
}

QList<Target> LinkChecker::filledTarget(Index cell)
{
    QString url = textOf(places, cell);
    if (url.isEmpty()) {
        return {};
    }
    const QList<int> numbers = parameterPlacesIn(url);
    if (numbers.isEmpty()) {
        return {{url, {}}};
    }
    const bool isText =
        std::all_of(link.parameters.begin(), link.parameters.end(), [](const QVariant& parameter) {
            return parameter.canConvert(QMetaType::QString);
        });
    if (link.parameters.size() != 2 || !isText) {
        const QString place = QStringLiteral("%") + QString::number(numbers.first());
        add(Code::UnfilledPlace, cell,
            QStringLiteral("%1 is only filled by a link with exactly two parameters, and this one "
                           "has %2; the URL is taken as it is written")
                .arg(quoted(place), QString::number(link.parameters.size())),
            [] {
                return QStringLiteral("give the link in links.json two parameters, each a text "
                                      "or a number");
            });
        return {};
    }
    // One after the other: what the first parameter brings along may be filled by the second.
    for (const QVariant& parameter : link.parameters) {
        if (!parameterPlacesIn(url).isEmpty()) {
            url = url.arg(parameter.toString());
        }
    }
    return {{url, {}}};
}

QList<Target> LinkChecker::targetsByGroups(const TableDescription& table, const Row& row,
                                           Index cell)
{
    const Pattern pattern = patterns[textOf(places, row.cell(table, CellRole::PatternWithGroups))];
    QList<Target> targets;
    const QString url = textOf(places, cell);
    const QList<GroupPlace> taken = groupPlacesIn(url);
    const bool isFilled = parameterPlacesIn(url).isEmpty() &&
                          std::all_of(taken.begin(), taken.end(), [&](const GroupPlace& place) {
                              return pattern.groups.contains(place.name);
                          });
    if (!pattern.isValid || !pattern.hasGroups() || !isFilled) {
        return targets; // told without a link
    }
    CommandSetUnitPropertiesRegExp filler({}); // without rows, to fill places as the engine does
    for (const QString& written : source.leaves()) {
        const QRegularExpressionMatch match = pattern.expression.match(written);
        if (match.hasMatch()) {
            targets.append({filler.replaceMatchedGroups(pattern.groups, match, url), written});
            writtenUrls.insert(written);
        }
    }
    return targets;
}

void LinkChecker::checkTargets(Index cell, const QList<Target>& targets)
{
    QStringList missing;
    for (const Target& wanted : targets) {
        if (target.at(wanted.url).isNull() && !missing.contains(wanted.url)) {
            missing.append(wanted.url);
        }
    }
    if (missing.isEmpty()) {
        return;
    }
    const QString first = missing.first();
    const auto advice = [&] { return adviceOnTarget(cell, first); };
    const bool isNoneThere = std::all_of(targets.begin(), targets.end(), [&](const Target& wanted) {
        return missing.contains(wanted.url);
    });
    if (isNoneThere) {
        add(Code::UnknownTargetUrl, cell,
            QStringLiteral("the target has no leaf %1; the engine skips the row")
                .arg(quoted(first)),
            advice);
    } else {
        add(Code::SomeTargetsMissing, cell,
            QStringLiteral("the target has no leaf %1; the engine skips the row when %2 is written")
                .arg(quoted(first),
                     quoted(std::find_if(targets.begin(), targets.end(),
                                         [&](const Target& wanted) { return wanted.url == first; })
                                ->writtenUrl)),
            advice);
    }
}

/// What may have been meant where the target has no such leaf, as it is to be written in the cell.
QString LinkChecker::adviceOnTarget(Index cell, const QString& missing) const
{
    const QString written = textOf(places, cell);
    const QString prefix = firstParameter();
    if (prefix.isEmpty() || missing != prefix + written) {
        return nearestIn(target, missing);
    }
    if (!target.at(prefix + QLatin1Char('/') + written).isNull()) {
        return QStringLiteral("end the parameter of the link with \"/\": %1")
            .arg(quoted(prefix + QLatin1Char('/')));
    }
    QStringList behindPrefix;
    for (const QString& leaf : target.leaves()) {
        if (leaf.startsWith(prefix)) {
            behindPrefix.append(leaf.mid(prefix.size()));
        }
    }
    return behindPrefix.isEmpty()
               ? QStringLiteral("no leaf of the target begins with the parameter of the link, %1")
                     .arg(quoted(prefix))
               : didYouMean(written, behindPrefix, showsLeaves());
}

/// What stands in front of fixed URLs.
QString LinkChecker::firstParameter() const
{
    return link.parameters.isEmpty() ? QString() : link.parameters.first().toString();
}

void LinkChecker::checkColumn(Index cell, const Row& row, const TableDescription& table)
{
    const ColumnTarget column =
        readColumnTarget(textOf(places, row.cell(table, CellRole::TargetColumn)));
    const BaseClassSharedPointer leaf = target.at(column.arrayUrl);
    if (leaf.isNull()) {
        return;
    }
    const QString name = QStringLiteral("%1 of the target").arg(quoted(column.arrayUrl));
    const QVariant columns = leaf->getDataProperty(Keys::getKeyDataPropertyArrayInformation());
    if (leaf->getDataProperty(Keys::getKeyDataPropertyType()).toString() !=
        Keys::getKeyDataTypeArray()) {
        add(Code::NotAnArray, cell,
            QStringLiteral("%1 is no array; the engine skips the row").arg(name), [] {
                return QStringLiteral("give the leaf \"@type\": \"array\" and the "
                                      "\"@arrayInformation\" of its columns");
            });
    } else if (!columns.canConvert(QMetaType::QVariantList)) {
        add(Code::NotAnArray, cell,
            QStringLiteral("%1 has no description of its columns; the engine skips the row")
                .arg(name),
            [] {
                return QStringLiteral("give the leaf the \"@arrayInformation\" of its columns");
            });
    } else if (column.column >= columns.toList().size()) {
        endsProcess = true;
        add(Code::ColumnOutOfRange, cell,
            QStringLiteral("%1 has %2 columns, so there is no column %3; the engine ends the "
                           "process when it writes there")
                .arg(name, QString::number(columns.toList().size()),
                     QString::number(column.column)),
            [&] {
                return QStringLiteral("the columns are 0 to %1").arg(columns.toList().size() - 1);
            });
    }
}

/// `present` is the unit of a leaf that the row sets.
void LinkChecker::checkUnit(Index cell, const QString& present)
{
    const QString text = textOf(places, cell);
    if (units != nullptr && isUnknown(text, *units)) {
        add(Code::UnknownUnit, cell, unknownUnitText(text),
            [&] { return adviceOnUnit(text, present, *units); });
    }
}

/// Empty when the leaf has none, or is not there.
QString LinkChecker::presentUnit(const QString& leaf) const
{
    const BaseClassSharedPointer node = target.at(leaf);
    return node.isNull() ? QString()
                         : node->getDataProperty(Keys::getKeyDataPropertyUnitType()).toString();
}

/// Whether the value that is to be a unit could be one.
void LinkChecker::checkIsUnit(Index parameter, bool isSkipped)
{
    const QString url = textOf(places, parameter);
    const QVariant value = source.valueAt(url);
    if (value.isValid() && !value.canConvert(QMetaType::QString)) {
        add(Code::UnknownUnit, parameter,
            QStringLiteral("the value of %1 is a list or a map, which is no unit; the engine %2")
                .arg(quoted(url), isSkipped ? QStringLiteral("skips the row")
                                            : QStringLiteral("sets it all the same")),
            [] { return QStringLiteral("name a leaf whose value is a unit"); });
    }
}

LinkOutline LinkChecker::outline() const
{
    QStringList urls(writtenUrls.begin(), writtenUrls.end());
    std::sort(urls.begin(), urls.end());
    if (urls.isEmpty() || !urls.first().isEmpty()) {
        urls.prepend(QString());
    }
    return {urls, endsProcess};
}

/// Empty when the row sets none.
SetUnit LinkChecker::unitOf(const Row& row, const TableDescription& table,
                            const Target& target) const
{
    const Index unit = row.cell(table, CellRole::Unit);
    if (unit != JsonText::none) {
        return {textOf(places, unit), true};
    }
    const Index parameter = row.cell(table, CellRole::SourceUrl);
    const QString url = parameter == JsonText::none ? target.writtenUrl : textOf(places, parameter);
    return {source.valueAt(url).canConvert(QMetaType::QString) ? url : QString(), false};
}

void LinkChecker::noteSetting(const Row& row, const TableDescription& table, Index cell,
                              const Target& set)
{
    const SetUnit unit = unitOf(row, table, set);
    if (unit.text.isEmpty() || target.at(set.url).isNull()) {
        return;
    }
    const bool hasColumn = row.cell(table, CellRole::TargetColumn) != JsonText::none;
    const QString leaf =
        hasColumn ? QStringLiteral("%1[%2]").arg(
                        set.url, QString::number(readColumnTarget(textOf(places, cell)).column))
                  : set.url;
    for (auto known = settings.constFind(leaf); known != settings.cend() && known.key() == leaf;
         ++known) {
        const bool isSameWrite = known->writtenUrl.isEmpty() || set.writtenUrl.isEmpty() ||
                                 known->writtenUrl == set.writtenUrl;
        if (isSameWrite && !areSame(known->unit, unit)) {
            add(Code::ConflictingUnits, cell,
                QStringLiteral("this row sets the unit of %1 to %2, after line %3 set it to %4 in "
                               "the same write; the last one counts")
                    .arg(quoted(leaf), wordsFor(unit),
                         QString::number(places.valueAt(known->cell).line), wordsFor(known->unit)),
                [] {
                    return QStringLiteral("remove one of the two rows, or put them behind "
                                          "different conditions");
                });
            break;
        }
    }
    settings.insert(leaf, {set.writtenUrl, unit, cell});
}

} // namespace

LinkOutline checkLink(const std::vector<Node>& nodes, const DescriptionPlaces& places,
                      const LinkedTrees& linked, Patterns& patterns, Findings& findings)
{
    LinkChecker checker(places, linked, patterns, findings);
    for (const Node& node : nodes) {
        checker.check(node, true);
    }
    return checker.outline();
}

ParameterUse parameterUse(const std::vector<Node>& nodes, const DescriptionPlaces& places)
{
    ParameterUse use;
    for (const Node& node : nodes) {
        for (const Table& command : node.commands) {
            for (const Row& row : command.rows) {
                const Index filled = row.cell(command.type->table, CellRole::TargetUrlTemplate);
                use.takesFirst |=
                    row.cell(command.type->table, CellRole::TargetUrl) != JsonText::none;
                use.takesTwo |= filled != JsonText::none &&
                                !parameterPlacesIn(textOf(places, filled)).isEmpty();
            }
        }
        const ParameterUse below = parameterUse(node.successors, places);
        use.takesFirst |= below.takesFirst;
        use.takesTwo |= below.takesTwo;
    }
    return use;
}

void checkFixedUnits(const std::vector<Node>& nodes, const DescriptionPlaces& places, Units& units,
                     Findings& findings)
{
    for (const Node& node : nodes) {
        if (node.type == nullptr) {
            continue; // the engine looks at nothing in it
        }
        for (const Table& command :
             node.type->runsCommands ? node.commands : std::vector<Table>()) {
            for (const Row& row : command.rows) {
                const Index cell = row.cell(command.type->table, CellRole::Unit);
                const QString text = cell == JsonText::none ? QString() : textOf(places, cell);
                if (isUnknown(text, units)) {
                    findings.add(Code::UnknownUnit, places.valueAt(cell), unknownUnitText(text),
                                 adviceOnUnit(text, {}, units));
                }
            }
        }
        checkFixedUnits(node.successors, places, units, findings);
    }
}

QString adviceOnUnit(const QString& text, const QString& present, Units& units)
{
    const QString nearest = units.nearest(text, present);
    return nearest.isEmpty()
               ? QStringLiteral("if it is a unit, list it in units.json")
               : QStringLiteral(
                     "did you mean %1? If it is a unit of its own, list it in units.json")
                     .arg(quoted(nearest));
}

} // namespace checker
