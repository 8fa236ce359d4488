#ifndef UNITFLOW_COMMANDS_COMMANDBASE_H
#define UNITFLOW_COMMANDS_COMMANDBASE_H

#include "Export.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QRegularExpressionMatch>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantList>

class UnitManipulatorBase;

/// What a command node does when it is reached: set units of target leaves.
///
/// A command reads its rows once, in its constructor, and may be executed any number of times. One
/// whose description yields no rows does nothing.
class UNITFLOW_EXPORT CommandBase {
public:
    CommandBase();
    CommandBase(const CommandBase&) = delete;
    CommandBase& operator=(const CommandBase&) = delete;
    virtual ~CommandBase();

    /// Applies every row, in order; a row that fails does not stop the next one and takes nothing
    /// back. The arguments are those of `DependencyWalker::traverseDependencyGraph`. Returns
    /// whether at least one write was accepted (status 0 or 1), or what the manipulator made of
    /// that; a null root gives false. `changed` is set by a write with status 0.
    virtual bool executeCommand(const BaseClassSharedPointer& sourceRoot,
                                const BaseClassSharedPointer& targetRoot, const QString& url,
                                QVariantList& results, bool& changed,
                                const QVariantList& parameters,
                                const QSharedPointer<UnitManipulatorBase>& manipulator) = 0;

    /// The rows as text, run together; empty without rows.
    virtual QString getCommandAsString() const = 0;

    /// Appends the rows that `description` holds. What the result means differs from command to
    /// command; nobody depends on it.
    virtual bool initCommand(const BaseClassSharedPointer& description) = 0;

    /// `text` with each placeholder "(?<name>)" replaced by what the group of that name captured.
    /// Groups are taken in the order of `groupNames` (empty names are the unnamed groups), each on
    /// the text as the ones before left it. A group that took no part gives the empty string; a
    /// placeholder that is not in `groupNames` stays.
    virtual QString replaceMatchedGroups(const QStringList& groupNames,
                                         const QRegularExpressionMatch& match, const QString& text);

private:
    QString label; // free for a future label; nothing reads or writes it
};

#endif
