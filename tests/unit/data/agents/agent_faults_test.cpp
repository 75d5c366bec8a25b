#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/await_opened.h"
#include "tests/support/fault_rounds.h"
#include "tests/unit/data/agents/faulty_orders.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

using Operation = FaultedOperation<FaultyOrders>;

const std::vector<zErrors> kOpening{errRDO_Connection, errRDO_Environment};
const std::vector<zErrors> kReading{errRDO_Connection, errRDO_Environment,     errRDO_Table,
                                    errRDO_SQL,        errRDO_StoredProcedure, errRDO_Resultset};
const std::vector<zErrors> kRefused{errVelmoria_Unknown, errRDO_Connection, errRDO_Environment};

constexpr int kPage = 60;  // less than come with the first rows

// ---- reading

void DesignTable(FaultyOrders& orders) {
  orders.Design({});
  orders.MakeAgent();
}

void DesignPages(FaultyOrders& orders) {
  orders.Design({.ObjectBuffer = kPage});
  orders.MakeAgent();
}

void DesignBackwards(FaultyOrders& orders) {
  orders.Design({.ObjectBuffer = -kPage});
  orders.MakeAgent();
}

void DesignForwardOnly(FaultyOrders& orders) {
  orders.Fake.Scrolls = false;
  orders.Design({.ObjectBuffer = kPage, .CursorType = crtKeyset});
  orders.MakeAgent();
}

/// Every value is longer than the driver says, and its cursor cannot go back to one.
void DesignLongTexts(FaultyOrders& orders) {
  orders.Fake.Columns = {{"Id", 4}, {"Name", 12, 2}};
  orders.SetRows(3, 100);
  DesignForwardOnly(orders);
}

void DesignLongTextsOfAScrollingCursor(FaultyOrders& orders) {
  DesignLongTexts(orders);
  orders.Fake.Scrolls = true;
  orders.One->Source->SetSourceType(stSQL);
  orders.One->Source->SetSourceText("SELECT * FROM orders");
  orders.MakeAgent();
}

void DesignFilter(FaultyOrders& orders) {
  orders.Design({.SourceType = stSQL, .SourceText = "SELECT * FROM orders"});
  orders.Parameters = Make<Properties>();
  orders.Parameters->SetupItem({.Name = "Id", .Value = 140, .DataType = dtLongInteger, .Operator = ">="});
  orders.MakeAgent();
}

void DesignStatement(FaultyOrders& orders) {
  orders.Design({.SourceType = stSQL, .SourceText = "SELECT * FROM orders WHERE Id >= ? AND Name <> ?"});
  orders.One->Source->Parameters()->SetupItem({.Name = "From", .DataType = dtLongInteger, .Flags = pfInput});
  orders.One->Source->Parameters()->SetupItem({.Name = "Name", .DataType = dtString, .Flags = pfInput});
  orders.Parameters = orders.One->Action->CreateParameters();
  orders.Parameters->Item("From")->SetValue(3);
  orders.Parameters->Item("Name")->SetValue("x");
  orders.MakeAgent();
}

std::string Read(FaultyOrders& orders) { return orders.Ids(orders.Agent->GetRecordset(0, nullptr, false)); }

std::string ReadTexts(FaultyOrders& orders) {
  const auto page = orders.Agent->GetRecordset(0, nullptr, false);
  std::string texts;
  for (std::int32_t row = 0; row < page->Count(); ++row)
    texts += page->Values(row, *page->Columns()->Item("Name")).AsText() + ",";
  return texts;
}

/// All pages; those that came stay though a later one fails.
std::string ReadPages(FaultyOrders& orders) {
  auto page = orders.Agent->GetRecordset(0, nullptr, false);
  auto ids = orders.Ids(page);
  while (!page->NextBookmark().IsEmpty()) {
    page = orders.Agent->GetRecordset(0, page, false);
    ids += orders.Ids(page);
  }
  return ids;
}

std::string ReadBackwards(FaultyOrders& orders) {
  auto page = orders.Agent->GetRecordset(0, nullptr, false);
  auto ids = orders.Ids(page);
  while (!page->PrevBookmark().IsEmpty()) {
    page = orders.Agent->GetRecordset(0, page, false);
    ids += orders.Ids(page);
  }
  return ids;
}

