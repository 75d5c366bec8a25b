#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// The life of objects that were made without a row behind them.
class CreatingTest : public BrokeringTest {
 protected:
  CreatingTest() { shop_.Design.Order->SetNewActionName("Get"); }
  IBusinessObjectPtr NewOrder(std::int32_t id, const char* name) const {
    const auto order = Framework{}.CreateBusinessObject({.ClassName = "Order"});
    order->FindProperty("Id")->SetValue(id);
    order->FindProperty("Name")->SetValue(name);
    return order;
  }
  std::string Names() { return shop_.File.Column("select Name from orders order by Id"); }
};

TEST_F(CreatingTest, NewObjectIsInsertedByItsUpdate) {
  const auto order = NewOrder(40, "O'Dan");
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
  order->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|O'Dan");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_FALSE(order->Dirty());
  EXPECT_EQ(order->Key(), "40");
}

TEST_F(CreatingTest, InsertedObjectIsFoundByItsKey) {
  NewOrder(40, "Dan")->Update();
  EXPECT_EQ(Value(Order(40), "Name"), Variant("Dan"));
}

TEST_F(CreatingTest, ColumnsNeverSetAreNullOnceInserted) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  EXPECT_TRUE(Value(order, "Total").IsNull());
  EXPECT_EQ(shop_.File.Column("select Total from orders where Id = 40"), "NULL");
}

TEST_F(CreatingTest, SecondObjectNeedsNoDatabase) {
  NewOrder(40, "Dan");
  shop_.File.Run("alter table orders rename to moved");
  EXPECT_EQ(NewOrder(41, "Eve")->StateFlags(), sfNew | sfdirty);
}

TEST_F(CreatingTest, SecondObjectIsInsertedFromTheColumnsThatWereKept) {
  NewOrder(40, "Dan")->Update();
  NewOrder(41, "Eve")->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan|Eve");
}

TEST_F(CreatingTest, ChangeBehindTheInsertIsAnUpdateOfTheSameRow) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  order->FindProperty("Name")->SetValue("Don");
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfdirty);
  order->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Don");
  EXPECT_EQ(order->StateFlags(), sfpersistent);
}

TEST_F(CreatingTest, ChangedKeyFindsTheRowUnderItsOldOne) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  order->FindProperty("Id")->SetValue(50);
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Id from orders where Name = 'Dan'"), "50");
  EXPECT_EQ(order->Key(), "50");
}

TEST_F(CreatingTest, DeletedObjectIsGoneWithTheNextUpdateAndRefusesAnother) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  order->Delete();
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfpendingdelete | sfdirty);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
  order->FindProperty("Name")->SetValue("Don");
  ExpectRaised(errPersistence_Deleted, [&] { order->Update(); }, {.Text = "Identifier: '40'"});
}

TEST_F(CreatingTest, NewObjectDeletedBeforeItsInsertNeverReachesTheDatabase) {
  const auto order = NewOrder(40, "Dan");
  order->Delete();
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
}

TEST_F(CreatingTest, UndoneDeletionWritesNothing) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  order->Delete();
  order->Undo();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  order->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
}

TEST_F(CreatingTest, UndoneChangeTakesTheValueBackAndWritesNothing) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  order->FindProperty("Name")->SetValue("Don");
  order->Undo();
  EXPECT_EQ(Value(order, "Name"), Variant("Dan"));
  order->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
}

TEST_F(CreatingTest, UndoneNewObjectIsADeletedOne) {
  const auto order = NewOrder(40, "Dan");
  order->Undo();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
}

TEST_F(CreatingTest, NewObjectWithoutValuesIsNotInsertedAndStaysNew) {
  const auto order = Framework{}.CreateBusinessObject({.ClassName = "Order"});
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfNew);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
}

TEST_F(CreatingTest, RefusedInsertLeavesTheObjectNewToBeCorrectedAndWrittenAgain) {
  const auto order = NewOrder(2, "Dan");
  ExpectRaised(errPersistence_Insert, [&] { order->Update(); });
  EXPECT_EQ(order->StateFlags(), sfNew | sfdirty);
  order->FindProperty("Id")->SetValue(40);
  order->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
}

