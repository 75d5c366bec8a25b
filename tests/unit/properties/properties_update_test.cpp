#include <string>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/told_events.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class PropertiesUpdateTest : public testing::Test {
 protected:
  void Watch(Properties& properties) { TellEvents(properties, told_); }

  ScopedApartment apartment_;
  std::string told_;
};

TEST_F(PropertiesUpdateTest, CleanRowRaisesNeitherEventAndWritesNothing) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  Watch(*row);
  row->Update();
  EXPECT_EQ(told_, "");
  EXPECT_EQ(rows.Database->Writes(), 0);
}

TEST_F(PropertiesUpdateTest, ChangedRowIsWrittenAndPersistentAgain) {
  const SampleRows rows;
  const auto row = rows.Row(1);
  Watch(*row);
  row->Item("Name")->SetValue("Eve");
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfdirty);
  row->Update();
  EXPECT_EQ(told_, "bu au ");
  EXPECT_EQ(rows.Database->Updates, 1);
  EXPECT_EQ(row->StateFlags(), sfpersistent);
  EXPECT_EQ(row->Item("Name")->Value().AsText(), "Eve");
  EXPECT_TRUE(row->Item("Name")->OldValue().IsEmpty());
}

TEST_F(PropertiesUpdateTest, CancelledUpdateWritesNothingAndKeepsTheChange) {
  const SampleRows rows;
  const auto row = rows.Row(1);
  row->Item("Name")->SetValue("Eve");
  row->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  Watch(*row);
  row->Update();
  EXPECT_EQ(told_, "bu ");
  EXPECT_EQ(rows.Database->Writes(), 0);
  EXPECT_TRUE(row->DirtyValues());
}

TEST_F(PropertiesUpdateTest, RefusedWriteLeavesTheRowToBeCorrected) {
  const SampleRows rows;
  const auto row = rows.Row(1);
  row->Item("Name")->SetValue("Eve");
  rows.Database->Refuses = true;
  ExpectReported(RuntimeFailure::DeviceError, [&] { row->Update(); });
  EXPECT_TRUE(row->DirtyValues());
  EXPECT_EQ(row->Item("Name")->OldValue().AsText(), "Ben");
  rows.Database->Refuses = false;
  row->Update();
  EXPECT_EQ(rows.Database->Updates, 1);
}

TEST_F(PropertiesUpdateTest, NewRowWithValuesIsInserted) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Id")->SetValue(4);
  EXPECT_EQ(row->StateFlags(), sfNew | sfdirty);
  row->Update();
  EXPECT_EQ(rows.Database->Inserts, 1);
  EXPECT_EQ(row->StateFlags(), sfpersistent);
  EXPECT_TRUE(row->Item("Name")->Value().IsNull());
}

TEST_F(PropertiesUpdateTest, NewRowWithoutValuesRaisesBothEventsWritesNothingAndStaysNew) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  Watch(*row);
  row->Update();
  EXPECT_EQ(told_, "bu au ");
  EXPECT_EQ(rows.Database->Writes(), 0);
  EXPECT_EQ(row->StateFlags(), sfNew);
  EXPECT_TRUE(row->Item("Name")->EmptyValue());
}

TEST_F(PropertiesUpdateTest, CounterThatTheDatabaseAssignedShowsWithoutDirtiness) {
  const SampleRows rows;
  rows.Database->Assigned = {{"Id", "orders.Id", 42}};
  const auto row = rows.NewRow();
  row->Item("Name")->SetValue("Eve");
  const auto identifier = row->Identifier();
  row->Update();
  EXPECT_EQ(row->Item("Id")->Value().AsLong(), 42);
  EXPECT_EQ(identifier->Key(), "42");
  EXPECT_FALSE(row->DirtyValues());
}

TEST_F(PropertiesUpdateTest, FailureBehindAnInsertLeavesTheRowNewSoThatItIsInsertedAgain) {
  const SampleRows rows;
  rows.Database->Assigned = {{"Nobody", "orders.Nobody", 42}};
  const auto row = rows.NewRow();
  row->Item("Id")->SetValue(4);
  ExpectRaised(errItem_Property, [&] { row->Update(); }, {.Text = "Index: 'Nobody'"});
  EXPECT_TRUE(has(row->StateFlags(), sfNew));
  EXPECT_THROW(row->Update(), Error);
  EXPECT_EQ(rows.Database->Inserts, 2);
}

