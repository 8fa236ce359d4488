#include "DependencyWalker.h"

#include "DependencyWalkerDefinitions.h"
#include "DependencyWalkerFactory.h"
#include "Nodes/NodeBase.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"
#include "internal/Children.h"
#include "internal/Observing.h"
#include "internal/Running.h"
#include "patterns/Pattern.h"
#include "patterns/PatternIndex.h"

#include <QFile>

#include <algorithm>
#include <iterator>

using Selection = TraversalObserver::Selection;

namespace {

void reportSelection(TraversalObserver* listener, const QSharedPointer<NodeBase>& node,
                     Selection selection, const QString& watched)
{
    if (listener != nullptr && !node.isNull()) {
        listener->nodeSelected({node->getNodeName(), selection, watched});
    }
}

/// The pattern by which a node is found at this place of an answer. A node is found once for each
/// of its patterns that match, in their order.
QString selectingPattern(const QList<QSharedPointer<NodeBase>>& matching, int index,
                         const QString& url)
{
    const QSharedPointer<NodeBase>& node = matching.at(index);
    auto earlier = std::count(matching.cbegin(), matching.cbegin() + index, node);
    const QString& prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    for (const QString& watched : node.isNull() ? QStringList() : node->getConditionUrls()) {
        QString pattern = watched.mid(prefix.size());
        if (watched.startsWith(prefix) && patterns::Pattern(pattern).findsMatch(url) &&
            earlier-- == 0) {
            return pattern;
        }
    }
    return {};
}

} // namespace

DependencyWalker::DependencyWalker() : patternIndex(std::make_unique<patterns::PatternIndex>()) {}

DependencyWalker::DependencyWalker(const DependencyWalker& other)
    : urlNodeMap(other.urlNodeMap), regExpNodeMap(other.regExpNodeMap),
      unconditionalNodes(other.unconditionalNodes), urlsInBuildOrder(other.urlsInBuildOrder),
      patternIndex(std::make_unique<patterns::PatternIndex>(*other.patternIndex))
{}

DependencyWalker& DependencyWalker::operator=(const DependencyWalker& other)
{
    if (this != &other) {
        urlNodeMap = other.urlNodeMap;
        regExpNodeMap = other.regExpNodeMap;
        unconditionalNodes = other.unconditionalNodes;
        urlsInBuildOrder = other.urlsInBuildOrder;
        *patternIndex = *other.patternIndex;
    }
    return *this;
}

DependencyWalker::~DependencyWalker() = default;

bool DependencyWalker::isValid() const
{
    return !urlNodeMap.isEmpty() || !regExpNodeMap.isEmpty();
}

DependencyWalker::operator bool() const
{
    return isValid();
}

void DependencyWalker::reset()
{
    urlNodeMap.clear();
    regExpNodeMap.clear();
    urlsInBuildOrder.clear();
    patternIndex->clear();
    // The unconditional nodes stay on purpose: they watch nothing that could be forgotten.
}

bool DependencyWalker::initDependencyGraph(const BaseClassSharedPointer& description)
{
    if (description.isNull()) {
        return true;
    }
    reset();
    unconditionalNodes.clear();

    // The caller may let go of its own meanwhile.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const BaseClassSharedPointer root = description;
    for (const auto& [name, child] : internal::sortedChildren(*root)) {
        const QVariant type = internal::nodeType(child);
        if (!type.canConvert(QMetaType::QString)) {
            continue;
        }
        QSharedPointer<NodeBase> node;
        DependencyWalkerFactory::generateNode(type.toString(), name, child, node);
        if (node.isNull()) {
            continue;
        }
        const QStringList watched = node->getConditionUrls();
        if (watched.isEmpty()) {
            unconditionalNodes.append(node);
        }
        for (const QString& url : watched) {
            addWatchedUrl(url, node);
        }
    }
    patternIndex->seal();
    return true;
}

