#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"
#include "tests/support/told_events.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {
namespace {

/// What Update, Delete and Undo leave in a database, statement by statement.
class PersistenceCycleTest : public BrokeringTest {
 protected:
  std::string Stored(const std::string& column, const std::string& table = "orders") {
    return shop_.File.Column("select " + column + " from " + table + " order by Id");
  }
  /// From here on the database refuses to write the row of this Id.
  void Guard(const std::string& table, const std::string& work, int id) {
    const std::string row = work == "insert" ? "new" : "old";
    shop_.File.Run("create trigger guard before " + work + " on " + table + " when " + row +
                   ".Id = " + std::to_string(id) + " begin select raise(abort, 'guarded'); end");
  }
  void Unguard() { shop_.File.Run("drop trigger guard"); }
  /// A new order in the collection of all.
  IBusinessObjectPtr NewOrder(int id) {
    const auto order = orders_->SetupItem();
    order->FindProperty("Id")->SetValue(id);
    return order;
  }

  IBusinessObjectsPtr orders_ = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
};

TEST_F(PersistenceCycleTest, RefusedInsertIsCorrectedAndWrittenOnce) {
  const auto order = NewOrder(2);
  ExpectRaised(errPersistence_Insert, [&] { order->Update(); });
  EXPECT_EQ(order->StateFlags(), sfNew | sfdirty);
  order->FindProperty("Id")->SetValue(20);
  order->Update();
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(Stored("Id"), "1|2|3|20");
}

TEST_F(PersistenceCycleTest, RefusedUpdateIsCorrectedAndWritten) {
  Guard("orders", "update", 2);
  const auto order = Order(2);
  order->FindProperty("Name")->SetValue("Eve");
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_EQ(order->FindProperty("Name")->OldValue(), Variant("Ben"));
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfdirty);
  Unguard();
  order->Update();
  EXPECT_EQ(Stored("Name"), "Ada|Eve|Cyd");
}

TEST_F(PersistenceCycleTest, RefusedDeleteStaysFlaggedAndCanBeUndone) {
  Guard("orders", "delete", 2);
  const auto order = Order(2);
  order->Delete();
  ExpectRaised(errPersistence_Delete, [&] { order->Update(); });
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfpendingdelete);
  order->Undo();
  Unguard();
  order->Update();
  EXPECT_EQ(Stored("Id"), "1|2|3");
}

TEST_F(PersistenceCycleTest, NewRowWithoutAValueIsNotInsertedAndStaysNew) {
  const auto order = orders_->SetupItem();
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfNew);
  order->FindProperty("Id")->SetValue(4);
  order->Update();
  EXPECT_EQ(Stored("Id"), "1|2|3|4");
}

TEST_F(PersistenceCycleTest, NewRowGivenUpReachesNoDatabase) {
  const auto undone = NewOrder(4);
  const auto deleted = NewOrder(5);
  undone->Undo();
  deleted->Delete();
  ExpectRaised(errPersistence_Deleted, [&] { undone->GetModel()->Properties(1)->Update(); }, {.Text = "'3'"});
  ExpectRaised(errPersistence_Deleted, [&] { deleted->GetModel()->Properties(1)->Update(); }, {.Text = "'4'"});
  EXPECT_EQ(Stored("Id"), "1|2|3");
}

TEST_F(PersistenceCycleTest, RowWhoseNewnessIsTakenAwayIsUpdatedAndThatMeetsNoRow) {
  const auto order = NewOrder(4)->GetModel()->Properties(1);
  order->Item("Name")->SetValue("Dan");
  order->SetStateFlags(order->StateFlags() & ~sfNew);
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  order->Item("Name")->SetValue("Eve");
  order->Update();
  EXPECT_TRUE(apartment_.Messages().Item("15129")->ExtraText().starts_with("UPDATE orders SET "));
  EXPECT_EQ(Stored("Id"), "1|2|3");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
}

// An object of two collections

