#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

// What goes wrong is a numbered error or the silence that is told of, nothing is changed by it, and the same context
// answers the next request.

class BrokeringBadInput : public BrokeringTest {
 protected:
  ~BrokeringBadInput() override { ExpectUnharmed(); }
  void ExpectUnharmed() {
    EXPECT_EQ(apartment_.Messages().SuspendRoutine(), "");
    EXPECT_EQ(shop_.File.Column("select Name from orders order by Id"), "Ada|Ben|Cyd");
    context_->SetServerName("");
    EXPECT_EQ(Value(context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2}), "Name"), Variant("Ben"));
    EXPECT_EQ(Ids(*context_->GetBusinessObjects({.ClassName = "Order", .ActionName = "All"})), "1,2,3");
  }
  IBusinessObjectPtr Get(const Variant& key1, const Variant& key2 = Variant::Missing()) {
    return context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = key1, .KeyValue2 = key2});
  }

  BusinessContextPtr context_ = NewContext();
};

struct UnknownName {
  zErrors Number;
  const char* Text;
  void (*Call)(BusinessContext&);
};

TEST_F(BrokeringBadInput, UnknownServer) {
  const UnknownName requests[] = {
      {errItem_Server, "Problem finding Server.  Index: 'Nowhere'",
       [](BusinessContext& c) {
         c.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .ServerName = "Nowhere"});
       }},
      {errItem_Server, "Index: 'Nowhere'",
       [](BusinessContext& c) { c.GetBusinessObjects({.ClassName = "Order", .ServerName = "Nowhere"}); }},
      {errItem_Server, "Index: 'Nowhere'",
       [](BusinessContext& c) { c.LoadBusinessObjects({.ClassName = "Order", .ServerName = "Nowhere"}); }},
      {errItem_Server, "Index: 'Nowhere'",
       [](BusinessContext& c) { c.CreateBusinessObject({.ClassName = "Order", .ServerName = "Nowhere"}); }},
      {errItem_Server, "Index: 'Nowhere'",
       [](BusinessContext& c) { c.Execute({.ClassName = "Order", .ServerName = "Nowhere"}); }},
  };
  for (const auto& [number, text, call] : requests) {
    ExpectRaised(number, [&, use = call] { use(*context_); }, {.Text = text, .Count = 1});
    EXPECT_EQ(context_->ServerName() + context_->ClassName(), "Nowhere");
  }
}

TEST_F(BrokeringBadInput, UnknownServerWithoutAClassIsARequestForAnActionOfNoClass) {
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->GetBusinessObjects({.ServerName = "Nowhere"}); });
  ExpectRaised(errRequires_Class,
               [&] { context_->GetBusinessObjects({.ActionName = "All", .ServerName = "Nowhere"}); });
}

TEST_F(BrokeringBadInput, UnknownClass) {
  for (const char* name : {"Nothing", " Order", "Order ", "'", "Ord\xc3\xa4r", "Sales.Order", "1"}) {
    const std::string shown = "Problem finding Class.  Index: '" + std::string(name) + "'";
    ExpectRaised(errItem_Class, [&] { context_->GetBusinessObject({.ClassName = name, .KeyValue1 = 1}); },
                 {.Text = shown + "\r\nCan't find Class in registered Servers.", .Count = 1});
    ExpectRaised(errItem_Class, [&] { context_->GetBusinessObjects({.ClassName = name, .ServerName = "Sales"}); },
                 {.Text = shown, .Count = 1});
    context_->SetServerName("");
  }
}

TEST_F(BrokeringBadInput, ClassNameOfMegabytes) {
  const std::string name(1 << 20, 'x');
  ExpectRaised(errItem_Class, [&] { context_->CreateBusinessObject({.ClassName = name}); }, {.Text = name});
}

TEST_F(BrokeringBadInput, UnknownAction) {
  const UnknownName requests[] = {
      {errItem_Action, "Problem finding Action.  Index: 'Nothing'",
       [](BusinessContext& c) {
         c.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1, .ActionName = "Nothing"});
       }},
      {errItem_Action, "Index: 'Nothing'",
       [](BusinessContext& c) { c.GetBusinessObjects({.ClassName = "Order", .ActionName = "Nothing"}); }},
      {errItem_Action, "Index: 'Nothing'",
       [](BusinessContext& c) { c.CreateBusinessObject({.ClassName = "Order", .ActionName = "Nothing"}); }},
      {errItem_Action, "Index: 'Nothing'",
       [](BusinessContext& c) { c.Execute({.ClassName = "Order", .ActionName = "Nothing"}); }},
  };
  for (const auto& [number, text, call] : requests) {
    ExpectRaised(number, [&, use = call] { use(*context_); }, {.Text = text, .Count = 1});
    EXPECT_EQ(context_->ClassName() + "." + context_->ActionName(), "Order.");
  }
}

