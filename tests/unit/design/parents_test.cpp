#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/messages.h"

namespace velmoria::test {
namespace {

// A member of every kind, each in the collection of its parent.
class ParentsTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  ServerPtr server_ = MakeDesign<ServerKind>({.Name = "Sales"});
  ClassPtr class_ = server_->Classes()->SetupItem({.Name = "Order"});
  ActionPtr action_ = class_->Actions()->SetupItem({.Name = "Get"});
  SourcePtr source_ = action_->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable});
  RelationshipPtr relationship_ = class_->Relationships()->SetupItem({.Name = "Lines"});
  LinkPtr link_ = relationship_->Links()->SetupItem({.Name = "Id"});
  DatabasePtr database_ = MakeDesign<DatabaseKind>({.Name = "Shop"});
  ConnectorPtr connector_ = database_->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctDSN});
};

/// Expects that a collection refuses a member which has a parent, and that both collections stay as they were. The
/// number of the parent is what is raised, with that of adding beside it.
template <class Collection, class Member>
void ExpectRefusedBy(const Ref<Collection>& collection, const Ref<Member>& member, int number, const char* text) {
  SCOPED_TRACE(number);
  const auto count = collection->Count();
  ExpectRaised(zErrors{number}, [&] { collection->Add(member); }, {.Text = text, .Count = 2});
  EXPECT_EQ(collection->Count(), count);
  EXPECT_EQ(static_cast<std::int32_t>(collection->Data()->Count()), count);
}

TEST_F(ParentsTest, ASecondParentOfEveryKindIsRefusedWithTheNameOfTheFirst) {
  ExpectRefusedBy(Make<Server>()->Classes(), class_, 15108, "Server: 'Sales'");
  ExpectRefusedBy(Make<Class>()->Actions(), action_, 15101, "Class: 'Order'");
  ExpectRefusedBy(Make<Class>()->Relationships(), relationship_, 15101, "Class: 'Order'");
  ExpectRefusedBy(Make<Action>()->Sources(), source_, 15100, "Action: 'Get'");
  ExpectRefusedBy(Make<Relationship>()->Links(), link_, 15107, "Relationship: 'Lines'");
  ExpectRefusedBy(Make<Database>()->Connectors(), connector_, 15103, "Database: 'Shop'");
}

TEST_F(ParentsTest, TheSameCollectionRefusesAMemberASecondTimeByItsHighestParent) {
  ExpectRefusedBy(server_->Classes(), class_, 15108, "Class.SetParent at");
  ExpectRefusedBy(class_->Actions(), action_, 15108, "Action.SetParents at");
  ExpectRefusedBy(class_->Relationships(), relationship_, 15108, "Relationship.SetParents at");
  ExpectRefusedBy(action_->Sources(), source_, 15108, "Source.SetParents at");
  ExpectRefusedBy(relationship_->Links(), link_, 15108, "Link.SetParents at");
  ExpectRefusedBy(database_->Connectors(), connector_, 15103, "Connector.SetParent at");
  EXPECT_EQ(class_->Actions()->Item(1), action_);
}

/// Expects that a collection which has the parents of its members takes them no second time.
template <class Collection, class Member>
void ExpectTakenOnce(const Ref<Collection>& collection, const Ref<Member>& member, int number, const char* routine) {
  ExpectRaised(zErrors{number}, [&] { collection->SetParents(member->HeldParents()); }, {.Text = routine, .Count = 1});
}

TEST_F(ParentsTest, ACollectionTakesEachParentOnceToo) {
  ExpectTakenOnce(server_->Classes(), class_, 15108, "Classes.SetParent at");
  ExpectTakenOnce(class_->Actions(), action_, 15108, "Actions.SetParents at");
  ExpectTakenOnce(class_->Relationships(), relationship_, 15108, "Relationships.SetParents at");
  ExpectTakenOnce(action_->Sources(), source_, 15108, "Sources.SetParents at");
  ExpectTakenOnce(relationship_->Links(), link_, 15108, "Links.SetParents at");
  ExpectTakenOnce(database_->Connectors(), connector_, 15103, "Connectors.SetParent at");
}

TEST_F(ParentsTest, ACollectionWithoutServerRefusesASecondClassAndStopsThere) {
  const auto actions = MakeDesign<ClassKind>({.Name = "Free"})->Actions();
  ExpectRaised(zErrors{15101}, [&] { actions->SetParents(action_->HeldParents()); },
               {.Text = "Class: 'Free'", .Count = 1});
  EXPECT_EQ(actions->ServerName(), "Sales");
  EXPECT_EQ(actions->ClassName(), "Free");
}

TEST_F(ParentsTest, MembersWithoutParentsMayBelongToTwoCollectionsButToNoneTwice) {
  const auto servers = ServerSample::Bound();
  servers->Add(server_);
  ServerSample::Bound()->Add(server_);
  ExpectRaised(zErrors{15016}, [&] { servers->Add(server_); }, {.Text = "Name: 'Sales'"});
  const auto databases = DatabaseSample::Bound();
  databases->Add(database_);
  DatabaseSample::Bound()->Add(database_);
  ExpectRaised(zErrors{15011}, [&] { databases->Add(database_); }, {.Text = "Name: 'Shop'"});
  EXPECT_EQ(servers->Count() + databases->Count(), 2);
}

