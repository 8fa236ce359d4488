#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/JsonDataIterator.h"
#include "host/JsonDataIteratorFilter.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"

#include <QJsonDocument>

namespace hostkit {

namespace {

QString instanceNameKey()
{
    return QStringLiteral("instanceName");
}

QString flagKey()
{
    return ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency();
}

QJsonObject entry(const QString& name, bool flag)
{
    return {{instanceNameKey(), name}, {flagKey(), flag}};
}

QString text(const QJsonArray& array)
{
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

/// Notes the names of the objects that it is shown.
class NameNoter : public JsonDataIteratorObjectBase {
public:
    void visitObject(const QJsonObject& object) override
    {
        names.append(object.value(instanceNameKey()));
    }
    QJsonValue getResult() const override { return names; }

private:
    QJsonArray names;
};

QJsonValue iterated(JsonDataIteratorObjectBase& visitor, QJsonArray array)
{
    JsonDataIterator iterator(visitor);
    iterator.iterate(array);
    return iterator.getResult();
}

/// What the filter that the engine uses collects.
QJsonValue flaggedNames(const QJsonArray& array)
{
    JsonDataIteratorFilter filter(instanceNameKey(), {{flagKey(), true}}, true);
    return iterated(filter, array);
}

void expectNames(Bench& bench, const QJsonValue& found, const QJsonArray& wanted)
{
    if (!found.isArray()) {
        bench.stop(QStringLiteral("the result is no array but %1").arg(shown(found)));
    }
    bench.equal("result", text(found.toArray()), text(wanted));
}

} // namespace

QList<Check> jsonChecks()
{
    return {
        {"json.iterator_shows_each_object_to_its_visitor",
         "JsonDataIterator shows the visitor each object of the array once, in order, and returns "
         "the visitor's result.",
         "The scan of the manifest would miss sources, or list them twice or in another order.",
         [](Bench& bench) {
             NameNoter noter;
             expectNames(bench,
                         iterated(noter, {entry("C", false), entry("A", true), entry("B", true)}),
                         {"C", "A", "B"});
         }},
        {"json.filter_collects_the_values_of_matching_objects_in_order",
         "JsonDataIteratorFilter collects the value under the result key of each object that "
         "passes, as it stands and in the order met.",
         "Sources would be missing from the scan, or come in another order than in the manifest.",
         [](Bench& bench) {
             const QJsonObject numbered = {{instanceNameKey(), 5}, {flagKey(), true}};
             expectNames(bench, flaggedNames({entry("B", true), numbered, entry("A", true)}),
                         {"B", 5, "A"});
         }},
        {"json.filter_leaves_out_objects_whose_flag_is_false",
         "An object whose property is false does not pass a filter for true.",
         "Instances that drive nothing would count as sources.",
         [](Bench& bench) {
             expectNames(bench, flaggedNames({entry("A", false), entry("B", true)}), {"B"});
         }},
        {"json.filter_leaves_out_objects_without_the_flag",
         "An object without a property that the filter names does not pass.",
         "Instances that drive nothing would count as sources.",
         [](Bench& bench) {
             const QJsonObject bare = {{instanceNameKey(), "A"}};
             expectNames(bench, flaggedNames({bare, entry("B", true)}), {"B"});
         }},
        {"json.filter_wants_every_pair",
         "An object passes only when its properties equal every pair of the filter.",
         "Objects that match one of several wishes would be collected as well.",
         [](Bench& bench) {
             JsonDataIteratorFilter filter(
                 instanceNameKey(), {{flagKey(), true}, {"kind", QStringLiteral("oven")}}, true);
             QJsonObject oven = entry("B", true);
             oven.insert("kind", "oven");
             QJsonObject unflagged = entry("C", false);
             unflagged.insert("kind", "oven");
             expectNames(bench, iterated(filter, {entry("A", true), oven, unflagged}), {"B"});
         }},
        {"json.result_without_a_match_is_an_empty_array",
         "The result is an array, also when no object passes and when there is none at all.",
         "The engine writes the warning \"Json value is not an array!\" for a manifest in which "
         "nothing is wrong.",
         [](Bench& bench) {
             expectNames(bench, flaggedNames({entry("A", false)}), {});
             expectNames(bench, flaggedNames({}), {});
         }},
    };
}

} // namespace hostkit
