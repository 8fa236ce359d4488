#include "Commands/CommandBase.h"

namespace {

constexpr QLatin1String placeholderStart("(?<", 3);
constexpr QLatin1String placeholderEnd(">)", 2);

/// Where the placeholder of a group stands in `text` from `from` on, -1 for nowhere.
int indexOfPlaceholder(const QString& text, const QString& name, int from)
{
    for (int at = text.indexOf(placeholderStart, from); at >= 0;
         at = text.indexOf(placeholderStart, at + 1)) {
        const QStringRef rest = text.midRef(at + placeholderStart.size());
        if (rest.startsWith(name) && rest.mid(name.size()).startsWith(placeholderEnd)) {
            return at;
        }
    }
    return -1;
}

/// Replaces every placeholder of a group in `text`; what is put in is not looked at again.
void replacePlaceholders(QString& text, const QString& name, const QRegularExpressionMatch& match)
{
    int at = indexOfPlaceholder(text, name, 0);
    if (at < 0) {
        return;
    }
    const QString captured = match.captured(name);
    const int size = placeholderStart.size() + name.size() + placeholderEnd.size();
    while (at >= 0) {
        text.replace(at, size, captured);
        at = indexOfPlaceholder(text, name, at + captured.size());
    }
}

} // namespace

CommandBase::CommandBase() = default;
CommandBase::~CommandBase() = default;

QString CommandBase::replaceMatchedGroups(const QStringList& groupNames,
                                          const QRegularExpressionMatch& match, const QString& text)
{
    QString replaced = text;
    for (const QString& name : groupNames) {
        if (!name.isEmpty()) {
            replacePlaceholders(replaced, name, match);
        }
    }
    return replaced;
}
