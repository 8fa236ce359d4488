#include "Commands/CommandBase.h"

CommandBase::CommandBase() = default;
CommandBase::~CommandBase() = default;

QString CommandBase::replaceMatchedGroups(const QStringList& groupNames,
                                          const QRegularExpressionMatch& match, const QString& text)
{
    QString replaced = text;
    for (const QString& name : groupNames) {
        if (!name.isEmpty()) {
            replaced.replace(QStringLiteral("(?<") + name + QStringLiteral(">)"),
                             match.captured(name));
        }
    }
    return replaced;
}
