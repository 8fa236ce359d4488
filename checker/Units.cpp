#include "checker/Units.h"

#include "filehost/NearestNames.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <udunits2.h>

namespace checker {

using filehost::Problem;
using filehost::json::JsonText;
using JsonKind = JsonText::Kind;

namespace {

/// What is most often meant, where the whole list of UDUNITS-2 would offer what nobody uses.
const QStringList& commonUnits()
{
    static const QStringList units =
        QString::fromUtf8("1 % ppm m mm cm µm km in ft m² cm² mm² m³ cm³ l ml L mL "
                          "ft³ gallon kg g mg µg t lb s ms µs min h d Hz kHz MHz GHz "
                          "rpm m/s m/min km/h mm/s ft/min m/s² rad ° rad/s A mA µA V "
                          "mV kV Ω kΩ MΩ S mS F µF nF pF C H T W kW MW mW J kJ MJ "
                          "V.A N kN N.m Pa hPa kPa MPa bar mbar psi mmHg atm K °C °F "
                          "Celsius m³/h m³/s l/min l/h ft³/min kg/h kg/s g/s t/h "
                          "kg/m³ g/l Pa.s mol mol/l lm lx cd W/m² Bq Gy Sv bit "
                          "byte")
            .split(QLatin1Char(' '));
    return units;
}

/// A unit by others.
struct Definition {
    const char* name;
    const char* definition; ///< empty for a kind of its own
};

/// What plants write on their displays, and UDUNITS-2 does not know or takes for something else:
/// mph for a thousandth of a phot, gal for an acceleration, dpt for a dry pint.
constexpr std::array<Definition, 64> fieldUnits{{
    {"Wh", "W h"},
    {"Ah", "A h"},
    {"var", "V A"},
    {"PS", "735.49875 W"},
    {"Nm", "N m"},
    {"kp", "kgf"},
    {"kip", "1000 lbf"},
    {"rev", "revolution"},
    {"rev/min", "revolution/min"},
    {"U/min", "revolution/min"},
    {"r/min", "revolution/min"},
    {"min⁻¹", "1/min"},
    {"s⁻¹", "1/s"},
    {"deg", "degree"},
    {"dpt", "1/m"},
    {"mph", "mile/hour"},
    {"kn", "knot"},
    {"gal", "gallon"},
    {"gal/min", "gallon/min"},
    {"gal/h", "gallon/hour"},
    {"gpm", "gallon/min"},
    {"gph", "gallon/hour"},
    {"cfm", "ft3/min"},
    {"cfh", "ft3/hour"},
    {"sccm", "cm3/min"},
    {"slm", "l/min"},
    {"lpm", "l/min"},
    {"Nm³", "m3"},
    {"Nm³/h", "m3/h"},
    {"Nm³/min", "m3/min"},
    {"Nm3", "m3"},
    {"Nm3/h", "m3/h"},
    {"Nm3/min", "m3/min"},
    {"cbm", "m3"},
    {"cbm/h", "m3/h"},
    {"Nl", "l"},
    {"Nl/min", "l/min"},
    {"barg", "bar"},
    {"bara", "bar"},
    {"psig", "psi"},
    {"psia", "psi"},
    {"bar(g)", "bar"},
    {"bar(a)", "bar"},
    {"mbar(g)", "mbar"},
    {"mbar(a)", "mbar"},
    {"psi(g)", "psi"},
    {"psi(a)", "psi"},
    {"mH2O", "9806.65 Pa"},
    {"mH₂O", "9806.65 Pa"},
    {"mmH₂O", "9.80665 Pa"},
    {"inH₂O", "249.08891 Pa"},
    {"mWS", "9806.65 Pa"},
    {"mmWS", "9.80665 Pa"},
    {"mmH2O", "9.80665 Pa"},
    {"inH2O", "249.08891 Pa"},
    {"cP", "0.01 poise"},
    {"mPas", "mPa s"},
    {"B", "byte"},
    {"‰", "0.001"},
    {"%RH", "%"},
    {"vol%", "%"},
    {"dB", ""},
    {"dBm", ""},
    {"pH", ""},
}};

/// A kind of what is measured, by a unit for it.
struct Kind {
    const char* unit;
    const char* name;
};

constexpr std::array<Kind, 32> kinds{{
    {"m", "a length"},
    {"m2", "an area"},
    {"m3", "a volume"},
    {"kg", "a mass"},
    {"s", "a time"},
    {"A", "an electric current"},
    {"K", "a temperature"},
    {"mol", "an amount of substance"},
    {"cd", "a luminous intensity"},
    {"rad", "a plain number or an angle"},
    {"Hz", "a frequency or rate"},
    {"m/s", "a speed"},
    {"m/s2", "an acceleration"},
    {"m3/s", "a volume flow"},
    {"kg/s", "a mass flow"},
    {"kg/m3", "a density"},
    {"N", "a force"},
    {"Pa", "a pressure"},
    {"J", "an energy or a torque"},
    {"W", "a power"},
    {"V", "a voltage"},
    {"Ω", "an electric resistance"},
    {"S", "an electric conductance"},
    {"C", "an electric charge"},
    {"F", "a capacitance"},
    {"H", "an inductance"},
    {"T", "a magnetic flux density"},
    {"Pa.s", "a viscosity"},
    {"m2/s", "a kinematic viscosity"},
    {"W/m2", "a heat flux"},
    {"mol/m3", "a concentration"},
    {"S/m", "an electric conductivity"},
}};

QString definitionShape()
{
    return QStringLiteral(R"(an entry is "pcs": null for a kind of its own, or "box": "24 pcs" )"
                          R"(in terms of units that are known or stand above it)");
}

/// A number is a unit for UDUNITS-2: so many times 1. In front of a unit it is so many of it, but
/// in front of a sign it is a part: "1/min", "10^3/ml".
const QRegularExpression& leadingNumber()
{
    static const QRegularExpression number(
        QStringLiteral(R"(^(?>[-+]?\d+(\.\d*)?(e[-+]?\d+)?\s*)(?=$|[\p{L}%‰°µ]))"),
        QRegularExpression::UseUnicodePropertiesOption);
    return number;
}

/// A degree sign that is another one, or apart from its letter: for UDUNITS-2 "° C" is an angle by
/// a charge.
const QRegularExpression& oddDegree()
{
    static const QRegularExpression degree(QStringLiteral("\u00ba\\s*|\u00b0\\s+(?=[CF])"));
    return degree;
}

bool isValue(const QString& text)
{
    return text != QLatin1String("1") && text.contains(leadingNumber());
}

/// Both are units of one system.
bool haveOneDimension(const ut_unit* left, const ut_unit* right)
{
    if (ut_are_convertible(left, right) == 0) {
        return false;
    }
    // UDUNITS-2 also converts a unit to one over it.
    ut_unit* const ratio = ut_divide(left, right);
    const bool isReciprocal = ratio != nullptr && ut_is_dimensionless(ratio) == 0;
    ut_free(ratio);
    return !isReciprocal;
}

QString inBaseUnits(const ut_unit* unit)
{
    constexpr std::size_t longest = 256;
    std::array<char, longest> text{};
    if (ut_format(unit, text.data(), text.size() - 1, UT_UTF8 | UT_DEFINITION) < 0) {
        return {};
    }
    static const QRegularExpression scaleAndOrigin(
        QStringLiteral("^[0-9.]+(e[-+]?[0-9]+)? | @ .*$"));
    return QString::fromUtf8(text.data()).remove(scaleAndOrigin);
}

} // namespace

void Units::FreeUnit::operator()(ut_unit* unit) const
{
    ut_free(unit);
}

void Units::FreeSystem::operator()(ut_system* system) const
{
    ut_free_system(system);
}

Units::Units(ut_system* system) : system(system) {}

Units::~Units()
{
    units.clear(); // before what they are units of
}

std::unique_ptr<Units> Units::load(QList<Problem>& problems)
{
    ut_set_error_message_handler(ut_ignore); // it would print what the findings say
    ut_system* const system = ut_read_xml(nullptr);
    if (system == nullptr) {
        ut_status status = UT_SUCCESS;
        problems.append({Problem::Code::Read,
                         QString::fromLocal8Bit(ut_get_path_xml(nullptr, &status)), 0, 0,
                         QStringLiteral("the units of UDUNITS-2 cannot be read, so no unit is "
                                        "checked"),
                         QStringLiteral("install them (libudunits2-data), or let the environment "
                                        "variable UDUNITS2_XML_PATH name their file")});
        return nullptr;
    }
    std::unique_ptr<Units> units(new Units(system));
    for (const Definition& unit : fieldUnits) {
        const QString name = QString::fromUtf8(unit.name);
        units->enter(name, units->define(name, QString::fromUtf8(unit.definition)));
    }
    return units;
}

void Units::add(const JsonText& text, QList<Problem>& problems)
{
    const auto fail = [&](JsonText::Index index, const QString& message) {
        problems.append(text.problem(Problem::Code::Shape, text.node(index).value.begin, message,
                                     definitionShape()));
    };
    if (text.kind(JsonText::root) != JsonKind::Object) {
        fail(JsonText::root, QStringLiteral("the units must be an object"));
        return;
    }
    for (const JsonText::Index member : text.children(JsonText::root)) {
        const QString name = text.key(member);
        if (name.startsWith(QLatin1Char('@'))) {
            continue;
        }
        const JsonKind kind = text.kind(member);
        if (name.isEmpty()) {
            fail(member, QStringLiteral("a unit cannot be empty"));
        } else if (kind != JsonKind::String && kind != JsonKind::Null) {
            fail(member,
                 QStringLiteral("the definition of \"%1\" is neither a text nor null").arg(name));
        } else if (const Unit unit = define(name, text.value(member).toString())) {
            enter(name, unit);
        } else {
            fail(member, QStringLiteral("the definition of \"%1\" is no unit").arg(name));
        }
    }
}

/// Null when the definition is no unit.
Units::Unit Units::define(const QString& name, const QString& definition) const
{
    if (!definition.isEmpty()) {
        return units.contains(definition) ? units.value(definition) : parse(definition);
    }
    Unit unit(ut_new_base_unit(system.get()), FreeUnit());
    ut_map_unit_to_symbol(unit.get(), name.toUtf8().constData(), UT_UTF8);
    return unit;
}

/// Lets a name stand for a unit, alone and within others.
void Units::enter(const QString& name, const Unit& unit)
{
    const QByteArray bytes = name.toUtf8();
    ut_unmap_name_to_unit(system.get(), bytes.constData(), UT_UTF8);
    ut_unmap_symbol_to_unit(system.get(), bytes.constData(), UT_UTF8);
    ut_map_symbol_to_unit(bytes.constData(), UT_UTF8, unit.get());
    units.insert(name, unit);
    addedNames.append(name);
}

Units::Unit Units::parse(const QString& text) const
{
    const QByteArray bytes = text.toUtf8();
    return {ut_parse(system.get(), bytes.constData(), UT_UTF8), FreeUnit()};
}

const Units::Unit& Units::unitOf(const QString& text)
{
    auto known = units.find(text);
    if (known == units.end()) {
        const bool isNone = text.isEmpty() || isValue(text) || text.contains(oddDegree());
        known = units.insert(text, isNone ? Unit() : parse(text));
    }
    return *known;
}

bool Units::isKnown(const QString& unit)
{
    return unitOf(unit) != nullptr;
}

bool Units::areConvertible(const QString& left, const QString& right)
{
    const Unit ofLeft = unitOf(left); // the next line may move it
    return haveOneDimension(ofLeft.get(), unitOf(right).get());
}

bool Units::areEqual(const QString& left, const QString& right)
{
    const Unit ofLeft = unitOf(left); // the next line may move it
    const Unit& ofRight = unitOf(right);
    return ofLeft != nullptr && ofRight != nullptr && ut_compare(ofLeft.get(), ofRight.get()) == 0;
}

QString Units::kindOf(const QString& unit)
{
    const Unit known = unitOf(unit);
    QString base = inBaseUnits(known.get());
    for (const Kind& kind : kinds) {
        const Unit one = parse(QString::fromUtf8(kind.unit));
        if (one != nullptr && haveOneDimension(known.get(), one.get())) {
            return QString::fromUtf8(kind.name) + QStringLiteral(", ") + base;
        }
    }
    return base;
}

/// Of what is offered, what fits the unit that is there; empty for anything.
QStringList Units::candidates(const QString& present)
{
    QStringList fitting;
    for (const QString& unit : addedNames + commonUnits()) {
        if (isKnown(unit) && (!isKnown(present) || areConvertible(present, unit))) {
            fitting.append(unit);
        }
    }
    return fitting;
}

QString Units::nearest(const QString& text, const QString& present)
{
    QString plain = text.trimmed();
    plain.replace(oddDegree(), QStringLiteral("\u00b0")).remove(leadingNumber());
    if (isKnown(plain)) {
        return plain;
    }
    const QStringList offered = candidates(present);
    const auto inOtherCase = std::find_if(offered.begin(), offered.end(), [&](const QString& unit) {
        return unit.compare(plain, Qt::CaseInsensitive) == 0;
    });
    return inOtherCase != offered.end() ? *inOtherCase : filehost::nearestName(text, offered);
}

} // namespace checker
