#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class RecordsetChangesTest : public testing::Test {
 protected:
  Variant Value(const SampleRows& rows, std::int32_t row, const char* column) const {
    return rows.Rows->Values(row, rows.Column(column));
  }

  ScopedApartment apartment_;
};

TEST_F(RecordsetChangesTest, ChangeTouchesItsRowAlone) {
  const SampleRows rows;
  rows.Rows->SetValue(1, "Name", "Eve");
  EXPECT_EQ(Value(rows, 1, "Name").AsText(), "Eve");
  EXPECT_EQ(Value(rows, 1, "Id").AsLong(), 2);
  EXPECT_EQ(Value(rows, 0, "Name").AsText(), "Ada");
  EXPECT_TRUE(rows.Rows->IsDirty(1));
  EXPECT_FALSE(rows.Rows->IsDirty(0));
}

TEST_F(RecordsetChangesTest, ColumnIsTakenByNumberAndByName) {
  const SampleRows rows;
  rows.Rows->SetValue(0, 2, "Eve");
  EXPECT_EQ(Value(rows, 0, "Name").AsText(), "Eve");
  EXPECT_EQ(rows.Rows->OldValues(0, "name").AsText(), "Ada");
  EXPECT_TRUE(rows.Rows->Dirty(0, 2));
  EXPECT_FALSE(rows.Rows->Dirty(0, "Id"));
}

TEST_F(RecordsetChangesTest, AChangeInAColumnThatWasTakenOutCountsNoMore) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Columns->Remove("Name");
  EXPECT_FALSE(rows.Rows->IsDirty(0));
  EXPECT_TRUE(rows.Rows->Dirty(0).IsEmpty());
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
}

TEST_F(RecordsetChangesTest, ChangesAreAskedForByOrderNumberWhereverTheDefinitionStands) {
  const SampleRows rows;
  rows.Columns->Remove("Id");
  rows.Rows->SetValue(0, 1, "Eve");  // by position: what stands first now
  EXPECT_TRUE(rows.Rows->Dirty(0, 2));
  EXPECT_EQ(rows.Rows->OldValues(0, 2).AsText(), "Ada");
  ExpectRaised(errItem_Property, [&] { rows.Rows->Dirty(0, 1); }, {.Text = "Index: 1 "});
}

TEST_F(RecordsetChangesTest, WhatWasNeverChangedIsNotAskedForItsColumns) {
  const SampleRows rows;
  EXPECT_FALSE(rows.Rows->Dirty(0, "None"));
  EXPECT_TRUE(rows.Rows->OldValues(0, "None").IsEmpty());
  rows.Rows->Undo(0, "None");
  EXPECT_TRUE(rows.Rows->OldValues(rows.NewRow()->Row(), "None").IsEmpty());
  rows.Rows->SetValue(0, "Name", "Eve");
  ExpectRaised(errItem_Property, [&] { rows.Rows->Dirty(0, "None"); }, {.Text = "None"});
  ExpectRaised(errItem_Property, [&] { rows.Rows->OldValues(0, "None"); }, {.Text = "None"});
  ExpectRaised(errItem_Property, [&] { rows.Rows->Undo(0, "None"); }, {.Text = "None"});
}

TEST_F(RecordsetChangesTest, ADeletedRowIsRefusedAheadOfAColumnThatIsNotThere) {
  const SampleRows rows;
  rows.Rows->FlagDeleted(0);
  EXPECT_FALSE(rows.Rows->Dirty(0, "None"));
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->OldValues(0, "None"); });
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->Undo(0, "None"); });
}

TEST_F(RecordsetChangesTest, ChangingTwiceKeepsTheFirstOldValue) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->SetValue(0, "Name", "Fay");
  EXPECT_EQ(rows.Rows->OldValues(0, "Name").AsText(), "Ada");
}

TEST_F(RecordsetChangesTest, UnchangedColumnHasAnEmptyOldValue) {
  const SampleRows rows;
  EXPECT_TRUE(rows.Rows->OldValues(0, "Name").IsEmpty());
  rows.Rows->SetValue(0, "Id", 9);
  EXPECT_TRUE(rows.Rows->OldValues(0, "Name").IsEmpty());
}

