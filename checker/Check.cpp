#include "checker/Check.h"

#include "checker/Description.h"
#include "checker/GraphCheck.h"
#include "checker/LinkCheck.h"
#include "checker/LinkRun.h"
#include "filehost/Files.h"
#include "filehost/LinkPlan.h"
#include "filehost/tree/FileTree.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <tuple>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::Instance;
using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::json::JsonText;

namespace {

constexpr const char* linksFile = "links.json";
constexpr const char* unitsFileName = "units.json";

bool isUnreadable(const Problem& problem)
{
    return problem.code == Problem::Code::Missing || problem.code == Problem::Code::Read;
}

/// Null with findings when the bytes are no tree.
std::shared_ptr<const JsonText> parse(CheckedFile& checked)
{
    QList<Problem> problems;
    auto text = JsonText::parse(checked.bytes, checked.name, problems);
    if (text && text->kind(JsonText::root) != JsonText::Kind::Object) {
        problems.append(text->problem(Problem::Code::Shape, text->node(JsonText::root).value.begin,
                                      QStringLiteral("a description is an object; the engine "
                                                     "makes nothing of this"),
                                      QStringLiteral("write { \"name of a node\": { ... } }")));
    }
    for (const Problem& problem : problems) {
        checked.findings.append(findingOf(problem, Code::NotAnObject));
    }
    return problems.isEmpty() ? text : nullptr;
}

/// Whether the engine has anything to do for the links of a description.
void checkHasNodes(const std::vector<Node>& nodes, const DescriptionPlaces& places,
                   Findings& findings)
{
    if (nodes.empty() && findings.isEmpty()) {
        findings.add(Code::NoEffect, places.valueAt(JsonText::root),
                     QStringLiteral("the description has no nodes, so the links that name it do "
                                    "nothing"),
                     QStringLiteral("write { \"name of a node\": { ... } }, or remove the links"));
    }
}

/// Leaves out what stands in links of other descriptions. What names none may be of any.
void leaveOutOthers(const QStringList& descriptions, const JsonText& text, QList<Finding>& findings)
{
    const auto standsBefore = [](const filehost::json::Place& left, const Place& right) {
        return std::tie(left.line, left.column) <= std::tie(right.line, right.column);
    };
    for (const JsonText::Index entry : text.children(JsonText::root)) {
        const JsonText::Index named = text.kind(entry) == JsonText::Kind::Object
                                          ? text.member(entry, QStringLiteral("dependency"))
                                          : JsonText::none;
        if (named == JsonText::none || text.kind(named) != JsonText::Kind::String ||
            descriptions.contains(text.value(named).toString())) {
            continue;
        }
        const auto begin = text.place(text.node(entry).value.begin);
        const auto end = text.place(text.node(entry).value.end);
        findings.erase(std::remove_if(findings.begin(), findings.end(),
                                      [&](const Finding& finding) {
                                          return standsBefore(begin, finding.place) &&
                                                 !standsBefore(end, finding.place);
                                      }),
                       findings.end());
    }
}

/// Finds links that name what is not there.
class MissingFiles {
public:
    MissingFiles(const filehost::Workspace& workspace, CheckedFile& checked)
        : descriptions(workspace.dependencyNames()),
          configurations(workspace.instanceNames(Kind::Configuration)),
          processes(workspace.instanceNames(Kind::Process)), checked(checked)
    {}

    void check(const Link& link, const DescriptionPlaces& places, JsonText::Index entry)
    {
        const auto lookFor = [&](const char* key, const Names& names, const QString& name) {
            if (!names.known.contains(name)) {
                const JsonText::Index cell = places.text().member(entry, QLatin1String(key));
                add(places.valueAt(cell), names, name);
            }
        };
        lookFor("source", configurations, link.source);
        lookFor("target", link.isProcess ? processes : configurations, link.target);
        lookFor("dependency", descriptions, link.dependency);
    }

private:
    struct Names {
        explicit Names(const QStringList& list) : list(list), known(list.begin(), list.end()) {}
        QStringList list;
        QSet<QString> known;
    };

    void add(const Place& place, const Names& names, const QString& name)
    {
        const QString what = &names == &descriptions ? QStringLiteral("description")
                             : &names == &processes  ? QStringLiteral("process description")
                                                     : QStringLiteral("configuration");
        checked.findings.append({Code::MissingFile, checked.name, place,
                                 QStringLiteral("there is no %1 %2; the link cannot be resolved")
                                     .arg(what, quoted(name)),
                                 adviceOn(name, names), std::nullopt, 0});
    }