TEST_F(BrokeringBadInput, UnknownNamesOfAnObject) {
  const auto order = Get(2);
  ExpectRaised(errItem_Property, [&] { order->FindProperty("Nothing"); }, {.Text = "Index: 'Nothing'"});
  ExpectRaised(errItem_Properties, [&] { order->Properties("Nothing"); }, {.Text = "Index: 'Nothing'"});
  ExpectRaised(errItem_BusinessObjects, [&] { order->BusinessObjects("Nothing"); }, {.Text = "Index: 'Nothing'"});
  const auto own = order->GetModel()->BusinessContext();
  ExpectRaised(errItem_Relationship, [&] { own->GetBusinessObjects({.RelationshipName = "Nothing"}); },
               {.Text = "Index: 'Nothing'"});
  EXPECT_EQ(own->Count(), 0);
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
}

TEST_F(BrokeringBadInput, ObjectTypeThatIsNoneServesModels) {
  const auto odd = static_cast<zObjectTypes>(7);
  const auto orders = context_->GetBusinessObjects({.ClassName = "Order", .ObjectType = odd});
  EXPECT_EQ(orders->Item(2)->ObjectType(), otModel);
  const auto created = context_->CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = odd});
  EXPECT_EQ(created->ObjectType(), otModel);
  EXPECT_NE(context_->Details().find("ObjectTypes: '"), std::string::npos);
}

TEST_F(BrokeringBadInput, CollectionTypeThatIsNoneStillGivesItsObjects) {
  const auto orders =
      context_->GetBusinessObjects({.ClassName = "Order", .CollectionType = static_cast<zCollectionTypes>(9)});
  EXPECT_EQ(IdOf(*orders->Item(3)), 3);
  EXPECT_EQ(orders->Count(), 3);
}

TEST_F(BrokeringBadInput, NoKeyValueIsTheWholeTable) {
  ExpectRaised(errMismatch_Count, [&] { context_->GetBusinessObject({.ClassName = "Order"}); },
               {.Text = "Expected: 1  Found: 3", .Count = 1});
}

TEST_F(BrokeringBadInput, EmptyKeyValueChoosesTheSingleActionAndNoRow) {
  ExpectRaised(errMismatch_Count, [&] { Get(Variant()); }, {.Text = "Expected: 1  Found: 3"});
  EXPECT_TRUE(context_->KeyValue1().IsEmpty());
}

TEST_F(BrokeringBadInput, NullKeyValueFindsNoRow) {
  ExpectRaised(errBusinessObject_Get, [&] { Get(Variant::Null()); });
}

TEST_F(BrokeringBadInput, KeyValuesThatConvertFindTheirRow) {
  const Variant keys[] = {"2", " 2 ", 2.0, 2.5F, std::int16_t{2}, Byte{2}, Decimal::Parse("2.4"), Currency{20000}};
  for (const Variant& key : keys) {
    SCOPED_TRACE(key.TypeName());
    EXPECT_EQ(Value(Get(key), "Name"), Variant("Ben"));
  }
}

TEST_F(BrokeringBadInput, KeyValuesOfNoRowAreThatRowMissing) {
  const Variant keys[] = {0, -1, true, 2147483647, "-7", Date{2.0 + 35000}};
  for (const Variant& key : keys) {
    SCOPED_TRACE(key.TypeName() + " " + key.AsText());
    ExpectRaised(errBusinessObject_Get, [&] { Get(key); });
  }
}

TEST_F(BrokeringBadInput, KeyValuesThatDoNotConvertAreRefusedByTheProperty) {
  const std::pair<Variant, const char*> keys[] = {
      {"two", "String"},
      {"", "String"},
      {"2; drop table orders", "String"},
      {3e10, "Double"},
      {"99999999999999999999", "String"},
      {Variant(std::vector<Byte>{2}), "Byte()"},
      {Variant::ArrayOfValues({2, 3}), "Variant()"},
      {Variant(IdentifierPtr{}), "Nothing"},
      {Variant(context_), "BusinessContext"},
  };
  for (const auto& [key, type] : keys) {
    SCOPED_TRACE(type);
    ExpectRaised(errProperty_DataType, [&, use = key] { Get(use); },
                 {.Text = "Property: 'Id' DataType: 'Long Integer'  ValueDataType: '" + std::string(type) + "'"});
    EXPECT_EQ(context_->KeyValue1(), key) << "what was asked for is still held";
    ExpectRaised(errProperty_DataType, [&] { context_->GetBusinessObject(); });
    ExpectUnharmed();
  }
}

