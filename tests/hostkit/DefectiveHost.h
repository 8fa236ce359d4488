#ifndef UNITFLOW_TESTS_HOSTKIT_DEFECTIVEHOST_H
#define UNITFLOW_TESTS_HOSTKIT_DEFECTIVEHOST_H

#include "hostkit/Adapter.h"

#include <memory>

/// A host in memory that holds everything the engine expects but for one defect of choice.
namespace defective {

enum class Defect {
    None,

    // names
    KeyIsEmpty,             ///< the key of the array information is an empty text
    TimeKeyIsFlagKey,       ///< manifest entries keep time and flag under one key
    ArrayTypeIsAnotherText, ///< array leaves carry another type than the host names
    EveryLeafIsAnArray,     ///< plain leaves say that they are arrays
    ManifestNameHasFolder,

    // nodes
    ChildMapHoldsGrandchildren, ///< besides the children
    ChildMapHoldsCopies,
    ChildDataWantsLeadingSeparator, ///< plain names find nothing
    ChildDataIsShallow,             ///< finds direct children only
    ChildDataFallsBack,             ///< an unknown URL finds the last node on the way
    HasChildDataIsFalse,
    ChildDataReturnsCopies,

    // properties
    MissingPropertyIsEmptyText,
    BooleansBecomeWords,
    FirstWriteReturns1,
    ChangingWriteReturns1,
    SameWriteReturns0,
    NumberWritesAreLost, ///< and yet return 0
    RefusalReturns1,
    WriteClearsOtherProperties,

    // values
    ValueIsLookedUpShallow,
    ValueOfNothingIsEmptyText,
    ValueOfBareNodeIsEmptyText,
    ValueIsThatOfTheStart, ///< writes do not show

    // tables
    RowsAreReversed,
    RowsArePadded,
    RowsOfOneCellAreFlat,
    BooleanCellsAreLost,
    EmptyTableHasARow,

    // arrays
    ColumnUnitsAreReversed,
    ColumnsWithoutUnitAreDropped,
    ColumnUnitsAreRefused,
    ColumnUnitsAreWrittenAtOnce,
    ColumnWriteReturns1,
    SameColumnWriteReturns0,
    ColumnWriteToNowhereReturns0,
    ColumnWriteEmptiesRows,

    // parser
    ParserReturnsNull,
    BrokenTextIsAnEmptyTree,
    ParserKeepsTrees, ///< and returns one again for the same text

    // store
    DescriptionIsCutOff,
    UnknownDescriptionIsTheLastOne,
    InstancesLoseTheirUnits,
    UnknownInstanceIsAnEmptyTree,
    ProcessFlagIsIgnored,
    TreesAreHandedOutLive,
    StoringIsLost, ///< and yet returns true
    StoringFails,  ///< and returns false
    StoringAProcessStoresTheConfiguration,
    NullTreeThrows,
    NullTreeStopsTheProcess,

    // register
    RegisterIsAnotherOneEachTime,
    OriginsAreSwapped,
    ProcessesAreNotRegistered,
    LastOriginIsThatOfAll,
    TimesAreEmpty,
    RegisterIsBackwards,
    RegisterIsEmptiedByReading,

    // iteration and manifest
    IterationIsBackwards,
    FilterCollectsTextsOnly,
    FilterTakesFalseForTrue,
    FilterTakesAbsentForTrue,
    FilterWantsAnyPair,
    NothingFoundIsNull,
    ManifestIsNotWritten,
    FirstUpdateWins,
    UpdateOfUnknownIsLost, ///< and yet returns true
    UpdateReturnsFalse,    ///< though it is done
    WritingDropsFlags,
};

/// The only host of the process starts anew, with this defect.
void start(Defect defect);

/// An adapter to it.
std::unique_ptr<hostkit::Adapter> makeAdapter();

} // namespace defective

#endif
