#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

Variant Bytes(std::initializer_list<Byte> bytes) { return std::span<const Byte>(bytes.begin(), bytes.size()); }

/// The long column "Photo" of SampleRows, which is not read with its page.
class RecordsetLongTest : public testing::Test {
 protected:
  RecordsetLongTest() { Database().Long = Bytes({1, 2, 3}); }

  FakeAgent& Database() { return *rows_.Database; }
  PropertyPtr Photo(std::int32_t row = 0) { return rows_.Row(row)->Item("Photo"); }

  ScopedApartment scope_;
  SampleRows rows_;
};

TEST_F(RecordsetLongTest, ItIsReadWhenItIsFirstAskedForAndThenKept) {
  EXPECT_EQ(Database().LongReads, 0);
  EXPECT_EQ(Photo()->Value(), Bytes({1, 2, 3}));
  EXPECT_EQ(Photo()->Value(), Bytes({1, 2, 3}));
  EXPECT_EQ(Database().LongReads, 1);
  EXPECT_EQ(Photo(1)->Value(), Bytes({1, 2, 3}));
  EXPECT_EQ(Database().LongReads, 2);
}

TEST_F(RecordsetLongTest, ReadingItIsNoChange) {
  Photo()->Value();
  EXPECT_EQ(rows_.Rows->StateFlags(0), sfpersistent);
}

TEST_F(RecordsetLongTest, OtherColumnsAskForNothing) {
  const auto row = rows_.Row(0);
  row->Item("Name")->Value();
  row->Item("Name")->SetValue("Eve");
  EXPECT_EQ(Database().LongReads, 0);
}

TEST_F(RecordsetLongTest, ANewValueOverAnUnreadOneIsAChangeAndKeepsTheOldOne) {
  Photo()->SetValue(Bytes({9}));
  EXPECT_EQ(Photo()->Value(), Bytes({9}));
  EXPECT_EQ(Photo()->OldValue(), Bytes({1, 2, 3}));
  EXPECT_TRUE(Photo()->DirtyValue());
  EXPECT_EQ(Database().LongReads, 1);
}

TEST_F(RecordsetLongTest, ASetValueIsNotReadOver) {
  Photo()->SetValue(Variant::Null());
  EXPECT_TRUE(Photo()->Value().IsNull());
  EXPECT_EQ(Database().LongReads, 1);
}

TEST_F(RecordsetLongTest, AnEmptyOneReadsEmptyAndAChangeOfItIsNotDirty) {
  Database().Long = Variant();
  EXPECT_TRUE(Photo()->Value().IsEmpty());
  Photo()->SetValue(Bytes({9}));
  EXPECT_FALSE(Photo()->DirtyValue());
}

TEST_F(RecordsetLongTest, AFailedReadIsTriedAgain) {
  Database().FailsReads = true;
  EXPECT_TRUE(Thrown([&] { Photo()->Value(); }));
  Database().FailsReads = false;
  EXPECT_EQ(Photo()->Value(), Bytes({1, 2, 3}));
}

TEST_F(RecordsetLongTest, ANewRowHasNothingToRead) {
  const auto photo = rows_.NewRow()->Item("Photo");
  photo->Value();
  photo->SetValue(Bytes({9}));
  EXPECT_EQ(photo->Value(), Bytes({9}));
  EXPECT_EQ(Database().LongReads, 0);
}

TEST_F(RecordsetLongTest, ADeletedRowIsNotAskedForIt) {
  rows_.Rows->FlagDeleted(0);
  ExpectRaised(errPersistence_Deleted, [&] { Photo()->Value(); }, {.Text = "Identifier: '0'"});
  EXPECT_EQ(Database().LongReads, 0);
}

TEST_F(RecordsetLongTest, AMemberAddedBeforeItsDefinitionLeavesItsPlace) {
  rows_.Row(1)->SetupItem({.Name = "Extra"}, {.Before = 1});
  EXPECT_EQ(Photo()->Value(), Bytes({1, 2, 3}));
  Photo()->SetValue(Bytes({9}));
  EXPECT_TRUE(Photo()->DirtyValue());
}

TEST_F(RecordsetLongTest, AMemberRemovedBeforeItsDefinitionLeavesItsPlace) {
  const auto photo = Photo();
  rows_.Columns->Remove("Name");
  EXPECT_EQ(photo->Value(), Bytes({1, 2, 3}));
}

TEST_F(RecordsetLongTest, UndoOfTheRowLetsItBeReadAgain) {
  Photo()->Value();
  const auto row = rows_.Row(0);
  row->Item("Name")->SetValue("Eve");
  rows_.Rows->Undo(0);
  EXPECT_EQ(Photo()->Value(), Bytes({1, 2, 3}));
  EXPECT_EQ(Database().LongReads, 2);
}

}  // namespace

}  // namespace velmoria::test
