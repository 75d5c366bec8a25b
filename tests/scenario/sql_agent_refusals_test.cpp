#include <string>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/refusal.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/properties_impl.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

constexpr const char* kSelect = "SELECT * FROM orders";

/// What an agent over a database is refused with, to the last field of the message.
class SQLAgentRefusals : public OrdersOverSqlite {
 protected:
  void DesignStatement(const std::string& text = kSelect, zOptionFlags options = ofNone) {
    Design({.SourceType = stSQL, .SourceText = text, .OptionFlags = options});
  }
  void Declare(const PropertyFields& fields) { design_->Source->Parameters()->SetupItem(fields); }
  static PropertiesPtr Parameter(const PropertyFields& fields) {
    auto parameters = Make<Properties>();
    parameters->SetupItem(fields);
    return parameters;
  }
  static Refusal Unread(const std::string& type, const std::string& text, const char* routine) {
    return {errRDO_Resultset,
            std::string("SQLAgent.") + routine,
            "Problem processing RDO Resultset.  SourceType: '" + type + "'  SourceText: '" + text + "'",
            {type, text}};
  }
  void ExpectUnopened(zSourceTypes type, const std::string& text, zErrors number, const std::string& words) {
    Design({.SourceType = type, .SourceText = text});
    ExpectRefusal({number, "SQLAgent.CreateResultset", words + text, {text}}, [&] { Read(); });
  }
};

// Sources

TEST_F(SQLAgentRefusals, ASourceTypeThatAServerDoesNotKnowIsRefusedInATextThatNamesNoEngine) {
  for (const auto& [type, name] : {std::pair{stQueryDef, "QueryDef"}, std::pair{stNone, "(None)"}}) {
    const ScopedApartment scope;
    const OneAction design({.ConnectString = file_.ConnectString()});
    design.Source->SetSourceType(type);
    ExpectRefusal({errInvalid_SourceType,
                   "SQLAgent.Initialize",
                   std::string("SourceType is invalid or not supported by the database Engine.  SourceType: ") + name +
                       "  Engine: '|1|'",
                   {name, "Generic ODBC"}},
                  [&] { design.Read(); });
  }
}

TEST_F(SQLAgentRefusals, ASourceTypeThatChangesBehindTheAgentIsRefusedWhenItOpens) {
  Design();
  const auto agent = design_->Agent();
  design_->Source->SetSourceType(stQueryDef);
  ExpectRefusal({errInvalid_SourceType,
                 "SQLAgent.CreateResultset",
                 "SourceType is invalid or not supported by the database Engine.  SourceType: QueryDef  Engine: '|1|'",
                 {"QueryDef", "Generic ODBC"}},
                [&] { agent->GetRecordset(0, nullptr, false); });
}

TEST_F(SQLAgentRefusals, AFailedOpenIsReportedByTheTypeOfItsSource) {
  ExpectUnopened(stTable, "nowhere", errRDO_Table, "Problem processing RDO Table.  SQL/Name: ");
}

TEST_F(SQLAgentRefusals, AFailedOpenOfAViewIsReportedAsOne) {
  ExpectUnopened(stView, "nowhere", errRDO_View, "Problem processing RDO View.  SQL/Name: ");
}

TEST_F(SQLAgentRefusals, AFailedOpenOfAProcedureIsReportedAsOne) {
  ExpectUnopened(stStoredProcedure, "nowhere", errRDO_StoredProcedure,
                 "Problem processing RDO Stored Procedure Query.  SQL/Name: ");
}

TEST_F(SQLAgentRefusals, AFailedOpenOfAStatementIsReportedAsOne) {
  ExpectUnopened(stSQL, "SELECT * FROM nowhere", errRDO_SQL, "Problem processing RDO SQL Query.  SQL: ");
}

