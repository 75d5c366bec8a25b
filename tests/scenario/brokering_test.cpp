#include <gtest/gtest.h>

#include "tests/scenario/shop.h"
#include "tests/support/bound_orders.h"
#include "tests/support/component_offer.h"
#include "tests/support/expect_raised.h"
#include "tests/support/host_collection.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class BrokeringTest : public testing::Test {
 protected:
  static BusinessContextPtr NewContext(const BusinessContextFields& fields = {}) {
    return Framework{}.CreateBusinessContext(fields);
  }
  static Variant Value(const IBusinessObjectPtr& object, const char* property) {
    return object->FindProperty(property)->Value();
  }
  IBusinessObjectPtr Order(std::int32_t id) const {
    return Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = id});
  }

  ScopedApartment apartment_;
  Shop shop_;
};

using GetBusinessObjectTest = BrokeringTest;

TEST_F(GetBusinessObjectTest, ObjectIsFoundByOneKeyValue) {
  const auto order = Order(2);
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
  EXPECT_EQ(order->ObjectType(), otModel);
  EXPECT_EQ(order->Key(), "2");
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundByTwoKeyValues) {
  const auto line = Framework{}.GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 2});
  EXPECT_EQ(Value(line, "Product"), Variant("Chair"));
}

TEST_F(GetBusinessObjectTest, SurplusKeyValueIsIgnored) {
  EXPECT_EQ(Value(Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 3, .KeyValue2 = 9}), "Name"),
            Variant("Cyd"));
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundByIdentifier) {
  const IdentifierPtr identifier = shop_.Design.Order->CreateIdentifier();
  identifier->Properties()->Item("Id")->SetValue(3);
  EXPECT_EQ(Value(Framework{}.GetBusinessObject({.Identifier = identifier}), "Name"), Variant("Cyd"));
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundAgainByTheIdentifierOfAnother) {
  const auto again = NewContext()->GetBusinessObject({.Identifier = Order(2)->Identifier()});
  EXPECT_EQ(Value(again, "Name"), Variant("Ben"));
}

TEST_F(GetBusinessObjectTest, ObjectIsFoundByParameters) {
  const auto order = Framework{}.GetBusinessObject(
      {.ClassName = "Order", .ActionName = "Named", .Parameters = shop_.NamedParameters("Cyd")});
  EXPECT_EQ(Value(order, "Id"), Variant(3));
}

TEST_F(GetBusinessObjectTest, ParametersAloneAreIgnoredAndTheSelectionIsRepeated) {
  const auto context = NewContext();
  context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1});
  EXPECT_EQ(Value(context->GetBusinessObject({.Parameters = shop_.NamedParameters("Cyd")}), "Name"), Variant("Ada"));
}

TEST_F(GetBusinessObjectTest, CallWithoutArgumentsRepeatsTheFirstOnAContextOfOnesOwn) {
  const auto context = NewContext();
  const auto first = context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2});
  const auto second = context->GetBusinessObject();
  EXPECT_NE(first, second);
  EXPECT_EQ(second->Key(), "2");
}

TEST_F(GetBusinessObjectTest, CallWithoutArgumentsThroughTheFrameworkNeverRepeatsForItForgetsTheServer) {
  Order(2);
  ExpectReported(RuntimeFailure::ObjectNotSet, [] { Framework{}.GetBusinessObject({}); });
}

TEST_F(GetBusinessObjectTest, ServerOfTheFirstClassStaysAndHidesTheClassesOfOthers) {
  const auto context = NewContext();
  context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2});
  ExpectRaised(errItem_Class, [&] { context->GetBusinessObject({.ClassName = "Item", .KeyValue1 = 1}); },
               {.Text = "Index: 'Item'"});
}

TEST_F(GetBusinessObjectTest, NoRowIsReportedWithTheParametersAsState) {
  const auto context = NewContext();
  const auto error = Thrown([&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 77}); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15025);
  const MessagePtr message = apartment_.Messages().Item("15025");
  EXPECT_EQ(message->StateDetails(), context->Parameters()->Details());
  EXPECT_NE(message->StateDetails().find("77"), std::string::npos);
}

