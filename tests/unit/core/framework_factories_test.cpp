#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/sample_design.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/properties/parents_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class FrameworkFactoriesTest : public testing::Test {
 protected:
  ScopedApartment apartment_;
  Framework framework_;
};

TEST_F(FrameworkFactoriesTest, PropertyIsOfStyleNonPersistent) {
  EXPECT_EQ(framework_.CreateProperty({.Name = "X"})->Data()->Style(), psNonPersistent);
}

// Where a factory is called without names here, it is about the order of its arguments, too.

TEST_F(FrameworkFactoriesTest, PropertyHasItsDefaults) {
  const auto property = framework_.CreateProperty({.Name = "X"});
  EXPECT_TRUE(property->EmptyValue());
  EXPECT_EQ(property->DataType(), dtVariant);
  EXPECT_EQ(property->Operator(), "=");
  EXPECT_TRUE(property->Modifiable());
  EXPECT_FALSE(property->OrFlag());
  EXPECT_EQ(property->Engine(), engUnknown);
  EXPECT_EQ(property->ServerName(), "");
}

TEST_F(FrameworkFactoriesTest, PropertyHasItsFieldsInOrder) {
  const auto property = framework_.CreateProperty({"X", "text", dtString, 10, "<>", true, "source", "column", "table",
                                                   dtRDOVARCHAR, false, pfRequired, "default", "format", "mask",
                                                   "caption", "description", true, engOracle});
  EXPECT_EQ(property->Name(), "X");
  EXPECT_EQ(property->Value(), Variant("text"));
  EXPECT_EQ(property->DataType(), dtString);
  EXPECT_EQ(property->Size(), 10);
  EXPECT_EQ(property->Operator(), "<>");
  EXPECT_TRUE(property->OrFlag());
  EXPECT_EQ(property->SourceName() + property->SourceKey(), "sourcetable.column");
  EXPECT_EQ(property->SourceDataType(), dtRDOVARCHAR);
  EXPECT_FALSE(property->Modifiable());
  EXPECT_EQ(property->Flags(), pfRequired);
  EXPECT_EQ(property->DefaultValue(), Variant("default"));
  EXPECT_EQ(property->FormatText() + property->InputMask(), "formatmask");
  EXPECT_EQ(property->Caption() + property->Description(), "captiondescription");
  EXPECT_EQ(property->Engine(), engOracle);
}

TEST_F(FrameworkFactoriesTest, LockedOfAPropertyGuardsItsDefaultValueAlone) {
  const auto property = framework_.CreateProperty({.Name = "X", .DefaultValue = 1, .Locked = true});
  EXPECT_FALSE(property->Locked());
  property->SetCaption("free");
  ExpectRaised(errVelmoria_Locked, [&] { property->SetDefaultValue(2); }, {.Text = "DefaultValue (Let)"});
  EXPECT_EQ(property->DefaultValue(), Variant(1));
}

TEST_F(FrameworkFactoriesTest, PropertiesSupportAdd) {
  const auto plain = framework_.CreateProperties();
  EXPECT_TRUE(plain->SupportsAdd());
  EXPECT_TRUE(plain->SupportsRemove());
  const auto fixed = framework_.CreateProperties({"Key", true, false, engOracle});
  EXPECT_EQ(fixed->Name(), "Key");
  EXPECT_TRUE(fixed->Locked());
  EXPECT_TRUE(fixed->SupportsAdd());
  EXPECT_FALSE(fixed->SupportsRemove());
  EXPECT_EQ(fixed->Engine(), engOracle);
}

TEST_F(FrameworkFactoriesTest, PropertyContextIsTransient) {
  const auto context = framework_.CreatePropertyContext();
  EXPECT_TRUE(context->SupportsAdd());
  EXPECT_TRUE(context->SupportsRemove());
  EXPECT_FALSE(context->Locked());
  EXPECT_FALSE(framework_.CreatePropertyContext({.SupportsAdd = false})->SupportsAdd());
  EXPECT_TRUE(framework_.CreatePropertyContext({.Locked = true})->Locked());
}

