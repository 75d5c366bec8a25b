#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/foreign_locale.h"
#include "tests/unit/runtime/expect_failure.h"
#include "velmoria/runtime/format.h"
#include "velmoria/runtime/keyed_list.h"
#include "velmoria/runtime/text.h"

namespace velmoria {
namespace {

// What the whole floor makes of texts and numbers, in one text.
std::string Everything() {
  std::string text = Variant(1234.5).AsText() + Variant(0.1F).AsText() + Variant(Currency{12345}).AsText();
  text += Decimal::Parse("1234.50").AsText() + Variant(Date::From(2026, 11, 20, 14, 3, 5)).AsText();
  text += Date::From(2026, 11, 20, 14).AsGeneralDate() + FoldCase("GRÖSSE Ελλάδα I");
  text += FormatText(1234567.891, "Standard") + FormatText(-1234.5, "Currency") + FormatText(1e10, "Scientific");
  text += FormatText(Date::From(2026, 3, 1), "Long Date") + Variant("1.5").AsDecimal().AsText();
  text += Variant(Variant("1234.5").AsDouble() + 1).AsText() + Variant("12.5").AsCurrency().AsText();
  return text + NumberText(static_cast<long long>(HashFolded("ÄΩЖ")));
}

// By its name, set by C's call or by the one of the standard library.
class LocaleTest : public testing::TestWithParam<std::tuple<const char*, bool>> {
 protected:
  void SetUp() override {
    if (!foreign_.IsThere()) GTEST_SKIP() << std::get<0>(GetParam()) << " is not installed";
  }

