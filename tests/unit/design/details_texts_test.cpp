#include <string>

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/scoped_apartment.h"

namespace velmoria::test {
namespace {

class DetailsTextsTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
};

struct DetailsRow {
  std::string Shown;
  const char* Expected;
};

template <std::size_t Count>
void ExpectRows(const DetailsRow (&rows)[Count]) {
  for (const auto& row : rows) EXPECT_EQ(row.Shown, row.Expected);
}

template <class Kind>
std::string Shown(const typename Kind::Fields& fields) {
  return MakeDesign<Kind>(fields)->Details();
}

TEST_F(DetailsTextsTest, OfMembers) {
  ExpectRows({
      {Shown<ActionKind>({.Name = "Get", .DatabaseName = "Shop", .EditFlags = efUpdate | efDelete}),
       "Action: 'Get'  Database: 'Shop'  EditFlags: 'Delete; Update'  CollectionType: 'Optimized'"},
      {Shown<ClassKind>({.Name = "Order",
                         .ActiveXClass = "COrder",
                         .SingleActionName = "One",
                         .NewActionName = "New",
                         .DefaultActionName = "All"}),
       "Class: 'Order'  ActiveXClass: 'COrder'  DefaultAction: 'All'  SingleAction: 'One'  NewAction: 'New'"},
      {Shown<ServerKind>({.Name = "Sales", .FileName = "/sales.vsd", .ActiveXComponent = "SalesLib"}),
       "Server: 'Sales'  ActiveXComponent: 'SalesLib'  FileName: '/sales.vsd'"},
      {Shown<DatabaseKind>({.Name = "Shop", .FileName = "/shop.vdb", .AutoConnect = true}),
       "Database: 'Shop'  AutoConnect: True  FileName: '/shop.vdb'"},
      {Shown<SourceKind>({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"}),
       "Source: 'Generic ODBC'  Type: 'Table'  Text: 'orders'"},
      {Shown<ConnectorKind>({.Engine = engODBC,
                             .ConnectionType = ctDSN,
                             .ConnectionString = "shop",
                             .CursorDriver = crdClientSide,
                             .CursorType = crtStatic,
                             .UserName = "anna"}),
       "Connector: 'Generic ODBC'  ConnectionType: 'Data Source Name'  ConnectionString: 'shop'  Username: 'anna'  "
       "DefinitionValidation: 'False'  CursorDriver: 'Client Side (ODBC)'  CursorType: 'Static'"},
      {Shown<RelationshipKind>({.Name = "Lines",
                                .Association = raOneToMany,
                                .RelatedServerName = "Sales",
                                .RelatedClassName = "Line",
                                .RelatedActionName = "OfOrder"}),
       "Association: 'One to Many' Related Server: 'Sales' Related Class: 'Line' Related Action: 'OfOrder'"},
      {Shown<LinkKind>({.Name = "Id"}), "Link: 'Id'"},
  });
}

TEST_F(DetailsTextsTest, WithoutADataFileTheFileNameIsLeftOut) {
  ExpectRows({{Make<Server>()->Details(), "Server: ''  ActiveXComponent: ''"},
              {Make<Database>()->Details(), "Database: ''  AutoConnect: False"}});
}

TEST_F(DetailsTextsTest, ANewFileWithoutPlaceShowsAnEmptyFileName) {
  ExpectRows({{Shown<ServerKind>({.Name = "Sales"}), "Server: 'Sales'  ActiveXComponent: ''  FileName: ''"},
              {Shown<DatabaseKind>({.Name = "Shop"}), "Database: 'Shop'  AutoConnect: False  FileName: ''"}});
}

TEST_F(DetailsTextsTest, NumbersOutsideTheirEnumerationAreKeptAndHaveNoName) {
  const auto source = MakeDesign<SourceKind>({.Engine = engODBC, .SourceType = stTable});
  source->SetSourceType(zSourceTypes{9});
  ExpectRows({
      {Shown<ActionKind>({.Name = "Get", .EditFlags = zEditFlags{8}, .CollectionType = zCollectionTypes{9}}),
       "Action: 'Get'  Database: ''  EditFlags: ''  CollectionType: ''"},
      {source->Details(), "Source: 'Generic ODBC'  Type: ''  Text: ''"},
      {Shown<ConnectorKind>({.Engine = engODBC,
                             .ConnectionType = zConnectionTypes{9},
                             .CursorDriver = zCursorDrivers{9},
                             .CursorType = zCursorTypes{-1}}),
       "Connector: 'Generic ODBC'  ConnectionType: ''  ConnectionString: ''  Username: ''  DefinitionValidation: "
       "'False'  CursorDriver: ''  CursorType: ''"},
      {Shown<RelationshipKind>({.Name = "Lines", .Association = zAssociations{9}}),
       "Association: '' Related Server: '' Related Class: '' Related Action: ''"},
  });
  EXPECT_EQ(source->SourceType(), zSourceTypes{9});
  EXPECT_EQ(MakeDesign<ActionKind>({.Name = "Get", .ObjectType = zObjectTypes{9}})->ObjectType(), zObjectTypes{9});
  EXPECT_EQ(MakeDesign<DatabaseKind>({.Name = "Shop", .Engine = zEngines{99}})->EngineName(), "(Unknown)");
}

// Every collection in its three forms, with as many members as it has in a small design.
class CollectionDetailsTest : public DetailsTextsTest {
 protected:
  CollectionDetailsTest() {
    link_ = relationship_->Links()->SetupItem({.Name = "Id"});
    source_ = action_->Sources()->SetupItem({.Engine = engODBC, .SourceType = stTable, .SourceText = "orders"});
    connector_ = database_->Connectors()->SetupItem({.Engine = engODBC, .ConnectionType = ctDSN});
  }

  ServerPtr server_ = Apartment().Servers->SetupItem({.Name = "Sales"});
  DatabasePtr database_ = Apartment().Databases->SetupItem({.Name = "Shop"});
  ClassPtr class_ = server_->Classes()->SetupItem({.Name = "Order"});
  ActionPtr action_ = class_->Actions()->SetupItem({.Name = "Get"});
  RelationshipPtr relationship_ = class_->Relationships()->SetupItem({.Name = "Lines"});
  LinkPtr link_;
  SourcePtr source_;
  ConnectorPtr connector_;
};

TEST_F(CollectionDetailsTest, OfBoundCollectionsNameTheParent) {
  const auto line = [](const std::string& count, const auto& member) { return count + "\r\n    " + member->Details(); };
  EXPECT_EQ(class_->Actions()->Details(), line("Actions Count 1 for Class 'Order'", action_));
  EXPECT_EQ(server_->Classes()->Details(), line("Classes Count 1 for Server 'Sales'", class_));
  EXPECT_EQ(class_->Relationships()->Details(), line("Relationships Count 1 for Class 'Order'", relationship_));
  EXPECT_EQ(relationship_->Links()->Details(), line("Links Count 1 for Relationship 'Lines'", link_));
  EXPECT_EQ(Apartment().Servers->Details(), line("Registered Servers Count 1", server_));
  EXPECT_EQ(Apartment().Databases->Details(), line("Registered Databases Count 1", database_));
  EXPECT_EQ(action_->Sources()->Details(), line("Sources Count: 1", source_));
  EXPECT_EQ(database_->Connectors()->Details(), line("Connectors Count 1", connector_));
}

TEST_F(CollectionDetailsTest, OfDefinitionsNameNoParentAndServersHaveAColon) {
  const auto line = [](const std::string& count, const auto& member) { return count + "\r\n    " + member->Details(); };
  EXPECT_EQ(class_->Data()->ActionsData()->Details(), line("Actions Count 1", action_));
  EXPECT_EQ(server_->Data()->ClassesData()->Details(), line("Classes Count 1", class_));
  EXPECT_EQ(class_->Data()->RelationshipsData()->Details(), line("Relationships Count 1", relationship_));
  EXPECT_EQ(relationship_->Data()->LinksData()->Details(), line("Links Count 1", link_));
  EXPECT_EQ(Apartment().ServersData->Details(), line("Registered Servers Count: 1", server_));
  EXPECT_EQ(Apartment().DatabasesData->Details(), line("Registered Databases Count 1", database_));
  EXPECT_EQ(action_->Data()->SourcesData()->Details(), line("Sources Count: 1", source_));
  EXPECT_EQ(database_->Data()->ConnectorsData()->Details(), line("Connectors Count 1", connector_));
}

template <class Collection>
std::string TransientDetails() {
  return Make<Collection>()->Details();
}

TEST_F(CollectionDetailsTest, OfTransientCollectionsNameNoParent) {
  ExpectRows({{TransientDetails<Actions>(), "Actions Count 0"},
              {TransientDetails<Classes>(), "Classes Count 0"},
              {TransientDetails<Relationships>(), "Relationships Count 0"},
              {TransientDetails<Links>(), "Links Count 0"},
              {TransientDetails<Servers>(), "Servers Count 0"},
              {TransientDetails<Databases>(), "Databases Count 0"},
              {TransientDetails<Sources>(), "Sources Count: 0"},
              {TransientDetails<Connectors>(), "Connectors Count 0"}});
}

TEST_F(CollectionDetailsTest, OfDefinitionsWithoutAParentNameNone) {
  const auto actions = Make<Actions>();
  actions->Bind(class_->Data()->ActionsData());
  EXPECT_EQ(actions->Details(), "Actions Count 1\r\n    " + action_->Details());
}

TEST_F(CollectionDetailsTest, MembersOfATransientCollectionAreIndented) {
  const auto links = Make<Links>();
  links->Add(MakeDesign<LinkKind>({.Name = "a"}));
  links->Add(MakeDesign<LinkKind>({.Name = "b"}));
  EXPECT_EQ(links->Details(), "Links Count 2\r\n    Link: 'a'\r\n    Link: 'b'");
}

}  // namespace
}  // namespace velmoria::test
