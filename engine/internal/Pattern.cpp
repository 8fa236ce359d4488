#include "internal/Pattern.h"

#include <QRegularExpression>

namespace internal {

namespace {

/// Matching an invalid expression would make Qt write a warning of its own.
QRegularExpressionMatch search(const QRegularExpression& expression, const QString& url)
{
    return expression.isValid() ? expression.match(url) : QRegularExpressionMatch();
}

} // namespace

bool findsMatch(const QString& pattern, const QString& url)
{
    return search(QRegularExpression(pattern), url).hasMatch();
}

std::optional<GroupMatch> matchGroups(const QString& pattern, const QString& url)
{
    const QRegularExpression expression(pattern);
    const QRegularExpressionMatch match = search(expression, url);
    if (!match.hasMatch() || expression.captureCount() < 1) {
        return std::nullopt;
    }
    return GroupMatch{expression.namedCaptureGroups(), match};
}

} // namespace internal
