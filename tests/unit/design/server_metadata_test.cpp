#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"

namespace velmoria::test {
namespace {

// A Server over a real file with two classes, one Action of which reads a table that is not there.
class ServerMetaDataTest : public testing::Test {
 protected:
  ServerMetaDataTest() {
    const auto shop = Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engODBC, .AutoConnect = true});
    shop->Connectors()->SetupItem(
        {.Engine = engODBC, .ConnectionType = ctText, .ConnectionString = file_.ConnectString()});
    all_ = AddAction(AddClass("Order"), "All", "orders");
    broken_ = AddAction(server_->Classes()->Item("Order"), "Broken", "nowhere");
    lines_ = AddAction(AddClass("Line"), "All", "lines");
  }

  ClassPtr AddClass(const std::string& name) {
    auto added = server_->Classes()->SetupItem({.Name = name});
    added->Properties()->SetupItem({.Name = "id", .DataType = dtLongInteger, .Flags = pfInput});
    return added;
  }
  static ActionPtr AddAction(const ClassPtr& owner, const std::string& name, const std::string& table) {
    auto added = owner->Actions()->SetupItem({.Name = name, .DatabaseName = "Shop", .UsageFlags = ufProperties});
    added->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = table});
    return added;
  }
  static std::string Names(const PropertiesPtr& properties) {
    if (!properties) return "none";
    std::string names;
    for (const auto& property : *properties) names += property->Name() + " ";
    return names;
  }

  ScopedApartment apartment_;
  SqliteFile file_{"create table orders (id integer, placed date); create table lines (id integer, amount double)"};
  ServerPtr server_ = Apartment().Servers->SetupItem({.Name = "Sales"});
  ActionPtr all_;
  ActionPtr broken_;
  ActionPtr lines_;
};

TEST_F(ServerMetaDataTest, OneBrokenActionLeavesAWarningAndTheOthersAreKept) {
  EXPECT_NO_THROW(server_->ActionMetaDataLoad());
  EXPECT_EQ(Names(all_->SchemaCache()), "id placed ");
  EXPECT_EQ(Names(lines_->SchemaCache()), "id amount ");
  EXPECT_EQ(Names(broken_->SchemaCache()), "none");
  const auto warning = apartment_.Messages().Item("15089");
  ASSERT_TRUE(warning);
  EXPECT_EQ(warning->SeverityFlags(), svfWarning);
  EXPECT_EQ(warning->TypeFlags(), tfVelmoria);
  EXPECT_EQ(warning->Description(),
            "This Action does not support the building of Property Collections.  Action: 'Broken'  UsageFlags: "
            "'Properties'");
  EXPECT_TRUE(apartment_.Messages().Item("15120"));
}

TEST_F(ServerMetaDataTest, LoadingWithoutFailureLeavesNoWarning) {
  server_->Classes()->Item("Order")->Actions()->Remove("Broken");
  server_->ActionMetaDataLoad();
  EXPECT_FALSE(apartment_.Messages().Item("15089"));
}

TEST_F(ServerMetaDataTest, LoadingEmptiesMessagesFirst) {
  EXPECT_THROW(server_->Classes()->Item("Nobody"), Error);
  server_->ActionMetaDataLoad();
  EXPECT_FALSE(apartment_.Messages().Item("15065"));
}

TEST_F(ServerMetaDataTest, LoadingTurnsTheUseOfMetaDataOn) {
  server_->SetUseMetaData(false);
  server_->ActionMetaDataLoad();
  EXPECT_TRUE(server_->UseMetaData());
}

TEST_F(ServerMetaDataTest, AFormerSchemaOfAnActionThatBrokeStays) {
  server_->ActionMetaDataLoad();
  all_->Sources()->Item()->SetSourceText("nowhere");
  server_->ActionMetaDataLoad();
  EXPECT_EQ(Names(all_->SchemaCache()), "id placed ");
}

TEST_F(ServerMetaDataTest, ClearingDropsWhatIsKept) {
  server_->ActionMetaDataLoad();
  server_->ActionMetaDataClear();
  EXPECT_EQ(Names(all_->SchemaCache()) + Names(lines_->SchemaCache()), "nonenone");
}

TEST_F(ServerMetaDataTest, TheSchemaBelongsToTheFacadeReachedThroughThisServer) {
  server_->ActionMetaDataLoad();
  const auto other = Make<Server>();
  other->Bind(server_->Data(), Parents());
  EXPECT_EQ(Names(other->Classes()->Item("Order")->Actions()->Item("All")->SchemaCache()), "none");
}

TEST_F(ServerMetaDataTest, WhatIsKeptIsACopy) {
  const auto columns = all_->CreateProperties();
  server_->KeepSchema("Order", "All", columns);
  columns->Item("id")->Data()->SetCaption("changed");
  EXPECT_NE(all_->SchemaCache(), columns);
  EXPECT_EQ(all_->SchemaCache()->Item("id")->Caption(), "");
}

TEST_F(ServerMetaDataTest, NothingIsKeptWithoutTheUseOfMetaData) {
  server_->SetUseMetaData(false);
  server_->KeepSchema("Order", "All", all_->CreateProperties());
  EXPECT_FALSE(all_->SchemaCache());
}

TEST_F(ServerMetaDataTest, ALockedActionTakesASchemaToo) {
  all_->SetLocked(true);
  server_->ActionMetaDataLoad();
  EXPECT_TRUE(all_->SchemaCache());
}

}  // namespace
}  // namespace velmoria::test
