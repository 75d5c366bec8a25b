#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/fake_odbc.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class SQLAgentTest : public testing::Test {
 protected:
  SQLAgentTest() { scope_.State().Platform.Odbc = driver_; }

  void Design(const OneActionFields& fields = {}) { design_ = std::make_unique<OneAction>(fields); }
  SQLAgent& MakeAgent(const PropertiesPtr& parameters = {}) {
    if (!design_) Design();
    agent_ = std::make_unique<SQLAgent>();
    agent_->Initialize(design_->Class, design_->Action, parameters, -1);
    return *agent_;
  }
  static PropertiesPtr Row(std::int32_t id, const std::string& name) {
    auto row = Make<Properties>();
    row->SetupItem({.Name = "Id", .Value = id, .DataType = dtLongInteger});
    row->SetupItem({.Name = "Name", .Value = name, .DataType = dtString});
    return row;
  }
  /// The same as it was read: persistent and clean.
  static PropertiesPtr OldRow(std::int32_t id, const std::string& name) {
    auto definition = Make<PropertiesData>();
    definition->SetupItem(psCached, {.Name = "Id", .Value = id, .DataType = dtLongInteger}, {}, true);
    definition->SetupItem(psCached, {.Name = "Name", .Value = name, .DataType = dtString}, {}, true);
    auto row = Make<Properties>();
    row->Bind({.Style = psCached, .PropertiesData = definition});
    row->SetStateFlags(sfpersistent);
    row->ClearDirty();
    return row;
  }
  static PropertiesPtr Parameter(const std::string& name, const Variant& value, zPropertyFlags flags = pfInput) {
    auto parameters = Make<Properties>();
    parameters->SetupItem({.Name = name, .Value = value, .DataType = dtLongInteger, .Flags = flags});
    return parameters;
  }

  ScopedApartment scope_;
  std::shared_ptr<FakeOdbc> driver_ = std::make_shared<FakeOdbc>();
  std::unique_ptr<OneAction> design_;
  std::unique_ptr<SQLAgent> agent_;
};

TEST_F(SQLAgentTest, ThePageSizeIsTheActionsUnlessOneIsGiven) {
  Design({.ObjectBuffer = 25});
  EXPECT_EQ(MakeAgent().ObjectBuffer(), 25);
  agent_->Initialize(design_->Class, design_->Action, nullptr, 4);
  EXPECT_EQ(agent_->ObjectBuffer(), 4);
}

TEST_F(SQLAgentTest, AClassWithoutKeyCannotBeRead) {
  Design();
  design_->Class->Properties()->Remove("Id");
  ExpectRaised(errRequires_Identifier, [&] { MakeAgent(); }, {.Text = "Class: 'Order'"});
}

TEST_F(SQLAgentTest, ASourceTypeThatGivesNoRowsIsRefusedInATextThatNamesNoEngine) {
  Design();
  design_->Source->SetSourceType(stQueryDef);
  const auto name = design_->Source->SourceTypeName();
  ExpectRaised(errInvalid_SourceType, [&] { MakeAgent(); }, {.Text = "SourceType: " + name + "  Engine: '|1|'"});
}

TEST_F(SQLAgentTest, DetailsJoinClassActionSourceConnectionAndParameters) {
  const auto text = MakeAgent(Parameter("Id", 1)).Details();
  for (const auto& part : {design_->Class->Details(), design_->Action->Details(), design_->Source->Details(),
                           design_->Action->Connection()->Details()})
    EXPECT_NE(text.find(part + "\r\n"), std::string::npos) << part;
  EXPECT_NE(text.find("\r\nParameters "), std::string::npos);
}

TEST_F(SQLAgentTest, InitializeOpensNothing) {
  MakeAgent(Parameter("Id", 1));
  EXPECT_TRUE(driver_->Connects.empty());
}

TEST_F(SQLAgentTest, AnInsertWithoutCounterIsExecutedAndLogged) {
  MakeAgent().InsertPersistentProperties(Row(7, "O'Brien"));
  EXPECT_EQ(driver_->Texts, (std::vector<std::string>{"INSERT INTO orders ( Id, Name ) VALUES (7, 'O''Brien' )"}));
  const auto logged = scope_.Messages().Item("15129");
  ASSERT_TRUE(logged);
  EXPECT_EQ(logged->SeverityFlags(), svfInfo);
  EXPECT_EQ(logged->ExtraText(), "INSERT INTO orders ( Id, Name ) VALUES (7, 'O''Brien' )");
}

TEST_F(SQLAgentTest, OnlyTheLastStatementIsHeldAmongTheMessages) {
  MakeAgent().InsertPersistentProperties(Row(1, "a"));
  agent_->InsertPersistentProperties(Row(2, "b"));
  EXPECT_EQ(scope_.Messages().Count(), 1);
  EXPECT_NE(scope_.Messages().Item("15129")->ExtraText().find("'b'"), std::string::npos);
}

TEST_F(SQLAgentTest, StatementsArePreparedUnlessPassedThrough) {
  MakeAgent().InsertPersistentProperties(Row(1, "a"));
  EXPECT_EQ(driver_->CallsOf["Prepare"], 1);
  design_->Source->SetOptionFlags(ofRDOPassthru);
  MakeAgent().InsertPersistentProperties(Row(2, "b"));
  EXPECT_EQ(driver_->CallsOf["Prepare"], 1);
}

TEST_F(SQLAgentTest, AnUpdateFindsTheRowByItsOldKey) {
  const auto row = OldRow(7, "a");
  row->Item("Id")->SetValue(8);
  row->Item("Name")->SetValue("b");
  MakeAgent().UpdatePersistentProperties(row);
  EXPECT_EQ(driver_->Texts.back(), "UPDATE orders SET Id = 8, Name = 'b' WHERE Id = 7");
}

