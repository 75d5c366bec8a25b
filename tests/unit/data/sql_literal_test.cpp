#include <ostream>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "velmoria/core/enumerations.h"
#include "velmoria/data/sql_clauses_impl.h"

namespace velmoria::test {

namespace {

std::string Literal(const Variant& value, zDataTypes dataType, zEngines engine = engODBC) {
  std::string text;
  sql::AppendLiteral(text, value, dataType, engine);
  return text;
}

struct LiteralCase {
  const char* What;
  Variant Value;
  zDataTypes DataType;
  const char* Server;
  const char* Access;
};

void PrintTo(const LiteralCase& row, std::ostream* stream) { *stream << row.What; }

class LiteralTest : public testing::TestWithParam<LiteralCase> {};

TEST_P(LiteralTest, FollowsTypeAndEngine) {
  const auto& row = GetParam();
  for (const auto engine : {engODBC, engSQLServer, engSybase, engOracle, engInformix, engRMS})
    EXPECT_EQ(Literal(row.Value, row.DataType, engine), row.Server);
  EXPECT_EQ(Literal(row.Value, row.DataType, engAccess), row.Access);
}

const auto kNoon = Date::From(2026, 11, 20, 14, 3, 5);

INSTANTIATE_TEST_SUITE_P(
    , LiteralTest,
    testing::Values(LiteralCase{"Null", Variant::Null(), dtString, "NULL", "NULL"},
                    LiteralCase{"NullOfNoType", Variant::Null(), dtVariant, "NULL", "NULL"},
                    LiteralCase{"Text", "Tea", dtString, "'Tea'", "'Tea'"},
                    LiteralCase{"TextWithQuote", "O'Brien", dtString, "'O''Brien'", "'O''Brien'"},
                    LiteralCase{"TextOfQuotes", "''", dtString, "''''''", "''''''"},
                    LiteralCase{"EmptyText", "", dtString, "''", "''"},
                    LiteralCase{"TextBeyondAscii", "Grün", dtString, "'Grün'", "'Grün'"},
                    LiteralCase{"Long", std::int32_t{-7}, dtLongInteger, "-7", "-7"},
                    LiteralCase{"Integer", std::int16_t{12}, dtInteger, "12", "12"},
                    LiteralCase{"Currency", Currency{123450}, dtCurrency, "12.345", "12.345"},
                    LiteralCase{"Single", 0.5F, dtSingle, "0.5", "0.5"},
                    LiteralCase{"Double", 0.1, dtDouble, "0.1", "0.1"},
                    LiteralCase{"Decimal", Decimal::Parse("1.50"), dtDecimal, "1.50", "1.50"},
                    LiteralCase{"Byte", Byte{200}, dtByte, "200", "200"},
                    LiteralCase{"Date", kNoon, dtDate, "'2026-11-20 14:03:05'", "#2026-11-20 14:03:05#"},
                    LiteralCase{"DateAlone", Date::From(2026, 11, 20), dtDate, "'2026-11-20'", "#2026-11-20#"},
                    LiteralCase{"True", true, dtBoolean, "1", "True"},
                    LiteralCase{"False", false, dtBoolean, "0", "False"},
                    LiteralCase{"VariantText", "it's", dtVariant, "'it''s'", "'it''s'"},
                    LiteralCase{"VariantDate", kNoon, dtVariant, "'2026-11-20 14:03:05'", "#2026-11-20 14:03:05#"},
                    LiteralCase{"VariantBoolean", true, dtVariant, "1", "True"},
                    LiteralCase{"VariantDouble", 2.5, dtVariant, "2.5", "2.5"},
                    LiteralCase{"VariantInteger", std::int16_t{-12}, dtVariant, "-12", "-12"},
                    LiteralCase{"VariantLong", std::int32_t{70000}, dtVariant, "70000", "70000"},
                    LiteralCase{"VariantSingle", 0.5F, dtVariant, "0.5", "0.5"},
                    LiteralCase{"VariantCurrency", Currency{-123450}, dtVariant, "-12.345", "-12.345"},
                    LiteralCase{"VariantDecimal", Decimal::Parse("1.50"), dtVariant, "1.50", "1.50"},
                    LiteralCase{"VariantByte", Byte{200}, dtVariant, "200", "200"},
                    LiteralCase{"ArrayOfNoValues", Variant::ArrayOfValues({}), dtByteArray, "''", "''"}),
    [](const auto& test) { return test.param.What; });

TEST(SqlLiteralTest, BytesAreOneCharacterEachAndQuotesAreNotDoubled) {
  const std::vector<Byte> bytes{'a', '\'', 0xE9, 0x80};
  EXPECT_EQ(Literal(bytes, dtByteArray), "'a'\u00E9\u20AC'");
}

TEST(SqlLiteralTest, LongTextIsNotDoubledEither) { EXPECT_EQ(Literal("it's", dtByteArray), "'it's'"); }

TEST(SqlLiteralTest, ALineThatEndsInABackslashIsWrittenInTwoLiteralsForServersThatWouldJoinIt) {
  struct {
    const char* Text;
    const char* Literal;
  } const cases[] = {
      {"abc\\\ndef", "'abc\\' + '\ndef'"},
      {"abc\\\r\ndef", "'abc\\' + '\r\ndef'"},
      {"\\\n\\\\\n", "'\\' + '\n\\\\' + '\n'"},
      {"it's\\\n'", "'it''s\\' + '\n'''"},
      {"abc\\", "'abc\\'"},
      {"\\ \n\\\r\\d\n", "'\\ \n\\\r\\d\n'"},
  };
  for (const auto& row : cases) {
    for (const auto engine : {engSQLServer, engSybase}) EXPECT_EQ(Literal(row.Text, dtString, engine), row.Literal);
  }
  for (const auto engine : {engODBC, engOracle, engAccess})
    EXPECT_EQ(Literal("abc\\\ndef", dtString, engine), "'abc\\\ndef'");
}

TEST(SqlLiteralTest, LongValuesAndBytesAreWrittenSoToo) {
  const std::vector<Byte> bytes{'a', '\\', '\n'};
  for (const auto engine : {engSQLServer, engSybase}) {
    EXPECT_EQ(Literal(bytes, dtByteArray, engine), "'a\\' + '\n'");
    EXPECT_EQ(Literal("a\\\n", dtByteArray, engine), "'a\\' + '\n'");
    EXPECT_EQ(Literal(Variant::ArrayOfValues({97, 92, 10}), dtByteArray, engine), "'a\\' + '\n'");
  }
}

TEST(SqlLiteralTest, WhatIsTooLongToBeJoinedOtherwiseIsJoinedWithoutLimit) {
  const std::string half(4000, 'x');
  const auto joined = "'" + half + "\\' + '\n" + half + "'";
  EXPECT_EQ(Literal(half + "\\\n" + half, dtString, engSQLServer), "CAST('' AS varchar(max)) + " + joined);
  EXPECT_EQ(Literal(half + "\\\n" + half, dtString, engSybase), joined);
}

TEST(SqlLiteralTest, AVariantArrayIsWrittenElementByElement) {
  EXPECT_EQ(Literal(Variant::ArrayOfValues({72, 105}), dtByteArray), "'Hi'");
}

TEST(SqlLiteralTest, AVariantArrayOfOneElementIsWrittenAsEmpty) {
  EXPECT_EQ(Literal(Variant::ArrayOfValues({72}), dtByteArray), "''");
}

TEST(SqlLiteralTest, AnElementThatIsNoCharacterFails) {
  EXPECT_TRUE(Thrown([] { Literal(Variant::ArrayOfValues({72, 300}), dtByteArray); }));
}

TEST(SqlLiteralTest, AValueWithoutATypeIsAPlainFailure) {
  for (const auto& value : {Variant(), Variant(std::vector<Byte>{1, 2})}) {
    const auto error = Thrown([&] { Literal(value, dtVariant); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::TypeMismatch));
  }
}

TEST(SqlLiteralTest, ATypeThatIsNoneIsAPlainFailure) {
  for (const int code : {-1, 12, 99}) {
    const auto error = Thrown([&] { Literal("text", static_cast<zDataTypes>(code)); });
    ASSERT_TRUE(error) << code;
    EXPECT_EQ(error->Number(), static_cast<std::int32_t>(RuntimeFailure::TypeMismatch)) << code;
  }
}

}  // namespace

}  // namespace velmoria::test