std::string Count(FaultyOrders& orders) { return std::to_string(orders.Agent->RowCount()); }

/// Rows of more than what a result keeps in memory behind its position.
void DesignManyAndReadAPage(FaultyOrders& orders) {
  orders.Fake.Columns = {{"Id", 4}, {"Name", 12, 4000}};
  orders.SetRows(2600, 3600);
  orders.Fake.Scrolls = false;
  orders.Design({.ObjectBuffer = 1300, .CursorType = crtKeyset});
  orders.MakeAgent();
  orders.Page = orders.Agent->GetRecordset(0, nullptr, false);
}

std::string PassAllAndReadFirstPageAgain(FaultyOrders& orders) {
  orders.Agent->GetRecordset(0, orders.Page, false);
  return orders.Ids(orders.Agent->GetRecordset(0, nullptr, false));
}

void DesignPicture(FaultyOrders& orders) {
  orders.Fake.Columns = {{"Id", 4}, {"Photo", -4}};
  orders.Fake.Rows = {{"1", "bytes"}};
  orders.Design({});
  orders.Row = orders.One->Read()->GetPersistentProperties(0, "");
}

std::string ReadLong(FaultyOrders& orders) {
  std::string text;
  const auto value = orders.Row->Item("Photo")->Value();
  if (!value.IsByteArray()) return text;
  for (const auto byte : value.Bytes()) text += static_cast<char>(byte);
  return text;
}

std::string StateOfRow(FaultyOrders& orders) {
  return StateFlagsDisplay(orders.Row->StateFlags()) + (orders.Row->DirtyValues() ? " dirty" : " clean");
}

// ---- procedures

FakeOdbc::Row Listed(const char* name, const char* kind) {
  return {{}, {}, "raise", name, kind, "4", {}, "10", {}, "0"};
}

void Declare(FaultyOrders& orders, const char* name, zPropertyFlags flags) {
  orders.One->Source->Parameters()->SetupItem({.Name = name, .DataType = dtLongInteger, .Flags = flags});
}

void DesignProcedure(FaultyOrders& orders) {
  orders.Fake.Catalogue = {Listed("@RETURN_VALUE", "5"), Listed("@Id", "1"), Listed("@Total", "2"),
                           Listed("@Changed", "4")};
  orders.Fake.Outputs = {"3", "110", "1"};
  orders.Design({.SourceType = stStoredProcedure, .SourceText = "raise"});
  Declare(orders, "RETURN_VALUE", pfReturnValue);
  Declare(orders, "Id", pfInput | pfRequired);
  Declare(orders, "Total", pfInput | pfOutput);
  Declare(orders, "Changed", pfOutput);
  orders.Parameters = orders.One->Action->CreateParameters();
  orders.Parameters->Item("Id")->SetValue(7);
  orders.Parameters->Item("Total")->SetValue(100);
  orders.MakeAgent();
}

std::string Outputs(FaultyOrders& orders) {
  std::string text;
  for (const auto& parameter : *orders.Parameters) {
    const auto value = parameter->Value();
    text += (value.IsNull() ? "-" : value.AsText()) + ",";
  }
  return text;
}

std::string Execute(FaultyOrders& orders) {
  orders.Agent->Execute();
  return Outputs(orders);
}

void DesignProcedureWithRows(FaultyOrders& orders) {
  orders.Fake.Catalogue = {Listed("@Id", "1")};
  orders.Fake.CountsBefore = 1;
  orders.Design({.SourceType = stStoredProcedure, .SourceText = "raise"});
  Declare(orders, "Id", pfInput);
  orders.Parameters = orders.One->Action->CreateParameters();
  orders.Parameters->Item("Id")->SetValue(7);
  orders.MakeAgent();
}

// ---- writing

void ChangeRow(FaultyOrders& orders) {
  orders.Design({});
  orders.Row = orders.One->Read()->GetPersistentProperties(0, "");
  orders.Row->Item("Name")->SetValue("x");
}

void DeleteRow(FaultyOrders& orders) {
  orders.Design({});
  orders.Row = orders.One->Read()->GetPersistentProperties(0, "");
  orders.Row->Delete();
}

