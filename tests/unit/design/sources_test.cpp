#include "velmoria/design/sources.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class SourcesTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  SourcesPtr sources_ = Make<Action>()->Sources();
};

TEST_F(SourcesTest, SourcesWithoutAnActionHaveNoEngineInForce) {
  const auto transient = Make<Sources>();
  transient->SetupItem({.Engine = engODBC, .SourceType = stTable});
  ExpectRaised(zErrors{15075}, [&] { transient->Item(); }, {.Text = "Engine: 0  Index: 0", .Count = 1});
}

TEST_F(SourcesTest, AMissingSourceOfTheEngineInForceIsShownWithBoth) {
  Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engSybase});
  const auto action = MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop"});
  ExpectRaised(zErrors{15075}, [&] { action->Sources()->Item(); }, {.Text = "Engine: 4  Index: 0", .Count = 1});
}

TEST_F(SourcesTest, RemoveWithoutEngineTakesTheOneInForce) {
  Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engSybase});
  const auto sources = MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop"})->Sources();
  sources->SetupItem({.Engine = engODBC, .SourceType = stTable});
  sources->SetupItem({.Engine = engSybase, .SourceType = stTable});
  sources->Remove();
  EXPECT_FALSE(sources->Find(engSybase));
  EXPECT_TRUE(sources->Find(engODBC));
}

TEST_F(SourcesTest, ChangeItemEngineKeepsTheTypeEvenOneTheEngineDoesNotHave) {
  const auto source = sources_->SetupItem({.Engine = engAccess, .SourceType = stQueryDef});
  sources_->ChangeItemEngine(engAccess, engODBC);
  EXPECT_EQ(source->Engine(), engODBC);
  EXPECT_EQ(source->SourceType(), stQueryDef);
}

TEST_F(SourcesTest, MissingEnginesAreThoseOfTheConnectorsWithoutSource) {
  const auto database = Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engODBC});
  for (const auto engine : {engOracle, engODBC, engAccess}) {
    database->Connectors()->SetupItem({.Engine = engine, .ConnectionType = ctDSN});
  }
  const auto sources = MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop"})->Sources();
  sources->SetupItem({.Engine = engODBC, .SourceType = stTable});
  EXPECT_EQ(EngineTexts(sources->MissingEngines()), "5 1 ");
}

TEST_F(SourcesTest, MissingEnginesOfAFullCollectionAreEmpty) {
  const auto database = Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engODBC});
  database->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctDSN});
  const auto sources = MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop"})->Sources();
  sources->SetupItem({.Engine = engODBC, .SourceType = stTable});
  EXPECT_EQ(EngineTexts(sources->MissingEngines()), "Empty");
}

TEST_F(SourcesTest, MissingEnginesOfADatabaseWithoutConnectorsAreEmpty) {
  Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engODBC});
  EXPECT_EQ(EngineTexts(MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop"})->Sources()->MissingEngines()),
            "Empty");
}

TEST_F(SourcesTest, MissingEnginesWithoutDatabaseAreThoseOfTheMachine) {
  sources_->SetupItem({.Engine = engODBC, .SourceType = stTable});
  EXPECT_EQ(EngineTexts(sources_->MissingEngines()), "1 3 4 ");
  EXPECT_EQ(EngineTexts(Make<Sources>()->MissingEngines()), "1 2 3 4 ");
}

}  // namespace
}  // namespace velmoria::test