TEST_F(RecordsetChangesTest, UntouchedAndDeletedRowsAnswerFalse) {
  const SampleRows rows;
  EXPECT_TRUE(rows.Rows->Dirty(0) == Variant(false));
  rows.Rows->SetValue(0, "Name", "Eve");
  EXPECT_TRUE(rows.Rows->Dirty(0) == Variant(true));
  rows.Rows->FlagDeleted(0);
  EXPECT_TRUE(rows.Rows->Dirty(0) == Variant(false));
  EXPECT_FALSE(rows.Rows->Dirty(0, "Name"));
}

TEST_F(RecordsetChangesTest, WalkWithoutADifferenceAnswersEmptyAndNotFalse) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->SetValue(0, "Name", "Ada");
  EXPECT_TRUE(rows.Rows->Dirty(0).IsEmpty());
  EXPECT_FALSE(rows.Rows->Dirty(0, "Name"));
  EXPECT_EQ(rows.Rows->OldValues(0, "Name").AsText(), "Ada");
}

TEST_F(RecordsetChangesTest, ChangeFromEmptyCountsOnANewRowAndNotOnAnOldOne) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Photo", "raw");
  EXPECT_FALSE(rows.Rows->Dirty(0, "Photo"));
  EXPECT_TRUE(rows.Rows->Dirty(0).IsEmpty());
  const auto row = rows.NewRow()->Row();
  rows.Rows->SetValue(row, "Photo", "raw");
  EXPECT_TRUE(rows.Rows->Dirty(row, "Photo"));
  EXPECT_TRUE(rows.Rows->Dirty(row) == Variant(true));
}

// States

TEST_F(RecordsetChangesTest, StateOfARowFollowsWhatIsDoneToIt) {
  const SampleRows rows;
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
  rows.Rows->SetValue(0, "Name", "Eve");
  EXPECT_EQ(rows.Rows->StateFlags(0), sfdirty | sfpersistent);
  rows.Rows->DeletePersistentProperties(0);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfdirty | sfpersistent | sfpendingdelete);
  rows.Rows->FlagDeleted(0);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfdeleted);
  const auto row = rows.NewRow()->Row();
  EXPECT_EQ(rows.Rows->StateFlags(row), sfNew);
  rows.Rows->SetValue(row, "Id", 4);
  EXPECT_EQ(rows.Rows->StateFlags(row), sfNew | sfdirty);
  rows.Rows->DeletePersistentProperties(row);
  EXPECT_EQ(rows.Rows->StateFlags(row), sfdeleted);
}

TEST_F(RecordsetChangesTest, RowPendingDeleteIsStillPersistent) {
  const SampleRows rows;
  rows.Rows->DeletePersistentProperties(0);
  EXPECT_TRUE(has(rows.Rows->StateFlags(0), sfpersistent));
}

TEST_F(RecordsetChangesTest, RowMinusOneSumsUpThePage) {
  const SampleRows rows;
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfpersistent);
  rows.Rows->SetValue(0, "Name", "Eve");
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfpersistent);
  rows.NewRow();
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfNew);
  rows.Rows->DeletePersistentProperties(0);
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfNew | sfpersistent | sfpendingdelete);
  rows.Rows->FlagDeleted(1);
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfNew | sfpersistent | sfpendingdelete | sfdeleted);
}

TEST_F(RecordsetChangesTest, SetStateFlagsOnlyClears) {
  const SampleRows rows;
  rows.Rows->SetStateFlags(0, sfNew | sfdirty | sfpendingdelete | sfdeleted);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->DeletePersistentProperties(0);
  rows.Rows->SetStateFlags(0, sfpersistent | sfdirty);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent | sfdirty);
  rows.Rows->SetStateFlags(0, sfpersistent);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
  EXPECT_EQ(Value(rows, 0, "Name").AsText(), "Eve");
}

TEST_F(RecordsetChangesTest, SetStateFlagsNeverTakesARowOutOfTheDeletedOnes) {
  const SampleRows rows;
  rows.Rows->FlagDeleted(0);
  rows.Rows->SetStateFlags(0, sfpersistent);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfdeleted);
}

