#include "DependencyWalker.h"
#include "EngineTest.h"
#include "trace/NdjsonTraceWriter.h"
#include "trace/TraceReader.h"
#include "trace/internal/EventNames.h"

#include <QBuffer>
#include <QDate>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <set>
#include <tuple>
#include <type_traits>
#include <vector>

using testhost::tree;
using trace::Event;
using trace::NdjsonTraceWriter;
using trace::readTrace;
using trace::Trace;
using trace::TraceError;

namespace {

const QByteArray firstLine = "{\"format\":\"unitflow/trace\",\"version\":1}\n";

// Everything that an event holds, to compare it.
auto membersOf(const trace::Link& link)
{
    return std::make_tuple(link.source, link.target, link.dependency, link.isProcess,
                           link.parameters);
}
auto membersOf(const trace::TraversalStarted& event)
{
    return std::make_tuple(event.url);
}
auto membersOf(const trace::NodeSelected& event)
{
    return std::make_tuple(event.node.name, event.node.selection, event.node.watched);
}
auto membersOf(const trace::NodeEntered& event)
{
    return std::make_tuple(event.node.name, event.node.type);
}
auto membersOf(const trace::NodeLeft& event)
{
    return std::make_tuple(event.node.name, event.node.type, event.outcome);
}
auto membersOf(const trace::EdgeDecided& event)
{
    return std::make_tuple(event.edge.index, event.edge.successor, event.edge.decision);
}
auto membersOf(const trace::ConditionStarted& event)
{
    return std::make_tuple(event.condition.index, event.condition.type);
}
auto membersOf(const trace::ConditionRowChecked& event)
{
    const TraversalObserver::ConditionRow& row = event.row;
    return std::make_tuple(row.row, row.outcome, row.url, row.comparator, row.expected.isValid(),
                           row.expected, row.actual.isValid(), row.actual);
}
auto membersOf(const trace::ConditionFinished& event)
{
    return std::make_tuple(event.condition.index, event.condition.type, event.holds);
}
auto membersOf(const trace::CommandStarted& event)
{
    return std::make_tuple(event.command.index, event.command.type);
}
auto membersOf(const trace::CommandRowExecuted& event)
{
    const TraversalObserver::CommandRow& row = event.row;
    return std::make_tuple(row.row, row.outcome, row.targetUrl, row.unit.isValid(), row.unit,
                           row.status, row.column);
}
auto membersOf(const trace::CommandFinished& event)
{
    return std::make_tuple(event.command.index, event.command.type, event.outcome);
}
auto membersOf(const trace::TraversalFinished& event)
{
    return std::make_tuple(event.outcome, event.changed);
}

bool same(const Event& left, const Event& right)
{
    return left.index() == right.index() &&
           std::visit(
               [&](const auto& event) {
                   using Type = std::decay_t<decltype(event)>;
                   return membersOf(event) == membersOf(std::get<Type>(right));
               },
               left);
}

/// The lines of some events, without the first one.
QByteArray linesOf(const QList<Event>& events)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    NdjsonTraceWriter writer(buffer);
    for (const Event& event : events) {
        writer.take(event);
    }
    EXPECT_TRUE(writer.isComplete());
    EXPECT_TRUE(buffer.data().startsWith(firstLine));
    return buffer.data().mid(firstLine.size());
}

std::vector<std::pair<int, QString>> errorsOf(const QByteArray& text)
{
    std::vector<std::pair<int, QString>> errors;
    for (const TraceError& error : readTrace(text).errors) {
        errors.emplace_back(error.line, error.message);
    }
    return errors;
}

using Errors = std::vector<std::pair<int, QString>>;
using Observer = TraversalObserver;

struct Row {
    Event event;
    const char* line;
};

