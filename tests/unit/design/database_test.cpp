#include "velmoria/design/database.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class DatabaseTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  DatabasesPtr databases_ = Apartment().Databases;
};

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

TEST_F(DatabaseTest, AnyEngineCanBeSetWithoutAConnector) {
  const auto database = Make<Database>();
  database->SetEngine(engRMS);
  EXPECT_TRUE(database->Dirty());
  ExpectRaised(zErrors{15068}, [&] { database->Connectors()->Item(); }, {.Text = "Engine: 7  Index: 0"});
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

TEST_F(DatabaseTest, ConnectorsAndUserPropertiesMakeItDirty) {
  const auto database = Make<Database>();
  EXPECT_EQ(database->Connectors()->Count(), 0);
  EXPECT_FALSE(database->Dirty());
  database->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_TRUE(database->Dirty());
}

}  // namespace
}  // namespace velmoria::test
