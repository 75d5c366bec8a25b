#include <string>

#include <gtest/gtest.h>

#include "tests/unit/runtime/expect_texts.h"
#include "velmoria/runtime/format.h"

namespace velmoria {
namespace {

using namespace std::string_literals;

TEST(FormatTextTest, PlacesFillFromTheRight) {
  const FormatRow rows[] = {{"5551234", "@@@-@@@@", "555-1234"},
                            {"51234", "@@@-@@@@", "  5-1234"},
                            {"34", "@@@-@@@@", "   -  34"},
                            {"", "@@", "  "},
                            {"ab", "@@@@", "  ab"},
                            {"ab", "[@@]", "[ab]"},
                            {"ab", "[@@@]", "[ ab]"},
                            {"Größe", "@@@@@@", " Größe"},
                            {"東京", "@@@", " 東京"},
                            {"😀", "@@", " 😀"}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, AnAmpersandShowsNothingWhereACharacterIsMissing) {
  const FormatRow rows[] = {{"ab", "&&&&", "ab"},     {"ab", "@@&&", "  ab"}, {"ab", "&&@@", "ab"},
                            {"ab", "@@-&&", "  -ab"}, {"b", "&@-&@", " -b"},  {"", "&&", ""},
                            {"ab", "(&&&)", "(ab)"}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, SurplusCharactersGoBeforeTheFirstPlace) {
  const FormatRow rows[] = {{"15551234", "@@@-@@@@", "1555-1234"},
                            {"abcdef", "@@@", "abcdef"},
                            {"abcdef", "(@@)", "(abcdef)"},
                            {"abc", "x&y", "xabcy"},
                            {"abc", "&-&", "ab-c"},
                            {"東京都", "@-@", "東京-都"}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, AnExclamationMarkFillsFromTheLeft) {
  const FormatRow rows[] = {{"ab", "!@@@@", "ab  "},
                            {"ab", "!&&&&", "ab"},
                            {"5551234", "!@@@-@@@@", "555-1234"},
                            {"51234", "!@@@-@@@@", "512-34  "},
                            {"ab", "@@@@!", "ab  "},
                            {"ab", "@!@@", "ab "},
                            {"15551234", "!@@@-@@@@", "155-51234"},
                            {"abcd", "!(@@)", "(ab)cd"},
                            {"ab", "!", "ab"},
                            {"ab", "!x&&&y", "xaby"}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, AngleBracketsChangeTheCase) {
  const FormatRow rows[] = {{"Straße Ελλάδα", "<", "straße ελλάδα"},
                            {"größe я", ">", "GRÖßE Я"},
                            {"ab12", ">@@-@@", "AB-12"},
                            {"AB12", "@@-@@<", "ab-12"},
                            {"aB", "<>", "AB"},
                            {"aB", "><", "ab"},
                            {"ab", ">\"x\"@@", "xAB"},
                            {"ÿ ǆ ſ", ">", "Ÿ Ǆ S"},
                            {"οδος ϐ", ">", "ΟΔΟΣ Β"},
                            {"µ ϑ", ">", "Μ Θ"},
                            {"Ÿ Σ ẞ", "<", "ÿ σ ß"},
                            {"ab", "<!@@@", "ab "},
                            {"İı", "<", "İı"},
                            {"", ">", ""}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, BytesThatAreNoUtf8CountAsCharactersAndStay) {
  EXPECT_EQ(FormatText("a\xFFz", ">@@@@"), " A\xFFZ"s);
  EXPECT_EQ(FormatText("\xC3", "@@"), " \xC3"s);
  EXPECT_EQ(FormatText(std::string("a\0b", 3), "@-@-@"), "a-\0-b"s);
}

TEST(FormatTextTest, LiteralsStandForThemselves) {
  const FormatRow rows[] = {{"ab", "@@ 0 d #", "ab 0 d #"}, {"ab", "\"@\"@@", "@ab"}, {"ab", "\\<@@", "<ab"},
                            {"ab", "<\\<&&", "<ab"},        {"ab", "@\";\"@", "a;b"}, {"x", "€@€", "€x€"}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, TheSecondSectionIsForNothing) {
  const FormatRow rows[] = {{"x", "&;\"none\"", "x"}, {"", "@@;\"none\"", "none"}, {"", "@@;", ""},
                            {"", "@@;@@", "  "},      {"", "&&;--", "--"},         {"", "<;none", "none"},
                            {"AB", "<;none", "ab"},   {"", "@;!\"x\"", "x"}};
  ExpectTexts(rows);
  for (const Variant& nothing : {Variant::Null(), Variant()}) {
    EXPECT_EQ(FormatText(nothing, "@@;\"none\""), "none");
    EXPECT_EQ(FormatText(nothing, "@@;"), "");
    EXPECT_EQ(FormatText(nothing, "@@;@@@"), "   ");
    EXPECT_EQ(FormatText(nothing, "@@"), "");
  }
}

TEST(FormatTextTest, AnEmptyFirstSectionShowsTheTextAsItIs) {
  const FormatRow rows[] = {{"ab", ";@", "ab"}, {"", ";@", " "}};
  ExpectTexts(rows);
}

TEST(FormatTextTest, ValuesOfOtherTypesShowTheirStringForm) {
  const FormatRow rows[] = {{123, "@@@@@", "  123"},
                            {std::int16_t{-7}, "@@@", " -7"},
                            {1.5, "@@@@", " 1.5"},
                            {0.1F, "&", "0.1"},
                            {1e20, ">", "1E+20"},
                            {true, ">", "TRUE"},
                            {false, "<", "false"},
                            {Currency{15000}, "@@@@", " 1.5"},
                            {Decimal::Parse("1.50"), "@@@@@", " 1.50"},
                            {Byte{7}, "@@", " 7"},
                            {Date::From(1998, 6, 1), "&", "1998-06-01"},
                            {Date::From(1998, 6, 1, 9), "@@@@@@@@@@|@@@@@@@@@", "1998-06-01| 09:00:00"},
                            {5551234, "@@@-@@@@", "555-1234"}};
  ExpectTexts(rows);
}

}  // namespace
}  // namespace velmoria
