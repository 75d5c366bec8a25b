#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// An order and its detail, each a collection of its own in one context. Details have the columns Id and Note.
class PropertyContextOverRowsTest : public BrokeringTest {
 protected:
  PropertyContextOverRowsTest() {
    shop_.File.Run("insert into items values (11, 'Lamp')");
    context_->LoadProperties({.ActionName = "Detail"});
  }
  /// The row of an item, Code and Name.
  static PropertiesPtr Item() {
    return Framework{}.GetBusinessObject({.ClassName = "Item", .KeyValue1 = 11})->Properties(1);
  }
  void Listen() {
    context_->BeforeUpdate += [this](bool&) { heard_ += "< "; };
    context_->BeforeItemUpdate += [this](Properties& item, bool&) { heard_ += item.Name() + " "; };
    context_->AfterItemUpdate += [this](Properties& item) { heard_ += "/" + item.Name() + " "; };
    context_->AfterUpdate += [this] { heard_ += ">"; };
    context_->BeforePendingDelete += [this](bool&) { heard_ += "[ "; };
    context_->BeforeItemPendingDelete += [this](Properties& item, bool&) { heard_ += item.Name() + " "; };
    context_->AfterItemPendingDelete += [this](Properties& item) { heard_ += "/" + item.Name() + " "; };
    context_->AfterPendingDelete += [this] { heard_ += "]"; };
  }
  void ChangeBoth() const {
    context_->Item("Get")->Item("Name")->SetValue("Ann");
    context_->Item("Detail")->Item("Note")->SetValue("knock");
  }
  std::string Orders() { return shop_.File.Column("select Name from orders order by Id"); }
  std::string Notes() { return shop_.File.Column("select Note from details order by Id, Note"); }

  PropertyContextPtr context_ = Order(1)->GetModel()->PropertyContext();
  std::string heard_;
};

TEST_F(PropertyContextOverRowsTest, SecondLoadIsTheSameCollectionAndReadsNothing) {
  const auto detail = context_->Item("Detail");
  apartment_.Messages().Clear();
  EXPECT_EQ(context_->LoadProperties({.ActionName = "Detail"}), detail);
  EXPECT_EQ(context_->LoadProperties({.ActionName = "detail"}), detail);
  EXPECT_EQ(apartment_.Messages().Count(), 0) << "a statement would have been logged";
  EXPECT_EQ(context_->Count(), 2);
}

TEST_F(PropertyContextOverRowsTest, TransientContextOfRowsLoadsAndGetsNothing) {
  const auto transient = Framework{}.CreatePropertyContext();
  transient->Add(context_->Item(1));
  apartment_.Messages().Clear();
  ExpectRaised(errProperties_Load, [&] { transient->LoadProperties({.ActionName = "Detail"}); }, {.Count = 1});
  ExpectRaised(errPropertyContext_Transient, [&] { transient->GetProperties("Detail"); }, {.Count = 1});
}

TEST_F(PropertyContextOverRowsTest, ThirdMemberOfTwoCollectionsOfTwoIsTheFirstOfTheSecond) {
  const auto context = Framework{}.CreatePropertyContext();
  context->Add(context_->Item("Detail"));
  context->Add(Item());
  EXPECT_EQ(context->FindProperty(3), context->Item(2)->Item(1));
  EXPECT_EQ(context->FindProperty(3)->Name(), "Code");
  ExpectRaised(errItem_Property, [&] { context->FindProperty(5); }, {.Text = "Index: 5 "});
}

TEST_F(PropertyContextOverRowsTest, NameInBothCollectionsIsThatOfTheFirst) {
  EXPECT_EQ(context_->FindProperty("Id"), context_->Item("Get")->Item("Id"));
  context_->Remove("Get");
  EXPECT_EQ(context_->FindProperty("Id"), context_->Item("Detail")->Item("Id"));
}

