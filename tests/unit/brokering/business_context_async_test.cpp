#include <memory>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/brokering/bound_business_objects_fixture.h"
#include "velmoria/brokering/business_context_impl.h"
#include "velmoria/properties/properties_data.h"

namespace velmoria::test {
namespace {

/// What a request with the asynchronous flag makes of a back-end that opens its result in the background.
class AsyncRequestTest : public BoundBusinessObjectsTest {
 protected:
  static BusinessObjectsPtr Bind(BusinessObjectsBinding binding) {
    binding.ObjectType = otModel;
    auto collection = Make<BusinessObjects>();
    collection->SetupBound(std::move(binding));
    return collection;
  }
  FakeAgent& Database() const { return *orders_.Database; }
  std::int32_t Slept() const { return apartment_.Clock().SleptMilliseconds; }
};

TEST_F(AsyncRequestTest, AgentIsHandedOnWhileItOpensTheResult) {
  Database().PollsOnceLoaded = 3;
  const auto binding = Opened(orders_.Agent, true);
  EXPECT_EQ(binding.Recordset, nullptr);
  EXPECT_EQ(binding.DatabaseAgent, orders_.Agent);
  EXPECT_EQ(Database().Loads, 1);
  EXPECT_EQ(Database().Reads, 0);
}

TEST_F(AsyncRequestTest, CollectionIsThereAtOnceAndWaitsWhereRowsAreNeeded) {
  Database().PollsOnceLoaded = 3;
  const auto orders = Bind(Opened(orders_.Agent, true));
  EXPECT_EQ(Slept(), 0);
  EXPECT_EQ(orders->Count(), 3);
  EXPECT_EQ(Slept(), 200);
  EXPECT_EQ(Ids(*orders), "1,2,3");
  EXPECT_EQ(Database().Loads, 1);
}

TEST_F(AsyncRequestTest, StatisticsAreThoseOfTheResultOnceItIsThere) {
  Database().PollsOnceLoaded = 2;
  const auto orders = Bind(Opened(orders_.Agent, true));
  EXPECT_NE(orders->Statistics(), nullptr);
  EXPECT_EQ(Database().Reads, 1);
}

TEST_F(AsyncRequestTest, ResultThatIsThereAtOnceIsHandedOnItself) {
  const auto binding = Opened(orders_.Agent, true);
  ASSERT_NE(binding.Recordset, nullptr);
  EXPECT_EQ(binding.Recordset->Count(), 3);
  EXPECT_EQ(Database().Reads, 1);
}

TEST_F(AsyncRequestTest, PagesOfSuchAResultFollowOneAnother) {
  orders_.Fill({.Rows = 25, .Buffer = 10});
  Database().PollsOnceLoaded = 2;
  const auto orders = Bind(Opened(orders_.Agent, true));
  for (const int position : {25, 1, 14}) EXPECT_EQ(IdOf(*orders->Item(position)), position);
  EXPECT_EQ(Slept(), 100);
}

TEST_F(AsyncRequestTest, WithoutTheFlagTheResultIsOpenedBeforeTheCallReturns) {
  Database().PollsOnceLoaded = 3;
  EXPECT_NE(Opened(orders_.Agent, false).Recordset, nullptr);
  EXPECT_EQ(Database().Loads, 0);
}

TEST_F(AsyncRequestTest, BackEndOfAnotherKindOpensBeforeTheCallReturns) {
  auto other = std::make_unique<FakeAgent>(orders_.Design.Order, orders_.Action);
  other->Columns = Database().Columns;
  other->Rows = Database().Rows;
  const auto& database = *other;
  const auto agent = Make<DatabaseAgent>();
  agent->Initialize(orders_.Action, std::move(other), 2);
  EXPECT_NE(Opened(agent, true).Recordset, nullptr);
  EXPECT_EQ(database.Loads, 0);
}

TEST_F(AsyncRequestTest, OpeningThatCannotBeginIsTheFailureOfTheRequest) {
  Database().FailsReads = true;
  ExpectReported(RuntimeFailure::DriverFailure, [&] { Opened(orders_.Agent, true); });
  EXPECT_EQ(Database().Loads, 0);
}

TEST_F(AsyncRequestTest, OpeningThatFailsLaterIsMetByWhoeverWaits) {
  Database().PollsOnceLoaded = 2;
  const auto orders = Bind(Opened(orders_.Agent, true));
  Database().FailsReads = true;
  ExpectReported(RuntimeFailure::DriverFailure, [&] { orders->Item(1); });
}

TEST_F(AsyncRequestTest, InitializedCollectionWaitsBeforeTheCallReturns) {
  Database().PollsOnceLoaded = 2;
  auto binding = Opened(orders_.Agent, true);
  binding.CollectionType = cltInitialized;
  const auto orders = Bind(std::move(binding));
  EXPECT_EQ(Slept(), 100);
  EXPECT_EQ(Database().Reads, 1);
}

}  // namespace
}  // namespace velmoria::test