void MakeRow(FaultyOrders& orders) {
  orders.Design({});
  orders.Row = orders.One->Read()->CreatePersistentProperties("");
  orders.Row->Item("Name")->SetValue("x");
}

void MakeCountedRow(FaultyOrders& orders) {
  orders.Design({});
  orders.One->Class->Properties()->Item("Id")->SetFlags(pfcounter);
  orders.Row = orders.One->Read()->CreatePersistentProperties("");
  orders.Row->Item("Name")->SetValue("x");
  orders.Fake.Columns = {{"Id", 4}};
  orders.Fake.Rows = {{"42"}};
}

std::string Update(FaultyOrders& orders) {
  if (!has(orders.Row->StateFlags(), sfdeleted)) orders.Row->Update();
  return StateOfRow(orders);
}

std::string UpdateCounted(FaultyOrders& orders) {
  orders.Row->Update();
  const auto id = orders.Row->Item("Id")->Value();
  return id.IsNull() ? "" : id.AsText();
}

/// Whether there is a number, and the row's state.
std::string Counted(FaultyOrders& orders) {
  return (orders.Row->Item("Id")->Value().IsEmpty() ? "no number " : "number ") + StateOfRow(orders);
}

/// The connection has one result at a time: what is left of the page's is fetched before the row is written.
void ChangeRowOfAnOpenResult(FaultyOrders& orders) {
  orders.Fake.ActiveStatements = 1;
  DesignPages(orders);
  orders.Page = orders.Agent->GetRecordset(0, nullptr, false);
  orders.Row = orders.Page->GetPersistentProperties(0, "");
  orders.Row->Item("Name")->SetValue("x");
}

std::string UpdateAndReadOn(FaultyOrders& orders) {
  orders.Row->Update();
  return orders.Ids(orders.Agent->GetRecordset(0, orders.Page, false));
}

/// A failure that is met while the rest is fetched is kept for whoever asks for the rows.
void ReadOnBehindTheFailure(FaultyOrders& orders) {
  if (Attempt([&] { return UpdateAndReadOn(orders); }).Failure) UpdateAndReadOn(orders);
  EXPECT_EQ(StateOfRow(orders), "Persistent clean");
}

// ---- connections and transactions

void DesignGreetedServer(FaultyOrders& orders) {
  orders.Fake.Server = "PostgreSQL";
  orders.Design({});
}

std::string Connect(FaultyOrders& orders) {
  orders.Connection()->Connect();
  return {};
}

std::string IsConnected(FaultyOrders& orders) { return orders.Connection()->ConnectionOpen() ? "open" : "closed"; }

/// A second connection in the same group, both with a transaction that their group has begun.
void ConnectBoth(FaultyOrders& orders) {
  orders.Design({});
  orders.Group()->SetupItem(
      {.DatabaseName = "Store", .Engine = engODBC, .ConnectionType = ctText, .ConnectionString = "Driver=Fake"});
  orders.Connection()->Connect();
  orders.Group()->Item("Store")->Connect();
}

void BeginBoth(FaultyOrders& orders) {
  ConnectBoth(orders);
  orders.Group()->TransBegin(engODBC);
}

std::string Started(FaultyOrders& orders) { return orders.Group()->TransStarted(engODBC) ? "started" : "none"; }

std::string GroupBegin(FaultyOrders& orders) {
  orders.Group()->TransBegin(engODBC);
  return {};
}
std::string GroupCommit(FaultyOrders& orders) {
  orders.Group()->TransCommit(engODBC);
  return {};
}
std::string GroupRollBack(FaultyOrders& orders) {
  orders.Group()->TransRollback(engODBC);
  return {};
}

void GiveUp(FaultyOrders& orders) { orders.Group()->Disconnect(engODBC); }

// ---- in the background

void DesignAndConnect(FaultyOrders& orders) {
  DesignTable(orders);
  orders.Connection()->Connect();
}

/// The database is at work until the statement is cancelled.
std::string BeginAndCancel(FaultyOrders& orders) {
  orders.Fake.Hold();
  orders.Agent->LoadPersistentProperties();
  orders.AwaitExecution();
  orders.Agent->Cancel();
  orders.Fake.Release();
  return {};
}

