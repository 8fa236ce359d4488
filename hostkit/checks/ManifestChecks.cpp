#include "SourceDependencyManager.h"
#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"

#include <QJsonObject>

namespace hostkit {

namespace {

QJsonObject entry(const QString& name, bool isSource)
{
    return {{"instanceName", name},
            {ConfigurationAndProcessDataDefinitions::getKeyDataPropertyHasDependency(), isSource}};
}

QString timeKey()
{
    return SystemInformationManagerRegistryDefinitions::getKeyLastModified();
}

/// As the engine does it; the result.
bool update(Bench& bench, const QString& name, const QString& time)
{
    return bench.host().manifestHandler().update(name, timeKey(), QVariant(time), false);
}

/// The sources that a scan of the manifest finds.
QStringList scannedSources(Bench& bench)
{
    SourceDependencyManager manager;
    if (!manager.scanManifestFileForDependencyInstances(bench.folder(false))) {
        bench.stop("the scan of the manifest returns false");
    }
    return manager.getDependencySourceInstanceList();
}

void updateReachesTheFile(Bench& bench)
{
    bench.host().putManifest({entry("Controller", true), entry("Display", false)});
    const QString time = QStringLiteral("2031-05-06T07:08:09.010Z");
    bench.equal(call("update", "Display"), update(bench, "Display", time), true);
    bench.host().manifestHandler().writeToManifestFile();
    bench.equal("time in the manifest", bench.host().manifestValue("Display", timeKey()).toString(),
                time);
}

void laterUpdateWins(Bench& bench)
{
    bench.host().putManifest({entry("Controller", true)});
    update(bench, "Controller", "2031-05-06T07:08:09.010Z");
    update(bench, "Controller", "2031-05-06T07:08:09.011Z");
    bench.host().manifestHandler().writeToManifestFile();
    bench.equal("time in the manifest",
                bench.host().manifestValue("Controller", timeKey()).toString(),
                QStringLiteral("2031-05-06T07:08:09.011Z"));
}

void updateTellsTheTruth(Bench& bench)
{
    bench.host().putManifest({entry("Controller", true)});
    const QString time = QStringLiteral("2031-05-06T07:08:09.010Z");
    const bool updated = update(bench, "Stranger", time);
    bench.host().manifestHandler().writeToManifestFile();
    const QString found = bench.host().manifestValue("Stranger", timeKey()).toString();
    bench.equal(QStringLiteral("time in the manifest after update returned %1")
                    .arg(updated ? "true" : "false"),
                found, updated ? time : QString(""));
}

void writingKeepsSources(Bench& bench)
{
    bench.host().putManifest(
        {entry("Recorder", true), entry("Display", false), entry("Controller", true)});
    bench.equal("sources before", scannedSources(bench), {"Recorder", "Controller"});
    update(bench, "Controller", "2031-05-06T07:08:09.010Z");
    update(bench, "Display", "2031-05-06T07:08:09.010Z");
    bench.host().manifestHandler().writeToManifestFile();
    bench.equal("sources afterwards", scannedSources(bench), {"Recorder", "Controller"});
}

} // namespace

QList<Check> manifestChecks()
{
    return {
        {"manifest.update_is_there_after_writing",
         "After update returned true and writeToManifestFile was called, the instance's entry in "
         "the manifest has the value.",
         "The manifest would keep the time before the resolution, or the engine would warn of an "
         "error that is none.",
         updateReachesTheFile},
        {"manifest.later_update_wins", "Of two updates of one instance the later one stays.",
         "The engine passes on every modification in the register's order: the manifest would "
         "keep the time of an earlier one.",
         laterUpdateWins},
        {"manifest.update_of_an_unknown_instance_tells_the_truth",
         "When an instance has no entry yet, update either returns true and the manifest then has "
         "one, or returns false and it has none.",
         "The engine warns of exactly those updates that return false: one that is lost would go "
         "unnoticed.",
         updateTellsTheTruth},
        {"manifest.writing_keeps_the_flagged_sources",
         "Updating times and writing the manifest keeps its entries, their flags and their order.",
         "The next scan would miss sources, and their writes would no longer be followed.",
         writingKeepsSources},
    };
}

} // namespace hostkit
