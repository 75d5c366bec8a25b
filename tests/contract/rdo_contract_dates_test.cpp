// Dates over the real drivers: the right one, or a failure with a number; never another one.

#include <algorithm>
#include <ctime>
#include <optional>

#include <sql.h>
#include <sqlext.h>

#include "tests/contract/rdo_contract.h"
#include "tests/support/expect_raised.h"
#include "velmoria/platform/odbc/date_values.h"
#include "velmoria/platform/posix/local_time.h"

namespace velmoria::test {
namespace {

/// A value of a column, and what it is read as: "Null", or a text to the millisecond.
struct DateCase {
  const char* Type;
  const char* Literal;
  const char* Read;
};

/// Values of a column that are no Date.
struct NoDates {
  const char* Type;
  std::vector<const char*> Literals;
};

/// What differs between the drivers where dates are read.
struct DateProfile {
  const char* Driver;
  std::vector<const char*> Begin{};
  const char* Timestamp = "timestamp";  // types of columns that hold milliseconds
  const char* Time = "time";            // none: there is no such type
  const char* Today = "'{today}'";
  const char* TodaysMidnight = "'{today} 00:00:00'";
  std::vector<DateCase> Read;
  std::vector<NoDates> Refused{};
  int Step = 1;                           // of milliseconds, that a timestamp keeps
  std::vector<const char*> OtherForms{};  // what has the server write dates in another form
  /// "{own}_add" that moves its first on by a day, and gives in its second what no Date can be, if there is such.
  const char* MakeOutputs = nullptr;
  bool GivesOdd = false;
};

constexpr const char* kRefused = "(refused)";
constexpr const char* kNull = "Null";

const DateProfile kProfiles[] = {
    {.Driver = "SQLite",
     .Today = "date('now', 'localtime')",
     .TodaysMidnight = "date('now', 'localtime')",
     .Read = {{"timestamp", "'2026-11-20T14:03:05.250Z'", "2026-11-20 14:03:05.250"},
              {"timestamp", "'2026-11-20 14:03:05+02:00'", "2026-11-20 14:03:05.000"},
              {"timestamp", "'2026-11-20'", "2026-11-20 00:00:00.000"},
              {"timestamp", "'2026-11-20 14:03'", "2026-11-20 14:03:00.000"},
              {"timestamp", "'11/20/26 2:03:05 PM'", "2026-11-20 14:03:05.000"},
              {"timestamp", "'14:03:05'", "1899-12-30 14:03:05.000"},
              {"timestamp", "''", kNull},
              {"time", "'14:03'", "1899-12-30 14:03:00.000"},
              {"time", "'2026-11-20'", "2026-11-20 00:00:00.000"}},
     .Refused = {{"timestamp",
                  {"'soon'", "'Nov 20 2026 2:03:05PM'", "'20261120 14:03:05'", "'2026-11-20 14:03:05 BC'",
                   "'99999-12-31'", "1700000000", "x'01'"}},
                 {"date", {"'2026-02-30'", "'0000-00-00'", "'20/11/2026'"}},
                 {"time", {"'24:00:00'"}}}},
    {.Driver = "PostgreSQL",
     .Begin = {"SET TimeZone = 'Europe/Berlin'"},
     .Read = {{"timestamp", "'9999-12-31 23:59:59'", "9999-12-31 23:59:59.000"},
              {"timestamp", "'2026-11-20 14:03:05.123456'", "2026-11-20 14:03:05.123"},
              {"timestamptz", "'2026-07-20 14:03:05.25+00'", "2026-07-20 16:03:05.250"}},
     .Refused = {{"timestamp",
                  {"'infinity'", "'-infinity'", "'12345-01-02 03:04:05'", "'0044-03-15 BC'", "'1044-03-15 BC'",
                   "'0099-12-31 23:59:59'"}},
                 {"timestamptz", {"'infinity'", "'12345-01-02 03:04:05+00'"}},
                 {"date", {"'infinity'", "'-infinity'", "'12345-01-02'", "'5874897-12-31'", "'0044-03-15 BC'"}},
                 {"time", {"'24:00:00'"}}},
     .OtherForms = {"SET datestyle = 'SQL, DMY'", "SET datestyle = 'SQL, MDY'", "SET datestyle = 'German'",
                    "SET datestyle = 'Postgres, MDY'", "SET datestyle = 'Postgres, DMY'"},
     .MakeOutputs = "CREATE FUNCTION public.{own}_add(INOUT a timestamp, INOUT b date) AS"
                    " 'SELECT a + interval ''1 day'', CASE WHEN b IS NULL THEN date ''infinity'' ELSE b END'"
                    " LANGUAGE sql",
     .GivesOdd = true},
    {.Driver = "MariaDB",
     .Begin = {"SET SESSION sql_mode = 'ALLOW_INVALID_DATES'"},
     .Timestamp = "datetime(3)",
     .Time = "time(3)",
     .Read = {{"timestamp NULL", "NULL", kNull},
              {"timestamp NULL", "'2026-11-20 14:03:05'", "2026-11-20 14:03:05.000"},
              {"datetime(6)", "'2026-11-20 14:03:05.123456'", "2026-11-20 14:03:05.123"}},
     .Refused = {{"datetime", {"'0000-00-00'", "'2026-00-00'", "'2026-02-30'", "'0099-12-31'"}},
                 {"datetime(6)", {"'0000-00-00'"}},
                 {"timestamp NULL", {"'0000-00-00'"}},
                 {"date", {"'0000-00-00'", "'2026-00-00'"}},
                 {"time", {"'-01:02:03'", "'838:59:59'", "'24:00:00'"}}},
     .MakeOutputs = "CREATE PROCEDURE {own}_add(INOUT a datetime(3), INOUT b date) BEGIN"
                    " SET a = a + INTERVAL 1 DAY; SET b = IFNULL(b, '0000-00-00'); END",
     .GivesOdd = true},
    {.Driver = "FreeTDS",
     .Timestamp = "datetime",
     .Time = nullptr,
     .Read = {{"datetime", "'1753-01-01'", "1753-01-01 00:00:00.000"},
              {"datetime", "'9999-12-31 23:59:59'", "9999-12-31 23:59:59.000"}},
     .Step = 10,
     .MakeOutputs = "CREATE PROCEDURE {own}_add @a datetime OUTPUT, @b datetime OUTPUT AS SET @a = @a + 1"},
};

class DatesContract : public RdoContract {
 protected:
  void SetUp() override {
    RdoContract::SetUp();
    for (const auto* const text : Dates().Begin) Run(text);
  }
  const DateProfile& Dates() const {
    return *std::ranges::find_if(kProfiles, [&](const auto& profile) { return Profile().Name == profile.Driver; });
  }
  void MakeTable(const std::string& type, const std::vector<std::string>& literals) {
    Run("CREATE TABLE {t}dates ( k int, d " + type + " )");
    int key = 0;
    for (const auto& literal : literals)
      Run("INSERT INTO {t}dates VALUES ( " + std::to_string(++key) + ", " + literal + " )");
  }
  /// The rows in each kind of cursor; what is refused is refused in every one of them.
  std::vector<std::optional<RowBlock>> ReadInEachCursor() {
    std::vector<std::optional<RowBlock>> read;
    for (const rdoNumber type : {rdOpenForwardOnly, rdOpenKeyset, rdOpenStatic}) {
      for (const bool repeatable : {false, true}) {
        const auto query = Query("SELECT d FROM {t}dates ORDER BY k");
        auto& rows = read.emplace_back();
        const auto error =
            Thrown([&] { rows = query->OpenResultset({.Type = type, .Repeatable = repeatable})->GetRows(5000); });
        if (!error) continue;
        EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::InvalidArgument)) << error->what();
        EXPECT_NE(error->Description().find("in the column 'd'"), std::string::npos) << error->what();
      }
    }
    return read;
  }
  /// Expects no cursor to read the table that is made of a value that is no Date.
  template <class Make>
  void ExpectEachRefused(Make make) {
    if (Dates().Refused.empty()) GTEST_SKIP() << "Does not apply: the server has no dates that a Date cannot hold";
    for (const auto& [type, literals] : Dates().Refused) {
      for (const auto* const literal : literals) {
        SCOPED_TRACE(std::string(type) + " " + literal);
        make(type, literal);
        for (const auto& rows : ReadInEachCursor()) EXPECT_FALSE(rows);
        Run("DROP TABLE {t}dates");
      }
    }
  }
  static std::string TextOf(const Variant& value) {
    return value.IsNull() ? kNull : odbc::DateText(value.AsDate(), SQL_TYPE_TIMESTAMP);
  }
  static std::string Today() { return Date::From(LocalParts(std::time(nullptr))).AsText().substr(0, 10); }
};

