#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationModificationHandler.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

#include <QThread>

namespace hostkit {

namespace {

QList<ModifiedInstanceItem> modifications()
{
    QList<ModifiedInstanceItem> items;
    ConfigurationModificationHandler::getInstance()->getModifiedInstances(items);
    return items;
}

/// The pairs of the kit's origins under which the register lists an instance, each once. Whoever
/// put the instance there may be listed as well.
QStringList entriesOf(const QString& name)
{
    QStringList entries;
    for (const ModifiedInstanceItem& item : modifications()) {
        if (item.instanceName == name && item.originFirst == "hostkit") {
            entries.append(item.originFirst + ' ' + item.originSecond);
        }
    }
    entries.removeDuplicates();
    return entries;
}

/// The times of an instance's modifications under the kit's origins, in the register's order.
QStringList timesOf(const QString& name)
{
    QStringList times;
    for (const ModifiedInstanceItem& item : modifications()) {
        if (item.instanceName == name && item.originFirst == "hostkit") {
            times.append(item.modificationTime);
        }
    }
    return times;
}

/// Gives the leaf of an instance another unit and stores it on behalf of `originSecond`.
void change(Bench& bench, const QString& name, bool isProcess, const QString& unit,
            const QString& originSecond)
{
    const BaseClassSharedPointer root = bench.load(name, isProcess);
    bench.node(root, {"Leaf"})
        ->setDataProperty(ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType(),
                          unit);
    if (!bench.store(name, isProcess, root, originSecond)) {
        bench.stop(call("setParsedConfigurationProcessDescription", name) + " returns false");
    }
}

/// A new instance that `originSecond` changed and stored.
QString storeChanged(Bench& bench, bool isProcess, const QString& originSecond)
{
    QString name = bench.name(originSecond + (isProcess ? "Process" : "Configuration"));
    bench.putInstance(name, isProcess, {unitLeaf({"Leaf"}, "K")});
    change(bench, name, isProcess, "°F", originSecond);
    return name;
}

void expectEntry(Bench& bench, const QString& name, const QString& entry)
{
    const QStringList entries = entriesOf(name);
    if (!entries.contains(entry)) {
        bench.fail(QStringLiteral("origins listed for \"%1\": %2 without \"%3\"")
                       .arg(name, shown(entries), entry));
    }
}

void originsAreKeptApart(Bench& bench)
{
    const QString ofOne = storeChanged(bench, false, "one");
    const QString ofOther = storeChanged(bench, false, "other");
    bench.equal(QStringLiteral("origins listed for \"%1\"").arg(ofOne), entriesOf(ofOne),
                {"hostkit one"});
    bench.equal(QStringLiteral("origins listed for \"%1\"").arg(ofOther), entriesOf(ofOther),
                {"hostkit other"});
}

void timesAreGiven(Bench& bench)
{
    const QString name = storeChanged(bench, false, "timed");
    for (const ModifiedInstanceItem& item : modifications()) {
        if (item.instanceName == name && item.modificationTime.isEmpty()) {
            bench.fail(QStringLiteral("the modification time of \"%1\" is empty").arg(name));
        }
    }
}

void laterModificationsStandBehind(Bench& bench)
{
    const QString name = storeChanged(bench, false, "again");
    const QString earlier = timesOf(name).value(0);
    QThread::msleep(20); // for registers that keep times to the millisecond
    change(bench, name, false, "bar", "again");
    const QStringList times = timesOf(name);
    // A register may forget the earlier one, and coarse times may be the same.
    if (times.count(earlier) < times.size() && times.constLast() == earlier) {
        bench.fail(QStringLiteral("times listed for \"%1\": %2, the earlier one last")
                       .arg(name, shown(times)));
    }
}

} // namespace

QList<Check> registerChecks()
{
    return {
        {"register.is_always_the_same_and_never_null",
         "ConfigurationModificationHandler::getInstance returns the one register of the process.",
         "The engine uses what it gets: a null register ends the process, and a second one does "
         "not list what the first was told.",
         [](Bench& bench) {
             const ConfigurationModificationHandler* first =
                 ConfigurationModificationHandler::getInstance();
             if (first == nullptr) {
                 bench.stop("getInstance() is null");
             }
             if (ConfigurationModificationHandler::getInstance() != first) {
                 bench.fail("getInstance() returns another one the second time");
             }
         }},
        {"register.lists_a_stored_configuration_under_its_origins",
         "After a changed configuration was stored, the register lists its name with the first "
         "and the second origin that were given to the store.",
         "The manifest update takes only what both origins of its resolver stand for: the "
         "manifest would keep the old time.",
         [](Bench& bench) {
             expectEntry(bench, storeChanged(bench, false, "stored"), "hostkit stored");
         }},
        {"register.lists_a_stored_process_description_under_its_origins",
         "After a changed process description was stored, the register lists its name with the "
         "first and the second origin that were given to the store.",
         "The manifest update takes only what both origins of its resolver stand for: the "
         "manifest would keep the old time.",
         [](Bench& bench) {
             expectEntry(bench, storeChanged(bench, true, "stored"), "hostkit stored");
         }},
        {"register.keeps_origins_apart",
         "An instance is listed under the origins that stored it and no others.",
         "A resolver would write times into the manifest for instances that another one changed.",
         originsAreKeptApart},
        {"register.gives_every_modification_a_time",
         "The modification time of an instance in the register is not empty.",
         "The manifest update would write an empty time over the last one.", timesAreGiven},
        {"register.lists_later_modifications_behind_earlier_ones",
         "Of two modifications of one instance the register lists the later one behind the earlier "
         "one, or alone.",
         "The engine passes them on in the register's order: the manifest would keep the earlier "
         "time.",
         laterModificationsStandBehind},
        {"register.is_not_emptied_by_reading",
         "Reading the register twice gives the same instances.",
         "Of two resolvers only the first to update the manifest would find its instances.",
         [](Bench& bench) {
             const QString name = storeChanged(bench, false, "twice");
             const QStringList first = entriesOf(name);
             const QStringList second = entriesOf(name);
             bench.equal("second reading", second, first);
         }},
    };
}

} // namespace hostkit
