#ifndef UNITFLOW_INTERNAL_WATCHEDURLS_H
#define UNITFLOW_INTERNAL_WATCHEDURLS_H

#include <QStringList>

namespace internal {

/// Drops every text that stands in the list before.
void keepFirsts(QStringList& texts);

/// The URLs in order, each once.
QStringList watchedUrls(const QStringList& urls);

/// The patterns in order, with the prefix that marks them as such.
QStringList watchedPatterns(const QStringList& patterns);

} // namespace internal

#endif
