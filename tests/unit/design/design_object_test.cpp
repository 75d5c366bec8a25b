#include "velmoria/design/design_object.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/key_format.h"
#include "velmoria/core/messages.h"
#include "velmoria/properties/properties.h"

namespace velmoria::test {
namespace {

class DesignObjectTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

struct Setter {
  std::string Routine;
  std::function<void()> Call;
};

void ExpectRefused(const std::string& type, const std::vector<Setter>& setters) {
  for (const auto& setter : setters) {
    ExpectRaised(zErrors{15002}, setter.Call, {.Text = type + "." + setter.Routine + " (Let)", .Count = 1});
  }
}

void ExpectAccepted(const std::vector<Setter>& setters) {
  for (const auto& setter : setters) EXPECT_NO_THROW(setter.Call()) << setter.Routine;
}

TEST_F(DesignObjectTest, EverySetterOfALockedActionRefuses) {
  const auto action = Make<Action>();
  action->SetLocked(true);
  ExpectRefused("Action", {{"ObjectBuffer", [&] { action->SetObjectBuffer(1); }},
                           {"ObjectType", [&] { action->SetObjectType(otModel); }},
                           {"Description", [&] { action->SetDescription("x"); }},
                           {"EditFlags", [&] { action->SetEditFlags(efAll); }},
                           {"UsageFlags", [&] { action->SetUsageFlags(ufAll); }},
                           {"ConnectionsName", [&] { action->SetConnectionsName("x"); }},
                           {"PropertiesName", [&] { action->SetPropertiesName("x"); }},
                           {"BusinessObjectsName", [&] { action->SetBusinessObjectsName("x"); }},
                           {"DatabaseName", [&] { action->SetDatabaseName("x"); }},
                           {"CollectionType", [&] { action->SetCollectionType(cltInitialized); }}});
}

TEST_F(DesignObjectTest, ALockedActionCanBeUnlocked) {
  const auto action = Make<Action>();
  action->SetLocked(true);
  action->SetLocked(false);
  action->SetDescription("free again");
  EXPECT_EQ(action->Description(), "free again");
}

TEST_F(DesignObjectTest, EverySetterOfALockedClassRefuses) {
  const auto object = Make<Class>();
  object->SetLocked(true);
  ExpectRefused("Class", {{"Description", [&] { object->SetDescription("x"); }},
                          {"ActiveXClass", [&] { object->SetActiveXClass("x"); }},
                          {"ActiveXCollection", [&] { object->SetActiveXCollection("x"); }},
                          {"SingleActionName", [&] { object->SetSingleActionName("x"); }},
                          {"NewActionName", [&] { object->SetNewActionName("x"); }},
                          {"DefaultActionName", [&] { object->SetDefaultActionName("x"); }}});
}

TEST_F(DesignObjectTest, EverySetterOfALockedDatabaseRefuses) {
  const auto database = Make<Database>();
  database->SetLocked(true);
  ExpectRefused("Database", {{"Name", [&] { database->SetName("x"); }},
                             {"AutoConnect", [&] { database->SetAutoConnect(true); }},
                             {"Description", [&] { database->SetDescription("x"); }},
                             {"Engine", [&] { database->SetEngine(engODBC); }}});
}

TEST_F(DesignObjectTest, EverySetterOfALockedConnectorRefuses) {
  const auto connector = Make<Connector>();
  connector->SetLocked(true);
  ExpectRefused("Connector", {{"Description", [&] { connector->SetDescription("x"); }},
                              {"ConnectionType", [&] { connector->SetConnectionType(ctText); }},
                              {"ConnectionString", [&] { connector->SetConnectionString("x"); }},
                              {"CursorDriver", [&] { connector->SetCursorDriver(crdServerSide); }},
                              {"CursorType", [&] { connector->SetCursorType(crtStatic); }},
                              {"UserName", [&] { connector->SetUserName("x"); }},
                              {"Password", [&] { connector->SetPassword("x"); }},
                              {"DefinitionValidation", [&] { connector->SetDefinitionValidation(true); }}});
}

TEST_F(DesignObjectTest, ALockedServerAcceptsEverySetter) {
  const auto server = Make<Server>();
  server->SetLocked(true);
  ExpectAccepted({{"Name", [&] { server->SetName("x"); }},
                  {"Description", [&] { server->SetDescription("x"); }},
                  {"ActiveXComponent", [&] { server->SetActiveXComponent("x"); }},
                  {"UseMetaData", [&] { server->SetUseMetaData(false); }}});
  EXPECT_EQ(server->Description(), "x");
}

TEST_F(DesignObjectTest, ALockedSourceAcceptsEverySetter) {
  const auto source = Make<Source>();
  source->SetLocked(true);
  ExpectAccepted({{"SourceType", [&] { source->SetSourceType(stView); }},
                  {"SourceText", [&] { source->SetSourceText("x"); }},
                  {"KeysetSize", [&] { source->SetKeysetSize(1); }},
                  {"RowsetSize", [&] { source->SetRowsetSize(1); }},
                  {"OptionFlags", [&] { source->SetOptionFlags(ofRDOAsync); }},
                  {"Description", [&] { source->SetDescription("x"); }}});
  EXPECT_EQ(source->SourceText(), "x");
}

TEST_F(DesignObjectTest, LockedDoesNotReachChildren) {
  const auto object = Make<Class>();
  object->SetLocked(true);
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  action->SetDescription("x");
  EXPECT_FALSE(action->Locked());
}

TEST_F(DesignObjectTest, DetailsOfEveryKind) {
  const auto details = [](const auto& object) { return object->Details(); };
  EXPECT_EQ(details(MakeDesign<ActionKind>({.Name = "Get", .DatabaseName = "Shop", .EditFlags = efUpdate | efDelete})),
            "Action: 'Get'  Database: 'Shop'  EditFlags: 'Delete; Update'  CollectionType: 'Optimized'");
  EXPECT_EQ(details(MakeDesign<ClassKind>({.Name = "Order",
                                           .ActiveXClass = "COrder",
                                           .SingleActionName = "One",
                                           .NewActionName = "New",
                                           .DefaultActionName = "All"})),
            "Class: 'Order'  ActiveXClass: 'COrder'  DefaultAction: 'All'  SingleAction: 'One'  NewAction: 'New'");
  EXPECT_EQ(details(MakeDesign<ServerKind>({.Name = "Sales", .ActiveXComponent = "SalesLib"})),
            "Server: 'Sales'  ActiveXComponent: 'SalesLib'");
  EXPECT_EQ(details(MakeDesign<DatabaseKind>({.Name = "Shop", .AutoConnect = true})),
            "Database: 'Shop'  AutoConnect: True");
  EXPECT_EQ(details(MakeDesign<SourceKind>({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"})),
            "Source: 'Generic ODBC'  Type: 'Table'  Text: 'orders'");
  EXPECT_EQ(
      details(MakeDesign<ConnectorKind>({.Engine = engODBC,
                                         .ConnectionType = ctDSN,
                                         .ConnectionString = "shop",
                                         .CursorDriver = crdClientSide,
                                         .CursorType = crtStatic,
                                         .UserName = "anna"})),
      "Connector: 'Generic ODBC'  ConnectionType: 'Data Source Name'  ConnectionString: 'shop'  Username: 'anna'  "
      "DefinitionValidation: 'False'  CursorDriver: 'Client Side (ODBC)'  CursorType: 'Static'");
}

TEST_F(DesignObjectTest, DetailsOfCollectionsCountAndIndentTheirMembers) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto order = server->Classes()->SetupItem({.Name = "Order"});
  const auto get = order->Actions()->SetupItem({.Name = "Get"});
  get->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
  EXPECT_EQ(server->Classes()->Details(), "Classes Count 1 for Server 'Sales'\r\n    " + order->Details());
  EXPECT_EQ(order->Actions()->Details(), "Actions Count 1 for Class 'Order'\r\n    " + get->Details());
  EXPECT_EQ(get->Sources()->Details(), "Sources Count: 1\r\n    Source: 'Generic ODBC'  Type: 'Table'  Text: 'orders'");
  EXPECT_EQ(MakeDesign<DatabaseKind>({.Name = "Shop"})->Connectors()->Details(), "Connectors Count 0");
  EXPECT_EQ(Apartment().Servers->Details(), "Registered Servers Count 0");
  EXPECT_EQ(Apartment().Databases->Details(), "Registered Databases Count 0");
}

TEST_F(DesignObjectTest, DetailsOfTransientCollectionsNameNoParent) {
  EXPECT_EQ(Make<Classes>()->Details(), "Classes Count 0");
  EXPECT_EQ(Make<Actions>()->Details(), "Actions Count 0");
  EXPECT_EQ(Make<Sources>()->Details(), "Sources Count: 0");
  EXPECT_EQ(Make<Connectors>()->Details(), "Connectors Count 0");
  EXPECT_EQ(Make<Servers>()->Details(), "Servers Count 0");
  EXPECT_EQ(Make<Databases>()->Details(), "Databases Count 0");
}

TEST_F(DesignObjectTest, DetailsOfDefinitionsNameNoParentAndServersHaveAColon) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto order = server->Classes()->SetupItem({.Name = "Order"});
  EXPECT_EQ(server->Data()->ClassesData()->Details(), "Classes Count 1\r\n    " + order->Details());
  EXPECT_EQ(order->Data()->ActionsData()->Details(), "Actions Count 0");
  EXPECT_EQ(Make<SourcesData>()->Details(), "Sources Count: 0");
  EXPECT_EQ(Make<ConnectorsData>()->Details(), "Connectors Count 0");
  EXPECT_EQ(Make<ServersData>()->Details(), "Registered Servers Count: 0");
  EXPECT_EQ(Make<DatabasesData>()->Details(), "Registered Databases Count 0");
}

// The parents of members, and what a second one raises.

TEST_F(DesignObjectTest, ASecondParentOfEveryKindIsRefusedByName) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto object = server->Classes()->SetupItem({.Name = "Order"});
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  const auto source = action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable});
  const auto database = MakeDesign<DatabaseKind>({.Name = "Shop"});
  const auto connector = database->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctDSN});
  const auto other = MakeDesign<ServerKind>({.Name = "Stock"});
  const auto free = MakeDesign<ClassKind>({.Name = "Free"});
  const auto freeAction = MakeDesign<ActionKind>({.Name = "FreeGet"});
  ExpectRaised(zErrors{15108}, [&] { other->Classes()->Add(object); }, {.Text = "Server: 'Sales'", .Count = 2});
  ExpectRaised(zErrors{15101}, [&] { free->Actions()->Add(action); }, {.Text = "Class: 'Order'", .Count = 2});
  ExpectRaised(zErrors{15100}, [&] { freeAction->Sources()->Add(source); }, {.Text = "Action: 'Get'", .Count = 2});
  ExpectRaised(zErrors{15103}, [&] { Make<Database>()->Connectors()->Add(connector); },
               {.Text = "Database: 'Shop'", .Count = 2});
}

