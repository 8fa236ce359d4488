#include "Fixture.h"
#include "tools/console/Text.h"
#include "tools/types/Types.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <gtest/gtest.h>

namespace {

const QString types = QStringLiteral("types");

QString fileText(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

void expectNarrow(const QString& text)
{
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        EXPECT_LE(tools::displayWidth(line), 80) << line.toStdString();
        EXPECT_FALSE(line.endsWith(QLatin1Char(' '))) << line.toStdString();
    }
}

TEST(Types, lists_all_types_with_their_rows_within_80_columns)
{
    const Result result = run({types});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, QString());
    expectNarrow(result.out);
    expectGolden(QStringLiteral("types"), result.out);
}

TEST(Types, shows_a_type_with_its_columns_and_an_example_within_80_columns)
{
    for (const TypeDescription& type : tools::allTypes()) {
        const Result result = run({types, type.name});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, QString());
        expectNarrow(result.out);
        expectGolden(QStringLiteral("types-") + type.name, result.out);
    }
}

TEST(Types, of_an_unknown_name_is_an_error_with_a_way_out)
{
    for (const char* name : {"ConditionValueComparators", "Zzz"}) {
        const Result result = run({types, QLatin1String(name)});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.out, QString());
        expectGolden(QStringLiteral("types-unknown-") + QLatin1String(name), result.err);
    }
}

TEST(Types, has_a_page_in_the_documents_that_is_up_to_date)
{
    const Result result = run({types, QStringLiteral("--markdown")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, fileText(QStringLiteral(UNITFLOW_DOCS_FOLDER "/reference.md")))
        << "write it anew: unitflow types --markdown >docs/reference.md";
}

/// A write in the oven line that the example of a type answers.
struct Example {
    const char* type;
    const char* target;
    bool isProcess;
    const char* parameters; ///< a JSON list
    const char* url;
    const char* value;
    QStringList units; ///< what gets which unit
};

const QList<Example>& exampleTable()
{
    static const QList<Example> rows{
        {"SwitchNode",
         "display",
         false,
         "[]",
         "Settings/OperatingMode",
         "calibration",
         {QStringLiteral("Fields/Pressure mA")}},
        {"CommandNode",
         "oven",
         true,
         "[]",
         "Settings/Language",
         "de",
         {QStringLiteral("Chamber/Pressure kPa"), QStringLiteral("Belt/Speed cm/s")}},
        {"CommandSetUnitProperties",
         "display",
         false,
         R"(["Fields/"])",
         "Settings/Language",
         "de",
         {QStringLiteral("Fields/Pressure mA"), QStringLiteral("Fields/AirFlow mA")}},
        {"CommandSetUnitPropertiesRegExp",
         "recorder",
         false,
         "[]",
         "Zones/Cure/Sensor",
         "thermocouple",
         {QStringLiteral("Compensation/Cure K")}},
        {"CommandSetUnitByConfigurationParameter",
         "recorder",
         false,
         R"(["Left", 1])",
         "Settings/TemperatureUnit",
         "°F",
         {QStringLiteral("Racks/Left/Card1 °F")}},
        {"CommandSetUnitByConfigurationParameterInstRegExp",
         "recorder",
         false,
         "[]",
         "Zones/Cure/Signal",
         "mA",
         {QStringLiteral("Inputs/Cure mA")}},
        {"CommandSetUnitByConfigurationParameterArray",
         "recorder",
         false,
         "[]",
         "Settings/PressureUnit",
         "kPa",
         {QStringLiteral("ChamberLog[1] kPa"), QStringLiteral("ChamberLog[2] kPa")}},
        {"ConditionValueComparator",
         "display",
         false,
         "[]",
         "Settings/FlowUnit",
         "ft³/s",
         {QStringLiteral("Fields/AirUsed ft³")}},
        {"ConditionValueComparatorRegExp",
         "recorder",
         false,
         "[]",
         "Zones/Cure/Sensor",
         "thermocouple",
         {QStringLiteral("Compensation/Cure °C")}},
        {"ConditionWriteOnUrls",
         "display",
         false,
         "[]",
         "Settings/TemperatureUnit",
         "°F",
         {QStringLiteral("Fields/Preheat °F"), QStringLiteral("Fields/Cure °F")}},
        {"ConditionWriteOnUrlsRegExp",
         "recorder",
         false,
         "[]",
         "Zones/Preheat/Signal",
         "Ω",
         {QStringLiteral("Inputs/Preheat Ω")}}};
    return rows;
}

/// The oven line, with the example as its only description.
void writeOvenLine(const TestWorkspace& workspace, const Example& example)
{
    const QDir ovenLine(QStringLiteral(UNITFLOW_EXAMPLES_FOLDER "/oven-line"));
    for (const char* folder : {"configuration", "process"}) {
        QDirIterator files(ovenLine.filePath(QLatin1String(folder)), QDir::Files);
        while (files.hasNext()) {
            const QString file = files.next();
            workspace.write(ovenLine.relativeFilePath(file), fileText(file).toUtf8());
        }
    }
    const TypeDescription* type = nullptr;
    for (const TypeDescription& candidate : tools::allTypes()) {
        if (candidate.name == QLatin1String(example.type)) {
            workspace.write(QStringLiteral("dependency/example.json"),
                            tools::exampleOf(candidate).toUtf8());
            type = &candidate;
        }
    }
    ASSERT_NE(type, nullptr);
    workspace.write(QStringLiteral("links.json"),
                    QStringLiteral(R"([{"source": "controller", "target": "%1", "process": %2,
                                       "dependency": "example", "parameters": %3}])")
                        .arg(QLatin1String(example.target),
                             example.isProcess ? QStringLiteral("true") : QStringLiteral("false"),
                             QLatin1String(example.parameters))
                        .toUtf8());
}

/// What the target got, in the order of its file: "Fields/Cure °F".
QStringList unitsSet(const QJsonObject& document)
{
    QStringList units;
    for (const QJsonValue entry : document[QStringLiteral("changes")].toArray()) {
        const QJsonObject change = entry.toObject();
        const QString url = change[QStringLiteral("url")].toString();
        for (const QJsonValue column : change[QStringLiteral("columns")].toArray()) {
            units.append(QStringLiteral("%1[%2] %3")
                             .arg(url)
                             .arg(column[QStringLiteral("index")].toInt())
                             .arg(column[QStringLiteral("after")].toString()));
        }
        if (change[QStringLiteral("property")] == QJsonValue(QStringLiteral("@unitType"))) {
            units.append(url + QLatin1Char(' ') + change[QStringLiteral("after")].toString());
        }
    }
    return units;
}

TEST(TypeExample, is_there_for_each_type_names_it_and_sets_a_unit)
{
    QStringList named;
    for (const Example& example : exampleTable()) {
        named.append(QLatin1String(example.type));
        SCOPED_TRACE(example.type);
        const TestWorkspace workspace;
        writeOvenLine(workspace, example);
        EXPECT_TRUE(workspace.read(QStringLiteral("dependency/example.json"))
                        .contains('"' + QByteArray(example.type) + '"'));

        const Result result =
            run(workspace, {QStringLiteral("set"), QStringLiteral("controller"),
                            QString::fromUtf8(example.url), QString::fromUtf8(example.value),
                            QStringLiteral("--json")});
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, QString());
        EXPECT_EQ(unitsSet(result.json()), example.units);
    }
    QStringList all;
    for (const TypeDescription& type : tools::allTypes()) {
        all.append(type.name);
    }
    EXPECT_EQ(named, all);
}

} // namespace