TEST_P(DatesContract, EveryDateIsReadAsItself) {
  for (const auto& [type, literal, read] : Dates().Read) {
    SCOPED_TRACE(std::string(type) + " " + literal);
    MakeTable(type, {literal});
    for (const auto& rows : ReadInEachCursor()) EXPECT_EQ(rows ? TextOf(rows->Value(0, 0)) : kRefused, read);
    Run("DROP TABLE {t}dates");
  }
}

TEST_P(DatesContract, WhatIsNoDateIsRefused) {
  ExpectEachRefused([this](const std::string& type, const std::string& literal) { MakeTable(type, {literal}); });
}

TEST_P(DatesContract, WhatIsNoDateIsRefusedBehindManyDates) {
  ExpectEachRefused([this](const std::string& type, const std::string& literal) {
    MakeTable(type, {});
    Run("INSERT INTO {t}dates (k) SELECT n FROM ( " + Numbers(1500) + " ) AS t");
    Run("INSERT INTO {t}dates VALUES ( 1501, " + literal + " )");
  });
}

TEST_P(DatesContract, OrdinaryTimestampsAreReadToTheMillisecond) {
  std::vector<std::string> literals;
  for (double days = 0.25; literals.size() < 300; days += 173.0 + 1.0 / 7) {
    auto parts = Date{days}.Parts();
    parts.Millisecond -= parts.Millisecond % Dates().Step;
    literals.push_back("'" + odbc::DateText(Date::From(parts), SQL_TYPE_TIMESTAMP) + "'");
  }
  literals.emplace_back("NULL");
  MakeTable(Dates().Timestamp, literals);
  for (const auto& rows : ReadInEachCursor()) {
    ASSERT_TRUE(rows && rows->Rows() == literals.size());
    for (std::size_t row = 0; row < 300; ++row) EXPECT_EQ("'" + TextOf(rows->Value(0, row)) + "'", literals[row]);
    EXPECT_TRUE(rows->Value(0, 300).IsNull());
  }
}

