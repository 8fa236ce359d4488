#ifndef UNITFLOW_TESTS_HOST_HOST_H
#define UNITFLOW_TESTS_HOST_HOST_H

#include "Tree.h"
#include "host/ModifiedInstanceItem.h"

#include <QHash>
#include <QJsonValue>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <optional>

namespace testhost {

/// The host behind the static functions of engine/host: it records every call of the engine, in
/// order, and answers as the test tells it. There is one at a time, and each starts blank.
///
/// Constants (property keys, the configuration file extension) are not recorded: how often the
/// engine asks for one is its own affair.
class Host {
public:
    Host();
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The one there is; ends the process when there is none.
    static Host& current();

    void record(const QString& call);

    /// The calls since the last time this was asked.
    QStringList takeCalls();
    /// The same, only those whose record starts with one of `beginnings`.
    QStringList takeCalls(const QStringList& beginnings);

    /// Runs `action` once, inside the next call whose record starts with `beginning`. What that
    /// call returns was settled before.
    void insideNext(const QString& beginning, const std::function<void()>& action);
    /// The beginnings that no call has met yet.
    QStringList actionsNotRun() const;

    // What the description store holds and answers.
    QHash<QString, QString> descriptions;             ///< text by dependency name
    QHash<QString, BaseClassSharedPointer> instances; ///< tree by "folder/instance"
    bool storing = true;
    /// Whether the store works like that of a real host: hands out copies, takes over what is
    /// stored, and lists that in the register.
    bool keepingWhatIsStored = false;

    QList<ModifiedInstanceItem> modifiedInstances;

    /// Whether the array wrapper takes the units that the engine sets on its columns.
    bool takingColumnUnits = true;
    /// When set, what an iteration over the manifest finds in place of what is there.
    std::optional<QJsonValue> iterationResult;

    /// When set, what a table holds in place of the rows that the engine handed to the wrapper.
    std::function<QVariantList(const QVariantList&)> rowsOf;

private:
    QStringList calls;
    QList<QPair<QString, std::function<void()>>> actions;
};

} // namespace testhost

#endif