TEST_F(DesignObjectTest, ARefusedParentIsRecordedAsAProblemOfAddingToo) {
  const auto object = MakeDesign<ServerKind>({.Name = "Sales"})->Classes()->SetupItem({.Name = "Order"});
  EXPECT_THROW(Make<Server>()->Classes()->Add(object), Error);
  const auto message = Apartment().Messages->Item("15007");
  ASSERT_TRUE(message);
  EXPECT_NE(message->Description().find("Name: 'Order'"), std::string::npos);
}

TEST_F(DesignObjectTest, AParentTakenBeforeTheRefusedOneStays) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto order = server->Classes()->SetupItem({.Name = "Order"});
  const auto action = MakeDesign<ClassKind>({.Name = "Free"})->Actions()->SetupItem({.Name = "Get"});
  ExpectRaised(zErrors{15101}, [&] { order->Actions()->Add(action); }, {.Text = "Class: 'Free'"});
  EXPECT_EQ(action->ServerName(), "Sales");
  EXPECT_EQ(action->ClassName(), "Free");
}

TEST_F(DesignObjectTest, TheSameParentAgainIsRefusedToo) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto object = server->Classes()->SetupItem({.Name = "Order"});
  ExpectRaised(zErrors{15108}, [&] { server->Classes()->Add(object); }, {.Text = "Class.SetParent at"});
}

