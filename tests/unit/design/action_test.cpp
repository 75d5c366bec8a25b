#include "velmoria/design/action.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/brokering/key_format_data.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_context.h"

namespace velmoria::test {
namespace {

class ActionTest : public testing::Test {
 protected:
  DatabasePtr AddDatabase(bool autoConnect = true) {
    return Apartment().Databases->SetupItem({.Name = "Shop", .Engine = engODBC, .AutoConnect = autoConnect});
  }
  static void AddConnector(const DatabasePtr& database, zEngines engine) {
    database->Connectors()->SetupItem({.Engine = engine, .ConnectionType = ctText, .ConnectionString = "Driver=None"});
  }
  ActionPtr AddAction(const ActionFields& fields) { return class_->Actions()->SetupItem(fields); }
  /// With a Source for engODBC whose one parameter is Id.
  ActionPtr AddGet() {
    const auto get = AddAction({.Name = "Get", .DatabaseName = "Shop"});
    const auto source = get->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
    source->Parameters()->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput});
    return get;
  }
  IdentifierPtr IdentifierOf(std::int32_t id, std::int32_t year) {
    class_->Properties()->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput});
    class_->Properties()->SetupItem({.Name = "Year", .DataType = dtLongInteger, .Flags = pfInput | pfRequired});
    auto identifier = class_->CreateIdentifier();
    identifier->Properties()->Item("Id")->SetValue(id);
    identifier->Properties()->Item("Year")->SetValue(year);
    return identifier;
  }

  ScopedApartment apartment_;
  ServerPtr server_ = MakeDesign<ServerKind>({.Name = "Sales"});
  ClassPtr class_ = server_->Classes()->SetupItem({.Name = "Order"});
};

TEST_F(ActionTest, SetupItemStoresEveryField) {
  const auto action = AddAction({.Name = "Get",
                                 .DatabaseName = "Shop",
                                 .ConnectionsName = "Batch",
                                 .UsageFlags = ufObjects,
                                 .EditFlags = efUpdate,
                                 .Description = "d",
                                 .CollectionType = cltInitialized,
                                 .ObjectType = otModel,
                                 .ObjectBuffer = 50,
                                 .BusinessObjectsName = "Orders",
                                 .PropertiesName = "Row",
                                 .Locked = true});
  EXPECT_EQ(action->DatabaseName(), "Shop");
  EXPECT_EQ(action->ConnectionsName(), "Batch");
  EXPECT_EQ(action->UsageFlags(), ufObjects);
  EXPECT_EQ(action->EditFlags(), efUpdate);
  EXPECT_EQ(action->Description(), "d");
  EXPECT_EQ(action->CollectionType(), cltInitialized);
  EXPECT_EQ(action->ObjectType(), otModel);
  EXPECT_EQ(action->ObjectBuffer(), 50);
  EXPECT_EQ(action->BusinessObjectsName(), "Orders");
  EXPECT_EQ(action->PropertiesName(), "Row");
  EXPECT_TRUE(action->Locked());
}

TEST_F(ActionTest, WhatIsNotGivenIsZero) {
  const auto action = AddAction({.Name = "Get"});
  EXPECT_EQ(action->UsageFlags(), ufNone);
  EXPECT_EQ(action->EditFlags(), efNone);
  EXPECT_EQ(action->CollectionType(), cltOptimized);
  EXPECT_EQ(action->ObjectType(), otBusiness);
  EXPECT_EQ(action->ObjectBuffer(), 0);
}

TEST_F(ActionTest, SettersStore) {
  const auto action = AddAction({.Name = "Get"});
  action->SetDatabaseName("Shop");
  action->SetConnectionsName("Batch");
  action->SetUsageFlags(ufExecute);
  action->SetEditFlags(efDelete);
  action->SetCollectionType(cltDispatcher);
  action->SetObjectType(otDefault);
  action->SetObjectBuffer(-5);
  action->SetBusinessObjectsName("Orders");
  action->SetPropertiesName("Row");
  EXPECT_EQ(action->DatabaseName() + action->ConnectionsName(), "ShopBatch");
  EXPECT_EQ(action->UsageFlagsDisplay(), "Execute");
  EXPECT_EQ(action->EditFlagsDisplay(), "Delete");
  EXPECT_EQ(action->CollectionType(), cltDispatcher);
  EXPECT_EQ(action->ObjectType(), otDefault);
  EXPECT_EQ(action->ObjectBuffer(), -5);
  EXPECT_EQ(action->BusinessObjectsName() + action->PropertiesName(), "OrdersRow");
}