TEST_F(SQLAgentRefusals, AColumnThatCannotBeDescribedIsNamedBesideIt) {
  DesignStatement("SELECT Id, Total AS id FROM orders");
  EXPECT_TRUE(Thrown([&] { Read(); }));
  const auto message = scope_.Messages().Item("15123");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->TypeName() + "." + message->RoutineName(), "Action.RDOCreatePropertiesData");
  EXPECT_EQ(message->Replace1(), "SELECT Id, Total AS id FROM orders");
  EXPECT_EQ(message->ExtraText(), "Processing RDO Column, id");
}

// Parameters

class RequiredParameters : public SQLAgentRefusals {
 protected:
  void ExpectThatBothAreNamed(zPropertyFlags flagsOfTotal) {
    DesignStatement("SELECT * FROM orders WHERE Total > ? AND Customer <> ?");
    Declare({.Name = "Total", .DataType = dtDouble, .Flags = flagsOfTotal});
    Declare({.Name = "Customer", .DataType = dtString, .Flags = pfInput | pfRequired});
    ExpectRefusal({errProperties_Required,
                   "SQLAgent.CreatePreparedStatement",
                   "These following Properties require Values before they can be used as parameters.  Properties: "
                   "'Total, Customer'",
                   {"Total, Customer"}},
                  [&] { Read(design_->Action->CreateParameters()); });
  }
};

TEST_F(RequiredParameters, WithoutValuesAreAllNamed) { ExpectThatBothAreNamed(pfInput | pfRequired); }

// Without pfInput a parameter asks for nothing by itself.
TEST_F(RequiredParameters, OneThatIsNoInputIsNamedBesideOneThatIs) { ExpectThatBothAreNamed(pfRequired); }

TEST_F(SQLAgentRefusals, AStatementThatIsPassedThroughTakesNoOutputs) {
  DesignStatement("SELECT * FROM orders WHERE Total > ?", ofRDOPassthru);
  for (const auto flag : {pfOutput, pfReturnValue}) {
    Declare({.Name = "Total", .Value = 1.0, .DataType = dtDouble, .Flags = pfInput | flag});
    ExpectRefusal({errRDO_PassThru_Output_Parameters,
                   "SQLAgent.CreatePreparedStatement",
                   "RDO SQL cannot execute directly with Return or Output Parameters.  Property: 'Total'",
                   {"Total"}},
                  [&] { Read(design_->Action->CreateParameters()); });
    design_->Source->Parameters()->Remove("Total");
  }
}

// Filters

TEST_F(SQLAgentRefusals, AFilterOfAnOperatorThatIsNoneIsRefusedAtTheFirstRow) {
  DesignStatement();
  ExpectRefusal(
      {errNotSupported_Operator,
       "SQLAgent.ResultsetMatchesParameters",
       "This Operator is not supported by this operation.  Operator: 'Like'  Property: 'Customer'",
       {"Like", "Customer"}},
      [&] { Read(Parameter({.Name = "Customer", .Value = "Customer 7", .DataType = dtString, .Operator = "Like"})); });
}

TEST_F(SQLAgentRefusals, AnOperatorThatIsNoneIsNotLookedAtWithoutRowsOrBehindAFilterThatDoesNotHold) {
  DesignStatement();
  const auto filters = Parameter({.Name = "Id", .Value = 99, .DataType = dtLongInteger});
  filters->SetupItem({.Name = "Customer", .Value = "x", .DataType = dtString, .Operator = "Like"});
  EXPECT_EQ(Read(filters)->Count(), 0);
  file_.Run("DELETE FROM orders");
  filters->Remove("Id");
  EXPECT_EQ(Read(filters)->Count(), 0);
}

TEST_F(SQLAgentRefusals, AFilterThatCannotBeComparedWithItsColumnIsAFailureOfTheRead) {
  DesignStatement();
  ExpectRefusal(Unread("SQL Statement", kSelect, "GetRecordsetStep_Client"),
                [&] { Read(Parameter({.Name = "Total", .Value = "many", .DataType = dtString})); });
}

