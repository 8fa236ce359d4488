#include "checker/Codes.h"

#include <QStringList>

#include <algorithm>

namespace checker {

namespace {

/// A description with one command node.
QString commands(const char* text)
{
    return QStringLiteral("{\n"
                          "    \"Node\": {\n"
                          "        \"Type\": \"CommandNode\",\n"
                          "        \"Commands\": {\n"
                          "            %1\n"
                          "        }\n"
                          "    }\n"
                          "}")
        .replace(QLatin1String("%1"), QString::fromUtf8(text));
}

/// A description with one edge, guarded by conditions.
QString conditions(const char* text)
{
    return QStringLiteral(
               "{\n"
               "    \"Node\": {\n"
               "        \"Type\": \"SwitchNode\",\n"
               "        \"Next\": {\n"
               "            \"Edge\": {\n"
               "                \"Type\": \"CommandNode\",\n"
               "                %1,\n"
               "                \"Commands\": {\n"
               "                    \"CommandSetUnitProperties\": [[\"Line/Speed\", \"m/s\"]]\n"
               "                }\n"
               "            }\n"
               "        }\n"
               "    }\n"
               "}")
        .replace(QLatin1String("%1"), QString::fromUtf8(text));
}

Example alone(const QString& description)
{
    return {description, {}, {}, {}, {}};
}

const char* const source = R"({ "Settings": { "SpeedUnit": "m/s", "Limit": 5, "Enabled": true } })";
const char* const target = R"({ "Line": { "Speed": { "@value": 1.2, "@unitType": "m/s" } } })";
const char* const arrays = R"({
    "Log": {
        "@type": "array",
        "@arrayInformation": [{ "name": "Time" }, { "name": "Speed" }],
        "@value": []
    },
    "Speed": 1.2
})";

Example linked(const QString& description, const char* targetTree = target,
               const char* parameters = "")
{
    return {description,
            QString::fromUtf8(source),
            QString::fromUtf8(targetTree),
            QString::fromUtf8(parameters),
            {}};
}

QList<CodeDescription> syntaxCodes()
{
    return {
        {Code::Syntax, "syntax", Severity::Error, "The file is no JSON",
         "Nothing of the description is read, so every link that names it fails. Comments and "
         "commas behind the last element are no JSON; a remark is a member whose key begins with "
         "\"@\".",
         alone("{\n    \"Node\": {\n        \"Type\": \"CommandNode\",\n    }\n}"),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::DuplicateKey, "duplicate-key", Severity::Error, "An object has a key twice",
         "Which of the two counts would depend on the reader, so nothing of the description is "
         "read. Node names have to be unique within one \"Next\" only, and each type of command "
         "or condition stands once in a node: give it more rows instead.",
         alone(commands("\"CommandSetUnitProperties\": [[\"A\", \"m\"]],\n            "
                        "\"CommandSetUnitProperties\": [[\"B\", \"s\"]]")),
         alone(commands(R"("CommandSetUnitProperties": [["A", "m"], ["B", "s"]])"))},
        {Code::BeyondLimits, "beyond-limits", Severity::Error, "Something is too large",
         "A whole number that does not fit 64 bits, a number beyond all doubles, more than 1024 "
         "objects and lists inside one another, a file that is too large: nothing of the "
         "description is read, because reading it would change it or exhaust the memory. Write "
         "such a number as text.",
         alone(
             conditions(R"("ConditionValueComparator": [["Count", "==", 99999999999999999999]])")),
         alone(conditions(
             R"("ConditionValueComparator": [["Count", "==", "99999999999999999999"]])"))},
        {Code::NotAnObject, "not-an-object", Severity::Error, "An object was expected",
         "A description is an object, and so are \"Next\" and \"Commands\": their keys are names "
         "of nodes and types of commands. In anything else the engine finds nothing.",
         alone(R"({
    "Node": {
        "Type": "CommandNode",
        "Commands": ["CommandSetUnitProperties"]
    }
})"),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
    };
}

