#ifndef UNITFLOW_TRACE_INTERNAL_JSONLINE_H
#define UNITFLOW_TRACE_INTERNAL_JSONLINE_H

#include <QByteArray>
#include <QLatin1String>
#include <QString>
#include <QVariant>

namespace trace::internal {

/// One JSON object in one line. Members stand in the order in which they are added. Whole numbers
/// keep all their digits, which Qt's own writer would round beyond 53 bits.
class JsonLine {
public:
    JsonLine& add(QLatin1String key, const QString& text);
    JsonLine& add(QLatin1String key, bool value);
    JsonLine& add(QLatin1String key, int number);
    /// A value of a tree. What JSON has no kind for is written as its text.
    JsonLine& addValue(QLatin1String key, const QVariant& value);

    /// The line with its line feed.
    QByteArray finish() const;

private:
    JsonLine& addRaw(QLatin1String key, const QByteArray& json);

    QByteArray members;
};

} // namespace trace::internal

#endif
