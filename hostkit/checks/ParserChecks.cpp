#include "host/ConfigurationAndProcessDataDefinitions.h"
#include "host/ConfigurationAndProcessDataParser.h"
#include "host/PropertyManagerConst.h"
#include "hostkit/checks/Groups.h"
#include "hostkit/internal/Bench.h"
#include "hostkit/internal/Making.h"

namespace hostkit {

namespace {

/// As the walker does it: with a parser of its own for each text.
BaseClassSharedPointer parsed(const QString& text)
{
    return ConfigurationAndProcessDataParser().parseFromJson(
        text, PropertyManagerConst::getConfigFileExtension());
}

QString smallText(Bench& bench)
{
    return bench.host().text({unitLeaf({"Zone", "Actual"}, "K")});
}

} // namespace

QList<Check> parserChecks()
{
    return {
        {"parser.makes_the_tree_of_a_text",
         "parseFromJson returns the tree that a text describes, when it is given "
         "getConfigFileExtension(). The parser that made it need not live on.",
         "No dependency description could be read, and every resolution would fail.",
         [](Bench& bench) {
             const BaseClassSharedPointer root = parsed(smallText(bench));
             if (root.isNull()) {
                 bench.stop("parseFromJson returns null for " + smallText(bench));
             }
             bench.equal("unit of the leaf", bench.unit(root, {"Zone", "Actual"}),
                         QStringLiteral("K"));
         }},
        {"parser.returns_null_for_a_text_it_cannot_read",
         "parseFromJson returns null for a text that is not of the host's format.",
         "A broken description would count as one without nodes: the resolution fails all the "
         "same, but a walker that holds a good graph loses it.",
         [](Bench& bench) {
             const QString broken = bench.host().brokenText();
             bench.equal(call("parseFromJson", broken), parsed(broken), BaseClassSharedPointer());
         }},
        {"parser.makes_a_new_tree_each_time",
         "Two parses of one text give two trees: a write to one does not show in the other.",
         "A resolution would find units in its trees that another one wrote.",
         [](Bench& bench) {
             const BaseClassSharedPointer first = parsed(smallText(bench));
             const BaseClassSharedPointer second = parsed(smallText(bench));
             if (first.isNull() || second.isNull()) {
                 bench.stop("parseFromJson returns null for " + smallText(bench));
             }
             bench.node(first, {"Zone", "Actual"})
                 ->setDataProperty(
                     ConfigurationAndProcessDataDefinitions::getKeyDataPropertyUnitType(),
                     QStringLiteral("°F"));
             bench.equal("unit in the second tree", bench.unit(second, {"Zone", "Actual"}),
                         QStringLiteral("K"));
         }},
    };
}

} // namespace hostkit
