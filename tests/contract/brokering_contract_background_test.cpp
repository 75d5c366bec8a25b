// Results that a real driver opens while the caller goes on, and requests that cannot be fulfilled.

#include <thread>

#include "tests/contract/brokering_contract.h"
#include "tests/support/await_opened.h"
#include "tests/support/connection_hints.h"

namespace velmoria::test {
namespace {

class BackgroundContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    AddOrders(25);
    AddEndless();
  }
  void AddEndless() { AddAction("Order", {.Name = "Endless", .Text = Driver().Endless, .Type = stSQL}); }
  static IBusinessObjectsPtr InBackground(const std::string& action) {
    return Framework{}.GetBusinessObjects({.ClassName = "Order", .ActionName = action, .AsyncFlag = true});
  }
};

TEST_P(BackgroundContract, PageIsThereOnceTheResultIsOpen) {
  const auto agent = AgentOf("Order");
  agent->LoadPersistentProperties();
  EXPECT_TRUE(agent->AsyncFlag());
  AwaitOpened(agent);
  const auto page = agent->Recordset();
  ASSERT_TRUE(page);
  EXPECT_EQ(page->Count(), 25);
  EXPECT_FALSE(agent->AsyncFlag());
  EXPECT_EQ(agent->RowCount(), 25);
}

TEST_P(BackgroundContract, EndlessStatementGivesNothingUntilItIsCancelledAndTheNextReadWorks) {
  const auto agent = AgentOf("Order", "Endless");
  agent->LoadPersistentProperties();
  EXPECT_TRUE(agent->StillExecuting());
  EXPECT_EQ(agent->RowCount(), -1);
  EXPECT_FALSE(agent->Recordset());
  EXPECT_FALSE(agent->GetRecordset(0, nullptr, false));
  agent->Cancel();
  EXPECT_FALSE(agent->StillExecuting());
  EXPECT_FALSE(agent->AsyncFlag());
  EXPECT_EQ(All("Order")->Count(), 25);
}

TEST_P(BackgroundContract, CollectionOpenedSoHasEveryRow) {
  const auto orders = InBackground("Get");
  EXPECT_EQ(IdOf(orders->Item(13)), 13);
  EXPECT_EQ(orders->Count(), 25);
}

TEST_P(BackgroundContract, FailureOfTheOpeningIsMetByItsNumberAndTheNextRequestWorks) {
  AddAction("Order", {.Name = "Wrong", .Text = "nonsense", .Type = stSQL});
  ExpectRaised(errRDO_SQL, [] { InBackground("Wrong")->Item(1); }, {.Text = "nonsense"});
  EXPECT_EQ(All("Order")->Count(), 25);
}

TEST_P(BackgroundContract, AgentThatGoesEndsItsStatementAndFreesTheConnection) {
  {
    const auto agent = AgentOf("Order", "Endless");
    agent->LoadPersistentProperties();
    EXPECT_TRUE(agent->StillExecuting());
  }
  EXPECT_EQ(All("Order")->Count(), 25);
}

TEST_P(BackgroundContract, ConnectionThatIsClosedEndsTheStatementThatRunsOnIt) {
  const auto agent = AgentOf("Order", "Endless");
  agent->LoadPersistentProperties();
  ActionOf("Order")->Connection()->Disconnect();
  EXPECT_FALSE(agent->StillExecuting());
  EXPECT_TRUE(Thrown([&] { agent->Recordset(); }));
  Messages().Clear();
  EXPECT_EQ(All("Order")->Count(), 25);
}

TEST_P(BackgroundContract, ApartmentThatEndsEndsTheStatementsThatRunInIt) {
  ScopedApartment inner;
  UseDriver(inner);
  AddDatabase("Shop", Profile().Engine, ConnectText());
  Framework{}.Servers()->SetupItem({.Name = "Sales"});
  AddClass("Order", "orders");
  AddEndless();
  const auto context = Framework{}.CreateBusinessContext();
  context->LoadBusinessObjects({.ClassName = "Order", .ActionName = "Endless", .AsyncFlag = true});
  EXPECT_EQ(context->Count(), 1);
}

TEST_P(BackgroundContract, OtherApartmentReadsOnItsThreadWhileOneStatementRuns) {
  const auto agent = AgentOf("Order", "Endless");
  agent->LoadPersistentProperties();
  int read = 0;
  std::thread other([&] {
    ScopedApartment inner;
    UseDriver(inner);
    AddDatabase("Shop", Profile().Engine, ConnectText());
    Framework{}.Servers()->SetupItem({.Name = "Sales"});
    AddClass("Order", "orders");
    read = All("Order")->Count();
  });
  other.join();
  EXPECT_EQ(read, 25);
  EXPECT_TRUE(agent->StillExecuting());
}

/// Requests whose database cannot be opened.
class RefusedContract : public BrokeringContract {
 protected:
  void SetUp() override {
    BrokeringContract::SetUp();
    AddOrders(1);
  }
  /// Reads by a database of that text, which must be refused with 15125; gives the extra text of that.
  std::string Refused(const std::string& text, zConnectionTypes type = ctText) {
    const auto name = "Far " + std::to_string(Framework{}.Databases()->Count());
    AddDatabase(name, Profile().Engine, text)->Connectors()->Item()->SetConnectionType(type);
    AddAction("Order", {.Name = name, .Text = "{t}orders", .DatabaseName = name});
    const auto error = Thrown([&] { All("Order", name); });
    EXPECT_TRUE(error && error->CatalogueNumber() == 15125) << (error ? error->Description() : "nothing was raised");
    const auto told = Messages().Item("15125");
    const auto extra = told ? told->ExtraText() : std::string("not recorded");
    Messages().Clear();
    return extra;
  }
};

TEST_P(RefusedContract, TextWithoutADriverAndASourceThatIsNotThereAreHintedAt) {
  EXPECT_EQ(Refused("Server=127.0.0.1;Database=none"), kSourceHint);
  EXPECT_EQ(Refused(""), kSourceHint);
  EXPECT_EQ(Refused("velmoria_none", ctDSN), kSourceHint);
  EXPECT_EQ(All("Order")->Count(), 1);
}

TEST_P(RefusedContract, DatabaseThatIsAwayIsRefusedAndTheOtherStaysInUse) {
  EXPECT_NE(Refused(Filled(Driver().Unreachable)), kSourceHint);
  EXPECT_EQ(All("Order")->Count(), 1);
}

TEST_P(RefusedContract, NonsenseForATextIsRefusedInTheServersWords) {
  AddAction("Order", {.Name = "Wrong", .Text = "nonsense", .Type = stSQL});
  ExpectRaised(errRDO_SQL, [] { All("Order", "Wrong"); }, {.Text = "SQL: nonsense"});
  EXPECT_TRUE(Thrown([] { All("Order", "Wrong"); }));
  EXPECT_TRUE(WarnedOf("nonsense"));
  Messages().Clear();
  EXPECT_EQ(All("Order")->Count(), 1);
}

TEST_P(RefusedContract, IdentityWhoseColumnTheTableLacksIsRefusedWithTheFirstObject) {
  AddClass("Odd", "orders", {"code"});
  ExpectRaised(errIdentifier_Property, [] { All("Odd")->Item(1)->Key(); });
}

INSTANTIATE_TEST_SUITE_P(, BackgroundContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });
INSTANTIATE_TEST_SUITE_P(, RefusedContract, testing::ValuesIn(BrokeringProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