TEST_F(SQLAgentTest, ADeleteFindsTheRowByItsPresentKey) {
  const auto row = OldRow(7, "a");
  row->Item("Id")->SetValue(8);
  MakeAgent().DeletePersistentProperties(row);
  EXPECT_EQ(driver_->Texts.back(), "DELETE FROM orders WHERE Id = 8");
}

TEST_F(SQLAgentTest, AMarkedParameterIsTheKeyInPlaceOfTheIdentifier) {
  const auto parameters = Parameter("Name", 3);
  parameters->Item("Name")->SetCopyMark(true);
  MakeAgent(parameters).DeletePersistentProperties(Row(7, "9"));
  EXPECT_EQ(driver_->Texts.back().substr(0, 30), "DELETE FROM orders WHERE Name ");
}

TEST_F(SQLAgentTest, WritingClearsTheMessages) {
  scope_.Messages().SetupItem({.Number = errItem_Class, .SeverityFlags = svfWarning});
  MakeAgent().DeletePersistentProperties(Row(7, "a"));
  EXPECT_FALSE(scope_.Messages().Item("15065"));
}

TEST_F(SQLAgentTest, AFailedInsertCarriesTheDriversWordsBesideIt) {
  MakeAgent();
  driver_->FailName = "Prepare";
  driver_->Diagnostics = {{"23505", 2627, "duplicate"}};
  EXPECT_TRUE(Thrown([&] { agent_->InsertPersistentProperties(Row(1, "a")); }));
  const auto message = scope_.Messages().Item("2627");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->SeverityFlags(), svfWarning);
  scope_.Messages().Clear();
  ExpectRaised(errPersistence_Insert, [&] { agent_->InsertPersistentProperties(Row(1, "a")); });
}

TEST_F(SQLAgentTest, AFailedUpdateOrDeleteIsNamed) {
  MakeAgent();
  driver_->FailName = "Prepare";
  driver_->Diagnostics = {{"40001", 1205, "refused"}};
  ExpectRaised(errPersistence_Update, [&] { agent_->UpdatePersistentProperties(OldRow(1, "a")); });
  ExpectRaised(errPersistence_Delete, [&] { agent_->DeletePersistentProperties(Row(1, "a")); },
               {.Text = "Name/SQL: 'orders'"});
}

TEST_F(SQLAgentTest, ACounterSendsTheIdentityTextInTheSameRoundTrip) {
  const auto row = Row(1, "a");
  row->Item("Id")->SetFlags(pfcounter);
  Design();
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  ExpectRaised(errRDO_Identity_Insert, [&] { MakeAgent().InsertPersistentProperties(row); },
               {.Text = "Property: 'Id'"});
  EXPECT_EQ(driver_->Texts.back(), "INSERT INTO orders ( Id, Name ) VALUES ( 1, 'a' ) SELECT 'Id' = @@IDENTITY");
}

TEST_F(SQLAgentTest, AMissingIdentityOfNoCounterIsUnknownAndTheHintTellsOfTransactions) {
  Design();
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  ExpectRaised(errRDO_Identity_Insert, [&] { MakeAgent().InsertPersistentProperties(Row(1, "a")); },
               {.Text = "Property: '{unknown}'\r\nSome database engines do not support Inserting new records into "
                        "tables with IDENTITY columns during a complex transaction."});
}

TEST_F(SQLAgentTest, ARequiredParameterWithoutValueIsNamed) {
  const auto parameters = Parameter("Year", {}, pfInput | pfRequired);
  ExpectRaised(errProperties_Required, [&] { MakeAgent(parameters).GetRecordset(nullptr, nullptr, false); },
               {.Text = "Properties: 'Year'"});
}

TEST_F(SQLAgentTest, APassThroughStatementTakesNoOutputParameters) {
  Design({.SourceType = stSQL, .SourceText = "SELECT ?", .OptionFlags = ofRDOPassthru});
  for (const auto flag : {pfOutput, pfReturnValue}) {
    const auto parameters = Parameter("Result", 1, pfInput | flag);
    design_->Source->Parameters()->SetupItem({.Name = "Result", .DataType = dtLongInteger});
    ExpectRaised(errRDO_PassThru_Output_Parameters,
                 [&] { MakeAgent(parameters).GetRecordset(nullptr, nullptr, false); }, {.Text = "Property: 'Result'"});
    design_->Source->Parameters()->Remove("Result");
  }
}

TEST_F(SQLAgentTest, AnUndeclaredParameterWithoutValueIsPassedOver) {
  Design({.SourceType = stSQL, .SourceText = "SELECT 1"});
  const auto error = Thrown([&] { MakeAgent(Parameter("Year", {})).GetRecordset(nullptr, nullptr, false); });
  EXPECT_EQ(error ? error->Description() : "", "");
  EXPECT_EQ(driver_->Texts, (std::vector<std::string>{"SELECT 1"}));
}

struct OpenCase {
  zSourceTypes Type;
  zErrors Number;
  const char* Call;
};

TEST_F(SQLAgentTest, AFailedOpenIsNamedByTheTypeOfTheSource) {
  driver_->Diagnostics = {{"42S02", 208, "no such table"}};
  Design({.SourceText = "t"});
  for (const auto& row : {OpenCase{stTable, errRDO_Table, "ExecDirect"}, OpenCase{stView, errRDO_View, "ExecDirect"},
                          OpenCase{stSQL, errRDO_SQL, "Prepare"}}) {
    driver_->FailName = row.Call;
    design_->Source->SetSourceType(row.Type);
    ExpectRaised(row.Number, [&] { MakeAgent().GetRecordset(nullptr, nullptr, false); }, {.Text = ": t"});
  }
}

}  // namespace

}  // namespace velmoria::test