// Undo

struct Restored {
  const char* Name;
  const char* Column;
  Variant Set;
  Variant After;
};

class RecordsetUndoTest : public RecordsetChangesTest, public testing::WithParamInterface<Restored> {};

TEST_P(RecordsetUndoTest, ColumnIsRestoredByTheTypeOfItsOldValue) {
  const SampleRows rows;
  rows.Rows->SetValue(0, GetParam().Column, GetParam().Set);
  rows.Rows->Undo(0, GetParam().Column);
  EXPECT_TRUE(Value(rows, 0, GetParam().Column) == GetParam().After);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RecordsetUndoTest,
    testing::Values(Restored{"EmptyComesBack", "Photo", "raw", Variant()},
                    Restored{"NullComesBack", "Note", "text", Variant::Null()},
                    Restored{"DateComesBack", "Placed", Date::From(2000, 1, 1), Date::From(1998, 6, 1, 9, 0, 0)},
                    Restored{"DateWithinTheSecondStays", "Placed", Date::From({1998, 6, 1, 9, 0, 0, 400}),
                             Date::From({1998, 6, 1, 9, 0, 0, 400})},
                    Restored{"TextStaysChanged", "Name", "Eve", "Eve"}, Restored{"NumberStaysChanged", "Id", 9, 9},
                    Restored{"DoubleStaysChanged", "Amount", 1.0, 1.0},
                    Restored{"BooleanStaysChanged", "Open", false, false}),
    [](const auto& each) { return each.param.Name; });

TEST_F(RecordsetChangesTest, UndoRestoresAnOrdinaryValueOnlyWhenItEqualsTheOldOne) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->Undo(0);
  EXPECT_EQ(Value(rows, 0, "Name").AsText(), "Eve");
  EXPECT_FALSE(rows.Rows->IsDirty(0));
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
}

TEST_F(RecordsetChangesTest, UndoOfAChangedRowEmptiesTheColumnsThatWereNotChanged) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Note", "text");
  rows.Rows->Undo(0);
  EXPECT_TRUE(Value(rows, 0, "Note").IsNull());
  EXPECT_TRUE(Value(rows, 0, "Name").IsEmpty());
}

TEST_F(RecordsetChangesTest, UndoOfOneColumnKeepsTheEntryOfTheRow) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Note", "text");
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->Undo(0, "Note");
  EXPECT_TRUE(Value(rows, 0, "Note").IsNull());
  EXPECT_EQ(rows.Rows->OldValues(0, "Name").AsText(), "Ada");
  EXPECT_TRUE(rows.Rows->IsDirty(0));
}

TEST_F(RecordsetChangesTest, UndoOfARowThatWasNotChangedClearsAPendingDeleteAndNothingElse) {
  const SampleRows rows;
  rows.Rows->DeletePersistentProperties(0);
  rows.Rows->Undo(0);
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
  EXPECT_EQ(Value(rows, 0, "Name").AsText(), "Ada");
}

TEST_F(RecordsetChangesTest, UndoOfOneColumnCancelsThePendingDeleteOfTheWholeRow) {
  const SampleRows rows;
  rows.Rows->DeletePersistentProperties(0);
  rows.Rows->Undo(0, "Name");
  EXPECT_EQ(rows.Rows->StateFlags(0), sfpersistent);
}

TEST_F(RecordsetChangesTest, UndoOfAChangedNewRowDeletesIt) {
  const SampleRows rows;
  const auto row = rows.NewRow()->Row();
  rows.Rows->SetValue(row, "Id", 4);
  rows.Rows->Undo(row);
  EXPECT_EQ(rows.Rows->StateFlags(row), sfdeleted);
}

TEST_F(RecordsetChangesTest, UndoOfAnUntouchedNewRowLeavesItNew) {
  const SampleRows rows;
  const auto row = rows.NewRow()->Row();
  rows.Rows->Undo(row);
  EXPECT_EQ(rows.Rows->StateFlags(row), sfNew);
}

}  // namespace
}  // namespace velmoria::test
