#include "internal/Pattern.h"

#include <QRegularExpression>

namespace internal {

bool findsMatch(const QString& pattern, const QString& url)
{
    const QRegularExpression expression(pattern);
    // Matching an invalid expression would make Qt write a warning of its own.
    return expression.isValid() && expression.match(url).hasMatch();
}

} // namespace internal
