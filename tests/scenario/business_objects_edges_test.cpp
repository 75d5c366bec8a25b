#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// A failure as Messages holds it.
struct HeldFailure {
  zErrors Number;
  std::string Text;
  std::vector<std::string> Replaces{};
  std::string ExtraText{};
};

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

  /// Expects the failure with its texts, both raised and held.
  template <class Routine>
  void Expect(const HeldFailure& expected, Routine&& routine, const char* file = __builtin_FILE(),
              int line = __builtin_LINE()) {
    const testing::ScopedTrace trace(file, line, expected.Text);
    MessagePtr held;
    const auto noted = [&] {
      try {
        routine();
      } catch (...) {
        held = apartment_.Messages().Item(std::to_string(static_cast<std::int32_t>(expected.Number)));
        throw;
      }
    };
    ExpectRaised(expected.Number, noted, {.Text = expected.Text});
    ASSERT_TRUE(held);
    EXPECT_EQ(held->Description(), expected.Text);
    EXPECT_EQ(held->ExtraText(), expected.ExtraText);
    auto replaces = expected.Replaces;
    replaces.resize(4);
    EXPECT_EQ((std::vector<std::string>{held->Replace1(), held->Replace2(), held->Replace3(), held->Replace4()}),
              replaces);
  }
  static HeldFailure NoRow(const std::string& row, const std::string& count) {
    return {
        errPersistence_Row, "Problem building persistent Properties.  Row: " + row + "  Count: " + count, {row, count}};
  }
  static HeldFailure NoKey(const std::string& key) {
    return {errNotSupported_Key, "This collection does not support a string Key.  Key: '" + key + "'", {key}};
  }
};

TEST_F(BusinessObjectsEdgesTest, PositionZeroAndThePositionBehindTheLastAreRowsThatAreNotThere) {
  for (const auto type : {cltOptimized, cltDispatcher, cltInitialized}) {
    SCOPED_TRACE(CollectionTypeName(type));
    const auto orders = Orders({.CollectionType = type});
    Expect(NoRow("-1", "3"), [&] { orders->Item(0); });
    Expect(NoRow("3", "3"), [&] { orders->Item(orders->Count() + 1); });
    EXPECT_EQ(IdOf(*orders->Item(3)), 3);
  }
}

TEST_F(BusinessObjectsEdgesTest, PositionBehindTheLastIsCountedOnTheLastPage) {
  ReadInPagesOf(2);
  const auto orders = Orders();
  Expect(NoRow("-1", "2"), [&] { orders->Item(0); });
  Expect(NoRow("1", "1"), [&] { orders->Item(orders->Count() + 1); });
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
      Expect(NoKey("2"), [&] { orders->Item(index); });
      EXPECT_EQ(IdOf(*orders->Item(2)), 2);
      Expect(NoKey("2"), [&] { orders->Item(index); });
    }
  }
}

TEST_F(BusinessObjectsEdgesTest, FormatWithoutStringKeysRefusesAKeyOnEveryPathOfATransientCollection) {
  const auto mine = Mine(Keyless());
  mine->Add(Orders()->Item(2));
  for (const Variant& index : {Variant("2"), Variant(KeyOfTwo())}) {
    Expect(NoKey("2"), [&] { mine->Item(index); });
    Expect(NoKey("2"), [&] { mine->Remove(index); });
  }
  EXPECT_EQ(mine->Count(), 1);
}

TEST_F(BusinessObjectsEdgesTest, DispatcherGivesTwoObjectsForOneRow) {
  const auto orders = Orders({.CollectionType = cltDispatcher});
  const auto first = orders->Item(1);
  EXPECT_NE(orders->Item(1), first);
  EXPECT_EQ(IdOf(*orders->Item(1)), IdOf(*first));
}

TEST_F(BusinessObjectsEdgesTest, DispatcherRefusesTheUpdateOfAllAndWritesNothing) {
  const auto orders = Orders({.CollectionType = cltDispatcher});
  orders->Item(1)->FindProperty("Name")->SetValue("Eve");
  Expect({errNotSupported_CollectionType,
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
    Expect({errBusinessObjects_Buffer,
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
    Expect({errNotSupported_Add, "The Add method of this collection is not supported."},
           [&] { orders->Add(orders->Item(1)); });
    Expect({errNotSupported_Remove, "The Remove method of this collection is not supported."},
           [&] { orders->Remove(1); });
    EXPECT_EQ(orders->Count(), 3);
  }
}

TEST_F(BusinessObjectsEdgesTest, HostClassThatCannotBeMadeIsReportedOnlyByACollectionOfHostObjects) {
  shop_.Design.Order->SetActiveXClass("Order");
  shop_.OrderAction("All")->SetObjectType(otDefault);
  const HeldFailure refused{
      errBusinessObject_Create,
      "Problem creating Line of Business object.  ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'",
      {"Sales.Order", "2"}};
  Expect(refused, [] { Orders({.ObjectType = otBusiness})->Item(2); });
  for (const auto type : {otModel, otDefault}) {
    const auto order = Orders({.ObjectType = type})->Item(2);
    EXPECT_EQ(order->ObjectType(), otModel);
    EXPECT_EQ(IdOf(*order), 2);
  }
}

TEST_F(BusinessObjectsEdgesTest, NewObjectOfAHostClassThatCannotBeMadeIsReportedOnlyByACollectionOfHostObjects) {
  shop_.Design.Order->SetActiveXClass("Order");
  shop_.OrderAction("All")->SetObjectType(otDefault);
  Expect({errBusinessObject_Create,
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
    Expect({errBusinessObject_Initialize,
            "Problem initializing Line of Business object with a Model.  Identifier: '2'",
            {"2"}},
           [&] { Orders({.ObjectType = type})->Item(2); });
  }
}

TEST_F(BusinessObjectsEdgesTest, KeyThatNoRowHasIsReportedAsTheKey) {
  ReadInPagesOf(2);
  for (const auto type : {cltOptimized, cltDispatcher, cltInitialized}) {
    SCOPED_TRACE(CollectionTypeName(type));
    Expect({errItem_BusinessObject, "Problem finding business object.  Index: '9'", {"'9'"}},
           [&] { Orders({.CollectionType = type})->Item("9"); });
  }
}

TEST_F(BusinessObjectsEdgesTest, TransientCollectionRefusesWhatItDoesNotHave) {
  const auto mine = Mine();
  const auto ben = Orders()->Item(2);
  mine->Add(ben);
  Expect({errItem_BusinessObject, "Problem finding business object.  Index: 2", {"2"}}, [&] { mine->Item(2); });
  Expect({errItem_BusinessObject, "Problem finding business object.  Index: '3'", {"'3'"}}, [&] { mine->Item("3"); });
  Expect({errNotSupported_SetupBusinessObject,
          "The creation of a new business object is not supported in a transient collection."},
         [&] { mine->SetupItem(); });
  Expect({errAdd_BusinessObject,
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
  Expect({errVelmoria_Locked,
          "This property is locked and cannot be changed.",
          {},
          "CollectionType must be set before objects are retrieved from the collection"},
         [&] { orders->SetCollectionType(cltDispatcher); });
  EXPECT_EQ(orders->CollectionType(), cltOptimized);
}

}  // namespace
}  // namespace velmoria::test
