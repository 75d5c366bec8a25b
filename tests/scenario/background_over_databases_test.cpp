// Results that open while the caller goes on, over every database.

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/await_opened.h"
#include "tests/support/expect_raised.h"
#include "tests/support/odbc_client.h"
#include "tests/support/one_action.h"
#include "tests/support/scoped_apartment.h"
#include "tests/support/sqlite_file.h"
#include "tests/support/test_servers.h"
#include "velmoria/data/database_agent_impl.h"
#include "velmoria/data/recordset_impl.h"
#include "velmoria/properties/properties_data.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {

namespace {

/// A database, and a query that ends by being stopped only.
struct Place {
  std::string Name;
  std::string Endless;
  std::string Connect{};  // empty: a SQLite file
};

void PrintTo(const Place& place, std::ostream* stream) { *stream << place.Name; }

std::vector<Place> Places() {
  std::vector<Place> places = {{"SQLite",
                                "SELECT count(*) AS id FROM ( WITH RECURSIVE g(n) AS ( SELECT 1 UNION ALL SELECT n + 1 "
                                "FROM g ) SELECT n FROM g ) AS g"}};
  const Place endless[] = {
      {"PostgreSQL", "SELECT 1 AS id FROM pg_sleep(3600)"},
      {"MariaDB", "SELECT SLEEP(3600) AS id"},
      {"FreeTDS", "WITH g (n) AS ( SELECT 1 UNION ALL SELECT n + 1 FROM g ) SELECT COUNT(*) AS id FROM g"},
  };
  for (const auto& server : TestServers()) {
    for (const auto& place : endless)
      if (place.Name == server.Name) places.push_back({place.Name, place.Endless, server.ConnectString()});
  }
  return places;
}

/// A statement over a table of 30 rows, which a plain client has made.
class BackgroundOverDatabases : public testing::TestWithParam<Place> {
 public:
  ~BackgroundOverDatabases() override {
    design_.reset();
    Apartment().ConnectionContext->Item("")->Disconnect(engODBC);
    client_.RunAll({"DROP TABLE " + table_});
  }

 protected:
  BackgroundOverDatabases() : client_(ConnectString()) {
    client_.RunAll({"CREATE TABLE " + table_ + " ( id int NOT NULL PRIMARY KEY, name varchar(20) )"});
    for (int number = 1; number <= 30; ++number) {
      client_.RunAll({"INSERT INTO " + table_ + " (id) VALUES ( " + std::to_string(number) + " )"});
    }
    design_ = std::make_unique<OneAction>(OneActionFields{
        .SourceType = stSQL, .SourceText = Rows(), .ConnectString = ConnectString(), .ObjectBuffer = 10});
  }

  std::string ConnectString() const { return GetParam().Connect.empty() ? file_.ConnectString() : GetParam().Connect; }
  std::string Rows() const { return "SELECT id, name FROM " + table_ + " ORDER BY id"; }
  DatabaseAgentPtr Loading(const std::string& text) const {
    design_->Source->SetSourceText(text);
    auto agent = design_->Agent();
    agent->LoadPersistentProperties();
    return agent;
  }
  static std::int32_t IdAt(const RecordsetPtr& page, std::int32_t row) {
    return page->GetPersistentProperties(row, "")->Item("id")->Value().AsLong();
  }
  void ExpectThatTheNextReadWorks() {
    scope_.Messages().Clear();
    design_->Source->SetSourceText(Rows());
    EXPECT_EQ(design_->Read()->Count(), 10);
    EXPECT_EQ(scope_.Messages().Item("15123"), nullptr);
  }

  ScopedApartment scope_;
  SqliteFile file_;
  OdbcClient client_;
  std::string table_ = OwnName("background");
  std::unique_ptr<OneAction> design_;
};

TEST_P(BackgroundOverDatabases, PagesAreThoseOfAResultOpenedAtOnce) {
  const auto agent = Loading(Rows());
  EXPECT_TRUE(agent->AsyncFlag());
  AwaitOpened(agent);
  const auto first = agent->Recordset();
  ASSERT_TRUE(first);
  EXPECT_FALSE(agent->AsyncFlag());
  const auto second = agent->GetRecordset(0, first, false);
  EXPECT_EQ(IdAt(first, 9), 10);
  EXPECT_EQ(IdAt(second, 0), 11);
  EXPECT_EQ(agent->RowCount(), 30);
}

TEST_P(BackgroundOverDatabases, TheRowCountIsMinusOneAndThereAreNoRowsWhileAStatementRuns) {
  const auto agent = Loading(GetParam().Endless);
  EXPECT_EQ(agent->RowCount(), -1);
  EXPECT_TRUE(agent->StillExecuting());
  EXPECT_FALSE(agent->GetRecordset(0, nullptr, false));
  EXPECT_FALSE(agent->Recordset());
  agent->Cancel();
  EXPECT_FALSE(agent->AsyncFlag());
  EXPECT_FALSE(agent->StillExecuting());
  ExpectThatTheNextReadWorks();
}

TEST_P(BackgroundOverDatabases, AnAgentThatEndsStopsItsStatement) {
  auto agent = Loading(GetParam().Endless);
  EXPECT_TRUE(agent->StillExecuting());
  agent = nullptr;
  ExpectThatTheNextReadWorks();
}

TEST_P(BackgroundOverDatabases, AFailedOpenIsRaisedWhenItsRowsAreAskedForAndTheNextReadWorks) {
  const auto agent = Loading("nonsense");
  AwaitOpened(agent);
  EXPECT_TRUE(agent->AsyncFlag());
  ExpectRaised(errRDO_SQL, [&] { agent->Recordset(); }, {.Text = "SQL: nonsense"});
  EXPECT_FALSE(agent->AsyncFlag());
  ExpectThatTheNextReadWorks();
}

INSTANTIATE_TEST_SUITE_P(, BackgroundOverDatabases, testing::ValuesIn(Places()),
                         [](const auto& test) { return test.param.Name; });

}  // namespace

}  // namespace velmoria::test
