#include "hostkit/internal/Story.h"

#include "DependencyResolverBaseClass.h"
#include "DependencyWalker.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"
#include "hostkit/internal/Tables.h"

#include <algorithm>

namespace hostkit {

namespace {

void expectTablesReadBack(Bench& bench, const Leaves& description)
{
    const BaseClassSharedPointer root = bench.tree(description);
    for (const Leaf& leaf : description) {
        const QVariantList rows = leaf.value.toList();
        if (!rows.isEmpty() && rowTexts(rowsOf(bench.node(root, leaf.path))) != rowTexts(rows)) {
            bench.stop(QStringLiteral("the table at \"%1\" of the description does not read back; "
                                      "see the checks of tables")
                           .arg(bench.host().url(leaf.path)));
        }
    }
}

void expectColumnsReadBack(Bench& bench, const Leaves& target)
{
    const BaseClassSharedPointer root = bench.tree(target);
    for (const Leaf& leaf : target) {
        if (!leaf.columnUnits.isEmpty() &&
            bench.columnUnits(root, leaf.path).size() != leaf.columnUnits.size()) {
            bench.stop(QStringLiteral("the columns of \"%1\" do not read back; see the checks of "
                                      "arrays")
                           .arg(bench.host().url(leaf.path)));
        }
    }
}

/// What an expectation says about one place, or what stood there before.
QString expectedUnit(const Story& story, const QStringList& path, int column, const QString& before)
{
    const auto found =
        std::find_if(story.units.cbegin(), story.units.cend(), [&](const ExpectedUnit& expected) {
            return expected.path == path && expected.column == column;
        });
    return found == story.units.cend() ? before : found->unit;
}

void expectUnits(Bench& bench, const Story& story, const BaseClassSharedPointer& target)
{
    for (const Leaf& leaf : story.target) {
        const QString what = QStringLiteral("unit of \"%1\"").arg(bench.host().url(leaf.path));
        if (leaf.columnUnits.isEmpty()) {
            bench.equal(what, bench.unit(target, leaf.path),
                        expectedUnit(story, leaf.path, 0, leaf.unit));
            continue;
        }
        QStringList wanted;
        for (int column = 0; column < leaf.columnUnits.size(); ++column) {
            wanted.append(expectedUnit(story, leaf.path, column, leaf.columnUnits.at(column)));
        }
        bench.equal(what, bench.columnUnits(target, leaf.path), wanted);
    }
}

void expectOutcome(Bench& bench, const Story& story, bool resolved, bool changed)
{
    bench.equal("result of the resolution", resolved, true);
    bench.equal("changed flag of the resolution", changed, story.changed);
}

} // namespace

void play(Bench& bench, const Story& story)
{
    expectTablesReadBack(bench, story.description);
    expectColumnsReadBack(bench, story.target);

    const QString source = bench.name("Source");
    const QString target = bench.name("Target");
    const QString description = bench.name("Description");
    bench.putInstance(source, false, story.source);
    bench.putInstance(target, story.isProcess, story.target);
    bench.host().putDescription(description, bench.host().text(story.description));

    const DependencyResolverBaseClass resolver(bench.host().basePath(), "hostkit", "story");
    bool changed = false;
    const bool resolved = resolver.resolveDependency(
        source, target, description, changed, story.isProcess, story.urls, story.parameters, {});
    expectOutcome(bench, story, resolved, changed);
    expectUnits(bench, story, bench.load(target, story.isProcess));
}

void playOnTrees(Bench& bench, const Story& story)
{
    expectTablesReadBack(bench, story.description);
    expectColumnsReadBack(bench, story.target);

    const BaseClassSharedPointer source = bench.tree(story.source);
    const BaseClassSharedPointer target = bench.tree(story.target);
    DependencyWalker walker;
    bench.equal("initDependencyGraphByJsonString",
                walker.initDependencyGraphByJsonString(bench.host().text(story.description)), true);
    bool resolved = true;
    bool changed = false;
    QVariantList results;
    for (const QString& url : story.urls) {
        resolved = walker.traverseDependencyGraph(url, source, target, results, changed,
                                                  story.parameters, {}) &&
                   resolved;
    }
    expectOutcome(bench, story, resolved, changed);
    expectUnits(bench, story, target);
}

Leaf node(const QStringList& path, const char* type)
{
    return valueLeaf(path + QStringList("Type"), QString::fromLatin1(type));
}

Leaf command(const QStringList& path, const char* type, const QVariantList& rows)
{
    return valueLeaf(path + QStringList{"Commands", QString::fromLatin1(type)}, rows);
}

} // namespace hostkit
