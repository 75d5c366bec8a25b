#include <string>

#include <gtest/gtest.h>

#include "tests/scenario/brokering_fixture.h"
#include "tests/support/bound_orders.h"
#include "tests/support/expect_raised.h"

namespace velmoria::test {
namespace {

/// Orders lead to their lines, lines to their item on another server, and an order to the one before it.
class NavigatingTest : public BrokeringTest {
 protected:
  NavigatingTest() {
    shop_.File.Run(R"sql(
alter table lines add column Code integer;
update lines set Code = OrderId * 10 + LineNo;
insert into items values (11, 'Lamp, brass'), (12, 'Chair, oak'), (21, 'Rug, red');
alter table orders add column Previous integer;
update orders set Previous = Id - 1 where Id > 1;
create table parcels (OrderId integer not null, LineNo integer not null, Parcel integer not null);
insert into parcels values (1, 1, 7), (1, 2, 8), (1, 2, 9), (2, 1, 10);
)sql");
    const ActionPtr ofOrder = AddAction(shop_.Design.Line, "OfOrder", "lines");
    ofOrder->Sources()->Item()->Parameters()->SetupItem(
        {.Name = "OrderId", .DataType = dtLongInteger, .SourceColumn = "OrderId", .Flags = pfInput});
    const RelationshipPtr lines = Relate(shop_.Design.Order, "Lines", "Sales", "Line", "OfOrder");
    AddLink(lines, "Id", "OrderId");
  }

  static ActionPtr AddAction(const ClassPtr& owner, const std::string& name, const std::string& text,
                             zSourceTypes type = stTable) {
    const ActionPtr action = owner->Actions()->SetupItem({.Name = name,
                                                          .DatabaseName = "Shop",
                                                          .UsageFlags = ufAll,
                                                          .EditFlags = efAll,
                                                          .ObjectType = otModel,
                                                          .BusinessObjectsName = "of " + name});
    action->Sources()->SetupItem({.Engine = engODBC, .SourceType = type, .SourceText = text});
    return action;
  }
  static RelationshipPtr Relate(const ClassPtr& owner, const std::string& name, const std::string& server,
                                const std::string& className, const std::string& action) {
    return owner->Relationships()->SetupItem(
        {.Name = name, .RelatedServerName = server, .RelatedClassName = className, .RelatedActionName = action});
  }
  static void AddLink(const RelationshipPtr& relationship, const std::string& property, const std::string& parameter) {
    const LinkPtr link = relationship->Links()->SetupItem({.Name = parameter});
    link->Property()->SetName(property);
    link->Parameter()->SetName(parameter);
  }
  /// From a line to its item, on the other server.
  void RelateParts() const {
    AddAction(shop_.Design.Item, "ByCode", "items")
        ->Sources()
        ->Item()
        ->Parameters()
        ->SetupItem({.Name = "Code", .DataType = dtLongInteger, .SourceColumn = "Code", .Flags = pfInput});
    AddLink(Relate(shop_.Design.Line, "Part", "Stock", "Item", "ByCode"), "Code", "Code");
  }
  /// From an order to the one before it, by a statement.
  void RelatePrevious() const {
    AddAction(shop_.Design.Order, "ById", "select * from orders where Id = ?", stSQL)
        ->Sources()
        ->Item()
        ->Parameters()
        ->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput});
    AddLink(Relate(shop_.Design.Order, "Previous", "Sales", "Order", "ById"), "Previous", "Id");
  }
  /// From an order to a statement that removes the lines of the order in the property.
  void RelateClearing(const std::string& property) const {
    AddAction(shop_.Design.Line, "Clear", "delete from lines where OrderId = ?", stSQL)
        ->Sources()
        ->Item()
        ->Parameters()
        ->SetupItem({.Name = "OrderId", .DataType = dtLongInteger, .Flags = pfInput});
    AddLink(Relate(shop_.Design.Order, "Clearing", "Sales", "Line", "Clear"), property, "OrderId");
  }
  static std::string Names(IBusinessObjects& objects, const char* property) {
    std::string names;
    for (const auto& object : objects) names += object->FindProperty(property)->Value().AsText() + ";";
    return names;
  }
};

TEST_F(NavigatingTest, FirstUseLoadsByTheRelationshipAndTheSecondFindsItThere) {
  const auto order = Order(1);
  const auto lines = order->BusinessObjects("Lines");
  EXPECT_EQ(Names(*lines, "Product"), "Lamp;Chair;");
  shop_.File.Run("drop table lines");
  EXPECT_EQ(order->BusinessObjects("lines"), lines);
  EXPECT_EQ(order->BusinessObjects(1), lines);
  EXPECT_EQ(order->BusinessObjectsCount(), 1);
  EXPECT_EQ(apartment_.Messages().Count(), 0) << apartment_.Messages().Details();
}

