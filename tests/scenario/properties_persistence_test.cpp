#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"
#include "tests/support/told_events.h"

namespace velmoria::test {
namespace {

/// One row at a time: what its Update, Delete and Undo raise, and what they write to the table.
class RowPersistenceTest : public BrokeringTest {
 protected:
  RowPersistenceTest() { shop_.NoteWrites(); }

  PropertiesPtr Row(int id) { return Heard(Order(id)); }
  /// A row of the Action "All" that is not in the database.
  PropertiesPtr NewRow() {
    return Heard(Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"})->SetupItem());
  }
  PropertiesPtr Heard(const IBusinessObjectPtr& order) {
    const auto row = order->GetModel()->Properties(1);
    TellEvents(*row, told_);
    apartment_.Messages().Clear();
    return row;
  }
  /// The statement of the last write.
  std::string Statement() {
    const auto logged = apartment_.Messages().Item("15129");
    return logged ? logged->ExtraText() : std::string();
  }

  std::string told_;
};

TEST_F(RowPersistenceTest, UpdateOfACleanRowRaisesNoEventAndSendsNoStatement) {
  Row(1)->Update();
  EXPECT_EQ(told_, "");
  EXPECT_EQ(Statement(), "");
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, UpdateOfARowBackAtItsOldValuesRaisesNoEvent) {
  const auto row = Row(1);
  row->Item("Name")->SetValue("Eve");
  row->Item("Name")->SetValue("Ada");
  row->Update();
  EXPECT_EQ(told_, "");
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, SecondDeleteAsksNobody) {
  const auto row = Row(2);
  row->Delete();
  row->Delete();
  EXPECT_EQ(told_, "bd ad ");
  row->Update();
  row->Delete();
  EXPECT_EQ(told_, "bd ad bu au ");
  EXPECT_EQ(shop_.Writes(), "delete2");
}

TEST_F(RowPersistenceTest, DeleteOnlyFlagsAndTheRowLeavesWithTheUpdate) {
  const auto row = Row(2);
  row->Delete();
  EXPECT_EQ(Statement(), "");
  row->Update();
  EXPECT_EQ(Statement(), "DELETE FROM orders WHERE Id = 2");
  EXPECT_EQ(shop_.File.Column("select Id from orders order by Id"), "1|3");
}

TEST_F(RowPersistenceTest, DeleteUndoUpdateWritesNothing) {
  const auto row = Row(2);
  row->Delete();
  row->Undo();
  row->Update();
  EXPECT_EQ(told_, "bd ad ") << "Undo has no event, and the row is clean again";
  EXPECT_EQ(Statement(), "");
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, DeletedNewRowNeedsNoStatementAndRefusesItsUpdate) {
  const auto row = NewRow();
  row->Item("Id")->SetValue(40);
  row->Delete();
  EXPECT_EQ(row->StateFlags(), sfdeleted);
  ExpectRaised(errPersistence_Deleted, [&] { row->Update(); }, {.Text = "Identifier: '3'", .Count = 1});
  EXPECT_EQ(told_, "bd ad ");
  EXPECT_EQ(Statement(), "");
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, BareDeleteFlagRefusesTheDeleteInTheWordsForUpdating) {
  shop_.OrderAction("Get")->SetEditFlags(efDelete);
  const auto row = Row(2);
  row->Delete();
  ExpectRaised(errNotSupported_Update, [&] { row->Update(); }, {.Text = "Action: 'Get'  EditFlags: 'Delete'"});
  EXPECT_EQ(told_, "bd ad bu ");
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, BesideTheFlagOfUpdatingTheDeletePasses) {
  shop_.OrderAction("Get")->SetEditFlags(efDelete | efUpdate);
  const auto row = Row(2);
  row->Delete();
  row->Update();
  EXPECT_EQ(row->StateFlags(), sfdeleted);
  EXPECT_EQ(shop_.Writes(), "delete2");
}

TEST_F(RowPersistenceTest, WithoutAnyFlagTheDeletePassesToo) {
  shop_.OrderAction("Get")->SetEditFlags(efNone);
  const auto row = Row(2);
  row->Delete();
  row->Update();
  EXPECT_EQ(shop_.Writes(), "delete2");
}

TEST_F(RowPersistenceTest, ChangedRowThatIsDeletedIsNotUpdatedFirst) {
  const auto row = Row(2);
  row->Item("Name")->SetValue("Eve");
  row->Delete();
  row->Update();
  EXPECT_EQ(shop_.Writes(), "delete2");
}

TEST_F(RowPersistenceTest, ListenersMayStopTheUpdateAndTheDeleteAndNothingElseIsHeard) {
  const auto row = Row(2);
  row->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  row->BeforePendingDelete += [](bool& Cancel) { Cancel = true; };
  row->Item("Name")->SetValue("Eve");
  row->Update();
  row->Delete();
  EXPECT_EQ(told_, "bu bd ");
  EXPECT_EQ(row->StateFlags(), sfpersistent | sfdirty);
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, NewRowWithoutValuesIsHeardButNotInserted) {
  const auto row = NewRow();
  row->Update();
  EXPECT_EQ(told_, "bu au ");
  EXPECT_EQ(row->StateFlags(), sfNew);
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(RowPersistenceTest, InsertedRowReadsNullWhereNothingWasSetAndIsUpdatedFromThenOn) {
  const auto row = NewRow();
  row->Item("Id")->SetValue(40);
  row->Update();
  EXPECT_EQ(row->StateFlags(), sfpersistent);
  EXPECT_TRUE(row->Item("Name")->Value().IsNull());
  EXPECT_FALSE(row->DirtyValues());
  row->Item("Name")->SetValue("Dan");
  row->Update();
  EXPECT_EQ(shop_.Writes(), "insert40|update40");
}

TEST_F(RowPersistenceTest, IdentityFollowsTheKeyThatIsWritten) {
  const auto row = Row(2);
  const auto identifier = row->Identifier();
  row->Item("Id")->SetValue(20);
  EXPECT_EQ(identifier->Key(), "20");
  EXPECT_TRUE(identifier->Dirty());
  row->Update();
  EXPECT_FALSE(identifier->Dirty());
  EXPECT_EQ(shop_.File.Column("select Id from orders where Name = 'Ben'"), "20");
}

TEST_F(RowPersistenceTest, FailureEndsBetweenTheTwoEventsAndTheNextUpdateWrites) {
  shop_.File.Run("create trigger guard before update on orders begin select raise(abort, 'guarded'); end");
  const auto row = Row(2);
  row->Item("Name")->SetValue("Eve");
  ExpectRaised(errPersistence_Update, [&] { row->Update(); });
  EXPECT_EQ(told_, "bu ");
  EXPECT_EQ(row->Item("Name")->OldValue(), Variant("Ben"));
  shop_.File.Run("drop trigger guard");
  row->Update();
  EXPECT_EQ(told_, "bu bu au ");
  EXPECT_EQ(shop_.Writes(), "update2");
}

}  // namespace
}  // namespace velmoria::test