TEST_F(PropertiesUpdateTest, RequiredColumnThatTheServerFillsFailsButTheRowIsFiledAsExisting) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Note")->SetFlags(pfRequired);
  row->Item("Id")->SetValue(4);
  ExpectRaised(errValue_Required, [&] { row->Update(); }, {.Text = "Property: 'Note'"});
  EXPECT_EQ(row->StateFlags(), sfpersistent);
  row->Item("Name")->SetValue("Eve");
  row->Update();
  EXPECT_EQ(rows.Database->Inserts, 1);
  EXPECT_EQ(rows.Database->Updates, 1);
}

TEST_F(PropertiesUpdateTest, NewRowNeedsInsertAndAnOldOneUpdate) {
  const SampleRows rows(efDelete);
  rows.Row(0)->Item("Name")->SetValue("Eve");
  ExpectRaised(errNotSupported_Update, [&] { rows.Row(0)->Update(); }, {.Text = "Action: 'Get'  EditFlags: 'Delete'"});
  const auto row = rows.NewRow();
  row->Item("Name")->SetValue("Eve");
  ExpectRaised(errNotSupported_Insert, [&] { row->Update(); }, {.Text = "Action: 'Get'  EditFlags: 'Delete'"});
}

TEST_F(PropertiesUpdateTest, DirtyOfAColumnStaysTrueAfterTheUpdateThoughTheRowIsClean) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Item("Name")->SetValue("Eve");
  row->Update();
  EXPECT_TRUE(row->Item("Name")->Dirty());
  EXPECT_FALSE(row->Item("Name")->DirtyValue());
}

TEST_F(PropertiesUpdateTest, ColumnsLeftUnsetAreLetNullBehindTheInsertAndTheirListenersHear) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Id")->SetValue(4);
  row->Item("Name")->BeforeValueChange += [this](const Variant& value, bool&) { told_ += value.TypeName() + " "; };
  row->Item("Name")->AfterValueChange += [this] { told_ += "after "; };
  row->Update();
  EXPECT_EQ(told_, "Null after ");
}

TEST_F(PropertiesUpdateTest, ColumnThatIsNotModifiableIsNullBehindTheInsertAllTheSame) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Id")->SetValue(4);
  row->Item("Note")->SetModifiable(false);
  row->Item("Note")->BeforeValueChange += [this](const Variant&, bool&) { told_ += "asked "; };
  row->Update();
  EXPECT_TRUE(row->Item("Note")->Value().IsNull());
  EXPECT_EQ(told_, "");
}

TEST_F(PropertiesUpdateTest, FailingListenerOfBeforeUpdateWritesNothing) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Item("Name")->SetValue("Eve");
  row->BeforeUpdate += [](bool&) { Fail(RuntimeFailure::DeviceError); };
  Watch(*row);
  ExpectReported(RuntimeFailure::DeviceError, [&] { row->Update(); });
  EXPECT_EQ(told_, "");
  EXPECT_EQ(rows.Database->Writes(), 0);
  EXPECT_TRUE(row->DirtyValues());
}

// Delete

TEST_F(PropertiesUpdateTest, RefusedDeleteLeavesTheRowFlagged) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Delete();
  rows.Database->Refuses = true;
  ExpectReported(RuntimeFailure::DeviceError, [&] { row->Update(); });
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfpendingdelete);
  rows.Database->Refuses = false;
  row->Update();
  EXPECT_EQ(row->StateFlags(), sfdeleted);
}

TEST_F(PropertiesUpdateTest, RefusedInsertLeavesTheRowNewWithItsValues) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Id")->SetValue(4);
  rows.Database->Refuses = true;
  ExpectReported(RuntimeFailure::DeviceError, [&] { row->Update(); });
  EXPECT_EQ(row->StateFlags(), sfNew | sfdirty);
  EXPECT_EQ(row->Item("Id")->Value().AsLong(), 4);
  EXPECT_TRUE(row->Item("Name")->EmptyValue());
}

TEST_F(PropertiesUpdateTest, DeleteFlagsAndTheNextUpdateDeletes) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  Watch(*row);
  row->Delete();
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(rows.Database->Deletes, 0);
  row->Update();
  EXPECT_EQ(rows.Database->Deletes, 1);
  EXPECT_EQ(row->StateFlags(), sfdeleted);
  EXPECT_EQ(told_, "bd ad bu au ");
}

TEST_F(PropertiesUpdateTest, DeletingTwiceAsksOnce) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  Watch(*row);
  row->Delete();
  row->Delete();
  EXPECT_EQ(told_, "bd ad ");
  row->Update();
  told_.clear();
  row->Delete();
  EXPECT_EQ(told_, "");
}