// Reads

TEST_F(SQLAgentRefusals, ACursorThatOnlyGoesForwardsIsRefusedByPages) {
  Apartment().Profile->SetupItem({.Name = "Default CursorType for Engine 2", .Value = 0, .DataType = dtLongInteger});
  Design({.CursorType = crtNone});
  const Refusal expected{errNotSupported_Cursor,
                         "SQLAgent.GetRecordsetChunk_Client",
                         "The database Engine does not support this CursorDriver and CursorType combination.  "
                         "CursorDriver: 'Client Side (ODBC)'  CursorType: '(None)'  Engine: 'Generic ODBC'",
                         {"Client Side (ODBC)", "(None)", "Generic ODBC"}};
  for (const auto buffer : {0, 10, -10}) {
    design_->Action->SetObjectBuffer(buffer);
    ExpectRefusal(expected, [&] { Read(); });
  }
}

TEST_F(SQLAgentRefusals, ARowThatCannotBeFetchedIsAFailureOfTheReadAndTheNextOneWorks) {
  file_.Run("CREATE TABLE big (Id INTEGER NOT NULL PRIMARY KEY, Counted INTEGER)");
  file_.Run(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000)"
      " INSERT INTO big SELECT i, i FROM n");
  file_.Run("UPDATE big SET Counted = 5000000000 WHERE Id = 20000");
  Design({.SourceText = "big"});
  const auto error = Thrown([&] { Read(); });
  EXPECT_TRUE(WarnedOf("Overflow in the column 'Counted'"));
  CheckRefusal(Unread("Table", "big", "GetRecordsetChunk_Client"), error, {__FILE__, __LINE__});
  ExpectRefusal(Unread("Table", "big", "RowCount (Get)"), [&] { design_->Agent()->RowCount(); });
  file_.Run("UPDATE big SET Counted = 1 WHERE Id = 20000");
  EXPECT_EQ(Read()->Count(), 20000);
}

TEST_F(SQLAgentRefusals, ALongValueThatCannotBeReadIsAFailureOfTheReadAndIsReadOnceItCan) {
  file_.Run("ALTER TABLE orders ADD COLUMN Photo BLOB; UPDATE orders SET Photo = x'414243' WHERE Id = 7");
  Design();
  const auto photo = Order(7)->Item("Photo");
  file_.Run("ALTER TABLE orders RENAME TO hidden");
  ExpectRefusal(Unread("Table", "orders", "GetBLOBFieldValue"), [&] { photo->Value(); });
  file_.Run("ALTER TABLE hidden RENAME TO orders");
  EXPECT_EQ(photo->Value().UpperBound(), 2);
}

// Counters

TEST_F(SQLAgentRefusals, ACounterThatDoesNotComeBackLeavesItsRowNewSoThatItIsInsertedAgain) {
  Design();
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  const auto row = Read()->CreatePersistentProperties("");
  row->Item("Customer")->SetValue("x");
  design_->Source->SetSourceText("orders (Customer) VALUES ('y') --");
  for (const std::string name : {"{unknown}", "Id"}) {
    if (name == "Id") row->Item("Id")->SetFlags(pfcounter);
    ExpectRefusal({errRDO_Identity_Insert,
                   "SQLAgent.InsertPersistentProperties",
                   "RDO SQL Insert statement did not return a new IDENTITY value for Identifier Property.  "
                   "Property: '" +
                       name + "'",
                   {name},
                   "Some database engines do not support Inserting new records into tables with IDENTITY columns "
                   "during a complex transaction."},
                  [&] { row->Update(); });
    EXPECT_EQ(row->StateFlags(), sfNew | sfdirty);
  }
  EXPECT_EQ(Stored("Id", "Customer = 'y'"), "26|27");
}

// Deleted objects

