#include "trace/internal/EventNames.h"

namespace trace::internal {

const QList<Named<TraversalObserver::Selection>>& selectionNames()
{
    using Selection = TraversalObserver::Selection;
    static const QList<Named<Selection>> names{
        {Selection::Url, QLatin1String("url")},
        {Selection::Pattern, QLatin1String("pattern")},
        {Selection::Unconditional, QLatin1String("unconditional")},
    };
    return names;
}

const QList<Named<TraversalObserver::EdgeDecision>>& edgeDecisionNames()
{
    using Decision = TraversalObserver::EdgeDecision;
    static const QList<Named<Decision>> names{
        {Decision::FollowedAlways, QLatin1String("followed-always")},
        {Decision::FollowedByCondition, QLatin1String("followed-by-condition")},
        {Decision::FollowedAsOnly, QLatin1String("followed-as-only")},
        {Decision::NoConditionHolds, QLatin1String("no-condition-holds")},
        {Decision::OneOfSeveral, QLatin1String("one-of-several")},
        {Decision::LeadsNowhere, QLatin1String("leads-nowhere")},
    };
    return names;
}

const QList<Named<TraversalObserver::ConditionOutcome>>& conditionOutcomeNames()
{
    using Outcome = TraversalObserver::ConditionOutcome;
    static const QList<Named<Outcome>> names{
        {Outcome::Holds, QLatin1String("holds")},
        {Outcome::Differs, QLatin1String("differs")},
        {Outcome::NoValue, QLatin1String("no-value")},
        {Outcome::UnknownComparator, QLatin1String("unknown-comparator")},
        {Outcome::NoMatch, QLatin1String("no-match")},
        {Outcome::InvalidPattern, QLatin1String("invalid-pattern")},
    };
    return names;
}

const QList<Named<TraversalObserver::RowOutcome>>& rowOutcomeNames()
{
    using Outcome = TraversalObserver::RowOutcome;
    static const QList<Named<Outcome>> names{
        {Outcome::Changed, QLatin1String("changed")},
        {Outcome::Unchanged, QLatin1String("unchanged")},
        {Outcome::Refused, QLatin1String("refused")},
        {Outcome::NoTarget, QLatin1String("no-target")},
        {Outcome::NoTargetUrl, QLatin1String("no-target-url")},
        {Outcome::NoUnit, QLatin1String("no-unit")},
        {Outcome::NoParameterUrl, QLatin1String("no-parameter-url")},
        {Outcome::NoValue, QLatin1String("no-value")},
        {Outcome::NoMatch, QLatin1String("no-match")},
        {Outcome::InvalidPattern, QLatin1String("invalid-pattern")},
        {Outcome::PatternWithoutGroup, QLatin1String("pattern-without-group")},
        {Outcome::MalformedTarget, QLatin1String("malformed-target")},
        {Outcome::InvalidColumn, QLatin1String("invalid-column")},
        {Outcome::NotAnArray, QLatin1String("not-an-array")},
        {Outcome::NoColumns, QLatin1String("no-columns")},
        {Outcome::ColumnOutOfRange, QLatin1String("column-out-of-range")},
        {Outcome::ColumnsRefused, QLatin1String("columns-refused")},
    };
    return names;
}

} // namespace trace::internal
