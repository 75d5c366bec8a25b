#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/unit/data/agents/read_over_fake.h"
#include "velmoria/brokering/identifier.h"
#include "velmoria/core/messages.h"
#include "velmoria/core/profile.h"
#include "velmoria/core/statistics.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/properties/attribute.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

class SQLAgentReadTest : public ReadOverFake {};

TEST_F(SQLAgentReadTest, EverythingIsOnePageAndTheResultIsClosed) {
  Design({});
  const auto page = design_->Read();
  EXPECT_EQ(page->Count(), 25);
  EXPECT_EQ(IdAt(page, 0), 1);
  EXPECT_EQ(IdAt(page, 24), 25);
  EXPECT_EQ(page->VirtualFirstNumber(), -1);
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
  EXPECT_EQ(page->FirstBookmark().AsLong(), 1);
  EXPECT_EQ(page->LastBookmark().AsLong(), 25);
  EXPECT_EQ(page->Engine(), engODBC);
}

TEST_F(SQLAgentReadTest, AnEmptyTableGivesAnEmptyPageAndAClosedResult) {
  SetRows(0);
  Design({});
  const auto page = design_->Read();
  EXPECT_EQ(page->Count(), 0);
  EXPECT_EQ(page->VirtualFirstNumber(), -1);
  ExpectRaised(errPersistence_Row, [&] { page->GetPersistentProperties(0, ""); }, {.Text = "Row: 0  Count: 0"});
  page->VirtualCount();
  EXPECT_EQ(driver_->Texts.size(), 2U);
}