const std::vector<Row>& everyEvent()
{
    static const std::vector<Row> rows{
        {trace::Link{"from", "to", "units", true, {"A", 1}},
         R"({"event":"link","source":"from","target":"to","dependency":"units","process":true,)"
         R"("parameters":["A",1]})"},
        {trace::TraversalStarted{"A/B"}, R"({"event":"traversal-started","url":"A/B"})"},
        {trace::NodeSelected{{"Top", Observer::Selection::Pattern, "^A"}},
         R"({"event":"node-selected","name":"Top","selection":"pattern","watched":"^A"})"},
        {trace::NodeEntered{{"Top", "SwitchNode"}},
         R"({"event":"node-entered","name":"Top","type":"SwitchNode"})"},
        {trace::NodeLeft{{"Top", "SwitchNode"}, true},
         R"({"event":"node-left","name":"Top","type":"SwitchNode","outcome":true})"},
        {trace::EdgeDecided{{2, "Set", Observer::EdgeDecision::NoConditionHolds}},
         R"({"event":"edge-decided","index":2,"successor":"Set","decision":"no-condition-holds"})"},
        {trace::ConditionStarted{{1, "ConditionWriteOnUrls"}},
         R"({"event":"condition-started","index":1,"type":"ConditionWriteOnUrls"})"},
        {trace::ConditionRowChecked{{3, Observer::ConditionOutcome::Differs, "A/B", "==", "K", 5}},
         R"({"event":"condition-row","row":3,"outcome":"differs","url":"A/B","comparator":"==",)"
         R"("expected":"K","actual":5})"},
        {trace::ConditionRowChecked{{0, Observer::ConditionOutcome::NoMatch, "A", {}, {}, {}}},
         R"({"event":"condition-row","row":0,"outcome":"no-match","url":"A"})"},
        {trace::ConditionFinished{{1, "ConditionWriteOnUrls"}, false},
         R"({"event":"condition-finished","index":1,"type":"ConditionWriteOnUrls","holds":false})"},
        {trace::CommandStarted{{0, "CommandSetUnitProperties"}},
         R"({"event":"command-started","index":0,"type":"CommandSetUnitProperties"})"},
        {trace::CommandRowExecuted{{4, Observer::RowOutcome::Changed, "T", "°C", 0, 2}},
         R"({"event":"command-row","row":4,"outcome":"changed","target":"T","unit":"°C",)"
         R"("status":0,"column":2})"},
        {trace::CommandRowExecuted{{4, Observer::RowOutcome::NoTarget, "T", {}}},
         R"({"event":"command-row","row":4,"outcome":"no-target","target":"T"})"},
        {trace::CommandFinished{{0, "CommandSetUnitProperties"}, true},
         R"({"event":"command-finished","index":0,"type":"CommandSetUnitProperties",)"
         R"("outcome":true})"},
        {trace::TraversalFinished{true, false},
         R"({"event":"traversal-finished","outcome":true,"changed":false})"},
    };
    return rows;
}

TEST(NdjsonTrace, has_a_line_for_each_event_which_is_read_back_as_it_was)
{
    std::set<std::size_t> kinds;
    for (const Row& row : everyEvent()) {
        SCOPED_TRACE(row.line);
        kinds.insert(row.event.index());
        const QByteArray lines = linesOf({row.event});
        EXPECT_EQ(lines.toStdString(), std::string(row.line) + '\n');
        const Trace read = readTrace(firstLine + lines);
        ASSERT_EQ(read.events.size(), 1);
        EXPECT_TRUE(read.errors.isEmpty());
        EXPECT_TRUE(same(read.events.first(), row.event));
    }
    EXPECT_EQ(kinds.size(), std::variant_size_v<Event>) << "an event has no row here";
}

template <class Enumeration, class Make>
void expectNames(const QList<trace::internal::Named<Enumeration>>& names, int count, Make make)
{
    EXPECT_EQ(names.size(), count);
    for (int number = 0; number < count; ++number) {
        const Event event = make(static_cast<Enumeration>(number));
        const QByteArray line = linesOf({event});
        EXPECT_TRUE(line.contains(QByteArray(names.at(number).name.data())));
        const Trace read = readTrace(firstLine + line);
        ASSERT_EQ(read.events.size(), 1);
        EXPECT_TRUE(same(read.events.first(), event)) << line.toStdString();
    }
}

TEST(NdjsonTrace, names_every_value_of_every_enumeration)
{
    expectNames(trace::internal::selectionNames(), int(Observer::Selection::Unconditional) + 1,
                [](auto value) {
                    return trace::NodeSelected{{"n", value, "w"}};
                });
    expectNames(trace::internal::edgeDecisionNames(), int(Observer::EdgeDecision::LeadsNowhere) + 1,
                [](auto value) {
                    return trace::EdgeDecided{{0, "s", value}};
                });
    expectNames(trace::internal::conditionOutcomeNames(),
                int(Observer::ConditionOutcome::InvalidPattern) + 1, [](auto value) {
                    return trace::ConditionRowChecked{{0, value, "u", "==", 1, 2}};
                });
    expectNames(trace::internal::rowOutcomeNames(), int(Observer::RowOutcome::ColumnsRefused) + 1,
                [](auto value) {
                    return trace::CommandRowExecuted{{0, value, "t", "K", 7, 1}};
                });
}