TEST_F(FrameworkFactoriesTest, BusinessContextHasItsFieldsInOrder) {
  const SampleDesign design;
  const auto context = framework_.CreateBusinessContext(
      {false, true, false, "Sales", true, "Order", false, "All", true, "", true, cltInitialized, otModel, true});
  EXPECT_FALSE(context->SupportsAdd());
  EXPECT_TRUE(context->SupportsRemove());
  EXPECT_FALSE(context->SupportsLoad());
  EXPECT_EQ(context->ServerName() + context->ClassName() + context->ActionName(), "SalesOrderAll");
  EXPECT_TRUE(context->ServerLocked());
  EXPECT_FALSE(context->ClassLocked());
  EXPECT_TRUE(context->ActionLocked());
  EXPECT_TRUE(context->RelationshipLocked());
  EXPECT_EQ(context->CollectionType(), cltInitialized);
  EXPECT_EQ(context->ObjectType(), otModel);
  EXPECT_TRUE(context->Locked());
}

TEST_F(FrameworkFactoriesTest, BusinessContextByItselfIsOneOfItsOwnAndRefusesNothing) {
  const auto context = framework_.CreateBusinessContext();
  EXPECT_NE(context, apartment_.State().BusinessContext);
  EXPECT_TRUE(context->SupportsAdd() && context->SupportsRemove() && context->SupportsLoad());
  EXPECT_FALSE(context->ServerLocked() || context->ClassLocked() || context->ActionLocked() || context->Locked());
  EXPECT_EQ(context->CollectionType(), cltDefault);
  EXPECT_EQ(context->ObjectType(), otDefault);
}

TEST_F(FrameworkFactoriesTest, MessageIsRecordedNowhere) {
  const auto message = framework_.CreateMessage({.Number = errItem_Class, .Replace1 = "'x'"});
  EXPECT_EQ(message->Description(), "Problem finding Class.  Index: 'x'");
  EXPECT_EQ(framework_.Messages()->Count(), 0);
}

TEST_F(FrameworkFactoriesTest, StatisticHasItsFieldsInOrder) {
  const auto start = Date::From(1998, 6, 1);
  const auto end = Date::From(1998, 5, 31);  // a later one is left for the setter
  const auto statistic = framework_.CreateStatistic({"Load", "Row", 3, start, end, true});
  EXPECT_EQ(statistic->Name(), "Load");
  EXPECT_EQ(statistic->SubjectLabel(), "Row");
  EXPECT_EQ(statistic->SubjectCount(), 3);
  EXPECT_EQ(statistic->StartTime(), start);
  EXPECT_EQ(statistic->EndTime(), end);
  EXPECT_TRUE(statistic->Locked());
}

TEST_F(FrameworkFactoriesTest, StatisticsAreEmpty) { EXPECT_EQ(framework_.CreateStatistics()->Count(), 0); }

TEST_F(FrameworkFactoriesTest, KeyFormatHasItsFieldsInOrder) {
  EXPECT_EQ(framework_.CreateKeyFormat()->Separator(), "");
  const auto mixed = framework_.CreateKeyFormat({"Dotted", ".", true, false, false, true});
  EXPECT_EQ(mixed->Name() + mixed->Separator(), "Dotted.");
  EXPECT_TRUE(mixed->Mixed());
  EXPECT_FALSE(mixed->IncludeNames());
  EXPECT_FALSE(mixed->EmptyKey());
  EXPECT_TRUE(mixed->Locked());
  EXPECT_TRUE(framework_.CreateKeyFormat({"Named", "", false, true})->IncludeNames());
  EXPECT_TRUE(framework_.CreateKeyFormat({"None", "", false, false, true})->EmptyKey());
}

// What a factory of design objects makes has its key and nothing above it, and is dirty like all that is new.
template <class Made>
void ExpectUnattached(const Made& made) {
  EXPECT_TRUE(made->Dirty());
  EXPECT_TRUE(made->HeldParents().IsEmpty());
}

