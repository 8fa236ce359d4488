#ifndef UNITFLOW_TOOLS_CONSOLE_STYLE_H
#define UNITFLOW_TOOLS_CONSOLE_STYLE_H

#include <QString>

namespace tools {

enum class Style { Heading, Error, Warning };

/// `text` as it is written to a terminal; unchanged without `color`.
QString styled(const QString& text, Style style, bool color);

} // namespace tools

#endif
