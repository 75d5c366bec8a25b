#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/refusal.h"

namespace velmoria::test {
namespace {

/// What a collection over a database does at its ends and refuses, by each type of collection.
class BusinessObjectsEdgesTest : public BrokeringTest {
 protected:
  static IBusinessObjectsPtr Orders(GetBusinessObjectsArguments arguments = {}) {
    arguments.ClassName = "Order";
    arguments.ActionName = "All";
    return Framework{}.GetBusinessObjects(arguments);
  }
  static BusinessObjectsPtr Mine(const KeyFormatPtr& format = {}) {
    auto collection = Make<BusinessObjects>();
    collection->SetupTransient("Mine", format, true, false, {}, true);
    return collection;
  }
  static KeyFormatPtr Keyless() { return Framework{}.CreateKeyFormat({.EmptyKey = true}); }
  IdentifierPtr KeyOfTwo() const {
    const auto identifier = shop_.Design.Order->CreateIdentifier();
    identifier->Properties()->Item(1)->SetValue(2);
    return identifier;
  }
  void ReadInPagesOf(std::int32_t rows) const { shop_.OrderAction("All")->SetObjectBuffer(rows); }

  static Refusal NoRow(const std::string& row, const std::string& count) {
    return {errPersistence_Row,
            "Recordset.BuildProperties",
            "Problem building persistent Properties.  Row: " + row + "  Count: " + count,
            {row, count}};
  }
  static Refusal NoKey(const std::string& key) {
    return {errNotSupported_Key,
            "BusinessObjects.IBusinessObjects_Item",
            "This collection does not support a string Key.  Key: '" + key + "'",
            {key}};
  }
  /// Without values of placeholders.
  static Refusal Refused(zErrors number, const std::string& routine, const std::string& text) {
    return {number, "BusinessObjects.IBusinessObjects_" + routine, text};
  }
};

TEST_F(BusinessObjectsEdgesTest, PositionZeroAndThePositionBehindTheLastAreRowsThatAreNotThere) {
  for (const auto type : {cltOptimized, cltDispatcher, cltInitialized}) {
    SCOPED_TRACE(CollectionTypeName(type));
    const auto orders = Orders({.CollectionType = type});
    ExpectRefusal(NoRow("-1", "3"), [&] { orders->Item(0); });
    ExpectRefusal(NoRow("3", "3"), [&] { orders->Item(orders->Count() + 1); });
    EXPECT_EQ(IdOf(*orders->Item(3)), 3);
  }
}

TEST_F(BusinessObjectsEdgesTest, PositionBehindTheLastIsCountedOnTheLastPage) {
  ReadInPagesOf(2);
  const auto orders = Orders();
  ExpectRefusal(NoRow("-1", "2"), [&] { orders->Item(0); });
  ExpectRefusal(NoRow("1", "1"), [&] { orders->Item(orders->Count() + 1); });
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(BusinessObjectsEdgesTest, KeyAskedForTwiceIsFoundWhereItWasSeenThoughNoObjectHasItAnyMore) {
  const auto orders = Orders();
  const auto ben = orders->Item("2");
  ben->FindProperty("Id")->SetValue(20);
  EXPECT_EQ(orders->Item("2"), ben);
  EXPECT_EQ(orders->Item(KeyOfTwo()), ben);
}

TEST_F(BusinessObjectsEdgesTest, KeyAskedForTwiceOfADispatcherIsTheSameRowWithoutASearch) {
  const auto orders = Orders({.CollectionType = cltDispatcher});
  orders->Item("2")->FindProperty("Id")->SetValue(20);
  EXPECT_EQ(IdOf(*orders->Item("2")), 20);
}

TEST_F(BusinessObjectsEdgesTest, FormatWithoutStringKeysRefusesAKeyOnEveryPath) {
  for (const auto type : {cltOptimized, cltDispatcher, cltInitialized}) {
    SCOPED_TRACE(CollectionTypeName(type));
    const auto orders = Orders({.CollectionType = type, .KeyFormat = Keyless()});
    for (const Variant& index : {Variant("2"), Variant(KeyOfTwo())}) {
      ExpectRefusal(NoKey("2"), [&] { orders->Item(index); });
      EXPECT_EQ(IdOf(*orders->Item(2)), 2);
      ExpectRefusal(NoKey("2"), [&] { orders->Item(index); });
    }
  }
}

TEST_F(BusinessObjectsEdgesTest, FormatWithoutStringKeysRefusesAKeyOnEveryPathOfATransientCollection) {
  const auto mine = Mine(Keyless());
  mine->Add(Orders()->Item(2));
  for (const Variant& index : {Variant("2"), Variant(KeyOfTwo())}) {
    ExpectRefusal(NoKey("2"), [&] { mine->Item(index); });
    ExpectRefusal(NoKey("2"), [&] { mine->Remove(index); });
  }
  EXPECT_EQ(mine->Count(), 1);
}

TEST_F(BusinessObjectsEdgesTest, DispatcherRefusesTheUpdateOfAllAndWritesNothing) {
  const auto orders = Orders({.CollectionType = cltDispatcher});
  orders->Item(1)->FindProperty("Name")->SetValue("Eve");
  ExpectRefusal({errNotSupported_CollectionType,
                 "BusinessObjects.IBusinessObjects_Update",
                 "The CollectionType does not support this operation.  CollectionType: 'Dispatcher'",
                 {"Dispatcher"}},
                [&] { orders->Update(); });
  EXPECT_EQ(shop_.File.Column("select Name from orders order by Id"), "Ada|Ben|Cyd");
}

TEST_F(BusinessObjectsEdgesTest, NewObjectNeedsTheEndOfTheResultWhichTheLastItemReaches) {
  ReadInPagesOf(2);
  for (const auto type : {cltOptimized, cltDispatcher}) {
    SCOPED_TRACE(CollectionTypeName(type));
    const auto orders = Orders({.CollectionType = type});
    ExpectRefusal({errBusinessObjects_Buffer,
                   "Recordset.CreatePersistentProperties",
                   "Must move ObjectBuffer to the end of the collection (by retrieving last Item in collection) before "
                   "creating new business objects.  ObjectBuffer: 2.",
                   {"2"}},
                  [&] { orders->SetupItem(); });
    orders->Item(orders->Count());
    EXPECT_EQ(orders->SetupItem()->StateFlags(), sfNew);
  }
}

TEST_F(BusinessObjectsEdgesTest, BoundCollectionRefusesAddAndRemoveWhateverSupportsAddSays) {
  for (const auto type : {cltOptimized, cltDispatcher, cltInitialized}) {
    SCOPED_TRACE(CollectionTypeName(type));
    const auto orders = Orders({.CollectionType = type});
    EXPECT_FALSE(orders->SupportsAdd());
    ExpectRaised(errVelmoria_Locked, [&] { orders->SetSupportsAdd(true); }, {.Count = 1});
    ExpectRefusal(Refused(errNotSupported_Add, "Add", "The Add method of this collection is not supported."),
                  [&] { orders->Add(orders->Item(1)); });
    ExpectRefusal(Refused(errNotSupported_Remove, "Remove", "The Remove method of this collection is not supported."),
                  [&] { orders->Remove(1); });
    EXPECT_EQ(orders->Count(), 3);
  }
}

TEST_F(BusinessObjectsEdgesTest, HostClassThatCannotBeMadeIsReportedOnlyByACollectionOfHostObjects) {
  shop_.Design.Order->SetActiveXClass("Order");
  shop_.OrderAction("All")->SetObjectType(otDefault);
  const Refusal refused{
      errBusinessObject_Create,
      "BusinessObjects.IBusinessObjects_Item",
      "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'",
      {"Sales.Order", "2"}};
  ExpectRefusal(refused, [] { Orders({.ObjectType = otBusiness})->Item(2); });
  for (const auto type : {otModel, otDefault}) {
    const auto order = Orders({.ObjectType = type})->Item(2);
    EXPECT_EQ(order->ObjectType(), otModel);
    EXPECT_EQ(IdOf(*order), 2);
  }
}

TEST_F(BusinessObjectsEdgesTest, NewObjectOfAHostClassThatCannotBeMadeIsReportedOnlyByACollectionOfHostObjects) {
  shop_.Design.Order->SetActiveXClass("Order");
  shop_.OrderAction("All")->SetObjectType(otDefault);
  ExpectRefusal({errBusinessObject_Create,
                 "BusinessObjects.IBusinessObjects_SetupItem",
                 "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '0'",
                 {"Sales.Order", "0"}},
                [] { Orders({.ObjectType = otBusiness})->SetupItem(); });
  for (const auto type : {otModel, otDefault}) {
    EXPECT_EQ(Orders({.ObjectType = type})->SetupItem()->ObjectType(), otModel);
  }
}

TEST_F(BusinessObjectsEdgesTest, HostClassThatRefusesItsModelIsReportedWhateverTheObjectType) {
  shop_.Design.Order->SetActiveXClass("Order");
  shop_.OrderAction("All")->SetObjectType(otDefault);
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  for (const auto type : {otBusiness, otDefault}) {
    ExpectRefusal({errBusinessObject_Initialize,
                   "BusinessObjects.IBusinessObjects_Item",
                   "Problem initializing Line of Business object with a Model.  Identifier: '2'",
                   {"2"}},
                  [&] { Orders({.ObjectType = type})->Item(2); });
  }
}

TEST_F(BusinessObjectsEdgesTest, KeyThatNoRowHasIsReportedAsTheKey) {
  ReadInPagesOf(2);
  for (const auto type : {cltOptimized, cltDispatcher, cltInitialized}) {
    SCOPED_TRACE(CollectionTypeName(type));
    ExpectRefusal(
        {errItem_BusinessObject, "BusinessObjects.FindByKey", "Problem finding business object.  Index: '9'", {"'9'"}},
        [&] { Orders({.CollectionType = type})->Item("9"); });
  }
}

TEST_F(BusinessObjectsEdgesTest, TransientCollectionRefusesWhatItDoesNotHave) {
  const auto mine = Mine();
  const auto ben = Orders()->Item(2);
  mine->Add(ben);
  ExpectRefusal({errItem_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Item",
                 "Problem finding business object.  Index: 2",
                 {"2"}},
                [&] { mine->Item(2); });
  ExpectRefusal({errItem_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Item",
                 "Problem finding business object.  Index: '3'",
                 {"'3'"}},
                [&] { mine->Item("3"); });
  ExpectRefusal(Refused(errNotSupported_SetupBusinessObject, "SetupItem",
                        "The creation of a new business object is not supported in a transient collection."),
                [&] { mine->SetupItem(); });
  ExpectRefusal({errAdd_BusinessObject,
                 "BusinessObjects.IBusinessObjects_Add",
                 "Problem adding business object.  Key: '2'  Before: '1'  After: '2'",
                 {"2", "'1'", "'2'"},
                 "Passing both Before and After arguments is not allowed."},
                [&] { mine->Add(ben, {.Before = 1, .After = "2"}); });
  EXPECT_EQ(Ids(*mine), "2");
}

TEST_F(BusinessObjectsEdgesTest, CollectionTypeIsFixedOnceAnObjectHasBeenRetrieved) {
  const auto orders = Orders();
  orders->SetCollectionType(cltDispatcher);
  orders->SetCollectionType(cltOptimized);
  orders->Item(1);
  ExpectRefusal({errVelmoria_Locked,
                 "BusinessObjects.IBusinessObjects_CollectionType (Let)",
                 "This property is locked and cannot be changed.",
                 {},
                 "CollectionType must be set before objects are retrieved from the collection"},
                [&] { orders->SetCollectionType(cltDispatcher); });
  EXPECT_EQ(orders->CollectionType(), cltOptimized);
}

}  // namespace
}  // namespace velmoria::test
