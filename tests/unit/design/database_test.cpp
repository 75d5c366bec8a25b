#include "velmoria/design/database.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"

namespace velmoria::test {
namespace {

class DatabaseTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  DatabasesPtr databases_ = Apartment().Databases;
};

TEST_F(DatabaseTest, WithoutNameThereIsNotEnoughInformation) {
  ExpectRaised(zErrors{15080}, [&] { databases_->SetupItem({.Name = ""}); },
               {.Text = "Name: ''  Filename: ''", .Count = 1});
}

TEST_F(DatabaseTest, SetupItemStoresEveryField) {
  const auto database = databases_->SetupItem({.Name = "Shop",
                                               .FileName = "/shop.vdb",
                                               .Engine = engSybase,
                                               .Description = "d",
                                               .AutoConnect = true,
                                               .LoadOnStartup = true,
                                               .Locked = true});
  EXPECT_EQ(database->Name(), "Shop");
  EXPECT_EQ(database->FileName(), "/shop.vdb");
  EXPECT_TRUE(database->LoadOnStartup());
  EXPECT_EQ(database->Engine(), engSybase);
  EXPECT_EQ(database->EngineName(), "Sybase SQL Server");
  EXPECT_EQ(database->Description(), "d");
  EXPECT_TRUE(database->AutoConnect());
  EXPECT_TRUE(database->Locked());
}

TEST_F(DatabaseTest, SettersStore) {
  const auto database = databases_->SetupItem({.Name = "Shop"});
  database->SetEngine(engOracle);
  database->SetAutoConnect(true);
  database->SetFileName("/shop.vdb");
  database->SetLoadOnStartup(true);
  EXPECT_EQ(database->FileName(), "/shop.vdb");
  EXPECT_TRUE(database->LoadOnStartup());
  EXPECT_EQ(database->Engine(), engOracle);
  EXPECT_TRUE(database->AutoConnect());
}

TEST_F(DatabaseTest, AMissingFileWithoutANameIsReported) {
  ExpectRaised(zErrors{15046}, [&] { databases_->SetupItem({.Name = "", .FileName = "/nowhere/shop.vdb"}); },
               {.Text = "Database: ''  Filename: '/nowhere/shop.vdb'", .Count = 1});
  EXPECT_EQ(databases_->Count(), 0);
}

TEST_F(DatabaseTest, AnExistingFileWithoutANameIsNotReadAndChangesNothing) {
  const TemporaryFolder folder;
  const auto path = folder.Path("shop.vdb");
  WriteText(path, "kept");
  ExpectRaised(zErrors{15042}, [&] { databases_->SetupItem({.Name = "", .FileName = path}); },
               {.Text = "Database: ''  FileName: '" + path + "'", .Count = 1});
  EXPECT_EQ(databases_->Count(), 0);
  EXPECT_EQ(ReadText(path), "kept");
}

TEST_F(DatabaseTest, AFileThatIsThereDecidesWhenItWasModified) {
  const TemporaryFolder folder;
  WriteText(folder.Path("shop.vdb"), "x");
  SetFileTime(folder.Path("shop.vdb"), Date::From(1997, 5, 4));
  const auto database = databases_->SetupItem({.Name = "Shop", .FileName = folder.Path("shop.vdb")});
  EXPECT_EQ(database->DateModified(), Date::From(1997, 5, 4));
}

TEST_F(DatabaseTest, TheVersionIsThatOfDefinitionFiles) {
  EXPECT_EQ(databases_->SetupItem({.Name = "Shop"})->Data()->Version(), "1.0-0e");
}

TEST_F(DatabaseTest, AnyEngineCanBeSetWithoutAConnector) {
  const auto database = Make<Database>();
  database->SetEngine(engRMS);
  EXPECT_TRUE(database->Dirty());
  ExpectRaised(zErrors{15068}, [&] { database->Connectors()->Item(); }, {.Text = "Engine: 7  Index: 0"});
}

TEST_F(DatabaseTest, TheCollectionOfTheFrameworkIsRegisteredAndOthersAreNot) {
  EXPECT_TRUE(databases_->Registered());
  EXPECT_FALSE(Make<Databases>()->Registered());
}

TEST_F(DatabaseTest, ANameSetDirectlyLeavesTheOldKey) {
  const auto database = databases_->SetupItem({.Name = "Shop"});
  database->SetName("Store");
  EXPECT_EQ(databases_->Item("Shop"), database);
  ExpectRaised(zErrors{15069}, [&] { databases_->Item("Store"); });
}

TEST_F(DatabaseTest, WithoutAFileItIsModifiedNow) {
  const auto database = databases_->SetupItem({.Name = "Shop"});
  apartment_.Clock().Advance(3600);
  EXPECT_EQ(database->DateModified(), apartment_.Clock().Time);
}

TEST_F(DatabaseTest, EveryEngineButAccessIsReadOverRdo) {
  const auto database = Make<Database>();
  for (int engine = 0; engine <= 7; ++engine) {
    database->SetEngine(zEngines{engine});
    EXPECT_EQ(database->Data()->AccessMethod(), engine == 1 ? 2 : 1) << engine;
    EXPECT_EQ(database->Data()->AccessMethodDisplay(), engine == 1 ? "DAO 3.5" : "RDO 2.0") << engine;
  }
}

TEST_F(DatabaseTest, SupportedEnginesAreThoseOfTheConnectors) {
  const auto database = databases_->SetupItem({.Name = "Shop"});
  EXPECT_EQ(database->Data()->SupportedEnginesDisplay(), "(None)");
  database->Connectors()->SetupItem({.Engine = engSybase, .ConnectionType = ctDSN});
  database->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctDSN});
  EXPECT_EQ(database->Data()->SupportedEnginesDisplay(), "Sybase SQL Server; Generic ODBC");
}

TEST_F(DatabaseTest, RecursiveCopyTakesConnectorsAndUserProperties) {
  const auto database = databases_->SetupItem({.Name = "Shop"});
  database->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctDSN, .ConnectionString = "shop"});
  database->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = database->Copy("Store");
  EXPECT_EQ(copy->Connectors()->Item(engODBC)->ConnectionString(), "shop");
  EXPECT_EQ(copy->Connectors()->Item(engODBC)->DatabaseName(), "Store");
  EXPECT_EQ(copy->UserProperties()->Count(), 1);
  EXPECT_EQ(copy->FileName(), "");
  EXPECT_EQ(database->Copy("", false)->Connectors()->Count(), 0);
}

TEST_F(DatabaseTest, ACopyNeedsANameFromSomewhereForTheFileIsNotCopied) {
  const auto nameless = Make<Database>();
  nameless->SetFileName("/shop.vdb");
  ExpectRaised(zErrors{15080}, [&] { nameless->Copy(); }, {.Text = "Name: ''  Filename: ''", .Count = 1});
  EXPECT_EQ(nameless->Copy("Shop")->Name(), "Shop");
}

TEST_F(DatabaseTest, ConnectorsAndUserPropertiesMakeItDirty) {
  const auto database = Make<Database>();
  EXPECT_EQ(database->Connectors()->Count(), 0);
  EXPECT_FALSE(database->Dirty());
  database->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_TRUE(database->Dirty());
}

}  // namespace
}  // namespace velmoria::test