TEST_F(DesignObjectTest, TheServerIsNamedBeforeTheClass) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto object = server->Classes()->SetupItem({.Name = "Order"});
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  ExpectRaised(zErrors{15108}, [&] { object->Actions()->Add(action); }, {.Text = "Action.SetParents at"});
}

TEST_F(DesignObjectTest, AFailedAddPoisonsTheMember) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto object = MakeDesign<ClassKind>({.Name = "Order"});
  server->Classes()->SetupItem({.Name = "Line"});
  ExpectRaised(zErrors{15007}, [&] { server->Classes()->Add(object, {.Before = 1, .After = 1}); });
  ExpectRaised(zErrors{15108}, [&] { server->Classes()->Add(object); }, {.Text = "Server: 'Sales'"});
}

TEST_F(DesignObjectTest, ParentsReachChildrenThatAreThere) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto object = MakeDesign<ClassKind>({.Name = "Order"});
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  const auto source = action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable});
  static_cast<void>(action->KeyFormat()->Properties());
  static_cast<void>(source->Parameters());
  server->Classes()->Add(object);
  EXPECT_EQ(object->ServerName(), "Sales");
  EXPECT_EQ(action->ServerName(), "Sales");
  EXPECT_EQ(source->ServerName(), "Sales");
  EXPECT_EQ(source->ClassName(), "Order");
  EXPECT_EQ(source->ActionName(), "Get");
  EXPECT_EQ(source->Parameters()->ServerName(), "Sales");
  EXPECT_EQ(action->Sources()->ServerName(), "Sales");
}