TEST_F(NavigatingTest, EveryObjectHasItsOwnRelatedOnes) {
  EXPECT_EQ(Names(*Order(1)->BusinessObjects("Lines"), "Product"), "Lamp;Chair;");
  EXPECT_EQ(Names(*Order(2)->BusinessObjects("Lines"), "Product"), "Rug;");
  EXPECT_EQ(Order(3)->BusinessObjects("Lines")->Count(), 0);
}

TEST_F(NavigatingTest, CollectionIsNamedLikeTheRelationshipAndKnowsTheObjectItCameFrom) {
  const auto order = Order(1);
  const auto lines = order->BusinessObjects("LINES");
  EXPECT_EQ(lines->Name(), "Lines");
  EXPECT_EQ(lines->Item(2)->ParentIdentifier(), order->Identifier());
}

TEST_F(NavigatingTest, ChainLeadsOverThreeClassesAndTwoServers) {
  RelateParts();
  const auto part = Order(1)->BusinessObjects("Lines")->Item(2)->BusinessObjects("Part")->Item(1);
  EXPECT_EQ(Value(part, "Name"), Variant("Chair, oak"));
  EXPECT_EQ(part->Identifier()->ServerName() + "." + part->Identifier()->ClassName(), "Stock.Item");
  EXPECT_EQ(part->ParentIdentifier()->ClassName(), "Line");
}

TEST_F(NavigatingTest, RelationshipToItselfLeadsFromOneObjectToTheNext) {
  RelatePrevious();
  const auto second = Order(3)->BusinessObjects("Previous")->Item(1);
  const auto first = second->BusinessObjects("Previous")->Item(1);
  EXPECT_EQ(Value(second, "Name"), Variant("Ben"));
  EXPECT_EQ(Value(first, "Name"), Variant("Ada"));
}

TEST_F(NavigatingTest, NullOfTheObjectFindsNoRelatedOne) {
  RelatePrevious();
  EXPECT_EQ(Order(1)->BusinessObjects("Previous")->Count(), 0);
}

TEST_F(NavigatingTest, RelationshipWithoutLinksGoesByBothPartsOfTheIdentity) {
  const ClassPtr parcel = shop_.Design.Stock->Classes()->SetupItem({.Name = "Parcel"});
  parcel->Properties()->SetupItem(
      {.Name = "Parcel", .DataType = dtLongInteger, .SourceName = "Parcel", .SourceColumn = "Parcel"});
  AddAction(parcel, "All", "parcels");
  Relate(shop_.Design.Line, "Parcels", "Stock", "Parcel", "All");
  const auto lines = Order(1)->BusinessObjects("Lines");
  EXPECT_EQ(Names(*lines->Item(1)->BusinessObjects("Parcels"), "Parcel"), "7;");
  EXPECT_EQ(Names(*lines->Item(2)->BusinessObjects("Parcels"), "Parcel"), "8;9;");
}

TEST_F(NavigatingTest, ParameterThatTheActionLacksLimitsTheRowsAllTheSame) {
  Relate(shop_.Design.Order, "Notes", "Sales", "Order", "Detail");
  EXPECT_EQ(Names(*Order(2)->BusinessObjects("Notes"), "Note"), "fragile;heavy;");
}

TEST_F(NavigatingTest, ChangedPropertyIsFollowedBeforeItIsSaved) {
  RelatePrevious();
  const auto order = Order(3);
  order->FindProperty("Previous")->SetValue(1);
  EXPECT_EQ(Value(order->BusinessObjects("Previous")->Item(1), "Name"), Variant("Ada"));
}

TEST_F(NavigatingTest, ChangeOfTheObjectReachesALoadedCollectionOnlyUnderTheRelationshipNamedAgain) {
  RelatePrevious();
  const auto order = Order(3);
  const BusinessContextPtr context = order->GetModel()->BusinessContext();
  order->BusinessObjects("Previous");
  order->FindProperty("Previous")->SetValue(1);
  EXPECT_EQ(Ids(*order->BusinessObjects("Previous")), "2");
  EXPECT_EQ(Ids(*context->GetBusinessObjects()), "2") << "the parameters are those of the first time";
  EXPECT_EQ(Ids(*context->GetBusinessObjects({.RelationshipName = "Previous"})), "1");
}

TEST_F(NavigatingTest, GivenNameGoesBeforeTheRelationshipsAndAfterItTheActions) {
  const BusinessContextPtr context = Order(1)->GetModel()->BusinessContext();
  EXPECT_EQ(context->GetBusinessObjects({.RelationshipName = "Lines", .Name = "Mine"})->Name(), "Mine");
  EXPECT_EQ(context->GetBusinessObjects({.RelationshipName = "Lines"})->Name(), "Lines");
  EXPECT_EQ(context->GetBusinessObjects({.ClassName = "Line", .ActionName = "OfOrder"})->Name(), "of OfOrder");
}

