#ifndef EMBED_UNITFOLLOWER_H
#define EMBED_UNITFOLLOWER_H

#include <QList>
#include <QString>

/// One instance that follows another, and the description that says how.
struct Link {
    QString source;
    QString target;
    QString description;
};

/// What the application wants of the engine, in its own words. The module `embed-follower`
/// implements it; the application calls it through the object's virtual functions and so needs no
/// symbol of the module, nor of the engine, when it is built.
class UnitFollower {
public:
    virtual ~UnitFollower() = default;

    /// To be called after a value was written: the units of all targets follow, in the store.
    /// False when one of the links could not be resolved; the others are resolved all the same.
    virtual bool valueWritten(const QString& instance, const QString& url) = 0;
};

/// The one function that the module exports. The result belongs to the caller.
using MakeUnitFollower = UnitFollower* (*)(const QString& basePath, const QList<Link>& links);
constexpr const char* makeUnitFollowerName = "makeUnitFollower";

#endif
