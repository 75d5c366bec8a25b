#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/data/agents/read_over_fake.h"
#include "velmoria/core/profile.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/properties/properties_impl.h"

namespace velmoria::test {

namespace {

class SQLAgentEdgesTest : public ReadOverFake {
 protected:
  /// An unsaved row whose Id the server counts.
  static PropertiesPtr CountedRow() {
    auto definition = Make<PropertiesData>();
    definition->SetupItem(psCached, {.Name = "Id", .Value = 1, .DataType = dtLongInteger, .Flags = pfcounter}, {},
                          true);
    auto row = Make<Properties>();
    row->Bind({.Style = psCached, .PropertiesData = definition});
    row->SetStateFlags(sfNew);
    return row;
  }
  void SendUpdate(const PropertiesPtr& row) {
    Design({});
    SQLAgent agent;
    agent.Initialize(design_->Class, design_->Action, nullptr, -1);
    agent.UpdatePersistentProperties(row);
  }
  void GiveNothing() {
    driver_->Columns.clear();
    driver_->Rows.clear();
  }
};

TEST_F(SQLAgentEdgesTest, UpdateOfANewRowInsertsItLooksForItsCounterAloneAndDoesNotMissTheNumber) {
  GiveNothing();
  const auto row = CountedRow();
  SendUpdate(row);
  EXPECT_EQ(driver_->Texts.back(), "INSERT INTO orders ( Id ) VALUES ( 1 ) SELECT 'Id' = @@IDENTITY");
  EXPECT_EQ(row->Item("Id")->Value(), Variant(1));
}

TEST_F(SQLAgentEdgesTest, UpdateOfANewRowTakesTheNumberThatTheServerGives) {
  driver_->Columns = {{"Id", kInteger}};
  driver_->Rows = {{"42"}};
  const auto row = CountedRow();
  SendUpdate(row);
  EXPECT_EQ(row->Item("Id")->Value(), Variant(42));
}

TEST_F(SQLAgentEdgesTest, UpdateOfANewRowFailsAsAnUpdate) {
  driver_->FailName = "Prepare";
  ExpectRaised(errPersistence_Update, [&] { SendUpdate(CountedRow()); });
}

TEST_F(SQLAgentEdgesTest, RowsOfAForwardOnlyResultAreNotCounted) {
  Apartment().Profile->SetupItem({.Name = "Default CursorType for Engine 2", .Value = 0, .DataType = dtLongInteger});
  Design({.ObjectBuffer = 10, .CursorType = crtNone});
  ExpectRaised(errNotSupported_Cursor, [&] { design_->Agent()->RowCount(); },
               {.Text = "CursorDriver: 'Client Side (ODBC)'  CursorType: '(None)'  Engine: 'Generic ODBC'"});
}

TEST_F(SQLAgentEdgesTest, OrderOfParametersIsRefusedWhereTheCatalogueListsNoNames) {
  Apartment().Profile->SetupItem({.Name = "EnforceActionParameterOrder", .Value = true, .DataType = dtBoolean});
  Design({.SourceType = stStoredProcedure, .SourceText = "raise"});
  design_->Source->Parameters()->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput});
  ExpectRaised(errMismatch_Parameters, [&] { design_->Agent(design_->Action->CreateParameters())->Execute(); },
               {.Text = "Number: 1  ParameterName: 'Id'  ParameterSourceName: ''  RDOParameter: 'Param1'"});
}

TEST_F(SQLAgentEdgesTest, ValueThatCannotBeReadFailsTheOpenInTheFirstRowsAndTheReadBehindThem) {
  SetRows(2000);
  Design({});
  for (const auto& [type, number] :
       {std::pair{stTable, errRDO_Table}, std::pair{stView, errRDO_View},
        std::pair{stStoredProcedure, errRDO_StoredProcedure}, std::pair{stSQL, errRDO_SQL}}) {
    design_->Source->SetSourceType(type);
    driver_->FailingRow = 0;
    ExpectRaised(number, [&] { design_->Read(); });
    driver_->FailingRow = 1500;
    ExpectRaised(errRDO_Resultset, [&] { design_->Read(); });
  }
}

TEST_F(SQLAgentEdgesTest, ExecutionOverATableSendsItsSelectAndDropsTheRows) {
  Design({});
  const auto agent = design_->Agent(design_->Key(7));
  design_->Action->Connection()->Connect();
  const auto handles = driver_->OpenHandles();
  agent->Execute();
  EXPECT_EQ(driver_->Texts.back(), "SELECT * FROM orders WHERE Id = 7");
  EXPECT_EQ(driver_->CallsOf["FetchScroll"] + driver_->CallsOf["Fetch"], 0);
  EXPECT_EQ(driver_->OpenHandles(), handles);
}

}  // namespace

}  // namespace velmoria::test