TEST_F(ActionTest, AllUsageFlagsPassEveryTest) {
  const auto action = AddAction({.Name = "Get", .UsageFlags = ufAll});
  for (const auto flag : {ufObjects, ufProperties, ufExecute}) EXPECT_TRUE(has(action->UsageFlags(), flag));
}

TEST_F(ActionTest, NamesOfTheParents) {
  const auto action = AddAction({.Name = "Get"});
  EXPECT_EQ(action->ServerName(), "Sales");
  EXPECT_EQ(action->ClassName(), "Order");
  EXPECT_EQ(class_->Actions()->ServerName(), "Sales");
  EXPECT_EQ(class_->Actions()->ClassName(), "Order");
  EXPECT_EQ(Make<Action>()->ServerName() + Make<Action>()->ClassName(), "");
}

TEST_F(ActionTest, TheSourceInForceFollowsTheEngineOfTheDatabase) {
  const auto database = AddDatabase();
  const auto get = AddGet();
  const auto oracle = get->Sources()->SetupItem({.Engine = engOracle, .SourceType = stTable});
  EXPECT_EQ(get->Sources()->Item()->Engine(), engODBC);
  database->SetEngine(engOracle);
  EXPECT_EQ(get->Sources()->Item(), oracle);
  EXPECT_EQ(get->DatabaseEngine(), engOracle);
  EXPECT_EQ(get->DatabaseEngineName(), database->EngineName());
}

