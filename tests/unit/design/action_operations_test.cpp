#include <string>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/temporary_folder.h"
#include "velmoria/brokering/business_context.h"
#include "velmoria/brokering/business_context_impl.h"
#include "velmoria/brokering/ibusiness_object.h"
#include "velmoria/brokering/ibusiness_objects.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/framework.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"

namespace velmoria::test {
namespace {

// Over a real file with the tables orders (id, placed) and archive (id, total), one for each of two engines.
class ActionOperationsTest : public testing::Test {
 protected:
  ActionOperationsTest() {
    MakeTables();
    database_ = Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engODBC, .AutoConnect = true});
    for (const auto engine : {engODBC, engSybase}) {
      database_->Connectors()->SetupItem(
          {.Engine = engine, .ConnectionType = ctText, .ConnectionString = "Driver=SQLite3;Database=" + file_});
    }
    class_ = Apartment().Servers->SetupItem({.Name = "Sales"})->Classes()->SetupItem({.Name = "Order"});
    class_->Properties()->SetupItem({.Name = "id", .DataType = dtLongInteger, .Flags = pfInput});
    action_ = class_->Actions()->SetupItem({.Name = "All", .DatabaseName = "Shop", .UsageFlags = ufAll});
    action_->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
    action_->Sources()->SetupItem({.Engine = engSybase, .SourceType = stTable, .SourceText = "archive"});
  }

  void MakeTables() {
    sqlite3* file = nullptr;
    sqlite3_open(file_.c_str(), &file);
    sqlite3_exec(file, "create table orders (id integer, placed date); create table archive (id integer, total double)",
                 nullptr, nullptr, nullptr);
    sqlite3_close(file);
  }
  static std::string Names(const PropertiesPtr& properties) {
    std::string names;
    for (const auto& property : *properties) names += property->Name() + " ";
    return names;
  }

  ScopedApartment apartment_;
  TemporaryFolder folder_;
  std::string file_ = folder_.Path("shop.db");
  DatabasePtr database_;
  ClassPtr class_;
  ActionPtr action_;
};

TEST_F(ActionOperationsTest, CreatePropertiesDescribesTheColumnsOfTheSource) {
  const auto properties = action_->CreateProperties();
  EXPECT_EQ(Names(properties), "id placed ");
  EXPECT_EQ(properties->Style(), psDefinition);
  EXPECT_EQ(properties->ActionName(), "All");
  EXPECT_EQ(properties->Item("id")->DataType(), dtLongInteger);
}

TEST_F(ActionOperationsTest, AllUsageFlagsPassTheTestOfEveryOperation) {
  action_->SetObjectType(otModel);
  const auto context = Framework().CreateBusinessContext({.ServerName = "Sales", .ClassName = "Order"});
  EXPECT_EQ(context->GetBusinessObjects({.ActionName = "All"})->Count(), 0);
  ExpectRaised(zErrors{15025}, [&] { context->GetBusinessObject({.ActionName = "All"}); });
  ExpectRaised(zErrors{15115}, [&] { context->GetProperties({.ActionName = "All"}); });
}

TEST_F(ActionOperationsTest, NoUsageFlagsPassTheTestOfNone) {
  action_->SetUsageFlags(ufNone);
  const auto context = Framework().CreateBusinessContext({.ServerName = "Sales", .ClassName = "Order"});
  const auto shown = "Action: 'All'  UsageFlags: '(None)'";
  ExpectRaised(zErrors{15088}, [&] { context->GetBusinessObjects({.ActionName = "All"}); }, {.Text = shown});
  ExpectRaised(zErrors{15088}, [&] { context->GetBusinessObject({.ActionName = "All"}); }, {.Text = shown});
  ExpectRaised(zErrors{15089}, [&] { context->GetProperties({.ActionName = "All"}); }, {.Text = shown});
}

TEST_F(ActionOperationsTest, CreatePropertiesFollowsTheEngineAndTheConnectionStays) {
  const auto connection = action_->Connection();
  database_->SetEngine(engSybase);
  EXPECT_EQ(Names(action_->CreateProperties()), "id total ");
  EXPECT_EQ(action_->Connection(), connection);
  EXPECT_EQ(connection->Engine(), engODBC);
}

TEST_F(ActionOperationsTest, CreatePropertiesNeedsAnIdentifierDefinition) {
  class_->Properties()->Remove("id");
  ExpectRaised(zErrors{15160}, [&] { action_->CreateProperties(); });
}

TEST_F(ActionOperationsTest, CreatePropertiesNeedsTheValuesOfRequiredParameters) {
  action_->Sources()->Item()->Parameters()->SetupItem(
      {.Name = "id", .DataType = dtLongInteger, .Flags = pfInput | pfRequired});
  ExpectRaised(zErrors{15119}, [&] { action_->CreateProperties(); });
}

TEST_F(ActionOperationsTest, CreatePropertiesOfAMissingTableFails) {
  action_->Sources()->Item()->SetSourceText("nowhere");
  ExpectRaised(zErrors{15120}, [&] { action_->CreateProperties(); });
  action_->Sources()->Item()->SetSourceText("orders");
  EXPECT_EQ(Names(action_->CreateProperties()), "id placed ");
}

}  // namespace
}  // namespace velmoria::test