TEST_F(GetBusinessObjectTest, SeveralRowsAreAnErrorAndNoFirstRowAnswer) {
  ExpectRaised(errMismatch_Count, [] { Framework{}.GetBusinessObject({.ClassName = "Order", .ActionName = "All"}); },
               {.Text = "3"});
}

TEST_F(GetBusinessObjectTest, SeveralRowsAreCountedBeyondTheFirstPage) {
  shop_.OrderAction("All")->SetObjectBuffer(1);
  ExpectRaised(errMismatch_Count, [] { Framework{}.GetBusinessObject({.ClassName = "Order", .ActionName = "All"}); },
               {.Text = "3"});
}

TEST_F(GetBusinessObjectTest, ActionThatBuildsNoObjectsIsRefused) {
  shop_.OrderAction("Get")->SetUsageFlags(ufProperties);
  ExpectRaised(errNotSupported_BusinessObjects, [&] { Order(1); }, {.Text = "Action: 'Get'"});
}

TEST_F(GetBusinessObjectTest, FailedCallLeavesTheContextUsable) {
  const auto context = NewContext();
  ExpectRaised(errBusinessObject_Get, [&] { context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 77}); });
  EXPECT_EQ(context->GetBusinessObject({.ClassName = "Order", .KeyValue1 = 1})->Key(), "1");
}

TEST_F(GetBusinessObjectTest, ObjectReachedThroughAnotherKnowsItsParent) {
  const auto order = Order(1);
  const auto line =
      order->GetModel()->BusinessContext()->GetBusinessObject({.ClassName = "Line", .KeyValue1 = 1, .KeyValue2 = 1});
  EXPECT_EQ(line->ParentIdentifier(), order->Identifier());
  EXPECT_EQ(order->ParentIdentifier(), nullptr);
}

using GetBusinessObjectsTest = BrokeringTest;

TEST_F(GetBusinessObjectsTest, WholeResultIsOneCollection) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(orders->Name(), "orders");
  EXPECT_EQ(Value(orders->Item("2"), "Name"), Variant("Ben"));
}

TEST_F(GetBusinessObjectsTest, ClassAloneTakesTheDefaultAction) {
  shop_.Design.Order->SetDefaultActionName("All");
  EXPECT_EQ(Framework{}.GetBusinessObjects({.ClassName = "Order"})->Count(), 3);
}

TEST_F(GetBusinessObjectsTest, GivenNameWins) {
  EXPECT_EQ(Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"})->Name(),
            "Mine");
}

TEST_F(GetBusinessObjectsTest, ParametersChooseTheRows) {
  const auto orders = Framework{}.GetBusinessObjects(
      {.ClassName = "Order", .ActionName = "Named", .Parameters = shop_.NamedParameters("Ben")});
  EXPECT_EQ(Ids(*orders), "2,3");
}

TEST_F(GetBusinessObjectsTest, NoRowIsAnEmptyCollection) {
  const auto items = Framework{}.GetBusinessObjects({.ClassName = "Item"});
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(Ids(*items), "");
}

TEST_F(GetBusinessObjectsTest, PagesAreReadAsTheyAreNeeded) {
  shop_.AddOrders(95);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  EXPECT_EQ(orders->Count(), 95);
  for (const int position : {11, 95, 3, 50}) EXPECT_EQ(IdOf(*orders->Item(position)), position);
  EXPECT_EQ(IdOf(*orders->Item("77")), 77);
  int visited = 0;
  for (const auto& order : *orders) EXPECT_EQ(IdOf(*order), ++visited);
  EXPECT_EQ(visited, 95);
  ExpectRaised(errPersistence_Row, [&] { orders->Item(96); });
}