QList<CodeDescription> nameCodes()
{
    return {
        {Code::MissingType, "missing-type", Severity::Error, "A node has no type",
         "A top-level node without a type is left out, with everything in it. An edge to such a "
         "node leads nowhere, and still counts when a command node looks whether it has exactly "
         "one. \"Type\" is written just so: \"type\" is an ordinary name. A node stands under a "
         "name: a \"Type\" directly in the description, or directly in \"Next\", is that of a node "
         "whose name is missing.",
         alone(R"({
    "Node": {
        "type": "CommandNode",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] }
    }
})"),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::UnknownNodeType, "unknown-node-type", Severity::Error,
         "There is no node type of that name",
         "The engine says nothing: a top-level node of an unknown type is left out, and an edge "
         "to such a node leads nowhere. Case counts.",
         alone(R"({
    "Node": {
        "Type": "commandNode",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] }
    }
})"),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::UnknownCommand, "unknown-command", Severity::Error,
         "There is no command of that name",
         "The engine warns when it builds the graph and leaves the command out; its neighbors run. "
         "One name differs from that of its class: "
         "\"CommandSetUnitByConfigurationParameterInstRegExp\" has an \"Inst\".",
         alone(commands(R"("CommandSetUnitProperty": [["Line/Speed", "m/s"]])")),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::UnknownCondition, "unknown-condition", Severity::Error,
         "There is no condition of that name",
         "The engine looks for four names and for no others. What stands under another one guards "
         "nothing and watches nothing, so the edge may be open to every write. One name differs "
         "from that of its class: \"ConditionValueComparator\" has no s at its end.",
         alone(conditions(R"("ConditionValueComparators": [["Settings/Mode", "==", "lab"]])")),
         alone(conditions(R"("ConditionValueComparator": [["Settings/Mode", "==", "lab"]])"))},
        {Code::IgnoredMember, "ignored-member", Severity::Warning,
         "A member of a node means nothing",
         "A node holds \"Type\", \"Next\", \"Commands\" and conditions. The engine does not look "
         "at anything else, nor at these names in another case. Remarks have a key that begins "
         "with \"@\".",
         alone(R"({
    "Node": {
        "Type": "CommandNode",
        "Remark": "The speed is always in m/s.",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] }
    }
})"),
         alone(R"({
    "Node": {
        "Type": "CommandNode",
        "@remark": "The speed is always in m/s.",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] }
    }
})")},
    };
}