TEST(NdjsonTrace, keeps_values_of_every_kind)
{
    struct Value {
        QVariant value;
        const char* json;
    };
    const std::vector<Value> values{
        {"", R"("")"},
        {QString("\"\\\n\t\x01") + QChar(0x7F), "\"\\u0022\\u005c\\u000a\\u0009\\u0001\x7F\""},
        {"°C 𝄞", R"("°C 𝄞")"},
        {QString(QChar(0xD834)) + "x" + QChar(0xDD1E), R"("\ud834x\udd1e")"},
        {true, "true"},
        {false, "false"},
        {0, "0"},
        {-7, "-7"},
        {Q_INT64_C(9007199254740993), "9007199254740993"},
        {std::numeric_limits<qlonglong>::min(), "-9223372036854775808"},
        {0.1, "0.1"},
        {1e300, "1e+300"},
        {QVariant::fromValue(nullptr), "null"},
        {QVariantList{1, "a", QVariantList{true}}, R"([1,"a",[true]])"},
        {QVariantMap{{"a", 1}, {"b", QVariantList()}}, R"({"a":1,"b":[]})"},
    };
    for (const Value& value : values) {
        SCOPED_TRACE(value.json);
        const Event event =
            trace::CommandRowExecuted{{0, Observer::RowOutcome::Changed, "t", value.value}};
        const QByteArray line = linesOf({event});
        EXPECT_TRUE(line.contains(QByteArray("\"unit\":") + value.json)) << line.toStdString();
        const Trace read = readTrace(firstLine + line);
        ASSERT_EQ(read.events.size(), 1);
        EXPECT_TRUE(same(read.events.first(), event));
    }
}