TEST_F(GetBusinessObjectsTest, ObjectBufferArgumentHasNoEffect) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .ObjectBuffer = 1});
  EXPECT_NE(orders->SetupItem(), nullptr) << "the whole result is at hand";
}

TEST_F(GetBusinessObjectsTest, ObjectTypeIsTheArgumentsThenTheContextsThenTheActions) {
  const auto context = NewContext();
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->ObjectType(), otModel);
  context->SetObjectType(otBusiness);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->ObjectType(), otBusiness);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order", .ObjectType = otModel})->ObjectType(), otModel);
  EXPECT_EQ(context->ObjectType(), otBusiness);
}

TEST_F(GetBusinessObjectsTest, CollectionTypeIsTheArgumentsThenTheContextsThenTheActions) {
  shop_.OrderAction("Get")->SetCollectionType(cltDispatcher);
  const auto context = NewContext();
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->CollectionType(), cltDispatcher);
  context->SetCollectionType(cltOptimized);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order"})->CollectionType(), cltOptimized);
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Order", .CollectionType = cltInitialized})->CollectionType(),
            cltInitialized);
}

TEST_F(GetBusinessObjectsTest, KeyFormatIsTheArgumentsOrACopyOfTheContexts) {
  const auto context = NewContext();
  const KeyFormatPtr own = Framework{}.CreateKeyFormat({.Separator = "-"});
  const KeyFormatPtr given = Framework{}.CreateKeyFormat({.Separator = "+"});
  context->SetKeyFormat(own);
  const auto copied = context->GetBusinessObjects({.ClassName = "Line"})->KeyFormat();
  EXPECT_NE(copied, own);
  EXPECT_EQ(copied->Separator(), "-");
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Line", .KeyFormat = given})->KeyFormat(), given);
}

using LoadBusinessObjectsTest = BrokeringTest;

TEST_F(LoadBusinessObjectsTest, SecondLoadUnderTheSameNameReachesTheDatabaseNoMore) {
  const auto context = NewContext();
  const auto first = context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"});
  shop_.File.Run("drop table orders");
  EXPECT_EQ(context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"}), first);
  EXPECT_EQ(context->Item("Mine"), first);
  EXPECT_TRUE(
      Thrown([&] { context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "New"}); }));
}

TEST_F(LoadBusinessObjectsTest, CollectionIsAddedWithItsEventsAndAtItsPlace) {
  const auto context = NewContext();
  std::string heard;
  context->AfterAdd += [&](IBusinessObjects& item) { heard += item.Name() + ";"; };
  context->LoadBusinessObjects({.ClassName = "Order", .Name = "Second"});
  context->LoadBusinessObjects({.ClassName = "Line", .Name = "First"}, {.Before = 1});
  EXPECT_EQ(heard, "Second;First;");
  EXPECT_EQ(context->Item(1)->Name(), "First");
}

TEST_F(LoadBusinessObjectsTest, ContextWithoutAddRefusesWhatItHasLoaded) {
  const auto context = NewContext({.SupportsAdd = false});
  ExpectRaised(errNotSupported_Add, [&] { context->LoadBusinessObjects({.ClassName = "Order"}); });
  EXPECT_EQ(context->Count(), 0);
}

TEST_F(LoadBusinessObjectsTest, KeyFormatArgumentGoesUnusedForTheContextsOwn) {
  const auto context = NewContext();
  const KeyFormatPtr own = Framework{}.CreateKeyFormat({.Separator = "-"});
  context->SetKeyFormat(own);
  const auto lines =
      context->LoadBusinessObjects({.ClassName = "Line", .KeyFormat = Framework{}.CreateKeyFormat({.Separator = "+"})});
  EXPECT_EQ(lines->KeyFormat(), own);
}