QList<CodeDescription> graphCodes()
{
    return {
        {Code::UnreadCondition, "unread-condition", Severity::Error,
         "A condition of a top-level node is not read",
         "The conditions in a node belong to the edge that leads to it, and no edge leads to a "
         "top-level node. Its conditions guard nothing, and what they watch does not make it run: "
         "unless something below watches, it runs for every write.",
         alone(R"({
    "Node": {
        "Type": "CommandNode",
        "ConditionWriteOnUrls": [["Settings/Mode"]],
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] }
    }
})"),
         alone(conditions(R"("ConditionWriteOnUrls": [["Settings/Mode"]])"))},
        {Code::UnaskedCondition, "unasked-condition", Severity::Warning,
         "A command node does not ask the conditions of its edge",
         "A command node goes on to its only successor whatever the conditions say. What they "
         "watch still makes the top-level node run. To choose, put a switch node between.",
         alone(R"({
    "First": {
        "Type": "CommandNode",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] },
        "Next": {
            "Second": {
                "Type": "CommandNode",
                "ConditionValueComparator": [["Settings/Mode", "==", "lab"]],
                "Commands": { "CommandSetUnitProperties": [["Line/Load", "kg"]] }
            }
        }
    }
})"),
         alone(R"({
    "First": {
        "Type": "CommandNode",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] },
        "Next": {
            "Choose": {
                "Type": "SwitchNode",
                "Next": {
                    "Second": {
                        "Type": "CommandNode",
                        "ConditionValueComparator": [["Settings/Mode", "==", "lab"]],
                        "Commands": { "CommandSetUnitProperties": [["Line/Load", "kg"]] }
                    }
                }
            }
        }
    }
})")},
        {Code::SeveralSuccessors, "several-successors", Severity::Error,
         "A command node has several successors",
         "It follows none of them. Only a switch node chooses among edges; one without conditions "
         "follows them all. An edge that leads nowhere counts, too.",
         alone(R"({
    "Node": {
        "Type": "CommandNode",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] },
        "Next": {
            "A": {
                "Type": "CommandNode",
                "Commands": { "CommandSetUnitProperties": [["Line/Load", "kg"]] }
            },
            "B": {
                "Type": "CommandNode",
                "Commands": { "CommandSetUnitProperties": [["Line/Length", "m"]] }
            }
        }
    }
})"),
         alone(R"({
    "Node": {
        "Type": "SwitchNode",
        "Next": {
            "A": {
                "Type": "CommandNode",
                "Commands": { "CommandSetUnitProperties": [["Line/Load", "kg"]] }
            },
            "B": {
                "Type": "CommandNode",
                "Commands": { "CommandSetUnitProperties": [["Line/Length", "m"]] }
            }
        }
    }
})")},
        {Code::UnreadCommands, "unread-commands", Severity::Error, "A switch node runs no commands",
         "\"Commands\" is only looked for in a command node. Move them to one among the "
         "successors: an edge without conditions is always followed.",
         alone(R"({
    "Node": {
        "Type": "SwitchNode",
        "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] },
        "Next": {
            "Edge": {
                "Type": "CommandNode",
                "Commands": { "CommandSetUnitProperties": [["Line/Load", "kg"]] }
            }
        }
    }
})"),
         alone(R"({
    "Node": {
        "Type": "SwitchNode",
        "Next": {
            "Edge": {
                "Type": "CommandNode",
                "Commands": {
                    "CommandSetUnitProperties": [["Line/Speed", "m/s"], ["Line/Load", "kg"]]
                }
            }
        }
    }
})")},
        {Code::SwitchWithoutEdges, "switch-without-edges", Severity::Warning,
         "A switch node has no edges", "There is nothing to follow, so nothing happens there.",
         alone(R"({ "Node": { "Type": "SwitchNode" } })"),
         alone(conditions(R"("ConditionWriteOnUrls": [["Settings/Mode"]])"))},
        {Code::NoEffect, "no-effect", Severity::Warning, "A node does nothing",
         "A node without commands has no effect where no node below has any. This is told once, of "
         "the topmost one. Where conditions stand on an edge in between, nothing is told: they "
         "name the URLs that are run when nothing was written. A description without any node "
         "does nothing either, which is told where a link names it.",
         alone(R"({ "Node": { "Type": "CommandNode" } })"),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::AlternativeConditions, "alternative-conditions", Severity::Warning,
         "Conditions of one edge are alternatives",
         "The edge is followed once for each condition that holds: one is enough, and two that "
         "hold run the successor twice. For \"this and that\", put one switch node behind the "
         "other. Conditions that cannot hold for the same write are not mentioned.",
         alone(conditions("\"ConditionValueComparator\": [[\"Settings/Mode\", \"==\", \"lab\"]],\n"
                          "                \"ConditionWriteOnUrls\": [[\"Settings/Mode\"]]")),
         alone(conditions("\"ConditionWriteOnUrls\": [[\"Settings/Mode\"]],\n"
                          "                \"ConditionWriteOnUrlsRegExp\": [[\"^Zones/\"]]"))},
        {Code::RunsTwice, "runs-twice", Severity::Warning, "A node is found twice for one write",
         "A top-level node runs once if it watches the written URL, and once more for each of its "
         "patterns that matches it. Whether two of its patterns match one URL is looked up in the "
         "source of each link.",
         alone(R"({
    "Node": {
        "Type": "SwitchNode",
        "Next": {
            "A": {
                "Type": "CommandNode",
                "ConditionWriteOnUrls": [["Settings/Mode"]],
                "Commands": { "CommandSetUnitProperties": [["Line/Speed", "m/s"]] }
            },
            "B": {
                "Type": "CommandNode",
                "ConditionWriteOnUrlsRegExp": [["^Settings/"]],
                "Commands": { "CommandSetUnitProperties": [["Line/Load", "kg"]] }
            }
        }
    }
})"),
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Settings/"]])"))},
    };
}

