#ifndef UNITFLOW_TOOLS_WHY_WHYCOMMAND_H
#define UNITFLOW_TOOLS_WHY_WHYCOMMAND_H

#include "filehost/DescriptionPlaces.h"
#include "filehost/Workspace.h"
#include "tools/Command.h"
#include "tools/why/Reach.h"
#include "tools/workspace/Leaves.h"

#include <QList>
#include <QString>
#include <QVariantList>

#include <map>
#include <optional>
#include <string>

namespace tools {

class JsonDocument;

/// `unitflow why INSTANCE URL`: who can set the unit of a leaf, and who does.
class WhyCommand : public Command {
public:
    CLI::App* declare(CLI::App& program) override;
    ExitCode run(Console& console) override;

private:
    /// Where a row stands, and what is in it.
    struct RowText {
        QString file;
        filehost::DescriptionPlaces::Place place{};
        QVariantList cells;
    };

    ExitCode work(Console& console);
    bool findLeaf(filehost::Session& session, Console& console);
    const RowText& textOf(const ReachingRow& row) const;
    void readRow(const filehost::Workspace& workspace, const CommandRowId& id);
    void sortRows();
    QList<ReachingRow> nearest() const;
    int indexOf(const Decision& decision) const;
    QList<LinkRun> unresolvedRuns() const;

    QString text(bool color) const;
    QString rowText(const ReachingRow& row) const;
    QString nearestText(bool color) const;
    QString decisionText() const;
    QString decisionText(const Decision& decision) const;
    void writeDocument(Console& console, ExitCode exitCode) const;
    void addRow(JsonDocument& json, const ReachingRow& row) const;

    std::string instanceArgument;
    std::string urlArgument;
    bool isProcess = false;

    filehost::Instance instance;
    QString url;
    QList<filehost::Link> links;
    std::optional<Leaf> leaf; ///< as it is in its file
    Reach reach;
    QList<ReachingRow> near; ///< of `reach.others`; only when no row reaches the leaf
    std::map<CommandRowId, RowText> texts;
    std::map<QString, std::optional<filehost::DescriptionPlaces>> places; ///< by description
};

} // namespace tools

#endif