TEST_F(LoadBusinessObjectsTest, CollectionWithoutANameIsReadAgainAndThenRefusedAsTheSecondOfThatName) {
  const auto context = NewContext();
  context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Bare"});
  EXPECT_EQ(context->Item(1)->Name(), "");
  ExpectReported(RuntimeFailure::KeyInUse,
                 [&] { context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Bare"}); });
}

TEST_F(LoadBusinessObjectsTest, ListenersAreAskedUnderNameAndActionBeforeTheDatabaseIs) {
  const auto context = NewContext();
  std::string heard;
  context->ItemNotFound += [&](const Variant& index, IBusinessObjectsPtr&) { heard += index.AsText() + ";"; };
  context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "All", .Name = "Mine"});
  EXPECT_EQ(heard, "Mine;All;");
}

class HostClassTest : public BrokeringTest {
 protected:
  HostClassTest() {
    shop_.Design.Order->SetActiveXClass("Order");
    shop_.Design.Order->SetActiveXCollection("Orders");
    HostOrder::FailsFrom = 0;
  }
  static IBusinessObjectsPtr Orders(zObjectTypes objectType = otBusiness) {
    return Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All", .ObjectType = objectType});
  }
};

TEST_F(HostClassTest, ObjectComesBackAroundItsModel) {
  const ComponentOffer<HostOrder> offer("Sales.Order");
  const auto order = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness});
  EXPECT_NE(dynamic_cast<HostOrder*>(order.get()), nullptr);
  EXPECT_EQ(Value(order, "Name"), Variant("Ben"));
}

TEST_F(HostClassTest, UnknownClassIsReported) {
  ExpectRaised(errBusinessObject_Create,
               [] { Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness}); },
               {.Text = "ActiveXBusinessClass: 'Sales.Order'  Identifier: '2'"});
}

TEST_F(HostClassTest, RefusedModelIsReported) {
  const ComponentOffer<RefusingOrder> offer("Sales.Order");
  ExpectRaised(errBusinessObject_Initialize,
               [] { Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ObjectType = otBusiness}); },
               {.Text = "Identifier: '2'"});
}

TEST_F(HostClassTest, CollectionComesBackAroundItsBusinessObjects) {
  const ComponentOffer<HostOrder> order("Sales.Order");
  const ComponentOffer<HostCollection> offer("Sales.Orders");
  const auto orders = Orders();
  const auto* host = dynamic_cast<HostCollection*>(orders.get());
  ASSERT_NE(host, nullptr);
  EXPECT_EQ(host->Inner()->Count(), 3);
  EXPECT_EQ(orders->Item(1)->ObjectType(), otBusiness);
  EXPECT_EQ(Ids(*orders), "1,2,3");
}

TEST_F(HostClassTest, CollectionOfModelsIsReturnedUnwrapped) {
  const ComponentOffer<HostCollection> offer("Sales.Orders");
  EXPECT_EQ(dynamic_cast<HostCollection*>(Orders(otModel).get()), nullptr);
}

TEST_F(HostClassTest, UnknownCollectionIsReported) {
  ExpectRaised(errBusinessCollection_Create, [] { Orders(); }, {.Text = "Sales.Orders", .Count = 1});
}

TEST_F(HostClassTest, CollectionThatRefusesItsBusinessObjectsIsReported) {
  const ComponentOffer<RefusingCollection> offer("Sales.Orders");
  ExpectRaised(errBusinessCollection_Setup, [] { Orders(); }, {.Text = "Sales.Orders"});
}

using PersistenceTest = BrokeringTest;

TEST_F(PersistenceTest, ChangeIsReadBackThroughASecondConnection) {
  const auto order = Order(2);
  order->FindProperty("Name")->SetValue("O'Brien – Zoë");
  EXPECT_EQ(order->StateFlags(), sfpersistent | sfdirty);
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  const auto again = Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .ActionName = "Check"});
  EXPECT_EQ(Value(again, "Name"), Variant("O'Brien – Zoë"));
  EXPECT_EQ(shop_.File.Column("select Name from orders order by Id"), "Ada|O'Brien – Zoë|Cyd");
}