QList<CodeDescription> rowCodes()
{
    return {
        {Code::TableNotAList, "table-not-a-list", Severity::Error, "A table is no list",
         "The parameters of a command or a condition are a list of rows. Of anything else the "
         "engine takes no rows: the command does nothing, the condition never holds.",
         alone(conditions(R"("ConditionWriteOnUrls": "Settings/Mode")")),
         alone(conditions(R"("ConditionWriteOnUrls": [["Settings/Mode"]])"))},
        {Code::EmptyTable, "empty-table", Severity::Warning, "A table has no rows",
         "A condition without rows is a condition that never holds, and an edge with no other is "
         "never followed. A command without rows does nothing.",
         alone(conditions(R"("ConditionWriteOnUrls": [])")),
         alone(conditions(R"("ConditionWriteOnUrls": [["Settings/Mode"]])"))},
        {Code::RowNotAList, "row-not-a-list", Severity::Error, "A row is no list",
         "The engine passes over what is no list. A row of one cell has brackets of its own.",
         alone(conditions(R"("ConditionWriteOnUrls": ["Settings/Mode", ["Settings/Unit"]])")),
         alone(conditions(R"("ConditionWriteOnUrls": [["Settings/Mode"], ["Settings/Unit"]])"))},
        {Code::RowSkipped, "row-skipped", Severity::Error, "A row of this length is skipped",
         "The rows beside it count, and nothing is said.",
         alone(conditions(
             R"("ConditionValueComparator": [["Settings/Mode", "lab"], ["A", "==", 1]])")),
         alone(conditions(
             R"("ConditionValueComparator": [["Settings/Mode", "==", "lab"], ["A", "==", 1]])"))},
        {Code::RowTruncated, "row-truncated", Severity::Warning, "Cells of a row are dropped",
         "The two commands for fixed units take the first cells of a row that is too long. Even "
         "the remark, which is the last cell of a row that has one, is dropped then.",
         alone(
             commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s", "fast", "always"]])")),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s", "fast, always"]])"))},
        {Code::RowFatal, "row-fatal", Severity::Error, "A row ends the process",
         "The two commands for fixed units take the first cells of every row. Where they are not "
         "there an assertion fails, in every build: the process ends when it reads the "
         "description.",
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed"]])")),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::CellNotText, "cell-not-text", Severity::Warning, "A cell should be text",
         "A number and a truth value are taken as the text that spells them, anything else as the "
         "empty text. Only a constant may be of any type.",
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", 1]])")),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "1"]])"))},
        {Code::EmptyUnit, "empty-unit", Severity::Warning, "A unit is empty",
         "An empty unit in a row disables the row. One that is taken from the source does not: it "
         "takes away the unit that the leaf has. That is told where the row runs with the present "
         "values and the leaf has a unit.",
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", ""]])")),
         alone(commands(R"("CommandSetUnitProperties": [["Line/Speed", "1"]])"))},
        {Code::EmptyUrl, "empty-url", Severity::Warning, "A URL is empty",
         "The empty URL names no leaf: the row is skipped, or does not hold. The URL of "
         "\"CommandSetUnitProperties\" may be empty, since the first parameter of the link stands "
         "in front of it.",
         alone(commands(R"("CommandSetUnitByConfigurationParameter": [["", "", "Line/Speed"]])")),
         alone(commands(
             R"("CommandSetUnitByConfigurationParameter": [["Settings/Unit", "", "Line/Speed"]])"))},
        {Code::UnknownComparator, "unknown-comparator", Severity::Error,
         "There is no comparator like that",
         R"(A comparator is "==" or "!=". With any other text the row never holds.)",
         alone(conditions(R"("ConditionValueComparator": [["Settings/Mode", "=", "lab"]])")),
         alone(conditions(R"("ConditionValueComparator": [["Settings/Mode", "==", "lab"]])"))},
        {Code::AlwaysHolds, "always-holds", Severity::Warning, "Two rows leave no value out",
         "The rows of a condition are alternatives: one that holds is enough. Whatever the value "
         "is, it differs from one of two constants. For \"neither this nor that\", put one switch "
         "node behind the other.",
         alone(conditions("\"ConditionValueComparator\": [[\"Settings/Mode\", \"!=\", \"lab\"],\n"
                          "                                             [\"Settings/Mode\", "
                          "\"!=\", \"field\"]]")),
         alone(conditions("\"ConditionValueComparator\": [[\"Settings/Mode\", \"==\", \"lab\"],\n"
                          "                                             [\"Settings/Mode\", "
                          "\"==\", \"field\"]]"))},
    };
}