TEST_F(CreatingTest, RefusedUpdateAndDeletionLeaveTheObjectAsItIs) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  shop_.File.Run("create trigger guard before update on orders begin select raise(abort, 'no'); end");
  order->FindProperty("Name")->SetValue("Don");
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfdirty);
  shop_.File.Run("create trigger lock before delete on orders begin select raise(abort, 'no'); end");
  order->Delete();
  ExpectRaised(errPersistence_Delete, [&] { order->Update(); });
  EXPECT_TRUE(has(order->StateFlags(), sfpendingdelete));
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
}

TEST_F(CreatingTest, MissingRequiredValueIsFoundOnlyBehindTheWriteAndASecondUpdateInsertsAgain) {
  shop_.File.Run("create table notes (Note varchar(20) not null default 'none', Id integer)");
  shop_.OrderAction("Bare")->Sources()->Item()->SetSourceText("notes");
  const auto note = Framework{}.CreateBusinessObject({.ClassName = "Order", .ActionName = "Bare"});
  note->FindProperty("Id")->SetValue(1);
  ExpectRaised(errValue_Required, [&] { note->Update(); });
  EXPECT_TRUE(has(note->StateFlags(), sfNew));
  EXPECT_TRUE(Thrown([&] { note->Update(); }));
  EXPECT_EQ(shop_.File.Column("select Note from notes"), "none|none");
}

TEST_F(CreatingTest, ActionThatInsertsButDoesNotUpdateRefusesTheSecondWrite) {
  shop_.OrderAction("Get")->SetEditFlags(efInsert);
  const auto order = NewOrder(40, "Dan");
  order->Properties(1)->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
  order->FindProperty("Name")->SetValue("Don");
  ExpectRaised(errNotSupported_Update, [&] { order->Properties(1)->Update(); }, {.Text = "Action: 'Get'"});
}

TEST_F(CreatingTest, UpdateOfTheObjectPassesOverAnActionThatInsertsButDoesNotUpdate) {
  shop_.OrderAction("Get")->SetEditFlags(efInsert);
  NewOrder(40, "Dan")->Update();
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
}

TEST_F(CreatingTest, ObjectUnderAKeyOfSeveralPartsIsInsertedAndThenUpdated) {
  const auto line = Framework{}.CreateBusinessObject({.ClassName = "Line", .ActionName = "Get"});
  line->FindProperty("OrderId")->SetValue(3);
  line->FindProperty("LineNo")->SetValue(1);
  line->FindProperty("Product")->SetValue("Sofa");
  line->Update();
  line->FindProperty("Product")->SetValue("Bed");
  line->Update();
  EXPECT_EQ(shop_.File.Column("select Product from lines order by OrderId, LineNo"), "Lamp|Chair|Rug|Bed");
}

TEST_F(CreatingTest, WithoutMetaDataTheNewObjectIsARowAndIsInsertedToo) {
  shop_.Design.Sales->SetUseMetaData(false);
  const auto order = NewOrder(40, "Dan");
  EXPECT_EQ(order->Properties(1)->Style(), psPersistent);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd|Dan");
}

TEST_F(CreatingTest, NewObjectLoadsOtherPropertiesOnceItIsInserted) {
  const auto order = NewOrder(40, "Dan");
  order->Update();
  shop_.File.Run("insert into details values (40, 'knock')");
  EXPECT_EQ(order->Properties("Detail")->Item("Note")->Value(), Variant("knock"));
}

TEST_F(CreatingTest, RelatedObjectsAreFoundByTheValuesOfTheNewObject) {
  shop_.RelateLines();
  shop_.File.Run("insert into lines values (40, 1, 'Sofa')");
  const auto order = NewOrder(40, "Dan");
  EXPECT_EQ(Value(order->BusinessObjects("Lines")->Item(1), "Product"), Variant("Sofa"));
  EXPECT_EQ(order->BusinessObjects("Lines")->Count(), 1);
}

TEST_F(CreatingTest, CallWithoutNamesThroughTheFrameworkNeverRepeatsForItForgetsTheServer) {
  NewOrder(40, "Dan");
  ExpectReported(RuntimeFailure::ObjectNotSet, [] { Framework{}.CreateBusinessObject({}); });
}

TEST_F(CreatingTest, ListenerMayRefuseTheInsert) {
  const auto order = NewOrder(40, "Dan");
  order->Properties(1)->BeforeUpdate += [](bool& Cancel) { Cancel = true; };
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfNew | sfdirty);
  EXPECT_EQ(Names(), "Ada|Ben|Cyd");
}

}  // namespace
}  // namespace velmoria::test
