#include "patterns/RequiredLiteral.h"

#include "Printers.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

#include <vector>

namespace {

QStringList requiredLiterals(const QString& pattern)
{
    patterns::Literals literals;
    patterns::addRequiredLiterals(pattern, literals);
    QStringList texts;
    for (std::size_t index = 0; index < literals.size(); ++index) {
        texts.append(literals.at(index).toString());
    }
    return texts;
}

struct Row {
    const char* title;
    QString pattern;
    QStringList literals;
};

const std::vector<Row>& understood()
{
    static const std::vector<Row> rows{
        {"plain text", "Plant/Line", {"Plant/Line"}},
        {"nothing at all", "", {}},
        {"anchors", "^Plant/Line$", {"Plant/Line"}},
        {"a point", "Plant.Line", {"Plant", "Line"}},
        {"a boundary", R"(\bPlant\B\AX\zY\ZZ\K!)", {"Plant", "X", "Y", "Z", "!"}},
        {"character types",
         R"(a\db\Dc\wd\We\sf\Sg\hh\Hi\vj\Vk\Rl)",
         {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"}},
        {"quoted punctuation",
         R"(\^a\.b\\c\/d\[e\]\{f\}\(\)\|\*\+\?\$\-\_\#\ \<)",
         {R"(^a.b\c/d[e]{f}()|*+?$-_# <)"}},
        {"brackets and braces that close nothing", "a]b}c", {"a]b}c"}},
        {"a sharp sign and blanks, which mean themselves", "a # b", {"a # b"}},
        {"text beyond ASCII", QString::fromUtf8("Größe/温度"), {QString::fromUtf8("Größe/温度")}},
        {"a character of two units", QString::fromUtf8("a😀b"), {"a", "b"}},
        {"a NUL", QString("a") + QChar(0) + "b", {QString("a") + QChar(0) + "b"}},
        {"a line end", "a\nb", {"a\nb"}},

        {"a class", "a[xyz]b", {"a", "b"}},
        {"a class that begins with its end", "a[]xyz]b", {"a", "b"}},
        {"a class of all others that begins with its end", "a[^]xyz]b", {"a", "b"}},
        {"a class with what ends nothing in it", R"(a[x()|*{2}\]\d\b]b)", {"a", "b"}},
        {"a bracket in a class", "a[[xyz]b", {"a", "b"}},
        {"a range to a bracket", R"(a[!-\]]b)", {"a", "b"}},

        {"an optional character", "abc?de", {"ab", "de"}},
        {"a character any number of times", "abc*de", {"ab", "de"}},
        {"a character at least once", "abc+de", {"abc", "de"}},
        {"a character so many times", "abc{2}de", {"abc", "de"}},
        {"a character at least so many times", "abc{2,}de", {"abc", "de"}},
        {"a character between so and so many times", "abc{1,2}de", {"abc", "de"}},
        {"a character up to so many times", "abc{0,2}de", {"ab", "de"}},
        {"a character no time", "abc{0}de", {"ab", "de"}},
        {"a character no time, with zeros in front", "abc{00}de", {"ab", "de"}},
        {"lazy quantifiers", "ab?\?cd*?ef+?gh{2}?ij{0,1}?k", {"a", "c", "ef", "gh", "i", "k"}},
        {"possessive quantifiers", "ab?+cd*+ef++gh{2}+ij{0,1}+k", {"a", "c", "ef", "gh", "i", "k"}},
        {"an optional type", R"(ab\d?cd)", {"ab", "cd"}},
        {"an optional point", "ab.?cd", {"ab", "cd"}},
        {"an optional class", "ab[x]*cd", {"ab", "cd"}},
        {"an optional quoted character", R"(ab\.?cd)", {"ab", "cd"}},
        {"an optional character of two units", QString::fromUtf8("a😀?b"), {"a", "b"}},

        {"a group", "a(bc)d", {"abcd"}},
        {"a group that is not captured", "a(?:bc)d", {"abcd"}},
        {"a named group", "a(?<n_1>bc)d", {"abcd"}},
        {"a group named in another way", "a(?P<n>bc)d", {"abcd"}},
        {"a group named in a third way", "a(?'n'bc)d", {"abcd"}},
        {"an empty group", "a()d", {"ad"}},
        {"groups in groups", "a(b(?:c(?<n>d)))e", {"abcde"}},
        {"a group of anything", "^(?<inst>[^/]+)/Value$", {"/Value"}},
        {"an optional group", "a(bc)?d", {"a", "d"}},
        {"a group any number of times", "a(bc.de)*f", {"a", "f"}},
        {"a group at least once", "a(bc.de)+f", {"abc", "de", "f"}},
        {"a group so many times", "a(bc){3}d", {"abc", "d"}},
        {"an optional group in a group", "a(b(cd)?e)f", {"ab", "ef"}},
        {"alternatives in a group", "ab(cd|ef)gh", {"ab", "gh"}},
        {"alternatives of which one is empty", "ab(|ef)gh", {"ab", "gh"}},
        {"alternatives deep inside", "ab(c(d|e)f)gh", {"abc", "fgh"}},
        {"alternatives around groups", "ab((cd)|(ef))gh", {"ab", "gh"}},
        {"alternatives for the whole", "abc|abd", {}},
        {"an alternative of nothing", "abc|", {}},
        {"alternatives after a group", "(abc)(def)|g", {}},

        {"a look-ahead", "ab(?=cd)ef", {"ab", "ef"}},
        {"a negative look-ahead", "ab(?!cd)ef", {"ab", "ef"}},
        {"a look-behind", "ab(?<=cd)ef", {"ab", "ef"}},
        {"a negative look-behind", "ab(?<!cd)ef", {"ab", "ef"}},
        {"a look-ahead with groups and alternatives", R"(ab(?=(c|[)])d\))ef)", {"ab", "ef"}},
        {"a look-ahead in a group", "a(b(?!c)d)e", {"ab", "de"}},
        {"an optional look-ahead", "ab(?=cd)?ef", {"ab", "ef"}},
    };
    return rows;
}

QString nested(int depth)
{
    return QString(depth, '(') + 'a' + QString(depth, ')');
}

const std::vector<Row>& notUnderstood()
{
    static const std::vector<Row> rows{
        {"an option", "(?i)abc", {}},
        {"an option later", "ab(?i)cd", {}},
        {"an option for a group", "ab(?i:cd)", {}},
        {"an option taken back", "(?-i)abc", {}},
        {"extended syntax", "(?x)a b c", {}},
        {"an option in a group", "ab((?i)cd)ef", {}},
        {"an option in a look-ahead", "ab(?=(?i)cd)ef", {}},
        {"a verb", "(*ACCEPT)abc", {}},
        {"a verb later", "ab(*COMMIT)cd", {}},
        {"a setting", "(*UCP)abc", {}},
        {"an assertion in letters", "(*pla:ab)abc", {}},
        {"a comment", "ab(?#c)d", {}},
        {"an atomic group", "ab(?>cd)e", {}},
        {"a group that numbers alternatives alike", "ab(?|cd)e", {}},
        {"a condition", "(a)?b(?(1)c|d)e", {}},
        {"a recursion", "ab(?R)?c", {}},
        {"a call of a group", "(ab)(?1)c", {}},
        {"a call of a named group", "(?<n>ab)(?&n)c", {}},
        {"a call of a named group in another way", "(?<n>ab)(?P>n)c", {}},
        {"a reference", R"((ab)\1c)", {}},
        {"a reference by name", R"((?<n>ab)\k<n>c)", {}},
        {"a reference by name in another way", "(?<n>ab)(?P=n)c", {}},
        {"a reference in braces", R"((ab)\g{1}c)", {}},
        {"a callout", "ab(?C)c", {}},
        {"a quote", R"(\Qa.b\E)", {}},
        {"the end of a quote", R"(ab\Ec)", {}},
        {"a quote in a class", R"(a[\Q]\E]b)", {}},
        {"a code in hexadecimal", R"(a\x41b)", {}},
        {"a code in octal", R"(a\o{101}b)", {}},
        {"a zero", R"(a\0b)", {}},
        {"a control character", R"(a\cAb)", {}},
        {"a control character in a class", R"(a[\c]]b)", {}},
        {"a tabulator by its letter", R"(a\tb)", {}},
        {"a property", R"(a\pLb)", {}},
        {"a negative property", R"(a\P{L}b)", {}},
        {"a name", R"(a\N{U+41}b)", {}},
        {"everything but a line end", R"(a\Nb)", {}},
        {"a grapheme", R"(a\Xb)", {}},
        {"a single unit", R"(a\Cb)", {}},
        {"the place where matching starts", R"(\Gab)", {}},
        {"an unknown letter", R"(a\ib)", {}},
        {"a backslash before what is no ASCII", QString::fromUtf8(R"(a\äb)"), {}},
        {"a backslash before a control character", "a\\\nb", {}},
        {"a backslash before a NUL", QString("a\\") + QChar(0) + "b", {}},
        {"a backslash at the end", R"(ab\)", {}},
        {"a backslash at the end of a class", R"(ab[c\)", {}},
        {"a class of the operating system", "a[[:digit:]]b", {}},
        {"a sorting element", "a[[.x.]]b", {}},
        {"an equivalence", "a[[=x=]]b", {}},
        {"the beginning of a word", "[[:<:]]ab", {}},
        {"a class without an end", "ab[cd", {}},
        {"a class without an end that looks empty", "ab[]", {}},
        {"a group without an end", "ab(cd", {}},
        {"an end without a group", "ab)cd", {}},
        {"a group that ends after the question mark", "ab(?", {}},
        {"a group without a name", "ab(?<>cd)", {}},
        {"a name that begins with a digit", "ab(?<1n>cd)", {}},
        {"a name with blanks", "ab(?<n n>cd)", {}},
        {"a name without an end", "ab(?<n", {}},
        {"a name that ends in the other way", "ab(?<n'cd)", {}},
        {"a name after another letter", "ab(?Q<n>cd)", {}},
        {"a brace without numbers", "ab{x}c", {}},
        {"empty braces", "ab{}c", {}},
        {"a brace without an end", "ab{2c", {}},
        {"a brace at the end", "ab{", {}},
        {"only an upper bound", "ab{,2}c", {}},
        {"a blank in braces", "ab{ 2}c", {}},
        {"three numbers", "ab{1,2,3}c", {}},
        {"a number that no quantifier holds", "ab{65536}c", {}},
        {"a brace after nothing", "{2}abc", {}},
        {"a quantifier after nothing", "*abc", {}},
        {"a quantifier at the beginning of a group", "ab(+c)d", {}},
        {"a quantifier after a quantifier", "ab**c", {}},
        {"a third quantifier sign", "ab+?+c", {}},
        {"braces after braces", "ab{2}{3}c", {}},
        {"groups deeper than any expression", nested(251), {}},
    };
    return rows;
}

TEST(RequiredLiterals, are_the_texts_that_a_match_cannot_do_without)
{
    for (const auto& row : understood()) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(requiredLiterals(row.pattern), row.literals);
    }
    EXPECT_EQ(requiredLiterals(nested(250)), QStringList{"a"});
}

TEST(RequiredLiterals, are_added_to_those_of_other_patterns)
{
    patterns::Literals literals;
    for (const char* pattern : {"a.b", "(?i)c", "d|e", "", "f"}) {
        patterns::addRequiredLiterals(pattern, literals);
    }
    ASSERT_EQ(literals.size(), 3U);
    EXPECT_EQ(literals.at(0), QString("a"));
    EXPECT_EQ(literals.at(1), QString("b"));
    EXPECT_EQ(literals.at(2), QString("f"));
}

TEST(RequiredLiterals, are_none_when_anything_is_not_understood)
{
    for (const auto& row : notUnderstood()) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(requiredLiterals(row.pattern), QStringList());
        EXPECT_EQ(requiredLiterals(row.pattern + "abc"), QStringList());
    }
}

TEST(RequiredLiterals, of_valid_patterns_are_the_only_ones_in_the_table)
{
    for (const auto& row : understood()) {
        EXPECT_TRUE(QRegularExpression(row.pattern).isValid()) << row.title;
    }
}

/// Texts that some of the patterns match: their own letters, and what quantifiers, classes and
/// options make of them.
std::vector<QString> texts()
{
    std::vector<QString> texts;
    for (const auto* table : {&understood(), &notUnderstood()}) {
        for (const auto& row : *table) {
            texts.push_back(row.pattern);
            texts.push_back(row.literals.join("x"));
            texts.push_back(row.literals.join(QString()));
        }
    }
    for (const char* text :
         {"abdef", "abxef", "abcdef", "abccde", "abcde",  "abde",     "abcdgh", "abefgh",
          "ABC",   "AbC",   "ababc",  "abab",   "abcbcd", "abcbcbcd", "abcdee", "a0b",
          "abc\n", "a b c", "ab",     "abccc",  "aAb",    "a\tb",     "abef",   "bbc"}) {
        texts.emplace_back(text);
    }
    return texts;
}

TEST(RequiredLiterals, stand_in_every_text_that_the_pattern_matches)
{
    int matches = 0;
    for (const auto* table : {&understood(), &notUnderstood()}) {
        for (const auto& row : *table) {
            const QRegularExpression expression(row.pattern);
            for (const QString& text : texts()) {
                if (!expression.isValid() || !expression.match(text).hasMatch()) {
                    continue;
                }
                ++matches;
                for (const QString& literal : requiredLiterals(row.pattern)) {
                    EXPECT_TRUE(text.contains(literal)) << row.title << ": " << qPrintable(text);
                }
            }
        }
    }
    EXPECT_GT(matches, 1000);
}

} // namespace