TEST_F(PersistenceCycleTest, CollectionBehindTheOneThatFailsIsNotWrittenAndTheOneAheadStaysWritten) {
  Guard("details", "update", 1);
  const auto order = Order(1);
  const auto detail = order->Properties("Detail");
  order->FindProperty("Name")->SetValue("Ann");
  detail->Item("Note")->SetValue("knock");
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_EQ(Stored("Name"), "Ann|Ben|Cyd");
  EXPECT_EQ(order->Properties(1)->StateFlags(), sfpersistent);
  EXPECT_EQ(detail->StateFlags(), sfpersistent | sfdirty);
}

TEST_F(PersistenceCycleTest, SecondUpdateWritesWhatTheFirstLeft) {
  Guard("details", "update", 1);
  const auto order = Order(1);
  order->FindProperty("Name")->SetValue("Ann");
  order->Properties("Detail")->Item("Note")->SetValue("knock");
  EXPECT_TRUE(Thrown([&] { order->Update(); }));
  Unguard();
  shop_.File.Run("update orders set Name = 'by another hand' where Id = 1");
  order->Update();
  EXPECT_EQ(Stored("Name"), "by another hand|Ben|Cyd");
  EXPECT_EQ(Stored("Note", "details"), "knock|fragile|heavy");
}

TEST_F(PersistenceCycleTest, DeleteThatFailsHalfWayGoesOnWithTheNextUpdate) {
  Guard("details", "delete", 1);
  const auto order = Order(1);
  const auto detail = order->Properties("Detail");
  order->Delete();
  ExpectRaised(errPersistence_Delete, [&] { order->Update(); });
  EXPECT_EQ(Stored("Id"), "2|3");
  EXPECT_EQ(detail->StateFlags(), sfpersistent | sfpendingdelete);
  Unguard();
  order->Update();
  EXPECT_EQ(Stored("Note", "details"), "fragile|heavy");
  EXPECT_EQ(order->StateFlags(), sfdeleted);
}

TEST_F(PersistenceCycleTest, UndoOfAnObjectTakesBothDeletionsBack) {
  const auto order = Order(1);
  order->Properties("Detail");
  order->Delete();
  order->Undo();
  order->Update();
  EXPECT_EQ(Stored("Id"), "1|2|3");
  EXPECT_EQ(Stored("count(*)", "details"), "3");
}

TEST_F(PersistenceCycleTest, UndoStopsAtADeletedCollection) {
  const auto order = Order(1);
  const auto detail = order->Properties("Detail");
  order->Properties(1)->Delete();
  order->Update();
  detail->Delete();
  ExpectRaised(errPersistence_Deleted, [&] { order->Undo(); }, {.Text = "Identifier: '0'"});
  EXPECT_EQ(detail->StateFlags(), sfpersistent | sfpendingdelete);
}

// A collection without a row

class FreePersistenceCycleTest : public PersistenceCycleTest {
 protected:
  /// An order that finds its way to the table by its Identifier.
  PropertiesPtr FreeOrder(int id, const char* name) const {
    auto columns = Make<PropertiesData>();
    columns->SetupItem(psCached, Column("Id", id, dtLongInteger));
    columns->SetupItem(psCached, Column("Name", name, dtString));
    Parents parents;
    parents.Action = shop_.OrderAction("Get")->Data();
    auto order = Make<Properties>();
    order->Bind({.Style = psCached, .PropertiesData = columns, .Parents = parents});
    order->SetIdentifier(shop_.Design.Order->CreateIdentifier(order));
    return order;
  }
  static PropertyFields Column(const char* name, const Variant& value, zDataTypes dataType) {
    return {.Name = name,
            .Value = value,
            .DataType = dataType,
            .SourceName = name,
            .SourceColumn = name,
            .SourceTable = "orders"};
  }
};