QList<CodeDescription> patternCodes()
{
    return {
        {Code::InvalidPattern, "invalid-pattern", Severity::Error, "A pattern is invalid",
         "An invalid pattern never matches, neither when nodes are looked up nor when a condition "
         "is asked or a command run, and nothing is said. Patterns are Perl-compatible regular "
         "expressions.",
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Zones/([^/]+/Mode$"]])")),
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Zones/([^/]+)/Mode$"]])"))},
        {Code::EmptyPattern, "empty-pattern", Severity::Warning,
         "An empty pattern matches every URL",
         "A pattern is searched in the URL, and nothing is found everywhere: the node runs for "
         "every write. For an edge that is always followed, leave the conditions out.",
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [[""]])")),
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Settings/"]])"))},
        {Code::SlowPattern, "slow-pattern", Severity::Warning,
         "A pattern takes very long where it does not match",
         "Where repetitions can share out the same characters in many ways, a match that fails "
         "tries them all, and each further character of the URL may double their number. This is "
         "measured: the text in the message was matched, with a limit to the number of steps. "
         "Let each character belong to one repetition only.",
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^(([a-z]+)/?)+$"]])")),
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^([a-z]+/)*[a-z]+$"]])"))},
        {Code::PatternWithoutGroup, "pattern-without-group", Severity::Error,
         "A pattern of a command needs a group",
         "The two commands with patterns pass over a row whose pattern has no capture group, even "
         "where it matches, and say nothing. An unnamed group is enough for a URL without places.",
         alone(commands(
             R"("CommandSetUnitPropertiesRegExp": [["^Line/Mode$", "Line/Speed", "m/s"]])")),
         alone(commands(
             R"("CommandSetUnitPropertiesRegExp": [["^(Line)/Mode$", "Line/Speed", "m/s"]])"))},
        {Code::PrefixedUrl, "prefixed-url", Severity::Error, "A plain URL begins with \"RE:\"",
         "The node is run where the rest matches as a pattern, but the condition itself compares "
         "the whole text with the written URL, so it never holds. Use the condition whose name "
         "ends in \"RegExp\", and leave \"RE:\" out.",
         alone(conditions(R"("ConditionWriteOnUrls": [["RE:^Zones/"]])")),
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Zones/"]])"))},
        {Code::PrefixedPattern, "prefixed-pattern", Severity::Error,
         "A pattern begins with \"RE:\"",
         "Patterns of tables stand without it: the condition puts it in front when it tells what "
         "it watches. Written out, its three characters are searched in the URL.",
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["RE:^Zones/"]])")),
         alone(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Zones/"]])"))},
        {Code::UnknownGroup, "unknown-group", Severity::Error,
         "A target URL names a group that the pattern does not have",
         "The place stays in the URL as it is written, brackets included, and no leaf has such a "
         "URL: the row is skipped. Case counts.",
         alone(commands(
             "\"CommandSetUnitPropertiesRegExp\": [\n"
             "                [\"^(?<zone>[^/]+)/Mode$\", \"(?<zone>)/(?<leaf>)\", \"m/s\"]\n"
             "            ]")),
         alone(
             commands("\"CommandSetUnitPropertiesRegExp\": [\n"
                      "                [\"^(?<zone>[^/]+)/Mode$\", \"(?<zone>)/Speed\", \"m/s\"]\n"
                      "            ]"))},
        {Code::UnusedGroup, "unused-group", Severity::Note,
         "A group of a pattern has no place in the target URL",
         "What the group captures is dropped. That does no harm, but the place is often missing "
         "by mistake.",
         alone(commands("\"CommandSetUnitPropertiesRegExp\": [\n"
                        "                [\"^(?<zone>[^/]+)/Mode$\", \"Line/Speed\", \"m/s\"]\n"
                        "            ]")),
         alone(commands("\"CommandSetUnitPropertiesRegExp\": [\n"
                        "                [\"^([^/]+)/Mode$\", \"Line/Speed\", \"m/s\"]\n"
                        "            ]"))},
        {Code::UnfilledPlace, "unfilled-place", Severity::Error,
         "A place for a parameter is not filled",
         "\"%1\" and \"%2\" are filled in \"CommandSetUnitByConfigurationParameter\" only, and "
         "only by a link with exactly two parameters that are texts or numbers. Otherwise the URL "
         "is taken as it is written. \"CommandSetUnitProperties\" puts the first parameter in "
         "front of its URLs instead.",
         alone(commands(R"("CommandSetUnitProperties": [["%1/Speed", "m/s"]])")),
         alone(commands(
             R"("CommandSetUnitByConfigurationParameter": [["Settings/Unit", "", "%1/Speed"]])"))},
        {Code::InvalidColumn, "invalid-column", Severity::Error, "There is no such column",
         "The URL of an array ends with a column in square brackets: a whole number, a sum of two "
         "or a difference of two. With anything else, and where the result is below zero or "
         "beyond an int, the engine warns and skips the row. The first column is 0.",
         alone(commands(
             R"("CommandSetUnitByConfigurationParameterArray": [["Settings/Unit", "Log[1-2]"]])")),
         alone(commands(
             R"("CommandSetUnitByConfigurationParameterArray": [["Settings/Unit", "Log[2-1]"]])"))},
        {Code::IgnoredText, "ignored-text", Severity::Warning, "Text behind a column is ignored",
         "The URL of an array ends with its column. What stands behind the last bracket is "
         "dropped.",
         alone(commands(
             R"("CommandSetUnitByConfigurationParameterArray": [["Settings/Unit", "Log[1]/Max"]])")),
         alone(commands(
             R"("CommandSetUnitByConfigurationParameterArray": [["Settings/Unit", "Log[1]"]])"))},
    };
}