std::string BeginAndLeave(FaultyOrders& orders) {
  orders.Fake.Hold();
  orders.MakeAgent();
  orders.Agent->LoadPersistentProperties();
  orders.AwaitExecution();
  orders.Agent = nullptr;
  orders.Fake.Release();
  return {};
}

std::string OpenAndAwait(FaultyOrders& orders) {
  orders.Agent->LoadPersistentProperties();
  AwaitOpened(orders.Agent);
  return orders.Ids(orders.Agent->Recordset());
}

const std::vector<Operation> kOperations{
    {"WholeResult", DesignTable, Read, nullptr, kReading},
    {"Pages", DesignPages, ReadPages, nullptr, kReading},
    {"PagesOfAForwardOnlyCursor", DesignForwardOnly, ReadPages, nullptr, kReading},
    {"PagesBackwards", DesignBackwards, ReadBackwards, nullptr, kReading, false, true},
    {"ValuesLongerThanAnnounced", DesignLongTexts, ReadTexts, nullptr, kReading, false, true},
    {"ValuesLongerThanAnnouncedInAScrollingCursor", DesignLongTextsOfAScrollingCursor, ReadTexts, nullptr, kReading,
     false, true},
    {"RowsFarBehind", DesignManyAndReadAPage, PassAllAndReadFirstPageAgain, nullptr, kReading},
    {"FilteredRows", DesignFilter, Read, nullptr, kReading},
    {"StatementWithParameters", DesignStatement, Read, nullptr, kReading},
    {"Counting", DesignTable, Count, nullptr, kReading, false, true},
    {"LongValue", DesignPicture, ReadLong, StateOfRow, kReading},
    {"ProcedureWithOutputs", DesignProcedure, Execute, Outputs, kRefused, true, true},
    {"ProcedureWithRows", DesignProcedureWithRows, Read, nullptr, kReading},
    {"Inserting", MakeRow, Update, StateOfRow, {errPersistence_Insert, errRDO_Connection}},
    {"InsertingWithIdentity",
     MakeCountedRow,
     UpdateCounted,
     Counted,
     {errPersistence_Insert, errRDO_Identity_Insert, errRDO_Connection}},
    {"Updating", ChangeRow, Update, StateOfRow, {errPersistence_Update, errRDO_Connection}},
    {"Deleting", DeleteRow, Update, StateOfRow, {errPersistence_Delete, errRDO_Connection}},
    {"WritingBesideAnOpenResult",
     ChangeRowOfAnOpenResult,
     UpdateAndReadOn,
     nullptr,
     {errPersistence_Update, errRDO_Connection, errRDO_Table, errRDO_Resultset},
     false,
     false,
     ReadOnBehindTheFailure},
    {"ConnectingToAGreetedServer", DesignGreetedServer, Connect, IsConnected, kOpening},
    {"BeginningInAGroup", ConnectBoth, GroupBegin, Started, kRefused, false, false, GiveUp},
    {"CommittingAGroup", BeginBoth, GroupCommit, Started, kRefused, false, false, GiveUp},
    {"RollingAGroupBack", BeginBoth, GroupRollBack, Started, kRefused, false, false, GiveUp},
    {"OpeningInTheBackground", DesignTable, OpenAndAwait, nullptr, kReading},
    {"CancellingInTheBackground", DesignAndConnect, BeginAndCancel, nullptr, kReading},
    {"LeavingWhatIsInTheBackground", DesignAndConnect, BeginAndLeave, nullptr, kReading},
};

class AgentFaultsTest : public testing::TestWithParam<Operation> {};

TEST_P(AgentFaultsTest, EveryCallMayFailOnceAndTheNextRequestWorks) {
  const int faults = FaultRounds<FaultyOrders>(GetParam()).RunAll();
  EXPECT_GT(faults, 0);
  RecordProperty("faults", faults);
}

INSTANTIATE_TEST_SUITE_P(Fake, AgentFaultsTest, testing::ValuesIn(kOperations),
                         [](const auto& tried) { return tried.param.Name; });

}  // namespace

}  // namespace velmoria::test