TEST_F(FrameworkFactoriesTest, WhatIsMadeBelongsToNothing) {
  ExpectUnattached(framework_.CreateServer({.Name = "S"}));
  ExpectUnattached(framework_.CreateClass({.Name = "C"}));
  ExpectUnattached(framework_.CreateAction({.Name = "A"}));
  ExpectUnattached(framework_.CreateSource({.Engine = engODBC, .SourceType = stTable}));
  ExpectUnattached(framework_.CreateRelationship({.Name = "R"}));
  ExpectUnattached(framework_.CreateLink({.Name = "L"}));
  ExpectUnattached(framework_.CreateDatabase({.Name = "D"}));
  ExpectUnattached(framework_.CreateConnector({.Engine = engODBC, .ConnectionType = ctDSN}));
  EXPECT_EQ(framework_.Servers()->Count() + framework_.Databases()->Count(), 0);
}

TEST_F(FrameworkFactoriesTest, ServerHasItsFieldsInOrder) {
  const auto server = framework_.CreateServer({"S", "/s.vsd", "Sales", "d", true, true, false});
  EXPECT_EQ(server->Name() + server->FileName(), "S/s.vsd");
  EXPECT_EQ(server->ActiveXComponent() + server->Description(), "Salesd");
  EXPECT_TRUE(server->LoadOnStartup());
  EXPECT_TRUE(server->Locked());
  EXPECT_FALSE(server->UseMetaData());
}

TEST_F(FrameworkFactoriesTest, DatabaseHasItsFieldsInOrder) {
  const auto database = framework_.CreateDatabase({"D", "/d.vdb", engOracle, "d", true, true, true});
  EXPECT_EQ(database->Name() + database->FileName() + database->Description(), "D/d.vdbd");
  EXPECT_EQ(database->Engine(), engOracle);
  EXPECT_TRUE(database->AutoConnect());
  EXPECT_TRUE(database->LoadOnStartup());
  EXPECT_TRUE(database->Locked());
}

TEST_F(FrameworkFactoriesTest, DesignRootsByNameAloneHaveNoPlaceAndSwitchNothingOn) {
  const auto server = framework_.CreateServer({.Name = "S"});
  const auto database = framework_.CreateDatabase({.Name = "D"});
  EXPECT_EQ(server->FileName() + database->FileName(), "");
  EXPECT_FALSE(server->LoadOnStartup() || server->Locked());
  EXPECT_FALSE(database->LoadOnStartup() || database->Locked() || database->AutoConnect());
  EXPECT_EQ(database->Engine(), engUnknown);
}

TEST_F(FrameworkFactoriesTest, ConnectorHasItsFieldsInOrder) {
  const auto connector = framework_.CreateConnector(
      {engODBC, ctText, "Driver=x", crdClientSide, crtStatic, "anna", "secret", true, "d", true});
  EXPECT_EQ(connector->Engine(), engODBC);
  EXPECT_EQ(connector->ConnectionType(), ctText);
  EXPECT_EQ(connector->ConnectionString(), "Driver=x");
  EXPECT_EQ(connector->CursorDriver(), crdClientSide);
  EXPECT_EQ(connector->CursorType(), crtStatic);
  EXPECT_EQ(connector->UserName() + connector->Password(), "annasecret");
  EXPECT_TRUE(connector->DefinitionValidation());
  EXPECT_EQ(connector->Description(), "d");
  EXPECT_TRUE(connector->Locked());
}

TEST_F(FrameworkFactoriesTest, ClassHasItsFieldsInOrder) {
  const auto made = framework_.CreateClass({"C", "COrder", "COrders", "d", "One", "New", "All", true});
  EXPECT_EQ(made->Name() + made->Description(), "Cd");
  EXPECT_EQ(made->ActiveXClass() + made->ActiveXCollection(), "COrderCOrders");
  EXPECT_EQ(made->SingleActionName() + made->NewActionName() + made->DefaultActionName(), "OneNewAll");
  EXPECT_TRUE(made->Locked());
}

