#include "tools/check/FindingText.h"

#include "tools/console/Json.h"
#include "tools/console/Names.h"
#include "tools/console/Style.h"
#include "tools/console/Text.h"
#include "tools/workspace/Links.h"

#include <QDir>
#include <QUrl>
#include <QVariantMap>

#include <algorithm>
#include <array>

namespace tools {

namespace {

using checker::CheckedFile;
using checker::Finding;
using filehost::Problem;

constexpr int numberWidth = 7;
constexpr int excerptWidth = lineWidth - numberWidth - 3;
constexpr int contextWidth = 24; // what is shown in front of a mark far to the right

const checker::CodeDescription& codeOf(const Finding& finding)
{
    return checker::describe(finding.code);
}

QString placeText(const Finding& finding)
{
    return finding.place.line > 0 ? QStringLiteral("%1:%2:%3")
                                        .arg(finding.file)
                                        .arg(finding.place.line)
                                        .arg(finding.place.column)
                                  : finding.file;
}

QString lineOf(const QByteArray& bytes, int line)
{
    int begin = 0;
    while (--line > 0 && begin >= 0) {
        begin = bytes.indexOf('\n', begin) + 1;
    }
    const int end = bytes.indexOf('\n', begin);
    QString text = QString::fromUtf8(bytes.mid(begin, end < 0 ? -1 : end - begin));
    if (text.endsWith(QLatin1Char('\r'))) {
        text.chop(1); // of a line end of two characters
    }
    return text.remove(QChar(QChar::ByteOrderMark)).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

/// Some characters of a line, counted as places count them.
QString characters(const QVector<uint>& line, int column, int length)
{
    const QVector<uint> some = line.mid(column, length);
    return printable(QString::fromUcs4(some.constData(), some.size()));
}

/// The line of a finding with a mark below what it is about.
QString excerpt(const Finding& finding, const QByteArray& bytes)
{
    const QVector<uint> line = lineOf(bytes, finding.place.line).toUcs4();
    const int column = std::min(finding.place.column - 1, line.size());
    const int length = std::max(1, std::min(finding.place.length, line.size() - column));
    QString before = characters(line, 0, column);
    const QString marked = characters(line, column, length);
    if (displayWidth(before) + displayWidth(marked) > excerptWidth) {
        const int kept = std::min(column, contextWidth);
        before = (kept < column ? QString(QChar(0x2026)) : QString()) +
                 characters(line, column - kept, kept);
    }
    const int room = excerptWidth - displayWidth(before);
    const QString rest = marked + characters(line, column + length, line.size());
    const int markWidth = std::max(1, std::min(displayWidth(marked), room));
    const QString number = QString::number(finding.place.line);
    const QString indentation(displayWidth(before), QLatin1Char(' '));
    return QStringLiteral("%1 | ").arg(number, numberWidth) + before + elided(rest, room) +
           QLatin1Char('\n') + QString(numberWidth, QLatin1Char(' ')) + QStringLiteral(" | ") +
           indentation + QLatin1Char('^') + QString(markWidth - 1, QLatin1Char('~')) +
           QLatin1Char('\n');
}

QString linkText(const Finding& finding)
{
    if (!finding.link) {
        return {};
    }
    const QString others =
        finding.otherLinks == 0
            ? QString()
            : QStringLiteral(" and %1").arg(counted(
                  finding.otherLinks, QStringLiteral("other link"), QStringLiteral("other links")));
    return QStringLiteral("in ") + placeOf(*finding.link) + describe(*finding.link) + others;
}

QString findingText(const Finding& finding, const QByteArray& bytes, bool color)
{
    const checker::Severity severity = codeOf(finding).severity;
    const Style style = severity == checker::Severity::Error     ? Style::Error
                        : severity == checker::Severity::Warning ? Style::Warning
                                                                 : Style::Heading;
    QString text = styled(nameOf(severity) + QLatin1Char(':'), style, color) + QLatin1Char(' ') +
                   printable(placeText(finding)) +
                   QStringLiteral(" [%1]\n").arg(codeOf(finding).name);
    text += wrapped(printable(finding.message), lineWidth);
    if (finding.place.line > 0 && !bytes.isEmpty()) {
        text += excerpt(finding, bytes);
    }
    text += wrapped(printable(linkText(finding)), lineWidth);
    return text + wrapped(printable(finding.advice), lineWidth);
}

QString located(const QString& base, const QString& file)
{
    return QDir::isAbsolutePath(file) ? file : QDir::cleanPath(base + QLatin1Char('/') + file);
}

QVariantMap withText(const QString& text)
{
    return {{QStringLiteral("text"), text}};
}

QVariantList sarifRules()
{
    QVariantList rules;
    for (const checker::CodeDescription& code : checker::codes()) {
        rules.append(QVariantMap{
            {QStringLiteral("id"), code.name},
            {QStringLiteral("shortDescription"), withText(code.title)},
            {QStringLiteral("fullDescription"), withText(code.explanation)},
            {QStringLiteral("help"), QVariantMap{{QStringLiteral("text"), code.explanation},
                                                 {QStringLiteral("markdown"), explain(code)}}},
            {QStringLiteral("defaultConfiguration"),
             QVariantMap{{QStringLiteral("level"), nameOf(code.severity)}}},
        });
    }
    return rules;
}

QVariantMap sarifLocation(const QString& file, const checker::Place& place, const QString& base)
{
    const QByteArray uri = QUrl::toPercentEncoding(located(base, file), "/");
    QVariantMap physical{{QStringLiteral("artifactLocation"),
                          QVariantMap{{QStringLiteral("uri"), QString::fromLatin1(uri)}}}};
    if (place.line > 0) {
        physical.insert(QStringLiteral("region"),
                        QVariantMap{{QStringLiteral("startLine"), place.line},
                                    {QStringLiteral("startColumn"), place.column},
                                    {QStringLiteral("endColumn"), place.column + place.length}});
    }
    QVariantMap location{{QStringLiteral("physicalLocation"), physical}};
    if (!place.pointer.isEmpty()) {
        location.insert(
            QStringLiteral("logicalLocations"),
            QVariantList{QVariantMap{{QStringLiteral("fullyQualifiedName"), place.pointer}}});
    }
    return location;
}

/// All that is said of a finding, for those that have one text for it.
QString messageOf(const Finding& finding)
{
    QStringList lines{finding.message, linkText(finding), finding.advice};
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

/// Whether everything could be read; else what could not.
QVariantMap sarifInvocation(const QList<Problem>& unread, const QString& base)
{
    QVariantMap invocation{{QStringLiteral("executionSuccessful"), unread.isEmpty()}};
    QVariantList notifications;
    for (const Problem& problem : unread) {
        QVariantMap notification{{QStringLiteral("level"), QStringLiteral("error")},
                                 {QStringLiteral("message"),
                                  withText(problem.message + QLatin1Char('\n') + problem.advice)}};
        if (!problem.file.isEmpty()) {
            notification.insert(
                QStringLiteral("locations"),
                QVariantList{sarifLocation(problem.file,
                                           {problem.line, problem.column, 1, {0, 0}, {}}, base)});
        }
        notifications.append(notification);
    }
    if (!unread.isEmpty()) {
        invocation.insert(QStringLiteral("toolExecutionNotifications"), notifications);
    }
    return invocation;
}

/// As the commands of a workflow spell text; their properties spell more.
QString escaped(QString text, bool isProperty)
{
    text.replace(QLatin1Char('%'), QLatin1String("%25"))
        .replace(QLatin1Char('\r'), QLatin1String("%0D"))
        .replace(QLatin1Char('\n'), QLatin1String("%0A"));
    if (isProperty) {
        text.replace(QLatin1Char(':'), QLatin1String("%3A"))
            .replace(QLatin1Char(','), QLatin1String("%2C"));
    }
    return text;
}

} // namespace

QString findingsText(const CheckedFile& file, bool color)
{
    QString text;
    for (const Finding& finding : file.findings) {
        text += findingText(finding, file.bytes, color);
    }
    return text;
}

QString findingsSummary(const QList<CheckedFile>& files, bool isAllRead)
{
    std::array<int, 3> counts{}; // by severity
    for (const CheckedFile& file : files) {
        for (const Finding& finding : file.findings) {
            ++counts[static_cast<std::size_t>(codeOf(finding).severity)];
        }
    }
    QStringList parts;
    for (const checker::Severity severity :
         {checker::Severity::Error, checker::Severity::Warning, checker::Severity::Note}) {
        const int count = counts[static_cast<std::size_t>(severity)];
        if (count > 0) {
            parts.append(counted(count, nameOf(severity), nameOf(severity) + QLatin1Char('s')));
        }
    }
    const QString nothing =
        isAllRead ? QStringLiteral("Nothing found") : QStringLiteral("No findings");
    return QStringLiteral("%1 in %2%3.\n")
        .arg(parts.isEmpty() ? nothing : enumerated(parts),
             counted(files.size(), QStringLiteral("file"), QStringLiteral("files")),
             isAllRead ? QString() : QStringLiteral(", but not everything could be read"));
}

int mistakesIn(const QList<checker::Finding>& findings)
{
    return static_cast<int>(
        std::count_if(findings.begin(), findings.end(), [](const Finding& finding) {
            return checker::describe(finding.code).severity != checker::Severity::Note;
        }));
}

void addFindings(JsonDocument& document, const QList<CheckedFile>& files)
{
    QStringList names;
    QList<Finding> findings;
    for (const CheckedFile& file : files) {
        names.append(file.name);
        findings += file.findings;
    }
    document.add(QStringLiteral("files"), names);
    document.addObjects(QStringLiteral("findings"), findings, [&document](const Finding& finding) {
        const bool hasPlace = finding.place.line > 0;
        document.add(QStringLiteral("code"), codeOf(finding).name);
        document.add(QStringLiteral("severity"), nameOf(codeOf(finding).severity));
        document.add(QStringLiteral("file"), finding.file);
        document.add(QStringLiteral("line"), hasPlace ? finding.place.line : QVariant());
        document.add(QStringLiteral("column"), hasPlace ? finding.place.column : QVariant());
        document.add(QStringLiteral("length"), hasPlace ? finding.place.length : QVariant());
        document.add(QStringLiteral("pointer"), finding.place.pointer.isEmpty()
                                                    ? QVariant()
                                                    : QVariant(finding.place.pointer));
        document.add(QStringLiteral("message"), finding.message);
        document.add(QStringLiteral("advice"), finding.advice);
        if (finding.link) {
            document.addObject(QStringLiteral("link"), [&] { addLink(document, *finding.link); });
        } else {
            document.add(QStringLiteral("link"), {});
        }
        document.add(QStringLiteral("otherLinks"), finding.otherLinks);
    });
}

QString findingsSarif(const QList<CheckedFile>& files, const QList<Problem>& unread,
                      const QString& base)
{
    QVariantList results;
    for (const CheckedFile& file : files) {
        for (const Finding& finding : file.findings) {
            results.append(QVariantMap{
                {QStringLiteral("ruleId"), codeOf(finding).name},
                {QStringLiteral("level"), nameOf(codeOf(finding).severity)},
                {QStringLiteral("message"), withText(messageOf(finding))},
                {QStringLiteral("locations"),
                 QVariantList{sarifLocation(finding.file, finding.place, base)}},
            });
        }
    }
    const QVariantMap driver{{QStringLiteral("name"), QStringLiteral("unitflow")},
                             {QStringLiteral("version"), QStringLiteral(UNITFLOW_VERSION)},
                             {QStringLiteral("rules"), sarifRules()}};
    const QVariantMap run{
        {QStringLiteral("tool"), QVariantMap{{QStringLiteral("driver"), driver}}},
        {QStringLiteral("invocations"), QVariantList{sarifInvocation(unread, base)}},
        {QStringLiteral("columnKind"), QStringLiteral("unicodeCodePoints")},
        {QStringLiteral("results"), results}};
    return toJsonText(QVariantMap{{QStringLiteral("version"), QStringLiteral("2.1.0")},
                                  {QStringLiteral("runs"), QVariantList{run}}}) +
           QLatin1Char('\n');
}

QString findingsGithub(const QList<CheckedFile>& files, const QList<Problem>& unread,
                       const QString& base)
{
    QString lines;
    for (const Problem& problem : unread) {
        QStringList properties;
        if (!problem.file.isEmpty()) {
            properties.append(QStringLiteral("file=") + escaped(located(base, problem.file), true));
        }
        if (problem.line > 0) {
            properties.append(
                QStringLiteral("line=%1,col=%2").arg(problem.line).arg(problem.column));
        }
        const QString listed = properties.join(QLatin1Char(','));
        lines += (listed.isEmpty() ? QStringLiteral("::error") : QStringLiteral("::error ")) +
                 listed + QStringLiteral("::") +
                 escaped(problem.message + QLatin1Char('\n') + problem.advice, false) +
                 QLatin1Char('\n');
    }
    for (const CheckedFile& file : files) {
        for (const Finding& finding : file.findings) {
            const checker::Severity severity = codeOf(finding).severity;
            lines += QStringLiteral("::") +
                     (severity == checker::Severity::Note ? QStringLiteral("notice")
                                                          : nameOf(severity)) +
                     QStringLiteral(" file=") + escaped(located(base, finding.file), true);
            if (finding.place.line > 0) {
                lines += QStringLiteral(",line=%1,col=%2,endColumn=%3")
                             .arg(finding.place.line)
                             .arg(finding.place.column)
                             .arg(finding.place.column + finding.place.length);
            }
            lines += QStringLiteral(",title=") + codeOf(finding).name + QStringLiteral("::") +
                     escaped(messageOf(finding), false) + QLatin1Char('\n');
        }
    }
    return lines;
}

} // namespace tools
