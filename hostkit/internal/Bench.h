#ifndef UNITFLOW_HOSTKIT_INTERNAL_BENCH_H
#define UNITFLOW_HOSTKIT_INTERNAL_BENCH_H

#include "hostkit/Adapter.h"
#include "hostkit/Check.h"

#include <QDebug>
#include <QDir>

namespace hostkit {

/// A value as findings show it.
template <class T>
QString shown(const T& value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

QString shown(const BaseClassSharedPointer& node);
QString shown(const QVariant& value);

template <class T>
bool same(const T& left, const T& right)
{
    return left == right;
}

/// Qt calls an invalid value and an empty text equal; the engine tells them apart.
inline bool same(const QVariant& left, const QVariant& right)
{
    return left.isValid() == right.isValid() && left == right;
}

/// Thrown when a check cannot go on. What was found stands in its outcome.
struct Stop {};

/// What a check works at: the host under check, and what is found about it.
class Bench {
public:
    Bench(const Check& check, Adapter& adapter) : checkName(check.name), adapter(adapter) {}

    Adapter& host() { return adapter; }
    const Outcome& outcome() const { return result; }

    /// A name for an instance or a description that no other check uses.
    QString name(const QString& role) const;

    /// Where the store keeps configurations or process descriptions.
    QDir folder(bool isProcess);

    void fail(const QString& found);
    [[noreturn]] void stop(const QString& found);
    [[noreturn]] void skip(const QString& reason);

    /// Fails unless `found` equals `wanted`. `what` is the call or the thing that was looked at.
    template <class T>
    void equal(const QString& what, const T& found, const T& wanted)
    {
        if (!same(found, wanted)) {
            fail(QStringLiteral("%1: %2 instead of %3").arg(what, shown(found), shown(wanted)));
        }
    }

    /// Fails unless `status` says that nothing was written.
    void refused(const QString& what, int status);

    /// A new tree with these leaves; stops the check when the adapter makes none.
    BaseClassSharedPointer tree(const Leaves& leaves);

    /// The node at `path`; stops the check when it is not found.
    BaseClassSharedPointer node(const BaseClassSharedPointer& root, const QStringList& path);

    /// The unit that the leaf at `path` shows.
    QString unit(const BaseClassSharedPointer& root, const QStringList& path);

    /// The units of the columns of an array leaf, as the engine reads them.
    QStringList columnUnits(const BaseClassSharedPointer& root, const QStringList& path);

    /// Puts an instance into the store and checks that it is handed out.
    void putInstance(const QString& name, bool isProcess, const Leaves& leaves);

    /// The tree of an instance from the store; stops the check when there is none.
    BaseClassSharedPointer load(const QString& name, bool isProcess);

    /// Stores a tree under the origins "hostkit" and `originSecond`.
    bool store(const QString& name, bool isProcess, const BaseClassSharedPointer& tree,
               const QString& originSecond);

private:
    QString checkName;
    Adapter& adapter;
    Outcome result;
};

/// How findings name a URL call.
QString call(const char* function, const QString& argument);

} // namespace hostkit

#endif
