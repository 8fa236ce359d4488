#include "tools/graph/GraphPage.h"

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

const QString drawn = QStringLiteral(
    "<?xml version=\"1.0\"?>\n<!DOCTYPE svg PUBLIC \"x\" \"http://example.org/x.dtd\">\n"
    "<!-- made -->\n<svg id=\"drawn\"></svg>\n");

QString pageOf(const QString& name)
{
    const QJsonObject graph{{QStringLiteral("description"), name}};
    return tools::graphPage(QJsonDocument(graph).toJson(QJsonDocument::Compact), drawn);
}

/// What stands between `begin` and the next `end`.
QString between(const QString& page, const QString& begin, const QString& end)
{
    const int from = page.indexOf(begin) + begin.size();
    return page.mid(from, page.indexOf(end, from) - from);
}

QString graphIn(const QString& page)
{
    return between(page, QStringLiteral("id=\"graph-data\">"), QStringLiteral("</script>"));
}

QString policyHash(const QString& text)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha256).toBase64());
}

} // namespace

TEST(GraphPage, is_one_document_with_one_drawing)
{
    const QString page = pageOf(QStringLiteral("units"));
    EXPECT_TRUE(page.startsWith(QLatin1String("<!DOCTYPE html>\n")));
    EXPECT_TRUE(page.endsWith(QLatin1String("</html>\n")));
    EXPECT_EQ(page.count(QLatin1String("<!DOCTYPE")), 1);
    EXPECT_EQ(page.count(QLatin1String("<?xml")), 0);
    EXPECT_EQ(page.count(QLatin1String("<svg id=\"drawn\"></svg>")), 1);
}

TEST(GraphPage, leaves_no_place_open)
{
    const QString page = pageOf(QStringLiteral("units"));
    EXPECT_FALSE(page.contains(QRegularExpression(QStringLiteral("\\{\\{[a-z-]+\\}\\}"))));
    EXPECT_GT(between(page, QStringLiteral("<style>"), QStringLiteral("</style>")).size(), 1000);
    EXPECT_GT(between(page, QStringLiteral("<script>"), QStringLiteral("</script>")).size(), 1000);
}

TEST(GraphPage, keeps_braces_of_a_description)
{
    const QString page = pageOf(QStringLiteral("{{script}}"));
    EXPECT_EQ(graphIn(page), QStringLiteral("{\"description\":\"{{script}}\"}"));
}

TEST(GraphPage, lets_no_text_end_its_element)
{
    const QString hostile = QStringLiteral("</script><!--<script>&amp;") + QChar(0x2028) +
                            QChar(0x2029) + QStringLiteral("°");
    const QString graph = graphIn(pageOf(hostile));
    EXPECT_FALSE(graph.contains(QRegularExpression(QStringLiteral("[<>&\\x{2028}\\x{2029}]"))));
    const QJsonDocument read = QJsonDocument::fromJson(graph.toUtf8());
    EXPECT_EQ(read.object().value(QStringLiteral("description")).toString(), hostile);
}

TEST(GraphPage, allows_its_own_style_and_script_only)
{
    const QString page = pageOf(QStringLiteral("units"));
    const QString style = between(page, QStringLiteral("<style>"), QStringLiteral("</style>"));
    const QString script = between(page, QStringLiteral("<script>"), QStringLiteral("</script>"));
    EXPECT_TRUE(page.contains(
        QStringLiteral(
            "content=\"default-src 'none'; style-src 'sha256-%1'; script-src 'sha256-%2'; ")
            .arg(policyHash(style), policyHash(script))));
}

TEST(GraphPage, refers_to_nothing_outside)
{
    // The name of SVG as the script has it is no place to load from.
    const QString page =
        pageOf(QStringLiteral("units")).remove(QStringLiteral("\"http://www.w3.org/2000/svg\""));
    EXPECT_FALSE(page.contains(QLatin1String("://")));
    EXPECT_FALSE(
        page.contains(QRegularExpression(QStringLiteral("@import|url\\(|\\bsrc\\s*=|<link"))));
    EXPECT_FALSE(page.contains(QRegularExpression(QStringLiteral("\\son[a-z]+\\s*=\\s*[\"']"))));
}
