#include "velmoria/design/relationship.h"

#include <functional>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

class RelationshipTest : public testing::Test {
 protected:
  static RelationshipPtr Free(const RelationshipFields& fields) { return MakeDesign<RelationshipKind>(fields); }
  RelationshipPtr AddLines() {
    return order_->Relationships()->SetupItem(
        {.Name = "Lines", .RelatedClassName = "Line", .RelatedActionName = "All"});
  }

  ScopedApartment apartment_;
  ServerPtr sales_ = MakeDesign<ServerKind>({.Name = "Sales"});
  ClassPtr order_ = sales_->Classes()->SetupItem({.Name = "Order"});
};

TEST_F(RelationshipTest, SetupItemStoresEveryField) {
  const auto lines = order_->Relationships()->SetupItem({.Name = "Lines",
                                                         .Association = raManyToMany,
                                                         .RelatedServerName = "Stock",
                                                         .RelatedClassName = "Item",
                                                         .RelatedActionName = "All",
                                                         .Description = "d",
                                                         .Locked = true});
  EXPECT_EQ(lines->Name(), "Lines");
  EXPECT_EQ(lines->Association(), raManyToMany);
  EXPECT_EQ(lines->RelatedServerName(), "Stock");
  EXPECT_EQ(lines->RelatedClassName(), "Item");
  EXPECT_EQ(lines->RelatedActionName(), "All");
  EXPECT_EQ(lines->Description(), "d");
  EXPECT_TRUE(lines->Locked());
}

TEST_F(RelationshipTest, ByNameAloneItIsOneToManyAndLeadsNowhere) {
  const auto lines = Free({.Name = "Lines"});
  EXPECT_EQ(lines->Association(), raOneToMany);
  EXPECT_EQ(lines->RelatedServerName() + lines->RelatedClassName() + lines->RelatedActionName(), "");
  EXPECT_EQ(lines->Description(), "");
  EXPECT_FALSE(lines->Locked());
}

TEST_F(RelationshipTest, SettersStoreAndMakeDirty) {
  const std::function<void(Relationship&)> setters[] = {[](Relationship& item) { item.SetAssociation(raManyToOne); },
                                                        [](Relationship& item) { item.SetRelatedServerName("Stock"); },
                                                        [](Relationship& item) { item.SetRelatedClassName("Item"); },
                                                        [](Relationship& item) { item.SetRelatedActionName("All"); }};
  const auto all = Make<Relationship>();
  for (const auto& set : setters) {
    const auto one = Make<Relationship>();
    set(*one);
    EXPECT_TRUE(one->Dirty());
    set(*all);
  }
  EXPECT_EQ(all->Association(), raManyToOne);
  EXPECT_EQ(all->RelatedServerName() + all->RelatedClassName() + all->RelatedActionName(), "StockItemAll");
}

TEST_F(RelationshipTest, SettingPresentValuesLeavesItClean) {
  const auto clean = Make<Relationship>();
  clean->SetAssociation(raOneToMany);
  clean->SetRelatedServerName("");
  clean->SetRelatedClassName("");
  clean->SetRelatedActionName("");
  EXPECT_FALSE(clean->Dirty());
}

TEST_F(RelationshipTest, ALockedOneAcceptsEverySetter) {
  const auto lines = Free({.Name = "Lines", .Locked = true});
  lines->SetDescription("d");
  lines->SetAssociation(raOneToOne);
  lines->SetRelatedServerName("Stock");
  lines->SetRelatedClassName("Item");
  lines->SetRelatedActionName("All");
  EXPECT_EQ(lines->Description(), "d");
  EXPECT_EQ(lines->Association(), raOneToOne);
  EXPECT_EQ(lines->RelatedServerName() + lines->RelatedClassName() + lines->RelatedActionName(), "StockItemAll");
  EXPECT_TRUE(lines->Locked());
}

