#ifndef UNITFLOW_TESTS_PATTERNS_PATTERNFORMS_H
#define UNITFLOW_TESTS_PATTERNS_PATTERNFORMS_H

#include <array>
#include <initializer_list>
#include <string_view>

// The vocabulary of `PatternGenerator`: how the dialect spells its constructs, each under a name.

namespace patterns {

using namespace std::string_view_literals; // these keep zero characters

/// A spelling, and a text that it matches.
struct Form {
    const char* construct;
    const char* pattern;
    std::u16string_view sample;
};

/// What patterns and URLs are made of.
inline constexpr std::initializer_list<std::u16string_view> words = { // As in URLs.
    u"zone"sv, u"Zone"sv, u"zone"sv, u"temp"sv, u"Temperature"sv, u"unit"sv, u"Unit"sv,
    u"chamber"sv, u"press"sv, u"a"sv, u"b"sv, u"ab"sv, u"k"sv, u"s"sv, u"1"sv, u"12"sv, u"/"sv,
    u"/"sv, u"/Zone"sv, u"a/b"sv, u"_"sv, u"-"sv,
    // What means something in a pattern.
    u"."sv, u"a.b"sv, u"[1]"sv, u"{2}"sv, u"(x)"sv, u"$"sv, u"\\d"sv, u"a|b"sv, u"x y"sv, u"#1"sv,
    // What is not ASCII, or hard to see.
    u"\u00B0C"sv, u"\u00E9t\u00E9"sv, u"stra\u00DFe"sv, u"\u03C3\u03C2"sv, u"\u65E5\u672C"sv,
    u"\U0001D4B3y"sv, u"\u212A"sv, u"\u0130"sv, u"\n"sv, u"a\0b"sv};

/// What stands for one character, or for one of several, outside of brackets.
inline constexpr std::array<Form, 27> characterForms{{{"digit", "\\d", u"7"},
                                                      {"not a digit", "\\D", u"x"},
                                                      {"word character", "\\w", u"w"},
                                                      {"not a word character", "\\W", u"/"},
                                                      {"space", "\\s", u"\u000B"},
                                                      {"not a space", "\\S", u"S"},
                                                      {"horizontal space", "\\h", u"\u00A0"},
                                                      {"not a horizontal space", "\\H", u"h"},
                                                      {"vertical space", "\\v", u"\u2028"},
                                                      {"not a vertical space", "\\V", u"v"},
                                                      {"line end", "\\R", u"\r\n"},
                                                      {"not a newline", "\\N", u"n"},
                                                      {"grapheme", "\\X", u"e\u0301"},
                                                      {"code unit", "\\C", u"c"},
                                                      {"dot", ".", u"\U0001D4B3"},
                                                      {"tab", "\\t", u"\t"},
                                                      {"newline", "\\n", u"\n"},
                                                      {"carriage return", "\\r", u"\r"},
                                                      {"form feed", "\\f", u"\f"},
                                                      {"bell", "\\a", u"\a"},
                                                      {"escape", "\\e", u"\u001B"},
                                                      {"control character", "\\cA", u"\u0001"},
                                                      {"property", "\\p{L}", u"\u00E9"},
                                                      {"short property", "\\pN", u"3"},
                                                      {"no property", "\\P{L}", u"/"},
                                                      {"negated property", "\\p{^Lu}", u"l"},
                                                      {"script", "\\p{Greek}", u"\u03C3"}}};

/// What may stand in brackets.
inline constexpr std::array<Form, 19> memberForms{{{"class", "a", u"a"},
                                                   {"class", "zZ", u"Z"},
                                                   {"class", "/", u"/"},
                                                   {"range", "a-f", u"c"},
                                                   {"range", "0-9", u"5"},
                                                   {"range", "\\x{E0}-\\x{FF}", u"\u00E9"},
                                                   {"class with space", " ", u" "},
                                                   {"class with metacharacter", "$", u"$"},
                                                   {"class with escape", "\\]", u"]"},
                                                   {"class with type", "\\d", u"8"},
                                                   {"class with type", "\\W", u"/"},
                                                   {"class with type", "\\h", u"\t"},
                                                   {"class with property", "\\p{Lu}", u"Z"},
                                                   {"class with backspace", "\\b", u"\u0008"},
                                                   {"class with quoting", "\\Q-]\\E", u"]"},
                                                   {"class with bracket", "[", u"["},
                                                   {"POSIX class", "[:alpha:]", u"q"},
                                                   {"POSIX class", "[:xdigit:]", u"F"},
                                                   {"negated POSIX class", "[:^digit:]", u"y"}}};

inline constexpr std::array<Form, 17> groupForms{{{"capture group", "(", u""},
                                                  {"capture group", "(", u""},
                                                  {"group", "(?:", u""},
                                                  {"group", "(?:", u""},
                                                  {"named group", "(?<%1>", u""},
                                                  {"quoted named group", "(?'%1'", u""},
                                                  {"P named group", "(?P<%1>", u""},
                                                  {"atomic group", "(?>", u""},
                                                  {"spelled atomic group", "(*atomic:", u""},
                                                  {"script run", "(*sr:", u""},
                                                  {"caseless group", "(?i:", u""},
                                                  {"caseful group", "(?-i:", u""},
                                                  {"extended group", "(?x:", u""},
                                                  {"plain group", "(?-x:", u""},
                                                  {"dot-all group", "(?s-m:", u""},
                                                  {"group of defaults", "(?^:", u""},
                                                  {"caseless group of defaults", "(?^i:", u""}}};

inline constexpr std::array<Form, 9> aheadForms{{{"look-ahead", "(?=", u""},
                                                 {"look-ahead", "(?=", u""},
                                                 {"spelled look-ahead", "(*pla:", u""},
                                                 {"long look-ahead", "(*positive_lookahead:", u""},
                                                 {"non-atomic look-ahead", "(?*", u""},
                                                 {"spelled non-atomic look-ahead", "(*napla:", u""},
                                                 {"look-behind", "(?<=", u""},
                                                 {"spelled look-behind", "(*plb:", u""},
                                                 {"non-atomic look-behind", "(?<*", u""}}};

inline constexpr std::array<Form, 5> negativeForms{
    {{"negative look-ahead", "(?!", u""},
     {"spelled negative look-ahead", "(*nla:", u""},
     {"negative look-behind", "(?<!", u""},
     {"spelled negative look-behind", "(*nlb:", u""},
     {"long negative look-behind", "(*negative_lookbehind:", u""}}};

/// What matches without taking any text, at most places.
inline constexpr std::array<Form, 21> emptyForms{{{"comment", "(?#zone)", u""},
                                                  {"comment", "(?#)", u""},
                                                  {"empty quoting", "\\Q\\E", u""},
                                                  {"lonely end of quoting", "\\E", u""},
                                                  {"keep out", "\\K", u""},
                                                  {"callout", "(?C)", u""},
                                                  {"numbered callout", "(?C7)", u""},
                                                  {"callout with text", "(?C'zone')", u""},
                                                  {"callout with text", "(?C{temp})", u""},
                                                  {"commit", "(*COMMIT)", u""},
                                                  {"prune", "(*PRUNE)", u""},
                                                  {"skip", "(*SKIP)", u""},
                                                  {"then", "(*THEN)", u""},
                                                  {"named verb", "(*PRUNE:zone)", u""},
                                                  {"mark", "(*MARK:zone)", u""},
                                                  {"short mark", "(*:temp)", u""},
                                                  {"empty group", "()", u""},
                                                  {"empty group", "(?:)", u""},
                                                  {"definition", "(?(DEFINE)zone)", u""},
                                                  {"no word boundary", "\\B", u""},
                                                  {"word boundary", "\\b", u""}}};

inline constexpr std::array<Form, 12> optionForms{{{"caseless from here", "(?i)", u""},
                                                   {"caseless from here", "(?i)", u""},
                                                   {"caseful from here", "(?-i)", u""},
                                                   {"extended from here", "(?x)", u""},
                                                   {"extended from here", "(?x)", u""},
                                                   {"more extended from here", "(?xx)", u""},
                                                   {"plain from here", "(?-x)", u""},
                                                   {"lines from here", "(?m)", u""},
                                                   {"dot-all from here", "(?s)", u""},
                                                   {"lazy from here", "(?U)", u""},
                                                   {"several options from here", "(?im-sx)", u""},
                                                   {"defaults from here", "(?^)", u""}}};

inline constexpr std::array<Form, 17> startForms{
    {{"caseless word properties", "(*UCP)(?i)", u""},
     {"UTF", "(*UTF)", u""},
     {"word properties", "(*UCP)", u""},
     {"CR", "(*CR)", u""},
     {"LF", "(*LF)", u""},
     {"CR LF", "(*CRLF)", u""},
     {"any CR or LF", "(*ANYCRLF)", u""},
     {"any line end", "(*ANY)", u""},
     {"NUL as line end", "(*NUL)", u""},
     {"CR or LF for \\R", "(*BSR_ANYCRLF)", u""},
     {"not empty", "(*NOTEMPTY)", u""},
     {"not compiled", "(*NO_JIT)", u""},
     {"no look at the start", "(*NO_START_OPT)", u""},
     {"no possession of its own", "(*NO_AUTO_POSSESS)", u""},
     {"no anchor of its own", "(*NO_DOTSTAR_ANCHOR)", u""},
     {"bounded search", "(*LIMIT_MATCH=50000)", u""},
     {"bounded depth", "(*LIMIT_DEPTH=5000)", u""}}};

/// Behind a group, which %1 numbers and %2 names.
inline constexpr std::array<Form, 12> referenceForms{
    {{"back reference", "\\%1", u""},
     {"back reference", "\\%1", u""},
     {"numbered back reference", "\\g%1", u""},
     {"braced back reference", "\\g{%1}", u""},
     {"relative back reference", "\\g{-1}", u""},
     {"named back reference", "\\k<%2>", u""},
     {"braced named back reference", "\\k{%2}", u""},
     {"P named back reference", "(?P=%2)", u""},
     {"subroutine", "(?%1)", u""},
     {"relative subroutine", "(?-1)", u""},
     {"named subroutine", "(?&%2)", u""},
     {"quoted subroutine", "\\g<%2>", u""}}};

/// A shape around two texts, <A> and <B>, with two samples. # is the number of its first group.
struct Special {
    const char* construct;
    const char* pattern;
    const char* sample;
    const char* orSample;
    int groups;
};

inline constexpr std::array<Special, 14> specialForms{
    {{"condition on a group", "(<A>)?(?(#)<B>|zone)", "<A><B>", "zone", 1},
     {"condition on a named group", "(?<n#><A>)?(?(<n#>)<B>)", "<A><B>", "", 1},
     {"condition on what follows", "(?(?=<A>)<A>|<B>)", "<A>", "<B>", 0},
     {"condition on what does not follow", "(?(?!<A>)<B>|<A>)", "<A>", "<B>", 0},
     {"condition on recursion", "(?(R)<A>|<B>)", "<B>", "<B>", 0},
     {"condition on the version", "(?(VERSION>=10.0)<A>|<B>)", "<A>", "<A>", 0},
     {"defined subroutine", "(?(DEFINE)(?<n#><A>))(?P>n#)", "<A>", "<A>", 1},
     {"recursion", "(<A>(?#)?<B>)", "<A><B>", "<A><A><B><B>", 1},
     {"whole recursion", "<A>(?R)?<B>", "<A><B>", "<A><A><B><B>", 0},
     {"accept", "<A>(*ACCEPT)<B>", "<A>", "<A><B>", 0},
     {"fail", "(?:<A>(*FAIL)|<B>)", "<B>", "<A><B>", 0},
     {"short fail", "(?:<A>(*SKIP)(*F)|<B>)", "<B>", "<B>", 0},
     {"no captures", "(?n:(<A>))", "<A>", "<A>", 0},
     {"names used twice", "(?J:(?<twice><A>)|(?<twice><B>))", "<A>", "<B>", 2}}};

/// Looks like a quantifier and is text.
inline constexpr std::array<const char*, 8> textInBraces{"{", "{}",   "{,2}",    "{a}",
                                                         "}", "{1,2", "{1,2,3}", "{ 1}"};

struct Quantifier {
    const char* construct;
    const char* pattern;
    int least;
    int most; ///< as far as samples go
    bool unbounded;
};

inline constexpr std::array<Quantifier, 9> quantifiers{
    {{"optional", "?", 0, 1, false},
     {"optional", "?", 0, 1, false},
     {"any number", "*", 0, 3, true},
     {"at least one", "+", 1, 3, true},
     {"exact number", "{2}", 2, 2, false},
     {"not at all", "{0}", 0, 0, false},
     {"at least so many", "{1,}", 1, 3, true},
     {"at most so many", "{0,2}", 0, 2, false},
     {"from this to that", "{1,3}", 1, 3, false}}};

inline constexpr std::array<const char*, 20> invalidFragments{
    "(",     ")",        "[",         "*",         "+?+",      "\\",         "(?",
    "(?<",   "(?<1n>a)", "[[:foo:]]", "\\p{Nope}", "(?z)",     "\\g{99}",    "(?99)",
    "[z-a]", "(?#",      "a{70000}",  "(?<=a*)b",  "(*WRONG)", "\\x{110000}"};

} // namespace patterns

#endif