TEST_F(PropertiesUpdateTest, CancelledDeleteFlagsNothing) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->BeforePendingDelete += [](bool& Cancel) { Cancel = true; };
  Watch(*row);
  row->Delete();
  EXPECT_EQ(told_, "bd ");
  EXPECT_EQ(row->StateFlags(), sfpersistent);
}

TEST_F(PropertiesUpdateTest, AfterPendingDeleteFollowsAFailureToo) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->BeforePendingDelete += [&](bool&) { rows.Rows->DeletePersistentProperties(0); };
  Watch(*row);
  ExpectReported(RuntimeFailure::KeyInUse, [&] { row->Delete(); });
  EXPECT_EQ(told_, "bd ad ");
}

TEST_F(PropertiesUpdateTest, FailureOfADeleteIsTheOneRaisedThoughItsListenerFailsToo) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->BeforePendingDelete += [&](bool&) { rows.Rows->DeletePersistentProperties(0); };
  row->AfterPendingDelete += [] { Fail(RuntimeFailure::DivisionByZero); };
  ExpectReported(RuntimeFailure::KeyInUse, [&] { row->Delete(); });
}

TEST_F(PropertiesUpdateTest, FailureOfTheListenerBehindADeleteIsRaisedAndTheRowIsFlagged) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->AfterPendingDelete += [] { Fail(RuntimeFailure::DivisionByZero); };
  ExpectReported(RuntimeFailure::DivisionByZero, [&] { row->Delete(); });
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfpendingdelete);
}

TEST_F(PropertiesUpdateTest, DeleteUndoUpdateWritesNothing) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  row->Delete();
  row->Undo();
  row->Update();
  EXPECT_EQ(rows.Database->Writes(), 0);
  EXPECT_EQ(row->StateFlags(), sfpersistent);
}

TEST_F(PropertiesUpdateTest, DeletedNewRowReachesNoDatabaseAndRefusesAnUpdateBeforeAnyEvent) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Id")->SetValue(4);
  row->Delete();
  EXPECT_EQ(row->StateFlags(), sfdeleted);
  Watch(*row);
  ExpectRaised(errPersistence_Deleted, [&] { row->Update(); }, {.Text = "Identifier: '3'"});
  EXPECT_EQ(told_, "");
  EXPECT_EQ(rows.Database->Writes(), 0);
}

TEST_F(PropertiesUpdateTest, BareDeleteFlagRefusesTheDeleteInTheWordsForUpdating) {
  const SampleRows rows(efDelete);
  const auto row = rows.Row(0);
  row->Delete();
  ExpectRaised(errNotSupported_Update, [&] { row->Update(); }, {.Text = "EditFlags: 'Delete'"});
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfpendingdelete);
}

TEST_F(PropertiesUpdateTest, AnyOtherEditFlagsLetTheDeletePass) {
  for (const auto flags : {efDelete | efUpdate, efAll, efNone}) {
    const ScopedApartment apartment;
    const SampleRows rows(flags);
    const auto row = rows.Row(0);
    row->Delete();
    row->Update();
    EXPECT_EQ(rows.Database->Deletes, 1);
  }
}

// States of a row

TEST_F(PropertiesUpdateTest, ClearedNewRowReadsAsPersistent) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->SetStateFlags(zStateFlags{});
  EXPECT_EQ(row->StateFlags(), sfpersistent);
}

TEST_F(PropertiesUpdateTest, UpdateOfAClearedNewRowIsNoInsert) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->SetStateFlags(zStateFlags{});
  row->Item("Photo")->SetValue("a");
  row->Item("Photo")->SetValue("b");
  row->Update();
  EXPECT_EQ(rows.Database->Inserts, 0);
  EXPECT_EQ(rows.Database->Updates, 1);
}

TEST_F(PropertiesUpdateTest, StateFlagsAreNeverSetOnARow) {
  const SampleRows rows;
  rows.Row(0)->SetStateFlags(sfNew | sfpendingdelete | sfdeleted | sfdirty);
  EXPECT_EQ(rows.Row(0)->StateFlags(), sfpersistent);
}

TEST_F(PropertiesUpdateTest, DeletedIsFinal) {
  const SampleRows rows;
  const auto row = rows.Row(0);
  rows.Rows->FlagDeleted(0);
  row->SetStateFlags(sfpersistent);
  EXPECT_EQ(row->StateFlags(), sfdeleted);
  ExpectRaised(errPersistence_Deleted, [&] { row->Undo(); }, {.Text = "Identifier: '0'"});
}

}  // namespace
}  // namespace velmoria::test
