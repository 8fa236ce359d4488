#include "checker/Check.h"

#include "checker/Description.h"
#include "checker/GraphCheck.h"
#include "checker/LinkCheck.h"
#include "filehost/Files.h"
#include "filehost/LinkPlan.h"

#include <QDir>
#include <QFile>
#include <QSet>

#include <algorithm>

namespace checker {

using filehost::DescriptionPlaces;
using filehost::Instance;
using filehost::Kind;
using filehost::Link;
using filehost::Problem;
using filehost::json::JsonText;

namespace {

constexpr const char* linksFile = "links.json";

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
        checked.findings.append(findingOf(problem));
    }
    return problems.isEmpty() ? text : nullptr;
}

Finding missing(const Link& link, const QString& what, const QString& name,
                const QStringList& names)
{
    return {Code::MissingFile,
            QLatin1String(linksFile),
            {link.line, link.column, 1, {0, 0}, {}},
            QStringLiteral("the link names the %1 %2, which is not there").arg(what, quoted(name)),
            didYouMean(name, names, QStringLiteral("\"unitflow show\" lists what there is")),
            std::nullopt,
            0};
}

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

CheckedFile WorkspaceCheck::checkLinks()
{
    CheckedFile checked{QLatin1String(linksFile), {}, {}};
    QFile file(QDir(workspace.directory()).filePath(checked.name));
    if (file.open(QIODevice::ReadOnly)) {
        checked.bytes = file.readAll();
    }
    for (const Problem& problem : linkProblems) {
        Finding finding = findingOf(problem);
        if (finding.code == Code::NotAnObject) {
            finding.code = Code::BadLink;
        }
        checked.findings.append(finding);
    }
    const QStringList descriptions = workspace.dependencyNames();
    const QStringList configurations = workspace.instanceNames(Kind::Configuration);
    const QStringList processes = workspace.instanceNames(Kind::Process);
    const QSet<QString> knownDescriptions(descriptions.begin(), descriptions.end());
    const QSet<QString> knownConfigurations(configurations.begin(), configurations.end());
    const QSet<QString> knownProcesses(processes.begin(), processes.end());
    for (const Link& link : links) {
        const QString configuration = QStringLiteral("configuration");
        if (!knownConfigurations.contains(link.source)) {
            checked.findings.append(missing(link, configuration, link.source, configurations));
        }
        if (!(link.isProcess ? knownProcesses : knownConfigurations).contains(link.target)) {
            checked.findings.append(missing(
                link, link.isProcess ? QStringLiteral("process description") : configuration,
                link.target, link.isProcess ? processes : configurations));
        }
        if (!knownDescriptions.contains(link.dependency)) {
            checked.findings.append(
                missing(link, QStringLiteral("description"), link.dependency, descriptions));
        }
    }
    std::stable_sort(checked.findings.begin(), checked.findings.end(),
                     [](const Finding& left, const Finding& right) {
                         return left.place.line < right.place.line;
                     });
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
    for (const int number : linksOf.value(name)) {
        const Link& link = links.at(number);
        const auto source = sourceTree(link);
        const Instance targetInstance = filehost::targetOf(link);
        const BaseClassSharedPointer target = session.view(targetInstance);
        if (source && !target.isNull()) {
            checkLink(nodes, places, {link, *source, Tree(target)}, patterns, findings);
        }
        session.complete(targetInstance); // so that memory does not grow with the workspace
    }
    checked.findings = findings.take();
    for (const Problem& problem : session.takeProblems()) {
        if (!isUnreadable(problem)) { // which checkLinks tells
            problems.append(problem);
        }
    }
    return checked;
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
