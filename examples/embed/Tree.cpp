#include "Tree.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

using Definitions = ConfigurationAndProcessDataDefinitions;

// The engine's base class keeps no data, so that every host can keep its children as it likes. All
// nodes of this process are of one class, so the cast cannot fail.
const QHash<QString, BaseClassSharedPointer>& ConfigurationAndProcessDataBase::getChildMap() const
{
    return static_cast<const Tree&>(*this).getChildren();
}

Tree::Tree(const QJsonValue& json)
{
    if (!json.isObject()) {
        properties.insert(Definitions::getKeyDataPropertyValue(), json.toVariant());
        return;
    }
    const QJsonObject object = json.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key().startsWith('@')) {
            properties.insert(member.key(), member.value().toVariant());
        } else {
            children.insert(member.key(), BaseClassSharedPointer(new Tree(member.value())));
        }
    }
}

BaseClassSharedPointer Tree::copy() const
{
    const QSharedPointer<Tree> twin(new Tree);
    twin->properties = properties;
    for (auto child = children.begin(); child != children.end(); ++child) {
        twin->children.insert(child.key(), static_cast<const Tree&>(**child).copy());
    }
    return twin;
}

// The engine asks for the children of descriptions by plain names ("Type", "Next", "Commands", ...)
// and for leaves by URL. A name without a separator is both.
BaseClassSharedPointer Tree::getChildData(const QString& url)
{
    const BaseClassSharedPointer child = children.value(url.section('.', 0, 0));
    const QString rest = url.section('.', 1);
    return child.isNull() || rest.isEmpty() ? child : child->getChildData(rest);
}

bool Tree::hasChildData(const QString& url)
{
    return !getChildData(url).isNull();
}

// QHash gives an invalid QVariant for a key that it does not have, which is what the engine takes
// for "no such property". A valid but empty one would be taken for a value.
QVariant Tree::getDataProperty(const QString& key)
{
    return properties.value(key);
}

int Tree::setDataProperty(const QString& key, const QVariant& value)
{
    if (key == Definitions::getKeyDataPropertyUnitType() && !value.canConvert(QMetaType::QString)) {
        return NotWritten; // a list is no unit
    }
    QVariant& property = properties[key];
    // QVariant finds 5 and "5" equal; to this application they differ.
    if (property.userType() == value.userType() && property == value) {
        return AcceptedUnchanged;
    }
    property = value;
    return WrittenAndChanged;
}
