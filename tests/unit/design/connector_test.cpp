#include "velmoria/design/connector.h"

#include <gtest/gtest.h>

#include "tests/support/design_kinds.h"
#include "tests/support/expect_raised.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/core/display.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/properties/attribute.h"

namespace velmoria::test {
namespace {

class ConnectorTest : public testing::Test {
 protected:
  ConnectorPtr Add(const ConnectorFields& fields) { return database_->Connectors()->SetupItem(fields); }
  ConnectorPtr AddText(const std::string& text, const std::string& user = {}, const std::string& password = {}) {
    return Add({.Engine = engODBC,
                .ConnectionType = ctText,
                .ConnectionString = text,
                .UserName = user,
                .Password = password});
  }
  static void SetDefault(const std::string& name, const Variant& value, zDataTypes type = dtLongInteger) {
    Apartment().Profile->SetupItem({.Name = name, .Value = value, .DataType = type});
  }

  ScopedApartment apartment_;
  DatabasePtr database_ = MakeDesign<DatabaseKind>({.Name = "Shop"});
};

TEST_F(ConnectorTest, SetupItemStoresEveryField) {
  const auto connector = Add({.Engine = engSybase,
                              .ConnectionType = ctDSN,
                              .ConnectionString = "shop",
                              .CursorDriver = crdServerSide,
                              .CursorType = crtDynamic,
                              .UserName = "anna",
                              .Password = "secret",
                              .DefinitionValidation = true,
                              .Description = "d",
                              .Locked = true});
  EXPECT_EQ(connector->Engine(), engSybase);
  EXPECT_EQ(connector->EngineName(), "Sybase SQL Server");
  EXPECT_EQ(connector->ConnectionType(), ctDSN);
  EXPECT_EQ(connector->ConnectionString(), "shop");
  EXPECT_EQ(connector->CursorDriver(), crdServerSide);
  EXPECT_EQ(connector->CursorDriverName(), CursorDriverName(crdServerSide));
  EXPECT_EQ(connector->CursorType(), crtDynamic);
  EXPECT_EQ(connector->CursorTypeName(), CursorTypeName(crtDynamic));
  EXPECT_EQ(connector->UserName(), "anna");
  EXPECT_EQ(connector->Password(), "secret");
  EXPECT_TRUE(connector->DefinitionValidation());
  EXPECT_EQ(connector->Description(), "d");
  EXPECT_TRUE(connector->Locked());
  EXPECT_EQ(connector->DatabaseName(), "Shop");
}

TEST_F(ConnectorTest, SettersStore) {
  const auto connector = Make<Connector>();
  connector->SetConnectionType(ctPrompt);
  connector->SetConnectionString("x");
  connector->SetCursorDriver(crdOptimisticBatch);
  connector->SetCursorType(crtStatic);
  connector->SetUserName("anna");
  connector->SetPassword("secret");
  connector->SetDefinitionValidation(true);
  EXPECT_EQ(connector->ConnectionType(), ctPrompt);
  EXPECT_EQ(connector->ConnectionString(), "x");
  EXPECT_EQ(connector->CursorDriver(), crdOptimisticBatch);
  EXPECT_EQ(connector->CursorType(), crtStatic);
  EXPECT_EQ(connector->UserName() + connector->Password(), "annasecret");
  EXPECT_TRUE(connector->DefinitionValidation());
  EXPECT_EQ(connector->DatabaseName(), "");
}

TEST_F(ConnectorTest, AnAccessConnectorIsAFileWithoutCursor) {
  const auto connector = Add({.Engine = engAccess, .CursorDriver = crdServerSide, .CursorType = crtStatic});
  EXPECT_EQ(connector->ConnectionType(), ctFile);
  EXPECT_EQ(connector->CursorDriver(), crdNone);
  EXPECT_EQ(connector->CursorType(), crtNone);
}

TEST_F(ConnectorTest, AnAccessConnectorKeepsAConnectionTypeGiven) {
  EXPECT_EQ(Add({.Engine = engAccess, .ConnectionType = ctPrompt})->ConnectionType(), ctPrompt);
}

TEST_F(ConnectorTest, ZerosTakeThreeDefaultsAndTheUserNameTheFourth) {
  SetDefault("Default ConnectionType for Engine 3", 3);
  SetDefault("Default CursorDriver for Engine 3", 2);
  SetDefault("Default CursorType for Engine 3", 3);
  SetDefault("Default Username for Engine 3", "sa", dtString);
  const auto connector = Add({.Engine = engSQLServer});
  EXPECT_EQ(connector->ConnectionType(), ctText);
  EXPECT_EQ(connector->CursorDriver(), crdServerSide);
  EXPECT_EQ(connector->CursorType(), crtStatic);
  EXPECT_EQ(connector->UserName(), "sa");
}

TEST_F(ConnectorTest, DefaultsNotSetAreOneAndNoUser) {
  const auto connector = Add({.Engine = engOracle});
  EXPECT_EQ(connector->ConnectionType(), ctDSN);
  EXPECT_EQ(connector->CursorDriver(), crdClientSide);
  EXPECT_EQ(connector->CursorType(), crtKeyset);
  EXPECT_EQ(connector->UserName(), "");
}

TEST_F(ConnectorTest, AnAccessConnectorTakesTheDefaultUser) {
  SetDefault("Default Username for Engine 1", "Admin", dtString);
  EXPECT_EQ(Add({.Engine = engAccess})->UserName(), "Admin");
  EXPECT_EQ(Make<Database>()->Connectors()->SetupItem({.Engine = engAccess, .UserName = "anna"})->UserName(), "anna");
}

struct ConnectRow {
  zConnectionTypes Type;
  const char* Given;
  const char* User;
  const char* Password;
  const char* Composed;
};

TEST_F(ConnectorTest, WhatTheDriverManagerGets) {
  const ConnectRow rows[] = {
      {ctText, "Driver=X", "anna", "secret", "Driver=X;UID=anna;PWD=secret"},
      {ctText, "Driver=X", "", "", "Driver=X"},
      {ctText, "Driver=X;UID=bert", "anna", "secret", "Driver=X;UID=bert;PWD=secret"},
      {ctText, "Driver=X;PWD=other", "anna", "secret", "Driver=X;PWD=other;UID=anna"},
      {ctText, "", "anna", "", "UID=anna"},
      {ctText, "Driver=X", "", "a;b", "Driver=X;PWD=a;b"},
      {ctDSN, "shop", "anna", "secret", "UID=anna;PWD=secret;DSN=shop"},
      {ctDSN, "shop", "", "", "DSN=shop"},
      {ctFile, "/shop.dsn", "anna", "secret", "/shop.dsn"},
      {ctPrompt, "Driver=X", "anna", "secret", "Driver=X"},
  };
  for (const auto& row : rows) {
    const auto connector = Make<Connector>();
    connector->SetConnectionType(row.Type);
    connector->SetConnectionString(row.Given);
    connector->SetUserName(row.User);
    connector->SetPassword(row.Password);
    EXPECT_EQ(connector->Data()->ODBCConnectionString(), row.Composed);
  }
}

TEST_F(ConnectorTest, AUserInTheTextStaysInWhateverCase) {
  EXPECT_EQ(AddText("Driver=X;uid=bert", "anna")->Data()->ODBCConnectionString(), "Driver=X;uid=bert");
}

TEST_F(ConnectorTest, APasswordWithASemicolonGoesIntoTheTextUntouched) {
  EXPECT_EQ(AddText("Driver=X", "anna", "a;b")->Data()->ODBCConnectionString(), "Driver=X;UID=anna;PWD=a;b");
}

TEST_F(ConnectorTest, ASemicolonAtTheEndOfTheTextIsDoubled) {
  EXPECT_EQ(AddText("DSN=x;", "anna", "secret")->Data()->ODBCConnectionString(), "DSN=x;;UID=anna;PWD=secret");
}

TEST_F(ConnectorTest, WithoutConnectionTypeThereIsNoConnectString) {
  for (const int type : {0, 5, -1}) {
    const auto connector = AddText("Driver=X");
    connector->SetConnectionType(zConnectionTypes{type});
    ExpectRaised(zErrors{15055}, [&] { connector->Data()->ODBCConnectionString(); },
                 {.Text = "ConnectionType: " + std::to_string(type) + "  Engine: 'Generic ODBC'", .Count = 1});
    database_->Connectors()->Remove(engODBC);
  }
}

TEST_F(ConnectorTest, NoTextOrMessageShowsThePassword) {
  const auto connector = AddText("Driver=X;Pwd={in;side};UID=anna", "anna", "secret");
  connector->SetLocked(true);
  const auto error = Thrown([&] { connector->SetPassword("another"); });
  ASSERT_TRUE(error);
  const auto shown = connector->Details() + database_->Connectors()->Details() + error->Description() +
                     apartment_.Messages().Details();
  for (const char* hidden : {"secret", "another", "in;side"}) EXPECT_EQ(shown.find(hidden), std::string::npos);
  EXPECT_NE(shown.find("Driver=X;Pwd=***;UID=anna"), std::string::npos);
}

TEST_F(ConnectorTest, TheConnectionsNameIsANumberInTextFormAndNotCopied) {
  const auto connector = AddText("Driver=X");
  EXPECT_EQ(connector->Data()->ConnectionsName(), "0");
  connector->Data()->SetConnectionsName("12");
  EXPECT_EQ(connector->Data()->ConnectionsName(), "12");
  EXPECT_EQ(connector->Copy()->Data()->ConnectionsName(), "0");
  EXPECT_THROW(connector->Data()->SetConnectionsName("Batch"), Error);
  EXPECT_EQ(connector->Data()->ConnectionsName(), "12");
}

TEST_F(ConnectorTest, OnlyAnotherConnectionsNameMakesDirty) {
  const auto connector = Make<Connector>();
  connector->Data()->SetConnectionsName("0");
  EXPECT_FALSE(connector->Dirty());
  connector->Data()->SetConnectionsName("1");
  EXPECT_TRUE(connector->Dirty());
}

TEST_F(ConnectorTest, CopyKeepsOrChangesTheEngineAndTakesDefaultsAnew) {
  const auto connector = Add({.Engine = engODBC, .ConnectionType = ctText, .Password = "secret"});
  connector->SetCursorType(crtNone);
  const auto copy = connector->Copy(engSybase);
  EXPECT_EQ(copy->Engine(), engSybase);
  EXPECT_EQ(copy->ConnectionType(), ctText);
  EXPECT_EQ(copy->CursorType(), crtKeyset);
  EXPECT_EQ(copy->Password(), "secret");
  EXPECT_EQ(connector->Copy()->Engine(), engODBC);
}

TEST_F(ConnectorTest, RecursiveCopyTakesUserProperties) {
  const auto connector = AddText("Driver=X");
  connector->UserProperties()->SetupItem({.Name = "Note"});
  EXPECT_EQ(connector->Copy()->UserProperties()->Count(), 1);
  EXPECT_EQ(connector->Copy(engUnknown, false)->UserProperties()->Count(), 0);
}

TEST_F(ConnectorTest, UserPropertiesKnowTheDatabase) {
  EXPECT_EQ(AddText("Driver=X")->UserProperties()->DatabaseName(), "Shop");
}

}  // namespace
}  // namespace velmoria::test
