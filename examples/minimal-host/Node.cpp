#include "Node.h"

#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QJsonObject>

namespace {

constexpr int writtenAndChanged = 0;
constexpr int acceptedUnchanged = 1;

} // namespace

// The engine's own base class holds nothing: where the children are is for the host to say.
const QHash<QString, BaseClassSharedPointer>& ConfigurationAndProcessDataBase::getChildMap() const
{
    return dynamic_cast<const Node&>(*this).getChildren();
}

Node::Node(const QJsonValue& json)
{
    if (!json.isObject()) {
        properties.insert(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(),
                          json.toVariant());
        return;
    }
    const QJsonObject object = json.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key().startsWith(QLatin1Char('@'))) {
            properties.insert(member.key(), member.value().toVariant());
        } else {
            children.insert(member.key(), BaseClassSharedPointer(new Node(member.value())));
        }
    }
}

BaseClassSharedPointer Node::getChildData(const QString& url)
{
    const QString name = url.section(QLatin1Char('/'), 0, 0);
    const QString rest = url.section(QLatin1Char('/'), 1);
    const BaseClassSharedPointer child = children.value(name);
    return child.isNull() || rest.isEmpty() ? child : child->getChildData(rest);
}

bool Node::hasChildData(const QString& url)
{
    return !getChildData(url).isNull();
}

QVariant Node::getDataProperty(const QString& key)
{
    return properties.value(key);
}

int Node::setDataProperty(const QString& key, const QVariant& value)
{
    QVariant& property = properties[key];
    if (property == value) {
        return acceptedUnchanged;
    }
    property = value;
    return writtenAndChanged;
}
