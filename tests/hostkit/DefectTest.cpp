#include "DefectiveHost.h"
#include "hostkit/Check.h"
#include "hostkit/Run.h"

#include <gtest/gtest.h>

#include <sstream>

using defective::Defect;

namespace {

QStringList allNames()
{
    QStringList names;
    for (const hostkit::Check& check : hostkit::allChecks()) {
        names.append(check.name);
    }
    return names;
}

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

QStringList resolutionChecks()
{
    return allNames().filter("resolution.");
}

// Which whole resolutions go wrong. Most defects of a host reach several of them.

QStringList none()
{
    return {};
}

QStringList only(const QStringList& names)
{
    QStringList checks;
    for (const QString& name : names) {
        checks.append("resolution." + name);
    }
    return checks;
}

QStringList allBut(const QStringList& names)
{
    QStringList checks = resolutionChecks();
    for (const QString& name : only(names)) {
        checks.removeOne(name);
    }
    return checks;
}

struct Row {
    Defect defect;
    const char* name;
    QStringList singleOperations; ///< the checks of single operations that fail
    QStringList resolutions;      ///< the checks of whole resolutions that fail
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << row.name;
}

const QList<Row>& table()
{
    static const QList<Row> rows = {
        {Defect::KeyIsEmpty, "KeyIsEmpty", {"keys.of_properties_differ"}, none()},
        {Defect::TimeKeyIsFlagKey,
         "TimeKeyIsFlagKey",
         {"keys.of_manifest_entries_differ", "manifest.writing_keeps_the_flagged_sources"},
         none()},
        {Defect::ArrayTypeIsAnotherText,
         "ArrayTypeIsAnotherText",
         {"keys.array_type_marks_array_leaves"},
         only({"columns_follow_parameters"})},
        {Defect::EveryLeafIsAnArray,
         "EveryLeafIsAnArray",
         {"keys.array_type_marks_no_other_leaf"},
         none()},
        {Defect::ManifestNameHasFolder,
         "ManifestNameHasFolder",
         {"keys.manifest_file_name_has_no_folder"},
         none()},
        {Defect::ChildMapHoldsGrandchildren,
         "ChildMapHoldsGrandchildren",
         {"tree.child_map_holds_all_direct_children"},
         only({"nodes_follow_one_another"})},
        {Defect::ChildMapHoldsCopies,
         "ChildMapHoldsCopies",
         {"tree.child_map_holds_the_nodes_that_getChildData_finds"},
         none()},
        {Defect::ChildDataWantsLeadingSeparator,
         "ChildDataWantsLeadingSeparator",
         {"tree.getChildData_finds_a_direct_child_by_its_name"},
         allBut({"failure_stores_nothing", "missing_description_is_a_failure",
                 "missing_source_is_no_failure"})},
        {Defect::ChildDataIsShallow,
         "ChildDataIsShallow",
         {"tree.getChildData_finds_a_leaf_by_its_url",
          "tree.hasChildData_says_what_getChildData_finds",
          "tree.write_shows_wherever_the_leaf_is_reached", "tree.write_leaves_the_rest_alone",
          "value.follows_a_write", "array.units_stand_in_column_order",
          "array.takes_one_unit_per_column", "array.taking_units_writes_nothing_yet",
          "array.write_of_other_units_returns_0", "array.write_of_the_same_units_returns_1",
          "array.write_to_an_unknown_leaf_returns_neither_0_nor_1",
          "array.write_keeps_rows_and_type", "parser.makes_the_tree_of_a_text",
          "parser.makes_a_new_tree_each_time"},
         allBut({})},
        {Defect::ChildDataFallsBack,
         "ChildDataFallsBack",
         {"tree.getChildData_is_null_for_an_unknown_url",
          "array.write_to_an_unknown_leaf_returns_neither_0_nor_1"},
         none()},
        {Defect::HasChildDataIsFalse,
         "HasChildDataIsFalse",
         {"tree.hasChildData_says_what_getChildData_finds"},
         only({"text_value_chooses_the_branch", "number_value_chooses_the_branch",
               "value_at_the_written_url_chooses_the_branch", "written_url_chooses_the_branch",
               "pattern_of_the_written_url_chooses_the_branch", "failure_stores_nothing"})},
        {Defect::ChildDataReturnsCopies,
         "ChildDataReturnsCopies",
         {"tree.child_map_holds_the_nodes_that_getChildData_finds",
          "tree.write_of_a_new_unit_returns_0", "tree.write_of_another_unit_returns_0",
          "tree.write_shows_wherever_the_leaf_is_reached", "value.follows_a_write",
          "array.write_of_other_units_returns_0", "store.tree_may_be_changed_without_being_stored",
          "store.stored_tree_is_handed_out_again"},
         allBut({"without_a_difference_nothing_counts_as_changed", "failure_stores_nothing",
                 "missing_description_is_a_failure", "missing_source_is_no_failure",
                 "reaches_the_manifest"})},
        {Defect::MissingPropertyIsEmptyText,
         "MissingPropertyIsEmptyText",
         {"tree.missing_property_is_invalid"},
         none()},
        {Defect::BooleansBecomeWords,
         "BooleansBecomeWords",
         {"tree.value_reads_back_as_given"},
         only({"value_at_the_written_url_chooses_the_branch"})},
        {Defect::FirstWriteReturns1,
         "FirstWriteReturns1",
         {"tree.write_of_a_new_unit_returns_0"},
         none()},
        {Defect::ChangingWriteReturns1,
         "ChangingWriteReturns1",
         {"tree.write_of_another_unit_returns_0", "tree.status_of_a_write_tells_the_truth"},
         allBut({"columns_follow_parameters", "without_a_difference_nothing_counts_as_changed",
                 "failure_stores_nothing", "missing_description_is_a_failure",
                 "missing_source_is_no_failure", "reaches_the_manifest"})},
        {Defect::SameWriteReturns0,
         "SameWriteReturns0",
         {"tree.write_of_the_same_unit_returns_1"},
         only({"without_a_difference_nothing_counts_as_changed"})},
        {Defect::NumberWritesAreLost,
         "NumberWritesAreLost",
         {"tree.status_of_a_write_tells_the_truth"},
         only({"number_becomes_a_unit"})},
        {Defect::RefusalReturns1,
         "RefusalReturns1",
         {"tree.refused_write_returns_neither_0_nor_1"},
         none()},
        {Defect::WriteClearsOtherProperties,
         "WriteClearsOtherProperties",
         {"tree.write_leaves_the_rest_alone"},
         none()},
        {Defect::ValueIsLookedUpShallow,
         "ValueIsLookedUpShallow",
         {"value.is_that_of_the_leaf_at_the_url", "value.follows_a_write"},
         only({"unit_follows_a_parameter_of_the_source", "number_becomes_a_unit",
               "unit_follows_the_parameter_at_the_written_url", "text_value_chooses_the_branch",
               "number_value_chooses_the_branch", "value_at_the_written_url_chooses_the_branch",
               "works_on_trees_outside_the_store"})},
        {Defect::ValueOfNothingIsEmptyText,
         "ValueOfNothingIsEmptyText",
         {"value.is_invalid_for_an_unknown_url"},
         none()},
        {Defect::ValueOfBareNodeIsEmptyText,
         "ValueOfBareNodeIsEmptyText",
         {"value.is_invalid_for_a_node_without_a_value"},
         none()},
        {Defect::ValueIsThatOfTheStart, "ValueIsThatOfTheStart", {"value.follows_a_write"}, none()},
        {Defect::RowsAreReversed,
         "RowsAreReversed",
         {"table.keeps_rows_and_cells_in_order", "table.keeps_rows_of_different_length",
          "table.keeps_rows_of_one_cell"},
         only({"sets_fixed_units", "columns_follow_parameters"})},
        {Defect::RowsArePadded,
         "RowsArePadded",
         {"table.keeps_rows_of_different_length"},
         only({"sets_fixed_units", "columns_follow_parameters"})},
        {Defect::RowsOfOneCellAreFlat,
         "RowsOfOneCellAreFlat",
         {"table.keeps_rows_of_one_cell"},
         only({"unit_follows_a_parameter_of_the_source",
               "groups_of_the_written_url_name_the_target", "written_url_chooses_the_branch",
               "pattern_of_the_written_url_chooses_the_branch",
               "without_urls_every_watched_url_counts_as_written",
               "works_on_trees_outside_the_store", "reaches_the_manifest"})},
        {Defect::BooleanCellsAreLost,
         "BooleanCellsAreLost",
         {"table.cells_compare_equal_to_values"},
         only({"value_at_the_written_url_chooses_the_branch"})},
        {Defect::EmptyTableHasARow, "EmptyTableHasARow", {"table.without_rows_has_none"}, none()},
        {Defect::ColumnUnitsAreReversed,
         "ColumnUnitsAreReversed",
         {"array.units_stand_in_column_order", "array.taking_units_writes_nothing_yet",
          "array.write_of_the_same_units_returns_1"},
         only({"columns_follow_parameters"})},
        {Defect::ColumnsWithoutUnitAreDropped,
         "ColumnsWithoutUnitAreDropped",
         {"array.column_without_a_unit_counts"},
         none()},
        {Defect::ColumnUnitsAreRefused,
         "ColumnUnitsAreRefused",
         {"array.takes_one_unit_per_column", "array.write_of_other_units_returns_0",
          "array.write_of_the_same_units_returns_1", "array.write_keeps_rows_and_type"},
         only({"columns_follow_parameters"})},
        {Defect::ColumnUnitsAreWrittenAtOnce,
         "ColumnUnitsAreWrittenAtOnce",
         {"array.taking_units_writes_nothing_yet", "array.write_of_other_units_returns_0"},
         only({"columns_follow_parameters"})},
        {Defect::ColumnWriteReturns1,
         "ColumnWriteReturns1",
         {"array.write_of_other_units_returns_0"},
         only({"columns_follow_parameters"})},
        {Defect::SameColumnWriteReturns0,
         "SameColumnWriteReturns0",
         {"array.write_of_the_same_units_returns_1"},
         only({"without_a_difference_nothing_counts_as_changed"})},
        {Defect::ColumnWriteToNowhereReturns0,
         "ColumnWriteToNowhereReturns0",
         {"array.write_to_an_unknown_leaf_returns_neither_0_nor_1"},
         none()},
        {Defect::ColumnWriteEmptiesRows,
         "ColumnWriteEmptiesRows",
         {"array.write_keeps_rows_and_type"},
         none()},
        {Defect::ParserReturnsNull,
         "ParserReturnsNull",
         {"parser.makes_the_tree_of_a_text", "parser.makes_a_new_tree_each_time",
          "store.description_is_a_text_that_parses"},
         allBut({"failure_stores_nothing", "missing_description_is_a_failure",
                 "missing_source_is_no_failure"})},
        {Defect::BrokenTextIsAnEmptyTree,
         "BrokenTextIsAnEmptyTree",
         {"parser.returns_null_for_a_text_it_cannot_read"},
         none()},
        {Defect::ParserKeepsTrees,
         "ParserKeepsTrees",
         {"parser.makes_a_new_tree_each_time"},
         none()},
        {Defect::DescriptionIsCutOff,
         "DescriptionIsCutOff",
         {"store.description_is_a_text_that_parses"},
         allBut({"works_on_trees_outside_the_store", "failure_stores_nothing",
                 "missing_description_is_a_failure", "missing_source_is_no_failure"})},
        {Defect::UnknownDescriptionIsTheLastOne,
         "UnknownDescriptionIsTheLastOne",
         {"store.unknown_description_is_an_empty_text"},
         only({"missing_description_is_a_failure"})},
        {Defect::InstancesLoseTheirUnits,
         "InstancesLoseTheirUnits",
         {"store.instance_has_its_leaves", "store.process_flag_picks_the_process_description",
          "store.tree_may_be_changed_without_being_stored", "store.stored_tree_is_handed_out_again",
          "store.storing_a_process_description_keeps_the_configuration"},
         allBut({"works_on_trees_outside_the_store", "reaches_the_manifest"})},
        {Defect::UnknownInstanceIsAnEmptyTree,
         "UnknownInstanceIsAnEmptyTree",
         {"store.unknown_instance_is_null"},
         only({"missing_source_is_no_failure"})},
        {Defect::ProcessFlagIsIgnored,
         "ProcessFlagIsIgnored",
         {"store.process_flag_picks_the_process_description",
          "store.storing_a_process_description_keeps_the_configuration"},
         only({"target_may_be_a_process_description"})},
        {Defect::TreesAreHandedOutLive,
         "TreesAreHandedOutLive",
         {"store.tree_may_be_changed_without_being_stored"},
         only({"failure_stores_nothing"})},
        {Defect::StoringIsLost,
         "StoringIsLost",
         {"store.stored_tree_is_handed_out_again"},
         allBut({"without_a_difference_nothing_counts_as_changed",
                 "works_on_trees_outside_the_store", "failure_stores_nothing",
                 "missing_description_is_a_failure", "missing_source_is_no_failure",
                 "reaches_the_manifest"})},
        {Defect::StoringFails,
         "StoringFails",
         {"store.stored_tree_is_handed_out_again",
          "register.lists_a_stored_configuration_under_its_origins",
          "register.lists_a_stored_process_description_under_its_origins",
          "register.keeps_origins_apart", "register.gives_every_modification_a_time",
          "register.is_not_emptied_by_reading",
          "register.lists_later_modifications_behind_earlier_ones"},
         allBut({"works_on_trees_outside_the_store", "failure_stores_nothing",
                 "missing_description_is_a_failure"})},
        {Defect::StoringAProcessStoresTheConfiguration,
         "StoringAProcessStoresTheConfiguration",
         {"store.storing_a_process_description_keeps_the_configuration"},
         only({"target_may_be_a_process_description"})},
        {Defect::NullTreeThrows, "NullTreeThrows", {"store.null_tree_is_survived"}, none()},
        {Defect::RegisterIsAnotherOneEachTime,
         "RegisterIsAnotherOneEachTime",
         {"register.is_always_the_same_and_never_null"},
         none()},
        {Defect::OriginsAreSwapped,
         "OriginsAreSwapped",
         {"register.lists_a_stored_configuration_under_its_origins",
          "register.lists_a_stored_process_description_under_its_origins",
          "register.keeps_origins_apart"},
         only({"reaches_the_manifest"})},
        {Defect::ProcessesAreNotRegistered,
         "ProcessesAreNotRegistered",
         {"register.lists_a_stored_process_description_under_its_origins"},
         none()},
        {Defect::LastOriginIsThatOfAll,
         "LastOriginIsThatOfAll",
         {"register.keeps_origins_apart"},
         none()},
        {Defect::TimesAreEmpty,
         "TimesAreEmpty",
         {"register.gives_every_modification_a_time"},
         only({"reaches_the_manifest"})},
        {Defect::RegisterIsBackwards,
         "RegisterIsBackwards",
         {"register.lists_later_modifications_behind_earlier_ones"},
         none()},
        {Defect::RegisterIsEmptiedByReading,
         "RegisterIsEmptiedByReading",
         {"register.keeps_origins_apart", "register.is_not_emptied_by_reading"},
         none()},
        {Defect::IterationIsBackwards,
         "IterationIsBackwards",
         {"json.iterator_shows_each_object_to_its_visitor",
          "json.filter_collects_the_values_of_matching_objects_in_order",
          "manifest.writing_keeps_the_flagged_sources"},
         none()},
        {Defect::FilterCollectsTextsOnly,
         "FilterCollectsTextsOnly",
         {"json.filter_collects_the_values_of_matching_objects_in_order"},
         none()},
        {Defect::FilterTakesFalseForTrue,
         "FilterTakesFalseForTrue",
         {"json.filter_leaves_out_objects_whose_flag_is_false", "json.filter_wants_every_pair",
          "json.result_without_a_match_is_an_empty_array",
          "manifest.writing_keeps_the_flagged_sources"},
         none()},
        {Defect::FilterTakesAbsentForTrue,
         "FilterTakesAbsentForTrue",
         {"json.filter_leaves_out_objects_without_the_flag", "json.filter_wants_every_pair"},
         none()},
        {Defect::FilterWantsAnyPair,
         "FilterWantsAnyPair",
         {"json.filter_wants_every_pair"},
         none()},
        {Defect::NothingFoundIsNull,
         "NothingFoundIsNull",
         {"json.result_without_a_match_is_an_empty_array"},
         none()},
        {Defect::ManifestIsNotWritten,
         "ManifestIsNotWritten",
         {"manifest.update_is_there_after_writing", "manifest.later_update_wins"},
         only({"reaches_the_manifest"})},
        {Defect::FirstUpdateWins,
         "FirstUpdateWins",
         {"manifest.later_update_wins"},
         only({"reaches_the_manifest"})},
        {Defect::UpdateOfUnknownIsLost,
         "UpdateOfUnknownIsLost",
         {"manifest.update_of_an_unknown_instance_tells_the_truth"},
         none()},
        {Defect::UpdateReturnsFalse,
         "UpdateReturnsFalse",
         {"manifest.update_is_there_after_writing"},
         none()},
        {Defect::WritingDropsFlags,
         "WritingDropsFlags",
         {"manifest.writing_keeps_the_flagged_sources"},
         none()},
    };
    return rows;
}

/// What the checks' program prints about a host with that defect.
QString report(Defect defect)
{
    defective::start(defect);
    const std::unique_ptr<hostkit::Adapter> adapter = defective::makeAdapter();
    std::ostringstream out;
    hostkit::run(*adapter, {}, out, out);
    return QString::fromStdString(out.str());
}

QStringList failuresIn(const QString& report)
{
    QStringList names;
    for (const QString& line : report.split('\n')) {
        if (line.startsWith("failed  ")) {
            names.append(line.mid(8));
        }
    }
    return names;
}

class HostWithADefect : public testing::TestWithParam<Row> {};

TEST_P(HostWithADefect, fails_exactly_the_checks_concerned_and_is_told_what_comes_of_it)
{
    const QString text = report(GetParam().defect);
    const QStringList failures = failuresIn(text);

    EXPECT_EQ(
        sorted(failures).join('\n').toStdString(),
        sorted(GetParam().singleOperations + GetParam().resolutions).join('\n').toStdString());
    for (const hostkit::Check& check : hostkit::allChecks()) {
        if (failures.contains(check.name)) {
            const QString start = "failed  " + check.name +
                                  "\n    expected:  " + check.expectation +
                                  "\n    otherwise: " + check.consequence + "\n    found:     ";
            EXPECT_TRUE(text.contains(start)) << start.toStdString();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, HostWithADefect, testing::ValuesIn(table()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(HostWithoutADefect, passes_every_check)
{
    EXPECT_EQ(failuresIn(report(Defect::None)), QStringList());
}

TEST(DefectTable, has_a_defect_for_every_check)
{
    QStringList neverFailed = allNames();
    for (const Row& row : table()) {
        for (const QString& name : row.singleOperations + row.resolutions) {
            neverFailed.removeOne(name);
        }
    }
    EXPECT_EQ(neverFailed.join('\n').toStdString(), "");
}

} // namespace
