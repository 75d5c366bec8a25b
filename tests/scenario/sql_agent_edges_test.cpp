#include <cstdint>
#include <string>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/expect_raised.h"
#include "velmoria/data/agents/sql_agent_impl.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/attribute_data.h"
#include "velmoria/properties/attributes_data.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// Reads and writes of one agent at their limits.
class SQLAgentEdges : public OrdersOverSqlite {
 protected:
  DatabaseAgentPtr Agent(std::int32_t buffer) {
    Design({.ObjectBuffer = buffer});
    return design_->Agent();
  }
  static PropertiesPtr Row(std::int32_t id, const std::string& customer) {
    auto row = Make<Properties>();
    row->SetupItem({.Name = "Id", .Value = id, .DataType = dtLongInteger});
    row->SetupItem({.Name = "Customer", .Value = customer, .DataType = dtString});
    return row;
  }
  std::string Logged() { return scope_.Messages().Item("15129")->ExtraText(); }
};

TEST_F(SQLAgentEdges, AnEmptyTableReadWholeGivesNoRowsAndAClosedResult) {
  file_.Run("DELETE FROM orders");
  const auto agent = Agent(0);
  EXPECT_EQ(agent->GetRecordset(0, nullptr, false)->Count(), 0);
  file_.Run("INSERT INTO orders (Id) VALUES (1)");
  EXPECT_EQ(agent->RowCount(), 1) << "of a result opened anew";
}

TEST_F(SQLAgentEdges, AnEmptyTableReadInPagesKeepsItsResult) {
  file_.Run("DELETE FROM orders");
  const auto agent = Agent(10);
  EXPECT_EQ(agent->GetRecordset(0, nullptr, false)->Count(), 0);
  file_.Run("INSERT INTO orders (Id) VALUES (1)");
  EXPECT_EQ(agent->RowCount(), 0);
}

TEST_F(SQLAgentEdges, APageThatEndsAtTheLastRowHasNoNextPositionAndTakesANewRow) {
  const auto page = Agent(25)->GetRecordset(0, nullptr, false);
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
  EXPECT_EQ(page->LastBookmark(), Variant(25));
  const auto row = page->CreatePersistentProperties("");
  row->Item("Id")->SetValue(26);
  row->Update();
  EXPECT_EQ(Stored("count(*)", "Id = 26"), "1");
}

TEST_F(SQLAgentEdges, PagesGoByThePositionsOfTheirRowsWhateverTheCursor) {
  for (const auto type : {crtKeyset, crtDynamic, crtStatic}) {
    const ScopedApartment scope;
    const OneAction design({.ConnectString = file_.ConnectString(), .ObjectBuffer = 10, .CursorType = type});
    const auto agent = design.Agent();
    const auto first = agent->GetRecordset(0, nullptr, false);
    const auto second = agent->GetRecordset(0, first, false);
    EXPECT_EQ(first->FirstBookmark(), Variant(1));
    EXPECT_EQ(first->NextBookmark(), Variant(11));
    EXPECT_EQ(second->PrevBookmark(), Variant(10));
    EXPECT_EQ(second->FirstBookmark(), Variant(11));
    EXPECT_EQ(second->GetPersistentProperties(0, "")->Item("Id")->Value(), Variant(11));
  }
}

TEST_F(SQLAgentEdges, PagesReadFromTheEndGoByThePositionsOfTheirRows) {
  const auto agent = Agent(-10);
  const auto last = agent->GetRecordset(0, nullptr, false);
  const auto before = agent->GetRecordset(0, last, false);
  EXPECT_EQ(last->GetPersistentProperties(9, "")->Item("Id")->Value(), Variant(24));
  EXPECT_EQ(last->NextBookmark(), Variant(25));
  EXPECT_EQ(before->GetPersistentProperties(0, "")->Item("Id")->Value(), Variant(5));
  EXPECT_EQ(before->VirtualFirstNumber(), -11);
}

TEST_F(SQLAgentEdges, CancelWithNoOpenResultDoesNothing) {
  Design();
  SQLAgent agent;
  agent.Initialize(design_->Class, design_->Action, nullptr, -1);
  agent.Cancel();
  EXPECT_EQ(scope_.Messages().Count(), 0);
  EXPECT_EQ(agent.GetRecordset(nullptr, nullptr, false)->Count(), 25);
}