TEST_F(SQLAgentReadTest, PagesFollowOneAnotherWithoutAGapAndAreNumberedOneShort) {
  Design({.ObjectBuffer = 10});
  const auto agent = design_->Agent();
  const auto first = agent->GetRecordset(0, nullptr, false);
  const auto second = agent->GetRecordset(0, first, false);
  const auto third = agent->GetRecordset(0, second, false);
  EXPECT_EQ(IdAt(first, 9), 10);
  EXPECT_EQ(IdAt(second, 0), 11);
  EXPECT_EQ(IdAt(third, 0), 21);
  EXPECT_EQ(third->Count(), 5);
  EXPECT_EQ(first->VirtualFirstNumber(), 0);
  EXPECT_EQ(second->VirtualFirstNumber(), 9);
  EXPECT_EQ(third->VirtualFirstNumber(), 18);
  EXPECT_EQ(second->PrevBookmark().AsLong(), 10);
  EXPECT_TRUE(third->NextBookmark().IsEmpty());
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(SQLAgentReadTest, EverythingAskedForAgainIsReadAgain) {
  Design({});
  const auto agent = design_->Agent();
  const auto again = agent->GetRecordset(0, agent->GetRecordset(0, nullptr, false), false);
  EXPECT_EQ(again->Count(), 25);
  EXPECT_TRUE(again->PrevBookmark().IsEmpty());
  EXPECT_EQ(driver_->Texts.size(), 2U);
}

TEST_F(SQLAgentReadTest, EverythingBehindAPageGoesFromItsNextRowToTheEnd) {
  Design({.ObjectBuffer = 10});
  const auto first = design_->Read();
  design_->Action->SetObjectBuffer(0);
  const auto rest = design_->Agent()->GetRecordset(0, first, false);
  EXPECT_EQ(rest->Count(), 15);
  EXPECT_EQ(IdAt(rest, 0), 11);
  EXPECT_EQ(rest->PrevBookmark().AsLong(), 10);
  EXPECT_EQ(rest->FirstBookmark().AsLong(), 11);
}

TEST_F(SQLAgentReadTest, AskedBeyondTheEndItGivesTheLastRowAgain) {
  Design({.ObjectBuffer = 20});
  const auto agent = design_->Agent();
  auto page = agent->GetRecordset(0, nullptr, false);
  page = agent->GetRecordset(0, page, false);
  page = agent->GetRecordset(0, page, false);
  EXPECT_EQ(page->Count(), 1);
  EXPECT_EQ(IdAt(page, 0), 25);
}

TEST_F(SQLAgentReadTest, APageThatEndsAtTheLastRowHasNoNextPosition) {
  SetRows(10);
  Design({.ObjectBuffer = 10});
  const auto page = design_->Read();
  EXPECT_TRUE(page->NextBookmark().IsEmpty());
  EXPECT_TRUE(page->CreatePersistentProperties(""));
}

TEST_F(SQLAgentReadTest, ANewRowNeedsTheLastPage) {
  Design({.ObjectBuffer = 10});
  const auto page = design_->Read();
  ExpectRaised(errBusinessObjects_Buffer, [&] { page->CreatePersistentProperties(""); }, {.Text = "ObjectBuffer: 10"});
}

TEST_F(SQLAgentReadTest, RowCountReadsToTheEndAndLeavesPagingAlone) {
  Design({.ObjectBuffer = 10});
  const auto agent = design_->Agent();
  const auto first = agent->GetRecordset(0, nullptr, false);
  EXPECT_EQ(agent->RowCount(), 25);
  EXPECT_EQ(IdAt(agent->GetRecordset(0, first, false), 0), 11);
}

TEST_F(SQLAgentReadTest, RowCountOpensTheResultItNeeds) {
  Design({.ObjectBuffer = 10});
  const auto agent = design_->Agent();
  EXPECT_EQ(agent->RowCount(), 25);
  EXPECT_EQ(IdAt(agent->GetRecordset(0, nullptr, false), 0), 1);
  EXPECT_EQ(driver_->Texts.size(), 1U);
}

TEST_F(SQLAgentReadTest, TheDefinitionsAreThereWithoutReading) {
  Design({});
  EXPECT_EQ(design_->Agent()->PropertiesData()->Count(), 2);
}

TEST_F(SQLAgentReadTest, APlainTableIsOpenedByItsNameAndNotLogged) {
  Design({});
  design_->Read();
  EXPECT_FALSE(scope_.Messages().Item("15129"));
  EXPECT_EQ(driver_->CallsOf["Prepare"], 0);
}

TEST_F(SQLAgentReadTest, ParametersWithoutValuesReadThePlainTable) {
  Design({});
  design_->Read(Parameter({.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput}));
  EXPECT_FALSE(scope_.Messages().Item("15129"));
}

TEST_F(SQLAgentReadTest, AKeyIsReadByOneLoggedStatement) {
  Design({});
  design_->Read(design_->Key(7));
  EXPECT_EQ(driver_->Texts, (std::vector<std::string>{"SELECT * FROM orders WHERE Id = 7"}));
  EXPECT_EQ(Logged(), "SELECT * FROM orders WHERE Id = 7");
  EXPECT_EQ(scope_.Messages().Item("15129")->SeverityFlags(), svfInfo);
}

TEST_F(SQLAgentReadTest, ThePageAndItsDefinitionsCarryTheMeasurement) {
  Design({});
  const auto page = design_->Read();
  const auto read = page->Statistics()->Item("Read 'Shop' Rows");
  EXPECT_EQ(read->SubjectCount(), 25);
  EXPECT_EQ(read->StartTime(), read->EndTime());
  EXPECT_EQ(page->Columns()->Statistics()->Item("Read 'Shop' Rows"), read);
  EXPECT_EQ(page->Columns()->Statistics()->Item("Read 'Shop' Properties Meta-data")->SubjectCount(), 2);
}

TEST_F(SQLAgentReadTest, ACursorThatOnlyGoesForwardsIsRefused) {
  Apartment().Profile->SetupItem({.Name = "Default CursorType for Engine 2", .Value = 0, .DataType = dtLongInteger});
  for (const auto buffer : {0, 10}) {
    if (!design_) Design({.CursorType = crtNone});
    design_->Action->SetObjectBuffer(buffer);
    ExpectRaised(errNotSupported_Cursor, [&] { design_->Read(); },
                 {.Text = "CursorDriver: 'Client Side (ODBC)'  CursorType: '(None)'  Engine: 'Generic ODBC'"});
  }
}

TEST_F(SQLAgentReadTest, AResultThatBreaksOffIsRaisedWithTheDriversWordsAndTheNextReadWorks) {
  SetRows(5000);
  Design({.ObjectBuffer = 500});
  const auto agent = design_->Agent();
  auto page = agent->GetRecordset(0, nullptr, false);
  driver_->Diagnostics = {{"08S01", 20006, "link down"}};
  driver_->FailName = "FetchScroll";
  ExpectRaised(errRDO_Resultset, [&] {
    for (int pages = 0; pages < 10; ++pages) page = agent->GetRecordset(0, page, false);
  });
  const auto broken = page;
  driver_->FailName.clear();
  EXPECT_EQ(agent->GetRecordset(0, broken, false)->Count(), 500);
  EXPECT_EQ(design_->Read()->Count(), 500);
}

TEST_F(SQLAgentReadTest, MarkersAreBoundByPosition) {
  DesignStatement("SELECT * FROM orders WHERE Name = ? AND Id > ?",
                  {{.Name = "Name", .DataType = dtString, .Flags = pfInput},
                   {.Name = "Id", .DataType = dtLongInteger, .Flags = pfInput}});
  auto parameters = design_->Action->CreateParameters();
  parameters->Item("Name")->SetValue("n3");
  parameters->Item("Id")->SetValue(2);
  design_->Read(parameters);
  ASSERT_EQ(driver_->Parameters.size(), 2U);
  EXPECT_EQ(driver_->Parameters[0].Bytes, "n3");
  EXPECT_EQ(Logged(),
            "SELECT * FROM orders WHERE Name = ? AND Id > ?\r\nParameters:"
            "\r\n    Name: 'Param1'  Type: 12  Direction: 0  Value: 'n3'"
            "\r\n    Name: 'Param2'  Type: 4  Direction: 0  Value: 2");
}

TEST_F(SQLAgentReadTest, ASourceDataTypeWinsOverTheDataType) {
  DesignStatement("SELECT ?",
                  {{.Name = "a", .DataType = dtLongInteger, .SourceDataType = dtRDOSMALLINT, .Flags = pfInput}});
  auto parameters = design_->Action->CreateParameters();
  parameters->Item("a")->SetValue(2);
  design_->Read(parameters);
  EXPECT_NE(Logged().find("Type: 5 "), std::string::npos);
}

TEST_F(SQLAgentReadTest, WithoutAnyTypeTheValueDecides) {
  DesignStatement("SELECT ?", {{.Name = "a", .Flags = pfInput}});
  auto parameters = design_->Action->CreateParameters();
  parameters->Item("a")->SetValue(true);
  design_->Read(parameters);
  EXPECT_NE(Logged().find("Type: -7 "), std::string::npos);
}

TEST_F(SQLAgentReadTest, ADecimalGoesToSybaseAsADouble) {
  Design({.Engine = engSybase, .SourceType = stSQL, .SourceText = "SELECT ?"});
  design_->Source->Parameters()->SetupItem({.Name = "a", .DataType = dtDecimal, .Flags = pfInput});
  auto parameters = design_->Action->CreateParameters();
  parameters->Item("a")->SetValue(2);
  design_->Read(parameters);
  EXPECT_NE(Logged().find("Type: 8 "), std::string::npos) << Logged();
}

TEST_F(SQLAgentReadTest, AParameterThatTakesNoInputIsSentAsNull) {
  DesignStatement("SELECT ?", {{.Name = "a", .DataType = dtLongInteger, .Flags = pfRequired}});
  auto parameters = design_->Action->CreateParameters();
  parameters->Item("a")->SetValue(2);
  design_->Read(parameters);
  ASSERT_EQ(driver_->Parameters.size(), 1U);
  EXPECT_TRUE(driver_->Parameters[0].IsNull);
  EXPECT_TRUE(Logged().ends_with("Value: Null"));
}

TEST_F(SQLAgentReadTest, AMarkerWithoutParameterIsAFailureOfTheStatement) {
  DesignStatement("SELECT ?", {});
  ExpectRaised(errItem_Property, [&] { design_->Read(); }, {.Text = "Index: 1"});
}

TEST_F(SQLAgentReadTest, PassedThroughTheTextHoldsTheValues) {
  DesignStatement("SELECT ?", {{.Name = "a", .DataType = dtLongInteger, .Flags = pfInput}}, ofRDOPassthru);
  auto parameters = design_->Action->CreateParameters();
  parameters->Item("a")->SetValue(2);
  design_->Read(parameters);
  EXPECT_EQ(driver_->Texts, (std::vector<std::string>{"SELECT 2"}));
  EXPECT_EQ(driver_->CallsOf["Prepare"], 0);
}

TEST_F(SQLAgentReadTest, ColumnsOfTheSameNameAreADuplicateKey) {
  driver_->Columns = {{"Id", kInteger}, {"id", kInteger}};
  Design({});
  ExpectReported(RuntimeFailure::KeyInUse, [&] { design_->Read(); });
}

TEST_F(SQLAgentReadTest, AnIdentityThatComesBackIsTakenByTheRow) {
  Design({});
  auto row = Make<Properties>();
  row->SetupItem({.Name = "Id", .DataType = dtLongInteger, .Flags = pfcounter});
  row->SetupItem({.Name = "Name", .Value = "x", .DataType = dtString});
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  driver_->Columns = {{"Id", kInteger}};
  driver_->Rows = {{"42"}};
  bool written = false;
  design_->Agent()->UpdatePersistentProperties(row, 0, written);
  EXPECT_TRUE(written);
  EXPECT_EQ(row->Item("Id")->Value().AsLong(), 42);
  EXPECT_EQ(driver_->Texts.back(), "INSERT INTO orders ( Name ) VALUES ( 'x' ) SELECT 'Id' = @@IDENTITY");
}

TEST_F(SQLAgentReadTest, AnIdentityOfABoundRowGoesIntoItsColumn) {
  Design({});
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  const auto page = design_->Read();
  const auto row = page->CreatePersistentProperties("");
  row->Item("Name")->SetValue("x");
  driver_->Columns = {{"Id", kInteger}};
  driver_->Rows = {{"42"}};
  row->Update();
  EXPECT_EQ(IdAt(page, 25), 42);
  EXPECT_EQ(row->StateFlags(), sfpersistent);
}

TEST_F(SQLAgentReadTest, NoRowBehindTheIdentityTextLeavesTheRowAsItIs) {
  Design({});
  auto row = Make<Properties>();
  row->SetupItem({.Name = "Id", .Value = 5, .DataType = dtLongInteger, .Flags = pfcounter});
  design_->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  driver_->Columns = {{"Id", kInteger}};
  driver_->Rows.clear();
  bool written = false;
  design_->Agent()->UpdatePersistentProperties(row, 0, written);
  EXPECT_EQ(row->Item("Id")->Value().AsLong(), 5);
}

}  // namespace

}  // namespace velmoria::test