    static QString adviceOn(const QString& name, const Names& names)
    {
        const QString plain = withoutFile(name);
        for (const QString& likely : {plain, plain.section(QLatin1Char('/'), 1)}) {
            if (names.known.contains(likely)) {
                return QStringLiteral("write %1: a name stands without the folder and the ending "
                                      "of its file")
                    .arg(quoted(likely));
            }
        }
        return didYouMean(name, names.list,
                          QStringLiteral("\"unitflow show\" lists what there is"));
    }

    /// Without the ending of a file.
    static QString withoutFile(const QString& name)
    {
        const QString ending = QStringLiteral(".json");
        return name.endsWith(ending) ? name.chopped(ending.size()) : name;
    }

    const Names descriptions;
    const Names configurations;
    const Names processes;
    CheckedFile& checked;
};

} // namespace

CheckedFile checkText(const QByteArray& bytes, const QString& name)
{
    CheckedFile checked{name, bytes, {}};
    if (const auto text = parse(checked)) {
        const DescriptionPlaces places(text);
        Findings findings(places);
        Patterns patterns;
        checkGraph(readDescription(places, findings), places, patterns, findings);
        checked.findings = findings.take();
    }
    return checked;
}

WorkspaceCheck::WorkspaceCheck(const filehost::Workspace& workspace)
    : workspace(workspace), session(workspace, filehost::Session::Access::Read),
      links(workspace.links(linkProblems))
{
    session.begin({});
    for (int i = 0; i < links.size(); ++i) {
        linksOf[links.at(i).dependency].append(i);
    }
}

CheckedFile WorkspaceCheck::checkLinks(const QStringList& descriptions)
{
    CheckedFile checked{QLatin1String(linksFile), {}, {}};
    QFile file(QDir(workspace.directory()).filePath(checked.name));
    if (file.open(QIODevice::ReadOnly)) {
        checked.bytes = file.readAll();
    }
    for (const Problem& problem : linkProblems) {
        checked.findings.append(findingOf(problem, Code::BadLink));
    }
    QList<Problem> ignored; // the same as those above
    if (const auto text = JsonText::parse(checked.bytes, checked.name, ignored)) {
        const DescriptionPlaces places(text);
        MissingFiles missing(workspace, checked);
        auto link = links.cbegin();
        for (const JsonText::Index entry : text->children(JsonText::root)) {
            const filehost::json::Place place = text->place(text->node(entry).value.begin);
            if (link != links.cend() && link->line == place.line && link->column == place.column) {
                missing.check(*link, places, entry); // entries with a problem have no link
                checkParameters(*link, places, entry, checked);
                ++link;
            }
        }
        if (!descriptions.isEmpty()) {
            leaveOutOthers(descriptions, *text, checked.findings);
        }
    }
    sortByPlace(checked.findings);
    return checked;
}

CheckedFile WorkspaceCheck::checkDescription(const QString& name, QList<Problem>& problems)
{
    CheckedFile checked{{}, {}, {}};
    const QString path = workspace.dependencyPath(name, problems);
    if (path.isEmpty()) {
        return checked;
    }
    checked.name = QDir(workspace.directory()).relativeFilePath(path);
    const auto bytes = filehost::readBytes({path, checked.name}, problems);
    if (!bytes) {
        return checked;
    }
    checked.bytes = *bytes;
    const auto text = parse(checked);
    if (!text) {
        return checked;
    }
    const DescriptionPlaces places(text);
    Findings findings(places);
    const std::vector<Node> nodes = readDescription(places, findings);
    checkGraph(nodes, places, patterns, findings);
    if (linksOf.contains(name)) {
        checkLinks(name, nodes, text, findings, problems);
        checkHasNodes(nodes, places, findings);
    } else if (Units* const known = knownUnits(problems)) {
        checkFixedUnits(nodes, places, *known, findings);
    }
    checked.findings = findings.take();
    for (const Problem& problem : session.takeProblems()) {
        if (!isUnreadable(problem)) { // which checkLinks tells
            problems.append(problem);
        }
    }
    return checked;
}

