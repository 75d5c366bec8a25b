#include "velmoria/platform/odbc/long_value.h"

#include <gtest/gtest.h>

#include "tests/support/rdo_builders.h"

namespace velmoria::test {
namespace {

constexpr odbc::Small kLongText = -1;
constexpr odbc::Small kLongBytes = -4;

class LongValueTest : public RdoTest {
 protected:
  rdoColumnPtr Column(odbc::Small type, const std::optional<std::string>& value) {
    odbc->Columns = {{"Story", type}};
    odbc->Rows = {{value}};
    result = OpenRows();
    return result->rdoColumns().At("Story");
  }
  /// A text that is nowhere like itself.
  static std::string Story(std::size_t length) {
    std::string story(length, ' ');
    for (std::size_t place = 0; place < length; ++place) story[place] = static_cast<char>('a' + place * place % 23);
    return story;
  }
  static Variant Bytes(const std::string& text) { return std::vector<Byte>(text.begin(), text.end()); }

  rdoResultsetPtr result;
};

TEST_F(LongValueTest, TextAndBytesAreByteArraysOfTheirLength) {
  for (const auto type : {kLongText, kLongBytes}) {
    for (const std::size_t length : {1U, 2U, 70'000U, 300'000U}) {
      const auto column = Column(type, Story(length));
      EXPECT_EQ(column->ColumnSize(), static_cast<rdoNumber>(length));
      EXPECT_EQ(column->GetChunk(column->ColumnSize()), Bytes(Story(length)));
    }
  }
}

TEST_F(LongValueTest, WholeValueIsHandedOutWhereTheDriverPutIt) {
  for (const auto type : {kLongText, kLongBytes}) {
    const auto column = Column(type, Story(300'000));
    const auto value = column->GetChunk(300'000);
    EXPECT_EQ(value.Bytes().data(), odbc->LongPlace);
    EXPECT_EQ(odbc->CallsOf["GetData"], 2) << "one for the length";
    odbc->CallsOf.clear();
  }
}

TEST_F(LongValueTest, ValueHandedOutIsTheHostsToChange) {
  const auto column = Column(kLongBytes, "abc");
  auto value = column->GetChunk(3);
  value.SetElement(0, Byte{'x'});
  EXPECT_EQ(value, Bytes("xbc"));
  result->MoveFirst();
  EXPECT_EQ(column->ColumnSize(), 3);
}

TEST_F(LongValueTest, ValueOfALengthThatTheDriverCannotTellIsReadInPieces) {
  odbc->TellsLengths = odbc->TellsTextLengths = false;
  for (const auto type : {kLongText, kLongBytes}) {
    const auto column = Column(type, Story(3'000'000));
    EXPECT_EQ(column->GetChunk(3'000'000), Bytes(Story(3'000'000)));
  }
}

TEST_F(LongValueTest, LengthThatTheDriverCannotTellOfATextIsThatOfItsBytes) {
  odbc->TellsTextLengths = false;
  const auto column = Column(kLongText, Story(300'000));
  EXPECT_EQ(column->GetChunk(300'000), Bytes(Story(300'000)));
  EXPECT_EQ(odbc->CallsOf["GetData"], 3);
}

TEST_F(LongValueTest, NullIsNullAndNothingIsEmpty) {
  for (const auto type : {kLongText, kLongBytes}) {
    EXPECT_TRUE(Column(type, std::nullopt)->GetChunk(5).IsNull());
    EXPECT_EQ(Column(type, std::nullopt)->ColumnSize(), -1);
    EXPECT_TRUE(Column(type, "")->GetChunk(5).IsEmpty());
    EXPECT_EQ(Column(type, "")->ColumnSize(), 0);
  }
}

TEST_F(LongValueTest, ChunksFollowOneAnotherUntilTheEnd) {
  const auto column = Column(kLongText, "abcdefg");
  EXPECT_EQ(column->GetChunk(3), Bytes("abc"));
  EXPECT_EQ(column->GetChunk(3), Bytes("def"));
  EXPECT_EQ(column->GetChunk(3), Bytes("g"));
  EXPECT_TRUE(column->GetChunk(3).IsEmpty());
  EXPECT_EQ(column->Whole(), Bytes("abcdefg"));
}

TEST_F(LongValueTest, FailureOfAnyPieceIsRaised) {
  for (const int piece : {1, 2}) {
    const auto column = Column(kLongText, Story(100));
    odbc->FailName = "GetData";
    odbc->FailNameFrom = piece;
    ExpectRdoFailure(7, "fake failure", [&] { column->ColumnSize(); });
    odbc->FailName.clear();
    odbc->CallsOf.clear();
    EXPECT_EQ(column->ColumnSize(), 100);
    odbc->CallsOf.clear();
  }
}

}  // namespace
}  // namespace velmoria::test
