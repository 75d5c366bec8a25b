#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/refusal.h"
#include "velmoria/core/messages.h"
#include "velmoria/data/connection.h"
#include "velmoria/data/connection_context.h"
#include "velmoria/data/connections.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/design/action.h"
#include "velmoria/design/class.h"
#include "velmoria/design/connector.h"
#include "velmoria/design/database.h"
#include "velmoria/design/server.h"
#include "velmoria/design/source.h"
#include "velmoria/platform/rdo/rdo_connection.h"
#include "velmoria/platform/rdo/rdo_query.h"
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

// What goes wrong ends as a numbered error with the driver's own words beside it, and the next call works.

template <class Call>
void ExpectDriverFailure(zErrors number, const std::string& words, Call call, const RaisedExpectation& expected = {},
                         const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const auto error = Thrown(call);
  if (!WarnedOf(words))
    ADD_FAILURE_AT(file, line) << "no warning of '" << words << "'\n" << Apartment().Messages->Details();
  CheckRaised(number, error, expected, {file, line});
}

class BadInputTest : public OrdersOverSqlite {
 protected:
  void ExpectTheNextCallWorks() {
    scope_.Messages().Clear();
    Apartment()
        .ConnectionContext
        ->SetupConnection({.DatabaseName = "Good",
                           .Engine = engODBC,
                           .ConnectionType = ctText,
                           .ConnectionString = file_.ConnectString()})
        ->Connect();
    EXPECT_EQ(scope_.Messages().Count(), 0);
  }
};

TEST_F(BadInputTest, UnknownDriverIsReportedAndTheNextCallWorks) {
  Design({.ConnectString = "Driver=NoSuchDriver;Database=x"});
  ExpectDriverFailure(errRDO_Connection, "NoSuchDriver", [&] { Read(); },
                      {.Text = "Database: 'Shop'  Engine: 'Generic ODBC'"});
  ExpectTheNextCallWorks();
}

TEST_F(BadInputTest, MissingDataSourceIsReportedAndTheNextCallWorks) {
  Design({.ConnectString = "DSN=velmoria_no_such_source"});
  ExpectDriverFailure(errRDO_Connection, "IM002", [&] { Read(); }, {.Text = "Examine your ConnectionString"});
  ExpectTheNextCallWorks();
}

TEST_F(BadInputTest, MissingFolderIsReportedAndNotMade) {
  Design({.ConnectString = "Driver=SQLite3;Database=" + file_.Path() + ".d/x.db"});
  ExpectDriverFailure(errRDO_Connection, "connect failed", [&] { Read(); });
  EXPECT_FALSE(std::filesystem::exists(file_.Path() + ".d"));
  ExpectTheNextCallWorks();
}

TEST_F(BadInputTest, MissingFileIsReportedAndNotMadeAndFoundOnceItIsThere) {
  const std::string missing = file_.Path() + ".missing";
  Design({.ConnectString = "Driver=SQLite3;NoCreat=Yes;Database=" + missing});
  ExpectDriverFailure(errRDO_Connection, "connect failed", [&] { Read(); }, {.Text = "Database: 'Shop'"});
  EXPECT_FALSE(std::filesystem::exists(missing));
  EXPECT_FALSE(design_->Action->Connection()->ConnectionOpen());
  std::filesystem::copy_file(file_.Path(), missing);
  EXPECT_EQ(Read()->Count(), 25);
  std::filesystem::remove(missing);
}

TEST_F(BadInputTest, FileThatIsNoDatabaseIsReportedAndTheNextCallWorks) {
  WriteText(file_.Path() + ".txt", std::string(4096, 'x'));
  Design({.ConnectString = "Driver=SQLite3;Database=" + file_.Path() + ".txt"});
  ExpectDriverFailure(errRDO_Table, "not a database", [&] { Read(); });
  ExpectTheNextCallWorks();
}

TEST_F(BadInputTest, MissingTableIsReportedAndAnotherIsRead) {
  Design({.SourceText = "no_such_table"});
  ExpectDriverFailure(errRDO_Table, "no such table", [&] { Read(); }, {.Text = "SQL/Name: no_such_table"});
  design_->Source->SetSourceText("orders");
  EXPECT_EQ(Read()->Count(), 25);
}

TEST_F(BadInputTest, MissingViewIsReportedAndAnotherIsRead) {
  Design({.SourceType = stView, .SourceText = "no_such_view"});
  ExpectDriverFailure(errRDO_View, "no such table", [&] { Read(); }, {.Text = "SQL/Name: no_such_view"});
  design_->Source->SetSourceText("big_orders");
  EXPECT_EQ(Read()->Count(), 5);
}