QList<CodeDescription> linkCodes()
{
    const QString copySpeed = commands(
        R"("CommandSetUnitByConfigurationParameter": [["Settings/SpeedUnit", "", "Line/Speed"]])");
    return {
        {Code::BadLink, "bad-link", Severity::Error, "An entry of links.json cannot be read",
         "The link is left out; the others count. \"source\", \"target\" and \"dependency\" are "
         "texts and must be there, \"process\" is true or false, \"parameters\" is a list.",
         linked(copySpeed, target, R"("Left")"), linked(copySpeed, target, "[]")},
        {Code::BadUnit,
         "bad-unit",
         Severity::Error,
         "An entry of units.json cannot be read",
         "The unit is left out; the others count. A key is a unit as it stands in the files. Its "
         "definition is a text in terms of units that UDUNITS-2 knows or that stand above it, or "
         "null for a unit of a kind of its own.",
         {copySpeed,
          QString::fromUtf8(source),
          QString::fromUtf8(target),
          {},
          QStringLiteral(R"({ "pcs": null, "Nm": "newtonmetre" })")},
         {copySpeed,
          QString::fromUtf8(source),
          QString::fromUtf8(target),
          {},
          QStringLiteral(R"({ "pcs": null, "Nm": "N m" })")}},
        {Code::MissingFile,
         "missing-file",
         Severity::Error,
         "A link names what is not there",
         "The source is a configuration; the target is one, too, unless the link says that it is "
         "a process description. What is not there cannot be followed: the link is not resolved.",
         {copySpeed, QString::fromUtf8(source), {}, {}, {}},
         linked(copySpeed)},
        {Code::UnusedParameters, "unused-parameters", Severity::Warning,
         "A description does not take the parameters of a link",
         "\"CommandSetUnitProperties\" puts the first parameter in front of its URLs, if it is a "
         "text or a number. \"CommandSetUnitByConfigurationParameter\" fills \"%1\" and \"%2\", if "
         "there are exactly two. Nothing else takes any.",
         linked(copySpeed, target, R"(["Line/"])"), linked(copySpeed)},
        {Code::UnknownSourceUrl, "unknown-source-url", Severity::Error,
         "A URL names no value of the source",
         "Nobody can write there, so a condition on it never holds, and a command that takes a "
         "unit from there skips the row and says nothing. Case counts. It is the same with a leaf "
         "that has no value, as long as it has none; a condition that only asks whether it was "
         "written does not need one.",
         linked(commands(
             R"("CommandSetUnitByConfigurationParameter": [["Settings/Speed", "", "Line/Speed"]])")),
         linked(copySpeed)},
        {Code::UnknownTargetUrl, "unknown-target-url", Severity::Error,
         "A URL names no leaf of the target",
         "The row is skipped. Three commands say nothing; those for columns and for fixed units "
         "by pattern warn. The URL in the message is the one that results: with the prefix or the "
         "parameters of the link, or with what the groups of the pattern capture.",
         linked(commands(R"("CommandSetUnitProperties": [["Line/Sped", "m/s"]])")),
         linked(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::SomeTargetsMissing, "some-targets-missing", Severity::Note,
         "Some of the leaves that a pattern leads to are missing",
         "The pattern matches several URLs of the source, and the target has a leaf for some of "
         "them only. The row is skipped when one of the others is written.",
         linked(commands("\"CommandSetUnitPropertiesRegExp\": [\n"
                         "                [\"^Settings/(?<name>Speed|Limit)\", \"Line/(?<name>)\", "
                         "\"m/s\"]\n            ]")),
         linked(commands("\"CommandSetUnitPropertiesRegExp\": [\n"
                         "                [\"^Settings/(?<name>Speed)\", \"Line/(?<name>)\", "
                         "\"m/s\"]\n            ]"))},
        {Code::PatternMatchesNothing, "pattern-matches-nothing", Severity::Warning,
         "A pattern matches no URL of the source",
         "Nothing that is written there ever fits, so the condition never holds, or the row of "
         "the command never applies.",
         linked(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Setting/"]])")),
         linked(conditions(R"("ConditionWriteOnUrlsRegExp": [["^Settings/"]])"))},
        {Code::NotAnArray, "not-an-array", Severity::Error, "Only an array has columns",
         "A leaf without \"@type\": \"array\" is warned of and left alone. One without "
         "\"@arrayInformation\" is skipped in silence.",
         linked(commands("\"CommandSetUnitByConfigurationParameterArray\": "
                         "[[\"Settings/SpeedUnit\", \"Speed[1]\"]]"),
                arrays),
         linked(commands("\"CommandSetUnitByConfigurationParameterArray\": "
                         "[[\"Settings/SpeedUnit\", \"Log[1]\"]]"),
                arrays)},
        {Code::ColumnOutOfRange, "column-out-of-range", Severity::Error,
         "A column is beyond the end of its array",
         "An assertion fails, in every build: the process ends when the row is run and its value "
         "is there.",
         linked(commands("\"CommandSetUnitByConfigurationParameterArray\": "
                         "[[\"Settings/SpeedUnit\", \"Log[2]\"]]"),
                arrays),
         linked(commands("\"CommandSetUnitByConfigurationParameterArray\": "
                         "[[\"Settings/SpeedUnit\", \"Log[1]\"]]"),
                arrays)},
        {Code::ConstantNeverEqual, "constant-never-equal", Severity::Warning,
         "A constant can never equal the value",
         "The constant is read in the type of the value. Where that is impossible, as with a word "
         "beside a number, \"==\" never holds and \"!=\" always does.",
         linked(conditions(R"("ConditionValueComparator": [["Settings/Limit", "==", "high"]])")),
         linked(conditions(R"("ConditionValueComparator": [["Settings/Limit", "==", "5"]])"))},
        {Code::TextAsTruth, "text-as-truth", Severity::Warning,
         "A text is compared with a truth value",
         "The constant is read in the type of the value, and as a truth value each text is true "
         "but \"\", \"0\" and \"false\" in any case. So \"off\" and \"no\" are true. Nothing is "
         "told of the texts that are read as they are meant: these, and \"true\", \"1\", \"yes\" "
         "and \"on\".",
         linked(conditions(R"("ConditionValueComparator": [["Settings/Enabled", "==", "off"]])")),
         linked(conditions(R"("ConditionValueComparator": [["Settings/Enabled", "==", false]])"))},
        {Code::ConflictingUnits, "conflicting-units", Severity::Warning,
         "Two rows set different units on one leaf",
         "Both are run for the same write, one after the other: commands in the order of their "
         "names, rows in that of the table. What the first one sets is lost. Rows of one node are "
         "always compared. For rows of different nodes the link is run with the present values, "
         "once for each URL that it looks at: what is told does happen, but with other values "
         "there may be more.",
         linked(commands("\"CommandSetUnitProperties\": [[\"Line/Speed\", \"m/s\"],\n"
                         "                                         [\"Line/Speed\", \"km/h\"]]")),
         linked(commands(R"("CommandSetUnitProperties": [["Line/Speed", "m/s"]])"))},
        {Code::UnknownUnit,
         "unknown-unit",
         Severity::Warning,
         "A text is set as a unit and is none",
         "The engine takes any text for a unit. Units are what UDUNITS-2 knows, from \"°C\" to "
         "\"kg/m³\", and what units.json lists. A number alone is none, except 1: it is the value "
         "of another leaf. So is a unit with a number in front. A unit that stands in a row is "
         "always looked at, one that is taken from the source if the row runs with the present "
         "values. A list is none either; the command for columns skips it.",
         linked(commands(R"("CommandSetUnitProperties": [["Line/Speed", "pcs/h"]])")),
         {commands(R"("CommandSetUnitProperties": [["Line/Speed", "pcs/h"]])"),
          QString::fromUtf8(source),
          R"({ "Line": { "Speed": 1.2 } })",
          {},
          R"({ "pcs": null })"}},
        {Code::OtherDimension, "other-dimension", Severity::Warning,
         "A unit cannot be converted to the one that is there",
         "The leaf has a unit, and the one that the row sets measures something else: no value of "
         "the one can be that of the other. The link is run with the present values, once for each "
         "URL that it looks at. A leaf that is meant to show now one thing and now another is "
         "mentioned as long as it has the unit of the other.",
         linked(commands(R"("CommandSetUnitProperties": [["Line/Speed", "bar"]])")),
         linked(commands(R"("CommandSetUnitProperties": [["Line/Speed", "km/h"]])"))},
    };
}