TEST_F(RelationshipTest, ALockedOneTakesLinks) {
  const auto lines = Free({.Name = "Lines", .Locked = true});
  lines->Links()->SetupItem({.Name = "Id"});
  EXPECT_EQ(lines->Links()->Count(), 1);
}

TEST_F(RelationshipTest, AssociationsHaveNames) {
  const auto nameOf = [](zAssociations association) {
    return Free({.Name = "Lines", .Association = association})->AssociationName();
  };
  EXPECT_EQ(nameOf(raOneToMany), "One to Many");
  EXPECT_EQ(nameOf(raOneToOne), "One to One");
  EXPECT_EQ(nameOf(raManyToOne), "Many to One");
  EXPECT_EQ(nameOf(raManyToMany), "Many to Many");
}

TEST_F(RelationshipTest, RelatedNamesMayBeThoseOfNothing) {
  const auto lines = AddLines();
  lines->SetRelatedServerName("Nowhere");
  lines->SetRelatedClassName("Nobody");
  lines->SetRelatedActionName("Nothing");
  EXPECT_EQ(lines->RelatedServerName(), "Nowhere");
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(RelationshipTest, NamesOfTheParents) {
  const auto lines = AddLines();
  EXPECT_EQ(lines->ServerName(), "Sales");
  EXPECT_EQ(lines->ClassName(), "Order");
  EXPECT_EQ(Make<Relationship>()->ServerName(), "");
  EXPECT_EQ(Make<Relationship>()->ClassName(), "");
}

TEST_F(RelationshipTest, DetailsHaveSingleBlanksAndNotTheName) {
  EXPECT_EQ(Free({.Name = "Lines",
                  .Association = raManyToOne,
                  .RelatedServerName = "Stock",
                  .RelatedClassName = "Item",
                  .RelatedActionName = "All"})
                ->Details(),
            "Association: 'Many to One' Related Server: 'Stock' Related Class: 'Item' Related Action: 'All'");
}

TEST_F(RelationshipTest, LinksAreMadeOnceAndKnowWhereTheyAre) {
  const auto lines = AddLines();
  EXPECT_EQ(lines->Links(), lines->Links());
  const auto link = lines->Links()->SetupItem({.Name = "Id"});
  EXPECT_EQ(link->ServerName(), "Sales");
  EXPECT_EQ(link->ClassName(), "Order");
  EXPECT_EQ(link->RelationshipName(), "Lines");
}

TEST_F(RelationshipTest, UserPropertiesKnowTheRelationship) {
  const auto user = AddLines()->UserProperties();
  EXPECT_EQ(user->RelationshipName(), "Lines");
  EXPECT_EQ(user->ClassName(), "Order");
  EXPECT_EQ(user->LinkName(), "");
}

// Dirty.

TEST_F(RelationshipTest, UntouchedLinksLeaveItClean) {
  const auto lines = Make<Relationship>();
  EXPECT_EQ(lines->Links()->Count(), 0);
  EXPECT_FALSE(lines->Dirty());
}

TEST_F(RelationshipTest, ALinkThatCameMakesItDirty) {
  const auto lines = Make<Relationship>();
  lines->Links()->Add(Make<Link>());
  EXPECT_TRUE(lines->Dirty());
}

TEST_F(RelationshipTest, AChangedDefinitionBelowMakesTheClassDirty) {
  const auto object = Make<Class>();
  EXPECT_EQ(object->Relationships()->Count(), 0);
  EXPECT_FALSE(object->Dirty());
  object->Relationships()->Add(Make<Relationship>());
  EXPECT_TRUE(object->Dirty());
}

// Copies.

TEST_F(RelationshipTest, ACopyHasTheFieldsButNoParents) {
  const auto lines = AddLines();
  lines->SetAssociation(raManyToMany);
  const auto copy = lines->Copy("Lines2");
  EXPECT_EQ(copy->Name(), "Lines2");
  EXPECT_EQ(copy->Association(), raManyToMany);
  EXPECT_EQ(copy->RelatedClassName() + copy->RelatedActionName(), "LineAll");
  EXPECT_EQ(copy->ServerName() + copy->ClassName(), "");
  EXPECT_EQ(order_->Relationships()->Count(), 1);
}

TEST_F(RelationshipTest, ARecursiveCopyTakesLinksWithTheirEndsAndUserProperties) {
  const auto lines = AddLines();
  lines->UserProperties()->SetupItem({.Name = "Note"});
  lines->Links()->SetupItem({.Name = "Id"})->Property()->SetName("OrderId");
  const auto copy = lines->Copy();
  const auto link = copy->Links()->Item("Id");
  EXPECT_EQ(link->Property()->Name(), "OrderId");
  EXPECT_EQ(link->RelationshipName(), "Lines");
  EXPECT_NE(link->Data(), lines->Links()->Item("Id")->Data());
  EXPECT_EQ(copy->UserProperties()->Item(1)->Name(), "Note");
}

TEST_F(RelationshipTest, AFlatCopyTakesNeitherLinksNorUserProperties) {
  const auto lines = AddLines();
  lines->UserProperties()->SetupItem({.Name = "Note"});
  lines->Links()->SetupItem({.Name = "Id"});
  const auto copy = lines->Copy("", false);
  EXPECT_EQ(copy->Links()->Count(), 0);
  EXPECT_EQ(copy->UserProperties()->Count(), 0);
}

TEST_F(RelationshipTest, ACopyOfTheClassTakesItAlong) {
  AddLines()->Links()->SetupItem({.Name = "Id"});
  EXPECT_EQ(order_->Copy()->Relationships()->Item("Lines")->Links()->Count(), 1);
  EXPECT_EQ(order_->Copy("", false)->Relationships()->Count(), 0);
}

// Parents.

TEST_F(RelationshipTest, ParentsReachLinksTheirEndsAndUserPropertiesThatAreThere) {
  const auto lines = Free({.Name = "Lines"});
  const auto link = lines->Links()->SetupItem({.Name = "Id"});
  const auto property = link->Property();
  const auto user = lines->UserProperties();
  order_->Relationships()->Add(lines);
  EXPECT_EQ(lines->ClassName(), "Order");
  EXPECT_EQ(link->ServerName(), "Sales");
  EXPECT_EQ(link->ClassName(), "Order");
  EXPECT_EQ(property->ServerName(), "Sales");
  EXPECT_EQ(user->ClassName(), "Order");
}

TEST_F(RelationshipTest, ASecondServerIsRefused) {
  const auto other = MakeDesign<ServerKind>({.Name = "Stock"})->Classes()->SetupItem({.Name = "Item"});
  const auto lines = AddLines();
  ExpectRaised(
      zErrors{15108}, [&] { other->Relationships()->Add(lines); },
      {.Text = "Object already has a Server parent and it can only belong to one.  Server: 'Sales'", .Count = 2});
}

TEST_F(RelationshipTest, ASecondClassIsRefused) {
  const auto lines = MakeDesign<ClassKind>({.Name = "Free"})->Relationships()->SetupItem({.Name = "Lines"});
  ExpectRaised(zErrors{15101}, [&] { order_->Relationships()->Add(lines); }, {.Text = "Class: 'Free'", .Count = 2});
  EXPECT_EQ(lines->ServerName(), "Sales");
}

TEST_F(RelationshipTest, RemovedItLosesItsParentsAndKeepsItsLinks) {
  const auto lines = AddLines();
  const auto link = lines->Links()->SetupItem({.Name = "Id"});
  const auto property = link->Property();
  order_->Relationships()->Remove("Lines");
  EXPECT_EQ(lines->ServerName() + lines->ClassName(), "");
  EXPECT_EQ(link->ServerName() + link->ClassName(), "");
  EXPECT_EQ(property->ServerName() + property->ClassName(), "");
  EXPECT_EQ(link->RelationshipName(), "Lines");
  EXPECT_EQ(lines->Links()->Item("Id"), link);
}

}  // namespace
}  // namespace velmoria::test