TEST_F(NavigatingTest, LoadLooksUnderNameThenUnderTheRelationshipWhichWinsAndThenUnderTheAction) {
  const BusinessContextPtr context = Order(1)->GetModel()->BusinessContext();
  std::string heard;
  context->ItemNotFound += [&](const Variant& index, IBusinessObjectsPtr&) { heard += index.AsText() + ";"; };
  const auto mine = context->LoadBusinessObjects({.ActionName = "Get", .RelationshipName = "Lines", .Name = "Mine"});
  EXPECT_EQ(heard, "Mine;Lines;Get;");
  heard.clear();
  const auto lines = context->LoadBusinessObjects({.RelationshipName = "Lines"});
  EXPECT_EQ(context->LoadBusinessObjects({.RelationshipName = "Lines", .Name = "Mine"}), lines);
  EXPECT_EQ(context->LoadBusinessObjects({.RelationshipName = "Nothing", .Name = "Mine"}), mine);
  EXPECT_EQ(heard, "Lines;Nothing;");
}

TEST_F(NavigatingTest, ListenersAreAskedOnceByTheObjectAndOnceByTheLoad) {
  const auto order = Order(1);
  std::string heard;
  order->GetModel()->BusinessContext()->ItemNotFound +=
      [&](const Variant& index, IBusinessObjectsPtr&) { heard += index.AsText() + ";"; };
  order->BusinessObjects("Lines");
  EXPECT_EQ(heard, "Lines;Lines;");
}

TEST_F(NavigatingTest, NumberIsNoRelationship) {
  ExpectRaised(errItem_BusinessObjects, [&] { Order(1)->BusinessObjects(1); }, {.Text = "Index: 1"});
}

TEST_F(NavigatingTest, WhateverFailsOnTheWayIsTheMissingCollectionAndNothingElse) {
  Relate(shop_.Design.Order, "Server", "Nowhere", "Line", "Get");
  Relate(shop_.Design.Order, "Class", "Sales", "Invoice", "Get");
  Relate(shop_.Design.Order, "Action", "Sales", "Line", "Nothing");
  AddLink(Relate(shop_.Design.Order, "Link", "Sales", "Line", "OfOrder"), "Colour", "OrderId");
  const auto order = Order(1);
  for (const char* name : {"Unknown", "Server", "Class", "Action", "Link"}) {
    apartment_.Messages().Clear();
    ExpectRaised(errItem_BusinessObjects, [&] { order->BusinessObjects(name); },
                 {.Text = std::string("Index: '") + name + "'", .Count = 1});
  }
  EXPECT_EQ(Names(*order->BusinessObjects("Lines"), "Product"), "Lamp;Chair;");
}

TEST_F(NavigatingTest, DriversWordsAreAWarningBesideTheMissingCollection) {
  AddAction(shop_.Design.Line, "Gone", "no_such_table");
  Relate(shop_.Design.Order, "Table", "Sales", "Line", "Gone");
  const auto order = Order(1);
  apartment_.Messages().Clear();
  EXPECT_TRUE(Thrown([&] { order->BusinessObjects("Table"); }));
  EXPECT_EQ(apartment_.Messages().Count(), 2);
  EXPECT_NE(apartment_.Messages().Item("15063"), nullptr);
  EXPECT_NE(apartment_.Messages().Item("1")->Description().find("no such table"), std::string::npos);
  EXPECT_EQ(apartment_.Messages().Item("1")->SeverityFlags(), svfWarning);
}

TEST_F(NavigatingTest, SameFailuresHaveTheirNumbersWhenTheContextIsAskedItself) {
  AddLink(Relate(shop_.Design.Order, "Link", "Sales", "Line", "OfOrder"), "Colour", "OrderId");
  const BusinessContextPtr context = Order(1)->GetModel()->BusinessContext();
  ExpectRaised(errItem_Relationship, [&] { context->LoadBusinessObjects({.RelationshipName = "Unknown"}); });
  ExpectRaised(errLink_Navigate, [&] { context->LoadBusinessObjects({.RelationshipName = "Link"}); },
               {.Text = "Relationship: 'Link'  Property: 'Colour'  Parameter: 'OrderId'\r\n"
                        "Property: 'Colour'  Parameter: 'OrderId'"});
  EXPECT_EQ(context->Count(), 0);
}

TEST_F(NavigatingTest, ContextWithoutLoadLeavesOnlyWhatItHolds) {
  const auto order = Order(1);
  order->GetModel()->BusinessContext()->SetSupportsLoad(false);
  ExpectRaised(errItem_BusinessObjects, [&] { order->BusinessObjects("Lines"); });
}