TEST_F(FrameworkFactoriesTest, ActionHasItsFieldsInOrder) {
  const auto action = framework_.CreateAction(
      {"A", "D", "G", ufObjects, efUpdate, "d", cltInitialized, otModel, 20, "Orders", "Row", true});
  EXPECT_EQ(action->Name() + action->DatabaseName() + action->ConnectionsName(), "ADG");
  EXPECT_EQ(action->UsageFlags(), ufObjects);
  EXPECT_EQ(action->EditFlags(), efUpdate);
  EXPECT_EQ(action->Description(), "d");
  EXPECT_EQ(action->CollectionType(), cltInitialized);
  EXPECT_EQ(action->ObjectType(), otModel);
  EXPECT_EQ(action->ObjectBuffer(), 20);
  EXPECT_EQ(action->BusinessObjectsName() + action->PropertiesName(), "OrdersRow");
  EXPECT_TRUE(action->Locked());
}

TEST_F(FrameworkFactoriesTest, SourceHasItsFieldsInOrder) {
  const auto source = framework_.CreateSource({engODBC, stSQL, "SELECT 1", 100, 20, ofRDOAsync, "d", true});
  EXPECT_EQ(source->Engine(), engODBC);
  EXPECT_EQ(source->SourceType(), stSQL);
  EXPECT_EQ(source->SourceText() + source->Description(), "SELECT 1d");
  EXPECT_EQ(source->KeysetSize(), 100);
  EXPECT_EQ(source->RowsetSize(), 20);
  EXPECT_EQ(source->OptionFlags(), ofRDOAsync);
  EXPECT_TRUE(source->Locked());
}

TEST_F(FrameworkFactoriesTest, RelationshipHasItsFieldsInOrder) {
  const auto lines = framework_.CreateRelationship({"Lines", raManyToOne, "Stock", "Item", "All", "d", true});
  EXPECT_EQ(lines->Name() + lines->Description(), "Linesd");
  EXPECT_EQ(lines->Association(), raManyToOne);
  EXPECT_EQ(lines->RelatedServerName() + lines->RelatedClassName() + lines->RelatedActionName(), "StockItemAll");
  EXPECT_TRUE(lines->Locked());
}

TEST_F(FrameworkFactoriesTest, RelationshipByNameAloneIsOneToMany) {
  const auto lines = framework_.CreateRelationship({.Name = "Lines"});
  EXPECT_EQ(lines->Association(), raOneToMany);
  EXPECT_EQ(lines->RelatedClassName(), "");
  EXPECT_FALSE(lines->Locked());
}

TEST_F(FrameworkFactoriesTest, LinkHasItsFieldsInOrder) {
  const auto link = framework_.CreateLink({"Id", "d", true});
  EXPECT_EQ(link->Name() + link->Description(), "Idd");
  EXPECT_TRUE(link->Locked());
  EXPECT_FALSE(framework_.CreateLink({.Name = "Id"})->Locked());
}

TEST_F(FrameworkFactoriesTest, ConnectionsHaveTheirName) {
  const auto connections = framework_.CreateConnections("Reports");
  EXPECT_EQ(connections->Name(), "Reports");
  EXPECT_EQ(connections->Count(), 0);
}

TEST_F(FrameworkFactoriesTest, RefusedFieldsAreRaised) {
  ExpectRaised(zErrors{15081}, [&] { framework_.CreateServer({}); });
  ExpectRaised(zErrors{15080}, [&] { framework_.CreateDatabase({}); });
  ExpectRaised(zErrors{15054}, [&] { framework_.CreateSource({.Engine = engUnknown}); });
  ExpectRaised(zErrors{15053}, [&] { framework_.CreateSource({.Engine = engODBC, .SourceType = stQueryDef}); });
  ExpectRaised(zErrors{15054}, [&] { framework_.CreateConnector({.Engine = engUnknown}); });
}

