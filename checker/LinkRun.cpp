#include "checker/LinkRun.h"

#include "DependencyWalkerDefinitions.h"
#include "TraversalObserver.h"
#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QSet>
#include <QtGlobal>

#include <algorithm>
#include <utility>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::json::JsonText;
using Keys = ConfigurationAndProcessDataDefinitions;

namespace {

/// Drops what is logged as long as it lives.
class Silence {
public:
    Silence()
        : before(
              qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}))
    {}
    ~Silence() { qInstallMessageHandler(before); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    QtMessageHandler before;
};

void collectNames(const std::vector<Node>& nodes, const Node* above, const JsonText& text,
                  NodesByName& names)
{
    for (const Node& node : nodes) {
        names.insert({above, text.key(node.member)}, &node);
        collectNames(node.successors, &node, text, names);
    }
}

/// The cell of a condition below a node that holds a pattern, with the prefix or without.
Index cellOfPattern(const Node& node, const QString& pattern, const DescriptionPlaces& places)
{
    const QString prefixed = DependencyWalkerDefinitions::getPrefixRegularExpression() + pattern;
    for (const Node& successor : node.successors) {
        for (const Table& condition : successor.conditions) {
            for (const Row& row : condition.rows) {
                const QString text = textOf(places, row.cells.front());
                const bool hasPatterns =
                    condition.type->table.columns.first().role == CellRole::Pattern;
                if (text == (hasPatterns ? pattern : prefixed)) {
                    return row.cells.front();
                }
            }
        }
        const Index below = cellOfPattern(successor, pattern, places);
        if (below != JsonText::none) {
            return below;
        }
    }
    return JsonText::none;
}

/// A row that set a unit.
struct Setting {
    const Node* node;
    const TableDescription* table;
    const Row* row;
    QString unit;

    Index cell(CellRole role) const { return row->cell(*table, role); }
    /// The first of some cells that the row has.
    Index firstCell(std::initializer_list<CellRole> roles) const
    {
        for (const CellRole role : roles) {
            const Index found = cell(role);
            if (found != JsonText::none) {
                return found;
            }
        }
        return JsonText::none;
    }
    Index targetCell() const
    {
        return firstCell({CellRole::TargetUrl, CellRole::TargetUrlTemplate,
                          CellRole::TargetUrlByGroups, CellRole::TargetColumn});
    }
    Index unitCell() const
    {
        return firstCell({CellRole::Unit, CellRole::SourceUrl, CellRole::PatternWithGroups});
    }
};

/// Follows the engine through the description, and judges each unit that it sets.
class UnitObserver final : public TraversalObserver {
public:
    UnitObserver(const NodesByName& nodes, const DescriptionPlaces& places,
                 const LinkedTrees& linked, Findings& findings)
        : nodes(nodes), places(places), linked(linked), findings(findings)
    {}

    void traversalStarted(const QString& url) override;
    void nodeSelected(const SelectedNode& node) override;
    void nodeEntered(const TraversalObserver::Node& node) override;
    void nodeLeft(const TraversalObserver::Node& node, bool outcome) override;
    void commandStarted(const Command& started) override;
    void commandRowExecuted(const CommandRow& row) override;

private:
    void checkKnown(const Setting& setting, const CommandRow& row);
    void checkEmpty(const Setting& setting, const CommandRow& row, const QString& leaf);
    void checkDimension(const Setting& setting, const CommandRow& row, const QString& leaf);
    void checkConflict(const Setting& setting, const QString& leaf);
    QString presentUnit(const CommandRow& row) const;
    bool isNew(Code code, const QString& what);

    const NodesByName& nodes;
    const DescriptionPlaces& places;
    const LinkedTrees& linked;
    Findings& findings;

    QString writtenUrl;
    std::vector<const checker::Node*> entered;
    const Table* command = nullptr;
    QHash<QString, QString> selected; ///< nodes of this write, and the first pattern of each
    QHash<QString, Setting> settings; ///< of this write, by leaf
    QHash<const Row*, QPair<QString, QString>> judged; ///< by row, the last leaf and unit
    QSet<QString> told;                                ///< of any write
};

