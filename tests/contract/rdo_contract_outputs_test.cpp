// What procedures give back in their parameters: texts and bytes of any length, Nulls, and what comes behind rows.

#include <algorithm>
#include <array>

#include "tests/contract/rdo_contract.h"

namespace velmoria::test {
namespace {

/// How a server makes what the tests call; "{own}" is the test's own name.
struct Outputs {
  const char* Driver;
  const char* Long;    // a in, b out: the byte 171 a times, c out: "x" a times; Nulls for an a below 0
  const char* Twice;   // x in and out, bytes that come back twice
  const char* Rows;    // a in, rows "n" 1 and 2, b out: 10 a, and Null for an a below 0
  const char* Typed;   // a in, and Nulls for an a below 0: b smallint 7, c double 1.5, d timestamp, e numeric(9,2) 1.25
  const char* Return;  // returns "x" a times; empty where nothing but a number is returned
  const char* Drop;
  int Longest;
};

constexpr std::array kOutputs = {
    Outputs{"PostgreSQL",
            "CREATE FUNCTION public.{own}_out(a int, OUT b bytea, OUT c text) AS 'SELECT CASE WHEN a >= 0 THEN"
            " decode(repeat(''ab'', a), ''hex'') END, CASE WHEN a >= 0 THEN repeat(''x'', a) END' LANGUAGE sql",
            "CREATE FUNCTION public.{own}_out(INOUT x bytea) AS 'SELECT x || x' LANGUAGE sql", "",
            "CREATE FUNCTION public.{own}_out(a int, OUT b smallint, OUT c float8, OUT d timestamp, OUT e numeric(9,2))"
            " AS 'SELECT 7::smallint, 1.5::float8, timestamp ''2026-11-20 14:03:05'', 1.25 WHERE a >= 0' LANGUAGE sql",
            "CREATE FUNCTION public.{own}_out(a int) RETURNS text AS 'SELECT repeat(''x'', a)' LANGUAGE sql",
            "DROP FUNCTION IF EXISTS {own}_out", 3'000'000},
    Outputs{"MariaDB",
            "CREATE PROCEDURE {own}_out(IN a int, OUT b longblob, OUT c longtext) SET b = IF(a < 0, NULL,"
            " REPEAT(x'ab', a)), c = IF(a < 0, NULL, REPEAT('x', a))",
            "CREATE PROCEDURE {own}_out(INOUT x varbinary(100)) SET x = CONCAT(x, x)",
            "CREATE PROCEDURE {own}_out(IN a int, OUT b int) BEGIN SELECT 1 AS n UNION SELECT 2; SELECT 5 AS n, 6 AS m;"
            " SET b = IF(a < 0, NULL, 10 * a); END",
            "CREATE PROCEDURE {own}_out(IN a int, OUT b smallint, OUT c double, OUT d datetime, OUT e decimal(9,2))"
            " IF a >= 0 THEN SET b = 7, c = 1.5, d = '2026-11-20 14:03:05', e = 1.25; END IF",
            "", "DROP PROCEDURE IF EXISTS {own}_out", 3'000'000},
    Outputs{
        "FreeTDS",
        "CREATE PROCEDURE {own}_out @a int, @b varbinary(8000) OUTPUT, @c varchar(8000) OUTPUT AS"
        " IF @a >= 0 BEGIN SET @b = CAST(REPLICATE(CHAR(171), @a) AS varbinary(8000)) SET @c = REPLICATE('x', @a) END",
        "CREATE PROCEDURE {own}_out @x varbinary(100) OUTPUT AS SET @x = @x + @x",
        "CREATE PROCEDURE {own}_out @a int, @b int OUTPUT AS SELECT 1 AS n UNION ALL SELECT 2 SELECT 5 AS n, 6 AS m"
        " SET @b = CASE WHEN @a < 0 THEN NULL ELSE 10 * @a END",
        "CREATE PROCEDURE {own}_out @a int, @b smallint OUTPUT, @c float OUTPUT, @d datetime OUTPUT,"
        " @e numeric(9,2) OUTPUT AS IF @a >= 0 BEGIN SET @b = 7 SET @c = 1.5 SET @d = '2026-11-20 14:03:05'"
        " SET @e = 1.25 END",
        "", "IF OBJECT_ID('{own}_out') IS NOT NULL DROP PROCEDURE {own}_out", 8000},
};

class RdoOutputsContract : public RdoContract {
 protected:
  void SetUp() override {
    if (!Profile().WhyNoProcedures.empty()) GTEST_SKIP() << Profile().WhyNoProcedures;
    RdoContract::SetUp();
  }
  void TearDown() override {
    if (!connection) return;
    Run(Words().Drop);
    RdoContract::TearDown();
  }
  const Outputs& Words() const {
    return *std::ranges::find(kOutputs, Profile().Name, [](const Outputs& words) { return std::string(words.Driver); });
  }
  rdoQueryPtr Call(const char* procedure, const char* text) {
    Run(procedure);
    auto query = Query(text);
    for (const auto& parameter : query->rdoParameters())
      if (parameter->Name() != "a" && parameter->Name() != "x" && parameter->Direction() == rdParamInputOutput)
        parameter->SetDirection(rdParamOutput);
    return query;
  }
  static const Variant& ValueOf(const rdoQueryPtr& query, std::size_t place) {
    return query->rdoParameters()[place]->Value();
  }
  static void Execute(const rdoQueryPtr& query, const Variant& a) {
    query->rdoParameters()[0]->SetValue(a);
    query->Execute();
  }
};

TEST_P(RdoOutputsContract, BytesAndTextsAreWholeWhateverTheirLength) {
  const auto query = Call(Words().Long, "{ Call {own}_out (?, ?, ?) }");
  for (const int length : {1, 0, 255, 256, 7999, 8000, 65'536, Words().Longest}) {
    if (length > Words().Longest) continue;
    Execute(query, length);
    EXPECT_EQ(ValueOf(query, 1), Variant(std::vector<Byte>(static_cast<std::size_t>(length), Byte{171}))) << length;
    EXPECT_EQ(ValueOf(query, 2), Variant(std::string(static_cast<std::size_t>(length), 'x'))) << length;
  }
}

TEST_P(RdoOutputsContract, NullIsNullAndNothingIsNot) {
  const auto query = Call(Words().Long, "{ Call {own}_out (?, ?, ?) }");
  for (int time = 0; time < 2; ++time) {
    Execute(query, -1);
    EXPECT_TRUE(ValueOf(query, 1).IsNull());
    EXPECT_TRUE(ValueOf(query, 2).IsNull());
    Execute(query, 0);
    EXPECT_EQ(ValueOf(query, 1), Variant(std::vector<Byte>{}));
    EXPECT_EQ(ValueOf(query, 2), Variant(""));
  }
}

TEST_P(RdoOutputsContract, BytesGoInAndComeBackAsTheyAre) {
  const auto query = Call(Words().Twice, "{ Call {own}_out (?) }");
  query->rdoParameters()[0]->SetDirection(rdParamInputOutput);
  query->rdoParameters()[0]->SetValue(std::vector<Byte>{0, 39, 255, 92, 10});
  query->Execute();
  EXPECT_EQ(ValueOf(query, 0), Variant(std::vector<Byte>{0, 39, 255, 92, 10, 0, 39, 255, 92, 10}));
}

TEST_P(RdoOutputsContract, ValuesOfEveryKindAndTheirNullsComeBack) {
  const auto query = Call(Words().Typed, "{ Call {own}_out (?, ?, ?, ?, ?) }");
  for (const int a : {1, -1, 1}) {
    Execute(query, a);
    const std::array expected = {Variant(std::int16_t{7}), Variant(1.5), Variant(Date::From(2026, 11, 20, 14, 3, 5)),
                                 Variant(Decimal::Parse("1.25"))};
    for (std::size_t place = 0; place < expected.size(); ++place) {
      if (a < 0) {
        EXPECT_TRUE(ValueOf(query, place + 1).IsNull()) << place;
      } else {
        EXPECT_EQ(Compare(ValueOf(query, place + 1), expected[place]), 0) << place;
      }
    }
  }
}

TEST_P(RdoOutputsContract, OutputsComeBehindAllRows) {
  if (*Words().Rows == '\0') GTEST_SKIP() << "Does not apply: a function of PostgreSQL gives rows or outputs";
  const auto query = Call(Words().Rows, "{ Call {own}_out (?, ?) }");
  for (const int a : {4, -1, 5}) {
    Execute(query, a);
    EXPECT_EQ(ValueOf(query, 1), a < 0 ? Variant::Null() : Variant(10 * a));
  }
}

TEST_P(RdoOutputsContract, OutputsOfAResultAreTakenOnceItHasBeenRead) {
  if (*Words().Rows == '\0') GTEST_SKIP() << "Does not apply: a function of PostgreSQL gives rows or outputs";
  const auto query = Call(Words().Rows, "{ Call {own}_out (?, ?) }");
  int a = 1;
  for (const auto type : {rdOpenForwardOnly, rdOpenKeyset, rdOpenStatic}) {
    query->rdoParameters()[0]->SetValue(++a);
    const auto result = query->OpenResultset({.Type = type});
    EXPECT_EQ(result->GetRows(9).Rows(), 2U);
    EXPECT_TRUE(result->TakeOutputs());
    EXPECT_EQ(ValueOf(query, 1), Variant(10 * a));
    EXPECT_FALSE(result->TakeOutputs());
  }
}

TEST_P(RdoOutputsContract, ResultThatIsNothingButTheOutputsGivesThemToo) {
  const auto query = Call(Words().Long, "{ Call {own}_out (?, ?, ?) }");
  for (const auto type : {rdOpenForwardOnly, rdOpenStatic}) {
    for (const int length : {-1, 0, 300}) {
      query->rdoParameters()[0]->SetValue(length);
      const auto result = query->OpenResultset({.Type = type});
      result->GetRows(9);
      EXPECT_TRUE(result->TakeOutputs());
      EXPECT_EQ(ValueOf(query, 2),
                length < 0 ? Variant::Null() : Variant(std::string(static_cast<std::size_t>(length), 'x')));
      EXPECT_EQ(ValueOf(query, 1).IsNull(), length < 0);
      EXPECT_EQ(ValueOf(query, 1).Bytes().size(), length < 0 ? 0U : static_cast<std::size_t>(length));
    }
  }
}

TEST_P(RdoOutputsContract, ReturnedTextIsWholeOrRefused) {
  if (*Words().Return == '\0') GTEST_SKIP() << "Does not apply: the server returns numbers";
  const auto query = Call(Words().Return, "{ ? = Call {own}_out (?) }");
  for (const int length : {0, 70'000, 3'000'000}) {
    query->rdoParameters()[1]->SetValue(length);
    query->Execute();
    EXPECT_EQ(ValueOf(query, 0), Variant(std::string(static_cast<std::size_t>(length), 'x')));
  }
  query->rdoParameters()[1]->SetValue(17'000'000);
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::Overflow), "'RETURN_VALUE' is too long",
                   [&] { query->Execute(); });
}

TEST_P(RdoOutputsContract, DateThatTheDriverMisreadsIsRefused) {
  if (Profile().Name != "PostgreSQL") GTEST_SKIP() << "Does not apply: the server has no such date";
  const auto query = Call(
      "CREATE FUNCTION public.{own}_out(OUT d timestamp) AS 'SELECT timestamp ''infinity'''"
      " LANGUAGE sql",
      "{ Call {own}_out (?) }");
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::InvalidArgument), "'d'", [&] { query->Execute(); });
}

INSTANTIATE_TEST_SUITE_P(, RdoOutputsContract, testing::ValuesIn(RdoProfiles()),
                         [](const auto& profile) { return profile.param.Name; });

}  // namespace
}  // namespace velmoria::test
