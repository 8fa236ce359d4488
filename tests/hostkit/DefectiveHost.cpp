#include "DefectiveHost.h"

#include "LeafJson.h"
#include "ManifestFile.h"
#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/ConfigurationAndProcessDataTools.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/ConfigurationModificationHandler.h"
#include "host/JsonDataIterator.h"
#include "host/JsonDataIteratorFilter.h"
#include "host/PropertyManagerConst.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace defective {

namespace {

class Node;

struct State {
    Defect defect = Defect::None;
    QHash<QString, BaseClassSharedPointer> trees;
    QHash<QString, QString> descriptions;
    QString lastDescription;
    QList<ModifiedInstanceItem> modifications;
    QHash<QString, BaseClassSharedPointer> parsed; // by text
    Node* lastArray = nullptr;                     // whose columns were read last
    int registerReads = 0;
};

State state;

bool has(Defect defect)
{
    return state.defect == defect;
}

constexpr int changed = 0;
constexpr int unchanged = 1;
constexpr int notWritten = 2;

const QString separator = QStringLiteral("::");
const QString valueProperty = QStringLiteral("$value");
const QString unitProperty = QStringLiteral("$unit");
const QString typeProperty = QStringLiteral("$type");

QString columnsProperty()
{
    return has(Defect::KeyIsEmpty) ? QString("") : QStringLiteral("$columns");
}

class Node final : public ConfigurationAndProcessDataBase {
public:
    explicit Node(const QJsonObject& json)
    {
        for (auto member = json.begin(); member != json.end(); ++member) {
            if (!member.key().startsWith('$')) {
                children.insert(member.key(), make(member.value().toObject()));
            } else if (member.key() == QStringLiteral("$columns")) {
                properties.insert(columnsProperty(), member.value().toVariant());
            } else {
                properties.insert(member.key(), read(member.value()));
            }
        }
        valueAtStart = properties.value(valueProperty);
    }

    static BaseClassSharedPointer make(const QJsonObject& json)
    {
        return BaseClassSharedPointer(new Node(json));
    }

    BaseClassSharedPointer copy() const
    {
        const auto twin = QSharedPointer<Node>::create(QJsonObject());
        twin->properties = properties;
        twin->valueAtStart = valueAtStart;
        for (auto child = children.begin(); child != children.end(); ++child) {
            twin->children.insert(child.key(), static_cast<const Node&>(**child).copy());
        }
        return twin;
    }

    const QHash<QString, BaseClassSharedPointer>& shownChildren() const
    {
        if (has(Defect::ChildMapHoldsGrandchildren)) {
            shown = children;
            for (const BaseClassSharedPointer& child : children) {
                const auto& grandchildren = static_cast<const Node&>(*child).children;
                for (auto entry = grandchildren.begin(); entry != grandchildren.end(); ++entry) {
                    shown.insert(entry.key(), entry.value());
                }
            }
            return shown;
        }
        if (has(Defect::ChildMapHoldsCopies)) {
            shown.clear();
            for (auto child = children.begin(); child != children.end(); ++child) {
                shown.insert(child.key(), static_cast<const Node&>(**child).copy());
            }
            return shown;
        }
        return children;
    }

    /// The node at a URL without a leading separator. `lastOnTheWay` finds that instead of null.
    BaseClassSharedPointer find(const QString& url, bool lastOnTheWay = false) const
    {
        BaseClassSharedPointer child = children.value(url.section(separator, 0, 0));
        const QString rest = url.section(separator, 1);
        if (child.isNull() || rest.isEmpty()) {
            return child;
        }
        const BaseClassSharedPointer found =
            static_cast<const Node&>(*child).find(rest, lastOnTheWay);
        return found.isNull() && lastOnTheWay ? child : found;
    }

