#include "hostkit/internal/Bench.h"

#include "host/Array2dDataTypeWrapper.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationDataAndProcessDescriptionAccess.h"
#include "host/PropertyManagerConst.h"

using Access = ConfigurationDataAndProcessDescriptionAccess;
using Definitions = ConfigurationAndProcessDataDefinitions;

namespace hostkit {

namespace {

QString placeOf(const QString& name, bool isProcess)
{
    return (isProcess ? QStringLiteral("the process description \"%1\"")
                      : QStringLiteral("the configuration \"%1\""))
        .arg(name);
}

} // namespace

QString shown(const BaseClassSharedPointer& node)
{
    return node.isNull() ? QStringLiteral("null") : QStringLiteral("a node");
}

QString shown(const QVariant& value)
{
    if (!value.isValid()) {
        return QStringLiteral("an invalid value");
    }
    if (value.userType() == QMetaType::QString) {
        return shown(value.toString());
    }
    return QStringLiteral("%1(%2)").arg(QLatin1String(value.typeName()), value.toString());
}

QString call(const char* function, const QString& argument)
{
    return QStringLiteral("%1(\"%2\")").arg(QLatin1String(function), argument);
}

QString Bench::name(const QString& role) const
{
    QString unique = checkName;
    return unique.replace(QLatin1Char('.'), QLatin1Char('_')) + QLatin1Char('_') + role;
}

QDir Bench::folder(bool isProcess)
{
    const QString base = adapter.basePath();
    return {isProcess ? PropertyManagerConst::getProcessFolderPath(base)
                      : PropertyManagerConst::getConfigurationFolderPath(base)};
}

void Bench::fail(const QString& found)
{
    result.kind = Outcome::Kind::Failed;
    result.found.append(found);
}

void Bench::stop(const QString& found)
{
    fail(found);
    throw Stop();
}

void Bench::skip(const QString& reason)
{
    result.kind = Outcome::Kind::Skipped;
    result.found.append(reason);
    throw Stop();
}

void Bench::refused(const QString& what, int status)
{
    if (status == 0 || status == 1) {
        fail(QStringLiteral("%1 returns %2").arg(what).arg(status));
    }
}

BaseClassSharedPointer Bench::tree(const Leaves& leaves)
{
    BaseClassSharedPointer root = adapter.tree(leaves);
    if (root.isNull()) {
        stop(QStringLiteral("the parser returns null for the adapter's text %1")
                 .arg(adapter.text(leaves)));
    }
    return root;
}

BaseClassSharedPointer Bench::node(const BaseClassSharedPointer& root, const QStringList& path)
{
    const QString url = adapter.url(path);
    BaseClassSharedPointer found = root->getChildData(url);
    if (found.isNull()) {
        stop(call("getChildData", url) + QStringLiteral(" is null"));
    }
    return found;
}

QString Bench::unit(const BaseClassSharedPointer& root, const QStringList& path)
{
    return node(root, path)->getDataProperty(Definitions::getKeyDataPropertyUnitType()).toString();
}

QStringList Bench::columnUnits(const BaseClassSharedPointer& root, const QStringList& path)
{
    const QVariant information =
        node(root, path)->getDataProperty(Definitions::getKeyDataPropertyArrayInformation());
    if (!information.canConvert(QMetaType::QVariantList)) {
        stop(QStringLiteral("the array information of \"%1\" is no list but %2")
                 .arg(adapter.url(path), shown(information)));
    }
    return Array2dDataTypeWrapper({}, information.toList()).getColumnUnitTypes();
}

void Bench::putInstance(const QString& name, bool isProcess, const Leaves& leaves)
{
    adapter.putInstance(name, isProcess, adapter.text(leaves));
    load(name, isProcess);
}

BaseClassSharedPointer Bench::load(const QString& name, bool isProcess)
{
    BaseClassSharedPointer root =
        Access::getParsedConfigurationProcessDescription(folder(isProcess), name, isProcess);
    if (root.isNull()) {
        stop(QStringLiteral("the store returns null for %1").arg(placeOf(name, isProcess)));
    }
    return root;
}

bool Bench::store(const QString& name, bool isProcess, const BaseClassSharedPointer& tree,
                  const QString& originSecond)
{
    return Access::setParsedConfigurationProcessDescription(
        folder(isProcess), QStringLiteral("hostkit"), originSecond, name, tree, isProcess);
}

} // namespace hostkit