TEST_F(FrameworkFactoriesTest, ServerUsesMetaDataUnlessToldOtherwise) {
  EXPECT_TRUE(framework_.CreateServer({.Name = "S"})->UseMetaData());
}

TEST_F(FrameworkFactoriesTest, ActionWithoutObjectTypeIsLineOfBusiness) {
  const auto action = framework_.CreateAction({.Name = "A", .DatabaseName = "D"});
  EXPECT_EQ(action->DatabaseName(), "D");
  EXPECT_EQ(action->ObjectType(), otBusiness);
  EXPECT_EQ(action->UsageFlags(), ufNone);
  EXPECT_EQ(action->CollectionType(), cltOptimized);
  EXPECT_EQ(action->ObjectBuffer(), 0);
}

TEST_F(FrameworkFactoriesTest, AttributeHasItsFields) {
  const auto attribute = framework_.CreateAttribute({"A", "text", dtString, false, 20, true});
  EXPECT_EQ(attribute->Value(), Variant("text"));
  EXPECT_FALSE(attribute->Modifiable());
  EXPECT_EQ(attribute->Size(), 20);
  EXPECT_TRUE(attribute->Locked());
}

TEST_F(FrameworkFactoriesTest, RefusedAttributeValueIsRaised) {
  ExpectRaised(errAttribute_DataType,
               [&] { framework_.CreateAttribute({.Name = "A", .Value = "x", .DataType = dtLongInteger}); });
}

template <class Collection>
void ExpectTransient(const Collection& plain, const Collection& fixed) {
  EXPECT_EQ(static_cast<int>(plain->Count()), 0);
  EXPECT_FALSE(plain->Locked());
  EXPECT_TRUE(plain->SupportsAdd());
  EXPECT_TRUE(plain->SupportsRemove());
  EXPECT_TRUE(fixed->Locked());
  EXPECT_TRUE(fixed->SupportsAdd());
  EXPECT_FALSE(fixed->SupportsRemove());
  ExpectRaised(errVelmoria_Locked, [&] { fixed->SetSupportsRemove(true); }, {.Text = "SupportsRemove (Let)"});
}

TEST_F(FrameworkFactoriesTest, CollectionsAreTransient) {
  ExpectTransient(framework_.CreateDatabases(), framework_.CreateDatabases(true, false));
  ExpectTransient(framework_.CreateLinks(), framework_.CreateLinks(true, false));
  ExpectTransient(framework_.CreateRelationships(), framework_.CreateRelationships(true, false));
  ExpectTransient(framework_.CreateServers(), framework_.CreateServers(true, false));
  ExpectTransient(framework_.CreateSources(), framework_.CreateSources(true, false));
  ExpectTransient(framework_.CreateActions(), framework_.CreateActions(true, false));
  ExpectTransient(framework_.CreateAttributes(), framework_.CreateAttributes(true, false));
  ExpectTransient(framework_.CreateClasses(), framework_.CreateClasses(true, false));
  ExpectTransient(framework_.CreateConnectors(), framework_.CreateConnectors(true, false));
}

TEST_F(FrameworkFactoriesTest, TransientCollectionHoldsWhatIsAddedAndRenamesNothing) {
  const auto links = framework_.CreateLinks();
  const auto link = framework_.CreateLink({.Name = "Id"});
  links->Add(link);
  EXPECT_EQ(links->Item("Id"), link);
  EXPECT_EQ(link->RelationshipName(), "");
  ExpectRaised(zErrors{15085}, [&] { links->RenameItem("Id", "Number"); });
}

TEST_F(FrameworkFactoriesTest, CollectionOfServersIsNotTheRegisteredOne) {
  const auto servers = framework_.CreateServers();
  servers->SetupItem({.Name = "Mine"});
  EXPECT_FALSE(servers->Registered());
  EXPECT_EQ(framework_.Servers()->Count(), 0);
}

}  // namespace
}  // namespace velmoria::test