  std::string expected_ = Everything();
  test::ForeignLocale foreign_{std::get<0>(GetParam()), std::get<1>(GetParam())};
};

TEST_P(LocaleTest, NothingChangesUnderAnotherLocale) { EXPECT_EQ(Everything(), expected_); }

TEST_P(LocaleTest, NumbersPrintWithAPoint) {
  const struct {
    Variant Value;
    const char* Text;
  } rows[] = {{1234567.5, "1234567.5"},
              {-0.25F, "-0.25"},
              {1e300, "1e+300"},
              {Currency{-12345}, "-1.2345"},
              {Decimal::Parse("79228162514264337593543950.335"), "79228162514264337593543950.335"},
              {2147483647, "2147483647"},
              {true, "True"}};
  for (const auto& row : rows) EXPECT_EQ(row.Value.AsText(), row.Text);
}

TEST_P(LocaleTest, NumbersAreReadWithAPoint) {
  const Variant text("1234.5");
  EXPECT_EQ(text.AsDouble(), 1234.5);
  EXPECT_EQ(text.AsSingle(), 1234.5F);
  EXPECT_EQ(text.AsCurrency(), Currency{12345000});
  EXPECT_EQ(text.AsDecimal(), Decimal::Parse("1234.5"));
  EXPECT_EQ(text.AsLong(), 1234);
  EXPECT_EQ(text.AsInteger(), 1234);
  EXPECT_EQ(Variant("1e3").AsLong(), 1000);
  EXPECT_TRUE(Variant("0.1").AsBoolean());
}

TEST_P(LocaleTest, NumbersOfTheCountryAreNeverRead) {
  for (const char* text : {"1,5", "1.234,5", "1,234.5", "1 234", "1\u00A0234", "1\u202F234", "5 €"}) {
    SCOPED_TRACE(text);
    const Variant value(text);
    ExpectTypeMismatch([&] { value.AsDouble(); });
    ExpectTypeMismatch([&] { value.AsSingle(); });
    ExpectTypeMismatch([&] { value.AsCurrency(); });
    ExpectTypeMismatch([&] { value.AsDecimal(); });
    ExpectTypeMismatch([&] { value.AsLong(); });
    ExpectTypeMismatch([&] { value.AsInteger(); });
    ExpectTypeMismatch([&] { value.AsByte(); });
    ExpectTypeMismatch([&] { value.AsBoolean(); });
  }
}

TEST_P(LocaleTest, NumbersComeBackFromTheirText) {
  for (const double value : {0.1, -1234.5678, 1e-7, 123456789012345.0, 1.7976931348623157e308}) {
    EXPECT_EQ(Variant(Variant(value).AsText()).AsDouble(), value);
  }
  for (const std::int64_t amount : {1LL, -12345LL, 9223372036854775807LL}) {
    EXPECT_EQ(Variant(Variant(Currency{amount}).AsText()).AsCurrency(), Currency{amount});
  }
}

TEST_P(LocaleTest, DatesPrintAndAreReadInTheirOwnForms) {
  const Date date = Date::From(1998, 6, 1, 9, 14, 2);
  EXPECT_EQ(Variant(date).AsText(), "1998-06-01 09:14:02");
  EXPECT_EQ(date.AsGeneralDate(), "6/1/98 9:14:02 AM");
  EXPECT_EQ(Variant("1998-06-01 09:14:02").AsDate(), date);
  EXPECT_EQ(Variant("6/1/98 9:14:02 AM").AsDate(), date);
  EXPECT_EQ(Variant("06/07/1998").AsDate(), Date::From(1998, 6, 7));  // month first everywhere
}

TEST_P(LocaleTest, DatesOfTheCountryAreNeverRead) {
  for (const char* text : {"01.06.1998", "1.6.98", "1. Juni 1998", "1 juin 1998", "1 Haziran 1998", "09.14.02"}) {
    ExpectTypeMismatch([&] { Variant(text).AsDate(); });
  }
}

TEST_P(LocaleTest, PatternsGiveOneText) {
  const Date date = Date::From(1998, 6, 1, 21, 14, 2);
  const struct {
    Variant Value;
    const char* Pattern;
    const char* Text;
  } rows[] = {{1234567.891, "#,##0.00", "1,234,567.89"},
              {1234.5, "Standard", "1,234.50"},
              {-1234.5, "Currency", "($1,234.50)"},
              {"1234.5", "0.00", "1234.50"},
              {0.125, "Percent", "12.50%"},
              {1e10, "Scientific", "1.00E+10"},
              {1234.5, "General Number", "1234.5"},
              {date, "Long Date", "Monday, June 1, 1998"},
              {date, "Medium Date", "01-Jun-98"},
              {date, "Short Date", "6/1/98"},
              {date, "Medium Time", "09:14 PM"},
              {date, "dddd mmm d/m/yyyy", "Monday Jun 1/6/1998"},
              {true, "Yes/No", "Yes"},
              {"istanbul ISPARTA", ">", "ISTANBUL ISPARTA"},
              {"ISTANBUL Isparta", "<", "istanbul isparta"}};
  for (const auto& row : rows) EXPECT_EQ(FormatText(row.Value, row.Pattern), row.Text) << row.Pattern;
}

TEST_P(LocaleTest, KeysKeepTheLatinI) {
  KeyedList<int> list;
  list.Add(1, "TITLE");
  list.Add(2, "Iıİi");
  EXPECT_EQ(list.PositionOf("title"), 1U);
  EXPECT_EQ(list.PositionOf("Title"), 1U);
  EXPECT_EQ(list.PositionOf("tıtle"), 0U);
  EXPECT_EQ(list.PositionOf("iıİI"), 2U);
  EXPECT_EQ(list.PositionOf("ııİI"), 0U);
  EXPECT_TRUE(EqualFolded("ID", "id"));
  EXPECT_FALSE(EqualFolded("ID", "ıd"));
  EXPECT_FALSE(EqualFolded("İD", "id"));
  EXPECT_EQ(FoldCase("INSERT"), "insert");
  EXPECT_EQ(HashFolded("INSERT"), HashFolded("insert"));
}

TEST_P(LocaleTest, WordsOfABooleanAreEnglishInEitherCase) {
  EXPECT_TRUE(Variant("TRUE").AsBoolean());
  EXPECT_FALSE(Variant("fAlSe").AsBoolean());
  for (const char* text : {"wahr", "vrai", "doğru", "Evet", "yanlış"}) {
    ExpectTypeMismatch([&] { Variant(text).AsBoolean(); });
  }
}

TEST_P(LocaleTest, TextsAreOrderedByTheirBytes) {
  EXPECT_EQ(Compare("Z", "a"), -1);
  EXPECT_EQ(Compare("ä", "z"), 1);
  EXPECT_EQ(Compare("I", "i"), -1);
}

INSTANTIATE_TEST_SUITE_P(Installed, LocaleTest,
                         testing::Combine(testing::Values("C.UTF-8", "de_DE.UTF-8", "de_DE", "fr_FR.UTF-8",
                                                          "tr_TR.UTF-8"),
                                          testing::Bool()));

}  // namespace
}  // namespace velmoria
