#ifndef UNITFLOW_TOOLS_TYPES_DESCRIPTIONSCHEMA_H
#define UNITFLOW_TOOLS_TYPES_DESCRIPTIONSCHEMA_H

#include <QJsonObject>

namespace tools {

/// A JSON Schema (draft-07) of descriptions as files of a workspace write them, made from the
/// types that the engine knows. It allows what has an effect and remarks below keys that begin with
/// "@"; what the engine would ignore in silence, such as a misspelled keyword, is wrong.
///
/// `defaultSnippets`, which editors know and validators pass over, hold what to begin with.
QJsonObject descriptionSchema();

} // namespace tools

#endif
