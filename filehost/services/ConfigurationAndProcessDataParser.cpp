#include "host/ConfigurationAndProcessDataParser.h"

#include "filehost/Descriptions.h"
#include "filehost/Files.h"
#include "filehost/services/Reporting.h"
#include "filehost/tree/FileTree.h"

using filehost::Problem;

ConfigurationAndProcessDataParser::ConfigurationAndProcessDataParser() = default;

// NOLINTNEXTLINE(modernize-use-equals-default): the class is declared for any host to define
ConfigurationAndProcessDataParser::~ConfigurationAndProcessDataParser() {}

// The extension tells nothing: all files of this host are of one format.
BaseClassSharedPointer
ConfigurationAndProcessDataParser::parseFromJson(const QString& json,
                                                 const QString& /*fileExtension*/) const
{
    const QString file = filehost::fileOfHandedOut(json);
    if (!json.isValidUtf16()) {
        filehost::report({{Problem::Code::Syntax, file, 0, 0,
                           QStringLiteral("the text has half of a surrogate pair"),
                           QStringLiteral("save the file with the encoding UTF-8")}});
        return {};
    }
    QList<Problem> problems;
    const auto text = filehost::parseTree(json.toUtf8(), file, problems);
    filehost::report(problems);
    return text ? filehost::tree::FileTreeNode::makeRoot(text, QString())
                : BaseClassSharedPointer();
}
