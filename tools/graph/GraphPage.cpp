#include "tools/graph/GraphPage.h"

#include <QCryptographicHash>
#include <QFile>
#include <QHash>
#include <QRegularExpression>

// The macro declares a function, which must not happen inside a namespace. It is needed because
// nothing else refers to the resource in this static library.
static void registerPage()
{
    Q_INIT_RESOURCE(page);
}

namespace tools {

namespace {

QString resource(const QString& name)
{
    registerPage();
    QFile file(QStringLiteral(":/graph/page/") + name);
    file.open(QIODevice::ReadOnly);
    return QString::fromUtf8(file.readAll());
}

/// How a content security policy names `text`.
QString policyHash(const QString& text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("sha256-") + QString::fromLatin1(hash.toBase64());
}

/// JSON of the same meaning that ends no element and begins none. These characters stand in texts
/// only, where JSON can spell them otherwise.
QString embedded(const QByteArray& json)
{
    QString text = QString::fromUtf8(json);
    for (const char16_t character : {u'<', u'>', u'&', u'\u2028', u'\u2029'}) {
        text.replace(QChar(character),
                     QStringLiteral("\\u%1").arg(int(character), 4, 16, QLatin1Char('0')));
    }
    return text;
}

/// `svg` without what stands before its element, which is for files of its own.
QString drawing(const QString& svg)
{
    return svg.mid(svg.indexOf(QLatin1String("<svg")));
}

/// `text` with every {{place}} taken by its value, in one go: a value may contain braces.
QString filled(const QString& text, const QHash<QString, QString>& values)
{
    static const QRegularExpression place(QStringLiteral(R"(\{\{([a-z-]+)\}\})"));
    QString result;
    int end = 0;
    for (auto found = place.globalMatch(text); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        result += text.mid(end, match.capturedStart() - end) + values.value(match.captured(1));
        end = match.capturedEnd();
    }
    return result + text.mid(end);
}

} // namespace

QString graphPage(const QByteArray& json, const QString& svg)
{
    const QString style = resource(QStringLiteral("page.css"));
    const QString script = resource(QStringLiteral("page.js"));
    return filled(resource(QStringLiteral("page.html")),
                  {{QStringLiteral("style"), style},
                   {QStringLiteral("style-hash"), policyHash(style)},
                   {QStringLiteral("script"), script},
                   {QStringLiteral("script-hash"), policyHash(script)},
                   {QStringLiteral("drawing"), drawing(svg)},
                   {QStringLiteral("graph"), embedded(json)}});
}

} // namespace tools
