#include <clocale>
#include <string>

#include <gtest/gtest.h>

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

class LocaleTest : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    before_ = std::setlocale(LC_ALL, nullptr);
    expected_ = Everything();
    if (!std::setlocale(LC_ALL, GetParam())) GTEST_SKIP() << GetParam() << " is not installed";
  }
  void TearDown() override { std::setlocale(LC_ALL, before_.c_str()); }

  std::string before_;
  std::string expected_;
};

TEST_P(LocaleTest, NothingChangesUnderAnotherLocale) { EXPECT_EQ(Everything(), expected_); }

TEST_P(LocaleTest, ADecimalCommaIsNeverRead) { EXPECT_THROW(Variant("1,5").AsDouble(), Error); }

INSTANTIATE_TEST_SUITE_P(Installed, LocaleTest,
                         testing::Values("C.UTF-8", "de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "tr_TR.UTF-8"));

}  // namespace
}  // namespace velmoria
