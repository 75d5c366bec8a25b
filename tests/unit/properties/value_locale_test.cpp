#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/expect_raised.h"
#include "tests/support/foreign_locale.h"
#include "tests/support/scoped_apartment.h"
#include "velmoria/velmoria.h"

namespace velmoria::test {
namespace {

class ValueLocaleTest : public testing::TestWithParam<std::tuple<const char*, bool>> {
 protected:
  void SetUp() override {
    if (!foreign_.IsThere()) GTEST_SKIP() << std::get<0>(GetParam()) << " is not installed";
  }
  PropertyPtr Of(zDataTypes dataType, const char* format = "") const {
    return framework_.CreateProperty({.Name = "X", .DataType = dataType, .FormatText = format});
  }

  ScopedApartment apartment_;
  Framework framework_;
  ForeignLocale foreign_{std::get<0>(GetParam()), std::get<1>(GetParam())};
};

TEST_P(ValueLocaleTest, TextsBecomeValuesAndValuesTexts) {
  const struct {
    zDataTypes DataType;
    const char* Text;
  } rows[] = {{dtSingle, "1234.5"},   {dtDouble, "-1234.5678"}, {dtCurrency, "1234.5678"}, {dtDecimal, "1234.50"},
              {dtInteger, "1234"},    {dtLongInteger, "70000"}, {dtByte, "200"},           {dtBoolean, "True"},
              {dtDate, "1998-06-07"}, {dtString, "İstanbul"}};
  for (const auto& row : rows) {
    const auto property = Of(row.DataType);
    property->SetValue(row.Text);
    EXPECT_EQ(property->Value().AsText(), row.Text);
    EXPECT_EQ(property->DisplayValue().AsText(), row.Text);
    const auto text = Of(dtString);
    text->SetValue(property->Value());
    EXPECT_EQ(text->Value(), Variant(row.Text));
  }
}

TEST_P(ValueLocaleTest, NumbersAndDatesOfTheCountryAreRefused) {
  for (const auto dataType : {dtSingle, dtDouble, dtCurrency, dtDecimal, dtInteger, dtLongInteger, dtByte, dtBoolean}) {
    ExpectRaised(errProperty_DataType, [&] { Of(dataType)->SetValue("1,5"); }, {.Count = 2});
  }
  ExpectRaised(errProperty_DataType, [&] { Of(dtDate)->SetValue("01.06.1998"); }, {.Count = 2});
}

TEST_P(ValueLocaleTest, FormatsGiveOneText) {
  const struct {
    zDataTypes DataType;
    const char* Value;
    const char* Format;
    const char* Shown;
  } rows[] = {{dtDouble, "1234567.891", "#,##0.00", "1,234,567.89"},
              {dtCurrency, "-1234.5", "Currency", "($1,234.50)"},
              {dtDate, "1998-06-01", "dddd, mmmm d", "Monday, June 1"},
              {dtString, "istanbul", ">", "ISTANBUL"}};
  for (const auto& row : rows) {
    const auto property = Of(row.DataType, row.Format);
    property->SetValue(row.Value);
    EXPECT_EQ(property->DisplayValue().AsText(), row.Shown);
  }
}

TEST_P(ValueLocaleTest, MembersAreFoundByTheLatinI) {
  const auto properties = framework_.CreateProperties({});
  properties->SetupItem({.Name = "TITLE"});
  EXPECT_EQ(properties->Item("title")->Name(), "TITLE");
  const auto attributes = framework_.CreateAttributes();
  attributes->SetupItem({.Name = "id"});
  EXPECT_EQ(attributes->Item("ID")->Name(), "id");
  ExpectRaised(errAdd_Attribute, [&] { attributes->SetupItem({.Name = "ID"}); });
  attributes->SetupItem({.Name = "ıd"});
  EXPECT_EQ(attributes->Count(), 2);
}

TEST_P(ValueLocaleTest, MessagesShowNumbersAlike) {
  const auto property = framework_.CreateProperty({.Name = "X", .DataType = dtString, .Size = 1000});
  ExpectRaised(errValue_Size, [&] { property->SetValue(std::string(1234567, 'x')); },
               {.Text = "Size Limit: 1000  Value Length: 1234567"});
}

INSTANTIATE_TEST_SUITE_P(Installed, ValueLocaleTest,
                         testing::Combine(testing::Values("de_DE.UTF-8", "tr_TR.UTF-8"), testing::Bool()));

}  // namespace
}  // namespace velmoria::test