QString wrapped(const QString& text)
{
    constexpr int width = 80;
    QString lines;
    int column = 0;
    for (const QString& word : text.split(QLatin1Char(' '))) {
        const bool fits = column + 1 + word.size() <= width;
        if (column > 0) {
            lines += fits ? QLatin1Char(' ') : QLatin1Char('\n');
        }
        column = column > 0 && fits ? column + 1 + word.size() : word.size();
        lines += word;
    }
    return lines + QLatin1Char('\n');
}

QString block(const QString& heading, const QString& json)
{
    return json.isEmpty() ? QString()
                          : QStringLiteral("\n%1\n\n```json\n").arg(heading) + json +
                                QStringLiteral("\n```\n");
}

QString shown(const QString& heading, const Example& example)
{
    QString text = block(heading, example.description);
    text += block(QStringLiteral("on the source"), example.source);
    text += block(QStringLiteral("and the target"), example.target);
    text += block(QStringLiteral("with units.json"), example.units);
    text += block(QStringLiteral("with the link's \"parameters\""), example.parameters);
    return text;
}

} // namespace

const QList<CodeDescription>& codes()
{
    static const QList<CodeDescription> all =
        syntaxCodes() + nameCodes() + graphCodes() + rowCodes() + patternCodes() + linkCodes();
    return all;
}

