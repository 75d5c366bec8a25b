#include "velmoria/design/server.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class ServerTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  ServersPtr servers_ = Apartment().Servers;
};

TEST_F(ServerTest, SetupItemStoresEveryField) {
  const auto server = servers_->SetupItem({.Name = "Sales",
                                           .FileName = "/sales.vsd",
                                           .ActiveXComponent = "SalesLib",
                                           .Description = "d",
                                           .LoadOnStartup = true,
                                           .Locked = true,
                                           .UseMetaData = false});
  EXPECT_EQ(server->Name(), "Sales");
  EXPECT_EQ(server->FileName(), "/sales.vsd");
  EXPECT_EQ(server->ActiveXComponent(), "SalesLib");
  EXPECT_EQ(server->Description(), "d");
  EXPECT_TRUE(server->LoadOnStartup());
  EXPECT_TRUE(server->Locked());
  EXPECT_FALSE(server->UseMetaData());
  EXPECT_TRUE(servers_->SetupItem({.Name = "Stock"})->UseMetaData());
}

TEST_F(ServerTest, ByNameAloneItHasNoFileAndUsesMetaData) {
  const auto server = servers_->SetupItem({.Name = "Sales"});
  EXPECT_EQ(server->FileName(), "");
  EXPECT_FALSE(server->LoadOnStartup());
  EXPECT_FALSE(server->Locked());
  EXPECT_TRUE(server->UseMetaData());
}

TEST_F(ServerTest, SettersStore) {
  const auto server = Make<Server>();
  server->SetFileName("/sales.vsd");
  server->SetActiveXComponent("SalesLib");
  server->SetLoadOnStartup(true);
  server->SetUseMetaData(false);
  EXPECT_EQ(server->FileName() + server->ActiveXComponent(), "/sales.vsdSalesLib");
  EXPECT_TRUE(server->LoadOnStartup());
  EXPECT_FALSE(server->UseMetaData());
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

TEST_F(ServerTest, ACopyHasAFileOfItsOwnWithoutPlace) {
  const auto server = servers_->SetupItem({.Name = "Sales", .FileName = "/sales.vsd", .LoadOnStartup = true});
  const auto copy = server->Copy("Trade");
  EXPECT_EQ(copy->FileName(), "");
  EXPECT_TRUE(copy->LoadOnStartup());
  EXPECT_EQ(copy->Details(), "Server: 'Trade'  ActiveXComponent: ''  FileName: ''");
  EXPECT_EQ(server->FileName(), "/sales.vsd");
}

TEST_F(ServerTest, LoadingAllDetailMakesTheClassesAndSoHidesUserProperties) {
  const auto server = Make<Server>();
  server->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_TRUE(server->Dirty());
  server->Data()->LoadAllDetail();
  EXPECT_FALSE(server->Dirty());
}

TEST_F(ServerTest, ARemovedServerIsNotLoadedFirst) {
  const auto server = Make<Server>();
  server->UserProperties()->SetupItem({.Name = "Note"});
  servers_->Add(server);
  servers_->Remove(1);
  EXPECT_TRUE(server->Dirty());
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
