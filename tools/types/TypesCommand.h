#ifndef UNITFLOW_TOOLS_TYPES_TYPESCOMMAND_H
#define UNITFLOW_TOOLS_TYPES_TYPESCOMMAND_H

#include "TypeDescription.h"
#include "tools/Command.h"

#include <QList>
#include <QString>

#include <string>

namespace tools {

/// `unitflow types`: shows the types that a description can name.
class TypesCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    void writeDocument(Console& console, ExitCode exitCode) const;

    std::string nameArgument;
    bool isMarkdown = false;

    QList<TypeDescription> shown;
};

} // namespace tools

#endif
