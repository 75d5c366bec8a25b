#include <memory>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/core/reporting.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/design/databases.h"
#include "velmoria/design/databases_data.h"
#include "velmoria/design/servers.h"
#include "velmoria/design/servers_data.h"

namespace velmoria::test {
namespace {

class Anybody : public Reporting {
 public:
  std::string_view ReportedType() const noexcept override { return "Anybody"; }
  void Fail() const { Raise(errItem_Class, "Fail", {"'x'"}); }
};

std::shared_ptr<FakeSettingsStore> UnreadableStore() {
  auto store = std::make_shared<FakeSettingsStore>();
  store->FailReads = true;
  return store;
}

TEST(StartupTest, EveryGlobalIsThereAndNothingIsReported) {
  const ScopedApartment apartment;
  const auto& state = apartment.State();
  EXPECT_TRUE(state.StartedFlag);
  EXPECT_TRUE(state.Messages);
  EXPECT_TRUE(state.Profile);
  EXPECT_TRUE(state.DefaultKeyFormat);
  EXPECT_TRUE(state.ServersData);
  EXPECT_TRUE(state.DatabasesData);
  EXPECT_TRUE(state.Databases->Registered());
  EXPECT_TRUE(state.Servers->Registered());
  EXPECT_TRUE(state.ConnectionContext);
  EXPECT_TRUE(state.BusinessContext);
  EXPECT_EQ(state.Messages->Count(), 0);
}

TEST(StartupTest, SecondRunLeavesTheSameObjectsInPlace) {
  const ScopedApartment apartment;
  auto& state = apartment.State();
  const auto* messages = state.Messages.get();
  const auto* servers = state.Servers.get();
  const auto* context = state.BusinessContext.get();
  Main(state);
  EXPECT_EQ(state.Messages.get(), messages);
  EXPECT_EQ(state.Servers.get(), servers);
  EXPECT_EQ(state.BusinessContext.get(), context);
  EXPECT_EQ(apartment.Log().Starts, 1);
}

TEST(StartupTest, DefaultKeyFormatIsPlain) {
  const ScopedApartment apartment;
  const auto& format = *apartment.State().DefaultKeyFormat;
  EXPECT_EQ(format.Name(), "");
  EXPECT_EQ(format.Separator(), "");
  EXPECT_FALSE(format.Locked());
  EXPECT_FALSE(format.IncludeNames());
  EXPECT_FALSE(format.Mixed());
  EXPECT_FALSE(format.EmptyKey());
}

TEST(StartupTest, DefaultContextSupportsEverythingAndSelectsNothing) {
  const ScopedApartment apartment;
  const auto& context = *apartment.State().BusinessContext;
  EXPECT_TRUE(context.SupportsAdd());
  EXPECT_TRUE(context.SupportsRemove());
  EXPECT_TRUE(context.SupportsLoad());
  EXPECT_EQ(context.ServerName(), "");
  EXPECT_EQ(context.ClassName(), "");
  EXPECT_EQ(context.ActionName(), "");
  EXPECT_FALSE(context.ServerLocked());
  EXPECT_FALSE(context.ClassLocked());
  EXPECT_FALSE(context.ActionLocked());
  EXPECT_FALSE(context.Locked());
  EXPECT_EQ(context.CollectionType(), cltDefault);
  EXPECT_EQ(context.ObjectType(), otDefault);
}

TEST(StartupTest, FailingStepBecomesOneWarningUnderItsOwnNumber) {
  const ScopedApartment apartment(UnreadableStore());
  ASSERT_EQ(apartment.Messages().Count(), 1);
  const auto warning = apartment.Messages().Item(1);
  EXPECT_EQ(warning->Number(), 70);
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeFlags(), tfUnknown);
  EXPECT_EQ(warning->TypeName(), "FrameworkGlobals");
  EXPECT_EQ(warning->RoutineName(), "Main");
  EXPECT_NE(warning->ErrLine(), 0);
  EXPECT_EQ(warning->Description(), RuntimeFailureText(RuntimeFailure::PermissionDenied));
}

TEST(StartupTest, StepsBehindAFailingOneStillRun) {
  const ScopedApartment apartment(UnreadableStore());
  EXPECT_FALSE(apartment.State().Profile);
  EXPECT_TRUE(apartment.State().Servers);
  EXPECT_TRUE(apartment.State().BusinessContext);
}

TEST(StartupTest, FailureAtTheStartIsNotWhatLaterErrorsAreRaisedAs) {
  const ScopedApartment apartment(UnreadableStore());
  ExpectRaised(errItem_Class, [] { Anybody().Fail(); }, {.Text = "Index: 'x'", .Count = 2});
}

}  // namespace
}  // namespace velmoria::test