    BaseClassSharedPointer getChildData(const QString& url) override
    {
        if (has(Defect::ChildDataWantsLeadingSeparator)) {
            return url.startsWith(separator) ? find(url.mid(separator.size())) : nullptr;
        }
        if (has(Defect::ChildDataIsShallow)) {
            return children.value(url);
        }
        const BaseClassSharedPointer found = find(url, has(Defect::ChildDataFallsBack));
        return has(Defect::ChildDataReturnsCopies) && !found.isNull()
                   ? static_cast<const Node&>(*found).copy()
                   : found;
    }

    bool hasChildData(const QString& url) override
    {
        if (has(Defect::ChildDataWantsLeadingSeparator) || has(Defect::ChildDataIsShallow)) {
            return !getChildData(url).isNull();
        }
        return !has(Defect::HasChildDataIsFalse) && !find(url).isNull();
    }

    QVariant getDataProperty(const QString& key) override
    {
        if (key == columnsProperty()) {
            state.lastArray = this;
        }
        if (has(Defect::EveryLeafIsAnArray) && key == typeProperty) {
            return QStringLiteral("array");
        }
        if (has(Defect::MissingPropertyIsEmptyText) && !properties.contains(key)) {
            return QString("");
        }
        return properties.value(key);
    }

    int setDataProperty(const QString& key, const QVariant& value) override
    {
        if (key == unitProperty && !value.canConvert(QMetaType::QString)) {
            return has(Defect::RefusalReturns1) ? unchanged : notWritten;
        }
        const QVariant before = properties.value(key);
        if (before.userType() == value.userType() && before == value) {
            return has(Defect::SameWriteReturns0) && key == unitProperty ? changed : unchanged;
        }
        if (has(Defect::NumberWritesAreLost) && key == unitProperty &&
            value.userType() != QMetaType::QString) {
            return changed;
        }
        if (has(Defect::WriteClearsOtherProperties) && key == unitProperty) {
            properties.clear();
        }
        properties.insert(key, value);
        if (key != unitProperty) {
            return changed;
        }
        return (has(Defect::FirstWriteReturns1) && !before.isValid()) ||
                       (has(Defect::ChangingWriteReturns1) && before.isValid())
                   ? unchanged
                   : changed;
    }

    QVariant value() const
    {
        return has(Defect::ValueIsThatOfTheStart) ? valueAtStart : properties.value(valueProperty);
    }

    QHash<QString, BaseClassSharedPointer> children;
    QHash<QString, QVariant> properties;

private:
    static QVariant read(const QJsonValue& json)
    {
        if (has(Defect::BooleansBecomeWords) && json.isBool()) {
            return json.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
        }
        return json.toVariant();
    }

    QVariant valueAtStart;
    mutable QHash<QString, BaseClassSharedPointer> shown; // for defects
};

Node& asNode(const BaseClassSharedPointer& node)
{
    return static_cast<Node&>(*node);
}

QString key(const QDir& folder, const QString& name, bool isProcess)
{
    const bool inProcessFolder = isProcess && !has(Defect::ProcessFlagIsIgnored);
    return (inProcessFolder ? QStringLiteral("process ") : QStringLiteral("configuration ")) +
           (has(Defect::ProcessFlagIsIgnored) ? QString() : folder.path()) + name;
}

void dropUnits(Node& node)
{
    node.properties.remove(unitProperty);
    for (const BaseClassSharedPointer& child : qAsConst(node.children)) {
        dropUnits(asNode(child));
    }
}

} // namespace

} // namespace defective

// The host's classes are global, and every one of them needs most of the defects.
using namespace defective; // NOLINT(google-build-using-namespace)

