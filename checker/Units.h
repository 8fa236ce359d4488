#ifndef UNITFLOW_CHECKER_UNITS_H
#define UNITFLOW_CHECKER_UNITS_H

#include "filehost/Problem.h"
#include "filehost/json/JsonText.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

// What UDUNITS-2 calls its own.
struct ut_system;
union ut_unit;

namespace checker {

/// The units that there are: those that UDUNITS-2 knows, some that plants write besides, and a
/// workspace's own.
///
/// A text is a unit as it stands, character by character: with a blank in front it is none. A
/// number alone is none either, except 1: it is the value of the wrong leaf. Nor is a unit with a
/// number in front of it: that is a value. Each text is parsed once.
class Units {
public:
    /// Reads the list of UDUNITS-2, which takes some milliseconds. Null with a problem when that is
    /// not there.
    static std::unique_ptr<Units> load(QList<filehost::Problem>& problems);

    ~Units();
    Units(const Units&) = delete;
    Units& operator=(const Units&) = delete;

    /// Adds the units of a text like that of `units.json`, from top to bottom: a definition may
    /// name those above it. An own unit comes before any other of the same name.
    /// Entries with a problem are left out.
    void add(const filehost::json::JsonText& text, QList<filehost::Problem>& problems);

    bool isKnown(const QString& unit);

    /// Whether there is a conversion between two known units. There is none between a unit and one
    /// over it, as between s and Hz.
    bool areConvertible(const QString& left, const QString& right);

    /// Whether both are known and one and the same, as m3/h and m³/h.
    bool areEqual(const QString& left, const QString& right);

    /// What a known unit measures, in words and in base units: "a pressure, m⁻¹·kg·s⁻²".
    QString kindOf(const QString& unit);

    /// The known unit that is most like one that is none; empty when none is. Where `present` is
    /// known, only one that it can be converted to.
    QString nearest(const QString& text, const QString& present = {});

private:
    struct FreeUnit {
        void operator()(ut_unit* unit) const;
    };
    struct FreeSystem {
        void operator()(ut_system* system) const;
    };
    explicit Units(ut_system* system);

    using Unit = std::shared_ptr<ut_unit>; ///< null for what is no unit

    Unit parse(const QString& text) const;
    const Unit& unitOf(const QString& text);
    Unit define(const QString& name, const QString& definition) const;
    void enter(const QString& name, const Unit& unit);
    QStringList candidates(const QString& present);

    std::unique_ptr<ut_system, FreeSystem> system;
    QStringList addedNames;     ///< to what UDUNITS-2 knows
    QHash<QString, Unit> units; ///< those that were added, and those that were asked for
};

} // namespace checker

#endif
