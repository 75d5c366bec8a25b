#include "velmoria/data/connection_context.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connections.h"
#include "velmoria/design/action.h"
#include "velmoria/design/action_data.h"
#include "velmoria/design/class.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/connectors.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/parents_data.h"

namespace velmoria::test {

namespace {

class ConnectionContextTest : public testing::Test {
 protected:
  ConnectionPtr SetUpConnection(const std::string& database, const std::string& group = {}) {
    return context_->SetupConnection(
        {.DatabaseName = database, .ConnectionsName = group, .Engine = engODBC, .ConnectionType = ctText});
  }

  ScopedApartment scope_;
  ConnectionContextPtr context_ = Make<ConnectionContext>();
};

TEST_F(ConnectionContextTest, TheDefaultGroupIsThereFromTheStart) {
  EXPECT_EQ(context_->Count(), 1);
  EXPECT_EQ(context_->Item("")->Name(), "");
  EXPECT_TRUE(context_->Details().starts_with("Connections Count 0 for (Default)"));
}

TEST_F(ConnectionContextTest, WithoutAGroupNameAConnectionIsSetUpAndFoundInTheDefaultGroup) {
  const auto connection = SetUpConnection("Shop");
  EXPECT_EQ(context_->GetConnection("Shop"), connection);
  EXPECT_EQ(connection->ConnectionsName(), "");
}

TEST_F(ConnectionContextTest, SetupConnectionMakesTheGroupItNeeds) {
  const auto connection = SetUpConnection("Shop", "Night");
  EXPECT_EQ(context_->Count(), 2);
  EXPECT_EQ(context_->GetConnection("shop", "NIGHT"), connection);
  EXPECT_EQ(connection->ConnectionsName(), "Night");
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(ConnectionContextTest, OneDatabaseMayHaveAConnectionInEachGroup) {
  const auto day = SetUpConnection("Shop", "Day");
  const auto night = SetUpConnection("Shop", "Night");
  EXPECT_NE(day, night);
}

TEST_F(ConnectionContextTest, ASecondConnectionOfADatabaseIsRefusedAndTheFirstStays) {
  const auto first = SetUpConnection("Shop", "Night");
  ExpectRaised(errAdd_Connection, [&] { SetUpConnection("Shop", "Night"); }, {.Text = "Database: 'Shop'"});
  EXPECT_EQ(context_->GetConnection("Shop", "Night"), first);
}

TEST_F(ConnectionContextTest, GetConnectionRaisesEitherMiss) {
  ExpectRaised(errItem_Connections, [&] { context_->GetConnection("Shop", "Night"); }, {.Text = "Index: 'Night'"});
  ExpectRaised(errItem_Connection, [&] { context_->GetConnection("Shop"); }, {.Text = "Index: 'Shop'"});
}

TEST_F(ConnectionContextTest, FindConnectionGivesNoneAndRecordsNothing) {
  EXPECT_FALSE(context_->FindConnection("Shop", "Night"));
  EXPECT_FALSE(context_->FindConnection("Shop"));
  EXPECT_EQ(scope_.Messages().Count(), 0);
}

TEST_F(ConnectionContextTest, ItemMissIsRaised) {
  ExpectRaised(errItem_Connections, [&] { context_->Item(9); }, {.Text = "Index: 9", .Count = 1});
}

TEST_F(ConnectionContextTest, AddTakesAPosition) {
  context_->SetupItem("C");
  context_->SetupItem("B", {.Before = "C"});
  context_->SetupItem("A", {.After = 1});
  std::string order;
  for (const auto& group : *context_) order += group->Name();
  EXPECT_EQ(order, "ABC");
}

TEST_F(ConnectionContextTest, BothPositionsAreRefused) {
  ExpectRaised(errAdd_Connections, [&] { context_->SetupItem("A", {.Before = 1, .After = ""}); },
               {.Text = "Passing both Before and After arguments is not allowed."});
  ExpectRaised(errAdd_Connections, [&] { context_->SetupItem("A", {.Before = 1, .After = "x"}); },
               {.Text = "Name: 'A'  Before: 1  After: 'x'"});
}

TEST_F(ConnectionContextTest, AGroupNameInUseIsRefused) {
  context_->SetupItem("A");
  ExpectRaised(errAdd_Connections, [&] { context_->SetupItem("a"); }, {.Text = "Name: 'a'"});
}

TEST_F(ConnectionContextTest, RemoveHandsTheGroupBack) {
  const auto group = context_->SetupItem("A");
  EXPECT_EQ(context_->Remove("a"), group);
  EXPECT_EQ(context_->Count(), 1);
}

TEST_F(ConnectionContextTest, AConnectionStaysForEverybodyWhenTheDatabaseChangesItsEngine) {
  const OneAction design;
  const auto fresh = [&] {
    auto action = Make<Action>();
    action->Bind(design.Action->Data(), design.Action->HeldParents());
    return action;
  };
  EXPECT_EQ(fresh()->Connection()->Engine(), engODBC);
  design.Database->Connectors()->SetupItem({.Engine = engOracle, .ConnectionType = ctText});
  design.Database->SetEngine(engOracle);
  EXPECT_EQ(fresh()->Connection()->Engine(), engODBC);
  Apartment().ConnectionContext->Remove("");
  EXPECT_EQ(fresh()->Connection()->Engine(), engOracle);
}

TEST_F(ConnectionContextTest, RemovingWhatIsNotThereIsRaised) {
  ExpectRaised(errRemove_Connections, [&] { context_->Remove("A"); }, {.Text = "Index: 'A'"});
}

}  // namespace

}  // namespace velmoria::test