const QHash<QString, BaseClassSharedPointer>& ConfigurationAndProcessDataBase::getChildMap() const
{
    return static_cast<const Node&>(*this).shownChildren();
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue()
{
    return valueProperty;
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType()
{
    return unitProperty;
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyType()
{
    return typeProperty;
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataTypeArray()
{
    return has(Defect::ArrayTypeIsAnotherText) ? QStringLiteral("matrix") : QStringLiteral("array");
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyArrayInformation()
{
    return columnsProperty();
}

QString ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency()
{
    return QStringLiteral("isSource");
}

QString SystemInformationManagerRegistryDefinitions::getKeyLastModified()
{
    return has(Defect::TimeKeyIsFlagKey) ? QStringLiteral("isSource") : QStringLiteral("modified");
}

QString PropertyManagerConst::getConfigurationFolderPath(const QString& basePath)
{
    return basePath + QStringLiteral("/configurations");
}

QString PropertyManagerConst::getProcessFolderPath(const QString& basePath)
{
    return basePath + QStringLiteral("/processes");
}

QString PropertyManagerConst::getDependencyFolderPath(const QString& basePath)
{
    return basePath + QStringLiteral("/dependencies");
}

QString PropertyManagerConst::getConfigFileExtension()
{
    return QStringLiteral("tree");
}

QString PropertyManagerConst::getConfigurationManifestFilename()
{
    return has(Defect::ManifestNameHasFolder) ? QStringLiteral("./manifest")
                                              : QStringLiteral("manifest");
}

QVariant ConfigurationAndProcessDataTools::extractConfigValue(const QString& url,
                                                              const BaseClassSharedPointer& root)
{
    const bool leading = has(Defect::ChildDataWantsLeadingSeparator);
    const QString plainUrl = leading && url.startsWith(separator) ? url.mid(2) : url;
    const BaseClassSharedPointer leaf = has(Defect::ValueIsLookedUpShallow)
                                            ? asNode(root).children.value(plainUrl)
                                            : asNode(root).find(plainUrl);
    if (leaf.isNull()) {
        return has(Defect::ValueOfNothingIsEmptyText) ? QVariant(QString("")) : QVariant();
    }
    const QVariant value = asNode(leaf).value();
    return has(Defect::ValueOfBareNodeIsEmptyText) && !value.isValid() ? QVariant(QString(""))
                                                                       : value;
}

ConfigurationAndProcessDataParser::ConfigurationAndProcessDataParser() = default;
ConfigurationAndProcessDataParser::~ConfigurationAndProcessDataParser() = default;

BaseClassSharedPointer
ConfigurationAndProcessDataParser::parseFromJson(const QString& json,
                                                 const QString& /*fileExtension*/) const
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (has(Defect::ParserReturnsNull) ||
        (!document.isObject() && !has(Defect::BrokenTextIsAnEmptyTree))) {
        return {};
    }
    BaseClassSharedPointer& kept = state.parsed[json];
    if (kept.isNull() || !has(Defect::ParserKeepsTrees)) {
        kept = Node::make(document.object());
    }
    return kept;
}

class ArrayDataTypeWrapper::Private {
public:
    QVariantList rows;
    QVariantList columns;
};

ArrayDataTypeWrapper::ArrayDataTypeWrapper(const QVariantList& value,
                                           const QVariantList& arrayInformation)
    : d(new Private{value, arrayInformation})
{}

ArrayDataTypeWrapper::~ArrayDataTypeWrapper() = default;

namespace {

QVariantList padded(const QVariantList& rows)
{
    int width = 0;
    for (const QVariant& row : rows) {
        width = std::max(width, row.toList().size());
    }
    QVariantList result;
    for (const QVariant& row : rows) {
        QVariantList cells = row.toList();
        while (cells.size() < width) {
            cells.append(QString());
        }
        result.append(QVariant(cells));
    }
    return result;
}

QVariantList flattened(QVariantList rows)
{
    for (QVariant& row : rows) {
        row = row.toList().size() == 1 ? row.toList().first() : row;
    }
    return rows;
}

QVariantList withoutBooleans(QVariantList rows)
{
    for (QVariant& row : rows) {
        QVariantList cells = row.toList();
        for (QVariant& cell : cells) {
            cell = cell.userType() == QMetaType::Bool ? QVariant() : cell;
        }
        row = cells;
    }
    return rows;
}

} // namespace

QVariantList ArrayDataTypeWrapper::getArrayValueContent() const
{
    switch (state.defect) {
    case Defect::RowsAreReversed:
        return {d->rows.rbegin(), d->rows.rend()};
    case Defect::RowsArePadded:
        return padded(d->rows);
    case Defect::RowsOfOneCellAreFlat:
        return flattened(d->rows);
    case Defect::BooleanCellsAreLost:
        return withoutBooleans(d->rows);
    case Defect::EmptyTableHasARow:
        return d->rows.isEmpty() ? QVariantList{QVariant(QVariantList())} : d->rows;
    default:
        return d->rows;
    }
}

int ArrayDataTypeWrapper::setArrayInfoWithStatus(const BaseClassSharedPointer& root,
                                                 const QString& url)
{
    const BaseClassSharedPointer leaf = root->getChildData(url);
    if (leaf.isNull()) {
        return has(Defect::ColumnWriteToNowhereReturns0) ? changed : notWritten;
    }
    const int status = leaf->setDataProperty(columnsProperty(), d->columns);
    if (has(Defect::ColumnWriteEmptiesRows)) {
        leaf->setDataProperty(valueProperty, d->rows);
    }
    if (has(Defect::ColumnWriteReturns1) && status == changed) {
        return unchanged;
    }
    return has(Defect::SameColumnWriteReturns0) ? changed : status;
}

Array2dDataTypeWrapper::Array2dDataTypeWrapper(const QVariantList& value,
                                               const QVariantList& arrayInformation)
    : ArrayDataTypeWrapper(value, arrayInformation)
{}

Array2dDataTypeWrapper::~Array2dDataTypeWrapper() = default;

QStringList Array2dDataTypeWrapper::getColumnUnitTypes() const
{
    QStringList units = QVariant(d->columns).toStringList();
    if (has(Defect::ColumnUnitsAreReversed)) {
        std::reverse(units.begin(), units.end());
    }
    if (has(Defect::ColumnsWithoutUnitAreDropped)) {
        units.removeAll(QString(""));
    }
    return units;
}

bool Array2dDataTypeWrapper::setColumnUnitTypes(const QStringList& unitTypes)
{
    if (has(Defect::ColumnUnitsAreRefused)) {
        return false;
    }
    d->columns = QVariant(unitTypes).toList();
    if (has(Defect::ColumnUnitsAreReversed)) {
        std::reverse(d->columns.begin(), d->columns.end());
    }
    if (has(Defect::ColumnUnitsAreWrittenAtOnce)) {
        state.lastArray->setDataProperty(columnsProperty(), d->columns);
    }
    return true;
}

QString ConfigurationDataAndProcessDescriptionAccess::getDependency(const QDir& dependencyFolder,
                                                                    const QString& dependencyName)
{
    const QString text = state.descriptions.value(
        dependencyFolder.filePath(dependencyName),
        has(Defect::UnknownDescriptionIsTheLastOne) ? state.lastDescription : QString());
    return has(Defect::DescriptionIsCutOff) ? text.left(text.size() / 2) : text;
}

BaseClassSharedPointer
ConfigurationDataAndProcessDescriptionAccess::getParsedConfigurationProcessDescription(
    const QDir& folder, const QString& instanceName, bool isProcess)
{
    BaseClassSharedPointer tree = state.trees.value(key(folder, instanceName, isProcess));
    if (tree.isNull()) {
        return has(Defect::UnknownInstanceIsAnEmptyTree) ? Node::make({}) : tree;
    }
    if (has(Defect::TreesAreHandedOutLive)) {
        return tree;
    }
    BaseClassSharedPointer copy = asNode(tree).copy();
    if (has(Defect::InstancesLoseTheirUnits)) {
        dropUnits(asNode(copy));
    }
    return copy;
}

// NOLINTBEGIN(performance-unnecessary-value-param): the header is the engine's
bool ConfigurationDataAndProcessDescriptionAccess::setParsedConfigurationProcessDescription(
    const QDir& folder, const QString& originFirst, const QString& originSecond,
    const QString& instanceName, BaseClassSharedPointer tree, bool isProcess)
// NOLINTEND(performance-unnecessary-value-param)
{
    if (tree.isNull()) {
        if (has(Defect::NullTreeThrows)) {
            throw std::invalid_argument("no tree to store");
        }
        if (has(Defect::NullTreeStopsTheProcess)) {
            qFatal("no tree to store");
        }
        return false;
    }
    if (has(Defect::StoringFails)) {
        return false;
    }
    if (!has(Defect::StoringIsLost)) {
        state.trees.insert(key(folder, instanceName, isProcess), asNode(tree).copy());
    }
    if (has(Defect::StoringAProcessStoresTheConfiguration) && isProcess) {
        const QDir configurations(folder.filePath(QStringLiteral("../configurations")));
        state.trees.insert(key(QDir(QDir::cleanPath(configurations.path())), instanceName, false),
                           tree);
    }
    if (isProcess && has(Defect::ProcessesAreNotRegistered)) {
        return true;
    }
    const QString time = has(Defect::TimesAreEmpty)
                             ? QString()
                             : QStringLiteral("day %1").arg(state.modifications.size());
    ModifiedInstanceItem item{originFirst, originSecond, instanceName, time};
    if (has(Defect::OriginsAreSwapped)) {
        std::swap(item.originFirst, item.originSecond);
    }
    state.modifications.append(item);
    if (has(Defect::LastOriginIsThatOfAll)) {
        for (ModifiedInstanceItem& earlier : state.modifications) {
            earlier.originSecond = originSecond;
        }
    }
    return true;
}

ConfigurationModificationHandler* ConfigurationModificationHandler::getInstance()
{
    static std::array<ConfigurationModificationHandler, 2> handlers;
    ++state.registerReads;
    return &handlers.at(has(Defect::RegisterIsAnotherOneEachTime) ? state.registerReads % 2 : 0);
}

void ConfigurationModificationHandler::getModifiedInstances(
    QList<ModifiedInstanceItem>& items) const
{
    items = state.modifications;
    if (has(Defect::RegisterIsBackwards)) {
        std::reverse(items.begin(), items.end());
    }
    if (has(Defect::RegisterIsEmptiedByReading)) {
        state.modifications.clear();
    }
}

class JsonDataIterator::Private {
public:
    JsonDataIteratorObjectBase& visitor;
};

JsonDataIterator::JsonDataIterator(JsonDataIteratorObjectBase& visitor) : d(new Private{visitor}) {}

JsonDataIterator::~JsonDataIterator() = default;

void JsonDataIterator::iterate(QJsonArray& array)
{
    for (int i = 0; i < array.size(); ++i) {
        const int place = has(Defect::IterationIsBackwards) ? array.size() - 1 - i : i;
        d->visitor.visitObject(array.at(place).toObject());
    }
}

QJsonValue JsonDataIterator::getResult() const
{
    return d->visitor.getResult();
}

class JsonDataIteratorFilter::Private {
public:
    QString resultKey;
    QJsonObject filter;
    QJsonArray found;
};

JsonDataIteratorFilter::JsonDataIteratorFilter(const QString& resultKey,
                                               const QHash<QString, QVariant>& filter,
                                               bool /*flag*/)
    : d(new Private{resultKey, QJsonObject::fromVariantHash(filter), {}})
{}

JsonDataIteratorFilter::~JsonDataIteratorFilter() = default;

void JsonDataIteratorFilter::visitObject(const QJsonObject& object)
{
    int matches = 0;
    for (auto pair = d->filter.constBegin(); pair != d->filter.constEnd(); ++pair) {
        const QJsonValue value = object.value(pair.key());
        if (value == pair.value() || (has(Defect::FilterTakesFalseForTrue) && value.isBool()) ||
            (has(Defect::FilterTakesAbsentForTrue) && value.isUndefined())) {
            ++matches;
        }
    }
    const QJsonValue result = object.value(d->resultKey);
    const int wanted = has(Defect::FilterWantsAnyPair) ? 1 : d->filter.size();
    if (matches >= wanted && !(has(Defect::FilterCollectsTextsOnly) && !result.isString())) {
        d->found.append(result);
    }
}

QJsonValue JsonDataIteratorFilter::getResult() const
{
    return has(Defect::NothingFoundIsNull) && d->found.isEmpty() ? QJsonValue()
                                                                 : QJsonValue(d->found);
}

namespace defective {

namespace {

class Manifest final : public ManifestFile {
public:
    using ManifestFile::ManifestFile;

    bool update(const QString& instanceName, const QString& propertyKey, const QVariant& value,
                bool flag) override
    {
        if (has(Defect::FirstUpdateWins) && hasProperty(instanceName, propertyKey)) {
            return true;
        }
        const bool updated = ManifestFile::update(instanceName, propertyKey, value, flag);
        return (updated || has(Defect::UpdateOfUnknownIsLost)) && !has(Defect::UpdateReturnsFalse);
    }

    bool writeToManifestFile() override
    {
        if (has(Defect::ManifestIsNotWritten)) {
            return true;
        }
        if (has(Defect::WritingDropsFlags)) {
            for (QJsonValueRef entry : entries()) {
                QJsonObject properties = QJsonValue(entry).toObject();
                properties.remove(QStringLiteral("isSource"));
                entry = properties;
            }
        }
        return ManifestFile::writeToManifestFile();
    }

private:
    bool hasProperty(const QString& instanceName, const QString& propertyKey)
    {
        return std::any_of(entries().begin(), entries().end(), [&](const QJsonValue& entry) {
            const QJsonObject properties = entry.toObject();
            return properties.value(QStringLiteral("instanceName")) == instanceName &&
                   properties.contains(propertyKey);
        });
    }
};

class Adapter final : public hostkit::Adapter {
public:
    QString basePath() override { return base.path(); }

    QString url(const QStringList& path) override
    {
        const QString joined = path.join(separator);
        return has(Defect::ChildDataWantsLeadingSeparator) ? separator + joined : joined;
    }

    QString text(const hostkit::Leaves& leaves) override
    {
        return leavesAsJson(leaves, [](const hostkit::Leaf& leaf) {
            QJsonObject json;
            if (leaf.value.isValid()) {
                json.insert(valueProperty, QJsonValue::fromVariant(leaf.value));
            }
            if (!leaf.unit.isNull()) {
                json.insert(unitProperty, leaf.unit);
            }
            if (!leaf.columnUnits.isEmpty()) {
                json.insert(typeProperty, QStringLiteral("array"));
                json.insert(QStringLiteral("$columns"),
                            QJsonArray::fromStringList(leaf.columnUnits));
            }
            return json;
        });
    }

    // Without the parser, so that a defect of the parser is one of the parser alone.
    BaseClassSharedPointer tree(const hostkit::Leaves& leaves) override
    {
        return Node::make(QJsonDocument::fromJson(text(leaves).toUtf8()).object());
    }

    void putInstance(const QString& name, bool isProcess, const QString& text) override
    {
        const QDir folder(isProcess
                              ? PropertyManagerConst::getProcessFolderPath(base.path())
                              : PropertyManagerConst::getConfigurationFolderPath(base.path()));
        state.trees.insert(key(folder, name, isProcess),
                           Node::make(QJsonDocument::fromJson(text.toUtf8()).object()));
    }

    void putDescription(const QString& name, const QString& text) override
    {
        const QDir folder(PropertyManagerConst::getDependencyFolderPath(base.path()));
        state.descriptions.insert(folder.filePath(name), text);
        state.lastDescription = text;
    }

    ConfigurationManifestHandler& manifestHandler() override { return manifest; }

    QVariant refusedUnit() override { return QVariantList{1, 2}; }

private:
    QTemporaryDir base;
    Manifest manifest{base.path()};
};

} // namespace

void start(Defect defect)
{
    state = State();
    state.defect = defect;
}

std::unique_ptr<hostkit::Adapter> makeAdapter()
{
    return std::make_unique<Adapter>();
}

} // namespace defective