TEST(NdjsonTrace, writes_what_JSON_has_no_kind_for_as_near_as_it_can)
{
    const auto unitIn = [](const QVariant& value) {
        const QByteArray line =
            linesOf({trace::CommandRowExecuted{{0, Observer::RowOutcome::Changed, "t", value}}});
        return line.mid(line.indexOf("\"unit\":") + 7).chopped(2).toStdString();
    };
    EXPECT_EQ(unitIn(2.0), "2.0") << "no whole number";
    EXPECT_EQ(unitIn(std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(unitIn(std::numeric_limits<qulonglong>::max()), "18446744073709551615");
    EXPECT_EQ(unitIn(QStringList{"a", "b"}), R"(["a","b"])");
    EXPECT_EQ(unitIn(QVariantHash{{"a", 1}}), R"({"a":1})");
    EXPECT_EQ(unitIn(QByteArray("K")), R"("K")");
    EXPECT_EQ(unitIn(QDate(2020, 1, 2)), R"("2020-01-02")");
}

/// Whether the document of the format has a word, in the form in which it names all of them.
bool isDocumented(const QString& word)
{
    QFile file(QStringLiteral(UNITFLOW_DOCS_FOLDER "/trace-format.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll()).contains('`' + word + '`');
}

template <class Enumeration>
void expectDocumented(const QList<trace::internal::Named<Enumeration>>& names)
{
    for (const auto& named : names) {
        EXPECT_TRUE(isDocumented(named.name)) << named.name.data();
    }
}

TEST(NdjsonTrace, is_documented_word_by_word)
{
    for (const Row& row : everyEvent()) {
        const QJsonObject object = QJsonDocument::fromJson(row.line).object();
        EXPECT_TRUE(isDocumented(object.value("event").toString())) << row.line;
        for (const QString& member : object.keys()) {
            EXPECT_TRUE(isDocumented(member)) << member.toStdString();
        }
    }
    EXPECT_TRUE(isDocumented(QString::fromUtf8(firstLine.chopped(1))));
    expectDocumented(trace::internal::selectionNames());
    expectDocumented(trace::internal::edgeDecisionNames());
    expectDocumented(trace::internal::conditionOutcomeNames());
    expectDocumented(trace::internal::rowOutcomeNames());
}

class ObservedEngine : public testhost::EngineTest {};

TEST_F(ObservedEngine, is_traced_in_the_order_of_execution)
{
    const testhost::NodePointer source = tree("source", R"({"s": "K"})");
    const testhost::NodePointer target = tree("target", R"({"t": 1})");
    DependencyWalker walker;
    walker.initDependencyGraph(tree("d", R"({"Top": {"Type": "SwitchNode", "Next": {"Set": {
        "Type": "CommandNode", "ConditionValueComparator": [["s", "==", "K"]],
        "Commands": {"CommandSetUnitProperties": [["t", "K"], ["u", "K"]]}}}}})"));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    NdjsonTraceWriter writer(buffer);
    QVariantList results;
    {
        const TraversalObservation observation(writer);
        walker.traverseDependencyGraph("s", source, target, results, {}, {});
    }
    EXPECT_EQ(buffer.data().toStdString(), firstLine.toStdString() +
                                               R"({"event":"traversal-started","url":"s"}
{"event":"node-selected","name":"Top","selection":"url","watched":"s"}
{"event":"node-entered","name":"Top","type":"SwitchNode"}
{"event":"condition-started","index":0,"type":"ConditionValueComparator"}
{"event":"condition-row","row":0,"outcome":"holds","url":"s","comparator":"==","expected":"K","actual":"K"}
{"event":"condition-finished","index":0,"type":"ConditionValueComparator","holds":true}
{"event":"edge-decided","index":0,"successor":"Set","decision":"followed-by-condition"}
{"event":"node-entered","name":"Set","type":"CommandNode"}
{"event":"command-started","index":0,"type":"CommandSetUnitProperties"}
{"event":"command-row","row":0,"outcome":"changed","target":"t","unit":"K","status":0}
{"event":"command-row","row":1,"outcome":"no-target","target":"u"}
{"event":"command-finished","index":0,"type":"CommandSetUnitProperties","outcome":true}
{"event":"node-left","name":"Set","type":"CommandNode","outcome":true}
{"event":"node-left","name":"Top","type":"SwitchNode","outcome":true}
{"event":"traversal-finished","outcome":true,"changed":true}
)");
    const Trace read = readTrace(buffer.data());
    EXPECT_TRUE(read.errors.isEmpty());
    EXPECT_EQ(firstLine + linesOf(read.events), buffer.data());
}

TEST(NdjsonTraceWriter, says_when_the_device_does_not_take_a_line)
{
    testhost::MessageCapture messages; // Qt complains as well
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    NdjsonTraceWriter writer(buffer);
    EXPECT_TRUE(writer.isComplete());
    buffer.close();
    buffer.open(QIODevice::ReadOnly);
    writer.take(trace::TraversalStarted{"s"});
    EXPECT_FALSE(writer.isComplete());
    buffer.close();
    buffer.open(QIODevice::WriteOnly);
    writer.take(trace::TraversalStarted{"s"});
    EXPECT_FALSE(writer.isComplete()) << "a line is missing for good";
}

TEST(NdjsonTraceWriterDeathTest, has_all_in_the_file_when_a_column_ends_the_process)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("trace");
    EXPECT_EXIT(
        {
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            NdjsonTraceWriter writer(file);
            writer.take(trace::CommandRowExecuted{
                {0, Observer::RowOutcome::ColumnOutOfRange, "T", "K", -1, 5}});
            std::_Exit(7); // writes nothing that waits in a buffer
        },
        testing::ExitedWithCode(7), "");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(readTrace(file.readAll()).events.size(), 1);
}

TEST(TraceReader, wants_the_first_line_to_name_the_format_and_a_version_it_knows)
{
    const Errors expected{
        {1, "the first line has to be {\"format\":\"unitflow/trace\",\"version\":1}"}};
    for (const char* text : {"", "\n", "{}\n", "{\"format\":\"unitflow/trace\",\"version\":2}\n",
                             "{\"format\":\"unitflow/set\",\"version\":1}\n", "no JSON",
                             "{\"event\":\"traversal-started\",\"url\":\"s\"}\n"}) {
        EXPECT_EQ(errorsOf(text), expected) << text;
    }
    EXPECT_EQ(errorsOf("{\"version\":1, \"more\": 1, \"format\":\"unitflow/trace\"}"), Errors());
}