TEST_F(BadInputTest, StatementThatDoesNotParseIsReportedAndAnotherIsRun) {
  Design({.SourceType = stSQL, .SourceText = "SELECT FROM WHERE"});
  ExpectDriverFailure(errRDO_SQL, "syntax error", [&] { Read(); }, {.Text = "SQL: SELECT FROM WHERE"});
  design_->Source->SetSourceText("SELECT * FROM orders");
  EXPECT_EQ(Read()->Count(), 25);
}

TEST_F(BadInputTest, MissingKeyColumnIsReportedAndTheTableStaysReadable) {
  Design();
  design_->Class->Properties()->Item("Id")->SetSourceColumn("nowhere");
  ExpectDriverFailure(errRDO_Table, "no such column", [&] { Read(design_->Key(1)); });
  EXPECT_EQ(Read()->Count(), 25);
}

TEST_F(BadInputTest, StoredNumberThatItsColumnCannotHoldIsReportedUntilItIsPutRight) {
  file_.Run("CREATE TABLE big (Id INTEGER NOT NULL PRIMARY KEY, Counted INTEGER)");
  file_.Run("INSERT INTO big VALUES (1, 2), (2, 5000000000)");
  Design({.SourceText = "big"});
  ExpectDriverFailure(errRDO_Table, "Overflow in the column 'Counted'", [&] { Read(); });
  file_.Run("UPDATE big SET Counted = 3 WHERE Id = 2");
  EXPECT_EQ(Read()->Count(), 2);
}

TEST_F(BadInputTest, ValueThatDoesNotConvertIsRefusedAndNothingIsWritten) {
  Design();
  const auto order = Order(7);
  ExpectRaised(errProperty_DataType, [&] { order->Item("Placed")->SetValue("yesterday"); });
  EXPECT_FALSE(order->DirtyValues());
  order->Update();
  EXPECT_EQ(Stored("Placed", "Id = 7"), "1998-06-01 09:14:02");
}

TEST_F(BadInputTest, DatabaseThatAnotherLocksRefusesTheUpdateUntilItIsFree) {
  Design({.ConnectString = file_.ConnectString() + ";Timeout=50"});
  const auto order = Order(7);
  file_.Run("BEGIN EXCLUSIVE");
  order->Item("Customer")->SetValue("x");
  ExpectDriverFailure(errPersistence_Update, "database is locked", [&] { order->Update(); });
  EXPECT_TRUE(order->DirtyValues());
  file_.Run("COMMIT");
  order->Update();
  EXPECT_EQ(Stored("Customer", "Id = 7"), "x");
}

class BadInputOnPostgresTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::getenv("VELMORIA_TEST_PG")) GTEST_SKIP() << "VELMORIA_TEST_PG names no server";
  }
  static std::string Text(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
  }

  ScopedApartment scope_;
};

TEST_F(BadInputOnPostgresTest, WrongPasswordIsReportedAndShownNowhere) {
  const auto connection =
      Apartment().ConnectionContext->SetupConnection({.DatabaseName = "Shop",
                                                      .Engine = engODBC,
                                                      .ConnectionType = ctText,
                                                      .ConnectionString = Text("VELMORIA_TEST_PG_SERVER"),
                                                      .Password = "wr0ngsecret",
                                                      .UserName = Text("VELMORIA_TEST_PG_UID")});
  EXPECT_TRUE(Thrown([&] { connection->Connect(); }));
  EXPECT_EQ(scope_.Messages().Details().find("wr0ngsecret"), std::string::npos);
  scope_.Messages().Clear();
  ExpectDriverFailure(errRDO_Connection, "password authentication failed", [&] { connection->Connect(); },
                      {.Text = "Username: '" + Text("VELMORIA_TEST_PG_UID") + "'"});
  EXPECT_FALSE(connection->ConnectionOpen());
  const auto good = Apartment().ConnectionContext->SetupConnection({.DatabaseName = "Good",
                                                                    .ConnectionsName = "Other",
                                                                    .Engine = engODBC,
                                                                    .ConnectionType = ctText,
                                                                    .ConnectionString = Text("VELMORIA_TEST_PG_SERVER"),
                                                                    .Password = Text("VELMORIA_TEST_PG_PWD"),
                                                                    .UserName = Text("VELMORIA_TEST_PG_UID")});
  good->Connect();
  EXPECT_TRUE(good->ConnectionOpen());
}

