#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_rows.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class RecordsetTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

TEST_F(RecordsetTest, RowsReadAsFetched) {
  const SampleRows rows;
  EXPECT_EQ(rows.Rows->Count(), 3);
  EXPECT_TRUE(rows.Rows->Values(0, rows.Column("Id")) == Variant(1));
  EXPECT_EQ(rows.Rows->Values(1, rows.Column("Name")).AsText(), "Ben");
  EXPECT_TRUE(rows.Rows->Values(2, rows.Column("Placed")).IsNull());
  EXPECT_TRUE(rows.Rows->Values(0, rows.Column("Photo")).IsEmpty());
}

TEST_F(RecordsetTest, EmptyResultHasNoRows) {
  const SampleRows rows(efAll, {}, true);
  EXPECT_EQ(rows.Rows->Count(), 0);
  ExpectRaised(errPersistence_Row, [&] { rows.Rows->GetPersistentProperties(0, ""); }, {.Text = "Row: 0  Count: 0"});
}

TEST_F(RecordsetTest, RowOutsideThePageIsRefused) {
  const SampleRows rows;
  ExpectRaised(errPersistence_Row, [&] { rows.Rows->GetPersistentProperties(3, ""); }, {.Text = "Row: 3  Count: 3"});
  ExpectRaised(errPersistence_Row, [&] { rows.Rows->GetPersistentProperties(-1, ""); }, {.Text = "Row: -1"});
}

TEST_F(RecordsetTest, PropertiesOfARowAreAViewOnIt) {
  const SampleRows rows;
  const auto row = rows.Rows->GetPersistentProperties(1, "Key");
  EXPECT_EQ(row->Style(), psPersistent);
  EXPECT_EQ(row->Name(), "Key");
  EXPECT_EQ(row->Row(), 1);
  EXPECT_EQ(row->Recordset(), rows.Rows);
  row->Item("Name")->SetValue("Eve");
  EXPECT_EQ(rows.Row(1)->Item("Name")->Value().AsText(), "Eve");
}

TEST_F(RecordsetTest, NewRowIsAppendedToTheLastPage) {
  const SampleRows rows;
  const auto row = rows.NewRow();
  EXPECT_EQ(row->Row(), 3);
  EXPECT_EQ(rows.Rows->Count(), 4);
  for (const auto& item : *row) EXPECT_TRUE(item->EmptyValue());
}

TEST_F(RecordsetTest, NewRowOfAnEmptyResultIsItsFirst) {
  const SampleRows rows(efAll, {}, true);
  EXPECT_EQ(rows.NewRow()->Row(), 0);
  EXPECT_EQ(rows.NewRow()->Row(), 1);
}

TEST_F(RecordsetTest, NewRowOnAPageWithMoreToComeIsRefused) {
  const SampleRows rows(efAll, 4);
  ExpectRaised(errBusinessObjects_Buffer, [&] { rows.NewRow(); }, {.Text = "ObjectBuffer: 10."});
  EXPECT_EQ(rows.Rows->Count(), 3);
}

TEST_F(RecordsetTest, VirtualNumbersAreThoseGivenAndTheVirtualCountIsTheAgents) {
  const SampleRows rows;
  EXPECT_EQ(rows.Rows->VirtualFirstNumber(), -1);
  EXPECT_EQ(rows.Rows->VirtualLastNumber(), 0);
  rows.Database->TotalRows = 30;
  EXPECT_EQ(rows.Rows->VirtualCount(), 30);
  auto page = Make<Recordset>();
  page->Initialize(rows.Agent, {.Columns = rows.Columns, .VirtualFirstNumber = 9});
  EXPECT_EQ(page->VirtualFirstNumber(), 9);
  EXPECT_EQ(page->VirtualLastNumber(), 9);
}

TEST_F(RecordsetTest, BookmarksAreKeptAsGiven) {
  const SampleRows rows;
  auto page = Make<Recordset>();
  page->Initialize(
      rows.Agent,
      {.Columns = rows.Columns, .PrevBookmark = 1, .FirstBookmark = 2, .LastBookmark = 3, .NextBookmark = 4});
  EXPECT_EQ(page->PrevBookmark().AsLong(), 1);
  EXPECT_EQ(page->FirstBookmark().AsLong(), 2);
  EXPECT_EQ(page->LastBookmark().AsLong(), 3);
  EXPECT_EQ(page->NextBookmark().AsLong(), 4);
}

