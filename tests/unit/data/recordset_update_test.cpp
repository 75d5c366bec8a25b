#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class RecordsetUpdateTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(RecordsetUpdateTest, SavesChangedThenNewThenPendingRows) {
  const SampleRows rows;
  rows.Rows->DeletePersistentProperties(0);
  const auto added = rows.NewRow()->Row();
  rows.Rows->SetValue(2, "Name", "Eve");
  rows.Rows->SetValue(added, "Id", 4);
  rows.Rows->SetValue(1, "Name", "Fay");
  rows.Rows->Update();
  EXPECT_EQ(rows.Database->WrittenRows, (std::vector<std::int32_t>{2, added, 1, 0}));
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfdeleted);
  EXPECT_EQ(rows.Rows->StateFlags(added), sfpersistent);
}

TEST_F(RecordsetUpdateTest, NewRowsWithoutValuesStayNew) {
  const SampleRows rows;
  rows.NewRow();
  rows.NewRow();
  rows.Rows->Update();
  EXPECT_EQ(rows.Database->Writes(), 0);
  EXPECT_EQ(rows.Rows->StateFlags(-1), sfNew);
}

TEST_F(RecordsetUpdateTest, DeletedRowsAreNotSavedAgain) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->DeletePersistentProperties(0);
  rows.Rows->Update();
  rows.Rows->Update();
  EXPECT_EQ(rows.Database->Deletes, 1);
  EXPECT_EQ(rows.Database->Writes(), 1);
}

TEST_F(RecordsetUpdateTest, UntouchedPageWritesNothing) {
  const SampleRows rows;
  rows.Rows->Update();
  EXPECT_EQ(rows.Database->Writes(), 0);
}

TEST_F(RecordsetUpdateTest, FailureEndsTheWalkAndKeepsWhatIsNotWritten) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->SetValue(1, "Name", "Fay");
  rows.Database->Refuses = true;
  ExpectReported(RuntimeFailure::DeviceError, [&] { rows.Rows->Update(); });
  rows.Database->Refuses = false;
  rows.Rows->Update();
  EXPECT_EQ(rows.Database->WrittenRows, (std::vector<std::int32_t>{0, 1}));
}

TEST_F(RecordsetUpdateTest, ColumnBackAtItsOldValueIsForgottenWithoutAWrite) {
  const SampleRows rows;
  rows.Rows->SetValue(0, "Name", "Eve");
  rows.Rows->SetValue(0, "Name", "Ada");
  rows.Rows->UpdatePersistentProperties(rows.Row(0));
  EXPECT_EQ(rows.Database->Writes(), 0);
  EXPECT_TRUE(rows.Rows->Dirty(0) == Variant(false));
}

TEST_F(RecordsetUpdateTest, EmptyValuesOfAnInsertedRowTurnIntoNullEvenWhenReadOnly) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  row->Item("Amount")->SetModifiable(false);
  row->Item("Id")->SetValue(4);
  rows.Rows->UpdatePersistentProperties(row);
  EXPECT_TRUE(row->Item("Amount")->Value().IsNull());
}

TEST_F(RecordsetUpdateTest, PendingRowsAreDeletedThroughTheDatabase) {
  const SampleRows rows;
  rows.Rows->DeletePersistentProperties(1);
  rows.Rows->UpdatePersistentProperties(rows.Row(1));
  EXPECT_EQ(rows.Database->Deletes, 1);
  EXPECT_EQ(rows.Rows->StateFlags(1), sfdeleted);
}

TEST_F(RecordsetUpdateTest, DeletingADeletedRowDoesNothing) {
  const SampleRows rows;
  rows.Rows->FlagDeleted(1);
  rows.Rows->DeletePersistentProperties(1);
  EXPECT_EQ(rows.Rows->StateFlags(1), sfdeleted);
}

TEST_F(RecordsetUpdateTest, CounterGoesToTheColumnOfItsSourceKeyFirstAndOfItsNameElse) {
  const SampleRows rows;
  rows.Rows->RefreshCounterFields({{"Name", "orders.Id", 41}}, 0);
  EXPECT_EQ(rows.Rows->Values(0, rows.Column("Id")).AsLong(), 41);
  rows.Rows->RefreshCounterFields({{"Id", "", 42}}, 0);
  EXPECT_EQ(rows.Rows->Values(0, rows.Column("Id")).AsLong(), 42);
  EXPECT_FALSE(rows.Rows->IsDirty(0));
}

TEST_F(RecordsetUpdateTest, CounterOfAnUnknownColumnIsRefused) {
  const SampleRows rows;
  ExpectRaised(errItem_Property, [&] { rows.Rows->RefreshCounterFields({{"Nope", "orders.Nope", 1}}, 0); },
               {.Text = "Index: 'Nope'  SourceName: ''  SourceKey: 'orders.Nope'"});
}

}  // namespace
}  // namespace velmoria::test
