#include "DependencyResolverBaseClass.h"
#include "host/SystemInformationManagerRegistryDefinitions.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Story.h"

#include <QJsonObject>
#include <QRegularExpression>

namespace hostkit {

namespace {

/// The successor of that name of the node at `path`.
QStringList next(const QStringList& path, const char* name)
{
    return path + QStringList{"Next", QString::fromLatin1(name)};
}

/// A condition of the edge to the node at `path`.
Leaf condition(const QStringList& path, const char* type, const QVariantList& rows)
{
    return valueLeaf(path + QStringList(QString::fromLatin1(type)), rows);
}

/// A URL with "(?<group>.+)" for the name `placeholder`, as a pattern for the whole URL.
QString patternOf(const QString& url, const QString& placeholder)
{
    QString pattern = QRegularExpression::escape(url);
    pattern.replace(placeholder, QStringLiteral("(?<%1>.+)").arg(placeholder));
    return '^' + pattern + '$';
}

/// A URL with a reference to the group of that name.
QString templateOf(QString url, const QString& placeholder)
{
    return url.replace(placeholder, QStringLiteral("(?<%1>)").arg(placeholder));
}

/// Two leaves that stand for a display.
Leaves display()
{
    return {unitLeaf({"Zone", "Actual"}, "°C"), unitLeaf({"Zone", "Limit"}, "bar")};
}

/// A switch node "Watch" with one successor, the command node "Set".
Leaves switchAndCommand()
{
    return {node({"Watch"}, "SwitchNode"), node(next({"Watch"}, "Set"), "CommandNode")};
}

void fixedUnits(Bench& bench)
{
    const QString actual = bench.host().url({"Zone", "Actual"});
    const QString limit = bench.host().url({"Zone", "Limit"});
    Story story;
    story.source = {valueLeaf({"Mode"}, "auto")};
    story.target = display();
    story.description = {node({"Always"}, "CommandNode"),
                         command({"Always"}, "CommandSetUnitProperties",
                                 table({{actual, "K"}, {limit, "mbar", "a remark"}}))};
    story.units = {{{"Zone", "Actual"}, "K"}, {{"Zone", "Limit"}, "mbar"}};
    play(bench, story);
}

void prefixedUnits(Bench& bench)
{
    const QString leaf = bench.host().url({"Actual"});
    const QString whole = bench.host().url({"Zone", "Actual"});
    if (!whole.endsWith(leaf)) {
        bench.skip("the host's URLs are not made by putting one before another");
    }
    Story story;
    story.source = {valueLeaf({"Mode"}, "auto")};
    story.target = display();
    story.description = {node({"Always"}, "CommandNode"),
                         command({"Always"}, "CommandSetUnitProperties", table({{leaf, "K"}}))};
    story.parameters = {whole.chopped(leaf.size())};
    story.units = {{{"Zone", "Actual"}, "K"}};
    play(bench, story);
}

void followedParameter(Bench& bench)
{
    const QString parameter = bench.host().url({"Settings", "Temperature"});
    Story story;
    story.source = {valueLeaf({"Settings", "Temperature"}, "°F")};
    story.target = display();
    story.description =
        switchAndCommand() +
        Leaves{condition(next({"Watch"}, "Set"), "ConditionWriteOnUrls", table({{parameter}})),
               command(next({"Watch"}, "Set"), "CommandSetUnitByConfigurationParameter",
                       table({{parameter, "", bench.host().url({"Zone", "Actual"})}}))};
    story.urls = QStringList{parameter};
    story.units = {{{"Zone", "Actual"}, "°F"}};
    play(bench, story);
}

void numberAsUnit(Bench& bench)
{
    const QString parameter = bench.host().url({"Settings", "UnitCode"});
    Story story;
    story.source = {valueLeaf({"Settings", "UnitCode"}, 1001)};
    story.target = display();
    story.description = {node({"Always"}, "CommandNode"),
                         command({"Always"}, "CommandSetUnitByConfigurationParameter",
                                 table({{parameter, "", bench.host().url({"Zone", "Actual"})}}))};
    story.units = {{{"Zone", "Actual"}, "1001"}};
    play(bench, story);
}

void filledPlaceholders(Bench& bench)
{
    Story story;
    story.source = {valueLeaf({"Unit"}, "K")};
    story.target = {unitLeaf({"Line2", "Channel3", "Actual"}, "°C"),
                    unitLeaf({"Line2", "Channel4", "Actual"}, "°C")};
    story.description = {node({"Always"}, "CommandNode"),
                         command({"Always"}, "CommandSetUnitByConfigurationParameter",
                                 table({{bench.host().url({"Unit"}), "",
                                         bench.host().url({"%1", "Channel%2", "Actual"})}}))};
    story.parameters = {"Line2", 3};
    story.units = {{{"Line2", "Channel3", "Actual"}, "K"}};
    play(bench, story);
}

void groupsNameTheTarget(Bench& bench)
{
    const QString written = bench.host().url({"Heater7", "Mode"});
    const QString pattern = patternOf(bench.host().url({"anyDevice", "Mode"}), "anyDevice");
    const QString target = templateOf(bench.host().url({"anyDevice", "Actual"}), "anyDevice");
    Story story;
    story.source = {valueLeaf({"Heater7", "Mode"}, "manual")};
    story.target = {unitLeaf({"Heater7", "Actual"}, "°C"), unitLeaf({"Heater8", "Actual"}, "°C")};
    story.description =
        switchAndCommand() +
        Leaves{condition(next({"Watch"}, "Set"), "ConditionWriteOnUrlsRegExp", table({{pattern}})),
               command(next({"Watch"}, "Set"), "CommandSetUnitPropertiesRegExp",
                       table({{pattern, target, "%"}}))};
    story.urls = QStringList{written};
    story.units = {{{"Heater7", "Actual"}, "%"}};
    play(bench, story);
}

void writtenParameterIsTheUnit(Bench& bench)
{
    const QString pattern = patternOf(bench.host().url({"anyDevice", "Unit"}), "anyDevice");
    const QString target = templateOf(bench.host().url({"anyDevice", "Actual"}), "anyDevice");
    Story story;
    story.source = {valueLeaf({"Heater7", "Unit"}, "K"), valueLeaf({"Heater8", "Unit"}, "°F")};
    story.target = {unitLeaf({"Heater7", "Actual"}, "°C"), unitLeaf({"Heater8", "Actual"}, "°C")};
    story.description = {node({"Always"}, "CommandNode"),
                         command({"Always"}, "CommandSetUnitByConfigurationParameterInstRegExp",
                                 table({{pattern, target}}))};
    story.urls = QStringList{bench.host().url({"Heater8", "Unit"})};
    story.units = {{{"Heater8", "Actual"}, "°F"}};
    play(bench, story);
}

void columnsFollow(Bench& bench)
{
    const QString array = bench.host().url({"Zone", "Samples"});
    Story story;
    story.source = {valueLeaf({"Temperature"}, "°F"), valueLeaf({"Pressure"}, "mbar"),
                    valueLeaf({"Flow"}, "l/h")};
    story.target = {arrayLeaf({"Zone", "Samples"}, {"°C", "s", "bar", "m3/h"}),
                    unitLeaf({"Zone", "Actual"}, "°C")};
    story.description = {
        node({"Always"}, "CommandNode"),
        command({"Always"}, "CommandSetUnitByConfigurationParameterArray",
                table({{bench.host().url({"Temperature"}), array + "[0]"},
                       {bench.host().url({"Pressure"}), "a remark", array + "[1 + 1]"},
                       {bench.host().url({"Flow"}), array + "[5-2]"}}))};
    story.units = {{{"Zone", "Samples"}, "°F", 0},
                   {{"Zone", "Samples"}, "mbar", 2},
                   {{"Zone", "Samples"}, "l/h", 3}};
    play(bench, story);
}

/// Branches by what the conditions of two edges say: the first sets the unit of "Actual", the
/// second that of "Limit".
Leaves twoBranches(Bench& bench, const char* conditionType, const QVariantList& first,
                   const QVariantList& second)
{
    return {node({"Choose"}, "SwitchNode"),
            node(next({"Choose"}, "First"), "CommandNode"),
            condition(next({"Choose"}, "First"), conditionType, first),
            command(next({"Choose"}, "First"), "CommandSetUnitProperties",
                    table({{bench.host().url({"Zone", "Actual"}), "first"}})),
            node(next({"Choose"}, "Second"), "CommandNode"),
            condition(next({"Choose"}, "Second"), conditionType, second),
            command(next({"Choose"}, "Second"), "CommandSetUnitProperties",
                    table({{bench.host().url({"Zone", "Limit"}), "second"}}))};
}

void valueChooses(Bench& bench)
{
    const QString mode = bench.host().url({"Settings", "Mode"});
    Story story;
    story.source = {valueLeaf({"Settings", "Mode"}, "auto")};
    story.target = display();
    story.description = twoBranches(bench, "ConditionValueComparator",
                                    table({{mode, "==", "auto"}}), table({{mode, "!=", "auto"}}));
    story.urls = QStringList{mode};
    story.units = {{{"Zone", "Actual"}, "first"}};
    play(bench, story);
}

void numberChooses(Bench& bench)
{
    const QString level = bench.host().url({"Settings", "Level"});
    Story story;
    story.source = {valueLeaf({"Settings", "Level"}, 3)};
    story.target = display();
    story.description = twoBranches(bench, "ConditionValueComparator", table({{level, "==", 4}}),
                                    table({{level, "!=", 4}}));
    story.urls = QStringList{level};
    story.units = {{{"Zone", "Limit"}, "second"}};
    play(bench, story);
}

void valueAtAPatternChooses(Bench& bench)
{
    const QString pattern = patternOf(bench.host().url({"anyDevice", "Enabled"}), "anyDevice");
    Story story;
    story.source = {valueLeaf({"Heater7", "Enabled"}, false),
                    valueLeaf({"Heater8", "Enabled"}, true)};
    story.target = display();
    story.description =
        twoBranches(bench, "ConditionValueComparatorRegExp", table({{pattern, "==", true}}),
                    table({{pattern, "==", false}}));
    story.urls = QStringList{bench.host().url({"Heater8", "Enabled"})};
    story.units = {{{"Zone", "Actual"}, "first"}};
    play(bench, story);
}

void writtenUrlChooses(Bench& bench)
{
    const QString one = bench.host().url({"Settings", "One"});
    const QString other = bench.host().url({"Settings", "Other"});
    Story story;
    story.source = {valueLeaf({"Settings", "One"}, 1), valueLeaf({"Settings", "Other"}, 2)};
    story.target = display();
    story.description =
        twoBranches(bench, "ConditionWriteOnUrls", table({{one}}), table({{other}}));
    story.urls = QStringList{other};
    story.units = {{{"Zone", "Limit"}, "second"}};
    play(bench, story);
}

void patternOfTheWrittenUrlChooses(Bench& bench)
{
    const QString heaters = patternOf(bench.host().url({"Heaters", "anyName"}), "anyName");
    const QString valves = patternOf(bench.host().url({"Valves", "anyName"}), "anyName");
    Story story;
    story.source = {valueLeaf({"Valves", "V1"}, 1)};
    story.target = display();
    story.description =
        twoBranches(bench, "ConditionWriteOnUrlsRegExp", table({{heaters}}), table({{valves}}));
    story.urls = QStringList{bench.host().url({"Valves", "V1"})};
    story.units = {{{"Zone", "Limit"}, "second"}};
    play(bench, story);
}

void nodesFollowOneAnother(Bench& bench)
{
    const QString mode = bench.host().url({"Mode"});
    const QStringList first = {"First"};
    const QStringList choice = next(first, "Choice");
    const QStringList last = next(choice, "Last");
    Story story;
    story.source = {valueLeaf({"Mode"}, "auto")};
    story.target = display();
    story.description = {node(first, "CommandNode"),
                         command(first, "CommandSetUnitProperties",
                                 table({{bench.host().url({"Zone", "Actual"}), "K"}})),
                         node(choice, "SwitchNode"),
                         node(last, "CommandNode"),
                         condition(last, "ConditionValueComparator", table({{mode, "==", "auto"}})),
                         command(last, "CommandSetUnitProperties",
                                 table({{bench.host().url({"Zone", "Limit"}), "mbar"}}))};
    story.urls = QStringList{mode};
    story.units = {{{"Zone", "Actual"}, "K"}, {{"Zone", "Limit"}, "mbar"}};
    play(bench, story);
}

void withoutUrls(Bench& bench)
{
    const QString one = bench.host().url({"Settings", "One"});
    const QString other = bench.host().url({"Settings", "Other"});
    Story story;
    story.source = {valueLeaf({"Settings", "One"}, 1), valueLeaf({"Settings", "Other"}, 2)};
    story.target = display();
    story.description =
        twoBranches(bench, "ConditionWriteOnUrls", table({{one}}), table({{other}}));
    story.units = {{{"Zone", "Actual"}, "first"}, {{"Zone", "Limit"}, "second"}};
    play(bench, story);
}

void processIsATarget(Bench& bench)
{
    Story story;
    story.source = {valueLeaf({"Unit"}, "K")};
    story.target = display();
    story.description = {
        node({"Always"}, "CommandNode"),
        command({"Always"}, "CommandSetUnitByConfigurationParameter",
                table({{bench.host().url({"Unit"}), "", bench.host().url({"Zone", "Actual"})}}))};
    story.isProcess = true;
    story.units = {{{"Zone", "Actual"}, "K"}};
    bench.putInstance(bench.name("Target"), false, display());
    play(bench, story);
    bench.equal("unit in the configuration of the same name",
                bench.unit(bench.load(bench.name("Target"), false), {"Zone", "Actual"}),
                QStringLiteral("°C"));
}

void unchangedTarget(Bench& bench)
{
    Story story;
    story.source = {valueLeaf({"Unit"}, "°C")};
    story.target = {unitLeaf({"Zone", "Actual"}, "°C"), arrayLeaf({"Zone", "Samples"}, {"°C"})};
    story.description = {
        node({"Always"}, "CommandNode"),
        command({"Always"}, "CommandSetUnitByConfigurationParameter",
                table({{bench.host().url({"Unit"}), "", bench.host().url({"Zone", "Actual"})}})),
        command(
            {"Always"}, "CommandSetUnitByConfigurationParameterArray",
            table({{bench.host().url({"Unit"}), bench.host().url({"Zone", "Samples"}) + "[0]"}}))};
    story.changed = false;
    play(bench, story);
}

void treesOfTheCaller(Bench& bench)
{
    const QString parameter = bench.host().url({"Settings", "Temperature"});
    Story story;
    story.source = {valueLeaf({"Settings", "Temperature"}, "°F")};
    story.target = display();
    story.description =
        switchAndCommand() +
        Leaves{condition(next({"Watch"}, "Set"), "ConditionWriteOnUrls", table({{parameter}})),
               command(next({"Watch"}, "Set"), "CommandSetUnitByConfigurationParameter",
                       table({{parameter, "", bench.host().url({"Zone", "Actual"})}}))};
    story.urls = QStringList{parameter};
    story.units = {{{"Zone", "Actual"}, "°F"}};
    playOnTrees(bench, story);
}

/// Source, target, and a description that sets the unit of the target's leaf to K.
void putSimpleDependency(Bench& bench)
{
    bench.putInstance(bench.name("Source"), false, {valueLeaf({"Mode"}, "auto")});
    bench.putInstance(bench.name("Target"), false, display());
    bench.host().putDescription(
        bench.name("Description"),
        bench.host().text(switchAndCommand() +
                          Leaves{condition(next({"Watch"}, "Set"), "ConditionWriteOnUrls",
                                           table({{bench.host().url({"Mode"})}})),
                                 command(next({"Watch"}, "Set"), "CommandSetUnitProperties",
                                         table({{bench.host().url({"Zone", "Actual"}), "K"}}))}));
}

QString targetUnit(Bench& bench)
{
    return bench.unit(bench.load(bench.name("Target"), false), {"Zone", "Actual"});
}

bool resolveSimple(Bench& bench, const QString& source, const QString& description,
                   const QStringList& urls)
{
    const DependencyResolverBaseClass resolver(bench.host().basePath(), "hostkit", "story");
    return resolver.resolveDependency(source, bench.name("Target"), description, false, urls, {},
                                      {});
}

void failedResolution(Bench& bench)
{
    putSimpleDependency(bench);
    const QStringList urls = {bench.host().url({"Mode"}), bench.host().url({"Unwatched"})};
    bench.equal("result",
                resolveSimple(bench, bench.name("Source"), bench.name("Description"), urls), false);
    bench.equal("unit in the stored target", targetUnit(bench), QStringLiteral("°C"));
}

void missingDescription(Bench& bench)
{
    putSimpleDependency(bench);
    bench.equal("result", resolveSimple(bench, bench.name("Source"), bench.name("Nothing"), {}),
                false);
    bench.equal("unit in the stored target", targetUnit(bench), QStringLiteral("°C"));
}

void missingSource(Bench& bench)
{
    putSimpleDependency(bench);
    bench.equal("result", resolveSimple(bench, bench.name("Nobody"), bench.name("Description"), {}),
                true);
    bench.equal("unit in the stored target", targetUnit(bench), QStringLiteral("°C"));
}

void manifestFollows(Bench& bench)
{
    const QString timeKey = SystemInformationManagerRegistryDefinitions::getKeyLastModified();
    const QString target = bench.name("Target");
    putSimpleDependency(bench);
    bench.host().putManifest({QJsonObject{{"instanceName", target}, {timeKey, "never"}}});

    DependencyResolverBaseClass resolver(bench.host().basePath(), "hostkit", bench.name("Origin"));
    resolver.setConfigurationManifestHandler(&bench.host().manifestHandler());
    bench.equal("result",
                resolver.resolveDependency(bench.name("Source"), target, bench.name("Description"),
                                           false, {bench.host().url({"Mode"})}, {}, {}),
                true);
    resolver.updateConfigurationManifest();

    const QString time = bench.host().manifestValue(target, timeKey).toString();
    if (time.isEmpty() || time == "never") {
        bench.fail(QStringLiteral("the target's time in the manifest is %1").arg(shown(time)));
    }
}

QList<Check> commandChecks()
{
    return {
        {"resolution.sets_fixed_units",
         "A node without conditions gives the leaves that its table names their units.",
         "No description would work in this host.", fixedUnits},
        {"resolution.puts_the_first_parameter_before_target_urls",
         "A caller's first parameter and the URL in a table together name the target.",
         "One description could not serve several places of a target.", prefixedUnits},
        {"resolution.unit_follows_a_parameter_of_the_source",
         "When the watched parameter is written, its value becomes the unit of the target's leaf.",
         "Units would stay as they are whatever is written.", followedParameter},
        {"resolution.number_becomes_a_unit",
         "A parameter that is a number becomes the unit as it is.",
         "Units that the host keeps as numbers would not follow.", numberAsUnit},
        {"resolution.fills_two_parameters_into_a_template",
         R"("%1" and "%2" in a target URL stand for the caller's two parameters.)",
         "One description could not serve several instances of a target.", filledPlaceholders},
        {"resolution.groups_of_the_written_url_name_the_target",
         "What a named group matched in the written URL stands in the target's URL.",
         "The fixed unit would reach no leaf, with the warning \"Unable to connect to leaf\", or "
         "the wrong one.",
         groupsNameTheTarget},
        {"resolution.unit_follows_the_parameter_at_the_written_url",
         "The value at the written URL becomes the unit of the leaf that its groups name.",
         "The unit would reach no leaf or be that of another parameter.",
         writtenParameterIsTheUnit},
        {"resolution.columns_follow_parameters",
         "Each column that a table names by a number, a sum or a difference gets its unit, and "
         "the others keep theirs.",
         "Columns of array leaves would show units that their values are not in.", columnsFollow},
    };
}

QList<Check> conditionChecks()
{
    return {
        {"resolution.text_value_chooses_the_branch",
         "Of two edges that compare a text with \"==\" and \"!=\" exactly the true one is "
         "followed.",
         "Units would be set as for another operating mode.", valueChooses},
        {"resolution.number_value_chooses_the_branch",
         "Of two edges that compare a number with \"==\" and \"!=\" exactly the true one is "
         "followed.",
         "Units would be set as for another setting.", numberChooses},
        {"resolution.value_at_the_written_url_chooses_the_branch",
         "A value condition of a pattern compares the value at the written URL.",
         "Units would be set by the value of another instance.", valueAtAPatternChooses},
        {"resolution.written_url_chooses_the_branch",
         "Of two edges that watch different URLs the one is followed whose URL was written.",
         "A write would set the units that belong to another parameter.", writtenUrlChooses},
        {"resolution.pattern_of_the_written_url_chooses_the_branch",
         "Of two edges that watch different patterns the one is followed that matches the written "
         "URL.",
         "A write would set the units that belong to another kind of parameter.",
         patternOfTheWrittenUrlChooses},
        {"resolution.nodes_follow_one_another",
         "A command node passes on to its successor, and that one to its own.",
         "Only the first node of a description would do anything.", nodesFollowOneAnother},
        {"resolution.without_urls_every_watched_url_counts_as_written",
         "A resolution without URLs runs once for each URL that the description watches.",
         "Resolving everything anew would leave units as they are.", withoutUrls},
    };
}

QList<Check> storingChecks()
{
    return {
        {"resolution.target_may_be_a_process_description",
         "With the process flag the process description of the target gets the units, and the "
         "configuration of the same name keeps its own.",
         "Units would change in a configuration that no link names.", processIsATarget},
        {"resolution.without_a_difference_nothing_counts_as_changed",
         "When all units are right already, the resolution succeeds and reports no change.",
         "A host that acts on changes would act after every write, or take success for failure.",
         unchangedTarget},
        {"resolution.works_on_trees_outside_the_store",
         "A walker resolves between two trees that the store does not know.",
         "The host could not resolve before it stores.", treesOfTheCaller},
        {"resolution.failure_stores_nothing",
         "A resolution that fails for one of its URLs leaves the stored target as it was.",
         "Half of what a write asks for would stay behind.", failedResolution},
        {"resolution.missing_description_is_a_failure",
         "A resolution by a description that does not exist fails and changes nothing.",
         "A misspelled link would count as resolved.", missingDescription},
        {"resolution.missing_source_is_no_failure",
         "A resolution from an instance that does not exist succeeds and changes nothing.",
         "Every link of an instance that is not there yet would be reported as broken.",
         missingSource},
        {"resolution.reaches_the_manifest",
         "After a resolution changed a target, updateConfigurationManifest gives the target's "
         "manifest entry a new time.",
         "Whoever looks for changes by the manifest's times would miss this one.", manifestFollows},
    };
}

} // namespace

QList<Check> resolutionChecks()
{
    return commandChecks() + conditionChecks() + storingChecks();
}

} // namespace hostkit