void UnitObserver::traversalStarted(const QString& url)
{
    writtenUrl = url;
    entered.clear();
    selected.clear();
    settings.clear();
}

/// That a node watches a URL and has a pattern that matches it shows without running.
void UnitObserver::nodeSelected(const SelectedNode& node)
{
    if (node.selection == Selection::Unconditional) {
        return;
    }
    const bool isPattern = node.selection == Selection::Pattern;
    const auto first = selected.constFind(node.name);
    if (first == selected.cend()) {
        selected.insert(node.name, isPattern ? node.watched : QString());
        return;
    }
    if (!isPattern || first->isEmpty() || !isNew(Code::RunsTwice, node.name + node.watched)) {
        return;
    }
    const Index cell = cellOfPattern(*nodes.value({nullptr, node.name}), node.watched, places);
    findings.add(linked.link, Code::RunsTwice, places.valueAt(cell),
                 QStringLiteral("the top-level node %1 has the pattern %2, too, which also matches "
                                "%3; a write there runs it twice")
                     .arg(quoted(node.name), quoted(*first), quoted(writtenUrl)),
                 [] {
                     return QStringLiteral("let one of the two not match it, or join them into one "
                                           "pattern");
                 });
}

void UnitObserver::nodeEntered(const TraversalObserver::Node& node)
{
    const checker::Node* const above = entered.empty() ? nullptr : entered.back();
    entered.push_back(nodes.value({above, node.name}));
}

void UnitObserver::nodeLeft(const TraversalObserver::Node& /*node*/, bool /*outcome*/)
{
    entered.pop_back();
}

void UnitObserver::commandStarted(const Command& started)
{
    const std::vector<Table>& commands = entered.back()->commands;
    command = &*std::find_if(commands.begin(), commands.end(),
                             [&](const Table& table) { return table.type->name == started.type; });
}

void UnitObserver::commandRowExecuted(const CommandRow& row)
{
    const QString unit = row.unit.toString();
    if (row.outcome != RowOutcome::Changed && row.outcome != RowOutcome::Unchanged) {
        return;
    }
    const Setting setting{entered.back(), &command->type->table,
                          &command->rows[static_cast<std::size_t>(row.row)], unit};
    const QString leaf =
        row.column < 0 ? row.targetUrl
                       : QStringLiteral("%1[%2]").arg(row.targetUrl, QString::number(row.column));
    if (unit.isEmpty()) {
        checkEmpty(setting, row, leaf);
        return;
    }
    checkConflict(setting, leaf);
    settings.insert(leaf, setting);
    // A row that runs for every write mostly does the same.
    const QPair<QString, QString> done{leaf, unit};
    if (std::exchange(judged[setting.row], done) == done) {
        return;
    }
    if (linked.units->isKnown(unit)) {
        checkDimension(setting, row, leaf);
    } else {
        checkKnown(setting, row);
    }
}

/// Whether this was not found for another write.
bool UnitObserver::isNew(Code code, const QString& what)
{
    const QString key = QStringLiteral("%1 %2").arg(static_cast<int>(code)).arg(what);
    if (told.contains(key)) {
        return false;
    }
    told.insert(key);
    return true;
}

/// Many rows may take one value: it is told at the first of them.
void UnitObserver::checkKnown(const Setting& setting, const CommandRow& row)
{
    if (setting.cell(CellRole::Unit) != JsonText::none) {
        return; // judged whether the row runs or not
    }
    const Index parameter = setting.cell(CellRole::SourceUrl);
    const QString url = parameter == JsonText::none ? writtenUrl : textOf(places, parameter);
    if (isNew(Code::UnknownUnit, url)) {
        findings.add(linked.link, Code::UnknownUnit, places.valueAt(setting.unitCell()),
                     QStringLiteral("the value of %1 is %2, which is no unit; the engine sets it "
                                    "all the same")
                         .arg(quoted(url), quoted(setting.unit)),
                     [&] { return adviceOnUnit(setting.unit, presentUnit(row), *linked.units); });
    }
}

