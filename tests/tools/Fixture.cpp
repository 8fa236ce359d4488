#include "Fixture.h"

#include "tools/Program.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct NamedText {
    const char* name;
    const char* text;
};

const std::vector<NamedText> ovenFiles{
    {"configuration/controller.json", R"({
    "@comment": "what the operator sets",
    "Settings": {
        "TemperatureUnit": "°C",
        "PressureUnit": "bar",
        "Mode": "automatic",
        "Offset": 1.50,
        "Serial": "0815",
        "Active": true
    }
}
)"},
    {"configuration/display.json", R"({
    "Oven1": {
        "Temperature": { "@value": 182.5, "@unitType": "°C" },
        "Pressure": { "@value": 1.02, "@unitType": "bar" }
    },
    "Brightness": { "@value": 80, "@unitType": "%" }
}
)"},
    {"configuration/recorder.json", R"({
    "Log": {
        "@type": "array",
        "@value": [[0, 20.5], [60, 181.25], [120, 182.5]],
        "@arrayInformation": [
            { "name": "Time", "unitType": "s" },
            { "name": "Temperature", "unitType": "°C" }
        ]
    },
    "Interval": { "@value": 60, "@unitType": "s" }
}
)"},
    {"configuration/manifest.json", R"([
    { "instanceName": "controller", "hasDependency": true, "lastModified": "2025-01-01T00:00:00.000Z" },
    { "instanceName": "display", "hasDependency": false, "lastModified": "2025-01-01T00:00:00.000Z" },
    { "instanceName": "recorder", "lastModified": "2025-01-01T00:00:00.000Z" },
    { "instanceName": "baking", "lastModified": "2025-01-01T00:00:00.000Z" }
]
)"},
    {"process/baking.json", R"({
    "Limits": {
        "Temperature": { "@value": 250, "@unitType": "°C" }
    }
}
)"},
    {"dependency/units.json", R"({
    "Units": {
        "Type": "SwitchNode",
        "Next": {
            "Temperature": {
                "Type": "CommandNode",
                "ConditionWriteOnUrls": [["Settings/TemperatureUnit"]],
                "Commands": {
                    "CommandSetUnitByConfigurationParameter": [
                        ["Settings/TemperatureUnit", "", "%1/%2"]
                    ]
                }
            }
        }
    }
}
)"},
    {"links.json", R"([
    {
        "source": "controller",
        "target": "display",
        "dependency": "units",
        "parameters": ["Oven1", "Temperature"]
    },
    {
        "source": "controller",
        "target": "baking",
        "dependency": "units",
        "process": true,
        "parameters": ["Limits", "Temperature"]
    }
]
)"},
};

QStringList entriesBelow(const QString& folder, QDir::Filters filters)
{
    QStringList entries;
    QDirIterator all(folder, filters | QDir::Hidden | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        entries.append(all.next());
    }
    return entries;
}

} // namespace

const char* const columnDescription = R"({
    "Units": {
        "Type": "SwitchNode",
        "Next": {
            "Temperature": {
                "Type": "CommandNode",
                "ConditionWriteOnUrls": [["Settings/TemperatureUnit"]],
                "Commands": {
                    "CommandSetUnitByConfigurationParameterArray": [
                        ["Settings/TemperatureUnit", "Log[2-1]"]
                    ]
                }
            }
        }
    }
}
)";

TestWorkspace::TestWorkspace()
{
    for (const NamedText& file : ovenFiles) {
        write(QString::fromUtf8(file.name), file.text);
    }
}

QString TestWorkspace::path(const QString& file) const
{
    return folder.filePath(file);
}

void TestWorkspace::write(const QString& file, const QByteArray& text) const
{
    QDir().mkpath(QFileInfo(path(file)).path());
    QFile target(path(file));
    ASSERT_TRUE(target.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(target.write(text), text.size());
}

void TestWorkspace::remove(const QString& file) const
{
    ASSERT_TRUE(QFile::remove(path(file)));
}

QByteArray TestWorkspace::read(const QString& file) const
{
    QFile source(path(file));
    EXPECT_TRUE(source.open(QIODevice::ReadOnly)) << source.fileName().toStdString();
    return source.readAll();
}

QMap<QString, QByteArray> TestWorkspace::files() const
{
    QMap<QString, QByteArray> files;
    for (const QString& file : entriesBelow(folder.path(), QDir::Files)) {
        const QString name = QDir(folder.path()).relativeFilePath(file);
        files.insert(name, read(name));
    }
    return files;
}

QMap<QString, qint64> TestWorkspace::times() const
{
    QStringList entries = entriesBelow(folder.path(), QDir::Files | QDir::Dirs);
    entries.append(folder.path());
    QMap<QString, qint64> times;
    for (const QString& entry : entries) {
        const auto time = std::filesystem::last_write_time(entry.toStdString()).time_since_epoch();
        times.insert(entry, std::chrono::nanoseconds(time).count());
    }
    return times;
}

QJsonObject Result::json() const
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(out.toUtf8(), &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString() << " in\n"
                                                     << out.toStdString();
    return document.object();
}

void PrintTo(const Result& result, std::ostream* stream)
{
    *stream << "exit code " << result.exitCode << "\n--- stdout\n"
            << result.out.toStdString() << "--- stderr\n"
            << result.err.toStdString() << "---";
}

Result run(const TestWorkspace& workspace, const QStringList& arguments)
{
    return run(QStringList{QStringLiteral("-C"), workspace.path()} + arguments);
}

Result run(const QStringList& arguments)
{
    std::vector<std::string> given;
    for (const QString& argument : arguments) {
        given.push_back(argument.toStdString());
    }
    std::ostringstream out;
    std::ostringstream err;
    const tools::ExitCode exitCode = tools::run(given, {out, err, false, false});
    return {static_cast<int>(exitCode), QString::fromStdString(out.str()),
            QString::fromStdString(err.str())};
}

void expectGolden(const QString& name, const QString& output)
{
    QFile golden(QStringLiteral(UNITFLOW_GOLDEN_FOLDER "/%1.txt").arg(name));
    if (qEnvironmentVariableIsSet("UNITFLOW_APPROVE")) {
        ASSERT_TRUE(golden.open(QIODevice::WriteOnly | QIODevice::Truncate));
        golden.write(output.toUtf8());
        return;
    }
    ASSERT_TRUE(golden.open(QIODevice::ReadOnly))
        << golden.fileName().toStdString() << ": not there; approve it with UNITFLOW_APPROVE=1";
    EXPECT_EQ(QString::fromUtf8(golden.readAll()), output)
        << "If this is right, approve it with UNITFLOW_APPROVE=1.";
}

void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}
