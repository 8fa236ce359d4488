#include "NastyPatterns.h"

#include <QStringView>

#include <initializer_list>
#include <string_view>

namespace patterns {
namespace {

using namespace std::string_view_literals; // these keep zero characters

constexpr std::initializer_list<std::u16string_view> matching = {
    // The text that has to be there is shorter than it looks.
    u"zone*"sv, u"zone?"sv, u"zone{0}temp"sv, u"zone{0,1}"sv, u"zone{0,}"sv, u"zone*?"sv,
    u"zone?+"sv, u"zone{0,2}+"sv, u"(zone)?temp"sv, u"(?:zone)*temp"sv, u"(zone){0}temp"sv,
    u"(?:zone){0,3}?temp"sv, u"(zone|)temp"sv, u"(|zone)temp"sv, u"z[o]?ne"sv, u"(zo(ne)?)?temp"sv,
    u"zo\\x6ee?"sv, u"zo\\Qne\\E*"sv, u"\\Qzone\\E?"sv, u"zon\\x65{0}"sv, u"\U0001D4B3*"sv,
    u"zone\U0001D4B3?temp"sv, u"zone(?#temp)?"sv, u"zone(?#temp)*temp"sv, u"(?:(?:(?:zone)))?"sv,
    u"zone()?temp"sv, u"(?<n>zone)?temp"sv, u"(?>zone)?temp"sv, u"(?|zone)?temp"sv,
    u"(?i:zone)?temp"sv, u"(?=zone)?temp"sv, u"(?<zone>temp)?a"sv, u"(zone){0,1}temp"sv,
    u"((zone)temp){0}a"sv, u"(zone)*?temp"sv, u"(zone)?+temp"sv,
    // ... and here it only looks shorter.
    u"zone{"sv, u"zone{}"sv, u"zone{,2}"sv, u"zone{a}"sv, u"zone{1,2"sv, u"zone{1,2,3}"sv,
    u"zone{ 1}"sv, u"zone}"sv, u"zone{2}"sv, u"zone{1,1}"sv, u"zone+"sv, u"zone++"sv,
    // Either the one or the other.
    u"zone|temp"sv, u"zone|"sv, u"|zone"sv, u"|"sv, u""sv, u"()"sv, u"(zone|temp)/a"sv,
    u"(?:zone/a|temp)"sv, u"zone(?=/|$)|temp"sv, u"((zone)|(temp))"sv, u"(?|(zone)|(temp))\\1?"sv,
    u"(?>zone|zonetemp)"sv, u"(?:zone|temp(?:/a|/b)|a)"sv, u"zone[|]temp|a"sv, u"zone\\|temp|a"sv,
    u"\\Qa|b\\E|zone"sv, u"zone(?#|)temp|a"sv, u"(?x)zone #|\ntemp"sv,
    // What is asked for without being taken, or refused.
    u"(?!zone)temp"sv, u"(?<!zone)temp"sv, u"(?=zone)z"sv, u"(?<=zone)temp"sv, u"(?=temp)?zone"sv,
    u"(?=temp)*zone"sv, u"(?!temp)zone"sv, u"zone(?!temp)"sv, u"(?!(?!zone))zone"sv,
    u"(?!(?:temp|zone))a"sv, u"(*nla:zone)temp"sv, u"(*negative_lookahead:zone)temp"sv,
    u"(*nlb:zone)temp"sv, u"(*pla:zone)zo"sv, u"(*positive_lookbehind:zone)temp"sv,
    u"(*napla:zone)zo"sv, u"(?*zone)zo"sv, u"(?<*zone)temp"sv, u"(?(?=zone)zone|temp)"sv,
    u"(?(?!zone)temp|zone)"sv, u"(?(?<=zone)temp|zone)"sv, u"(?<=zone|a)temp"sv,
    u"(?<!a)(?<!b)zone"sv, u"zone\\K"sv, u"zone\\Ktemp"sv,

    // Options that change what a letter is, up to where they end.
    u"(?i)zone"sv, u"(?i:zone)"sv, u"z(?i)ONE"sv, u"(?i)z(?-i)one"sv, u"((?i)ZO)ne"sv,
    u"(?:(?i)ZO)ne"sv, u"temp|(?i)zone"sv, u"(temp(?i)x|ZONE)"sv, u"(?i)temp|ZONE"sv,
    u"(?:temp|(?i)x)zone"sv, u"(?^i:ZONE)"sv, u"(?i)(?^)zone"sv, u"(?i)(?^:zone)"sv,
    u"(?i-i)zone"sv, u"(?-i)zone"sv, u"(?mi)ZONE"sv, u"(?-m:zone)"sv, u"(?s-i:zone)"sv,
    u"(?i)(?-i:zone)"sv, u"(?i)(?:(?-i)zone)"sv, u"(?i)k"sv, u"(?i)\u212A"sv, u"(?i)s"sv,
    u"(?i)\u017F"sv, u"(?i)stra\u00DFe"sv, u"(?i)\u1E9E"sv, u"(?i)\u03C3"sv, u"(?i)\u03C2"sv,
    u"(?i)\u00E9T\u00C9"sv, u"(?i)\u00C5"sv, u"(?i)\u00B5"sv, u"(?i)\\x{212A}"sv, u"(?i)[k]"sv,
    u"(?i)\\Qzone\\E"sv, u"(?i)\U00010400"sv, u"(?i)\u0130"sv, u"(?i)\u01C6"sv, u"(*UCP)(?i)zone"sv,
    u"(?i)\\N{U+4B}"sv,
    // White space that is none, and comments.
    u"(?x)zo ne"sv, u"(?x)zone # temp"sv, u"(?x)zone#temp\n/a"sv, u"(?x:zo ne)"sv, u"(?x)zo\\ ne"sv,
    u"(?x)zo[ ]ne"sv, u"(?x)zo\\#ne"sv, u"(?x)zo[#]ne"sv, u"(?x)z o n e *"sv,
    u"(?x)zone {0} temp"sv, u"(?x)zone\n?"sv, u"(?x)zone\t+"sv, u"(?x)zone \\Q temp\\E"sv,
    u"(?x)zone\u200Etemp"sv, u"(?x)zone\u0085temp"sv, u"(?x)zone\u2028temp"sv,
    u"(?x)zone\u00A0temp"sv, u"(?x)zone\u000Btemp"sv, u"(?xx)[z o]ne"sv, u"(?xx)zo ne"sv,
    u"((?x)zo ne)/ a| x"sv, u"(?:(?x) zone ) a"sv, u"(?x)(?-x)zo ne"sv, u"(?x)(?-x:zo ne)"sv,
    u"(?x)(?^:zo ne)"sv, u"(?x)(?#temp)zone"sv, u"(?x)# temp"sv, u"(?x)#temp\n"sv, u"(?x)"sv,
    u"zone(?#te(mp)"sv, u"zone(?#\\)temp"sv, u"(?#zone)temp"sv, u"(?#(?i)zone"sv,
    u"(*CR)(?x)zone#x\ntemp\r/a"sv, u"(*LF)(?x)zone#x\r/b\n/a"sv, u"(*ANY)(?x)zone#x\u2028/a"sv,
    u"(*NUL)(?x)zone#temp\0/a"sv, u"zone # a"sv, u"zo ne"sv,
    // Quoting.
    u"\\Qzone.temp\\E"sv, u"\\Qzone"sv, u"\\Q\\Ezone"sv, u"zone\\Q\\E"sv, u"zo\\Q\\Ene"sv,
    u"zone\\E"sv, u"\\Ezone"sv, u"zo\\Ene"sv, u"zone\\Q\\E*"sv, u"\\Qzone\\E\\Q/a\\E"sv,
    u"\\Q(zone\\E"sv, u"\\Q\\d\\E"sv, u"\\Qzone\\"sv, u"[\\Qz]\\E]one"sv, u"[\\Q^\\Ez]one"sv,
    u"(?:\\Qzone)\\E)"sv, u"\\Q?\\E"sv,
    // Escapes that are text, and text that is an escape.
    u"\\x7aone"sv, u"\\x{7a}one"sv, u"\\172one"sv, u"\\o{172}one"sv, u"\\N{U+7A}one"sv,
    u"\\x{0000007A}one"sv, u"\\xzone"sv, u"\\x7"sv, u"\\0zone"sv, u"\\0"sv, u"\\x00"sv, u"\\x{0}"sv,
    u"\\ezone"sv, u"\\azone"sv, u"\\czone"sv, u"\\cAzone"sv, u"\\tzone"sv, u"zone\\n"sv,
    u"zone\\/a"sv, u"zone\\.temp"sv, u"zone\\-a"sv, u"zone\\_a"sv, u"zone\\\u00E9"sv, u"\\dzone"sv,
    u"zone\\z"sv, u"zone\\Z"sv, u"\\Azone"sv, u"\\Gzone"sv, u"\\bzone\\b"sv, u"z\\Bone"sv,
    u"zone\\Rtemp"sv, u"zone\\Xtemp"sv, u"zone\\Ntemp"sv, u"zone\\htemp"sv, u"zone\\vtemp"sv,
    u"zone\\Ctemp"sv, u"zone\\stemp"sv, u"\\p{L}one"sv, u"\\pLone"sv, u"\\P{N}one"sv,
    u"\\p{^N}one"sv, u"\\p{L&}one"sv, u"\\p{Any}one"sv, u"\\p{Ll}one"sv, u"\\p{Xwd}one"sv,
    u"\\p{Latin}one"sv, u"\\x{1D4B3}"sv, u"\U0001D4B3"sv, u"\\072zone|a"sv,
    u"()()()()()()()()\\11|\\x09"sv, u"zone\\60"sv, u"zone\\0601"sv,
    // Classes.
    u"[z]one"sv, u"[zZ]one"sv, u"[^z]one"sv, u"[]z]one"sv, u"[^]a]one"sv, u"[z-]one"sv,
    u"[-z]one"sv, u"[a-z]one"sv, u"[\\]z]one"sv, u"[[]one|zone"sv, u"[[:alpha:]]one"sv,
    u"[[:^digit:]]one"sv, u"[[:alpha:]zone]"sv, u"[[:zone]"sv, u"[z:]one"sv, u"[\\w]one"sv,
    u"[^\\W]one"sv, u"[\\x7a]one"sv, u"[\\p{L}]one"sv, u"[\\b]"sv, u"[(zone)]"sv, u"[|]"sv,
    u"[zone|temp]"sv, u"[#]"sv, u"(?x)[ #]"sv, u"[\\E]z]one"sv, u"[z\\Q]\\E]one"sv, u"[^a]"sv,
    u"[^\\d]one"sv, u"[\\s\\S]one"sv, u"[\u00E9]t\u00E9"sv, u"[\U0001D4B3]y"sv,
    u"[\U0001D4B0-\U0001D4BF]y"sv, u"zone[/]a"sv, u"zone[.]temp"sv, u"[z]{0}temp"sv,
    u"[[:<:]]zone[[:>:]]"sv, u"[z]*one"sv, u"[a-c-e]"sv,

    // Groups that are called, repeated, named or reset.
    u"(zone)\\1"sv, u"(zone)\\g1"sv, u"(zone)\\g{-1}"sv, u"(?<n>zone)\\k<n>"sv,
    u"(?'n'zone)\\k'n'"sv, u"(?P<n>zone)(?P=n)"sv, u"(?<n>zone)\\k{n}"sv, u"(zone)(?1)"sv,
    u"(?<n>zone)(?&n)"sv, u"(?P<n>zone)(?P>n)"sv, u"(?<n>zone)\\g<n>"sv, u"(zone)\\g<1>"sv,
    u"(?1)(zone)"sv, u"(?+1)(zone)"sv, u"(?(DEFINE)(?<w>zone))temp"sv,
    u"(?(DEFINE)(?<w>zone))(?&w)"sv, u"(?(DEFINE)zone)temp"sv, u"(zone)?(?(1)temp|a)"sv,
    u"(?<n>zone)?(?(<n>)temp|a)"sv, u"(?<n>zone)?(?('n')temp|a)"sv, u"(z)?(?(1)one)temp"sv,
    u"(?(R)zone|temp)"sv, u"(?(VERSION>=10)temp|zone)"sv, u"(?(VERSION>=99)zone|temp)"sv,
    u"z(?R)?one"sv, u"(z(?1)?one)"sv, u"(zone)?\\1temp|a"sv, u"(?|zone(.)|(a))"sv,
    u"(?J)(?<n>zone)|(?<n>temp)"sv, u"(?n)(zone)"sv, u"(?>zo)ne"sv, u"(?>zone?)temp"sv,
    u"(*atomic:zone)"sv, u"(*sr:zone)"sv, u"(*asr:zone)"sv, u"(?U)zone+"sv, u"(zone){2}"sv,
    u"(?:zo(?=n)ne)+"sv, u"(?:(a)|b)*zone"sv, u"(?<zone>a)"sv, u"(?'temp'a)"sv, u"(?P<zone>a)"sv,
    u"(a)(?<temp>\\1)?"sv,
    // Verbs, callouts and settings.
    u"zone(*ACCEPT)temp"sv, u"(*ACCEPT)zone"sv, u"(zone(*ACCEPT)x)temp"sv, u"(?:(*ACCEPT)|x)zone"sv,
    u"a(?:(*ACCEPT)x|b)temp"sv, u"zone(*FAIL)|temp"sv, u"zone(*F)|a"sv, u"zone(*SKIP)(*F)|temp"sv,
    u"(*COMMIT)zone"sv, u"zone(*COMMIT)"sv, u"zone(*PRUNE)temp"sv, u"(*PRUNE:temp)zone"sv,
    u"zone(*THEN)x|temp"sv, u"(*MARK:temp)zone"sv, u"(*:temp)zone"sv, u"zone(*:temp)(*SKIP:temp)"sv,
    u"(?=zone(*ACCEPT)temp)z"sv, u"(?!zone(*ACCEPT)temp)a"sv, u"(?C)zone"sv, u"(?C1)zone"sv,
    u"zone(?C'temp')"sv, u"zone(?C{temp})"sv, u"(?C\"a\"\"b\")zone"sv, u"zone(?C255)temp"sv,
    u"(*UTF)zone"sv, u"(*UCP)z\\wne"sv, u"(*CRLF)zone$"sv, u"(*CR)zone$"sv, u"(*ANYCRLF)zone$"sv,
    u"(*ANY)(?m)zone$"sv, u"(*NUL)(?m)^b"sv, u"(*BSR_ANYCRLF)zone\\Rtemp"sv,
    u"(*BSR_UNICODE)zone"sv, u"(*NOTEMPTY)zone*"sv, u"(*NOTEMPTY_ATSTART)zone?"sv,
    u"(*NO_JIT)zone"sv, u"(*NO_START_OPT)zone"sv, u"(*NO_AUTO_POSSESS)zone+e"sv,
    u"(*NO_DOTSTAR_ANCHOR).*temp"sv, u"(*LIMIT_MATCH=1000)zone"sv, u"(*LIMIT_MATCH=0)zone"sv,
    u"(*LIMIT_HEAP=1000)(*NO_JIT)zone"sv, u"(*UTF)(*UCP)(*CR)zone"sv,
    // Places.
    u"^zone"sv, u"zone$"sv, u"^zone$"sv, u"(?m)^temp"sv, u"(?m)zone$"sv, u"^"sv, u"$"sv, u"^$"sv,
    u"zone$\\n"sv, u"zone\\n$"sv, u"(?s)zone.temp"sv, u"zone.temp"sv, u"(?m)$temp|a"sv,

    u"(?:$)?zone"sv, u".*zone"sv, u".*?temp.*"sv, u"(.*)"sv, u"^.*$"sv, u"^(?<n>.+)/(?<m>.+)$"sv,
    // Characters outside of ASCII, and zero.
    u"zo\0ne"sv, u"\0"sv, u"\0+"sv, u"zone\0?"sv, u"[\0]"sv, u"\u00E9t\u00E9"sv, u"e\u0301"sv,
    u"\u65E5\u672C"sv, u"\u65E5\u672C?"sv, u"\uFEFFzone"sv, u"\uFFFF"sv, u"\u00A0"sv,
    // As they stand in descriptions.
    u"^Zone[0-9]+/Temperature(?<n>.*)$"sv, u"^(?<zone>Zone\\d+)/Temperature$"sv, u"Temperature"sv,
    u"RE:zone"sv, u"RE:"sv};

constexpr std::initializer_list<std::u16string_view> hopeless = {u"("sv,
                                                                 u")"sv,
                                                                 u"zone)"sv,
                                                                 u"(zone"sv,
                                                                 u"["sv,
                                                                 u"[zone"sv,
                                                                 u"[]"sv,
                                                                 u"[^]"sv,
                                                                 u"[]zone"sv,
                                                                 u"*zone"sv,
                                                                 u"+"sv,
                                                                 u"?zone"sv,
                                                                 u"zone**"sv,
                                                                 u"zone+?+"sv,
                                                                 u"\\"sv,
                                                                 u"zone\\"sv,
                                                                 u"\\c"sv,
                                                                 u"\\c\u00E9"sv,
                                                                 u"(?<n"sv,
                                                                 u"(?<1a>zone)"sv,
                                                                 u"(?<>zone)"sv,
                                                                 u"(?<n>zone)(?<n>temp)"sv,
                                                                 u"(?#zone"sv,
                                                                 u"(?zone)"sv,
                                                                 u"(?P=n)zone"sv,
                                                                 u"\\k<n>zone"sv,
                                                                 u"\\1zone"sv,
                                                                 u"\\g{2}zone"sv,
                                                                 u"(?1)zone"sv,
                                                                 u"(?&n)zone"sv,
                                                                 u"\\p{Nope}zone"sv,
                                                                 u"\\pzone"sv,
                                                                 u"\\x{110000}"sv,
                                                                 u"\\x{D800}"sv,
                                                                 u"\\x{zone}"sv,
                                                                 u"\\o{9}"sv,
                                                                 u"\\N{name}zone"sv,
                                                                 u"\\uzone"sv,
                                                                 u"\\Lzone"sv,
                                                                 u"[z-a]one"sv,
                                                                 u"[[:nope:]]zone"sv,
                                                                 u"[:alpha:]one"sv,
                                                                 u"[\\d-\\w-"sv,
                                                                 u"(?<=zone*)temp"sv,
                                                                 u"zone{70000}"sv,
                                                                 u"zone{2,1}"sv,
                                                                 u"(*NOPE)zone"sv,
                                                                 u"zone(*UTF)"sv,
                                                                 u"zone(*CR)"sv,
                                                                 u"(*ACCEPT:)zone("sv,
                                                                 u"(?(1)a|b|zone)"sv,
                                                                 u"(?(zone)a)"sv,
                                                                 u"(?(DEFINE)a|b)zone"sv,
                                                                 u"(?C256)zone"sv,
                                                                 u"(?C'zone)"sv,
                                                                 u"(?i"sv,
                                                                 u"(?i:zone"sv,
                                                                 u"(?^-i)zone"sv,
                                                                 u"\\Ezone("sv,
                                                                 u"zone\xD800"sv,
                                                                 u"\xDC00zone"sv,
                                                                 u"[\xD800]|zone"sv,
                                                                 u"\xDC00\xD800"sv,
                                                                 u"\\8zone"sv,
                                                                 u"(*FAIL)zone"sv,
                                                                 u"zone(?!)"sv,
                                                                 u"(?!)"sv,
                                                                 u"zone(*F)"sv,
                                                                 u"a^zone"sv,
                                                                 u"zone\\Atemp"sv,
                                                                 u"(?=temp)zone"sv,
                                                                 u"zone(?<=temp)"sv,
                                                                 u"zone(?!temp)temp"sv,
                                                                 u"(?<!zone)(?<=zone)"sv,
                                                                 u"\\bb\\b{2}zone\\Bzone\\b\\B"sv,
                                                                 u"(zone)?\\2"sv,
                                                                 u"(?>zone*)ezone"sv,
                                                                 u"(*NO_JIT)(*F)"sv,
                                                                 u"(?R)"sv,
                                                                 u"(?R)zone"sv,
                                                                 u"(?:(?R))zone"sv,
                                                                 u"(zone(?1))"sv,

                                                                 u"(?(?=zone)temp|zone)"sv,
                                                                 u"zone++e"sv,
                                                                 u"(?=zone\\K)?temp"sv,
                                                                 u"[\\d-z]one"sv,
                                                                 u"^*zone"sv,
                                                                 u"zone$temp"sv};

constexpr std::initializer_list<std::u16string_view> urls = {
    u""sv, u"zone"sv, u"Zone"sv, u"ZONE"sv, u"zON"sv, u"zon"sv, u"one"sv, u"zone\n"sv, u"\nzone"sv,
    u"zone\n\n"sv, u"zone\r"sv, u"zone\r\n"sv, u"zone\r\ntemp"sv, u"zone\ntemp"sv, u"\n"sv,
    u"temp"sv, u"temp\n"sv, u"zonetemp"sv, u"zone/temp"sv, u"zone.temp"sv, u"zone temp"sv,
    u"zone\ttemp"sv, u"zone\u000Btemp"sv, u"zone\u2028temp"sv, u"zone\u0085temp"sv,
    u"zone\u00A0temp"sv, u"zone\u200Etemp"sv, u"zone/a"sv, u"zone/b"sv, u"temp/a"sv, u"zonezone"sv,
    u"zonee"sv, u"zoneee"sv, u"zoneetemp"sv, u"zontemp"sv, u"zzoneone"sv, u"zne"sv, u"zoone"sv,
    u"ZOne"sv, u"zONE"sv, u"Zoneone"sv, u"zo ne"sv, u"zo ne/a"sv, u"zo#ne"sv, u"zone # a"sv,
    u"zone#x"sv, u"zone#x\ntemp/a"sv, u"zone{"sv, u"zone{}"sv, u"zone{,2}"sv, u"zone{a}"sv,
    u"zone{1,2"sv, u"zone{1,2,3}"sv, u"zone{ 1}"sv, u"zone}"sv, u"(zone"sv, u"zone)"sv, u"zone\\"sv,
    u"\\d"sv, u"?"sv, u"a|b"sv, u"zone|temp"sv, u"a"sv, u"b"sv, u"aa"sv, u"ab"sv, u"A"sv, u"x"sv,
    u"|"sv, u"#"sv, u"-one"sv, u"]one"sv, u"^one"sv, u":one"sv, u"7zone"sv, u"5one"sv, u"zone-a"sv,
    u"zone_a"sv, u"zone0"sv, u"zone01"sv, u"zone\u00E9"sv, u"k"sv, u"K"sv, u"\u212A"sv, u"s"sv,
    u"\u017F"sv, u"stra\u00DFe"sv, u"STRA\u1E9EE"sv, u"STRASSE"sv, u"\u00DF"sv, u"\u03C3"sv,
    u"\u03C2"sv, u"\u03A3"sv, u"\u00E9t\u00E9"sv, u"\u00C9T\u00C9"sv, u"e\u0301t\u00E9"sv,
    u"\u00E5"sv, u"\u212B"sv, u"\u03BC"sv, u"\u00B5"sv, u"\U00010428"sv, u"\u0130"sv, u"i"sv,
    u"\u01C5"sv, u"\U0001D4B3"sv, u"\U0001D4B3y"sv, u"\U0001D4B3\U0001D4B3"sv,
    u"zone\U0001D4B3temp"sv, u"\u65E5\u672C"sv, u"\u65E5"sv, u"\uFEFFzone"sv, u"\uFFFF"sv,
    u"zo\0ne"sv, u"\0"sv, u"\0zone"sv, u"zone\0"sv, u"a\0b"sv, u"zone\0temp"sv, u"\u001Bzone"sv,
    u"\u0007zone"sv, u"\u001Aone"sv, u"\u0001zone"sv, u"\tzone"sv, u"\t"sv, u"\u0008"sv,
    u"\u0007"sv, u":zone"sv, u"tempzone"sv, u"Xzone"sv, u"zone/ a"sv, u" x"sv, u"zone a"sv,
    u"RE:zone"sv, u"Zone12/TemperatureUnit"sv, u"Zone1/Temperature"sv,
    u"Controller/Zone3/TemperatureRange/Unit/High"sv,
    // Broken in ways that a search may come across early, late or never.
    u"\xD800"sv, u"\xDC00"sv, u"zone\xD800"sv, u"\xDC00zone"sv, u"zone\xD800temp"sv,
    u"zone\xDC00\xD800temp"sv, u"\xD835zone\xDCB3"sv, u"a\xDFFF\0b"sv};

QStringList listOf(std::initializer_list<std::u16string_view> views)
{
    QStringList list;
    list.reserve(int(views.size()));
    for (const std::u16string_view view : views) {
        list.append(QStringView(view.data(), qsizetype(view.size())).toString());
    }
    return list;
}

} // namespace

const QStringList& nastyPatterns()
{
    static const QStringList list = listOf(matching);
    return list;
}

const QStringList& hopelessPatterns()
{
    static const QStringList list = listOf(hopeless);
    return list;
}

const QStringList& nastyUrls()
{
    static const QStringList list = listOf(urls);
    return list;
}

} // namespace patterns