TEST_F(FreePersistenceCycleTest, LivesFromInsertOverUpdateToDelete) {
  const auto order = FreeOrder(7, "Fay");
  EXPECT_EQ(order->StateFlags(), sfnonpersistent | sfNew | sfdirty);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(Stored("Name"), "Ada|Ben|Cyd|Fay");

  order->Item("Name")->SetValue("Gus");
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(Stored("Name"), "Ada|Ben|Cyd|Gus");

  order->Delete();
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfpendingdelete | sfdirty);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(Stored("Name"), "Ada|Ben|Cyd");
  ExpectRaised(errPersistence_Deleted, [&] { order->Update(); }, {.Text = "Identifier: '7'"});
}

TEST_F(FreePersistenceCycleTest, UpdateOfACleanOneRaisesBothEventsAndWritesNothing) {
  const auto order = FreeOrder(7, "Fay");
  order->Update();
  shop_.NoteWrites();
  std::string told;
  TellEvents(*order, told);
  order->Update();
  EXPECT_EQ(told, "bu au ");
  EXPECT_EQ(shop_.Writes(), "");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
}

TEST_F(FreePersistenceCycleTest, NewOneThatIsDeletedIsGivenUpByItsUpdateWithoutAStatement) {
  shop_.NoteWrites();
  const auto order = FreeOrder(1, "Fay");
  std::string told;
  TellEvents(*order, told);
  order->Delete();
  EXPECT_EQ(order->StateFlags(), sfnonpersistent | sfNew | sfpendingdelete | sfdirty);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(told, "bd ad bu au ");
  EXPECT_EQ(shop_.Writes(), "");
}

TEST_F(FreePersistenceCycleTest, RefusedUpdateAndDeletionLeaveTheMembersAsTheyAre) {
  Guard("orders", "update", 1);
  const auto order = FreeOrder(1, "Ada");
  order->SetStateFlags(sfpersistent);
  order->ClearDirty();
  order->Item("Name")->SetValue("Fay");
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfdirty);
  Unguard();
  Guard("orders", "delete", 1);
  order->Delete();
  ExpectRaised(errPersistence_Delete, [&] { order->Update(); });
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfpendingdelete | sfdirty);
  EXPECT_EQ(Stored("Name"), "Ada|Ben|Cyd");
}

TEST_F(FreePersistenceCycleTest, AfterTheSaveEachMemberIsCleanByItsValueAndStampedAllTheSame) {
  const auto order = FreeOrder(7, "Fay");
  order->Update();
  for (const auto& member : *order) {
    EXPECT_EQ(member->StateFlags(), sfpersistent);
    EXPECT_FALSE(member->DirtyValue());
    EXPECT_TRUE(member->Dirty());
  }
}

TEST_F(FreePersistenceCycleTest, UndoEndsPersistentOrDeletedFromNew) {
  const auto order = FreeOrder(7, "Fay");
  order->Update();
  order->Delete();
  order->Undo();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(Stored("Id"), "1|2|3|7");
  const auto fresh = FreeOrder(8, "Gus");
  fresh->Undo();
  EXPECT_EQ(fresh->StateFlags(), sfdeleted);
}

TEST_F(FreePersistenceCycleTest, RefusedInsertLeavesItNewToBeCorrected) {
  const auto order = FreeOrder(2, "Fay");
  ExpectRaised(errPersistence_Insert, [&] { order->Update(); });
  EXPECT_TRUE(has(order->StateFlags(), sfNew));
  order->Item("Id")->SetValue(7);
  order->Update();
  EXPECT_EQ(Stored("Id"), "1|2|3|7");
}

TEST_F(FreePersistenceCycleTest, StampOfTheSaveLetsAContextVisitItAgainWithoutAWrite) {
  const auto order = FreeOrder(7, "Fay");
  const auto context = Framework{}.CreatePropertyContext();
  context->Add(order);
  int visits = 0;
  context->AfterItemUpdate += [&](Properties&) { ++visits; };
  context->Update();
  shop_.File.Run("update orders set Name = 'by another hand' where Id = 7");
  context->Update();
  EXPECT_EQ(visits, 2);
  EXPECT_EQ(Stored("Name"), "Ada|Ben|Cyd|by another hand");
}

}  // namespace
}  // namespace velmoria::test