TEST_F(SQLAgentRefusals, ADeletedObjectOfItsOwnIsToldByItsKeyOnUpdateAndByAllOfItsIdentifierElse) {
  Design();
  auto definition = Make<PropertiesData>();
  definition->SetupItem(psCached, {.Name = "Id", .Value = 7, .DataType = dtLongInteger}, {}, true);
  const auto order = Make<Properties>();
  order->Bind({.Style = psCached, .PropertiesData = definition});
  order->SetStateFlags(sfdeleted);
  order->SetIdentifier(design_->Class->CreateIdentifier(order));
  const auto expected = [](const char* routine, const std::string& shown) {
    return Refusal{errPersistence_Deleted,
                   std::string("DatabaseAgent.") + routine,
                   "These persistent Properties have been deleted.  Identifier: '" + shown + "'",
                   {shown}};
  };
  const auto agent = design_->Agent();
  bool written = false;
  ExpectRefusal(expected("UpdatePersistentProperties", "7"),
                [&] { agent->UpdatePersistentProperties(order, 0, written); });
  const auto details = order->Identifier()->Details();
  ExpectRefusal(expected("DeletePersistentProperties", details), [&] { agent->DeletePersistentProperties(order, 0); });
  ExpectRefusal(expected("GetBLOBFieldValue", details), [&] { agent->GetBLOBFieldValue(1, order); });
  EXPECT_EQ(Stored("count(*)", "Id = 7"), "1");
}

// The log

TEST_F(SQLAgentRefusals, AStatementIsToldAsInformationWithItsTextAndItsParameters) {
  DesignStatement("SELECT * FROM orders WHERE Total > ? AND Customer <> ? AND Placed > ?");
  Declare({.Name = "Total", .DataType = dtDouble});
  Declare({.Name = "Customer", .DataType = dtString});
  Declare({.Name = "Placed", .DataType = dtDate});
  const auto parameters = design_->Action->CreateParameters();
  parameters->Item("Total")->SetValue(34.5);
  parameters->Item("Customer")->SetValue("x");
  EXPECT_EQ(Read(parameters)->Count(), 0);
  const auto told = scope_.Messages().Item("15129");
  ASSERT_TRUE(told);
  EXPECT_EQ(told->Description(), "RDO Database Operation Information");
  EXPECT_EQ(told->SeverityFlags(), svfInfo);
  EXPECT_EQ(told->TypeName() + "." + told->RoutineName(), "SQLAgent.CreatePreparedStatement");
  EXPECT_EQ(told->Replace1(), "");
  EXPECT_EQ(told->ExtraText(),
            "SELECT * FROM orders WHERE Total > ? AND Customer <> ? AND Placed > ?\r\nParameters:"
            "\r\n    Name: 'Param1'  Type: 8  Direction: 0  Value: 34.5"
            "\r\n    Name: 'Param2'  Type: 12  Direction: 0  Value: 'x'"
            "\r\n    Name: 'Param3'  Type: 9  Direction: 0  Value: Null");
}

TEST_F(SQLAgentRefusals, EveryWriteIsToldWithTheRoutineThatMadeIt) {
  Design();
  const auto told = [&] {
    const auto message = scope_.Messages().Item("15129");
    return message ? message->RoutineName() + ": " + message->ExtraText() : std::string();
  };
  const auto order = Order(7);
  order->Item("Customer")->SetValue("Eve");
  order->Update();
  EXPECT_EQ(told(), "UpdatePersistentProperties: UPDATE orders SET Customer = 'Eve' WHERE Id = 7");
  order->Delete();
  order->Update();
  EXPECT_EQ(told(), "DeletePersistentProperties: DELETE FROM orders WHERE Id = 7");
  const auto row = Read()->CreatePersistentProperties("");
  row->Item("Id")->SetValue(7);
  row->Update();
  EXPECT_EQ(told(), "InsertPersistentProperties: INSERT INTO orders ( Id ) VALUES (7 )");
}

}  // namespace

}  // namespace velmoria::test
