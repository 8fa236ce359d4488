#ifndef UNITFLOW_CONDITIONS_CONDITIONBASE_H
#define UNITFLOW_CONDITIONS_CONDITIONBASE_H

#include "Export.h"
#include "host/ConfigurationAndProcessDataBase.h"

#include <QString>
#include <QStringList>

/// A guard on an edge of the graph. A switch node asks it; its URLs decide when the top-level node
/// above it runs.
class UNITFLOW_EXPORT ConditionBase {
public:
    ConditionBase();
    ConditionBase(const ConditionBase&) = delete;
    ConditionBase& operator=(const ConditionBase&) = delete;
    virtual ~ConditionBase();

    /// Whether the edge is to be followed after a write at `url`.
    virtual bool checkCondition(const BaseClassSharedPointer& sourceRoot,
                                const BaseClassSharedPointer& targetRoot,
                                const QString& url) const = 0;

    /// What the condition watches: URLs, or patterns with their prefix.
    virtual QStringList getConditionUrls() const = 0;

    /// The condition as one line of text.
    virtual QString getConditionAsString() const = 0;
};

#endif
