#include "velmoria/platform/odbc/parameters.h"

#include <cstring>

#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

class ParametersTest : public RdoTest {
 protected:
  FakeOdbc::Parameter Sent(const Variant& value, rdoNumber type = 0) {
    const auto query = Open()->CreateQuery("", "UPDATE t SET a = ?");
    query->rdoParameters()[0]->SetValue(value);
    query->rdoParameters()[0]->SetType(type);
    query->Execute();
    return odbc->Parameters.at(0);
  }
};

template <class T>
T As(const FakeOdbc::Parameter& parameter) {
  T value{};
  std::memcpy(&value, parameter.Bytes.data(), std::min(sizeof value, parameter.Bytes.size()));
  return value;
}

TEST_F(ParametersTest, ValueWithoutATypeIsSentAsItsOwn) {
  struct Case {
    Variant Value;
    int CType;
    int Type;
  };
  const std::vector<Case> cases = {
      {std::int16_t{5}, SQL_C_SSHORT, SQL_SMALLINT},
      {5, SQL_C_SLONG, SQL_INTEGER},
      {1.5F, SQL_C_FLOAT, SQL_REAL},
      {1.5, SQL_C_DOUBLE, SQL_DOUBLE},
      {Byte{5}, SQL_C_UTINYINT, SQL_TINYINT},
      {true, SQL_C_BIT, SQL_BIT},
      {Currency::Parse("1.5"), SQL_C_CHAR, SQL_DECIMAL},
      {Decimal::Parse("1.50"), SQL_C_CHAR, SQL_DECIMAL},
      {"text", SQL_C_CHAR, SQL_VARCHAR},
      {std::string(9000, 'x'), SQL_C_CHAR, SQL_LONGVARCHAR},
      {Date::From(2020, 1, 2), SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP},
      {std::vector<Byte>{1, 2}, SQL_C_BINARY, SQL_LONGVARBINARY},
  };
  for (const auto& expected : cases) {
    const auto sent = Sent(expected.Value);
    EXPECT_EQ(sent.CType, expected.CType) << expected.Value.TypeName();
    EXPECT_EQ(sent.Type, expected.Type) << expected.Value.TypeName();
    EXPECT_FALSE(sent.IsNull);
  }
}

TEST_F(ParametersTest, TypeThatIsSetWins) {
  EXPECT_EQ(Sent("12", 4).Type, SQL_INTEGER);
  EXPECT_EQ(Sent(std::int16_t{5}, -5).Type, SQL_BIGINT);
  EXPECT_EQ(Sent(Decimal::Parse("1.5"), 2).Type, SQL_NUMERIC);
}

TEST_F(ParametersTest, EmptyMissingAndNullAreSentAsNull) {
  for (const auto& value : {Variant(), Variant::Missing(), Variant::Null()}) {
    EXPECT_TRUE(Sent(value).IsNull);
    EXPECT_TRUE(Sent(value, 11).IsNull);
  }
  EXPECT_EQ(Sent(Variant::Null(), 11).Type, SQL_TYPE_TIMESTAMP);
}

TEST_F(ParametersTest, TextAndBytesAreReadWhereTheyLie) {
  const Variant text = std::string(100'000, 'x');
  const Variant bytes = std::vector<Byte>(100'000, Byte{7});
  EXPECT_EQ(Sent(text).Place, text.TextView().data());
  EXPECT_EQ(Sent(bytes).Place, bytes.Bytes().data());
}

TEST_F(ParametersTest, EmptyBytesAreNoNull) {
  const auto sent = Sent(std::vector<Byte>{});
  EXPECT_FALSE(sent.IsNull);
  EXPECT_NE(sent.Place, nullptr);
  EXPECT_EQ(sent.CType, SQL_C_BINARY);
}

TEST_F(ParametersTest, TextAndBytesAreSentWhole) {
  EXPECT_EQ(Sent("O'Neil \xC3\xA9?").Bytes, "O'Neil \xC3\xA9?");
  EXPECT_EQ(Sent("").Bytes, "");
  EXPECT_FALSE(Sent("").IsNull);
  EXPECT_EQ(Sent(std::vector<Byte>{0, 255}).Bytes, std::string("\0\xFF", 2));
  EXPECT_EQ(Sent(Decimal::Parse("-1.50")).Bytes, "-1.50");
}

TEST_F(ParametersTest, DateTypeSendsADateOnlyWithoutATimeOfDay) {
  EXPECT_EQ(Sent(Date::From(2020, 1, 2), 9).Type, SQL_TYPE_DATE);
  EXPECT_EQ(Sent(Date::From(2020, 1, 2, 3), 9).Type, SQL_TYPE_TIMESTAMP);
  const auto stamp = As<SQL_TIMESTAMP_STRUCT>(Sent(Date::From(2020, 1, 2, 3, 4, 5), 9));
  EXPECT_EQ(stamp.year, 2020);
  EXPECT_EQ(stamp.second, 5);
}

TEST_F(ParametersTest, TimeTypeSendsATimeOnlyOnDayZero) {
  EXPECT_EQ(Sent(Date::From(1899, 12, 30, 3, 4, 5), 10).Type, SQL_TYPE_TIME);
  EXPECT_EQ(Sent(Date::From(2020, 1, 2, 3, 4, 5), 10).Type, SQL_TYPE_TIMESTAMP);
}

TEST_F(ParametersTest, ObjectOrArrayOfValuesRaises13) {
  const auto mismatch = static_cast<std::int32_t>(RuntimeFailure::TypeMismatch);
  ExpectRdoFailure(mismatch, "", [&] { Sent(Variant::ArrayOfValues({1, 2})); });
  ExpectRdoFailure(mismatch, "", [&] { Sent(Variant(engine)); });
}

}  // namespace
}  // namespace velmoria::test