void WorkspaceCheck::checkParameters(const Link& link, const DescriptionPlaces& places,
                                     JsonText::Index entry, CheckedFile& checked)
{
    if (link.parameters.isEmpty()) {
        return;
    }
    const ParameterUse use = useOf(link.dependency);
    const bool isFirstText = link.parameters.first().canConvert(QMetaType::QString);
    const bool takesAll =
        use.takesTwo || (use.takesFirst && isFirstText && link.parameters.size() == 1);
    if (takesAll || !use.isKnown) {
        return;
    }
    const QString message =
        !use.takesFirst ? QStringLiteral("no row of %1 takes parameters")
        : !isFirstText
            ? QStringLiteral("%1 puts the first parameter in front of URLs, but this one is "
                             "neither a text nor a number and is not taken")
            : QStringLiteral("%1 takes the first parameter only");
    checked.findings.append(
        {Code::UnusedParameters, checked.name,
         places.valueAt(places.text().member(entry, QStringLiteral("parameters"))),
         message.arg(quoted(link.dependency)),
         QStringLiteral("remove what is not taken, or write \"%1\" and \"%2\" into the URLs of "
                        "\"CommandSetUnitByConfigurationParameter\""),
         std::nullopt, 0});
}

ParameterUse WorkspaceCheck::useOf(const QString& description)
{
    auto known = parameterUses.find(description);
    if (known == parameterUses.end()) {
        QList<Problem> ignored; // those of a description that is not there or no description
        ParameterUse use;
        if (const auto places = DescriptionPlaces::read(workspace, description, ignored)) {
            Findings unused(*places);
            use = parameterUse(readDescription(*places, unused), *places);
            use.isKnown = true;
        }
        known = parameterUses.insert(description, use);
    }
    return *known;
}

/// What the links of a description find in it.
void WorkspaceCheck::checkLinks(const QString& name, const std::vector<Node>& nodes,
                                const std::shared_ptr<const JsonText>& text, Findings& findings,
                                QList<Problem>& problems)
{
    const DescriptionPlaces places(text);
    Units* const known = knownUnits(problems);
    std::optional<LinkRun> run;
    if (known != nullptr && !findings.contains(Code::RowFatal)) {
        run.emplace(nodes, places, filehost::tree::FileTreeNode::makeRoot(text, {}));
    }
    for (const int number : linksOf.value(name)) {
        const Link& link = links.at(number);
        const auto source = sourceTree(link);
        const Instance targetInstance = filehost::targetOf(link);
        const BaseClassSharedPointer target = session.view(targetInstance);
        if (source && !target.isNull()) {
            const Tree targetTree(target);
            const LinkedTrees linked{link, *source, targetTree, known};
            const LinkOutline outline = checkLink(nodes, places, linked, patterns, findings);
            if (run && !outline.endsProcess) {
                run->check(linked, session.load(targetInstance), outline.writtenUrls, findings);
            }
        }
        session.complete(targetInstance); // so that memory does not grow with the workspace
    }
}

/// Null when they cannot be had, which is told once.
Units* WorkspaceCheck::knownUnits(QList<Problem>& problems)
{
    if (!areUnitsRead) {
        areUnitsRead = true;
        readUnits(problems);
    }
    return units.get();
}

void WorkspaceCheck::readUnits(QList<Problem>& problems)
{
    units = Units::load(problems);
    const QString path = QDir(workspace.directory()).filePath(QLatin1String(unitsFileName));
    if (!units || !QFile::exists(path)) {
        return;
    }
    unitsFile = CheckedFile{QLatin1String(unitsFileName), {}, {}};
    const auto bytes = filehost::readBytes({path, unitsFile->name}, problems);
    if (!bytes) {
        units.reset();
        return;
    }
    unitsFile->bytes = *bytes;
    QList<Problem> inText;
    const auto text = JsonText::parse(*bytes, unitsFile->name, inText);
    if (text) {
        units->add(*text, inText);
    }
    if (!text || text->kind(JsonText::root) != JsonText::Kind::Object) {
        units.reset(); // which of them the workspace would list cannot be told
    }
    for (const Problem& problem : inText) {
        unitsFile->findings.append(findingOf(problem, Code::BadUnit));
    }
    sortByPlace(unitsFile->findings);
}

std::optional<CheckedFile> WorkspaceCheck::checkUnits(QList<Problem>& problems)
{
    knownUnits(problems);
    return unitsFile;
}

std::shared_ptr<const Tree> WorkspaceCheck::sourceTree(const Link& link)
{
    if (!lastSourceTree || lastSource != link.source) {
        const BaseClassSharedPointer root = session.view(filehost::sourceOf(link));
        lastSource = link.source;
        lastSourceTree = root.isNull() ? nullptr : std::make_shared<const Tree>(root);
    }
    return lastSourceTree;
}

} // namespace checker
