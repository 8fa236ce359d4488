#include "filehost/LinkReader.h"

#include "filehost/Names.h"
#include "filehost/NearestNames.h"

#include <optional>

namespace filehost {

namespace {

using Index = json::JsonText::Index;
using json::JsonText;
using JsonKind = JsonText::Kind;

QString linkShape()
{
    return QStringLiteral(
        R"(a link is {"source": "A", "target": "B", "dependency": "D"}, optionally with )"
        R"("process": true and "parameters": [...])");
}

QStringList linkKeys()
{
    return {QStringLiteral("source"), QStringLiteral("target"), QStringLiteral("dependency"),
            QStringLiteral("process"), QStringLiteral("parameters")};
}

/// Reads one entry; every problem of it is added.
class LinkReader {
public:
    LinkReader(const JsonText& text, QList<Problem>& problems) : text(text), problems(problems) {}

    /// Nothing when anything is wrong with the entry.
    std::optional<Link> read(Index entry)
    {
        const int problemsBefore = problems.size();
        if (text.kind(entry) != JsonKind::Object) {
            fail(entry, QStringLiteral("this is no link"));
            return std::nullopt;
        }
        const json::Place place = text.place(text.node(entry).value.begin);
        Link link{{}, {},         {},          isTrue(entry, QStringLiteral("process")),
                  {}, place.line, place.column};
        for (const QString& key :
             {QStringLiteral("source"), QStringLiteral("target"), QStringLiteral("dependency")}) {
            if (text.member(entry, key) == JsonText::none) {
                fail(entry, QStringLiteral("the link has no \"%1\"").arg(key));
            }
        }
        for (const Index member : text.children(entry)) {
            readMember(member, link);
        }
        return problems.size() == problemsBefore ? std::optional<Link>(link) : std::nullopt;
    }

private:
    bool isTrue(Index entry, const QString& key) const
    {
        const Index member = text.member(entry, key);
        return member != JsonText::none && text.kind(member) == JsonKind::True;
    }

    void readMember(Index member, Link& link)
    {
        const JsonKind kind = text.kind(member);
        if (text.isUnder(member, u"source")) {
            readName(member, Named::Configuration, link.source);
        } else if (text.isUnder(member, u"target")) {
            readName(member, link.isProcess ? Named::Process : Named::Configuration, link.target);
        } else if (text.isUnder(member, u"dependency")) {
            readName(member, Named::Description, link.dependency);
        } else if (text.isUnder(member, u"process")) {
            if (kind != JsonKind::True && kind != JsonKind::False) {
                fail(member, QStringLiteral("\"process\" must be true or false"));
            }
        } else if (text.isUnder(member, u"parameters")) {
            if (kind != JsonKind::Array) {
                fail(member, QStringLiteral("\"parameters\" must be a list"));
            }
            link.parameters = text.value(member).toList();
        } else {
            const QString key = text.key(member);
            const QString nearest = nearestName(key, linkKeys());
            problems.append(text.problem(
                Problem::Code::Shape, text.node(member).key.begin,
                QStringLiteral("\"%1\" means nothing in a link").arg(key),
                nearest.isEmpty() ? linkShape()
                                  : QStringLiteral("did you mean \"%1\"?").arg(nearest)));
        }
    }

    void readName(Index member, Named what, QString& name)
    {
        if (text.kind(member) != JsonKind::String) {
            fail(member, QStringLiteral("\"%1\" must be a text").arg(text.key(member)));
            return;
        }
        name = text.value(member).toString();
        QList<Problem> refused;
        if (!checkName(what, name, refused)) {
            problems.append(text.problem(refused.first().code, text.node(member).value.begin,
                                         refused.first().message, refused.first().advice));
        }
    }

    void fail(Index index, const QString& message)
    {
        problems.append(
            text.problem(Problem::Code::Shape, text.node(index).value.begin, message, linkShape()));
    }

    const JsonText& text;
    QList<Problem>& problems;
};

} // namespace

QList<Link> readLinks(const JsonText& text, QList<Problem>& problems)
{
    if (text.kind(JsonText::root) != JsonKind::Array) {
        problems.append(text.problem(Problem::Code::Shape, text.node(JsonText::root).value.begin,
                                     QStringLiteral("the links must be a list"),
                                     QStringLiteral("write [ ... ]; ") + linkShape()));
        return {};
    }
    QList<Link> links;
    for (const Index entry : text.children(JsonText::root)) {
        const std::optional<Link> link = LinkReader(text, problems).read(entry);
        if (link) {
            links.append(*link);
        }
    }
    return links;
}

} // namespace filehost