TEST_F(ActionTest, AnUnknownDatabaseFailsBeforeAnySourceIsLookedAt) {
  const auto get = AddGet();
  const auto unknown = "Index: 'Shop'";
  ExpectRaised(zErrors{15069}, [&] { get->Sources()->Item(); }, {.Text = unknown, .Count = 1});
  ExpectRaised(zErrors{15069}, [&] { get->DatabaseEngine(); }, {.Text = unknown, .Count = 1});
  ExpectRaised(zErrors{15069}, [&] { get->DatabaseEngineName(); }, {.Text = unknown, .Count = 1});
  EXPECT_FALSE(get->Sources()->Find(engUnknown));
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(ActionTest, WithoutRegisteredDatabasesThereIsNoEngine) {
  const auto get = AddGet();
  Apartment().Databases = nullptr;
  EXPECT_EQ(get->DatabaseEngine(), engUnknown);
  EXPECT_EQ(get->DatabaseEngineName(), "");
}

TEST_F(ActionTest, ParametersAreACopyOfThoseOfTheSource) {
  AddDatabase();
  const auto get = AddGet();
  const auto parameters = get->CreateParameters();
  parameters->Item("Id")->SetValue(7);
  EXPECT_EQ(parameters->Count(), 1);
  EXPECT_TRUE(get->Sources()->Item()->Parameters()->Item("Id")->EmptyValue());
}

TEST_F(ActionTest, ParametersTakeTheValuesOfAnIdentifier) {
  AddDatabase();
  const auto parameters = AddGet()->CreateParameters(IdentifierOf(7, 2026));
  EXPECT_EQ(parameters->Item("Id")->Value().AsLong(), 7);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(ActionTest, WhatIsNoParameterJoinsAsACopyWithInputAlone) {
  AddDatabase();
  const auto identifier = IdentifierOf(7, 2026);
  const auto parameters = AddGet()->CreateParameters(identifier);
  const auto year = parameters->Item("Year");
  EXPECT_EQ(year->Value().AsLong(), 2026);
  EXPECT_EQ(year->Flags(), pfInput);
  EXPECT_EQ(identifier->Properties()->Item("Year")->Flags(), pfInput | pfRequired);
  EXPECT_NE(year, identifier->Properties()->Item("Year"));
}

TEST_F(ActionTest, WithoutAutoConnectTheApplicationMustConnect) {
  AddDatabase(false);
  ExpectRaised(zErrors{15084}, [&] { AddGet()->Connection(); }, {.Text = "Database: Shop", .Count = 1});
}

TEST_F(ActionTest, WithoutAutoConnectAConnectionSetUpByTheApplicationIsUsed) {
  AddDatabase(false);
  const auto made = Apartment().ConnectionContext->SetupConnection(
      {.DatabaseName = "Shop", .Engine = engODBC, .ConnectionType = ctText, .ConnectionString = "Driver=None"});
  EXPECT_EQ(AddGet()->Connection(), made);
}

TEST_F(ActionTest, AConnectionIsSetUpFromTheConnectorInForceAndNotOpened) {
  AddConnector(AddDatabase(), engODBC);
  const auto get = AddGet();
  const auto connection = get->Connection();
  EXPECT_EQ(connection->DatabaseName(), "Shop");
  EXPECT_EQ(connection->Engine(), engODBC);
  EXPECT_FALSE(connection->ConnectionOpen());
  EXPECT_EQ(Apartment().ConnectionContext->GetConnection("Shop"), connection);
  EXPECT_EQ(apartment_.Messages().Count(), 0);
}

TEST_F(ActionTest, ConnectionsOfANamedGroupAreTheirOwn) {
  AddConnector(AddDatabase(), engODBC);
  const auto get = AddGet();
  get->SetConnectionsName("Batch");
  EXPECT_EQ(get->Connection()->ConnectionsName(), "Batch");
  EXPECT_FALSE(Apartment().ConnectionContext->FindConnection("Shop"));
}

TEST_F(ActionTest, AConnectionOnceFoundStaysWhenTheEngineChanges) {
  const auto database = AddDatabase();
  AddConnector(database, engODBC);
  AddConnector(database, engSybase);
  const auto get = AddGet();
  const auto connection = get->Connection();
  database->SetEngine(engSybase);
  EXPECT_EQ(get->Connection(), connection);
  EXPECT_EQ(get->Connection()->Engine(), engODBC);
}

TEST_F(ActionTest, AnEngineWithoutConnectorFailsInTheConnectors) {
  const auto database = AddDatabase();
  AddConnector(database, engODBC);
  database->SetEngine(engOracle);
  ExpectRaised(zErrors{15068}, [&] { AddGet()->Connection(); }, {.Text = "Engine: 5  Index: 0", .Count = 1});
}

TEST_F(ActionTest, AConnectionOfAnUnknownDatabaseRaises15069) {
  ExpectRaised(zErrors{15069}, [&] { AddGet()->Connection(); }, {.Text = "Index: 'Shop'"});
}

TEST_F(ActionTest, SupportsAsyncAsksTheConnection) {
  const auto database = AddDatabase();
  AddConnector(database, engODBC);
  EXPECT_FALSE(AddGet()->SupportsAsync());
  EXPECT_TRUE(Apartment().ConnectionContext->FindConnection("Shop"));
}

TEST_F(ActionTest, SupportsAsyncFailsWhereTheConnectionDoes) {
  AddDatabase(false);
  ExpectRaised(zErrors{15084}, [&] { AddGet()->SupportsAsync(); });
}

struct RecordSetRow {
  zSourceTypes SourceType;
  zEditFlags EditFlags;
  int Expected;
};

TEST_F(ActionTest, TheRecordSetTypeIsThatOfTheAccessSourceWhateverTheEngineInForce) {
  const RecordSetRow rows[] = {
      {stTable, efNone, 1},      {stTable, efAll, 1}, {stQueryDef, efNone, 4},
      {stQueryDef, efInsert, 2}, {stSQL, efNone, 4},  {stSQL, efAll, 2},
      {stNone, efAll, 0},        {stView, efAll, 0},  {stStoredProcedure, efAll, 0},
      {stView, efNone, 0},
  };
  const auto get = AddGet();
  const auto access = get->Sources()->SetupItem({.Engine = engAccess, .SourceType = stTable});
  for (const auto& row : rows) {
    access->SetSourceType(row.SourceType);
    get->SetEditFlags(row.EditFlags);
    EXPECT_EQ(get->RecordSetType(), row.Expected) << access->SourceTypeName() << " " << get->EditFlagsDisplay();
  }
}

TEST_F(ActionTest, WithoutAnAccessSourceThereIsNoRecordSetType) {
  ExpectRaised(zErrors{15075}, [&] { AddGet()->RecordSetType(); }, {.Text = "Engine: 1  Index: 1", .Count = 1});
}

TEST_F(ActionTest, WhetherItIsReadOverRdoGoesByTheSourceInForce) {
  const auto database = AddDatabase();
  const auto get = AddGet();
  get->Sources()->SetupItem({.Engine = engAccess, .SourceType = stTable});
  EXPECT_TRUE(get->IsReadOverRDO());
  database->SetEngine(engAccess);
  EXPECT_FALSE(get->IsReadOverRDO());
  database->SetEngine(engOracle);
  ExpectRaised(zErrors{15075}, [&] { get->IsReadOverRDO(); }, {.Text = "Engine: 5  Index: 0"});
}

TEST_F(ActionTest, PropertiesNeedAClassAndAServer) {
  AddDatabase();
  const auto free = MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop"});
  free->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
  ExpectRaised(zErrors{15157}, [&] { free->CreateProperties(); }, {.Text = "Operation: 'Creating Properties'"});
  MakeDesign<ClassKind>({.Name = "Order"})->Actions()->Add(free);
  ExpectRaised(zErrors{15159}, [&] { free->CreateProperties(); }, {.Text = "Operation: 'Creating Properties'"});
}

TEST_F(ActionTest, PropertiesOfAnUnknownDatabaseFailBeforeAnythingElse) {
  ExpectRaised(zErrors{15069}, [&] { MakeDesign<ActionKind>({.Name = "Get"})->CreateProperties(); },
               {.Text = "Index: ''", .Count = 1});
}

TEST_F(ActionTest, ASourceOfAnEngineThatNothingReadsHasNoProperties) {
  const auto database = AddDatabase();
  const auto get = AddGet();
  get->Sources()->ChangeItemEngine(engODBC, engRMS);
  database->SetEngine(engRMS);
  const auto properties = get->CreateProperties();
  EXPECT_EQ(properties->Style(), psDefinition);
  EXPECT_EQ(properties->Count(), 0);
}

TEST_F(ActionTest, TheKeyFormatIsMadeOnFirstRequestAndKept) {
  const auto get = AddGet();
  get->KeyFormat()->SetSeparator("|");
  EXPECT_EQ(get->KeyFormat()->Separator(), "|");
  EXPECT_EQ(get->Data()->KeyFormatData()->Fields().Separator, "|");
}

TEST_F(ActionTest, AChangedKeyFormatAloneDoesNotMakeDirty) {
  const auto alone = Make<Action>();
  alone->KeyFormat()->SetSeparator("|");
  EXPECT_FALSE(alone->Dirty());
}

TEST_F(ActionTest, AChangedSourceMakesDirty) {
  const auto alone = Make<Action>();
  alone->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable});
  EXPECT_TRUE(alone->Dirty());
}

TEST_F(ActionTest, RecursiveCopyTakesKeyFormatSourcesAndUserProperties) {
  const auto get = AddGet();
  get->KeyFormat()->SetSeparator("|");
  get->UserProperties()->SetupItem({.Name = "Note"});
  const auto copy = get->Copy("Other");
  get->KeyFormat()->SetSeparator("-");
  EXPECT_EQ(copy->KeyFormat()->Separator(), "|");
  EXPECT_EQ(copy->Sources()->Item(engODBC)->SourceText(), "orders");
  EXPECT_EQ(copy->Sources()->Item(engODBC)->Parameters()->Count(), 1);
  EXPECT_EQ(copy->UserProperties()->Count(), 1);
  EXPECT_EQ(copy->ClassName(), "");
}

}  // namespace
}  // namespace velmoria::test