TEST_F(BrokeringBadInput, KeyValuesWithoutATextAreShownByTheirType) {
  context_->SetKeyValue1(Variant::ArrayOfValues({2}));
  context_->SetKeyValue2(Variant::Null());
  context_->SetKeyValue3(Variant(context_));
  context_->SetKeyValue4(Variant::Missing());
  EXPECT_NE(context_->Details().find("KeyValue1: '(Variant())'  KeyValue2: ''  KeyValue3: '(BusinessContext)'  "
                                     "KeyValue4: '(Error)'"),
            std::string::npos)
      << context_->Details();
}

TEST_F(BrokeringBadInput, TooManyKeyValuesAreIgnoredWhateverTheyAre) {
  EXPECT_EQ(Value(Get(2, Variant::ArrayOfValues({"x"})), "Name"), Variant("Ben"));
  EXPECT_EQ(Value(Get(2, Variant(context_)), "Name"), Variant("Ben"));
}

TEST_F(BrokeringBadInput, TooFewKeyValuesFindNoRow) {
  ExpectRaised(errBusinessObject_Get, [&] { context_->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1}); });
}

TEST_F(BrokeringBadInput, SecondKeyValueWithoutTheFirstIsNotLookedAt) {
  ExpectRaised(errMismatch_Count,
               [&] { context_->GetBusinessObject({.ClassName = "Line", .KeyValue2 = 2, .KeyValue3 = 3}); },
               {.Text = "Found: 3"});
  EXPECT_TRUE(context_->KeyValue2().IsEmpty());
}

TEST_F(BrokeringBadInput, KeyOfTwoRowsIsAnErrorAndNoFirstRowAnswer) {
  ExpectRaised(errMismatch_Count,
               [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ActionName = "Detail"}); },
               {.Text = "Object Count mismatch.  Expected: 1  Found: 2"});
}

TEST_F(BrokeringBadInput, IdentifierOfNothing) {
  ExpectRaised(errItem_Class, [&] { context_->GetBusinessObject({.Identifier = Make<Identifier>()}); },
               {.Text = "Index: ''"});
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { context_->SetIdentifier(Make<Identifier>()); });
  const auto pinned =
      NewContext({.ServerName = "Sales", .ServerLocked = true, .ClassName = "Order", .ClassLocked = true});
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { pinned->GetBusinessObject({.Identifier = Make<Identifier>()}); });
  EXPECT_EQ(pinned->GetBusinessObject({.KeyValue1 = 2})->Key(), "2");
}

TEST_F(BrokeringBadInput, IdentifierWithoutValuesIsTheWholeTable) {
  ExpectRaised(errMismatch_Count,
               [&] { context_->GetBusinessObject({.Identifier = shop_.Design.Order->CreateIdentifier()}); },
               {.Text = "Expected: 1  Found: 3"});
}

TEST_F(BrokeringBadInput, IdentifierOfAClassThatIsGone) {
  const auto identifier =
      Framework{}.GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2})->Identifier();
  shop_.Design.Sales->Classes()->Remove("Line");
  ExpectRaised(errItem_Class, [&] { context_->GetBusinessObject({.Identifier = identifier}); },
               {.Text = "Index: 'Line'"});
}

TEST_F(BrokeringBadInput, IdentifierGoesBeforeTheNamesOfAnotherClass) {
  const auto line = context_->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2});
  const auto again = context_->GetBusinessObject({.ClassName = "Order", .Identifier = line->Identifier()});
  EXPECT_EQ(Value(again, "Product"), Variant("Chair"));
}

TEST_F(BrokeringBadInput, IdentifierOfAClassThatThePinnedServerDoesNotHave) {
  const auto pinned = NewContext({.ServerName = "Stock", .ServerLocked = true});
  const IdentifierPtr identifier = Get(2)->Identifier();
  ExpectRaised(errItem_Class, [&] { pinned->GetBusinessObject({.Identifier = identifier}); },
               {.Text = "Index: 'Order'"});
  EXPECT_EQ(pinned->GetBusinessObjects({.ClassName = "Item"})->Count(), 0);
}