TEST_F(NavigatingTest, ContextWithoutAddLoadsNothing) {
  const auto order = Order(1);
  order->GetModel()->BusinessContext()->SetSupportsAdd(false);
  ExpectRaised(errItem_BusinessObjects, [&] { order->BusinessObjects("Lines"); }, {.Text = "Index: 'Lines'"});
}

TEST_F(NavigatingTest, CollectionThatAListenerKeepsOutIsHandedOutAndReadAgainTheNextTime) {
  const auto order = Order(1);
  order->GetModel()->BusinessContext()->BeforeAdd += [](IBusinessObjects&, bool& Cancel) { Cancel = true; };
  const auto lines = order->BusinessObjects("Lines");
  EXPECT_EQ(lines->Count(), 2);
  EXPECT_EQ(order->BusinessObjectsCount(), 0);
  EXPECT_NE(order->BusinessObjects("Lines"), lines);
}

TEST_F(NavigatingTest, ListenerOfItemNotFoundSparesTheDatabase) {
  const auto order = Order(1);
  const auto supplied = Framework{}.CreateBusinessObjects({.Name = "Own"});
  shop_.File.Run("drop table lines");
  order->GetModel()->BusinessContext()->ItemNotFound +=
      [&](const Variant&, IBusinessObjectsPtr& Item) { Item = supplied; };
  EXPECT_EQ(order->BusinessObjects("Lines"), supplied);
}

TEST_F(NavigatingTest, ListenerOfTheObjectIsAskedOnceNoRelationshipLeadsThere) {
  const auto order = Order(1);
  const auto supplied = Framework{}.CreateBusinessObjects({.Name = "Own"});
  std::string heard;
  order->GetModel()->BusinessObjectsNotFound += [&](const Variant& index, IBusinessObjectsPtr& Found) {
    heard += index.AsText() + ";";
    Found = supplied;
  };
  order->BusinessObjects("Lines");
  EXPECT_EQ(order->BusinessObjects("Unknown"), supplied);
  EXPECT_EQ(heard, "Unknown;");
}

TEST_F(NavigatingTest, AsyncFlagOfARequestIsAccepted) {
  const BusinessContextPtr context = Order(1)->GetModel()->BusinessContext();
  EXPECT_EQ(context->GetBusinessObjects({.RelationshipName = "Lines", .AsyncFlag = true})->Count(), 2);
  EXPECT_EQ(IdOf(*Framework{}.GetBusinessObject({.ClassName = "Order", .KeyValue1 = 2, .AsyncFlag = true})), 2);
}

TEST_F(NavigatingTest, ExecuteKeepsToTheRelationshipOfItsContextWhateverNamesAreGiven) {
  RelateClearing("Id");
  const BusinessContextPtr context = Order(1)->GetModel()->BusinessContext();
  context->SetRelationshipName("Clearing");
  context->Execute({.ClassName = "Item", .ActionName = "Get"});
  EXPECT_EQ(shop_.File.Column("select Product from lines"), "Rug");
}

TEST_F(NavigatingTest, ExecuteWithoutNamesFollowsTheRelationshipAnew) {
  RelateClearing("Previous");
  const auto order = Order(3);
  const BusinessContextPtr context = order->GetModel()->BusinessContext();
  context->SetRelationshipName("Clearing");
  const PropertiesPtr former = context->Parameters();
  order->FindProperty("Previous")->SetValue(1);
  context->Execute();
  EXPECT_EQ(former->Item("OrderId")->Value(), Variant(2));
  EXPECT_EQ(shop_.File.Column("select Product from lines"), "Rug");
}

TEST_F(NavigatingTest, RelatedObjectsAreWrittenWithTheirParentWhenThatIsRecursive) {
  const auto order = Order(1);
  order->BusinessObjects("Lines")->Item(1)->FindProperty("Product")->SetValue("Torch");
  order->Update();
  EXPECT_EQ(shop_.File.Column("select Product from lines where OrderId = 1"), "Lamp|Chair");
  order->GetModel()->Update(true);
  EXPECT_EQ(shop_.File.Column("select Product from lines where OrderId = 1"), "Torch|Chair");
}

TEST_F(NavigatingTest, OneStatementFetchesTheRelatedObjects) {
  const BusinessContextPtr context = Order(2)->GetModel()->BusinessContext();
  context->LoadBusinessObjects({.RelationshipName = "Lines"});
  EXPECT_EQ(apartment_.Messages().Item("15129")->ExtraText(), "SELECT * FROM lines WHERE OrderId = 2");
}

TEST_F(NavigatingTest, StatementOfAFirstUseThroughTheObjectIsNotRecorded) {
  const auto order = Order(2);
  apartment_.Messages().Clear();
  order->BusinessObjects("Lines");
  EXPECT_EQ(apartment_.Messages().Count(), 0) << apartment_.Messages().Details();
}

}  // namespace
}  // namespace velmoria::test