/// The engine skips an empty unit that stands in a row, but not one that it takes from the source.
void UnitObserver::checkEmpty(const Setting& setting, const CommandRow& row, const QString& leaf)
{
    const Index parameter = setting.cell(CellRole::SourceUrl);
    const QString url = parameter == JsonText::none ? writtenUrl : textOf(places, parameter);
    const QString present = presentUnit(row);
    if (present.isEmpty() || !isNew(Code::EmptyUnit, url)) {
        return;
    }
    findings.add(linked.link, Code::EmptyUnit, places.valueAt(setting.unitCell()),
                 QStringLiteral("the value of %1 is empty, so the engine takes its present unit %2 "
                                "from %3")
                     .arg(quoted(url), quoted(present), quoted(leaf)),
                 [] { return QStringLiteral("write a unit there, \"1\" for a plain number"); });
}

QString UnitObserver::presentUnit(const CommandRow& row) const
{
    const BaseClassSharedPointer leaf = linked.target.at(row.targetUrl);
    if (row.column < 0) {
        return leaf->getDataProperty(Keys::getKeyDataPropertyUnitType()).toString();
    }
    const QVariant columns = leaf->getDataProperty(Keys::getKeyDataPropertyArrayInformation());
    return Array2dDataTypeWrapper({}, columns.toList()).getColumnUnitTypes().value(row.column);
}

void UnitObserver::checkDimension(const Setting& setting, const CommandRow& row,
                                  const QString& leaf)
{
    Units& units = *linked.units;
    const QString present = presentUnit(row);
    if (!units.isKnown(present) || units.areConvertible(present, setting.unit) ||
        !isNew(Code::OtherDimension,
               QStringLiteral("%1 %2 %3").arg(setting.unitCell()).arg(leaf, setting.unit))) {
        return;
    }
    findings.add(linked.link, Code::OtherDimension, places.valueAt(setting.unitCell()),
                 QStringLiteral("this sets the unit of %1 to %2 (%3), which cannot be converted to "
                                "its present unit %4 (%5)")
                     .arg(quoted(leaf), quoted(setting.unit), units.kindOf(setting.unit),
                          quoted(present), units.kindOf(present)),
                 [] {
                     return QStringLiteral("check that the row names the leaf and the unit that "
                                           "were meant");
                 });
}

/// Two rows of one node are judged whether the node runs or not.
void UnitObserver::checkConflict(const Setting& setting, const QString& leaf)
{
    const auto earlier = settings.constFind(leaf);
    const Index cell = setting.targetCell();
    if (earlier == settings.cend() || earlier->node == setting.node ||
        earlier->unit == setting.unit || linked.units->areEqual(earlier->unit, setting.unit) ||
        !isNew(Code::ConflictingUnits,
               QStringLiteral("%1 %2 %3").arg(cell).arg(earlier->targetCell()).arg(leaf))) {
        return;
    }
    findings.add(linked.link, Code::ConflictingUnits, places.valueAt(cell),
                 QStringLiteral("this row sets the unit of %1 to %2 %3, after line %4 set it to %5 "
                                "in the same write; the last one counts")
                     .arg(quoted(leaf), quoted(setting.unit),
                          writtenUrl.isEmpty()
                              ? QStringLiteral("whatever is written")
                              : QStringLiteral("when %1 is written").arg(quoted(writtenUrl)),
                          QString::number(places.valueAt(earlier->targetCell()).line),
                          quoted(earlier->unit)),
                 [] {
                     return QStringLiteral("remove one of the two rows, or put them behind "
                                           "conditions that exclude each other");
                 });
}

} // namespace

LinkRun::LinkRun(const std::vector<Node>& nodes, const DescriptionPlaces& places,
                 const BaseClassSharedPointer& description)
    : places(places)
{
    const Silence silence;
    walker.initDependencyGraph(description);
    collectNames(nodes, nullptr, places.text(), this->nodes);
}

void LinkRun::check(const LinkedTrees& linked, const BaseClassSharedPointer& scratch,
                    const QStringList& writtenUrls, Findings& findings)
{
    const Silence silence;
    UnitObserver observer(nodes, places, linked, findings);
    const TraversalObservation observation(observer);
    for (const QString& url : writtenUrls) {
        QVariantList results;
        walker.traverseDependencyGraph(url, linked.source.root(), scratch, results,
                                       linked.link.parameters, {});
    }
}

} // namespace checker