TEST_F(DesignObjectTest, RemovedObjectsLoseTheirParentsAndKeepTheirChildren) {
  const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
  const auto object = server->Classes()->SetupItem({.Name = "Order"});
  const auto action = object->Actions()->SetupItem({.Name = "Get"});
  const auto source = action->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
  server->Classes()->Remove("Order");
  EXPECT_EQ(object->ServerName(), "");
  EXPECT_EQ(action->ServerName(), "");
  EXPECT_EQ(source->ServerName(), "");
  EXPECT_EQ(source->ClassName(), "Order");
  EXPECT_EQ(object->Actions()->Item("Get")->Sources()->Item(engODBC)->SourceText(), "orders");
}

TEST_F(DesignObjectTest, ChildrenOutliveTheFacesAboveThem) {
  ActionPtr action;
  {
    const auto server = MakeDesign<ServerKind>({.Name = "Sales"});
    action = server->Classes()->SetupItem({.Name = "Order"})->Actions()->SetupItem({.Name = "Get"});
  }
  EXPECT_EQ(action->ServerName(), "Sales");
  EXPECT_EQ(action->ClassName(), "Order");
}

TEST_F(DesignObjectTest, TwoListsOverOneDefinitionDriftApart) {
  const auto object = MakeDesign<ClassKind>({.Name = "Order"});
  const auto other = Make<Class>();
  other->Bind(object->Data(), Parents());
  EXPECT_EQ(other->Actions()->Count(), 0);
  object->Actions()->SetupItem({.Name = "Get"});
  EXPECT_EQ(object->Actions()->Count(), 1);
  EXPECT_EQ(other->Actions()->Count(), 0);
}

TEST_F(DesignObjectTest, AListBuiltLaterSeesTheDefinitionsOfOthers) {
  const auto object = MakeDesign<ClassKind>({.Name = "Order"});
  object->Actions()->SetupItem({.Name = "Get"});
  const auto other = Make<Class>();
  other->Bind(object->Data(), Parents());
  EXPECT_EQ(other->Actions()->Item("Get")->Data(), object->Actions()->Item("Get")->Data());
  EXPECT_NE(other->Actions()->Item("Get"), object->Actions()->Item("Get"));
}

// How an index that is not found is shown.

struct ShownIndex {
  Variant Index;
  const char* Text;
};

