#include "velmoria/design/server.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class ServerTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  ServersPtr servers_ = Apartment().Servers;
};

TEST_F(ServerTest, WithoutNameThereIsNotEnoughInformation) {
  ExpectRaised(zErrors{15081}, [&] { servers_->SetupItem({.Name = ""}); },
               {.Text = "Name: ''  Filename: ''", .Count = 1});
  EXPECT_EQ(servers_->Count(), 0);
}

TEST_F(ServerTest, SetupItemStoresEveryField) {
  const auto server = servers_->SetupItem(
      {.Name = "Sales", .ActiveXComponent = "SalesLib", .Description = "d", .Locked = true, .UseMetaData = false});
  EXPECT_EQ(server->Name(), "Sales");
  EXPECT_EQ(server->ActiveXComponent(), "SalesLib");
  EXPECT_EQ(server->Description(), "d");
  EXPECT_TRUE(server->Locked());
  EXPECT_FALSE(server->UseMetaData());
  EXPECT_TRUE(servers_->SetupItem({.Name = "Stock"})->UseMetaData());
}

TEST_F(ServerTest, TheCollectionOfTheFrameworkIsRegisteredAndOthersAreNot) {
  EXPECT_TRUE(servers_->Registered());
  EXPECT_FALSE(Make<Servers>()->Registered());
}

TEST_F(ServerTest, ANameSetDirectlyLeavesTheOldKey) {
  const auto server = servers_->SetupItem({.Name = "Sales"});
  server->SetName("Trade");
  EXPECT_EQ(server->Name(), "Trade");
  EXPECT_EQ(servers_->Item("Sales"), server);
  ExpectRaised(zErrors{15074}, [&] { servers_->Item("Trade"); }, {.Text = "Index: 'Trade'"});
}

TEST_F(ServerTest, AServerWithANameSetDirectlyCanBeRemovedByItsKey) {
  servers_->SetupItem({.Name = "Sales"})->SetName("Trade");
  servers_->Remove("Sales");
  EXPECT_EQ(servers_->Count(), 0);
}

TEST_F(ServerTest, WithoutAFileItIsModifiedNow) {
  const auto server = servers_->SetupItem({.Name = "Sales"});
  apartment_.Clock().Advance(3600);
  EXPECT_EQ(server->DateModified(), apartment_.Clock().Time);
  EXPECT_NE(server->DateModified(), server->DateCreated());
}

TEST_F(ServerTest, UserPropertiesMakeItDirtyOnlyWhileThereAreNoClasses) {
  const auto server = Make<Server>();
  server->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_TRUE(server->Dirty());
  EXPECT_EQ(server->Classes()->Count(), 0);
  EXPECT_FALSE(server->Dirty());
}

TEST_F(ServerTest, RecursiveCopyTakesClassesAndUserProperties) {
  const auto server = servers_->SetupItem({.Name = "Sales"});
  server->Classes()->SetupItem({.Name = "Order"});
  server->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = server->Copy("Trade");
  EXPECT_EQ(copy->Classes()->Item("Order")->ServerName(), "Trade");
  EXPECT_EQ(copy->UserProperties()->Count(), 1);
  EXPECT_NE(copy->Classes()->Item("Order")->Data(), server->Classes()->Item("Order")->Data());
}

TEST_F(ServerTest, FlatCopyTakesNoChildren) {
  const auto server = servers_->SetupItem({.Name = "Sales"});
  server->Classes()->SetupItem({.Name = "Order"});
  server->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = server->Copy("", false);
  EXPECT_EQ(copy->Classes()->Count(), 0);
  EXPECT_EQ(copy->UserProperties()->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