TEST_P(DatesContract, OrdinaryTimesAreReadToTheMillisecond) {
  if (Dates().Time == nullptr) GTEST_SKIP() << "Does not apply: a T-SQL server of this age has no times";
  std::vector<std::string> literals;
  for (double day = 0; day < 1; day += 0.0123456) {
    literals.push_back("'" + odbc::DateText(Date{day}, SQL_TYPE_TIME) + "'");
  }
  MakeTable(Dates().Time, literals);
  for (const auto& rows : ReadInEachCursor()) {
    ASSERT_TRUE(rows && rows->Rows() == literals.size());
    for (std::size_t row = 0; row < literals.size(); ++row) {
      EXPECT_EQ("'" + odbc::DateText(rows->Value(0, row).AsDate(), SQL_TYPE_TIME) + "'", literals[row]);
    }
  }
}

TEST_P(DatesContract, TodayIsReadAsToday) {
  const std::string today = Today();
  for (const auto& [type, literal] : {std::pair{Profile().Name == "FreeTDS" ? "datetime" : "date", Dates().Today},
                                      std::pair{Dates().Timestamp, Dates().TodaysMidnight}}) {
    MakeTable(type, std::vector<std::string>(100, Replaced(literal, "{today}", today)));
    for (const auto& rows : ReadInEachCursor()) {
      ASSERT_TRUE(rows && rows->Rows() == 100);
      for (std::size_t row = 0; row < 100; ++row) EXPECT_EQ(rows->Value(0, row).AsText(), today);
    }
    Run("DROP TABLE {t}dates");
  }
}

TEST_P(DatesContract, DatesThatTheServerWritesInAnotherFormAreRefused) {
  if (Dates().OtherForms.empty()) GTEST_SKIP() << "Does not apply: the server writes dates in one form";
  for (const auto* const form : Dates().OtherForms) {
    for (const std::string type : {"timestamp", "timestamptz", "date"}) {
      SCOPED_TRACE(form + (" " + type));
      MakeTable(type, {"'2026-11-10 14:03:05'"});
      Run(form);
      for (const auto& rows : ReadInEachCursor()) EXPECT_FALSE(rows);
      Run("SET datestyle = 'ISO, MDY'");
      Run("DROP TABLE {t}dates");
    }
  }
}

TEST_P(DatesContract, OutputsOfAProcedureAreReadToTheMillisecondOrRefused) {
  if (Dates().MakeOutputs == nullptr) GTEST_SKIP() << "Does not apply: SQLite has no procedures";
  Run(Dates().MakeOutputs);
  const auto query = Query("{ Call {own}_add (?, ?) }");
  query->rdoParameters()[0]->SetValue(Date::From({2026, 11, 30, 14, 3, 5, 250}));
  query->rdoParameters()[1]->SetValue(Date::From(2026, 11, 20));
  query->Execute();
  EXPECT_EQ(TextOf(query->rdoParameters()[0]->Value()), "2026-12-01 14:03:05.250");
  EXPECT_EQ(TextOf(query->rdoParameters()[1]->Value()), "2026-11-20 00:00:00.000");
  if (!Dates().GivesOdd) return;
  query->rdoParameters()[1]->SetValue(Variant::Null());
  const auto error = Thrown([&] { query->Execute(); });
  ASSERT_TRUE(error) << TextOf(query->rdoParameters()[1]->Value());
  EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::InvalidArgument)) << error->what();
}

TEST_P(DatesContract, DriverThatLeavesOutTheEraHasADayBeforeChristReadAsTheOneOfTheSameYear) {
  if (Profile().Name != "PostgreSQL") GTEST_SKIP() << "Does not apply: the server has no days before Christ";
  MakeTable("date", {"'1044-03-15 BC'"});
  for (const auto& rows : ReadInEachCursor())
    EXPECT_EQ(rows ? TextOf(rows->Value(0, 0)) : kRefused, "1044-03-15 00:00:00.000");
}

INSTANTIATE_TEST_SUITE_P(, DatesContract, ::testing::ValuesIn(RdoProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