TEST_F(DesignObjectTest, AnIndexIsShownByItsType) {
  const ShownIndex rows[] = {
      {"x", "Index: 'x'"},
      {std::int16_t{7}, "Index: 7"},
      {std::int32_t{7}, "Index: 7"},
      {7.5, "Index: 7.5"},
      {Decimal(7), "Index: 7"},
      {Byte{7}, "Index: 7"},
      {7.5F, "Index: (Single)"},
      {Currency{}, "Index: (Currency)"},
      {Date::From(1998, 6, 1), "Index: (Date)"},
      {true, "Index: (Boolean)"},
      {Variant(), "Index: (Empty)"},
      {Variant::Null(), "Index: (Null)"},
      {Variant(ServerPtr()), "Index: (Nothing)"},
      {Variant::Missing(), "Index: (Error)"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Text);
    ExpectRaised(zErrors{15061}, [&] { Make<Class>()->Actions()->Item(row.Index); }, {.Text = row.Text, .Count = 1});
  }
}

TEST_F(DesignObjectTest, MembersAreFoundInAnyCaseAndByPosition) {
  const auto actions = Make<Class>()->Actions();
  const auto get = actions->SetupItem({.Name = "Get"});
  EXPECT_EQ(actions->Item("gET"), get);
  EXPECT_EQ(actions->Item(1), get);
}

TEST_F(DesignObjectTest, NamesThatDifferOnlyInCaseAreDuplicates) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "Get"});
  ExpectRaised(zErrors{15003}, [&] { actions->Add(MakeDesign<ActionKind>({.Name = "GET"})); }, {.Text = "Name: 'GET'"});
}

TEST_F(DesignObjectTest, RenameToTheSameNameInAnotherCaseFails) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "a"});
  ExpectRaised(zErrors{15147}, [&] { actions->RenameItem("a", "A"); }, {.Text = "Name: 'a'  NewName: 'A'"});
  EXPECT_EQ(actions->Item(1)->Name(), "a");
}

TEST_F(DesignObjectTest, PositionsOfEngineCollectionsAreEngines) {
  const auto sources = Make<Action>()->Sources();
  sources->SetupItem({.Engine = engOracle, .SourceType = stTable});
  sources->SetupItem({.Engine = engODBC, .SourceType = stTable}, {.Before = static_cast<std::int32_t>(engOracle)});
  EXPECT_EQ((*sources->begin())->Engine(), engODBC);
  ExpectRaised(zErrors{15017}, [&] { sources->SetupItem({.Engine = engSybase, .SourceType = stTable}, {.Before = 1}); },
               {.Text = "Engine: '4'  Before: '1'"});
}

TEST_F(DesignObjectTest, EmptyPositionsAreShownAsEmpty) {
  const auto actions = Make<Class>()->Actions();
  actions->SetupItem({.Name = "Get"});
  ExpectRaised(zErrors{15003}, [&] { actions->SetupItem({.Name = "Get"}, {.Before = Variant()}); },
               {.Text = "Before: '(Empty)'  After: '(Missing)'"});
}

TEST_F(DesignObjectTest, APlaceThatIsNoIndexIsShownByItsType) {
  const auto actions = Make<Class>()->Actions();
  ExpectRaised(zErrors{15003}, [&] { actions->SetupItem({.Name = "Get"}, {.Before = Variant::Null()}); },
               {.Text = "Before: '(Null)'"});
}

// Dirty.

TEST_F(DesignObjectTest, UntouchedChildrenLeaveTheParentClean) {
  EXPECT_FALSE(Make<Server>()->Dirty());
  EXPECT_FALSE(Make<Class>()->Dirty());
  EXPECT_FALSE(Make<Database>()->Dirty());
}

TEST_F(DesignObjectTest, AMemberThatCameOrWentMakesTheParentDirty) {
  const auto object = Make<Class>();
  EXPECT_EQ(object->Actions()->Count(), 0);
  EXPECT_FALSE(object->Dirty());
  object->Actions()->Add(Make<Action>());
  EXPECT_TRUE(object->Dirty());
}

TEST_F(DesignObjectTest, RegisteredListsBearNoStampOfTheirOwn) {
  const auto servers = ServerSample::Bound();
  servers->Add(Make<Server>());
  EXPECT_FALSE(servers->Data()->Dirty());
}

}  // namespace
}  // namespace velmoria::test