TEST_F(PropertyContextOverRowsTest, ListenerOfPropertyNotFoundSuppliesTheMemberOfAnotherRow) {
  const auto item = Item();
  context_->PropertyNotFound += [&](const PropertyKey& key, PropertyPtr& Property) {
    if (key.Index.AsText() == "Code") Property = item->Item("Code");
  };
  apartment_.Messages().Clear();
  EXPECT_EQ(context_->FindProperty("Code")->Value(), Variant(11));
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(PropertyContextOverRowsTest, IdentifierStaysThatOfTheFirstCollectionWhateverJoinsOrLeaves) {
  const auto identifier = context_->Identifier();
  context_->Add(context_->GetProperties("Detail", {}, "Second"), {.Before = 1});
  context_->Remove("Detail");
  EXPECT_EQ(context_->Identifier(), identifier);
  EXPECT_EQ(identifier->ClassName() + identifier->Key(), "Order1");
}

// Update, Delete and Undo of all

TEST_F(PropertyContextOverRowsTest, ChangedCollectionsAreWrittenInOrder) {
  Listen();
  ChangeBoth();
  context_->Update();
  EXPECT_EQ(heard_, "< Get /Get Detail /Detail >");
  EXPECT_EQ(Orders(), "Ann|Ben|Cyd");
  EXPECT_EQ(Notes(), "knock|fragile|heavy");
  EXPECT_FALSE(context_->Dirty());
}

TEST_F(PropertyContextOverRowsTest, CancelledCollectionStaysChangedAndTheWalkGoesOn) {
  Listen();
  ChangeBoth();
  context_->BeforeItemUpdate += [](Properties& item, bool& Cancel) { Cancel = item.Name() == "Get"; };
  context_->Update();
  EXPECT_EQ(heard_, "< Get Detail /Detail >");
  EXPECT_EQ(Orders(), "Ada|Ben|Cyd");
  EXPECT_EQ(context_->StateFlags(), sfpersistent | sfdirty);
}

TEST_F(PropertyContextOverRowsTest, FailureOfTheFirstLeavesTheSecondUnvisited) {
  Listen();
  ChangeBoth();
  shop_.File.Run("create trigger guard before update on orders begin select raise(abort, 'guarded'); end");
  ExpectRaised(errPersistence_Update, [&] { context_->Update(); });
  EXPECT_EQ(heard_, "< Get ");
  EXPECT_EQ(Notes(), "ring twice|fragile|heavy");
  EXPECT_TRUE(context_->Item("Get")->DirtyValues());
  EXPECT_TRUE(context_->Item("Detail")->DirtyValues());
}

TEST_F(PropertyContextOverRowsTest, FailureOfTheSecondLeavesTheFirstWrittenAndTheNextUpdateVisitsOnlyTheRest) {
  Listen();
  ChangeBoth();
  shop_.File.Run("create trigger guard before update on details begin select raise(abort, 'guarded'); end");
  ExpectRaised(errPersistence_Update, [&] { context_->Update(); });
  EXPECT_EQ(heard_, "< Get /Get Detail ");
  EXPECT_EQ(Orders(), "Ann|Ben|Cyd");
  shop_.File.Run("drop trigger guard");
  heard_.clear();
  context_->Update();
  EXPECT_EQ(heard_, "< Detail /Detail >");
  EXPECT_EQ(Notes(), "knock|fragile|heavy");
}

TEST_F(PropertyContextOverRowsTest, DeleteThatAListenerBreaksLeavesTheFirstFlaggedAndUndoTakesItBack) {
  Listen();
  const auto token = context_->Item("Detail")->BeforePendingDelete += [](bool&) { Fail(RuntimeFailure::DeviceError); };
  ExpectReported(RuntimeFailure::DeviceError, [&] { context_->Delete(); });
  EXPECT_EQ(heard_, "[ Get /Get Detail ");
  EXPECT_EQ(context_->Item("Get")->StateFlags(), sfpersistent | sfpendingdelete);
  EXPECT_EQ(context_->Item("Detail")->StateFlags(), sfpersistent);
  context_->Item("Detail")->BeforePendingDelete -= token;
  context_->Undo();
  EXPECT_EQ(context_->StateFlags(), sfpersistent);
}

TEST_F(PropertyContextOverRowsTest, CollectionWhoseActionDoesNotDeleteIsPassedOverSilently) {
  Listen();
  shop_.OrderAction("Detail")->SetEditFlags(efUpdate);
  context_->Delete();
  context_->Update();
  EXPECT_EQ(heard_, "[ Get /Get ]< Get /Get >");
  EXPECT_EQ(Orders(), "Ben|Cyd");
  EXPECT_EQ(Notes(), "ring twice|fragile|heavy");
}

TEST_F(PropertyContextOverRowsTest, FlaggedCollectionWhoseActionNoLongerDeletesIsNotVisited) {
  context_->Item("Detail")->Delete();
  shop_.OrderAction("Detail")->SetEditFlags(efUpdate);
  Listen();
  context_->Update();
  EXPECT_EQ(heard_, "< >");
  EXPECT_EQ(context_->Item("Detail")->StateFlags(), sfpersistent | sfpendingdelete);
}

}  // namespace
}  // namespace velmoria::test