TEST_F(BrokeringBadInput, ParametersOfAnotherTable) {
  const PropertiesPtr parameters = shop_.Design.Line->CreateIdentifier()->Properties()->Copy();
  parameters->Item("LineNo")->SetValue(1);
  ExpectRaised(errRDO_Table, [&] { context_->GetBusinessObjects({.ClassName = "Order", .Parameters = parameters}); },
               {.Text = "orders"});
}

TEST_F(BrokeringBadInput, ParametersOfNothingAreTheWholeTable) {
  const auto orders =
      context_->GetBusinessObjects({.ClassName = "Order", .Parameters = Framework{}.CreateProperties()});
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(BrokeringBadInput, SetupThatFailsPinsNothing) {
  const BusinessContextFields fields[] = {
      {.ServerName = "Nowhere", .ServerLocked = true, .ClassName = "Order", .Locked = true},
      {.ClassName = "Nothing", .ClassLocked = true, .Locked = true},
      {.SupportsLoad = false, .ClassName = "Order", .ActionName = "Nothing", .ActionLocked = true},
      {.ClassName = "Order", .RelationshipName = "Nothing", .RelationshipLocked = true}};
  for (const auto& each : fields) {
    EXPECT_TRUE(Thrown([&] { context_->Setup(each); }));
    EXPECT_FALSE(context_->Locked() || context_->ServerLocked() || context_->ClassLocked());
    EXPECT_FALSE(context_->ActionLocked() || context_->RelationshipLocked());
    EXPECT_TRUE(context_->SupportsLoad());
    apartment_.Messages().Clear();
    context_->SetServerName("");
  }
}

TEST_F(BrokeringBadInput, RelationshipToItself) {
  shop_.Design.Order->Relationships()->SetupItem(
      {.Name = "Self", .RelatedServerName = "Sales", .RelatedClassName = "Order", .RelatedActionName = "Get"});
  IBusinessObjectPtr order = Get(2);
  for (int step = 0; step < 5; ++step) {
    const auto same = order->BusinessObjects("Self");
    EXPECT_EQ(Ids(*same), "2");
    EXPECT_NE(same->Item(1), order);
    order = same->Item(1);
  }
  order->GetModel()->Update(true);
  order->Undo();
}

/// Listeners of a context that do what they should not.
class BadListenerTest : public BrokeringBadInput {
 protected:
  IBusinessObjectsPtr Load(const char* name = "Mine") {
    return context_->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = name});
  }
  std::string Held() const {
    std::string names;
    for (const auto& held : *context_) names += held->Name() + ";";
    return names;
  }
  [[noreturn]] static void Throw() { throw std::runtime_error("a listener's own trouble"); }
  template <class Call>
  void ExpectTrouble(Call call) {
    const auto error = Thrown(call);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->CatalogueNumber(), 15000);
    EXPECT_NE(error->Description().find("a listener's own trouble"), std::string::npos) << error->Description();
    apartment_.Messages().Clear();
  }
};

TEST_F(BadListenerTest, ListenerThatThrowsBeforeAnAddLeavesNothingHeld) {
  const auto token = context_->BeforeAdd += [](IBusinessObjects&, bool&) { Throw(); };
  ExpectTrouble([&] { Load(); });
  EXPECT_EQ(Held(), "");
  context_->BeforeAdd -= token;
  EXPECT_EQ(Load()->Count(), 3);
  EXPECT_EQ(Held(), "Mine;");
}

TEST_F(BadListenerTest, ListenerThatThrowsBehindAnAddLeavesTheCollectionHeld) {
  context_->AfterAdd += [](IBusinessObjects&) { Throw(); };
  ExpectTrouble([&] { Load(); });
  EXPECT_EQ(Held(), "Mine;");
  EXPECT_EQ(Load()->Count(), 3) << "it is found without another Add";
}

TEST_F(BadListenerTest, ListenerThatThrowsAroundARemoveIsReported) {
  Load();
  const auto token = context_->BeforeRemove += [](IBusinessObjects&, bool&) { throw 7; };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Remove("Mine"); });
  EXPECT_EQ(Held(), "Mine;");
  context_->BeforeRemove -= token;
  context_->AfterRemove += [](IBusinessObjects&) { Throw(); };
  ExpectTrouble([&] { context_->Remove("Mine"); });
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatThrowsForAnUnknownItemIsReportedButLoadsAllTheSame) {
  context_->ItemNotFound += [](const Variant&, IBusinessObjectsPtr&) { Throw(); };
  ExpectTrouble([&] { context_->Item("Mine"); });
  EXPECT_EQ(Load()->Count(), 3);
  EXPECT_EQ(Held(), "Mine;");
}