const CodeDescription& describe(Code code)
{
    return *std::find_if(codes().begin(), codes().end(),
                         [code](const CodeDescription& known) { return known.code == code; });
}

const CodeDescription* findCode(const QString& name)
{
    const auto found =
        std::find_if(codes().begin(), codes().end(),
                     [&](const CodeDescription& known) { return known.name == name; });
    return found == codes().end() ? nullptr : &*found;
}

QString nameOf(Severity severity)
{
    switch (severity) {
    case Severity::Note:
        return QStringLiteral("note");
    case Severity::Warning:
        return QStringLiteral("warning");
    case Severity::Error:
        return QStringLiteral("error");
    }
    return {};
}

QString explain(const CodeDescription& code)
{
    return QStringLiteral("## ") + code.name + QStringLiteral("\n\n") +
           wrapped(QStringLiteral("%1 (%2). %3")
                       .arg(code.title, nameOf(code.severity), code.explanation)) +
           shown(QStringLiteral("Found in:"), code.bad) +
           shown(QStringLiteral("Not found in:"), code.good);
}

QString explainAll()
{
    QString text = QStringLiteral(
        "# What `unitflow check` finds\n"
        "\n"
        "Each finding has a code, and each code a page here. `unitflow check --explain CODE` "
        "prints\n"
        "one. An error does not do what is written or ends the process, a warning does something, "
        "but\n"
        "hardly what was meant, and a note works but is easily taken for something else.\n"
        "\n"
        "| Code | Severity | What it says |\n"
        "|---|---|---|\n");
    for (const CodeDescription& code : codes()) {
        text += QStringLiteral("| [%1](#%1) | %2 | %3 |\n")
                    .arg(code.name, nameOf(code.severity), code.title);
    }
    for (const CodeDescription& code : codes()) {
        text += QLatin1Char('\n') + explain(code);
    }
    return text;
}

} // namespace checker
