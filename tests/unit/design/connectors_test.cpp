#include "velmoria/design/connectors.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class ConnectorsTest : public testing::Test {
 protected:
  ConnectorPtr Add(const ConnectorFields& fields) { return database_->Connectors()->SetupItem(fields); }

  ScopedApartment apartment_;
  DatabasePtr database_ = MakeDesign<DatabaseKind>({.Name = "Shop"});
};

TEST_F(ConnectorsTest, EngineZeroIsThatOfTheDatabase) {
  const auto odbc = Add({.Engine = engODBC, .ConnectionType = ctDSN});
  Add({.Engine = engSybase, .ConnectionType = ctDSN});
  database_->SetEngine(engODBC);
  EXPECT_EQ(database_->Connectors()->Item(), odbc);
  database_->SetEngine(engAccess);
  ExpectRaised(zErrors{15068}, [&] { database_->Connectors()->Item(); }, {.Text = "Engine: 1  Index: 0", .Count = 1});
}

TEST_F(ConnectorsTest, ChangeItemEngineKeepsThePosition) {
  Add({.Engine = engODBC, .ConnectionType = ctDSN});
  Add({.Engine = engSybase, .ConnectionType = ctDSN});
  database_->Connectors()->ChangeItemEngine(engODBC, engOracle);
  EXPECT_EQ(EngineTexts(database_->Connectors()->ValidEngines()), "5 4 ");
}

TEST_F(ConnectorsTest, ListsOfEngines) {
  EXPECT_EQ(EngineTexts(database_->Connectors()->ValidEngines()), "Empty");
  EXPECT_EQ(EngineTexts(database_->Connectors()->AvailableEngines()), "Empty");
  for (const auto engine : {engOracle, engODBC}) Add({.Engine = engine, .ConnectionType = ctDSN});
  EXPECT_EQ(EngineTexts(database_->Connectors()->ValidEngines()), "5 2 ");
  EXPECT_EQ(EngineTexts(database_->Connectors()->AvailableEngines()), "2 ");
  EXPECT_EQ(EngineTexts(database_->Connectors()->MissingEngines()), "1 3 4 ");
}

TEST_F(ConnectorsTest, MissingEnginesOfAFullCollectionAreEmpty) {
  for (const auto engine : {engAccess, engODBC, engSQLServer, engSybase}) {
    Add({.Engine = engine, .ConnectionType = ctDSN});
  }
  EXPECT_EQ(EngineTexts(database_->Connectors()->MissingEngines()), "Empty");
}

}  // namespace
}  // namespace velmoria::test