TEST_F(BadInputOnPostgresTest, ServerThatGoesAwayBetweenTwoPagesIsReportedAndTheNextPageIsRead) {
  const auto text = Text("VELMORIA_TEST_PG");
  const OneAction design({.SourceType = stSQL,
                          .SourceText = "SELECT i AS \"Id\", pg_backend_pid() AS pid FROM generate_series(1, 50000) i",
                          .ConnectString = text + ";UseDeclareFetch=1;Fetch=100",
                          .ObjectBuffer = 100});
  const auto agent = design.Agent();
  auto page = agent->GetRecordset(0, nullptr, false);
  const auto value = [&](const char* column) {
    return page->GetPersistentProperties(page->Count() - 1, "")->Item(column)->Value();
  };
  {
    const ScopedApartment other;
    const OneAction killer({.SourceType = stSQL,
                            .SourceText = "SELECT pg_terminate_backend(" + value("pid").AsText() + ") AS done",
                            .ConnectString = text});
    killer.Read();
  }
  ExpectDriverFailure(errRDO_Resultset, "connection", [&] {
    for (int pages = 0; pages < 500; ++pages) page = agent->GetRecordset(0, page, false);
  });
  const auto last = value("Id").AsLong();
  page = agent->GetRecordset(0, page, false);
  EXPECT_EQ(value("Id").AsLong(), last + 100);
  EXPECT_EQ(design.Read()->Count(), 100);
}

TEST_F(BadInputOnPostgresTest, ServerThatGoesAwayWithATransactionIsNotReplacedUnnoticed) {
  const auto text = Text("VELMORIA_TEST_PG");
  const OneAction design(
      {.SourceType = stSQL, .SourceText = "SELECT pg_backend_pid() AS \"Id\"", .ConnectString = text});
  const auto connection = design.Action->Connection();
  connection->TransBegin();
  const auto process = design.Read()->GetPersistentProperties(0, "")->Item("Id")->Value().AsText();
  {
    const ScopedApartment other;
    const OneAction killer({.SourceType = stSQL,
                            .SourceText = "SELECT pg_terminate_backend(" + process + ") AS done",
                            .ConnectString = text});
    killer.Read();
  }
  ExpectDriverFailure(errRDO_SQL, "connection", [&] { design.Read(); });
  for (int again = 0; again < 2; ++again) ExpectDriverFailure(errRDO_SQL, "Roll it back", [&] { design.Read(); });
  connection->TransRollback();
  EXPECT_EQ(design.Read()->Count(), 1);
}

TEST_F(BadInputOnPostgresTest, ValueThatTheServerCannotConvertIsReportedAndAnotherIsRead) {
  const OneAction design({.SourceType = stSQL,
                          .SourceText = "SELECT CAST('abc' AS integer) AS \"Id\"",
                          .ConnectString = Text("VELMORIA_TEST_PG")});
  ExpectDriverFailure(errRDO_SQL, "invalid input syntax", [&] { design.Read(); });
  design.Source->SetSourceText("SELECT CAST('12' AS integer) AS \"Id\"");
  EXPECT_EQ(design.Read()->Count(), 1);
}

TEST_F(BadInputOnPostgresTest, ValueThatAColumnCannotTakeIsReportedAndAnotherIsWritten) {
  const OneAction design({.SourceText = "bad_input", .ConnectString = Text("VELMORIA_TEST_PG")});
  for (const char* sql : {"CREATE TEMPORARY TABLE bad_input (Id integer PRIMARY KEY, Amount numeric(4,2))",
                          "INSERT INTO bad_input VALUES (1, 1.5)"})
    design.Action->Connection()->GetConnection()->CreateQuery("", sql)->Execute();
  const auto row = design.Read(design.Key(1))->GetPersistentProperties(0, "");
  row->Item("Amount")->SetValue(12345);
  ExpectDriverFailure(errPersistence_Update, "numeric field overflow", [&] { row->Update(); });
  EXPECT_TRUE(row->DirtyValues());
  const auto stored = [&] { return design.Read()->GetPersistentProperties(0, "")->Item("Amount")->Value().AsDouble(); };
  EXPECT_EQ(stored(), 1.5);
  row->Item("Amount")->SetValue(99);
  row->Update();
  EXPECT_EQ(stored(), 99);
}

}  // namespace

}  // namespace velmoria::test
