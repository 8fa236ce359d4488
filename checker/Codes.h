#ifndef UNITFLOW_CHECKER_CODES_H
#define UNITFLOW_CHECKER_CODES_H

#include <QList>
#include <QString>

namespace checker {

/// How bad a finding is, mildest first.
enum class Severity {
    Note,    ///< works as it is written, but is easily taken for something else
    Warning, ///< does something, but hardly what was meant
    Error,   ///< does not do what is written, or ends the process
};

/// What a finding is about. Tools and people refer to the names, so these never change.
enum class Code {
    Syntax,
    DuplicateKey,
    BeyondLimits,
    NotAnObject,
    MissingType,
    UnknownNodeType,
    UnknownCommand,
    UnknownCondition,
    IgnoredMember,
    UnreadCondition,
    UnaskedCondition,
    SeveralSuccessors,
    UnreadCommands,
    SwitchWithoutEdges,
    NoEffect,
    AlternativeConditions,
    RunsTwice,
    TableNotAList,
    EmptyTable,
    RowNotAList,
    RowSkipped,
    RowTruncated,
    RowFatal,
    CellNotText,
    EmptyUnit,
    EmptyUrl,
    UnknownComparator,
    AlwaysHolds,
    InvalidPattern,
    EmptyPattern,
    SlowPattern,
    PatternWithoutGroup,
    PrefixedUrl,
    PrefixedPattern,
    UnknownGroup,
    UnusedGroup,
    UnfilledPlace,
    InvalidColumn,
    IgnoredText,
    BadLink,
    BadUnit,
    MissingFile,
    UnusedParameters,
    UnknownSourceUrl,
    UnknownTargetUrl,
    SomeTargetsMissing,
    PatternMatchesNothing,
    NotAnArray,
    ColumnOutOfRange,
    ConstantNeverEqual,
    TextAsTruth,
    ConflictingUnits,
    UnknownUnit,
    OtherDimension,
};

/// Files of a workspace in which a code is found, or not. Without a source, a target and a link the
/// description is checked by itself.
struct Example {
    QString description;
    QString source;
    QString target;
    QString parameters; ///< of the link, as `links.json` has them; may be empty
    QString units;      ///< `units.json`; may be empty
};

/// All that there is to know about a code.
struct CodeDescription {
    Code code;
    QString name; ///< "unknown-command"
    Severity severity;
    QString title;       ///< what is wrong, in a few words
    QString explanation; ///< what the engine does about it, and what to do instead
    Example bad;
    Example good;
};

/// In the order of the enumeration.
const QList<CodeDescription>& codes();

const CodeDescription& describe(Code code);

/// Null when there is none of that name.
const CodeDescription* findCode(const QString& name);

/// "error", "warning" or "note".
QString nameOf(Severity severity);

/// A page on a code: in Markdown, and fit for a terminal as it is.
QString explain(const CodeDescription& code);

/// All pages, as docs/findings.md has them.
QString explainAll();

} // namespace checker

#endif
