#include "velmoria/core/framework.h"

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class FrameworkTest : public testing::Test {
 protected:
  std::string SelectedServer() { return apartment_.State().BusinessContext->ServerName(); }

  ScopedApartment apartment_;
  Framework framework_;
};

TEST_F(FrameworkTest, SelfIsTheObjectItself) { EXPECT_EQ(&framework_.Self(), &framework_); }

TEST_F(FrameworkTest, VersionIsTheProductsOwn) { EXPECT_EQ(framework_.Version(), "v1.0-0h"); }

TEST_F(FrameworkTest, SecondFrameworkChangesNothing) {
  const auto messages = framework_.Messages();
  const auto servers = framework_.Servers();
  const Framework second;
  EXPECT_EQ(second.Messages(), messages);
  EXPECT_EQ(second.Servers(), servers);
  EXPECT_EQ(second.Profile(), framework_.Profile());
  EXPECT_EQ(second.Databases(), framework_.Databases());
  EXPECT_EQ(second.ConnectionContext(), framework_.ConnectionContext());
  EXPECT_EQ(apartment_.Log().Starts, 1);
}

TEST_F(FrameworkTest, GlobalThatCouldNotBeMadeFailsWhereItIsAskedFor) {
  apartment_.State().Profile = nullptr;
  ExpectReported(RuntimeFailure::ObjectNotSet, [&] { framework_.Profile(); });
}

TEST_F(FrameworkTest, ServerNameOfACallStaysForTheNextAndAnEmptyOneClearsIt) {
  const SampleDesign design;
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObject({.ClassName = "Nothing", .ServerName = "Sales"}); }));
  EXPECT_EQ(SelectedServer(), "Sales");
  framework_.Messages()->Clear();
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObject({.ClassName = "Nothing"}); }));
  EXPECT_EQ(SelectedServer(), "");
}

TEST_F(FrameworkTest, ServerNameOfACollectionCallStaysToo) {
  const SampleDesign design;
  EXPECT_TRUE(Thrown([&] { framework_.GetBusinessObjects({.ClassName = "Nothing", .ServerName = "Stock"}); }));
  EXPECT_EQ(SelectedServer(), "Stock");
}

TEST_F(FrameworkTest, UnknownClassIsRaisedThroughTheFront) {
  ExpectRaised(errItem_Class, [&] { framework_.GetBusinessObject({.ClassName = "Nothing"}); },
               {.Text = "Index: 'Nothing'"});
}

TEST_F(FrameworkTest, SetupConnectionGivesTheConnectionOfTheContext) {
  const auto connection = framework_.SetupConnection(
      {.DatabaseName = "Shop", .Engine = engODBC, .ConnectionType = ctText, .ConnectionString = "Driver=None"});
  EXPECT_EQ(framework_.ConnectionContext()->GetConnection("Shop"), connection);
}

}  // namespace
}  // namespace velmoria::test
