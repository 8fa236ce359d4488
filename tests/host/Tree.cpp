#include "Tree.h"

#include "Host.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <stdexcept>

namespace testhost {
namespace {

void fill(Node& node, const QJsonObject& object)
{
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.key().startsWith('@')) {
            node.setProperty(member.key(), member.value().toVariant());
            continue;
        }
        const NodePointer child = node.addChild(member.key());
        if (member.value().isObject()) {
            fill(*child, member.value().toObject());
        } else {
            child->setProperty(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(),
                               member.value().toVariant());
        }
    }
}

bool sameValue(const QVariant& left, const QVariant& right)
{
    return left.userType() == right.userType() && left == right;
}

} // namespace

NodePointer tree(const QString& label, const QString& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject()) {
        return {};
    }
    auto root = NodePointer::create(label);
    fill(*root, document.object());
    return root;
}

NodePointer table(const QString& rows)
{
    return tree(
        QStringLiteral("description"),
        '{' +
            QStringLiteral("\"%1\": %2")
                .arg(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyValue(), rows) +
            '}');
}

QString describe(const QVariant& value)
{
    if (!value.isValid()) {
        return QStringLiteral("invalid");
    }
    if (value.userType() == QMetaType::QString) {
        return '\'' + value.toString() + '\'';
    }
    if (value.userType() == QMetaType::QVariantList) {
        QStringList items;
        for (const QVariant& item : value.toList()) {
            items.append(describe(item));
        }
        return '[' + items.join(QStringLiteral(", ")) + ']';
    }
    return QString::fromLatin1(value.typeName()) + '(' + value.toString() + ')';
}

QString where(const ConfigurationAndProcessDataBase* node)
{
    return node == nullptr ? QStringLiteral("null") : dynamic_cast<const Node*>(node)->place();
}

Node::Node(const QString& place) : ownPlace(place) {}

BaseClassSharedPointer Node::getChildData(const QString& url)
{
    BaseClassSharedPointer child = find(url);
    Host::current().record(QStringLiteral("getChildData(%1, %2)").arg(ownPlace, url));
    return child;
}

bool Node::hasChildData(const QString& url)
{
    const bool has = !find(url).isNull();
    Host::current().record(QStringLiteral("hasChildData(%1, %2)").arg(ownPlace, url));
    return has;
}

QVariant Node::getDataProperty(const QString& key)
{
    QVariant value = property(key);
    Host::current().record(QStringLiteral("getDataProperty(%1, %2)").arg(ownPlace, key));
    return value;
}

int Node::setDataProperty(const QString& key, const QVariant& value)
{
    const int status = write(key, value);
    Host::current().record(QStringLiteral("setDataProperty(%1, %2, %3) -> %4")
                               .arg(ownPlace, key, describe(value), QString::number(status)));
    return status;
}

int Node::write(const QString& key, const QVariant& value)
{
    const int truth = sameValue(property(key), value) ? 1 : 0;
    const int status = nextStatuses.isEmpty() ? truth : nextStatuses.takeFirst();
    if (status == 0) {
        setProperty(key, value);
    }
    return status;
}

BaseClassSharedPointer Node::find(const QString& url) const
{
    if (children.contains(url)) {
        return children.value(url);
    }
    const int separator = url.indexOf('/');
    if (separator < 0) {
        return {};
    }
    const BaseClassSharedPointer child = children.value(url.left(separator));
    return child.isNull() ? child : dynamic_cast<const Node&>(*child).find(url.mid(separator + 1));
}

Node& Node::at(const QString& url) const
{
    const BaseClassSharedPointer node = find(url);
    if (node.isNull()) {
        throw std::out_of_range((ownPlace + " holds no " + url).toStdString());
    }
    return dynamic_cast<Node&>(*node);
}

NodePointer Node::copy() const
{
    auto twin = NodePointer::create(ownPlace);
    twin->properties = properties;
    for (auto child = children.cbegin(); child != children.cend(); ++child) {
        twin->setChild(child.key(), static_cast<const Node&>(**child).copy());
    }
    return twin;
}

NodePointer Node::addChild(const QString& name)
{
    auto child = NodePointer::create(ownPlace + '/' + name);
    children.insert(name, child);
    return child;
}

void Node::setChild(const QString& name, const BaseClassSharedPointer& child)
{
    children.insert(name, child);
}

void Node::removeChild(const QString& name)
{
    children.remove(name);
}

QVariant Node::property(const QString& key) const
{
    return properties.value(key);
}

void Node::setProperty(const QString& key, const QVariant& value)
{
    properties[key] = value;
}

QVariant Node::unit() const
{
    return property(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType());
}

void Node::answerWritesWith(const QList<int>& statuses)
{
    nextStatuses = statuses;
}

} // namespace testhost

const QHash<QString, BaseClassSharedPointer>& ConfigurationAndProcessDataBase::getChildMap() const
{
    const auto& node = dynamic_cast<const testhost::Node&>(*this);
    testhost::Host::current().record(QStringLiteral("getChildMap(%1)").arg(node.place()));
    return node.children;
}