TEST_F(SQLAgentEdges, CancelClosesAResultThatIsOpen) {
  Design({.ObjectBuffer = 10});
  SQLAgent agent;
  agent.Initialize(design_->Class, design_->Action, nullptr, -1);
  agent.GetRecordset(nullptr, nullptr, false);
  file_.Run("DELETE FROM orders WHERE Id > 3");
  agent.Cancel();
  EXPECT_EQ(agent.RowCount(), 3);
}

TEST_F(SQLAgentEdges, AnInsertWithoutCounterIsRunForNoResult) {
  Agent(0);
  bool written = false;
  design_->Agent()->UpdatePersistentProperties(Row(26, "O'Brien"), 0, written);
  EXPECT_TRUE(written);
  EXPECT_EQ(Logged(), "INSERT INTO orders ( Id, Customer ) VALUES (26, 'O''Brien' )");
  EXPECT_EQ(Stored("Customer", "Id = 26"), "O'Brien");
}

TEST_F(SQLAgentEdges, ALongValueOfLengthNoneIsEmpty) {
  file_.Run("ALTER TABLE orders ADD COLUMN Photo BLOB; UPDATE orders SET Photo = x'' WHERE Id = 7");
  Design();
  EXPECT_EQ(Stored("typeof(Photo)", "Id = 7"), "blob");
  EXPECT_TRUE(Order(7)->Item("Photo")->EmptyValue());
  EXPECT_TRUE(Order(8)->Item("Photo")->EmptyValue()) << "Null";
}

TEST_F(SQLAgentEdges, ATableIsOpenedByAnyNameThatItsDatabaseTakes) {
  for (const char* name : {"ORDERS", "main.orders", "\"orders\"", "big_orders"}) {
    const ScopedApartment scope;
    const OneAction design({.SourceText = name, .ConnectString = file_.ConnectString()});
    EXPECT_GE(design.Read()->Count(), 5) << name;
  }
}

TEST_F(SQLAgentEdges, AFilteredResultCountsItsRowsWithoutTheFilter) {
  Design({.SourceType = stSQL, .SourceText = "SELECT * FROM orders", .ObjectBuffer = 1});
  const auto filters = Make<Properties>();
  filters->SetupItem({.Name = "Id", .Value = 24, .DataType = dtLongInteger, .Operator = ">"});
  const auto page = Read(filters);
  EXPECT_EQ(page->Count(), 1);
  EXPECT_EQ(page->VirtualFirstNumber(), -1);
  EXPECT_EQ(page->VirtualCount(), 25);
}

TEST_F(SQLAgentEdges, ColumnsOfATableCarryTheFactsOfTheDriverInThreeAttributes) {
  Design();
  const auto attributes = design_->Agent()->PropertiesData()->Item("Customer")->AttributesData();
  ASSERT_EQ(attributes->Count(), 3);
  EXPECT_EQ(attributes->Item("Attributes")->DataType(), dtInteger);
  EXPECT_EQ(attributes->Item("ChunkRequired")->DataType(), dtBoolean);
  EXPECT_EQ(attributes->Item("ChunkRequired")->Value(), Variant(false));
  EXPECT_EQ(attributes->Item("OrdinalPosition")->DataType(), dtInteger);
  EXPECT_EQ(attributes->Item("OrdinalPosition")->Value().AsLong(), 2);
}

TEST_F(SQLAgentEdges, AColumnIsRequiredOrTakesEmptyTextsOrHasNoFlag) {
  Design();
  const auto columns = design_->Agent()->PropertiesData();
  EXPECT_EQ(columns->Item("Id")->Flags(), pfRequired);
  EXPECT_EQ(columns->Item("Total")->Flags(), pfNone);
  EXPECT_EQ(columns->Item("Customer")->Flags(), pfAllowZeroLength);
}

TEST_F(SQLAgentEdges, MarkedParametersAreTheKeyOfWritesInPlaceOfTheIdentifier) {
  Design();
  const auto parameters = Make<Properties>();
  parameters->SetupItem({.Name = "Customer", .Value = "Customer 9", .DataType = dtString});
  parameters->Item("Customer")->SetCopyMark(true);
  SQLAgent agent;
  agent.Initialize(design_->Class, design_->Action, parameters, -1);
  agent.DeletePersistentProperties(Row(7, "Customer 9"));
  EXPECT_EQ(Stored("Id", "Id in (7, 9)"), "7");
}

}  // namespace

}  // namespace velmoria::test
