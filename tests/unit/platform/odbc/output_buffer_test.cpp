#include "velmoria/platform/odbc/output_buffer.h"

#include <gtest/gtest.h>
#include <sql.h>
#include <sqlext.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

class OutputBufferTest : public RdoTest {
 protected:
  rdoQueryPtr Call(rdoNumber type, rdoNumber size = 0, rdoNumber direction = rdParamOutput) {
    auto query = Open()->CreateQuery("", "{ call p (?) }");
    query->rdoParameters()[0]->SetDirection(direction);
    query->rdoParameters()[0]->SetType(type);
    query->rdoParameters()[0]->SetSize(size, 0);
    return query;
  }
  Variant Result(const rdoQueryPtr& query) {
    query->Execute();
    return query->rdoParameters()[0]->Value();
  }
  static Variant Bytes(const std::string& text) { return std::vector<Byte>(text.begin(), text.end()); }
};

constexpr rdoNumber kOfBytes[] = {rdTypeBINARY, rdTypeVARBINARY, rdTypeLONGVARBINARY};
constexpr rdoNumber kOfTexts[] = {rdTypeCHAR, rdTypeVARCHAR, rdTypeLONGVARCHAR};
constexpr auto kOverflow = static_cast<std::int32_t>(RuntimeFailure::Overflow);

TEST_F(OutputBufferTest, BytesComeBackWithTheirZeros) {
  odbc->Outputs = {std::string("\0\xFF\0", 3)};
  for (const auto type : kOfBytes) EXPECT_EQ(Result(Call(type)), Variant(std::vector<Byte>{0, 255, 0}));
}

TEST_F(OutputBufferTest, NothingIsEmptyAndNullIsNull) {
  for (const auto type : kOfBytes) {
    odbc->Outputs = {""};
    EXPECT_EQ(Result(Call(type)), Variant(std::vector<Byte>{}));
    odbc->Outputs = {std::nullopt};
    EXPECT_TRUE(Result(Call(type)).IsNull());
  }
}

TEST_F(OutputBufferTest, ValueOfTheLengthThatTheCatalogueAnnouncesFits) {
  odbc->Outputs = {std::string(300'000, 'x')};
  for (const auto type : kOfBytes) EXPECT_EQ(Result(Call(type, 300'000)), Bytes(std::string(300'000, 'x')));
  for (const auto type : kOfTexts) EXPECT_EQ(Result(Call(type, 75'000)), Variant(std::string(300'000, 'x')));
}

TEST_F(OutputBufferTest, LongerValueIsRefusedAndNeverCut) {
  odbc->Outputs = {std::string(20'000'010, 'x')};
  for (const auto type : kOfBytes)
    ExpectRdoFailure(kOverflow, "'Param1' is too long", [&] { Result(Call(type, 20'000'000)); });
  for (const auto type : kOfTexts)
    ExpectRdoFailure(kOverflow, "'Param1' is too long", [&] { Result(Call(type, 5'000'000)); });
}

TEST_F(OutputBufferTest, MegabytesFitWhereTheLengthIsNotKnown) {
  odbc->Outputs = {std::string(10'000'000, 'x')};
  EXPECT_EQ(Result(Call(rdTypeLONGVARBINARY)), Bytes(std::string(10'000'000, 'x')));
  EXPECT_EQ(Result(Call(rdTypeLONGVARCHAR)), Variant(std::string(10'000'000, 'x')));
}

TEST_F(OutputBufferTest, WhatIsGivenIsThereBeforeTheCall) {
  const auto query = Call(rdTypeVARBINARY, 10, rdParamInputOutput);
  odbc->Outputs = {"after"};
  query->rdoParameters()[0]->SetValue(Bytes("before"));
  EXPECT_EQ(Result(query), Bytes("after"));
  EXPECT_EQ(odbc->Parameters[0].Bytes, "before");
  EXPECT_EQ(odbc->Parameters[0].CType, SQL_C_BINARY);
  query->rdoParameters()[0]->SetValue(Variant::Null());
  Result(query);
  EXPECT_TRUE(odbc->Parameters[0].IsNull);
}

TEST_F(OutputBufferTest, WhatIsGivenMayBeLongerThanTheCatalogueSays) {
  const auto query = Call(rdTypeVARBINARY, 10, rdParamInputOutput);
  odbc->Outputs = {"after"};
  query->rdoParameters()[0]->SetValue(Bytes(std::string(300'000, 'x')));
  EXPECT_EQ(Result(query), Bytes("after"));
  EXPECT_EQ(odbc->Parameters[0].Bytes, std::string(300'000, 'x'));
}

TEST_F(OutputBufferTest, NothingButAByteArrayIsGivenForBytes) {
  const auto query = Call(rdTypeVARBINARY, 10, rdParamInputOutput);
  query->rdoParameters()[0]->SetValue("text");
  ExpectRdoFailure(static_cast<std::int32_t>(RuntimeFailure::TypeMismatch), "", [&] { Result(query); });
}

TEST_F(OutputBufferTest, BytesGivenWithoutATypeComeBackAsBytes) {
  const auto query = Call(0, 0, rdParamInputOutput);
  odbc->Outputs = {"after"};
  query->rdoParameters()[0]->SetValue(Bytes("before"));
  EXPECT_EQ(Result(query), Bytes("after"));
}

TEST_F(OutputBufferTest, LongTypeThatIsNoLongerThanAPlainOneIsSentAsThat) {
  Result(Call(rdTypeLONGVARBINARY, 8000));
  EXPECT_EQ(odbc->Parameters[0].Type, SQL_VARBINARY);
  Result(Call(rdTypeLONGVARCHAR, 8000));
  EXPECT_EQ(odbc->Parameters[0].Type, SQL_VARCHAR);
  Result(Call(rdTypeLONGVARCHAR, 8001));
  EXPECT_EQ(odbc->Parameters[0].Type, SQL_LONGVARCHAR);
}

}  // namespace
}  // namespace velmoria::test