TEST_F(BadListenerTest, VetoedCollectionIsHandedOutAndNotHeld) {
  context_->BeforeAdd += [](IBusinessObjects&, bool& Cancel) { Cancel = true; };
  EXPECT_EQ(Ids(*Load()), "1,2,3");
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatAddsAnotherOfThatNameMakesTheAddFail) {
  bool inside = false;
  context_->BeforeAdd += [&](IBusinessObjects& item, bool&) {
    if (std::exchange(inside, true)) return;
    context_->Add(Framework{}.CreateBusinessObjects({.Name = item.Name()}));
  };
  ExpectReported(RuntimeFailure::KeyInUse, [&] { Load(); });
  EXPECT_EQ(Held(), "Mine;");
  EXPECT_EQ(context_->Item(1)->Count(), 0);
}

TEST_F(BadListenerTest, ListenerThatLoadsIntoTheSameContextChangesItsSelectionOnly) {
  context_->AfterAdd += [&](IBusinessObjects& item) {
    if (item.Name() == "Mine") context_->LoadBusinessObjects({.ClassName = "Line", .Name = "Lines"});
  };
  EXPECT_EQ(Ids(*Load()), "1,2,3");
  EXPECT_EQ(Held(), "Mine;Lines;");
  EXPECT_EQ(context_->ClassName(), "Line");
}

TEST_F(BadListenerTest, ListenerThatRemovesWhatWasAddedHasItHandedOutAllTheSame) {
  context_->AfterAdd += [&](IBusinessObjects& item) { context_->Remove(item.Name()); };
  EXPECT_EQ(Ids(*Load()), "1,2,3");
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatLetsGoOfTheHandleDoesNotTakeTheCollectionAway) {
  IBusinessObjectsPtr orders = context_->GetBusinessObjects({.ClassName = "Order"});
  std::string heard;
  context_->BeforeAdd += [&](IBusinessObjects&, bool&) { orders.reset(); };
  context_->AfterAdd += [&](IBusinessObjects& item) { heard = item.Name(); };
  context_->Add(orders);
  EXPECT_EQ(heard, "orders");
  EXPECT_EQ(Ids(*context_->Item("orders")), "1,2,3");
}

TEST_F(BadListenerTest, ListenerThatRemovesTheSameCollectionMakesTheRemoveFail) {
  Load();
  bool inside = false;
  context_->BeforeRemove += [&](IBusinessObjects&, bool&) {
    if (!std::exchange(inside, true)) context_->Remove(1);
  };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Remove(1); });
  EXPECT_EQ(Held(), "");
}

TEST_F(BadListenerTest, ListenerThatPutsAnotherInFrontDoesNotHaveThatOneRemoved) {
  Load();
  context_->BeforeRemove += [&](IBusinessObjects&, bool&) {
    context_->Add(Framework{}.CreateBusinessObjects({.Name = "First"}), {.Before = 1});
  };
  context_->Remove(1);
  EXPECT_EQ(Held(), "First;");
}

TEST_F(BadListenerTest, CollectionRenamedSinceItWasAddedIsRemovedAllTheSame) {
  const auto one = Framework{}.CreateBusinessObjects({.Name = "One"});
  const auto two = Framework{}.CreateBusinessObjects({.Name = "Two"});
  context_->Add(one);
  context_->Add(two);
  one->SetName("Two");
  context_->Remove("One");
  ASSERT_EQ(context_->Count(), 1);
  EXPECT_EQ(context_->Item("Two"), two);
}

TEST_F(BadListenerTest, ListenerThatEmptiesTheContextDuringItsWalkEndsNothing) {
  for (const char* name : {"A", "B"}) Load(name)->Item(1)->FindProperty("Total")->SetValue(7.0);
  std::string heard;
  context_->BeforeItemUpdate += [&](IBusinessObjects& item, bool&) {
    heard += item.Name();
    while (context_->Count() != 0) context_->Remove(1);
  };
  context_->Update();
  EXPECT_EQ(heard, "AB");
  EXPECT_EQ(shop_.File.Column("select Total from orders where Id = 1"), "7.0");
}

