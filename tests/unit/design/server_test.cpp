#include "velmoria/design/server.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"

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

TEST_F(ServerTest, AMissingFileWithoutANameIsReportedAsADatabases) {
  ExpectRaised(zErrors{15046}, [&] { servers_->SetupItem({.Name = "", .FileName = "/nowhere/sales.vsd"}); },
               {.Text = "Database: ''  Filename: '/nowhere/sales.vsd'", .Count = 1});
  EXPECT_EQ(servers_->Count(), 0);
}

TEST_F(ServerTest, AnExistingFileWithoutANameIsNotReadAndChangesNothing) {
  const TemporaryFolder folder;
  const auto path = folder.Path("sales.vsd");
  WriteText(path, "kept");
  ExpectRaised(zErrors{15043}, [&] { servers_->SetupItem({.Name = "", .FileName = path}); },
               {.Text = "Server: ''  FileName: '" + path + "'", .Count = 1});
  EXPECT_EQ(servers_->Count(), 0);
  EXPECT_EQ(ReadText(path), "kept");
}

TEST_F(ServerTest, ANameMakesANewFileEvenWhereOneIs) {
  const TemporaryFolder folder;
  const auto path = folder.Path("sales.vsd");
  WriteText(path, "kept");
  SetFileTime(path, Date::From(1997, 5, 4));
  const auto server = servers_->SetupItem({.Name = "Sales", .FileName = path});
  EXPECT_TRUE(server->Dirty());
  EXPECT_EQ(server->DateModified(), Date::From(1997, 5, 4));
  EXPECT_EQ(ReadText(path), "kept");
}

TEST_F(ServerTest, AFileNameGivenLaterDecidesWhenItWasModified) {
  const TemporaryFolder folder;
  WriteText(folder.Path("sales.vsd"), "x");
  SetFileTime(folder.Path("sales.vsd"), Date::From(1997, 5, 4));
  const auto server = Make<Server>();
  EXPECT_EQ(server->DateModified(), apartment_.Clock().Time);
  server->SetFileName(folder.Path("sales.vsd"));
  EXPECT_EQ(server->DateModified(), Date::From(1997, 5, 4));
}

TEST_F(ServerTest, TheVersionIsThatOfDefinitionFiles) {
  EXPECT_EQ(servers_->SetupItem({.Name = "Sales"})->Data()->Version(), "1.0-0e");
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

TEST_F(ServerTest, ACopyHasAFileOfItsOwnWithoutPlace) {
  const auto server = servers_->SetupItem({.Name = "Sales", .FileName = "/sales.vsd", .LoadOnStartup = true});
  const auto copy = server->Copy("Trade");
  EXPECT_EQ(copy->FileName(), "");
  EXPECT_TRUE(copy->LoadOnStartup());
  EXPECT_EQ(copy->Details(), "Server: 'Trade'  ActiveXComponent: ''  FileName: ''");
  EXPECT_EQ(server->FileName(), "/sales.vsd");
}

TEST_F(ServerTest, ACopyNeedsANameFromSomewhereForTheFileIsNotCopied) {
  const auto nameless = Make<Server>();
  nameless->SetFileName("/sales.vsd");
  ExpectRaised(zErrors{15081}, [&] { nameless->Copy(); }, {.Text = "Name: ''  Filename: ''", .Count = 1});
  EXPECT_EQ(nameless->Copy("Sales")->Name(), "Sales");
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
