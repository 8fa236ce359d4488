#include "tools/types/SchemaCommand.h"

#include "tools/console/Console.h"
#include "tools/console/Json.h"
#include "tools/types/DescriptionSchema.h"

#include <CLI/CLI.hpp>
#include <QJsonDocument>

namespace tools {

namespace {} // namespace

CLI::App* SchemaCommand::declare(CLI::App& program)
{
    CLI::App* command =
        program.add_subcommand("schema", "Write the JSON Schema of descriptions, for editors");
    command->footer(
        R"(Editors read it to check a description while it is written, and to offer what
may stand there.

Examples:
  unitflow schema >description.schema.json)");
    return command;
}

ExitCode SchemaCommand::run(Console& console)
{
    const QJsonObject schema = descriptionSchema();
    if (console.options().json) {
        JsonDocument json(QStringLiteral("schema"));
        json.add(QStringLiteral("schema"), schema.toVariantMap());
        console.write(json, ExitCode::Done);
    } else {
        console.show(QString::fromUtf8(QJsonDocument(schema).toJson()));
    }
    return ExitCode::Done;
}

} // namespace tools
