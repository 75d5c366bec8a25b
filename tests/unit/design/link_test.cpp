#include "velmoria/design/link.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/properties/attributes.h"

namespace velmoria::test {
namespace {

class LinkTest : public testing::Test {
 protected:
  static LinkPtr Free(const LinkFields& fields) { return MakeDesign<LinkKind>(fields); }
  LinkPtr AddLink() { return lines_->Links()->SetupItem({.Name = "Id"}); }
  /// A link without a mark of change.
  static LinkPtr Clean() {
    auto link = Make<Link>();
    EXPECT_FALSE(link->Dirty());
    return link;
  }

  ScopedApartment apartment_;
  ServerPtr sales_ = MakeDesign<ServerKind>({.Name = "Sales"});
  ClassPtr order_ = sales_->Classes()->SetupItem({.Name = "Order"});
  RelationshipPtr lines_ = order_->Relationships()->SetupItem({.Name = "Lines"});
};

TEST_F(LinkTest, SetupItemStoresEveryField) {
  const auto link = lines_->Links()->SetupItem({.Name = "Id", .Description = "d", .Locked = true});
  EXPECT_EQ(link->Name(), "Id");
  EXPECT_EQ(link->Description(), "d");
  EXPECT_TRUE(link->Locked());
}

TEST_F(LinkTest, ALockedOneAcceptsADescription) {
  const auto link = Free({.Name = "Id", .Locked = true});
  link->SetDescription("d");
  EXPECT_EQ(link->Description(), "d");
}

TEST_F(LinkTest, LockedDoesNotReachItsEnds) {
  const auto link = Free({.Name = "Id", .Locked = true});
  link->Property()->SetName("Id");
  link->Parameter()->SetName("OrderId");
  EXPECT_EQ(link->Property()->Name(), "Id");
  EXPECT_EQ(link->Parameter()->Name(), "OrderId");
}

TEST_F(LinkTest, NamesOfTheParents) {
  const auto link = AddLink();
  EXPECT_EQ(link->ServerName(), "Sales");
  EXPECT_EQ(link->ClassName(), "Order");
  EXPECT_EQ(link->RelationshipName(), "Lines");
  const auto alone = Make<Link>();
  EXPECT_EQ(alone->ServerName() + alone->ClassName() + alone->RelationshipName(), "");
}

TEST_F(LinkTest, DetailsAreItsName) { EXPECT_EQ(Free({.Name = "Id"})->Details(), "Link: 'Id'"); }

TEST_F(LinkTest, EveryNewLinkIsOfPropertyAndParameter) {
  EXPECT_EQ(AddLink()->LinkType(), ltPropertyParameter);
  EXPECT_EQ(Make<Links>()->SetupItem({.Name = "Id"})->LinkType(), ltPropertyParameter);
  EXPECT_EQ(Make<Link>()->LinkType(), ltPropertyParameter);
}

TEST_F(LinkTest, ACopyKeepsAStoredType) {
  const auto link = AddLink();
  link->Data()->SetLinkType(ltIdentifierParameter);
  EXPECT_EQ(link->Copy()->LinkType(), ltIdentifierParameter);
  EXPECT_EQ(link->Copy("", false)->LinkType(), ltIdentifierParameter);
}

// Both ends.

TEST_F(LinkTest, EndsThatNobodyDescribedHaveNoName) {
  const auto link = AddLink();
  EXPECT_EQ(link->Property()->Name(), "");
  EXPECT_EQ(link->Parameter()->Name(), "");
  EXPECT_TRUE(link->Property()->EmptyValue());
}

TEST_F(LinkTest, EndsBearTheStyleOfTheirPlace) {
  const auto link = AddLink();
  EXPECT_EQ(link->Property()->Data()->Style(), psLinkProperty);
  EXPECT_EQ(link->Parameter()->Data()->Style(), psLinkParameter);
}

TEST_F(LinkTest, OnlyTheParameterIsAnInput) {
  const auto link = AddLink();
  EXPECT_EQ(link->Property()->Flags(), pfNone);
  EXPECT_EQ(link->Parameter()->Flags(), pfInput);
}

TEST_F(LinkTest, EndsAreKept) {
  const auto link = AddLink();
  EXPECT_EQ(link->Property(), link->Property());
  EXPECT_EQ(link->Parameter(), link->Parameter());
  EXPECT_NE(link->Property(), link->Parameter());
}

TEST_F(LinkTest, FacadesOverOneDefinitionShareTheEnds) {
  const auto link = AddLink();
  const auto other = Make<Link>();
  other->Bind(link->Data(), Parents());
  link->Property()->SetName("Id");
  EXPECT_EQ(other->Property()->Name(), "Id");
  EXPECT_NE(other->Property(), link->Property());
}

TEST_F(LinkTest, EndsKnowWhereTheyAre) {
  const auto link = AddLink();
  for (const auto& end : {link->Property(), link->Parameter()}) {
    EXPECT_EQ(end->ServerName(), "Sales");
    EXPECT_EQ(end->ClassName(), "Order");
  }
}

TEST_F(LinkTest, UserPropertiesKnowTheLink) {
  const auto user = AddLink()->UserProperties();
  EXPECT_EQ(user->LinkName(), "Id");
  EXPECT_EQ(user->RelationshipName(), "Lines");
  EXPECT_EQ(user->ClassName(), "Order");
}

// Dirty.

TEST_F(LinkTest, AskingForItsEndsLeavesItClean) {
  const auto link = Clean();
  static_cast<void>(link->Property()->Name());
  static_cast<void>(link->Parameter()->Name());
  EXPECT_FALSE(link->Dirty());
}

TEST_F(LinkTest, AChangedPropertyMakesItDirty) {
  const auto link = Clean();
  link->Property()->SetName("Id");
  EXPECT_TRUE(link->Dirty());
}

TEST_F(LinkTest, AChangedParameterMakesItDirty) {
  const auto link = Clean();
  link->Parameter()->SetName("OrderId");
  EXPECT_TRUE(link->Dirty());
}

TEST_F(LinkTest, AStoredTypeLeavesItClean) {
  const auto link = Clean();
  link->Data()->SetLinkType(ltPropertyIdentifier);
  EXPECT_EQ(link->LinkType(), ltPropertyIdentifier);
  EXPECT_FALSE(link->Dirty());
}

// Copies.

TEST_F(LinkTest, ACopyTakesBothEndsAndUserProperties) {
  const auto link = AddLink();
  link->Property()->SetName("Id");
  link->Parameter()->SetName("OrderId");
  link->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = link->Copy("Id2");
  EXPECT_EQ(copy->Name(), "Id2");
  EXPECT_EQ(copy->Property()->Name(), "Id");
  EXPECT_EQ(copy->Parameter()->Name(), "OrderId");
  EXPECT_EQ(copy->UserProperties()->Item(1)->Name(), "Note");
}

TEST_F(LinkTest, AFlatCopyTakesBothEndsWithoutUserProperties) {
  const auto link = AddLink();
  link->Property()->SetName("Id");
  link->Parameter()->SetName("OrderId");
  link->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = link->Copy("", false);
  EXPECT_EQ(copy->Property()->Name(), "Id");
  EXPECT_EQ(copy->Parameter()->Name(), "OrderId");
  EXPECT_EQ(copy->UserProperties()->Count(), 0);
}

TEST_F(LinkTest, AFlatCopyOfAnEndHasNoAttributes) {
  const auto link = AddLink();
  link->Property()->Attributes()->SetupItem({.Name = "Mark", .Value = 1});
  EXPECT_EQ(link->Copy()->Property()->Attributes()->Count(), 1);
  EXPECT_EQ(link->Copy("", false)->Property()->Attributes()->Count(), 0);
}

TEST_F(LinkTest, CopiedEndsKeepTheirStyleAndAreTheCopysOwn) {
  const auto link = AddLink();
  link->Property()->SetName("Id");
  const auto copy = link->Copy();
  copy->Property()->SetName("Other");
  EXPECT_EQ(link->Property()->Name(), "Id");
  EXPECT_EQ(copy->Property()->Data()->Style(), psLinkProperty);
  EXPECT_EQ(copy->Parameter()->Data()->Style(), psLinkParameter);
}

TEST_F(LinkTest, ACopyHasNoParents) {
  const auto copy = AddLink()->Copy();
  EXPECT_EQ(copy->ServerName() + copy->ClassName() + copy->RelationshipName(), "");
  EXPECT_EQ(copy->Property()->ServerName(), "");
}

// Parents.

TEST_F(LinkTest, ParentsReachEndsAndUserPropertiesThatAreThere) {
  const auto link = Free({.Name = "Id"});
  const auto property = link->Property();
  const auto parameter = link->Parameter();
  const auto user = link->UserProperties();
  lines_->Links()->Add(link);
  EXPECT_EQ(property->ClassName(), "Order");
  EXPECT_EQ(parameter->ClassName(), "Order");
  EXPECT_EQ(user->RelationshipName(), "Lines");
  EXPECT_EQ(property->Data()->Style(), psLinkProperty);
  EXPECT_EQ(parameter->Data()->Style(), psLinkParameter);
}

TEST_F(LinkTest, EndsMadeAfterwardsHaveTheParents) {
  const auto link = Free({.Name = "Id"});
  lines_->Links()->Add(link);
  EXPECT_EQ(link->Property()->ServerName(), "Sales");
}

TEST_F(LinkTest, RemovedItsEndsAndUserPropertiesLoseTheParents) {
  const auto link = AddLink();
  const auto property = link->Property();
  const auto parameter = link->Parameter();
  const auto user = link->UserProperties();
  property->SetName("Id");
  lines_->Links()->Remove("Id");
  EXPECT_EQ(link->ServerName() + link->ClassName() + link->RelationshipName(), "");
  EXPECT_EQ(property->ServerName() + property->ClassName(), "");
  EXPECT_EQ(parameter->ServerName() + parameter->ClassName(), "");
  EXPECT_EQ(user->RelationshipName(), "");
  EXPECT_EQ(user->LinkName(), "Id");
  EXPECT_EQ(link->Property()->Name(), "Id");
}

TEST_F(LinkTest, RemovedItMayJoinAnotherRelationship) {
  const auto link = AddLink();
  const auto property = link->Property();
  lines_->Links()->Remove("Id");
  MakeDesign<ClassKind>({.Name = "Bill"})->Relationships()->SetupItem({.Name = "Orders"})->Links()->Add(link);
  EXPECT_EQ(link->RelationshipName(), "Orders");
  EXPECT_EQ(property->ClassName(), "Bill");
}

TEST_F(LinkTest, ASecondServerIsRefusedFirst) {
  const auto link = AddLink();
  ExpectRaised(
      zErrors{15108}, [&] { lines_->Links()->Add(link); },
      {.Text = "Object already has a Server parent and it can only belong to one.  Server: 'Sales'", .Count = 2});
}

TEST_F(LinkTest, ASecondClassIsRefused) {
  const auto free = MakeDesign<ClassKind>({.Name = "Free"})->Relationships()->SetupItem({.Name = "Any"});
  const auto link = free->Links()->SetupItem({.Name = "Id"});
  ExpectRaised(zErrors{15101}, [&] { lines_->Links()->Add(link); }, {.Text = "Class: 'Free'", .Count = 2});
}

TEST_F(LinkTest, ASecondRelationshipIsRefused) {
  const auto link = MakeDesign<RelationshipKind>({.Name = "Bills"})->Links()->SetupItem({.Name = "Id"});
  ExpectRaised(
      zErrors{15107}, [&] { lines_->Links()->Add(link); },
      {.Text = "Object already has a Relationship parent and it can only belong to one.  Relationship: 'Bills'",
       .Count = 2});
  EXPECT_EQ(link->ClassName(), "Order");
  EXPECT_EQ(link->RelationshipName(), "Bills");
}

TEST_F(LinkTest, EndsHaveTheParentsOfTheLinkAndNotTheLinkItself) {
  const auto notes = Free({.Name = "Number"})->UserProperties();
  const auto end = Free({.Name = "Id"})->Property();
  notes->Add(end);
  EXPECT_EQ(notes->Item(1), end);
}

TEST_F(LinkTest, AUserPropertyBelongsToOneLinkWhichTheRefusalShowsByItsDetails) {
  const auto note = Free({.Name = "Id"})->UserProperties()->SetupItem({.Name = "Note"});
  ExpectRaised(zErrors{15105}, [&] { Free({.Name = "Number"})->UserProperties()->Add(note); },
               {.Text = "Object already has a Link parent and it can only belong to one.  Link: 'Link: 'Id''"});
}

}  // namespace
}  // namespace velmoria::test
