#include "Commands/CommandBase.h"

#include "Probe.h"

#include <QRegularExpression>

#include <vector>

namespace {

class GroupSubstitution : public testhost::EngineTest {
protected:
    QString replace(const QString& pattern, const QString& subject, const QString& text)
    {
        const QRegularExpression expression(pattern);
        return command.replaceMatchedGroups(expression.namedCaptureGroups(),
                                            expression.match(subject), text);
    }

    testhost::ProbeCommand command{testhost::tree("description", "{}")};
};

TEST_F(GroupSubstitution, returns_the_text_unchanged_without_groups)
{
    EXPECT_EQ(command.replaceMatchedGroups({}, QRegularExpressionMatch(), "A/(?<inst>)/B"),
              "A/(?<inst>)/B");
}

TEST_F(GroupSubstitution, replaces_named_groups_and_passes_over_unnamed_ones)
{
    EXPECT_EQ(replace("(?<inst>X)(/)", "X/", "A/(?<inst>)/B"), "A/X/B");
}

TEST_F(GroupSubstitution, replaces_placeholders_by_what_was_captured)
{
    struct Row {
        const char* title;
        const char* pattern;
        const char* subject;
        const char* text;
        const char* replaced;
    };
    const std::vector<Row> table{
        {"the same placeholder twice", "(?<a>.+)", "X", "(?<a>)/(?<a>)", "X/X"},
        {"two groups", "(?<a>.)(?<b>.)", "XY", "(?<b>)(?<a>)", "YX"},
        {"a group that took no part gives nothing", "(?<a>x)|(?<b>y)", "y", "[(?<a>)][(?<b>)]",
         "[][y]"},
        {"an unknown name stays", "(?<a>.)", "X", "(?<other>)(?<a>)", "(?<other>)X"},
        {"names keep their case", "(?<a>.)", "X", "(?<A>)", "(?<A>)"},
        {"no match empties the known placeholders", "(?<a>x)", "y", "1(?<a>)2", "12"},
        {"text without placeholders stays", "(?<a>.)", "X", "a(<a>)%1", "a(<a>)%1"},
        {"what a group brings along is filled by a later group", "(?<a>.+),(?<b>.+)", "(?<b>),Y",
         "(?<a>)", "Y"},
        {"but not by an earlier one", "(?<a>.+),(?<b>.+)", "X,(?<a>)", "(?<b>)", "(?<a>)"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(replace(row.pattern, row.subject, row.text), row.replaced);
    }
}

TEST_F(GroupSubstitution, shares_a_text_without_placeholders)
{
    const QString text = "A/Value";

    EXPECT_EQ(
        command.replaceMatchedGroups({"inst"}, QRegularExpression("(?<inst>.)").match("X"), text)
            .constData(),
        text.constData());
}

TEST_F(GroupSubstitution, replaces_like_a_plain_replacement_of_each_placeholder)
{
    const QRegularExpressionMatch match =
        QRegularExpression("(?<a>.*),(?<ab>.*)").match("(?<a,(?<a>)");
    for (const QStringList& names :
         {QStringList{"a", "ab"}, QStringList{"ab", "a", "a"}, QStringList{"", "no"},
          QStringList{"a>)(?<a", "a"}, QStringList{"(?<", ">)"}, QStringList{">)", "(?<a"}}) {
        for (const char* text :
             {"", "(?<a>)", "(?<a>)(?<a>)", "(?<ab>)(?<a>)", "(?<(?<a>)>)", "(?<a>)(?<a>)(?<a>)",
              "(?<a)>)(?<a>", "(?<(?<>)", "(?<>)>)", "(?<no>)(?<a>", "(?<", "x(?<a>)y(?<ab>)z",
              "(?<(?<a>)", "(?<a>)>)"}) {
            QString replaced = text;
            for (const QString& name : names) {
                if (!name.isEmpty()) {
                    replaced.replace("(?<" + name + ">)", match.captured(name));
                }
            }
            SCOPED_TRACE((names.join(' ') + " in " + text).toStdString());
            EXPECT_EQ(command.replaceMatchedGroups(names, match, text), replaced);
        }
    }
}

} // namespace
