#include "tools/console/Style.h"

namespace tools {

namespace {

QString startOf(Style style)
{
    switch (style) {
    case Style::Heading:
        return QStringLiteral("\x1b[1m");
    case Style::Error:
        return QStringLiteral("\x1b[1;31m");
    case Style::Warning:
        return QStringLiteral("\x1b[1;33m");
    }
    return {};
}

} // namespace

QString styled(const QString& text, Style style, bool color)
{
    return color ? startOf(style) + text + QStringLiteral("\x1b[0m") : text;
}

} // namespace tools