TEST_F(PersistenceTest, ChangesOfSeveralMembersAreWrittenByTheCollection) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  orders->Item(1)->FindProperty("Total")->SetValue(1.5);
  orders->Item("3")->FindProperty("Total")->SetValue(3.5);
  orders->Update();
  EXPECT_FALSE(orders->Dirty());
  EXPECT_EQ(shop_.File.Column("select Total from orders order by Id"), "1.5|99.0|3.5");
}

TEST_F(PersistenceTest, NewObjectIsInserted) {
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  const auto order = orders->SetupItem();
  order->FindProperty("Id")->SetValue(40);
  order->FindProperty("Name")->SetValue("Dan");
  orders->Update();
  EXPECT_EQ(order->StateFlags(), sfpersistent);
  EXPECT_EQ(orders->Item("40"), order);
  EXPECT_EQ(shop_.File.Column("select Name from orders where Id = 40"), "Dan");
}

TEST_F(PersistenceTest, NewObjectBehindTheLastPageIsInserted) {
  shop_.AddOrders(25);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  ExpectRaised(errBusinessObjects_Buffer, [&] { orders->SetupItem(); }, {.Text = "ObjectBuffer: 10."});
  orders->Item(orders->Count());
  const auto order = orders->SetupItem();
  order->FindProperty("Id")->SetValue(40);
  orders->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "26");
}

TEST_F(PersistenceTest, DeletedObjectIsGoneWithTheNextUpdate) {
  const auto order = Order(2);
  order->Delete();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "3");
  order->Update();
  EXPECT_EQ(order->StateFlags(), sfdeleted);
  EXPECT_EQ(shop_.File.Column("select Id from orders order by Id"), "1|3");
  ExpectRaised(errBusinessObject_Get, [&] { Order(2); });
}

TEST_F(PersistenceTest, WholeCollectionIsDeletedPageByPage) {
  shop_.AddOrders(25);
  shop_.OrderAction("All")->SetObjectBuffer(10);
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  orders->Delete();
  orders->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "0");
}

TEST_F(PersistenceTest, UndoTakesADeletionBack) {
  const auto order = Order(2);
  order->Delete();
  order->Undo();
  order->Update();
  EXPECT_EQ(shop_.File.Column("select count(*) from orders"), "3");
}

TEST_F(PersistenceTest, UndoneChangeIsNotWrittenThoughTheValueStays) {
  const auto order = Order(2);
  order->FindProperty("Name")->SetValue("changed");
  order->Undo();
  EXPECT_FALSE(order->Dirty());
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Name from orders where Id = 2"), "Ben");
}

TEST_F(PersistenceTest, FailedMemberEndsTheWalkAndWhatWasWrittenStays) {
  shop_.File.Run("create trigger guard before update on orders when new.Id = 2 begin select raise(abort, 'no'); end");
  const auto orders = Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = "All"});
  for (const auto& order : *orders) order->FindProperty("Total")->SetValue(7.0);
  EXPECT_EQ(Thrown([&] { orders->Update(); })->CatalogueNumber(), 15111);
  EXPECT_EQ(shop_.File.Column("select Total from orders order by Id"), "7.0|99.0|NULL");
  EXPECT_TRUE(orders->Item(2)->Dirty());
}

using LoadPropertiesTest = BrokeringTest;

TEST_F(LoadPropertiesTest, SecondLoadReturnsTheSameCollectionWithoutTheDatabase) {
  const auto order = Order(1);
  const PropertyContextPtr context = order->GetModel()->PropertyContext();
  const auto detail = context->LoadProperties("Detail");
  shop_.File.Run("drop table details");
  EXPECT_EQ(context->LoadProperties("Detail"), detail);
  EXPECT_EQ(order->PropertiesCount(), 2);
}

