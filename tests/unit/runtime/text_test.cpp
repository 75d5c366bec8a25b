#include "velmoria/runtime/text.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "velmoria/runtime/utf8_impl.h"

namespace velmoria {
namespace {

using namespace std::string_view_literals;

TEST(TextTest, CharactersAreCodePointsAndStrayBytesCountAsOne) {
  const struct {
    std::string_view Text;
    std::size_t Count;
  } rows[] = {{"", 0},
              {"abc", 3},
              {"Größe", 5},
              {"Ελλάδα", 6},
              {"€", 1},
              {"😀x", 2},
              {"a\xFFz"sv, 3},
              {"\xC3"sv, 1},
              {"\xE2\x82"sv, 2},
              {"\xC0\x80"sv, 2},
              {"\xED\xA0\x80"sv, 3},
              {"\xF5\x80\x80\x80"sv, 4},
              {"\xC3("sv, 2},
              {"\xE2\x28\xA1"sv, 3},
              {"\xE2\x82("sv, 3},
              {"\xF0\x9F\x98("sv, 4},
              {"\xC1\xBF"sv, 2},
              {"\xE0\x80\x80"sv, 3},
              {"\xE0\x9F\xBF"sv, 3},
              {"\xF0\x8F\xBF\xBF"sv, 4},
              {"\xF4\x90\x80\x80"sv, 4},
              {"\xF4\x8F\xBF\xBF"sv, 1},
              {"\xEF\xBF\xBF"sv, 1},
              {"\x80"sv, 1},
              {"\xF0\x9F"sv, 2},
              {"a\0b"sv, 3}};
  for (const auto& row : rows) EXPECT_EQ(CharacterCount(row.Text), row.Count) << row.Text;
}

TEST(TextTest, FoldsLatinGreekAndCyrillic) {
  const struct {
    std::string_view Text;
    std::string_view Folded;
  } rows[] = {{"Order LINES 42", "order lines 42"},
              {"ÄÖÜ ÀÞ×", "äöü àþ×"},
              {"ŁÓDŹ ŻŸ", "łódź żÿ"},
              {"ΑΘΗΝΑ Ά Σς", "αθηνα ά σσ"},
              {"МОСКВА ЁЇ", "москва ёї"},
              {"ẞ", "ß"},
              {"ſ", "s"},
              {"東京 😀", "東京 😀"},
              {"A\xFF"sv, "a\xFF"sv}};
  for (const auto& row : rows) EXPECT_EQ(FoldCase(row.Text), row.Folded) << row.Text;
}

TEST(TextTest, EqualFoldedAndItsHashAgree) {
  const struct {
    std::string_view Left;
    std::string_view Right;
    bool Equal;
  } rows[] = {{"Name", "nAME", true},
              {"", "", true},
              {"Name", "Names", false},
              {"Names", "Name", false},
              {"STRASSE", "straße", false},
              {"Größe", "GRÖSSE", false},
              {"GRÖßE", "größe", true},
              {"ſet", "SET", true},
              {"ΟΔΟΣ", "οδος", true},
              {"ЖУК", "жук", true},
              {"É", "E", false},
              {"\xFF"sv, "ÿ", false},
              {"ẞ", "ß", true},
              {"aẞ", "Aßx", false},
              {"@[`{", "@[`{", true},
              {"@", "`", false},
              {"Z", "[", false},
              {"a[", "A{", false}};
  for (const auto& row : rows) {
    EXPECT_EQ(EqualFolded(row.Left, row.Right), row.Equal) << row.Left << " " << row.Right;
    EXPECT_EQ(HashFolded(row.Left) == HashFolded(row.Right), row.Equal) << row.Left << " " << row.Right;
  }
}

TEST(TextTest, HashesOfEqualTextsAgreeAtEveryLength) {
  const std::string_view lower = "customer_number_of_the_order\u017Fk";
  std::string upper = "CUSTOMER_NUMBER_OF_THE_ORDERSK";
  EXPECT_EQ(HashFolded(lower), HashFolded(upper));
  for (std::size_t begin = 0; begin < 28; ++begin) {
    for (std::size_t size = 0; begin + size <= 28; ++size)
      EXPECT_EQ(HashFolded(lower.substr(begin, size)), HashFolded(std::string_view(upper).substr(begin, size)));
  }
  EXPECT_NE(HashFolded("customer"), HashFolded("customes"));
  EXPECT_NE(HashFolded("customer_"), HashFolded("customer"));
}

TEST(TextTest, HashesOfEqualTextsAgreeWhereverACharacterThatIsNotAsciiStands) {
  for (std::size_t place = 0; place <= 20; ++place) {
    std::string ascii(20, 'a'), other(20, 'A');
    ascii.insert(place, "s");
    other.insert(place, "\u017F");
    ASSERT_TRUE(EqualFolded(ascii, other));
    EXPECT_EQ(HashFolded(ascii), HashFolded(other)) << place;
  }
}

TEST(TextTest, FindsPartsWithoutRegardToCase) {
  EXPECT_TRUE(ContainsFolded("Microsoft Sql SERVER", "sql server"));
  EXPECT_TRUE(ContainsFolded("ΟΔΟΣ ΑΘΗΝΑ", "αθη"));
  EXPECT_TRUE(ContainsFolded("aab", "AB"));
  EXPECT_TRUE(ContainsFolded("x", ""));
  EXPECT_TRUE(ContainsFolded("", ""));
  EXPECT_FALSE(ContainsFolded("", "x"));
  EXPECT_FALSE(ContainsFolded("Orders", "ordersx"));
  EXPECT_TRUE(ContainsFolded("Maẞe", "aße"));
  EXPECT_FALSE(ContainsFolded("é", "\xA9"sv));
}

TEST(TextTest, CapitalAndSmallLettersMeetAgain) {
  const struct {
    char32_t Small;
    char32_t Capital;
  } rows[] = {{U'a', U'A'}, {U'ä', U'Ä'}, {U'ÿ', U'Ÿ'}, {U'ł', U'Ł'},
              {U'μ', U'Μ'}, {U'σ', U'Σ'}, {U'я', U'Я'}, {U'ѓ', U'Ѓ'}};
  for (const auto& row : rows) {
    EXPECT_EQ(UpperCharacter(row.Small), row.Capital);
    EXPECT_EQ(LowerCharacter(row.Capital), row.Small);
  }
  EXPECT_EQ(UpperCharacter(U'ß'), U'ß');
  EXPECT_EQ(LowerCharacter(U'ς'), U'ς');
  EXPECT_EQ(UpperCharacter(U's'), U'S');
}

TEST(TextTest, EveryCodePointComesBackFromItsBytes) {
  for (char32_t code = 0; code <= 0x10FFFF; ++code) {
    if (code == 0xD800) code = 0xE000;
    std::string text;
    AppendUtf8(text, code);
    const Utf8Character read = DecodeUtf8(text);
    ASSERT_EQ(read.Code, code);
    ASSERT_EQ(read.Bytes, text.size());
  }
}

TEST(TextTest, AStrayByteComesBackFromItsCode) {
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string stray(1, static_cast<char>(byte));
    EXPECT_EQ(FoldCase(stray), stray);
    EXPECT_TRUE(EqualFolded(stray, stray));
  }
}

TEST(TextTest, FoldingIsDoneAtOnceAndAgreesWithBothCases) {
  for (char32_t code = 0; code < 0xB000; ++code) {
    const char32_t folded = FoldCharacter(code);
    ASSERT_EQ(FoldCharacter(folded), folded) << static_cast<unsigned>(code);
    ASSERT_EQ(FoldCharacter(LowerCharacter(code)), folded) << static_cast<unsigned>(code);
    ASSERT_EQ(FoldCharacter(UpperCharacter(code)), folded) << static_cast<unsigned>(code);
  }
}

TEST(TextTest, OtherWritingsOfASmallLetterShareItsCapital) {
  const struct {
    char32_t Written;
    char32_t Capital;
  } rows[] = {{U'ς', U'Σ'}, {U'ſ', U'S'}, {U'µ', U'Μ'}, {U'ϐ', U'Β'}, {U'ϑ', U'Θ'}, {U'ẛ', U'Ṡ'}};
  for (const auto& row : rows) {
    EXPECT_EQ(UpperCharacter(row.Written), row.Capital);
    EXPECT_EQ(LowerCharacter(row.Written), row.Written);
    EXPECT_NE(LowerCharacter(row.Capital), row.Written);
  }
}

TEST(TextTest, DotlessAndDottedLettersStayApart) {
  EXPECT_FALSE(EqualFolded("ı", "i"));
  EXPECT_FALSE(EqualFolded("İ", "i"));
  EXPECT_TRUE(EqualFolded("I", "i"));
}

TEST(TextTest, QuotesByApostrophes) {
  EXPECT_EQ(Quoted("Load"), "'Load'");
  EXPECT_EQ(Quoted(""), "''");
  EXPECT_EQ(Quoted("it's"), "'it's'");
}

TEST(TextTest, WholeNumbersArePlain) {
  EXPECT_EQ(NumberText(0), "0");
  EXPECT_EQ(NumberText(-42), "-42");
  EXPECT_EQ(NumberText(std::numeric_limits<long long>::min()), "-9223372036854775808");
}

TEST(TextTest, RealNumbersHaveTheFewestDigitsThatReadBack) {
  const struct {
    double Value;
    std::string_view Text;
  } rows[] = {{0.1, "0.1"},
              {99.5, "99.5"},
              {100000, "100000"},
              {1234567890123, "1234567890123"},
              {0.0001, "0.0001"},
              {1e-05, "1e-05"},
              {1e20, "1e+20"},
              {-2.5, "-2.5"},
              {-0.0, "0"},
              {std::numeric_limits<double>::infinity(), "inf"},
              {-std::numeric_limits<double>::infinity(), "-inf"},
              {999999999999999, "999999999999999"},
              {1e15, "1e+15"},
              {0.00012345, "0.00012345"},
              {0.00009999, "9.999e-05"},
              {5e-324, "5e-324"},
              {1.0 / 3, "0.3333333333333333"},
              {1.7976931348623157e308, "1.7976931348623157e+308"}};
  for (const auto& row : rows) {
    std::string text;
    AppendNumber(text, row.Value);
    EXPECT_EQ(text, row.Text);
  }
}

TEST(TextTest, WhatIsNoNumberHasNoSign) {
  for (const double value : {std::nan(""), -std::nan("")}) {
    std::string text;
    AppendNumber(text, value);
    AppendNumber(text, static_cast<float>(value));
    EXPECT_EQ(text, "nannan");
  }
}

TEST(TextTest, SinglesShowTheirOwnDigitsNotThoseOfTheDouble) {
  std::string text = "x=";
  AppendNumber(text, 0.1F);
  EXPECT_EQ(text, "x=0.1");
}

}  // namespace
}  // namespace velmoria