TEST_F(RecordsetTest, EngineIsTheConnectionsOrElseTheSources) {
  const SampleRows rows;
  EXPECT_EQ(rows.Rows->Engine(), engODBC);
  auto page = Make<Recordset>();
  page->Initialize(rows.Agent, {.Columns = rows.Columns, .Engine = engSQLServer});
  EXPECT_EQ(page->Engine(), engSQLServer);
}

TEST_F(RecordsetTest, StatisticsAreThoseGivenOrMadeOnce) {
  const SampleRows rows;
  EXPECT_EQ(rows.Rows->Statistics(), rows.Rows->Statistics());
  const auto given = Make<Statistics>();
  auto page = Make<Recordset>();
  page->Initialize(rows.Agent, {.Columns = rows.Columns, .Statistics = given});
  EXPECT_EQ(page->Statistics(), given);
}

TEST_F(RecordsetTest, DetailsAreTheAgents) { EXPECT_EQ(SampleRows().Rows->Details(), "Fake agent"); }

TEST_F(RecordsetTest, DeletedRowRefusesItsValues) {
  const SampleRows rows;
  rows.Rows->FlagDeleted(2);
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->Values(2, rows.Column("Id")); }, {.Text = "Identifier: '2'"});
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->OldValues(2, "Id"); });
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->SetValue(2, "Id", 1); });
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->Undo(2); });
  ExpectRaised(errPersistence_Deleted, [&] { rows.Rows->Undo(2, "Id"); });
}

TEST_F(RecordsetTest, RoutineNameTellsWhatWasAskedOfADeletedRow) {
  const std::pair<const char*, void (*)(const SampleRows&)> asked[] = {
      {"Values", [](const SampleRows& rows) { rows.Rows->Values(2, rows.Column("Id")); }},
      {"OldValues", [](const SampleRows& rows) { rows.Rows->OldValues(2, "Id"); }},
      {"SetValue", [](const SampleRows& rows) { rows.Rows->SetValue(2, "Id", 1); }},
      {"Undo", [](const SampleRows& rows) { rows.Rows->Undo(2); }},
  };
  const SampleRows rows;
  rows.Rows->FlagDeleted(2);
  for (const auto& [routine, ask] : asked) {
    EXPECT_TRUE(Thrown([&, use = ask] { use(rows); }));
    EXPECT_EQ(apartment_.Messages().Item("15113")->RoutineName(), routine);
    apartment_.Messages().Clear();
  }
}

TEST_F(RecordsetTest, DeletedRowKeepsItsPlace) {
  const SampleRows rows;
  rows.Rows->FlagDeleted(1);
  EXPECT_EQ(rows.Rows->Count(), 3);
  EXPECT_EQ(rows.Rows->Values(2, rows.Column("Name")).AsText(), "Cyd");
}

TEST_F(RecordsetTest, RowDeletedTwiceIsAFailureOfTheKey) {
  const SampleRows rows;
  rows.Rows->FlagDeleted(1);
  ExpectReported(RuntimeFailure::KeyInUse, [&] { rows.Rows->FlagDeleted(1); });
}

TEST_F(RecordsetTest, UnknownColumnIsRefused) {
  const SampleRows rows;
  ExpectRaised(errItem_Property, [&] { rows.Rows->SetValue(0, "Nope", 1); }, {.Text = "Index: 'Nope'"});
  rows.Rows->SetValue(0, "Name", "Eve");
  ExpectRaised(errItem_Property, [&] { rows.Rows->Dirty(0, 8); }, {.Text = "Index: 8"});
}

TEST_F(RecordsetTest, ColumnThatJoinedTheDefinitionsLaterHasNoValueInTheRows) {
  const SampleRows rows;
  rows.Columns->SetupItem(psPersistent, {.Name = "Late"});
  ExpectReported(RuntimeFailure::SubscriptOutOfRange, [&] { rows.Rows->Values(0, rows.Column("Late")); });
}

}  // namespace
}  // namespace velmoria::test