TEST_F(ParentsTest, ARefusedParentIsRecordedAsAProblemOfAddingToo) {
  EXPECT_THROW(Make<Server>()->Classes()->Add(class_), Error);
  const auto message = Apartment().Messages->Item("15007");
  ASSERT_TRUE(message);
  EXPECT_NE(message->Description().find("Name: 'Order'"), std::string::npos);
}

TEST_F(ParentsTest, AParentTakenBeforeTheRefusedOneStays) {
  const auto action = MakeDesign<ClassKind>({.Name = "Free"})->Actions()->SetupItem({.Name = "One"});
  ExpectRaised(zErrors{15101}, [&] { class_->Actions()->Add(action); }, {.Text = "Class: 'Free'"});
  EXPECT_EQ(action->ServerName(), "Sales");
  EXPECT_EQ(action->ClassName(), "Free");
}

TEST_F(ParentsTest, AFailedAddPoisonsTheMember) {
  const auto object = MakeDesign<ClassKind>({.Name = "Line"});
  ExpectRaised(zErrors{15007}, [&] { server_->Classes()->Add(object, {.Before = 1, .After = 1}); });
  ExpectRaised(zErrors{15108}, [&] { server_->Classes()->Add(object); }, {.Text = "Server: 'Sales'"});
}

TEST_F(ParentsTest, AMemberWhosePlaceIsMissingStaysInTheDefinitionsAlone) {
  static_cast<void>(class_->Actions()->Count());
  const auto other = class_->Data()->ActionsData();
  other->SetupItem({.Name = "Other"});
  ExpectRaised(zErrors{15003},
               [&] { class_->Actions()->Add(MakeDesign<ActionKind>({.Name = "New"}), {.After = "Other"}); });
  EXPECT_EQ(class_->Actions()->Count(), 1);
  EXPECT_TRUE(other->Find("New"));
}

TEST_F(ParentsTest, ParentsReachChildrenThatAreThere) {
  const auto server = MakeDesign<ServerKind>({.Name = "Stock"});
  const auto object = MakeDesign<ClassKind>({.Name = "Item"});
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  const auto source = action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable});
  static_cast<void>(action->KeyFormat()->Properties());
  static_cast<void>(source->Parameters());
  server->Classes()->Add(object);
  EXPECT_EQ(object->ServerName(), "Stock");
  EXPECT_EQ(action->ServerName(), "Stock");
  EXPECT_EQ(source->ServerName(), "Stock");
  EXPECT_EQ(source->ClassName(), "Item");
  EXPECT_EQ(source->ActionName(), "Get");
  EXPECT_EQ(source->Parameters()->ServerName(), "Stock");
  EXPECT_EQ(action->Sources()->ServerName(), "Stock");
}

TEST_F(ParentsTest, RemovedObjectsLoseTheirParentsAndKeepTheirChildren) {
  source_->SetSourceText("orders");
  server_->Classes()->Remove("Order");
  EXPECT_EQ(class_->ServerName(), "");
  EXPECT_EQ(action_->ServerName(), "");
  EXPECT_EQ(source_->ServerName(), "");
  EXPECT_EQ(source_->ClassName(), "Order");
  EXPECT_EQ(class_->Actions()->Item("Get")->Sources()->Item(engODBC)->SourceText(), "orders");
}

TEST_F(ParentsTest, ARemovedObjectKeepsItsChildrenWhenWhatItCameFromIsGone) {
  server_->Classes()->Remove("Order");
  const ClassDataPtr definition = class_->Data();
  server_ = nullptr;
  class_ = nullptr;
  const auto facade = Make<Class>();
  facade->Bind(definition, Parents());
  EXPECT_EQ(facade->Actions()->Item("Get")->Sources()->Item(engODBC)->Engine(), engODBC);
  EXPECT_EQ(facade->Relationships()->Item("Lines")->Links()->Item("Id")->Name(), "Id");
}

TEST_F(ParentsTest, ARemovedObjectIsAddedElsewhereAndItsChildrenFollow) {
  const auto stock = MakeDesign<ServerKind>({.Name = "Stock"});
  server_->Classes()->Remove("Order");
  stock->Classes()->Add(class_);
  EXPECT_EQ(source_->ServerName(), "Stock");
  EXPECT_EQ(link_->ServerName(), "Stock");
}

TEST_F(ParentsTest, ChildrenOutliveTheFacadesAboveThem) {
  server_ = nullptr;
  class_ = nullptr;
  EXPECT_EQ(action_->ServerName(), "Sales");
  EXPECT_EQ(action_->ClassName(), "Order");
}

}  // namespace
}  // namespace velmoria::test