TEST_F(BadListenerTest, PositionThatIsNotThereLeavesTheCollectionReadButNotHeld) {
  const std::pair<Variant, RuntimeFailure> positions[] = {{9, RuntimeFailure::SubscriptOutOfRange},
                                                          {0, RuntimeFailure::SubscriptOutOfRange},
                                                          {"Nothing", RuntimeFailure::InvalidArgument},
                                                          {Variant::Null(), RuntimeFailure::TypeMismatch},
                                                          {Variant(context_), RuntimeFailure::TypeMismatch}};
  for (const auto& [position, failure] : positions) {
    SCOPED_TRACE(position.TypeName());
    ExpectReported(failure,
                   [&, where = position] { context_->LoadBusinessObjects({.ClassName = "Order"}, {.Before = where}); });
    EXPECT_EQ(Held(), "");
  }
  ExpectRaised(errAdd_BusinessObjects,
               [&] {
                 context_->LoadBusinessObjects({.ClassName = "Order"},
                                               {.Before = Variant(context_), .After = Variant::Null()});
               },
               {.Text = "Name: 'orders'  Before: (BusinessContext)  After: (Null)\r\nPassing both"});
}

TEST_F(BadListenerTest, SuppliedCollectionCannotBeRemovedForItIsNotHeld) {
  context_->ItemNotFound +=
      [&](const Variant&, IBusinessObjectsPtr& Item) { Item = Framework{}.CreateBusinessObjects({.Name = "Other"}); };
  ExpectReported(RuntimeFailure::InvalidArgument, [&] { context_->Remove("Nothing"); });
}

/// A business class that asks the broker for something else while it is given its Model.
class AskingOrder final : public BusinessObject {
 public:
  void SetModel(ModelPtr model) override {
    BusinessObject::SetModel(std::move(model));
    Framework{}.GetBusinessObjects({.ClassName = "Item", .ObjectType = otModel});
  }
};

/// A business class that throws what is no Error at all.
class RaisingOrder final : public BusinessObject {
 public:
  void SetModel(ModelPtr) override { throw 7; }
};

class BadHostClassTest : public BrokeringBadInput {
 protected:
  BadHostClassTest() { shop_.Design.Order->SetActiveXClass("Order"); }
};

TEST_F(BadHostClassTest, ClassThatAsksTheSameBrokerInItsHandshakeIsServed) {
  const ComponentOffer<AskingOrder> offer("Sales.Order");
  for (const auto type : {cltOptimized, cltInitialized, cltDispatcher}) {
    const auto orders = Framework{}.GetBusinessObjects(
        {.ClassName = "Order", .ActionName = "All", .ObjectType = otBusiness, .CollectionType = type});
    EXPECT_EQ(Value(orders->Item(3), "Name"), Variant("Cyd"));
  }
  EXPECT_EQ(Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness})->Key(),
            "2");
  EXPECT_EQ(Framework{}
                .CreateBusinessObject({.ClassName = "Order", .ActionName = "Get", .ObjectType = otBusiness})
                ->StateFlags(),
            sfNew);
}

TEST_F(BadHostClassTest, ClassThatSelectsAnotherInItsHandshakeLeavesTheCollectionOfItsOwn) {
  const ComponentOffer<AskingOrder> offer("Sales.Order");
  shop_.Design.Order->SetActiveXCollection("Orders");
  ExpectRaised(errBusinessCollection_Create,
               [] {
                 Framework{}.GetBusinessObjects(
                     {.ClassName = "Order", .ObjectType = otBusiness, .CollectionType = cltInitialized});
               },
               {.Text = "ActiveXBusinessCollection: Sales.Orders"});
}

TEST_F(BadHostClassTest, ClassThatThrowsNoErrorInItsHandshakeIsReported) {
  const ComponentOffer<RaisingOrder> offer("Sales.Order");
  const RaisedExpectation told{.Text = "Problem initializing Line of Business object with a Model.  Identifier: '2'"};
  ExpectRaised(
      errBusinessObject_Initialize,
      [&] { context_->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness}); }, told);
  ExpectRaised(errBusinessObject_Initialize,
               [&] {
                 context_->LoadBusinessObjects(
                     {.ClassName = "Order", .ObjectType = otBusiness, .CollectionType = cltInitialized});
               },
               {.Text = "Identifier: '1'"});
  EXPECT_EQ(context_->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