TEST_F(LoadPropertiesTest, LoadedCollectionJoinsWithoutEvents) {
  const auto context = Order(1)->GetModel()->PropertyContext();
  bool heard = false;
  context->BeforeAdd += [&](Properties&, bool&) { heard = true; };
  context->SetSupportsAdd(false);
  EXPECT_EQ(context->LoadProperties("Detail", {}, "Mine", {.Before = 1})->Name(), "Mine");
  EXPECT_EQ(context->Item(1)->Name(), "Mine");
  EXPECT_FALSE(heard);
}

TEST_F(LoadPropertiesTest, ModelLoadsPropertiesByTheNameOfAnAction) {
  const auto order = Order(1);
  EXPECT_EQ(order->Properties("Detail")->Item("Note")->Value(), Variant("ring twice"));
  EXPECT_EQ(order->Properties("Detail"), order->Properties(2));
  EXPECT_EQ(Value(order, "Note"), Variant("ring twice"));
  EXPECT_EQ(order->FindProperty(4), order->Properties(2)->Item(1));
}

TEST_F(LoadPropertiesTest, GetPropertiesAddsNothing) {
  const auto order = Order(1);
  const auto detail = order->GetModel()->PropertyContext()->GetProperties("Detail");
  EXPECT_EQ(detail->Item("Note")->Value(), Variant("ring twice"));
  EXPECT_EQ(order->PropertiesCount(), 1);
}

TEST_F(LoadPropertiesTest, NoRowAndSeveralRowsAreReported) {
  const auto none = Order(3)->GetModel()->PropertyContext();
  ExpectRaised(errPersistence_Get, [&] { none->LoadProperties("Detail"); });
  const auto two = Order(2)->GetModel()->PropertyContext();
  ExpectRaised(errMismatch_Count, [&] { two->LoadProperties("Detail"); }, {.Text = "2"});
  EXPECT_EQ(two->Count(), 1);
}

TEST_F(LoadPropertiesTest, SeveralRowsPassUnnoticedInPagesOfOne) {
  shop_.OrderAction("Detail")->SetObjectBuffer(1);
  EXPECT_EQ(Order(2)->Properties("Detail")->Item("Note")->Value(), Variant("fragile"));
}

TEST_F(LoadPropertiesTest, NameThatGivesNoSingleRowIsTheMissingCollectionOfAModel) {
  ExpectRaised(errItem_Properties, [&] { Order(3)->Properties("Detail"); }, {.Text = "Index: 'Detail'"});
}

TEST_F(LoadPropertiesTest, ParametersAreUsedInsteadOfTheIdentity) {
  const auto context = Order(1)->GetModel()->PropertyContext();
  EXPECT_EQ(context->GetProperties("Named", shop_.NamedParameters("Cyd"))->Item("Id")->Value(), Variant(3));
}

TEST_F(LoadPropertiesTest, UpdateOfTheObjectWritesEveryCollection) {
  const auto order = Order(1);
  order->Properties("Detail")->Item("Note")->SetValue("knock");
  order->FindProperty("Name")->SetValue("Ann");
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Note from details where Id = 1"), "knock");
  EXPECT_EQ(shop_.File.Column("select Name from orders where Id = 1"), "Ann");
}

using FailingDatabaseTest = BrokeringTest;

TEST_F(FailingDatabaseTest, MissingTableIsReportedWithTheDriversOwnWordsAndTheNextCallWorks) {
  shop_.File.Run("alter table orders rename to hidden");
  const auto error = Thrown([&] { Order(1); });
  ASSERT_TRUE(error);
  EXPECT_NE(error->CatalogueNumber(), 0);
  EXPECT_NE(error->CatalogueNumber(), 15000);
  bool told = false;
  for (const auto& message : apartment_.Messages()) {
    told = told || (message->SeverityFlags() == svfWarning &&
                    message->Description().find("no such table") != std::string::npos);
  }
  EXPECT_TRUE(told) << apartment_.Messages().Details();
  apartment_.Messages().Clear();
  shop_.File.Run("alter table hidden rename to orders");
  EXPECT_EQ(Order(1)->Key(), "1");
}

}  // namespace
}  // namespace velmoria::test