void DependencyWalker::addWatchedUrl(const QString& url, const QSharedPointer<NodeBase>& node)
{
    const QString& prefix = DependencyWalkerDefinitions::getPrefixRegularExpression();
    if (url.startsWith(prefix)) {
        const QString pattern = url.mid(prefix.size());
        regExpNodeMap.insert(pattern, node);
        patternIndex->add(pattern, node);
        return;
    }
    const auto inserted = urlNodeMap.insert(url, node);
    const auto earlier = std::next(inserted); // the last one inserted comes first
    if (earlier == urlNodeMap.end() || earlier.key() != url) {
        urlsInBuildOrder.append(url);
    }
}

bool DependencyWalker::initDependencyGraphByJsonString(const QString& json)
{
    const BaseClassSharedPointer description = ConfigurationAndProcessDataParser().parseFromJson(
        json, PropertyManagerConst::getConfigFileExtension());
    return !description.isNull() && initDependencyGraph(description);
}

bool DependencyWalker::initDependencyGraphByJsonFile(const QString& path)
{
    QFile file(path);
    // Opening no file at all would make Qt write a warning of its own.
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    const QByteArray bytes = file.readAll();
    return initDependencyGraphByJsonString(
        QString::fromUtf8(bytes.constData())); // up to the first zero byte
}

QMultiHash<QString, QSharedPointer<NodeBase>> DependencyWalker::getNodeMap() const
{
    return urlNodeMap + regExpNodeMap;
}

QStringList DependencyWalker::getDependencyUrlList() const
{
    return urlsInBuildOrder;
}

void DependencyWalker::filterRegExpMatches(const QString& url,
                                           QList<QSharedPointer<NodeBase>>& matches) const
{
    matches = patternIndex->matches(url);
}

bool DependencyWalker::traverseDependencyGraph(
    const QString& url, const BaseClassSharedPointer& sourceRoot,
    const BaseClassSharedPointer& targetRoot, QVariantList& results, bool& changed,
    QVariantList parameters, const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    // A node calls the host, which may rebuild this walker and let go of what it handed over. So
    // everything that is used after such a call is held here, the containers of the nodes included.
    const QString writtenUrl = url;
    const BaseClassSharedPointer source = sourceRoot;
    const BaseClassSharedPointer target = targetRoot;
    const QSharedPointer<UnitManipulatorBase> unitManipulator = manipulator;
    bool outcome = false;
    TraversalObserver* const listener = internal::observer();
    if (listener != nullptr) {
        listener->traversalStarted(writtenUrl);
    }
    const auto run = [&](const QSharedPointer<NodeBase>& node) {
        if (!node.isNull() && internal::runNode(*node, source, target, writtenUrl, results, changed,
                                                parameters, unitManipulator)) {
            outcome = true;
        }
    };

    const QMultiHash<QString, QSharedPointer<NodeBase>> watchers = urlNodeMap;
    for (auto watcher = watchers.constFind(writtenUrl);
         watcher != watchers.cend() && watcher.key() == writtenUrl; ++watcher) {
        reportSelection(listener, watcher.value(), Selection::Url, writtenUrl);
        run(watcher.value());
    }
    const QList<QSharedPointer<NodeBase>> matching = patternIndex->matches(writtenUrl);
    for (int index = 0; index < matching.size(); ++index) {
        if (listener != nullptr) {
            reportSelection(listener, matching.at(index), Selection::Pattern,
                            selectingPattern(matching, index, writtenUrl));
        }
        run(matching.at(index));
    }
    const QList<QSharedPointer<NodeBase>> unconditional = unconditionalNodes;
    for (const QSharedPointer<NodeBase>& node : unconditional) {
        reportSelection(listener, node, Selection::Unconditional, {});
        run(node);
    }
    if (listener != nullptr) {
        listener->traversalFinished(outcome, changed);
    }
    return outcome;
}

bool DependencyWalker::traverseDependencyGraph(
    const QString& url, const BaseClassSharedPointer& sourceRoot,
    const BaseClassSharedPointer& targetRoot, QVariantList& results, QVariantList parameters,
    const QSharedPointer<UnitManipulatorBase>& manipulator)
{
    bool changed = false;
    return traverseDependencyGraph(url, sourceRoot, targetRoot, results, changed,
                                   std::move(parameters), manipulator);
}
