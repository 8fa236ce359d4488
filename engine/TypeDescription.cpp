#include "TypeDescription.h"

#include "internal/Types.h"

#include <algorithm>

const QList<int>* TableDescription::layoutFor(int cellCount) const
{
    const auto layout =
        std::find_if(layouts.cbegin(), layouts.cend(),
                     [&](const QList<int>& candidate) { return candidate.size() == cellCount; });
    if (layout != layouts.cend()) {
        return &*layout;
    }
    return skipsOtherLengths ? nullptr : &layouts.first();
}

TableDescription::RowFate TableDescription::fateOf(int cellCount) const
{
    const QList<int>* layout = layoutFor(cellCount);
    if (layout == nullptr) {
        return RowFate::Skipped;
    }
    if (layout->size() > cellCount) {
        return RowFate::Fatal;
    }
    return layout->size() < cellCount ? RowFate::Truncated : RowFate::Kept;
}

QList<int> TableDescription::keptRows(const QVariantList& rows) const
{
    QList<int> kept;
    for (int row = 0; row < rows.size(); ++row) {
        if (rows.at(row).canConvert(QMetaType::QVariantList) &&
            layoutFor(rows.at(row).toList().size()) != nullptr) {
            kept.append(row);
        }
    }
    return kept;
}

QList<TypeDescription> TypeCatalog::types(TypeDescription::Kind kind)
{
    QList<TypeDescription> types;
    for (const internal::RegisteredType& type : internal::registeredTypes()) {
        if (type.description.kind == kind) {
            types.append(type.description);
        }
    }
    return types;
}

const TypeDescription* TypeCatalog::find(TypeDescription::Kind kind, const QString& name)
{
    for (const internal::RegisteredType& type : internal::registeredTypes()) {
        if (type.description.kind == kind && type.description.name == name) {
            return &type.description;
        }
    }
    return nullptr;
}

namespace internal {

std::deque<RegisteredType>& registeredTypes()
{
    static std::deque<RegisteredType> types;
    return types;
}

ColumnDescription watchedPatternColumn()
{
    return {QStringLiteral("pattern"),
            QStringLiteral("a regular expression that is searched in the written URL"),
            CellRole::Pattern};
}

ColumnDescription patternWithGroupsColumn()
{
    return {QStringLiteral("pattern"),
            QStringLiteral("a regular expression that is searched in the written URL; without a "
                           "group the row never applies"),
            CellRole::PatternWithGroups};
}

ColumnDescription targetUrlByGroupsColumn()
{
    return {QStringLiteral("target URL"),
            QStringLiteral("the leaf of the target that gets the unit; (?<name>) stands for what "
                           "the group of that name captured"),
            CellRole::TargetUrlByGroups};
}

ColumnDescription parameterUrlColumn()
{
    return {QStringLiteral("parameter URL"),
            QStringLiteral("the leaf of the source whose value becomes the unit"),
            CellRole::SourceUrl};
}

ColumnDescription unitColumn()
{
    return {QStringLiteral("unit"), QStringLiteral("the unit; without one the row does nothing"),
            CellRole::Unit};
}

ColumnDescription remarkColumn()
{
    return {QStringLiteral("remark"), QStringLiteral("for readers, without effect"),
            CellRole::Remark};
}

QString typeName(const std::type_info& type)
{
    for (const RegisteredType& registered : registeredTypes()) {
        if (registered.type == type) {
            return registered.description.name;
        }
    }
    return {};
}

} // namespace internal