TEST(TraceReader, passes_over_members_that_it_does_not_know_and_needs_no_last_line_feed)
{
    const Trace trace = readTrace(firstLine + R"({"new":1,"url":"s","event":"traversal-started"})");
    EXPECT_TRUE(trace.errors.isEmpty());
    ASSERT_EQ(trace.events.size(), 1);
    EXPECT_TRUE(same(trace.events.first(), trace::TraversalStarted{"s"}));
}

TEST(TraceReader, names_the_line_of_every_error_and_reads_the_others)
{
    const QByteArray lines = R"({"event":"traversal-started","url":"s"}
{"event":"nothing"}
{"url":"s"}
[]

{"event":"traversal-started","url":5}
{"event":"node-left","name":"n","type":"t","outcome":"yes"}
{"event":"condition-started","index":0.5,"type":"t"}
{"event":"edge-decided","index":0,"successor":"s","decision":"maybe"}
{"event":"link","source":"a","target":"b","dependency":"c","process":false,"parameters":1}
{"event":"traversal-finished","outcome":true,"chan)";
    const Trace trace = readTrace(firstLine + lines);
    EXPECT_EQ(trace.events.size(), 1);
    const auto is = [](const char* name, const QString& expected) {
        return QStringLiteral("the member \"%1\" is not what it has to be: %2")
            .arg(QLatin1String(name), expected);
    };
    EXPECT_EQ(errorsOf(firstLine + lines),
              (Errors{{3, "there is no event \"nothing\""},
                      {4, "the member \"event\" is missing: text"},
                      {5, "no JSON object with members"},
                      {6, "illegal value"},
                      {7, is("url", "text")},
                      {8, is("outcome", "true or false")},
                      {9, is("index", "a whole number")},
                      {10, is("decision", "\"followed-always\", \"followed-by-condition\", "
                                          "\"followed-as-only\", \"no-condition-holds\", "
                                          "\"one-of-several\", \"leads-nowhere\"")},
                      {11, is("parameters", "a list")},
                      {12, "unterminated string"}}));
}

TEST(TraceReader, misses_no_member_of_any_event_unnoticed)
{
    for (const Row& row : everyEvent()) {
        const QJsonObject whole = QJsonDocument::fromJson(row.line).object();
        for (const QString& name : whole.keys()) {
            const QStringList optional{"comparator", "expected", "actual",
                                       "unit",       "status",   "column"};
            QJsonObject object = whole;
            object.remove(name);
            const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact);
            const Trace trace = readTrace(firstLine + line);
            EXPECT_EQ(trace.errors.isEmpty(), optional.contains(name)) << line.toStdString();
        }
    }
}

TEST(TraceReader, names_the_line_of_a_number_that_counts_nothing)
{
    const QByteArray edge =
        R"({"event":"edge-decided","successor":"s","decision":"followed-always")";
    const QByteArray condition =
        R"({"event":"condition-row","outcome":"holds","url":"s","comparator":"==")";
    const QByteArray command = R"({"event":"command-row","outcome":"changed","target":"t")";
    for (const char* number :
         {"-1", "-2147483648", "2147483647", "2147483648", "1e300", "-1e300"}) {
        const QByteArray text(number);
        for (const QByteArray& line :
             {edge + ",\"index\":" + text + "}", condition + ",\"row\":" + text + "}",
              command + ",\"row\":" + text + "}",
              command + ",\"row\":0,\"column\":" + text + "}"}) {
            const Errors errors = errorsOf(firstLine + line);
            ASSERT_EQ(errors.size(), 1) << line.toStdString();
            EXPECT_EQ(errors.front().first, 2);
        }
    }
    EXPECT_EQ(errorsOf(firstLine + edge + ",\"index\":2147483646}"), Errors());
}

TEST(TraceReader, reads_no_further_than_1000_nodes_within_one_another)
{
    const QByteArray enter = "{\"event\":\"node-entered\",\"name\":\"n\",\"type\":\"\"}\n";
    const QByteArray leave =
        "{\"event\":\"node-left\",\"name\":\"n\",\"type\":\"\",\"outcome\":true}\n";
    EXPECT_EQ(errorsOf(firstLine + leave + enter.repeated(1000) + leave + enter), Errors());
    EXPECT_EQ(readTrace(firstLine + enter.repeated(60000)).events.size(), 1000);
    EXPECT_EQ(
        errorsOf(firstLine + enter.repeated(60000)),
        (Errors{{1002, "more than 1000 nodes are within one another; the rest is not read"}}));
}

} // namespace
