#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/scenario/orders_over_sqlite.h"
#include "tests/support/expect_raised.h"
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
#include "velmoria/properties/properties.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/properties/property.h"
#include "velmoria/properties/property_data.h"

namespace velmoria::test {

namespace {

// What goes wrong ends as a numbered error with the driver's own words beside it, and the next call works.

class BadInput : public OrdersOverSqlite {
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

TEST_F(BadInput, AnUnknownDriver) {
  Design({.ConnectString = "Driver=NoSuchDriver;Database=x"});
  EXPECT_TRUE(Thrown([&] { Read(); }));
  EXPECT_TRUE(WarnedOf("NoSuchDriver"));
  scope_.Messages().Clear();
  ExpectRaised(errRDO_Connection, [&] { Read(); }, {.Text = "Database: 'Shop'  Engine: 'Generic ODBC'"});
  ExpectTheNextCallWorks();
}

TEST_F(BadInput, ADataSourceThatIsNotThere) {
  Design({.ConnectString = "DSN=velmoria_no_such_source"});
  ExpectRaised(errRDO_Connection, [&] { Read(); }, {.Text = "Examine your ConnectionString"});
  ExpectTheNextCallWorks();
}

TEST_F(BadInput, AFolderThatIsNotThere) {
  Design({.ConnectString = "Driver=SQLite3;Database=" + file_.Path() + ".d/x.db"});
  ExpectRaised(errRDO_Connection, [&] { Read(); });
  EXPECT_FALSE(std::filesystem::exists(file_.Path() + ".d"));
  ExpectTheNextCallWorks();
}

TEST_F(BadInput, AFileThatIsNoDatabase) {
  WriteText(file_.Path() + ".txt", std::string(4096, 'x'));
  Design({.ConnectString = "Driver=SQLite3;Database=" + file_.Path() + ".txt"});
  const auto error = Thrown([&] { Read(); });
  ASSERT_TRUE(error);
  EXPECT_TRUE(error->CatalogueNumber() == 15120 || error->CatalogueNumber() == 15125) << error->CatalogueNumber();
  ExpectTheNextCallWorks();
}

TEST_F(BadInput, ATableThatIsNotThere) {
  Design({.SourceText = "no_such_table"});
  EXPECT_TRUE(Thrown([&] { Read(); }));
  EXPECT_TRUE(WarnedOf("no such table"));
  scope_.Messages().Clear();
  ExpectRaised(errRDO_Table, [&] { Read(); }, {.Text = "SQL/Name: no_such_table"});
  design_->Source->SetSourceText("orders");
  EXPECT_EQ(Read()->Count(), 25);
}

TEST_F(BadInput, AViewThatIsNotThere) {
  Design({.SourceType = stView, .SourceText = "no_such_view"});
  ExpectRaised(errRDO_View, [&] { Read(); }, {.Text = "SQL/Name: no_such_view"});
}

TEST_F(BadInput, AStatementThatDoesNotParse) {
  Design({.SourceType = stSQL, .SourceText = "SELECT FROM WHERE"});
  EXPECT_TRUE(Thrown([&] { Read(); }));
  EXPECT_TRUE(WarnedOf("syntax error"));
  scope_.Messages().Clear();
  ExpectRaised(errRDO_SQL, [&] { Read(); }, {.Text = "SQL: SELECT FROM WHERE"});
  design_->Source->SetSourceText("SELECT * FROM orders");
  EXPECT_EQ(Read()->Count(), 25);
}

TEST_F(BadInput, AColumnThatIsNotThere) {
  Design();
  design_->Class->Properties()->Item("Id")->SetSourceColumn("nowhere");
  ExpectRaised(errRDO_Table, [&] { Read(design_->Key(1)); });
}

TEST_F(BadInput, AValueThatDoesNotConvert) {
  Design();
  const auto order = Order(7);
  ExpectRaised(errProperty_DataType, [&] { order->Item("Placed")->SetValue("yesterday"); });
  EXPECT_FALSE(order->DirtyValues());
  order->Update();
  EXPECT_EQ(Stored("Placed", "Id = 7"), "1998-06-01 09:14:02");
}

TEST_F(BadInput, ADatabaseThatIsLockedByAnother) {
  Design({.ConnectString = file_.ConnectString() + ";Timeout=50"});
  const auto order = Order(7);
  file_.Run("BEGIN EXCLUSIVE");
  order->Item("Customer")->SetValue("x");
  ExpectRaised(errPersistence_Update, [&] { order->Update(); });
  file_.Run("COMMIT");
  order->Update();
  EXPECT_EQ(Stored("Customer", "Id = 7"), "x");
}

class BadInputOnPostgres : public testing::Test {
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

TEST_F(BadInputOnPostgres, AWrongPassword) {
  const auto connection =
      Apartment().ConnectionContext->SetupConnection({.DatabaseName = "Shop",
                                                      .Engine = engODBC,
                                                      .ConnectionType = ctText,
                                                      .ConnectionString = Text("VELMORIA_TEST_PG_SERVER"),
                                                      .Password = "wr0ngsecret",
                                                      .UserName = Text("VELMORIA_TEST_PG_UID")});
  const auto error = Thrown([&] { connection->Connect(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->CatalogueNumber(), 15125);
  EXPECT_EQ(scope_.Messages().Details().find("wr0ngsecret"), std::string::npos);
  EXPECT_GT(scope_.Messages().Count(), 1);
  scope_.Messages().Clear();
  const auto good = Apartment().ConnectionContext->SetupConnection({.DatabaseName = "Good",
                                                                    .ConnectionsName = "Other",
                                                                    .Engine = engODBC,
                                                                    .ConnectionType = ctText,
                                                                    .ConnectionString = Text("VELMORIA_TEST_PG")});
  good->Connect();
  EXPECT_TRUE(good->ConnectionOpen());
}

TEST_F(BadInputOnPostgres, AServerThatGoesAwayBetweenTwoPages) {
  const auto text = Text("VELMORIA_TEST_PG");
  const OneAction design({.SourceType = stSQL,
                          .SourceText = "SELECT i AS \"Id\", pg_backend_pid() AS pid FROM generate_series(1, 50000) i",
                          .ConnectString = text + ";UseDeclareFetch=1;Fetch=100",
                          .ObjectBuffer = 100});
  const auto agent = design.Agent();
  auto page = agent->GetRecordset(0, nullptr, false);
  const auto process = page->GetPersistentProperties(0, "")->Item("pid")->Value().AsText();
  {
    const ScopedApartment other;
    const OneAction killer({.SourceType = stSQL,
                            .SourceText = "SELECT pg_terminate_backend(" + process + ") AS done",
                            .ConnectString = text});
    killer.Read();
  }
  ExpectRaised(errRDO_Resultset, [&] {
    for (int pages = 0; pages < 500; ++pages) page = agent->GetRecordset(0, page, false);
  });
  const auto connection = design.Action->Connection();
  connection->Disconnect();
  EXPECT_EQ(design.Read()->Count(), 100);
}

TEST_F(BadInputOnPostgres, AValueThatTheServerCannotConvert) {
  const OneAction design({.SourceType = stSQL,
                          .SourceText = "SELECT CAST('abc' AS integer) AS \"Id\"",
                          .ConnectString = Text("VELMORIA_TEST_PG")});
  ExpectRaised(errRDO_SQL, [&] { design.Read(); });
  design.Source->SetSourceText("SELECT CAST('12' AS integer) AS \"Id\"");
  EXPECT_EQ(design.Read()->Count(), 1);
}

}  // namespace

}  // namespace velmoria::test
