#ifndef UNITFLOW_TOOLS_TYPES_SCHEMACOMMAND_H
#define UNITFLOW_TOOLS_TYPES_SCHEMACOMMAND_H

#include "tools/Command.h"

namespace tools {

/// `unitflow schema`: writes the JSON Schema of descriptions.
class SchemaCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;
};

} // namespace tools

#endif
